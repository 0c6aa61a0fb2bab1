#include "config/widget_manager_catalog.h"

#include "config/flag_scope.h"
#include "config/widget_manager_maker.h"
#include "host/resources.h"
#include "host/script_form.h"
#include "text/compare.h"

#include <algorithm>
#include <array>
#include <optional>

namespace brenvolt {

namespace {

/// Place of the count among the rows; it holds also when a row before it is left out because its text is missing.
constexpr std::int32_t countPlace =
    static_cast<std::int32_t>(TextId::catalogCount) - static_cast<std::int32_t>(TextId::catalogFirst);
/// A lookup gives no count.
constexpr std::wstring_view defaultCount = L"1";

constexpr std::wstring_view titleField = L"TITLE";
constexpr std::wstring_view tableField = L"TABLE";

/// What the command may name: the first rows of the group.
constexpr std::array<std::wstring_view, 3> rowArguments = {L"@mfg", L"@cat", L"@asm"};

std::vector<ZanGroupRow> buildRows() {
  constexpr auto count =
      static_cast<unsigned>(TextId::catalogLast) - static_cast<unsigned>(TextId::catalogFirst) + 1;
  std::vector<ZanGroupRow> rows;
  for (unsigned place = 0; place < count; ++place)
    if (std::optional<std::wstring> label = findText(textAt(TextId::catalogFirst, place)))
      rows.push_back({std::move(*label), {}});
  return rows;
}

/// The values of a row that belongs to a table; nothing when it is another table's. A row that ends before a name
/// has nothing against it.
std::optional<std::vector<std::wstring>> valuesOfTable(
    const ZanAnnotationData& row, const std::wstring& title, const std::wstring& table) {
  std::vector<std::wstring> values;
  for (std::size_t place = 0; place < row.fields.size(); ++place) {
    const std::wstring& value = row.fields[place].value;
    if (place == 0 && !equalsCollating(value, title)) return std::nullopt;
    if (place == 1 && !equalsCollating(value, table)) return std::nullopt;
    if (place > 1) values.push_back(value);
  }
  return values;
}

/// Lends the editor to the host for a lookup and takes it back on every way out.
class EditorLoan final {
public:
  explicit EditorLoan(ZanSettingsWnd* window)
      : dialog_(window == nullptr ? nullptr : &window->dialog()),
        window_(window == nullptr ? std::weak_ptr<const void>() : window->lifetime()) {
    if (dialog_ != nullptr) dialog_->HandOverEditor(EditorOwner::host);
  }
  ~EditorLoan() {
    // LISP can end what is open.
    if (!window_.expired()) dialog_->HandOverEditor(EditorOwner::dialog);
  }
  EditorLoan(const EditorLoan&) = delete;
  EditorLoan& operator=(const EditorLoan&) = delete;

private:
  ZanConfigDialogService* dialog_;
  std::weak_ptr<const void> window_;
};

} // namespace

void ZanWidgetManagerCatalog::Configure(ZanConfigUnit* unit, const ZanScriptEntry& rule) {
  SetUnit(unit);
  command_ = rule.text;
  tables_ = rule.params;
}

void ZanWidgetManagerCatalog::AttachWindow(ZanSettingsWnd* window) {
  ZanWidgetManager::AttachWindow(window);
  if (!HasWindow()) return;
  window->MakeGroups(page_, tables_.size());
  ZanGroupSpec spec;
  spec.buttons = {{static_cast<unsigned>(ImageId::lookup), loadText(TextId::tipCatalogLookup)}};
  spec.hasButtons = !command_.empty();
  spec.rows = buildRows();
  countRow_ = countPlace;
  for (std::size_t place = 0; place < tables_.size(); ++place) {
    spec.title = tables_[place].second;
    spec.id = static_cast<std::int32_t>(place);
    if (ZanGroupCtrl* group = groupAt(place)) group->Configure(spec, *this);
  }
}

void ZanWidgetManagerCatalog::OnLookup(ZanGroupCtrl* group) {
  if (group == nullptr || busy_ || command_.empty()) return;
  const FlagScope busy(busy_);
  std::vector<std::wstring> values;
  if (lookUp(*group, values) && HasWindow()) group->WriteValues(values);
}

bool ZanWidgetManagerCatalog::lookUp(ZanGroupCtrl& group, std::vector<std::wstring>& values) {
  const auto table = static_cast<std::size_t>(group.id());
  if (group.id() < 0 || table >= tables_.size()) return false;
  std::vector<ZanScriptVariable> arguments;
  arguments.push_back(ZanScriptVariable::ofText(L"@table", tables_[table].first));
  const std::vector<ZanGroupRow> rows = group.ReadRows();
  for (std::size_t row = 0; row < std::min(rows.size(), rowArguments.size()); ++row)
    arguments.push_back(ZanScriptVariable::ofText(rowArguments[row], rows[row].value()));

  ResultList answer;
  {
    const EditorLoan loan(window());
    if (!runForm(command_, arguments, answer)) return false;
  }
  const std::int16_t type = ListReader(answer).type();
  if (type != kvtype::listBegin && type != kvtype::string) return false;
  values = valuesOf(answer);
  return true;
}

std::vector<std::wstring> ZanWidgetManagerCatalog::valuesOf(const ResultList& answer) const {
  std::vector<std::wstring> values;
  ListReader reader(answer);
  static_cast<void>(reader.enterList());
  for (std::int32_t place = 0; !reader.atEnd(); ++place) {
    if (place == countRow_) values.emplace_back(defaultCount);
    values.push_back(reader.text().value_or(std::wstring()));
    // A result is one flat list: a nested list counts as a value, and the first end of a list ends the result.
    if (!reader.enterList()) reader.skipElement();
  }
  return values;
}

ZanWidgetManager* ZanWidgetManagerCatalog::head() const {
  return maker_ == nullptr ? nullptr : maker_->FindHead(this);
}

/// The values of each row that belongs to the table of its place.
ManagerResults ZanWidgetManagerCatalog::resultsOf(const ZanAnnotationDataList& rows) const {
  ManagerResults results;
  for (std::size_t place = 0; place < std::min(tables_.size(), rows.size()); ++place) {
    const ZanAnnotationData* row = rows.items()[place].row.get();
    const auto& [table, title] = tables_[place];
    if (row == nullptr) continue;
    if (auto values = valuesOfTable(*row, title, table)) results.emplace_back(table, std::move(*values));
  }
  return results;
}

void ZanWidgetManagerCatalog::SaveSelection(
    std::wstring_view markerCode, std::int32_t code, const ZanAnnotationDataList& rows) {
  if (ZanWidgetManager* keeper = head()) keeper->SaveCatalog(markerCode, code, resultsOf(rows));
}

void ZanWidgetManagerCatalog::LoadSelection(std::wstring_view markerCode, std::int32_t code) {
  ZanWidgetManager* keeper = head();
  if (!HasWindow() || keeper == nullptr) return;
  std::vector<std::wstring> names;
  for (const auto& table : tables_)
    names.push_back(table.first);
  ManagerResults results;
  keeper->LoadCatalog(markerCode, code, names, results);
  ApplyResults(results);
}

void ZanWidgetManagerCatalog::ApplyResults(const ManagerResults& results) {
  for (const auto& [name, values] : results)
    for (std::size_t place = 0; place < tables_.size(); ++place) {
      ZanGroupCtrl* group = groupAt(place);
      if (group != nullptr && !name.empty() && equalsCollating(name, tables_[place].first))
        group->WriteValues(values);
    }
}

std::optional<ZanAnnotationDataList> ZanWidgetManagerCatalog::ExportRows() const {
  if (!HasWindow()) return std::nullopt;
  ZanAnnotationDataList rows;
  for (std::size_t place = 0; place < tables_.size(); ++place) {
    const ZanGroupCtrl* group = groupAt(place);
    if (group == nullptr) continue;
    ZanAnnotationData row(rowname::catalog);
    row.Add(group->spec().title, kvtype::string, titleField, true);
    row.AddText(tables_[place].first, tableField);
    for (const ZanGroupRow& each : group->ReadRows())
      row.AddText(each.value(), each.label);
    rows.AddRow(std::move(row));
  }
  return rows;
}

void ZanWidgetManagerCatalog::ImportRows(const ZanAnnotationDataList& rows) {
  for (std::size_t place = 0; place < std::min(tables_.size(), rows.size()); ++place) {
    ZanGroupCtrl* group = groupAt(place);
    const ZanAnnotationData* row = rows.items()[place].row.get();
    if (group == nullptr || row == nullptr) continue;
    const auto& [table, title] = tables_[place];
    if (const auto values = valuesOfTable(*row, title, table)) group->WriteValues(*values);
  }
}

void ZanWidgetManagerCatalog::SetLocked(bool locked) {
  for (std::size_t place = 0; place < tables_.size(); ++place)
    if (ZanGroupCtrl* group = groupAt(place)) group->SetLocked(locked);
}

} // namespace brenvolt
