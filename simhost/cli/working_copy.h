// What a replayed session may change, as copies in a folder: the workbook with its saved configurations, the engineering
// tables and the project database. So a session finds the site as it is, and leaves it so.
#pragma once

#include <filesystem>
#include <string>

namespace simhost {

class WorkingCopy final {
public:
  /// An empty `folder` means one that is removed with this object. A project that is a folder of tables becomes a
  /// database. Throws BadInput and CannotWrite.
  WorkingCopy(
      const std::string& folder, const std::string& workbook, const std::string& site,
      const std::string& project);
  WorkingCopy(const WorkingCopy&) = delete;
  WorkingCopy& operator=(const WorkingCopy&) = delete;
  ~WorkingCopy();

  [[nodiscard]] std::string workbook() const { return (folder_ / "zan_brenvolt.xls").string(); }
  /// The data source of the engineering tables. Tables on a server are shared by the firm: they are not copied.
  [[nodiscard]] const std::string& database() const { return database_; }
  [[nodiscard]] std::string project() const { return (folder_ / "project.db").string(); }
  /// A copy of another project, which the session opens later; its file. Throws BadInput and CannotWrite.
  [[nodiscard]] std::string addProject(const std::string& project) const;

private:
  void fill(const std::string& workbook, const std::string& site, const std::string& project);

  std::filesystem::path folder_;
  std::string database_;
  bool isTemporary_ = false;
};

} // namespace simhost
