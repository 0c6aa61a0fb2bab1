// Opening sets and their sheets.
#include "simhost/gui/set_commands.h"

#include "simhost/gui/drawing_files.h"
#include "simhost/gui/set_panel.h"

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>

namespace simhost {

void SetCommands::attach(SetPanel& panel) {
  panel_ = &panel;
  panel.onOpen = [this](const QString& file) {
    if (files_.mayLeave() && files_.open(file) && onSheetOpened) onSheetOpened();
  };
  if (set_) panel.setSheets(*set_);
  showOpenSheet();
}

void SetCommands::showOpenSheet() {
  panel_->showOpen(files_.file());
}

bool SetCommands::open(const QString& file) {
  const std::optional<DrawingSet> found = readSet(file);
  if (!found) {
    services_.status.say(services_.texts(HostText::notASet, {file}));
    return false;
  }
  set_ = found;
  panel_->setSheets(*set_);
  showOpenSheet();
  if (onOpened) onOpened();
  services_.settings.remember(L"recentSets", set_->file);
  const QString name = set_->title.isEmpty() ? QFileInfo(file).dir().dirName() : set_->title;
  services_.status.say(services_.texts(HostText::setOpened, {name, QString::number(set_->sheets.size())}));
  return true;
}

void SetCommands::askOpen() {
  const QString file = QFileDialog::getOpenFileName(
      &services_.window, services_.texts(HostText::openSetTitle),
      set_ ? set_->file : QFileInfo(files_.file()).path(), services_.texts(HostText::sets));
  if (!file.isEmpty()) open(file);
}

} // namespace simhost
