#include "circuits/check/dry_run.h"

#include "circuits/check/drawing_rules.h"
#include "circuits/check/option_choices.h"
#include "circuits/check/part_lookups.h"
#include "circuits/check/sample_load.h"
#include "circuits/check/trial_build.h"
#include "simhost/lisp/arguments.h"
#include "simhost/lisp/list.h"
#include "text/compare.h"
#include "text/numbers.h"

#include <algorithm>
#include <map>
#include <set>
#include <utility>

namespace circuits {

namespace fs = std::filesystem;
namespace lisp = simhost::lisp;
using brenvolt::equalsOrdinalNoCase;
using brenvolt::toUpper;
using lisp::Value;

namespace {

/// After so many builds that fail as a whole the others would say the same.
constexpr int mostFailures = 3;
constexpr wchar_t executionError[] = L"ZanBrenvolt.ExecutionError";
/// How the host begins the line of an error on its command line.
constexpr std::wstring_view errorLine = L"; error: ";
constexpr std::wstring_view loopText = L"the limit of steps is reached";

/// What the LISP of a build does, noted by functions that stand before those of host and site.
class BuildWitness final {
public:
  explicit BuildWitness(CheckSession& session) : session_(session) {
    before(L"insert-drawing", [this](std::span<const Value> arguments) {
      if (!arguments.empty() && arguments.front().isString())
        inserted_.push_back(arguments.front().asString());
    });
    around(L"insert-block", [this](const Value& reference) {
      if (reference.isEntity()) placed_.emplace_back(reference, codeAtWork());
    });
    before(L"qn_bv_save_codehdl", [this](std::span<const Value> arguments) {
      if (arguments.empty()) return;
      for (const Value& row : lisp::Elements(arguments.front()))
        if (row.isCons() && row.asCons().car().isString())
          codes_.insert(toUpper(row.asCons().car().asString()));
    });
  }
  BuildWitness(const BuildWitness&) = delete;
  BuildWitness& operator=(const BuildWitness&) = delete;
  /// Later builds are not watched.
  ~BuildWitness() {
    for (const auto& [name, own] : replaced_)
      session_.interpreter().symbols().intern(name).function = own;
  }

  void begin() {
    inserted_.clear();
    placed_.clear();
    codes_.clear();
  }
  [[nodiscard]] const std::vector<std::wstring>& inserted() const { return inserted_; }
  [[nodiscard]] const std::set<std::wstring>& codes() const { return codes_; }
  [[nodiscard]] const std::vector<std::pair<Value, std::wstring>>& placed() const { return placed_; }

  /// The CODE of the marker whose forms are at work; empty outside a build.
  [[nodiscard]] std::wstring codeAtWork() const {
    const std::vector<Value> data = lisp::toVector(session_.interpreter().value(L"GBL_qn_bv_marker_data"));
    if (data.size() < 2 || !data[0].isInteger()) return {};
    const std::vector<Value> handles = lisp::toVector(data[1]);
    const auto index = static_cast<std::size_t>(data[0].asInteger());
    if (index >= handles.size() || !handles[index].isString()) return {};
    const std::optional<KvDbHandle> handle = simhost::parseHandle(handles[index].asString());
    const simhost::DrawingDatabase& drawing = session_.document().drawing();
    const simhost::EntityNode* marker = handle ? drawing.find(*handle) : nullptr;
    if (marker == nullptr) return {};
    for (const KvDbHandle each : marker->attributes) {
      const simhost::EntityNode* node = drawing.find(each);
      const auto* attribute = node == nullptr ? nullptr : std::get_if<simhost::Attribute>(&node->value.shape);
      if (attribute != nullptr && equalsOrdinalNoCase(attribute->tag, L"CODE")) return attribute->text.text;
    }
    return {};
  }

private:
  template <typename Note>
  void before(const wchar_t* name, Note note) {
    replace(name, [note](lisp::Interpreter& interpreter, const Value& own, lisp::Arguments& arguments) {
      note(arguments.values());
      return interpreter.call(own, arguments.values());
    });
  }
  template <typename Note>
  void around(const wchar_t* name, Note note) {
    replace(name, [note](lisp::Interpreter& interpreter, const Value& own, lisp::Arguments& arguments) {
      Value answer = interpreter.call(own, arguments.values());
      note(answer);
      return answer;
    });
  }
  /// A function of the same name that calls the former one. Without one there is nothing to note.
  template <typename Call>
  void replace(const wchar_t* name, Call call) {
    lisp::Interpreter& interpreter = session_.interpreter();
    const lisp::Symbol* symbol = interpreter.symbols().find(name);
    if (symbol == nullptr || !symbol->function.isFunction()) return;
    const Value own = symbol->function;
    replaced_.emplace_back(name, own);
    interpreter.define(name, 0, lisp::anyNumber, [own, call](lisp::Arguments& arguments) {
      return call(arguments.interpreter(), own, arguments);
    });
  }

  CheckSession& session_;
  std::vector<std::pair<std::wstring, Value>> replaced_;
  std::vector<std::wstring> inserted_;
  std::vector<std::pair<Value, std::wstring>> placed_;
  std::set<std::wstring> codes_;
};

/// All builds of one type of a circuit.
class CircuitRun final {
public:
  CircuitRun(
      const SiteModel& site, CheckSession& session, BuildWitness& witness, const CircuitEntry& entry,
      const SheetModel& sheet, TemplateSet& templates, PartLookups& lookups, std::optional<SampleLoad> load,
      Findings& findings)
      : site_(site), session_(session), witness_(witness), entry_(entry), sheet_(sheet),
        templates_(templates), lookups_(lookups), load_(std::move(load)), findings_(findings),
        drawing_(templates.read(templates.find(entry.drawing))) {
    lookups.beginCircuit();
  }

  void run() {
    findControls();
    ChoicePlan plan(sheet_);
    int failures = 0;
    struct Tried {
      Choices choices;
      std::set<std::wstring> codes; ///< that it ran
    };
    std::vector<Tried> tried;
    while (const std::optional<Choices> choices = plan.next()) {
      const bool isBuilt = build(plan, *choices);
      plan.note(*choices, witness_.codes());
      if (!isBuilt && ++failures == mostFailures) return;
      if (loops_) return; // each further build would take as long
      if (isBuilt) tried.push_back({*choices, witness_.codes()});
    }
    // What no other choice has built with its part.
    for (const Tried& each : tried) {
      const std::vector<ChosenPart> parts = chosenParts(plan, each.choices);
      const bool isNew = std::ranges::any_of(parts, [&](const ChosenPart& part) {
        return !part.part.values.empty() && each.codes.contains(toUpper(part.part.code)) &&
               !withPart_.contains(part.form());
      });
      if (isNew && !build(plan, each.choices) && ++failures == mostFailures) return;
      if (loops_) return;
    }
  }

private:
  void findControls() {
    for (const TemplateMarker& marker : drawing_.markers) {
      const SheetCode* code = sheet_.find(marker.code);
      if (code == nullptr || code->controlGroup() == nullptr) continue;
      SampleControl& control = controls_.emplace_back();
      control.code = marker.code;
      for (const TemplateMarker& wire : drawing_.markers)
        if (wire.isWire() && equalsOrdinalNoCase(wire.suffix(), marker.suffix()))
          control.wires.push_back({wire.isGround(), layerOf(wire)});
    }
  }

  using PartForm = std::pair<const SheetForm*, std::wstring>; ///< form and table of a part
  /// A part for the forms of a CODE that one code runs.
  struct ChosenPart {
    const SheetForm* lookup;
    SamplePart part;
    bool isGiven = false;
    [[nodiscard]] PartForm form() const { return {lookup, part.table}; }
  };

  /// A saved configuration brings motor or load, wires and choices into the build, as it does for a user.
  [[nodiscard]] fs::path workbookWith(const ChoicePlan& plan, const Choices& choices) {
    std::vector<SampleChoice> chosen;
    for (std::size_t i = 0; i < plan.groups().size(); ++i) {
      const ChoiceGroup& group = plan.groups()[i];
      const SheetOption& option = group.options().options[choices[i]];
      chosen.push_back({group.code->code, {group.options().title, option.text, option.value}});
    }
    // A part has a rating, which would hide that the tables give none: each form is first built without.
    parts_ = chosenParts(plan, choices);
    std::vector<SamplePart> given;
    for (ChosenPart& each : parts_) {
      each.isGiven = withoutPart_.contains(each.form()) && !each.part.values.empty();
      if (each.isGiven) given.push_back(each.part);
    }
    return session_.workbookWith(savedSample(
        load_ ? &*load_ : nullptr, controls_, chosen, given,
        {entry_.circuit, entry_.type, TrialBuild::savedName}));
  }

  /// The parts that the site's lookups give for the tables beside the forms of these choices; without values where they
  /// give none, as before the first build, from which they know the motor's current.
  [[nodiscard]] std::vector<ChosenPart> chosenParts(const ChoicePlan& plan, const Choices& choices) {
    std::map<const SheetCode*, std::int32_t> sums;
    for (std::size_t i = 0; i < plan.groups().size(); ++i) {
      const ChoiceGroup& group = plan.groups()[i];
      sums[group.code] += group.options().options[choices[i]].value;
    }
    std::vector<ChosenPart> parts;
    for (const SheetCode& code : sheet_.codes) {
      const auto sum = sums.find(&code);
      const std::int32_t wanted = sum == sums.end() ? incompleteCode : sum->second;
      for (const SheetForm& form : code.forms)
        if (form.column == sheetcolumn::controlForms && form.forCode == wanted)
          for (const SheetPair& pair : form.pairs)
            parts.push_back(
                {&form,
                 {code.code, pair.table, pair.title, lookups_.partOf(sheet_, code, form, pair)},
                 false});
    }
    return parts;
  }

  bool build(const ChoicePlan& plan, const Choices& choices) {
    choices_ = plan.shownText(choices);
    witness_.begin();
    static_cast<void>(session_.takeLines());
    session_.windows().onTask = [this](const simhost::TaskQuestion& question) {
      noteQuestion(question);
      return loops_ ? kvui::cancel : kvui::firstCommand; // the other markers are run too
    };
    hasFailed_ = false;
    const fs::path workbook = workbookWith(plan, choices);
    const TrialBuild trial(session_, entry_, workbook);
    session_.windows().onTask = nullptr;
    for (const ChosenPart& each : parts_)
      if (witness_.codes().contains(toUpper(each.part.code)))
        (each.isGiven ? withPart_ : withoutPart_).insert(each.form());
    noteEnd(trial);
    for (const std::wstring& name : witness_.inserted())
      if (const fs::path file = session_.host().findFile(name); !file.empty())
        if (!templates_.read(file).markers.empty())
          templates_.addInserted(sheet_.name, file); // else a symbol
    if (trial.isBuilt() && !hasFailed_) checkResult();
    return trial.isBuilt();
  }

  [[nodiscard]] FindingPlace circuitPlace() const {
    FindingPlace place;
    place.file = drawing_.file;
    place.sheet = sheet_.name;
    return place;
  }

  /// The last error that was printed: that of the form which has just failed.
  [[nodiscard]] std::wstring lastError() {
    std::wstring text;
    for (const std::wstring& line : session_.takeLines())
      if (line.starts_with(errorLine)) text = line.substr(errorLine.size());
    return session_.shownText(text);
  }

  void noteQuestion(const simhost::TaskQuestion& question) {
    const std::wstring error = session_.shownText(std::wstring(question.parameter(L"reason")));
    const bool isLoop = error.find(loopText) != std::wstring::npos;
    const bool isFirst = !hasFailed_;
    hasFailed_ = true;
    if (loops_) return; // after a loop every form fails
    loops_ = isLoop;
    if (question.key != executionError) {
      if (isFirst || question.key != lastKey_)
        findings_.add(
            L"run-question", site_.place(circuitListSheet, entry_.row, 2),
            {{L"circuit", SiteModel::nameOf(entry_)}, {L"question", question.text}, {L"choices", choices_}});
      lastKey_ = question.key;
      return;
    }
    FindingPlace place = site_.place(
        sheet_.name, brenvolt::toInt(question.parameter(L"row")),
        brenvolt::toInt(question.parameter(L"column")));
    place.code = question.parameter(L"code");
    MarkedText text;
    if (const SheetCode* record = sheet_.find(place.code))
      for (const SheetForm& form : record->forms)
        if (form.row == place.row && form.column == place.column &&
            form.text == question.parameter(L"errorFunc"))
          text = {form.cell, form.from, form.text.size()};
    if (!reported_.insert(placeText(place) + error).second) return;
    findings_.add(
        isLoop ? L"run-form-loops" : L"run-form-fails", std::move(place), std::move(text),
        {{L"circuit", SiteModel::nameOf(entry_)}, {L"choices", choices_}, {L"error", error}});
  }

  void noteEnd(const TrialBuild& trial) {
    if (trial.isBuilt() || hasFailed_) return;
    const CheckSession::Answer& answer = trial.answer();
    std::wstring reason = answer.error;
    if (reason.empty()) reason = lastError();
    if (reason.empty()) reason = L"no reason was given";
    if (answer.isLoop) loops_ = true;
    if (!reported_.insert(reason).second) return;
    FindingPlace place = site_.place(circuitListSheet, entry_.row, 2);
    std::wstring where = placeText(answer.place);
    findings_.add(
        L"run-build-fails", std::move(place), {entry_.type},
        {{L"circuit", SiteModel::nameOf(entry_)},
         {L"choices", choices_},
         {L"error", where.empty() ? reason : where + L": " + session_.shownText(reason)}});
  }

  void checkResult() {
    DrawnCircuit circuit{session_.document().drawing(), circuitPlace(), choices_, {}, {}, {}, {}};
    addStarts(drawing_, circuit);
    for (const auto& [reference, code] : witness_.placed())
      circuit.codes[handleOf(reference)] = code;
    if (load_ && load_->isRated)
      for (const SheetCode& code : sheet_.codes)
        if (takesRatings(code)) circuit.rated.insert(toUpper(code.code));
    for (const ChosenPart& each : parts_)
      if (each.isGiven)
        circuit.parts[toUpper(each.part.code)].emplace_back(each.part.table, each.part.number());
    checkDrawing(circuit, reported_, findings_);
  }

  void addStarts(const TemplateDrawing& each, DrawnCircuit& circuit) const {
    for (const TemplateMarker& marker : each.markers) {
      WireStart start{
          marker.code, marker.x, marker.y, {}}; // lines of a feeder begin at markers of other CODEs
      if (marker.isWire()) start.layer = layerOf(marker);
      circuit.starts.push_back(std::move(start));
    }
  }

  /// What the template's format makes of the size of a wire; empty without a format that holds one, or without a size.
  [[nodiscard]] std::wstring layerOf(const TemplateMarker& wire) const {
    if (!load_) return {};
    const std::wstring& size = wire.isGround() ? load_->groundSize : load_->wireSize;
    const std::optional<LayerFormat> format = wire.layerFormat();
    return size.empty() || !format ? std::wstring() : format->before + size + format->after;
  }

  static bool takesRatings(const SheetCode& code) {
    return std::ranges::any_of(code.forms, [](const SheetForm& form) {
      return form.column != sheetcolumn::controlForms &&
             brenvolt::findNoCase(form.text, L"#data2") != std::wstring::npos;
    });
  }

  static std::uint64_t handleOf(const Value& reference) {
    return simhost::DrawingDatabase::handleOf(KvDbObjectId(reference.asEntity())).value();
  }

  const SiteModel& site_;
  CheckSession& session_;
  BuildWitness& witness_;
  const CircuitEntry& entry_;
  const SheetModel& sheet_;
  TemplateSet& templates_;
  PartLookups& lookups_;
  std::optional<SampleLoad> load_;
  Findings& findings_;
  const TemplateDrawing& drawing_;
  std::vector<SampleControl> controls_;
  std::vector<ChosenPart> parts_;  ///< of the build at work
  std::set<PartForm> withoutPart_; ///< what is built without its part
  std::set<PartForm> withPart_;
  std::wstring choices_;
  std::wstring lastKey_;
  std::set<std::wstring> reported_;
  bool hasFailed_ = false; ///< a form of the build at work
  bool loops_ = false;
};

} // namespace

void runCircuits(
    const SiteModel& site, CheckSession& session, const TableSet& tables,
    const std::vector<ElectricalCode>& codes, TemplateSet& templates, Findings& findings) {
  if (!session.isComplete() || !session.interpreter().findFunction(L"site-build")) return;
  BuildWitness witness(session);
  PartLookups lookups(site, session);
  const ElectricalCode* electrical = codeOf(session, codes);
  for (const CircuitEntry& entry : site.entries) {
    const SheetModel* sheet = site.findModel(entry.worksheet);
    const fs::path file = templates.find(entry.drawing);
    if (sheet == nullptr || file.empty()) continue;
    const TemplateDrawing& drawing = templates.read(file);
    if (drawing.drawing == nullptr || drawing.markers.empty()) continue;
    std::optional<SampleLoad> load;
    const std::optional<LoadNeed> need = loadNeedOf(*sheet, drawing);
    std::wstring error;
    const fs::path database = session.database(error);
    if (need && electrical != nullptr && !database.empty())
      load = sampleLoad(tables, *electrical, *need, database);
    CircuitRun(site, session, witness, entry, *sheet, templates, lookups, std::move(load), findings).run();
  }
  lookups.report(findings);
}

} // namespace circuits
