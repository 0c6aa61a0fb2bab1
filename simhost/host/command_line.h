// The host's command line as an output: LISP, the plug-in and the host itself print here.
#pragma once

#include <functional>
#include <string_view>

namespace simhost {

class CommandLine final {
public:
  using Sink = std::function<void(std::wstring_view text)>;

  /// Prints to standard output in UTF-8 until another sink is set.
  CommandLine();

  void setSink(Sink sink);
  void print(std::wstring_view text);
  /// Prints on a line of its own.
  void printLine(std::wstring_view text);
  /// Ends the line if it is not empty.
  void startLine();

private:
  Sink sink_;
  bool atLineStart_ = true;
};

} // namespace simhost
