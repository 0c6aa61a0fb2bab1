// Inserting and deleting records by column and value: the statement is put together from parts that are checked one by
// one, so that no value can become a piece of statement.
#include "platform/statement_text.h"
#include "platform/table_engine.h"
#include "platform/tables.h"

#include "text/split.h"

#include <utility>

namespace brenvolt {

namespace {

std::wstring withoutBrackets(std::wstring_view name) {
  const bool bracketed = name.size() > 1 && name.front() == L'[' && name.back() == L']';
  return std::wstring(bracketed ? name.substr(1, name.size() - 2) : name);
}

/// The literal of a value of `Insert`: the text after the comparison in the format.
std::wstring literalFormat(std::wstring_view format) {
  return std::wstring(trimView(format, L"= "));
}

} // namespace

ZanOleDbDDLCommand::ZanOleDbDDLCommand(ZanOleDbConnection& connection) : connection_(connection) {}

void ZanOleDbDDLCommand::SetTable(std::wstring_view name) {
  table_ = withoutBrackets(name);
}

void ZanOleDbDDLCommand::EmptyAsNull(bool on) {
  emptyAsNull_ = on;
}

void ZanOleDbDDLCommand::AddSearchCol(
    std::wstring_view column, std::wstring_view format, std::wstring_view value) {
  search_.push_back({withoutBrackets(column), std::wstring(format), std::wstring(value)});
}

void ZanOleDbDDLCommand::AddColumn(
    std::wstring_view column, std::wstring_view format, std::wstring_view value) {
  values_.push_back({withoutBrackets(column), std::wstring(format), std::wstring(value)});
}

bool ZanOleDbDDLCommand::Insert() {
  std::wstring columns;
  std::wstring literals;
  std::vector<std::wstring> names{table_};
  std::vector<std::wstring> texts;
  for (const Column& column : values_) {
    if (!columns.empty()) {
      columns += L", ";
      literals += L", ";
    }
    columns += L"[%s]";
    names.push_back(column.name);
    if (emptyAsNull_ && column.value.empty()) {
      literals += L"NULL";
      continue;
    }
    literals += literalFormat(column.format);
    texts.push_back(column.value);
  }
  names.insert(names.end(), texts.begin(), texts.end());
  return run(L"INSERT INTO [%s] (" + columns + L") VALUES (" + literals + L")", names);
}

bool ZanOleDbDDLCommand::Delete() {
  std::wstring conditions;
  std::vector<std::wstring> parts{table_};
  for (const Column& column : search_) {
    conditions += conditions.empty() ? L" WHERE [%s]" : L" AND [%s]";
    parts.push_back(column.name);
    if (emptyAsNull_ && column.value.empty()) {
      conditions += L" IS NULL";
      continue;
    }
    conditions += column.format;
    parts.push_back(column.value);
  }
  return run(L"DELETE FROM [%s]" + conditions, parts);
}

bool ZanOleDbDDLCommand::run(const std::wstring& format, const std::vector<std::wstring>& parts) {
  error_.Clear();
  const StatementText statement = buildStatement(format, parts);
  search_.clear();
  values_.clear();
  if (!statement.isBuilt()) {
    error_.Set(statement.error);
    return false;
  }
  return connection_.run(statement.text, error_) != nullptr;
}

} // namespace brenvolt
