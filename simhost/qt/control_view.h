// The widgets of a dialog, one view for each control: it shows the control's model, and reports the user's actions to
// the dialog. Views decide nothing.
#pragma once

#include "simhost/qt/form_layout.h"
#include "simhost/ui/control_model.h"

#include <QAbstractButton>
#include <QLabel>
#include <QPointer>
#include <QWidget>

#include <nlohmann/json_fwd.hpp>

#include <memory>
#include <vector>

namespace simhost {

class QtDialog;

class ControlView {
public:
  ControlView(QtDialog& dialog, ControlModel& model) : dialog_(dialog), model_(model) {}
  ControlView(const ControlView&) = delete;
  ControlView& operator=(const ControlView&) = delete;
  virtual ~ControlView();

  [[nodiscard]] ControlModel& model() const { return model_; }
  [[nodiscard]] QtDialog& dialog() const { return dialog_; }
  /// The widget in the layout. The window owns it.
  [[nodiscard]] virtual QWidget& widget() const = 0;
  /// What takes the keyboard.
  [[nodiscard]] virtual QWidget& focusWidget() const { return widget(); }
  /// The control that has the focus when the widget has it: of a group its grid.
  [[nodiscard]] virtual ControlModel& focusModel() const { return model_; }
  /// A field that filters the rows of the widget; null for none. It is above the widget.
  [[nodiscard]] virtual QWidget* searchField() const { return nullptr; }
  /// A button beside the widget that belongs to it; null for none.
  [[nodiscard]] virtual QAbstractButton* companion() const { return nullptr; }
  /// Whether its label is on the widget itself.
  [[nodiscard]] virtual bool hasOwnLabel() const { return false; }
  /// What a user can read in the widgets, with the members of `ControlModel::shown`: comparing the two finds a widget
  /// that does not show what it should.
  [[nodiscard]] virtual nlohmann::ordered_json reading() const = 0;

  /// Shows the present state.
  void refresh();
  /// Shows what depends on other controls of the dialog; called when any of them has changed.
  virtual void refreshLinked() {}
  void setLabel(QLabel* label, QLabel* unit);
  [[nodiscard]] QLabel* label() const { return label_; }
  /// The letter that reaches the control; the view puts it into its label.
  void setMnemonic(QChar letter);

protected:
  virtual void show() = 0;
  /// The label with its mnemonic marked.
  [[nodiscard]] QString labelText() const;
  [[nodiscard]] bool isLocked() const;

private:
  QtDialog& dialog_;
  ControlModel& model_;
  QPointer<QLabel> label_;
  QPointer<QLabel> unit_;
  QChar mnemonic_;
};

/// The view of a control's kind.
[[nodiscard]] std::unique_ptr<ControlView> makeView(
    QtDialog& dialog, ControlModel& model, const ControlLook& look);

} // namespace simhost
