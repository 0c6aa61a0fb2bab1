// The description comes from the option table of the standard; without a standard, a database or the row the answer is
// nil.
#include "plugin/handlers/code_standard_description.h"

#include "data/option_tables.h"

namespace brenvolt {

ResultList codeStandardDescription(const ResultList&) {
  ZanOptTableReader reader;
  std::wstring name;
  if (reader.code().empty() || !reader.Open() || !reader.ReadFullName(reader.code(), name))
    return ResultList();
  ListBuilder list;
  return list.beginList().addText(name).endList().take();
}

} // namespace brenvolt
