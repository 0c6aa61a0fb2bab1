// Finds and builds the database of a site.
#include "simhost/site/site_database.h"

#include "data/engineering_columns.h"
#include "platform/file_lock.h"
#include "platform/file_replace.h"
#include "simhost/host/errors.h"
#include "simhost/host/files.h"
#include "simhost/lisp/errors.h"
#include "simhost/lisp/reader.h"
#include "text/compare.h"
#include "text/encoding.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <string>
#include <system_error>
#include <vector>

namespace simhost {

namespace fs = std::filesystem;
using brenvolt::fromUtf8;
using brenvolt::toUtf8;

namespace {

constexpr const char* databaseName = "engineering.db";

std::string environmentText(const char* name) {
  const char* text = std::getenv(name);
  return text == nullptr ? std::string() : std::string(text);
}

fs::path cacheFolder() {
  if (const std::string folder = environmentText("XDG_CACHE_HOME"); !folder.empty()) return folder;
  if (const std::string home = environmentText("HOME"); !home.empty()) return fs::path(home) / ".cache";
  return fs::temp_directory_path();
}

/// FNV-1a: distinguishes two sites with the same name, and is the same in every run.
std::string fingerprint(const std::string& text) {
  std::uint64_t hash = 14695981039346656037u;
  for (const char c : text)
    hash = (hash ^ static_cast<unsigned char>(c)) * 1099511628211u;
  std::string digits;
  for (int shift = 60; shift >= 0; shift -= 4)
    digits += "0123456789abcdef"[(hash >> shift) & 15u];
  return digits;
}

fs::path builtDatabase(const fs::path& site) {
  if (const std::string file = environmentText("BRENVOLT_DB"); !file.empty()) return file;
  const fs::path whole = fs::weakly_canonical(site);
  const std::string folder = whole.filename().string() + "-" + fingerprint(whole.string());
  return cacheFolder() / "brenvolt" / folder / databaseName;
}

/// When the youngest table, or the list of the tables, was changed; nothing without a table.
std::optional<fs::file_time_type> lastChange(const fs::path& tables) {
  std::error_code error;
  std::optional<fs::file_time_type> youngest;
  for (const fs::directory_entry& entry : fs::directory_iterator(tables, error)) {
    if (entry.path().extension() != ".csv") continue;
    const fs::file_time_type time = entry.last_write_time(error);
    if (!youngest || time > *youngest) youngest = time;
  }
  if (!youngest) return std::nullopt;
  return std::max(*youngest, fs::last_write_time(tables, error));
}

std::string joined(const std::vector<std::wstring>& lines) {
  std::string text;
  for (const std::wstring& line : lines)
    text.append(text.empty() ? "" : "\n").append(toUtf8(line));
  return text;
}

/// What the plug-in writes for the user. It is copied from the database that a new one replaces.
constexpr std::wstring_view savedTable = L"CATALOGSEL";

/// Tells when the database was built. The database itself cannot: it is as young as what the user saved last.
fs::path stampOf(const fs::path& database) {
  return database.string() + ".built";
}

/// A name that is free, for a database that cannot be read: what is in it may still be saved by hand.
fs::path freeName(const fs::path& database) {
  for (int number = 1;; ++number) {
    fs::path name = database.string() + ".damaged-" + std::to_string(number);
    if (!fs::exists(name)) return name;
  }
}

void takeOverSavedTable(const fs::path& from, const fs::path& to) {
  std::error_code error;
  if (!fs::exists(from, error)) return;
  if (brenvolt::replaceTable(fromUtf8(to.string()), fromUtf8(from.string()), savedTable).isDone()) return;
  const fs::path kept = freeName(from);
  fs::copy_file(from, kept, error);
  std::fprintf(
      stderr, "brenvolt: %s: saved parts cannot be read; the file is kept as %s\n", from.string().c_str(),
      kept.string().c_str());
}

/// Whether the database was built since the tables' last `change`.
bool isFresh(const fs::path& database, fs::file_time_type change) {
  std::error_code error;
  const fs::path stamp = stampOf(database);
  return fs::exists(database, error) && fs::exists(stamp, error) &&
         fs::last_write_time(stamp, error) >= change;
}

void build(const fs::path& tables, const fs::path& database) {
  std::error_code error;
  brenvolt::FileReplacement file(fromUtf8(database.string()));
  if (file.fault()) throw CannotWrite(database.string() + ": " + toUtf8(file.fault()->reason));
  const std::wstring beside = file.nameToWrite();
  const fs::file_time_type begin = fs::file_time_type::clock::now();
  const brenvolt::ImportReport report =
      brenvolt::importTables(beside, {fromUtf8(tables.string())}, brenvolt::engineeringImport());
  if (!report.isDone()) throw BadInput(joined(report.errors));
  takeOverSavedTable(database, toUtf8(beside));
  // The log of the removed file must not be taken for the new one's.
  for (const char* companion : {"-wal", "-shm"})
    fs::remove(database.string() + companion, error);
  if (const auto fault = file.commit()) throw CannotWrite(database.string() + ": " + toUtf8(fault->reason));
  const fs::path stamp = stampOf(database);
  if (const std::string reason = replaceFile(stamp, {}); !reason.empty()) throw CannotWrite(reason);
  // As old as the begin of the work: a table that is changed meanwhile makes it be built again.
  fs::last_write_time(stamp, begin, error);
}

constexpr std::wstring_view connectionSymbol = L"site-connection";

bool isNamed(const lisp::Value& value, std::wstring_view name) {
  return value.isSymbol() && brenvolt::equalsOrdinalNoCase(value.asSymbol().name, name);
}

/// What `(setq ...)` gives the symbol of the connection; empty for any other form.
std::wstring connectionOf(const lisp::Value& form) {
  std::wstring connection;
  if (!form.isCons() || !isNamed(form.asCons().car(), L"setq")) return connection;
  lisp::Value rest = form.asCons().cdr();
  while (rest.isCons() && rest.asCons().cdr().isCons()) {
    const lisp::Cons& pair = rest.asCons().cdr().asCons();
    const bool isConnection = isNamed(rest.asCons().car(), connectionSymbol) && pair.car().isString();
    if (isConnection) connection = pair.car().asString();
    rest = lisp::Value(pair.cdr());
  }
  return connection;
}

/// Whether the bytes hold a word of ASCII letters, written in any case.
bool holdsNoCase(std::string_view bytes, std::wstring_view word) {
  const auto lower = [](wchar_t c) { return c >= L'A' && c <= L'Z' ? c - L'A' + L'a' : c; };
  return std::search(bytes.begin(), bytes.end(), word.begin(), word.end(), [&](char byte, wchar_t letter) {
           return lower(static_cast<unsigned char>(byte)) == lower(letter);
         }) != bytes.end();
}

/// The connection that the site's LISP names. The text is read and not run: subcommands on tables need no session with
/// the site.
std::string namedConnection(const fs::path& site) {
  const std::optional<std::string> bytes = readFile((site / "site.lsp").string());
  // Most sites name none, and their text is not parsed.
  if (!bytes || !holdsNoCase(*bytes, connectionSymbol)) return {};
  const std::wstring text = fromUtf8(*bytes);
  lisp::SymbolTable symbols;
  lisp::Reader reader(symbols, text, L"site.lsp", 0);
  std::wstring connection;
  try {
    while (const std::optional<lisp::Value> form = reader.next())
      if (std::wstring named = connectionOf(*form); !named.empty()) connection = std::move(named);
  } catch (const lisp::LispError&) {
    // The session that runs the file reports what is wrong with it.
  }
  return toUtf8(connection);
}

} // namespace

std::string siteDataSource(const fs::path& site) {
  const std::string connection = namedConnection(site);
  return connection.empty() ? siteDatabase(site).string() : connection;
}

bool hasSiteTables(const fs::path& site) {
  std::error_code error;
  return fs::is_directory(site / "tables", error) || !namedConnection(site).empty();
}

fs::path siteDatabase(const fs::path& site) {
  std::error_code error;
  if (!fs::is_directory(site, error)) throw BadInput(site.string() + ": not the folder of a site");
  if (fs::exists(site / databaseName, error)) return site / databaseName;
  const fs::path tables = site / "tables";
  const std::optional<fs::file_time_type> change = lastChange(tables);
  if (!change) throw BadInput(site.string() + ": has neither " + databaseName + " nor tables/*.csv");
  fs::path database = builtDatabase(site);
  if (isFresh(database, *change)) return database;
  fs::create_directories(database.parent_path(), error);
  if (error) throw CannotWrite(database.parent_path().string() + ": " + error.message());
  // Large tables take their time: a waiting program waits for work that it would have to do itself.
  const brenvolt::FileLock lock(fromUtf8(database.string()), brenvolt::FileLock::wholeDay);
  if (lock.fault()) throw CannotWrite(database.string() + ": " + toUtf8(*lock.fault()));
  // Another process may have built it while this one waited.
  if (!isFresh(database, *change)) build(tables, database);
  return database;
}

} // namespace simhost
