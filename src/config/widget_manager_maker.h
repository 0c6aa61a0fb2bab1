// Keeps the widget managers of a build: motor and load managers at the head of their groups, the catalogue managers
// that depend on them as members. One object for the process while a build runs.
#pragma once

#include "config/widget_manager.h"
#include "data/component_sizing.h"
#include "drawing/annotation_rows.h"
#include "drawing/wire_formatter.h"

#include <memory>
#include <string>
#include <vector>

namespace brenvolt {

/// A motor or load manager with the catalogue managers made behind it; the head may be absent while none was made.
struct ZanManagerGroup {
  std::unique_ptr<ZanWidgetManager> head;
  std::vector<std::unique_ptr<ZanWidgetManager>> members;
};

class ZanWidgetManagerMaker {
public:
  ZanWidgetManagerMaker() = default;
  ZanWidgetManagerMaker(const ZanWidgetManagerMaker&) = delete;
  ZanWidgetManagerMaker& operator=(const ZanWidgetManagerMaker&) = delete;
  virtual ~ZanWidgetManagerMaker() = default;

  /// Makes the object of the process unless there is one; true when it exists.
  static bool Create();
  /// Ends it; on each way out of a build.
  static void Destroy();

  /// Takes over a motor or load manager: it heads the last group when that has no head, or else a new one, and its
  /// values count for the circuit from now on.
  void AddHead(std::unique_ptr<ZanWidgetManager> head);
  /// Takes over a catalogue manager as a member of the last group. Without a group it waits for the next head.
  void AddMember(std::unique_ptr<ZanWidgetManager> member);
  /// The head of the group that holds a member; null when there is none.
  [[nodiscard]] ZanWidgetManager* FindHead(const ZanWidgetManager* member) const;
  void SetWireFormatter(const ZanWireFormatter& formatter) { wireFormatter_ = formatter; }
  [[nodiscard]] const ZanWireFormatter& wireFormatter() const { return wireFormatter_; }
  /// Reads the rows of the manager whose values count for the circuit as a whole.
  void RefreshSettings();
  [[nodiscard]] const ZanAnnotationDataList& GetSettings() const { return settings_; }
  /// The rows of every head in order, and the order text of each change of the head's marker code.
  [[nodiscard]] bool CollectSettings(ZanAnnotationDataList& rows, std::vector<std::wstring>& orders);
  /// The components of the first motor, or else the first load, among the rows. None gives no rows.
  void computeAutoRows(const ZanAnnotationDataList& groupData, std::vector<ZanAutoSizeRow>& rows) const;

private:
  std::vector<ZanManagerGroup> groups_;
  ZanWidgetManager* current_ = nullptr; ///< the motor or load manager made last
  ZanWireFormatter wireFormatter_;
  ZanAnnotationDataList settings_;
};

/// The object of the process; null while no build runs.
[[nodiscard]] ZanWidgetManagerMaker* widgetManagerMaker();

} // namespace brenvolt
