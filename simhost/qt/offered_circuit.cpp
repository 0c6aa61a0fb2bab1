// Reading the controls.
#include "simhost/qt/offered_circuit.h"

#include "simhost/qt/qt_text.h"
#include "simhost/ui/tree_model.h"

#include <QAbstractButton>

namespace simhost {

OfferedCircuit offeredCircuit(const ViewSet& views) {
  OfferedCircuit offered;
  for (const auto& view : views) {
    const ControlModel& model = view->model();
    if (const auto* tree = dynamic_cast<const TreeModel*>(&model); tree != nullptr) {
      const std::vector<std::wstring> path = tree->path(tree->Selected());
      if (model.role() == L"circuits" && path.size() > 1) {
        offered.circuit = path[0];
        offered.type = path[1];
      }
    } else if (const auto* text = dynamic_cast<const TextModel*>(&model); text != nullptr) {
      if (model.role() == L"circuit") offered.circuit = text->Text();
      if (model.role() == L"type") offered.type = text->Text();
    } else if (const auto* list = dynamic_cast<const ListModel*>(&model); list != nullptr) {
      // The first entry stands for the default choices.
      if (model.role() == L"history" && list->Selected() > 0)
        offered.configuration = list->TextAt(list->Selected());
    }
  }
  return offered;
}

QStringList missingFor(const ViewSet& views, CircuitFacts* facts, const ListModel& list) {
  QString unit;
  for (const auto& view : views)
    if (const auto* tree = dynamic_cast<const TreeModel*>(&view->model()); tree != nullptr)
      unit = toQt(tree->TextOf(tree->Selected()));
  if (facts == nullptr || list.pages() == nullptr || unit.isEmpty()) return {};
  const QStringList wanted = facts->onlyWith(offeredCircuit(views), unit, toQt(list.label()));
  if (wanted.isEmpty()) return {};
  for (const auto& view : views) {
    const auto* other = dynamic_cast<const ListModel*>(&view->model());
    if (other == nullptr || other == &list || other->pages() != list.pages() || other->page() != list.page())
      continue;
    if (other->Selected() >= 0 &&
        wanted.contains(toQt(other->TextAt(other->Selected())), Qt::CaseInsensitive))
      return {};
  }
  return wanted;
}

void insertWhatWaits(const ViewSet& views) {
  for (const auto& view : views)
    if (QAbstractButton* rest = view->companion();
        rest != nullptr && view->model().kind() == ControlKind::button)
      if (rest->isEnabled()) return rest->click();
}

} // namespace simhost
