// The standards with tables of their own, against a word.
#include "simhost/site/code_standard.h"

#include "data/table_names.h"
#include "simhost/lisp/evaluator.h"
#include "text/compare.h"
#include "text/encoding.h"

#include <set>
#include <vector>

namespace simhost {

std::wstring sessionStandard(const lisp::Interpreter& interpreter) {
  const lisp::Value code = interpreter.value(codeStandardSymbol);
  return code.isString() ? code.asString() : std::wstring();
}

std::optional<std::string> codeStandardFault(
    brenvolt::ZanOleDbConnection& connection, const std::wstring& code) {
  if (brenvolt::equalsOrdinalNoCase(code, brenvolt::defaultCode)) return std::nullopt;
  brenvolt::ZanOleDbTables tables;
  std::vector<std::wstring> names;
  if (tables.Open(connection, L"TABLE")) tables.GetTableList(names);
  std::set<std::wstring> codes;
  for (const std::wstring& name : names) {
    std::wstring tablesOf = brenvolt::ZanDbReaderUtils::CodeOfTable(name);
    if (brenvolt::equalsOrdinalNoCase(code, tablesOf)) return std::nullopt;
    if (!tablesOf.empty()) codes.insert(brenvolt::toUpper(tablesOf));
  }
  std::string known;
  for (const std::wstring& each : codes)
    known.append(known.empty() ? "" : ", ").append(brenvolt::toUtf8(each));
  return "no tables of \"" + brenvolt::toUtf8(code) + "\" exist; choose one of " + known;
}

} // namespace simhost
