#include "platform/table_import.h"

#include "platform/file_kind.h"
#include "platform/sqlite_database.h"
#include "platform/table_source.h"
#include "platform/table_writer.h"

#include "text/compare.h"
#include "text/encoding.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <memory>
#include <system_error>
#include <utility>

namespace brenvolt {

namespace {

namespace fs = std::filesystem;
using tables::ColumnType;
using tables::SourceColumn;
using tables::TableReceiver;
using tables::TableRow;
using tables::TableSource;
using tables::TableWriter;

bool startsNoCase(std::wstring_view text, std::wstring_view start) {
  return equalsOrdinalNoCase(text.substr(0, start.size()), start);
}

struct Input {
  std::wstring path;
  std::unique_ptr<TableSource> source;
  /// Cells are texts, and the columns' types come from their names.
  bool isUntyped = false;
};

struct Task {
  Input* input = nullptr;
  /// As the source names it.
  std::wstring sourceName;
  std::wstring name;
};

/// Gives untyped columns their types, and tells apart what has no columns at all.
class TypedReceiver final : public TableReceiver {
public:
  TypedReceiver(TableWriter& writer, std::wstring_view table, bool isUntyped)
      : writer_(writer), table_(table), isUntyped_(isUntyped) {}

  [[nodiscard]] bool hasNoColumns() const { return hasNoColumns_; }

  bool columns(const std::vector<SourceColumn>& columns) override {
    hasNoColumns_ = columns.empty();
    if (hasNoColumns_) return false;
    if (!isUntyped_) return writer_.columns(columns);
    std::vector<SourceColumn> typed = columns;
    for (std::size_t column = 0; column < typed.size(); ++column) {
      const std::wstring& name = typed[column].name;
      if (untypedColumnIsNumber(table_, column + 1, name)) typed[column].type = ColumnType::numeric;
      if (equalsOrdinalNoCase(name, L"ID")) typed[column].type = ColumnType::key;
    }
    return writer_.columns(typed);
  }
  bool row(TableRow row) override { return writer_.row(std::move(row)); }
  void note(const std::wstring& text) override { writer_.note(text); }

private:
  TableWriter& writer_;
  std::wstring_view table_;
  bool isUntyped_;
  bool hasNoColumns_ = false;
};

Input openInput(const std::wstring& path, std::wstring& error) {
  using tables::FileKind;
  const FileKind kind = tables::fileKind(path);
  switch (kind) {
  case FileKind::folder:
    return {path, tables::openDelimitedSource(path, error), true};
  case FileKind::sqlite:
    return {path, tables::openSqliteSource(path, error), false};
  case FileKind::access:
    return {path, tables::openAccessSource(path, error), false};
  case FileKind::compound:
    return {path, tables::openWorkbookSource(path, error), true};
  case FileKind::absent:
  case FileKind::unreadable:
  case FileKind::empty:
  case FileKind::archive:
  case FileKind::unknown:
    break;
  }
  error = path + L": " + tables::refusalOf(kind);
  return {path, nullptr, false};
}

/// A file beside another that goes away unless it takes the other's place.
class FileBeside final {
public:
  explicit FileBeside(const fs::path& target) : target_(target), path_(target.string() + ".importing") {
    std::error_code ignored;
    fs::remove(path_, ignored);
  }
  FileBeside(const FileBeside&) = delete;
  FileBeside& operator=(const FileBeside&) = delete;
  ~FileBeside() {
    std::error_code ignored;
    fs::remove(path_, ignored);
    fs::remove(path_.string() + "-journal", ignored);
  }

  [[nodiscard]] const fs::path& path() const { return path_; }
  [[nodiscard]] std::error_code takeItsPlace() const {
    // The name must not come to stand for bytes that a power failure takes away again.
    const int descriptor = open(path_.c_str(), O_RDONLY | O_CLOEXEC);
    const bool isStored = descriptor >= 0 && fsync(descriptor) == 0;
    std::error_code error(isStored ? 0 : errno, std::generic_category());
    if (descriptor >= 0) close(descriptor);
    if (error) return error;
    fs::rename(path_, target_, error);
    return error;
  }

private:
  fs::path target_;
  fs::path path_;
};

class Import final {
public:
  Import(std::wstring_view outPath, ExistingTables existing, const ImportProgress& progress)
      : outPath_(outPath), existing_(existing), progress_(progress) {}

  /// An empty `only` takes all tables.
  ImportReport run(const std::vector<std::wstring>& inputs, std::wstring_view only = {}) {
    openInputs(inputs);
    if (report_.isDone()) listTasks(only);
    if (report_.isDone() && (only.empty() || !tasks_.empty())) write();
    if (!report_.isDone()) report_.tables.clear();
    return std::move(report_);
  }

private:
  void fail(std::wstring error) { report_.errors.push_back(std::move(error)); }

  /// All inputs are opened, so that one run names all bad ones.
  void openInputs(const std::vector<std::wstring>& paths) {
    if (paths.empty()) fail(L"there is nothing to import");
    for (const std::wstring& path : paths) {
      std::wstring error;
      Input input = openInput(path, error);
      if (!input.source) {
        fail(std::move(error));
        continue;
      }
      inputs_.push_back(std::make_unique<Input>(std::move(input)));
    }
  }

  void listTasks(std::wstring_view only) {
    for (const auto& input : inputs_) {
      for (const std::wstring& sourceName : input->source->tableNames()) {
        std::wstring name = sourceName;
        if (input->isUntyped && name.ends_with(L'$')) name.pop_back();
        if (!only.empty() && !equalsOrdinalNoCase(name, only)) continue;
        for (const Task& earlier : tasks_) {
          if (!equalsOrdinalNoCase(earlier.name, name)) continue;
          fail(input->path + L": the table " + name + L" comes from " + earlier.input->path + L" too");
        }
        if (startsNoCase(name, L"sqlite_")) fail(input->path + L": a table cannot be named " + name);
        tasks_.push_back({input.get(), sourceName, std::move(name)});
      }
    }
  }

  void write() {
    using tables::FileKind;
    const FileKind kind = tables::fileKind(outPath_);
    const fs::path target(toUtf8(outPath_));
    if (kind == FileKind::sqlite) return writeInto(target, tables::SqliteDatabase::Mode::readWrite);
    if (kind != FileKind::absent) return fail(outPath_ + L": exists and is no database that can be written");
    const FileBeside beside(target);
    writeInto(beside.path(), tables::SqliteDatabase::Mode::create);
    if (!report_.isDone()) return;
    if (const std::error_code error = beside.takeItsPlace()) {
      fail(outPath_ + L": cannot be written: " + fromUtf8(error.message()));
    }
  }

  void writeInto(const fs::path& path, tables::SqliteDatabase::Mode mode) {
    tables::SqliteDatabase database;
    const auto failed = [&] { fail(outPath_ + L": cannot be written: " + database.lastError()); };
    if (!database.open(path.string(), mode)) return failed();
    // A file that is thrown away on any failure needs no journal; it is brought to the disk once, ahead of its renaming.
    const bool isNew = mode == tables::SqliteDatabase::Mode::create;
    if (isNew && !database.run("PRAGMA journal_mode=MEMORY; PRAGMA synchronous=OFF")) return failed();
    if (!database.run("BEGIN IMMEDIATE")) return failed();
    for (std::size_t index = 0; index < tasks_.size(); ++index) {
      if (progress_) progress_(index, tasks_.size(), tasks_[index].name);
      carryOver(database, tasks_[index]);
    }
    // Without the commit all is rolled back when the database is closed.
    if (report_.isDone() && !database.run("COMMIT")) failed();
  }

  void carryOver(tables::SqliteDatabase& database, const Task& task) {
    if (!makeRoom(database, task)) return;
    TableWriter writer(database, task.name);
    TypedReceiver receiver(writer, task.name, task.input->isUntyped);
    std::wstring error;
    if (task.input->source->read(task.sourceName, receiver, error)) {
      report_.tables.push_back({task.input->path, task.name, writer.rowCount(), writer.notes()});
      return;
    }
    const std::wstring place = task.input->path + L", table " + task.name + L": ";
    if (!receiver.hasNoColumns()) return fail(error.empty() ? place + writer.error() : error);
    if (!task.input->isUntyped) return fail(place + L"the table has no columns");
    report_.tables.push_back({task.input->path, task.name, 0, {L"the sheet is empty and gave no table"}});
  }

  bool makeRoom(tables::SqliteDatabase& database, const Task& task) {
    tables::SqliteQuery query =
        database.prepare("SELECT name, type FROM sqlite_master WHERE type IN ('table','view')");
    std::vector<std::pair<std::wstring, std::wstring>> clashing;
    while (query.isPrepared() && query.step() == tables::SqliteQuery::Step::row) {
      if (equalsOrdinalNoCase(query.text(0), task.name)) clashing.emplace_back(query.text(0), query.text(1));
    }
    for (const auto& [name, type] : clashing) {
      if (existing_ == ExistingTables::refuse) {
        fail(outPath_ + L": holds a table " + name + L" already; it would have to be replaced");
        return false;
      }
      if (database.run("DROP " + toUtf8(type) + " " + tables::quotedIdentifier(toUtf8(name)))) continue;
      fail(outPath_ + L", table " + name + L": " + database.lastError());
      return false;
    }
    return true;
  }

  std::wstring outPath_;
  ExistingTables existing_;
  const ImportProgress& progress_;
  std::vector<std::unique_ptr<Input>> inputs_;
  std::vector<Task> tasks_;
  ImportReport report_;
};

} // namespace

ImportReport importTables(
    std::wstring_view outPath, const std::vector<std::wstring>& inputs, ExistingTables existing,
    const ImportProgress& progress) {
  return Import(outPath, existing, progress).run(inputs);
}

ImportReport replaceTable(std::wstring_view outPath, const std::wstring& inputPath, std::wstring_view table) {
  const ImportProgress progress;
  return Import(outPath, ExistingTables::replace, progress).run({inputPath}, table);
}

bool untypedColumnIsNumber(std::wstring_view table, std::size_t column, std::wstring_view columnName) {
  constexpr std::size_t firstAmpacity = 3;
  if (startsNoCase(table, L"AMP_")) return column >= firstAmpacity;
  const bool hasLimit = startsNoCase(table, L"AMPG") || startsNoCase(table, L"MOTOR_I_MAP");
  if (hasLimit) return equalsOrdinalNoCase(columnName, L"MAX");
  return equalsOrdinalNoCase(table, L"CATALOGSEL") && equalsOrdinalNoCase(columnName, L"UI_SEL");
}

} // namespace brenvolt
