// Numbers in the byte order of the workbook formats, read and written one by one: the same on every processor.
#pragma once

#include <bit>
#include <cstdint>
#include <string>

namespace brenvolt {

/// Bytes on their way into a file.
using ByteText = std::string;

[[nodiscard]] inline std::uint16_t readLe16(const std::uint8_t* bytes) {
  return static_cast<std::uint16_t>(bytes[0] | (bytes[1] << 8));
}

[[nodiscard]] inline std::uint32_t readLe32(const std::uint8_t* bytes) {
  return static_cast<std::uint32_t>(readLe16(bytes)) |
         (static_cast<std::uint32_t>(readLe16(bytes + 2)) << 16);
}

[[nodiscard]] inline std::uint64_t readLe64(const std::uint8_t* bytes) {
  return static_cast<std::uint64_t>(readLe32(bytes)) |
         (static_cast<std::uint64_t>(readLe32(bytes + 4)) << 32);
}

[[nodiscard]] inline double readLeDouble(const std::uint8_t* bytes) {
  return std::bit_cast<double>(readLe64(bytes));
}

inline void appendLe8(ByteText& out, unsigned value) {
  out.push_back(static_cast<char>(static_cast<unsigned char>(value & 0xFFU)));
}

inline void appendLe16(ByteText& out, unsigned value) {
  appendLe8(out, value);
  appendLe8(out, value >> 8);
}

inline void appendLe32(ByteText& out, std::uint32_t value) {
  appendLe16(out, value & 0xFFFFU);
  appendLe16(out, value >> 16);
}

inline void appendLeDouble(ByteText& out, double value) {
  const auto bits = std::bit_cast<std::uint64_t>(value);
  appendLe32(out, static_cast<std::uint32_t>(bits & 0xFFFFFFFFU));
  appendLe32(out, static_cast<std::uint32_t>(bits >> 32));
}

/// Overwrites two or four bytes at `offset`, which must be inside `out`.
inline void patchLe16(ByteText& out, std::size_t offset, unsigned value) {
  out[offset] = static_cast<char>(static_cast<unsigned char>(value & 0xFFU));
  out[offset + 1] = static_cast<char>(static_cast<unsigned char>((value >> 8) & 0xFFU));
}

inline void patchLe32(ByteText& out, std::size_t offset, std::uint32_t value) {
  patchLe16(out, offset, value & 0xFFFFU);
  patchLe16(out, offset + 2, value >> 16);
}

[[nodiscard]] inline const std::uint8_t* bytesOf(const ByteText& text) {
  return reinterpret_cast<const std::uint8_t*>(text.data());
}

} // namespace brenvolt
