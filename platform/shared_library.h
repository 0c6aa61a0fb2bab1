// A library of the system that is loaded when it is first needed. Few runs of the tool need one of these, and loading
// them with the program would cost every run more than its work.
#pragma once

#include <string>

namespace brenvolt {

/// Stays loaded until the process ends.
class SharedLibrary {
public:
  SharedLibrary(const SharedLibrary&) = delete;
  SharedLibrary& operator=(const SharedLibrary&) = delete;

  /// Why the library cannot be used; empty when it can.
  [[nodiscard]] const std::wstring& fault() const { return fault_; }

protected:
  /// A function as its address; it becomes a pointer of the type that it is put into.
  class Symbol final {
  public:
    explicit Symbol(void* address) : address_(address) {}
    template <class Function>
    operator Function*()
        const { // NOLINT(google-explicit-constructor): the member that it is put into names the type
      return reinterpret_cast<Function*>(address_);
    }

  private:
    void* address_;
  };

  /// `name` is the file that the dynamic loader looks for.
  explicit SharedLibrary(const char* name);
  ~SharedLibrary() = default;

  /// Null when the library does not have it, which is a fault of the whole library.
  [[nodiscard]] Symbol find(const char* function);

private:
  void* handle_;
  std::wstring fault_;
};

} // namespace brenvolt
