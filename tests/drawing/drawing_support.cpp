#include "drawing_support.h"

#include "text/encoding.h"
#include "text/numbers.h"

namespace brenvolt::test {

std::wstring describe(const ZanAnnotationData& row) {
  std::wstring text = row.name + L"[";
  for (const ZanAnnotationField& field : row.fields) {
    if (text.back() != L'[') text += L';';
    if (field.hidden) text += L'!';
    text += field.name + L"=" + field.value;
    if (field.type != static_cast<std::uint32_t>(kvtype::string)) text += L"#" + formatInt(field.type);
  }
  return text + L"]";
}

std::wstring describe(const ZanAnnotationDataList& list) {
  std::wstring text = L"(";
  for (const ZanAnnotationDataList::Item& item : list.items()) {
    if (text.size() > 1) text += L' ';
    text += item.row ? describe(*item.row) : describe(*item.list);
  }
  return text + L")";
}

ZanDwgMarker makeMarker(const wchar_t* code, const wchar_t* order, int level, unsigned handle) {
  ZanDwgMarker marker;
  marker.code = code;
  marker.order = order;
  marker.level = level;
  marker.handle = KvDbHandle(handle);
  return marker;
}

ZanAnnotationData makeRow(
    std::wstring_view name, std::initializer_list<std::pair<const wchar_t*, const wchar_t*>> fields) {
  ZanAnnotationData row(name);
  for (const auto& [label, value] : fields)
    row.AddText(value, label);
  return row;
}

} // namespace brenvolt::test

doctest::String doctest::StringMaker<std::wstring>::convert(const std::wstring& text) {
  return brenvolt::toUtf8(text).c_str();
}
