// A running dialog without its display: the controls of its form by role, the focus, the title, and the changes since
// the last query. The displays, on a screen or without one, derive from it and run it.
#pragma once

#include "simhost/ui/control_model.h"
#include "simhost/ui/dialog_access.h"
#include "simhost/ui/window_system.h"

#include <nlohmann/json_fwd.hpp>

#include <map>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace simhost {

class DialogModel : public DialogWindow {
public:
  DialogModel(const Form& form, CKvUiDialog& dialog);
  ~DialogModel() override;

  [[nodiscard]] KvUiControl* control(std::wstring_view role) override;
  void setTitle(std::wstring_view title) override { title_ = title; }
  /// The keys of a screen's tooltip file; nothing to see without one.
  void setTooltips(const std::wstring&, const std::wstring&, int) override {}
  /// False while the host has the editor already.
  bool beginEditorCommand() override;
  void completeEditorCommand() override { hasGivenEditor_ = false; }

  [[nodiscard]] const std::wstring& name() const { return name_; }
  [[nodiscard]] const std::wstring& title() const { return title_; }
  [[nodiscard]] bool hasGivenEditor() const { return hasGivenEditor_; }
  /// A dialog inside another one ends with it.
  [[nodiscard]] bool isEnded() const { return access_.isEnded() || (outer_ != nullptr && outer_->isEnded()); }
  [[nodiscard]] KvUiDialogAccess& access() { return access_; }
  void raise(const KvUiEvent& event) { access_.event(event); }

  /// The control of a role, also "<pages>.<page>.<place>", null without one.
  [[nodiscard]] ControlModel* find(std::wstring_view role) const;
  /// Those of the form in tab order, then those on pages as they were made.
  [[nodiscard]] const std::vector<ControlModel*>& controls() const { return order_; }
  virtual void add(std::unique_ptr<ControlModel> control);
  /// Removes a control from the dialog; it stays alive for its holders.
  virtual void forget(ControlModel& control);

  [[nodiscard]] ControlModel* focus() const { return focus_; }
  void setFocus(ControlModel* control) { focus_ = control; }

  virtual void touched(ControlModel& control) { touched_.insert(&control); }
  /// What is shown of all controls; empty descriptions are left out.
  [[nodiscard]] nlohmann::ordered_json shown();
  /// What is shown otherwise than at the last call of this or of `shown`: by role, member by member.
  [[nodiscard]] nlohmann::ordered_json changes();

private:
  struct Seen;

  std::wstring name_;
  std::wstring title_;
  KvUiDialogAccess access_;
  const DialogModel* outer_ = nullptr; ///< of a dialog that is embedded in another one
  std::vector<std::unique_ptr<ControlModel>> owned_;
  std::vector<ControlModel*> order_;
  std::map<std::wstring, ControlModel*, std::less<>> byRole_;
  ControlModel* focus_ = nullptr;
  bool hasGivenEditor_ = false;
  std::set<ControlModel*> touched_; ///< reported in the order of `order_`
  std::unique_ptr<Seen> seen_;
};

} // namespace simhost
