// The pages of the manual in a browser of texts.
#include "simhost/qt/help_window.h"

#include "simhost/qt/qt_text.h"

#include <QDialog>
#include <QTextBrowser>
#include <QUrl>
#include <QVBoxLayout>

#include <system_error>

namespace simhost {

std::filesystem::path helpPage(const std::filesystem::path& folder, std::wstring_view topic) {
  for (const HelpTopic& row : helpTopics) {
    if (row.name != topic) continue;
    std::filesystem::path page = folder / row.page;
    std::error_code error;
    if (std::filesystem::exists(page, error)) return page;
  }
  return {};
}

void showHelpPage(const std::filesystem::path& page, QWidget* parent) {
  // A child of the window that asks: a dialog that waits lets nothing else be used.
  auto* window = new QDialog(parent);
  window->setObjectName("help");
  window->setAttribute(Qt::WA_DeleteOnClose);
  window->setWindowTitle(QStringLiteral("Help"));
  auto* column = new QVBoxLayout(window);
  column->setContentsMargins(0, 0, 0, 0);
  auto* text = new QTextBrowser;
  text->setSource(
      QUrl::fromLocalFile(QString::fromStdString(page.string())), QTextDocument::MarkdownResource);
  text->setOpenExternalLinks(true);
  column->addWidget(text);
  window->resize(760, 560);
  window->show();
}

} // namespace simhost
