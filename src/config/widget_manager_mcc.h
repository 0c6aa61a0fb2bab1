// The logic of a motor's or load's page: its data, whose lists narrow each other by the engineering database, and its
// wires, whose sizes and layers follow from the current. It also keeps the connection through which the catalogue
// groups of the same circuit store their parts.
#pragma once

#include "config/mcc_fields.h"
#include "config/mcc_wire_rows.h"
#include "config/widget_manager.h"
#include "data/catalog_selection.h"
#include "data/db_service.h"
#include "data/motor_choices.h"
#include "drawing/wire_formatter.h"
#include "project/code_record.h"

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace brenvolt {

class ZanWidgetManagerMcc : public ZanWidgetManager {
public:
  void OnLookup(ZanGroupCtrl* group) override;
  void OnPick(ZanGroupCtrl* group) override;
  void AttachWindow(ZanSettingsWnd* window) override;
  void SaveCatalog(std::wstring_view markerCode, std::int32_t code, const ManagerResults& results) override;
  void SetLocked(bool locked) override;
  void ExportRows(ZanAnnotationDataList& rows) override;
  void ImportRows(const ZanAnnotationDataList& rows) override;
  void OnTimer(std::uint32_t timerId) override;
  void Refresh() override;
  bool OnCellChanged(std::int32_t groupId, std::uint32_t row, std::wstring_view text) override;
  bool GetChoices(
      std::int32_t groupId, std::uint32_t row, const std::vector<ZanGroupRow>& rows,
      std::vector<std::wstring>& list) override;
  void LoadCatalog(
      std::wstring_view markerCode, std::int32_t code, const std::vector<std::wstring>& tables,
      ManagerResults& results) override;
  /// Sizes the wires for the current of the circuit in hand and fills the wire group.
  void Recalculate() override;

  /// Takes the lookup commands from the unit's control rules and opens the engineering database; a failure is told
  /// once. `group` is the unit's control group.
  virtual void Initialise(ZanConfigUnit* unit, const ZanOptionGroup& group);
  /// Puts the data group into the circuit in hand, as the LISP of a lookup reads it there.
  virtual void CommitToCircuitData();

  /// Takes the wires of the unit's own suffix out of those of a scan, behind those that it has: a nested template
  /// without wires leaves them alone.
  void SetWireFormats(const ZanWireFormatter& formatter);

private:
  static constexpr std::uint32_t recalculateTimer = 105;

  /// Opens the database unless it is open; the first failure shows the alert.
  bool ensureDatabase();
  [[nodiscard]] CatalogKey catalogKey(
      std::wstring_view markerCode, std::int32_t code, std::wstring_view table) const;
  [[nodiscard]] std::vector<MotorCondition> conditionsBut(
      MccMode mode, std::size_t skippedRow, const std::vector<ZanGroupRow>& rows) const;
  void storeNumber(MccMode mode, std::size_t field, std::wstring_view text);
  void startTimer(std::uint32_t timer);
  void lookUpCurrent();
  void lookUpData(ZanGroupCtrl& group, MccMode mode);
  void lookUpWires();
  void fillWireRows(std::wstring_view size);
  /// As it is no edit of the user's, no `OnCellChanged` follows.
  void writeDataValues(ZanGroupCtrl& group, const std::vector<std::wstring>& values);

  std::int32_t count_ = 1;    ///< of motors, as the control group tells; kept and not used
  std::wstring motorCommand_; ///< looks up a motor or load
  std::wstring wireCommand_;
  std::wstring databaseFile_;
  MccData data_;
  ZanWireFormatter formats_;
  ZanOleDbConnection connection_;
  bool metric_ = false; ///< the drawing's units; kept and not used
  bool columnsLoaded_ = false;
  bool databaseAlerted_ = false;
  MotorColumns columnNames_;
  std::array<std::vector<std::wstring>, mccFieldCount> choiceCache_; ///< by row
  WireSizeColumns wireSizeColumns_;                                  ///< kept and not asked by any query
  std::uint32_t lastRow_ = 0; ///< of the last `GetChoices`, from 1; 0: the cache is stale
  bool querying_ = false;     ///< a `GetChoices` runs
  MccMode mode_ = MccMode::motor;
};

} // namespace brenvolt
