// What every part of the main window works with: site, windows, words, commands, settings and the status line.
#pragma once

#include "simhost/gui/command_runner.h"
#include "simhost/gui/host_texts.h"
#include "simhost/gui/status_line.h"
#include "simhost/gui/window_settings.h"

class QWidget;

namespace simhost {

class DrawingDatabase;
class QtWindows;
class SiteRun;

/// All must outlive the parts.
struct WindowServices {
  SiteRun& site;
  QtWindows& windows;
  const HostTexts& texts;
  CommandRunner& runner;
  WindowSettings& settings;
  StatusLine& status;
  QWidget& window; ///< parent of their dialogs

  /// The drawing that is open now.
  [[nodiscard]] DrawingDatabase& drawing() const;
};

/// Runs a LISP text as a command of this name, and shows its result. `command`: whose result can be read as a line.
void runForm(
    const WindowServices& services, const QString& name, const std::wstring& form,
    HostText command = HostText::none);

/// A command's name in messages: its menu text without marks.
[[nodiscard]] QString captionOf(const HostTexts& texts, HostText command);

/// A question about files or configurations, the first answer being the default: the place of the answer, -1 for Escape.
/// The answer `keepEditing` is that of Escape.
[[nodiscard]] int askQuestion(
    const WindowServices& services, HostText title, const QString& text,
    std::initializer_list<HostText> answers);

} // namespace simhost
