// A small document tree for the XML files of users: elements with attributes, read from a path, changed, and converted
// to bytes. Names and values are wide text; the engine is used only in the one source file.
#pragma once

#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace brenvolt {

/// An impossible change of a document: no element at the position, an invalid XML name, out of memory.
class XmlError final : public std::runtime_error {
public:
  using std::runtime_error::runtime_error;
};

/// A position in a document, or nothing. Cheap to copy; valid as long as its document lives and the element is not
/// removed. Queries on nothing return empty values, changes of nothing throw `XmlError`.
class XmlElement final {
public:
  XmlElement() = default;

  [[nodiscard]] bool isNull() const { return node_ == nullptr; }
  [[nodiscard]] std::wstring name() const;
  /// Whether the name is exactly this one.
  [[nodiscard]] bool isNamed(std::wstring_view name) const;
  [[nodiscard]] XmlElement parent() const;
  /// The direct children of this name in document order.
  [[nodiscard]] std::vector<XmlElement> children(std::wstring_view name) const;
  /// The first direct child of this name.
  [[nodiscard]] XmlElement firstChild(std::wstring_view name) const;
  /// The value of an attribute, empty when there is none.
  [[nodiscard]] std::wstring attribute(std::wstring_view name) const;
  /// Names and values in the order of the document.
  [[nodiscard]] std::vector<std::pair<std::wstring, std::wstring>> attributes() const;

  /// Sets an attribute; a new one is added after the others. `XmlError` for a value with a character that XML does not
  /// allow: another program could not read the file.
  void setAttribute(std::wstring_view name, std::wstring_view value);
  /// A new last child.
  XmlElement appendChild(std::wstring_view name);
  /// A new last child: a copy of an element, of any document, with all below it.
  XmlElement appendCopy(XmlElement element);
  /// Removes a direct child with all below it; every place in it ends.
  void removeChild(XmlElement child);

  /// The element with all below it as UTF-8 in one line; two elements are equal when their texts are.
  [[nodiscard]] std::string text() const;

  friend bool operator==(const XmlElement&, const XmlElement&) = default;

private:
  friend class XmlDocument;
  explicit XmlElement(void* node) : node_(node) {}

  void* node_ = nullptr;
};

/// Reads UTF-8 and UTF-16 with or without a byte-order mark, and what else `decodeXml` knows. White space between
/// elements is not kept: an indented file is written as one line. Comments and processing instructions stay.
class XmlDocument final {
public:
  XmlDocument();
  ~XmlDocument();
  XmlDocument(const XmlDocument&) = delete;
  XmlDocument& operator=(const XmlDocument&) = delete;

  /// The root element, or nothing in a new document.
  [[nodiscard]] XmlElement root() const;

  /// The deepest nesting of elements; a file with deeper nesting was not written by any of our programs.
  static constexpr int deepestNesting = 1000;

  /// Replaces the content by that of a file. False when the file cannot be read, holds bytes that do not fit its
  /// encoding or is not well formed; `reason` then holds a sentence, and the document is empty.
  [[nodiscard]] bool load(std::wstring_view path, std::wstring& reason);
  /// The same with the bytes of a file.
  [[nodiscard]] bool read(std::string_view bytes, std::wstring& reason);

  /// Makes the root element of a document that has none; `XmlError` when there is one already.
  XmlElement createRoot(std::wstring_view name);

  /// The whole document as UTF-16 little endian, without a byte-order mark. It begins with the processing instruction
  /// `<?xml ...?>` with the given data, on a line of its own; the rest is one line.
  [[nodiscard]] std::string serializeUtf16Le(std::wstring_view declarationData) const;

private:
  struct Tree;
  std::unique_ptr<Tree> tree_;
};

} // namespace brenvolt
