#include "config/mcc_wire_rows.h"

#include "host/host_api_lisp.h"
#include "host/lisp_calls.h"
#include "host/resources.h"
#include "text/compare.h"
#include "text/format.h"
#include "text/split.h"

#include <algorithm>
#include <cstdint>
#include <optional>

namespace brenvolt {

namespace {

constexpr std::size_t rowsOfWire = 2; ///< size and layer
constexpr int highestCodeNumber = 99;

/// Where the settings of a wire layer hold its numbering, from 0; every element counts.
constexpr std::size_t numberingPosition = 24;
constexpr std::wstring_view numbered = L"1";
constexpr std::wstring_view notNumbered = L"0";
constexpr std::wstring_view defaultNumberedLayer = L"3-";
constexpr std::wstring_view defaultUnnumberedLayer = L"1-";

constexpr std::wstring_view groundingPattern = L"W*E";
/// What the history keeps of a wire beside size and layer.
constexpr std::wstring_view conductorMark = L"1";
constexpr std::wstring_view groundingMark = L"3";

bool matches(std::wstring_view text, std::wstring_view pattern) {
  return kvutWcMatch(std::wstring(text).c_str(), std::wstring(pattern).c_str()) == kvstatus::normal;
}

const WireLayer* findLayer(const std::vector<WireLayer>& layers, std::wstring_view name) {
  const auto found = std::find_if(layers.begin(), layers.end(), [name](const WireLayer& layer) {
    return equalsCollating(layer.name, name);
  });
  return found == layers.end() ? nullptr : &*found;
}

/// A name that no layer of another numbering has: "3-" may become "3--".
std::wstring freeName(const std::vector<WireLayer>& layers, std::wstring name, std::wstring_view numbers) {
  for (;;) {
    const WireLayer* taken = findLayer(layers, name);
    if (!taken || equalsCollating(taken->numbers, numbers)) return name;
    name += name.back();
  }
}

std::wstring chosenLayer(const std::vector<WireLayer>& layers, const WireFormat& format) {
  const WireLayer* fallback = nullptr;
  for (const WireLayer& layer : layers) {
    if (!equalsCollating(layer.numbers, format.numbers)) continue;
    if (!format.pattern.empty() && matches(layer.name, format.pattern)) return layer.name;
    if (!fallback) fallback = &layer;
  }
  if (!format.pattern.empty() && !format.pattern.ends_with(L'*')) return format.pattern;
  if (fallback) return fallback->name;
  if (format.numbers == notNumbered)
    return freeName(layers, std::wstring(defaultUnnumberedLayer), format.numbers);
  if (format.numbers == numbered) return freeName(layers, std::wstring(defaultNumberedLayer), format.numbers);
  return {};
}

/// What a name that no layer has yet says: "3-", "1--".
std::wstring tipOf(const std::vector<std::wstring>& layers) {
  if (layers.empty()) return {};
  const std::wstring& name = layers.front();
  const bool isDefault =
      (name.starts_with(defaultNumberedLayer) || name.starts_with(defaultUnnumberedLayer)) &&
      name.find_first_not_of(L'-', 1) == std::wstring::npos;
  return isDefault ? loadText(TextId::tipDefaultLayer) : std::wstring();
}

bool contains(const std::vector<std::wstring>& names, std::wstring_view name) {
  return std::any_of(
      names.begin(), names.end(), [name](const std::wstring& each) { return equalsCollating(each, name); });
}

void addWire(
    std::vector<ZanGroupRow>& rows, std::int64_t number, TextId sizeLabel, TextId layerLabel,
    std::vector<std::wstring> layers) {
  rows.push_back({formatText(loadText(sizeLabel), {number}), {}});
  std::wstring tip = tipOf(layers);
  rows.push_back({formatText(loadText(layerLabel), {number}), std::move(layers), std::move(tip)});
}

/// Makes the rows of a group again, wire by wire, each under the label that it had.
class Refill final {
public:
  Refill(const std::vector<ZanGroupRow>& shown, const std::vector<ZanGroupRow>& kept)
      : shown_(shown), kept_(kept) {}

  /// `names` come before the layers kept. False when the group has no such wire.
  bool add(std::size_t wire, std::wstring_view size, std::vector<std::wstring> names) {
    const std::size_t row = wire * rowsOfWire;
    if (row + 1 >= shown_.size()) return false;
    const std::wstring& layerLabel = shown_[row + 1].label;
    for (const std::wstring& layer : keptLayers(layerLabel))
      if (!contains(names, layer)) names.push_back(layer);
    rows.push_back({shown_[row].label, {std::wstring(size)}});
    std::wstring tip = tipOf(names);
    rows.push_back({layerLabel, std::move(names), std::move(tip)});
    return true;
  }

  std::vector<ZanGroupRow> rows;

private:
  [[nodiscard]] std::vector<std::wstring> keptLayers(std::wstring_view label) const {
    const auto found = std::find_if(
        kept_.begin(), kept_.end(), [label](const ZanGroupRow& row) { return row.label == label; });
    return found == kept_.end() ? std::vector<std::wstring>() : found->choices;
  }

  const std::vector<ZanGroupRow>& shown_;
  const std::vector<ZanGroupRow>& kept_;
};

ZanAnnotationData wireRow(bool isGrounding, const ZanGroupRow& size, const ZanGroupRow& layer) {
  ZanAnnotationData row(isGrounding ? rowname::groundingWireSetup : rowname::wireSetup);
  row.AddText(size.value(), size.label);
  row.AddText(layer.value(), layer.label);
  row.Add(isGrounding ? groundingMark : conductorMark, kvtype::shortInteger, L"", false);
  return row;
}

/// By its mark: rows that come from a history or a preset have no name.
bool isGroundingRow(const ZanAnnotationData& row) {
  return !row.fields.empty() && row.fields.back().value == groundingMark;
}

/// The layer of a grounding wire, from the format of its code; nothing when it has none.
std::optional<std::wstring> groundingLayer(
    const ZanWireFormatter& formats, std::wstring_view code, const std::wstring& groundSize) {
  const bool hasFormat =
      std::any_of(formats.types().begin(), formats.types().end(), [code](const auto& entry) {
        return !entry.first.empty() && equalsCollating(entry.second, code);
      });
  if (!hasFormat) return std::nullopt;
  const auto names = formats.GetLayerNames({groundSize, groundSize}, code);
  if (!names) return std::nullopt;
  return names->front();
}

std::size_t groundingWires(const std::vector<ZanGroupRow>& rows) {
  std::size_t count = 0;
  for (std::size_t row = 0; row + 1 < rows.size(); row += rowsOfWire)
    if (isGroundingLabel(rows[row].label)) ++count;
  return count;
}

} // namespace

std::vector<WireLayer> activeWireLayers() {
  std::vector<WireLayer> layers;
  for (const std::wstring& name : getActiveWireTypes()) {
    if (name.empty()) continue;
    const std::vector<std::wstring> settings = getWireTypeSettings(name);
    layers.push_back(
        {name, settings.size() > numberingPosition ? settings[numberingPosition] : std::wstring(numbered)});
  }
  std::stable_sort(layers.begin(), layers.end(), [](const WireLayer& left, const WireLayer& right) {
    return compareCollating(left.name, right.name) < 0;
  });
  return layers;
}

std::vector<std::wstring> layerChoices(const std::vector<WireLayer>& layers, const WireFormat& format) {
  std::vector<std::wstring> choices = {chosenLayer(layers, format)};
  for (const WireLayer& layer : layers)
    if (!equalsCollating(layer.name, choices.front())) choices.push_back(layer.name);
  return choices;
}

std::vector<ZanGroupRow> wireRows(const ZanWireFormatter& formats, const std::vector<WireLayer>& layers) {
  std::vector<ZanGroupRow> rows;
  std::int64_t number = 0;
  for (const auto& [format, code] : formats.types())
    if (!ZanWireFormatter::IsGroundCode(code))
      addWire(
          rows, ++number, TextId::wireSizeRow, TextId::wireLayerRow,
          layerChoices(layers, formats.GetWireFormat(code)));
  number = 0;
  for (const std::wstring& code : formats.GetGroundCodes())
    addWire(
        rows, ++number, TextId::groundSizeRow, TextId::groundLayerRow,
        layerChoices(layers, formats.GetWireFormat(code)));
  return rows;
}

std::vector<ZanGroupRow> sizedWireRows(
    const ZanWireFormatter& formats, const std::vector<ZanGroupRow>& shown,
    const std::vector<ZanGroupRow>& kept, std::wstring_view suffix, const WireSizes& sizes) {
  const std::size_t grounds = groundingWires(shown);
  const std::size_t conductors = shown.size() / rowsOfWire - grounds;
  Refill refill(shown, kept);

  // A template may begin at 0 and leave numbers out.
  std::size_t position = 0;
  for (int number = 0; number <= highestCodeNumber && position < conductors; ++number)
    if (const auto names = formats.GetLayerNames(sizes, wireCode(number, suffix)))
      refill.add(position++, sizes.conductors, *names);
  // What no code serves stays without a size; the last position of all is given up then, which is how it has to be.
  for (; position + 1 < conductors; ++position)
    refill.add(position, L"", {});

  // Grounding wires keep the labels that name them so, also when a conductor was given up.
  std::size_t ground = 0;
  for (int number = 1; number <= highestCodeNumber && ground < grounds; ++number)
    if (const auto names = formats.GetLayerNames(sizes, groundCode(number, suffix)))
      refill.add(conductors + ground++, sizes.grounding, *names);
  return std::move(refill.rows);
}

bool isGroundingLabel(std::wstring_view label) {
  return matches(trim(label.substr(0, label.find(L'-'))), groundingPattern);
}

ZanAnnotationDataList exportWires(const std::vector<ZanGroupRow>& rows, std::wstring_view groundSize) {
  ZanAnnotationDataList wires;
  bool hasGrounding = false;
  for (std::size_t row = 0; row + 1 < rows.size(); row += rowsOfWire) {
    const bool isGrounding = isGroundingLabel(rows[row].label);
    hasGrounding = hasGrounding || isGrounding;
    wires.AddRow(wireRow(isGrounding, rows[row], rows[row + 1]));
  }
  if (!hasGrounding) wires.AddRow(wireRow(true, {L"", {std::wstring(groundSize)}}, {L"", {}}));
  return wires;
}

std::wstring storedGroundSize(const ZanAnnotationDataList& stored) {
  for (const ZanAnnotationDataList::Item& item : stored.items())
    if (item.row && isGroundingRow(*item.row)) return item.row->fields.front().value;
  return {};
}

std::vector<std::wstring> importWires(
    const ZanWireFormatter& formats, const ZanAnnotationDataList& stored,
    const std::vector<ZanGroupRow>& shown, const std::wstring& groundSize) {
  std::vector<std::wstring> values;
  values.reserve(shown.size());
  for (const ZanGroupRow& row : shown)
    values.push_back(row.value());
  const auto put = [&values](std::size_t row, const std::wstring& value) {
    if (row < values.size()) values[row] = value;
  };

  const std::vector<std::wstring> grounds = formats.GetGroundCodes();
  const std::size_t conductors = shown.size() / rowsOfWire - groundingWires(shown);
  for (std::size_t wire = 0; wire < std::min(conductors, stored.size()); ++wire) {
    const ZanAnnotationData* row = stored.items()[wire].row.get();
    // A template that has grown since: its further conductors must not take the grounding row for one of theirs.
    if (!row || isGroundingRow(*row)) break;
    for (std::size_t field = 0; field < std::min(rowsOfWire, row->fields.size()); ++field)
      put(wire * rowsOfWire + field, row->fields[field].value);
  }
  // The grounding wires follow the circuit's grounding size, whichever layer was stored with them.
  for (std::size_t ground = 0; ground < grounds.size(); ++ground) {
    const std::size_t row = (conductors + ground) * rowsOfWire;
    put(row, groundSize);
    if (const auto layer = groundingLayer(formats, grounds[ground], groundSize)) put(row + 1, *layer);
  }
  return values;
}

} // namespace brenvolt
