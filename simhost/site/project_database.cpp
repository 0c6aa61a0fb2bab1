// What a project's database is made of.
#include "simhost/site/project_database.h"

#include "data/engineering_columns.h"
#include "platform/table_import.h"
#include "platform/tables.h"
#include "simhost/host/errors.h"
#include "simhost/site/open_database.h"
#include "text/encoding.h"

#include <system_error>

namespace simhost {

namespace fs = std::filesystem;
using brenvolt::fromUtf8;
using brenvolt::toUtf8;

void importProject(const fs::path& tables, const fs::path& database) {
  const brenvolt::ImportReport report = brenvolt::importTables(
      fromUtf8(database.string()), {fromUtf8(tables.string())}, brenvolt::engineeringImport());
  if (!report.isDone()) throw BadInput(toUtf8(report.errors.front()));
}

void makeProject(const fs::path& site, const fs::path& database) {
  std::error_code error;
  if (fs::exists(database, error))
    throw BadInput(database.string() + ": exists; open it, or choose another name");
  const fs::path tables = site / "project";
  if (!fs::is_directory(tables, error))
    throw BadInput(tables.string() + ": the site has no tables to begin a project with");
  importProject(tables, database);
}

void checkProject(const std::string& database) {
  std::error_code error;
  // Projects on a server have no file.
  if (!database.starts_with("odbc:") && !fs::is_regular_file(database, error))
    throw BadInput(database + ": no such project");
  brenvolt::ZanOleDbConnection connection;
  openDatabase(connection, database, DatabaseUse::read);
  brenvolt::ZanOleDbCommand command;
  command.SetConnection(&connection);
  command.SetCommandText(L"SELECT HDL FROM [BRENVOLT] WHERE DWGIX=''");
  if (command.Execute() != brenvolt::dbStatus::success)
    throw BadInput(database + ": not the database of a project: the table BRENVOLT is missing");
}

} // namespace simhost
