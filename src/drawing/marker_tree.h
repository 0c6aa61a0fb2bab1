// Operations on a whole marker tree: attaching records, numbering, collecting ranges for execution, and dropping child
// lists when the run that added them is undone.
#pragma once

#include "drawing/markers.h"

#include <cstdint>
#include <functional>
#include <string_view>
#include <vector>

namespace brenvolt {

/// What the build executes at one marker.
struct ZanExecRecord {
  std::vector<ZanSharedEntry> rows;
  std::vector<ZanSharedEntry> spare; ///< stays empty
  std::int32_t markerId = 0;
};

/// `fromId` of `collectLevel` and `CollectRange`: from the first marker on.
inline constexpr std::int32_t firstMarker = 0;
/// As `fromId` of `collectLevel`: the end of the list. As `toId` of `CollectRange`: to the end of the tree.
inline constexpr std::int32_t endOfMarkers = -1;

/// The workbook record of a CODE, null when the workbook has none.
using RecordLookup = std::function<const ZanCodeRecord*(std::wstring_view code)>;

/// The rows of a marker by its present selection.
[[nodiscard]] ZanExecRecord execRecordOf(const ZanDwgMarker& marker);

/// Copies to each marker of the list its workbook record; one that has its record already keeps it, with what was
/// selected. A marker without a record stays without rows and options. Child lists are not entered.
/// @return false when the list has markers and none of them has a record: the template is of another workbook
[[nodiscard]] bool AttachRecords(ZanDwgMarkerList& list, const RecordLookup& recordOf);

/// Gives each marker of the tree its running number from 0 in walking order: the number that scripts see.
void NumberMarkers(ZanDwgMarkerList& list);

/// Whether a marker of the list has option groups; with `recursive` also one of the child lists.
[[nodiscard]] bool HasOptions(const ZanDwgMarkerList& list, bool recursive);

/// Appends the records of the markers from `fromId` on up to the first with option groups: that one and all after it
/// wait for the user. Only this list is walked.
/// @return whether `items` holds anything
bool collectLevel(const ZanDwgMarkerList& list, std::int32_t fromId, std::vector<ZanExecRecord>& items);

/// Appends the records of the stretch from `fromId` to `toId`, both included, children after their parent.
/// @return whether the stretch ended where it should: at `toId`, or at the end of the tree for `endOfMarkers`
bool CollectRange(
    const ZanDwgMarkerList& list, std::int32_t fromId, std::int32_t toId, std::vector<ZanExecRecord>& items);

/// Frees the child lists whose first marker came with this run. A run of 0 or below does nothing.
void DropChildrenOfRun(ZanDwgMarkerList& list, std::int32_t run);

} // namespace brenvolt
