#include "circuits/check/table_set.h"

#include "circuits/check/check_session.h"
#include "circuits/check/delimited_text.h"
#include "data/table_names.h"
#include "platform/tables.h"
#include "simhost/host/files.h"
#include "text/compare.h"
#include "text/encoding.h"
#include "text/split.h"

#include <algorithm>
#include <system_error>

namespace circuits {

namespace fs = std::filesystem;
using brenvolt::equalsOrdinalNoCase;
using brenvolt::fromUtf8;

namespace {

void readFolder(const SiteModel& site, const fs::path& folder, TableSet& set, Findings& findings) {
  std::vector<fs::path> files;
  std::error_code error;
  for (const fs::directory_entry& entry : fs::directory_iterator(folder, error))
    if (equalsOrdinalNoCase(fromUtf8(entry.path().extension().string()), L".csv"))
      files.push_back(entry.path());
  std::sort(files.begin(), files.end());
  for (const fs::path& path : files) {
    SiteTable table;
    table.file = site.shownFile(path);
    table.text.name = fromUtf8(path.stem().string());
    const std::optional<std::string> bytes = simhost::readFile(path);
    if (!bytes) {
      findings.add(L"table-unreadable", {.file = table.file}, {{L"reason", L"the file cannot be opened"}});
      set.isWhole = false;
    } else if (readDelimited(*bytes, table.file, table.text, findings)) {
      set.tables.push_back(std::move(table));
    } else {
      set.isWhole = false;
    }
  }
}

/// `shown` names the source in findings.
void readSource(
    const std::wstring& source, const std::wstring& shown, const CheckSession& session, TableSet& set,
    Findings& findings) {
  brenvolt::ZanOleDbConnection connection;
  const std::wstring init = brenvolt::ZanOleDbHelper::FormatConnectString(source, L"", L"Mode=Read");
  if (connection.OpenFromInitializationString(init, false, true) < 0) {
    findings.add(
        L"table-unreadable", {.file = shown},
        {{L"reason", session.shownText(connection.ErrorInfo().GetErrorInfo(false))}});
    set.isWhole = false;
    return;
  }
  for (const std::wstring& name : tableNames(connection)) {
    SiteTable table;
    table.file = shown;
    table.sheet = name;
    std::wstring error;
    if (readTableText(connection, name, table.text, error)) {
      table.text.name = name;
      set.tables.push_back(std::move(table));
    } else {
      findings.add(L"table-unreadable", {.file = shown, .sheet = name}, {{L"reason", error}});
      set.isWhole = false;
    }
  }
}

/// Without the password, which a connection string may hold.
std::wstring withoutPassword(const std::wstring& source) {
  std::wstring shown;
  for (std::wstring part : brenvolt::splitSkippingEmpty(source, L';')) {
    const std::wstring key = brenvolt::toUpper(brenvolt::trim(part.substr(0, part.find(L'='))));
    if (key == L"PWD" || key == L"PASSWORD") continue;
    shown += (shown.empty() ? L"" : L";") + part;
  }
  return shown;
}

/// The tables that the site's LISP names, empty where they are the site's own.
std::wstring namedSource(CheckSession& session) {
  constexpr const wchar_t* function = L"c:zan_bv_figure_mccdb_fnam";
  if (session.answersDatabase(function)) return {};
  const CheckSession::Answer answer = session.call(function, {});
  if (!answer.value || !answer.value->isString()) return {};
  std::wstring error;
  const std::wstring& source = answer.value->asString();
  return source == fromUtf8(session.database(error).string()) ? std::wstring() : source;
}

/// The copy that a check works on: reading the file itself could leave companions beside it.
std::wstring copyOf(const fs::path& own, CheckSession& session) {
  std::wstring error;
  const fs::path copy = session.database(error);
  return fromUtf8((copy.empty() ? own : copy).string());
}

} // namespace

FindingPlace SiteTable::place(int row, int column) const {
  FindingPlace place = {.file = file, .sheet = sheet, .row = row, .column = column};
  const auto index = static_cast<std::size_t>(column) - 1;
  if (column > 0 && index < text.columns.size()) place.columnName = text.columns[index];
  return place;
}

const SiteTable* TableSet::find(std::wstring_view name) const {
  const auto found = std::ranges::find_if(
      tables, [name](const SiteTable& each) { return equalsOrdinalNoCase(each.text.name, name); });
  return found == tables.end() ? nullptr : &*found;
}

const SiteTable* TableSet::resolve(std::wstring_view family, std::wstring_view code) const {
  return resolve(family, {}, {}, code);
}

const SiteTable* TableSet::resolve(
    std::wstring_view family, std::wstring_view metal, std::wstring_view standard,
    std::wstring_view code) const {
  for (const std::wstring_view each : {code, std::wstring_view(), brenvolt::defaultCode})
    if (const SiteTable* table =
            find(brenvolt::ZanDbReaderUtils::ComposeTableName(family, metal, standard, each)))
      return table;
  return nullptr;
}

std::vector<std::wstring> TableSet::names() const {
  std::vector<std::wstring> names;
  for (const SiteTable& table : tables)
    names.push_back(table.text.name);
  return names;
}

TableSet readTables(const SiteModel& site, CheckSession& session, CheckDepth depth, Findings& findings) {
  const std::size_t before = findings.count();
  TableSet set;
  std::error_code error;
  const fs::path own = site.folder / "engineering.db";
  const fs::path folder = site.folder / "tables";
  const std::wstring source = namedSource(session);
  if (!source.empty())
    readSource(
        source, source.starts_with(L"odbc:") ? withoutPassword(source) : site.shownFile(source), session, set,
        findings);
  else if (fs::exists(own, error))
    readSource(copyOf(own, session), site.shownFile(own), session, set, findings);
  else if (fs::is_directory(folder, error))
    readFolder(site, folder, set, findings);
  else {
    findings.add(L"tables-missing", {.file = L"tables"}, {});
    set.isWhole = false;
  }
  // A build imports the tables by rules of its own; for a quick check that takes too long.
  std::wstring reason;
  const bool isImported = depth == CheckDepth::whole && source.empty() && findings.count() == before;
  if (isImported && session.database(reason).empty())
    findings.add(L"table-unreadable", {.file = L"tables"}, {{L"reason", session.shownText(reason)}});
  return set;
}

} // namespace circuits
