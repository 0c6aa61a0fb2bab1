// What a site consists of, read whole before any rule looks at it: the workbook's sheets, its list of circuits, and for
// each circuit sheet what it offers.
#pragma once

#include "circuits/check/finding.h"
#include "circuits/check/sheet_model.h"

#include <filesystem>
#include <string>
#include <vector>

namespace circuits {

inline constexpr std::wstring_view circuitListSheet = L"ZAN_CIRCS";
inline constexpr std::wstring_view presetSheet = L"ANNO_CODE";

/// A row of the circuit list.
struct CircuitEntry {
  int row = 0;
  std::wstring circuit; ///< carried down from the rows above
  std::wstring type;
  std::wstring drawing; ///< the template, a file name below the site
  std::wstring worksheet;
  std::wstring presetKey;
};

struct SiteModel {
  std::filesystem::path folder;
  std::filesystem::path workbook;
  std::wstring workbookName;     ///< as findings show it
  std::vector<TableText> sheets; ///< of the workbook, in its order
  std::vector<CircuitEntry> entries;
  std::vector<SheetModel> models; ///< of the sheets that entries name, each once

  [[nodiscard]] const TableText* findSheet(std::wstring_view name) const;
  [[nodiscard]] const SheetModel* findModel(std::wstring_view name) const;
  /// "Three-phase motors / Direct on line"
  [[nodiscard]] static std::wstring nameOf(const CircuitEntry& entry);
  /// A message of another part of the program, the site's folder left out of its paths.
  [[nodiscard]] std::wstring shownText(const std::wstring& text) const;
  /// A file below the site's folder as findings show it.
  [[nodiscard]] std::wstring shownFile(const std::filesystem::path& file) const;
  [[nodiscard]] FindingPlace place(std::wstring_view sheet, int row = 0, int column = 0) const;
  [[nodiscard]] FindingPlace place(const SheetModel& sheet, const SheetCode& code, int row, int column) const;
};

/// Reads the workbook of a site. What cannot be read is a finding, and the model holds what could.
[[nodiscard]] SiteModel readSite(
    const std::filesystem::path& folder, const std::filesystem::path& workbook, Findings& findings);

} // namespace circuits
