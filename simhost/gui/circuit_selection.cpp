// Listing, finding and selecting circuits.
#include "simhost/gui/circuit_selection.h"

#include "circuits/reports/drawing_reports.h"
#include "simhost/drawing/circuit_edit.h"
#include "simhost/gui/drawing_files.h"
#include "simhost/gui/drawing_view.h"
#include "simhost/gui/site_circuits.h"
#include "simhost/qt/qt_text.h"

#include <algorithm>

namespace simhost {

using circuits::CircuitObject;

const CircuitObject* CircuitSelection::known(std::wstring_view id) const {
  const auto found = std::find_if(
      circuits_.begin(), circuits_.end(), [id](const CircuitObject& circuit) { return circuit.id == id; });
  return found == circuits_.end() ? nullptr : &*found;
}

const CircuitObject* CircuitSelection::circuitOf(KvDbHandle entity) const {
  const EntityNode* node = services_.drawing().find(entity);
  const auto origin = node == nullptr ? std::nullopt : provenanceOf(node->value);
  return origin ? known(origin->circuit) : nullptr;
}

std::optional<KvDbHandle> CircuitSelection::control() const {
  if (view_.marks().selected()) return view_.marks().selected();
  for (const KvDbHandle handle : view_.marks().group())
    if (const EntityNode* node = services_.drawing().find(handle))
      if (findData(node->value, L"ORL_QN_BV_CIRCPARAMS") != nullptr) return handle;
  return std::nullopt;
}

const SiteConfigurations* CircuitSelection::siteConfigurations() const {
  return siteCircuits_ == nullptr ? nullptr : siteCircuits_->saved();
}

void CircuitSelection::refresh() {
  DrawingDatabase& drawing = services_.drawing();
  const std::uint64_t change = drawing.undoLog().changeCount();
  if (services_.runner.isBusy() || change == listedChange_) return;
  listedChange_ = change;
  circuits_ = circuits::circuitsOf(drawing);
  const std::wstring sheet = circuits::sheetNumber(drawing, fromQt(files_.baseName()));
  onListed(circuitRows(circuits_, sheet, siteConfigurations(), services_.texts));
  if (!selected_.empty()) select(selected() == nullptr ? std::wstring() : std::wstring(selected_));
}

void CircuitSelection::select(const std::wstring& id) {
  selected_ = id;
  view_.marks().selectGroup(
      id.empty() ? std::vector<KvDbHandle>() : entitiesOfCircuit(services_.drawing(), id));
  onSelected();
}

void CircuitSelection::selectOf(std::optional<KvDbHandle> entity) {
  const EntityNode* node = entity ? services_.drawing().find(*entity) : nullptr;
  const auto origin = node == nullptr ? std::nullopt : provenanceOf(node->value);
  select(origin ? origin->circuit : std::wstring());
}

void CircuitSelection::show(const std::wstring& id) {
  const CircuitObject* circuit = known(id);
  view_.marks().select(std::nullopt);
  select(circuit == nullptr ? std::wstring() : id);
  if (circuit == nullptr) return;
  view_.port().show(circuit->extents);
  const QString type = toQt(circuitField(circuit->fields, L"type"));
  services_.status.say(services_.texts(HostText::circuitFacts, {toQt(circuit->name()), type}));
}

} // namespace simhost
