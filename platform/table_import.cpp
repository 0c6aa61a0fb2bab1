#include "platform/table_import.h"

#include "platform/cell_check.h"
#include "platform/file_kind.h"
#include "platform/file_replace.h"
#include "platform/table_engine.h"
#include "platform/table_output.h"
#include "platform/table_source.h"

#include "text/compare.h"
#include "text/encoding.h"
#include "text/split.h"

#include <algorithm>
#include <filesystem>
#include <memory>
#include <optional>
#include <utility>

namespace brenvolt {

namespace {

namespace fs = std::filesystem;
using tables::CellCheck;
using tables::ColumnType;
using tables::ImportTarget;
using tables::SourceColumn;
using tables::TableOutput;
using tables::TableReceiver;
using tables::TableRow;
using tables::TableSource;

bool startsNoCase(std::wstring_view text, std::wstring_view start) {
  return equalsOrdinalNoCase(text.substr(0, start.size()), start);
}

struct Input {
  std::wstring path;
  std::unique_ptr<TableSource> source;
  /// Cells are texts, and the columns' types come from their names.
  bool isUntyped = false;
  bool isWithoutRows = false;
};

struct Task {
  Input* input = nullptr;
  /// As the source names it.
  std::wstring sourceName;
  std::wstring name;
};

ColumnUse useOf(ColumnType type) {
  switch (type) {
  case ColumnType::integer:
  case ColumnType::real:
  case ColumnType::numeric:
    return ColumnUse::number;
  case ColumnType::key:
    return ColumnUse::key;
  case ColumnType::text:
  case ColumnType::blob:
    break;
  }
  return ColumnUse::text;
}

/// Gives columns their types, checks their cells, and detects inputs without columns. A row is passed on when the next
/// one is known, so that the last one is recognised.
class CheckedReceiver final : public TableReceiver {
public:
  CheckedReceiver(TableOutput& output, const Task& task, const ImportOptions& options)
      : output_(output), task_(task), options_(options) {}

  [[nodiscard]] bool hasNoColumns() const { return hasNoColumns_; }
  [[nodiscard]] const CellCheck* check() const { return check_ ? &*check_ : nullptr; }

  bool columns(const std::vector<SourceColumn>& columns) override {
    hasNoColumns_ = columns.empty();
    if (hasNoColumns_) return false;
    std::vector<SourceColumn> typed = columns;
    std::vector<ColumnUse> uses;
    for (std::size_t column = 0; column < typed.size(); ++column)
      uses.push_back(settleUse(typed[column], column + 1));
    check_.emplace(typed, std::move(uses));
    return output_.columns(typed);
  }
  bool row(TableRow row, std::int64_t place) override {
    if (task_.input->isWithoutRows) return true;
    const bool isTaken = passOn(CellCheck::Last::no);
    held_ = std::move(row);
    place_ = place;
    return isTaken;
  }
  /// To be called at the end of the table.
  bool finish() { return passOn(CellCheck::Last::yes) && output_.finish(); }
  void note(const std::wstring& text) override { output_.note(text); }

private:
  ColumnUse settleUse(SourceColumn& column, std::size_t position) const {
    if (column.type != ColumnType::text) return useOf(column.type);
    const ColumnUse use =
        options_.columnUses ? options_.columnUses(task_.name, position, column.name) : ColumnUse::text;
    // A key that the source has as text is one that it does not count itself.
    if (use == ColumnUse::key && !task_.input->isUntyped) return ColumnUse::text;
    if (use == ColumnUse::number) column.type = ColumnType::numeric;
    if (use == ColumnUse::key) column.type = ColumnType::key;
    return use;
  }

  bool passOn(CellCheck::Last last) {
    if (!held_) return true;
    TableRow row = *std::exchange(held_, std::nullopt);
    if (options_.badCells != BadCells::keep) check_->check(row, place_, last, options_.badCells);
    return output_.row(std::move(row), place_);
  }

  TableOutput& output_;
  const Task& task_;
  const ImportOptions& options_;
  bool hasNoColumns_ = false;
  std::optional<CellCheck> check_;
  std::optional<TableRow> held_;
  std::int64_t place_ = 0;
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

class Import final {
public:
  Import(std::wstring_view outPath, const ImportOptions& options)
      : outPath_(outPath), shownOut_(tables::shownDataSource(outPath)), options_(options) {}

  /// An empty `only` takes all tables.
  ImportReport run(const std::vector<std::wstring>& inputs, std::wstring_view only = {}) {
    openInputs(inputs);
    if (report_.isDone()) listTasks(only);
    if (report_.isDone() && (only.empty() || !tasks_.empty())) write();
    if (!report_.isDone()) report_.tables.clear();
    return std::move(report_);
  }

private:
  void fail(std::wstring error, ImportFault fault = ImportFault::badInput) {
    if (report_.errors.empty()) report_.fault = fault;
    report_.errors.push_back(std::move(error));
  }
  void cannotWrite(const std::wstring& reason) {
    fail(shownOut_ + L": cannot be written: " + reason, ImportFault::cannotWrite);
  }

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
      input.isWithoutRows = std::find(options_.withoutRows.begin(), options_.withoutRows.end(), path) !=
                            options_.withoutRows.end();
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
          fail(input->path + L": the table " + name + L" also comes from " + earlier.input->path);
        }
        if (startsNoCase(name, L"sqlite_")) fail(input->path + L": a table cannot be named " + name);
        tasks_.push_back({input.get(), sourceName, std::move(name)});
      }
    }
  }

  void write() {
    using tables::FileKind;
    using tables::TargetFile;
    const FileKind kind = tables::fileKind(outPath_);
    const fs::path target(toUtf8(outPath_));
    std::wstring reason;
    if (tables::isServer(outPath_)) return writeInto(tables::openServerTarget(outPath_, reason), reason);
    if (kind == FileKind::sqlite) {
      return writeInto(tables::openSqliteTarget(target.string(), TargetFile::open, reason), reason);
    }
    if (kind != FileKind::absent) return fail(outPath_ + L": exists and is not a writable database");
    FileReplacement file(outPath_);
    if (file.fault()) return cannotWrite(file.fault()->reason);
    const std::string name = toUtf8(file.nameToWrite());
    writeInto(tables::openSqliteTarget(name, TargetFile::create, reason), reason);
    if (!report_.isDone()) return;
    if (const auto fault = file.commit()) cannotWrite(fault->reason);
  }

  /// Without the commit, destroying the target restores the former state.
  void writeInto(const std::unique_ptr<ImportTarget>& target, std::wstring& reason) {
    std::vector<std::wstring> existing;
    if (!target || !target->tableNames(existing, reason)) return cannotWrite(reason);
    for (std::size_t index = 0; index < tasks_.size(); ++index) {
      if (options_.progress) options_.progress(index, tasks_.size(), tasks_[index].name);
      takeIn(*target, existing, tasks_[index]);
    }
    for (const Task& task : tasks_) {
      for (const std::wstring& format : options_.forEachTable) {
        const std::wstring statement = replaceAll(format, L"%s", L"[" + task.name + L"]");
        if (report_.isDone() && !target->run(statement, reason)) cannotWrite(reason);
      }
    }
    if (report_.isDone() && !target->commit(reason)) cannotWrite(reason);
  }

  void takeIn(ImportTarget& target, const std::vector<std::wstring>& existing, const Task& task) {
    const bool isPresent = std::any_of(existing.begin(), existing.end(), [&task](const std::wstring& name) {
      return equalsOrdinalNoCase(name, task.name);
    });
    if (isPresent && options_.staysWhenPresent && options_.staysWhenPresent(task.name)) {
      report_.tables.push_back({task.input->path, task.name, 0, {L"the table is there already and stays"}});
      return;
    }
    if (makeRoom(target, existing, task)) carryOver(target, task);
  }

  bool makeRoom(ImportTarget& target, const std::vector<std::wstring>& existing, const Task& task) {
    for (const std::wstring& name : existing) {
      if (!equalsOrdinalNoCase(name, task.name)) continue;
      if (options_.existing == ExistingTables::refuse) {
        fail(shownOut_ + L": already contains a table " + name + L"; use --replace to replace it");
        return false;
      }
      std::wstring reason;
      if (target.drop(name, reason)) continue;
      fail(shownOut_ + L", table " + name + L": " + reason, ImportFault::cannotWrite);
      return false;
    }
    return true;
  }

  void carryOver(ImportTarget& target, const Task& task) {
    const std::unique_ptr<TableOutput> output = target.output(task.name);
    CheckedReceiver receiver(*output, task, options_);
    const std::wstring place = task.input->path + L", table " + task.name + L": ";
    std::wstring error;
    const bool isRead = task.input->source->read(task.sourceName, receiver, error) && receiver.finish();
    if (receiver.hasNoColumns()) {
      if (!task.input->isUntyped) return fail(place + L"the table has no columns");
      report_.tables.push_back({task.input->path, task.name, 0, {L"the sheet is empty and gave no table"}});
      return;
    }
    if (!isRead) fail(error.empty() ? place + output->error() : error);
    std::vector<std::wstring> notes = output->notes();
    if (const CellCheck* check = receiver.check()) {
      for (const tables::BadCell& cell : check->found()) {
        if (options_.badCells == BadCells::makeNull) {
          notes.push_back(cell.told() + L" and is NULL now");
          continue;
        }
        fail(place + cell.told());
        ++report_.badCells;
      }
    }
    report_.tables.push_back({task.input->path, task.name, output->rowCount(), std::move(notes)});
  }

  std::wstring outPath_;
  /// Without a password, for messages.
  std::wstring shownOut_;
  const ImportOptions& options_;
  std::vector<std::unique_ptr<Input>> inputs_;
  std::vector<Task> tasks_;
  ImportReport report_;
};

} // namespace

ImportReport importTables(
    std::wstring_view outPath, const std::vector<std::wstring>& inputs, const ImportOptions& options) {
  return Import(outPath, options).run(inputs);
}

ImportReport replaceTable(std::wstring_view outPath, const std::wstring& inputPath, std::wstring_view table) {
  ImportOptions options;
  options.existing = ExistingTables::replace;
  options.badCells = BadCells::keep;
  return Import(outPath, options).run({inputPath}, table);
}

} // namespace brenvolt
