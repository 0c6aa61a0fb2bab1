#include "project/history_journal.h"

#include "platform/file_append.h"
#include "platform/file_lock.h"
#include "platform/file_path.h"
#include "platform/file_read.h"
#include "platform/file_replace.h"
#include "text/encoding.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <chrono>
#include <cstdlib>
#include <optional>

namespace brenvolt {

namespace {

constexpr std::wstring_view journalEnding = L".journal";
constexpr std::array<std::wstring_view, 4> words = {L"saved", L"deleted", L"restored", L"recovered"};

enum Field : std::size_t { time, action, user, machine, circuit, type, name, former, fieldCount };

/// A record is a line, its fields between tabs.
std::string escaped(std::string_view text) {
  std::string line;
  for (const char c : text) {
    if (c == '\\')
      line += "\\\\";
    else if (c == '\t')
      line += "\\t";
    else if (c == '\n')
      line += "\\n";
    else if (c == '\r')
      line += "\\r";
    else
      line += c;
  }
  return line;
}

std::string unescaped(std::string_view line) {
  std::string text;
  for (std::size_t i = 0; i < line.size(); ++i) {
    if (line[i] != '\\' || i + 1 == line.size()) {
      text += line[i];
      continue;
    }
    const char c = line[++i];
    text += c == 't' ? '\t' : c == 'n' ? '\n' : c == 'r' ? '\r' : c;
  }
  return text;
}

std::optional<std::int64_t> wholeNumber(std::string_view text) {
  std::int64_t value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (text.empty() || error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return value;
}

/// Results that must not differ from run to run set the time from outside.
std::int64_t presentTime() {
  if (const char* const fixed = std::getenv("SOURCE_DATE_EPOCH"))
    if (const std::optional<std::int64_t> seconds = wholeNumber(fixed)) return *seconds;
  using namespace std::chrono;
  return duration_cast<seconds>(system_clock::now().time_since_epoch()).count();
}

std::string lineOf(const HistoryRecord& record) {
  std::string line = std::to_string(record.time) + "\t" + toUtf8(actionWord(record.action));
  for (const std::wstring* text :
       {&record.user, &record.machine, &record.key.circuit, &record.key.type, &record.key.name})
    line += "\t" + escaped(toUtf8(*text));
  return line + "\t" + escaped(record.former) + "\n";
}

std::optional<HistoryRecord> recordOf(std::string_view line) {
  std::array<std::string, fieldCount> fields;
  for (std::size_t field = 0; field < fieldCount; ++field) {
    const std::size_t tab = line.find('\t');
    if ((tab == std::string_view::npos) != (field + 1 == fieldCount)) return std::nullopt;
    fields[field] = unescaped(line.substr(0, tab));
    line.remove_prefix(tab == std::string_view::npos ? line.size() : tab + 1);
  }
  const std::optional<std::int64_t> seconds = wholeNumber(fields[time]);
  const auto word = std::find(words.begin(), words.end(), fromUtf8(fields[action]));
  if (!seconds || word == words.end()) return std::nullopt;
  return HistoryRecord{
      static_cast<HistoryAction>(word - words.begin()),
      {fromUtf8(fields[circuit]), fromUtf8(fields[type]), fromUtf8(fields[name])},
      fields[former],
      *seconds,
      fromUtf8(fields[user]),
      fromUtf8(fields[machine])};
}

/// The newest whole lines within half of what the journal may hold, so that it is not shortened at each change.
std::string_view newestLines(std::string_view text) {
  constexpr std::size_t kept = largestJournal / 2;
  if (text.size() <= kept) return text;
  const std::size_t end = text.find('\n', text.size() - kept - 1);
  return end == std::string_view::npos ? std::string_view() : text.substr(end + 1);
}

} // namespace

std::wstring_view actionWord(HistoryAction action) {
  return words[static_cast<std::size_t>(action)];
}

std::wstring journalPathOf(std::wstring_view historyPath) {
  // Beside the file itself: links to it from several folders lead to one journal.
  const std::wstring file = fromUtf8(fileBehindLinks(historyPath));
  return file.substr(0, file.rfind(L'.')) + std::wstring(journalEnding);
}

std::vector<HistoryRecord> readJournal(std::wstring_view historyPath) {
  const FileContent file = readWholeFile(journalPathOf(historyPath));
  std::vector<HistoryRecord> records;
  std::string_view text = file.bytes;
  while (!text.empty()) {
    const std::size_t end = text.find('\n');
    if (std::optional<HistoryRecord> record = recordOf(text.substr(0, end)))
      records.push_back(std::move(*record));
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
  }
  return records;
}

JournalEntry::JournalEntry(std::wstring_view historyPath, std::vector<HistoryRecord> records)
    : path_(journalPathOf(historyPath)) {
  const FileUser self = thisFileUser();
  std::string text;
  for (HistoryRecord& record : records) {
    record.time = presentTime();
    record.user = self.user;
    record.machine = self.machine;
    text += lineOf(record);
  }
  const std::optional<std::uint64_t> size = appendToFile(path_, text, historyPath);
  if (!size) return;
  text_ = std::move(text);
  if (*size <= largestJournal) return;
  const FileContent file = readWholeFile(path_);
  if (file.isRead()) static_cast<void>(replaceFile(path_, newestLines(file.bytes)));
}

void JournalEntry::takeBack() {
  if (!text_.empty()) cutFromFile(path_, text_);
}

} // namespace brenvolt
