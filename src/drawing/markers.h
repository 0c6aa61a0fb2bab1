// The markers of a circuit: block references of the template at which something is decided or placed. They form a
// tree, since a marker's scripts may insert templates with markers of their own. Code that needs a marker later keeps
// its id and searches the tree.
#pragma once

#include "drawing/annotation_rows.h"
#include "host/host_api_database.h"
#include "project/code_record.h"
#include "text/compare.h"

#include <cstdint>
#include <deque>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace brenvolt {

class ZanDwgMarkerList;

/// Finds the markers of one tree by id and by handle; shared by all its lists.
class MarkerIndex;

/// One marker. It can be moved but not copied: it owns the markers below it.
class ZanDwgMarker {
public:
  ZanDwgMarker();
  ZanDwgMarker(const ZanDwgMarker&) = delete;
  ZanDwgMarker& operator=(const ZanDwgMarker&) = delete;
  ZanDwgMarker(ZanDwgMarker&&) noexcept;
  ZanDwgMarker& operator=(ZanDwgMarker&&) noexcept;
  virtual ~ZanDwgMarker();

  /// "CODE.ordinal.level": ties a marker to its entry in the history. The same template gives the same keys each time
  /// it is inserted. Children of two parents can share a key; the first entry is then used for both.
  [[nodiscard]] std::wstring GetKey() const;
  [[nodiscard]] bool hasOptions() const { return !record.groups.empty(); }
  /// The child markers; null when there is no child list.
  [[nodiscard]] ZanDwgMarkerList* children() const { return children_.get(); }

  /// Makes the child list, an empty one, unless there is one.
  ZanDwgMarkerList& EnsureChildren();
  /// Frees the child list with all below it.
  void DropChildren();

  std::int32_t id = 0;      ///< from 1, unique in the process; the list gives it
  std::int32_t ordinal = 0; ///< from 1, among the markers of the same list with equal code
  std::int32_t level = 0;   ///< 1 for the top list
  std::int32_t run = 0;     ///< undo marks of the build at the time of the scan
  KvDbHandle handle;        ///< of the block reference
  KvPoint3d position;
  std::wstring code;
  std::wstring order; ///< holds a number
  std::wstring misc1;
  std::int32_t index = -1; ///< over the whole tree, see `NumberMarkers`
  bool hasRecord = false;  ///< `record` comes from the workbook
  ZanCodeRecord record;    ///< its option groups hold the user's selection
  ZanAnnotationDataList catalog;
  ZanAnnotationDataList controls;

private:
  friend class ZanDwgMarkerList;

  std::unique_ptr<ZanDwgMarkerList> children_;
  std::shared_ptr<MarkerIndex> tree_; ///< null until the marker is in a list
};

/// An ordered list of markers. A scan inserts, `Finish` orders; markers then keep their place and address until their
/// list dies, so a tree of ten thousand is searched without a walk.
class ZanDwgMarkerList {
public:
  using Markers = std::deque<ZanDwgMarker>;
  struct Place {
    ZanDwgMarkerList* list;
    std::size_t position;
  };

  /// The top list of a tree of its own. `lastId` is the last id that any tree has given to a marker; a tree that is lent
  /// none counts for itself. It must outlive the tree.
  ZanDwgMarkerList();
  explicit ZanDwgMarkerList(std::int32_t& lastId);
  ZanDwgMarkerList(const ZanDwgMarkerList&) = delete;
  ZanDwgMarkerList& operator=(const ZanDwgMarkerList&) = delete;
  virtual ~ZanDwgMarkerList();

  [[nodiscard]] Markers& markers() { return markers_; }
  [[nodiscard]] const Markers& markers() const { return markers_; }
  [[nodiscard]] bool isEmpty() const { return markers_.empty(); }
  [[nodiscard]] std::size_t size() const { return markers_.size(); }
  /// The id of the marker whose child list this is; 0 for the top list.
  [[nodiscard]] std::int32_t ownerId() const { return ownerId_; }

  /// The marker of an id anywhere in the tree that this list belongs to; null when there is none.
  [[nodiscard]] ZanDwgMarker* findById(std::int32_t id) const;
  /// The place of the marker of an id, anywhere in the tree.
  [[nodiscard]] std::optional<Place> placeOf(std::int32_t id) const;
  /// Whether a block reference is a marker of the tree already.
  [[nodiscard]] bool holdsHandle(KvDbHandle handle) const;

  /// Keeps a marker of a running scan and gives it its id. It must not have children yet.
  void Insert(ZanDwgMarker marker);
  /// Puts the inserted markers after those in the list: by order as a number, equal ones as they came; and counts
  /// their ordinals.
  void Finish();

private:
  friend class ZanDwgMarker;
  ZanDwgMarkerList(std::shared_ptr<MarkerIndex> tree, std::int32_t ownerId);

  std::shared_ptr<MarkerIndex> tree_;
  std::int32_t ownerId_ = 0;
  Markers pending_; ///< as they were inserted; empty outside a scan
  Markers markers_;
  std::map<std::wstring, std::int32_t, CollatingLess> countOfCode_;
};

/// Walks a list and all child lists, parents before their children. Child lists may grow during the walk.
class ZanDwgMarkerListIterator {
public:
  /// Null is allowed: the walk is over at once.
  explicit ZanDwgMarkerListIterator(ZanDwgMarkerList* list) : list_(list) {}
  virtual ~ZanDwgMarkerListIterator() = default;

  [[nodiscard]] bool Done() const;
  /// Null when done.
  [[nodiscard]] ZanDwgMarker* Current() const;

  /// Goes to the first marker; false when there is none.
  bool First();
  void Next();

private:
  struct Frame {
    ZanDwgMarkerList* list;
    std::size_t position;
  };

  ZanDwgMarkerList* list_;
  std::vector<Frame> frames_;
};

} // namespace brenvolt
