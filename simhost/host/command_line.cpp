// Printing, with an eye on where a line begins.
#include "simhost/host/command_line.h"

#include "text/encoding.h"

#include <cstdio>
#include <string>
#include <utility>

namespace simhost {

CommandLine::CommandLine() {
  setSink([](std::wstring_view text) {
    const std::string bytes = brenvolt::toUtf8(text);
    std::fwrite(bytes.data(), 1, bytes.size(), stdout);
  });
}

void CommandLine::setSink(Sink sink) {
  sink_ = std::move(sink);
}

void CommandLine::print(std::wstring_view text) {
  if (text.empty()) return;
  sink_(text);
  atLineStart_ = text.back() == L'\n';
}

void CommandLine::printLine(std::wstring_view text) {
  startLine();
  print(text);
  print(L"\n");
}

void CommandLine::startLine() {
  if (!atLineStart_) print(L"\n");
}

} // namespace simhost
