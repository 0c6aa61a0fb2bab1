// An upright box: how much of the paper something takes.
#pragma once

#include "host/host_api_database.h"

#include <limits>

namespace simhost {

/// An upright box, in drawing units; at first it holds nothing.
struct Box {
  double left = std::numeric_limits<double>::infinity();
  double bottom = std::numeric_limits<double>::infinity();
  double right = -std::numeric_limits<double>::infinity();
  double top = -std::numeric_limits<double>::infinity();

  [[nodiscard]] bool isEmpty() const { return right < left; }
  [[nodiscard]] double width() const { return right - left; }
  [[nodiscard]] double height() const { return top - bottom; }
  [[nodiscard]] bool meets(const Box& other) const {
    return left <= other.right && other.left <= right && bottom <= other.top && other.bottom <= top;
  }
  void include(const KvPoint3d& point);
  void includeAround(const KvPoint3d& centre, double distance);
  void include(const Box& other);
};

} // namespace simhost
