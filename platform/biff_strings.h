// The texts of a workbook: strings that run on over several records, the shared string table, and the byte strings of
// older files in their code page.
#pragma once

#include "platform/biff_records.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace brenvolt::biff {

/// Many texts in little memory: one byte a character where the file stores one, two otherwise.
class TextPool final {
public:
  using Id = std::uint32_t;

  /// Starts a text of at most `characters` UTF-16 units, which `addBytes` and `addUnits` then fill.
  void begin(std::size_t characters);
  void addBytes(std::span<const std::uint8_t> latin1);
  void addUnits(std::span<const std::uint8_t> utf16);
  /// Ends the text.
  Id end();
  Id add(std::wstring_view text);
  [[nodiscard]] std::wstring text(Id id) const;

private:
  struct Place {
    std::uint32_t offset = 0;
    std::uint32_t characters = 0;
    bool isWide = false;
  };
  // Pieces of fixed size: growing never copies what is there, so the peak stays at what the texts need.
  static constexpr unsigned pieceShift = 20;
  [[nodiscard]] std::uint8_t* at(std::uint32_t offset) const;

  std::vector<std::unique_ptr<std::uint8_t[]>> pieces_;
  std::vector<Place> places_;
  std::uint32_t nextOffset_ = 0;
  Place current_;
};

/// Reads through a record and the CONTINUE records after it.
class StringCursor final {
public:
  StringCursor(ByteWindow& window, std::uint64_t position, std::uint64_t recordEnd)
      : window_(window), position_(position), recordEnd_(recordEnd) {}

  [[nodiscard]] std::uint64_t position() const { return position_; }
  [[nodiscard]] std::uint64_t recordEnd() const { return recordEnd_; }

  void moveTo(std::uint64_t position, std::uint64_t recordEnd) {
    position_ = position;
    recordEnd_ = recordEnd;
  }

  /// Numbers of the string's head; nothing when the records end.
  [[nodiscard]] std::optional<std::uint8_t> byte();
  [[nodiscard]] std::optional<std::uint16_t> word();
  /// One string: its length in one or two bytes, its flags, the characters, formatting runs and phonetic text
  /// (both left out). Goes to `pool` when given, else it is passed over. False when the records end within it.
  enum class LengthField { oneByte, twoBytes };
  [[nodiscard]] bool string(LengthField lengthField, TextPool* pool);
  [[nodiscard]] bool skip(std::uint64_t count);
  /// Whether neither this record nor a following one contains more.
  [[nodiscard]] bool isAtEnd();

private:
  [[nodiscard]] bool nextRecord();
  [[nodiscard]] bool characters(std::size_t count, bool isWide, TextPool* pool);

  ByteWindow& window_;
  std::uint64_t position_;
  std::uint64_t recordEnd_;
};

/// The shared string table: read as far as needed, and remembered in coarse steps, so that the next sheet does not
/// walk through it from its start again.
class SharedStrings final {
public:
  /// `place`: the SST record.
  void setPlace(const RecordPlace& place) { place_ = place; }

  /// Puts the strings of these indices (sorted, each once) into `pool`, in order; false when one does not exist or
  /// the table is damaged.
  [[nodiscard]] bool read(
      ByteWindow& window, std::span<const std::uint32_t> indices, TextPool& pool,
      std::vector<TextPool::Id>& ids);

  /// How many strings there really are; nothing when the table is damaged.
  [[nodiscard]] static std::optional<std::uint32_t> count(ByteWindow& window, const RecordPlace& place);

private:
  struct Step {
    std::uint64_t position = 0;
    std::uint64_t recordEnd = 0;
  };
  static constexpr std::uint32_t stringsPerStep = 64;

  std::optional<RecordPlace> place_;
  std::uint32_t count_ = 0;
  std::vector<Step> steps_;
};

/// Byte strings in the code page that a workbook names.
class CodePage final {
public:
  /// `number` as in the CODEPAGE record.
  explicit CodePage(unsigned number = 1252) : number_(number) {}
  /// The text; a byte without meaning becomes U+FFFD. An unknown code page is read as Western European.
  [[nodiscard]] std::wstring decode(std::span<const std::uint8_t> bytes) const;

private:
  unsigned number_;
};

} // namespace brenvolt::biff
