// The picker of a motor or a load: filter lists over a table, a grid, three numbers that follow each other, rows that
// can be edited in place, and a pick from the drawing.
#pragma once

#include "flows/dlg_database.h"
#include "flows/linked_rating.h"
#include "flows/rating_grid.h"
#include "flows/rating_picker_kind.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace brenvolt {

class RatingPicker : public ZanDlgDatabase {
public:
  /// What the user accepted, once `DoModal` has returned kvui::ok. Then it is also kept for the user.
  [[nodiscard]] const RatingSelection& selection() const { return selection_; }

protected:
  /// `given` is what the picker starts from; with nothing given it starts from what was kept for the user.
  RatingPicker(
      const RatingPickerKind& kind, KvWindow* parent, const LentTables& tables, RatingSelection given);

  bool OnInitDialog() final;
  void OnOK() final;
  void OnHelp() final;
  void OnControlEvent(const KvUiEvent& event) final;
  bool ValidateCell(int column, std::wstring_view text) final;
  void OnRowSelected(int row, int column) final;
  void OnRowCommitted(int row, bool changed) final;
  [[nodiscard]] std::wstring ColumnTitle(std::wstring_view name) const final;

private:
  [[nodiscard]] bool openTable();
  void fillFilterLists();
  void applyFilters();
  void showSource();
  void onFilterChanged(std::size_t place);
  void onEditTicked();
  void onPick();
  void adopt();
  void showRows();

  [[nodiscard]] std::size_t filterColumn(std::size_t place) const;
  [[nodiscard]] KvUiList& filterList(std::size_t place) const;
  [[nodiscard]] RatingNumbers numbers() const;
  void show(const RatingChanges& changes);

  const RatingPickerKind& kind_;
  RatingSelection selection_;
  std::unique_ptr<RatingTableService> service_;
  std::optional<RatingGrid> rows_;
  LinkedRating linked_;
  std::wstring allEntries_;
  std::wstring cancelCaption_;
};

} // namespace brenvolt
