// While the configuration dialog is beside the drawing: which marker the current unit has, and which unit a marker is.
// Both are known by the titles that the circuit's worksheet gives to CODEs; where several units have one title, by their
// order.
#pragma once

#include "simhost/drawing/drawing_database.h"

#include <QString>

#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

class QTreeWidget;
class QTreeWidgetItem;

namespace simhost {

class QtWindows;
class SiteRun;

/// The upper-case CODEs of all markers in the current space, in drawing order.
[[nodiscard]] std::vector<std::wstring> markerCodes(const DrawingDatabase& drawing);

class UnitMarkers final {
public:
  /// Both must outlive it.
  UnitMarkers(SiteRun& site, QtWindows& windows) : site_(site), windows_(windows) {}
  UnitMarkers(const UnitMarkers&) = delete;
  UnitMarkers& operator=(const UnitMarkers&) = delete;

  /// The marker of the unit that the dialog shows; nothing without dialog or marker.
  [[nodiscard]] std::optional<KvDbHandle> current();
  /// The upper-case CODEs with the title of the unit that the dialog shows, also when its marker is gone because it is
  /// inserted.
  [[nodiscard]] std::set<std::wstring> currentCodes();
  /// Shows the unit of a marker in the dialog. False, and nothing is done, for any other entity.
  bool select(KvDbHandle entity);

private:
  [[nodiscard]] QTreeWidget* tree() const;
  /// The markers of the units of this title, in their order.
  [[nodiscard]] std::vector<KvDbHandle> markersOf(const QString& title);
  [[nodiscard]] std::wstring shownText(std::wstring_view role) const;
  void readTitles();

  SiteRun& site_;
  QtWindows& windows_;
  std::pair<std::wstring, std::wstring> circuit_; ///< and its type, whose titles are known
  std::map<std::wstring, QString> titles_;        ///< by upper-case CODE
  const QTreeWidgetItem* shown_ = nullptr; ///< item of the last answer, with the drawing as it was then
  std::uint64_t shownChange_ = 0;
  std::optional<KvDbHandle> shownMarker_;
};

} // namespace simhost
