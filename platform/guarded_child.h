// Work on bytes that may be damaged, done in a child process: what loops, crashes or floods there costs a message here
// and nothing else.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

namespace brenvolt::tables {

/// The child's end of the pipe.
class ChildWriter final {
public:
  explicit ChildWriter(int descriptor) : descriptor_(descriptor) {}
  ChildWriter(const ChildWriter&) = delete;
  ChildWriter& operator=(const ChildWriter&) = delete;

  void byte(char value);
  void integer(std::int64_t value);
  void text(std::string_view value);
  void flush();

private:
  void put(const void* data, std::size_t size);

  int descriptor_;
  std::string buffer_;
};

struct ChildLimits {
  /// How long the child may send nothing.
  int silenceMilliseconds = 5000;
  /// How much it may send.
  std::uint64_t bytes = 0;
};

/// The parent's end. False ends the reading: the child is gone, silent or sends too much.
class ChildReader final {
public:
  ChildReader(int descriptor, ChildLimits limits) : descriptor_(descriptor), limits_(limits) {}
  ChildReader(const ChildReader&) = delete;
  ChildReader& operator=(const ChildReader&) = delete;

  [[nodiscard]] bool byte(char& value);
  [[nodiscard]] bool integer(std::int64_t& value);
  [[nodiscard]] bool text(std::string& value);
  /// Why the last call returned false.
  [[nodiscard]] const std::wstring& reason() const { return reason_; }

private:
  [[nodiscard]] bool take(void* data, std::size_t size);
  [[nodiscard]] bool fill();

  int descriptor_;
  ChildLimits limits_;
  std::string buffer_;
  std::size_t at_ = 0;
  std::uint64_t taken_ = 0;
  std::wstring reason_;
};

/// Runs `work` in a child process while `receive` reads what it writes; the child is ended when `receive` returns.
/// False when no child could be started, with the reason in `error`.
[[nodiscard]] bool runGuarded(
    const ChildLimits& limits, const std::function<void(ChildWriter&)>& work,
    const std::function<void(ChildReader&)>& receive, std::wstring& error);

} // namespace brenvolt::tables
