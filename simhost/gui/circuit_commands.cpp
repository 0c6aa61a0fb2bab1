// Building, moving and reporting through the site's LISP.
#include "simhost/gui/circuit_commands.h"

#include "circuits/reports/drawing_reports.h"
#include "simhost/drawing/drawing_file.h"
#include "simhost/gui/circuit_placing.h"
#include "simhost/gui/circuit_selection.h"
#include "simhost/gui/drawing_files.h"
#include "simhost/gui/drawing_view.h"
#include "simhost/gui/report_window.h"
#include "simhost/gui/scaled_form.h"
#include "simhost/gui/view_picks.h"
#include "simhost/host/session.h"
#include "simhost/lisp/printer.h"
#include "simhost/qt/qt_text.h"
#include "simhost/site/saved_configurations.h"
#include "simhost/site/site_run.h"
#include "text/compare.h"
#include "text/numbers.h"
#include "text/split.h"

#include <algorithm>
#include <exception>

namespace simhost {
namespace {

using circuits::CircuitObject;

/// Variables of a drawing that are its site's own begin so; a build keeps them with the circuit.
constexpr std::wstring_view siteVariables = L"SITE_";

std::wstring lispText(std::wstring_view text) {
  return lisp::printValue(lisp::Value::string(std::wstring(text)), lisp::PrintStyle::readable);
}

KvPoint3d basePointOf(const CircuitObject& circuit) {
  return circuitPoint(circuit.fields).value_or(KvPoint3d{circuit.extents.left, circuit.extents.bottom, 0.0});
}

/// Its outline around the point that it was built at.
Box outlineAround(const CircuitObject& circuit, const KvPoint3d& base) {
  const Box& all = circuit.extents;
  return {all.left - base.x, all.bottom - base.y, all.right - base.x, all.top - base.y};
}

/// Motor or load data as a build takes them: each field in quotes, so that empty ones count.
std::wstring fieldsArgument(const CircuitObject& circuit) {
  if (circuit.params.empty()) return {};
  std::vector<std::wstring> fields = brenvolt::splitKeepingEmpty(circuit.params, L';');
  for (std::wstring& field : fields)
    field = brenvolt::trim(field);
  return L"\"" + brenvolt::join(fields, L"\";\"") + L"\"";
}

/// The record of a circuit has only scales other than 1.
std::wstring scaleOf(const CircuitObject& circuit, std::wstring_view name) {
  const std::wstring text = circuitField(circuit.fields, name);
  return text.empty() ? L"1" : text;
}

/// The site's variables as they were when it was built, as a list of pairs.
std::wstring variablesForm(const CircuitObject& circuit) {
  std::wstring pairs;
  for (const auto& [name, text] : circuit.fields)
    if (name.starts_with(siteVariables)) {
      const bool isNumber = brenvolt::formatInt(brenvolt::toInt(text)) == text;
      pairs += L"(" + lispText(name) + L" . " + (isNumber ? text : lispText(text)) + L")";
    }
  return pairs.empty() ? std::wstring(L"nil") : L"'(" + pairs + L")";
}

} // namespace

void CircuitCommands::run(HostText command, const Steps& steps) {
  const QString name = captionOf(services_.texts, command);
  services_.status.say(services_.texts(HostText::running, {name}));
  selection_.refresh();
  const CommandOutcome outcome = services_.runner.runSteps(
      name, [&](const CommandRunner::Evaluate& evaluate) -> std::optional<lisp::Value> {
        while (selection_.selected() == nullptr) {
          const ViewPicks::KindScope kind(picks_, PickKind::circuit);
          const EntityPick pick = picks_.pickEntity(fromQt(services_.texts(HostText::pickCircuit)), false);
          if (pick.kind != EntityPick::Kind::entity) return std::nullopt;
          selection_.selectOf(pick.handle);
        }
        const CircuitObject circuit = *selection_.selected();
        UndoLog& log = services_.drawing().undoLog();
        const int before = log.undoCount();
        try {
          const std::optional<QString> line = steps(evaluate, circuit);
          if (!line) return std::nullopt;
          return lisp::Value::string(fromQt(*line));
        } catch (...) {
          // A circuit that is gone, and not there again, is not what anybody asked for.
          if (log.undoCount() > before) static_cast<void>(log.undo(log.undoCount() - before));
          throw;
        }
      });
  selection_.refresh();
  services_.status.showOutcome(outcome, command);
}

void CircuitCommands::editWireSize() {
  // The site applies the result. A site without this function only shows it.
  std::wstring form = L"(if (fboundp 'site-edit-wire-size) (site-edit-wire-size";
  if (const auto control = selection_.control())
    form += L" (handle->entity \"" + formatHandle(*control) + L"\")";
  form += L") (zan_bv_edit_wiresize))";
  const ViewPicks::KindScope kind(picks_, PickKind::sized);
  runForm(services_, captionOf(services_.texts, HostText::editWireSize), form, HostText::editWireSize);
}

std::optional<std::wstring> CircuitCommands::buildArguments(
    const CircuitObject& circuit, const KvPoint3d& point) {
  const QString name = toQt(circuit.name());
  const auto field = [&circuit](std::wstring_view key) { return circuitField(circuit.fields, key); };
  if (circuit.fields.empty()) {
    services_.status.say(services_.texts(HostText::circuitHasNoRecord, {name}));
    return std::nullopt;
  }
  const SiteConfigurations* site = selection_.siteConfigurations();
  const auto isOfCircuit = [&](const brenvolt::SavedConfiguration& row) {
    return brenvolt::equalsOrdinalNoCase(row.key.circuit, field(L"circuit")) &&
           brenvolt::equalsOrdinalNoCase(row.key.type, field(L"type"));
  };
  const auto type = site == nullptr ? std::vector<brenvolt::SavedConfiguration>::const_iterator()
                                    : std::find_if(site->types.begin(), site->types.end(), isOfCircuit);
  if (site == nullptr || type == site->types.end()) {
    services_.status.say(
        services_.texts(HostText::circuitHasNoType, {name, toQt(field(L"circuit")), toQt(field(L"type"))}));
    return std::nullopt;
  }
  // A configuration deleted meanwhile is not a reason to lose the circuit.
  std::wstring configuration = field(L"configuration");
  if (std::none_of(site->saved.begin(), site->saved.end(), [&](const auto& row) {
        return isOfCircuit(row) && row.key.name == configuration;
      }))
    configuration.clear();
  std::wstring text =
      L" " + lispText(type->drawingTemplate) + L" (find-file " + lispText(field(L"workbook")) + L")";
  for (const std::wstring& value : {type->worksheet, type->key.circuit, type->key.type, configuration})
    text += L" " + lispText(value);
  text += L" " + lisp::printPointForm(point.x, point.y);
  for (const std::wstring& value : {field(L"codes"), fieldsArgument(circuit), circuit.wires})
    text += L" " + lispText(value);
  return text;
}

void CircuitCommands::move() {
  run(HostText::moveCircuit,
      [this](const auto& evaluate, const CircuitObject& circuit) -> std::optional<QString> {
        const KvPoint3d base = basePointOf(circuit);
        view_.place().setIgnoresGroup(true); // where it is now is free when it has moved
        const QString name = toQt(circuit.name());
        const std::optional<KvPoint3d> point = picks_.pickPoint(
            services_.texts(HostText::placeCircuitQuestion, {name}), outlineAround(circuit, base), base);
        view_.place().setIgnoresGroup(false);
        if (!point) return std::nullopt;
        evaluate(
            L"(circuit-move " + lispText(circuit.id) + L" " + lisp::printReal(point->x - base.x) + L" " +
            lisp::printReal(point->y - base.y) + L")");
        return services_.texts(HostText::circuitMoved, {name});
      });
}

void CircuitCommands::copy() {
  run(HostText::copyCircuit,
      [this](const auto& evaluate, const CircuitObject& circuit) -> std::optional<QString> {
        const KvPoint3d base = basePointOf(circuit);
        if (!buildArguments(circuit, base)) return services_.status.text();
        const QString name = toQt(circuit.name());
        const std::optional<KvPoint3d> point = placing_.pickPlace(
            services_.texts(HostText::placeCircuitQuestion, {name}), outlineAround(circuit, base));
        if (!point) return std::nullopt;
        const std::uint64_t first = services_.drawing().store().nextHandle().value();
        const lisp::Value built = evaluate(atScale(
            services_.site.interpreter(),
            L"(site-build-copy " + variablesForm(circuit) + *buildArguments(circuit, *point) + L")",
            scaleOf(circuit, L"scale"), scaleOf(circuit, L"component-scale")));
        if (built.isNil()) return std::nullopt;
        for (const CircuitObject& made : circuits::circuitsOf(services_.drawing()))
          if (!made.entities.empty() && made.entities.front().value() >= first) {
            selection_.select(made.id);
            view_.port().show(made.extents);
            return services_.texts(HostText::circuitCopied, {name, toQt(made.name())});
          }
        return std::nullopt;
      });
}

void CircuitCommands::erase() {
  run(HostText::deleteCircuit,
      [this](const auto& evaluate, const CircuitObject& circuit) -> std::optional<QString> {
        evaluate(L"(circuit-erase " + lispText(circuit.id) + L")");
        selection_.select({});
        return services_.texts(HostText::circuitDeleted, {toQt(circuit.name())});
      });
}

void CircuitCommands::report() {
  run(HostText::circuitReport, [this](const auto&, const CircuitObject& circuit) -> std::optional<QString> {
    circuits::Sheet sheet = circuits::readSheet(services_.drawing(), fromQt(files_.baseName()));
    std::erase_if(sheet.netlist.devices, [&](const auto& device) { return device.circuit != circuit.id; });
    showReport(
        services_.texts(HostText::reportTitle, {toQt(circuit.name())}),
        {circuits::makeReport(circuits::ReportKind::motors, {sheet}),
         circuits::makeReport(circuits::ReportKind::parts, {sheet})},
        &services_.window);
    return services_.texts(HostText::ready);
  });
}

} // namespace simhost
