#include "simhost/cli/import_report.h"

#include "simhost/host/errors.h"
#include "text/encoding.h"
#include "text/numbers.h"
#include "text/split.h"

#include <unistd.h>

#include <cstdio>

namespace simhost {

namespace {

using brenvolt::toUtf8;

OutputTable tableOf(const brenvolt::ImportReport& report) {
  OutputTable table;
  table.columns = {
      {"table", "Table"}, {"rows", "Rows", ColumnKind::number}, {"input", "From"}, {"notes", "Not imported"}};
  for (const brenvolt::ImportedTable& imported : report.tables)
    table.rows.push_back(
        {imported.name, brenvolt::formatInt(imported.rows), imported.input,
         brenvolt::join(imported.notes, L"; ")});
  return table;
}

} // namespace

void showImportProgress(std::size_t index, std::size_t count, const std::wstring& table) {
  if (::isatty(STDERR_FILENO) == 0) return;
  std::fprintf(stderr, "\r\x1b[K%zu/%zu %s", index + 1, count, toUtf8(table).c_str());
  if (index + 1 == count) std::fputs("\r\x1b[K", stderr);
}

ExitCode reportImport(
    const brenvolt::ImportReport& report, const OutputOptions& output, const std::string& remedyForCells) {
  if (report.isDone()) {
    printOut(formatTable(tableOf(report), output.form()));
    return ExitCode::done;
  }
  std::string message;
  for (const std::wstring& error : report.errors)
    message.append(message.empty() ? "" : "\n").append(toUtf8(error));
  if (report.badCells > 0) message += "\nNothing was written. " + remedyForCells;
  if (report.fault == brenvolt::ImportFault::cannotWrite) throw CannotWrite(message);
  throw BadInput(message);
}

} // namespace simhost
