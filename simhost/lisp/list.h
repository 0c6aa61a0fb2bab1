// Building lists from the front and walking through them, without recursion.
#pragma once

#include "simhost/lisp/value.h"

#include <cstddef>
#include <initializer_list>
#include <iterator>
#include <optional>
#include <span>
#include <vector>

namespace simhost::lisp {

/// Appends elements to a list that is not shared yet.
class ListBuilder final {
public:
  ListBuilder() = default;
  /// The first pair will carry this place.
  explicit ListBuilder(Place place) : place_(place) {}
  ListBuilder(const ListBuilder&) = delete;
  ListBuilder& operator=(const ListBuilder&) = delete;
  ListBuilder(ListBuilder&&) = default;
  ListBuilder& operator=(ListBuilder&&) = default;

  [[nodiscard]] bool isEmpty() const { return last_ == nullptr; }

  void add(Value element);
  /// Sets the value after the last element instead of nil; without elements it is the result itself.
  void setTail(Value tail);
  /// Hands the list over; the builder is empty after.
  [[nodiscard]] Value take();

private:
  Value head_;
  Cons* last_ = nullptr;
  Place place_;
};

/// The elements of a list for a range-based loop; a tail that is not a list ends the walk. The list must live as long
/// as the walk.
class Elements final {
public:
  class Iterator final {
  public:
    using value_type = Value;
    using difference_type = std::ptrdiff_t;
    using iterator_category = std::forward_iterator_tag;

    explicit Iterator(const Value* rest) : rest_(rest) {}

    const Value& operator*() const { return rest_->asCons().car(); }
    Iterator& operator++() {
      rest_ = &rest_->asCons().cdr();
      return *this;
    }
    bool operator==(std::default_sentinel_t) const { return !rest_->isCons(); }

  private:
    const Value* rest_;
  };

  explicit Elements(const Value& list) : list_(&list) {}
  [[nodiscard]] Iterator begin() const { return Iterator(list_); }
  [[nodiscard]] std::default_sentinel_t end() const { return {}; }

private:
  const Value* list_;
};

[[nodiscard]] Value makeList(std::span<const Value> elements);
[[nodiscard]] Value makeList(std::initializer_list<Value> elements);

/// A point is a list of three reals.
[[nodiscard]] Value makePoint(double x, double y, double z);

/// Number of elements; nothing when the value is not a list that ends in nil.
[[nodiscard]] std::optional<std::size_t> listLength(const Value& list);

/// The elements of a list; any other value has none.
[[nodiscard]] std::vector<Value> toVector(const Value& list);

} // namespace simhost::lisp
