// Short ways to write records, markers and rows, and to read rows back as one line.
#pragma once

#include "drawing/annotation_rows.h"
#include "drawing/markers.h"
#include "tests/support/option_groups.h"

#include <doctest/doctest.h>

#include <initializer_list>
#include <string>

namespace brenvolt::test {

/// "Name[label=value;=3#5003;...]" of a row, nested lists in parentheses, hidden fields with "!".
[[nodiscard]] std::wstring describe(const ZanAnnotationData& row);
[[nodiscard]] std::wstring describe(const ZanAnnotationDataList& list);

[[nodiscard]] ZanDwgMarker makeMarker(
    const wchar_t* code, const wchar_t* order = L"1", int level = 1, unsigned handle = 0);

[[nodiscard]] ZanAnnotationData makeRow(
    std::wstring_view name, std::initializer_list<std::pair<const wchar_t*, const wchar_t*>> fields);

} // namespace brenvolt::test

namespace doctest {
template <>
struct StringMaker<std::wstring> {
  static String convert(const std::wstring& text);
};
} // namespace doctest
