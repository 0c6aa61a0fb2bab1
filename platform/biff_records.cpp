#include "platform/biff_records.h"

#include "platform/little_endian.h"

#include <algorithm>

namespace brenvolt::biff {

namespace {

// Larger than any record, small against the memory of a sheet.
constexpr std::size_t windowBytes = std::size_t{128} * 1024;

} // namespace

const std::uint8_t* ByteWindow::refill(std::uint64_t offset, std::size_t count) {
  const std::uint64_t size = stream_.size();
  if (offset > size || count > size - offset || count > windowBytes) return nullptr;
  const auto wanted = static_cast<std::size_t>(std::min<std::uint64_t>(windowBytes, size - offset));
  buffer_.resize(windowBytes);
  start_ = offset;
  filled_ = stream_.read(offset, std::span(buffer_).first(wanted)) ? wanted : 0;
  return count <= filled_ ? buffer_.data() : nullptr;
}

bool RecordWalk::next() {
  const std::uint8_t* header = window_.view(next_, headerBytes);
  if (header == nullptr) return false;
  place_ = {readLe16(header), readLe16(header + 2), next_};
  if (place_.endOffset() > window_.size()) return false;
  next_ = place_.endOffset();
  return true;
}

std::span<const std::uint8_t> RecordWalk::body() {
  const std::uint8_t* bytes = window_.view(place_.bodyOffset(), place_.length);
  return bytes == nullptr ? std::span<const std::uint8_t>() : std::span(bytes, place_.length);
}

} // namespace brenvolt::biff
