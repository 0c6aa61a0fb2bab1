// The model of each control, independent of its display: the state that a flow sets and reads. A model raises no event
// itself (except for the tree's selection); the user's actions are applied through Gestures.
#pragma once

#include "host/host_api_ui.h"
#include "simhost/ui/forms.h"

#include <nlohmann/json_fwd.hpp>

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace simhost {

class DialogModel;
class PagesModel;

/// What all kinds of control have in common.
class ControlModel {
public:
  ControlModel(DialogModel& dialog, FormControl form);
  ControlModel(const ControlModel&) = delete;
  ControlModel& operator=(const ControlModel&) = delete;
  virtual ~ControlModel();

  [[nodiscard]] virtual KvUiControl& face() = 0;
  [[nodiscard]] const FormControl& form() const { return form_; }
  [[nodiscard]] const std::wstring& role() const { return form_.role; }
  [[nodiscard]] ControlKind kind() const { return form_.kind; }
  [[nodiscard]] DialogModel& dialog() const { return dialog_; }

  [[nodiscard]] bool isEnabled() const { return isEnabled_; }
  [[nodiscard]] bool isVisible() const { return isVisible_; }
  [[nodiscard]] bool hasFocus() const;
  [[nodiscard]] const std::wstring& tooltip() const { return tooltip_; }
  [[nodiscard]] const std::wstring& label() const { return label_; }

  /// The page of the control; null and 0 for one directly on the form.
  [[nodiscard]] PagesModel* pages() const { return pages_; }
  [[nodiscard]] int page() const { return page_; }
  void setPlace(PagesModel& pages, int page);

  /// The visible state, for recordings: only what differs from a plain, empty control.
  [[nodiscard]] nlohmann::ordered_json shown() const;

protected:
  virtual void describe(nlohmann::ordered_json& shown) const = 0;
  /// Something that is shown has changed.
  void touch();
  /// Sets and touches, if the value is another one.
  template <typename Value>
  void change(Value& member, Value value) {
    if (member == value) return;
    member = std::move(value);
    touch();
  }
  void takeFocus();
  void setEnabled(bool enabled) { change(isEnabled_, enabled); }
  void setVisible(bool visible) { change(isVisible_, visible); }
  void setTooltip(std::wstring_view text) { change(tooltip_, std::wstring(text)); }
  void setLabel(std::wstring_view text) { change(label_, std::wstring(text)); }

private:
  DialogModel& dialog_;
  const FormControl form_;
  std::wstring label_;
  std::wstring tooltip_;
  bool isEnabled_;
  bool isVisible_;
  PagesModel* pages_ = nullptr;
  int page_ = 0;
};

/// Answers the common part of a control's face from the model.
template <typename Face>
class ModelOf : public Face, public ControlModel {
public:
  using ControlModel::ControlModel;
  [[nodiscard]] KvUiControl& face() override { return *this; }
  void Enable(bool enabled) override { setEnabled(enabled); }
  [[nodiscard]] bool IsEnabled() const override { return isEnabled(); }
  void Show(bool visible) override { setVisible(visible); }
  void SetFocus() override { takeFocus(); }
  [[nodiscard]] bool HasFocus() const override { return hasFocus(); }
  void SetTooltip(std::wstring_view text) override { setTooltip(text); }
  void SetLabel(std::wstring_view text) override { setLabel(text); }
  [[nodiscard]] std::wstring Label() const override { return label(); }
};

class TextModel final : public ModelOf<KvUiText> {
public:
  TextModel(DialogModel& dialog, FormControl form);
  void SetText(std::wstring_view text) override { change(text_, std::wstring(text)); }
  [[nodiscard]] std::wstring Text() const override { return text_; }
  void SetReadOnly(bool readOnly) override { change(isReadOnly_, readOnly); }
  [[nodiscard]] bool isReadOnly() const { return isReadOnly_; }

private:
  void describe(nlohmann::ordered_json& shown) const override;

  std::wstring text_;
  bool isReadOnly_;
};

class ListModel final : public ModelOf<KvUiList> {
public:
  using ModelOf::ModelOf;
  /// Empties the edit field too.
  void Clear() override;
  int Insert(int index, std::wstring_view text, int data) override;
  void Remove(int index) override;
  [[nodiscard]] int Count() const override { return static_cast<int>(entries_.size()); }
  /// Empty and 0 for an index that is not there.
  [[nodiscard]] std::wstring TextAt(int index) const override;
  [[nodiscard]] int DataAt(int index) const override;
  void Select(int index) override;
  [[nodiscard]] int Selected() const override { return selected_; }
  [[nodiscard]] std::wstring Text() const override;
  /// Selects the entry with this text, none when there is none; an editable list keeps the text in any case.
  void SetText(std::wstring_view text) override;

  [[nodiscard]] bool isEditable() const { return kind() == ControlKind::editableList; }
  /// The index of the first entry of this very text, -1 without one.
  [[nodiscard]] int indexOf(std::wstring_view text) const;

private:
  struct Entry {
    std::wstring text;
    int data = 0;
  };
  [[nodiscard]] bool has(int index) const { return index >= 0 && index < Count(); }
  void describe(nlohmann::ordered_json& shown) const override;

  std::vector<Entry> entries_;
  int selected_ = -1;
  std::wstring text_; ///< of the edit field
};

class TickModel final : public ModelOf<KvUiTick> {
public:
  TickModel(DialogModel& dialog, FormControl form);
  /// Checking a radio button takes the check from the others of its group.
  void SetChecked(bool checked) override;
  [[nodiscard]] bool IsChecked() const override { return isChecked_; }

private:
  void describe(nlohmann::ordered_json& shown) const override;

  bool isChecked_;
};

class ButtonModel final : public ModelOf<KvUiButton> {
public:
  using ModelOf::ModelOf;
  void SetImage(unsigned image) override { change(image_, image); }
  [[nodiscard]] unsigned image() const { return image_; }

private:
  void describe(nlohmann::ordered_json& shown) const override;

  unsigned image_ = 0;
};

} // namespace simhost
