// A wire lookup in the controls of its window: shows the model, and passes every change to it.
#pragma once

#include "data/wire_lookup.h"
#include "flows/wire_lookup_form.h"

#include <optional>
#include <string>
#include <vector>

namespace brenvolt {

class WireLookupView final {
public:
  /// Both must outlive this; the lookup has begun.
  WireLookupView(WireLookup& lookup, WireLookupForm& form) : lookup_(lookup), form_(form) {}
  WireLookupView(const WireLookupView&) = delete;
  WireLookupView& operator=(const WireLookupView&) = delete;

  /// Fills all controls.
  void showAll();
  /// The user changed the control of a field.
  void changed(LookupField field);
  /// The user selected a row of the table as it is shown.
  void rowSelected();
  /// Shows a table that was held back while the grid had the focus. The size that the user saw selected stays
  /// selected; if the new table lacks it, nothing is selected. Does nothing when the grid is up to date.
  void showHeldBack();
  /// Whether the user has had the time to see the table: false after a click that was made on an older one.
  [[nodiscard]] bool isTableSeen() const { return isTableSeen_; }
  /// The table has been on the screen for longer than a double click takes.
  void markSeen() { isTableSeen_ = true; }

private:
  [[nodiscard]] std::wstring textOf(LookupField field) const;
  void show(LookupField field);
  void showList(LookupField field);
  void showEnergyNote();
  void showTable();
  void paintTable();
  void showSelection();

  WireLookup& lookup_;
  WireLookupForm& form_;
  /// The rows in the grid while newer ones are held back.
  std::optional<std::vector<WireCandidate>> heldBackFrom_;
  std::vector<WireCandidate> painted_;
  bool isTableSeen_ = true;
};

} // namespace brenvolt
