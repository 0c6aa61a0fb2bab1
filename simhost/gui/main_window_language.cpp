// The main window's help, and its words: a change of the language builds all that shows words again, at once; drawing, undo
// and view stay.
#include "simhost/gui/check_panel.h"
#include "simhost/gui/main_window.h"
#include "simhost/gui/prompt_pane.h"
#include "simhost/gui/window_texts.h"
#include "simhost/host/errors.h"
#include "simhost/host/session.h"
#include "simhost/qt/context_help.h"
#include "simhost/qt/help_window.h"
#include "simhost/site/site_run.h"

#include <QAction>
#include <QDockWidget>
#include <QLineEdit>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QStatusBar>
#include <QTimer>
#include <QToolBar>

#include <map>

namespace simhost {
namespace {

/// What users have typed, and what has been printed, by the names of the fields.
std::map<QString, QString> typedTexts(const QWidget& window) {
  std::map<QString, QString> texts;
  for (const auto* field : window.findChildren<QLineEdit*>())
    if (!field->objectName().isEmpty()) texts[field->objectName()] = field->text();
  for (const auto* field : window.findChildren<QPlainTextEdit*>())
    if (!field->objectName().isEmpty()) texts[field->objectName()] = field->toPlainText();
  return texts;
}

void typeAgain(const QWidget& window, const std::map<QString, QString>& texts) {
  for (auto* field : window.findChildren<QLineEdit*>())
    if (const auto known = texts.find(field->objectName()); known != texts.end())
      field->setText(known->second);
  for (auto* field : window.findChildren<QPlainTextEdit*>())
    if (const auto known = texts.find(field->objectName()); known != texts.end())
      field->setPlainText(known->second);
}

} // namespace

void MainWindow::showHelp() {
  static_cast<void>(windows_.showHelp(L"main_window"));
}

void MainWindow::showFirstCircuit() {
  static_cast<void>(windows_.openManual(L"first_circuit", this));
}

void MainWindow::explainNext() {
  ContextHelp::begin();
}

void MainWindow::chooseLanguage(const QString& language) {
  if (runner_.isBusy()) return say(texts_(HostText::busy));
  setSetting(L"language", language);
  // A recording is replayed in the language that it began with.
  if (runner_.onCommand) return say(texts_(HostText::languageLater));
  // The menu that was clicked is built again too, but not while its click is on its way back.
  QTimer::singleShot(0, this, [this, language] { takeLanguage(language); });
}

void MainWindow::takeLanguage(const QString& language) {
  try {
    texts_.choose(language.toStdString());
    site_.session().chooseLanguage(language.toStdString());
  } catch (const BadInput& error) {
    return tellFault(error.what());
  }
  loadQtWords(language);
  windows_.setWords(windowWords(texts_));
  const QByteArray places = saveState();
  const std::map<QString, QString> typed = typedTexts(*this);
  const QByteArray findings = checkPanel_->json();
  const bool hasGrid = actions_.at(HostText::grid)->isChecked();
  QString page;
  if (auto* help = dynamic_cast<HelpWindow*>(findChild<QWidget*>(QLatin1String(helpWindowName)))) {
    page = help->page();
    delete help; // its words are of the other language
  }
  removeParts();
  buildParts();
  actions_.at(HostText::grid)->setChecked(hasGrid);
  help_->setMore(texts_(HostText::helpMore));
  restoreState(places);
  typeAgain(*this, typed);
  if (!findings.isEmpty()) checkPanel_->showFindings(findings);
  shownChange_ = drawing().undoLog().changeCount() + 1;
  shownCircuits_ = shownChange_;
  refreshScene();
  refreshCircuits();
  showProperties();
  setPaper(view_->paper());
  refreshActions();
  view_->setFocus();
  if (!page.isEmpty()) {
    showHelp();
    if (auto* help = dynamic_cast<HelpWindow*>(findChild<QWidget*>(QLatin1String(helpWindowName))))
      help->showPage(page);
  }
  say(texts_(HostText::languageChanged));
}

void MainWindow::removeParts() {
  for (const auto& [text, action] : actions_)
    if (action->parent() == this) delete action;
  actions_.clear();
  qDeleteAll(findChildren<QDockWidget*>(Qt::FindDirectChildrenOnly));
  qDeleteAll(findChildren<QToolBar*>(Qt::FindDirectChildrenOnly));
  // These delete the former ones with all that is on them.
  setMenuBar(new QMenuBar(this));
  setStatusBar(new QStatusBar(this));
}

} // namespace simhost
