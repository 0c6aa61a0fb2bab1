// Building the window up, and what it shows of drawing, pointer and commands.
#include "simhost/gui/main_window.h"

#include "simhost/gui/circuit_panel.h"
#include "simhost/gui/command_icons.h"
#include "simhost/gui/command_table.h"
#include "simhost/gui/fitting_tool_bar.h"
#include "simhost/gui/layer_panel.h"
#include "simhost/gui/open_file.h"
#include "simhost/gui/prompt_pane.h"
#include "simhost/gui/properties_panel.h"
#include "simhost/gui/result_line.h"
#include "simhost/gui/site_circuits.h"
#include "simhost/gui/unit_markers.h"
#include "simhost/gui/window_texts.h"
#include "simhost/host/session.h"
#include "simhost/lisp/printer.h"
#include "simhost/qt/context_help.h"
#include "simhost/qt/host_style.h"
#include "simhost/qt/qt_text.h"
#include "simhost/qt/window_places.h"
#include "simhost/site/saved_configurations.h"
#include "simhost/site/site_run.h"

#include <QAction>
#include <QActionGroup>
#include <QApplication>
#include <QClipboard>
#include <QDockWidget>
#include <QDragEnterEvent>
#include <QEventLoop>
#include <QFileInfo>
#include <QKeyEvent>
#include <QLabel>
#include <QMenuBar>
#include <QMimeData>
#include <QPalette>
#include <QStatusBar>
#include <QStringList>
#include <QStyle>
#include <QStyleFactory>
#include <QToolBar>
#include <QToolButton>
#include <QUrl>
#include <QVBoxLayout>

#include <memory>

namespace simhost {
namespace {

/// How often a running command's drawing is looked at: often enough to see a circuit grow.
constexpr int watchMilliseconds = 100;
constexpr const wchar_t* settingsKey = L"SimHost";
/// How often what is not saved is kept for the case of a crash.
constexpr int copyMilliseconds = 20'000;

QPalette paletteFor(Paper paper) {
  if (paper == Paper::light) {
    const std::unique_ptr<QStyle> fusion(QStyleFactory::create(QStringLiteral("Fusion")));
    return fusion->standardPalette();
  }
  // The style draws outlines in a darker window colour, which has too little contrast here: fields and check boxes
  // need outlines much darker than the window.
  QPalette palette(QColor(0x50, 0x56, 0x60), QColor(0x38, 0x3d, 0x45));
  palette.setColor(QPalette::Base, QColor(0x1f, 0x22, 0x27));
  palette.setColor(QPalette::AlternateBase, QColor(0x27, 0x2b, 0x31));
  palette.setColor(QPalette::Highlight, QColor(0x2f, 0x74, 0xc0));
  palette.setColor(QPalette::Link, QColor(0x6c, 0xb0, 0xf0));
  for (const QPalette::ColorRole role :
       {QPalette::Text, QPalette::WindowText, QPalette::ButtonText, QPalette::HighlightedText,
        QPalette::BrightText})
    palette.setColor(role, QColor(0xe6, 0xe8, 0xea));
  palette.setColor(QPalette::PlaceholderText, QColor(0x8a, 0x90, 0x98));
  palette.setColor(QPalette::ToolTipBase, QColor(0x22, 0x25, 0x2b));
  palette.setColor(QPalette::ToolTipText, QColor(0xe6, 0xe8, 0xea));
  for (const QPalette::ColorRole role : {QPalette::Text, QPalette::WindowText, QPalette::ButtonText})
    palette.setColor(QPalette::Disabled, role, QColor(0x86, 0x8c, 0x94));
  return palette;
}

/// The drawing or project that is dropped on the window, empty for anything else.
QString droppedFile(const QMimeData& data) {
  if (data.urls().size() != 1 || !data.urls().front().isLocalFile()) return {};
  const QString file = data.urls().front().toLocalFile();
  const bool isKnown = file.endsWith(QStringLiteral(".json"), Qt::CaseInsensitive) ||
                       file.endsWith(QStringLiteral(".db"), Qt::CaseInsensitive);
  return isKnown ? file : QString();
}

} // namespace

MainWindow::MainWindow(SiteRun& site, QtWindows& windows, HostTexts& texts)
    : site_(site), windows_(windows), texts_(texts), runner_(site, windows) {
  units_ = std::make_unique<UnitMarkers>(site, windows);
  buildView();
  buildParts();
  help_ = new ContextHelp(this);
  help_->setMore(texts_(HostText::helpMore));
  help_->onMore = [this](std::wstring_view topic, QWidget& window) {
    static_cast<void>(windows_.openManual(topic, &window));
  };
  runner_.onBusyChanged = [this] {
    if (runner_.isBusy())
      watch_.start(watchMilliseconds);
    else
      watch_.stop();
    view_->light(std::nullopt);
    refreshScene();
    refreshCircuits();
    refreshActions();
    if (!runner_.isBusy() && closesAfterRun_) QTimer::singleShot(0, this, [this] { close(); });
  };
  connect(&watch_, &QTimer::timeout, this, [this] {
    refreshScene();
    refreshActions();
    view_->light(units_->current());
  });
  site_.session().commandLine().setSink([this](std::wstring_view text) { prompt_->print(text); });
  windows_.setMainWindow(this);
  windows_.setPicker(this);
  windows_.setSettings(&settings());
  if (!site.session().options().siteFolder.empty()) {
    siteCircuits_ = std::make_unique<SiteCircuits>(site, windows, texts);
    windows_.setCircuitFacts(siteCircuits_.get());
  }
  windows_.setWords(windowWords(texts_));
  file_ = toQt(site_.session().documents().current()->fileName());
  const std::filesystem::path& settingsFile = site_.session().options().settingsFile;
  open_ = std::make_unique<OpenFile>(
      settingsFile.empty() ? QString() : QString::fromStdString(settingsFile.parent_path().string()));
  open_->take(file_);
  connect(&copying_, &QTimer::timeout, this, [this] { keepCopy(); });
  copying_.start(copyMilliseconds);
  savedState_ = drawing().undoLog().state();
  shownChange_ = drawing().undoLog().changeCount() + 1;
  shownCircuits_ = shownChange_;
  if (const auto& folder = site_.session().options().siteFolder; !folder.empty())
    remember(L"recentSites", QString::fromStdString(folder.string()));
  refreshScene();
  refreshCircuits();
  refreshActions();
  restorePlace();
  setPaper(setting(L"paper") == QStringLiteral("dark") ? Paper::dark : Paper::light);
  view_->setFocus();
  say(texts_(HostText::ready));
}

MainWindow::~MainWindow() {
  site_.session().commandLine().setSink([](std::wstring_view) {});
  windows_.setPicker(nullptr);
  windows_.setMainWindow(nullptr);
  windows_.setSettings(nullptr);
  windows_.setCircuitFacts(nullptr);
}

void MainWindow::buildView() {
  auto* middle = new QWidget(this);
  auto* column = new QVBoxLayout(middle);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(0);
  view_ = new DrawingView(middle);
  // Over the drawing and not above it: what is picked from stays where it is.
  auto* overlay = new QVBoxLayout(view_);
  overlay->setContentsMargins(0, 0, 0, 0);
  banner_ = new QLabel(view_);
  banner_->setAttribute(Qt::WA_TransparentForMouseEvents);
  banner_->setWordWrap(true);
  overlay->addWidget(banner_);
  overlay->addStretch();
  banner_->setObjectName(QStringLiteral("banner"));
  banner_->setAutoFillBackground(true);
  banner_->setMargin(6);
  banner_->hide();
  view_->setObjectName(QStringLiteral("drawing"));
  column->addWidget(view_, 1);
  setCentralWidget(middle);
  view_->onPointer = [this](const KvPoint3d& point) { showPointer(point); };
  view_->onSelected = [this] {
    // A click on a marker is about the dialog beside the drawing, when there is one.
    if (view_->selected() && units_->select(*view_->selected())) return view_->light(units_->current());
    selectCircuitOf(view_->selected());
    showProperties();
    if (view_->selected()) say(factsText(*view_->selected()));
  };
}

/// All that shows words, again when the language changes.
void MainWindow::buildParts() {
  buildPanels();
  buildStatusBar();
  buildCheckPanel();
  buildSetPanel();
  buildMenus();
}

void MainWindow::buildPanels() {
  view_->setAccessibleName(texts_(HostText::drawingName));
  view_->setAccessibleDescription(texts_(HostText::drawingDescription));
  layers_ = new LayerPanel(this);
  layers_->onHiddenChanged = [this](const std::set<std::wstring>& hidden) {
    view_->scene().setHiddenLayers(hidden);
    view_->sceneChanged();
  };
  properties_ = new PropertiesPanel(texts_, this);
  circuitPanel_ = new CircuitPanel(texts_, this);
  circuitPanel_->onSelected = [this](const std::wstring& circuit) { showCircuit(circuit); };
  circuitPanel_->onOpened = [this](const std::wstring& circuit) {
    if (!actions_.at(HostText::configureCircuit)->isEnabled()) return;
    showCircuit(circuit);
    configureCircuit();
  };
  circuitPanel_->onLeft = [this] { view_->setFocus(Qt::OtherFocusReason); };
  circuitPanel_->onMenu = [this](const QPoint& place) { showCircuitMenu(place); };
  prompt_ = new PromptPane(texts_(HostText::promptHint), this);
  prompt_->setHistory(setting(L"history").split(QLatin1Char('\n'), Qt::SkipEmptyParts));
  prompt_->onHistoryChanged = [this] { setSetting(L"history", prompt_->history().join(QLatin1Char('\n'))); };
  prompt_->onNames = [this] {
    QStringList names;
    for (const lisp::Symbol* symbol : site_.interpreter().symbols().all())
      if (symbol->special != nullptr || !symbol->function.isNil() || !symbol->value.isNil())
        names.append(toQt(symbol->name).toLower());
    return names;
  };
  prompt_->onForm = [this](const QString& form) { runForm(QStringLiteral("LISP"), fromQt(form)); };

  QList<QDockWidget*> docks;
  struct Panel {
    HostText title;
    HostText toggle;
    QWidget* content;
    Qt::DockWidgetArea area;
  };
  for (const Panel& panel :
       {Panel{HostText::circuitsTitle, HostText::circuitPanel, circuitPanel_, Qt::RightDockWidgetArea},
        Panel{HostText::propertiesTitle, HostText::propertiesPanel, properties_, Qt::RightDockWidgetArea},
        Panel{HostText::layersTitle, HostText::layerPanel, layers_, Qt::RightDockWidgetArea},
        Panel{HostText::promptTitle, HostText::promptPanel, prompt_, Qt::BottomDockWidgetArea}}) {
    auto* dock = new QDockWidget(texts_(panel.title), this);
    docks.append(dock);
    dock->setObjectName(
        panel.content->objectName() + QStringLiteral("Panel") +
        QString::number(static_cast<int>(panel.title)));
    dock->setWidget(panel.content);
    panel.content->setAccessibleName(texts_(panel.title));
    addDockWidget(panel.area, dock);
    actions_[panel.toggle] = dock->toggleViewAction();
    actions_[panel.toggle]->setText(texts_(panel.toggle));
    actions_[panel.toggle]->setWhatsThis(texts_(helpOf(panel.toggle)));
    panel.content->setWhatsThis(texts_(helpOf(panel.toggle)));
  }
  // What is looked at now and then shares a place.
  tabifyDockWidget(docks[1], docks[2]);
  docks[1]->raise();
  // A designer finds LISP folded away, until it is opened; then it stays.
  docks.last()->hide();
  resizeDocks(docks, {320, 320, 320, 320}, Qt::Horizontal);
  resizeDocks({docks.last()}, {150}, Qt::Vertical);
}

void MainWindow::buildStatusBar() {
  hover_ = new QLabel(this);
  hover_->setMinimumWidth(1); // a long text must not make the window wider
  place_ = new QLabel(this);
  place_->setMinimumWidth(fontMetrics().horizontalAdvance(QStringLiteral("-00000.00, -00000.00")));
  place_->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
  copyResult_ = new QToolButton(this);
  copyResult_->setText(texts_(HostText::copyResult));
  copyResult_->setAutoRaise(true);
  copyResult_->hide();
  connect(copyResult_, &QToolButton::clicked, this, [this] {
    QGuiApplication::clipboard()->setText(copyResult_->property("line").toString());
  });
  statusBar()->addPermanentWidget(copyResult_);
  statusBar()->addPermanentWidget(hover_);
  statusBar()->addPermanentWidget(place_);
}

void MainWindow::buildMenus() {
  auto* toolbar = new FittingToolBar(texts_(HostText::toolbar), this);
  addToolBar(toolbar);
  toolbar->setObjectName(QStringLiteral("commands"));
  toolbar->setToolButtonStyle(Qt::ToolButtonTextUnderIcon);
  toolbar->setIconSize({24, 24});
  for (const MenuRow& row : menuRows()) {
    QMenu* menu = menuBar()->addMenu(texts_(row.title));
    menu->setToolTipsVisible(true);
    bool hasButton = false;
    for (const CommandRow& command : row.commands) {
      if (command.text == HostText::none) {
        menu->addSeparator();
      } else if (command.text == HostText::recentMenu) {
        recent_ = menu->addMenu(texts_(command.text));
      } else if (command.text == HostText::recentProjectsMenu) {
        recentProjects_ = menu->addMenu(texts_(command.text));
      } else if (command.text == HostText::languageMenu) {
        QMenu* languages = menu->addMenu(texts_(command.text));
        for (const auto& [code, name] : {std::pair("en", "&English"), std::pair("de", "&Deutsch")})
          languages->addAction(QString::fromUtf8(name), this, [this, language = QString::fromUtf8(code)] {
            chooseLanguage(language);
          });
      } else {
        addCommand(command, *menu);
      }
      if (!command.isOnToolbar) continue;
      if (!hasButton && !toolbar->actions().isEmpty()) toolbar->addSeparator();
      hasButton = true;
      toolbar->addAction(actions_.at(command.text));
    }
    if (row.title == HostText::viewMenu) {
      menu->addSeparator();
      for (const HostText panel :
           {HostText::circuitPanel, HostText::propertiesPanel, HostText::layerPanel, HostText::setPanel,
            HostText::checkPanel, HostText::promptPanel})
        menu->addAction(actions_.at(panel));
    }
  }
  actions_.at(HostText::grid)->setChecked(true);
  fillRecent();
}

void MainWindow::addCommand(const CommandRow& row, QWidget& menu) {
  auto* action = new QAction(texts_(row.text), this);
  action->setShortcut(QKeySequence(QString::fromLatin1(row.keys)));
  action->setCheckable(row.isTick);
  QString caption = action->text();
  caption.remove(QLatin1Char('&')).remove(QStringLiteral("..."));
  action->setIconText(caption);
  const QString keys = action->shortcut().toString(QKeySequence::NativeText);
  const QString tip = keys.isEmpty() ? caption : caption + QStringLiteral(" (") + keys + QStringLiteral(")");
  action->setProperty("tip", tip); // unchanged while the command is enabled
  action->setToolTip(tip);
  action->setWhatsThis(texts_(helpOf(row.text)));
  if (*row.icon != '\0') action->setIcon(commandIcon(row.icon, palette().color(QPalette::ButtonText)));
  action->setData(QString::fromLatin1(row.icon));
  connect(action, &QAction::triggered, this, [this, &row] { start(row); });
  menu.addAction(action);
  actions_[row.text] = action;
}

void MainWindow::setPaper(Paper paper) {
  QApplication::setStyle(new HostStyle);
  QApplication::setPalette(paletteFor(paper));
  // Light letters on a dark ground look thinner than they are.
  QFont letters = QApplication::font();
  letters.setWeight(paper == Paper::dark ? QFont::Medium : QFont::Normal);
  QApplication::setFont(letters);
  view_->setPaper(paper);
  layers_->setLayers(drawing().store().layers(), view_->scene().hiddenLayers(), paper);
  actions_.at(HostText::darkPaper)->setChecked(paper == Paper::dark);
  QPalette shown = QApplication::palette();
  shown.setColor(
      QPalette::Window, paper == Paper::dark ? QColor(0x5a, 0x46, 0x1e) : QColor(0xff, 0xf3, 0xcd));
  banner_->setPalette(shown);
  for (const auto& [text, action] : actions_)
    if (const QString icon = action->data().toString(); !icon.isEmpty())
      action->setIcon(
          commandIcon(icon.toLatin1().constData(), QApplication::palette().color(QPalette::ButtonText)));
}

void MainWindow::refreshScene() {
  const std::uint64_t change = drawing().undoLog().changeCount();
  if (change == shownChange_) return;
  shownChange_ = change;
  if (!view_->scene().load(drawing(), drawing().currentSpace())) say(texts_(HostText::tooManyShapes));
  if (view_->selected() && drawing().find(*view_->selected()) == nullptr) view_->select(std::nullopt);
  view_->sceneChanged();
  layers_->setLayers(drawing().store().layers(), view_->scene().hiddenLayers(), view_->paper());
  refreshTitle();
}

void MainWindow::refreshTitle() {
  const QString name = file_.isEmpty() ? texts_(HostText::untitled) : QFileInfo(file_).fileName();
  const QString drawing = name + QStringLiteral("[*]") +
                          (isReadOnly_ ? QLatin1Char(' ') + texts_(HostText::readOnly) : QString());
  const QString program = QStringLiteral("ZanBrenvolt");
  const QString project = QFileInfo(QString::fromStdString(site_.project())).completeBaseName();
  setWindowTitle(
      project.isEmpty() ? texts_(HostText::windowTitle, {drawing, program})
                        : texts_(HostText::titleWithProject, {drawing, project, program}));
  setWindowModified(isChanged());
}

void MainWindow::refreshActions() {
  using Use = CommandRow::Use;
  const bool isBusy = runner_.isBusy();
  const bool hasSite = !site_.session().options().siteFolder.empty();
  for (const MenuRow& menu : menuRows())
    for (const CommandRow& row : menu.commands) {
      const auto found = actions_.find(row.text);
      if (found == actions_.end()) continue;
      const bool isFree = row.use == Use::always || (!isBusy && (row.use == Use::idle || hasSite));
      found->second->setEnabled(isFree);
      const QString tip = found->second->property("tip").toString();
      found->second->setToolTip(
          isFree ? tip : tip + QLatin1Char('\n') + texts_(isBusy ? HostText::busy : HostText::noSite));
    }
  recent_->setEnabled(!isBusy && !recent_->isEmpty());
  recentProjects_->setEnabled(!isBusy && hasSite && !recentProjects_->isEmpty());
  if (site_.project().empty()) actions_.at(HostText::closeProject)->setEnabled(false);
  if (isBusy) return;
  for (const auto& [text, name] :
       {std::pair(HostText::undo, runner_.undoName()), std::pair(HostText::redo, runner_.redoName())}) {
    QAction& action = *actions_.at(text);
    action.setEnabled(!name.isEmpty());
    action.setStatusTip(name);
  }
  refreshTitle();
}

void MainWindow::showPointer(const KvPoint3d& point) {
  const auto number = [](double value) { return QString::number(value, 'f', 2); };
  place_->setText(number(point.x) + QStringLiteral(", ") + number(point.y));
  if (view_->mode() == DrawingView::Mode::pickPoint)
    say(view_->overlaps(point) ? texts_(HostText::overlaps) : QString());
  hover_->setText(view_->hovered() ? factsText(*view_->hovered()) : QString());
}

QString MainWindow::factsText(KvDbHandle entity) const {
  const EntityNode* node = drawing().find(entity);
  const std::optional<EntityFacts> facts = factsOf(drawing(), entity);
  if (node == nullptr || !facts) return {};
  const auto attribute = [&facts](std::wstring_view tag) {
    for (const auto& [name, value] : facts->attributes)
      if (name == tag) return toQt(value);
    return QString();
  };
  const Layer* layer = drawing().store().findLayer(facts->layer);
  QString text = attribute(L"TAG1");
  if (!text.isEmpty()) {
    for (const wchar_t* more : {L"RATING1", L"DESC1"})
      if (const QString value = attribute(more); !value.isEmpty()) text += QStringLiteral(", ") + value;
  } else if (layer != nullptr && layer->wireSettings && node->value.kind() == EntityKind::line) {
    text = texts_(HostText::wireOf, {toQt(facts->layer)});
  } else {
    text = kindWords(texts_, node->value.kind()) + QStringLiteral(", ") +
           texts_(HostText::layerOf, {toQt(facts->layer)});
  }
  const auto origin = provenanceOf(node->value);
  const circuits::CircuitObject* circuit = origin ? knownCircuit(origin->circuit) : nullptr;
  if (circuit != nullptr && attribute(L"TAG1") != toQt(circuit->name()))
    text += QStringLiteral(", ") + texts_(HostText::circuitOf, {toQt(circuit->name())});
  return text;
}

void MainWindow::showProperties() {
  const std::optional<KvDbHandle> entity = view_->selected();
  const std::optional<EntityFacts> facts = entity ? factsOf(drawing(), *entity) : std::nullopt;
  const circuits::CircuitObject* circuit = knownCircuit(selectedCircuit_);
  properties_->setRows(propertyRows(texts_, entity ? drawing().find(*entity) : nullptr, facts, circuit));
}

void MainWindow::say(const QString& text) {
  statusBar()->showMessage(text);
}

void MainWindow::tell(const CommandOutcome& outcome, HostText command) {
  using Kind = CommandOutcome::Kind;
  CommandLine& commandLine = site_.session().commandLine();
  switch (outcome.kind) {
  case Kind::refused:
    return say(texts_(HostText::busy));
  case Kind::cancelled:
    return say(texts_(HostText::cancelled));
  case Kind::failed:
    commandLine.printLine(outcome.message);
    return say(texts_(HostText::notDone, {toQt(outcome.message).simplified()}));
  case Kind::done:
    commandLine.printLine(lisp::printValue(outcome.value));
    const QString line = resultLine(texts_, command, outcome.value);
    copyResult_->setVisible(!line.isEmpty());
    copyResult_->setProperty("line", line);
    say(line.isEmpty() ? texts_(HostText::ready) : line);
  }
}

QString MainWindow::status() const {
  return statusBar()->currentMessage();
}

QString MainWindow::hoverText() const {
  return hover_->text();
}

QString MainWindow::pickPrompt() const {
  return pickLoop_ == nullptr ? QString() : banner_->text();
}

bool MainWindow::isChanged() const {
  return drawing().undoLog().state() != savedState_;
}

void MainWindow::restorePlace() {
  resize(1280, 720);
  fitToScreen(*this);
  restoreGeometry(QByteArray::fromBase64(setting(L"geometry").toLatin1()));
  setAcceptDrops(true);
  restoreState(QByteArray::fromBase64(setting(L"state").toLatin1()));
}

void MainWindow::storePlace() {
  setSetting(L"geometry", QString::fromLatin1(saveGeometry().toBase64()));
  setSetting(L"state", QString::fromLatin1(saveState().toBase64()));
}

void MainWindow::closeEvent(QCloseEvent* event) {
  event->ignore();
  if (windows_.isDialogSeen()) return say(texts_(HostText::busy)); // it waits for its own answer
  if (runner_.isBusy()) {
    // The current run ends when it next processes messages; the window closes when the run has rolled back.
    closesAfterRun_ = true;
    windows_.postQuit();
    site_.session().cancelRun();
    cancelPick();
    return;
  }
  closesAfterRun_ = false;
  if (!mayLeaveDrawing()) return;
  open_->removeCopy();
  storePlace();
  event->accept();
}

void MainWindow::dragEnterEvent(QDragEnterEvent* event) {
  if (!runner_.isBusy() && !droppedFile(*event->mimeData()).isEmpty()) event->acceptProposedAction();
}

void MainWindow::dropEvent(QDropEvent* event) {
  const QString file = droppedFile(*event->mimeData());
  if (runner_.isBusy()) return say(texts_(HostText::busy));
  if (file.endsWith(QStringLiteral(".db"), Qt::CaseInsensitive)) {
    openProject(file);
  } else if (readSet(file)) {
    openSet(file);
  } else if (!file.isEmpty() && mayLeaveDrawing()) {
    openFile(file);
  }
}

void MainWindow::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Escape && pickLoop_ != nullptr) return cancelPick();
  QMainWindow::keyPressEvent(event);
}

DrawingDatabase& MainWindow::drawing() const {
  return site_.session().documents().current()->drawing();
}

UserSettings& MainWindow::settings() const {
  return site_.session().settings();
}

QString MainWindow::setting(const wchar_t* name) const {
  return toQt(settings().value(settingsKey, name).value_or(L""));
}

void MainWindow::setSetting(const wchar_t* name, const QString& value) {
  static_cast<void>(settings().setValue(settingsKey, name, fromQt(value)));
}

} // namespace simhost
