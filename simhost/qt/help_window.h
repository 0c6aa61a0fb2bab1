// Help: the manual in a window of its own, with contents, search and the way back.
#pragma once

#include "simhost/qt/manual.h"
#include "simhost/qt/window_words.h"

#include <QDialog>

#include <filesystem>

class QAction;
class QLineEdit;
class QTreeWidget;
class QTreeWidgetItem;

namespace simhost {

class ManualBrowser;

/// Object name of the window.
inline constexpr const char* helpWindowName = "help";

class HelpWindow final : public QDialog {
public:
  HelpWindow(
      const std::filesystem::path& folder, const QString& language, const WindowWords& words,
      QWidget* parent);

  /// Shows the page, at the heading of this anchor unless it is empty.
  void showPage(const QString& page, const QString& anchor = {});
  /// The page that is shown.
  [[nodiscard]] QString page() const;
  /// False for a topic without a page.
  bool showTopic(std::wstring_view topic);

private:
  void build(const WindowWords& words);
  void fill();
  void open(const QTreeWidgetItem* item);
  void follow(const QUrl& link);

  Manual manual_;
  QString nothingFound_;
  ManualBrowser* text_;
  QLineEdit* search_;
  QTreeWidget* list_; ///< the contents, or what a search found
};

/// Shows a topic in the help window of `parent`, which can be used while a dialog waits; false for a topic without a
/// page.
bool showHelpTopic(
    const std::filesystem::path& folder, const std::string& language, std::wstring_view topic,
    const WindowWords& words, QWidget* parent);

} // namespace simhost
