// Reading compound files: the container around a workbook, a small file system of storages and streams. Streams are
// read piece by piece, so one sheet of a large workbook costs only the sectors that contain it.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace brenvolt {

/// The number after the last sector of a stream.
inline constexpr std::uint32_t endOfChain = 0xFFFFFFFE;

/// One entry of the container's directory.
struct Ole2Entry {
  enum class Type : std::uint8_t { unused = 0, storage = 1, stream = 2, root = 5 };
  static constexpr std::uint32_t none = 0xFFFFFFFF;
  static constexpr std::size_t byteCount = 128;

  /// Unchanged from the file: what a writer copies without knowing its meaning.
  std::array<std::uint8_t, byteCount> raw{};
  std::wstring name;
  Type type = Type::unused;
  std::uint32_t left = none;
  std::uint32_t right = none;
  std::uint32_t child = none;
  std::uint32_t startSector = 0;
  std::uint64_t size = 0;
};

/// The bytes of one stream; valid as long as its container lives.
class Ole2Stream final {
public:
  [[nodiscard]] std::uint64_t size() const { return size_; }
  /// Fills `out` from `offset` on. False when the stream ends before or the file cannot be read.
  [[nodiscard]] bool read(std::uint64_t offset, std::span<std::uint8_t> out) const;

private:
  friend class Ole2Container;
  const class Ole2File* file_ = nullptr;
  /// Set for a small stream: its sectors are pieces of this one.
  std::shared_ptr<const Ole2Stream> outer_;
  std::vector<std::uint32_t> sectors_;
  unsigned sectorShift_ = 9;
  std::uint64_t size_ = 0;
};

/// One compound file, open for reading. Failures are reported by `error()` as a reason without the file's name.
class Ole2Container final {
public:
  Ole2Container();
  ~Ole2Container();
  Ole2Container(Ole2Container&&) noexcept;
  Ole2Container& operator=(Ole2Container&&) noexcept;

  [[nodiscard]] bool open(std::wstring_view path);
  [[nodiscard]] const std::wstring& error() const { return error_; }
  [[nodiscard]] const std::vector<Ole2Entry>& entries() const { return entries_; }
  /// The stream of this name directly below the root, found without case, as an index into `entries()`.
  [[nodiscard]] std::optional<std::size_t> findRootStream(std::wstring_view name) const;
  [[nodiscard]] std::optional<Ole2Stream> openStream(std::size_t entry);

private:
  bool fail(std::wstring reason);
  bool readHeader();
  bool readSectorTable(std::span<const std::uint8_t> header);
  bool readDirectory(std::uint32_t start);
  bool readSmallStreams(std::uint32_t start);
  /// The sectors of a chain: as many as `count`, or all up to its end when `count` is absent.
  [[nodiscard]] std::optional<std::vector<std::uint32_t>> followChain(
      const std::vector<std::uint32_t>& table, std::uint32_t start, std::optional<std::uint64_t> count) const;

  std::unique_ptr<class Ole2File> file_;
  unsigned sectorShift_ = 9;
  std::uint64_t smallStreamLimit_ = 4096;
  std::vector<std::uint32_t> sectorTable_;
  std::vector<std::uint32_t> smallSectorTable_;
  std::shared_ptr<const Ole2Stream> smallStreams_;
  std::vector<Ole2Entry> entries_;
  std::wstring error_;
};

} // namespace brenvolt
