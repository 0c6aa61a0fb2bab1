#include "platform/workbook_writer.h"

#include "platform/file_replace.h"
#include "platform/workbook_append.h"
#include "platform/workbook_book.h"
#include "platform/xls_reader.h"
#include "text/compare.h"
#include "text/encoding.h"

#include <filesystem>
#include <map>
#include <utility>

namespace brenvolt {

namespace {

constexpr int typeWorkbook = 1;

/// The name without the "$" of its address form.
std::wstring_view sheetName(std::wstring_view name) {
  return name.ends_with(L'$') ? name.substr(0, name.size() - 1) : name;
}

/// The current folder may change before the file is closed, so a relative name is settled at once.
std::wstring absolutePath(std::wstring_view path) {
  std::error_code failure;
  const auto absolute = std::filesystem::absolute(toUtf8(path), failure);
  return failure ? std::wstring(path) : fromUtf8(absolute.string());
}

} // namespace

struct CDBClass::State {
  enum class Mode { closed, creating, appending };

  Mode mode = Mode::closed;
  std::wstring path;
  std::wstring error;
  /// Sheets made here, by `CreateDB` or `AddTable`.
  std::vector<BookSheet> sheets;

  // Appending only.
  WorkbookAppend file;
  WorkbookReader reader;
  std::optional<FileStamp> stamp;
  std::map<std::size_t, std::vector<std::wstring>> headers;

  bool fail(std::wstring_view reason) {
    error = path.empty() ? std::wstring(reason) : path + L": " + std::wstring(reason);
    return false;
  }

  [[nodiscard]] BookSheet* findNewSheet(std::wstring_view name);
  /// The column names of a sheet that the file holds: its first row.
  [[nodiscard]] const std::vector<std::wstring>* headerOf(std::size_t sheet);
  /// The values in the sheet's columns; false when a column does not exist.
  bool arrange(
      std::wstring_view name, const std::vector<std::wstring>& columns,
      const std::vector<std::wstring>& columnNames, const std::vector<std::wstring>& values, BookRow& row);
  bool open(Mode openMode, std::wstring_view password);
};

BookSheet* CDBClass::State::findNewSheet(std::wstring_view name) {
  for (BookSheet& sheet : sheets) {
    if (equalsOrdinalNoCase(sheet.name, name)) return &sheet;
  }
  return nullptr;
}

const std::vector<std::wstring>* CDBClass::State::headerOf(std::size_t sheet) {
  const auto known = headers.find(sheet);
  if (known != headers.end()) return &known->second;
  const auto index = reader.findSheet(file.name(sheet));
  const auto cells = index ? reader.readSheet(*index, 1) : std::nullopt;
  if (!cells) return nullptr;
  std::vector<std::wstring> names;
  for (std::size_t column = 0; column < cells->columnCount(); ++column) {
    names.push_back(cells->text(0, column));
  }
  return &headers.emplace(sheet, std::move(names)).first->second;
}

bool CDBClass::State::arrange(
    std::wstring_view name, const std::vector<std::wstring>& columns,
    const std::vector<std::wstring>& columnNames, const std::vector<std::wstring>& values, BookRow& row) {
  if (columnNames.size() != values.size()) return fail(L"a row needs one value for each column name");
  for (std::size_t i = 0; i < values.size(); ++i) {
    std::size_t column = 0;
    while (column < columns.size() && !equalsOrdinalNoCase(columns[column], columnNames[i])) {
      ++column;
    }
    if (column == columns.size()) {
      return fail(L"sheet \"" + std::wstring(name) + L"\" has no column \"" + columnNames[i] + L"\"");
    }
    if (row.size() <= column) row.resize(column + 1);
    row[column] = values[i];
  }
  return true;
}

bool CDBClass::State::open(Mode openMode, std::wstring_view password) {
  if (!password.empty()) return fail(L"a password is not supported");
  if (const auto obstacle = writeObstacle(path)) return fail(*obstacle);
  mode = openMode;
  return true;
}

CDBClass::CDBClass() : state_(std::make_unique<State>()) {}
CDBClass::~CDBClass() = default;

bool CDBClass::CreateDB(std::wstring_view path, int type, std::wstring_view password) {
  state_ = std::make_unique<State>();
  state_->path = absolutePath(path);
  if (type != typeWorkbook) return state_->fail(L"the only type of file is 1, a workbook");
  return state_->open(State::Mode::creating, password);
}

bool CDBClass::OpenDB(std::wstring_view fileName, std::wstring_view password) {
  state_ = std::make_unique<State>();
  state_->path = absolutePath(fileName);
  state_->stamp = fileStamp(state_->path);
  if (const auto reason = state_->file.load(state_->path)) return state_->fail(*reason);
  if (!state_->reader.open(state_->path)) {
    state_->error = state_->reader.error();
    return false;
  }
  return state_->open(State::Mode::appending, password);
}

bool CDBClass::AddTable(
    std::wstring_view name, const std::vector<std::wstring>& columnNames,
    const std::vector<int>& /*columnTypes: every cell is a text*/, const std::vector<int>& columnSizes,
    int /*flags*/) {
  if (state_->mode == State::Mode::closed) return state_->fail(L"no workbook is open");
  BookSheet sheet;
  sheet.name = sheetName(name);
  if (state_->findNewSheet(sheet.name) != nullptr || state_->file.hasName(sheet.name)) {
    return state_->fail(L"sheet name \"" + sheet.name + L"\" is there already");
  }
  sheet.header = BookSheet::Header::bold;
  sheet.columnWidths.assign(columnSizes.begin(), columnSizes.end());
  sheet.rows.emplace_back(columnNames.begin(), columnNames.end());
  if (const auto problem = biff::sheetProblem(sheet)) return state_->fail(*problem);
  state_->sheets.push_back(std::move(sheet));
  return true;
}

bool CDBClass::AddRecords(
    std::wstring_view name, const std::vector<std::wstring>& columnNames,
    const std::vector<std::wstring>& values, int /*rowIndex*/) {
  if (state_->mode == State::Mode::closed) return state_->fail(L"no workbook is open");
  name = sheetName(name);
  BookSheet* newSheet = state_->findNewSheet(name);
  const auto oldSheet = state_->file.findSheet(name);
  if (newSheet == nullptr && !oldSheet) return state_->fail(L"has no sheet \"" + std::wstring(name) + L"\"");

  std::vector<std::wstring> columns;
  if (newSheet != nullptr) {
    for (const BookCell& cell : newSheet->rows[0]) {
      columns.push_back(std::get<std::wstring>(cell));
    }
  } else if (const auto* header = state_->headerOf(*oldSheet)) {
    columns = *header;
  } else {
    state_->error = state_->reader.error();
    return false;
  }
  BookRow row;
  if (!state_->arrange(name, columns, columnNames, values, row)) return false;
  const std::size_t place = newSheet != nullptr ? newSheet->rows.size() : state_->file.nextRow(*oldSheet);
  if (const auto problem = biff::rowProblem(row, place)) {
    return state_->fail(L"sheet \"" + std::wstring(name) + L"\": " + *problem);
  }
  if (newSheet != nullptr) {
    newSheet->rows.push_back(std::move(row));
  } else {
    state_->file.addRow(*oldSheet, std::move(row));
  }
  return true;
}

bool CDBClass::CloseDB() {
  if (state_->mode == State::Mode::closed) return state_->fail(L"no workbook is open");
  const State::Mode mode = std::exchange(state_->mode, State::Mode::closed);
  if (mode == State::Mode::creating) {
    const auto message = saveWorkbook(state_->path, state_->sheets);
    if (message) state_->error = *message;
    return !message;
  }
  if (fileStamp(state_->path) != state_->stamp) {
    return state_->fail(L"was changed by another program in the meantime: nothing was added");
  }
  for (BookSheet& sheet : state_->sheets) {
    state_->file.addSheet(std::move(sheet));
  }
  const auto reason = replaceFile(state_->path, state_->file.build());
  return !reason || state_->fail(*reason);
}

const std::wstring& CDBClass::error() const {
  return state_->error;
}

} // namespace brenvolt
