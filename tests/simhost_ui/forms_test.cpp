// Form files: what they may hold.
#include "simhost/ui/forms.h"

#include <doctest/doctest.h>

#include <string>

using simhost::parseForm;

namespace {

std::string inFile(const std::string& controls) {
  return R"({"format": "brenvolt-form", "version": 1, "controls": [)" + controls + "]}";
}

std::string faultOf(const std::string& bytes) {
  try {
    static_cast<void>(parseForm(bytes, "a", "a.json"));
  } catch (const simhost::FormError& error) {
    return error.what();
  }
  return {};
}

} // namespace

TEST_CASE("a damaged form is told with file and control") {
  CHECK(faultOf("{").starts_with("a.json: invalid JSON"));
  CHECK(faultOf(R"({"format": "brenvolt-form", "version": 2})").starts_with("a.json: \"version\""));
  CHECK(faultOf(R"({"format": "brenvolt-form", "version": 1})") == "a.json: \"controls\" must be a list");
  struct Row {
    const char* control;
    const char* fault;
  };
  const Row rows[] = {
      {R"({"kind": "text"})", "control 1: needs \"role\""},
      {R"({"role": "a", "kind": "slider"})",
       "control 1 (\"a\"): \"kind\" is not a kind of control: \"slider\""},
      {R"({"role": "a.b", "kind": "text"})", "control 1 (\"a.b\"): a role must not contain \".\" or \"/\""},
      {R"({"role": "dialog", "kind": "text"})",
       "control 1 (\"dialog\"): this role is reserved for the dialog itself"},
      {R"({"role": "a", "kind": "text"}, {"role": "a", "kind": "list"})",
       "control 2 (\"a\"): the role is taken by another control"},
      {R"({"role": "a", "kind": "list", "readOnly": true})",
       "control 1 (\"a\"): unknown member \"readOnly\""},
      {R"({"role": "a", "kind": "text", "readOnly": 1})",
       "control 1 (\"a\"): \"readOnly\" is neither true nor false"},
      {R"({"role": "a", "kind": "radio"})", "control 1 (\"a\"): a radio button needs \"group\""},
  };
  for (const Row& row : rows)
    CHECK(faultOf(inFile(row.control)) == std::string("a.json: ") + row.fault);
  try {
    static_cast<void>(simhost::loadForm("tests/simhost_ui/forms", L"nothing"));
    FAIL("a form was found that is not there");
  } catch (const simhost::FormError& error) {
    CHECK(std::string(error.what()).starts_with("the form \"nothing\" is unknown"));
  }
}
