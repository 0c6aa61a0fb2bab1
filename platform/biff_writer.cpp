#include "platform/biff_writer.h"

#include "platform/little_endian.h"
#include "text/assertion.h"
#include "text/encoding.h"

#include <algorithm>
#include <cmath>

namespace brenvolt::biff {

namespace {

constexpr std::size_t rowsPerBlock = 32;
constexpr unsigned defaultRowHeight = 255; // in twentieths of a point
constexpr std::uint32_t rowOptions = 0x000F0100;
constexpr std::wstring_view forbiddenInSheetName = L"[]:*?/\\";

std::size_t unitCount(std::wstring_view text) {
  std::size_t count = 0;
  for (const wchar_t c : text) {
    count += static_cast<std::uint32_t>(c) > 0xFFFF ? 2 : 1;
  }
  return count;
}

bool isEmptyCell(const BookCell& cell) {
  const auto* text = std::get_if<std::wstring>(&cell);
  return text != nullptr && text->empty();
}

/// Whether every unit fits into one byte: half the space.
bool isNarrow(std::string_view units) {
  for (std::size_t i = 1; i < units.size(); i += 2) {
    if (units[i] != '\0') return false;
  }
  return true;
}

std::string narrowed(std::string_view units) {
  std::string bytes;
  bytes.reserve(units.size() / 2);
  for (std::size_t i = 0; i < units.size(); i += 2) {
    bytes.push_back(units[i]);
  }
  return bytes;
}

} // namespace

std::optional<std::wstring> sheetNameProblem(std::wstring_view name) {
  if (name.empty()) return L"a sheet needs a name";
  const std::wstring quoted = L"sheet name \"" + std::wstring(name) + L"\"";
  if (unitCount(name) > maximumSheetNameUnits) return quoted + L": longer than 31 characters";
  for (const wchar_t c : name) {
    if (c < L' ' || forbiddenInSheetName.find(c) != std::wstring_view::npos) {
      return quoted + L": [ ] : * ? / \\ and control characters are not allowed";
    }
  }
  if (name.front() == L'\'' || name.back() == L'\'') return quoted + L": an apostrophe at its start or end";
  return std::nullopt;
}

std::optional<std::wstring> rowProblem(const BookRow& cells, std::size_t row) {
  if (row >= maximumRows) return L"a sheet has at most 65536 rows";
  if (cells.size() > maximumColumns) return L"a sheet has at most 256 columns";
  for (std::size_t column = 0; column < cells.size(); ++column) {
    const auto* text = std::get_if<std::wstring>(&cells[column]);
    const bool isTooLong = text != nullptr && unitCount(*text) > maximumTextUnits;
    const bool isNoNumber = text == nullptr && !std::isfinite(std::get<double>(cells[column]));
    if (!isTooLong && !isNoNumber) continue;
    return L"row " + std::to_wstring(row + 1) + L", column " + std::to_wstring(column + 1) +
           (isTooLong ? L": a cell has at most 32767 characters" : L": the number is not finite");
  }
  return std::nullopt;
}

void appendRecord(std::string& out, std::uint16_t id, std::string_view body) {
  BRENVOLT_ASSERT(body.size() <= longestBody, "A workbook record is longer than programs accept.");
  appendLe16(out, id);
  appendLe16(out, static_cast<unsigned>(body.size()));
  out += body;
}

void appendShortText(std::string& body, std::wstring_view text) {
  const std::string units = toUtf16Le(text);
  appendLe8(body, static_cast<unsigned>(units.size() / 2));
  appendLe8(body, isNarrow(units) ? 0 : 1);
  body += isNarrow(units) ? narrowed(units) : units;
}

SharedStringsWriter::SharedStringsWriter() : bodies_{std::string(8, '\0')} {}

SharedStringsWriter::SharedStringsWriter(std::vector<std::string> bodies, std::uint32_t textCount)
    : bodies_(std::move(bodies)), textCount_(textCount) {
  BRENVOLT_ASSERT(
      !bodies_.empty() && bodies_[0].size() >= 8, "A shared string table has no head to go on from.");
  cellCount_ = readLe32(bytesOf(bodies_[0]));
}

std::uint32_t SharedStringsWriter::add(std::wstring_view text) {
  ++cellCount_;
  const auto [place, isNew] = numbers_.try_emplace(std::wstring(text), textCount_);
  if (isNew) {
    ++textCount_;
    append(toUtf16Le(text));
  }
  return place->second;
}

void SharedStringsWriter::append(std::string_view units) {
  constexpr std::size_t headBytes = 3;
  const bool narrow = isNarrow(units);
  const std::string characters = narrow ? narrowed(units) : std::string(units);
  const std::size_t width = narrow ? 1 : 2;
  // The header stays together with one character: some readers require that.
  if (bodies_.back().size() + headBytes + width > longestBody) bodies_.emplace_back();
  appendLe16(bodies_.back(), static_cast<unsigned>(units.size() / 2));
  appendLe8(bodies_.back(), narrow ? 0 : 1);
  std::size_t done = 0;
  while (true) {
    const std::size_t room = (longestBody - bodies_.back().size()) / width * width;
    const std::size_t count = std::min(room, characters.size() - done);
    bodies_.back().append(characters, done, count);
    done += count;
    if (done == characters.size()) return;
    // Each further record specifies the width of its characters again.
    bodies_.emplace_back(1, narrow ? '\0' : '\1');
  }
}

std::string SharedStringsWriter::records() const {
  std::string out;
  for (std::size_t i = 0; i < bodies_.size(); ++i) {
    appendRecord(out, i == 0 ? idSharedStrings : idContinue, bodies_[i]);
  }
  patchLe32(out, headerBytes, cellCount_);
  patchLe32(out, headerBytes + 4, textCount_);
  return out;
}

void appendRowBlocks(std::string& out, const RowBlocks& blocks, SharedStringsWriter& strings) {
  for (std::size_t block = 0; block < blocks.rows.size(); block += rowsPerBlock) {
    const std::size_t end = std::min(block + rowsPerBlock, blocks.rows.size());
    for (std::size_t i = block; i < end; ++i) {
      const std::size_t row = blocks.firstRow + i;
      if (!blocks.needsRowRecord(row)) continue;
      std::string body;
      appendLe16(body, static_cast<unsigned>(row));
      appendLe16(body, 0);
      appendLe16(body, static_cast<unsigned>(blocks.rows[i].size()));
      appendLe16(body, defaultRowHeight);
      appendLe32(body, 0);
      appendLe32(body, rowOptions);
      appendRecord(out, idRow, body);
    }
    for (std::size_t i = block; i < end; ++i) {
      const std::size_t row = blocks.firstRow + i;
      const unsigned format = blocks.cellFormat(row);
      for (std::size_t column = 0; column < blocks.rows[i].size(); ++column) {
        const BookCell& cell = blocks.rows[i][column];
        if (isEmptyCell(cell)) continue;
        std::string body;
        appendLe16(body, static_cast<unsigned>(row));
        appendLe16(body, static_cast<unsigned>(column));
        appendLe16(body, format);
        if (const auto* text = std::get_if<std::wstring>(&cell)) {
          appendLe32(body, strings.add(*text));
          appendRecord(out, idLabelShared, body);
        } else {
          appendLeDouble(body, std::get<double>(cell));
          appendRecord(out, idNumber, body);
        }
      }
    }
  }
}

void UsedRange::include(std::size_t row, std::size_t column) {
  const auto wideRow = static_cast<std::uint32_t>(row);
  const auto wideColumn = static_cast<std::uint16_t>(column);
  const bool isFirst = isEmpty();
  firstRow = isFirst ? wideRow : std::min(firstRow, wideRow);
  firstColumn = isFirst ? wideColumn : std::min(firstColumn, wideColumn);
  endRow = isFirst ? wideRow + 1 : std::max(endRow, wideRow + 1);
  endColumn = std::max(isFirst ? std::uint16_t{0} : endColumn, static_cast<std::uint16_t>(wideColumn + 1));
}

std::string dimensionsBody(const UsedRange& range) {
  std::string body;
  appendLe32(body, range.firstRow);
  appendLe32(body, range.endRow);
  appendLe16(body, range.firstColumn);
  appendLe16(body, range.endColumn);
  appendLe16(body, 0);
  return body;
}

} // namespace brenvolt::biff
