// The model of pages at a place in a form, and of the groups on them.
#pragma once

#include "simhost/ui/control_model.h"
#include "simhost/ui/grid_model.h"

#include <map>
#include <string>
#include <vector>

namespace simhost {

class GroupModel final : public ModelOf<KvUiGroup> {
public:
  GroupModel(DialogModel& dialog, FormControl form);
  [[nodiscard]] KvUiGrid& Grid() override { return grid_; }
  void SetButtons(const std::vector<KvUiGroupButton>& buttons) override;

  [[nodiscard]] GridModel& grid() { return grid_; }
  [[nodiscard]] const std::vector<KvUiGroupButton>& buttons() const { return buttons_; }

private:
  void describe(nlohmann::ordered_json& shown) const override;

  GridModel grid_;
  std::vector<KvUiGroupButton> buttons_;
};

class PagesModel final : public ModelOf<KvUiPages> {
public:
  using ModelOf::ModelOf;
  int AddPage(int parent) override;
  /// Its controls can still be used by their holders, but no longer found by their roles.
  void RemovePage(int page) override;
  void ShowPage(int page) override;
  [[nodiscard]] int ShownPage() const override { return shown_; }
  void LockPage(int page, bool locked) override;
  [[nodiscard]] bool IsLocked(int page) const override;
  KvUiList& AddList(int page, std::wstring_view label) override;
  KvUiGroup& AddGroup(int page, std::wstring_view title) override;
  [[nodiscard]] KvUiList* ListAt(int page, int place) override;
  [[nodiscard]] KvUiGroup* GroupAt(int page, int place) override;

  [[nodiscard]] bool hasPage(int page) const { return pages_.contains(page); }
  /// The controls of a page as they were made; empty for an unknown one.
  [[nodiscard]] std::vector<ControlModel*> controlsOf(int page) const;
  /// The control of this label on the page that is shown, null without one.
  [[nodiscard]] ControlModel* findOnShownPage(std::wstring_view label) const;

private:
  struct Page {
    bool isLocked = false;
    std::vector<ControlModel*> controls; ///< the dialog owns them
  };
  [[nodiscard]] Page& pageOf(int page);
  [[nodiscard]] ControlModel* at(int page, int place) const;
  template <typename Model>
  Model& add(int page, std::wstring_view label, ControlKind kind);
  void describe(nlohmann::ordered_json& shown) const override;

  std::map<int, Page> pages_;
  int lastId_ = 0;
  int shown_ = 0;
};

} // namespace simhost
