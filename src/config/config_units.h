// The configuration's units for the markers with choices. Units form a tree with the nesting of the
// markers; the dialog shows a page for each, and the build reads from them what was chosen.
#pragma once

#include "drawing/annotation_rows.h"
#include "project/code_record.h"

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace brenvolt {

class ZanConfigUnitList;
class ZanSettingsWnd;
class ZanWidgetManager;

/// A widget manager and the option codes for which it is used. The maker owns the manager.
struct ZanManagerBinding {
  std::vector<std::int32_t> codes;
  ZanWidgetManager* manager = nullptr;
};

class ZanConfigUnit {
public:
  /// The unit of a marker; `id` is the marker's and stays.
  explicit ZanConfigUnit(std::int32_t id);
  ZanConfigUnit(const ZanConfigUnit&) = delete;
  ZanConfigUnit& operator=(const ZanConfigUnit&) = delete;
  /// Detaches the managers; the units below die with it.
  virtual ~ZanConfigUnit();

  [[nodiscard]] std::int32_t GetOptionCode() const { return options.GetOptionCode(); }
  [[nodiscard]] ZanConfigUnitList* children() const { return children_.get(); }
  [[nodiscard]] const std::vector<ZanManagerBinding>& managers() const { return managers_; }
  /// The manager of the first binding that holds the code; null when there is none.
  [[nodiscard]] ZanWidgetManager* FindManager(std::int32_t code) const;
  /// The first bound manager that matches the key; null when there is none.
  [[nodiscard]] ZanWidgetManager* FindManagerByKey(std::wstring_view key) const;

  ZanConfigUnitList& EnsureChildren();
  void ClearChildren();
  /// Adds a code to the binding of a manager, made when there is none. Null is ignored.
  void BindManager(std::int32_t optionCode, ZanWidgetManager* manager);
  /// Lets each bound manager build its groups, in the order of their binding.
  void AddManagersToWindow(ZanSettingsWnd* window);

  std::wstring code;  ///< the marker's
  std::wstring order; ///< the marker's; decimal text
  const std::int32_t markerId;
  std::uint32_t page = 0; ///< in the selection window; 0 until the dialog has made it
  ZanCodeRecord options;  ///< the marker's, and what the dialog changes
  ZanAnnotationDataList catalogRows;
  ZanAnnotationDataList controlRows;
  bool pending = false;  ///< inserted with the next insertion run
  bool inserted = false; ///< is in the drawing; its page is locked
  bool control = false;  ///< has a motor or load group: `controlRows` and not `catalogRows` is its product
  std::uint32_t insertStep = 0; ///< number of the run that placed it; 0 while it is not placed
  std::int32_t ownerStep = -1;  ///< the marker's run

private:
  friend class ZanWidgetManager;
  void managerDies(ZanWidgetManager* manager);

  std::unique_ptr<ZanConfigUnitList> children_;
  std::vector<ZanManagerBinding> managers_;
};

enum class FindUnitBy { marker, page };

/// Owns its units, and through them a whole tree.
class ZanConfigUnitList {
public:
  using Units = std::vector<std::unique_ptr<ZanConfigUnit>>;

  ZanConfigUnitList() = default;
  ZanConfigUnitList(const ZanConfigUnitList&) = delete;
  ZanConfigUnitList& operator=(const ZanConfigUnitList&) = delete;
  virtual ~ZanConfigUnitList() = default;

  [[nodiscard]] const Units& units() const { return units_; }
  [[nodiscard]] bool isEmpty() const { return units_.empty(); }
  /// The first unit of the tree, depth first and parents before children, with this id; null when there is none.
  [[nodiscard]] ZanConfigUnit* Find(std::uint32_t id, FindUnitBy by) const;

  /// Takes the unit over; null is ignored. Answers the unit.
  ZanConfigUnit* Add(std::unique_ptr<ZanConfigUnit> unit);
  void Clear() { units_.clear(); }
  /// Removes the units that a run created from all lists of the tree. A run of 0 or below does nothing: such units
  /// belong to the template.
  void RemoveUnitsOfRun(std::int32_t run);

private:
  Units units_;
};

/// Walks a tree of units, parents before their children.
class ZanConfigUnitListIterator {
public:
  /// Null is allowed: the walk is over at once.
  explicit ZanConfigUnitListIterator(const ZanConfigUnitList* root) : root_(root) {}
  virtual ~ZanConfigUnitListIterator() = default;

  [[nodiscard]] bool IsDone() const;
  /// Null when done.
  [[nodiscard]] ZanConfigUnit* Current() const;
  /// The unit that holds the current one; null in the root list and when done.
  [[nodiscard]] ZanConfigUnit* Parent() const;

  /// Goes to the first unit; false when there is none.
  bool First();
  void Next();

private:
  struct Frame {
    const ZanConfigUnitList* list;
    std::size_t position;
  };
  [[nodiscard]] static ZanConfigUnit* unitAt(const Frame& frame);

  const ZanConfigUnitList* root_;
  std::vector<Frame> frames_;
};

} // namespace brenvolt
