// The rows of a wire group: the first layer, the filled-in size, and what is saved in the history file and restored.
#include "config/mcc_wire_rows.h"

#include "tests/config/mcc_page.h"
#include "text/encoding.h"
#include "text/split.h"

#include <doctest/doctest.h>

using namespace brenvolt;
using namespace brenvolt::test;

namespace {

/// "label=value (other choices)" of each row.
std::string describe(const std::vector<ZanGroupRow>& rows) {
  std::wstring text;
  for (const ZanGroupRow& row : rows) {
    text += (text.empty() ? L"" : L" | ") + row.label + L"=" + row.value();
    if (row.choices.size() > 1)
      text += L" (" + join({row.choices.begin() + 1, row.choices.end()}, L" ") + L")";
  }
  return toUtf8(text);
}

ZanWireFormatter formatsOf(std::initializer_list<std::pair<const wchar_t*, const wchar_t*>> types) {
  ZanWireFormatter formats;
  for (const auto& [format, code] : types)
    formats.AddWireType(format, code);
  return formats;
}

/// As a page shows them before any size is known.
std::vector<ZanGroupRow> plainRows(std::initializer_list<const wchar_t*> wires) {
  std::vector<ZanGroupRow> rows;
  for (const std::wstring wire : wires) {
    rows.push_back({wire + L" - Size", {}});
    rows.push_back({wire + L" - Layer", {L"OLD", L"BLK_12"}});
  }
  return rows;
}

} // namespace

TEST_CASE("the layer of a wire position follows from its pattern and its numbering") {
  const TextSession session;
  const std::vector<WireLayer> layers = {
      {L"BLK_10", L"1"}, {L"BLK_12", L"1"}, {L"GRN_12", L"0"}, {L"RED_12", L"1"}};
  const struct {
    WireFormat format;
    const wchar_t* choices = nullptr;
  } rows[] = {
      {{L"RED_*", L"1"}, L"RED_12 BLK_10 BLK_12 GRN_12"},
      {{L"blk_1?", L"1"}, L"BLK_10 BLK_12 GRN_12 RED_12"},
      {{L"GRN_*", L"1"}, L"BLK_10 BLK_12 GRN_12 RED_12"}, // fits, but is of the other numbering
      {{L"BLU_12", L"1"}, L"BLU_12 BLK_10 BLK_12 GRN_12 RED_12"},
      {{L"BLU_*", L"0"}, L"GRN_12 BLK_10 BLK_12 RED_12"},
      {{L"", L"0"}, L"GRN_12 BLK_10 BLK_12 RED_12"},
      {{L"*", L"2"}, L" BLK_10 BLK_12 GRN_12 RED_12"},
  };
  for (const auto& row : rows) {
    CAPTURE(toUtf8(row.format.pattern + L" " + row.format.numbers));
    CHECK_EQ(toUtf8(join(layerChoices(layers, row.format), L" ")), toUtf8(row.choices));
  }
  CHECK_EQ(layerChoices({}, {L"*", L"1"}).front(), L"3-");
  CHECK_EQ(layerChoices({}, {L"*", L"0"}).front(), L"1-");
  // A name taken by a layer of another numbering is lengthened until it is free.
  CHECK_EQ(layerChoices({{L"3-", L"0"}, {L"3--", L"0"}}, {L"*", L"1"}).front(), L"3---");
  // A name that no layer has is said to be a default; a layer of the drawing needs no words.
  const std::wstring tip = loadText(TextId::tipDefaultLayer);
  REQUIRE_FALSE(tip.empty());
  CHECK_EQ(wireRows(formatsOf({{L"", L"WT01"}}), {}).at(1).tip, tip);
  CHECK(wireRows(formatsOf({{L"", L"WT01"}}), layers).at(1).tip.empty());
}

TEST_CASE("the numbering of a layer is the 25th of its settings, and 1 without one") {
  TextSession session;
  session.eval("(defun zan_get_active_dwg_wiretype () (list \"b\" 5 \"C\" \"A\"))"
               "(setq places '(0 1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16 17 18 19 20 21 22))"
               "(defun zan_get_activedrawing_wiretype_settings (layer)"
               "  (cond ((equal layer \"A\") (append (list \"odd\") (mapcar (lambda (p) (cons 90 p)) places)"
               "                                   (list (cons 290 0))))"
               "        ((equal layer \"b\") (list (cons 1 \"short\")))))"
               "(vz-korvo-defun 'zan_get_active_dwg_wiretype)"
               "(vz-korvo-defun 'zan_get_activedrawing_wiretype_settings)");
  std::string text;
  for (const WireLayer& layer : activeWireLayers())
    text += toUtf8(layer.name + L"=" + layer.numbers) + " ";
  CHECK_EQ(text, "A=0 b=1 C=1 ");
}

TEST_CASE("a size goes to the wires of the unit's suffix, under the labels that the rows have") {
  const TextSession session;
  const struct {
    const char* what;
    ZanWireFormatter formats;
    std::vector<ZanGroupRow> rows;
    const wchar_t* suffix;
    const char* expected;
  } rows[] = {
      {"numbers may begin anywhere and leave some out",
       formatsOf({{L"BLK_%s", L"WT01"}, {L"RED_%s", L"WT12"}}), plainRows({L"W1", L"W2"}), L"",
       "W1 - Size=8AWG | W1 - Layer=BLK_8AWG (RED_8AWG OLD BLK_12) | "
       "W2 - Size=8AWG | W2 - Layer=RED_8AWG (BLK_8AWG OLD BLK_12)"},
      {"codes of another suffix are not the unit's",
       formatsOf({{L"BLK_%s", L"WT01-B"}, {L"RED_%s", L"WT02-A"}}), plainRows({L"W1"}), L"-A",
       "W1 - Size=8AWG | W1 - Layer=RED_8AWG (BLK_8AWG OLD BLK_12)"},
      {"a position without a format keeps its layers", formatsOf({{L"", L"WT00"}}), plainRows({L"W1"}), L"",
       "W1 - Size=8AWG | W1 - Layer=OLD (BLK_12)"},
      {"grounding wires take the grounding size", formatsOf({{L"BLK_%s", L"WT01"}, {L"GRN_%s", L"WT02E"}}),
       plainRows({L"W1", L"W01E"}), L"",
       "W1 - Size=8AWG | W1 - Layer=BLK_8AWG (GRN_14AWG OLD BLK_12) | "
       "W01E - Size=14AWG | W01E - Layer=GRN_14AWG (BLK_8AWG OLD BLK_12)"},
      {"what no code serves stays without a size, but for the last",
       formatsOf({{L"BLK_%s", L"WT01"}, {L"GRN_%s", L"WT01E"}}), plainRows({L"W1", L"W2", L"W3", L"W01E"}),
       L"",
       "W1 - Size=8AWG | W1 - Layer=BLK_8AWG (GRN_14AWG OLD BLK_12) | W2 - Size= | W2 - Layer=OLD (BLK_12) | "
       "W01E - Size=14AWG | W01E - Layer=GRN_14AWG (BLK_8AWG OLD BLK_12)"},
      {"the layers are those that the page came up with, whatever an earlier size has made of them",
       formatsOf({{L"BLK_%s", L"WT01"}}),
       {{L"W1 - Size", {L"6AWG"}}, {L"W1 - Layer", {L"BLK_6AWG"}}},
       L"",
       "W1 - Size=8AWG | W1 - Layer=BLK_8AWG (OLD BLK_12)"},
      {"a group without rows stays one", formatsOf({{L"BLK_%s", L"WT01"}}), {}, L"", ""},
  };
  for (const auto& row : rows) {
    CAPTURE(row.what);
    const std::vector<ZanGroupRow> kept = plainRows({L"W1", L"W2", L"W3", L"W01E"});
    CHECK_EQ(
        describe(sizedWireRows(row.formats, row.rows, kept, row.suffix, {L"8AWG", L"14AWG"})), row.expected);
  }
}

TEST_CASE("wires come back as they were stored, grounding ones as the grounding size asks") {
  const TextSession session;
  const ZanWireFormatter formats =
      formatsOf({{L"BLK_%s", L"WT01"}, {L"BLK_%s", L"WT02"}, {L"GRN_%s", L"WT01E"}});
  std::vector<ZanGroupRow> shown = plainRows({L"W1", L"W2", L"W01E"});
  const auto imported = [&](const ZanAnnotationDataList& stored) {
    return toUtf8(join(importWires(formats, stored, shown, L"12AWG"), L" "));
  };
  const std::vector<ZanGroupRow> saved = {
      {L"W1 - Size", {L"8AWG"}},
      {L"W1 - Layer", {L"BLK_8AWG"}},
      {L"W2 - Size", {L"6AWG"}},
      {L"W2 - Layer", {L"RED_6AWG"}}};
  const ZanAnnotationDataList stored = exportWires(saved, L"12AWG");
  CHECK_EQ(storedGroundSize(stored), L"12AWG");
  REQUIRE_EQ(stored.size(), 3); // a grounding wire is always stored
  CHECK_EQ(stored.items()[2].row->name, rowname::groundingWireSetup);
  CHECK_EQ(stored.items()[2].row->fields[0].value, L"12AWG");
  CHECK_EQ(stored.items()[2].row->fields[2].value, L"3");
  CHECK_EQ(imported(stored), "8AWG BLK_8AWG 6AWG RED_6AWG 12AWG GRN_12AWG");
  // The template has more conductors now than when the circuit was stored.
  ZanAnnotationDataList fewer = exportWires({saved[0], saved[1]}, L"12AWG");
  CHECK_EQ(imported(fewer), "8AWG BLK_8AWG  OLD 12AWG GRN_12AWG");
  fewer.items()[1].row->name.clear(); // as a history gives it
  CHECK_EQ(imported(fewer), "8AWG BLK_8AWG  OLD 12AWG GRN_12AWG");
}
