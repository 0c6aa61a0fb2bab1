// Where the user left a dialog: place and size, kept by the name of the dialog.
#pragma once

class QWidget;

namespace simhost {

class QtDialog;
class UserSettings;

/// A place that no screen has any more is not restored; a size that a screen cannot hold is cut.
void restorePlace(UserSettings& settings, QtDialog& dialog);
/// Keeps what has changed since it was opened.
void keepPlace(UserSettings& settings, const QtDialog& dialog);

/// A window that is made larger than this screen gets the screen's size.
void fitToScreen(QWidget& window);

} // namespace simhost
