// The document tree over pugixml. Its UTF-8 build is the packaged one, so texts are converted at each call.
#include "platform/xml_document.h"

#include "platform/file_read.h"
#include "platform/xml_encoding.h"
#include "text/encoding.h"

#include <pugixml.hpp>

#include <algorithm>

namespace brenvolt {

struct XmlDocument::Tree {
  pugi::xml_document document;
  std::size_t bytesRead = 0;
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

/// The engine writes any name unchanged, and such a file could not be read again.
void requireName(const std::string& name) {
  const bool valid =
      !name.empty() && isNameStart(name.front()) && std::all_of(name.begin(), name.end(), [](char character) {
        return isNameStart(character) || (character >= '0' && character <= '9') || character == '-' ||
               character == '.';
      });
  if (!valid) throw XmlError("\"" + name + "\" is not a name of an XML element or attribute");
}

bool isElement(const pugi::xml_node& node) {
  return node.type() == pugi::node_element;
}

/// Faults that the engine accepts: text outside the root, no root, or several.
const char* shapeFault(const pugi::xml_document& document) {
  std::size_t roots = 0;
  for (const pugi::xml_node& node : document) {
    if (isElement(node)) ++roots;
    if (node.type() == pugi::node_pcdata || node.type() == pugi::node_cdata)
      return "There is text outside of the root element.";
  }
  if (roots == 0) return "The root element is missing.";
  if (roots > 1) return "There is more than one root element.";
  return nullptr;
}

/// The engine removes and copies elements by calling itself, once for each level.
bool isNestedDeeper(const pugi::xml_document& document, int levels) {
  int level = 0;
  for (pugi::xml_node node = document.first_child(); node; node = node.next_sibling()) {
    while (node.first_child()) {
      if (++level > levels) return true;
      node = node.first_child();
    }
    for (; !node.next_sibling(); --level) {
      node = node.parent();
      if (node == document) return false;
    }
  }
  return false;
}

/// Tab, line feed and carriage return are the only control characters that XML has.
void requireCharacters(std::wstring_view name, std::wstring_view value) {
  const auto place = std::find_if(value.begin(), value.end(), [](wchar_t c) {
    return (c < 0x20 && c != L'\t' && c != L'\n' && c != L'\r') || c == 0xFFFE || c == 0xFFFF;
  });
  if (place == value.end()) return;
  throw XmlError(
      toUtf8(name) + ": character " + std::to_string(place - value.begin() + 1) +
      " is a control character (code " + std::to_string(static_cast<long>(*place)) +
      "), which the file cannot contain");
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
  requireCharacters(name, value);
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

XmlElement XmlElement::appendCopy(XmlElement element) {
  if (isNull() || element.isNull()) throw XmlError("a copy needs an element and a parent");
  const pugi::xml_node child = nodeOf(node_).append_copy(nodeOf(element.node_));
  if (!child) throw XmlError("no memory for an element");
  return XmlElement(pointerOf(child));
}

std::string XmlElement::text() const {
  std::string bytes;
  BytesWriter writer(bytes);
  nodeOf(node_).print(writer, "", pugi::format_raw, pugi::encoding_utf8);
  return bytes;
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
  const FileContent file = readWholeFile(path);
  if (file.isRead()) return read(file.bytes, reason);
  reason = file.fault;
  tree_->document.reset();
  return false;
}

bool XmlDocument::read(std::string_view bytes, std::wstring& reason) {
  const auto refuse = [&](std::wstring why) {
    reason = std::move(why);
    tree_->document.reset();
    return false;
  };
  tree_->bytesRead = bytes.size();
  const XmlText text = decodeXml(bytes);
  if (text.fault) return refuse(*text.fault);
  // The declaration is dropped: `serializeUtf16Le` writes its own. Top-level text is accepted here and refused later.
  // White space in values is kept: the engine writes a tab unchanged, and would read it as a blank.
  constexpr unsigned options = (pugi::parse_default & ~pugi::parse_wconv_attribute) | pugi::parse_comments |
                               pugi::parse_pi | pugi::parse_doctype | pugi::parse_fragment;
  const pugi::xml_parse_result result =
      tree_->document.load_buffer(text.utf8.data(), text.utf8.size(), options, pugi::encoding_utf8);
  if (!result) {
    std::wstring why = fromUtf8(result.description());
    if (result.offset > 0) why += L" (at character " + std::to_wstring(result.offset) + L")";
    return refuse(std::move(why));
  }
  if (const char* fault = shapeFault(tree_->document)) return refuse(fromUtf8(fault));
  if (isNestedDeeper(tree_->document, deepestNesting))
    return refuse(L"Elements are nested deeper than " + std::to_wstring(deepestNesting) + L" levels.");
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
  constexpr std::size_t change = 4096; // most changes make little difference to the length
  bytes.reserve(tree_->bytesRead + change);
  BytesWriter writer(bytes);
  tree_->document.save(writer, "", pugi::format_raw | pugi::format_no_declaration, pugi::encoding_utf16_le);
  return bytes;
}

} // namespace brenvolt
