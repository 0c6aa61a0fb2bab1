#include "build/unsized_wires.h"

#include "build/marker_settings.h"
#include "build/wire_expansion.h"
#include "data/auto_wire_size.h"
#include "data/circuit_fields.h"
#include "data/db_service.h"
#include "drawing/marker_tree.h"
#include "host/host_api_lisp.h"
#include "host/lisp_symbols.h"
#include "host/resources.h"
#include "text/compare.h"
#include "text/format.h"
#include "text/numbers.h"
#include "text/split.h"

#include <algorithm>
#include <optional>

namespace brenvolt {

namespace {

constexpr std::size_t leastFields = circparam::multiplier + 1;

bool isGrounding(const ZanAnnotationData& row) {
  return !row.fields.empty() && row.fields.back().value == groundingKind &&
         row.fields.back().type == static_cast<std::uint32_t>(kvtype::shortInteger);
}

std::wstring sizeOf(const ZanAnnotationData& row) {
  return row.fields.empty() ? std::wstring() : trim(row.fields.front().value);
}

/// The data of a motor or load; null where there is none at all.
const ZanAnnotationData* dataRow(const ZanAnnotationDataList& rows) {
  const ZanAnnotationData* row = rows.isEmpty() ? nullptr : rows.items().front().row.get();
  return row == nullptr || row->fields.size() < leastFields ? nullptr : row;
}

const ZanAnnotationDataList* wiresOf(const ZanAnnotationDataList& rows) {
  return rows.size() > 1 ? rows.items()[1].list.get() : nullptr;
}

/// What the wires of a motor or load lack. A row counts by itself: one conductor with a size does not size the others,
/// and none sizes the grounding conductor.
struct WireGaps {
  bool hasConductors = false;
  bool hasGrounding = false;
  bool areConductorsUnsized = false; ///< at least one of them
  bool isGroundingUnsized = false;
  bool isGroundingReported = true; ///< when it cannot be sized
  std::wstring conductorSize;      ///< without blanks; of the first conductor that has one
  bool areConductorsMixed = false; ///< their sizes differ
};

WireGaps gapsOf(const ZanAnnotationDataList& rows) {
  WireGaps gaps;
  const ZanAnnotationDataList* wires = wiresOf(rows);
  if (wires == nullptr) return gaps;
  for (const ZanAnnotationDataList::Item& item : wires->items()) {
    if (!item.row) continue;
    const std::wstring size = removeBlanks(sizeOf(*item.row));
    if (isGrounding(*item.row)) {
      gaps.hasGrounding = true;
      gaps.isGroundingUnsized = gaps.isGroundingUnsized || size.empty();
      continue;
    }
    gaps.hasConductors = true;
    gaps.areConductorsUnsized = gaps.areConductorsUnsized || size.empty();
    if (gaps.conductorSize.empty()) gaps.conductorSize = size;
    if (!size.empty() && !equalsOrdinalNoCase(size, gaps.conductorSize)) gaps.areConductorsMixed = true;
  }
  return gaps;
}

/// The circuit of a data row. A row without a size system has no wire choices, and the usual ones serve; its grounding
/// size counts nevertheless.
ZanCircuitData circuitOf(const ZanAnnotationData& row) {
  ZanCircParams record;
  for (std::size_t field = 0; field < row.fields.size() && field < circparam::controlCode; ++field)
    record.set(field, row.fields[field].value);
  ZanCircuitData stored;
  readCircuitFields(record, stored);
  if (stored.wireStandard.empty()) {
    ZanCircuitData usual;
    usual.voltage = stored.voltage;
    usual.phase = stored.phase;
    usual.fla = stored.fla;
    usual.flaMultiplier = stored.flaMultiplier;
    usual.groundSize = stored.groundSize;
    return usual;
  }
  stored.useVoltageDrop = isGiven(stored.length);
  stored.useContinuousLoad = isGiven(stored.continuousFactor);
  stored.useFill = isGiven(stored.fillFactor);
  stored.useAmbient = isGiven(stored.ambientFactor);
  return stored;
}

enum class Reports { spoken, silent };

/// The tables are opened for the first motor that needs them.
class Sizing final {
public:
  Sizing(const BuildState& build, Reports reports)
      : formats_(build.maker.wires().formats(SamePosition::eachCounts)), reports_(reports),
        hasPages_(build.isInteractive()), connection_(build.tables.observer) {}

  void size(ZanAnnotationDataList& rows, std::wstring_view code, std::wstring_view suffix) {
    WireGaps gaps = gapsOf(rows);
    // Positions of the template that no row has are drawn as well.
    if (!gaps.hasConductors) gaps.areConductorsUnsized = !formats_.GetWireCodes(suffix).empty();
    const bool hasPosition = !formats_.GetGroundCodes(suffix).empty();
    if (!gaps.hasGrounding) gaps.isGroundingUnsized = hasPosition;
    // A page stores a grounding conductor also where the template has no position for one: that is not drawn.
    gaps.isGroundingReported = hasPosition || !hasPages_;
    if (!gaps.areConductorsUnsized && !gaps.isGroundingUnsized) return;
    const ZanAnnotationData* data = dataRow(rows);
    const ZanCircuitData circuit = data == nullptr ? ZanCircuitData() : circuitOf(*data);
    const std::optional<Sized> sized = sizesFor(circuit, code, gaps);
    if (!sized) {
      if (gaps.areConductorsUnsized || gaps.isGroundingReported) ++unsized_;
      return;
    }
    fill(rows, sized->sizes, suffix);
    const bool isGroundLacking = gaps.isGroundingReported && gapsOf(rows).isGroundingUnsized;
    if (isGroundLacking) say(TextId::groundingWithoutSize, code);
    if (!sized->largest.empty()) say(TextId::wiresTooSmall, code, sized->largest);
    if (!sized->withoutArea.empty()) say(TextId::groundingWithoutArea, code, sized->withoutArea);
    if (isGroundLacking || !sized->largest.empty()) ++unsized_;
  }

  [[nodiscard]] int unsized() const { return unsized_; }

private:
  struct Sized {
    WireSizes sizes;
    std::wstring largest{};     ///< of the tables, where it is too small: it is not drawn then
    std::wstring withoutArea{}; ///< a size for which the grounding conductor could not be made larger
  };

  /// Nothing, with a report, where a size cannot be computed.
  std::optional<Sized> sizesFor(const ZanCircuitData& circuit, std::wstring_view code, const WireGaps& gaps) {
    Sized sized{{gaps.conductorSize, removeBlanks(circuit.groundSize)}};
    if (!gaps.areConductorsUnsized && !sized.sizes.grounding.empty()) return sized;
    const auto fail = [&](TextId ofConductors, TextId ofGrounding) {
      if (gaps.areConductorsUnsized)
        say(ofConductors, code);
      else if (gaps.isGroundingReported)
        say(ofGrounding, code);
      return std::nullopt;
    };
    if (!isGiven(circuit.fla)) return fail(TextId::wiresWithoutCurrent, TextId::groundingWithoutCurrent);
    if (!tables_ && openEngineeringDatabase(connection_)) tables_.emplace(connection_);
    const std::wstring standard = getCodeStandard().value_or(std::wstring());
    if (!tables_ || !tables_->hasOptions(standard))
      return fail(TextId::wiresWithoutTables, TextId::groundingWithoutTables);
    const WireDefaults defaults(*tables_, standard);
    if (gaps.areConductorsUnsized) {
      const std::optional<AutoWire> wire = autoWire(defaults, circuit, autoDesignCurrent(defaults, circuit));
      if (!wire) return fail(TextId::wiresWithoutTables, TextId::groundingWithoutTables);
      (wire->isLargeEnough ? sized.sizes.conductors : sized.largest) = removeBlanks(wire->size);
    }
    // Conductors of several sizes limit nothing: which of them the grounding conductor goes with is not known.
    const bool isMixed =
        gaps.areConductorsMixed || (gaps.areConductorsUnsized && !gaps.conductorSize.empty() &&
                                    !equalsOrdinalNoCase(gaps.conductorSize, sized.sizes.conductors));
    if (!sized.sizes.grounding.empty()) return sized;
    const BesideGround ground =
        autoGround(defaults, circuit, isMixed ? std::wstring() : sized.sizes.conductors);
    sized.sizes.grounding = removeBlanks(ground.size);
    if (gaps.isGroundingReported) sized.withoutArea = ground.withoutArea;
    return sized;
  }

  void fill(ZanAnnotationDataList& rows, const WireSizes& sizes, std::wstring_view suffix) const {
    ZanAnnotationDataList wires;
    int conductors = 0;
    int grounds = 0;
    if (const ZanAnnotationDataList* stored = wiresOf(rows))
      for (const ZanAnnotationDataList::Item& item : stored->items()) {
        if (!item.row) continue;
        ZanAnnotationData row = *item.row;
        const bool isGround = isGrounding(row);
        int& number = isGround ? grounds : conductors;
        ++number;
        const std::wstring& size = isGround ? sizes.grounding : sizes.conductors;
        if (sizeOf(row).empty() && !size.empty())
          setSize(row, size, sizes, isGround ? groundCode(number, suffix) : wireCode(number, suffix));
        wires.AddRow(std::move(row));
      }
    const std::vector<PresetWire> presets = {
        {sizes.conductors, {}, std::wstring(conductorKind)},
        {sizes.grounding, {}, std::wstring(groundingKind)}};
    if (conductors == 0 && !sizes.conductors.empty()) {
      ZanAnnotationDataList all;
      expandWires(presets, formats_, suffix, WirePass::conductors, sizes.grounding, all);
      all.Append(wires);
      wires = std::move(all);
    }
    if (grounds == 0 && !formats_.GetGroundCodes(suffix).empty())
      expandWires(presets, formats_, suffix, WirePass::grounding, sizes.grounding, wires);
    ZanAnnotationDataList sized;
    sized.AddRow(*rows.items().front().row);
    sized.AddList(std::move(wires));
    for (std::size_t place = 2; place < rows.size(); ++place)
      sized.AddItem(rows.items()[place]);
    rows = std::move(sized);
  }

  /// With the layer that the template's format gives for the size; without a format a chosen layer stays, and without
  /// either the layer is left to the form.
  void setSize(
      ZanAnnotationData& row, const std::wstring& size, const WireSizes& sizes,
      const std::wstring& code) const {
    row.fields.front().value = size;
    if (row.fields.size() < 2) return;
    ZanAnnotationField& layer = row.fields[1];
    if (const auto layers = formats_.GetLayerNames(sizes, code); layers && !layers->empty())
      layer.value = layers->front();
    layer.type = static_cast<std::uint32_t>(layer.value.empty() ? kvtype::nil : kvtype::string);
  }

  void say(TextId text, std::wstring_view code, std::wstring_view size = {}) const {
    if (reports_ == Reports::spoken)
      kvutPrintf((L"\n" + formatText(loadText(text), {code, size}) + L"\n").c_str());
  }

  const ZanWireFormatter formats_;
  const Reports reports_;
  const bool hasPages_;
  ZanOleDbConnection connection_;
  std::optional<WireTableCache> tables_;
  int unsized_ = 0;
};

/// A build inside another one adds to what the outer one lacks.
void addUnsized(int motors) {
  if (motors == 0) return;
  const ResultList before = getSymbol(lispsymbol::unsizedWires);
  putReal(lispsymbol::unsizedWires, ListReader(before).real().value_or(0.0) + motors);
}

} // namespace

void sizeUnsizedWires(BuildState& build, ZanDwgMarkerList& list) {
  Sizing sizing(build, Reports::spoken);
  bool hasMotors = false;
  ZanDwgMarkerListIterator iterator(&list);
  for (iterator.First(); !iterator.Done(); iterator.Next()) {
    ZanDwgMarker& marker = *iterator.Current();
    if (!isMotorOrLoad(marker)) continue;
    hasMotors = true;
    sizing.size(marker.controls, marker.code, wireSuffix(marker.code));
  }
  // The rows of the circuit as a whole repeat those of a motor, and serve only where no marker has its own.
  if (!hasMotors && &list == &build.markers && !build.circuitData.isEmpty())
    sizing.size(build.circuitData, build.input.args.circuit, build.controlSuffix);
  addUnsized(sizing.unsized());
}

void sizeUnsizedPages(BuildState& build, std::vector<MotorRows>& pages) {
  Sizing sizing(build, Reports::silent);
  for (MotorRows& page : pages)
    if (const ZanDwgMarker* marker = build.markers.findById(page.markerId))
      sizing.size(page.rows, marker->code, wireSuffix(marker->code));
}

void reportUnsizedWires(BuildState& build) {
  Sizing sizing(build, Reports::spoken);
  for (MotorRows& page : build.maker.CollectSettings()) {
    const ZanConfigUnit* unit =
        build.units.Find(static_cast<std::uint32_t>(page.markerId), FindUnitBy::marker);
    if (unit != nullptr && unit->inserted) sizing.size(page.rows, unit->code, wireSuffix(unit->code));
  }
  addUnsized(sizing.unsized());
}

} // namespace brenvolt
