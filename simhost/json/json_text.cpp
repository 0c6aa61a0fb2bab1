// The one unit that holds the library's parser and printer.
#include "simhost/json/json_text.h"

#include <nlohmann/json.hpp>

namespace simhost {

using Json = nlohmann::ordered_json;

Json parseJson(std::string_view text) {
  return Json::parse(text);
}

Json tryParseJson(std::string_view text) {
  return Json::parse(text, nullptr, false);
}

std::string jsonText(const Json& value, int indent) {
  return value.dump(indent, ' ', false, Json::error_handler_t::replace);
}

} // namespace simhost
