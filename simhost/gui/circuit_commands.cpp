// Moving, copying, deleting and reporting.
#include "simhost/gui/circuit_commands.h"

#include "circuits/reports/drawing_reports.h"
#include "simhost/gui/circuit_placing.h"
#include "simhost/gui/circuit_rows.h"
#include "simhost/gui/circuit_selection.h"
#include "simhost/gui/drawing_files.h"
#include "simhost/gui/drawing_view.h"
#include "simhost/gui/report_window.h"
#include "simhost/gui/view_picks.h"
#include "simhost/host/session.h"
#include "simhost/lisp/printer.h"
#include "simhost/qt/qt_text.h"
#include "simhost/site/saved_configurations.h"
#include "simhost/site/site_run.h"
#include "text/compare.h"
#include "text/encoding.h"

#include <algorithm>

namespace simhost {
namespace {

using circuits::CircuitObject;

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

void CircuitCommands::runUnrecorded(HostText command, const Steps& steps) {
  if (!services_.runner.isRecorded()) return run(command, steps);
  services_.status.showFault(services_.texts(HostText::notRecorded, {captionOf(services_.texts, command)}));
}

std::string CircuitCommands::siteFolder() const {
  return services_.site.session().options().siteFolder.string();
}

circuits::RebuildRequest CircuitCommands::requestFor(
    const CircuitObject& circuit, const SiteConfigurations& site) const {
  return {siteFolder(), brenvolt::toUtf8(site.workbook), circuit.id};
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
  runUnrecorded(
      HostText::copyCircuit, [this](const auto&, const CircuitObject& circuit) -> std::optional<QString> {
        const QString name = toQt(circuit.name());
        if (circuit.fields.empty()) return services_.texts(HostText::circuitHasNoRecord, {name});
        const SiteConfigurations site = savedConfigurations(siteFolder());
        if (!hasType(site, circuit))
          return services_.texts(
              HostText::circuitHasNoType, {name, toQt(circuitField(circuit.fields, L"circuit")),
                                           toQt(circuitField(circuit.fields, L"type"))});
        const std::optional<KvPoint3d> point = placing_.pickPlace(
            services_.texts(HostText::placeCircuitQuestion, {name}),
            outlineAround(circuit, basePointOf(circuit)));
        if (!point) return std::nullopt;
        // Without a tag: the site counts on, as for any circuit that is placed here.
        const std::wstring id =
            circuits::copyCircuit(services_.site, requestFor(circuit, site), {}, *point).id;
        const CircuitObject made = circuits::needCircuit(services_.drawing(), id);
        selection_.select(id);
        view_.port().show(made.extents);
        return services_.texts(HostText::circuitCopied, {name, toQt(made.name())});
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
    // What has no family is in no list; pins know their devices by place, so all stay.
    for (circuits::Device& device : sheet.netlist.devices)
      if (device.circuit != circuit.id) device.family.clear();
    using circuits::ReportKind;
    showReport(
        services_.texts, services_.texts(HostText::reportTitle, {toQt(circuit.name())}),
        {{circuits::makeReport(ReportKind::motors, {sheet}), HostText::reportLoads, HostText::reportNoLoad},
         {circuits::makeReport(ReportKind::parts, {sheet}), HostText::reportParts, HostText::reportNoPart}},
        &services_.window);
    return services_.texts(HostText::ready);
  });
}

} // namespace simhost
