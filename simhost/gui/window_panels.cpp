// One dock for each panel.
#include "simhost/gui/window_panels.h"

#include "simhost/gui/check_panel.h"
#include "simhost/gui/circuit_panel.h"
#include "simhost/gui/layer_panel.h"
#include "simhost/gui/prompt_pane.h"
#include "simhost/gui/properties_panel.h"
#include "simhost/gui/set_panel.h"
#include "simhost/host/session.h"
#include "simhost/site/site_run.h"

#include <QAction>
#include <QDockWidget>
#include <QMainWindow>

namespace simhost {
namespace {

QDockWidget* dockOf(QWidget& panel) {
  return qobject_cast<QDockWidget*>(panel.parentWidget());
}

} // namespace

/// `name`: of the dock, by which the settings know it.
struct WindowPanels::Place {
  HostText title;
  HostText toggle;
  QWidget* content;
  Qt::DockWidgetArea area;
  QString name;
};

void WindowPanels::build(const QString& site) {
  const HostTexts& texts = services_.texts;
  layers_ = new LayerPanel(&window_);
  properties_ = new PropertiesPanel(texts, &window_);
  circuits_ = new CircuitPanel(texts, &window_);
  prompt_ = new PromptPane(texts(HostText::promptHint), &window_);
  check_ = new CheckPanel(
      texts, site, QString::fromStdString(services_.site.session().options().language), &window_);
  set_ = new SetPanel(texts, &window_);
  const auto nameOf = [](const QWidget& panel, HostText title) {
    return panel.objectName() + QStringLiteral("Panel") + QString::number(static_cast<int>(title));
  };
  for (const Place& place :
       {Place{
            HostText::circuitsTitle, HostText::circuitPanel, circuits_, Qt::RightDockWidgetArea,
            nameOf(*circuits_, HostText::circuitsTitle)},
        Place{
            HostText::propertiesTitle, HostText::propertiesPanel, properties_, Qt::RightDockWidgetArea,
            nameOf(*properties_, HostText::propertiesTitle)},
        Place{
            HostText::layersTitle, HostText::layerPanel, layers_, Qt::RightDockWidgetArea,
            nameOf(*layers_, HostText::layersTitle)},
        Place{
            HostText::promptTitle, HostText::promptPanel, prompt_, Qt::BottomDockWidgetArea,
            nameOf(*prompt_, HostText::promptTitle)},
        Place{
            HostText::checkTitle, HostText::checkPanel, check_, Qt::BottomDockWidgetArea,
            QStringLiteral("checkDock")},
        Place{
            HostText::setTitle, HostText::setPanel, set_, Qt::LeftDockWidgetArea, QStringLiteral("setDock")}})
    add(place);
  // What is looked at now and then shares a place.
  window_.tabifyDockWidget(dockOf(*properties_), dockOf(*layers_));
  dockOf(*properties_)->raise();
  // A designer finds LISP folded away, until it is opened; then it stays.
  for (QWidget* panel :
       {static_cast<QWidget*>(prompt_), static_cast<QWidget*>(check_), static_cast<QWidget*>(set_)})
    dockOf(*panel)->hide();
  const QList<QDockWidget*> docks{
      dockOf(*circuits_), dockOf(*properties_), dockOf(*layers_), dockOf(*prompt_)};
  window_.resizeDocks(docks, {320, 320, 320, 320}, Qt::Horizontal);
  window_.resizeDocks({docks.last()}, {150}, Qt::Vertical);
}

void WindowPanels::add(const Place& place) {
  auto* dock = new QDockWidget(services_.texts(place.title), &window_);
  dock->setObjectName(place.name);
  dock->setWidget(place.content);
  place.content->setAccessibleName(services_.texts(place.title));
  window_.addDockWidget(place.area, dock);
  QAction* toggle = dock->toggleViewAction();
  toggle->setText(services_.texts(place.toggle));
  toggle->setWhatsThis(services_.texts(helpOf(place.toggle)));
  place.content->setWhatsThis(services_.texts(helpOf(place.toggle)));
  toggles_[place.toggle] = toggle;
}

void WindowPanels::remove() {
  toggles_.clear();
  qDeleteAll(window_.findChildren<QDockWidget*>(Qt::FindDirectChildrenOnly));
}

void WindowPanels::show(QWidget& panel) {
  QDockWidget* const dock = dockOf(panel);
  dock->show();
  dock->raise();
}

} // namespace simhost
