// A JSON text as a tree of its parts, for files that are read often and whole: drawings. The tree refers to the text, so
// reading a number or a name copies nothing.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>
#include <string_view>

namespace simhost {

struct JsonNode {
  enum class Kind : std::uint8_t { null, boolean, integer, real, text, list, object };

  Kind kind = Kind::null;
  bool isTrue = false;   ///< of a boolean
  double number = 0.0;   ///< of an integer or a real
  std::string_view text; ///< of a text, without escapes, valid UTF-8
  std::string_view key;  ///< in the object that contains it
  std::size_t count = 0; ///< of the items of a list or an object
  const JsonNode* first = nullptr;
  const JsonNode* next = nullptr; ///< the following item of the same list or object

  [[nodiscard]] bool isNumber() const { return kind == Kind::integer || kind == Kind::real; }
  /// The item of an object; null when it has none of this name.
  [[nodiscard]] const JsonNode* find(std::string_view name) const;
};

class JsonTree final {
public:
  /// Throws as `parseJson` does. The text must outlive the tree.
  explicit JsonTree(std::string_view text);
  JsonTree(const JsonTree&) = delete;
  JsonTree& operator=(const JsonTree&) = delete;

  [[nodiscard]] const JsonNode& root() const { return nodes_.front(); }

private:
  class Parser;

  std::deque<JsonNode> nodes_;
  std::deque<std::string> texts_; ///< those that are not in the text as they are
};

} // namespace simhost
