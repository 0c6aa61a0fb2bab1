#include "flows/annotation_grid_wnd.h"

#include "host/lisp_symbols.h"
#include "host/resources.h"
#include "text/compare.h"

namespace brenvolt {

namespace {

constexpr int tickColumn = 1;
constexpr int valueColumn = 5;
constexpr int columnCount = 6; ///< the row head first

struct FixedColumn {
  int column;
  std::wstring ZanAnnotationPreset::*text;
};
constexpr FixedColumn fixedColumns[] = {
    {2, &ZanAnnotationPreset::label},
    {3, &ZanAnnotationPreset::attribute},
    {4, &ZanAnnotationPreset::description},
};

/// Shares of the grid's width.
const std::vector<int> columnWidths = {1, 3, 3, 3, 8, 7};

std::wstring_view tickText(bool isOn) {
  return isOn ? L"1" : L"0";
}

/// Whether values of the attribute are written in upper case: places always, descriptions as the product is set.
bool isUpperCase(std::wstring_view attribute) {
  const auto isNamed = [attribute](std::wstring_view name) { return equalsOrdinalNoCase(attribute, name); };
  if (isNamed(L"INST") || isNamed(L"LOC")) return true;
  return (isNamed(L"DESC1") || isNamed(L"DESC2") || isNamed(L"DESC3")) &&
         isSwitchedOn(lispsymbol::upperCaseTexts);
}

} // namespace

ZanAnnotationGridWnd::ZanAnnotationGridWnd(KvUiGrid& grid, ZanAnnotationExList::Presets& presets)
    : grid_(grid), presets_(presets) {
  grid_.LockDrawing();
  grid_.SetEditable(true, false);
  grid_.SetSize(static_cast<int>(presets_.size()), columnCount);
  for (int column = tickColumn; column < columnCount; ++column)
    grid_.SetCell(0, column, loadText(textAt(TextId::presetUse, static_cast<unsigned>(column - tickColumn))));
  int row = 0;
  for (const ZanAnnotationPreset& preset : presets_) {
    grid_.SetCellKind(++row, 0, KvUiCellKind::fixed);
    grid_.SetCellKind(row, tickColumn, KvUiCellKind::tick);
    grid_.SetCell(row, tickColumn, tickText(preset.enabled));
    for (const FixedColumn& fixed : fixedColumns) {
      grid_.SetCellKind(row, fixed.column, KvUiCellKind::fixed);
      grid_.SetCell(row, fixed.column, preset.*fixed.text);
    }
    accepted_.push_back(cased(row, preset.value));
    grid_.SetCell(row, valueColumn, accepted_.back());
  }
  grid_.SetColumnWidths(columnWidths);
  grid_.UnlockDrawing();
}

void ZanAnnotationGridWnd::onCellEdited(int row, int column) {
  if (column != valueColumn) return;
  std::wstring& accepted = accepted_[static_cast<std::size_t>(row) - 1];
  const std::wstring text = grid_.Cell(row, valueColumn);
  if (text == accepted) return;
  grid_.SetCell(row, tickColumn, tickText(!text.empty()));
  accepted = cased(row, text);
  grid_.SetCell(row, valueColumn, accepted);
}

void ZanAnnotationGridWnd::setValue(int row, std::wstring_view text) {
  grid_.SetCell(row, valueColumn, text);
  onCellEdited(row, valueColumn);
}

std::wstring ZanAnnotationGridWnd::attributeOf(int row) const {
  return presets_[static_cast<std::size_t>(row) - 1].attribute;
}

bool ZanAnnotationGridWnd::isAnyTicked() const {
  for (int row = 1; row <= grid_.RowCount(); ++row)
    if (grid_.Cell(row, tickColumn) == tickText(true)) return true;
  return false;
}

void ZanAnnotationGridWnd::store() const {
  int row = 0;
  for (ZanAnnotationPreset& preset : presets_) {
    preset.enabled = grid_.Cell(++row, tickColumn) == tickText(true);
    preset.value = grid_.Cell(row, valueColumn);
  }
}

std::wstring ZanAnnotationGridWnd::cased(int row, std::wstring_view text) const {
  return isUpperCase(attributeOf(row)) ? toUpper(text) : std::wstring(text);
}

} // namespace brenvolt
