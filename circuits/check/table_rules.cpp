// Every table by itself: is its name that of a family, has it the columns of that family, are its keys unique and its
// numbers numbers.
#include "circuits/check/table_rules.h"

#include "circuits/check/similar_name.h"
#include "data/table_names.h"
#include "text/compare.h"
#include "text/numbers.h"
#include "text/plain_number.h"
#include "text/split.h"

#include <algorithm>
#include <set>
#include <unordered_map>

namespace circuits {

using brenvolt::equalsOrdinalNoCase;
using brenvolt::formatInt;
using brenvolt::toUpper;

namespace {

struct Column {
  const wchar_t* name;
  enum class Content { freeText, maybeNumber, filledNumber, filledText } content = Content::freeText;
};
using enum Column::Content;

struct Family {
  const wchar_t* name;
  std::vector<Column> columns;
  /// Columns that must be unique together.
  std::vector<const wchar_t*> unique;
  /// From this column on all hold numbers; 0 for none.
  int numbersFrom = 0;
  /// Whether the rows come with use.
  bool mayBeEmpty = false;
};

/// The longer name first where one begins with the other.
const std::vector<Family>& families() {
  static const std::vector<Family> all = {
      {L"XL&R_DESC", {{L"CODE", filledText}, {L"DESCRIPTION"}}, {L"CODE"}},
      {L"MOTOR_I_DESC", {{L"CODE", filledText}, {L"Description"}}, {L"CODE"}},
      {L"MOTOR_I_CALC", {{L"Type", filledText}}, {L"Type"}},
      {L"MOTOR_I_MAP",
       {{L"CODE", filledText}, {L"MAX", filledNumber}, {L"RATING", filledText}, {L"DEFAULT"}},
       {L"CODE", L"MAX"}},
      {L"AMPG", {{L"SIZE_DESC", filledText}, {L"MAX", maybeNumber}}, {L"SIZE_DESC"}},
      {L"AMP", {{L"SIZE", filledText}, {L"SIZE_DESC", filledText}}, {L"SIZE"}, 3},
      {L"INSUL", {{L"INSUL", filledText}, {L"INSUL_DESC", filledText}, {L"TEMP", filledText}}, {L"INSUL"}, 5},
      {L"XL&R", {{L"SIZE", filledText}}, {L"SIZE"}},
      {L"FILL", {{L"MAX", filledNumber}, {L"FACTOR", filledNumber}}, {L"MAX"}},
      {L"MOTOR",
       {{L"ID"},
        {L"Type", filledText},
        {L"Load", filledNumber},
        {L"Units"},
        {L"Voltage (V)", filledNumber},
        {L"Phase", filledNumber},
        {L"Frequency (HZ)", maybeNumber},
        {L"Speed (RPM)", maybeNumber},
        {L"FLA (A)", maybeNumber},
        {L"Description"}},
       {L"Type", L"Load", L"Units", L"Voltage (V)", L"Phase", L"Frequency (HZ)", L"Speed (RPM)"}},
      {L"FEED",
       {{L"ID"},
        {L"Type", filledText},
        {L"Phase", filledNumber},
        {L"Voltage (V)", filledNumber},
        {L"Load", filledNumber},
        {L"Units"},
        {L"FLA (A)", maybeNumber},
        {L"Frequency (HZ)", maybeNumber},
        {L"Description"}},
       {L"Type", L"Load", L"Units", L"Voltage (V)", L"Phase", L"Frequency (HZ)"}},
      // The columns that name a saved part, and those of the part.
      {L"CATALOGSEL",
       {{L"MARKER"},
        {L"UI_SEL", maybeNumber},
        {L"LKUPTABLE"},
        {L"TYPE"},
        {L"Load"},
        {L"Units"},
        {L"Voltage (V)"},
        {L"PHASE"},
        {L"Frequency (Hz)"},
        {L"Speed (RPM)"},
        {L"MFG"},
        {L"CAT"},
        {L"ASSYCODE"},
        {L"RCOUNT"},
        {L"CATALOGTYPE"},
        {L"RATING1"},
        {L"RATING2"},
        {L"RATING3"},
        {L"RATING4"},
        {L"RATING5"},
        {L"RATING6"}},
       {},
       0,
       true},
      // Area and diameter are known by their places.
      {L"WIRESIZE", {{L"SIZE", filledText}, {L"STANDARD"}}, {L"SIZE", L"STANDARD"}, 3},
      {L"OPT", {{L"CODE", filledText}, {L"DEFAULT"}, {L"LIST"}}, {L"CODE"}},
  };
  return all;
}

/// The family whose name a table has, alone or before an underscore.
const Family* familyOf(std::wstring_view table) {
  const std::wstring name = toUpper(table);
  for (const Family& family : families())
    if (name == family.name || name.starts_with(std::wstring(family.name) + L"_")) return &family;
  return nullptr;
}

/// Only a name near that of a family is at fault: a database may hold tables for other programs.
void checkName(const SiteTable& table, Findings& findings) {
  std::vector<std::wstring> names;
  for (const Family& family : families())
    names.emplace(names.begin(), family.name); // the shorter of two equally near names
  const std::wstring base = table.text.name.substr(0, table.text.name.find(L'_'));
  const std::wstring similar = similarName(base, names);
  if (!similar.empty() && base.size() + 2 < table.text.name.size())
    findings.add(L"table-name", table.place(), {{L"table", table.text.name}, {L"family", similar}});
}

class FamilyCheck final {
public:
  FamilyCheck(const SiteTable& table, const Family& family, Findings& findings)
      : table_(table), text_(table.text), family_(family), findings_(findings) {}

  void run() {
    if (text_.rows.empty() && !family_.mayBeEmpty)
      findings_.add(L"table-without-rows", table_.place(), {{L"table", text_.name}});
    for (const Column& column : family_.columns)
      checkColumn(column);
    if (family_.numbersFrom > 0)
      for (int column = family_.numbersFrom; column <= text_.columnCount(); ++column)
        checkNumbers(column);
    checkUnique();
  }

private:
  void checkColumn(const Column& column) {
    const int position = text_.columnOf(column.name);
    if (position == 0) {
      std::vector<std::wstring> unknown;
      for (const std::wstring& name : text_.columns)
        if (std::ranges::none_of(family_.columns, [&name](const Column& each) {
              return equalsOrdinalNoCase(each.name, name);
            }))
          unknown.push_back(name);
      findings_.add(
          L"table-column", table_.place(1),
          {{L"table", text_.name},
           {L"column", column.name},
           {L"similar", didYouMean(similarName(column.name, unknown))}});
      return;
    }
    if (column.content == maybeNumber || column.content == filledNumber) checkNumbers(position);
    if (column.content == filledText || column.content == filledNumber) checkFilled(position);
  }

  void checkNumbers(int column) {
    for (const TableText::Row& row : text_.rows)
      static_cast<void>(numberAt(table_, row, column, findings_));
  }

  void checkFilled(int column) {
    for (const TableText::Row& row : text_.rows)
      if (brenvolt::trimView(row.cell(column)).empty())
        findings_.add(
            L"table-cell-empty", table_.place(row.number, column),
            {{L"column", text_.columns[static_cast<std::size_t>(column) - 1]}});
  }

  void checkUnique() {
    if (family_.unique.empty()) return;
    std::vector<int> columns;
    std::wstring names;
    for (const wchar_t* name : family_.unique) {
      const int column = text_.columnOf(name);
      if (column == 0) return;
      columns.push_back(column);
      names += (names.empty() ? L"" : L", ") + std::wstring(name);
    }
    std::unordered_map<std::wstring, int> seen;
    seen.reserve(text_.rows.size());
    for (const TableText::Row& row : text_.rows) {
      std::wstring keyText;
      for (const int column : columns)
        keyText += toUpper(brenvolt::trimView(row.cell(column))) + L"\n";
      const auto [place, isNew] = seen.try_emplace(keyText, row.number);
      if (!isNew)
        findings_.add(
            L"table-key-twice", table_.place(row.number, columns.front()), {row.cell(columns.front())},
            {{L"columns", names}, {L"row", formatInt(place->second)}});
    }
  }

  const SiteTable& table_;
  const TableText& text_;
  const Family& family_;
  Findings& findings_;
};

} // namespace

std::optional<double> numberAt(
    const SiteTable& table, const TableText::Row& row, int column, Findings& findings) {
  const std::wstring& text = row.cell(column);
  if (brenvolt::trimView(text).empty()) return std::nullopt;
  if (const std::optional<double> number = brenvolt::plainNumber(text)) return number;
  const bool hasComma = text.find(L',') != std::wstring::npos &&
                        brenvolt::plainNumber(brenvolt::replaceAll(text, L",", L".")).has_value();
  findings.add(
      hasComma ? L"table-decimal-comma" : L"table-number", table.place(row.number, column), {text},
      {{L"text", text}, {L"read", brenvolt::formatTrimmed(brenvolt::toDouble(text))}});
  return std::nullopt;
}

void checkTableForms(const TableSet& tables, Findings& findings) {
  for (const SiteTable& table : tables.tables) {
    if (const Family* family = familyOf(table.text.name))
      FamilyCheck(table, *family, findings).run();
    else
      checkName(table, findings);
  }
}

// Electrical codes and which tables they have.

const TableText::Row* ElectricalCode::rowOf(std::wstring_view setting) const {
  if (options == nullptr) return nullptr;
  const int column = options->text.columnOf(L"CODE");
  if (column == 0) return nullptr;
  const auto found = std::ranges::find_if(options->text.rows, [&](const TableText::Row& row) {
    return equalsOrdinalNoCase(row.cell(column), setting);
  });
  return found == options->text.rows.end() ? nullptr : &*found;
}

const std::wstring& ElectricalCode::defaultOf(std::wstring_view setting) const {
  static const std::wstring none;
  const TableText::Row* row = rowOf(setting);
  const int column = row == nullptr ? 0 : options->text.columnOf(L"DEFAULT");
  return column == 0 ? none : row->cell(column);
}

std::vector<std::wstring> ElectricalCode::listOf(std::wstring_view setting) const {
  const TableText::Row* row = rowOf(setting);
  const int column = row == nullptr ? 0 : options->text.columnOf(L"LIST");
  return column == 0 ? std::vector<std::wstring>() : brenvolt::splitUntilEmpty(row->cell(column), L';');
}

std::vector<ElectricalCode> codesOf(const TableSet& tables, std::wstring_view codeInUse) {
  std::vector<ElectricalCode> codes;
  for (const SiteTable& table : tables.tables) {
    const std::wstring& name = table.text.name;
    if (equalsOrdinalNoCase(name, L"OPT")) codes.push_back({L"", &table});
    if (toUpper(name).starts_with(L"OPT_")) codes.push_back({name.substr(4), &table});
  }
  const bool isThere = std::ranges::any_of(
      codes, [codeInUse](const ElectricalCode& each) { return equalsOrdinalNoCase(each.name, codeInUse); });
  if (!isThere && !codeInUse.empty())
    codes.push_back({std::wstring(codeInUse), tables.resolve(L"OPT", codeInUse)});
  return codes;
}

namespace {

/// What a user can choose: the list of a setting, else its default alone.
std::vector<std::wstring> choicesOf(const ElectricalCode& electrical, std::wstring_view setting) {
  std::vector<std::wstring> choices = electrical.listOf(setting);
  if (choices.empty()) choices = {electrical.defaultOf(setting)};
  return choices;
}

} // namespace

void checkFamilies(const TableSet& tables, const std::vector<ElectricalCode>& codes, Findings& findings) {
  struct Need {
    const wchar_t* family;
    enum class Of { code, metalAndStandard } of;
    const wchar_t* use; ///< what is missing without it
  };
  using enum Need::Of;
  static constexpr Need needs[] = {
      {L"OPT", code, L"defaults and choices"},
      {L"FILL", code, L"derating for conductors in a raceway"},
      {L"MOTOR", code, L"motors to choose from"},
      {L"FEED", code, L"loads to choose from"},
      {L"MOTOR_I_DESC", code, L"protective components"},
      {L"MOTOR_I_CALC", code, L"values of protective components"},
      {L"MOTOR_I_MAP", code, L"ratings of protective components"},
      {L"AMP", metalAndStandard, L"sizes of wires"},
      {L"INSUL", metalAndStandard, L"insulations to choose from"},
      {L"XL&R", metalAndStandard, L"voltage drop"},
      {L"AMPG", metalAndStandard, L"grounding conductors"}};
  const auto check = [&](const ElectricalCode& electrical, const Need& need, const std::wstring& metal,
                         const std::wstring& standard) {
    using Names = brenvolt::ZanDbReaderUtils;
    const std::wstring own = Names::ComposeTableName(need.family, metal, standard, electrical.name);
    if (tables.find(own) != nullptr) return;
    const SiteTable* borrowed = tables.resolve(need.family, metal, standard, electrical.name);
    FindingPlace place =
        electrical.options == nullptr ? FindingPlace{.file = L"tables"} : electrical.options->place();
    if (borrowed != nullptr)
      findings.add(
          L"table-borrowed", place,
          {{L"table", own}, {L"code", electrical.name}, {L"borrowed", borrowed->text.name}});
    else if (tables.isWhole)
      findings.add(
          L"table-missing", place, {{L"table", own}, {L"code", electrical.name}, {L"use", need.use}});
  };
  for (const ElectricalCode& electrical : codes) {
    std::vector<std::wstring> metals = choicesOf(electrical, L"W_METAL");
    std::erase(metals, std::wstring());
    for (const Need& need : needs) {
      if (need.of == code)
        check(electrical, need, {}, {});
      else
        for (const std::wstring& metal : metals)
          for (const std::wstring& standard : choicesOf(electrical, L"W_STD"))
            check(electrical, need, metal, standard);
    }
  }
  // One for all codes; without it no part that a user chose is kept.
  if (!codes.empty() && tables.isWhole && tables.find(L"CATALOGSEL") == nullptr)
    findings.add(
        L"table-missing", {.file = L"tables"},
        {{L"table", L"CATALOGSEL"}, {L"code", codes.front().name}, {L"use", L"the parts that users choose"}});
}

} // namespace circuits
