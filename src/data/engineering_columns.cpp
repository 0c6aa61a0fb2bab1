#include "data/engineering_columns.h"

#include "text/compare.h"

#include <array>

namespace brenvolt {

namespace {

struct ColumnRule {
  std::wstring_view family; ///< a table's name is this, or begins with this and "_"
  std::wstring_view column; ///< empty: all columns from `first` on
  std::size_t first;
  ColumnUse use;
};

/// The first rule that fits is used. Longer family names precede those with which they begin.
constexpr std::array<ColumnRule, 13> rules{{
    {L"", L"ID", 1, ColumnUse::key},
    {L"AMPG", L"MAX", 1, ColumnUse::number},
    {L"AMP", L"", 3, ColumnUse::number},
    {L"INSUL", L"", 5, ColumnUse::numberAsText},
    {L"XL&R_DESC", L"", 1, ColumnUse::text},
    {L"XL&R", L"", 3, ColumnUse::numberPair},
    {L"FILL", L"MAX", 1, ColumnUse::limit},
    {L"FILL", L"FACTOR", 1, ColumnUse::numberAsText},
    {L"MOTOR_I_MAP", L"MAX", 1, ColumnUse::number},
    {L"MOTOR_I", L"", 1, ColumnUse::text},
    {L"MOTOR", L"FLA (A)", 1, ColumnUse::numberAsText},
    {L"FEED", L"FLA (A)", 1, ColumnUse::numberAsText},
    {L"CATALOGSEL", L"UI_SEL", 1, ColumnUse::number},
}};

bool isOfFamily(std::wstring_view table, std::wstring_view family) {
  if (family.empty()) return true;
  if (!equalsOrdinalNoCase(table.substr(0, family.size()), family)) return false;
  return table.size() == family.size() || table[family.size()] == L'_';
}

} // namespace

ColumnUse engineeringColumnUse(std::wstring_view table, std::size_t column, std::wstring_view columnName) {
  for (const ColumnRule& rule : rules) {
    const bool isColumn =
        rule.column.empty() ? column >= rule.first : equalsOrdinalNoCase(rule.column, columnName);
    if (isColumn && isOfFamily(table, rule.family)) return rule.use;
  }
  return ColumnUse::text;
}

ImportOptions engineeringImport() {
  ImportOptions options;
  options.columnUses = engineeringColumnUse;
  return options;
}

} // namespace brenvolt
