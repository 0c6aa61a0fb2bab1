#include "circuits/check/sheet_model.h"

#include "text/compare.h"
#include "text/numbers.h"
#include "text/split.h"

#include <algorithm>

namespace circuits {

using brenvolt::equalsCollating;

namespace {

std::vector<SheetPair> pairsOf(const TableText::Row& row) {
  std::vector<SheetPair> pairs;
  const int count = static_cast<int>(row.cells.size());
  for (int left = sheetcolumn::firstPair; left < count; left += 2)
    if (!row.cell(left).empty() && !row.cell(left + 1).empty())
      pairs.push_back({row.cell(left), row.cell(left + 1), left});
  return pairs;
}

std::vector<std::wstring> partsOf(const std::wstring& cell) {
  std::vector<std::wstring> parts = brenvolt::splitSkippingEmpty(cell, L';');
  for (std::wstring& part : parts)
    part = brenvolt::trim(part);
  return parts;
}

void addForms(SheetCode& code, const TableText::Row& row, int column) {
  const std::wstring& cell = row.cell(column);
  if (cell.empty()) return;
  const std::wstring& forCode = row.cell(sheetcolumn::forCode);
  SheetForm form;
  form.row = row.number;
  form.column = column;
  form.cell = cell;
  form.forCode = forCode.empty() ? incompleteCode : brenvolt::toInt(forCode);
  if (column == sheetcolumn::controlForms) form.pairs = pairsOf(row);
  for (std::wstring& text : brenvolt::splitForms(cell)) {
    const std::size_t found = cell.find(text, form.from);
    form.from = found == std::wstring::npos ? 0 : found;
    form.text = std::move(text);
    code.forms.push_back(form);
    form.from += form.text.size();
  }
}

void addOption(SheetCode& code, const TableText::Row& row) {
  if (code.groups.empty()) return;
  SheetOption option;
  option.row = row.number;
  option.text = row.cell(sheetcolumn::option);
  option.value = brenvolt::toInt(row.cell(sheetcolumn::value));
  option.isDefault = equalsCollating(row.cell(sheetcolumn::defaultMark), L"x");
  code.groups.back().options.push_back(std::move(option));
}

} // namespace

bool SheetGroup::isControl() const {
  return equalsCollating(title, L"!MCC_CTRL") || equalsCollating(title, L"!PF_CTRL");
}

bool SheetGroup::hasDefault() const {
  return std::ranges::any_of(options, &SheetOption::isDefault);
}

const SheetGroup* SheetCode::controlGroup() const {
  const auto found = std::ranges::find_if(groups, &SheetGroup::isControl);
  return found == groups.end() ? nullptr : &*found;
}

bool SheetCode::hasForms(int column) const {
  return std::ranges::any_of(forms, [column](const SheetForm& form) { return form.column == column; });
}

std::wstring SheetCode::suffix() const {
  const std::size_t dash = code.rfind(L'-');
  return dash == std::wstring::npos ? std::wstring() : code.substr(dash);
}

const SheetCode* SheetModel::find(std::wstring_view code) const {
  return findKey(brenvolt::toUpper(code));
}

const SheetCode* SheetModel::findKey(const std::wstring& upperCaseCode) const {
  const auto found = records.find(upperCaseCode);
  return found == records.end() ? nullptr : &codes[found->second];
}

SheetModel modelOf(const TableText& sheet) {
  SheetModel model;
  model.name = sheet.name;
  const int onlyWith = sheet.columnOf(onlyWithColumn);
  for (const TableText::Row& row : sheet.rows) {
    if (const std::wstring& text = row.cell(sheetcolumn::code); !text.empty()) {
      SheetCode& code = model.codes.emplace_back();
      code.code = text;
      code.row = row.number;
    }
    if (model.codes.empty()) continue; // before the first CODE nothing is read
    SheetCode& code = model.codes.back();
    if (!row.cell(sheetcolumn::title).empty()) code.hasTitle = true;
    if (const std::wstring& title = row.cell(sheetcolumn::group); !title.empty())
      code.groups.push_back({row.number, title, {}, partsOf(onlyWith == 0 ? L"" : row.cell(onlyWith))});
    if (!row.cell(sheetcolumn::option).empty()) addOption(code, row);
    if (!code.hasTitle) continue; // forms without a record are lost
    for (const int column : {sheetcolumn::firstForms, sheetcolumn::secondForms, sheetcolumn::controlForms})
      addForms(code, row, column);
  }
  for (std::size_t i = 0; i < model.codes.size(); ++i) {
    SheetCode& code = model.codes[i];
    if (code.hasTitle) code.isRepeated = !model.records.try_emplace(brenvolt::toUpper(code.code), i).second;
  }
  return model;
}

} // namespace circuits
