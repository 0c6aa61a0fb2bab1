#include "platform/xls_cells.h"

#include "platform/little_endian.h"

#include <bit>
#include <cmath>
#include <limits>

namespace brenvolt::biff {

namespace {

using Kind = WorkbookCell::Kind;
using Bytes = std::span<const std::uint8_t>;

/// Row, column and format: the start of every cell record.
constexpr std::size_t cellHeadBytes = 6;
constexpr std::uint8_t badNumberCode = 0x24;

/// A number in 30 bits: an integer or the upper part of a double, in hundredths when the lowest bit says so.
double decodeRk(std::uint32_t rk) {
  double value = 0.0;
  if ((rk & 2U) != 0) {
    value = static_cast<double>(static_cast<std::int32_t>(rk) >> 2);
  } else {
    value = std::bit_cast<double>(static_cast<std::uint64_t>(rk & 0xFFFFFFFCU) << 32);
  }
  return (rk & 1U) != 0 ? value / 100.0 : value;
}

class CellReader final {
public:
  CellReader(ByteWindow& window, WorkbookGlobals& globals, std::size_t rowLimit, SheetCells& sheet)
      : window_(window), globals_(globals), rowLimit_(rowLimit), sheet_(sheet) {}

  bool read(std::uint64_t offset) {
    RecordWalk walk(window_, offset);
    if (!walk.next() || walk.id() != idBegin) return false;
    for (unsigned depth = 1; depth > 0;) {
      if (!walk.next()) return false;
      if (walk.id() == idBegin) {
        ++depth;
      } else if (walk.id() == idEndOfFile) {
        --depth;
      } else if (depth == 1 && !takeRecord(walk)) {
        return false;
      }
    }
    return resolveSharedStrings();
  }

private:
  bool takeRecord(RecordWalk& walk) {
    switch (walk.id()) {
    case idLabelShared:
      return takeShared(walk.body());
    case idRk:
      return takeRks(walk.body(), cellHeadBytes + 4);
    case idMulRk:
      return takeRks(walk.body(), cellHeadBytes + 2);
    case idNumber:
      return takeNumber(walk.body());
    case idLabel:
    case idRichString:
      return takeLabel(walk);
    case idBoolError:
      return takeBoolError(walk.body());
    case idFormula:
    case idFormula3:
    case idFormula4:
      return takeFormula(walk.body());
    case idString:
      return takeFormulaText(walk);
    case idMergedCells:
      return takeMerged(walk.body());
    default:
      return true;
    }
  }

  /// The cell that a record begins with; its format is not looked at yet.
  static StoredCell head(Bytes body) {
    StoredCell cell;
    cell.row = readLe16(body.data());
    cell.column = readLe16(body.data() + 2);
    return cell;
  }

  void add(const StoredCell& cell) {
    if (cell.row < rowLimit_) sheet_.cells.push_back(cell);
  }

  void addNumber(StoredCell cell, std::uint16_t format, double value) {
    if (!std::isfinite(value)) {
      cell.kind = Kind::error;
      cell.value = badNumberCode;
      add(cell);
      return;
    }
    if (format < globals_.cellStyles.size()) cell.style = globals_.cellStyles[format];
    cell.kind = isWorkbookDate(value, cell.style, globals_.epoch) ? Kind::date : Kind::number;
    cell.value = std::bit_cast<std::uint64_t>(value);
    add(cell);
  }

  bool takeMerged(Bytes body) {
    constexpr std::size_t areaBytes = 8;
    if (body.size() < 2) return true;
    const std::size_t count = std::min(std::size_t{readLe16(body.data())}, (body.size() - 2) / areaBytes);
    for (std::size_t area = 0; area < count; ++area) {
      const auto number = [at = body.data() + 2 + area * areaBytes](std::size_t place) {
        return std::size_t{readLe16(at + 2 * place)};
      };
      sheet_.merged.push_back({number(0), number(1), number(2), number(3)});
    }
    return true;
  }

  bool takeShared(Bytes body) {
    if (body.size() < cellHeadBytes + 4) return false;
    StoredCell cell = head(body);
    cell.kind = Kind::text;
    cell.isShared = true;
    cell.value = readLe32(body.data() + cellHeadBytes);
    add(cell);
    return true;
  }

  /// RK contains one pair of format and number after row and column, MULRK a run of them and the last column.
  bool takeRks(Bytes body, std::size_t smallest) {
    if (body.size() < smallest) return false;
    StoredCell cell = head(body);
    for (std::size_t at = 4; at + 6 <= body.size(); at += 6) {
      addNumber(cell, readLe16(body.data() + at), decodeRk(readLe32(body.data() + at + 2)));
      ++cell.column;
    }
    return true;
  }

  bool takeNumber(Bytes body) {
    if (body.size() < cellHeadBytes + 8) return false;
    addNumber(head(body), readLe16(body.data() + 4), readLeDouble(body.data() + cellHeadBytes));
    return true;
  }

  bool takeLabel(RecordWalk& walk) {
    const Bytes body = walk.body();
    if (body.size() < cellHeadBytes + 2) return false;
    StoredCell cell = head(body);
    cell.kind = Kind::text;
    const auto text = readText(walk, body, cellHeadBytes);
    if (!text) return false;
    cell.value = *text;
    add(cell);
    return true;
  }

  /// The string at `start` of the record: characters, or bytes in the older version.
  std::optional<TextPool::Id> readText(RecordWalk& walk, Bytes body, std::size_t start) {
    if (globals_.version < version8) {
      const std::size_t length = readLe16(body.data() + start);
      if (body.size() < start + 2 + length) return std::nullopt;
      return sheet_.texts.add(globals_.codePage.decode(body.subspan(start + 2, length)));
    }
    StringCursor cursor(window_, walk.place().bodyOffset() + start, walk.place().endOffset());
    if (!cursor.string(StringCursor::LengthField::twoBytes, &sheet_.texts)) return std::nullopt;
    return sheet_.texts.end();
  }

  bool takeBoolError(Bytes body) {
    if (body.size() < cellHeadBytes + 2) return false;
    addBoolError(head(body), body[cellHeadBytes], body[cellHeadBytes + 1] != 0 ? Kind::error : Kind::boolean);
    return true;
  }

  void addBoolError(StoredCell cell, std::uint8_t value, Kind kind) {
    cell.kind = kind;
    cell.value = kind == Kind::boolean ? (value != 0 ? 1 : 0) : value;
    add(cell);
  }

  /// A formula's last result. A text result is in a STRING record after it.
  bool takeFormula(Bytes body) {
    if (body.size() < cellHeadBytes + 8) return false;
    formulaAwaitsText_ = false;
    const std::uint8_t* result = body.data() + cellHeadBytes;
    if (readLe16(result + 6) != 0xFFFF) return takeNumber(body);
    enum : std::uint8_t { resultText = 0, resultBoolean = 1, resultError = 2, resultEmptyText = 3 };
    switch (result[0]) {
    case resultText:
      formulaAwaitsText_ = true;
      formula_ = head(body);
      return true;
    case resultBoolean:
      addBoolError(head(body), result[2], Kind::boolean);
      return true;
    case resultError:
      addBoolError(head(body), result[2], Kind::error);
      return true;
    case resultEmptyText: {
      StoredCell cell = head(body);
      cell.kind = Kind::text;
      cell.value = sheet_.texts.add(L"");
      add(cell);
      return true;
    }
    default:
      return true;
    }
  }

  bool takeFormulaText(RecordWalk& walk) {
    if (!formulaAwaitsText_) return true;
    const Bytes body = walk.body();
    if (body.size() < 2) return false;
    const auto text = readText(walk, body, 0);
    if (!text) return false;
    formula_.kind = Kind::text;
    formula_.value = *text;
    add(formula_);
    formulaAwaitsText_ = false;
    return true;
  }

  /// Fetches the shared strings that this sheet uses, each once, and no other.
  bool resolveSharedStrings() {
    constexpr TextPool::Id unused = std::numeric_limits<TextPool::Id>::max();
    // The shortest string takes three bytes: a larger index is wrong, and must not cost memory.
    const std::uint64_t bound = window_.size() / 3;
    std::vector<TextPool::Id> textOfIndex;
    for (const StoredCell& cell : sheet_.cells) {
      if (!cell.isShared) continue;
      if (cell.value >= bound) return false;
      const auto index = static_cast<std::size_t>(cell.value);
      if (index >= textOfIndex.size()) textOfIndex.resize(index + 1, unused);
      textOfIndex[index] = 0;
    }
    std::vector<std::uint32_t> indices;
    for (std::size_t index = 0; index < textOfIndex.size(); ++index) {
      if (textOfIndex[index] != unused) indices.push_back(static_cast<std::uint32_t>(index));
    }
    std::vector<TextPool::Id> ids;
    if (!globals_.sharedStrings.read(window_, indices, sheet_.texts, ids)) return false;
    for (std::size_t i = 0; i < indices.size(); ++i) {
      textOfIndex[indices[i]] = ids[i];
    }
    for (StoredCell& cell : sheet_.cells) {
      if (!cell.isShared) continue;
      cell.value = textOfIndex[static_cast<std::size_t>(cell.value)];
      cell.isShared = false;
    }
    return true;
  }

  ByteWindow& window_;
  WorkbookGlobals& globals_;
  std::size_t rowLimit_;
  SheetCells& sheet_;
  bool formulaAwaitsText_ = false;
  StoredCell formula_;
};

} // namespace

bool readSheetCells(
    ByteWindow& window, WorkbookGlobals& globals, std::uint64_t offset, std::size_t rowLimit,
    SheetCells& sheet) {
  if (!CellReader(window, globals, rowLimit, sheet).read(offset)) return false;
  sheet.arrange();
  return true;
}

} // namespace brenvolt::biff
