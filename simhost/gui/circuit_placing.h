// Placing circuits: a new one or a saved configuration is chosen, its outline is at the pointer until the user has picked
// a place, and the site builds it there.
#pragma once

#include "simhost/drawing/box.h"
#include "simhost/gui/window_services.h"

#include <map>

namespace brenvolt {
struct SavedConfiguration;
}

namespace simhost {

class DrawingView;
class ShownDrawing;
class SiteCircuits;
class ViewPicks;
struct OfferedCircuit;

class CircuitPlacing final {
public:
  /// All must outlive it. `siteCircuits`: draws outlines beforehand; null for none.
  CircuitPlacing(
      const WindowServices& services, DrawingView& view, ShownDrawing& shown, ViewPicks& picks,
      SiteCircuits* siteCircuits)
      : services_(services), view_(view), shown_(shown), picks_(picks), siteCircuits_(siteCircuits) {}
  CircuitPlacing(const CircuitPlacing&) = delete;
  CircuitPlacing& operator=(const CircuitPlacing&) = delete;

  /// Lets the user choose a position, starting with the next free one for this outline; nothing when the user presses
  /// Escape.
  [[nodiscard]] std::optional<KvPoint3d> pickPlace(
      const QString& prompt, const std::optional<Box>& outline = {});

  /// Commands.
  void newCircuit();
  void buildFromHistory();

private:
  void buildSaved(const brenvolt::SavedConfiguration& saved, const std::wstring& workbookPath);
  /// Asks for the position of a template, lets `build` make the LISP that builds it there, and shows the result.
  [[nodiscard]] std::optional<lisp::Value> place(
      const CommandRunner::Evaluate& evaluate, const std::wstring& drawingTemplate,
      const OfferedCircuit& offered, const std::function<std::wstring(const std::wstring& point)>& build);
  /// Makes the outline of the current pick that of the finished circuit, as soon as this is known.
  void refineOutline(const OfferedCircuit& offered);
  [[nodiscard]] std::optional<Box> outlineOf(const std::wstring& drawingTemplate) const;
  [[nodiscard]] KvPoint3d nextFreePlace(const std::optional<Box>& outline);
  /// What the last command has added to the drawing, seen whole.
  [[nodiscard]] Box extentsSince(std::uint64_t firstHandle) const;

  WindowServices services_;
  DrawingView& view_;
  ShownDrawing& shown_;
  ViewPicks& picks_;
  SiteCircuits* siteCircuits_;
  KvPoint3d lastPlace_;                  ///< of the circuit that was placed last
  std::map<std::wstring, Box> outlines_; ///< of templates, as they were built last; around their point
};

} // namespace simhost
