// A box grows by what it has to hold.
#include "simhost/drawing/box.h"

#include <algorithm>

namespace simhost {

void Box::include(const KvPoint3d& point) {
  left = std::min(left, point.x);
  bottom = std::min(bottom, point.y);
  right = std::max(right, point.x);
  top = std::max(top, point.y);
}

void Box::includeAround(const KvPoint3d& centre, double distance) {
  include(KvPoint3d{centre.x - distance, centre.y - distance, 0.0});
  include(KvPoint3d{centre.x + distance, centre.y + distance, 0.0});
}

void Box::include(const Box& other) {
  left = std::min(left, other.left);
  bottom = std::min(bottom, other.bottom);
  right = std::max(right, other.right);
  top = std::max(top, other.top);
}

} // namespace simhost
