// From bytes or tables to rows; what a cell means is looked up later, what it can be is checked here.
#include "circuits/set/set_list.h"

#include "circuits/set/type_rules.h"
#include "platform/tables.h"
#include "platform/xls_reader.h"
#include "simhost/host/errors.h"
#include "simhost/site/open_database.h"
#include "simhost/site/site_run.h"
#include "text/compare.h"
#include "text/encoding.h"
#include "text/numbers.h"
#include "text/split.h"

#include <algorithm>
#include <cstdint>
#include <memory>
#include <optional>
#include <set>
#include <utility>

namespace circuits {

using brenvolt::fromUtf8;
using brenvolt::toUtf8;
using simhost::BadInput;

namespace {

constexpr std::array<SetFieldRow, setFieldCount> fields = {{
    {SetField::tag, L"tag", false, "P-101; makes the component tags and the name of the saved configuration"},
    {SetField::circuit, L"circuit", false, "as the workbook names it"},
    {SetField::type, L"type", false, "as the workbook names it"},
    {SetField::kind, L"kind", false,
     "type of motor or load in the tables: Induction, Heater; empty for the only one"},
    {SetField::load, L"load", true, "10"},
    {SetField::units, L"units", false, "HP, kW"},
    {SetField::voltage, L"voltage", true, "460"},
    {SetField::phase, L"phase", true, "1 or 3"},
    {SetField::frequency, L"frequency", true, "60; empty for the only one"},
    {SetField::speed, L"speed", true, "1800; empty for the first of the table"},
    {SetField::length, L"length", true, "of the cable, one way; empty sizes without voltage drop"},
    {SetField::lengthUnits, L"length-units", false, "ft, m; empty for the site's"},
    {SetField::raceway, L"raceway", false, "a column of the impedance table"},
    {SetField::ambient, L"ambient", false, "40C"},
    {SetField::wireSize, L"wire-size", false,
     "size of the conductors, the grounding conductor excepted: 12 AWG, 4 mm2; empty for the proposed one"},
    {SetField::options, L"options", false, "CODE=1,2;CODE=3 as the worksheet numbers them"},
    {SetField::configuration, L"configuration", false, "a saved configuration to start from"},
    {SetField::installation, L"installation", false, ""},
    {SetField::location, L"location", false, ""},
    {SetField::description1, L"description1", false, ""},
    {SetField::description2, L"description2", false, ""},
    {SetField::description3, L"description3", false, ""},
    {SetField::standardCode, L"standard-code", false, "NEC, IEC; empty for the set's"},
}};

/// A longer list is a mistake, such as a whole database taken for one.
constexpr std::size_t rowLimit = 100'000;

struct RawRow {
  std::size_t number = 0;
  std::vector<std::wstring> cells;
};

/// What Windows programs write where they do not write Unicode: as Latin 1, with letters and marks in 0x80 to 0x9F.
std::wstring fromWindows(const std::string& bytes) {
  constexpr std::wstring_view upper =
      L"\u20ac\ufffd\u201a\u0192\u201e\u2026\u2020\u2021\u02c6\u2030\u0160\u2039\u0152\ufffd\u017d\ufffd"
      L"\ufffd\u2018\u2019\u201c\u201d\u2022\u2013\u2014\u02dc\u2122\u0161\u203a\u0153\ufffd\u017e\u0178";
  std::wstring text;
  for (const char character : bytes) {
    const auto byte = static_cast<unsigned char>(character);
    text += byte >= 0x80 && byte < 0xA0 ? upper[byte - 0x80U] : static_cast<wchar_t>(byte);
  }
  return text;
}

std::wstring decoded(const std::string& bytes, SetList& list) {
  if (bytes.starts_with("\xFF\xFE") || bytes.starts_with("\xFE\xFF")) {
    std::wstring text;
    const bool isLittle = bytes.front() == '\xFF';
    for (std::size_t at = 2; at + 1 < bytes.size(); at += 2) {
      const auto low = static_cast<unsigned char>(bytes[isLittle ? at : at + 1]);
      const auto high = static_cast<unsigned char>(bytes[isLittle ? at + 1 : at]);
      text += static_cast<wchar_t>(high * 256U + low);
    }
    return text;
  }
  if (const auto text = brenvolt::fromUtf8Strict(bytes))
    return text->starts_with(L'\uFEFF') ? text->substr(1) : *text;
  list.notes.push_back(L"is not UTF-8; its letters are read as Windows-1252");
  return fromWindows(bytes);
}

/// The mark that occurs most in the header line, outside of quotes.
wchar_t separatorOf(std::wstring_view text) {
  std::array<std::pair<std::size_t, wchar_t>, 3> counts = {{{0, L','}, {0, L';'}, {0, L'\t'}}};
  bool isQuoted = false;
  for (const wchar_t character : text) {
    if (character == L'"') isQuoted = !isQuoted;
    if (!isQuoted && (character == L'\n' || character == L'\r')) break;
    for (auto& [count, mark] : counts)
      if (!isQuoted && character == mark) ++count;
  }
  return std::max_element(
             counts.begin(), counts.end(),
             [](const auto& one, const auto& other) { return one.first < other.first; })
      ->second;
}

/// Lines that begin with # are comments, blank lines are passed over.
std::vector<RawRow> cutText(std::wstring_view all, wchar_t separator, const std::string& source) {
  std::vector<RawRow> rows;
  std::size_t number = 0;
  for (std::size_t at = 0; at < all.size();) {
    RawRow row{++number, {L""}};
    bool isQuoted = false;
    const bool isComment = all[at] == L'#';
    for (; at < all.size(); ++at) {
      const wchar_t character = all[at];
      if (character == L'"' && !isComment) {
        if (isQuoted && at + 1 < all.size() && all[at + 1] == L'"')
          row.cells.back() += all[++at];
        else
          isQuoted = !isQuoted;
      } else if (character == L'\n' && !isQuoted) {
        ++at;
        break;
      } else if (character == separator && !isQuoted) {
        row.cells.emplace_back();
      } else if (character != L'\r') {
        if (character == L'\n') ++number;
        row.cells.back() += character;
      }
    }
    if (isQuoted)
      throw BadInput(source + ", row " + std::to_string(row.number) + ": a quote is never closed");
    const bool isBlank = std::all_of(row.cells.begin(), row.cells.end(), [](const std::wstring& cell) {
      return brenvolt::trimView(cell).empty();
    });
    if (!isComment && !isBlank) rows.push_back(std::move(row));
  }
  return rows;
}

/// "file:table" where the part before the last colon is meant as the source.
std::pair<std::string, std::string> tableOf(const std::string& source) {
  const std::size_t colon = source.rfind(':');
  const bool isOdbc = source.starts_with("odbc:");
  if (colon == std::string::npos || (isOdbc && colon == 4)) return {source, {}};
  return {source.substr(0, colon), source.substr(colon + 1)};
}

bool isTextFile(const std::string& source) {
  const std::string ending = toUtf8(brenvolt::toLower(fromUtf8(source.substr(source.find_last_of('.') + 1))));
  return ending == "csv" || ending == "txt" || ending == "tsv";
}

std::vector<RawRow> readTable(const std::string& source) {
  auto [file, table] = tableOf(source);
  brenvolt::ZanOleDbConnection connection;
  simhost::openDatabase(connection, file, simhost::DatabaseUse::read);
  if (table.empty()) {
    brenvolt::ZanOleDbTables tables;
    std::vector<std::wstring> names;
    if (tables.Open(connection, L"TABLE")) tables.GetTableList(names);
    if (names.size() != 1)
      throw BadInput(
          source + ": holds " + std::to_string(names.size()) +
          " tables or sheets; name the one meant: " + file + ":NAME");
    table = toUtf8(names.front());
  }
  const auto execute = [&](const std::string& name) {
    auto command = std::make_unique<brenvolt::ZanOleDbCommand>();
    command->SetConnection(&connection);
    if (name.find(']') != std::string::npos) throw BadInput(source + ": a table's name holds no ]");
    command->SetCommandText(L"SELECT * FROM [" + fromUtf8(name) + L"]");
    return command->Execute() == brenvolt::dbStatus::success ? std::move(command) : nullptr;
  };
  // A sheet is addressed with a "$" after its name.
  std::unique_ptr<brenvolt::ZanOleDbCommand> command = execute(table);
  if (command == nullptr) command = execute(table + "$");
  if (command == nullptr) throw BadInput(source + ": has no table or sheet \"" + table + "\"");
  std::vector<RawRow> rows{{1, {}}};
  for (int column = 1; column <= command->GetColumnCount(); ++column)
    rows.front().cells.push_back(command->GetColumnName(column));
  for (std::size_t number = 2; command->FetchNext() == brenvolt::dbStatus::success; ++number) {
    RawRow row{number, {}};
    for (int column = 1; column <= command->GetColumnCount(); ++column)
      row.cells.push_back(command->FieldAsString(column));
    const bool isBlank = std::all_of(
        row.cells.begin(), row.cells.end(), [](const std::wstring& cell) { return cell.empty(); });
    if (!isBlank) rows.push_back(std::move(row));
  }
  return rows;
}

/// Cells that a workbook shows as one: only the first of them has a value, so the other rows would lose theirs unseen.
void findMergedCells(const std::string& source, SetList& list) {
  const auto [file, table] = tableOf(source);
  brenvolt::WorkbookReader reader;
  if (!file.ends_with(".xls") || !reader.open(fromUtf8(file))) return;
  const std::optional<std::size_t> index =
      table.empty() ? std::optional<std::size_t>(0) : reader.findSheet(fromUtf8(table));
  const auto sheet = index ? reader.readSheet(*index) : std::nullopt;
  if (!sheet) return;
  for (const brenvolt::MergedCells& area : sheet->mergedCells()) {
    const auto number = [](std::size_t row) {
      return brenvolt::formatInt(static_cast<std::int64_t>(row) + 1);
    };
    list.faults.push_back(
        {area.firstRow + 1, sheet->text(0, area.firstColumn),
         L"its cell is merged with others, to row " + number(area.lastRow) + L" and column " +
             number(area.lastColumn) +
             L" of the sheet, so only the first has a value; give each row its own cell"});
  }
}

/// "7,5" is 7.5; "1,000" can be both and is a fault.
std::optional<std::wstring> numberText(const std::wstring& cell) {
  std::wstring text = cell;
  const std::size_t comma = text.find(L',');
  if (comma != std::wstring::npos) {
    const bool isThousands = text.size() - comma == 4;
    if (isThousands || text.find_first_of(L",.", comma + 1) != std::wstring::npos) return std::nullopt;
    text[comma] = L'.';
  }
  const bool isPlain = !text.empty() && text.find_first_not_of(L"0123456789.") == std::wstring::npos &&
                       std::count(text.begin(), text.end(), L'.') <= 1 && text != L".";
  if (!isPlain) return std::nullopt;
  // As the tables write it: 7.50 is 7.5.
  return brenvolt::formatShortest(brenvolt::toDouble(text));
}

/// What a column of the list is: a field, or a CODE.
struct Column {
  const SetFieldRow* field = nullptr;
  std::wstring code;
};

class RowReader final {
public:
  RowReader(SetList& list, const ColumnAliases& aliases, bool hasRules)
      : list_(list), aliases_(aliases), hasRules_(hasRules) {}

  void read(const std::vector<RawRow>& rows) {
    readHeader(rows.front());
    for (std::size_t row = 1; row < rows.size(); ++row)
      readRow(rows[row]);
  }

private:
  void fail(std::size_t row, const std::wstring& column, std::wstring reason) {
    list_.faults.push_back({row, column, std::move(reason)});
  }

  void readHeader(const RawRow& header) {
    std::set<std::wstring> seen;
    list_.header = header.number;
    for (const std::wstring& cell : header.cells) {
      std::wstring name = brenvolt::trim(cell);
      for (const auto& [alias, meaning] : aliases_)
        if (brenvolt::equalsOrdinalNoCase(alias, name)) name = meaning;
      Column column{nullptr, brenvolt::toUpper(name)};
      for (const SetFieldRow& field : fields)
        if (brenvolt::equalsOrdinalNoCase(field.name, name)) column = {&field, {}};
      if (!name.empty() && !seen.insert(brenvolt::toUpper(name)).second)
        fail(header.number, cell, L"a column of this meaning is there twice");
      if (!column.code.empty()) list_.codeColumns[column.code] = brenvolt::trim(cell);
      columns_.push_back(std::move(column));
    }
    for (const SetField needed : {SetField::tag, SetField::circuit, SetField::type})
      if (!(hasRules_ && needed != SetField::tag) &&
          std::none_of(columns_.begin(), columns_.end(), [needed](const Column& column) {
            return column.field != nullptr && column.field->field == needed;
          }))
        fail(header.number, fields[static_cast<std::size_t>(needed)].name, L"the list has no such column");
  }

  void readRow(const RawRow& raw) {
    if (raw.cells.size() > columns_.size())
      return fail(raw.number, L"", L"has more cells than the header has columns");
    SetRow row{raw.number};
    for (std::size_t place = 0; place < raw.cells.size(); ++place) {
      const Column& column = columns_[place];
      std::wstring cell = brenvolt::trim(raw.cells[place]);
      if (cell.empty()) continue;
      if (column.field == nullptr) {
        if (!column.code.empty()) row.codes.emplace_back(column.code, std::move(cell));
        continue;
      }
      if (column.field->isNumber) {
        const auto number = numberText(cell);
        if (!number) {
          fail(raw.number, column.field->name, L"\"" + cell + L"\" is not a plain number");
          continue;
        }
        cell = *number;
      }
      row.texts[static_cast<std::size_t>(column.field->field)] = std::move(cell);
    }
    checkTag(row);
    list_.rows.push_back(std::move(row));
  }

  void checkTag(const SetRow& row) {
    const std::wstring& tag = row[SetField::tag];
    if (tag.empty()) return fail(row.number, L"tag", L"is missing");
    if (tag.find_first_of(L"/\\:;\"<>|?*\n") != std::wstring::npos)
      return fail(row.number, L"tag", L"\"" + tag + L"\" holds a character that a tag cannot have");
    const auto [place, isNew] = tags_.try_emplace(brenvolt::toUpper(tag), row.number);
    if (!isNew)
      fail(
          row.number, L"tag",
          L"\"" + tag + L"\" is the tag of row " +
              brenvolt::formatInt(static_cast<std::int64_t>(place->second)) + L" too");
  }

  SetList& list_;
  const ColumnAliases& aliases_;
  bool hasRules_; ///< circuit and type can come from them
  std::vector<Column> columns_;
  std::map<std::wstring, std::size_t> tags_;
};

} // namespace

const std::array<SetFieldRow, setFieldCount>& setFields() {
  return fields;
}

SetList readSetList(
    const std::string& source, const ColumnAliases& aliases, const std::vector<TypeRule>& rules) {
  SetList list{source, {}, {}};
  if (source.ends_with(".xlsx") || source.find(".xlsx:") != std::string::npos)
    throw BadInput(source + ": .xlsx workbooks cannot be read yet; save the list as .xls or .csv");
  std::vector<RawRow> rows;
  if (isTextFile(source)) {
    const std::wstring text = decoded(simhost::readInput(source), list);
    rows = cutText(text, separatorOf(text), source);
  } else {
    rows = readTable(source);
    findMergedCells(source, list);
  }
  if (rows.size() < 2) throw BadInput(source + ": holds no row below its header");
  if (rows.size() - 1 > rowLimit)
    throw BadInput(
        source + ": has " + std::to_string(rows.size() - 1) + " rows; a set has at most " +
        std::to_string(rowLimit) + ": divide the list");
  RowReader(list, aliases, !rules.empty()).read(rows);
  applyTypeRules(list, rules);
  return list;
}

std::string faultText(const SetList& list, const SetFault& fault) {
  return list.source + ", row " + std::to_string(fault.row) +
         (fault.column.empty() ? std::string() : ", column " + toUtf8(fault.column)) + ": " +
         toUtf8(fault.reason);
}

} // namespace circuits
