// Node by node through the raw chain: the readers of the bridge are under test here, so they are not used.
#include "tests/support/chain_text.h"

#include "host/host_api_lisp.h"
#include "text/assertion.h"
#include "text/encoding.h"
#include "text/numbers.h"
#include "text/split.h"

namespace brenvolt::test {

namespace {

KvResultBuffer* newNode(int type) {
  KvResultBuffer* node = kvutNewRb(type);
  BRENVOLT_ASSERT(node != nullptr, "a test chain holds an unknown type");
  return node;
}

KvResultBuffer* textNode(int type, std::wstring_view quoted) {
  KvResultBuffer* node = newNode(type);
  node->value.string = kvutNewString(std::wstring(quoted.substr(1, quoted.size() - 2)).c_str());
  return node;
}

KvResultBuffer* pointNode(std::wstring_view word) {
  const auto parts = splitKeepingEmpty(word.substr(1, word.size() - 2), L',');
  KvResultBuffer* node = newNode(parts.size() == 2 ? kvtype::point2d : kvtype::point3d);
  for (std::size_t axis = 0; axis < parts.size() && axis < 3; ++axis)
    node->value.point[axis] = toDouble(parts[axis]);
  return node;
}

KvResultBuffer* groupNode(std::wstring_view code, std::wstring_view value) {
  const int type = toInt(code);
  if (!value.empty() && value.front() == L'"') return textNode(type, value);
  KvResultBuffer* node = newNode(type);
  if (type == 290) {
    node->value.shortInteger = static_cast<std::int16_t>(toInt(value));
  } else {
    node->value.longInteger = toInt(value);
  }
  return node;
}

KvResultBuffer* nodeOf(std::wstring_view word) {
  if (word == L"(") return newNode(kvtype::listBegin);
  if (word == L")") return newNode(kvtype::listEnd);
  if (word == L"nil") return newNode(kvtype::nil);
  if (word == L"T") return newNode(kvtype::t);
  if (word.front() == L'"') return textNode(kvtype::string, word);
  if (word.front() == L'<') return pointNode(word);
  if (word.front() == L'#') {
    KvResultBuffer* node = newNode(kvtype::entityName);
    node->value.entityName.value = static_cast<std::uint64_t>(toInt(word.substr(1)));
    return node;
  }
  if (const auto colon = word.find(L':'); colon != std::wstring_view::npos) {
    return groupNode(word.substr(0, colon), word.substr(colon + 1));
  }
  if (word.find(L'.') != std::wstring_view::npos) {
    KvResultBuffer* node = newNode(kvtype::real);
    node->value.real = toDouble(word);
    return node;
  }
  if (word.back() == L'L') {
    KvResultBuffer* node = newNode(kvtype::longInteger);
    node->value.longInteger = toInt(word);
    return node;
  }
  KvResultBuffer* node = newNode(kvtype::shortInteger);
  node->value.shortInteger = static_cast<std::int16_t>(toInt(word));
  return node;
}

/// The end of the word at `start`; blanks inside quotes belong to it.
std::size_t wordEnd(std::wstring_view text, std::size_t start) {
  bool isQuoted = false;
  std::size_t end = start;
  for (; end < text.size() && (isQuoted || !isBlank(text[end])); ++end) {
    if (text[end] == L'"') isQuoted = !isQuoted;
  }
  return end;
}

std::wstring quoted(const wchar_t* text) {
  return L'"' + std::wstring(text == nullptr ? L"" : text) + L'"';
}

std::wstring realText(double value) {
  std::wstring text = formatShortest(value);
  return text.find(L'.') == std::wstring::npos ? text + L".0" : text;
}

std::wstring wordOf(const KvResultBuffer& node) {
  const auto& value = node.value;
  const auto axis = [&](int index) { return formatShortest(value.point[index]); };
  switch (node.type) {
  case kvtype::listBegin:
    return L"(";
  case kvtype::listEnd:
    return L")";
  case kvtype::nil:
    return L"nil";
  case kvtype::t:
    return L"T";
  case kvtype::string:
    return quoted(value.string);
  case kvtype::real:
    return realText(value.real);
  case kvtype::shortInteger:
    return formatInt(value.shortInteger);
  case kvtype::longInteger:
    return formatInt(value.longInteger) + L"L";
  case kvtype::point2d:
    return L"<" + axis(0) + L"," + axis(1) + L">";
  case kvtype::point3d:
    return L"<" + axis(0) + L"," + axis(1) + L"," + axis(2) + L">";
  case kvtype::entityName:
    return L"#" + formatInt(static_cast<std::int64_t>(value.entityName.value));
  case 90:
    return L"90:" + formatInt(value.longInteger);
  case 290:
    return L"290:" + formatInt(value.shortInteger);
  default:
    return formatInt(node.type) + L":" + quoted(value.string);
  }
}

} // namespace

ResultList chainOf(std::string_view text) {
  const std::wstring wide = fromUtf8(text);
  ResultList first;
  KvResultBuffer* last = nullptr;
  for (std::size_t position = 0; position < wide.size();) {
    if (isBlank(wide[position])) {
      ++position;
      continue;
    }
    const std::size_t end = wordEnd(wide, position);
    KvResultBuffer* node = nodeOf(std::wstring_view(wide).substr(position, end - position));
    if (last == nullptr) {
      first = ResultList(node);
    } else {
      last->next = node;
    }
    last = node;
    position = end;
  }
  return first;
}

std::string textOf(const ResultList& list) {
  std::wstring text;
  for (const KvResultBuffer* node = list.get(); node != nullptr; node = node->next) {
    if (!text.empty()) text += L' ';
    text += wordOf(*node);
  }
  return toUtf8(text);
}

} // namespace brenvolt::test
