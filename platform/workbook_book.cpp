#include "platform/workbook_book.h"

#include "platform/file_replace.h"
#include "platform/little_endian.h"
#include "platform/ole2_writer.h"
#include "text/compare.h"

#include <algorithm>
#include <cmath>

namespace brenvolt {

using namespace biff;

namespace {

constexpr std::uint16_t globalsSubstream = 0x0005;
constexpr std::uint16_t sheetSubstream = 0x0010;
constexpr std::uint16_t idSelection = 0x001D;
constexpr unsigned utf16CodePage = 1200;

constexpr std::size_t fontCount = 4;
constexpr unsigned boldFont = 1;
constexpr unsigned styleFormatCount = 15;
constexpr std::size_t smallStreamLimit = 4096;

// The narrowest and the widest column that is made to fit its texts.
constexpr std::size_t narrowestColumn = 9;
constexpr std::size_t widestColumn = 60;
constexpr double columnUnits = 256.0;
constexpr double largestColumnWidth = 255.0;

void appendBegin(std::string& out, std::uint16_t substream) {
  std::string body;
  appendLe16(body, version8);
  appendLe16(body, substream);
  appendLe16(body, 3515); // build and year of the version that this form belongs to
  appendLe16(body, 1996);
  appendLe32(body, 0);
  appendLe32(body, 6);
  appendRecord(out, idBegin, body);
}

void appendNumberRecord(std::string& out, std::uint16_t id, unsigned value) {
  std::string body;
  appendLe16(body, value);
  appendRecord(out, id, body);
}

void appendWindow(std::string& out) {
  std::string body;
  for (const unsigned value : {360U, 270U, 14940U, 9150U, 0x38U, 0U, 0U, 1U, 600U}) {
    appendLe16(body, value);
  }
  appendRecord(out, idWindow1, body);
}

void appendFont(std::string& out, bool isBold) {
  std::string body;
  appendLe16(body, 200); // ten points
  appendLe16(body, isBold ? 1 : 0);
  appendLe16(body, 0x7FFF);
  appendLe16(body, isBold ? 700 : 400);
  appendLe32(body, 0);
  appendLe16(body, 0);
  appendShortText(body, L"Arial");
  appendRecord(out, idFont, body);
}

/// `flags` and `usedParts` as the format has them: style or cell, parent, and which parts differ from the parent.
void appendFormat(std::string& out, unsigned font, unsigned flags, unsigned usedParts) {
  std::string body;
  appendLe16(body, font);
  appendLe16(body, 0);
  appendLe16(body, flags);
  appendLe8(body, 0x20); // text at the lower edge
  appendLe8(body, 0);
  appendLe8(body, 0);
  appendLe8(body, usedParts);
  appendLe32(body, 0);
  appendLe32(body, 0);
  appendLe16(body, 0x20C0);
  appendRecord(out, idExtendedFormat, body);
}

/// Fonts and formats; the formats 15 and 16 are `CellFormats`' plain and header.
void appendFormats(std::string& out) {
  for (std::size_t font = 0; font < fontCount; ++font) {
    appendFont(out, font == boldFont);
  }
  constexpr unsigned styleFlags = 0xFFF5;
  constexpr unsigned cellFlags = 0x0001;
  for (unsigned format = 0; format < styleFormatCount; ++format) {
    appendFormat(out, 0, styleFlags, format == 0 ? 0 : 0xF4);
  }
  appendFormat(out, 0, cellFlags, 0);
  appendFormat(out, boldFont, cellFlags, 0x08);
  std::string normal;
  appendLe16(normal, 0x8000);
  appendLe8(normal, 0);
  appendLe8(normal, 0xFF);
  appendRecord(out, idStyle, normal);
}

std::size_t shownWidth(const BookCell& cell) {
  const auto* text = std::get_if<std::wstring>(&cell);
  return text == nullptr ? 0 : text->size() + 1;
}

void appendColumnWidths(std::string& out, const BookSheet& sheet, unsigned format) {
  std::vector<double> widths = sheet.columnWidths;
  for (const BookRow& row : sheet.rows) {
    if (widths.size() < row.size()) widths.resize(row.size(), 0.0);
    for (std::size_t column = sheet.columnWidths.size(); column < row.size(); ++column) {
      const std::size_t fitting = std::clamp(shownWidth(row[column]), narrowestColumn, widestColumn);
      widths[column] = std::max(widths[column], static_cast<double>(fitting));
    }
  }
  widths.resize(std::min(widths.size(), maximumColumns));
  for (std::size_t column = 0; column < widths.size(); ++column) {
    const double characters = std::clamp(widths[column], 0.0, largestColumnWidth);
    std::string body;
    appendLe16(body, static_cast<unsigned>(column));
    appendLe16(body, static_cast<unsigned>(column));
    appendLe16(body, static_cast<unsigned>(std::lround(characters * columnUnits)));
    appendLe16(body, format);
    appendLe32(body, 0);
    appendRecord(out, idColumnInfo, body);
  }
}

void appendView(std::string& out, bool isFrozen, Selection selection) {
  constexpr unsigned usual = 0x00B6;
  constexpr unsigned selectedAndShown = 0x0600;
  constexpr unsigned frozen = 0x0108;
  std::string body;
  appendLe16(
      body, usual | (selection == Selection::selected ? selectedAndShown : 0U) | (isFrozen ? frozen : 0U));
  appendLe32(body, 0);
  appendLe32(body, 0x40);
  appendLe32(body, 0);
  appendLe32(body, 0);
  appendRecord(out, idWindow2, body);
  if (!isFrozen) return;
  constexpr unsigned lowerPane = 2;
  std::string pane;
  for (const unsigned value : {0U, 1U, 1U, 0U, lowerPane}) {
    appendLe16(pane, value);
  }
  appendRecord(out, idPane, pane);
  std::string cursor;
  appendLe8(cursor, lowerPane);
  for (const unsigned value : {1U, 0U, 0U, 1U, 1U, 1U}) {
    appendLe16(cursor, value);
  }
  appendLe16(cursor, 0);
  appendRecord(out, idSelection, cursor);
}

UsedRange usedRangeOf(const std::vector<BookRow>& rows) {
  UsedRange range;
  for (std::size_t row = 0; row < rows.size(); ++row) {
    if (rows[row].empty()) continue;
    range.include(row, 0);
    range.include(row, rows[row].size() - 1);
  }
  return range;
}

std::optional<std::wstring> bookProblem(const std::vector<BookSheet>& sheets) {
  if (sheets.empty()) return L"a workbook needs a sheet";
  for (std::size_t i = 0; i < sheets.size(); ++i) {
    if (auto problem = sheetProblem(sheets[i])) return problem;
    for (std::size_t earlier = 0; earlier < i; ++earlier) {
      if (!equalsOrdinalNoCase(sheets[earlier].name, sheets[i].name)) continue;
      return L"sheet name \"" + sheets[i].name + L"\" is there twice";
    }
  }
  return std::nullopt;
}

} // namespace

namespace biff {

std::optional<std::wstring> sheetProblem(const BookSheet& sheet) {
  if (auto problem = sheetNameProblem(sheet.name)) return problem;
  for (std::size_t row = 0; row < sheet.rows.size(); ++row) {
    if (auto problem = rowProblem(sheet.rows[row], row)) return L"sheet \"" + sheet.name + L"\": " + *problem;
  }
  return std::nullopt;
}

std::string sheetRecords(
    const BookSheet& sheet, const CellFormats& formats, Selection selection, SharedStringsWriter& strings) {
  const bool hasBoldHeader = sheet.header != BookSheet::Header::none;
  std::string out;
  appendBegin(out, sheetSubstream);
  appendColumnWidths(out, sheet, formats.plain);
  appendRecord(out, idDimensions, dimensionsBody(usedRangeOf(sheet.rows)));
  RowBlocks blocks;
  blocks.rows = sheet.rows;
  blocks.cellFormat = [&](std::size_t row) {
    return hasBoldHeader && row == 0 ? formats.header : formats.plain;
  };
  blocks.needsRowRecord = [](std::size_t) { return true; };
  appendRowBlocks(out, blocks, strings);
  appendView(out, sheet.header == BookSheet::Header::boldAndFrozen, selection);
  appendRecord(out, idEndOfFile, {});
  return out;
}

std::string boundSheetBody(std::wstring_view name) {
  std::string body;
  appendLe32(body, 0);
  appendLe16(body, 0);
  appendShortText(body, name);
  return body;
}

std::string padWorkbookStream(std::string stream) {
  if (stream.size() < smallStreamLimit) stream.resize(smallStreamLimit, '\0');
  return stream;
}

} // namespace biff

std::optional<std::string> buildWorkbook(const std::vector<BookSheet>& sheets, std::wstring& error) {
  if (auto problem = bookProblem(sheets)) {
    error = std::move(*problem);
    return std::nullopt;
  }
  std::string globals;
  appendBegin(globals, globalsSubstream);
  appendNumberRecord(globals, idCodePage, utf16CodePage);
  appendWindow(globals);
  appendNumberRecord(globals, idDateMode, 0);
  appendFormats(globals);

  SharedStringsWriter strings;
  std::vector<std::string> bodies;
  std::vector<std::size_t> placeFields;
  for (std::size_t i = 0; i < sheets.size(); ++i) {
    bodies.push_back(
        sheetRecords(sheets[i], {}, i == 0 ? Selection::selected : Selection::unselected, strings));
    placeFields.push_back(globals.size() + headerBytes);
    appendRecord(globals, idBoundSheet, boundSheetBody(sheets[i].name));
  }
  globals += strings.records();
  appendRecord(globals, idEndOfFile, {});

  std::string stream = std::move(globals);
  for (std::size_t i = 0; i < bodies.size(); ++i) {
    patchLe32(stream, placeFields[i], static_cast<std::uint32_t>(stream.size()));
    stream += bodies[i];
  }
  return buildOle2(singleStreamItems(L"Workbook", padWorkbookStream(std::move(stream))));
}

std::optional<std::wstring> saveWorkbook(std::wstring_view path, const std::vector<BookSheet>& sheets) {
  const auto message = [&path](std::wstring_view reason) {
    return std::wstring(path) + L": " + std::wstring(reason);
  };
  std::wstring error;
  const auto bytes = buildWorkbook(sheets, error);
  if (!bytes) return message(error);
  if (auto reason = replaceFile(path, *bytes)) return message(*reason);
  return std::nullopt;
}

} // namespace brenvolt
