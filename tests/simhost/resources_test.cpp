// Language files: what they may hold, what English fills in, and that the plug-in's file is whole.
#include "host/alerts.h"
#include "host/resources.h"
#include "host_fixture.h"
#include "simhost/host/errors.h"
#include "simhost/host/files.h"

#include <doctest/doctest.h>

#include <string>
#include <string_view>

using simhost::HostFixture;
using simhost::LanguageRole;

namespace {

constexpr const char* english =
    "text 1 = One\n"
    "text 2 = Two\n"
    "dialog Key\n  title = Title\n  main = Main {name}\n  button 1001 = Go\n  button 2 = Stop\n"
    "  hideable\n";

std::string faultOfLanguage(std::string_view bytes, LanguageRole role = LanguageRole::base) {
  KvResourceModule module;
  try {
    simhost::readLanguageFile(english, "en.txt", LanguageRole::base, module);
    if (role == LanguageRole::base) module = KvResourceModule();
    simhost::readLanguageFile(bytes, "x.txt", role, module);
  } catch (const simhost::BadInput& error) {
    return error.what();
  }
  return {};
}

simhost::SessionOptions repositoryResources() {
  simhost::SessionOptions options;
  options.resourceFolder = "resources";
  return options;
}

} // namespace

TEST_CASE("a translation puts its words over the English ones and leaves the rest") {
  KvResourceModule module;
  simhost::readLanguageFile(english, "en.txt", LanguageRole::base, module);
  simhost::readLanguageFile(
      "# Deutsch\ntext 2 = Zwei\\nZeilen\\s\n\ndialog Key\n main = Gr\xc3\xb6\xc3\x9f"
      "e\n button 2 = Halt\n hideable\n",
      "de.txt", LanguageRole::translation, module);
  CHECK(module.texts.at(1) == L"One");
  CHECK(module.texts.at(2) == L"Zwei\nZeilen ");
  const simhost::DialogText& dialog = module.dialogs.at(L"Key");
  CHECK(dialog.title == L"Title");
  CHECK(dialog.text == L"Gr\u00f6\u00dfe");
  REQUIRE(dialog.buttons.size() == 2);
  CHECK(dialog.buttons[0].label == L"Go");
  CHECK(dialog.buttons[1].label == L"Halt");
  CHECK(dialog.isHideable);
}

TEST_CASE("a damaged language file is told with file and line") {
  CHECK(faultOfLanguage("text 1 = a\ntext x = b\n").starts_with("x.txt:2: "));
  CHECK(faultOfLanguage("text 1 = a\n\ntext 1 = b\n").starts_with("x.txt:3: "));
  CHECK(faultOfLanguage("hello\n").starts_with("x.txt:1: "));
  CHECK(faultOfLanguage("button 1 = a\n").starts_with("x.txt:1: "));
  CHECK(faultOfLanguage("text 1 = a\\t\n").starts_with("x.txt:1: "));
  CHECK(faultOfLanguage("text 1 = \xff\n").starts_with("x.txt:0: "));
  CHECK(faultOfLanguage("dialog K\n title = a\n").starts_with("x.txt: the dialog K has no button"));
  CHECK(faultOfLanguage("dialog Other\n", LanguageRole::translation).starts_with("x.txt:1: "));
  CHECK(faultOfLanguage("dialog Key\n button 7 = a\n", LanguageRole::translation).starts_with("x.txt:2: "));
}

TEST_CASE("English holds every text that the plug-in names") {
  HostFixture host({}, repositoryResources());
  kvDocManagerPtr()->pushResourceModule(kvdsLoadResourceModule(L"ZanBrenvoltRes.dll"));
  // The numbers of the plug-in's own list.
  std::string header = simhost::readFile("src/host/resources.h").value();
  header.erase(0, header.find("enum class TextId"));
  int count = 0;
  for (std::size_t at = header.find(" = "); at != std::string::npos; at = header.find(" = ", at + 1)) {
    unsigned number = 0;
    for (std::size_t digit = at + 3; digit < header.size() && header[digit] >= '0' && header[digit] <= '9';
         ++digit)
      number = number * 10 + static_cast<unsigned>(header[digit] - '0');
    if (number < 10000) continue;
    std::wstring text;
    CHECK_MESSAGE(kvdsLoadString(number, text), "text ", number);
    ++count;
  }
  CHECK(count > 80);
  // The text before the dash distinguishes a wire row from a grounding row.
  using brenvolt::loadText;
  using brenvolt::TextId;
  CHECK(loadText(TextId::wireSizeRow).starts_with(L"W%d - "));
  CHECK(loadText(TextId::wireLayerRow).starts_with(L"W%d - "));
  CHECK(loadText(TextId::groundSizeRow).starts_with(L"W0%dE - "));
  CHECK(loadText(TextId::groundLayerRow).starts_with(L"W0%dE - "));
}
