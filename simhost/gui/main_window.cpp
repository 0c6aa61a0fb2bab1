// Building the window up, and connecting its parts.
#include "simhost/gui/main_window.h"

#include "simhost/gui/check_panel.h"
#include "simhost/gui/circuit_panel.h"
#include "simhost/gui/layer_panel.h"
#include "simhost/gui/prompt_pane.h"
#include "simhost/gui/properties_panel.h"
#include "simhost/gui/set_panel.h"
#include "simhost/gui/site_circuits.h"
#include "simhost/gui/window_texts.h"
#include "simhost/gui/window_theme.h"
#include "simhost/host/session.h"
#include "simhost/qt/context_help.h"
#include "simhost/qt/qt_text.h"
#include "simhost/qt/window_places.h"
#include "simhost/site/site_run.h"

#include <QAction>
#include <QDragEnterEvent>
#include <QFileInfo>
#include <QKeyEvent>
#include <QLabel>
#include <QMenu>
#include <QMimeData>
#include <QStatusBar>
#include <QUrl>
#include <QVBoxLayout>

namespace simhost {
namespace {

/// How often a running command's drawing is looked at: often enough to see a circuit grow.
constexpr int watchMilliseconds = 100;

/// The drawing or project that is dropped on the window, empty for anything else.
QString droppedFile(const QMimeData& data) {
  if (data.urls().size() != 1 || !data.urls().front().isLocalFile()) return {};
  const QString file = data.urls().front().toLocalFile();
  const bool isKnown = file.endsWith(QStringLiteral(".json"), Qt::CaseInsensitive) ||
                       file.endsWith(QStringLiteral(".db"), Qt::CaseInsensitive);
  return isKnown ? file : QString();
}

std::unique_ptr<SiteCircuits> circuitsOfSite(
    SiteRun& site, QtWindows& windows, UnitMarkers& units, const HostTexts& texts) {
  if (site.session().options().siteFolder.empty()) return nullptr;
  return std::make_unique<SiteCircuits>(site, windows, units, texts);
}

} // namespace

MainWindow::MainWindow(SiteRun& site, QtWindows& windows, HostTexts& texts)
    : site_(site), windows_(windows), texts_(texts), runner_(site, windows),
      settings_(site.session().settings()),
      status_(site, texts), services_{site, windows, texts, runner_, settings_, status_, *this},
      view_(new DrawingView(this)), banner_(new QLabel(view_)), help_(new ContextHelp(this)),
      units_(site, windows), siteCircuits_(circuitsOfSite(site, windows, units_, texts)),
      shown_(services_, *view_), files_(services_),
      selection_(services_, *view_, files_, siteCircuits_.get()), picks_(services_, *view_, *banner_),
      placing_(services_, *view_, shown_, picks_, siteCircuits_.get()),
      circuitCommands_(services_, *view_, files_, selection_, picks_, placing_), paper_(services_, files_),
      projects_(services_), sets_(services_, files_), check_(services_, *view_, files_),
      panels_(services_, *this), menus_(services_, *this) {
  buildView();
  bindCommands();
  connectParts();
  buildParts();
  site_.session().commandLine().setSink([this](std::wstring_view text) { panels_.prompt().print(text); });
  windows_.setMainWindow(this);
  windows_.setPicker(&picks_);
  windows_.dialogs().setSettings(&site_.session().settings());
  windows_.dialogs().setCircuitFacts(siteCircuits_.get());
  windows_.dialogs().setWords(windowWords(texts_));
  if (const auto& folder = site_.session().options().siteFolder; !folder.empty())
    settings_.remember(L"recentSites", QString::fromStdString(folder.string()));
  refreshAll();
  resize(1280, 720);
  fitToScreen(*this);
  restoreGeometry(QByteArray::fromBase64(settings_.value(L"geometry").toLatin1()));
  setAcceptDrops(true);
  restoreState(QByteArray::fromBase64(settings_.value(L"state").toLatin1()));
  setPaper(settings_.value(L"paper") == QStringLiteral("dark") ? Paper::dark : Paper::light);
  view_->setFocus();
  status_.say(texts_(HostText::ready));
}

MainWindow::~MainWindow() {
  site_.session().commandLine().setSink([](std::wstring_view) {});
  windows_.setPicker(nullptr);
  windows_.setMainWindow(nullptr);
  windows_.dialogs().setSettings(nullptr);
  windows_.dialogs().setCircuitFacts(nullptr);
}

void MainWindow::buildView() {
  auto* middle = new QWidget(this);
  auto* column = new QVBoxLayout(middle);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(0);
  view_->setObjectName(QStringLiteral("drawing"));
  column->addWidget(view_, 1);
  // Over the drawing and not above it: what is picked from stays where it is.
  auto* overlay = new QVBoxLayout(view_);
  overlay->setContentsMargins(0, 0, 0, 0);
  banner_->setAttribute(Qt::WA_TransparentForMouseEvents);
  banner_->setWordWrap(true);
  overlay->addWidget(banner_);
  overlay->addStretch();
  banner_->setObjectName(QStringLiteral("banner"));
  banner_->setAutoFillBackground(true);
  banner_->setMargin(6);
  banner_->hide();
  setCentralWidget(middle);
  view_->onPointer = [this](const KvPoint3d& point) {
    status_.showPlace(point);
    if (view_->mode() == DrawingView::Mode::pickPoint)
      status_.say(view_->place().overlaps(point) ? texts_(HostText::overlaps) : QString());
    const std::optional<KvDbHandle> entity = view_->marks().hovered();
    status_.showHover(
        entity ? entityLine(texts_, services_.drawing(), *entity, selection_.circuitOf(*entity)) : QString());
  };
  view_->onSelected = [this] {
    const std::optional<KvDbHandle> entity = view_->marks().selected();
    // A click on a marker is about the dialog beside the drawing, when there is one.
    if (entity && units_.select(*entity)) return view_->marks().light(units_.current());
    selection_.selectOf(entity);
    if (entity) status_.say(entityLine(texts_, services_.drawing(), *entity, selection_.circuitOf(*entity)));
  };
}

void MainWindow::connectParts() {
  help_->onMore = [this](std::wstring_view topic, QWidget& window) {
    static_cast<void>(windows_.openManual(topic, &window));
  };
  runner_.onBusyChanged = [this] {
    if (runner_.isBusy())
      watch_.start(watchMilliseconds);
    else
      watch_.stop();
    view_->marks().light(std::nullopt);
    refreshAll();
    if (!runner_.isBusy() && closesAfterRun_) QTimer::singleShot(0, this, [this] { close(); });
  };
  watch_.callOnTimeout([this] {
    shown_.refresh();
    refreshActions();
    view_->marks().light(units_.current());
  });
  shown_.onChanged = [this] {
    panels_.layers().setLayers(
        services_.drawing().store().layers(), view_->scene().hiddenLayers(), view_->port().paper());
    refreshTitle();
  };
  files_.onState = [this] { refreshTitle(); };
  files_.onTaken = [this] {
    shown_.invalidate();
    selection_.invalidate();
    view_->marks().select(std::nullopt);
    selection_.select({});
    refreshAll();
    view_->port().fit();
    sets_.showOpenSheet();
  };
  selection_.onListed = [this](const std::vector<CircuitRow>& rows) { panels_.circuits().setCircuits(rows); };
  selection_.onSelected = [this] {
    panels_.circuits().showCircuit(selection_.id());
    showProperties();
  };
  picks_.onChanged = [this] { refreshActions(); };
  projects_.onChanged = [this] { refreshActions(); };
  sets_.onOpened = [this] { WindowPanels::show(panels_.set()); };
  sets_.onSheetOpened = [this] { view_->setFocus(); };
  check_.onStarted = [this] { WindowPanels::show(panels_.check()); };
  const auto openDrawing = [this](const QString& file) {
    if (files_.mayLeave()) files_.open(file);
  };
  menus_.onRecent = openDrawing;
  menus_.onRecentProject = [this](const QString& file) { projects_.open(file); };
  menus_.onLanguage = [this](const QString& language) { chooseLanguage(language); };
}

void MainWindow::buildParts() {
  view_->setAccessibleName(texts_(HostText::drawingName));
  view_->setAccessibleDescription(texts_(HostText::drawingDescription));
  help_->setMore(texts_(HostText::helpMore));
  panels_.build(check_.site());
  status_.build(*statusBar());
  connectPanels();
  menus_.build(panels_.toggles());
  action(HostText::grid).setChecked(true);
}

void MainWindow::connectPanels() {
  panels_.layers().onHiddenChanged = [this](const std::set<std::wstring>& hidden) {
    view_->scene().setHiddenLayers(hidden);
    view_->sceneChanged();
  };
  CircuitPanel& circuits = panels_.circuits();
  circuits.onSelected = [this](const std::wstring& circuit) { selection_.show(circuit); };
  circuits.onOpened = [this](const std::wstring& circuit) {
    if (!action(HostText::configureCircuit).isEnabled()) return;
    selection_.show(circuit);
    circuitCommands_.configure();
  };
  circuits.onLeft = [this] { view_->setFocus(Qt::OtherFocusReason); };
  circuits.onMenu = [this](const QPoint& place) {
    QMenu menu(this);
    for (const HostText command :
         {HostText::configureCircuit, HostText::editWireSize, HostText::moveCircuit, HostText::copyCircuit,
          HostText::deleteCircuit, HostText::circuitReport, HostText::saveConfiguration})
      menu.addAction(&action(command));
    menu.exec(place);
  };
  PromptPane& prompt = panels_.prompt();
  prompt.setHistory(settings_.list(L"history"));
  prompt.onHistoryChanged = [this, &prompt] {
    settings_.setValue(L"history", prompt.history().join(QLatin1Char('\n')));
  };
  prompt.onNames = [this] {
    QStringList names;
    for (const lisp::Symbol* symbol : site_.interpreter().symbols().all())
      if (symbol->special != nullptr || !symbol->function.isNil() || !symbol->value.isNil())
        names.append(toQt(symbol->name).toLower());
    return names;
  };
  prompt.onForm = [this](const QString& form) { runForm(services_, QStringLiteral("LISP"), fromQt(form)); };
  check_.attach(panels_.check(), *statusBar());
  sets_.attach(panels_.set());
}

void MainWindow::setPaper(Paper paper) {
  applyTheme(paper);
  view_->port().setPaper(paper);
  panels_.layers().setLayers(services_.drawing().store().layers(), view_->scene().hiddenLayers(), paper);
  action(HostText::darkPaper).setChecked(paper == Paper::dark);
  QPalette shown = palette();
  shown.setColor(QPalette::Window, bannerColour(paper));
  banner_->setPalette(shown);
  menus_.refreshIcons();
}

void MainWindow::refreshAll() {
  shown_.refresh();
  selection_.refresh();
  refreshActions();
}

void MainWindow::refreshTitle() {
  const QString drawing = files_.name() + QStringLiteral("[*]") +
                          (files_.isReadOnly() ? QLatin1Char(' ') + texts_(HostText::readOnly) : QString());
  const QString program = QStringLiteral("ZanBrenvolt");
  const QString project = QFileInfo(QString::fromStdString(site_.project())).completeBaseName();
  setWindowTitle(
      project.isEmpty() ? texts_(HostText::windowTitle, {drawing, program})
                        : texts_(HostText::titleWithProject, {drawing, project, program}));
  setWindowModified(files_.isChanged());
}

void MainWindow::refreshActions() {
  menus_.refresh();
  if (!runner_.isBusy()) refreshTitle();
}

void MainWindow::showProperties() {
  const std::optional<KvDbHandle> entity = view_->marks().selected();
  const std::optional<EntityFacts> facts = entity ? factsOf(services_.drawing(), *entity) : std::nullopt;
  panels_.properties().setRows(propertyRows(
      texts_, entity ? services_.drawing().find(*entity) : nullptr, facts, selection_.selected()));
}

void MainWindow::closeEvent(QCloseEvent* event) {
  event->ignore();
  if (windows_.dialogs().isDialogSeen()) return status_.sayBusy(); // it waits for its own answer
  if (runner_.isBusy()) {
    // The current run ends when it next processes messages; the window closes when the run has rolled back.
    closesAfterRun_ = true;
    windows_.postQuit();
    site_.session().cancelRun();
    picks_.cancel();
    return;
  }
  closesAfterRun_ = false;
  if (!files_.mayLeave()) return;
  files_.removeCopy();
  settings_.setValue(L"geometry", QString::fromLatin1(saveGeometry().toBase64()));
  settings_.setValue(L"state", QString::fromLatin1(saveState().toBase64()));
  event->accept();
}

void MainWindow::dragEnterEvent(QDragEnterEvent* event) {
  if (!runner_.isBusy() && !droppedFile(*event->mimeData()).isEmpty()) event->acceptProposedAction();
}

void MainWindow::dropEvent(QDropEvent* event) {
  const QString file = droppedFile(*event->mimeData());
  if (runner_.isBusy()) return status_.sayBusy();
  if (file.endsWith(QStringLiteral(".db"), Qt::CaseInsensitive)) {
    projects_.open(file);
  } else if (readSet(file)) {
    sets_.open(file);
  } else if (!file.isEmpty() && files_.mayLeave()) {
    files_.open(file);
  }
}

void MainWindow::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Escape && picks_.isOpen()) return picks_.cancel();
  QMainWindow::keyPressEvent(event);
}

} // namespace simhost
