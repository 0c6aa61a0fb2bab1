// The names of a dialog's parts in answer files.
#include "simhost/ui/selectors.h"

#include "simhost/ui/pages_model.h"
#include "text/encoding.h"

#include <functional>

namespace simhost {

using brenvolt::fromUtf8;

namespace {

[[noreturn]] void fail(const std::string& reason) {
  throw AnswerError(reason);
}

/// The one row for which the test holds, 0 for none.
int onlyRow(const GridModel& grid, const std::function<bool(int row)>& test, const std::string& named) {
  int found = 0;
  for (int row = 1; row <= grid.RowCount(); ++row) {
    if (!test(row)) continue;
    if (found != 0)
      fail("rows " + std::to_string(found) + " and " + std::to_string(row) + " are both " + named);
    found = row;
  }
  return found;
}

int rowByLabel(const GridModel& grid, const std::string& label) {
  const std::wstring text = fromUtf8(label);
  for (const int column : {0, 1}) {
    const int row = onlyRow(
        grid, [&](int at) { return grid.Cell(at, column) == text; }, "\"" + label + "\"");
    if (row != 0) return row;
  }
  fail("no row begins with \"" + label + "\"");
}

int rowByCells(const GridModel& grid, const RowChoice& choice) {
  std::string named;
  std::vector<std::pair<int, std::wstring>> cells;
  for (const auto& [header, text] : choice.cells) {
    cells.emplace_back(findColumn(grid, {std::nullopt, header}), fromUtf8(text));
    if (!named.empty()) named += ", ";
    named.append(header).append(" = \"").append(text).append("\"");
  }
  const auto matches = [&](int row) {
    for (const auto& [column, text] : cells)
      if (grid.Cell(row, column) != text) return false;
    return true;
  };
  const int row = onlyRow(grid, matches, named);
  if (row == 0) fail("no row has " + named);
  return row;
}

} // namespace

ControlModel& findControl(const DialogModel& dialog, const std::string& subject) {
  if (ControlModel* control = dialog.find(fromUtf8(subject))) return *control;
  const std::size_t stroke = subject.find('/');
  if (stroke == std::string::npos) fail("the dialog has no such control");
  const auto* pages = dynamic_cast<PagesModel*>(dialog.find(fromUtf8(subject.substr(0, stroke))));
  if (pages == nullptr) fail("the dialog has no pages \"" + subject.substr(0, stroke) + "\"");
  ControlModel* control = pages->findOnShownPage(fromUtf8(subject.substr(stroke + 1)));
  if (control == nullptr)
    fail("page " + std::to_string(pages->ShownPage()) + ", which is shown, has no such control");
  return *control;
}

GridModel* gridOf(ControlModel& control) {
  if (auto* group = dynamic_cast<GroupModel*>(&control)) return &group->grid();
  return dynamic_cast<GridModel*>(&control);
}

int findColumn(const GridModel& grid, const ColumnChoice& column) {
  if (column.number) {
    if (!grid.has(0, *column.number)) fail("it has no column " + std::to_string(*column.number));
    return *column.number;
  }
  const std::wstring title = fromUtf8(column.title);
  for (int at = 0; at < grid.ColumnCount(); ++at)
    if (grid.Cell(0, at) == title && !grid.isHidden(at)) return at;
  fail("it shows no column \"" + column.title + "\"");
}

int findRow(const GridModel& grid, const RowChoice& row) {
  if (row.number) return *row.number;
  return row.label ? rowByLabel(grid, *row.label) : rowByCells(grid, row);
}

int findItem(const TreeModel& tree, const std::vector<PathPart>& path) {
  int item = 0;
  for (const PathPart& part : path) {
    const std::vector<int>& below = tree.children(item);
    int found = 0;
    if (part.place) {
      const auto place = static_cast<std::size_t>(*part.place);
      if (*part.place >= 0 && place < below.size()) found = below[place];
    } else {
      for (const int child : below)
        if (found == 0 && tree.TextOf(child) == fromUtf8(part.text)) found = child;
    }
    if (found == 0)
      fail("it has no item \"" + (part.place ? std::to_string(*part.place) : part.text) + "\" in this path");
    item = found;
  }
  return item;
}

} // namespace simhost
