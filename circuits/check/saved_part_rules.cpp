#include "circuits/check/sample_load.h"
#include "circuits/check/saved_rules.h"
#include "circuits/check/trial_build.h"
#include "text/compare.h"
#include "text/split.h"

#include <algorithm>
#include <array>
#include <map>
#include <set>

namespace circuits {

using brenvolt::equalsOrdinalNoCase;

namespace {

class SavedPartCheck final {
public:
  SavedPartCheck(CheckSession& session, const CircuitEntry& entry, std::vector<SavedPart> parts)
      : session_(session), entry_(entry), open_(std::move(parts)) {}

  /// Returns the parts that are never returned.
  std::vector<SavedPart> run(
      const std::vector<std::wstring>& controls, const std::vector<SampleLoad>& loads) {
    dropFound();
    std::vector<const SampleLoad*> tried;
    for (const SampleLoad& load : loads)
      tried.push_back(&load);
    if (tried.empty()) tried.push_back(nullptr); // a circuit without a motor
    std::vector<SampleControl> samples;
    for (const std::wstring& code : controls)
      samples.push_back({code, {}});
    for (const SampleLoad* load : tried) {
      if (open_.empty()) return {};
      session_.windows().onTask = [](const simhost::TaskQuestion&) { return kvui::firstCommand; };
      const TrialBuild trial(
          session_, entry_,
          session_.workbookWith(
              savedSample(load, samples, {}, {}, {entry_.circuit, entry_.type, TrialBuild::savedName})));
      session_.windows().onTask = nullptr;
      // Which part its motor would get is not known; what a build reports of itself says why.
      if (!trial.isBuilt()) return {};
      dropFound();
    }
    // A lookup that returns nothing of a table at all needs what a check does not have, or another rule names it.
    std::erase_if(open_, [this](const SavedPart& each) { return !hasParts_.contains(each.part.table); });
    return std::move(open_);
  }

private:
  void dropFound() {
    std::erase_if(open_, [this](const SavedPart& each) {
      // A lookup may keep what the group holds, or choose among the parts of its maker or of all.
      const KnownPart& part = each.part;
      return std::ranges::any_of(
          std::array{part, KnownPart{part.table, part.maker}, KnownPart{part.table}},
          [&](const KnownPart& known) { return returns(each, known); });
    });
  }

  bool returns(const SavedPart& saved, const KnownPart& known) {
    const std::optional<std::vector<std::wstring>> values = lookUpPart(session_, *saved.lookup, known);
    if (!values) return true; // the form asks for more
    if (values->empty()) return false;
    hasParts_.insert(saved.part.table);
    return equalsOrdinalNoCase((*values)[1], saved.part.number);
  }

  CheckSession& session_;
  const CircuitEntry& entry_;
  std::vector<SavedPart> open_;
  std::set<std::wstring> hasParts_; ///< tables of which anything was returned
};

} // namespace

void checkSavedParts(
    const SiteModel& site, CheckSession& session, const TableSet& tables,
    const std::vector<ElectricalCode>& codes, TemplateSet& templates, std::vector<SavedPart> parts,
    Findings& findings) {
  if (parts.empty() || !session.isComplete() || !session.interpreter().findFunction(L"site-build")) return;
  const ElectricalCode* electrical = codeOf(session, codes);
  std::map<const CircuitEntry*, std::vector<SavedPart>> byEntry;
  for (SavedPart& part : parts)
    byEntry[part.entry].push_back(std::move(part));
  for (auto& [entry, ofEntry] : byEntry) {
    const SheetModel* sheet = site.findModel(entry->worksheet);
    const std::filesystem::path file = templates.find(entry->drawing);
    if (sheet == nullptr || file.empty()) continue;
    const TemplateDrawing& drawing = templates.read(file);
    std::vector<std::wstring> controls;
    for (const TemplateMarker& marker : drawing.markers)
      if (const SheetCode* code = sheet->find(marker.code);
          code != nullptr && code->controlGroup() != nullptr)
        controls.push_back(marker.code);
    const std::optional<LoadNeed> need = loadNeedOf(*sheet, drawing);
    std::vector<SampleLoad> loads;
    if (need && electrical != nullptr) loads = loadsToTry(tables, *electrical, *need);
    // Where the tables have no motor, nothing is tried: the lookup would go by the motor of another circuit.
    if (need && loads.empty()) continue;
    for (const SavedPart& each : SavedPartCheck(session, *entry, std::move(ofEntry)).run(controls, loads))
      findings.add(
          L"saved-part-number", each.place,
          {{L"saved", each.saved},
           {L"part", brenvolt::trim(each.part.maker + L" " + each.part.number)},
           {L"table", each.part.table}});
  }
}

} // namespace circuits
