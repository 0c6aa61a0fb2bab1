// Flows find their controls by role, and forms name them in files that no compiler reads: each role that a flow names
// is in its form, in a kind that the flow can use, and no form has an unused control.
#include "flows/wire_controls.h"
#include "simhost/json/json_text.h"

#include <doctest/doctest.h>
#include <nlohmann/json.hpp>

#include <filesystem>
#include <fstream>
#include <map>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace fs = std::filesystem;

namespace {

/// Which sources are the flow of a form.
struct FlowOfForm {
  const char* form;
  std::vector<const char*> sources;
};
const FlowOfForm flows[] = {
    {"ZanAttrSelDlg", {"attr_sel_dlg.cpp"}},
    {"ZanDlgAnnotation", {"dlg_annotation.cpp"}},
    {"ZanDlgCircuit", {"dlg_circuit.cpp"}},
    {"ZanDlgConfig", {"dlg_config.cpp", "config_pages.cpp"}},
    {"ZanDlgExistCircuits", {"dlg_exist_circuits.cpp"}},
    {"ZanDlgMotorSelect", {"rating_picker.cpp", "dlg_database.cpp", "dlg_database.h"}},
    {"ZanDlgPowerFeed", {"rating_picker.cpp", "dlg_database.cpp", "dlg_database.h"}},
    {"ZanDlgWireSelect",
     {"dlg_wire_select.cpp", "wire_lookup_view.cpp", "dlg_database.cpp", "dlg_database.h"}},
};
/// Names a form and the roles of its filters, form by form.
constexpr const char* kindsSource = "rating_picker_kind.cpp";

const std::map<std::string, std::set<std::string>> kindsOfCall = {
    {"text", {"text"}},          {"list", {"list", "editableList"}},
    {"tick", {"tick", "radio"}}, {"button", {"button"}},
    {"tree", {"tree"}},          {"grid", {"grid"}},
    {"pages", {"pages"}},
};

std::string textOf(const fs::path& file) {
  std::ifstream in(file);
  std::stringstream text;
  text << in.rdbuf();
  return text.str();
}

std::vector<std::smatch> matches(const std::string& text, const std::regex& pattern) {
  return {std::sregex_iterator(text.begin(), text.end(), pattern), std::sregex_iterator()};
}

/// The texts of the constants in role:: by their names.
std::map<std::string, std::string> roleTexts() {
  static const std::regex constant(R"(constexpr std::wstring_view (\w+) =\s*L\"(\w+)\";)");
  std::map<std::string, std::string> texts;
  for (const auto& entry : fs::directory_iterator("src/widgets")) {
    const std::string text = textOf(entry.path());
    for (const std::smatch& found : matches(text, constant))
      texts[found[1]] = found[2];
  }
  return texts;
}

/// Role to the kinds that all calls for it can use; empty for a role that is only named.
using Asked = std::map<std::string, std::set<std::string>>;

void readRoles(const std::string& source, Asked& asked) {
  static const std::map<std::string, std::string> texts = roleTexts();
  static const std::regex mention(R"((?:(\w+)\()?role::(\w+))");
  for (const std::smatch& found : matches(source, mention)) {
    const auto text = texts.find(found[2]);
    REQUIRE_MESSAGE(text != texts.end(), "no header has role::", found[2].str());
    std::set<std::string>& kinds = asked[text->second];
    std::string call = found[1];
    for (char& letter : call)
      letter = static_cast<char>(std::tolower(letter));
    if (const auto known = kindsOfCall.find(call); known != kindsOfCall.end()) kinds = known->second;
  }
}

/// The part of the two pickers' table that belongs to one form.
std::string kindOf(const std::string& form) {
  const std::string text = textOf(fs::path("src/flows") / kindsSource);
  const std::string mark = ".form = L\"";
  const std::size_t start = text.find(mark + form);
  return start == std::string::npos ? "" : text.substr(start, text.find(mark, start + 1) - start);
}

Asked rolesOf(const FlowOfForm& flow) {
  Asked asked;
  for (const char* source : flow.sources)
    readRoles(textOf(fs::path("src/flows") / source), asked);
  readRoles(kindOf(flow.form), asked);
  if (std::string(flow.form) != "ZanDlgWireSelect") return asked;
  constexpr const char* kinds[] = {"text", "list", "editableList", "tick"};
  for (const brenvolt::WireControlRow& row : brenvolt::wireControls)
    asked[std::string(row.role.begin(), row.role.end())] = {kinds[static_cast<int>(row.kind)]};
  return asked;
}

} // namespace

TEST_CASE("each form has the controls that its flow asks for, in their kinds, and no other ones") {
  std::set<std::string> forms;
  for (const FlowOfForm& flow : flows) {
    CAPTURE(std::string(flow.form));
    forms.insert(flow.form);
    std::map<std::string, std::string> kindOfRole;
    const auto form = simhost::parseJson(textOf("resources/forms/" + std::string(flow.form) + ".json"));
    for (const auto& control : form["controls"])
      kindOfRole[control["role"]] = control["kind"];
    Asked asked = rolesOf(flow);
    CHECK(asked.size() > 1);
    for (const auto& entry : asked) {
      const std::string& role = entry.first;
      const auto& kinds = entry.second;
      const auto found = kindOfRole.find(role);
      CHECK_MESSAGE(found != kindOfRole.end(), "the form lacks \"", role, "\"");
      if (found == kindOfRole.end() || kinds.empty()) continue;
      CHECK_MESSAGE(kinds.contains(found->second), "\"", role, "\" is of the kind ", found->second);
    }
    // What closes a dialog or opens its help raises no event: the flow need not name it.
    for (const auto& entry : kindOfRole) {
      const std::string& role = entry.first;
      const bool isOfHost = role == "ok" || role == "cancel" || role == "help";
      CHECK_MESSAGE((isOfHost || asked.contains(role)), "no flow asks for \"", role, "\"");
    }
  }
  for (const auto& entry : fs::directory_iterator("resources/forms"))
    if (entry.path().extension() == ".json") CHECK(forms.contains(entry.path().stem().string()));
}

TEST_CASE("no flow names roles behind the back of the comparison with the forms") {
  std::set<std::string> known = {kindsSource};
  for (const FlowOfForm& flow : flows)
    known.insert(flow.sources.begin(), flow.sources.end());
  for (const auto& entry : fs::directory_iterator("src/flows")) {
    if (textOf(entry.path()).find("role::") == std::string::npos) continue;
    CHECK_MESSAGE(known.contains(entry.path().filename().string()), entry.path().string());
  }
}
