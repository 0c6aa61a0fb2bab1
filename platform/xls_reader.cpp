#include "platform/xls_reader.h"

#include "platform/little_endian.h"
#include "platform/ole2_container.h"
#include "platform/xls_cells.h"
#include "platform/xls_sheet.h"
#include "text/compare.h"

#include <algorithm>

namespace brenvolt {

using namespace biff;

namespace {

constexpr std::uint8_t sheetKindWorksheet = 0;
constexpr std::uint8_t sheetVisible = 0;
constexpr unsigned visibilityMask = 3;

struct CustomFormat {
  unsigned index;
  NumberStyle style;
};

} // namespace

struct WorkbookReader::State {
  std::wstring path;
  std::wstring error;
  Ole2Container container;
  std::optional<Ole2Stream> stream;
  std::optional<ByteWindow> window;
  WorkbookGlobals globals;
  std::vector<WorkbookSheetInfo> sheets;
  std::vector<std::uint64_t> sheetOffsets;

  bool fail(std::wstring_view reason) {
    error = path + L": " + std::wstring(reason);
    return false;
  }

  bool openStream();
  bool readGlobals();
  bool takeGlobal(RecordWalk& walk);
  void takeFormat(RecordWalk& walk, std::span<const std::uint8_t> body);
  bool takeSheet(RecordWalk& walk, std::span<const std::uint8_t> body);
  void finishStyles();
  [[nodiscard]] std::wstring shortText(
      RecordWalk& walk, std::span<const std::uint8_t> body, std::size_t start);

  std::vector<unsigned> formatOfCellStyle;
  std::vector<CustomFormat> customFormats;
};

bool WorkbookReader::State::openStream() {
  if (!container.open(path)) return fail(container.error());
  auto entry = container.findRootStream(L"Workbook");
  if (!entry) entry = container.findRootStream(L"Book");
  if (!entry) {
    // A password-protected workbook of the later format is in such a container too.
    if (container.findRootStream(L"EncryptedPackage")) {
      return fail(L"is encrypted: save it without a password and as .xls");
    }
    return fail(L"contains no workbook");
  }
  stream = container.openStream(*entry);
  if (!stream) return fail(container.error());
  window.emplace(*stream);
  return true;
}

bool WorkbookReader::State::readGlobals() {
  RecordWalk walk(*window);
  if (!walk.next() || walk.id() != idBegin || walk.body().size() < 4) {
    return fail(L"is damaged, or a workbook of a version before 5.0");
  }
  globals.version = readLe16(walk.body().data());
  if (globals.version != version5 && globals.version != version8) {
    return fail(L"is a workbook of an unknown version");
  }
  do {
    if (!walk.next()) return fail(L"the file is damaged: its list of sheets does not end");
    if (!takeGlobal(walk)) return false;
  } while (walk.id() != idEndOfFile);
  if (sheets.empty()) return fail(L"has no worksheet");
  finishStyles();
  return true;
}

bool WorkbookReader::State::takeGlobal(RecordWalk& walk) {
  const auto number = [&walk] {
    return walk.body().size() < 2 ? 0U : unsigned{readLe16(walk.body().data())};
  };
  switch (walk.id()) {
  case idFilePassword:
    return fail(L"is encrypted: save it without a password");
  case idDateMode:
    globals.epoch = number() == 1 ? DateEpoch::year1904 : DateEpoch::year1900;
    return true;
  case idCodePage:
    globals.codePage = CodePage(number());
    return true;
  case idSharedStrings:
    globals.sharedStrings.setPlace(walk.place());
    return true;
  case idExtendedFormat:
    formatOfCellStyle.push_back(walk.body().size() < 4 ? 0U : unsigned{readLe16(walk.body().data() + 2)});
    return true;
  case idFormat:
    takeFormat(walk, walk.body());
    return true;
  case idBoundSheet:
    return takeSheet(walk, walk.body());
  default:
    return true;
  }
}

std::wstring WorkbookReader::State::shortText(
    RecordWalk& walk, std::span<const std::uint8_t> body, std::size_t start) {
  if (globals.version < version8) {
    const std::size_t length = std::min<std::size_t>(body[start], body.size() - start - 1);
    return globals.codePage.decode(body.subspan(start + 1, length));
  }
  TextPool pool;
  StringCursor cursor(*window, walk.place().bodyOffset() + start, walk.place().endOffset());
  // A format's length has two bytes, a sheet name's one.
  const auto field =
      walk.id() == idFormat ? StringCursor::LengthField::twoBytes : StringCursor::LengthField::oneByte;
  return cursor.string(field, &pool) ? pool.text(pool.end()) : std::wstring();
}

void WorkbookReader::State::takeFormat(RecordWalk& walk, std::span<const std::uint8_t> body) {
  if (body.size() < 4) return;
  const unsigned index = readLe16(body.data());
  customFormats.push_back({index, numberStyleOf(shortText(walk, body, 2))});
}

bool WorkbookReader::State::takeSheet(RecordWalk& walk, std::span<const std::uint8_t> body) {
  if (body.size() < 8) return fail(L"the file is damaged: its list of sheets is cut short");
  const std::uint64_t offset = readLe32(body.data());
  const bool isHidden = (body[4] & visibilityMask) != sheetVisible;
  // Charts, macros and modules have sheets of their own kinds.
  if (body[5] != sheetKindWorksheet) return true;
  sheets.push_back({shortText(walk, body, 6), isHidden});
  sheetOffsets.push_back(offset);
  return true;
}

void WorkbookReader::State::finishStyles() {
  // A file may give a built-in number a format of its own, which then holds.
  std::stable_sort(
      customFormats.begin(), customFormats.end(),
      [](const CustomFormat& left, const CustomFormat& right) { return left.index < right.index; });
  globals.cellStyles.reserve(formatOfCellStyle.size());
  for (const unsigned index : formatOfCellStyle) {
    const auto custom = std::lower_bound(
        customFormats.begin(), customFormats.end(), index,
        [](const CustomFormat& format, unsigned wanted) { return format.index < wanted; });
    const bool isCustom = custom != customFormats.end() && custom->index == index;
    globals.cellStyles.push_back(isCustom ? custom->style : builtInNumberStyle(index));
  }
}

WorkbookReader::WorkbookReader() : state_(std::make_unique<State>()) {}
WorkbookReader::~WorkbookReader() = default;
WorkbookReader::WorkbookReader(WorkbookReader&&) noexcept = default;
WorkbookReader& WorkbookReader::operator=(WorkbookReader&&) noexcept = default;

bool WorkbookReader::open(std::wstring_view path) {
  state_ = std::make_unique<State>();
  state_->path = path;
  if (state_->openStream() && state_->readGlobals()) return true;
  state_->sheets.clear();
  return false;
}

const std::vector<WorkbookSheetInfo>& WorkbookReader::sheets() const {
  return state_->sheets;
}

std::optional<std::size_t> WorkbookReader::findSheet(std::wstring_view name) const {
  for (std::size_t i = 0; i < state_->sheets.size(); ++i) {
    if (equalsOrdinalNoCase(state_->sheets[i].name, name)) return i;
  }
  return std::nullopt;
}

std::optional<WorkbookSheet> WorkbookReader::readSheet(std::size_t index, std::size_t rowLimit) {
  if (index >= state_->sheets.size()) {
    state_->fail(L"has no sheet of this number");
    return std::nullopt;
  }
  WorkbookSheet sheet;
  sheet.cells_->name = state_->sheets[index].name;
  sheet.cells_->epoch = state_->globals.epoch;
  if (!readSheetCells(
          *state_->window, state_->globals, state_->sheetOffsets[index], rowLimit, *sheet.cells_)) {
    state_->fail(L"the file is damaged in sheet \"" + sheet.cells_->name + L"\"");
    return std::nullopt;
  }
  return sheet;
}

const std::wstring& WorkbookReader::error() const {
  return state_->error;
}

} // namespace brenvolt
