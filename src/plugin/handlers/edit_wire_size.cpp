// Which entity, which dialogs, then the component ratings that follow from the motor.
#include "plugin/handlers/edit_wire_size.h"

#include "config/widget_manager_maker.h"
#include "data/circuit_data.h"
#include "data/entity_records.h"
#include "flows/dlg_motor_select.h"
#include "flows/dlg_wire_select.h"
#include "host/host_api_documents.h"
#include "host/host_api_lisp.h"
#include "host/lisp_symbols.h"
#include "host/resources.h"
#include "plugin/process_record.h"

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace brenvolt {

namespace {

/// What nothing computes: the parent product expects it at its place.
constexpr std::wstring_view fixedThirdElement = L"250KMIL";
constexpr int noEmptyAnswer = 1;

/// An entity with the wire that was chosen for it, and the motor's type that its components are sized for.
struct EditedWire {
  KvEntityName entity{};
  std::wstring wire;
  std::wstring motorType;
};

std::optional<EditedWire> lookUp(
    ZanDlgWireSelectBaseCtrlMgr& manager, KvEntityName entity, KvWindow* parent) {
  const std::optional<WireLookupAnswer> chosen = runWireLookup(manager, parent, lentTables());
  if (!chosen) return std::nullopt;
  return EditedWire{entity, chosen->size + chosen->parallelNote, {}};
}

std::optional<EditedWire> editPlacedCircuit(
    KvEntityName entity, const ZanCircParams& record, KvWindow* parent) {
  ZanDlgWireSelectEditWireSizeCtrlMgr manager(circuitContext(), record);
  std::optional<EditedWire> edited = lookUp(manager, entity, parent);
  if (edited) edited->motorType = record.get(circparam::type);
  return edited;
}

std::optional<EditedWire> sizeDevice(KvEntityName entity, KvWindow* parent) {
  RatingSelection motor = selectionOf(circuitData());
  if (!runMotorPicker(parent, lentTables(), motor)) return std::nullopt;
  storeSelection(motor, circuitData());
  ZanDlgWireSelectCtrlMgr manager(circuitContext());
  std::optional<EditedWire> edited = lookUp(manager, entity, parent);
  if (edited) edited->motorType = circuitData().type;
  return edited;
}

/// Asks until a placed circuit or a device is picked; any other entity is skipped silently, also one that carries the
/// data of a circuit but is not a block.
std::optional<EditedWire> editPicked(KvWindow* parent) {
  const std::wstring prompt = loadText(TextId::editWireSizePrompt);
  for (;;) {
    kvedInitGet(noEmptyAnswer, nullptr);
    KvEntityName entity{};
    KvPoint3d point;
    if (kvedEntSel(prompt.c_str(), entity, point) != kvstatus::normal) {
      kvedSSFree(entity);
      return std::nullopt;
    }
    KvDbObjectId id;
    if (kvdbGetObjectId(id, entity) != KvDbStatus::ok) continue;
    ZanCircParams record;
    if (hasCircParams(id) && readCircParams(id, record) == RecordStatus::ok)
      return editPlacedCircuit(entity, record, parent);
    if (isDevice(id)) return sizeDevice(entity, parent);
  }
}

ResultList answerOf(const EditedWire& edited) {
  ListBuilder answer;
  answer.beginList();
  answer.beginList().addEntity(edited.entity).addText(edited.wire).addText(fixedThirdElement).endList();
  // The current is that of the current circuit, also for a placed circuit.
  answer.splice(
      rowsToList(sizeComponents(edited.motorType, circuitData().fla, TypeFormulas::optional, lentTables())));
  return answer.endList().take();
}

} // namespace

ResultList editWireSize(const ResultList& arguments) {
  KvWindow* const frame = kvedGetKorvoFrame();
  const ListReader reader(arguments);
  std::optional<EditedWire> edited;
  if (reader.atEnd() || reader.isNil()) {
    if (frame == nullptr) return {};
    edited = editPicked(frame);
  } else {
    const std::optional<KvEntityName> entity = reader.entityName();
    KvDbObjectId id;
    if (!entity || kvdbGetObjectId(id, *entity) != KvDbStatus::ok) return {};
    ZanCircParams record;
    if (readCircParams(id, record) != RecordStatus::ok) return {};
    edited = editPlacedCircuit(*entity, record, frame);
  }
  return edited ? answerOf(*edited) : ResultList();
}

} // namespace brenvolt
