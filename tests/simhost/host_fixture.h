// A session with one empty drawing, without windows beyond the scripted ones and without a module, for tests of the
// host's functions.
#pragma once

#include "simhost/host/session.h"
#include "simhost/ui/scripted_windows.h"

#include <string>
#include <vector>

namespace simhost {

class HostFixture final {
public:
  explicit HostFixture(std::vector<AnswerStep> steps = {}, SessionOptions options = {});

  /// Evaluates and prints the value; a LISP error gives "error: " and its text.
  std::wstring eval(std::wstring_view text);
  /// What was printed so far.
  std::wstring printed;
  ScriptedWindows windows;
  Session session;
};

} // namespace simhost
