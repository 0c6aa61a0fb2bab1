#include "circuits/check/site_model.h"

#include "circuits/check/similar_name.h"
#include "platform/tables.h"
#include "text/compare.h"
#include "text/encoding.h"
#include "text/numbers.h"
#include "text/split.h"

#include <algorithm>

namespace circuits {

namespace fs = std::filesystem;
using brenvolt::equalsOrdinalNoCase;
using brenvolt::formatInt;
using brenvolt::fromUtf8;

namespace {

constexpr int leastListColumns = 4;
constexpr int leastSheetColumns = 9;

namespace listcolumn {
constexpr int circuit = 1, type = 2, drawing = 3, worksheet = 4, presetKey = 5;
}

void readSheets(SiteModel& site, Findings& findings) {
  brenvolt::ZanOleDbFileRecordset file(brenvolt::ConnectType::file, brenvolt::FileType::workbook);
  if (!file.Open(brenvolt::fromUtf8(site.workbook.string()))) {
    findings.add(
        L"workbook-unreadable", {.file = site.workbookName},
        {{L"reason", site.shownText(file.ErrorInfo().GetErrorInfo(false))}});
    return;
  }
  for (const std::wstring& name : tableNames(file.connection())) {
    const std::wstring table(brenvolt::trimView(name, L"'"));
    TableText sheet;
    std::wstring error;
    if (readTableText(file.connection(), table, sheet, error))
      site.sheets.push_back(std::move(sheet));
    else
      findings.add(
          L"workbook-unreadable", {.file = site.workbookName, .sheet = table.substr(0, table.find(L'$'))},
          {{L"reason", error}});
  }
}

void readCircuits(SiteModel& site, Findings& findings) {
  const TableText* list = site.findSheet(circuitListSheet);
  if (list == nullptr) {
    if (!site.sheets.empty())
      findings.add(
          L"sheet-missing", {.file = site.workbookName},
          {{L"sheet", std::wstring(circuitListSheet)},
           {L"similar", L"."},
           {L"user", L"the list of circuits"}});
    return;
  }
  if (list->columnCount() < leastListColumns) {
    findings.add(
        L"sheet-columns", site.place(circuitListSheet),
        {{L"sheet", std::wstring(circuitListSheet)},
         {L"count", formatInt(list->columnCount())},
         {L"needed", L"4: circuit, type, template, worksheet"}});
    return;
  }
  std::wstring circuit;
  for (const TableText::Row& row : list->rows) {
    const bool isEmpty = [&row] {
      for (int column = 1; column <= listcolumn::presetKey; ++column)
        if (!row.cell(column).empty()) return false;
      return true;
    }();
    if (isEmpty) continue;
    if (!row.cell(listcolumn::circuit).empty()) circuit = row.cell(listcolumn::circuit);
    site.entries.push_back(
        {row.number, circuit, row.cell(listcolumn::type), row.cell(listcolumn::drawing),
         row.cell(listcolumn::worksheet), row.cell(listcolumn::presetKey)});
  }
}

void readModels(SiteModel& site, Findings& findings) {
  std::vector<std::wstring> names;
  for (const TableText& sheet : site.sheets)
    names.push_back(sheet.name);
  for (const CircuitEntry& entry : site.entries) {
    if (entry.worksheet.empty() || site.findModel(entry.worksheet) != nullptr) continue;
    const TableText* sheet = site.findSheet(entry.worksheet);
    if (sheet == nullptr) {
      findings.add(
          L"sheet-missing", site.place(circuitListSheet, entry.row, listcolumn::worksheet), {entry.worksheet},
          {{L"sheet", entry.worksheet},
           {L"user", SiteModel::nameOf(entry)},
           {L"similar", didYouMean(similarName(entry.worksheet, names))}});
      continue;
    }
    if (sheet->columnCount() < leastSheetColumns) {
      findings.add(
          L"sheet-columns", site.place(sheet->name),
          {{L"sheet", sheet->name},
           {L"count", formatInt(sheet->columnCount())},
           {L"needed", L"9, up to the second list of forms"}});
      continue;
    }
    site.models.push_back(modelOf(*sheet));
  }
}

} // namespace

const TableText* SiteModel::findSheet(std::wstring_view name) const {
  const auto found = std::ranges::find_if(
      sheets, [name](const TableText& each) { return equalsOrdinalNoCase(each.name, name); });
  return found == sheets.end() ? nullptr : &*found;
}

const SheetModel* SiteModel::findModel(std::wstring_view name) const {
  const auto found = std::ranges::find_if(
      models, [name](const SheetModel& each) { return equalsOrdinalNoCase(each.name, name); });
  return found == models.end() ? nullptr : &*found;
}

std::wstring SiteModel::nameOf(const CircuitEntry& entry) {
  return entry.circuit + L" / " + entry.type;
}

std::wstring SiteModel::shownFile(const fs::path& file) const {
  const fs::path below = file.lexically_normal().lexically_relative(folder.lexically_normal());
  const bool isBelow = !below.empty() && *below.begin() != "..";
  return fromUtf8((isBelow ? below : file).generic_string());
}

std::wstring SiteModel::shownText(const std::wstring& text) const {
  return brenvolt::replaceAll(text, fromUtf8(folder.lexically_normal().generic_string()) + L"/", L"");
}

FindingPlace SiteModel::place(std::wstring_view sheet, int row, int column) const {
  return {.file = workbookName, .sheet = std::wstring(sheet), .row = row, .column = column};
}

FindingPlace SiteModel::place(const SheetModel& sheet, const SheetCode& code, int row, int column) const {
  FindingPlace result = place(sheet.name, row, column);
  result.code = code.code;
  return result;
}

SiteModel readSite(const fs::path& folder, const fs::path& workbook, Findings& findings) {
  SiteModel site;
  site.folder = folder;
  site.workbook = workbook;
  site.workbookName = site.shownFile(workbook);
  readSheets(site, findings);
  readCircuits(site, findings);
  readModels(site, findings);
  return site;
}

} // namespace circuits
