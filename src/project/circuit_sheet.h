// A circuit's sheet taken apart row by row: a CODE begins a record, a title opens it, groups and options and script
// forms follow until the next CODE.
#pragma once

#include "project/circuit_list.h"
#include "project/code_record.h"

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace brenvolt {

class CircuitSheetReader final {
public:
  explicit CircuitSheetReader(std::wstring_view sheet) : sheet_(sheet) {}

  /// `rowNumber` is for findings, as the spreadsheet program counts.
  void addRow(int rowNumber, const std::vector<std::wstring>& cells);
  /// Ends the last record and gives all of them by upper-cased CODE.
  [[nodiscard]] std::map<std::wstring, ZanCodeRecord> finish();
  [[nodiscard]] const std::vector<WorkbookFinding>& findings() const { return findings_; }

private:
  void beginCode(const std::wstring& code);
  void beginGroup(const std::wstring& title);
  void addOption(const std::vector<std::wstring>& cells);
  void addForms(
      int column, const std::vector<std::wstring>& cells, std::int32_t optionCode, ZanScriptRules& rules);
  void closeGroup();
  void closeRecord();
  void find(int column, std::wstring text);

  std::wstring sheet_;
  int row_ = 0;
  std::wstring code_;
  int codeRow_ = 0; ///< of the CODE
  std::optional<ZanCodeRecord> record_;
  std::optional<ZanOptionGroup> group_;
  std::map<std::wstring, ZanCodeRecord> records_;
  std::vector<WorkbookFinding> findings_;
};

} // namespace brenvolt
