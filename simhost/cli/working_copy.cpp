// Copying what a session works on.
#include "simhost/cli/working_copy.h"

#include "simhost/host/errors.h"
#include "simhost/site/project_database.h"
#include "simhost/site/site_database.h"

#include <cstdlib>
#include <system_error>

namespace simhost {

namespace fs = std::filesystem;

namespace {

void copyFile(const fs::path& from, const fs::path& to) {
  std::error_code error;
  fs::copy_file(from, to, fs::copy_options::overwrite_existing, error);
  if (error) throw CannotWrite(to.string() + ": " + error.message());
}

void copyProject(const fs::path& project, const fs::path& copy) {
  std::error_code error;
  fs::remove(copy, error);
  if (fs::is_directory(project, error))
    importProject(project, copy);
  else if (fs::exists(project, error))
    copyFile(project, copy);
  else
    throw BadInput(project.string() + ": no such project");
}

fs::path temporaryFolder() {
  std::string name = (fs::temp_directory_path() / "brenvolt-XXXXXX").string();
  if (::mkdtemp(name.data()) == nullptr) throw CannotWrite(name + ": cannot be created");
  return name;
}

} // namespace

WorkingCopy::WorkingCopy(
    const std::string& folder, const std::string& workbook, const std::string& site,
    const std::string& project)
    : folder_(folder.empty() ? temporaryFolder() : fs::path(folder)), isTemporary_(folder.empty()) {
  try {
    fill(workbook, site, project);
  } catch (...) {
    // The destructor does not run for what was not made.
    std::error_code error;
    if (isTemporary_) fs::remove_all(folder_, error);
    throw;
  }
}

WorkingCopy::~WorkingCopy() {
  std::error_code error;
  if (isTemporary_) fs::remove_all(folder_, error);
}

void WorkingCopy::fill(const std::string& workbook, const std::string& site, const std::string& project) {
  std::error_code error;
  fs::create_directories(folder_, error);
  if (error) throw CannotWrite(folder_.string() + ": " + error.message());
  copyFile(workbook, this->workbook());
  // Saved configurations are in the folder of the workbook; an earlier session's must not be used for it.
  const fs::path histories = fs::path(this->workbook()).replace_extension(".xml");
  fs::remove(histories, error);
  if (const fs::path own = fs::path(workbook).replace_extension(".xml"); fs::exists(own, error))
    copyFile(own, histories);
  database_ = siteDataSource(site);
  if (fs::exists(database_, error)) {
    const fs::path copy = folder_ / "engineering.db";
    copyFile(database_, copy);
    database_ = copy.string();
  }
  if (!project.empty()) copyProject(project, this->project());
}

std::string WorkingCopy::addProject(const std::string& project) const {
  std::error_code error;
  for (int number = 2;; ++number) {
    const fs::path copy = folder_ / ("project-" + std::to_string(number) + ".db");
    if (fs::exists(copy, error)) continue;
    copyProject(project, copy);
    return copy.string();
  }
}

} // namespace simhost
