#include "platform/biff_strings.h"

#include "platform/little_endian.h"
#include "text/encoding.h"

#include <algorithm>
#include <cerrno>
#include <cstring>

#include <iconv.h>

namespace brenvolt::biff {

void TextPool::begin(std::size_t characters) {
  const std::uint64_t pieceBytes = std::uint64_t{1} << pieceShift;
  // A text never runs over the end of a piece; the longest one is far smaller than a piece.
  const std::uint64_t left = pieces_.size() * pieceBytes - nextOffset_;
  if (left < 2 * characters + 1) {
    nextOffset_ = static_cast<std::uint32_t>(pieces_.size() * pieceBytes);
    // Left unset on purpose: pages that no text reaches are never touched.
    pieces_.emplace_back(new std::uint8_t[pieceBytes]);
  }
  current_ = {nextOffset_, 0, false};
}

std::uint8_t* TextPool::at(std::uint32_t offset) const {
  return pieces_[offset >> pieceShift].get() + (offset & ((std::uint32_t{1} << pieceShift) - 1));
}

void TextPool::addBytes(std::span<const std::uint8_t> latin1) {
  if (latin1.empty()) return;
  if (!current_.isWide) {
    std::memcpy(at(current_.offset) + current_.characters, latin1.data(), latin1.size());
  } else {
    std::uint8_t* target = at(current_.offset) + 2 * static_cast<std::size_t>(current_.characters);
    for (const std::uint8_t byte : latin1) {
      *target++ = byte;
      *target++ = 0;
    }
  }
  current_.characters += static_cast<std::uint32_t>(latin1.size());
}

void TextPool::addUnits(std::span<const std::uint8_t> utf16) {
  if (utf16.empty()) return;
  std::uint8_t* start = at(current_.offset);
  if (!current_.isWide) {
    // What came as single bytes so far is widened in place, from its end.
    for (std::size_t i = current_.characters; i-- > 0;) {
      start[2 * i] = start[i];
      start[2 * i + 1] = 0;
    }
    current_.isWide = true;
  }
  std::memcpy(start + 2 * static_cast<std::size_t>(current_.characters), utf16.data(), utf16.size());
  current_.characters += static_cast<std::uint32_t>(utf16.size() / 2);
}

TextPool::Id TextPool::end() {
  nextOffset_ += current_.characters * (current_.isWide ? 2U : 1U);
  places_.push_back(current_);
  return static_cast<Id>(places_.size() - 1);
}

TextPool::Id TextPool::add(std::wstring_view text) {
  const std::string units = toUtf16Le(text);
  begin(units.size() / 2);
  addUnits({bytesOf(units), units.size()});
  return end();
}

std::wstring TextPool::text(Id id) const {
  const Place& place = places_[id];
  const std::uint8_t* bytes = place.characters == 0 ? nullptr : at(place.offset);
  if (place.isWide)
    return fromUtf16Le({reinterpret_cast<const char*>(bytes), 2 * std::size_t{place.characters}});
  return std::wstring(bytes, bytes + place.characters);
}

bool StringCursor::nextRecord() {
  const std::uint8_t* header = window_.view(recordEnd_, headerBytes);
  if (header == nullptr || readLe16(header) != idContinue) return false;
  const std::uint64_t end = recordEnd_ + headerBytes + readLe16(header + 2);
  if (end > window_.size()) return false;
  position_ = recordEnd_ + headerBytes;
  recordEnd_ = end;
  return true;
}

std::optional<std::uint8_t> StringCursor::byte() {
  while (position_ >= recordEnd_) {
    if (!nextRecord()) return std::nullopt;
  }
  const std::uint8_t* value = window_.view(position_, 1);
  if (value == nullptr) return std::nullopt;
  ++position_;
  return *value;
}

std::optional<std::uint16_t> StringCursor::word() {
  if (recordEnd_ - position_ >= 2 && position_ < recordEnd_) {
    const std::uint8_t* value = window_.view(position_, 2);
    if (value == nullptr) return std::nullopt;
    position_ += 2;
    return readLe16(value);
  }
  const auto low = byte();
  const auto high = byte();
  if (!low || !high) return std::nullopt;
  return static_cast<std::uint16_t>(*low | (*high << 8));
}

bool StringCursor::skip(std::uint64_t count) {
  while (count > 0) {
    if (position_ >= recordEnd_ && !nextRecord()) return false;
    const std::uint64_t step = std::min(count, recordEnd_ - position_);
    position_ += step;
    count -= step;
  }
  return true;
}

bool StringCursor::isAtEnd() {
  while (position_ >= recordEnd_) {
    if (!nextRecord()) return true;
  }
  return false;
}

bool StringCursor::characters(std::size_t count, bool isWide, TextPool* pool) {
  while (count > 0) {
    if (position_ >= recordEnd_) {
      // Where the characters continue in the next record, its first byte specifies their width again.
      if (!nextRecord()) return false;
      if (position_ >= recordEnd_) continue;
      const auto flags = byte();
      if (!flags) return false;
      isWide = (*flags & 1) != 0;
      continue;
    }
    const std::size_t width = isWide ? 2 : 1;
    const std::uint64_t fitting = (recordEnd_ - position_) / width;
    // Half a character at the end of a record: no program writes that.
    if (fitting == 0) return false;
    const auto taken = static_cast<std::size_t>(std::min<std::uint64_t>(count, fitting));
    if (pool != nullptr) {
      const std::uint8_t* bytes = window_.view(position_, taken * width);
      if (bytes == nullptr) return false;
      if (isWide) {
        pool->addUnits({bytes, taken * 2});
      } else {
        pool->addBytes({bytes, taken});
      }
    }
    position_ += taken * width;
    count -= taken;
  }
  return true;
}

bool StringCursor::string(LengthField lengthField, TextPool* pool) {
  const auto length = lengthField == LengthField::oneByte ? std::optional<std::uint16_t>(byte()) : word();
  if (!length) return false;
  const auto flags = byte();
  if (!flags) return false;
  constexpr unsigned hasPhonetic = 4;
  constexpr unsigned hasRuns = 8;
  std::uint64_t behind = 0;
  if ((*flags & hasRuns) != 0) {
    const auto runs = word();
    if (!runs) return false;
    behind += std::uint64_t{4} * *runs;
  }
  if ((*flags & hasPhonetic) != 0) {
    const auto low = word();
    const auto high = word();
    if (!low || !high) return false;
    behind += *low | (static_cast<std::uint64_t>(*high) << 16);
  }
  if (pool != nullptr) pool->begin(*length);
  if (!characters(*length, (*flags & 1) != 0, pool)) return false;
  return skip(behind);
}

bool SharedStrings::read(
    ByteWindow& window, std::span<const std::uint32_t> indices, TextPool& pool,
    std::vector<TextPool::Id>& ids) {
  ids.clear();
  if (indices.empty()) return true;
  if (!place_) return false;
  if (steps_.empty()) {
    StringCursor head(window, place_->bodyOffset() + 4, place_->endOffset());
    const auto low = head.word();
    const auto high = head.word();
    if (!low || !high) return false;
    count_ = *low | (static_cast<std::uint32_t>(*high) << 16);
    steps_.push_back({head.position(), head.recordEnd()});
  }
  if (indices.back() >= count_) return false;

  ids.reserve(indices.size());
  std::uint32_t next = 0;
  StringCursor cursor(window, steps_[0].position, steps_[0].recordEnd);
  for (const std::uint32_t index : indices) {
    const std::size_t step = std::min<std::size_t>(index / stringsPerStep, steps_.size() - 1);
    if (step * stringsPerStep > next) {
      next = static_cast<std::uint32_t>(step * stringsPerStep);
      cursor.moveTo(steps_[step].position, steps_[step].recordEnd);
    }
    for (;; ++next) {
      if (next == steps_.size() * stringsPerStep) steps_.push_back({cursor.position(), cursor.recordEnd()});
      const bool isWanted = next == index;
      if (!cursor.string(StringCursor::LengthField::twoBytes, isWanted ? &pool : nullptr)) return false;
      if (isWanted) break;
    }
    ids.push_back(pool.end());
    ++next;
  }
  return true;
}

std::optional<std::uint32_t> SharedStrings::count(ByteWindow& window, const RecordPlace& place) {
  StringCursor cursor(window, place.bodyOffset() + 8, place.endOffset());
  std::uint32_t count = 0;
  for (; !cursor.isAtEnd(); ++count) {
    if (!cursor.string(StringCursor::LengthField::twoBytes, nullptr)) return std::nullopt;
  }
  return count;
}

std::wstring CodePage::decode(std::span<const std::uint8_t> bytes) const {
  if (number_ == 1200) return fromUtf16Le({reinterpret_cast<const char*>(bytes.data()), bytes.size()});
  std::string name = "CP" + std::to_string(number_);
  if (number_ == 0x8000 || number_ == 10000) name = "MACINTOSH";
  if (number_ == 0x8001) name = "CP1252";
  iconv_t converter = iconv_open("UTF-16LE", name.c_str());
  // NOLINTNEXTLINE(performance-no-int-to-ptr): the library's way of saying no.
  const iconv_t none = reinterpret_cast<iconv_t>(-1);
  if (converter == none) converter = iconv_open("UTF-16LE", "CP1252");
  if (converter == none) return std::wstring(bytes.begin(), bytes.end());

  std::string input(bytes.begin(), bytes.end());
  std::string output(4 * input.size() + 4, '\0');
  char* from = input.data();
  char* to = output.data();
  std::size_t fromLeft = input.size();
  std::size_t toLeft = output.size();
  while (fromLeft > 0 && iconv(converter, &from, &fromLeft, &to, &toLeft) == static_cast<std::size_t>(-1)) {
    if (toLeft < 2) break;
    *to++ = static_cast<char>(0xFD);
    *to++ = static_cast<char>(0xFF);
    toLeft -= 2;
    ++from;
    --fromLeft;
  }
  iconv_close(converter);
  output.resize(output.size() - toLeft);
  return fromUtf16Le(output);
}

} // namespace brenvolt::biff
