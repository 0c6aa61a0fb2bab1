#include "platform/statement_log.h"

#include "platform/table_engine.h"

#include "text/encoding.h"

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <string>

namespace brenvolt::tables {

void logStatement(std::wstring_view dataSource, std::wstring_view statement) {
  static const char* const file = std::getenv("BRENVOLT_STATEMENTS");
  if (file == nullptr || *file == '\0') return;
  std::string line = toUtf8(statement);
  std::replace_if(
      line.begin(), line.end(), [](char c) { return c == '\n' || c == '\r' || c == '\t'; }, ' ');
  // One write, so that lines of several programs do not mix.
  line = toUtf8(shownDataSource(dataSource)) + '\t' + line + '\n';
  std::ofstream(file, std::ios::binary | std::ios::app) << line << std::flush;
}

} // namespace brenvolt::tables
