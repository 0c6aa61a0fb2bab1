// The messages for damaged fields.
#include "simhost/drawing/json_fields.h"

#include "text/encoding.h"

#include <nlohmann/json.hpp>

#include <utility>

namespace simhost {

JsonFields::JsonFields(const Json& object, std::wstring place) : object_(object), place_(std::move(place)) {
  if (!object_.is_object()) fail(L"an object is expected");
}

void JsonFields::fail(std::wstring_view reason) const {
  throw DrawingFileError{place_ + L": " + std::wstring(reason)};
}

const Json* JsonFields::find(const char* name) {
  asked_.insert(name);
  const auto found = object_.find(name);
  return found == object_.end() ? nullptr : &*found;
}

const Json& JsonFields::get(const char* name) {
  const Json* value = find(name);
  if (value == nullptr) fail(L"the field " + brenvolt::fromUtf8(name) + L" is missing");
  return *value;
}

const Json& JsonFields::array(const char* name) {
  const Json& value = get(name);
  if (!value.is_array()) failField(name, L"a list");
  return value;
}

std::wstring JsonFields::text(const char* name) {
  return textOf(get(name), name);
}

std::wstring JsonFields::text(const char* name, std::wstring_view usual) {
  const Json* value = find(name);
  return value == nullptr ? std::wstring(usual) : textOf(*value, name);
}

double JsonFields::real(const char* name) {
  const Json& value = get(name);
  if (!value.is_number()) failField(name, L"a number");
  return value.get<double>();
}

double JsonFields::real(const char* name, double usual) {
  return find(name) == nullptr ? usual : real(name);
}

bool JsonFields::flag(const char* name, bool usual) {
  const Json* value = find(name);
  if (value == nullptr) return usual;
  if (!value->is_boolean()) failField(name, L"true or false");
  return value->get<bool>();
}

KvPoint3d JsonFields::point(const char* name) {
  return pointOf(get(name), name);
}

KvPoint3d JsonFields::pointOf(const Json& value, const char* name) const {
  const bool isPoint = value.is_array() && (value.size() == 2 || value.size() == 3);
  if (!isPoint) failField(name, L"a point of two or three numbers");
  for (const Json& number : value) {
    if (!number.is_number()) failField(name, L"a point of two or three numbers");
  }
  KvPoint3d point{value[0].get<double>(), value[1].get<double>(), 0.0};
  if (value.size() == 3) point.z = value[2].get<double>();
  return point;
}

std::wstring JsonFields::textOf(const Json& value, const char* name) const {
  if (!value.is_string()) failField(name, L"a text");
  return brenvolt::fromUtf8(value.get_ref<const std::string&>());
}

void JsonFields::finish() const {
  for (const auto& [name, value] : object_.items()) {
    if (asked_.find(name) == asked_.end()) fail(L"the field " + brenvolt::fromUtf8(name) + L" is unknown");
  }
}

void JsonFields::failField(const char* name, std::wstring_view expectation) const {
  fail(L"the field " + brenvolt::fromUtf8(name) + L" must be " + std::wstring(expectation));
}

} // namespace simhost
