// Parses a circuit's sheet row by row: a CODE begins a record, a title opens it, groups and options and script forms
// follow until the next CODE.
#pragma once

#include "project/code_record.h"

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace brenvolt {

class CircuitSheetReader final {
public:
  /// `rowNumber` as a spreadsheet program counts. What cannot be used is passed over.
  void addRow(int rowNumber, const std::vector<std::wstring>& cells);
  /// Ends the last record and gives all of them by upper-cased CODE.
  [[nodiscard]] std::map<std::wstring, ZanCodeRecord> finish();

private:
  void beginCode(const std::wstring& code);
  void beginGroup(const std::wstring& title);
  void addOption(const std::vector<std::wstring>& cells);
  void addForms(
      int column, const std::vector<std::wstring>& cells, std::int32_t optionCode, ZanScriptRules& rules);
  void closeGroup();
  void closeRecord();

  int row_ = 0;
  std::wstring code_;
  std::optional<ZanCodeRecord> record_;
  std::optional<ZanOptionGroup> group_;
  std::map<std::wstring, ZanCodeRecord> records_;
};

} // namespace brenvolt
