// Sets up and takes down what the tests of the host share.
#include "host_fixture.h"

#include "simhost/lisp/printer.h"

#include <utility>

namespace simhost {

HostFixture::HostFixture(std::vector<AnswerStep> steps, SessionOptions options)
    : windows(std::move(steps), "answers"), session(std::move(options), windows) {
  session.commandLine().setSink([this](std::wstring_view text) { printed += text; });
  session.openDocument(L"", std::make_unique<DrawingDatabase>());
}

std::wstring HostFixture::eval(std::wstring_view text) {
  try {
    return lisp::printValue(session.documents().current()->interpreter().run(text, L"test"));
  } catch (const lisp::LispError& error) {
    return L"error: " + error.text();
  } catch (const lisp::Cancelled&) {
    return L"cancelled";
  }
}

} // namespace simhost
