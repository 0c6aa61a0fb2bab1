// One saved configuration written from known choices, without a drawing: a row of a motor list, a probe of a site. The
// plug-in's own builds write theirs from their markers.
#pragma once

#include "project/history_file.h"

#include <cstdint>
#include <string>
#include <vector>

namespace brenvolt {

/// The chosen option of a group.
struct EntryOption {
  std::wstring group; ///< the title of the group
  std::wstring title; ///< the text of the option
  std::int32_t value = 0;
};

/// A row of a motor or load, which is its data or one of its wires; or a part of the catalogue.
struct EntryRow {
  std::wstring element; ///< one of the setup elements of `xmlname`, or its element of a part
  HistoryProperties properties;
};

/// What is saved for a marker.
struct EntryMarker {
  std::wstring code;
  int ordinal = 1; ///< among the markers of its CODE at its depth
  int depth = 1;   ///< of the templates, 1 for the circuit's own
  std::vector<EntryOption> options;
  std::vector<EntryRow> rows;
  std::vector<EntryRow>
      parts{}; ///< in the order of the worksheet's tables: title, table, then the part's values
};

struct EntryContent {
  HistoryKey key;
  std::wstring worksheet; ///< left out when empty
  std::vector<EntryMarker> markers;
};

/// Appends the configuration in the scales 1 and 1 to a file that may be changed. Throws `XmlError` for a text with a
/// character that XML does not allow.
void appendEntry(HistoryFile& file, const EntryContent& entry);

} // namespace brenvolt
