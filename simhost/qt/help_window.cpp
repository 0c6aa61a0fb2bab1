// The pages of the manual in a browser of texts.
#include "simhost/qt/help_window.h"

#include "simhost/qt/qt_text.h"

#include <QAbstractTextDocumentLayout>
#include <QDialog>
#include <QFile>
#include <QRegularExpression>
#include <QScreen>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextBrowser>
#include <QTextFrame>
#include <QTextTable>
#include <QUrl>
#include <QVBoxLayout>

#include <algorithm>
#include <system_error>

namespace simhost {

namespace {

/// A page with margins around its text, thin lines in its tables, and pictures no wider than the page.
class ManualPage final : public QTextBrowser {
public:
  ManualPage() {
    setOpenExternalLinks(true);
    // The width that pictures are made for stays when a page turns out to be long.
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    connect(this, &QTextBrowser::sourceChanged, this, [this] { polish(); });
  }

  void showPage(const std::filesystem::path& page, std::wstring_view topic) {
    setSource(QUrl::fromLocalFile(QString::fromStdString(page.string())), QTextDocument::MarkdownResource);
    goTo(page, topic);
  }

  QVariant loadResource(int type, const QUrl& name) override {
    QVariant resource = QTextBrowser::loadResource(type, name);
    if (type != QTextDocument::ImageResource) return resource;
    QImage picture;
    if (!picture.loadFromData(resource.toByteArray())) return resource;
    const int room = viewport()->width() - 2 * pageMargin;
    if (picture.width() > room) picture = picture.scaledToWidth(room, Qt::SmoothTransformation);
    return picture;
  }

private:
  static constexpr int pageMargin = 16;
  static constexpr int cellPadding = 4;

  /// The browser does not keep the anchors of topics: the heading after the anchor is searched.
  void goTo(const std::filesystem::path& page, std::wstring_view topic) {
    QFile file(QString::fromStdString(page.string()));
    if (!file.open(QIODevice::ReadOnly)) return;
    const QString source = QString::fromUtf8(file.readAll());
    const qsizetype mark = source.indexOf(QStringLiteral("<a id=\"%1\">").arg(toQt(topic)));
    const qsizetype heading = mark < 0 ? -1 : source.indexOf(QStringLiteral("\n#"), mark);
    if (heading < 0) return;
    QString words = source.mid(heading + 1, source.indexOf(QLatin1Char('\n'), heading + 1) - heading - 1);
    words.remove(QRegularExpression(QStringLiteral("^#+ *")));
    for (QTextBlock block = document()->begin(); block.isValid(); block = block.next())
      if (block.blockFormat().headingLevel() > 0 && block.text() == words)
        verticalScrollBar()->setValue(
            static_cast<int>(document()->documentLayout()->blockBoundingRect(block).top()) - cellPadding);
  }

  void polish() {
    document()->setDocumentMargin(pageMargin);
    for (QTextFrame* frame : document()->rootFrame()->childFrames()) {
      auto* table = qobject_cast<QTextTable*>(frame);
      if (table == nullptr) continue;
      QTextTableFormat format = table->format();
      format.setBorderCollapse(true);
      format.setBorder(0);
      table->setFormat(format);
      for (int row = 0; row < table->rows(); ++row)
        for (int column = 0; column < table->columns(); ++column) {
          QTextTableCell cell = table->cellAt(row, column);
          QTextTableCellFormat line = cell.format().toTableCellFormat();
          line.setBottomBorder(1);
          line.setBottomBorderStyle(QTextFrameFormat::BorderStyle_Solid);
          line.setBottomBorderBrush(palette().brush(QPalette::Mid));
          line.setPadding(cellPadding);
          cell.setFormat(line);
        }
    }
  }
};

} // namespace

std::filesystem::path helpPage(const std::filesystem::path& folder, std::wstring_view topic) {
  for (const HelpTopic& row : helpTopics) {
    if (row.name != topic) continue;
    std::filesystem::path page = folder / row.page;
    std::error_code error;
    if (std::filesystem::exists(page, error)) return page;
  }
  return {};
}

void showHelpPage(
    const std::filesystem::path& page, std::wstring_view topic, const QString& title, QWidget* parent) {
  // A child of the calling window: a waiting modal dialog blocks all other windows.
  auto* window = new QDialog(parent);
  window->setObjectName(helpWindowName);
  window->setAttribute(Qt::WA_DeleteOnClose);
  window->setWindowTitle(title);
  auto* column = new QVBoxLayout(window);
  column->setContentsMargins(0, 0, 0, 0);
  auto* text = new ManualPage;
  column->addWidget(text);
  const int character = text->fontMetrics().averageCharWidth();
  const QSize screen = window->screen()->availableSize();
  window->resize(std::min(character * 120, screen.width()), std::min(character * 90, screen.height()));
  window->show();
  text->showPage(page, topic);
}

} // namespace simhost
