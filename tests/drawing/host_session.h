// The simulated host with one empty document, for tests of code that calls LISP or prints.
#pragma once

#include "simhost/drawing/drawing_database.h"
#include "simhost/host/session.h"
#include "simhost/ui/scripted_windows.h"

#include <memory>
#include <string>

namespace brenvolt::test {

class HostSession final {
public:
  HostSession() : session_({}, windows_), document_(session_.openDocument(L"", makeDrawing())) {
    session_.commandLine().setSink([this](std::wstring_view text) { printed_ += text; });
  }

  /// All that came to the command line.
  [[nodiscard]] const std::wstring& printed() const { return printed_; }
  [[nodiscard]] simhost::Session& session() { return session_; }
  /// Lets LISP evaluate a text.
  void evaluate(std::wstring_view text) { (void)document_.interpreter().run(text, L"test"); }

private:
  static std::unique_ptr<simhost::DrawingDatabase> makeDrawing() {
    return std::make_unique<simhost::DrawingDatabase>();
  }

  std::wstring printed_;
  simhost::ScriptedWindows windows_;
  simhost::Session session_;
  simhost::Document& document_;
};

} // namespace brenvolt::test
