// Building the menus, and starting commands.
#include "simhost/gui/command_menus.h"

#include "simhost/gui/command_icons.h"
#include "simhost/gui/fitting_tool_bar.h"
#include "simhost/host/session.h"
#include "simhost/site/site_run.h"
#include "text/assertion.h"

#include <QAction>
#include <QApplication>
#include <QMainWindow>
#include <QMenuBar>

namespace simhost {
namespace {

void fillMenu(QMenu& menu, const QStringList& files, const std::function<void(const QString&)>& open) {
  menu.clear();
  for (const QString& file : files)
    menu.addAction(
        QString(file).replace(QLatin1Char('&'), QStringLiteral("&&")), &menu, [open, file] { open(file); });
  menu.setEnabled(!menu.isEmpty());
}

} // namespace

void CommandMenus::build(const std::map<HostText, QAction*>& panels) {
  const HostTexts& texts = services_.texts;
  actions_ = panels;
  auto* toolbar = new FittingToolBar(texts(HostText::toolbar), &window_);
  window_.addToolBar(toolbar);
  toolbar->setObjectName(QStringLiteral("commands"));
  toolbar->setToolButtonStyle(Qt::ToolButtonTextUnderIcon);
  toolbar->setIconSize({24, 24});
  for (const MenuRow& row : menuRows()) {
    QMenu* menu = window_.menuBar()->addMenu(texts(row.title));
    menu->setToolTipsVisible(true);
    bool hasButton = false;
    for (const CommandRow& command : row.commands) {
      addRow(command, *menu);
      if (!command.isOnToolbar) continue;
      if (!hasButton && !toolbar->actions().isEmpty()) toolbar->addSeparator();
      hasButton = true;
      toolbar->addAction(actions_.at(command.text));
    }
    if (row.title != HostText::viewMenu) continue;
    menu->addSeparator();
    for (const HostText panel :
         {HostText::circuitPanel, HostText::propertiesPanel, HostText::layerPanel, HostText::setPanel,
          HostText::checkPanel, HostText::promptPanel})
      menu->addAction(actions_.at(panel));
  }
  fillRecent();
  services_.settings.onRemembered = [this] { fillRecent(); };
}

void CommandMenus::addRow(const CommandRow& row, QMenu& menu) {
  const HostTexts& texts = services_.texts;
  if (row.text == HostText::none) {
    menu.addSeparator();
  } else if (row.text == HostText::recentMenu) {
    recent_ = menu.addMenu(texts(row.text));
  } else if (row.text == HostText::recentProjectsMenu) {
    recentProjects_ = menu.addMenu(texts(row.text));
  } else if (row.text == HostText::languageMenu) {
    QMenu* languages = menu.addMenu(texts(row.text));
    for (const auto& [code, name] : {std::pair("en", "&English"), std::pair("de", "&Deutsch")})
      languages->addAction(QString::fromUtf8(name), &window_, [this, language = QString::fromUtf8(code)] {
        onLanguage(language);
      });
  } else {
    addCommand(row, menu);
  }
}

void CommandMenus::addCommand(const CommandRow& row, QMenu& menu) {
  BRENVOLT_ASSERT(row.form != nullptr || bound_.contains(row.text), "each command does something");
  auto* action = new QAction(services_.texts(row.text), &window_);
  action->setShortcut(QKeySequence(QString::fromLatin1(row.keys)));
  action->setCheckable(row.isTick);
  const QString caption = captionOf(services_.texts, row.text);
  action->setIconText(caption);
  const QString keys = action->shortcut().toString(QKeySequence::NativeText);
  const QString tip = keys.isEmpty() ? caption : caption + QStringLiteral(" (") + keys + QStringLiteral(")");
  action->setProperty("tip", tip); // unchanged while the command is enabled
  action->setToolTip(tip);
  action->setWhatsThis(services_.texts(helpOf(row.text)));
  if (*row.icon != '\0')
    action->setIcon(commandIcon(row.icon, window_.palette().color(QPalette::ButtonText)));
  action->setData(QString::fromLatin1(row.icon));
  QObject::connect(action, &QAction::triggered, action, [this, &row] { start(row); });
  menu.addAction(action);
  actions_[row.text] = action;
}

void CommandMenus::start(const CommandRow& row) {
  // A shortcut may come in while its action is about to be switched off.
  if (row.use != CommandRow::Use::always && services_.runner.isBusy()) return services_.status.sayBusy();
  if (row.form == nullptr) return bound_.at(row.text)();
  runForm(services_, captionOf(services_.texts, row.text), row.form, row.text);
}

void CommandMenus::remove() {
  for (const auto& [text, action] : actions_)
    if (action->parent() == &window_) delete action;
  actions_.clear();
  qDeleteAll(window_.findChildren<QToolBar*>(Qt::FindDirectChildrenOnly));
  window_.setMenuBar(new QMenuBar(&window_)); // deletes the former one with all that is on it
}

void CommandMenus::refresh() {
  using Use = CommandRow::Use;
  const bool isBusy = services_.runner.isBusy();
  const bool hasSite = !services_.site.session().options().siteFolder.empty();
  for (const MenuRow& menu : menuRows())
    for (const CommandRow& row : menu.commands) {
      const auto found = actions_.find(row.text);
      if (found == actions_.end()) continue;
      const bool isFree = row.use == Use::always || (!isBusy && (row.use == Use::idle || hasSite));
      found->second->setEnabled(isFree);
      const QString tip = found->second->property("tip").toString();
      const QString reason = services_.texts(isBusy ? HostText::busy : HostText::noSite);
      found->second->setToolTip(isFree ? tip : tip + QLatin1Char('\n') + reason);
    }
  recent_->setEnabled(!isBusy && !recent_->isEmpty());
  recentProjects_->setEnabled(!isBusy && hasSite && !recentProjects_->isEmpty());
  if (services_.site.project().empty()) action(HostText::closeProject).setEnabled(false);
  if (isBusy) return;
  for (const auto& [text, name] :
       {std::pair(HostText::undo, services_.runner.undoName()),
        std::pair(HostText::redo, services_.runner.redoName())}) {
    action(text).setEnabled(!name.isEmpty());
    action(text).setStatusTip(name);
  }
}

void CommandMenus::refreshIcons() {
  for (const auto& [text, action] : actions_)
    if (const QString icon = action->data().toString(); !icon.isEmpty())
      action->setIcon(
          commandIcon(icon.toLatin1().constData(), QApplication::palette().color(QPalette::ButtonText)));
}

void CommandMenus::fillRecent() {
  fillMenu(*recent_, services_.settings.list(L"recent"), onRecent);
  fillMenu(*recentProjects_, services_.settings.list(L"recentProjects"), onRecentProject);
}

} // namespace simhost
