// Both read the option tables and open no dialog.
#include "plugin/handlers/code_standard_description.h"

#include "data/option_tables.h"
#include "host/lisp_symbols.h"
#include "host/resources.h"
#include "plugin/process_record.h"

namespace brenvolt {

ResultList codeStandardDescription(const ResultList&) {
  const std::optional<std::wstring> code = getCodeStandard();
  if (!code || code->empty()) return {};
  ZanOptTableReader reader;
  std::wstring name;
  if (!reader.Open(lentTables().observer) || !reader.ReadFullName(*code, name)) return {};
  ListBuilder answer;
  return answer.beginList().addText(name).endList().take();
}

void readAllCodeStandards(std::map<std::wstring, std::wstring>& standards, bool withCurrent) {
  standards.clear();
  ZanOptTableReader reader;
  if (!reader.Open(lentTables().observer)) return;
  if (withCurrent) {
    reader.SetCode(getCodeStandard().value_or(std::wstring()));
    const ResourceScope resources;
    if (const auto text = findText(TextId::standardWithoutTable)) reader.SetMissingTableText(*text);
  }
  static_cast<void>(reader.ReadAllStandards(standards, withCurrent));
}

} // namespace brenvolt
