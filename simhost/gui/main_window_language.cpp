// The main window's words: a change of the language builds all that shows words again, at once; drawing, undo
// and view stay.
#include "simhost/gui/check_panel.h"
#include "simhost/gui/main_window.h"
#include "simhost/gui/window_texts.h"
#include "simhost/host/errors.h"
#include "simhost/host/session.h"
#include "simhost/qt/help_window.h"
#include "simhost/site/site_run.h"

#include <QAction>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QStatusBar>
#include <QTimer>

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

void MainWindow::chooseLanguage(const QString& language) {
  if (runner_.isBusy()) return status_.sayBusy();
  settings_.setValue(L"language", language);
  // A recording is replayed in the language that it began with.
  if (runner_.onCommand) return status_.say(texts_(HostText::languageLater));
  // The menu that was clicked is built again too, but not while its click is on its way back.
  QTimer::singleShot(0, this, [this, language] { takeLanguage(language); });
}

void MainWindow::takeLanguage(const QString& language) {
  try {
    texts_.choose(language.toStdString());
    site_.session().chooseLanguage(language.toStdString());
  } catch (const BadInput& error) {
    return status_.showFault(QString::fromUtf8(error.what()));
  }
  loadQtWords(language);
  windows_.dialogs().setWords(windowWords(texts_));
  const QByteArray places = saveState();
  const std::map<QString, QString> typed = typedTexts(*this);
  const QByteArray findings = panels_.check().json();
  const bool hasGrid = action(HostText::grid).isChecked();
  QString page;
  if (auto* help = dynamic_cast<HelpWindow*>(findChild<QWidget*>(QLatin1String(helpWindowName)))) {
    page = help->page();
    delete help; // its words are of the other language
  }
  menus_.remove();
  panels_.remove();
  setStatusBar(new QStatusBar(this)); // deletes the former one with all that is on it
  buildParts();
  action(HostText::grid).setChecked(hasGrid);
  restoreState(places);
  typeAgain(*this, typed);
  if (!findings.isEmpty()) panels_.check().showFindings(findings);
  shown_.invalidate();
  selection_.invalidate();
  refreshAll();
  showProperties();
  setPaper(view_->port().paper());
  view_->setFocus();
  if (!page.isEmpty()) {
    static_cast<void>(windows_.showHelp(L"main_window"));
    if (auto* help = dynamic_cast<HelpWindow*>(findChild<QWidget*>(QLatin1String(helpWindowName))))
      help->showPage(page);
  }
  status_.say(texts_(HostText::languageChanged));
}

} // namespace simhost
