// The main window's commands on a circuit as a whole. Each is about the selected circuit; without one it asks.
#include "simhost/gui/main_window.h"

#include "circuits/reports/drawing_reports.h"
#include "simhost/drawing/circuit_edit.h"
#include "simhost/gui/circuit_panel.h"
#include "simhost/gui/report_window.h"
#include "simhost/host/session.h"
#include "simhost/lisp/printer.h"
#include "simhost/qt/qt_text.h"
#include "simhost/site/saved_configurations.h"
#include "simhost/site/site_run.h"
#include "text/compare.h"
#include "text/numbers.h"
#include "text/split.h"

#include <QAction>
#include <QDockWidget>
#include <QFileInfo>
#include <QMenu>

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
  const std::vector<std::wstring> parts =
      brenvolt::splitKeepingEmpty(circuitField(circuit.fields, L"point"), L',');
  if (parts.size() < 2) return {circuit.extents.left, circuit.extents.bottom, 0.0};
  return {brenvolt::toDouble(parts[0]), brenvolt::toDouble(parts[1]), 0.0};
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

void MainWindow::refreshCircuits() {
  const std::uint64_t change = drawing().undoLog().changeCount();
  if (runner_.isBusy() || change == shownCircuits_) return;
  shownCircuits_ = change;
  circuits_ = circuits::circuitsOf(drawing());
  const QString name = file_.isEmpty() ? texts_(HostText::untitled) : QFileInfo(file_).completeBaseName();
  circuitPanel_->setCircuits(
      circuitRows(circuits_, circuits::sheetNumber(drawing(), fromQt(name)), siteConfigurations(), texts_));
  if (!selectedCircuit_.empty())
    selectCircuit(knownCircuit(selectedCircuit_) == nullptr ? L"" : selectedCircuit_);
}

const SiteConfigurations* MainWindow::siteConfigurations() {
  const std::filesystem::path& folder = site_.session().options().siteFolder;
  if (folder.empty()) return nullptr;
  try {
    configurations_ = std::make_unique<SiteConfigurations>(savedConfigurations(folder.string()));
  } catch (const std::exception&) {
    configurations_.reset(); // what needs them says why
  }
  return configurations_.get();
}

const CircuitObject* MainWindow::knownCircuit(std::wstring_view id) const {
  const auto found = std::find_if(
      circuits_.begin(), circuits_.end(), [id](const CircuitObject& circuit) { return circuit.id == id; });
  return found == circuits_.end() ? nullptr : &*found;
}

void MainWindow::selectCircuit(const std::wstring& id) {
  selectedCircuit_ = id;
  view_->selectGroup(id.empty() ? std::vector<KvDbHandle>() : entitiesOfCircuit(drawing(), id));
  circuitPanel_->showCircuit(id);
  showProperties();
}

void MainWindow::selectCircuitOf(std::optional<KvDbHandle> entity) {
  const EntityNode* node = entity ? drawing().find(*entity) : nullptr;
  const auto origin = node == nullptr ? std::nullopt : provenanceOf(node->value);
  selectCircuit(origin ? origin->circuit : std::wstring());
}

void MainWindow::showCircuit(const std::wstring& id) {
  const CircuitObject* circuit = knownCircuit(id);
  view_->select(std::nullopt);
  selectCircuit(circuit == nullptr ? std::wstring() : id);
  if (circuit == nullptr) return;
  view_->showArea(circuit->extents);
  QString type = toQt(circuitField(circuit->fields, L"type"));
  say(texts_(HostText::circuitFacts, {toQt(circuit->name()), type}));
}

std::optional<KvDbHandle> MainWindow::selectedControl() const {
  if (view_->selected()) return view_->selected();
  for (const KvDbHandle handle : view_->group())
    if (const EntityNode* node = drawing().find(handle))
      if (findData(node->value, L"ORL_QN_BV_CIRCPARAMS") != nullptr) return handle;
  return std::nullopt;
}

void MainWindow::onCircuit(HostText command, const CircuitSteps& steps) {
  const QString name = actions_.at(command)->iconText();
  say(texts_(HostText::running, {name}));
  refreshCircuits();
  const CommandOutcome outcome =
      runner_.runSteps(name, [&](const CommandRunner::Evaluate& evaluate) -> std::optional<lisp::Value> {
        while (knownCircuit(selectedCircuit_) == nullptr) {
          pickKind_ = PickKind::circuit;
          const EntityPick pick = pickEntity(fromQt(texts_(HostText::pickCircuit)), false);
          pickKind_ = PickKind::any;
          if (pick.kind != EntityPick::Kind::entity) return std::nullopt;
          selectCircuitOf(pick.handle);
        }
        const CircuitObject circuit = *knownCircuit(selectedCircuit_);
        UndoLog& log = drawing().undoLog();
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
  refreshCircuits();
  tell(outcome, command);
}

void MainWindow::moveSelected() {
  onCircuit(
      HostText::moveCircuit,
      [this](const auto& evaluate, const CircuitObject& circuit) -> std::optional<QString> {
        const KvPoint3d base = basePointOf(circuit);
        view_->setIgnoresGroup(true); // where it is now is free when it has moved
        const QString name = toQt(circuit.name());
        const std::optional<KvPoint3d> point =
            pickPointFrom(texts_(HostText::placeCircuitQuestion, {name}), outlineAround(circuit, base), base);
        view_->setIgnoresGroup(false);
        if (!point) return std::nullopt;
        evaluate(
            L"(circuit-move " + lispText(circuit.id) + L" " + lisp::printReal(point->x - base.x) + L" " +
            lisp::printReal(point->y - base.y) + L")");
        return texts_(HostText::circuitMoved, {name});
      });
}

void MainWindow::deleteSelected() {
  onCircuit(
      HostText::deleteCircuit,
      [this](const auto& evaluate, const CircuitObject& circuit) -> std::optional<QString> {
        evaluate(L"(circuit-erase " + lispText(circuit.id) + L")");
        selectCircuit({});
        return texts_(HostText::circuitDeleted, {toQt(circuit.name())});
      });
}

std::optional<std::wstring> MainWindow::buildArguments(const CircuitObject& circuit, const KvPoint3d& point) {
  const QString name = toQt(circuit.name());
  const auto field = [&circuit](std::wstring_view key) { return circuitField(circuit.fields, key); };
  if (circuit.fields.empty()) {
    say(texts_(HostText::circuitHasNoRecord, {name}));
    return std::nullopt;
  }
  const SiteConfigurations* site = siteConfigurations();
  const auto isOfCircuit = [&](const brenvolt::SavedConfiguration& row) {
    return brenvolt::equalsOrdinalNoCase(row.key.circuit, field(L"circuit")) &&
           brenvolt::equalsOrdinalNoCase(row.key.type, field(L"type"));
  };
  const auto type = site == nullptr ? std::vector<brenvolt::SavedConfiguration>::const_iterator()
                                    : std::find_if(site->types.begin(), site->types.end(), isOfCircuit);
  if (site == nullptr || type == site->types.end()) {
    say(texts_(HostText::circuitHasNoType, {name, toQt(field(L"circuit")), toQt(field(L"type"))}));
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

void MainWindow::copySelected() {
  onCircuit(
      HostText::copyCircuit,
      [this](const auto& evaluate, const CircuitObject& circuit) -> std::optional<QString> {
        const KvPoint3d base = basePointOf(circuit);
        if (!buildArguments(circuit, base)) return status();
        const QString name = toQt(circuit.name());
        const std::optional<KvPoint3d> point =
            pickPoint(texts_(HostText::placeCircuitQuestion, {name}), outlineAround(circuit, base));
        if (!point) return std::nullopt;
        const std::uint64_t first = drawing().store().nextHandle().value();
        const lisp::Value built =
            evaluate(L"(site-build-copy " + variablesForm(circuit) + *buildArguments(circuit, *point) + L")");
        if (built.isNil()) return std::nullopt;
        for (const CircuitObject& made : circuits::circuitsOf(drawing()))
          if (!made.entities.empty() && made.entities.front().value() >= first) {
            selectedCircuit_ = made.id;
            view_->showArea(made.extents);
            return texts_(HostText::circuitCopied, {name, toQt(made.name())});
          }
        return std::nullopt;
      });
}

void MainWindow::reportOnCircuit() {
  onCircuit(
      HostText::circuitReport, [this](const auto&, const CircuitObject& circuit) -> std::optional<QString> {
        const QString name =
            file_.isEmpty() ? texts_(HostText::untitled) : QFileInfo(file_).completeBaseName();
        circuits::Sheet sheet = circuits::readSheet(drawing(), fromQt(name));
        std::erase_if(
            sheet.netlist.devices, [&](const auto& device) { return device.circuit != circuit.id; });
        showReport(
            texts_(HostText::reportTitle, {toQt(circuit.name())}),
            {circuits::makeReport(circuits::ReportKind::motors, {sheet}),
             circuits::makeReport(circuits::ReportKind::parts, {sheet})},
            this);
        return texts_(HostText::ready);
      });
}

void MainWindow::findCircuit() {
  if (auto* dock = qobject_cast<QDockWidget*>(circuitPanel_->parentWidget())) {
    dock->show();
    dock->raise();
  }
  circuitPanel_->startSearch();
}

void MainWindow::showCircuitMenu(const QPoint& place) {
  QMenu menu(this);
  for (const HostText command :
       {HostText::configureCircuit, HostText::editWireSize, HostText::moveCircuit, HostText::copyCircuit,
        HostText::deleteCircuit, HostText::circuitReport, HostText::saveConfiguration})
    menu.addAction(actions_.at(command));
  menu.exec(place);
}

} // namespace simhost
