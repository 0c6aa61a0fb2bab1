// Motor lists as they come: each row is a list and what is understood of it.
#include "circuits/set/conductor_sizes.h"
#include "circuits/set/set_list.h"
#include "circuits/set/sheet_maker.h"
#include "circuits/set/type_rules.h"
#include "simhost/host/errors.h"
#include "tests/support/golden.h"
#include "tests/support/temporary_folder.h"

#include <doctest/doctest.h>

#include <algorithm>
#include <string>

using namespace circuits;
using simhost::Box;

namespace {

struct ListFile {
  explicit ListFile(const std::string& bytes) { brenvolt::test::writeBytes(path(), bytes); }
  [[nodiscard]] std::string path() const { return (folder / "l.csv").string(); }

  brenvolt::test::TemporaryFolder folder;
};

/// Tag, load and description of each row, then the faults, without the file's folder.
std::string understood(
    const std::string& bytes, const ColumnAliases& aliases = {}, const std::vector<TypeRule>& rules = {}) {
  const ListFile file(bytes);
  std::string text;
  try {
    const SetList list = readSetList(file.path(), aliases, rules);
    const auto narrow = [](const std::wstring& wide) {
      std::string all;
      for (const wchar_t character : wide)
        all += character < 128 ? static_cast<char>(character) : '#';
      return all;
    };
    for (const SetRow& row : list.rows) {
      text += narrow(row[SetField::tag] + L" " + row[SetField::load] + L" " + row[SetField::description1]);
      for (const auto& [code, cell] : row.codes)
        text += " " + narrow(code + L"=" + cell);
      text += "\n";
    }
    for (const SetFault& fault : list.faults) {
      const std::string whole = faultText(list, fault);
      text += whole.substr(whole.find("l.csv")) + "\n";
    }
  } catch (const simhost::BadInput& error) {
    const std::string whole = error.what();
    text = whole.substr(whole.find("l.csv"));
  }
  return text;
}

} // namespace

TEST_CASE("lists are understood where they can be, and every bad cell is reported with row and column") {
  struct Row {
    const char* bytes;
    const char* expected;
  };
  const Row rows[] = {
      {"# mine\ntag,circuit,type,load,description1,disc\n\nP-1,c,t,7.50,\"a, \"\"b\"\"\",\"20,1\"\n",
       "P-1 7.5 a, \"b\" DISC=20,1\n"},
      {"Description1;LOAD;tag;type;circuit\r\nPumpe;7,5;P-1;t;c\r\n", "P-1 7.5 Pumpe\n"},
      {"tag\tcircuit\ttype\tload\nP-1\tc\tt\t10\n", "P-1 10 \n"},
      {"\xEF\xBB\xBFtag,circuit,type\nP-1,c,t\n", "P-1  \n"},
      {"tag,circuit,type,description1\nP-1,c,t,K\xFChler\n", "P-1  K#hler\n"}, // not UTF-8
      {"tag;circuit;type;load\nP-1;c;t;1,000\nP-2;c;t;1.000,5\nP-3;c;t;1e3\nP-4;c;t;-1\n",
       "P-1  \nP-2  \nP-3  \nP-4  \n"
       "l.csv, row 2, column load: \"1,000\" is not a plain number\n"
       "l.csv, row 3, column load: \"1.000,5\" is not a plain number\n"
       "l.csv, row 4, column load: \"1e3\" is not a plain number\n"
       "l.csv, row 5, column load: \"-1\" is not a plain number\n"},
      {"tag,circuit,type\nP-1,c,t\np-1,c,t\n,c,t\nA/B,c,t\nP-2,c,t,x\n",
       "P-1  \np-1  \n  \nA/B  \n"
       "l.csv, row 3, column tag: \"p-1\" is the tag of row 2 too\n"
       "l.csv, row 4, column tag: is missing\n"
       "l.csv, row 5, column tag: \"A/B\" holds a character that a tag cannot have\n"
       "l.csv, row 6: has more cells than the header has columns\n"},
      {"tag,type,TAG\nP-1,t,x\n", "x  \nl.csv, row 1, column TAG: a column of this meaning is there twice\n"
                                  "l.csv, row 1, column circuit: the list has no such column\n"},
      {"tag,circuit,type\n", "l.csv: holds no row below its header"},
      {"tag,circuit,type\nP-1,\"c,t\n", "l.csv, row 2: a quote is never closed"},
  };
  for (const Row& row : rows) {
    CAPTURE(row.bytes);
    CHECK(understood(row.bytes) == row.expected);
  }
  CHECK(
      understood(
          "Kennzeichen,Stromkreis,type\nP-1,c,t\n",
          {{L"KENNZEICHEN", L"tag"}, {L"Stromkreis", L"circuit"}}) == "P-1  \n");
}

TEST_CASE(
    "rules give rows without a type that of the first rule that fits, and a wrong rule names its fault") {
  std::vector<TypeRule> rules;
  std::wstring fault;
  for (const wchar_t* text :
       {L"kind = heater -> Power feeds / Three-phase", L"hp <= 10 and phase = 3 -> Direct on line",
        L"hp>10 -> Star-delta", L"kw >= 5.5 -> Soft / starter"})
    rules.push_back(TypeRule::parse(text, fault).value());
  const ListFile file(
      "tag,circuit,type,kind,load,units,phase\nA,m,,,10,HP,3\nB,m,,,10.5,hp,3\nC,m,,,10,HP,1\n"
      "D,,,Heater,15,kW,3\nE,m,,,5.5,KW,3\nF,m,own,,1,HP,3\nG,m,,,5,kW,3\n");
  const SetList list = readSetList(file.path(), {}, rules);
  std::wstring types;
  for (const SetRow& row : list.rows)
    types += row[SetField::circuit] + L":" + row[SetField::type] + L"\n";
  CHECK((types == L"m:Direct on line\nm:Star-delta\nm:\nPower feeds:Three-phase\nm:starter\nm:own\nm:\n"));
  REQUIRE(list.faults.size() == 2);
  CHECK(list.faults.front().row == 4);
  for (const auto& [text, reason] :
       {std::pair{L"hp 10 -> x", L"\"hp 10\" has none of the signs < <= > >= ="},
        std::pair{L"hp < ten -> x", L"\"ten\" is not a plain number"},
        std::pair{L"kind < 3 -> x", L"\"kind\" is a text and has no size"},
        std::pair{L"power < 3 -> x", L"the list has no column \"power\""},
        std::pair{L"hp < 3", L"there is no \"->\" before the type"},
        std::pair{L"hp < 3 ->", L"no type follows \"->\""}}) {
    CHECK_FALSE(TypeRule::parse(text, fault));
    CHECK((fault == reason));
  }
}

TEST_CASE("a size of a list is one of the tables, however it is written, or its neighbours are named") {
  const std::vector<std::wstring> awg = {L"14 AWG",  L"12 AWG",  L"1 AWG",
                                         L"1/0 AWG", L"4/0 AWG", L"250 KCMIL"};
  const std::vector<std::wstring> metric = {L"1.5 mm2", L"2.5 mm2", L"4 mm2", L"10 mm2"};
  const struct {
    const std::vector<std::wstring>& sizes;
    const wchar_t* text;
    const wchar_t* meant; ///< or what is said of it
  } rows[] = {
      {awg, L"12 AWG", L"12 AWG"},
      {awg, L" 12awg", L"12 AWG"},
      {awg, L"12", L"12 AWG"},
      {awg, L"1/0", L"1/0 AWG"},
      {awg, L"250 kcmil", L"250 KCMIL"},
      {awg, L"250", L"250 KCMIL"},
      {awg, L"250 AWG", L"its neighbours are 14 AWG"},
      {awg, L"1,000", L"its neighbours are 250 KCMIL"},
      {awg, L"13", L"its neighbours are 14 AWG and 12 AWG"},
      {awg, L"3/0", L"its neighbours are 1/0 AWG and 4/0 AWG"},
      {awg, L"230 kcmil", L"its neighbours are 4/0 AWG and 250 KCMIL"},
      {awg, L"4 mm2", L"its neighbours are 12 AWG and 1 AWG"},
      {metric, L"2,5", L"2.5 mm2"},
      {metric, L"4.0 mm\u00b2", L"4 mm2"},
      {metric, L"12 AWG", L"its neighbours are 2.5 mm2 and 4 mm2"},
      {metric, L"16", L"its neighbours are 10 mm2"},
      {metric, L"thick", L"they have 1.5 mm2, 2.5 mm2, 4 mm2, 10 mm2"}};
  for (const auto& row : rows) {
    const std::wstring size = tableSizeOf(row.text, row.sizes);
    CHECK(((size.empty() ? neighbourText(row.text, row.sizes) : size) == row.meant));
  }
}

TEST_CASE("circuits fill sheets in the order of the list, inside of the area and apart from each other") {
  Box area;
  area.include(KvPoint3d{20.0, 30.0, 0.0});
  area.include(KvPoint3d{420.0, 280.0, 0.0});
  std::vector<Box> extents;
  for (int circuit = 0; circuit < 40; ++circuit) {
    Box box;
    if (circuit != 7) { // nothing to show
      box.include(KvPoint3d{-3.3 * circuit, 5.7, 0.0});
      box.include(
          KvPoint3d{-3.3 * circuit + 60.0 + (circuit * 37) % 110, 5.7 + 40.0 + (circuit * 53) % 120, 0.0});
    }
    extents.push_back(box);
  }
  extents[11].include(KvPoint3d{1000.0, 0.0, 0.0});
  std::vector<std::size_t> tooLarge;
  constexpr double gap = 10.0;
  const std::vector<SheetPlan> sheets = planSheets(extents, area, gap, tooLarge);
  CHECK(tooLarge == std::vector<std::size_t>{11});
  std::vector<std::size_t> order;
  for (const SheetPlan& sheet : sheets) {
    std::vector<Box> placed;
    for (const auto& [circuit, offset] : sheet.circuits) {
      order.push_back(circuit);
      Box box = extents[circuit];
      box.left += offset.x;
      box.right += offset.x;
      box.bottom += offset.y;
      box.top += offset.y;
      CAPTURE(circuit);
      CHECK(
          (box.left >= area.left && box.right <= area.right && box.bottom >= area.bottom &&
           box.top <= area.top));
      Box around = box;
      around.left -= gap - 0.001;
      around.right += gap - 0.001;
      around.bottom -= gap - 0.001;
      around.top += gap - 0.001;
      for (const Box& other : placed)
        CHECK_FALSE(around.meets(other));
      placed.push_back(box);
    }
  }
  CHECK(std::is_sorted(order.begin(), order.end()));
  CHECK(order.size() == 38);
  CHECK(sheets.size() < 20);
}
