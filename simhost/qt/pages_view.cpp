// Pages as a stack, lists with their labels above, groups with their header buttons.
#include "simhost/qt/pages_view.h"

#include "simhost/qt/circuit_facts.h"
#include "simhost/qt/grid_view.h"
#include "simhost/qt/icons.h"
#include "simhost/qt/offered_circuit.h"
#include "simhost/qt/qt_dialog.h"
#include "simhost/qt/qt_text.h"
#include "text/encoding.h"

#include <QFrame>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QScrollArea>
#include <QStackedWidget>
#include <QToolButton>
#include <QVBoxLayout>

#include <nlohmann/json.hpp>

#include <map>
#include <utility>

namespace simhost {

using brenvolt::toUtf8;
using Json = nlohmann::ordered_json;

namespace {

class StackedPages final : public PagesView {
public:
  StackedPages(QtDialog& dialog, PagesModel& model)
      : PagesView(dialog, model), pages_(model), stack_(new QStackedWidget), empty_(new QWidget) {
    stack_->addWidget(empty_);
    stack_->setFrameShape(QFrame::StyledPanel);
    // A title and a value beside each other.
    constexpr int characters = 32;
    stack_->setMinimumSize(stack_->fontMetrics().averageCharWidth() * characters, 120);
  }
  [[nodiscard]] QWidget& widget() const override { return *stack_; }
  [[nodiscard]] Json reading() const override {
    Json reading = {{"page", 0}};
    for (const auto& [id, page] : shown_)
      if (stack_->currentWidget() == page.area) reading["page"] = id;
    return reading;
  }

  void addControl(ControlView& view) override {
    Page& page = pageOf(view.model().page());
    const bool isGroup = dynamic_cast<GroupModel*>(&view.model()) != nullptr;
    if (!isGroup) {
      auto* label = new QLabel;
      page.column->insertWidget(page.column->count() - belowControls, label);
      view.setLabel(label, nullptr);
    }
    page.column->insertWidget(page.column->count() - belowControls, &view.widget());
  }

  /// Ratings and parts that a build finds by itself are in no cell of the page: they are shown in empty ones and, with the
  /// tags of all components, below.
  void refreshLinked() override {
    CircuitFacts* facts = dialog().circuitFacts();
    const int id = pages_.ShownPage();
    if (facts == nullptr || id == 0 || pages_.role() != L"settings") return;
    Page& page = pageOf(id);
    const QString drawn = facts->drawnByUnit();
    page.drawn->setText(drawn);
    page.drawn->setVisible(!drawn.isEmpty());
    page.note->setVisible(pages_.controlsOf(id).empty() && drawn.isEmpty());
    for (ControlModel* control : pages_.controlsOf(id))
      if (auto* group = dynamic_cast<CellGroupView*>(dialog().views().of(*control)))
        group->showDrawn(
            drawn.isEmpty() ? QStringList()
                            : facts->drawnInGroup(offeredCircuit(dialog().views()), toQt(control->label())));
  }

private:
  static constexpr int belowControls = 2; ///< the stretch, and what the unit has drawn
  struct Page {
    QScrollArea* area = nullptr;
    QVBoxLayout* column = nullptr;
    QLabel* note = nullptr;  ///< in place of controls, while there are none
    QLabel* drawn = nullptr; ///< what the unit has drawn
  };

  Page& pageOf(int id) {
    Page& page = shown_[id];
    if (page.area != nullptr) return page;
    page.area = new QScrollArea;
    page.area->setWidgetResizable(true);
    page.area->setFrameShape(QFrame::NoFrame);
    page.area->setFocusPolicy(Qt::NoFocus);
    auto* inside = new QWidget;
    page.column = new QVBoxLayout(inside);
    page.note = new QLabel(dialog().words().nothingToSet);
    page.note->setEnabled(false);
    page.note->setWordWrap(true);
    page.column->addWidget(page.note);
    page.column->addStretch();
    page.drawn = new QLabel;
    page.drawn->setObjectName(QStringLiteral("drawnByUnit"));
    page.drawn->setTextFormat(Qt::PlainText);
    page.drawn->setWordWrap(true);
    page.drawn->setTextInteractionFlags(Qt::TextSelectableByMouse);
    page.drawn->hide();
    page.column->addWidget(page.drawn);
    page.area->setWidget(inside);
    stack_->addWidget(page.area);
    return page;
  }

  void show() override {
    for (auto page = shown_.begin(); page != shown_.end();) {
      if (pages_.hasPage(page->first)) {
        ++page;
        continue;
      }
      page->second.area->deleteLater();
      stack_->removeWidget(page->second.area);
      page = shown_.erase(page);
    }
    const int id = pages_.ShownPage();
    if (id == 0) {
      stack_->setCurrentWidget(empty_);
      return;
    }
    Page& page = pageOf(id);
    page.note->setVisible(pages_.controlsOf(id).empty());
    stack_->setCurrentWidget(page.area);
    // Whether a page is locked is seen on its controls.
    for (ControlModel* control : pages_.controlsOf(id))
      if (ControlView* view = dialog().views().of(*control)) view->refresh();
  }

  PagesModel& pages_;
  QStackedWidget* stack_;
  QWidget* empty_;
  std::map<int, Page> shown_;
};

class GroupView final : public CellGroupView {
public:
  GroupView(QtDialog& dialog, GroupModel& model)
      : CellGroupView(dialog, model), group_(model), frame_(new QWidget), title_(new QLabel),
        buttons_(new QHBoxLayout), table_(makeGridTable(dialog, model.grid())) {
    auto* column = new QVBoxLayout(frame_);
    column->setContentsMargins(0, 0, 0, 0);
    auto* head = new QHBoxLayout;
    QFont bold = title_->font();
    bold.setBold(true);
    title_->setFont(bold);
    head->addWidget(title_, 1);
    head->addLayout(buttons_);
    column->addLayout(head);
    column->addWidget(table_);
    table_->horizontalHeader()->hide();
    table_->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    table_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  }
  [[nodiscard]] QWidget& widget() const override { return *frame_; }
  [[nodiscard]] QWidget& focusWidget() const override { return *table_; }
  [[nodiscard]] ControlModel& focusModel() const override { return group_.grid(); }
  [[nodiscard]] bool hasOwnLabel() const override { return true; }
  void showDrawn(const QStringList& texts) override { table_->showDrawn(texts); }
  [[nodiscard]] Json reading() const override {
    Json reading = table_->reading();
    reading.erase("header");
    Json tips = Json::array();
    for (int place = 0; place < buttons_->count(); ++place)
      tips.push_back(buttons_->itemAt(place)->widget()->toolTip().toStdString());
    if (!tips.empty()) reading["buttons"] = std::move(tips);
    return reading;
  }

private:
  void show() override {
    title_->setText(labelText());
    if (shownButtons_ != imagesOf(group_.buttons())) buildButtons();
    table_->refresh();
    // All rows are seen: the page scrolls, not the group.
    const int rows = table_->model()->rowCount();
    table_->setFixedHeight(
        table_->verticalHeader()->defaultSectionSize() * std::max(rows, 1) + 2 * table_->frameWidth());
  }

  [[nodiscard]] static std::vector<std::pair<unsigned, std::wstring>> imagesOf(
      const std::vector<KvUiGroupButton>& buttons) {
    std::vector<std::pair<unsigned, std::wstring>> images;
    images.reserve(buttons.size());
    for (const KvUiGroupButton& button : buttons)
      images.emplace_back(button.image, button.tip);
    return images;
  }

  void buildButtons() {
    shownButtons_ = imagesOf(group_.buttons());
    while (QLayoutItem* item = buttons_->takeAt(0)) {
      item->widget()->deleteLater();
      delete item;
    }
    for (std::size_t place = 0; place < group_.buttons().size(); ++place) {
      const KvUiGroupButton& button = group_.buttons()[place];
      auto* shown = new QToolButton;
      shown->setIcon(buttonIcon(button.image, shown->palette()));
      shown->setToolTip(toQt(button.tip));
      shown->setAccessibleName(toQt(button.tip));
      shown->setAutoRaise(true);
      shown->setFocusPolicy(Qt::TabFocus);
      if (shown->icon().isNull()) shown->setText(toQtPlain(button.tip));
      const int number = static_cast<int>(place);
      QObject::connect(shown, &QToolButton::clicked, shown, [this, number] {
        dialog().act(
            {{"press", toUtf8(group_.role())}, {"button", number}},
            [this, number](Gestures& gestures, Json&) { return gestures.pressInGroup(group_, number); });
      });
      buttons_->addWidget(shown);
    }
  }

  GroupModel& group_;
  QWidget* frame_;
  QLabel* title_;
  QHBoxLayout* buttons_;
  GridTable* table_;
  std::vector<std::pair<unsigned, std::wstring>> shownButtons_;
};

} // namespace

std::unique_ptr<PagesView> makePagesView(QtDialog& dialog, PagesModel& model) {
  return std::make_unique<StackedPages>(dialog, model);
}

std::unique_ptr<ControlView> makeGroupView(QtDialog& dialog, GroupModel& model) {
  return std::make_unique<GroupView>(dialog, model);
}

} // namespace simhost
