// The main window's commands except those on files, and their picks.
#include "simhost/drawing/drawing_file.h"
#include "simhost/gui/command_table.h"
#include "simhost/gui/configuration_table.h"
#include "simhost/gui/main_window.h"
#include "simhost/gui/site_circuits.h"
#include "simhost/host/session.h"
#include "simhost/lisp/list.h"
#include "simhost/lisp/printer.h"
#include "simhost/qt/qt_text.h"
#include "simhost/site/saved_configurations.h"
#include "simhost/site/site_run.h"
#include "simhost/ui/file_names.h"
#include "text/encoding.h"

#include <QAction>
#include <QEventLoop>
#include <QLabel>
#include <QMessageBox>

#include <exception>
#include <filesystem>
#include <numeric>
#include <utility>
#include <vector>

namespace simhost {
namespace {

constexpr double menuZoom = 1.5;

QString captionOf(const QAction& action) {
  return action.iconText();
}

/// Of a drawing's file; nothing for one that is empty or cannot be read.
std::optional<Box> extentsOf(const std::wstring& file) {
  const LoadedDrawing loaded = loadDrawing(file);
  Scene scene;
  if (loaded.drawing == nullptr || !scene.load(*loaded.drawing, loaded.drawing->currentSpace()) ||
      scene.extents().isEmpty())
    return std::nullopt;
  return scene.extents();
}

/// The circuit that the circuit selection returns: (template (workbook worksheet circuit type configuration ...) ...).
OfferedCircuit offeredBy(const lisp::Value& choice) {
  const std::vector<lisp::Value> parts = lisp::toVector(choice);
  const std::vector<lisp::Value> build =
      parts.size() > 1 ? lisp::toVector(parts[1]) : std::vector<lisp::Value>();
  const auto text = [&build](std::size_t place) {
    return place < build.size() && build[place].isString() ? build[place].asString() : std::wstring();
  };
  return {text(2), text(3), text(4)};
}

} // namespace

void MainWindow::start(const CommandRow& row) {
  // A shortcut may come in while its action is about to be switched off.
  if (row.use != CommandRow::Use::always && runner_.isBusy()) return say(texts_(HostText::busy));
  if (row.action != nullptr) return (this->*row.action)();
  runForm(captionOf(*actions_.at(row.text)), row.form, row.text);
}

void MainWindow::runForm(const QString& name, const std::wstring& form, HostText command) {
  if (!runner_.isBusy()) say(texts_(HostText::running, {name}));
  tell(runner_.run(name, form), command);
}

void MainWindow::editWireSize() {
  // The site applies the result. A site without this function only shows it.
  std::wstring form = L"(if (fboundp 'site-edit-wire-size) (site-edit-wire-size";
  if (const auto control = selectedControl())
    form += L" (handle->entity \"" + formatHandle(*control) + L"\")";
  form += L") (zan_bv_edit_wiresize))";
  pickKind_ = PickKind::sized;
  runForm(captionOf(*actions_.at(HostText::editWireSize)), form, HostText::editWireSize);
  pickKind_ = PickKind::any;
}

void MainWindow::newCircuit() {
  const QString name = captionOf(*actions_.at(HostText::newCircuit));
  say(texts_(HostText::running, {name}));
  const CommandOutcome outcome =
      runner_.runSteps(name, [this](const CommandRunner::Evaluate& evaluate) -> std::optional<lisp::Value> {
        const lisp::Value choice = evaluate(L"(setq site-choice (zan_bv_select_circuit))");
        if (choice.isNil()) return std::nullopt;
        const lisp::Value drawingTemplate = choice.isCons() ? choice.asCons().car() : lisp::Value();
        return placeCircuit(
            evaluate, drawingTemplate.isString() ? drawingTemplate.asString() : std::wstring(),
            offeredBy(choice),
            [](const std::wstring& point) { return L"(site-place site-choice " + point + L")"; });
      });
  tell(outcome);
}

void MainWindow::buildFromHistory() {
  SiteConfigurations found;
  try {
    found = savedConfigurations(site_.session().options().siteFolder.string());
  } catch (const std::exception& error) {
    return say(texts_(HostText::notDone, {QString::fromUtf8(error.what())}));
  }
  const std::vector<brenvolt::SavedConfiguration>& saved = found.saved;
  if (saved.empty()) return say(texts_(HostText::noHistory));
  std::vector<std::size_t> all(saved.size());
  std::iota(all.begin(), all.end(), std::size_t{0});
  if (const auto chosen = chooseConfiguration(this, texts_, found, all))
    buildSaved(saved[*chosen], found.workbook);
}

void MainWindow::buildSaved(const brenvolt::SavedConfiguration& saved, const std::wstring& workbookPath) {
  const QString name = captionOf(*actions_.at(HostText::buildFromHistory));
  say(texts_(HostText::running, {name}));
  const CommandOutcome outcome =
      runner_.runSteps(name, [&](const CommandRunner::Evaluate& evaluate) -> std::optional<lisp::Value> {
        const auto text = [](const std::wstring& value) {
          return L" " + lisp::printValue(lisp::Value::string(value), lisp::PrintStyle::readable);
        };
        // The workbook by its name, so that a recording can be replayed on a copy of the site.
        const std::filesystem::path workbook(brenvolt::toUtf8(workbookPath));
        const std::wstring found =
            L"(find-file" + text(brenvolt::fromUtf8(workbook.filename().string())) + L")";
        std::wstring form = L"(site-build" + text(saved.drawingTemplate);
        form += L" (or (nth 7 GBL_qn_bv_data) " + found + L")";
        for (const std::wstring& value : {saved.worksheet, saved.key.circuit, saved.key.type, saved.key.name})
          form += text(value);
        const OfferedCircuit offered{saved.key.circuit, saved.key.type, saved.key.name};
        return placeCircuit(evaluate, saved.drawingTemplate, offered, [&form](const std::wstring& point) {
          return form + L" " + point + L" \"\" \"\" \"\")";
        });
      });
  tell(outcome);
}

std::optional<lisp::Value> MainWindow::placeCircuit(
    const CommandRunner::Evaluate& evaluate, const std::wstring& drawingTemplate,
    const OfferedCircuit& offered, const std::function<std::wstring(const std::wstring& point)>& build) {
  const std::optional<Box> outline = outlineOf(drawingTemplate);
  QTimer::singleShot(0, this, [this, offered] { refineOutline(offered); }); // once the pick has begun
  const std::optional<KvPoint3d> point = pickPoint(texts_(HostText::pickPlace), outline);
  if (siteCircuits_ != nullptr) siteCircuits_->forgetPicture();
  if (!point) return std::nullopt;
  const std::uint64_t first = drawing().store().nextHandle().value();
  lisp::Value value = evaluate(build(lisp::printPointForm(point->x, point->y)));
  if (value.isNil()) return value;
  refreshScene();
  const Box made = extentsSince(first);
  if (made.isEmpty()) return value;
  lastPlace_ = *point;
  // From now on the outline is that of a whole circuit of this template.
  outlines_[drawingTemplate] = {
      made.left - point->x, made.bottom - point->y, made.right - point->x, made.top - point->y};
  view_->showArea(made);
  const lisp::Symbol* const unsized = site_.interpreter().symbols().find(L"GBL_qn_bv_unsized_wires");
  if (unsized == nullptr || unsized->value.isNil()) return value;
  // Its marks are small, and the lines of the build are in a panel that may be hidden.
  for (const circuits::CircuitObject& circuit : circuits::circuitsOf(drawing()))
    if (!circuit.entities.empty() && circuit.entities.front().value() >= first)
      value = lisp::Value::string(fromQt(texts_(HostText::noSizes, {toQt(circuit.name())})));
  return value;
}

void MainWindow::refineOutline(const OfferedCircuit& offered) {
  if (siteCircuits_ == nullptr || offered.type.empty()) return;
  const CircuitFacts::Picture picture =
      siteCircuits_->picture(offered, [this, offered] { refineOutline(offered); });
  const std::optional<Box> exact =
      picture.state == CircuitFacts::Picture::State::made ? extentsOf(picture.drawing) : std::nullopt;
  if (!exact) return;
  pickOutline_ = exact;
  if (view_->mode() == DrawingView::Mode::pickPoint) view_->setOutline(pickOutline_);
}

Box MainWindow::extentsSince(std::uint64_t firstHandle) {
  Box made;
  const Scene& scene = view_->scene();
  for (std::uint32_t item = 0; item < scene.items().size(); ++item)
    if (scene.items()[item].entity.value() >= firstHandle) made.include(scene.box(item));
  return made;
}

std::optional<Box> MainWindow::outlineOf(const std::wstring& drawingTemplate) {
  if (const auto known = outlines_.find(drawingTemplate); known != outlines_.end()) return known->second;
  const std::filesystem::path file = site_.session().findFile(drawingTemplate);
  if (file.empty()) return std::nullopt;
  return extentsOf(textOfPath(file));
}

KvPoint3d MainWindow::nextFreePlace(const std::optional<Box>& outline) {
  KvPoint3d place = lastPlace_;
  const Box& taken = view_->scene().extents();
  if (!outline || taken.isEmpty()) return place;
  // Beside the circuit placed last; to the right of everything there is always space.
  constexpr double step = 5.0;
  Box wanted = *outline;
  view_->setOutline(Box{wanted.left - step, wanted.bottom - step, wanted.right + step, wanted.top + step});
  while (view_->overlaps(place) && place.x + wanted.left <= taken.right + 2 * step)
    place.x += step;
  return place;
}

void MainWindow::undo() {
  const QString name = runner_.undo();
  refreshScene();
  refreshCircuits();
  refreshActions();
  say(name.isEmpty() ? texts_(HostText::nothingToUndo) : texts_(HostText::undone, {name}));
}

void MainWindow::redo() {
  const QString name = runner_.redo();
  refreshScene();
  refreshCircuits();
  refreshActions();
  say(name.isEmpty() ? texts_(HostText::nothingToRedo) : texts_(HostText::redone, {name}));
}

void MainWindow::zoomExtents() {
  view_->zoomExtents();
}

void MainWindow::zoomWindow() {
  view_->setMode(DrawingView::Mode::zoomWindow);
  say(texts_(HostText::corner));
}

void MainWindow::zoomIn() {
  view_->zoomBy(menuZoom);
}

void MainWindow::zoomOut() {
  view_->zoomBy(1.0 / menuZoom);
}

void MainWindow::toggleGrid() {
  view_->setGrid(actions_.at(HostText::grid)->isChecked());
}

void MainWindow::toggleDark() {
  const bool isDark = actions_.at(HostText::darkPaper)->isChecked();
  setPaper(isDark ? Paper::dark : Paper::light);
  setSetting(L"paper", isDark ? QStringLiteral("dark") : QStringLiteral("light"));
}

void MainWindow::leave() {
  close();
}

void MainWindow::showAbout() {
  QMessageBox::about(this, QStringLiteral("ZanBrenvolt"), texts_(HostText::aboutText));
}

void MainWindow::runPick(const QString& prompt, const QString& hint, DrawingView::Mode mode) {
  using Kind = EntityPick::Kind;
  banner_->setText(prompt.trimmed() + QStringLiteral("  ") + hint);
  banner_->show();
  view_->setMode(mode);
  if (mode == DrawingView::Mode::pickPoint) {
    view_->setOutline(pickOutline_);
    view_->proposePoint(pickStart_);
  }
  view_->setFocus();
  activateWindow();
  view_->onBadCoordinates = [this] { say(texts_(HostText::badCoordinates)); };
  QEventLoop loop;
  pickLoop_ = &loop;
  pick_ = {};
  refreshActions();
  const PickKind dialogKind = pickKindOf(windows_.topForm());
  const PickKind kind = dialogKind == PickKind::any ? pickKind_ : dialogKind;
  view_->setFilter([this, kind](KvDbHandle entity) { return fits(drawing(), entity, kind); });
  view_->onPick = [this, mode, kind](const KvPoint3d& point, std::optional<KvDbHandle> entity) {
    if (entity && mode == DrawingView::Mode::pickEntity && !fits(drawing(), *entity, kind))
      return say(texts_(reasonOf(kind)));
    if (entity || mode == DrawingView::Mode::pickPoint)
      answerPick({Kind::entity, entity.value_or(KvDbHandle()), point});
    else if (isEmptyPickAllowed_)
      answerPick({Kind::nothing, {}, point});
  };
  view_->onEnter = [this] {
    if (isEmptyPickAllowed_) answerPick({Kind::nothing, {}, {}});
  };
  view_->onEscape = [this] { cancelPick(); };
  loop.exec();
  pickLoop_ = nullptr;
  view_->onPick = nullptr;
  view_->setFilter(nullptr);
  view_->onBadCoordinates = nullptr;
  view_->onEnter = nullptr;
  view_->onEscape = nullptr;
  view_->setMode(DrawingView::Mode::select);
  banner_->hide();
  refreshActions();
}

void MainWindow::answerPick(const EntityPick& pick) {
  // The first result counts: input while the loop ends is ignored.
  QEventLoop* const loop = std::exchange(pickLoop_, nullptr);
  if (loop == nullptr) return;
  pick_ = pick;
  loop->quit();
}

void MainWindow::cancelPick() {
  answerPick({});
}

EntityPick MainWindow::pickEntity(const std::wstring& prompt, bool emptyIsAllowed) {
  if (pickLoop_ != nullptr) return {};
  isEmptyPickAllowed_ = emptyIsAllowed;
  runPick(
      toQt(prompt), texts_(emptyIsAllowed ? HostText::pickEndsOrNone : HostText::pickEnds),
      DrawingView::Mode::pickEntity);
  return pick_;
}

std::optional<KvPoint3d> MainWindow::pickPoint(const QString& prompt, const std::optional<Box>& outline) {
  return pickPointFrom(prompt, outline, nextFreePlace(outline));
}

std::optional<KvPoint3d> MainWindow::pickPointFrom(
    const QString& prompt, const std::optional<Box>& outline, const KvPoint3d& start) {
  if (pickLoop_ != nullptr) return std::nullopt;
  isEmptyPickAllowed_ = false;
  pickOutline_ = outline;
  pickStart_ = start;
  runPick(prompt, texts_(HostText::placeKeys), DrawingView::Mode::pickPoint);
  if (pick_.kind != EntityPick::Kind::entity) return std::nullopt;
  return pick_.point;
}

} // namespace simhost
