// The main window's commands but for those on files, and the picks that they ask for.
#include "simhost/gui/command_table.h"
#include "simhost/gui/main_window.h"
#include "simhost/host/session.h"
#include "simhost/lisp/printer.h"
#include "simhost/qt/qt_text.h"
#include "simhost/site/saved_configurations.h"
#include "simhost/site/site_run.h"

#include <QAction>
#include <QEventLoop>
#include <QInputDialog>
#include <QLabel>
#include <QMessageBox>

#include <exception>
#include <filesystem>
#include <utility>
#include <vector>

namespace simhost {
namespace {

constexpr double menuZoom = 1.5;

QString captionOf(const QAction& action) {
  return action.iconText();
}

std::wstring pointForm(const KvPoint3d& point) {
  return L"'(" + lisp::printReal(point.x) + L" " + lisp::printReal(point.y) + L" 0.0)";
}

} // namespace

void MainWindow::start(const CommandRow& row) {
  // A shortcut may come in while its action is about to be switched off.
  if (row.use != CommandRow::Use::always && runner_.isBusy()) return say(texts_(HostText::busy));
  if (row.action != nullptr) return (this->*row.action)();
  runForm(captionOf(*actions_.at(row.text)), row.form);
}

void MainWindow::runForm(const QString& name, const std::wstring& form) {
  if (!runner_.isBusy()) say(texts_(HostText::running, {name}));
  tell(runner_.run(name, form), name);
}

void MainWindow::newCircuit() {
  const QString name = captionOf(*actions_.at(HostText::newCircuit));
  say(texts_(HostText::running, {name}));
  const CommandOutcome outcome =
      runner_.runSteps(name, [this](const CommandRunner::Evaluate& evaluate) -> std::optional<lisp::Value> {
        if (evaluate(L"(setq site-choice (zan_bv_select_circuit))").isNil()) return std::nullopt;
        const std::optional<KvPoint3d> point = pickPoint(texts_(HostText::pickPlace));
        if (!point) return std::nullopt;
        return evaluate(
            L"(site-insert-and-build (car site-choice) (cadr site-choice) " + pointForm(*point) + L")");
      });
  tell(outcome, name);
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
  QStringList names;
  for (const brenvolt::SavedConfiguration& row : saved)
    names.append(toQt(row.key.circuit + L" / " + row.key.type + L": " + row.key.name));
  bool isChosen = false;
  const QString chosen = QInputDialog::getItem(
      this, texts_(HostText::historyTitle), texts_(HostText::historyQuestion), names, 0, false, &isChosen);
  const qsizetype place = names.indexOf(chosen);
  if (!isChosen || place < 0) return;
  buildSaved(saved[static_cast<std::size_t>(place)], found.workbook);
}

void MainWindow::buildSaved(const brenvolt::SavedConfiguration& saved, const std::wstring& workbookPath) {
  const QString name = captionOf(*actions_.at(HostText::buildFromHistory));
  say(texts_(HostText::running, {name}));
  const CommandOutcome outcome =
      runner_.runSteps(name, [&](const CommandRunner::Evaluate& evaluate) -> std::optional<lisp::Value> {
        const std::optional<KvPoint3d> point = pickPoint(texts_(HostText::pickPlace));
        if (!point) return std::nullopt;
        const auto text = [](const std::wstring& value) {
          return L" " + lisp::printValue(lisp::Value::string(value), lisp::PrintStyle::readable);
        };
        // The workbook by its name, so that a recording can be replayed on a copy of the site.
        const std::filesystem::path workbook(workbookPath);
        const std::wstring found = L"(find-file" + text(workbook.filename().wstring()) + L")";
        std::wstring form = L"(site-build" + text(saved.drawingTemplate);
        form += L" (or (nth 7 GBL_qn_bv_data) " + found + L")";
        for (const std::wstring& value : {saved.worksheet, saved.key.circuit, saved.key.type, saved.key.name})
          form += text(value);
        return evaluate(form + L" " + pointForm(*point) + L" \"\" \"\" \"\")");
      });
  tell(outcome, name);
}

void MainWindow::undo() {
  const QString name = runner_.undo();
  refreshScene();
  refreshActions();
  say(name.isEmpty() ? texts_(HostText::nothingToUndo) : texts_(HostText::undone, {name}));
}

void MainWindow::redo() {
  const QString name = runner_.redo();
  refreshScene();
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

void MainWindow::showHelp() {
  static_cast<void>(windows_.showHelp(L"main_window"));
}

void MainWindow::showAbout() {
  QMessageBox::about(this, QStringLiteral("ZanBrenvolt"), texts_(HostText::aboutText));
}

void MainWindow::runPick(const QString& prompt, const QString& hint, DrawingView::Mode mode) {
  using Kind = EntityPick::Kind;
  banner_->setText(prompt.trimmed() + QStringLiteral("  ") + hint);
  banner_->show();
  view_->setMode(mode);
  view_->setFocus();
  activateWindow();
  QEventLoop loop;
  pickLoop_ = &loop;
  pick_ = {};
  refreshActions();
  view_->onPick = [this, mode](const KvPoint3d& point, std::optional<KvDbHandle> entity) {
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
  view_->onEnter = nullptr;
  view_->onEscape = nullptr;
  view_->setMode(DrawingView::Mode::select);
  banner_->hide();
  refreshActions();
}

void MainWindow::answerPick(const EntityPick& pick) {
  // The first answer counts: what comes in while the loop ends is for nobody.
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

std::optional<KvPoint3d> MainWindow::pickPoint(const QString& prompt) {
  if (pickLoop_ != nullptr) return std::nullopt;
  isEmptyPickAllowed_ = false;
  runPick(prompt, texts_(HostText::pickEnds), DrawingView::Mode::pickPoint);
  if (pick_.kind != EntityPick::Kind::entity) return std::nullopt;
  return pick_.point;
}

} // namespace simhost
