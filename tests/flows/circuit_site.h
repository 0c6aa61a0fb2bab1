// The files of the circuit selection: a workbook of three circuit types, a history file, a project database, and a
// session whose LISP knows their paths.
#pragma once

#include "tests/flows/picker_session.h"

#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace brenvolt::test {

/// Sheets by name, the rows as short texts.
using SheetTexts = std::vector<std::pair<std::string, std::vector<std::string>>>;

class CircuitSite final {
public:
  CircuitSite() : CircuitSite(usualSheets(), usualProject()) {}
  CircuitSite(const SheetTexts& sheets, const std::map<std::string, std::string>& project);

  [[nodiscard]] static SheetTexts usualSheets();
  [[nodiscard]] static std::map<std::string, std::string> usualProject();

  [[nodiscard]] std::string workbook() const { return (folder_ / "zan_brenvolt.xls").string(); }
  void writeWorkbook(const SheetTexts& sheets) const;
  /// The history file as UTF-8 text.
  [[nodiscard]] std::string history() const;
  void writeHistory(const std::string& xml) const;
  /// Two histories for the reversing motors: "Pump" with scales, "Fan" without.
  [[nodiscard]] static std::string usualHistory();

  [[nodiscard]] std::unique_ptr<PickerSession> session(const std::string& steps) const;

private:
  TemporaryFolder folder_;
  PickerTables project_;
};

/// A step of the dialog.
[[nodiscard]] std::string circuitStep(const std::string& actions);

} // namespace brenvolt::test
