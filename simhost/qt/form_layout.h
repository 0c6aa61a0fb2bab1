// The positions of a form's controls on a screen: rows, columns, fields with their labels and units, titled sections,
// splits. docs/answers.md, "Forms", describes the members.
#pragma once

#include "simhost/ui/forms.h"

#include <map>
#include <string>
#include <vector>

namespace simhost {

/// A place that holds a control or other places.
struct LayoutNode {
  enum class Kind { control, column, row, fields, section, split, space };
  Kind kind = Kind::control;
  std::wstring text; ///< role of a control, title of a section
  int stretch = 0;   ///< share of the remaining space
  std::vector<LayoutNode> children;
};

/// How one control is shown.
struct ControlLook {
  std::wstring unit;  ///< beside the field
  std::wstring empty; ///< the text of a list or a grid without entries
  int width = 0;      ///< minimum width in characters; 0 for the default of the kind
  int rows = 0;       ///< of a list: always open with this number of entries; of a text: its number of lines
  bool hasSearch = false; ///< a grid or a tree has a field that filters it
  bool repeats = false;   ///< a button has another one beside it that presses it until nothing changes
  bool isPicture = false; ///< a text names a drawing, whose picture is shown
  std::wstring icons;     ///< of a tree: which pictures its image numbers mean; empty for none
};

struct FormLayout {
  LayoutNode content;
  bool isBeside = false;             ///< the window that shows the drawing can be used while it is open
  std::vector<std::wstring> buttons; ///< in the row that closes the window; the platform puts them in order
  int width = 0;                     ///< at the first opening, 0 for what the controls need
  int height = 0;
  std::map<std::wstring, ControlLook> looks; ///< by role
};

/// Parses the layout of a form; a form without one gets its controls below each other. Throws FormError when a role is
/// missing, occurs twice, or is not one of the form's.
[[nodiscard]] FormLayout readLayout(const Form& form);

} // namespace simhost
