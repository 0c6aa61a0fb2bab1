// What the fields start from for a placed circuit, and how its sizes are found among those of the tables.
#include "flows/wire_choices.h"

#include "data/wire_lookup.h"

#include <doctest/doctest.h>

#include "text/encoding.h"

using namespace brenvolt;

TEST_CASE("a size that was stored without blanks is the table's size") {
  struct Row {
    const wchar_t* stored;
    const wchar_t* standard;
    const char* shown;
  };
  const Row rows[] = {
      {L"8AWG", L"AWG", "8 AWG"},
      {L"8 AWG", L"AWG", "8 AWG"},
      {L"250KCMIL", L"AWG", "250 KCMIL"},
      {L"250kcmil", L"awg", "250 kcmil"},
      {L"1.5mm2", L"MM2", "1.5 mm2"},
      {L"250KCMIL", L"MM2", "250KCMIL"},
      {L"AWG", L"AWG", "AWG"},
      {L"", L"AWG", ""},
      {L"8AWG", L"", "8AWG"},
  };
  for (const Row& row : rows)
    CHECK_EQ(toUtf8(shownSize(row.stored, row.standard)), row.shown);
}

TEST_CASE("a placed circuit brings its numbers and texts; ticks come from the circuit in hand") {
  ZanCircuitData circuit;
  circuit.useVoltageDrop = true;
  circuit.setOpenField(3, false);
  ZanCircParams record;
  record.set(circparam::fla, L" 28 ");
  record.set(circparam::length, L"long");
  record.set(circparam::wireStandard, L" AWG");
  record.set(circparam::groundWire, L"10AWG");
  record.set(circparam::parallelCount, L"2000000000"); // would fill a list without end
  const ZanCircuitData choices = placedChoices(circuit, record);
  CHECK_EQ(choices.fla, 28.0);
  CHECK_EQ(choices.length, 0.0);
  CHECK(choices.wireStandard == L"AWG");
  CHECK(choices.groundSize == L"10AWG");
  CHECK(choices.parallelCount == L"99");
  CHECK(choices.useVoltageDrop);
  CHECK(choices.isOpen(OpenField::voltage));
}
