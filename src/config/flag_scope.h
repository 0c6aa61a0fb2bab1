// Marks that an operation runs, for as long as it does, so that what it calls cannot start it again.
#pragma once

namespace brenvolt {

class FlagScope final {
public:
  explicit FlagScope(bool& flag) : flag_(flag) { flag_ = true; }
  FlagScope(const FlagScope&) = delete;
  FlagScope& operator=(const FlagScope&) = delete;
  ~FlagScope() { flag_ = false; }

private:
  bool& flag_;
};

} // namespace brenvolt
