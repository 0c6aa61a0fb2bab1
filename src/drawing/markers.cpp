#include "drawing/markers.h"

#include "text/assertion.h"
#include "text/numbers.h"

#include <algorithm>
#include <unordered_map>
#include <utility>

namespace brenvolt {

class MarkerIndex final {
public:
  MarkerIndex() : lastId(own_) {}
  explicit MarkerIndex(std::int32_t& lent) : lastId(lent) {}
  MarkerIndex(const MarkerIndex&) = delete;
  MarkerIndex& operator=(const MarkerIndex&) = delete;

  std::int32_t& lastId;
  std::unordered_map<std::int32_t, ZanDwgMarkerList::Place> placeOfId;
  std::unordered_map<std::uint64_t, std::size_t> countOfHandle;

  void add(const ZanDwgMarker& marker, ZanDwgMarkerList::Place place) {
    placeOfId.insert_or_assign(marker.id, place);
    ++countOfHandle[marker.handle.value()];
  }
  void remove(const ZanDwgMarker& marker) {
    placeOfId.erase(marker.id);
    const auto found = countOfHandle.find(marker.handle.value());
    if (found != countOfHandle.end() && --found->second == 0) countOfHandle.erase(found);
  }

private:
  std::int32_t own_ = 0; ///< the last id where none is lent
};

ZanDwgMarker::ZanDwgMarker() = default;
ZanDwgMarker::ZanDwgMarker(ZanDwgMarker&&) noexcept = default;
ZanDwgMarker& ZanDwgMarker::operator=(ZanDwgMarker&&) noexcept = default;
ZanDwgMarker::~ZanDwgMarker() = default;

std::wstring ZanDwgMarker::GetKey() const {
  std::wstring key = code;
  key += L'.';
  key += formatInt(ordinal);
  key += L'.';
  key += formatInt(level);
  return key;
}

ZanDwgMarkerList& ZanDwgMarker::EnsureChildren() {
  BRENVOLT_ASSERT(tree_ != nullptr, "a marker gets children only when it is in a list");
  if (children_ == nullptr) children_.reset(new ZanDwgMarkerList(tree_, id));
  return *children_;
}

void ZanDwgMarker::DropChildren() {
  children_.reset();
}

ZanDwgMarkerList::ZanDwgMarkerList() : tree_(std::make_shared<MarkerIndex>()) {}

ZanDwgMarkerList::ZanDwgMarkerList(std::int32_t& lastId) : tree_(std::make_shared<MarkerIndex>(lastId)) {}

ZanDwgMarkerList::ZanDwgMarkerList(std::shared_ptr<MarkerIndex> tree, std::int32_t ownerId)
    : tree_(std::move(tree)), ownerId_(ownerId) {}

ZanDwgMarkerList::~ZanDwgMarkerList() {
  for (const ZanDwgMarker& marker : markers_)
    tree_->remove(marker);
}

ZanDwgMarker* ZanDwgMarkerList::findById(std::int32_t id) const {
  const std::optional<Place> place = placeOf(id);
  return place ? &place->list->markers_[place->position] : nullptr;
}

std::optional<ZanDwgMarkerList::Place> ZanDwgMarkerList::placeOf(std::int32_t id) const {
  const auto found = tree_->placeOfId.find(id);
  if (found == tree_->placeOfId.end()) return std::nullopt;
  return found->second;
}

bool ZanDwgMarkerList::holdsHandle(KvDbHandle handle) const {
  return tree_->countOfHandle.contains(handle.value());
}

void ZanDwgMarkerList::Insert(ZanDwgMarker marker) {
  BRENVOLT_ASSERT(marker.children() == nullptr, "a marker is added to a list before it has children");
  marker.id = ++tree_->lastId;
  pending_.push_back(std::move(marker));
}

void ZanDwgMarkerList::Finish() {
  std::vector<std::pair<double, std::size_t>> order;
  order.reserve(pending_.size());
  for (const ZanDwgMarker& marker : pending_)
    order.emplace_back(toDouble(marker.order), order.size());
  std::sort(order.begin(), order.end());
  for (const auto& [key, inserted] : order) {
    ZanDwgMarker& marker = pending_[inserted];
    marker.ordinal = ++countOfCode_[marker.code];
    marker.tree_ = tree_;
    tree_->add(marker, {this, markers_.size()});
    markers_.push_back(std::move(marker));
  }
  pending_.clear();
}

bool ZanDwgMarkerListIterator::Done() const {
  return list_ == nullptr || frames_.empty() || frames_.front().position >= list_->size();
}

ZanDwgMarker* ZanDwgMarkerListIterator::Current() const {
  if (Done()) return nullptr;
  const Frame& top = frames_.back();
  return &top.list->markers()[top.position];
}

bool ZanDwgMarkerListIterator::First() {
  frames_.clear();
  if (list_ == nullptr) return false;
  frames_.push_back({list_, 0});
  return !Done();
}

void ZanDwgMarkerListIterator::Next() {
  const ZanDwgMarker* current = Current();
  if (current == nullptr) return;
  if (current->children() != nullptr && !current->children()->isEmpty()) {
    frames_.push_back({current->children(), 0});
    return;
  }
  ++frames_.back().position;
  while (frames_.size() > 1 && frames_.back().position >= frames_.back().list->size()) {
    frames_.pop_back();
    ++frames_.back().position;
  }
}

} // namespace brenvolt
