// One build, from the arguments of `zan_bv_build_circuit` to the end: worksheet, markers, saved choices, script rows,
// end steps. The handler defines their order; an interactive build uses the configuration dialog, which calls the
// operations below. Only that dialog takes a build back.
#pragma once

#include "build/build_state.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace brenvolt {

class ZanBrenvolt {
public:
  /// What is lent and `parent` must outlive the build. `parent` is the build whose form has started this one, null for
  /// a build of its own.
  ZanBrenvolt(ZanBuildArgs args, const LentValues& lent, const ZanBrenvolt* parent = nullptr);
  ZanBrenvolt(const ZanBrenvolt&) = delete;
  ZanBrenvolt& operator=(const ZanBrenvolt&) = delete;
  virtual ~ZanBrenvolt();

  /// @name Steps of a build, in their order
  /// @{
  /// Scales, insertion point and trace flag from the parent product's symbol, and what the history needs to know. A
  /// symbol that cannot be read leaves the scales at 1.0 and the trace off.
  void readBuildData();
  /// The worksheet's records. False when the sheet cannot be read.
  [[nodiscard]] bool loadCatalog();
  /// The template's markers. False when there is none.
  [[nodiscard]] bool readMarkers();
  /// The preset text's defaults and the presets of the arguments; what cannot be looked up is passed over.
  void readPresets();
  /// Records, history and presets into the markers, then the rows of those that need no decision; an interactive
  /// build ends with its units.
  [[nodiscard]] bool prepare(BuildKind kind);
  /// Hands the codes to LISP and erases the marker blocks that are left.
  void finish();
  /// Whether the end steps of a direct build have to run after `prepare`: not when the template is foreign to the
  /// worksheet, nor after a quit.
  [[nodiscard]] bool needsFinish() const { return markersMatched_ && !state_.hasQuit; }
  /// @}

  /// @name For the configuration dialog
  /// @{
  /// Runs the units that are marked for insertion, and creates units for the new markers.
  [[nodiscard]] bool runLevel();
  /// Takes the drawing back to its state before the last run. When the host refuses although the run counts as
  /// stepped back, the run becomes part of the one before, so that the two go back together.
  [[nodiscard]] bool stepBack();
  [[nodiscard]] bool rollback() { return state_.undo.rollback(); }
  /// The number of the last run.
  [[nodiscard]] std::int32_t level() const { return state_.undo.marks(); }
  [[nodiscard]] bool canGoBack() const { return level() >= 1 && state_.undo.hasSteps(); }
  /// Drops the markers and units that an undone run added; its number has to be read before `stepBack`.
  void truncateTo(std::int32_t run);
  /// Keeps the configuration under a name. When it cannot be kept, the reason is reported on the command line, and name and
  /// history are as they were.
  [[nodiscard]] bool saveHistory(std::wstring_view name);
  /// Lets the code of a unit run again.
  void forgetUnit(std::wstring_view code);
  /// Takes the user's edits of the pending units into the markers without running anything.
  void copyUnitsToMarkers();
  [[nodiscard]] ZanConfigUnitList& units() { return state_.units; }
  [[nodiscard]] ZanXmlHistory& history() { return state_.history; }
  [[nodiscard]] const ZanBuildArgs& args() const { return input_.args; }
  [[nodiscard]] CircuitContext& circuit() { return state_.circuit; }
  /// @}

  [[nodiscard]] const BuildState& state() const { return state_; }
  /// How many builds this one is inside of.
  [[nodiscard]] int depth() const { return parent_ == nullptr ? 0 : parent_->depth() + 1; }
  /// Whether one of those has its configuration dialog open, or will have.
  [[nodiscard]] bool isBelowDialog() const;

private:
  void eraseMarkers();
  void joinRunToFormer(std::int32_t run);

  const ZanBrenvolt* parent_;
  BuildInput input_;
  BuildState state_;
  bool markersMatched_ = true;
};

} // namespace brenvolt
