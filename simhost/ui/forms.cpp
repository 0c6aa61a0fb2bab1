// Reads form files. Every member is checked, so that a mistake in a form is reported for the form and not by a flow
// that misses a control.
#include "simhost/ui/forms.h"

#include "simhost/json/json_text.h"
#include "simhost/ui/form_words.h"
#include "text/encoding.h"

#include <nlohmann/json.hpp>

#include <fstream>
#include <iterator>
#include <optional>
#include <set>
#include <utility>

namespace simhost {

namespace {

using brenvolt::fromUtf8;
using brenvolt::toUtf8;
using json = nlohmann::ordered_json;

struct KindName {
  const char* name;
  ControlKind kind;
};
constexpr KindName kindNames[] = {
    {"text", ControlKind::text}, {"list", ControlKind::list},   {"editableList", ControlKind::editableList},
    {"tick", ControlKind::tick}, {"radio", ControlKind::radio}, {"button", ControlKind::button},
    {"tree", ControlKind::tree}, {"grid", ControlKind::grid},   {"pages", ControlKind::pages},
};

/// A boolean member, and the kinds that have it; none means all.
struct FlagMember {
  const char* name;
  bool FormControl::*flag;
  std::vector<ControlKind> kinds;
};

const std::vector<FlagMember>& flagMembers() {
  static const std::vector<FlagMember> members = {
      {"enabled", &FormControl::isEnabled, {}},
      {"visible", &FormControl::isVisible, {}},
      {"readOnly", &FormControl::isReadOnly, {ControlKind::text}},
      {"default", &FormControl::isDefault, {ControlKind::button}},
      {"checked", &FormControl::isChecked, {ControlKind::tick, ControlKind::radio}},
      {"editable", &FormControl::isEditable, {ControlKind::grid}},
  };
  return members;
}

/// Takes one file apart; knows where it is for its messages.
class Parser final {
public:
  explicit Parser(std::string fileName) : place_(std::move(fileName)) {}

  [[nodiscard]] Form parse(std::string_view bytes, const std::string& name) {
    json file;
    try {
      file = parseJson(bytes);
    } catch (const json::exception& error) {
      fail(std::string("invalid JSON: ") + error.what());
    }
    if (!file.is_object()) fail("must be an object");
    // The positions of the controls are read by a screen.
    allowMembers(file, {"$schema", "format", "version", "title", "controls", "layout"});
    if (file.value("format", json()) != std::string(formFormat))
      fail("\"format\" is not \"" + std::string(formFormat) + "\"");
    if (file.value("version", json()) != formVersion) fail("\"version\" is not 1");
    Form form;
    form.name = fromUtf8(name);
    form.title = textOf(file, "title");
    if (file.contains("layout")) form.layout = jsonText(file["layout"]);
    if (!file.contains("controls") || !file["controls"].is_array()) fail("\"controls\" must be a list");
    const std::string fileName = place_;
    std::set<std::wstring> roles;
    for (const json& entry : file["controls"]) {
      place_ = fileName + ": control " + std::to_string(form.controls.size() + 1);
      FormControl control = parseControl(entry);
      if (!roles.insert(control.role).second) fail("the role is taken by another control");
      form.controls.push_back(std::move(control));
    }
    return form;
  }

private:
  [[noreturn]] void fail(const std::string& message) const { throw FormError(place_ + ": " + message); }

  void allowMembers(const json& object, const std::set<std::string>& known) const {
    for (const auto& [name, value] : object.items())
      if (!known.contains(name)) fail("unknown member \"" + name + "\"");
  }

  [[nodiscard]] std::wstring textOf(const json& object, const char* member) const {
    if (!object.contains(member)) return {};
    if (!object[member].is_string()) fail(std::string("\"") + member + "\" must be a text");
    return fromUtf8(object[member].get<std::string>());
  }

  [[nodiscard]] FormControl parseControl(const json& entry) {
    if (!entry.is_object()) fail("must be an object");
    FormControl control;
    control.role = textOf(entry, "role");
    const std::string role = toUtf8(control.role);
    if (role.empty()) fail("needs \"role\"");
    place_ += " (\"" + role + "\")";
    if (role == dialogRole) fail("this role is reserved for the dialog itself");
    // A point and a slash separate the names of controls on pages.
    if (role.find_first_of("./") != std::string::npos) fail("a role must not contain \".\" or \"/\"");
    control.kind = kindOf(toUtf8(textOf(entry, "kind")));
    control.label = textOf(entry, "label");
    control.tooltip = textOf(entry, "tooltip");
    control.group = textOf(entry, "group");
    if (entry.contains("layout")) control.layout = jsonText(entry["layout"]);
    std::set<std::string> known = {"role", "kind", "label", "tooltip", "layout"};
    for (const FlagMember& member : flagMembers()) {
      const auto& kinds = member.kinds;
      if (!kinds.empty() && std::find(kinds.begin(), kinds.end(), control.kind) == kinds.end()) continue;
      known.insert(member.name);
      if (!entry.contains(member.name)) continue;
      if (!entry[member.name].is_boolean())
        fail(std::string("\"") + member.name + "\" is neither true nor false");
      control.*member.flag = entry[member.name];
    }
    if (control.kind == ControlKind::radio) {
      known.insert("group");
      if (control.group.empty()) fail("a radio button needs \"group\"");
    }
    allowMembers(entry, known);
    return control;
  }

  [[nodiscard]] ControlKind kindOf(const std::string& name) const {
    for (const KindName& row : kindNames)
      if (name == row.name) return row.kind;
    fail("\"kind\" is not a kind of control: \"" + name + "\"");
  }

  std::string place_;
};

} // namespace

std::string_view nameOf(ControlKind kind) {
  for (const KindName& row : kindNames)
    if (kind == row.kind) return row.name;
  return {};
}

Form parseForm(std::string_view bytes, const std::string& name, const std::string& fileName) {
  return Parser(fileName).parse(bytes, name);
}

Form loadForm(const std::filesystem::path& folder, std::wstring_view name, const std::string& language) {
  const std::string utf8Name = toUtf8(name);
  const std::filesystem::path path = folder / (utf8Name + ".json");
  std::ifstream in(path, std::ios::binary);
  if (name.empty() || !in)
    throw FormError("the form \"" + utf8Name + "\" is unknown: missing file " + path.string());
  const std::string bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
  Form form = parseForm(bytes, utf8Name, path.string());
  translateFormIn(form, folder, language);
  return form;
}

} // namespace simhost
