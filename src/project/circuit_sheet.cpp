#include "project/circuit_sheet.h"

#include "text/compare.h"
#include "text/numbers.h"
#include "text/split.h"

#include <algorithm>

namespace brenvolt {

namespace {

/// Columns of a circuit's sheet, from 1.
namespace column {
constexpr int code = 1, title = 2, defaultMark = 3, groupTitle = 4, optionText = 5, optionValue = 6,
              optionCode = 7, firstForms = 8, secondForms = 9, controlForms = 10, firstPair = 11;
}

const std::wstring& cellAt(const std::vector<std::wstring>& cells, int number) {
  static const std::wstring empty;
  const auto index = static_cast<std::size_t>(number) - 1;
  return index < cells.size() ? cells[index] : empty;
}

/// Name and value cells from the first pair on, as long as the left one is before the last column.
std::vector<std::pair<std::wstring, std::wstring>> pairsOf(const std::vector<std::wstring>& cells) {
  std::vector<std::pair<std::wstring, std::wstring>> pairs;
  const int columnCount = static_cast<int>(cells.size());
  for (int left = column::firstPair; left < columnCount; left += 2)
    if (!cellAt(cells, left).empty() && !cellAt(cells, left + 1).empty())
      pairs.emplace_back(cellAt(cells, left), cellAt(cells, left + 1));
  return pairs;
}

} // namespace

void CircuitSheetReader::addRow(int rowNumber, const std::vector<std::wstring>& cells) {
  row_ = rowNumber;
  if (const std::wstring& code = cellAt(cells, column::code); !code.empty()) beginCode(code);
  if (const std::wstring& title = cellAt(cells, column::title); !title.empty()) {
    if (!record_) record_.emplace();
    record_->title = title;
  }
  if (const std::wstring& title = cellAt(cells, column::groupTitle); !title.empty()) beginGroup(title);
  if (!cellAt(cells, column::optionText).empty()) addOption(cells);

  const std::wstring& codeCell = cellAt(cells, column::optionCode);
  const std::int32_t optionCode = codeCell.empty() ? incompleteOptionCode : toInt(codeCell);
  if (!record_) return; // forms before a title are not read
  addForms(column::firstForms, cells, optionCode, record_->firstRules);
  addForms(column::secondForms, cells, optionCode, record_->secondRules);
  addForms(column::controlForms, cells, optionCode, record_->controlRules);
}

std::map<std::wstring, ZanCodeRecord> CircuitSheetReader::finish() {
  closeRecord();
  return std::move(records_);
}

void CircuitSheetReader::beginCode(const std::wstring& code) {
  closeRecord();
  code_ = code;
}

void CircuitSheetReader::beginGroup(const std::wstring& title) {
  closeGroup();
  group_ = ZanOptionGroup{title, {}};
}

void CircuitSheetReader::addOption(const std::vector<std::wstring>& cells) {
  if (!group_) return;
  ZanOption option;
  option.text = cellAt(cells, column::optionText);
  option.selected = equalsCollating(cellAt(cells, column::defaultMark), L"x");
  option.value = toInt(cellAt(cells, column::optionValue));
  group_->options.push_back(std::move(option));
}

void CircuitSheetReader::addForms(
    int number, const std::vector<std::wstring>& cells, std::int32_t optionCode, ZanScriptRules& rules) {
  const std::wstring& cell = cellAt(cells, number);
  if (cell.empty()) return;
  const bool hasPairs = number == column::controlForms;
  for (std::wstring& form : splitForms(cell)) {
    ZanScriptEntry entry;
    entry.text = std::move(form);
    entry.code = optionCode;
    if (hasPairs) entry.params = pairsOf(cells);
    entry.row = row_;
    entry.column = number;
    rules.push_back(std::move(entry));
  }
}

void CircuitSheetReader::closeGroup() {
  if (group_ && record_) record_->groups.push_back(std::move(*group_));
  group_.reset();
}

void CircuitSheetReader::closeRecord() {
  closeGroup();
  if (!record_) return;
  // The first rows of a CODE win, a repeated one is dropped whole; so are rows before the first CODE.
  if (!code_.empty()) records_.try_emplace(toUpper(code_), std::move(*record_));
  record_.reset();
}

} // namespace brenvolt
