// The behaviour of the wire lookup: which fields start with what, what follows from a change, what is stored. The form
// holds no rule; it hands every change here. A motor's circuit, a load's circuit and a placed circuit differ in where
// their choices come from and where they go.
#pragma once

#include "data/circuit_data.h"
#include "data/entity_records.h"
#include "data/wire_lookup.h"
#include "data/wire_tables.h"
#include "flows/linked_currents.h"
#include "flows/wire_lookup_form.h"
#include "flows/wire_report_file.h"
#include "widgets/roles_wire_lookup.h"

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace brenvolt {

/// A manager without behaviour. The handler that opens the dialog owns it; the form holds a reference.
class ZanDlgWireSelectBaseCtrlMgr {
public:
  ZanDlgWireSelectBaseCtrlMgr() = default;
  ZanDlgWireSelectBaseCtrlMgr(const ZanDlgWireSelectBaseCtrlMgr&) = delete;
  ZanDlgWireSelectBaseCtrlMgr& operator=(const ZanDlgWireSelectBaseCtrlMgr&) = delete;
  virtual ~ZanDlgWireSelectBaseCtrlMgr() = default;

  /// The form must outlive the last call; it is told once, ahead of all others.
  void attach(WireLookupForm& form) { form_ = &form; }

  /// Whether the dialog may start at all.
  [[nodiscard]] virtual bool CheckAtStart(const WireTableSet& tables);
  /// Fills the controls; runs once, when the tables are open and the options loaded.
  virtual void Init();
  /// The user changed a control, or pressed its button.
  virtual void OnChanged(WireControl control);
  /// Computes the table of sizes anew.
  virtual void Refresh();
  /// Shows a table that was held back while the grid had the focus. The size that the user saw selected stays
  /// selected; if the new table lacks it, nothing is selected. Does nothing when the grid is up to date.
  virtual void ShowHeldBack();
  /// Whether the user has had the time to see the table: false after a click that was made on an older one.
  [[nodiscard]] virtual bool IsTableSeen() const;
  /// The table has been on the screen for longer than a double click takes.
  virtual void MarkSeen();
  virtual void ExportReport();
  virtual void ShowHelp();
  /// Whether the dialog may end with the selected row.
  [[nodiscard]] virtual bool CheckOnOk();
  virtual void StoreToCircuitData();

protected:
  [[nodiscard]] WireLookupForm& form() const;

private:
  WireLookupForm* form_ = nullptr;
};

/// A motor's circuit.
class ZanDlgWireSelectCtrlMgr : public ZanDlgWireSelectBaseCtrlMgr {
public:
  [[nodiscard]] bool CheckAtStart(const WireTableSet& tables) override;
  void Init() final;
  void OnChanged(WireControl control) final;
  void Refresh() final;
  void ShowHeldBack() final;
  [[nodiscard]] bool IsTableSeen() const final { return isTableSeen_; }
  void MarkSeen() final { isTableSeen_ = true; }
  void ExportReport() final;
  void ShowHelp() final;
  [[nodiscard]] bool CheckOnOk() final;
  void StoreToCircuitData() override;

protected:
  /// The choices of a power factor and the one that serves when none is given.
  struct PowerFactors {
    std::vector<std::wstring> list;
    std::wstring standard;
    std::wstring given; ///< the circuit's own, empty when it has none
  };

  [[nodiscard]] virtual ZanCircuitData GivenChoices() const;
  [[nodiscard]] virtual PowerFactors PowerFactorChoices() const;
  /// The list and the default of an option, and the circuit's number.
  [[nodiscard]] PowerFactors powerFactorsOf(std::wstring_view setting) const;
  /// Keeps a multiplier that came from the options for the next dialog.
  virtual void KeepDefaultMultiplier(double multiplier);
  /// The row to select when the table has been computed anew; nothing leaves the choice to the ampacities.
  [[nodiscard]] virtual std::optional<std::size_t> WantedRow() const;

  [[nodiscard]] const ZanCircuitData& choices() const { return choices_; }
  [[nodiscard]] const std::vector<WireCandidate>& rows() const { return lookup_.rows; }
  [[nodiscard]] std::wstring textOf(WireControl control) const;
  [[nodiscard]] double numberOf(WireControl control) const;
  /// Writes the fields into a record; a number that is not valid becomes -1.0.
  void StoreFields(ZanCircuitData& data) const;
  /// The field's number, -1.0 when it is not valid.
  [[nodiscard]] double storedNumber(WireControl control) const;

private:
  // What follows from a change: wire_changes.cpp.
  void OnStandardChanged();
  void OnMetalChanged();
  void OnInsulationChanged();
  void OnCurrentsChanged(CurrentField field);
  void OnNumberChanged(WireControl control);
  void OnTickChanged(WireControl tick);
  void OnRangeChanged(WireControl range);
  void UpdateOverallFactor();
  void enableByTicks();
  void showEnergyNote();

  // Fields from choices and options: wire_field_loading.cpp.
  void LoadStandards();
  void LoadMetals();
  void LoadInsulations();
  void LoadCurrentFields();
  void LoadDropFields();
  void LoadDeratingFields();
  void LoadParallelFields();
  [[nodiscard]] bool ReadParallelMinSizes(std::vector<std::wstring>& sizes, std::wstring& standard) const;
  void LoadRaceways();
  enum class AmbientStart { stored, standard };
  void LoadAmbient(AmbientStart start);
  void LoadGroundSizes();
  /// All that depends on the metal, and the table of sizes.
  void LoadBehindMetal();
  enum class OptionTables { leave, check };
  [[nodiscard]] bool CheckTables(OptionTables options) const;

  // The table of sizes: wire_refresh.cpp.
  [[nodiscard]] WireLookupInput readInput() const;
  [[nodiscard]] WireTableChoice readTableChoice() const;
  void showResults();
  void SelectProposedRow(int rowBefore);
  void SelectSeen(const std::vector<WireCandidate>& shown, int row);

  /// Head rows and the grid: wire_export.cpp.
  [[nodiscard]] std::vector<ReportRow> reportRows() const;

  [[nodiscard]] WireTableSet tables() const;
  [[nodiscard]] bool isTicked(WireControl control) const;
  [[nodiscard]] std::wstring insulationDescription() const;
  [[nodiscard]] std::wstring temperature() const;
  [[nodiscard]] std::wstring racewayColumn() const;
  void setText(WireControl control, std::wstring_view text);
  void setNumber(WireControl control, double value);
  /// Remembers the field's number for the day when something worse is typed.
  void keepGood(WireControl control);
  [[nodiscard]] bool isGood(WireControl control) const;
  [[nodiscard]] CurrentTexts currentTexts() const;
  void showCurrents(const CurrentTexts& texts);

  ZanCircuitData choices_;
  LinkedCurrents currents_;
  FactorList fill_;
  FactorList ambient_;
  std::map<std::wstring, std::wstring> raceways_; ///< column to what the user sees
  std::map<WireControl, double> lastGood_;
  WireLookupResult lookup_;
  /// The rows in the grid while a newer table is held back.
  std::optional<std::vector<WireCandidate>> heldBackFrom_;
  bool isTableSeen_ = true;
  ReportPlace lastReport_;
};

/// A load's circuit: multiplier and power factor are kept apart from a motor's.
class ZanDlgWireSelectPfCtrlMgr final : public ZanDlgWireSelectCtrlMgr {
public:
  void StoreToCircuitData() override;

protected:
  [[nodiscard]] ZanCircuitData GivenChoices() const override;
  [[nodiscard]] PowerFactors PowerFactorChoices() const override;
  void KeepDefaultMultiplier(double multiplier) override;
};

/// A circuit that stands in the drawing.
class ZanDlgWireSelectEditWireSizeCtrlMgr final : public ZanDlgWireSelectCtrlMgr {
public:
  explicit ZanDlgWireSelectEditWireSizeCtrlMgr(ZanCircParams record) : record_(std::move(record)) {}

protected:
  [[nodiscard]] ZanCircuitData GivenChoices() const override;
  [[nodiscard]] PowerFactors PowerFactorChoices() const override;
  void KeepDefaultMultiplier(double multiplier) override;
  [[nodiscard]] std::optional<std::size_t> WantedRow() const override;

private:
  ZanCircParams record_;
};

} // namespace brenvolt
