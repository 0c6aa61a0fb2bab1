// Writing compound files: the container around a workbook, built from its entries.
#pragma once

#include "platform/ole2_container.h"

#include <string>
#include <string_view>
#include <vector>

namespace brenvolt {

/// One directory entry with the bytes of its stream (none for a storage).
struct Ole2Item {
  Ole2Entry entry;
  std::string data;
};

/// The entries of a container with a single stream.
[[nodiscard]] std::vector<Ole2Item> singleStreamItems(std::wstring_view streamName, std::string data);

/// The file's bytes. `items[0]` is the root; names, tree and class ids of the entries are written unchanged, positions
/// and sizes are computed from the data.
[[nodiscard]] std::string buildOle2(const std::vector<Ole2Item>& items);

} // namespace brenvolt
