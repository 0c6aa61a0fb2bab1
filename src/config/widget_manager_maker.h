// Keeps the widget managers of a build: motor and load managers at the head of their groups, the catalogue managers
// that depend on them as members. Each build has one of its own.
#pragma once

#include "config/circuit_in_hand.h"
#include "config/widget_manager.h"
#include "data/component_sizing.h"
#include "data/table_watch.h"
#include "drawing/annotation_rows.h"
#include "drawing/template_wires.h"
#include "project/code_record.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace brenvolt {

/// What distinguishes the managers of a unit: the rule's text, then each of its parameters.
[[nodiscard]] std::wstring MakeKey(const ZanScriptEntry& rule);

/// A motor or load manager with the catalogue managers made after it; the head may be absent while none was made.
struct ZanManagerGroup {
  /// A head without a unit does not count: the run that added it was undone.
  [[nodiscard]] bool isHeaded() const { return head && head->HasUnit(); }

  std::unique_ptr<ZanWidgetManager> head;
  std::vector<std::unique_ptr<ZanWidgetManager>> members;
};

/// The rows of one motor or load, and its marker.
struct MotorRows {
  std::int32_t markerId = 0;
  ZanAnnotationDataList rows;
};

class ZanWidgetManagerMaker {
public:
  /// `circuit` is the current circuit. It and what is lent must outlive the maker.
  ZanWidgetManagerMaker(CircuitContext& circuit, LentTables tables) : circuits_(circuit), tables_(tables) {}
  ZanWidgetManagerMaker(const ZanWidgetManagerMaker&) = delete;
  ZanWidgetManagerMaker& operator=(const ZanWidgetManagerMaker&) = delete;
  virtual ~ZanWidgetManagerMaker() = default;

  /// Makes the managers of a new unit from its control rules and binds them to their option codes: one for its motor
  /// or load group, or else one for each rule with tables, where rules with the same tables share one. True when there
  /// was anything to bind.
  bool MakeManagers(ZanConfigUnit& unit);
  /// Takes over a motor or load manager: it heads the last group when that has no head, or else a new one.
  void AddHead(std::unique_ptr<ZanWidgetManager> head);
  /// Takes over a catalogue manager as a member of the last group. Without a group it waits for the next head.
  void AddMember(std::unique_ptr<ZanWidgetManager> member);
  /// The head of the group that holds a member; null when there is none.
  [[nodiscard]] ZanWidgetManager* FindHead(const ZanWidgetManager* member) const;

  /// Adds the wire positions of a run's template, for later managers and for the active motor or load. A template
  /// without wire positions changes nothing.
  void SetWireFormatter(const ZanWireFormatter& formatter, std::int32_t run);
  /// The positions of all templates.
  [[nodiscard]] const TemplateWires& wires() const { return wires_; }
  /// Called when a run was undone and its units are gone: removes its wire positions. When the active motor or load
  /// has lost its unit, the current circuit is that of the last remaining one.
  void TakeBackRun(std::int32_t run);
  /// A run that the host refused to undo became part of the one before it.
  void JoinRun(std::int32_t run, std::int32_t former);

  /// The rows of every head in order. A head without a page, because it repeats another, and one whose unit was undone
  /// are left out.
  [[nodiscard]] std::vector<MotorRows> CollectSettings() const;

private:
  void makeMotorManager(ZanConfigUnit& unit, const ZanOptionGroup& group);
  [[nodiscard]] ZanWidgetManager* makeCatalogManager(ZanConfigUnit& unit, const ZanScriptEntry& rule);
  /// Calls `visit` for each motor or load manager, those included that gave way.
  template <class Visit>
  void forEachMotor(const Visit& visit) const;

  CircuitInHand circuits_;
  LentTables tables_;
  std::vector<ZanManagerGroup> groups_;
  std::vector<std::unique_ptr<ZanWidgetManager>> retired_; ///< heads that gave way
  TemplateWires wires_;
};

/// Whether the tables must have formulas for a type. Those of a motor must; a load's type most often has none.
enum class TypeFormulas { required, optional };

/// The components of a motor type for a current in amperes, by the tables of the current electrical code. The user is
/// asked about missing tables; if the user stops, the tables' plain names are used. A type without the formulas that are
/// required is passed to the observer: its components have no ratings.
[[nodiscard]] std::vector<ZanAutoSizeRow> sizeComponents(
    std::wstring_view type, double current, TypeFormulas formulas, const LentTables& tables);

/// The components of the first motor, or else the first load, among the rows. None gives no rows.
[[nodiscard]] std::vector<ZanAutoSizeRow> computeAutoRows(
    const ZanAnnotationDataList& groupData, const LentTables& tables);

} // namespace brenvolt
