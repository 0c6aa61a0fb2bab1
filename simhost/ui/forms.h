// Forms: the controls of a dialog, each with its role and kind, in tab order. They contain no layout: a screen has its
// own, found by the same roles, and the scripted windows need none.
#pragma once

#include <filesystem>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace simhost {

/// A form that cannot be used; the message names file and control.
class FormError final : public std::runtime_error {
public:
  using std::runtime_error::runtime_error;
};

enum class ControlKind { text, list, editableList, tick, radio, button, tree, grid, pages };

/// The kind's name in form files.
[[nodiscard]] std::string_view nameOf(ControlKind kind);

/// The state of a control when the dialog opens.
struct FormControl {
  std::wstring role;
  ControlKind kind = ControlKind::text;
  std::wstring label;
  std::wstring tooltip;
  std::string layout;      ///< as it is written, empty without one: for a screen to read
  std::wstring group;      ///< of a radio button: those of one group exclude each other
  bool isReadOnly = false; ///< text
  bool isEnabled = true;
  bool isVisible = true;
  bool isDefault = false;  ///< button that Enter presses, outside of fields and grids
  bool isChecked = false;  ///< tick, radio
  bool isEditable = false; ///< grid
};

struct Form {
  std::wstring name;
  std::wstring title;
  std::string layout;                ///< as it is written, empty without one: for a screen to read
  std::vector<FormControl> controls; ///< in tab order
};

/// The first members of every form file.
inline constexpr std::string_view formFormat = "brenvolt-form";
inline constexpr int formVersion = 1;

/// Names in answers and recordings that no control may have: they are used for the dialog itself.
inline constexpr std::string_view dialogRole = "dialog";

/// Parses a form file; `fileName` is for messages. Throws FormError.
[[nodiscard]] Form parseForm(std::string_view bytes, const std::string& name, const std::string& fileName);

/// Reads the file of a form, `<folder>/<name>.json`, with its texts in a language of two letters, if they exist.
/// Throws FormError, also when the file does not exist.
[[nodiscard]] Form loadForm(
    const std::filesystem::path& folder, std::wstring_view name, const std::string& language = "en");

} // namespace simhost
