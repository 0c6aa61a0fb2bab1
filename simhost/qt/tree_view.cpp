// The items of a tree as widgets, by id.
#include "simhost/qt/tree_view.h"

#include "simhost/qt/circuit_facts.h"
#include "simhost/qt/icons.h"
#include "simhost/qt/qt_dialog.h"
#include "simhost/qt/qt_text.h"
#include "simhost/qt/search_field.h"
#include "text/encoding.h"

#include <QHeaderView>
#include <QTreeWidget>

#include <nlohmann/json.hpp>

#include <algorithm>
#include <functional>
#include <map>

namespace simhost {

using brenvolt::toUtf8;
using Json = nlohmann::ordered_json;

namespace {

constexpr int idRole = Qt::UserRole;
constexpr int imageRole = Qt::UserRole + 1;

/// Does not choose an item by itself when it gets the keyboard.
class PatientTree final : public QTreeWidget {
public:
  [[nodiscard]] bool isTakingFocus() const { return isTakingFocus_; }

protected:
  void focusInEvent(QFocusEvent* event) override {
    isTakingFocus_ = true;
    QTreeWidget::focusInEvent(event);
    isTakingFocus_ = false;
  }

private:
  bool isTakingFocus_ = false;
};

class TreeView final : public ControlView {
public:
  TreeView(QtDialog& dialog, TreeModel& model, const ControlLook& look)
      : ControlView(dialog, model), items_(model), icons_(look.icons), tree_(new PatientTree) {
    tree_->header()->hide();
    tree_->setUniformRowHeights(true);
    QObject::connect(
        tree_, &QTreeWidget::currentItemChanged, tree_, [this](QTreeWidgetItem* item, QTreeWidgetItem*) {
          if (item == nullptr || tree_->isTakingFocus()) return;
          const int id = item->data(0, idRole).toInt();
          this->dialog().act(actionOf("select", id), [this, id](Gestures& gestures, Json&) {
            return gestures.selectItem(items_, id);
          });
        });
    QObject::connect(tree_, &QTreeWidget::itemDoubleClicked, tree_, [this](QTreeWidgetItem* item) {
      const int id = item->data(0, idRole).toInt();
      this->dialog().act(actionOf("doubleClick", id), [this, id](Gestures& gestures, Json&) {
        return gestures.doubleClickItem(items_, id);
      });
    });
    // The double click means what the dialog makes of it; folding has its own mark.
    tree_->setExpandsOnDoubleClick(false);
    if (!look.hasSearch) return;
    search_ = new SearchField(dialog.words().searchTree);
    search_->onSearch = [this](const QString& text) { search(text); };
    search_->onDown = [this] { selectFirstShown(); };
    search_->onEntered = [&dialog] { dialog.leaveBy(); };
  }
  [[nodiscard]] QWidget& widget() const override { return *tree_; }
  [[nodiscard]] QWidget* searchField() const override { return search_; }

  [[nodiscard]] Json reading() const override {
    Json outline = Json::array();
    const std::function<void(const QTreeWidgetItem*, const std::string&)> walk =
        [&](const QTreeWidgetItem* parent, const std::string& indent) {
          for (int row = 0; row < parent->childCount(); ++row) {
            const QTreeWidgetItem* item = parent->child(row);
            const int image = item->data(0, imageRole).toInt();
            outline.push_back(
                indent + item->text(0).toStdString() +
                (image == 0 ? "" : " [" + std::to_string(image) + "]"));
            walk(item, indent + "  ");
          }
        };
    walk(tree_->invisibleRootItem(), {});
    Json path = Json::array();
    const QList<QTreeWidgetItem*> selected = tree_->selectedItems();
    for (const QTreeWidgetItem* item = selected.isEmpty() ? nullptr : selected.front(); item != nullptr;
         item = item->parent())
      path.insert(path.begin(), item->text(0).toStdString());
    return {{"items", std::move(outline)}, {"path", std::move(path)}};
  }

private:
  /// The path in texts, or in places where a text says too little.
  [[nodiscard]] Json actionOf(const char* verb, int item) const {
    Json path = Json::array();
    for (int at = item; at != 0; at = items_.Parent(at)) {
      const std::vector<int>& siblings = items_.children(items_.Parent(at));
      int place = 0;
      bool isFirst = true;
      for (; siblings[static_cast<std::size_t>(place)] != at; ++place)
        isFirst = isFirst && items_.TextOf(siblings[static_cast<std::size_t>(place)]) != items_.TextOf(at);
      path.insert(path.begin(), isFirst ? Json(toUtf8(items_.TextOf(at))) : Json(place));
    }
    return {{verb, toUtf8(items_.role())}, {"path", std::move(path)}};
  }

  void search(const QString& text) {
    const QStringList words = text.split(QLatin1Char(' '), Qt::SkipEmptyParts);
    // Every word somewhere on the way from the root; what leads to such an item is seen as well.
    const std::function<bool(QTreeWidgetItem&, const QString&)> narrow = [&](QTreeWidgetItem& item,
                                                                             const QString& above) {
      QString path = above + QLatin1Char('\n') + item.text(0);
      if (item.parent() != nullptr && !words.isEmpty()) path += namesBelow(item);
      bool isWanted = std::all_of(words.begin(), words.end(), [&path](const QString& word) {
        return path.contains(word, Qt::CaseInsensitive);
      });
      bool leads = false;
      for (int row = 0; row < item.childCount(); ++row)
        leads = narrow(*item.child(row), path) || leads;
      item.setHidden(!isWanted && !leads);
      if (leads && !words.isEmpty()) item.setExpanded(true);
      return isWanted || leads;
    };
    for (int row = 0; row < tree_->topLevelItemCount(); ++row)
      narrow(*tree_->topLevelItem(row), {});
  }

  /// What is saved of the circuit that the item offers is found as well.
  [[nodiscard]] QString namesBelow(const QTreeWidgetItem& item) const {
    CircuitFacts* facts = dialog().circuitFacts();
    if (facts == nullptr || items_.role() != L"circuits") return {};
    const OfferedCircuit offered{fromQt(item.parent()->text(0)), fromQt(item.text(0)), {}};
    return QLatin1Char('\n') + facts->configurations(offered).join(QLatin1Char('\n'));
  }

  /// The first item without any below it, as those are what is chosen.
  void selectFirstShown() {
    for (QTreeWidgetItem* item = tree_->topLevelItem(0); item != nullptr; item = tree_->itemBelow(item)) {
      if (item->isHidden() || item->childCount() > 0) continue;
      tree_->setFocus(Qt::TabFocusReason);
      tree_->setCurrentItem(item);
      return;
    }
  }

  void show() override {
    if (!fits(tree_->invisibleRootItem(), 0)) build();
    walkItems(0, [this](int id) {
      QTreeWidgetItem& item = *shown_.at(id);
      if (item.data(0, imageRole).toInt() == items_.Image(id) && !item.icon(0).isNull()) return;
      item.setData(0, imageRole, items_.Image(id));
      item.setIcon(0, treeIcon(icons_, items_.Image(id), tree_->palette()));
    });
    for (const int id : items_.takeExpanded())
      if (const auto found = shown_.find(id); found != shown_.end()) found->second->setExpanded(true);
    const auto chosen = shown_.find(items_.Selected());
    QTreeWidgetItem* const wanted = chosen == shown_.end() ? nullptr : chosen->second;
    if (tree_->currentItem() != wanted) tree_->setCurrentItem(wanted);
    if (wanted == nullptr) tree_->clearSelection();
    if (wanted != nullptr) tree_->scrollToItem(wanted);
  }

  [[nodiscard]] bool fits(const QTreeWidgetItem* parent, int id) const {
    const std::vector<int>& children = items_.children(id);
    if (static_cast<std::size_t>(parent->childCount()) != children.size()) return false;
    for (int row = 0; row < parent->childCount(); ++row) {
      const QTreeWidgetItem* item = parent->child(row);
      const int child = children[static_cast<std::size_t>(row)];
      if (item->data(0, idRole).toInt() != child || item->text(0) != toQt(items_.TextOf(child)) ||
          !fits(item, child))
        return false;
    }
    return true;
  }

  /// Anew, with what was folded staying so.
  void build() {
    std::map<int, bool> isOpen;
    for (const auto& [id, item] : shown_)
      isOpen[id] = item->isExpanded();
    tree_->clear();
    shown_.clear();
    shown_[0] = tree_->invisibleRootItem();
    walkItems(0, [&](int id) {
      auto* item = new QTreeWidgetItem(shown_.at(items_.Parent(id)), {toQt(items_.TextOf(id))});
      item->setData(0, idRole, id);
      shown_[id] = item;
    });
    shown_.erase(0);
    for (const auto& [id, open] : isOpen)
      if (const auto found = shown_.find(id); found != shown_.end()) found->second->setExpanded(open);
  }

  void walkItems(int parent, const std::function<void(int)>& visit) const {
    for (const int child : items_.children(parent)) {
      visit(child);
      walkItems(child, visit);
    }
  }

  TreeModel& items_;
  std::wstring icons_;
  PatientTree* tree_;
  SearchField* search_ = nullptr;
  std::map<int, QTreeWidgetItem*> shown_;
};

} // namespace

std::unique_ptr<ControlView> makeTreeView(QtDialog& dialog, TreeModel& model, const ControlLook& look) {
  return std::make_unique<TreeView>(dialog, model, look);
}

} // namespace simhost
