// Catalogue parts of a unit: one input group for each table that a control rule names, filled by the rule's lookup
// command or by hand. The choice is stored by the motor of the same circuit, so that the same motor gets the same
// parts again.
#pragma once

#include "config/widget_manager.h"
#include "project/code_record.h"

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace brenvolt {

class ZanWidgetManagerMaker;

class ZanWidgetManagerCatalog final : public ZanWidgetManager {
public:
  /// `maker` knows the motor or load that keeps the parts; without one nothing is kept.
  explicit ZanWidgetManagerCatalog(const ZanWidgetManagerMaker* maker) : maker_(maker) {}

  /// Takes the lookup command and the tables from a rule: its text, and (table name, group title) of its parameters.
  void Configure(ZanConfigUnit* unit, const ZanScriptEntry& rule);

  /// Makes a group for each table. A row whose text is missing is left out.
  void AttachWindow(ZanSettingsWnd* window) override;
  /// Runs the command for a group of this page and writes its result, a list or one text, into the rows. "@table",
  /// "@mfg", "@cat" and "@asm" are the table and the first three rows. Any other result changes nothing.
  void OnLookup(ZanGroupCtrl* group) override;
  /// The head of the manager's group stores the rows of the manager's tables; without a head nothing is stored.
  void SaveSelection(
      std::wstring_view markerCode, std::int32_t code, const ZanAnnotationDataList& rows) override;
  void LoadSelection(std::wstring_view markerCode, std::int32_t code) override;
  /// Writes the values of each table that is shown; other tables are passed over.
  void ApplyResults(const ManagerResults& results) override;
  /// One row for each table: its title (hidden), its name, its values.
  [[nodiscard]] std::optional<ZanAnnotationDataList> ExportRows() const override;
  /// A row whose title or table has changed in the workbook is dropped.
  void ImportRows(const ZanAnnotationDataList& rows) override;
  void SetLocked(bool locked) override;

private:
  [[nodiscard]] ZanWidgetManager* head() const;
  [[nodiscard]] ManagerResults resultsOf(const ZanAnnotationDataList& rows) const;
  [[nodiscard]] std::vector<std::wstring> valuesOf(const ResultList& answer) const;
  [[nodiscard]] bool lookUp(ZanGroupCtrl& group, std::vector<std::wstring>& values);

  const ZanWidgetManagerMaker* maker_;
  std::wstring command_;
  std::vector<std::pair<std::wstring, std::wstring>> tables_; ///< name and group title
  std::int32_t countRow_ = -1; ///< place of the count among the rows; -1 until the groups are built
};

} // namespace brenvolt
