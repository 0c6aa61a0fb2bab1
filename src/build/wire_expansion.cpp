#include "build/wire_expansion.h"

#include "drawing/exported_rows.h"

#include <algorithm>

namespace brenvolt {

namespace {

/// One pass over the wires of a preset.
class WireRows final {
public:
  WireRows(
      const ZanWireFormatter& formatter, std::wstring_view suffix, WirePass pass,
      std::wstring_view groundSize, ZanAnnotationDataList& rows)
      : formatter_(formatter), pass_(pass), groundSize_(groundSize),
        codeTail_((pass == WirePass::grounding ? std::wstring(L"E") : std::wstring()).append(suffix)),
        rows_(rows) {}

  /// Adds the row of the next position, with the layer that fits the wire.
  void addNext(const std::wstring& word, std::wstring_view kind) {
    ++position_;
    // The layer of a grounding wire follows from its own size.
    const WireSizes sizes = {word, pass_ == WirePass::grounding ? word : groundSize_};
    const auto layers = formatter_.GetLayerNames(sizes, wireCode(position_, codeTail_));
    if (!layers || layers->empty())
      add(word, {}, kvtype::nil, kind);
    else
      add(word, layers->front(), kvtype::string, kind);
  }

  void add(
      const std::wstring& word, const std::wstring& layer, std::int16_t layerType, std::wstring_view kind) {
    ZanAnnotationData row;
    row.AddText(word, {});
    row.Add(layer, layerType, {}, false);
    row.Add(kind, kvtype::shortInteger, {}, false);
    labelWireRow(row, pass_ == WirePass::grounding, std::max(position_, 1));
    rows_.AddRow(std::move(row));
  }

  [[nodiscard]] std::size_t positions() const { return static_cast<std::size_t>(position_); }

private:
  const ZanWireFormatter& formatter_;
  WirePass pass_;
  std::wstring groundSize_;
  std::wstring codeTail_;
  ZanAnnotationDataList& rows_;
  int position_ = 0;
};

} // namespace

void expandWires(
    const std::vector<PresetWire>& wires, const ZanWireFormatter& formatter, std::wstring_view suffix,
    WirePass pass, std::wstring_view layerValue, ZanAnnotationDataList& rows) {
  const bool isGrounding = pass == WirePass::grounding;
  const std::size_t positions =
      isGrounding ? formatter.GetGroundCodes(suffix).size() : formatter.GetWireCodes(suffix).size();
  const auto isOfPass = [isGrounding](const PresetWire& wire) {
    return (wire.kind == groundingKind) == isGrounding;
  };
  WireRows target(formatter, suffix, pass, layerValue, rows);

  if (positions == 0) {
    if (!isGrounding) return;
    const auto wire = std::find_if(wires.begin(), wires.end(), isOfPass);
    target.add(wire == wires.end() ? std::wstring() : wire->firstWord, {}, kvtype::nil, groundingKind);
    return;
  }
  std::wstring lastWire;
  for (const PresetWire& wire : wires) {
    if (target.positions() == positions) break;
    if (!isOfPass(wire)) continue;
    target.addNext(wire.firstWord, wire.kind);
    lastWire = wire.firstWord;
  }
  if (isGrounding && layerValue.empty()) lastWire.clear();
  while (target.positions() < positions)
    target.addNext(lastWire, isGrounding ? groundingKind : conductorKind);
}

} // namespace brenvolt
