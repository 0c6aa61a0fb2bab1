// A session with one empty drawing, without windows beyond the scripted ones and without a module, for tests of the
// host's functions.
#pragma once

#include "simhost/host/session.h"
#include "simhost/ui/scripted_windows.h"

#include <filesystem>
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

/// A new, empty folder that is removed with the object.
class TemporaryFolder final {
public:
  TemporaryFolder();
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;
  ~TemporaryFolder();
  [[nodiscard]] const std::filesystem::path& path() const { return path_; }

private:
  std::filesystem::path path_;
};

} // namespace simhost
