// The messages for damaged fields.
#include "simhost/drawing/json_fields.h"

#include "text/encoding.h"
#include "text/numbers.h"

namespace simhost {

using Kind = JsonNode::Kind;

std::wstring JsonPlace::text() const {
  std::wstring place = in == nullptr ? std::wstring() : in->text() + L", ";
  place += word;
  if (!name.empty()) return place + L" \"" + std::wstring(name) + L'"';
  if (!handle.isNull()) return place + L' ' + formatHandle(handle);
  return number == 0 ? place : place + L' ' + brenvolt::formatInt(number);
}

JsonFields::JsonFields(const JsonNode& object, JsonPlace place)
    : object_(object), place_(place), next_{object.first} {
  if (object_.kind != Kind::object) fail(L"an object is expected");
}

void JsonFields::fail(std::wstring_view reason) const {
  throw DrawingFileError{place_.text() + L": " + std::wstring(reason)};
}

const JsonNode* JsonFields::find(std::string_view name) {
  // Fields are mostly asked for in the order of the file: from the last one on, then from the start to it.
  const auto search = [&](Field field, const JsonNode* end) -> const JsonNode* {
    for (; field.item != end; field = field.next()) {
      if (field.item->key != name) continue;
      asked_ |= field.bit;
      next_ = field.next();
      return field.item;
    }
    return nullptr;
  };
  const Field start = next_;
  const JsonNode* const later = search(start, nullptr);
  return later != nullptr ? later : search({object_.first}, start.item);
}

const JsonNode& JsonFields::get(std::string_view name) {
  const JsonNode* value = find(name);
  if (value == nullptr) fail(L"the field " + brenvolt::fromUtf8(name) + L" is missing");
  return *value;
}

const JsonNode& JsonFields::array(std::string_view name) {
  const JsonNode& value = get(name);
  if (value.kind != Kind::list) failField(name, L"a list");
  return value;
}

std::wstring JsonFields::text(std::string_view name) {
  return textOf(get(name), name);
}

std::wstring JsonFields::text(std::string_view name, std::wstring_view usual) {
  const JsonNode* value = find(name);
  return value == nullptr ? std::wstring(usual) : textOf(*value, name);
}

double JsonFields::real(std::string_view name) {
  const JsonNode& value = get(name);
  if (!value.isNumber()) failField(name, L"a number");
  return value.number;
}

double JsonFields::real(std::string_view name, double usual) {
  return find(name) == nullptr ? usual : real(name);
}

bool JsonFields::flag(std::string_view name, bool usual) {
  const JsonNode* value = find(name);
  if (value == nullptr) return usual;
  if (value->kind != Kind::boolean) failField(name, L"true or false");
  return value->isTrue;
}

KvPoint3d JsonFields::point(std::string_view name) {
  return pointOf(get(name), name);
}

KvPoint3d JsonFields::pointOf(const JsonNode& value, std::string_view name) const {
  double numbers[3] = {};
  bool isPoint = value.kind == Kind::list && (value.count == 2 || value.count == 3);
  double* number = numbers;
  for (const JsonNode* item = value.first; isPoint && item != nullptr; item = item->next) {
    isPoint = item->isNumber();
    *number++ = item->number;
  }
  if (!isPoint) failField(name, L"a point of two or three numbers");
  return {numbers[0], numbers[1], numbers[2]};
}

std::wstring JsonFields::textOf(const JsonNode& value, std::string_view name) const {
  if (value.kind != Kind::text) failField(name, L"a text");
  return brenvolt::fromUtf8(value.text);
}

void JsonFields::finish() const {
  // No object of a drawing has as many fields as there are bits: what comes after them is unknown.
  for (Field field{object_.first}; field.item != nullptr; field = field.next())
    if ((asked_ & field.bit) == 0) fail(L"the field " + brenvolt::fromUtf8(field.item->key) + L" is unknown");
}

void JsonFields::failField(std::string_view name, std::wstring_view expectation) const {
  fail(L"the field " + brenvolt::fromUtf8(name) + L" must be " + std::wstring(expectation));
}

} // namespace simhost
