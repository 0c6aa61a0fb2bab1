// The database of a site's engineering tables: kept by the site itself, or built from its tables into the user's cache.
#pragma once

#include <filesystem>
#include <string>

namespace simhost {

/// The file with the tables of the site in `site`:
/// - `engineering.db` of that folder, where it stands: a site that edits its tables by dialog keeps one;
/// - else one built from `tables/*.csv` of that folder, anew whenever a table is younger than it. It lies where the
///   environment's BRENVOLT_DB says, else in the user's cache, a folder for each site. Parts that the user saved in
///   CATALOGSEL go over from the database before; a file of which they cannot be read is kept beside it.
/// It is built beside itself and renamed, by one process at a time, so that several may ask at once. Throws BadInput
/// for a folder without tables or a table that cannot be read, naming file and place, and CannotWrite.
[[nodiscard]] std::filesystem::path siteDatabase(const std::filesystem::path& site);

/// The data source of the site's engineering tables: the server whose connection `site.lsp` names by
/// `(setq site-connection "odbc:...")` at its top level, else the file of `siteDatabase`. Throws as that does.
[[nodiscard]] std::string siteDataSource(const std::filesystem::path& site);

/// Whether the site has tables of its own at all, as files or on a server; one that has none keeps them elsewhere.
[[nodiscard]] bool hasSiteTables(const std::filesystem::path& site);

} // namespace simhost
