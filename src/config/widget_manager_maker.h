// Keeps the widget managers of a build: motor and load managers at the head of their groups, the catalogue managers
// that depend on them as members. One object for the process while a build runs.
#pragma once

#include "config/widget_manager.h"
#include "data/component_sizing.h"
#include "drawing/annotation_rows.h"
#include "drawing/wire_formatter.h"
#include "project/code_record.h"

#include <memory>
#include <string>
#include <vector>

namespace brenvolt {

/// What tells the managers of a unit apart: the rule's text, then each of its parameters.
[[nodiscard]] std::wstring MakeKey(const ZanScriptEntry& rule);

/// A motor or load manager with the catalogue managers made behind it; the head may be absent while none was made.
struct ZanManagerGroup {
  /// A head without a unit is as good as none: the run that brought it was undone.
  [[nodiscard]] bool isHeaded() const { return head && head->HasUnit(); }

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

  /// Makes the managers of a new unit from its control rules and binds them to their option codes: one for its motor
  /// or load group, or else one for each rule with tables, where rules with the same tables share one. True when there
  /// was anything to bind.
  bool MakeManagers(ZanConfigUnit& unit);
  /// Takes over a motor or load manager: it heads the last group when that has no head, or else a new one, and its
  /// values count for the circuit from now on.
  void AddHead(std::unique_ptr<ZanWidgetManager> head);
  /// Takes over a catalogue manager as a member of the last group. Without a group it waits for the next head.
  void AddMember(std::unique_ptr<ZanWidgetManager> member);
  /// From now on the values of this motor or load manager count for the circuit: the user has worked in its page.
  void SetCurrent(ZanWidgetManager& manager) { current_ = &manager; }
  /// The head of the group that holds a member; null when there is none.
  [[nodiscard]] ZanWidgetManager* FindHead(const ZanWidgetManager* member) const;
  /// The wires of the last scan, for managers to come and for the motor or load manager at work.
  void SetWireFormatter(const ZanWireFormatter& formatter);
  [[nodiscard]] const ZanWireFormatter& wireFormatter() const { return wireFormatter_; }
  /// Reads the rows of the manager whose values count for the circuit as a whole: the motor or load manager made or
  /// used last. One that has no page, because it repeats another, or that has lost its unit leaves it to the last head
  /// that has both.
  void RefreshSettings();
  [[nodiscard]] const ZanAnnotationDataList& GetSettings() const { return settings_; }
  /// The rows of every head in order, and the order text of each change of the head's marker code. A head without a page,
  /// because it repeats another, and one whose unit was undone have no say.
  [[nodiscard]] bool CollectSettings(ZanAnnotationDataList& rows, std::vector<std::wstring>& orders);
  /// The components of the first motor, or else the first load, among the rows. None gives no rows.
  void computeAutoRows(const ZanAnnotationDataList& groupData, std::vector<ZanAutoSizeRow>& rows) const;

private:
  void makeMotorManager(ZanConfigUnit& unit, const ZanOptionGroup& group);
  [[nodiscard]] ZanWidgetManager* makeCatalogManager(ZanConfigUnit& unit, const ZanScriptEntry& rule);

  std::vector<ZanManagerGroup> groups_;
  std::vector<std::unique_ptr<ZanWidgetManager>> retired_; ///< heads that gave way
  ZanWidgetManager* current_ = nullptr;                    ///< a head; null while there is none
  ZanWireFormatter wireFormatter_;
  ZanAnnotationDataList settings_;
};

/// The object of the process; null while no build runs.
[[nodiscard]] ZanWidgetManagerMaker* widgetManagerMaker();

} // namespace brenvolt
