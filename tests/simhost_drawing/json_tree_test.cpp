#include "simhost/json/json_text.h"
#include "simhost/json/json_tree.h"

#include <doctest/doctest.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <cstddef>
#include <string>

using namespace simhost;
using Json = nlohmann::ordered_json;

namespace {

Json valueOf(const JsonNode& node) {
  Json value;
  if (node.kind == JsonNode::Kind::boolean) value = node.isTrue;
  if (node.isNumber()) value = node.number;
  if (node.kind == JsonNode::Kind::text) value = std::string(node.text);
  if (node.kind == JsonNode::Kind::list) value = Json::array();
  if (node.kind == JsonNode::Kind::object) value = Json::object();
  std::size_t count = 0;
  for (const JsonNode* item = node.first; item != nullptr; item = item->next, ++count)
    if (value.is_array())
      value.push_back(valueOf(*item));
    else
      value[std::string(item->key)] = valueOf(*item);
  CHECK(node.count == count);
  return value;
}

/// Whole numbers and others are distinguished as the library does it.
bool hasKindOf(const JsonNode& node, const Json& value) {
  return (node.kind == JsonNode::Kind::integer) == value.is_number_integer() &&
         (node.kind == JsonNode::Kind::real) == value.is_number_float();
}

} // namespace

TEST_CASE("the tree accepts what the library accepts, with the same values, also of damaged texts") {
  const std::string texts[] = {
      "{\"a\": [1, -2.5e3, 0.1, {\"b\": \"\\u00e4\\n\\ud83d\\ude00 \u00e4 \\/\"}], \"c\": true, \"d\": null}",
      "\xEF\xBB\xBF[]",
      "{\"a\":1,\"b\":2,\"a\":{\"a\":3}}",
      "[18446744073709551615,18446744073709551616,-9223372036854775808,-0,-0.0,1e-400,1e400]",
      "[01]",
      "[1.]",
      "[.5]",
      "[+1]",
      "[-]",
      "[1e]",
      "[1,]",
      "[,1]",
      "{\"a\"}",
      "{\"a\":}",
      "{1:2}",
      "[1 2]",
      "\"\\ud800\"",
      "\"\\x\"",
      "\"\xC3\x28\"",
      "\"\t\"",
      "tru",
      "",
      " ",
      "[]]",
      "\"a",
      "\"a\\",
      std::string(100'000, '['),
      std::string(50'000, '[') + std::string(50'000, ']')};
  for (const std::string& text : texts)
    for (std::size_t place = 0; place <= std::min<std::size_t>(text.size(), 90); ++place) {
      std::string changed = text;
      if (place != 0) changed[place - 1] = static_cast<char>(changed[place - 1] ^ 0x0C);
      CAPTURE(changed.substr(0, 120));
      bool isAccepted = true;
      Json known;
      try {
        known = parseJson(changed);
      } catch (const Json::exception&) {
        isAccepted = false;
      }
      try {
        const JsonTree tree(changed);
        REQUIRE(isAccepted);
        CHECK(hasKindOf(tree.root(), known));
        using Unordered = nlohmann::json; // of a repeated key the place is not compared
        if (text.size() < 1000) CHECK(Unordered(valueOf(tree.root())) == Unordered(known));
      } catch (const Json::exception&) {
        CHECK_FALSE(isAccepted);
      }
    }
}
