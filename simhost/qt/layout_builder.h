// Puts the widgets of a dialog into the places that the layout of its form names.
#pragma once

#include "simhost/qt/form_layout.h"

#include <QSet>
#include <QString>

class QBoxLayout;
class QDialog;
class QSize;
class QGridLayout;
class QLayout;
class QSplitter;
class QWidget;

namespace simhost {

class ControlView;
class QtDialog;

class LayoutBuilder final {
public:
  LayoutBuilder(QtDialog& dialog, QDialog& frame) : dialog_(dialog), frame_(frame) {}

  /// Answers the splitter of the layout, null without one.
  QSplitter* build(const FormLayout& layout);

private:
  [[nodiscard]] QSize firstSize(const FormLayout& layout) const;
  [[nodiscard]] ControlView& viewOf(const std::wstring& role) const;
  [[nodiscard]] QLayout* make(const LayoutNode& node);
  [[nodiscard]] QLayout* makeControl(const LayoutNode& node);
  [[nodiscard]] QLayout* makeBox(const LayoutNode& node);
  [[nodiscard]] QLayout* makeFields(const LayoutNode& node);
  [[nodiscard]] QLayout* makeSection(const LayoutNode& node);
  [[nodiscard]] QLayout* makeSplit(const LayoutNode& node);
  [[nodiscard]] QLayout* makeButtons(const FormLayout& layout);
  void addField(QGridLayout& grid, int line, const LayoutNode& node);
  void addLabelled(QBoxLayout& box, ControlView& view);
  /// The label of a control that carries none itself; null when it has none at all.
  [[nodiscard]] QWidget* labelFor(ControlView& view);
  [[nodiscard]] QWidget* unitFor(ControlView& view);
  void setMnemonics();

  QtDialog& dialog_;
  QDialog& frame_;
  const FormLayout* layout_ = nullptr;
  QSplitter* splitter_ = nullptr;
};

} // namespace simhost
