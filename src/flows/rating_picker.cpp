#include "flows/rating_picker.h"

#include "data/option_tables.h"
#include "flows/rating_memory.h"
#include "host/host_api_lisp.h"
#include "text/compare.h"
#include "text/format.h"
#include "text/numbers.h"
#include "widgets/common_roles.h"
#include "widgets/numeric_edit.h"
#include "widgets/roles_rating_picker.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace brenvolt {

namespace {

constexpr std::size_t filterCount = 3;

/// The index of a text in a list of choices after the entry for all; -1 when it is missing.
int choiceOf(const KvUiList& list, std::wstring_view text) {
  for (int index = 1; index < list.Count(); ++index)
    if (equalsCollating(list.TextAt(index), text)) return index;
  return -1;
}

/// Asks until an entity of the right kind is picked; nothing when the user cancels.
std::optional<KvDbObjectId> pickEntity(const RatingPickerKind& kind) {
  const std::wstring prompt = loadText(kind.pickPrompt);
  for (;;) {
    constexpr int noEmptyAnswer = 1;
    kvedInitGet(noEmptyAnswer, nullptr);
    KvEntityName entity{};
    KvPoint3d point{};
    if (kvedEntSel(prompt.c_str(), entity, point) != kvstatus::normal) {
      kvedSSFree(entity);
      return std::nullopt;
    }
    KvDbObjectId id;
    if (kvdbGetObjectId(id, entity) == KvDbStatus::ok && kind.isPicked(id)) return id;
  }
}

} // namespace

RatingPicker::RatingPicker(
    const RatingPickerKind& kind, KvWindow* parent, const LentTables& tables, RatingSelection given)
    : ZanDlgDatabase(kind.form, parent, tables), kind_(kind), selection_(std::move(given)) {}

bool RatingPicker::OnInitDialog() {
  SetDialogName(kind_.dialogName);
  if (!ZanDlgDatabase::OnInitDialog()) return false;
  if (kind_.title) SetTitle(loadText(*kind_.title));
  if (kind_.typeLabel) List(role::typeFilter).SetLabel(loadText(*kind_.typeLabel));
  if (!Connect() || !openTable()) return false;

  allEntries_ = loadText(TextId::allEntries);
  cancelCaption_ = Button(role::cancel).Label();
  rows_.emplace(kind_, *service_, grid());
  ZanOptTableReader options(&connection());
  completeSelection(kind_, options, selection_);
  fillFilterLists();
  adopt();
  showSource();
  return true;
}

bool RatingPicker::openTable() {
  service_ = kind_.makeService(&connection());
  std::wstring dataSource;
  MissingTables missing;
  return service_->CheckTables(dataSource, missing) ||
         alertTables(dataSource, missing.forCode, missing.everywhere, kind_.missingTable, acceptedTables());
}

void RatingPicker::fillFilterLists() {
  for (std::size_t place = 0; place < filterCount; ++place) {
    KvUiList& list = filterList(place);
    list.Clear();
    list.Insert(-1, allEntries_, 0);
    std::vector<std::wstring> values;
    service_->ListColumnValues(filterColumn(place), values);
    // Rows without a value cannot be filtered on: no text equals an absent one.
    for (const std::wstring& value : values)
      if (!value.empty()) list.Insert(-1, value, 0);
    list.Select(0);
  }
}

/// Shows the selection: filters, rows and numbers. A filter value that its list lacks leaves the filter open.
void RatingPicker::adopt() {
  show(linked_.begin(selection_.fla, selection_.flaMultiplier));
  applyFilters();
  showRows();
  const int row = rows_->findRow(selection_);
  grid().SelectRow(row);
  if (row > 0) grid().ScrollTo(row);
  OnRowSelected(row, 0);
}

void RatingPicker::applyFilters() {
  for (std::size_t place = 0; place < filterCount; ++place) {
    const std::size_t column = filterColumn(place);
    KvUiList& list = filterList(place);
    const std::wstring& value = selection_.*kind_.texts[column];
    const int index = value.empty() ? -1 : choiceOf(list, value);
    list.Select(std::max(index, 0));
    if (index > 0)
      rows_->fix(column, list.TextAt(index));
    else
      rows_->release(column);
  }
}

void RatingPicker::showRows() {
  rows_->show([this](std::wstring_view name) { return ColumnTitle(name); });
}

void RatingPicker::showSource() {
  std::wstring path;
  connection().GetDatasource(path);
  Text(role::database).SetText(path);
  Text(role::database).SetTooltip(path);
  kvutPrintf(formatText(loadText(TextId::databaseLine), {std::wstring_view(path)}).c_str());
  Text(role::table).SetText(service_->TableName());
}

void RatingPicker::OnControlEvent(const KvUiEvent& event) {
  const auto filter = std::find(kind_.filterRoles.begin(), kind_.filterRoles.end(), event.role);
  if (filter != kind_.filterRoles.end()) {
    if (event.kind == KvUiEventKind::changed)
      onFilterChanged(static_cast<std::size_t>(filter - kind_.filterRoles.begin()));
    return;
  }
  if (event.kind == KvUiEventKind::clicked && event.role == role::pick) onPick();
  if (event.kind == KvUiEventKind::changed && event.role == role::edit) onEditTicked();
  if (event.kind != KvUiEventKind::committed) return;
  if (event.role == role::current) show(linked_.leftCurrent(numbers()));
  if (event.role == role::multiplier) show(linked_.leftMultiplier(numbers()));
  if (event.role == role::total) show(linked_.leftTotal(numbers()));
}

void RatingPicker::onFilterChanged(std::size_t place) {
  const std::wstring value = filterList(place).Text();
  if (equalsCollating(value, allEntries_))
    rows_->release(filterColumn(place));
  else
    rows_->fix(filterColumn(place), value);
  showRows();
}

void RatingPicker::onEditTicked() {
  const bool editable = Tick(role::edit).IsChecked();
  grid().SetEditable(editable, editable);
  Button(role::cancel).SetLabel(editable ? loadText(TextId::closeCaption) : cancelCaption_);
}

void RatingPicker::onPick() {
  if (!BeginEditorCommand()) return;
  std::optional<RatingSelection> picked;
  if (const std::optional<KvDbObjectId> entity = pickEntity(kind_)) picked = kind_.readPicked(*entity);
  CompleteEditorCommand();
  if (!picked) return;
  // As in the multiplier's field: one that is none leaves the last good one.
  if (!isGiven(picked->flaMultiplier)) picked->flaMultiplier = linked_.multiplier();
  selection_ = std::move(*picked);
  adopt();
}

bool RatingPicker::ValidateCell(int column, std::wstring_view text) {
  if (column != rows_->placeOf(kind_.flaColumn)) return true;
  return formatDouble(toDouble(text)).starts_with(text);
}

void RatingPicker::OnRowSelected(int row, int) {
  show(linked_.rowSelected(rows_->currentOf(row), numbers()));
}

void RatingPicker::OnRowCommitted(int row, bool changed) {
  OnEditEnded();
  if (!changed || !rows_->save(row)) return;
  // New texts can be filtered on at once.
  for (std::size_t place = 0; place < filterCount; ++place) {
    const std::size_t column = filterColumn(place);
    const std::wstring value = rows_->textOf(row, column);
    KvUiList& list = filterList(place);
    if (!rows_->filter().active[column] && !value.empty() && choiceOf(list, value) < 0)
      list.Insert(-1, value, 0);
  }
}

std::wstring RatingPicker::ColumnTitle(std::wstring_view name) const {
  for (const auto& [column, ownName] : service_->columnNames())
    if (ownName == name) return loadText(textAt(kind_.firstColumnTitle, static_cast<unsigned>(column)));
  return std::wstring(name);
}

void RatingPicker::OnOK() {
  const int row = grid().SelectedRow();
  for (std::size_t column = 0; column < kind_.texts.size(); ++column)
    if (const RatingText text = kind_.texts[column])
      selection_.*text = row > 0 ? rows_->textOf(row, column) : std::wstring();
  const RatingNumbers shown = numbers();
  selection_.fla = shown.current;
  selection_.flaMultiplier = shown.multiplier;
  keepSelection(kind_, selection_);
  ZanDlgDatabase::OnOK();
}

void RatingPicker::OnHelp() {
  kvedHelp(kind_.helpTopic);
}

std::size_t RatingPicker::filterColumn(std::size_t place) const {
  const RatingTable& table = service_->description();
  return table.columnOf(table.filters[place]);
}

KvUiList& RatingPicker::filterList(std::size_t place) const {
  return List(kind_.filterRoles[place]);
}

RatingNumbers RatingPicker::numbers() const {
  return {
      ZanNumericEdit(Text(role::current)).value(), ZanNumericEdit(Text(role::multiplier)).value(),
      ZanNumericEdit(Text(role::total)).value()};
}

void RatingPicker::show(const RatingChanges& changes) {
  const auto showOne = [this](std::wstring_view role, const std::optional<double>& number) {
    if (number) ZanNumericEdit(Text(role)).setValue(*number);
  };
  showOne(role::current, changes.current);
  showOne(role::multiplier, changes.multiplier);
  showOne(role::total, changes.total);
}

} // namespace brenvolt
