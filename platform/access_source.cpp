// An Access file as a source: every reading is done by a child process that sends the rows through a pipe, because a
// damaged file can make the library loop or crash.
#include "platform/access_file.h"
#include "platform/guarded_child.h"
#include "platform/table_source.h"

#include "text/encoding.h"

#include <bit>
#include <filesystem>
#include <functional>
#include <utility>

namespace brenvolt::tables {

namespace {

/// What the child says, one letter each.
enum class Message : char {
  table = 'T',
  column = 'C',
  endOfColumns = 'c',
  row = 'R',
  note = 'N',
  refused = 'X',
  end = 'Z',
};

void send(ChildWriter& pipe, const TableValue& value) {
  pipe.byte(static_cast<char>(value.kind));
  switch (value.kind) {
  case TableValue::Kind::null:
    break;
  case TableValue::Kind::integer:
    pipe.integer(value.integer);
    break;
  case TableValue::Kind::real:
    pipe.integer(std::bit_cast<std::int64_t>(value.real));
    break;
  case TableValue::Kind::text:
  case TableValue::Kind::blob:
    pipe.text(value.bytes);
    break;
  }
}

bool receive(ChildReader& pipe, TableValue& value) {
  char kind = 0;
  if (!pipe.byte(kind)) return false;
  value.kind = static_cast<TableValue::Kind>(kind);
  switch (value.kind) {
  case TableValue::Kind::null:
    return true;
  case TableValue::Kind::integer:
    return pipe.integer(value.integer);
  case TableValue::Kind::real: {
    std::int64_t bits = 0;
    if (!pipe.integer(bits)) return false;
    value.real = std::bit_cast<double>(bits);
    return true;
  }
  case TableValue::Kind::text:
  case TableValue::Kind::blob:
    return pipe.text(value.bytes);
  }
  return false;
}

/// The child's side: writes a table into the pipe while reading it.
class PipeReceiver final : public TableReceiver {
public:
  explicit PipeReceiver(ChildWriter& pipe) : pipe_(pipe) {}

  bool columns(const std::vector<SourceColumn>& columns) override {
    for (const SourceColumn& column : columns) {
      pipe_.byte(static_cast<char>(Message::column));
      pipe_.byte(static_cast<char>(column.type));
      pipe_.text(toUtf8(column.name));
    }
    pipe_.byte(static_cast<char>(Message::endOfColumns));
    return true;
  }

  bool row(TableRow row, std::int64_t) override {
    pipe_.byte(static_cast<char>(Message::row));
    for (const TableValue& value : row)
      send(pipe_, value);
    return true;
  }

  void note(const std::wstring& text) override {
    pipe_.byte(static_cast<char>(Message::note));
    pipe_.text(toUtf8(text));
  }

private:
  ChildWriter& pipe_;
};

enum class Reading { unfinished, finished, refused, stopped };

class AccessSource final : public TableSource {
public:
  explicit AccessSource(std::wstring path) : path_(std::move(path)) {
    std::error_code ignored;
    const std::uintmax_t size = std::filesystem::file_size(toUtf8(path_), ignored);
    // Rows grow on their way out of the file, most where a row is all booleans; more than this is a loop.
    constexpr std::uint64_t growth = 64;
    constexpr std::uint64_t base = 16U << 20U;
    limits_.bytes = ignored ? base : size * growth + base;
  }

  bool open(std::wstring& error) {
    if (!AccessFile::fault().empty()) {
      error = path_ + L": " + AccessFile::fault();
      return false;
    }
    return run(
        [this](ChildWriter& pipe) {
          AccessFile file;
          if (!file.open(toUtf8(path_))) return pipe.byte(static_cast<char>(Message::refused));
          for (const std::string& name : file.tableNames()) {
            pipe.byte(static_cast<char>(Message::table));
            pipe.text(name);
          }
          pipe.byte(static_cast<char>(Message::end));
        },
        [this](ChildReader& pipe) {
          char message = 0;
          std::string name;
          while (pipe.byte(message)) {
            if (message != static_cast<char>(Message::table)) return ending(message);
            if (!pipe.text(name)) break;
            names_.push_back(fromUtf8(name));
          }
          return Reading::unfinished;
        },
        L"", error);
  }

  [[nodiscard]] const std::vector<std::wstring>& tableNames() const override { return names_; }

  bool read(const std::wstring& table, TableReceiver& receiver, std::wstring& error) override {
    return run(
        [&](ChildWriter& pipe) {
          AccessFile file;
          PipeReceiver sender(pipe);
          const bool done = file.open(toUtf8(path_)) && file.read(toUtf8(table), sender);
          pipe.byte(static_cast<char>(done ? Message::end : Message::refused));
        },
        [&](ChildReader& pipe) { return readTable(pipe, receiver); }, L", table " + table, error);
  }

private:
  static Reading ending(char message) {
    return message == static_cast<char>(Message::end) ? Reading::finished : Reading::refused;
  }

  static Reading readTable(ChildReader& pipe, TableReceiver& receiver) {
    std::vector<SourceColumn> columns;
    char message = 0;
    std::string text;
    std::int64_t place = 0;
    while (pipe.byte(message)) {
      switch (static_cast<Message>(message)) {
      case Message::column: {
        char type = 0;
        if (!pipe.byte(type) || !pipe.text(text)) return Reading::unfinished;
        columns.push_back({fromUtf8(text), static_cast<ColumnType>(type)});
        break;
      }
      case Message::endOfColumns:
        if (!receiver.columns(columns)) return Reading::stopped;
        break;
      case Message::row: {
        TableRow row(columns.size());
        for (TableValue& value : row) {
          if (!tables::receive(pipe, value)) return Reading::unfinished;
        }
        if (!receiver.row(std::move(row), ++place)) return Reading::stopped;
        break;
      }
      case Message::note:
        if (!pipe.text(text)) return Reading::unfinished;
        receiver.note(fromUtf8(text));
        break;
      default:
        return ending(message);
      }
    }
    return Reading::unfinished;
  }

  bool run(
      const std::function<void(ChildWriter&)>& work, const std::function<Reading(ChildReader&)>& receive,
      const std::wstring& place, std::wstring& error) const {
    Reading reading = Reading::unfinished;
    std::wstring reason;
    const bool ran = runGuarded(
        limits_, work,
        [&](ChildReader& pipe) {
          reading = receive(pipe);
          reason = pipe.reason();
        },
        reason);
    if (ran && reading == Reading::finished) return true;
    if (reading == Reading::stopped) return false;
    if (reading == Reading::refused) reason = L"it is damaged, encrypted or of an unknown version";
    error = path_ + place + L": " + reason;
    return false;
  }

  std::wstring path_;
  ChildLimits limits_;
  std::vector<std::wstring> names_;
};

} // namespace

std::unique_ptr<TableSource> openAccessSource(const std::wstring& path, std::wstring& error) {
  auto source = std::make_unique<AccessSource>(path);
  if (!source->open(error)) return nullptr;
  return source;
}

} // namespace brenvolt::tables
