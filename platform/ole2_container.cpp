#include "platform/ole2_container.h"

#include "platform/little_endian.h"
#include "text/compare.h"
#include "text/encoding.h"

#include <algorithm>
#include <cerrno>
#include <cstring>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace brenvolt {

namespace {

constexpr std::array<std::uint8_t, 8> signature = {0xD0, 0xCF, 0x11, 0xE0, 0xA1, 0xB1, 0x1A, 0xE1};
constexpr std::size_t headerBytes = 512;
constexpr unsigned smallSectorShift = 6;
constexpr std::uint32_t lastRegularSector = 0xFFFFFFFA;
constexpr std::size_t sectorListInHeader = 109;
// Sector numbers have 32 bits, but no program that writes workbooks exceeds this size.
constexpr std::uint64_t largestFile = std::uint64_t{2} << 30;

constexpr const wchar_t* truncated = L"the file is damaged: it ends too early";
constexpr const wchar_t* damagedChain = L"the file is damaged: its sector chain is broken";

std::wstring systemReason() {
  return fromUtf8(std::strerror(errno));
}

} // namespace

/// The file of the container, read at any position.
class Ole2File final {
public:
  explicit Ole2File(int descriptor) : descriptor_(descriptor) {}
  Ole2File(const Ole2File&) = delete;
  Ole2File& operator=(const Ole2File&) = delete;
  ~Ole2File() { ::close(descriptor_); }

  /// Opens a regular file; a reason otherwise. A pipe or a device is refused before it can block.
  static std::unique_ptr<Ole2File> open(std::wstring_view path, std::wstring& reason) {
    const int descriptor = ::open(toUtf8(path).c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (descriptor < 0) {
      reason = systemReason();
      return nullptr;
    }
    auto file = std::make_unique<Ole2File>(descriptor);
    struct stat status {};
    if (::fstat(descriptor, &status) != 0) {
      reason = systemReason();
      return nullptr;
    }
    if (!S_ISREG(status.st_mode)) {
      reason = S_ISDIR(status.st_mode) ? L"is a folder, not a file" : L"is not a regular file";
      return nullptr;
    }
    file->size_ = static_cast<std::uint64_t>(status.st_size);
    return file;
  }

  [[nodiscard]] std::uint64_t size() const { return size_; }

  [[nodiscard]] bool read(std::uint64_t offset, std::span<std::uint8_t> out) const {
    while (!out.empty()) {
      const ssize_t count = ::pread(descriptor_, out.data(), out.size(), static_cast<off_t>(offset));
      if (count < 0 && errno == EINTR) continue;
      if (count <= 0) return false;
      offset += static_cast<std::uint64_t>(count);
      out = out.subspan(static_cast<std::size_t>(count));
    }
    return true;
  }

private:
  int descriptor_;
  std::uint64_t size_ = 0;
};

bool Ole2Stream::read(std::uint64_t offset, std::span<std::uint8_t> out) const {
  if (offset > size_ || out.size() > size_ - offset) return false;
  const std::uint64_t sectorBytes = std::uint64_t{1} << sectorShift_;
  while (!out.empty()) {
    const std::size_t index = static_cast<std::size_t>(offset >> sectorShift_);
    const std::uint64_t inside = offset & (sectorBytes - 1);
    std::size_t run = 1;
    std::uint64_t available = sectorBytes - inside;
    // Sectors that follow one another in the file are read in one go.
    while (available < out.size() && index + run < sectors_.size() &&
           sectors_[index + run] == sectors_[index] + run) {
      available += sectorBytes;
      ++run;
    }
    const auto count = static_cast<std::size_t>(std::min<std::uint64_t>(available, out.size()));
    const std::uint64_t place = (static_cast<std::uint64_t>(sectors_[index]) << sectorShift_) + inside;
    // The header takes the place of one sector, so sector 0 of the file is the second one.
    const bool done =
        outer_ ? outer_->read(place, out.first(count)) : file_->read(place + sectorBytes, out.first(count));
    if (!done) return false;
    offset += count;
    out = out.subspan(count);
  }
  return true;
}

Ole2Container::Ole2Container() = default;
Ole2Container::~Ole2Container() = default;
Ole2Container::Ole2Container(Ole2Container&&) noexcept = default;
Ole2Container& Ole2Container::operator=(Ole2Container&&) noexcept = default;

bool Ole2Container::open(std::wstring_view path) {
  std::wstring reason;
  file_ = Ole2File::open(path, reason);
  if (!file_) return fail(std::move(reason));
  if (file_->size() > largestFile) return fail(L"is larger than two gigabytes");
  return readHeader();
}

bool Ole2Container::fail(std::wstring reason) {
  error_ = std::move(reason);
  return false;
}

bool Ole2Container::readHeader() {
  if (file_->size() == 0) return fail(L"is empty");
  std::array<std::uint8_t, headerBytes> header{};
  const auto available = std::min<std::uint64_t>(file_->size(), header.size());
  if (!file_->read(0, std::span(header).first(static_cast<std::size_t>(available)))) {
    return fail(L"cannot be read: " + systemReason());
  }
  if (!std::equal(signature.begin(), signature.end(), header.begin()))
    return fail(L"is not a workbook (.xls)");
  if (available < header.size()) return fail(truncated);
  sectorShift_ = readLe16(&header[30]);
  const bool isKnown = sectorShift_ == 9 || sectorShift_ == 12;
  if (!isKnown || readLe16(&header[32]) != smallSectorShift) {
    return fail(L"the file is damaged: its header gives impossible sector sizes");
  }
  smallStreamLimit_ = readLe32(&header[56]);
  return readSectorTable(header) && readDirectory(readLe32(&header[48])) &&
         readSmallStreams(readLe32(&header[60]));
}

bool Ole2Container::readSectorTable(std::span<const std::uint8_t> header) {
  const std::size_t sectorBytes = std::size_t{1} << sectorShift_;
  const std::uint64_t sectorCount = (file_->size() + sectorBytes - 1) / sectorBytes - 1;
  const std::uint64_t tableSectors = readLe32(&header[44]);
  if (tableSectors > sectorCount) return fail(truncated);

  std::vector<std::uint32_t> places;
  for (std::size_t i = 0; i < sectorListInHeader && places.size() < tableSectors; ++i) {
    places.push_back(readLe32(&header[76 + 4 * i]));
  }
  std::vector<std::uint8_t> sector(sectorBytes);
  const auto readSector = [&](std::uint32_t number) {
    if (number >= sectorCount) return false;
    // The last sector of a file may be cut short; what is missing reads as zero.
    const std::uint64_t place = (static_cast<std::uint64_t>(number) + 1) << sectorShift_;
    const auto count = static_cast<std::size_t>(std::min<std::uint64_t>(sectorBytes, file_->size() - place));
    std::fill(sector.begin(), sector.end(), std::uint8_t{0});
    return file_->read(place, std::span(sector).first(count));
  };
  std::uint32_t list = readLe32(&header[68]);
  for (std::uint64_t step = 0; places.size() < tableSectors; ++step) {
    if (step > sectorCount || !readSector(list)) return fail(damagedChain);
    for (std::size_t i = 0; i + 4 < sectorBytes && places.size() < tableSectors; i += 4) {
      places.push_back(readLe32(&sector[i]));
    }
    list = readLe32(&sector[sectorBytes - 4]);
  }
  for (const std::uint32_t place : places) {
    if (!readSector(place)) return fail(truncated);
    for (std::size_t i = 0; i < sectorBytes && sectorTable_.size() < sectorCount; i += 4) {
      sectorTable_.push_back(readLe32(&sector[i]));
    }
  }
  return true;
}

bool Ole2Container::readDirectory(std::uint32_t start) {
  auto chain = followChain(sectorTable_, start, std::nullopt);
  if (!chain || chain->empty()) return fail(damagedChain);
  Ole2Stream stream;
  stream.file_ = file_.get();
  stream.sectorShift_ = sectorShift_;
  stream.size_ = static_cast<std::uint64_t>(chain->size()) << sectorShift_;
  stream.sectors_ = std::move(*chain);
  entries_.resize(static_cast<std::size_t>(stream.size_ / Ole2Entry::byteCount));
  for (std::size_t i = 0; i < entries_.size(); ++i) {
    Ole2Entry& entry = entries_[i];
    if (!stream.read(i * Ole2Entry::byteCount, entry.raw)) return fail(truncated);
    const auto& raw = entry.raw;
    const std::size_t nameBytes = std::min<std::size_t>(readLe16(&raw[64]), 64);
    if (nameBytes >= 2) {
      entry.name = fromUtf16Le({reinterpret_cast<const char*>(raw.data()), nameBytes - 2});
    }
    entry.type = static_cast<Ole2Entry::Type>(raw[66]);
    entry.left = readLe32(&raw[68]);
    entry.right = readLe32(&raw[72]);
    entry.child = readLe32(&raw[76]);
    entry.startSector = readLe32(&raw[116]);
    // The upper half of the size is rubbish in files with small sectors.
    entry.size = sectorShift_ == 9 ? readLe32(&raw[120]) : readLe64(&raw[120]);
  }
  if (entries_[0].type != Ole2Entry::Type::root)
    return fail(L"the file is damaged: its directory has no root");
  return true;
}

bool Ole2Container::readSmallStreams(std::uint32_t start) {
  const Ole2Entry& root = entries_[0];
  if (root.size == 0) return true;
  if (root.size > file_->size()) return fail(truncated);
  const std::uint64_t sectorBytes = std::uint64_t{1} << sectorShift_;
  auto chain = followChain(sectorTable_, root.startSector, (root.size + sectorBytes - 1) / sectorBytes);
  auto tableChain = followChain(sectorTable_, start, std::nullopt);
  if (!chain || !tableChain) return fail(damagedChain);
  auto outer = std::make_shared<Ole2Stream>();
  outer->file_ = file_.get();
  outer->sectorShift_ = sectorShift_;
  outer->size_ = root.size;
  outer->sectors_ = std::move(*chain);
  smallStreams_ = outer;

  Ole2Stream table;
  table.file_ = file_.get();
  table.sectorShift_ = sectorShift_;
  table.size_ = static_cast<std::uint64_t>(tableChain->size()) << sectorShift_;
  table.sectors_ = std::move(*tableChain);
  std::vector<std::uint8_t> bytes(static_cast<std::size_t>(table.size_));
  if (!table.read(0, bytes)) return fail(truncated);
  for (std::size_t i = 0; i + 4 <= bytes.size(); i += 4) {
    smallSectorTable_.push_back(readLe32(&bytes[i]));
  }
  return true;
}

std::optional<std::vector<std::uint32_t>> Ole2Container::followChain(
    const std::vector<std::uint32_t>& table, std::uint32_t start, std::optional<std::uint64_t> count) const {
  std::vector<std::uint32_t> chain;
  std::uint32_t sector = start;
  while (!count || chain.size() < *count) {
    if (!count && (sector == endOfChain || sector == Ole2Entry::none)) break;
    if (sector > lastRegularSector || sector >= table.size()) return std::nullopt;
    // A chain longer than the table runs in a circle.
    if (chain.size() >= table.size()) return std::nullopt;
    chain.push_back(sector);
    sector = table[sector];
  }
  return chain;
}

std::optional<std::size_t> Ole2Container::findRootStream(std::wstring_view name) const {
  std::vector<bool> seen(entries_.size(), false);
  std::vector<std::uint32_t> open{entries_.empty() ? Ole2Entry::none : entries_[0].child};
  while (!open.empty()) {
    const std::uint32_t index = open.back();
    open.pop_back();
    if (index >= entries_.size() || seen[index]) continue;
    seen[index] = true;
    const Ole2Entry& entry = entries_[index];
    if (entry.type == Ole2Entry::Type::stream && equalsOrdinalNoCase(entry.name, name)) return index;
    open.push_back(entry.left);
    open.push_back(entry.right);
  }
  return std::nullopt;
}

std::optional<Ole2Stream> Ole2Container::openStream(std::size_t index) {
  const Ole2Entry& entry = entries_.at(index);
  const bool isSmall = entry.size < smallStreamLimit_;
  Ole2Stream stream;
  stream.size_ = entry.size;
  stream.sectorShift_ = isSmall ? smallSectorShift : sectorShift_;
  if (isSmall) {
    stream.outer_ = smallStreams_;
  } else {
    stream.file_ = file_.get();
  }
  const std::uint64_t sectorBytes = std::uint64_t{1} << stream.sectorShift_;
  if (entry.size > file_->size()) {
    fail(truncated);
    return std::nullopt;
  }
  auto chain = followChain(
      isSmall ? smallSectorTable_ : sectorTable_, entry.startSector,
      (entry.size + sectorBytes - 1) / sectorBytes);
  if (!chain || (isSmall && entry.size > 0 && !smallStreams_)) {
    fail(damagedChain);
    return std::nullopt;
  }
  stream.sectors_ = std::move(*chain);
  return stream;
}

} // namespace brenvolt
