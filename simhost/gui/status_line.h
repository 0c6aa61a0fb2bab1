// The status bar of the main window: what a command has done, why it could not, and what is at the pointer. What fails is
// also printed on the command line, where it can be read again.
#pragma once

#include "simhost/drawing/drawing_file.h"
#include "simhost/gui/host_texts.h"
#include "simhost/site/command_steps.h"

#include <QString>

class QLabel;
class QStatusBar;
class QToolButton;

namespace simhost {

class SiteRun;

class StatusLine final {
public:
  /// Both must outlive it.
  StatusLine(SiteRun& site, const HostTexts& texts) : site_(site), texts_(texts) {}
  StatusLine(const StatusLine&) = delete;
  StatusLine& operator=(const StatusLine&) = delete;

  /// Takes this bar, which must outlive its use here: before anything is shown, and again when the language changes.
  void build(QStatusBar& bar);

  [[nodiscard]] QString text() const;
  /// What is shown of the entity under the pointer.
  [[nodiscard]] QString hoverText() const;

  void say(const QString& text);
  /// A command cannot begin while another one runs.
  void sayBusy();
  /// How a command ended; of some commands the result becomes a line that can be copied.
  void showOutcome(const CommandOutcome& outcome, HostText command = HostText::none);
  /// Why something was not done.
  void showFault(const QString& reason);
  /// The fault, or else `text` with the file's name; true without a fault.
  bool showWritten(const Fault& fault, HostText text, const QString& file);
  void showPlace(const KvPoint3d& point);
  void showHover(const QString& text);

private:
  SiteRun& site_;
  const HostTexts& texts_;
  QStatusBar* bar_ = nullptr;
  QLabel* hover_ = nullptr;
  QLabel* place_ = nullptr;
  QToolButton* copyResult_ = nullptr; ///< of the result line of a command
};

} // namespace simhost
