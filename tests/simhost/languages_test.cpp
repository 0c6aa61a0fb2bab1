// Translations: each one is complete, with the same placeholders as in English.
#include "host_fixture.h"
#include "simhost/host/errors.h"
#include "simhost/host/files.h"
#include "simhost/host/resource_module.h"
#include "simhost/ui/form_words.h"

#include <doctest/doctest.h>

#include <algorithm>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace fs = std::filesystem;
using namespace simhost;

namespace {

KvResourceModule moduleOf(const fs::path& file) {
  KvResourceModule module;
  const std::optional<std::string> bytes = readFile(file);
  REQUIRE_MESSAGE(bytes, file.string());
  readLanguageFile(*bytes, file.string(), LanguageRole::base, module);
  return module;
}

/// "%s", "%d", "%1" and "{name}", sorted; the line ends and blanks that a text begins and ends with too, as prompts
/// and lines of the command line hang on them.
std::vector<std::wstring> filledIn(const std::wstring& text) {
  std::vector<std::wstring> found;
  for (std::size_t at = 0; at < text.size(); ++at) {
    if (text[at] == L'%' && at + 1 < text.size() && text[at + 1] != L' ') found.push_back(text.substr(at, 2));
    if (text[at] == L'{') found.push_back(text.substr(at, text.find(L'}', at) - at + 1));
  }
  std::sort(found.begin(), found.end());
  if (!text.empty() && (text.front() == L'\n' || text.front() == L' ')) found.push_back(L"front");
  if (!text.empty() && (text.back() == L'\n' || text.back() == L' ')) found.push_back(L"back");
  return found;
}

} // namespace

TEST_CASE("German has every text and every dialog, with the same places to fill in") {
  for (const char* folder : {"ZanBrenvoltRes", "SimHost"}) {
    CAPTURE(folder);
    const KvResourceModule english = moduleOf(fs::path("resources") / folder / "en.txt");
    // Read as a file of its own: what English would fill in is seen to be missing.
    const KvResourceModule german = moduleOf(fs::path("resources") / folder / "de.txt");
    CHECK(german.texts.size() == english.texts.size());
    for (const auto& entry : english.texts) {
      const auto& number = entry.first;
      const auto& text = entry.second;
      CAPTURE(number);
      const auto found = german.texts.find(number);
      REQUIRE(found != german.texts.end());
      CHECK_FALSE(found->second.empty());
      CHECK(filledIn(found->second) == filledIn(text));
    }
    CHECK(german.dialogs.size() == english.dialogs.size());
    for (const auto& [key, dialog] : english.dialogs) {
      const auto found = german.dialogs.find(key);
      REQUIRE(found != german.dialogs.end());
      CHECK_FALSE(found->second.title.empty());
      CHECK(filledIn(found->second.text) == filledIn(dialog.text));
      REQUIRE(found->second.buttons.size() == dialog.buttons.size());
      for (std::size_t place = 0; place < dialog.buttons.size(); ++place)
        CHECK(found->second.buttons[place].id == dialog.buttons[place].id);
    }
  }
}

TEST_CASE("German has the title, each label and each tooltip of every form") {
  for (const auto& entry : fs::directory_iterator("resources/forms")) {
    if (entry.path().extension() != ".json") continue;
    const std::wstring name = entry.path().stem().wstring();
    Form blank = loadForm("resources/forms", name);
    const Form english = blank;
    blank.title.clear();
    for (FormControl& control : blank.controls) {
      control.label.clear();
      control.tooltip.clear();
    }
    translateFormIn(blank, "resources/forms", "de");
    CAPTURE(entry.path().string());
    CHECK_FALSE(blank.title.empty());
    // Words that only a screen shows; symbols of units are the same in both.
    for (const char* title :
         {"Start from", "Scale", "Current of the circuit", "Conductor", "Correction", "per kWh"}) {
      const std::string quoted = std::string("\"") + title + "\"";
      CHECK(blank.layout.find(quoted) == std::string::npos);
      for (const FormControl& control : blank.controls)
        CHECK(control.layout.find(quoted) == std::string::npos);
    }
    for (std::size_t place = 0; place < blank.controls.size(); ++place) {
      CAPTURE(std::string(english.controls[place].role.begin(), english.controls[place].role.end()));
      CHECK(blank.controls[place].label.empty() == english.controls[place].label.empty());
      CHECK(blank.controls[place].tooltip.empty() == english.controls[place].tooltip.empty());
    }
  }
}

TEST_CASE("a slip in the words of forms is told by file and line, and the language decides") {
  Form form;
  form.name = L"Values";
  form.title = L"Values";
  FormControl& list = form.controls.emplace_back();
  list.role = L"list";
  list.kind = ControlKind::list;
  list.label = L"List";
  const auto faultOf = [&form](const std::string& bytes) -> std::string {
    Form copy = form;
    try {
      translateForm(copy, bytes, "xx.txt");
    } catch (const FormError& error) {
      return error.what();
    }
    return {};
  };
  CHECK(faultOf("list = Liste\n") == "xx.txt:1: belongs to no form");
  CHECK(faultOf("# x\nform Values\nnone = Liste\n") == "xx.txt:3: the form \"Values\" has no \"none\"");
  CHECK(faultOf("forms\n") == "xx.txt:1: neither \"form NAME\" nor \"ROLE = ...\"");
  CHECK(faultOf("form Other\nnone = x\nform Values\nlist.tooltip = Alle\n").empty());
  translateForm(form, "form Values\n title = Werte\n list.tooltip = a = b\n", "xx.txt");
  CHECK(form.title == L"Werte");
  CHECK(form.controls[0].label == L"List");
  CHECK(form.controls[0].tooltip == L"a = b");
  CHECK(loadForm("resources/forms", L"ZanDlgMotorSelect", "de").title == L"Motor w\u00e4hlen");
  CHECK(loadForm("resources/forms", L"ZanDlgMotorSelect", "fr").title == L"Select Motor");
}
