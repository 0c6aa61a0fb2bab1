// Sets up and takes down what the tests of the host share.
#include "host_fixture.h"

#include "simhost/lisp/printer.h"

#include <cstdlib>
#include <stdexcept>
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

TemporaryFolder::TemporaryFolder() {
  std::string name = (std::filesystem::temp_directory_path() / "brenvolt-XXXXXX").string();
  if (::mkdtemp(name.data()) == nullptr) throw std::runtime_error("no temporary folder");
  path_ = name;
}

TemporaryFolder::~TemporaryFolder() {
  std::error_code error;
  std::filesystem::remove_all(path_, error);
}

} // namespace simhost
