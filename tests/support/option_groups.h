// A short way to write option groups.
#pragma once

#include "project/code_record.h"

#include <initializer_list>

namespace brenvolt::test {

struct OptionRow {
  const wchar_t* text;
  int value;
  bool selected;
};

[[nodiscard]] inline ZanOptionGroup makeGroup(
    const wchar_t* title, std::initializer_list<OptionRow> options) {
  ZanOptionGroup group;
  group.title = title;
  for (const OptionRow& option : options)
    group.options.push_back({option.text, option.value, option.selected});
  return group;
}

} // namespace brenvolt::test
