// The session of a test: settings in memory, an empty drawing, printing kept.
#include "tests/support/lisp_session.h"

#include "simhost/lisp/printer.h"
#include "simhost/ui/scripted_windows.h"
#include "text/encoding.h"

#include <memory>
#include <utility>

namespace brenvolt::test {

WindowsMaker& windowsMaker() {
  static WindowsMaker maker = [](std::vector<simhost::AnswerStep> steps) {
    return std::make_unique<simhost::ScriptedWindows>(std::move(steps), "the test");
  };
  return maker;
}

LispSession::LispSession(std::vector<simhost::AnswerStep> steps)
    : windows_(windowsMaker()(std::move(steps))), session_({}, *windows_) {
  session_.commandLine().setSink([this](std::wstring_view text) { printed_ += text; });
  session_.openDocument(L"", std::make_unique<simhost::DrawingDatabase>());
}

std::string LispSession::eval(std::string_view forms) {
  try {
    return toUtf8(simhost::lisp::printValue(
        session_.documents().current()->interpreter().run(fromUtf8(forms), L"test")));
  } catch (const simhost::lisp::LispError& error) {
    return "error: " + toUtf8(error.text());
  }
}

std::string LispSession::takePrinted() {
  return toUtf8(std::exchange(printed_, std::wstring()));
}

simhost::AnswerStep press(std::string_view taskDialog, int button) {
  simhost::AnswerStep step;
  step.dialog = taskDialog;
  simhost::AnswerAction& action = step.actions.emplace_back();
  action.verb = "press";
  action.subject = std::to_string(button);
  action.number = button;
  return step;
}

} // namespace brenvolt::test
