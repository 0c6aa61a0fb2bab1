// The parts that users chose for their motors, in the table CATALOGSEL: whether a dialog can still show them.
#include "circuits/check/saved_rules.h"
#include "circuits/check/similar_name.h"
#include "text/compare.h"
#include "text/split.h"

#include <algorithm>
#include <map>

namespace circuits {

using brenvolt::equalsOrdinalNoCase;
using brenvolt::toUpper;

namespace {

class SelectionCheck final {
public:
  SelectionCheck(const SiteModel& site, const SiteTable& table, Findings& findings)
      : table_(table), findings_(findings), marker_(table.text.columnOf(L"MARKER")),
        lookup_(table.text.columnOf(L"LKUPTABLE")), maker_(table.text.columnOf(L"MFG")),
        number_(table.text.columnOf(L"CAT")), assembly_(table.text.columnOf(L"ASSYCODE")) {
    for (const CircuitEntry& entry : site.entries)
      if (const SheetModel* sheet = site.findModel(entry.worksheet))
        for (const SheetCode& code : sheet->codes)
          if (code.hasTitle && !code.isRepeated) addRecord(entry, code);
  }

  std::vector<SavedPart> run() {
    if (marker_ == 0 || lookup_ == 0 || records_.empty()) return {}; // findings of their own
    for (const TableText::Row& row : table_.text.rows)
      checkRow(row);
    return std::move(parts_);
  }

private:
  /// A group of parts: the circuit whose sheet has it and the form that looks its parts up.
  struct Group {
    const CircuitEntry* entry;
    const SheetForm* form;
  };
  struct Record {
    std::wstring code;
    std::map<std::wstring, Group> groups{}; ///< by table in upper case
    std::vector<std::wstring> tables{};
  };

  void addRecord(const CircuitEntry& entry, const SheetCode& code) {
    Record& record = records_.try_emplace(toUpper(code.code), Record{code.code}).first->second;
    for (const SheetForm& form : code.forms)
      for (const SheetPair& pair : form.pairs)
        if (record.groups.try_emplace(toUpper(pair.table), Group{&entry, &form}).second)
          record.tables.push_back(pair.table);
  }

  /// "CATALOGSEL (Induction 5 HP)"
  [[nodiscard]] std::wstring nameOf(const TableText::Row& row) const {
    std::vector<std::wstring> words;
    for (const wchar_t* column : {L"TYPE", L"Load", L"Units"})
      words.push_back(row.cell(table_.text.columnOf(column)));
    std::erase(words, std::wstring());
    return table_.text.name + L" (" + brenvolt::join(words, L" ") + L")";
  }

  void checkRow(const TableText::Row& row) {
    const std::wstring& code = row.cell(marker_);
    const std::wstring& table = row.cell(lookup_);
    const auto record = records_.find(toUpper(code));
    if (record == records_.end()) {
      std::vector<std::wstring> codes;
      for (const auto& [key, each] : records_)
        codes.push_back(each.code);
      findings_.add(
          L"selection-code", table_.place(row.number, marker_), {code},
          {{L"code", code}, {L"similar", didYouMean(similarName(code, codes))}});
      return;
    }
    const auto group = record->second.groups.find(toUpper(table));
    if (group == record->second.groups.end()) {
      findings_.add(
          L"selection-table", table_.place(row.number, lookup_), {table},
          {{L"code", code},
           {L"table", table},
           {L"similar", didYouMean(similarName(table, record->second.tables))}});
      return;
    }
    if (number_ != 0 && !row.cell(number_).empty())
      parts_.push_back(
          {nameOf(row), table_.place(row.number, number_), group->second.entry, group->second.form,
           KnownPart{table, row.cell(maker_), row.cell(number_), row.cell(assembly_)}});
  }

  const SiteTable& table_;
  Findings& findings_;
  int marker_;
  int lookup_;
  int maker_;
  int number_;
  int assembly_;
  std::map<std::wstring, Record> records_; ///< by upper-case CODE
  std::vector<SavedPart> parts_;
};

} // namespace

std::vector<SavedPart> checkSelections(const SiteModel& site, const TableSet& tables, Findings& findings) {
  const SiteTable* table = tables.find(L"CATALOGSEL");
  return table == nullptr ? std::vector<SavedPart>() : SelectionCheck(site, *table, findings).run();
}

} // namespace circuits
