// The user's settings file, and task dialogs that the user chose not to see again.
#include "host/host_api_documents.h"
#include "host/host_api_ui.h"
#include "host_fixture.h"
#include "simhost/host/files.h"
#include "tests/support/answer_steps.h"
#include "tests/support/temporary_folder.h"

#include <doctest/doctest.h>

#include <filesystem>
#include <string>

using brenvolt::test::TemporaryFolder;
using simhost::HostFixture;

namespace {

simhost::SessionOptions keptIn(const std::filesystem::path& file) {
  simhost::SessionOptions options;
  options.resourceFolder = "resources";
  options.settingsFile = file;
  return options;
}

constexpr const wchar_t* tableKey = L"ZanBrenvolt.TableNotFound";

/// Shows the alert of a missing table and returns the button.
int askTable() {
  const KdTaskDialogParameter parameters[] = {{L"tablename", L"{source}"}, {L"source", L"tables.db"}};
  CKdTaskDialog dialog;
  REQUIRE(dialog.LoadFromFile(L"res", tableKey, parameters, 2));
  return dialog.ShowDialog(nullptr);
}

void pushResources() {
  kvDocManagerPtr()->pushResourceModule(kvdsLoadResourceModule(L"ZanBrenvoltRes.dll"));
}

} // namespace

TEST_CASE("values outlive the session, below their key, and what is missing stays unread") {
  const TemporaryFolder folder;
  const std::filesystem::path file = folder.path() / "new" / "settings.json";
  {
    HostFixture host({}, keptIn(file));
    CHECK_FALSE(kvdsUserKeyExists(L"Dlg"));
    CHECK(kvdsWriteUserValue(L"Dlg", L"Last", L"\u00c4 \"x\""));
    CHECK(kvdsWriteUserValue(L"Dlg", L"Size", L""));
  }
  HostFixture host({}, keptIn(file));
  std::wstring value = L"former";
  CHECK_FALSE(kvdsReadUserValue(L"Dlg", L"No", value));
  CHECK_FALSE(kvdsReadUserValue(L"Other", L"Last", value));
  CHECK(value == L"former");
  CHECK(kvdsUserKeyExists(L"Dlg"));
  CHECK(kvdsReadUserValue(L"Dlg", L"Last", value));
  CHECK(value == L"\u00c4 \"x\"");
  CHECK(kvdsReadUserValue(L"Dlg", L"Size", value));
  CHECK(value.empty());
}

TEST_CASE("a damaged settings file is kept beside the new one and told") {
  const TemporaryFolder folder;
  const std::filesystem::path file = folder.path() / "settings.json";
  int kept = 0;
  for (const char* damage : {"{", "[]", R"({"values": {"a": 1}})", R"({"hidden": {"a": "b"}})"}) {
    REQUIRE(simhost::replaceFile(file, damage).empty());
    HostFixture host({}, keptIn(file));
    CHECK(kvdsWriteUserValue(L"Dlg", L"Last", L"1"));
    CHECK(host.printed.find(L"damaged settings") != std::wstring::npos);
    const std::string name = "settings.damaged-" + std::to_string(++kept) + ".json";
    CHECK(simhost::readFile(folder.path() / name) == damage);
    CHECK(simhost::readFile(file).value().find("Last") != std::string::npos);
  }
}

TEST_CASE("a write that fails is told and does not lose the value for this run") {
  const TemporaryFolder folder;
  REQUIRE(simhost::replaceFile(folder.path() / "file", "x").empty());
  HostFixture host({}, keptIn(folder.path() / "file" / "settings.json"));
  CHECK_FALSE(kvdsWriteUserValue(L"Dlg", L"Last", L"1"));
  CHECK(host.printed.find(L"settings not saved") != std::wstring::npos);
  std::wstring value;
  CHECK(kvdsReadUserValue(L"Dlg", L"Last", value));
}

TEST_CASE("two runs at once keep each other's values") {
  const TemporaryFolder folder;
  const std::filesystem::path file = folder.path() / "settings.json";
  simhost::CommandLine commandLine;
  simhost::UserSettings first(file, commandLine);
  simhost::UserSettings second(file, commandLine);
  CHECK_FALSE(first.value(L"K", L"b"));
  CHECK(second.setValue(L"K", L"b", L"2"));
  CHECK(first.setValue(L"K", L"a", L"1"));
  simhost::UserSettings third(file, commandLine);
  CHECK(third.value(L"K", L"a") == L"1");
  CHECK(third.value(L"K", L"b") == L"2");
}

TEST_CASE("a hidden dialog answers the kept button without being shown") {
  const TemporaryFolder folder;
  const std::filesystem::path file = folder.path() / "settings.json";
  {
    HostFixture host(
        brenvolt::test::answerSteps(
            R"({"dialog": "ZanBrenvolt.TableNotFound", "do": [{"tick": "hide", "to": true}, {"press": 1001}]})"),
        keptIn(file));
    pushResources();
    const auto* dictionary = CKdTaskDialog::GetHideableDialogSettingsDictionary();
    REQUIRE(dictionary != nullptr);
    CHECK(dictionary->GetResult(tableKey) == 0);
    CHECK(askTable() == kvui::firstCommand);
    CHECK(dictionary->GetResult(tableKey) == kvui::firstCommand);
    CHECK(askTable() == kvui::firstCommand);
    CHECK(host.windows.failure().empty());
    // Inserted values of parameters are not filled again.
    CHECK(host.windows.recording().find("are missing: {source}\\nSource: tables.db") != std::string::npos);
  }
  HostFixture later({}, keptIn(file));
  pushResources();
  CHECK(askTable() == kvui::firstCommand);
}

TEST_CASE("an unknown key does not load, and a question without an answer ends the run as cancelled") {
  HostFixture host({}, keptIn({}));
  CKdTaskDialog dialog;
  CHECK_FALSE(dialog.LoadFromFile(L"res", tableKey, nullptr, 0)); // no module is pushed
  pushResources();
  CHECK_FALSE(dialog.LoadFromFile(L"res", L"ZanBrenvolt.NoSuchKey", nullptr, 0));
  CHECK(askTable() == kvui::cancel);
  CHECK(host.windows.failure().find(tableKey) != std::wstring::npos);
  CHECK(host.session.isCancelled());
}
