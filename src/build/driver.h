// One build, from the arguments of `zan_bv_build_circuit` to the end: worksheet, markers, saved choices, script rows,
// end steps. The order of a whole build stands in its handler; an interactive one goes through the configuration
// dialog, which calls the operations below. Only that dialog ever takes a build back.
#pragma once

#include "build/build_state.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace brenvolt {

class ZanBrenvolt {
public:
  explicit ZanBrenvolt(ZanBuildArgs args);
  ZanBrenvolt(const ZanBrenvolt&) = delete;
  ZanBrenvolt& operator=(const ZanBrenvolt&) = delete;
  virtual ~ZanBrenvolt();

  /// @name Steps of a build, in their order
  /// @{
  /// Scales, insertion point and trace flag from the parent product's symbol, and what the history needs to know. A
  /// symbol that cannot be read leaves the scales at 1.0.
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
  /// Whether the end steps of a direct build have to run behind `prepare`: not when the template is foreign to the
  /// worksheet, nor behind a quit.
  [[nodiscard]] bool needsFinish() const { return markersMatched_ && !state_.hasQuit; }
  /// @}

  /// @name For the configuration dialog
  /// @{
  /// Runs the units that are marked for insertion, and makes units of the markers that they bring.
  [[nodiscard]] bool runLevel();
  /// Takes the drawing back to where it stood ahead of the last run. When the host refuses although the run counts as
  /// stepped back, the run becomes part of the one before, so that the two go back together.
  [[nodiscard]] bool stepBack();
  [[nodiscard]] bool rollback() { return state_.undo.rollback(); }
  /// The number of the last run.
  [[nodiscard]] std::int32_t level() const { return state_.undo.marks(); }
  [[nodiscard]] bool canGoBack() const { return level() >= 1 && state_.undo.hasSteps(); }
  /// Drops the markers and units that an undone run brought; its number has to be read ahead of `stepBack`.
  void truncateTo(std::int32_t run);
  /// Keeps the configuration under a name. When it cannot be kept, the reason is told on the command line, and name and
  /// history are as they were.
  [[nodiscard]] bool saveHistory(std::wstring_view name);
  /// Lets the code of a unit run again.
  void forgetUnit(std::wstring_view code);
  /// Takes the user's edits of the pending units into the markers without running anything.
  void copyUnitsToMarkers();
  [[nodiscard]] ZanConfigUnitList& units() { return state_.units; }
  [[nodiscard]] ZanXmlHistory& history() { return state_.history; }
  [[nodiscard]] const ZanBuildArgs& args() const { return state_.args; }
  /// @}

  [[nodiscard]] const BuildState& state() const { return state_; }

private:
  void eraseMarkers();
  void joinRunToFormer(std::int32_t run);

  BuildState state_;
  bool markersMatched_ = true;
};

} // namespace brenvolt
