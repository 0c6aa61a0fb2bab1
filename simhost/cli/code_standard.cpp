// The standards with tables of their own, against a word.
#include "simhost/cli/code_standard.h"

#include "data/option_tables.h"
#include "text/compare.h"
#include "text/encoding.h"

#include <map>

namespace simhost {

std::optional<std::string> codeStandardFault(
    brenvolt::ZanOleDbConnection& connection, const std::wstring& code) {
  if (brenvolt::equalsOrdinalNoCase(code, brenvolt::defaultCode)) return std::nullopt;
  std::map<std::wstring, std::wstring> standards;
  static_cast<void>(brenvolt::ZanOptTableReader(&connection).ReadAllStandards(standards, false));
  std::string known;
  for (const auto& [name, tablesOf] : standards) {
    if (brenvolt::equalsOrdinalNoCase(code, tablesOf)) return std::nullopt;
    if (!tablesOf.empty()) known.append(known.empty() ? "" : ", ").append(brenvolt::toUtf8(tablesOf));
  }
  return "there are no tables of \"" + brenvolt::toUtf8(code) + "\"; there are those of " + known;
}

} // namespace simhost
