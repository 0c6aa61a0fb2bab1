// One pass over the text. Escapes and errors are left to the library: it knows the details and names the byte.
#include "simhost/json/json_tree.h"

#include "simhost/json/json_text.h"
#include "text/encoding.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <map>
#include <system_error>
#include <vector>

namespace simhost {

using Kind = JsonNode::Kind;

const JsonNode* JsonNode::find(std::string_view name) const {
  for (const JsonNode* item = first; item != nullptr; item = item->next)
    if (item->key == name) return item;
  return nullptr;
}

/// Without recursion: how deep a file is nested is up to its writer.
class JsonTree::Parser final {
public:
  Parser(JsonTree& tree, std::string_view text)
      : tree_(tree), at_(text.data()), end_(text.data() + text.size()) {}

  /// False for what is not JSON.
  bool read() {
    if (std::string_view(at_, end_).starts_with(byteOrderMark)) at_ += byteOrderMark.size();
    if (!readValue({})) return false;
    while (!open_.empty()) {
      JsonNode& parent = *open_.back().node;
      const bool isObject = parent.kind == Kind::object;
      if (take(isObject ? '}' : ']')) {
        if (isObject) dropRepeatedKeys(parent);
        open_.pop_back();
        continue;
      }
      if (parent.count != 0 && !take(',')) return false;
      std::string_view key;
      if (isObject && (!take('"') || !readText(key) || !take(':'))) return false;
      if (!readValue(key)) return false;
    }
    skipBlanks();
    return at_ == end_;
  }

private:
  static constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";

  struct Open {
    JsonNode* node;
    JsonNode* last;
  };

  void skipBlanks() {
    while (at_ != end_ && (*at_ == ' ' || *at_ == '\n' || *at_ == '\r' || *at_ == '\t'))
      ++at_;
  }
  bool take(char expected) {
    skipBlanks();
    if (at_ == end_ || *at_ != expected) return false;
    ++at_;
    return true;
  }
  bool takeWord(std::string_view word) {
    if (!std::string_view(at_, end_).starts_with(word)) return false;
    at_ += word.size();
    return true;
  }

  bool readValue(std::string_view key) {
    skipBlanks();
    if (at_ == end_) return false;
    JsonNode& node = tree_.nodes_.emplace_back();
    node.key = key;
    if (!open_.empty()) {
      Open& parent = open_.back();
      (parent.last == nullptr ? parent.node->first : parent.last->next) = &node;
      parent.last = &node;
      ++parent.node->count;
    }
    switch (*at_) {
    case '{':
    case '[':
      node.kind = *at_++ == '{' ? Kind::object : Kind::list;
      open_.push_back({&node, nullptr});
      return true;
    case '"':
      ++at_;
      node.kind = Kind::text;
      return readText(node.text);
    case 't':
      node.kind = Kind::boolean;
      node.isTrue = true;
      return takeWord("true");
    case 'f':
      node.kind = Kind::boolean;
      return takeWord("false");
    case 'n':
      return takeWord("null");
    default:
      return readNumber(node);
    }
  }

  static bool isDigit(char character) { return character >= '0' && character <= '9'; }
  const char* skipDigits(const char* at) const { return std::find_if_not(at, end_, isDigit); }

  bool readNumber(JsonNode& node) {
    const char* const whole = at_ + (*at_ == '-' ? 1 : 0);
    const char* digits = skipDigits(whole);
    if (digits == whole || (*whole == '0' && digits != whole + 1)) return false;
    node.kind = Kind::integer;
    const auto takeDigits = [&](const char* from) {
      node.kind = Kind::real;
      digits = skipDigits(from);
      return digits != from;
    };
    if (digits != end_ && *digits == '.' && !takeDigits(digits + 1)) return false;
    if (digits != end_ && (*digits == 'e' || *digits == 'E')) {
      const bool hasSign = digits + 1 != end_ && (digits[1] == '+' || digits[1] == '-');
      if (!takeDigits(digits + (hasSign ? 2 : 1))) return false;
    }
    const auto [stop, error] = std::from_chars(at_, digits, node.number);
    // Out of range are the tiny ones too, and those have a value: the library knows it, whatever the locale is.
    if (error != std::errc()) {
      const nlohmann::ordered_json value = tryParseJson({at_, digits});
      if (!value.is_number()) return false;
      node.number = value.get<double>();
    }
    at_ = digits;
    constexpr double integersBelow = 18446744073709551616.0; // 64 bits
    if (std::abs(node.number) >= integersBelow) node.kind = Kind::real;
    if (node.kind == Kind::integer && node.number == 0.0) node.number = 0.0; // without a sign
    return std::isfinite(node.number);
  }

  /// ASCII that is a text as it is.
  static bool isPlainByte(char character) {
    return static_cast<signed char>(character) >= ' ' && character != '"' && character != '\\';
  }

  /// From after the opening quote to after the closing one.
  bool readText(std::string_view& text) {
    const char* const start = at_;
    at_ = std::find_if_not(at_, end_, isPlainByte);
    bool isPlain = true;
    bool hasEscapes = false;
    for (; at_ != end_ && *at_ != '"'; ++at_) {
      const auto byte = static_cast<unsigned char>(*at_);
      if (byte < 0x20) return false;
      isPlain = isPlain && byte < 0x80;
      if (byte != '\\') continue;
      hasEscapes = true;
      if (++at_ == end_) return false;
    }
    if (at_ == end_) return false;
    text = {start, at_++};
    if (!isPlain && !brenvolt::fromUtf8Strict(text)) return false;
    return !hasEscapes || unescape(text, {start - 1, at_});
  }

  bool unescape(std::string_view& text, std::string_view quoted) {
    const nlohmann::ordered_json value = tryParseJson(quoted);
    if (!value.is_string()) return false;
    text = tree_.texts_.emplace_back(value.get_ref<const std::string&>());
    return true;
  }

  bool hasRepeatedKeys(const JsonNode& object) {
    constexpr std::size_t few = 16; // keys, for which comparing all with all is quicker than sorting
    if (object.count <= few) {
      for (const JsonNode* item = object.first; item != nullptr; item = item->next)
        for (const JsonNode* other = item->next; other != nullptr; other = other->next)
          if (item->key == other->key) return true;
      return false;
    }
    keys_.clear();
    for (const JsonNode* item = object.first; item != nullptr; item = item->next)
      keys_.push_back(item->key);
    std::sort(keys_.begin(), keys_.end());
    return std::adjacent_find(keys_.begin(), keys_.end()) != keys_.end();
  }

  /// Of two values for one key the later one holds.
  void dropRepeatedKeys(JsonNode& object) {
    if (!hasRepeatedKeys(object)) return;
    std::map<std::string_view, const JsonNode*> values;
    for (const JsonNode* item = object.first; item != nullptr; item = item->next)
      values[item->key] = item;
    object.count = values.size();
    JsonNode* last = nullptr;
    for (const JsonNode* item = object.first; item != nullptr; item = item->next) {
      if (values.at(item->key) != item) continue;
      JsonNode& kept = tree_.nodes_.emplace_back(*item);
      kept.next = nullptr;
      (last == nullptr ? object.first : last->next) = &kept;
      last = &kept;
    }
  }

  JsonTree& tree_;
  const char* at_;
  const char* end_;
  std::vector<Open> open_;
  std::vector<std::string_view> keys_;
};

JsonTree::JsonTree(std::string_view text) {
  if (Parser(*this, text).read()) return;
  static_cast<void>(parseJson(text)); // throws
  nodes_.assign(1, JsonNode());
}

} // namespace simhost
