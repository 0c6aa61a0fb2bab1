#include "platform/ole2_writer.h"

#include "platform/little_endian.h"
#include "text/encoding.h"

#include <algorithm>

namespace brenvolt {

namespace {

constexpr std::size_t sectorBytes = 512;
constexpr std::size_t smallSectorBytes = 64;
constexpr std::size_t smallStreamLimit = 4096;
constexpr std::size_t numbersInSector = sectorBytes / 4;
constexpr std::size_t numbersInHeader = 109;
constexpr std::uint32_t tableSector = 0xFFFFFFFD;
constexpr std::uint32_t listSector = 0xFFFFFFFC;
constexpr std::uint32_t freeSector = 0xFFFFFFFF;

constexpr std::uint8_t blackNode = 1;
// The class by which shells know a container as a workbook.
constexpr std::array<std::uint8_t, 16> workbookClass = {0x20, 0x08, 0x02, 0, 0, 0, 0, 0,
                                                        0xC0, 0,    0,    0, 0, 0, 0, 0x46};

std::size_t sectorsFor(std::size_t bytes, std::size_t size) {
  return (bytes + size - 1) / size;
}

void pad(std::string& bytes, std::size_t size, char filler = '\0') {
  bytes.resize(sectorsFor(bytes.size(), size) * size, filler);
}

void set32(std::array<std::uint8_t, Ole2Entry::byteCount>& raw, std::size_t at, std::uint32_t value) {
  for (std::size_t i = 0; i < 4; ++i) {
    raw[at + i] = static_cast<std::uint8_t>(value >> (8 * i));
  }
}

Ole2Entry makeEntry(std::wstring_view name, Ole2Entry::Type type, std::uint32_t child) {
  Ole2Entry entry;
  const std::string units = toUtf16Le(name);
  std::copy(units.begin(), units.end(), entry.raw.begin());
  entry.raw[64] = static_cast<std::uint8_t>(units.size() + 2);
  entry.raw[66] = static_cast<std::uint8_t>(type);
  entry.raw[67] = blackNode;
  set32(entry.raw, 68, Ole2Entry::none);
  set32(entry.raw, 72, Ole2Entry::none);
  set32(entry.raw, 76, child);
  entry.name = name;
  entry.type = type;
  return entry;
}

/// The sectors after the header, and the table that links them.
class SectorArea final {
public:
  /// Adds bytes as one chain; its first sector, or the end mark for none.
  std::uint32_t addChain(std::string_view bytes) {
    const std::size_t count = sectorsFor(bytes.size(), sectorBytes);
    if (count == 0) return endOfChain;
    const auto first = static_cast<std::uint32_t>(table_.size());
    for (std::size_t i = 1; i < count; ++i) {
      table_.push_back(static_cast<std::uint32_t>(first + i));
    }
    table_.push_back(endOfChain);
    bytes_.append(bytes);
    pad(bytes_, sectorBytes);
    return first;
  }

  /// Adds the table itself and the list of its sectors, then puts the header in front.
  std::string finish(std::uint32_t directory, std::uint32_t smallTable, std::size_t smallTableSectors) {
    // The table also describes its own sectors and those of its list: grow until it fits.
    std::size_t tableCount = 0;
    std::size_t listCount = 0;
    while (tableCount * numbersInSector < table_.size() + tableCount + listCount) {
      ++tableCount;
      listCount =
          tableCount > numbersInHeader ? sectorsFor(tableCount - numbersInHeader, numbersInSector - 1) : 0;
    }
    const auto firstTable = static_cast<std::uint32_t>(table_.size());
    const auto firstList = static_cast<std::uint32_t>(firstTable + tableCount);
    table_.insert(table_.end(), tableCount, tableSector);
    table_.insert(table_.end(), listCount, listSector);

    std::string tail;
    for (const std::uint32_t next : table_) {
      appendLe32(tail, next);
    }
    pad(tail, sectorBytes, '\xFF');
    for (std::size_t list = 0; list < listCount; ++list) {
      for (std::size_t i = 0; i + 1 < numbersInSector; ++i) {
        const std::size_t place = numbersInHeader + list * (numbersInSector - 1) + i;
        appendLe32(tail, place < tableCount ? static_cast<std::uint32_t>(firstTable + place) : freeSector);
      }
      appendLe32(tail, list + 1 < listCount ? static_cast<std::uint32_t>(firstList + list + 1) : endOfChain);
    }

    std::string file("\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1", 8);
    file.append(16, '\0');
    appendLe16(file, 0x3E); // minor version
    appendLe16(file, 3);    // major version: sectors of 512 bytes
    appendLe16(file, 0xFFFE);
    appendLe16(file, 9);
    appendLe16(file, 6);
    file.append(10, '\0');
    appendLe32(file, static_cast<std::uint32_t>(tableCount));
    appendLe32(file, directory);
    appendLe32(file, 0);
    appendLe32(file, smallStreamLimit);
    appendLe32(file, smallTable);
    appendLe32(file, static_cast<std::uint32_t>(smallTableSectors));
    appendLe32(file, listCount > 0 ? firstList : endOfChain);
    appendLe32(file, static_cast<std::uint32_t>(listCount));
    for (std::size_t i = 0; i < numbersInHeader; ++i) {
      appendLe32(file, i < tableCount ? static_cast<std::uint32_t>(firstTable + i) : freeSector);
    }
    return file + bytes_ + tail;
  }

private:
  std::string bytes_;
  std::vector<std::uint32_t> table_;
};

} // namespace

std::vector<Ole2Item> singleStreamItems(std::wstring_view streamName, std::string data) {
  std::vector<Ole2Item> items;
  items.push_back({makeEntry(L"Root Entry", Ole2Entry::Type::root, 1), {}});
  std::copy(workbookClass.begin(), workbookClass.end(), items[0].entry.raw.begin() + 80);
  items.push_back({makeEntry(streamName, Ole2Entry::Type::stream, Ole2Entry::none), std::move(data)});
  return items;
}

std::string buildOle2(const std::vector<Ole2Item>& items) {
  SectorArea area;
  std::string smallStreams;
  std::string smallTable;
  std::vector<std::uint32_t> starts;
  for (const Ole2Item& item : items) {
    if (item.data.size() >= smallStreamLimit) {
      starts.push_back(area.addChain(item.data));
      continue;
    }
    const std::size_t first = smallStreams.size() / smallSectorBytes;
    const std::size_t count = sectorsFor(item.data.size(), smallSectorBytes);
    for (std::size_t i = 1; i <= count; ++i) {
      appendLe32(smallTable, i < count ? static_cast<std::uint32_t>(first + i) : endOfChain);
    }
    smallStreams += item.data;
    pad(smallStreams, smallSectorBytes);
    starts.push_back(count > 0 ? static_cast<std::uint32_t>(first) : endOfChain);
  }
  starts[0] = area.addChain(smallStreams);
  pad(smallTable, sectorBytes, '\xFF');
  const std::uint32_t smallTableStart = area.addChain(smallTable);

  std::string directory;
  for (std::size_t i = 0; i < items.size(); ++i) {
    auto raw = items[i].entry.raw;
    const std::size_t size = i == 0 ? smallStreams.size() : items[i].data.size();
    const bool hasPlace = items[i].entry.type == Ole2Entry::Type::stream || i == 0;
    set32(raw, 116, hasPlace ? starts[i] : 0);
    set32(raw, 120, static_cast<std::uint32_t>(size));
    set32(raw, 124, 0);
    directory.append(raw.begin(), raw.end());
  }
  const Ole2Entry unused = makeEntry(L"", Ole2Entry::Type::unused, Ole2Entry::none);
  while (directory.size() % sectorBytes != 0) {
    auto raw = unused.raw;
    raw[64] = 0;
    raw[67] = 0;
    directory.append(raw.begin(), raw.end());
  }
  const std::uint32_t directoryStart = area.addChain(directory);
  return area.finish(directoryStart, smallTableStart, smallTable.size() / sectorBytes);
}

} // namespace brenvolt
