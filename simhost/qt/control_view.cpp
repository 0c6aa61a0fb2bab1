// What all views share, and those of single values: texts, lists, ticks, buttons.
#include "simhost/qt/control_view.h"

#include "simhost/qt/empty_note.h"
#include "simhost/qt/grid_view.h"
#include "simhost/qt/icons.h"
#include "simhost/qt/offered_circuit.h"
#include "simhost/qt/pages_view.h"
#include "simhost/qt/picture_view.h"
#include "simhost/qt/qt_dialog.h"
#include "simhost/qt/qt_text.h"
#include "simhost/qt/tree_view.h"
#include "simhost/ui/pages_model.h"
#include "text/encoding.h"

#include <QCheckBox>
#include <QComboBox>
#include <QHelpEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollBar>
#include <QSignalBlocker>
#include <QStylePainter>
#include <QToolTip>
#include <QWheelEvent>

#include <nlohmann/json.hpp>

#include <algorithm>
#include <utility>

namespace simhost {

using brenvolt::toUtf8;
using Json = nlohmann::ordered_json;

namespace {

/// Between the text of a button and its frame, both sides together.
constexpr int buttonMargin = 10;

std::string readingOf(const QString& text) {
  return text.toStdString();
}

void setShortest(QWidget& widget, int characters) {
  if (characters > 0) widget.setMinimumWidth(widget.fontMetrics().averageCharWidth() * (characters + 3));
}

class TextView final : public ControlView {
public:
  TextView(QtDialog& dialog, TextModel& model, const ControlLook& look)
      : ControlView(dialog, model), text_(model), edit_(new QLineEdit) {
    setShortest(*edit_, look.width);
    QObject::connect(edit_, &QLineEdit::textEdited, edit_, [this](const QString& text) {
      this->dialog().act(
          {{"type", toUtf8(text_.role())}, {"to", readingOf(text)}},
          [this, &text](Gestures& gestures, Json&) { return gestures.type(text_, fromQt(text)); });
    });
  }
  [[nodiscard]] QWidget& widget() const override { return *edit_; }
  [[nodiscard]] Json reading() const override { return {{"text", readingOf(edit_->text())}}; }

private:
  void show() override {
    const QString text = toQt(text_.Text());
    if (edit_->text() != text) {
      edit_->setText(text);
      // Of a text that is too long the beginning is seen.
      if (!edit_->hasFocus()) edit_->setCursorPosition(0);
    }
    edit_->setReadOnly(text_.isReadOnly());
    // Nothing can be typed there, so Tab goes on; a click still marks the text, to copy it.
    edit_->setFocusPolicy(text_.isReadOnly() ? Qt::ClickFocus : Qt::StrongFocus);
    // What can only be read looks like the window, not like a field that waits.
    edit_->setFrame(!text_.isReadOnly());
    QPalette palette = edit_->window()->palette();
    if (text_.isReadOnly()) palette.setColor(QPalette::Base, Qt::transparent);
    edit_->setPalette(palette);
  }

  TextModel& text_;
  QLineEdit* edit_;
};

/// Hears of its list before it opens: another field may be left by that, and the entries may be others then.
class OpeningComboBox final : public QComboBox {
public:
  explicit OpeningComboBox(std::function<bool()> opens) : opens_(std::move(opens)) {}
  void showPopup() override {
    if (!opens_()) return;
    // An entry that is longer than the field is read in full here.
    const int wanted = view()->sizeHintForColumn(0) + view()->verticalScrollBar()->sizeHint().width();
    view()->setMinimumWidth(std::min(wanted, window()->width()));
    QComboBox::showPopup();
  }

protected:
  /// A text that is too long ends in dots, and the tooltip shows the whole text.
  void paintEvent(QPaintEvent* event) override {
    if (isEditable()) return QComboBox::paintEvent(event);
    QStylePainter painter(this);
    QStyleOptionComboBox option;
    initStyleOption(&option);
    option.currentText = fontMetrics().elidedText(option.currentText, Qt::ElideRight, roomForText());
    painter.drawComplexControl(QStyle::CC_ComboBox, option);
    painter.drawControl(QStyle::CE_ComboBoxLabel, option);
  }
  bool event(QEvent* event) override {
    const bool isCut = !isEditable() && fontMetrics().horizontalAdvance(currentText()) > roomForText();
    if (event->type() != QEvent::ToolTip || !isCut) return QComboBox::event(event);
    QToolTip::showText(static_cast<QHelpEvent*>(event)->globalPos(), currentText(), this);
    return true;
  }
  /// A wheel that turns over a list on its way changes nothing.
  void wheelEvent(QWheelEvent* event) override {
    if (hasFocus())
      QComboBox::wheelEvent(event);
    else
      event->ignore();
  }

private:
  [[nodiscard]] int roomForText() const {
    QStyleOptionComboBox option;
    initStyleOption(&option);
    const QRect field =
        style()->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxEditField, this);
    constexpr int styleMargin = 2; // of the text within the field
    return field.width() - styleMargin;
  }

  std::function<bool()> opens_;
};

/// Both ways to show a list report a choice in the same way.
class ListViewBase : public ControlView {
public:
  ListViewBase(QtDialog& dialog, ListModel& model) : ControlView(dialog, model), list_(model) {}

protected:
  [[nodiscard]] ListModel& list() const { return list_; }
  void choose(int index) {
    const std::wstring text = list_.TextAt(index);
    Json action = {{"choose", toUtf8(list_.role())}};
    if (list_.indexOf(text) == index)
      action["to"] = toUtf8(text);
    else
      action["index"] = index;
    dialog().act(std::move(action), [this, index](Gestures& gestures, Json&) {
      return gestures.choose(list_, index);
    });
  }
  [[nodiscard]] QStringList entries() const {
    QStringList texts;
    for (int index = 0; index < list_.Count(); ++index)
      texts.append(toQt(list_.TextAt(index)));
    return texts;
  }

private:
  ListModel& list_;
};

class ComboView final : public ListViewBase {
public:
  ComboView(QtDialog& dialog, ListModel& model, const ControlLook& look)
      : ListViewBase(dialog, model), box_(new OpeningComboBox([this] { return opens(); })) {
    box_->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    box_->setMinimumContentsLength(look.width > 0 ? look.width : 8);
    box_->setMaxVisibleItems(20);
    if (model.isEditable()) {
      box_->setEditable(true);
      box_->setInsertPolicy(QComboBox::NoInsert);
      // Completion would put texts into the field that the user has not typed.
      box_->setCompleter(nullptr);
      QObject::connect(box_->lineEdit(), &QLineEdit::textEdited, box_, [this](const QString& text) {
        this->dialog().act(
            {{"type", toUtf8(list().role())}, {"to", readingOf(text)}},
            [this, &text](Gestures& gestures, Json&) { return gestures.type(list(), fromQt(text)); });
      });
    }
    QObject::connect(box_, &QComboBox::activated, box_, [this](int index) { choose(index); });
    if (dialog.circuitFacts() != nullptr && model.role() == L"history") addTable();
  }
  [[nodiscard]] QWidget& widget() const override { return *box_; }
  [[nodiscard]] QAbstractButton* companion() const override { return table_; }
  [[nodiscard]] Json reading() const override {
    Json choices = Json::array();
    for (int index = 0; index < box_->count(); ++index)
      choices.push_back(readingOf(box_->itemText(index)));
    return {{"choices", std::move(choices)}, {"text", readingOf(box_->currentText())}};
  }

  /// A list that the choices above leave without a meaning can be read, and says why.
  void refreshLinked() override {
    if (list().isEditable() || list().pages() == nullptr || !list().isVisible()) return;
    const QStringList missing = missingFor(dialog().views(), dialog().circuitFacts(), list());
    if (missing.isEmpty() && !isUseless_) return;
    isUseless_ = !missing.isEmpty();
    box_->setEnabled(!isUseless_ && list().isEnabled() && !isLocked());
    box_->setToolTip(
        isUseless_ ? dialog().words().onlyWith.arg(missing.join(QStringLiteral(", ")))
                   : toQt(list().tooltip()));
  }

private:
  /// A button for the saved configurations as a table.
  void addTable() {
    table_ = new QPushButton(dialog().words().configurations);
    table_->setObjectName(QStringLiteral("table"));
    table_->setToolTip(dialog().words().configurationsTip);
    table_->setAccessibleDescription(dialog().words().configurationsTip);
    table_->setFocusPolicy(Qt::TabFocus);
    table_->setAutoDefault(false);
    QObject::connect(table_, &QPushButton::clicked, table_, [this] {
      const QString name =
          dialog().circuitFacts()->chooseConfiguration(offeredCircuit(dialog().views()), table_->window());
      const int index = name.isEmpty() ? -1 : list().indexOf(fromQt(name));
      if (index >= 0) choose(index);
    });
  }

  [[nodiscard]] bool opens() {
    dialog().focusBy(*this);
    return !dialog().isEnded() && box_->isEnabled() && box_->isVisible();
  }

  void show() override {
    const QStringList wanted = entries();
    QStringList shown;
    for (int index = 0; index < box_->count(); ++index)
      shown.append(box_->itemText(index));
    if (shown != wanted) {
      box_->clear();
      box_->addItems(wanted);
    }
    box_->setCurrentIndex(list().Selected());
    if (list().isEditable() && box_->currentText() != toQt(list().Text()))
      box_->setEditText(toQt(list().Text()));
    if (table_ != nullptr) table_->setEnabled(list().isEnabled() && list().Count() > 1);
  }

  QComboBox* box_;
  QPushButton* table_ = nullptr;
  bool isUseless_ = false; ///< nothing that it offers is of use with the choices above
};

/// A list that is always open.
class OpenListView final : public ListViewBase {
public:
  OpenListView(QtDialog& dialog, ListModel& model, const ControlLook& look)
      : ListViewBase(dialog, model), box_(new QListWidget) {
    box_->setMinimumHeight(box_->fontMetrics().height() * look.rows + 2 * box_->frameWidth());
    showWhenEmpty(*box_, toQt(look.empty));
    // Not by the current row: focusing the list makes its first entry current, which is not yet a choice.
    QObject::connect(box_, &QListWidget::itemSelectionChanged, box_, [this] {
      const QList<QListWidgetItem*> selected = box_->selectedItems();
      if (!selected.isEmpty()) choose(box_->row(selected.front()));
    });
  }
  [[nodiscard]] QWidget& widget() const override { return *box_; }
  [[nodiscard]] Json reading() const override {
    Json choices = Json::array();
    for (int index = 0; index < box_->count(); ++index)
      choices.push_back(readingOf(box_->item(index)->text()));
    const QList<QListWidgetItem*> selected = box_->selectedItems();
    const QListWidgetItem* current = selected.isEmpty() ? nullptr : selected.front();
    return {
        {"choices", std::move(choices)},
        {"text", current == nullptr ? std::string() : readingOf(current->text())}};
  }

private:
  void show() override {
    const QStringList wanted = entries();
    QStringList shown;
    for (int index = 0; index < box_->count(); ++index)
      shown.append(box_->item(index)->text());
    if (shown != wanted) {
      box_->clear();
      box_->addItems(wanted);
    }
    box_->setCurrentRow(list().Selected());
    if (list().Selected() < 0) box_->clearSelection();
  }

  QListWidget* box_;
};

class TickView final : public ControlView {
public:
  TickView(QtDialog& dialog, TickModel& model)
      : ControlView(dialog, model), tick_(model),
        button_(
            model.kind() == ControlKind::radio ? static_cast<QAbstractButton*>(new QRadioButton)
                                               : new QCheckBox) {
    // Radio buttons exclude each other by the rules of the form.
    button_->setAutoExclusive(false);
    // A click is one gesture: it leaves the former field and ticks.
    button_->setFocusPolicy(Qt::TabFocus);
    QObject::connect(button_, &QAbstractButton::clicked, button_, [this](bool isOn) {
      const bool wanted = tick_.kind() == ControlKind::radio || isOn;
      this->dialog().act(
          {{"tick", toUtf8(tick_.role())}, {"to", wanted}},
          [this, wanted](Gestures& gestures, Json&) { return gestures.tick(tick_, wanted); });
    });
  }
  [[nodiscard]] QWidget& widget() const override { return *button_; }
  [[nodiscard]] bool hasOwnLabel() const override { return true; }
  [[nodiscard]] Json reading() const override { return {{"checked", button_->isChecked()}}; }

private:
  void show() override {
    button_->setText(labelText());
    button_->setChecked(tick_.IsChecked());
  }

  TickModel& tick_;
  QAbstractButton* button_;
};

class ButtonView final : public ControlView {
public:
  ButtonView(QtDialog& dialog, ButtonModel& model, const ControlLook& look)
      : ControlView(dialog, model), button_(model), push_(new QPushButton) {
    if (look.repeats) makeRepeating();
    push_->setFocusPolicy(Qt::TabFocus);
    push_->setAutoDefault(false);
    push_->setDefault(model.form().isDefault);
    QObject::connect(push_, &QPushButton::clicked, push_, [this] {
      if (button_.role() == L"ok") this->dialog().prepareOk();
      press();
    });
  }
  [[nodiscard]] QWidget& widget() const override { return *push_; }
  [[nodiscard]] bool hasOwnLabel() const override { return true; }
  [[nodiscard]] Json reading() const override {
    Json reading = Json::object();
    if (!push_->icon().isNull()) reading["image"] = image_;
    return reading;
  }
  [[nodiscard]] QAbstractButton* companion() const override { return repeating_; }

private:
  void press() {
    dialog().act({{"press", toUtf8(button_.role())}}, [this](Gestures& gestures, Json&) {
      return gestures.press(button_);
    });
  }

  void makeRepeating() {
    repeating_ = new QPushButton(dialog().words().insertEverything);
    repeating_->setObjectName(QStringLiteral("repeat"));
    repeating_->setToolTip(dialog().words().insertEverythingTip);
    repeating_->setAccessibleDescription(dialog().words().insertEverythingTip);
    repeating_->setFocusPolicy(Qt::TabFocus);
    repeating_->setAutoDefault(false);
    QObject::connect(repeating_, &QPushButton::clicked, repeating_, [this] { pressUntilNothingChanges(); });
  }

  /// What is inserted may bring units of its own, which wait then.
  void pressUntilNothingChanges() {
    const auto treesNow = [this] {
      std::string texts;
      for (const ControlModel* control : dialog().controls())
        if (control->kind() == ControlKind::tree) texts += control->shown().dump();
      return texts;
    };
    std::string before;
    do {
      before = treesNow();
      press();
    } while (!dialog().isEnded() && button_.isEnabled() && treesNow() != before);
  }

  void show() override {
    if (repeating_ != nullptr) repeating_->setEnabled(button_.isEnabled() && !isLocked());
    push_->setText(labelText());
    // The style leaves no margin beside a text that is longer than its smallest button.
    const int textWidth = push_->fontMetrics().size(Qt::TextShowMnemonic, push_->text()).width();
    push_->setMinimumWidth(textWidth + 2 * push_->fontMetrics().averageCharWidth() + buttonMargin);
    if (image_ == button_.image()) return;
    image_ = button_.image();
    push_->setIcon(buttonIcon(image_, push_->palette()));
  }

  ButtonModel& button_;
  QPushButton* push_;
  QPushButton* repeating_ = nullptr;
  unsigned image_ = 0;
};

} // namespace

ControlView::~ControlView() = default;

void ControlView::setLabel(QLabel* label, QLabel* unit) {
  label_ = label;
  unit_ = unit;
  if (label_ != nullptr) label_->setBuddy(&focusWidget());
}

void ControlView::setMnemonic(QChar letter) {
  mnemonic_ = letter;
  refresh();
}

QString ControlView::labelText() const {
  QString text = toQtPlain(model_.label());
  if (mnemonic_.isNull()) return text;
  const qsizetype at = text.indexOf(mnemonic_, 0, Qt::CaseInsensitive);
  return at < 0 ? text : text.insert(at, QLatin1Char('&'));
}

bool ControlView::isLocked() const {
  const PagesModel* pages = model_.pages();
  return pages != nullptr && pages->IsLocked(model_.page());
}

void ControlView::refresh() {
  QWidget& shown = widget();
  const QSignalBlocker quiet(&focusWidget());
  show();
  const bool isEnabled = model_.isEnabled() && !isLocked();
  shown.setEnabled(isEnabled);
  shown.setVisible(model_.isVisible());
  shown.setToolTip(toQt(model_.tooltip()));
  if (shown.objectName().isEmpty()) shown.setObjectName(toQt(model_.role()));
  focusWidget().setAccessibleName(toQt(model_.label()));
  focusWidget().setAccessibleDescription(toQt(model_.tooltip()));
  for (QLabel* beside : {label_.data(), unit_.data()})
    if (beside != nullptr) {
      beside->setVisible(model_.isVisible());
      beside->setEnabled(isEnabled);
      beside->setToolTip(shown.toolTip());
    }
  if (label_ == nullptr) return;
  label_->setText(labelText());
  // The line below a letter parts the text, which is then a little wider than what the label counts with.
  label_->setMinimumWidth(label_->sizeHint().width() + 2);
}

std::unique_ptr<ControlView> makeView(QtDialog& dialog, ControlModel& model, const ControlLook& look) {
  if (auto* group = dynamic_cast<GroupModel*>(&model)) return makeGroupView(dialog, *group);
  switch (model.kind()) {
  case ControlKind::text:
    if (look.isPicture) return makePictureView(dialog, dynamic_cast<TextModel&>(model));
    return std::make_unique<TextView>(dialog, dynamic_cast<TextModel&>(model), look);
  case ControlKind::list:
    if (look.rows > 0) return std::make_unique<OpenListView>(dialog, dynamic_cast<ListModel&>(model), look);
    return std::make_unique<ComboView>(dialog, dynamic_cast<ListModel&>(model), look);
  case ControlKind::editableList:
    return std::make_unique<ComboView>(dialog, dynamic_cast<ListModel&>(model), look);
  case ControlKind::tick:
  case ControlKind::radio:
    return std::make_unique<TickView>(dialog, dynamic_cast<TickModel&>(model));
  case ControlKind::button:
    return std::make_unique<ButtonView>(dialog, dynamic_cast<ButtonModel&>(model), look);
  case ControlKind::tree:
    return makeTreeView(dialog, dynamic_cast<TreeModel&>(model), look);
  case ControlKind::grid:
    return makeGridView(dialog, dynamic_cast<GridModel&>(model), look);
  case ControlKind::pages:
    return makePagesView(dialog, dynamic_cast<PagesModel&>(model));
  }
  return nullptr;
}

} // namespace simhost
