#include "simhost/gui/unit_markers.h"

#include "circuits/check/sheet_titles.h"
#include "simhost/host/session.h"
#include "simhost/qt/qt_text.h"
#include "simhost/qt/qt_windows.h"
#include "simhost/site/saved_configurations.h"
#include "simhost/site/site_run.h"
#include "text/compare.h"
#include "text/numbers.h"

#include <QTreeWidget>
#include <QTreeWidgetItemIterator>

#include <algorithm>
#include <exception>
#include <utility>

namespace simhost {
namespace {

constexpr std::wstring_view markerBlock = L"ZAN_BV_MARKER_BLOCK";

std::wstring attributeOf(const DrawingDatabase& drawing, const EntityNode& node, std::wstring_view tag) {
  for (const KvDbHandle handle : node.attributes)
    if (const EntityNode* attribute = drawing.find(handle))
      if (const auto& value = std::get<Attribute>(attribute->value.shape);
          brenvolt::equalsOrdinalNoCase(value.tag, tag))
        return value.text.text;
  return {};
}

/// The upper-case CODE of a marker; empty for any other entity.
std::wstring codeOf(const DrawingDatabase& drawing, const EntityNode& node) {
  const auto* reference = std::get_if<BlockReference>(&node.value.shape);
  const BlockNode* block = reference == nullptr ? nullptr : drawing.store().findBlock(reference->block);
  if (block == nullptr || !brenvolt::equalsOrdinalNoCase(block->name, markerBlock)) return {};
  return brenvolt::toUpper(attributeOf(drawing, node, L"CODE"));
}

/// Those of one title, in the order of the tree.
std::vector<QTreeWidgetItem*> itemsOf(QTreeWidget& tree, const QString& title) {
  std::vector<QTreeWidgetItem*> items;
  for (QTreeWidgetItemIterator item(&tree); *item != nullptr; ++item)
    if ((*item)->text(0) == title) items.push_back(*item);
  return items;
}

} // namespace

std::vector<std::wstring> markerCodes(const DrawingDatabase& drawing) {
  std::vector<std::wstring> codes;
  const BlockNode* space = drawing.store().findBlock(drawing.currentSpace());
  for (const EntityNode* node = space->first; node != nullptr; node = node->next)
    if (std::wstring code = codeOf(drawing, *node); !code.empty()) codes.push_back(std::move(code));
  return codes;
}

QTreeWidget* UnitMarkers::tree() const {
  const QtDialog* dialog = windows_.dialogs().beside();
  return dialog == nullptr ? nullptr : dialog->frame().findChild<QTreeWidget*>();
}

/// Of a control of the dialog; empty without it.
std::wstring UnitMarkers::shownText(std::wstring_view role) const {
  const QtDialog* dialog = windows_.dialogs().beside();
  if (dialog == nullptr) return {};
  for (const auto& view : dialog->views())
    if (const auto* text = dynamic_cast<const TextModel*>(&view->model()); text != nullptr)
      if (text->role() == role) return text->Text();
  return {};
}

void UnitMarkers::readTitles() {
  const std::pair circuit(shownText(L"circuit"), shownText(L"type"));
  if (circuit == circuit_) return;
  circuit_ = circuit;
  titles_.clear();
  try {
    const SiteConfigurations site = savedConfigurations(site_.session().options().siteFolder.string());
    for (const brenvolt::SavedConfiguration& type : site.types)
      if (brenvolt::equalsOrdinalNoCase(type.key.circuit, circuit.first) &&
          brenvolt::equalsOrdinalNoCase(type.key.type, circuit.second))
        for (const auto& [code, title] : circuits::readSheetTitles(site.workbook, type.worksheet).byCode)
          titles_[code] = toQt(title);
  } catch (const std::exception&) {
    // The dialog reports a workbook that cannot be read; without titles no marker is lit.
  }
}

std::vector<KvDbHandle> UnitMarkers::markersOf(const QString& title) {
  const DrawingDatabase& drawing = site_.session().documents().current()->drawing();
  std::vector<std::pair<int, KvDbHandle>> markers;
  const BlockNode* space = drawing.store().findBlock(drawing.currentSpace());
  for (const EntityNode* node = space->first; node != nullptr; node = node->next)
    if (const std::wstring code = codeOf(drawing, *node); !code.empty())
      if (const auto known = titles_.find(code); known != titles_.end() && known->second == title)
        markers.emplace_back(brenvolt::toInt(attributeOf(drawing, *node, L"ORDER")), node->handle);
  std::stable_sort(markers.begin(), markers.end(), [](const auto& one, const auto& other) {
    return one.first < other.first;
  });
  std::vector<KvDbHandle> handles;
  for (const auto& [order, handle] : markers)
    handles.push_back(handle);
  return handles;
}

std::optional<KvDbHandle> UnitMarkers::current() {
  QTreeWidget* const units = tree();
  const QTreeWidgetItem* item = units == nullptr ? nullptr : units->currentItem();
  const std::uint64_t change = site_.session().documents().current()->drawing().undoLog().changeCount();
  if (item == shown_ && change == shownChange_) return shownMarker_;
  shown_ = item;
  shownChange_ = change;
  shownMarker_.reset();
  if (item == nullptr) return std::nullopt;
  readTitles();
  const std::vector<QTreeWidgetItem*> items = itemsOf(*units, item->text(0));
  const auto place = static_cast<std::size_t>(std::find(items.begin(), items.end(), item) - items.begin());
  const std::vector<KvDbHandle> markers = markersOf(item->text(0));
  if (place < markers.size()) shownMarker_ = markers[place];
  return shownMarker_;
}

std::set<std::wstring> UnitMarkers::currentCodes() {
  const QTreeWidget* const units = tree();
  const QTreeWidgetItem* item = units == nullptr ? nullptr : units->currentItem();
  if (item == nullptr) return {};
  readTitles();
  std::set<std::wstring> codes;
  for (const auto& [code, title] : titles_)
    if (title == item->text(0)) codes.insert(code);
  return codes;
}

bool UnitMarkers::select(KvDbHandle entity) {
  QTreeWidget* const units = tree();
  const DrawingDatabase& drawing = site_.session().documents().current()->drawing();
  const EntityNode* node = drawing.find(entity);
  if (units == nullptr || node == nullptr) return false;
  readTitles();
  const auto title = titles_.find(codeOf(drawing, *node));
  if (title == titles_.end()) return false;
  const std::vector<KvDbHandle> markers = markersOf(title->second);
  const auto place = std::find(markers.begin(), markers.end(), entity) - markers.begin();
  const std::vector<QTreeWidgetItem*> items = itemsOf(*units, title->second);
  if (place >= std::ssize(items)) return false;
  units->setCurrentItem(items[static_cast<std::size_t>(place)]);
  return true;
}

} // namespace simhost
