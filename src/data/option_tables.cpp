#include "data/option_tables.h"

#include "data/table_query.h"
#include "host/lisp_symbols.h"
#include "text/compare.h"
#include "text/format.h"
#include "text/numbers.h"
#include "text/split.h"

namespace brenvolt {

namespace {

constexpr std::wstring_view fullNameStatement = L"SELECT [DEFAULT] FROM [%s] WHERE [CODE]='FULLNAME'";

bool isOptionTable(std::wstring_view name) {
  const std::wstring_view base = ZanDbReaderUtils::TableBaseName(ZanTableKind::options);
  return name.size() >= base.size() && equalsOrdinalNoCase(name.substr(0, base.size()), base);
}

} // namespace

ZanOptTableReader::ZanOptTableReader(ZanOleDbConnection* connection)
    : ZanDbBaseService(connection), code_(getCodeStandard().value_or(std::wstring())) {}

void ZanOptTableReader::SetCode(std::wstring_view code) {
  code_ = code;
  settings_.clear();
}

bool ZanOptTableReader::GetOptions() {
  std::wstring table;
  if (!utils().ResolveTable(table, ZanTableKind::options, code_)) return false;
  TableQuery query(connection());
  if (!query.run(L"SELECT [CODE], [DEFAULT], [LIST] FROM [%s]", {table})) return false;
  while (query.next())
    settings_.try_emplace(toUpper(query.text(1)), Setting{query.text(2), query.text(3)});
  return true;
}

bool ZanOptTableReader::GetValue(std::wstring_view code, std::wstring_view field, std::wstring& value) const {
  value.clear();
  if (!equalsOrdinalNoCase(field, optionfield::defaultValue)) return false;
  const auto setting = settings_.find(toUpper(code));
  if (setting == settings_.end()) return false;
  value = setting->second.defaultValue;
  return true;
}

std::wstring ZanOptTableReader::defaultOf(std::wstring_view code) const {
  std::wstring value;
  GetValue(code, optionfield::defaultValue, value);
  return value;
}

bool ZanOptTableReader::GetList(std::wstring_view code, std::vector<std::wstring>& values) const {
  values.clear();
  const auto setting = settings_.find(toUpper(code));
  if (setting == settings_.end()) return false;
  values = splitUntilEmpty(setting->second.list, L';');
  return true;
}

double ZanOptTableReader::GetFlaMultiplier() {
  std::wstring value;
  if (!GetOptions() || !GetValue(option::flaMultiplier, optionfield::defaultValue, value))
    return fallbackFlaMultiplier;
  return toDouble(value);
}

bool ZanOptTableReader::ReadFullName(std::wstring_view code, std::wstring& name) const {
  std::wstring table;
  TableQuery query(connection());
  if (!utils().ResolveTable(table, ZanTableKind::options, code)) return false;
  if (!query.runForRow(fullNameStatement, {table})) return false;
  name = query.text(1);
  return true;
}

bool ZanOptTableReader::ReadAllStandards(
    std::map<std::wstring, std::wstring>& standards, bool withCurrent) const {
  standards.clear();
  if (!isConnected()) return false;
  ZanOleDbTables tables;
  std::vector<std::wstring> names;
  if (!tables.Open(*connection(), L"TABLE")) return false;
  tables.GetTableList(names);

  const bool wantsCurrent = withCurrent && !code_.empty();
  bool currentFound = false;
  for (const std::wstring& name : names) {
    if (!isOptionTable(name)) continue;
    const std::vector<std::wstring> tokens = splitKeepingEmpty(name, L'_');
    const bool hasCode = tokens.size() == 2;
    if (wantsCurrent && hasCode && equalsOrdinalNoCase(tokens[1], code_)) currentFound = true;
    // Any table may begin with these letters; one without the columns is not an option table.
    TableQuery query(connection(), Refusal::answer);
    if (!query.runForRow(fullNameStatement, {name})) continue;
    const std::wstring fullName = query.text(1);
    // Two equal full names: the first in the table list stays.
    standards.try_emplace(
        hasCode && fullName.empty() ? tokens[1] : fullName, hasCode ? tokens[1] : std::wstring());
  }
  if (wantsCurrent && !currentFound) {
    const std::wstring missing = ZanDbReaderUtils::ComposeTableName(
        ZanDbReaderUtils::TableBaseName(ZanTableKind::options), {}, {}, code_);
    standards.try_emplace(code_ + L' ' + formatText(missingTableText_, {std::wstring_view(missing)}), code_);
  }
  return true;
}

} // namespace brenvolt
