// The logic of a motor's or load's page: its data, whose lists narrow each other by the engineering database, and its
// wires, whose sizes and layers follow from the current. It also keeps the connection through which the catalogue
// groups of the same circuit store their parts.
#pragma once

#include "config/circuit_in_hand.h"
#include "config/mcc_fields.h"
#include "config/mcc_wire_rows.h"
#include "config/widget_manager.h"
#include "data/catalog_selection.h"
#include "data/db_service.h"
#include "data/motor_choices.h"
#include "drawing/exported_rows.h"
#include "drawing/template_wires.h"
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
  /// Both must outlive the manager; `observer`, of the tables that it reads, may be null.
  ZanWidgetManagerMcc(CircuitInHand& circuits, TableObserver* observer);
  ~ZanWidgetManagerMcc() override;

  void OnLookup(ZanGroupCtrl* group) override;
  void OnPick(ZanGroupCtrl* group) override;
  void AttachWindow(ZanSettingsWnd* window) override;
  void SaveCatalog(std::wstring_view markerCode, std::int32_t code, const ManagerResults& results) override;
  void SetLocked(bool locked) override;
  [[nodiscard]] std::optional<ZanAnnotationDataList> ExportRows() const override;
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
  /// Sizes the wires for the current of the page's circuit and fills the wire group.
  void Recalculate() override;

  /// Takes the lookup commands from the unit's control rules and opens the engineering database; a failure is reported
  /// once. `group` is the unit's control group.
  virtual void Initialise(ZanConfigUnit* unit, const ZanOptionGroup& group);
  /// Gives all conductors of the wire group a size, and its grounding wires that of the page's circuit.
  void fillWireRows(std::wstring_view size);

  /// Makes the page's circuit the current circuit, including the values of the data group, where the LISP of a lookup
  /// reads it.
  virtual void CommitToCircuitData();

  /// Makes the page's circuit the current circuit.
  void TakeCircuit() { static_cast<void>(circuits_.take(record_)); }
  [[nodiscard]] const CircuitContext& circuit() const { return circuits_.of(record_); }

  /// Adds the wire positions of a run's template with the unit's own suffix. Existing positions of the page are not
  /// changed.
  void SetWireFormats(const ZanWireFormatter& formatter, std::int32_t run = 0);
  /// A run was undone, or became part of the one before it.
  void TakeBackRun(std::int32_t run);
  void JoinRun(std::int32_t run, std::int32_t former) { wires_.joinRun(run, former); }

private:
  static constexpr std::uint32_t recalculateTimer = 105;

  /// Opens the database unless it is open; the first failure shows the alert.
  bool ensureDatabase();
  /// The circuit that the wires are sized for, with the multiplier that the page shows.
  [[nodiscard]] ZanCircuitData sizedCircuit() const;
  [[nodiscard]] CatalogKey catalogKey(
      std::wstring_view markerCode, std::int32_t code, std::wstring_view table) const;
  enum class CurrentCondition { kept, dropped };
  [[nodiscard]] std::vector<MotorCondition> conditionsBut(
      MccMode mode, std::size_t skippedRow, const std::vector<ZanGroupRow>& rows,
      CurrentCondition current = CurrentCondition::kept) const;
  /// The currents that the motor table has for the motor of the rows.
  [[nodiscard]] std::vector<std::wstring> currentsOfTable();
  [[nodiscard]] bool hasCurrentOfTable(MccMode mode);
  void storeNumber(MccMode mode, std::size_t field, std::wstring_view text);
  void startTimer(std::uint32_t timer);
  void lookUpCurrent();
  void lookUpData(ZanGroupCtrl& group, MccMode mode);
  void lookUpWires();
  /// As it is not an edit by the user, no `OnCellChanged` follows.
  void writeDataValues(ZanGroupCtrl& group, const std::vector<std::wstring>& values);

  CircuitInHand& circuits_;
  CircuitInHand::Record record_;
  std::int32_t count_ = 1;    ///< of motors, of the control group; stored and not used
  std::wstring motorCommand_; ///< looks up a motor or load
  std::wstring wireCommand_;
  std::wstring databaseFile_;
  Ratings data_ = startRatings(); ///< what the data group shows
  StoredWireFields storedWires_;  ///< as they came with the unit, for as long as no wire is chosen
  TemplateWires wires_;           ///< each template's positions that were new
  ZanWireFormatter formats_;      ///< all of `wires_`
  ZanOleDbConnection connection_;
  bool metric_ = false; ///< the drawing's units; kept and not used
  bool columnsLoaded_ = false;
  bool databaseAlerted_ = false;
  MotorColumns columnNames_;
  std::array<std::vector<std::wstring>, ratingCount> choiceCache_; ///< by row
  WireSizeColumns wireSizeColumns_;                                ///< stored but not used by any query
  std::uint32_t lastRow_ = 0; ///< of the last `GetChoices`, from 1; 0: the cache is stale
  bool followsTable_ = false; ///< the current was that of the table before cells were changed
  bool querying_ = false;     ///< a `GetChoices` runs
  MccMode mode_ = MccMode::motor;
};

} // namespace brenvolt
