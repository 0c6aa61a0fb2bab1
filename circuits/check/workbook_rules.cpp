#include "circuits/check/workbook_rules.h"

#include "circuits/check/similar_name.h"
#include "text/compare.h"
#include "text/numbers.h"
#include "text/split.h"

#include <algorithm>
#include <map>
#include <set>

namespace circuits {

using brenvolt::CollatingLess;
using brenvolt::equalsCollating;
using brenvolt::equalsOrdinalNoCase;
using brenvolt::formatInt;

namespace {

/// Blanks around a sign and digits: what a column of whole numbers may hold.
bool isWholeNumber(std::wstring_view text) {
  text = brenvolt::trimView(text);
  if (text.starts_with(L'-') || text.starts_with(L'+')) text.remove_prefix(1);
  constexpr std::size_t mostDigits = 9;
  return !text.empty() && text.size() <= mostDigits && text.find_first_not_of(L"0123456789") == text.npos;
}

// The list of circuits.

void checkFields(const SiteModel& site, const CircuitEntry& entry, Findings& findings) {
  struct Field {
    int column;
    const std::wstring& text;
    const wchar_t* name;
  };
  const Field fields[] = {
      {1, entry.circuit, L"circuit"},
      {2, entry.type, L"type"},
      {3, entry.drawing, L"template"},
      {4, entry.worksheet, L"worksheet"}};
  for (const Field& field : fields)
    if (field.text.empty())
      findings.add(
          L"circuit-field-missing", site.place(circuitListSheet, entry.row, field.column),
          {{L"circuit", SiteModel::nameOf(entry)}, {L"field", field.name}});
}

void checkCircuitList(const SiteModel& site, Findings& findings) {
  const TableText* list = site.findSheet(circuitListSheet);
  if (list == nullptr) return;
  if (site.entries.empty() && list->columnCount() >= 4)
    findings.add(
        L"sheet-empty", site.place(circuitListSheet), {{L"sheet", L"ZAN_CIRCS"}, {L"content", L"circuit"}});

  std::map<std::wstring, int, CollatingLess> begins; // circuit to the row where it began
  for (const TableText::Row& row : list->rows)
    if (const std::wstring& name = row.cell(1); !name.empty())
      if (const auto [place, isNew] = begins.try_emplace(name, row.number); !isNew)
        findings.add(
            L"circuit-twice", site.place(circuitListSheet, row.number, 1), {name},
            {{L"circuit", name}, {L"row", formatInt(place->second)}});
  using RowsByType = std::map<std::wstring_view, int, CollatingLess>;
  std::map<std::wstring_view, RowsByType, CollatingLess> types; // by circuit, to the row of each type
  for (const CircuitEntry& entry : site.entries) {
    checkFields(site, entry, findings);
    const auto [first, isNew] = types[entry.circuit].try_emplace(entry.type, entry.row);
    if (!isNew)
      findings.add(
          L"type-twice", site.place(circuitListSheet, entry.row, 2), {entry.type},
          {{L"type", SiteModel::nameOf(entry)}, {L"row", formatInt(first->second)}});
  }
}

void checkUnusedSheets(const SiteModel& site, Findings& findings) {
  if (site.entries.empty()) return;
  std::set<std::wstring> used = {brenvolt::toUpper(circuitListSheet), brenvolt::toUpper(presetSheet)};
  for (const CircuitEntry& entry : site.entries)
    used.insert(brenvolt::toUpper(entry.worksheet));
  for (const TableText& sheet : site.sheets) {
    if (!used.contains(brenvolt::toUpper(sheet.name)))
      findings.add(L"sheet-unused", site.place(sheet.name), {{L"sheet", sheet.name}});
  }
}

// Annotation presets.

void checkPresets(const SiteModel& site, Findings& findings) {
  const TableText* sheet = site.findSheet(presetSheet);
  constexpr int neededColumns = 6;
  std::map<std::wstring, int> keys; // compared as they stand, as a build does
  std::map<std::pair<std::wstring, std::wstring>, int> rows;
  std::wstring key;
  if (sheet != nullptr && sheet->columnCount() < neededColumns && !sheet->rows.empty())
    findings.add(
        L"sheet-columns", site.place(presetSheet),
        {{L"sheet", std::wstring(presetSheet)},
         {L"count", formatInt(sheet->columnCount())},
         {L"needed", L"6: key, label, attribute, description, value, extra"}});
  if (sheet != nullptr)
    for (const TableText::Row& row : sheet->rows) {
      if (!row.cell(1).empty()) {
        key = row.cell(1);
        keys.try_emplace(key, row.number);
      }
      if (row.cell(2).empty() && row.cell(3).empty()) continue;
      const std::wstring name = brenvolt::toUpper(key + L"\n" + row.cell(2));
      const auto [place, isNew] = rows.try_emplace({name, brenvolt::toUpper(row.cell(3))}, row.number);
      if (!isNew)
        findings.add(
            L"preset-twice", site.place(presetSheet, row.number, 2), {row.cell(2)},
            {{L"key", key},
             {L"label", row.cell(2)},
             {L"attribute", row.cell(3)},
             {L"row", formatInt(place->second)}});
    }
  std::vector<std::wstring> names;
  for (const auto& [name, row] : keys)
    names.push_back(name);
  std::set<std::wstring> used;
  for (const CircuitEntry& entry : site.entries) {
    if (entry.presetKey.empty()) continue;
    used.insert(entry.presetKey);
    if (!keys.contains(entry.presetKey))
      findings.add(
          L"preset-key-missing", site.place(circuitListSheet, entry.row, 5), {entry.presetKey},
          {{L"key", entry.presetKey},
           {L"circuit", SiteModel::nameOf(entry)},
           {L"similar", didYouMean(similarName(entry.presetKey, names))}});
  }
  for (const auto& [name, row] : keys)
    if (!used.contains(name))
      findings.add(L"preset-key-unused", site.place(presetSheet, row, 1), {name}, {{L"key", name}});
}

// Circuit sheets, row by row.

class SheetCheck final {
public:
  SheetCheck(const SiteModel& site, const TableText& sheet, const SheetModel& model, Findings& findings)
      : site_(site), sheet_(sheet), model_(model), findings_(findings), pairsEnd_(endOfPairs(sheet)) {}

  void run() {
    if (std::ranges::none_of(model_.codes, &SheetCode::hasTitle))
      findings_.add(
          L"sheet-empty", site_.place(model_.name),
          {{L"sheet", model_.name}, {L"content", L"CODE with a title"}});
    auto next = model_.codes.begin();
    for (const TableText::Row& row : sheet_.rows) {
      while (next != model_.codes.end() && next->row <= row.number)
        code_ = &*next++;
      checkRow(row);
    }
    for (const SheetCode& code : model_.codes)
      checkCode(code);
  }

private:
  FindingPlace at(const TableText::Row& row, int column) const {
    FindingPlace place = site_.place(model_.name, row.number, column);
    if (code_ != nullptr) place.code = code_->code;
    return place;
  }

  void checkRow(const TableText::Row& row) {
    if (std::ranges::all_of(row.cells, [](const std::wstring& cell) { return cell.empty(); })) return;
    if (code_ == nullptr) {
      const auto filled =
          std::ranges::find_if(row.cells, [](const std::wstring& cell) { return !cell.empty(); });
      const int column = static_cast<int>(filled - row.cells.begin()) + 1;
      if (column <= sheetcolumn::controlForms) findings_.add(L"code-missing", at(row, column), {*filled}, {});
      return;
    }
    checkNumbers(row);
    checkOptionCells(row);
    checkPairs(row);
  }

  void checkNumbers(const TableText::Row& row) {
    for (const int column : {sheetcolumn::value, sheetcolumn::forCode}) {
      const std::wstring& text = row.cell(column);
      if (text.empty() || isWholeNumber(text)) continue;
      findings_.add(
          L"value-not-whole", at(row, column), {text},
          {{L"text", text}, {L"read", formatInt(brenvolt::toInt(text))}});
    }
  }

  void checkOptionCells(const TableText::Row& row) {
    using namespace sheetcolumn;
    const std::wstring& mark = row.cell(defaultMark);
    const bool isOption = !row.cell(option).empty();
    if (isOption) {
      const bool hasGroup = std::ranges::any_of(
          code_->groups, [&row](const SheetGroup& group) { return group.row <= row.number; });
      if (!hasGroup)
        findings_.add(
            L"option-without-group", at(row, option), {row.cell(option)}, {{L"option", row.cell(option)}});
      else if (row.cell(value).empty())
        findings_.add(
            L"option-without-value", at(row, value), {row.cell(option)}, {{L"option", row.cell(option)}});
      if (!mark.empty() && !equalsCollating(mark, L"x"))
        findings_.add(L"default-mark", at(row, defaultMark), {mark}, {{L"mark", mark}});
      return;
    }
    for (const int column : {defaultMark, value})
      if (!row.cell(column).empty())
        findings_.add(
            L"option-text-missing", at(row, column), {row.cell(column)}, {{L"text", row.cell(column)}});
  }

  void checkPairs(const TableText::Row& row) {
    using namespace sheetcolumn;
    for (int left = firstPair; left < pairsEnd_; left += 2) {
      const std::wstring& table = row.cell(left);
      const std::wstring& title = row.cell(left + 1);
      if (table.empty() && title.empty()) continue;
      if (table.empty() || title.empty()) {
        const bool lacksTitle = title.empty();
        findings_.add(
            L"pair-half", at(row, lacksTitle ? left + 1 : left), {lacksTitle ? table : title},
            {{L"present", lacksTitle ? L"a table of parts" : L"a title"},
             {L"absent", lacksTitle ? L"title" : L"table"}});
      } else if (row.cell(controlForms).empty()) {
        findings_.add(L"pair-without-control", at(row, left), {table}, {{L"table", table}});
      }
    }
  }

  /// The column after the last pair: the end of the sheet, or one that is known by its title.
  [[nodiscard]] static int endOfPairs(const TableText& sheet) {
    int column = sheetcolumn::firstPair;
    for (; column <= sheet.columnCount(); column += 2) {
      const std::wstring& title = sheet.columns[static_cast<std::size_t>(column) - 1];
      if (equalsOrdinalNoCase(title, L"CHECK") || equalsOrdinalNoCase(title, onlyWithColumn)) break;
    }
    return column;
  }

  /// The groups above are those that the user has answered.
  void checkOnlyWith(const SheetCode& code, const SheetGroup& group) {
    for (const std::wstring& wanted : group.onlyWith) {
      bool isKnown = false;
      for (const SheetGroup* above = code.groups.data(); above != &group; ++above)
        for (const SheetOption& option : above->options)
          isKnown = isKnown || equalsOrdinalNoCase(option.text, wanted);
      if (!isKnown)
        findings_.add(
            L"only-with-unknown", site_.place(model_, code, group.row, sheet_.columnOf(onlyWithColumn)),
            {wanted}, {{L"group", group.title}, {L"option", wanted}, {L"code", code.code}});
    }
  }

  void checkCode(const SheetCode& code) {
    code_ = &code;
    const auto place = [&](int row, int column) { return site_.place(model_, code, row, column); };
    if (!code.hasTitle) {
      findings_.add(
          L"code-untitled", place(code.row, sheetcolumn::title), {code.code}, {{L"code", code.code}});
      return;
    }
    if (code.isRepeated) {
      const SheetCode* first = model_.find(code.code);
      findings_.add(
          L"code-twice", place(code.row, sheetcolumn::code), {code.code},
          {{L"code", code.code}, {L"row", formatInt(first == nullptr ? 0 : first->row)}});
      return;
    }
    for (const SheetGroup& group : code.groups)
      checkGroup(code, group);
    checkControls(code);
  }

  void checkGroup(const SheetCode& code, const SheetGroup& group) {
    checkOnlyWith(code, group);
    const auto place = [&](int row, int column) { return site_.place(model_, code, row, column); };
    if (group.options.empty()) {
      findings_.add(
          L"group-empty", place(group.row, sheetcolumn::group), {group.title}, {{L"group", group.title}});
      return;
    }
    const auto defaults = std::ranges::count_if(group.options, &SheetOption::isDefault);
    if (defaults == 0)
      findings_.add(
          L"group-without-default", place(group.row, sheetcolumn::group), {group.title},
          {{L"group", group.title}, {L"code", code.code}});
    const SheetOption* first = nullptr;
    for (const SheetOption& option : group.options) {
      if (!option.isDefault) continue;
      if (first != nullptr)
        findings_.add(
            L"default-twice", place(option.row, sheetcolumn::defaultMark), {option.text},
            {{L"group", group.title}, {L"first", first->text}, {L"second", option.text}});
      first = &option;
    }
    for (auto option = group.options.begin(); option != group.options.end(); ++option) {
      const auto equal = std::find_if(group.options.begin(), option, [&option](const SheetOption& above) {
        return above.value == option->value;
      });
      if (equal != option)
        findings_.add(
            L"option-value-twice", place(option->row, sheetcolumn::value), {option->text},
            {{L"first", equal->text}, {L"second", option->text}, {L"value", formatInt(option->value)}});
    }
  }

  void checkControls(const SheetCode& code) {
    const auto place = [&](int row, int column) { return site_.place(model_, code, row, column); };
    const SheetGroup* control = code.controlGroup();
    if (control == nullptr) {
      for (const SheetForm& form : code.forms)
        if (form.column == sheetcolumn::controlForms && form.pairs.empty())
          findings_.add(
              L"control-without-pairs", place(form.row, form.column),
              {form.cell, form.from, form.text.size()}, {});
      return;
    }
    if (control != &code.groups.front())
      findings_.add(
          L"control-group-place", place(control->row, sheetcolumn::group), {control->title},
          {{L"group", control->title}, {L"first", code.groups.front().title}});
    for (const SheetOption& option : control->options)
      if (option.value != 0)
        findings_.add(
            L"control-group-value", place(option.row, sheetcolumn::value), {formatInt(option.value)},
            {{L"group", control->title}, {L"value", formatInt(option.value)}});
    const auto forms = std::ranges::count_if(
        code.forms, [](const SheetForm& form) { return form.column == sheetcolumn::controlForms; });
    constexpr int neededForms = 2;
    if (forms < neededForms)
      findings_.add(
          L"control-forms", place(control->row, sheetcolumn::controlForms), {control->title},
          {{L"group", control->title}, {L"count", formatInt(forms)}});
  }

  const SiteModel& site_;
  const TableText& sheet_;
  const SheetModel& model_;
  Findings& findings_;
  int pairsEnd_;
  const SheetCode* code_ = nullptr; ///< at work; null before the first one
};

} // namespace

void checkLists(const SiteModel& site, Findings& findings) {
  checkCircuitList(site, findings);
  checkUnusedSheets(site, findings);
  checkPresets(site, findings);
}

void checkSheet(const SiteModel& site, const SheetModel& sheet, Findings& findings) {
  SheetCheck(site, *site.findSheet(sheet.name), sheet, findings).run();
}

} // namespace circuits
