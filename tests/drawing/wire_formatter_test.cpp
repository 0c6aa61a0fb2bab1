#include "drawing/wire_formatter.h"

#include "drawing_support.h"

using namespace brenvolt;
using namespace brenvolt::test;

namespace {

using Pairs = std::vector<std::pair<std::wstring, std::wstring>>;

Pairs pairsOf(const ZanWireFormatter::Entries& entries) {
  return {entries.begin(), entries.end()};
}

/// Three conductors of which one has no format, one grounding wire, and a second set.
ZanWireFormatter motorTemplate() {
  ZanWireFormatter formatter;
  formatter.AddMarker(L"WT02", L"_WIRETYPE=RED_@SIZE@;_WIRENUMBERS=0");
  formatter.AddMarker(L"WT01", L"_WIRETYPE=BLACK_@SIZE@;");
  formatter.AddMarker(L"WT03", L"");
  formatter.AddMarker(L"WT01E", L"_WIRETYPE=GREEN_@S@");
  formatter.AddMarker(L"WT01-A", L"_WIRETYPE=BLUE_@SIZE@");
  formatter.AddMarker(L"WT01E-A", L"_WIRETYPE=GREEN_@S@");
  return formatter;
}

} // namespace

TEST_CASE("the settings of a marker give its format and numbering") {
  const struct {
    const wchar_t* code;
    const wchar_t* misc1;
    Pairs types;
    Pairs numbers;
  } rows[] = {
      {L"WT01", L"", {{L"", L"WT01"}}, {{L"", L"WT01"}}},
      {L"WT01", L"_WIRETYPE=MOTOR_@SIZE@;", {{L"MOTOR_%s", L"WT01"}}, {{L"", L"WT01"}}},
      {L"wt01", L"_WIRENUMBERS=0;_WIRETYPE=M", {{L"M", L"wt01"}}, {{L"0", L"wt01"}}},
      {L"WT01", L"note _WIRETYPE=@A@_X_@B@;rest", {{L"%s_X_%s", L"WT01"}}, {{L"", L"WT01"}}},
      {L"WT01", L"_WIRETYPE=A@cut;B@;_WIRENUMBERS=1;", {{L"A%s", L"WT01"}}, {{L"1", L"WT01"}}},
      {L"WT01", L"_WIRETYPE=;_WIRENUMBERS=0", {}, {{L"0", L"WT01"}}},
      {L"WT01", L"_WIRENUMBERS=2;", {{L"", L"WT01"}}, {{L"1", L"WT01"}}},
      {L"WT01", L"_WIRENUMBERS=", {{L"", L"WT01"}}, {{L"1", L"WT01"}}},
      {L"PB01", L"_WIRETYPE=CTRL_@S@;_WIRENUMBERS=0;", {{L"CTRL_%s", L"PB01"}}, {}},
      {L"PB01", L"text", {}, {}},
  };
  for (const auto& row : rows) {
    CAPTURE(std::wstring(row.misc1));
    ZanWireFormatter formatter;
    formatter.AddMarker(row.code, row.misc1);
    CHECK(pairsOf(formatter.types()) == row.types);
    CHECK(pairsOf(formatter.numbers()) == row.numbers);
  }
}

TEST_CASE("a marker met again changes nothing, a merge compares nothing") {
  ZanWireFormatter formatter;
  formatter.AddMarker(L"WT01", L"_WIRETYPE=RED_@S@;_WIRENUMBERS=0");
  formatter.AddMarker(L"wt01", L"_WIRETYPE=red_@S@;_WIRENUMBERS=1");
  CHECK(pairsOf(formatter.types()) == Pairs{{L"RED_%s", L"WT01"}});
  CHECK(pairsOf(formatter.numbers()) == Pairs{{L"0", L"WT01"}});

  formatter.Merge(formatter);
  CHECK(formatter.types().size() == 1);
  const ZanWireFormatter again = formatter;
  formatter.Merge(again);
  CHECK(pairsOf(formatter.types()) == Pairs{{L"RED_%s", L"WT01"}, {L"RED_%s", L"WT01"}});
  CHECK(formatter.numbers().size() == 2);
}

TEST_CASE("a layer name may hold anything, and one size fills one place in it") {
  ZanWireFormatter odd;
  odd.AddWireType(L"%d%%_%s_%s", L"WT01");
  CHECK(odd.GetLayerNames({L"6", L""}, L"WT01") == std::vector<std::wstring>{L"%d%%_6_%s"});
}

TEST_CASE("codes come by suffix and kind, each as often as it has entries") {
  ZanWireFormatter formatter = motorTemplate();
  using Codes = std::vector<std::wstring>;
  CHECK(formatter.GetWireCodes(L"") == Codes{L"WT01", L"WT02", L"WT03"});
  CHECK(formatter.GetWireCodes(L"-a") == Codes{L"WT01-A"});
  CHECK(formatter.GetGroundCodes(L"") == Codes{L"WT01E"});
  CHECK(formatter.GetGroundCodes(L"-A") == Codes{L"WT01E-A"});
  CHECK(formatter.GetGroundCodes() == Codes{L"WT01E", L"WT01E-A"});
  CHECK(formatter.GetWireCodes(L"-B").empty());
  formatter.AddWireType(L"EXTRA_%s", L"WT01");
  CHECK(formatter.GetWireCodes(L"") == Codes{L"WT01", L"WT01", L"WT02", L"WT03"});
}

TEST_CASE("codes are formed and read as the templates write them") {
  CHECK(wireCode(1, L"") == L"WT01");
  CHECK(wireCode(12, L"-A") == L"WT12-A");
  CHECK(groundCode(1, L"-A") == L"WT01E-A");
  CHECK(groundCode(10, L"") == L"WT010E");
  CHECK(wireSuffix(L"WT01-A-2") == L"-2");
  CHECK(wireSuffix(L"WT01") == L"");
  CHECK(ZanWireFormatter::IsGroundCode(L"WT01E-2"));
  CHECK(ZanWireFormatter::IsGroundCode(L"WT-SPARE")); // an E anywhere counts
  CHECK_FALSE(ZanWireFormatter::IsGroundCode(L"WT01-2"));
}
