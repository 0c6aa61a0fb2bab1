// Keeping what a recording needs.
#include "simhost/site/session_log.h"

#include "simhost/host/errors.h"
#include "simhost/host/files.h"

#include <system_error>
#include <utility>

namespace simhost {

namespace {

void writeFile(const std::filesystem::path& file, const std::string& bytes) {
  const std::string reason = replaceFile(file, bytes);
  if (!reason.empty()) throw CannotWrite(reason);
}

} // namespace

SessionLog::SessionLog(std::filesystem::path file, SessionRun run, Recording recording)
    : file_(std::move(file)), run_(std::move(run)), recording_(std::move(recording)) {
  open({&SessionRun::drawing, 0, {}});
  open({&SessionRun::project, 0, {}});
  for (std::size_t command = 0; command < run_.commands.size(); ++command)
    open({nullptr, command, {}});
}

std::string& SessionLog::fileOf(SessionRun& run, const Opened& place) {
  return place.first == nullptr ? run.commands[place.command].file : run.*place.first;
}

void SessionLog::open(Opened place) {
  const std::string& file = fileOf(run_, place);
  std::error_code error;
  if (!std::filesystem::is_regular_file(file, error)) return;
  place.bytes = readFile(file).value_or("");
  opened_.push_back(std::move(place));
}

void SessionLog::add(const SessionCommand& command) {
  run_.commands.push_back(command);
  open({nullptr, run_.commands.size() - 1, {}});
}

void SessionLog::write() {
  SessionRun run = run_;
  int number = 0;
  for (const Opened& place : opened_) {
    ++number;
    std::string& file = fileOf(run, place);
    if (readFile(file) == place.bytes) continue;
    std::filesystem::path kept = file_;
    // Under its own ending: a drawing, or a project's database.
    const std::string kind = std::filesystem::path(file).extension() == ".json" ? ".drawing-" : ".project-";
    kept.replace_extension(kind + std::to_string(number) + std::filesystem::path(file).extension().string());
    writeFile(kept, place.bytes);
    file = kept.string();
  }
  writeFile(file_, recording_(seenFrom(std::move(run), {}, file_.parent_path())));
}

} // namespace simhost
