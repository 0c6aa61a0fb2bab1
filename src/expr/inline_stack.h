// A stack whose first entries need no memory from the heap: nearly every formula in a table stays within them.
#pragma once

#include <array>
#include <cstddef>
#include <vector>

namespace brenvolt {

template <typename Entry, std::size_t inlineSize>
class InlineStack final {
public:
  [[nodiscard]] bool isEmpty() const { return size_ == 0; }
  [[nodiscard]] std::size_t size() const { return size_; }
  /// The stack must not be empty.
  [[nodiscard]] const Entry& top() const { return size_ <= inlineSize ? first_[size_ - 1] : rest_.back(); }

  /// By value: an entry whose address is not taken stays in registers.
  void push(Entry entry) {
    if (size_ < inlineSize) {
      first_[size_] = entry;
    } else {
      rest_.push_back(Entry(entry));
    }
    ++size_;
  }

  /// Takes the top entry off; the stack must not be empty.
  Entry pop() {
    const Entry entry = top();
    if (size_ > inlineSize) rest_.pop_back();
    --size_;
    return entry;
  }

private:
  std::array<Entry, inlineSize> first_{};
  std::vector<Entry> rest_;
  std::size_t size_ = 0;
};

} // namespace brenvolt
