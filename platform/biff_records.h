// Workbook streams record by record: the ids that matter here, and a walk that reads ahead in large pieces and skips
// unneeded records.
#pragma once

#include "platform/ole2_container.h"

#include <cstdint>
#include <span>
#include <vector>

namespace brenvolt::biff {

/// Record ids. Ids of older versions that later programs still write follow the usual one.
enum Id : std::uint16_t {
  idFormula = 0x0006,
  idEndOfFile = 0x000A,
  idDateMode = 0x0022,
  idFilePassword = 0x002F,
  idFont = 0x0031,
  idContinue = 0x003C,
  idWindow1 = 0x003D,
  idPane = 0x0041,
  idCodePage = 0x0042,
  idColumnInfo = 0x007D,
  idBoundSheet = 0x0085,
  idMulRk = 0x00BD,
  idMulBlank = 0x00BE,
  idRichString = 0x00D6,
  idDbCell = 0x00D7,
  idExtendedFormat = 0x00E0,
  idMergedCells = 0x00E5,
  idSharedStrings = 0x00FC,
  idLabelShared = 0x00FD,
  idSharedStringIndex = 0x00FF,
  idTabIds = 0x013D,
  idSupBook = 0x01AE,
  idDimensions = 0x0200,
  idBlank = 0x0201,
  idNumber = 0x0203,
  idLabel = 0x0204,
  idBoolError = 0x0205,
  idString = 0x0207,
  idRow = 0x0208,
  idIndex = 0x020B,
  idArray = 0x0221,
  idTable = 0x0236,
  idWindow2 = 0x023E,
  idRk = 0x027E,
  idStyle = 0x0293,
  idFormula3 = 0x0206,
  idFormula4 = 0x0406,
  idFormat = 0x041E,
  idSharedFormula = 0x04BC,
  idBegin = 0x0809,
};

inline constexpr std::uint16_t version5 = 0x0500;
inline constexpr std::uint16_t version8 = 0x0600;
inline constexpr std::size_t headerBytes = 4;
/// The longest body that programs accept; more is written in CONTINUE records.
inline constexpr std::size_t longestBody = 8224;

/// A stream seen through a buffer.
class ByteWindow final {
public:
  explicit ByteWindow(const Ole2Stream& stream) : stream_(stream) {}

  [[nodiscard]] std::uint64_t size() const { return stream_.size(); }
  /// `count` bytes from `offset` on (at most 65,540), good until the next call; null when the stream ends before.
  [[nodiscard]] const std::uint8_t* view(std::uint64_t offset, std::size_t count) {
    if (offset >= start_ && offset - start_ <= filled_ && count <= filled_ - (offset - start_)) {
      return buffer_.data() + (offset - start_);
    }
    return refill(offset, count);
  }

private:
  const std::uint8_t* refill(std::uint64_t offset, std::size_t count);

  const Ole2Stream& stream_;
  std::vector<std::uint8_t> buffer_;
  std::uint64_t start_ = 0;
  std::size_t filled_ = 0;
};

/// The position of a record in its stream.
struct RecordPlace {
  std::uint16_t id = 0;
  std::size_t length = 0;
  std::uint64_t offset = 0;

  [[nodiscard]] std::uint64_t bodyOffset() const { return offset + headerBytes; }
  [[nodiscard]] std::uint64_t endOffset() const { return bodyOffset() + length; }
};

/// Walks the records from a place on.
class RecordWalk final {
public:
  explicit RecordWalk(ByteWindow& window, std::uint64_t offset = 0) : window_(window), next_(offset) {}

  /// The next record; false when the stream ends or the record reaches beyond it.
  [[nodiscard]] bool next();
  [[nodiscard]] const RecordPlace& place() const { return place_; }
  [[nodiscard]] std::uint16_t id() const { return place_.id; }
  /// The record's bytes, valid until the walk continues. Empty when they cannot be read.
  [[nodiscard]] std::span<const std::uint8_t> body();
  void seek(std::uint64_t offset) { next_ = offset; }

private:
  ByteWindow& window_;
  std::uint64_t next_;
  RecordPlace place_;
};

} // namespace brenvolt::biff
