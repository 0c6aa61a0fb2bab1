// The circuits of the drawing, and the one that commands are about.
#pragma once

#include "circuits/provenance/circuit_objects.h"
#include "simhost/gui/circuit_rows.h"
#include "simhost/gui/window_services.h"

namespace simhost {

class DrawingFiles;
class DrawingView;
class SiteCircuits;

class CircuitSelection final {
public:
  /// All must outlive it. `siteCircuits`: null without a site.
  CircuitSelection(
      const WindowServices& services, DrawingView& view, const DrawingFiles& files,
      SiteCircuits* siteCircuits)
      : services_(services), view_(view), files_(files), siteCircuits_(siteCircuits) {}
  CircuitSelection(const CircuitSelection&) = delete;
  CircuitSelection& operator=(const CircuitSelection&) = delete;

  /// Empty for none.
  [[nodiscard]] const std::wstring& id() const { return selected_; }
  /// Null when the selected circuit is gone, or none is selected.
  [[nodiscard]] const circuits::CircuitObject* selected() const { return known(selected_); }
  /// Null for none.
  [[nodiscard]] const circuits::CircuitObject* known(std::wstring_view id) const;
  [[nodiscard]] const circuits::CircuitObject* circuitOf(KvDbHandle entity) const;
  /// The entity whose wires are edited: the selected one, else the motor or load of the selected circuit.
  [[nodiscard]] std::optional<KvDbHandle> control() const;
  /// Those of the site's files as they are now; null without a site, or when it cannot be read.
  [[nodiscard]] const SiteConfigurations* siteConfigurations() const;

  /// Lists the circuits again if the drawing has changed and no command runs.
  void refresh();
  /// The next refresh lists them in any case.
  void invalidate() { listedChange_.reset(); }
  void select(const std::wstring& id);
  void selectOf(std::optional<KvDbHandle> entity);
  /// Selects it and shows it in the view.
  void show(const std::wstring& id);

  std::function<void(const std::vector<CircuitRow>& rows)> onListed;
  std::function<void()> onSelected;

private:
  WindowServices services_;
  DrawingView& view_;
  const DrawingFiles& files_;
  SiteCircuits* siteCircuits_;
  std::vector<circuits::CircuitObject> circuits_;
  std::optional<std::uint64_t> listedChange_; ///< the change of the drawing that the list is of
  std::wstring selected_;
};

} // namespace simhost
