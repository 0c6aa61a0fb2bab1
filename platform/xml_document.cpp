// The document tree over pugixml. Its UTF-8 build is the packaged one, so texts are converted at each call.
#include "platform/xml_document.h"

#include "text/encoding.h"

#include <pugixml.hpp>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>

namespace brenvolt {

struct XmlDocument::Tree {
  pugi::xml_document document;
};

namespace {

pugi::xml_node nodeOf(void* pointer) {
  return pugi::xml_node(static_cast<pugi::xml_node_struct*>(pointer));
}

void* pointerOf(const pugi::xml_node& node) {
  return node.internal_object();
}

/// The first element of this name among a node's children; the engine's own search compares other kinds of nodes too.
pugi::xml_node nextNamed(pugi::xml_node node, const std::string& name) {
  while (node && (node.type() != pugi::node_element || name != node.name()))
    node = node.next_sibling();
  return node;
}

bool isNameStart(char character) {
  const auto byte = static_cast<unsigned char>(character);
  const unsigned char lower = byte | 0x20U;
  return (lower >= 'a' && lower <= 'z') || byte == '_' || byte == ':' || byte >= 0x80;
}

/// The engine writes any name as it stands, and such a file could not be read again.
void requireName(const std::string& name) {
  const bool valid =
      !name.empty() && isNameStart(name.front()) && std::all_of(name.begin(), name.end(), [](char character) {
        return isNameStart(character) || (character >= '0' && character <= '9') || character == '-' ||
               character == '.';
      });
  if (!valid) throw XmlError("\"" + name + "\" is no name of an XML element or attribute");
}

bool isElement(const pugi::xml_node& node) {
  return node.type() == pugi::node_element;
}

/// What the engine lets pass though it is no document: text beside the root, no root, or several.
const char* shapeFault(const pugi::xml_document& document) {
  std::size_t roots = 0;
  for (const pugi::xml_node& node : document) {
    if (isElement(node)) ++roots;
    if (node.type() == pugi::node_pcdata || node.type() == pugi::node_cdata)
      return "There is text outside of the root element.";
  }
  if (roots == 0) return "There is no root element.";
  if (roots > 1) return "There is more than one root element.";
  return nullptr;
}

/// Collects what the engine writes.
class BytesWriter final : public pugi::xml_writer {
public:
  explicit BytesWriter(std::string& bytes) : bytes_(bytes) {}
  void write(const void* data, std::size_t size) override {
    bytes_.append(static_cast<const char*>(data), size);
  }

private:
  std::string& bytes_;
};

} // namespace

std::wstring XmlElement::name() const {
  return fromUtf8(nodeOf(node_).name());
}

bool XmlElement::isNamed(std::wstring_view name) const {
  return !isNull() && toUtf8(name) == nodeOf(node_).name();
}

XmlElement XmlElement::parent() const {
  const pugi::xml_node parent = nodeOf(node_).parent();
  return isElement(parent) ? XmlElement(pointerOf(parent)) : XmlElement();
}

std::vector<XmlElement> XmlElement::children(std::wstring_view name) const {
  const std::string bytes = toUtf8(name);
  std::vector<XmlElement> found;
  pugi::xml_node node = nextNamed(nodeOf(node_).first_child(), bytes);
  for (; node; node = nextNamed(node.next_sibling(), bytes))
    found.push_back(XmlElement(pointerOf(node)));
  return found;
}

XmlElement XmlElement::firstChild(std::wstring_view name) const {
  return XmlElement(pointerOf(nextNamed(nodeOf(node_).first_child(), toUtf8(name))));
}

std::wstring XmlElement::attribute(std::wstring_view name) const {
  return fromUtf8(nodeOf(node_).attribute(toUtf8(name).c_str()).value());
}

std::vector<std::pair<std::wstring, std::wstring>> XmlElement::attributes() const {
  std::vector<std::pair<std::wstring, std::wstring>> pairs;
  for (const pugi::xml_attribute& attribute : nodeOf(node_).attributes())
    pairs.emplace_back(fromUtf8(attribute.name()), fromUtf8(attribute.value()));
  return pairs;
}

void XmlElement::setAttribute(std::wstring_view name, std::wstring_view value) {
  if (isNull()) throw XmlError("an attribute needs an element");
  const std::string bytes = toUtf8(name);
  requireName(bytes);
  pugi::xml_attribute attribute = nodeOf(node_).attribute(bytes.c_str());
  if (!attribute) attribute = nodeOf(node_).append_attribute(bytes.c_str());
  if (!attribute.set_value(toUtf8(value).c_str())) throw XmlError("no memory for an attribute");
}

XmlElement XmlElement::appendChild(std::wstring_view name) {
  if (isNull()) throw XmlError("a child needs a parent element");
  const std::string bytes = toUtf8(name);
  requireName(bytes);
  const pugi::xml_node child = nodeOf(node_).append_child(bytes.c_str());
  if (!child) throw XmlError("no memory for an element");
  return XmlElement(pointerOf(child));
}

void XmlElement::removeChild(XmlElement child) {
  if (isNull() || !nodeOf(node_).remove_child(nodeOf(child.node_)))
    throw XmlError("only a child of the element can be removed from it");
}

XmlDocument::XmlDocument() : tree_(std::make_unique<Tree>()) {}
XmlDocument::~XmlDocument() = default;

XmlElement XmlDocument::root() const {
  return XmlElement(pointerOf(tree_->document.document_element()));
}

bool XmlDocument::load(std::wstring_view path, std::wstring& reason) {
  // The declaration is dropped: `serializeUtf16Le` writes its own. Top-level text is let in to be refused.
  constexpr unsigned options = pugi::parse_default | pugi::parse_comments | pugi::parse_pi |
                               pugi::parse_doctype | pugi::parse_fragment;
  const pugi::xml_parse_result result = tree_->document.load_file(toUtf8(path).c_str(), options);
  if (!result) {
    reason = fromUtf8(result.description());
    if (result.offset > 0) reason += L" (at byte " + std::to_wstring(result.offset) + L")";
    tree_->document.reset();
    return false;
  }
  if (const char* fault = shapeFault(tree_->document)) {
    reason = fromUtf8(fault);
    tree_->document.reset();
    return false;
  }
  return true;
}

XmlElement XmlDocument::createRoot(std::wstring_view name) {
  if (tree_->document.document_element()) throw XmlError("the document has a root element already");
  const std::string bytes = toUtf8(name);
  requireName(bytes);
  const pugi::xml_node root = tree_->document.append_child(bytes.c_str());
  if (!root) throw XmlError("no memory for an element");
  return XmlElement(pointerOf(root));
}

std::string XmlDocument::serializeUtf16Le(std::wstring_view declarationData) const {
  std::wstring declaration = L"<?xml ";
  declaration += declarationData;
  declaration += L"?>\r\n";
  std::string bytes = toUtf16Le(declaration);
  BytesWriter writer(bytes);
  tree_->document.save(writer, "", pugi::format_raw | pugi::format_no_declaration, pugi::encoding_utf16_le);
  return bytes;
}

} // namespace brenvolt
