// Databases of projects: creates them from a site's empty tables, and recognises them.
#pragma once

#include <filesystem>
#include <string>

namespace simhost {

/// Makes the database of an empty project from the tables in the folder `project` of the site. Throws BadInput when the
/// site has none and when the file exists: what a project holds is never written over.
void makeProject(const std::filesystem::path& site, const std::filesystem::path& database);

/// Makes a project's database from a folder of its tables. Throws BadInput.
void importProject(const std::filesystem::path& tables, const std::filesystem::path& database);

/// Throws BadInput unless the file is the database of a project.
void checkProject(const std::string& database);

} // namespace simhost
