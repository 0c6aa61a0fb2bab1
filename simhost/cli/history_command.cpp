// `brenvolt history`: the saved configurations of a site's circuits, their changes, and restoring of former
// ones.
#include "platform/file_read.h"
#include "project/history_change.h"
#include "project/history_recovery.h"
#include "simhost/cli/site_options.h"
#include "simhost/cli/subcommand.h"
#include "simhost/host/errors.h"
#include "text/encoding.h"

#include <array>
#include <charconv>
#include <cstdio>
#include <ctime>
#include <memory>
#include <optional>

namespace simhost {

namespace {

using brenvolt::fromUtf8;
using brenvolt::HistoryKey;
using brenvolt::HistoryOutcome;
using brenvolt::toUtf8;

struct HistoryOptions {
  SiteWorkbookOptions site;
  std::string circuit;
  std::string type;
  std::string name;
  std::string number; ///< of a journal's record
  std::string file;   ///< a damaged one

  [[nodiscard]] HistoryKey key() const { return {fromUtf8(circuit), fromUtf8(type), fromUtf8(name)}; }
};

std::string keyText(const HistoryKey& key) {
  return toUtf8(key.circuit) + " / " + toUtf8(key.type) + " / " + toUtf8(key.name);
}

/// Throws CannotWrite unless the change was written, or there was nothing to change.
void needDone(const HistoryOutcome& outcome, const std::string& workbook) {
  const std::wstring path = brenvolt::historyPathOf(fromUtf8(workbook));
  if (!outcome.keptAs.empty())
    std::fprintf(
        stderr, "brenvolt: %s: not a history file, kept as %s\n", toUtf8(path).c_str(),
        toUtf8(outcome.keptAs).c_str());
  if (outcome.isDone() || outcome.result == HistoryOutcome::Result::unchanged) return;
  throw CannotWrite(toUtf8(path + L": " + outcome.reason));
}

/// Configurations of circuits and types that the workbook no longer has, in the order of the file.
void listForgotten(const brenvolt::ZanCircuitCatalog& list, const brenvolt::HistoryFile& history) {
  std::string title;
  for (const HistoryKey& key : history.keys()) {
    if (list.findEntry(key.circuit, key.type) != nullptr) continue;
    const std::string own =
        toUtf8(key.circuit) + " / " + toUtf8(key.type) + " (the workbook has no such type any more)";
    if (own != title) std::printf("%s\n", own.c_str());
    title = own;
    std::printf("  %s\n", toUtf8(key.name).c_str());
  }
}

ExitCode listHistories(const HistoryOptions& options) {
  const std::string workbook = options.site.path();
  const brenvolt::ZanCircuitCatalog list = readCircuitList(workbook);
  const brenvolt::HistoryFile history = readHistory(workbook);
  for (const auto& [circuit, types] : list.circuits())
    for (const brenvolt::ZanCircuitEntry& entry : types.entries) {
      const std::vector<std::wstring> names = history.names(circuit, entry.type);
      if (names.empty()) continue;
      std::printf("%s / %s\n", toUtf8(circuit).c_str(), toUtf8(entry.type).c_str());
      for (const std::wstring& name : names)
        std::printf("  %s\n", toUtf8(name).c_str());
    }
  listForgotten(list, history);
  return ExitCode::done;
}

ExitCode showHistory(const HistoryOptions& options) {
  const brenvolt::HistoryFile history = readHistory(options.site.path());
  needConfiguration(history, options.key());
  const brenvolt::HistorySummary summary = history.summary(options.key()).value();
  for (const auto& [name, value] : summary.pairs)
    std::printf("%s: %s\n", toUtf8(name).c_str(), toUtf8(value).c_str());
  std::printf(
      "component scale: %s\ncircuit scale: %s\n", toUtf8(summary.componentScale).c_str(),
      toUtf8(summary.circuitScale).c_str());
  return ExitCode::done;
}

ExitCode deleteHistory(const HistoryOptions& options) {
  const std::string workbook = options.site.path();
  brenvolt::HistoryFile history = readHistory(workbook);
  needConfiguration(history, options.key());
  std::vector<HistoryKey> stayed;
  needDone(brenvolt::deleteFromHistory(fromUtf8(workbook), history, {{options.key(), {}}}, stayed), workbook);
  return ExitCode::done;
}

std::string timeText(std::int64_t seconds) {
  const auto time = static_cast<std::time_t>(seconds);
  std::tm parts = {};
  std::array<char, 32> text = {};
  ::gmtime_r(&time, &parts);
  return std::string(text.data(), std::strftime(text.data(), text.size(), "%Y-%m-%d %H:%M:%S", &parts));
}

std::vector<brenvolt::HistoryRecord> journal(const std::string& workbook) {
  return brenvolt::readJournal(brenvolt::historyPathOf(fromUtf8(workbook)));
}

ExitCode logHistory(const HistoryOptions& options) {
  std::size_t number = 0;
  for (const brenvolt::HistoryRecord& record : journal(options.site.path()))
    std::printf(
        "%zu  %s  %s on %s  %s  %s%s\n", ++number, timeText(record.time).c_str(), toUtf8(record.user).c_str(),
        toUtf8(record.machine).c_str(), toUtf8(brenvolt::actionWord(record.action)).c_str(),
        keyText(record.key).c_str(), record.former.empty() ? "" : "  (can be restored)");
  return ExitCode::done;
}

ExitCode restoreHistory(const HistoryOptions& options) {
  const std::string workbook = options.site.path();
  const std::vector<brenvolt::HistoryRecord> records = journal(workbook);
  std::size_t number = 0;
  const char* const end = options.number.data() + options.number.size();
  const auto [rest, error] = std::from_chars(options.number.data(), end, number);
  if (error != std::errc() || rest != end || number == 0 || number > records.size())
    throw BadInput("\"" + options.number + "\": not the number of a line of \"history log\"");
  const brenvolt::HistoryRecord& record = records[number - 1];
  if (record.former.empty())
    throw BadInput("line " + options.number + ": replaced or deleted nothing, so nothing can be restored");
  brenvolt::HistoryFile history;
  const HistoryOutcome outcome = brenvolt::restoreInHistory(fromUtf8(workbook), history, record);
  needDone(outcome, workbook);
  std::printf("%s: %s\n", outcome.isDone() ? "restored" : "there already", keyText(record.key).c_str());
  return ExitCode::done;
}

/// Exit code 5 when a part of the file cannot be read.
ExitCode recoverHistory(const HistoryOptions& options) {
  const std::string workbook = options.site.path();
  const brenvolt::FileContent file = brenvolt::readWholeFile(fromUtf8(options.file));
  if (!file.isRead()) throw BadInput(options.file + ": " + toUtf8(file.fault));
  const brenvolt::SalvagedHistory salvaged = brenvolt::salvageHistory(file.bytes);
  brenvolt::HistoryFile history;
  brenvolt::HistoryMerge merge;
  if (!salvaged.entries.empty())
    needDone(brenvolt::mergeIntoHistory(fromUtf8(workbook), history, salvaged.entries, merge), workbook);
  for (const HistoryKey& key : merge.added)
    std::printf("added: %s\n", keyText(key).c_str());
  for (const HistoryKey& key : merge.present)
    std::printf("there already: %s\n", keyText(key).c_str());
  for (const HistoryKey& key : salvaged.broken)
    std::fprintf(stderr, "brenvolt: %s: cannot be read: %s\n", options.file.c_str(), keyText(key).c_str());
  if (salvaged.entries.empty() && salvaged.broken.empty())
    throw BadInput(options.file + ": contains no saved configuration");
  return salvaged.broken.empty() ? ExitCode::done : ExitCode::findings;
}

} // namespace

CommandTable historyCommand() {
  auto options = std::make_shared<HistoryOptions>();
  const OptionRows all = options->site.rows();
  const OptionRows one = joinedRows(
      {all,
       {{"--circuit", &options->circuit, "Name of the circuit", {}, {.isRequired = true}},
        {"--type", &options->type, "Name of its type", {}, {.isRequired = true}},
        {"NAME", &options->name, "Name of the saved configuration", {}, {.isRequired = true}}}});
  const OptionRows record = joinedRows(
      {all,
       {{"NUMBER", &options->number, "Number of the line of \"history log\"", {}, {.isRequired = true}}}});
  const OptionRows damaged = joinedRows(
      {all, {{"FILE", &options->file, "The damaged file, which is not changed", {}, {.isRequired = true}}}});
  return {
      .name = "history",
      .description = "list, show, delete and restore saved configurations",
      .commands =
          {
              {.name = "list",
               .description = "list the names of all saved configurations",
               .options = all,
               .run = [options] { return listHistories(*options); }},
              {.name = "show",
               .description = "show the motor or load data and the choices of one",
               .options = one,
               .run = [options] { return showHistory(*options); }},
              {.name = "delete",
               .description = "delete one from the file",
               .options = one,
               .run = [options] { return deleteHistory(*options); }},
              {.name = "log",
               .description = "list what was saved and deleted, when and by whom",
               .options = all,
               .run = [options] { return logHistory(*options); }},
              {.name = "restore",
               .description = "restore the entry that this line replaced or deleted",
               .options = record,
               .run = [options] { return restoreHistory(*options); }},
              {.name = "recover",
               .description = "import the readable part of a damaged file",
               .options = damaged,
               .run = [options] { return recoverHistory(*options); }},
          },
      .examples =
          {"brenvolt history list --site site",
           R"(brenvolt history show "Pump 10 HP" --site site --circuit "Three-phase motors" --type "Direct on line")"},
      .page = "history.md",
  };
}

} // namespace simhost
