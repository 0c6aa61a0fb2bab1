// Reading of layouts, with the place of a slip in its message.
#include "simhost/qt/form_layout.h"

#include "simhost/json/json_text.h"
#include "text/encoding.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <initializer_list>
#include <set>
#include <string_view>

namespace simhost {

using brenvolt::fromUtf8;
using brenvolt::toUtf8;
using json = nlohmann::ordered_json;

namespace {

/// The buttons that close a window, in any form.
constexpr std::wstring_view closingRoles[] = {L"ok", L"cancel", L"help"};

struct KindName {
  const char* name;
  LayoutNode::Kind kind;
};
constexpr KindName kindNames[] = {
    {"column", LayoutNode::Kind::column},   {"row", LayoutNode::Kind::row},
    {"fields", LayoutNode::Kind::fields},   {"section", LayoutNode::Kind::section},
    {"split", LayoutNode::Kind::split},     {"space", LayoutNode::Kind::space},
    {"control", LayoutNode::Kind::control},
};

bool isClosing(std::wstring_view role) {
  return std::find(std::begin(closingRoles), std::end(closingRoles), role) != std::end(closingRoles);
}

class Reader final {
public:
  explicit Reader(const Form& form) : form_(form) {}

  [[nodiscard]] FormLayout read() {
    FormLayout layout;
    for (const FormControl& control : form_.controls)
      if (!control.layout.empty()) layout.looks[control.role] = readLook(control);
    if (form_.layout.empty()) {
      arrange(layout);
      return layout;
    }
    const json written = parseJson(form_.layout);
    allow(written, {"content", "buttons", "size", "beside"});
    layout.isBeside = written.value("beside", false);
    if (!written.contains("content")) fail("needs \"content\"");
    layout.content = readNode(written["content"]);
    for (const json& role : listOf(written, "buttons"))
      layout.buttons.push_back(take(role));
    const json size = listOf(written, "size");
    if (!size.empty()) {
      if (size.size() != 2 || !size[0].is_number_integer() || !size[1].is_number_integer())
        fail("\"size\" must be a list of width and height");
      layout.width = size[0];
      layout.height = size[1];
    }
    for (const FormControl& control : form_.controls)
      if (!placed_.contains(control.role)) fail("has no place for \"" + toUtf8(control.role) + "\"");
    return layout;
  }

private:
  [[noreturn]] void fail(const std::string& message) const {
    throw FormError("the layout of the form \"" + toUtf8(form_.name) + "\" " + message);
  }

  void allow(const json& object, std::initializer_list<std::string_view> known) const {
    if (!object.is_object()) fail("contains something that is not an object: " + jsonText(object));
    for (const auto& [name, value] : object.items())
      if (std::find(known.begin(), known.end(), name) == known.end())
        fail("has an unknown member \"" + name + "\"");
  }

  [[nodiscard]] json listOf(const json& object, const char* member) const {
    if (!object.contains(member)) return json::array();
    if (!object[member].is_array()) fail(std::string("has \"") + member + "\", which must be a list");
    return object[member];
  }

  [[nodiscard]] int countOf(const json& object, const char* member) const {
    if (!object.contains(member)) return 0;
    if (!object[member].is_number_unsigned())
      fail(std::string("has \"") + member + "\", which must be a number");
    return object[member];
  }

  [[nodiscard]] ControlLook readLook(const FormControl& control) const {
    const json written = parseJson(control.layout);
    allow(written, {"unit", "empty", "width", "rows", "icons", "picture", "search", "repeats"});
    ControlLook look;
    look.unit = fromUtf8(written.value("unit", std::string()));
    look.empty = fromUtf8(written.value("empty", std::string()));
    look.icons = fromUtf8(written.value("icons", std::string()));
    look.isPicture = written.value("picture", false);
    look.hasSearch = written.value("search", false);
    look.repeats = written.value("repeats", false);
    look.width = countOf(written, "width");
    look.rows = countOf(written, "rows");
    return look;
  }

  /// A role, which may occur in one place only.
  [[nodiscard]] std::wstring take(const json& role) {
    if (!role.is_string()) fail("contains something that is not a role: " + jsonText(role));
    std::wstring text = fromUtf8(role.get<std::string>());
    const bool isKnown =
        std::any_of(form_.controls.begin(), form_.controls.end(), [&text](const FormControl& control) {
          return control.role == text;
        });
    if (!isKnown) fail("names \"" + toUtf8(text) + "\", which the form does not have");
    if (!placed_.insert(text).second) fail("has two places for \"" + toUtf8(text) + "\"");
    return text;
  }

  [[nodiscard]] std::vector<LayoutNode> readNodes(const json& list) {
    if (!list.is_array()) fail("contains something that is not a list: " + jsonText(list));
    std::vector<LayoutNode> nodes;
    for (const json& node : list)
      nodes.push_back(readNode(node));
    return nodes;
  }

  [[nodiscard]] LayoutNode readNode(const json& written) {
    LayoutNode node;
    if (written.is_string()) {
      node.text = take(written);
      return node;
    }
    if (written.is_array()) { // the controls of one line
      node.kind = LayoutNode::Kind::row;
      node.children = readNodes(written);
      return node;
    }
    if (!written.is_object()) fail("contains something that is not a place: " + jsonText(written));
    const KindName* found = nullptr;
    for (const KindName& row : kindNames)
      if (written.contains(row.name)) found = &row;
    if (found == nullptr) fail("contains an unknown kind of place: " + jsonText(written));
    allow(
        written, {found->name, "stretch", found->kind == LayoutNode::Kind::section ? "content" : "stretch"});
    node.kind = found->kind;
    node.stretch = countOf(written, "stretch");
    const json& value = written[found->name];
    switch (found->kind) {
    case LayoutNode::Kind::control:
      node.text = take(value);
      break;
    case LayoutNode::Kind::section:
      if (!value.is_string() || !written.contains("content"))
        fail("has a section without title or \"content\"");
      node.text = fromUtf8(value.get<std::string>());
      node.children.push_back(readNode(written["content"]));
      break;
    case LayoutNode::Kind::space:
      break;
    case LayoutNode::Kind::column:
    case LayoutNode::Kind::row:
    case LayoutNode::Kind::fields:
    case LayoutNode::Kind::split:
      node.children = readNodes(value);
      break;
    }
    return node;
  }

  /// The layout of a form that has none: fields below each other, then what needs space, then the buttons.
  void arrange(FormLayout& layout) const {
    LayoutNode fields;
    fields.kind = LayoutNode::Kind::fields;
    layout.content.kind = LayoutNode::Kind::column;
    std::vector<LayoutNode> tall;
    for (const FormControl& control : form_.controls) {
      if (isClosing(control.role)) {
        layout.buttons.push_back(control.role);
        continue;
      }
      LayoutNode node;
      node.text = control.role;
      node.stretch = 1;
      const bool isTall = control.kind == ControlKind::grid || control.kind == ControlKind::tree ||
                          control.kind == ControlKind::pages;
      (isTall ? tall : fields.children).push_back(std::move(node));
    }
    layout.content.children.push_back(std::move(fields));
    for (LayoutNode& node : tall)
      layout.content.children.push_back(std::move(node));
  }

  const Form& form_;
  std::set<std::wstring> placed_;
};

} // namespace

FormLayout readLayout(const Form& form) {
  return Reader(form).read();
}

} // namespace simhost
