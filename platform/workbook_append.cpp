#include "platform/workbook_append.h"

#include "platform/biff_strings.h"
#include "platform/little_endian.h"
#include "text/compare.h"
#include "text/encoding.h"

#include <algorithm>

namespace brenvolt {

using namespace biff;

namespace {

constexpr unsigned usualPlainFormat = 15;
constexpr unsigned styleFlag = 4;
constexpr std::uint16_t ownWorkbook = 0x0401;

constexpr const wchar_t* damaged = L"the file is damaged";

/// Records that hold places in the old stream. They only speed up reading, and no program misses them.
bool isStale(std::uint16_t id) {
  return id == idIndex || id == idDbCell || id == idSharedStringIndex;
}

bool isCellTableRecord(std::uint16_t id) {
  switch (id) {
  case idRow:
  case idBlank:
  case idMulBlank:
  case idNumber:
  case idRk:
  case idMulRk:
  case idLabel:
  case idLabelShared:
  case idRichString:
  case idBoolError:
  case idFormula:
  case idFormula3:
  case idFormula4:
  case idString:
  case idSharedFormula:
  case idArray:
  case idTable:
  case idDbCell:
    return true;
  default:
    return false;
  }
}

std::wstring sheetNameOf(std::string_view body) {
  constexpr std::size_t start = 8;
  const bool isWide = (static_cast<unsigned char>(body[7]) & 1U) != 0;
  const std::size_t bytes = std::size_t{static_cast<unsigned char>(body[6])} * (isWide ? 2 : 1);
  const std::string_view characters = body.substr(start, bytes);
  if (isWide) return fromUtf16Le(characters);
  std::wstring name;
  for (const char c : characters) {
    name.push_back(static_cast<unsigned char>(c));
  }
  return name;
}

/// The list of the sheets' own numbers with new ones at its end.
std::string extendedTabIds(std::string_view body, unsigned newCount) {
  std::string out(body);
  unsigned largest = 0;
  for (std::size_t at = 0; at + 2 <= body.size(); at += 2) {
    largest = std::max(largest, unsigned{readLe16(bytesOf(out) + at)});
  }
  for (unsigned i = 1; i <= newCount; ++i) {
    appendLe16(out, largest + i);
  }
  return out;
}

} // namespace

std::optional<std::wstring> WorkbookAppend::load(std::wstring_view path) {
  Ole2Container container;
  if (auto reason = loadStreams(container, path)) return reason;
  if (auto reason = loadGlobals()) return reason;
  if (sheets_.empty()) return damaged;
  if (!countSharedStrings(container) || !loadSheets()) return damaged;
  return std::nullopt;
}

std::optional<std::wstring> WorkbookAppend::loadStreams(Ole2Container& container, std::wstring_view path) {
  if (!container.open(path)) return container.error();
  const auto workbook = container.findRootStream(L"Workbook");
  if (!workbook) {
    return container.findRootStream(L"Book")
               ? L"is a workbook of an older version: save it as Excel 97-2003 first"
               : L"contains no workbook";
  }
  for (std::size_t i = 0; i < container.entries().size(); ++i) {
    Ole2Item item;
    item.entry = container.entries()[i];
    if (item.entry.type == Ole2Entry::Type::stream) {
      const auto stream = container.openStream(i);
      if (!stream) return container.error();
      item.data.resize(static_cast<std::size_t>(stream->size()));
      if (!stream->read(0, {reinterpret_cast<std::uint8_t*>(item.data.data()), item.data.size()}))
        return damaged;
    }
    items_.push_back(std::move(item));
  }
  streamItem_ = *workbook;
  stream_ = std::move(items_[streamItem_].data);
  return std::nullopt;
}

std::optional<WorkbookAppend::Record> WorkbookAppend::recordAt(std::size_t offset) const {
  if (offset + headerBytes > stream_.size()) return std::nullopt;
  const std::uint8_t* header = bytesOf(stream_) + offset;
  const std::size_t length = readLe16(header + 2);
  if (offset + headerBytes + length > stream_.size()) return std::nullopt;
  return Record{
      readLe16(header), offset, std::string_view(stream_).substr(offset + headerBytes, length),
      offset + headerBytes + length};
}

std::optional<std::wstring> WorkbookAppend::loadGlobals() {
  const auto first = recordAt(0);
  if (!first || first->id != idBegin || first->body.size() < 4) return damaged;
  if (readLe16(bytesOf(stream_) + headerBytes) != version8) {
    return L"is a workbook of an older version: save it as Excel 97-2003 first";
  }
  std::vector<bool> isStyle;
  bool isInSharedStrings = false;
  for (auto record = first; record->id != idEndOfFile;) {
    record = recordAt(record->end);
    if (!record) return damaged;
    globalsEnd_ = record->end;
    if (record->id == idFilePassword) return L"is encrypted: save it without a password";
    if (record->id == idBoundSheet && !takeSheetName(*record)) return damaged;
    if (record->id == idExtendedFormat) {
      if (record->body.size() < 6) return damaged;
      isStyle.push_back((static_cast<unsigned char>(record->body[4]) & styleFlag) != 0);
    }
    if (record->id == idSharedStrings) sharedStringsAt_ = record->offset;
    isInSharedStrings = record->id == idSharedStrings || (isInSharedStrings && record->id == idContinue);
    if (isInSharedStrings) sharedStrings_.emplace_back(record->body);
  }
  const auto firstCellFormat = std::find(isStyle.begin(), isStyle.end(), false);
  const bool hasUsual = isStyle.size() > usualPlainFormat && !isStyle[usualPlainFormat];
  if (hasUsual) {
    plainFormat_ = usualPlainFormat;
  } else if (firstCellFormat != isStyle.end()) {
    plainFormat_ = static_cast<unsigned>(firstCellFormat - isStyle.begin());
  }
  return std::nullopt;
}

bool WorkbookAppend::takeSheetName(const Record& record) {
  if (record.body.size() < 8) return false;
  Sheet sheet;
  sheet.begin = readLe32(reinterpret_cast<const std::uint8_t*>(record.body.data()));
  sheet.isWorksheet = record.body[5] == '\0';
  sheet.name = sheetNameOf(record.body);
  sheets_.push_back(std::move(sheet));
  return true;
}

bool WorkbookAppend::countSharedStrings(Ole2Container& container) {
  if (sharedStrings_.empty()) return true;
  const auto stream = container.openStream(streamItem_);
  if (!stream || sharedStrings_[0].size() < 8) return false;
  // Some writers store a wrong number in the table's header; new texts are numbered after the real last one.
  ByteWindow window(*stream);
  const auto count =
      SharedStrings::count(window, {idSharedStrings, sharedStrings_[0].size(), sharedStringsAt_});
  if (count) sharedStringCount_ = *count;
  return count.has_value();
}

bool WorkbookAppend::loadSheets() {
  std::vector<Sheet*> inOrder;
  for (Sheet& sheet : sheets_) {
    inOrder.push_back(&sheet);
  }
  std::sort(inOrder.begin(), inOrder.end(), [](const Sheet* left, const Sheet* right) {
    return left->begin < right->begin;
  });
  std::size_t end = globalsEnd_;
  for (Sheet* sheet : inOrder) {
    // Sheets that overlap cannot be moved apart.
    if (sheet->begin < end || !loadSheet(*sheet)) return false;
    end = sheet->end;
  }
  return true;
}

bool WorkbookAppend::loadSheet(Sheet& sheet) const {
  auto record = recordAt(sheet.begin);
  if (!record || record->id != idBegin) return false;
  bool isBehindCell = false;
  for (unsigned depth = 1; depth > 0;) {
    record = recordAt(record->end);
    if (!record) return false;
    if (record->id == idBegin) ++depth;
    if (record->id == idEndOfFile) --depth;
    // Without any cell, rows are inserted after the record with the used range; without that one, before the view.
    const bool isLastResort = record->id == idWindow2 || depth == 0;
    if (isLastResort && sheet.insertAt == 0) sheet.insertAt = record->offset;
    if (depth != 1) continue;
    const bool isCell = isCellTableRecord(record->id) || (isBehindCell && record->id == idContinue);
    if (isCell || record->id == idDimensions) sheet.insertAt = record->end;
    if (isCell && !takeCellRecord(sheet, *record)) return false;
    isBehindCell = isCell;
  }
  sheet.end = record->end;
  return true;
}

bool WorkbookAppend::takeCellRecord(Sheet& sheet, const Record& record) {
  const auto word = [&record](std::size_t at) {
    return std::size_t{readLe16(reinterpret_cast<const std::uint8_t*>(record.body.data()) + at)};
  };
  switch (record.id) {
  case idContinue:
  case idString:
  case idSharedFormula:
  case idArray:
  case idTable:
  case idDbCell:
    return true;
  case idRow:
    if (record.body.size() < 2) return false;
    sheet.rowsWithRecord.insert(word(0));
    return true;
  default: {
    if (record.body.size() < 6) return false;
    const std::size_t row = word(0);
    const bool isRun = record.id == idMulRk || record.id == idMulBlank;
    sheet.used.include(row, word(2));
    if (isRun) sheet.used.include(row, std::max(word(2), word(record.body.size() - 2)));
    sheet.endRow = std::max(sheet.endRow, row + 1);
    return true;
  }
  }
}

std::optional<std::size_t> WorkbookAppend::findSheet(std::wstring_view name) const {
  for (std::size_t i = 0; i < sheets_.size(); ++i) {
    if (sheets_[i].isWorksheet && equalsOrdinalNoCase(sheets_[i].name, name)) return i;
  }
  return std::nullopt;
}

bool WorkbookAppend::hasName(std::wstring_view name) const {
  const auto isSame = [name](const auto& sheet) { return equalsOrdinalNoCase(sheet.name, name); };
  return std::any_of(sheets_.begin(), sheets_.end(), isSame) ||
         std::any_of(newSheets_.begin(), newSheets_.end(), isSame);
}

std::size_t WorkbookAppend::nextRow(std::size_t sheet) const {
  return sheets_[sheet].endRow + sheets_[sheet].added.size();
}

void WorkbookAppend::addRow(std::size_t sheet, BookRow row) {
  sheets_[sheet].added.push_back(std::move(row));
}

void WorkbookAppend::addSheet(BookSheet sheet) {
  newSheets_.push_back(std::move(sheet));
}

std::string WorkbookAppend::copySheet(const Sheet& sheet, SharedStringsWriter& strings) const {
  UsedRange used = sheet.used;
  for (std::size_t i = 0; i < sheet.added.size(); ++i) {
    if (sheet.added[i].empty()) continue;
    used.include(sheet.endRow + i, 0);
    used.include(sheet.endRow + i, sheet.added[i].size() - 1);
  }
  RowBlocks blocks;
  blocks.firstRow = sheet.endRow;
  blocks.rows = sheet.added;
  blocks.cellFormat = [this](std::size_t) { return plainFormat_; };
  blocks.needsRowRecord = [&sheet](std::size_t row) { return !sheet.rowsWithRecord.contains(row); };

  std::string out;
  unsigned depth = 0;
  for (std::size_t offset = sheet.begin; offset < sheet.end;) {
    if (offset == sheet.insertAt) appendRowBlocks(out, blocks, strings);
    const Record record = *recordAt(offset);
    offset = record.end;
    if (record.id == idBegin) ++depth;
    if (record.id == idEndOfFile) --depth;
    if (depth == 1 && isStale(record.id)) continue;
    if (depth == 1 && record.id == idDimensions && !sheet.added.empty()) {
      appendRecord(out, idDimensions, dimensionsBody(used));
      continue;
    }
    out.append(stream_, record.offset, record.end - record.offset);
  }
  return out;
}

std::string WorkbookAppend::copyGlobals(
    const SharedStringsWriter& strings, std::vector<std::size_t>& placeFields) const {
  std::string out;
  bool isInSharedStrings = false;
  const auto newCount = static_cast<unsigned>(newSheets_.size());
  for (std::size_t offset = 0; offset < globalsEnd_;) {
    const Record record = *recordAt(offset);
    offset = record.end;
    const bool isContinued = isInSharedStrings && record.id == idContinue;
    isInSharedStrings = record.id == idSharedStrings || isContinued;
    if (isStale(record.id) || isContinued) continue;
    const bool needsStrings =
        record.id == idSharedStrings || (record.id == idEndOfFile && sharedStrings_.empty());
    if (needsStrings) out += strings.records();
    if (record.id == idSharedStrings) continue;
    if (record.id == idTabIds) {
      appendRecord(out, idTabIds, extendedTabIds(record.body, newCount));
      continue;
    }

    const std::size_t body = out.size() + headerBytes;
    out.append(stream_, record.offset, record.end - record.offset);
    if (record.id == idBoundSheet) {
      placeFields.push_back(body);
      if (placeFields.size() != sheets_.size()) continue;
      for (const BookSheet& sheet : newSheets_) {
        placeFields.push_back(out.size() + headerBytes);
        appendRecord(out, idBoundSheet, boundSheetBody(sheet.name));
      }
    } else if (record.id == idSupBook && record.body.size() >= 4) {
      // The workbook's entry for itself says how many sheets there are.
      const std::uint8_t* bytes = bytesOf(out) + body;
      if (readLe16(bytes + 2) == ownWorkbook) patchLe16(out, body, readLe16(bytes) + newCount);
    }
  }
  return out;
}

std::string WorkbookAppend::build() const {
  SharedStringsWriter strings = sharedStrings_.empty()
                                    ? SharedStringsWriter()
                                    : SharedStringsWriter(sharedStrings_, sharedStringCount_);
  std::vector<std::string> bodies;
  for (const Sheet& sheet : sheets_) {
    bodies.push_back(copySheet(sheet, strings));
  }
  const CellFormats formats{plainFormat_, plainFormat_};
  for (const BookSheet& sheet : newSheets_) {
    bodies.push_back(sheetRecords(sheet, formats, Selection::unselected, strings));
  }
  std::vector<std::size_t> placeFields;
  std::string stream = copyGlobals(strings, placeFields);
  for (std::size_t i = 0; i < bodies.size(); ++i) {
    patchLe32(stream, placeFields[i], static_cast<std::uint32_t>(stream.size()));
    stream += bodies[i];
  }
  std::vector<Ole2Item> items = items_;
  items[streamItem_].data = padWorkbookStream(std::move(stream));
  return buildOle2(items);
}

} // namespace brenvolt
