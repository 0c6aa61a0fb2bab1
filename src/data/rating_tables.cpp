#include "data/rating_tables.h"

#include "data/table_query.h"
#include "host/lisp_symbols.h"
#include "text/compare.h"
#include "text/numbers.h"
#include "text/split.h"

#include <algorithm>

namespace brenvolt {

namespace {

constexpr std::size_t keyColumn = 0;
constexpr std::wstring_view keyName = L"ID";
constexpr std::wstring_view descriptionName = L"Description";

constexpr std::array motorRatings = {
    Rating::type,  Rating::load,      Rating::units, Rating::voltage,
    Rating::phase, Rating::frequency, Rating::speed, Rating::fla,
};

/// A load has no speed.
constexpr std::array loadRatings = {
    Rating::type, Rating::phase, Rating::voltage, Rating::load, Rating::units, Rating::fla, Rating::frequency,
};

constexpr RatingTable motors = {
    ZanTableKind::motors,
    tablemask::motors,
    motorRatings,
    {Rating::type, Rating::voltage, Rating::frequency},
};

constexpr RatingTable loads = {
    ZanTableKind::loads,
    tablemask::loads,
    loadRatings,
    {Rating::type, Rating::voltage, Rating::phase},
};

} // namespace

const RatingTable& motorTable() {
  return motors;
}
const RatingTable& loadTable() {
  return loads;
}

std::size_t RatingTable::columnOf(Rating rating) const {
  return static_cast<std::size_t>(std::find(ratings.begin(), ratings.end(), rating) - ratings.begin()) + 1;
}

const RatingField* RatingTable::fieldOf(std::size_t column) const {
  if (column == keyColumn || column > ratings.size()) return nullptr;
  return &ratingFields[static_cast<std::size_t>(ratings[column - 1])];
}

std::wstring_view RatingTable::nameOf(std::size_t column) const {
  if (column == keyColumn) return keyName;
  const RatingField* field = fieldOf(column);
  return field == nullptr ? descriptionName : field->column;
}

RatingTableService::RatingTableService(const RatingTable& table, ZanOleDbConnection* connection)
    : ZanDbBaseService(connection), table_(table) {
  Initialize();
}

void RatingTableService::Initialize() {
  columnNames_.clear();
  tableName_.clear();
  if (!isConnected() && !Open()) return;
  code_ = getCodeStandard().value_or(std::wstring());
  ZanOleDbColumns columns;
  if (!utils().ResolveTable(tableName_, table_.kind, code_) || !columns.Open(*connection(), tableName_))
    return;
  for (std::wstring name; columns.FetchNext() && columns.GetName(name);) {
    for (std::size_t column = 0; column < table_.columnCount(); ++column)
      if (equalsOrdinalNoCase(table_.nameOf(column), name)) columnNames_[column] = name;
  }
}

std::wstring RatingTableService::nameOf(std::size_t column) const {
  const auto name = columnNames_.find(column);
  return name == columnNames_.end() ? std::wstring() : name->second;
}

bool RatingTableService::Query(const ZanTableFilter& filter, std::vector<RatingRecord>& records) const {
  std::vector<std::wstring> selectedNames;
  std::vector<std::size_t> selected;
  std::wstring condition;
  std::vector<std::wstring> values;
  for (std::size_t column = 0; column < table_.columnCount(); ++column) {
    if (filter.active[column]) {
      condition += condition.empty() ? L" WHERE [%s]='%s'" : L" AND [%s]='%s'";
      values.push_back(nameOf(column));
      values.push_back(filter.values[column]);
    }
    if (filter.selected[column]) {
      selectedNames.push_back(nameOf(column));
      selected.push_back(column);
    }
  }
  values.insert(values.begin(), {ZanDbReaderUtils::JoinColumns(selectedNames), tableName_});
  TableQuery query(connection());
  if (!query.run(L"SELECT %s FROM [%s]" + condition, values)) return false;

  records.clear();
  while (query.next()) {
    RatingRecord& record = records.emplace_back();
    for (std::size_t i = 0; i < selected.size(); ++i)
      record[selected[i]] = query.text(static_cast<int>(i) + 1);
  }
  return true;
}

bool RatingTableService::ListColumnValues(std::size_t column, std::vector<std::wstring>& values) const {
  if (!columnNames_.contains(column)) return false;
  values.clear();
  TableQuery query(connection());
  if (!query.run(L"SELECT DISTINCT [%s] FROM [%s]", {nameOf(column), tableName_})) return false;
  while (query.next())
    values.push_back(query.text(1));
  return !values.empty();
}

std::vector<std::wstring> RatingTableService::ExtractColumn(
    std::vector<RatingRecord>&& records, std::size_t column) {
  std::vector<std::wstring> texts;
  texts.reserve(records.size());
  for (RatingRecord& record : records)
    texts.push_back(std::move(record[column]));
  records.clear();
  return texts;
}

std::wstring RatingTableService::savedText(
    std::size_t column, const std::vector<std::wstring>& values, const ZanTableFilter& filter) const {
  const auto isHidden = [&](std::size_t each) {
    return filter.active[each] &&
           std::any_of(table_.filters.begin(), table_.filters.end(), [&](Rating rating) {
             return table_.columnOf(rating) == each;
           });
  };
  if (isHidden(column)) return filter.values[column];
  std::size_t position = column - 1;
  for (std::size_t each = 1; each < column; ++each)
    if (isHidden(each)) --position;
  return position < values.size() ? values[position] : std::wstring();
}

bool RatingTableService::Save(
    int id, const std::vector<std::wstring>& values, const ZanTableFilter& filter,
    std::wstring& refusal) const {
  refusal.clear();
  if (values.empty()) return false;
  std::wstring names;
  std::wstring places;
  std::wstring assignments;
  std::vector<std::wstring> inserted = {tableName_};
  std::vector<std::wstring> texts;
  std::vector<std::wstring> updated = {tableName_};
  for (std::size_t column = 1; column < table_.columnCount(); ++column) {
    std::wstring text = savedText(column, values, filter);
    // The description alone may hold quotes; in any other column one makes the statement fail.
    if (column == table_.columnCount() - 1) text = replaceAll(text, L"'", L"''");
    const std::wstring_view separator = column == 1 ? L"" : L", ";
    names.append(separator).append(L"[%s]");
    places.append(separator).append(L"'%s'");
    assignments.append(separator).append(L"[%s]='%s'");
    inserted.push_back(nameOf(column));
    updated.push_back(nameOf(column));
    updated.push_back(text);
    texts.push_back(std::move(text));
  }
  inserted.insert(inserted.end(), texts.begin(), texts.end());
  updated.push_back(formatInt(id));

  TableQuery query(connection());
  const bool saved = id != 0
                         ? query.run(L"UPDATE [%s] SET " + assignments + L" WHERE [ID]=%d", updated)
                         : query.run(L"INSERT INTO [%s] (" + names + L") VALUES (" + places + L")", inserted);
  if (!saved) refusal = query.error();
  return saved;
}

bool RatingTableService::CheckTables(std::wstring& dataSource, MissingTables& missing) const {
  return ZanDbBaseService::CheckTables({}, {}, code_, dataSource, missing, table_.mask);
}

} // namespace brenvolt
