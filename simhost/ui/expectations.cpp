// Compares the shown state with the expectations of an answer file.
#include "simhost/ui/expectations.h"

#include "simhost/json/json_text.h"
#include "simhost/ui/pages_model.h"
#include "simhost/ui/selectors.h"
#include "text/encoding.h"

#include <nlohmann/json.hpp>

namespace simhost {

using brenvolt::toUtf8;

namespace {

/// The actual value, as text, list of texts, number or flag, in the format of messages.
using Found = nlohmann::ordered_json;

Found textsOf(const std::vector<std::wstring>& texts) {
  Found list = Found::array();
  for (const std::wstring& text : texts)
    list.push_back(toUtf8(text));
  return list;
}

Found choicesOf(const ListModel& list) {
  Found choices = Found::array();
  for (int index = 0; index < list.Count(); ++index)
    choices.push_back(toUtf8(list.TextAt(index)));
  return choices;
}

/// Looks one thing up on one control.
class Lookup final {
public:
  Lookup(Gestures& gestures, ControlModel& control, const AnswerAction& action)
      : gestures_(gestures), control_(control), action_(action), grid_(gridOf(control)) {}

  [[nodiscard]] Found find(const std::string& what) const {
    if (const std::optional<Found> common = findCommon(what)) return *common;
    if (const std::optional<Found> cells = findInGrid(what)) return *cells;
    if (const std::optional<Found> special = findByKind(what)) return *special;
    throw AnswerError("it has no \"" + what + "\"");
  }

private:
  [[nodiscard]] std::optional<Found> findCommon(const std::string& what) const {
    const PagesModel* pages = control_.pages();
    if (what == "label") return toUtf8(control_.label());
    if (what == "tooltip") return toUtf8(control_.tooltip());
    if (what == "enabled") return control_.isEnabled();
    if (what == "visible")
      return control_.isVisible() && (pages == nullptr || pages->ShownPage() == control_.page());
    if (what == "focus") return control_.hasFocus() || (grid_ != nullptr && grid_->hasFocus());
    if (what == "locked" && pages != nullptr) return pages->IsLocked(control_.page());
    return std::nullopt;
  }

  [[nodiscard]] std::optional<Found> findInGrid(const std::string& what) const {
    if (grid_ == nullptr) return std::nullopt;
    if (what == "rows") return grid_->RowCount();
    if (what == "selectedRow") return grid_->SelectedRow();
    if (what == "header") return textsOf(grid_->rowTexts(0));
    if (what == "editable") return grid_->IsEditable();
    if (what == "texts") return textsOf(grid_->rowTexts(row()));
    if (what == "is") return toUtf8(grid_->Cell(row(), column()));
    if (what == "alert") return grid_->cellTone(row(), column()) == KvUiCellTone::alert;
    if (what == "choices") return textsOf(gestures_.cellChoices(*grid_, row(), column()));
    if (what == "buttons")
      if (const auto* group = dynamic_cast<GroupModel*>(&control_)) return group->buttons().size();
    return std::nullopt;
  }

  [[nodiscard]] std::optional<Found> findByKind(const std::string& what) const {
    if (const auto* text = dynamic_cast<TextModel*>(&control_)) {
      if (what == "text") return toUtf8(text->Text());
      if (what == "readOnly") return text->isReadOnly();
    }
    if (const auto* list = dynamic_cast<ListModel*>(&control_)) {
      if (what == "text") return toUtf8(list->Text());
      if (what == "choices" || what == "contains" || what == "lacks") return choicesOf(*list);
    }
    if (const auto* tick = dynamic_cast<TickModel*>(&control_))
      if (what == "checked") return tick->IsChecked();
    if (const auto* button = dynamic_cast<ButtonModel*>(&control_))
      if (what == "image") return button->image();
    if (const auto* tree = dynamic_cast<TreeModel*>(&control_)) {
      if (what == "items") return tree->outline();
      if (what == "path") return textsOf(tree->path(tree->Selected()));
    }
    if (const auto* pages = dynamic_cast<PagesModel*>(&control_)) {
      if (what == "page") return pages->ShownPage();
      if (what == "locked") return pages->IsLocked(pages->ShownPage());
    }
    return std::nullopt;
  }

  [[nodiscard]] int row() const {
    if (!action_.row.isGiven()) throw AnswerError("\"row\" is needed to identify the cell");
    const int row = findRow(*grid_, action_.row);
    if (row < 0 || row > grid_->RowCount()) throw AnswerError("it has no row " + std::to_string(row));
    return row;
  }

  [[nodiscard]] int column() const {
    if (action_.column.isGiven()) return findColumn(*grid_, action_.column);
    if (grid_->ColumnCount() > 0 && &grid_->owner() != grid_) return grid_->ColumnCount() - 1;
    throw AnswerError("\"column\" is needed to identify the cell");
  }

  Gestures& gestures_;
  ControlModel& control_;
  const AnswerAction& action_;
  GridModel* grid_;
};

/// The expected value, in the format of the actual one.
Found expectedOf(const Expectation& expected, const Found& found) {
  if (found.is_boolean()) return expected.isOn;
  if (found.is_number()) return expected.number;
  if (found.is_string()) return expected.text;
  return expected.texts;
}

bool holds(const Expectation& expected, const Found& found) {
  if (expected.what == "contains" || expected.what == "lacks") {
    const bool isThere = std::find(found.begin(), found.end(), Found(expected.text)) != found.end();
    return isThere == (expected.what == "contains");
  }
  return expectedOf(expected, found) == found;
}

} // namespace

std::optional<std::string> findUnmet(DialogModel& dialog, Gestures& gestures, const AnswerAction& expect) {
  for (const Expectation& expected : expect.expected) {
    Found found;
    if (expect.subject == dialogRole) {
      if (expected.what != "title") throw AnswerError("of the dialog only \"title\" can be expected");
      found = toUtf8(dialog.title());
    } else {
      found = Lookup(gestures, findControl(dialog, expect.subject), expect).find(expected.what);
    }
    if (holds(expected, found)) continue;
    const std::string wanted = found.is_array() && expected.texts.empty() && !expected.text.empty()
                                   ? jsonText(Found(expected.text))
                                   : jsonText(expectedOf(expected, found));
    return "\"" + expected.what + "\" should be " + wanted + " but is " + jsonText(found);
  }
  return std::nullopt;
}

} // namespace simhost
