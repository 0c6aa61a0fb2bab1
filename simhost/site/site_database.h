// The database of a site's engineering tables: kept by the site itself, or built from its tables into the user's cache.
#pragma once

#include <filesystem>
#include <string>

namespace simhost {

/// The file with the tables of the site in `site`:
/// - `engineering.db` of that folder, if it exists: a site that edits its tables by dialog keeps one;
/// - else one built from `tables/*.csv` of that folder, again whenever a table is newer. Its path is that
///   of the environment's BRENVOLT_DB, else in the user's cache, a folder for each site. Parts that the user saved in
///   CATALOGSEL are copied from the previous database; a file from which they cannot be read is kept.
/// It is built as a temporary file and renamed, by one process at a time, so that several may run. Throws BadInput
/// for a folder without tables or a table that cannot be read, naming file and place, and CannotWrite.
[[nodiscard]] std::filesystem::path siteDatabase(const std::filesystem::path& site);

/// The data source of the site's engineering tables: the server whose connection `site.lsp` names by
/// `(setq site-connection "odbc:...")` at its top level, else the file of `siteDatabase`. Throws as that does.
[[nodiscard]] std::string siteDataSource(const std::filesystem::path& site);

/// Whether the site has tables of its own at all, as files or on a server; one that has none keeps them elsewhere.
[[nodiscard]] bool hasSiteTables(const std::filesystem::path& site);

} // namespace simhost
