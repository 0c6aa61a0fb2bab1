// The value of the circuit selection for the parent product's LISP: the template to insert, then the first arguments
// of `zan_bv_build_circuit`, in order.
#include "plugin/handlers/select_circuit.h"

#include "build/host_session.h"
#include "build/undo_manager.h"
#include "flows/dlg_circuit.h"
#include "flows/existing_circuit.h"
#include "host/host_api_documents.h"
#include "host/lisp_calls.h"
#include "host/lisp_symbols.h"
#include "plugin/process_record.h"

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace brenvolt {

namespace {

/// The state of the drawing before the template's insertion.
struct DrawingPosition {
  std::wstring lastHandle; ///< empty in an empty drawing
  std::int32_t undo = 0;
};

DrawingPosition drawingPosition() {
  DrawingPosition position;
  KvDbDatabase* database = workingDatabase();
  if (database == nullptr) return position;
  const KvDbHandle last = lastEntityHandle(*database, activeSpaceName());
  position.lastHandle = handleToText(last).value_or(std::wstring());
  position.undo = ZanUndoManager::position(database);
  return position;
}

void addBuildArguments(const CircuitSelection& selection, ListBuilder& answer) {
  const DrawingPosition position = drawingPosition();
  answer.beginList()
      .addText(selection.workbookPath)
      .addText(selection.circuit.worksheet)
      .addText(selection.circuit.circuit)
      .addText(selection.circuit.type)
      .addText(selection.historyName)
      .addShort(selection.insertNow ? 1 : 0)
      .addText(position.lastHandle)
      .addShort(static_cast<std::int16_t>(position.undo))
      .endList();
}

void addAnnotations(ZanDlgCircuit& dialog, ListBuilder& answer) {
  std::vector<AnnotationRow> rows = dialog.annotationRows();
  if (rows.empty()) rows = dialog.existingComponentRows();
  if (rows.empty()) {
    answer.addNil();
    return;
  }
  answer.beginList();
  for (const AnnotationRow& row : rows)
    answer.beginList()
        .addText(row.label)
        .addText(row.attribute)
        .addText(row.value)
        .addText(row.extra)
        .endList();
  answer.endList();
}

/// The circuit to start from: whether its components are taken over, then its row without the key.
void addExisting(const CircuitSelection& selection, const ExistingCircuit& existing, ListBuilder& answer) {
  if (!selection.useExisting || !isPicked(existing)) {
    answer.addNil();
    return;
  }
  answer.beginList().addText(selection.useComponents ? L"1" : L"0");
  for (std::size_t position = 0; position < circuitrow::key; ++position)
    answer.addText(existing[position]);
  answer.endList();
}

} // namespace

ResultList selectCircuit(const ResultList& arguments) {
  static_cast<void>(arguments);
  BuildData data;
  // A symbol that cannot be read leaves scales of 1.0 and the default workbook.
  static_cast<void>(readBuildData(data));
  setTrace(data.trace);
  ExistingCircuit& existing = processRecord().existingCircuit;
  ZanDlgCircuit dialog(std::move(data), existing, lentTables().observer, kdsw_korvoMainWnd());
  if (dialog.DoModal() != kvui::ok) return ResultList();
  const CircuitSelection& selection = dialog.selection();
  static_cast<void>(writeBuildData(selection.circuit.circuit, dialog.data()));

  ListBuilder answer;
  answer.beginList().addText(selection.circuit.drawingTemplate);
  addBuildArguments(selection, answer);
  addAnnotations(dialog, answer);
  addExisting(selection, existing, answer);
  return answer.endList().take();
}

} // namespace brenvolt
