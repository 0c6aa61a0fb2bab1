// Room for evaluated arguments: grows in blocks, so that spans into it stay valid while deeper calls push
// more.
#pragma once

#include "simhost/lisp/value.h"

#include <algorithm>
#include <cstddef>
#include <memory>
#include <span>
#include <vector>

namespace simhost::lisp {

class ValueStack final {
public:
  /// A number of slots, all nil, until the object is destroyed; taken and returned in strict order.
  class Slots final {
  public:
    Slots(ValueStack& stack, std::size_t count)
        : stack_(stack), block_(stack.block_), used_(stack.used_), values_(stack.take(count)) {}
    Slots(const Slots&) = delete;
    Slots& operator=(const Slots&) = delete;
    ~Slots() {
      for (Value& value : values_) {
        value = Value();
      }
      stack_.block_ = block_;
      stack_.used_ = used_;
    }

    [[nodiscard]] std::span<Value> values() const { return values_; }

  private:
    ValueStack& stack_;
    const std::size_t block_;
    const std::size_t used_;
    const std::span<Value> values_;
  };

private:
  struct Block {
    std::unique_ptr<Value[]> values;
    std::size_t size = 0;
  };

  static constexpr std::size_t blockSize = 4096;

  std::span<Value> take(std::size_t count) {
    if (blocks_.empty() || used_ + count > blocks_[block_].size) nextBlock(count);
    const std::span<Value> taken(blocks_[block_].values.get() + used_, count);
    used_ += count;
    return taken;
  }

  void nextBlock(std::size_t count) {
    if (!blocks_.empty()) ++block_;
    used_ = 0;
    if (block_ < blocks_.size() && blocks_[block_].size >= count) return;
    // Blocks from here on are unused: they have been returned.
    blocks_.resize(block_);
    const std::size_t size = std::max(count, blockSize);
    blocks_.push_back({std::make_unique<Value[]>(size), size});
  }

  std::vector<Block> blocks_;
  std::size_t block_ = 0;
  std::size_t used_ = 0;
};

} // namespace simhost::lisp
