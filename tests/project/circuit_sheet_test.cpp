// Circuit sheets row by row, with the common mistakes of their authors.
#include "project/circuit_sheet.h"

#include "tests/support/sheets.h"
#include "text/numbers.h"

#include <doctest/doctest.h>

#include <string>

using namespace brenvolt;

namespace {

std::wstring describe(const ZanScriptRules& rules) {
  std::wstring text;
  for (const ZanScriptEntry& entry : rules) {
    text += L" " + formatInt(entry.code) + L":" + entry.text;
    for (const auto& [name, value] : entry.params)
      text.append(L"[").append(name).append(L"=").append(value).append(L"]");
  }
  return text;
}

/// "M1 Motor {Group: one=1* two=2} | -1:(a) | ..." for each record.
std::string describe(const std::map<std::wstring, ZanCodeRecord>& records) {
  std::wstring text;
  for (const auto& [code, record] : records) {
    if (!text.empty()) text += L"; ";
    text += code + L" " + record.title;
    for (const ZanOptionGroup& group : record.groups) {
      text += L" {" + group.title + L":";
      for (const ZanOption& option : group.options)
        text += L" " + option.text + L"=" + formatInt(option.value) + (option.selected ? L"*" : L"");
      text += L"}";
    }
    for (const auto* rules : {&record.firstRules, &record.secondRules, &record.controlRules})
      text += L" |" + describe(*rules);
  }
  return toUtf8(text);
}

std::string readSheet(const std::vector<const char*>& lines, std::size_t columnCount = 12) {
  CircuitSheetReader reader;
  int row = 2;
  for (const char* line : lines) {
    std::vector<std::wstring> cells = test::cellsOf(line);
    cells.resize(columnCount);
    reader.addRow(row++, cells);
  }
  return describe(reader.finish());
}

} // namespace

TEST_CASE("each cell of a circuit sheet does what its column says") {
  struct Row {
    const char* promise;
    std::vector<const char*> lines;
    const char* records;
  };
  const Row rows[] = {
      {"a record with groups, options and forms",
       {"m1|Motor|x|Start|Direct|1|1|(a)(b 2)|(c)|(d)|T|V", "||X||Wye|2|2|(e)", "|||Brake||||", "||y||None||",
        "M2|Lamp|||||| (f) "},
       "M1 Motor {Start: Direct=1* Wye=2*} {Brake: None=0} | 1:(a) 1:(b 2) 2:(e) | 1:(c) | 1:(d)[T=V]; "
       "M2 Lamp | -1:(f) | |"},
      {"a CODE without a title has no record until a title comes",
       {"M1||||||| (lost)", "|||Start|Direct|1", "|Motor|||||| (kept)"},
       "M1 Motor {Start: Direct=1} | -1:(kept) | |"},
      {"a CODE repeated on each row ends the record, and the later ones are refused",
       {"M1|Motor||Start|Direct|1", "M1|Motor|||Wye|2", "m1|Again"},
       "M1 Motor {Start: Direct=1} | | |"},
      {"an option without a group is not read", {"M1|Motor|x||Direct|1"}, "M1 Motor | | |"},
      {"default mark and value need an option's text", {"M1|Motor|x|Start||7"}, "M1 Motor {Start:} | | |"},
      {"unbalanced forms end where the last whole one does",
       {"M1|Motor||||||(a) (b (c)|(d))(e)|x (f)"},
       "M1 Motor | -1:(a) | -1:(d) | -1:x (f)"},
      {"a word behind the last form is not read", {"M1|Motor||||||(a) b"}, "M1 Motor | -1:(a) | |"},
      {"parentheses inside quotes count", {"M1|Motor||||||(a \")\") (b)"}, "M1 Motor | -1:(a \") | |"},
      {"a cell without a form is one form, trimmed", {"M1|Motor||||||  word "}, "M1 Motor | -1:word | |"},
      {"a text as option code is 0", {"M1|Motor|||||all|(a)"}, "M1 Motor | 0:(a) | |"},
      {"pairs need both cells, and go to every form of the third list",
       {"M1|Motor||||||(a)||(d)(e)|T1|A||B|T3||T4|D"},
       "M1 Motor | -1:(a) | | -1:(d)[T1=A][T4=D] -1:(e)[T1=A][T4=D]"},
      {"rows ahead of the first CODE are not read", {"|Title||||||(a)", "M1|Motor"}, "M1 Motor | | |"},
      {"a sheet of titles without a CODE holds nothing", {"|Title"}, ""},
  };
  for (const Row& row : rows) {
    CAPTURE(row.promise);
    CHECK_EQ(readSheet(row.lines, 18), row.records);
  }
}

TEST_CASE("narrow sheets have no third list, and a last column on its own makes no pair") {
  const std::vector<const char*> lines = {"M1|Motor||||||(a)|(b)|(c)|T|V"};
  CHECK_EQ(readSheet(lines, 9), "M1 Motor | -1:(a) | -1:(b) |");
  CHECK_EQ(readSheet(lines, 10), "M1 Motor | -1:(a) | -1:(b) | -1:(c)");
  CHECK_EQ(readSheet(lines, 11), "M1 Motor | -1:(a) | -1:(b) | -1:(c)");
  CHECK_EQ(readSheet(lines, 12), "M1 Motor | -1:(a) | -1:(b) | -1:(c)[T=V]");
}
