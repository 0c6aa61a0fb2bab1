// Labels before their fields, units after them, closing buttons in the platform's order.
#include "simhost/qt/layout_builder.h"

#include "simhost/qt/qt_dialog.h"
#include "simhost/qt/qt_text.h"

#include <QDialog>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QScreen>
#include <QSplitter>
#include <QStyle>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

namespace simhost {

namespace {

enum FieldColumn { labelColumn, fieldColumn, unitColumn };

constexpr std::wstring_view helpRole = L"help";
constexpr std::wstring_view okRole = L"ok";
constexpr std::wstring_view cancelRole = L"cancel";

/// Controls that use all the available space, with the label above.
bool isTall(const ControlView& view) {
  const ControlKind kind = view.model().kind();
  return kind == ControlKind::grid || kind == ControlKind::tree || kind == ControlKind::pages ||
         view.widget().sizePolicy().verticalPolicy() == QSizePolicy::Expanding;
}

/// The sizes of forms are meant for letters of this height, in pixels; larger letters need larger windows.
constexpr double plainLetterHeight = 15.0;
/// Every window fits here: a small screen with a title bar and a panel.
constexpr QSize smallestScreen(1280, 690);

void addTo(QBoxLayout& box, QLayout* layout, int stretch) {
  box.addLayout(layout, stretch);
}

} // namespace

QSplitter* LayoutBuilder::build(const FormLayout& layout) {
  layout_ = &layout;
  auto* column = new QVBoxLayout(&frame_);
  addTo(*column, make(layout.content), 1);
  if (!layout.buttons.empty()) addTo(*column, makeButtons(layout), 0);
  setMnemonics();
  if (layout.width > 0) frame_.resize(firstSize(layout));
  return splitter_;
}

QSize LayoutBuilder::firstSize(const FormLayout& layout) const {
  const double scale = std::max(1.0, frame_.fontMetrics().height() / plainLetterHeight);
  const QSize wanted = (QSizeF(layout.width, layout.height) * scale).toSize();
  const QSize available = frame_.screen()->availableSize();
  return wanted.boundedTo(available.expandedTo(smallestScreen));
}

ControlView& LayoutBuilder::viewOf(const std::wstring& role) const {
  ControlView* view = dialog_.views().of(*dialog_.find(role));
  return *view;
}

QWidget* LayoutBuilder::labelFor(ControlView& view) {
  if (view.hasOwnLabel() || view.model().label().empty()) return nullptr;
  auto* label = new QLabel;
  view.setLabel(label, nullptr);
  return label;
}

QWidget* LayoutBuilder::unitFor(ControlView& view) {
  const auto look = layout_->looks.find(view.model().role());
  if (look == layout_->looks.end() || look->second.unit.empty()) return nullptr;
  auto* unit = new QLabel(toQtPlain(look->second.unit));
  view.setLabel(view.label(), unit);
  return unit;
}

QLayout* LayoutBuilder::make(const LayoutNode& node) {
  switch (node.kind) {
  case LayoutNode::Kind::control:
    return makeControl(node);
  case LayoutNode::Kind::column:
  case LayoutNode::Kind::row:
    return makeBox(node);
  case LayoutNode::Kind::fields:
    return makeFields(node);
  case LayoutNode::Kind::section:
    return makeSection(node);
  case LayoutNode::Kind::split:
    return makeSplit(node);
  case LayoutNode::Kind::space: {
    auto* space = new QHBoxLayout;
    space->addStretch();
    return space;
  }
  }
  return new QHBoxLayout;
}

QLayout* LayoutBuilder::makeControl(const LayoutNode& node) {
  ControlView& view = viewOf(node.text);
  auto* box = new QBoxLayout(isTall(view) ? QBoxLayout::TopToBottom : QBoxLayout::LeftToRight);
  addLabelled(*box, view);
  return box;
}

void LayoutBuilder::addLabelled(QBoxLayout& box, ControlView& view) {
  if (QWidget* label = labelFor(view)) box.addWidget(label);
  if (QWidget* search = view.searchField()) box.addWidget(search);
  box.addWidget(&view.widget(), view.hasOwnLabel() ? 0 : 1);
  if (QWidget* companion = view.companion()) box.addWidget(companion);
  if (QWidget* unit = unitFor(view)) box.addWidget(unit);
}

QLayout* LayoutBuilder::makeBox(const LayoutNode& node) {
  const bool isRow = node.kind == LayoutNode::Kind::row;
  auto* box = new QBoxLayout(isRow ? QBoxLayout::LeftToRight : QBoxLayout::TopToBottom);
  for (const LayoutNode& child : node.children) {
    if (child.kind == LayoutNode::Kind::space) {
      box->addStretch(std::max(child.stretch, 1));
      continue;
    }
    // A unit must not look like a part of the label after it.
    const bool isField = child.kind == LayoutNode::Kind::control && !viewOf(child.text).hasOwnLabel();
    if (isRow && isField && box->count() > 0) box->addSpacing(frame_.fontMetrics().averageCharWidth());
    addTo(*box, make(child), child.stretch);
  }
  return box;
}

QLayout* LayoutBuilder::makeFields(const LayoutNode& node) {
  auto* grid = new QGridLayout;
  grid->setColumnStretch(fieldColumn, 1);
  int line = 0;
  for (const LayoutNode& child : node.children)
    addField(*grid, line++, child);
  // The remaining space is below the fields and not between them.
  grid->setRowStretch(line, 1);
  return grid;
}

void LayoutBuilder::addField(QGridLayout& grid, int line, const LayoutNode& node) {
  if (node.kind == LayoutNode::Kind::row && !node.children.empty()) {
    // The first one labels the line.
    ControlView& first = viewOf(node.children.front().text);
    auto* rest = new QHBoxLayout;
    if (first.hasOwnLabel()) {
      grid.addWidget(&first.widget(), line, labelColumn);
    } else {
      if (QWidget* label = labelFor(first)) grid.addWidget(label, line, labelColumn);
      rest->addWidget(&first.widget(), 1);
      if (QWidget* unit = unitFor(first)) rest->addWidget(unit);
    }
    for (auto child = node.children.begin() + 1; child != node.children.end(); ++child) {
      if (child->kind == LayoutNode::Kind::space)
        rest->addStretch();
      else
        addLabelled(*rest, viewOf(child->text));
    }
    grid.addLayout(rest, line, fieldColumn, 1, 2);
    return;
  }
  if (node.kind != LayoutNode::Kind::control) {
    grid.addLayout(make(node), line, labelColumn, 1, 3);
    return;
  }
  ControlView& view = viewOf(node.text);
  if (view.hasOwnLabel()) {
    const bool isButton = view.model().kind() == ControlKind::button;
    grid.addWidget(&view.widget(), line, labelColumn, 1, 3, isButton ? Qt::AlignLeft : Qt::Alignment());
    return;
  }
  QWidget* const label = labelFor(view);
  QWidget* const unit = unitFor(view);
  if (label != nullptr) grid.addWidget(label, line, labelColumn);
  // Fields end at the same edge, with or without a unit after them.
  const int from = label == nullptr ? labelColumn : fieldColumn;
  grid.addWidget(&view.widget(), line, from, 1, (label == nullptr ? unitColumn : fieldColumn) - from + 1);
  if (unit != nullptr) grid.addWidget(unit, line, unitColumn);
}

QLayout* LayoutBuilder::makeSection(const LayoutNode& node) {
  auto* section = new QGroupBox(toQtPlain(node.text));
  auto* inside = new QVBoxLayout(section);
  addTo(*inside, make(node.children.front()), 1);
  auto* box = new QVBoxLayout;
  box->addWidget(section);
  return box;
}

QLayout* LayoutBuilder::makeSplit(const LayoutNode& node) {
  splitter_ = new QSplitter(Qt::Horizontal);
  splitter_->setChildrenCollapsible(false);
  for (const LayoutNode& child : node.children) {
    auto* side = new QWidget;
    auto* inside = new QVBoxLayout(side);
    inside->setContentsMargins(0, 0, 0, 0);
    addTo(*inside, make(child), 1);
    splitter_->addWidget(side);
    splitter_->setStretchFactor(splitter_->count() - 1, child.stretch);
  }
  auto* box = new QVBoxLayout;
  box->addWidget(splitter_);
  return box;
}

QLayout* LayoutBuilder::makeButtons(const FormLayout& layout) {
  auto* row = new QHBoxLayout;
  const auto add = [&](std::wstring_view role) {
    const auto found = std::find(layout.buttons.begin(), layout.buttons.end(), role);
    if (found != layout.buttons.end()) row->addWidget(&viewOf(*found).widget());
  };
  add(helpRole);
  row->addStretch();
  for (const std::wstring& role : layout.buttons)
    if (role != helpRole && role != okRole && role != cancelRole) row->addWidget(&viewOf(role).widget());
  const int order = frame_.style()->styleHint(QStyle::SH_DialogButtonLayout, nullptr, &frame_);
  const bool isOkLast = order == 1 || order == 3; // macOS and GNOME
  add(isOkLast ? cancelRole : okRole);
  add(isOkLast ? okRole : cancelRole);
  return row;
}

/// Each label gives its first letter that no other one has taken. OK and Cancel have Enter and Escape.
void LayoutBuilder::setMnemonics() {
  QSet<QChar> taken;
  for (const auto& view : dialog_.views()) {
    const std::wstring& role = view->model().role();
    if (role == okRole || role == cancelRole) continue;
    if (view->label() == nullptr && !view->hasOwnLabel()) continue;
    for (const QChar letter : toQt(view->model().label()))
      if (letter.isLetterOrNumber() && !taken.contains(letter.toLower())) {
        taken.insert(letter.toLower());
        view->setMnemonic(letter);
        break;
      }
  }
  for (const auto& view : dialog_.views()) {
    QAbstractButton* const button = view->companion();
    if (button == nullptr) continue;
    QString text = button->text();
    for (qsizetype at = 0; at < text.size(); ++at) {
      if (!text[at].isLetter() || taken.contains(text[at].toLower())) continue;
      taken.insert(text[at].toLower());
      button->setText(text.insert(at, QLatin1Char('&')));
      break;
    }
  }
}

} // namespace simhost
