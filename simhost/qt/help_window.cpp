// A list at the left, the page at the right.
#include "simhost/qt/help_window.h"

#include "simhost/qt/qt_text.h"

#include <QDesktopServices>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLineEdit>
#include <QScreen>
#include <QScrollBar>
#include <QShortcut>
#include <QSignalBlocker>
#include <QSplitter>
#include <QStyle>
#include <QTextBlock>
#include <QTextBrowser>
#include <QTextFrame>
#include <QTextTable>
#include <QToolBar>
#include <QTreeWidget>
#include <QUrl>
#include <QVBoxLayout>

#include <algorithm>

namespace simhost {

/// A page with margins around its text, thin lines in its tables, anchors at its headings, and pictures no wider than the
/// page.
class ManualBrowser final : public QTextBrowser {
public:
  ManualBrowser() {
    setOpenLinks(false);
    // The width that pictures are made for stays when a page turns out to be long.
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    connect(this, &QTextBrowser::sourceChanged, this, [this](const QUrl& url) {
      if (const QUrl page = url.adjusted(QUrl::RemoveFragment); page != polished_) {
        polish();
        polished_ = page;
      }
      if (url.hasFragment()) scrollToAnchor(url.fragment(QUrl::FullyDecoded));
      horizontalScrollBar()->setValue(0); // an anchor in a wide page would hide the beginning of its lines
    });
  }

  /// Marks every place of these words.
  void mark(const QStringList& words) {
    QList<QTextEdit::ExtraSelection> marks;
    for (const QString& word : words)
      for (QTextCursor found = document()->find(word); !found.isNull();
           found = document()->find(word, found)) {
        QTextEdit::ExtraSelection mark;
        mark.cursor = found;
        mark.format.setBackground(palette().color(QPalette::Highlight));
        mark.format.setForeground(palette().color(QPalette::HighlightedText));
        marks.append(mark);
      }
    setExtraSelections(marks);
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
    // The reader of Markdown gives headings no anchors.
    for (QTextBlock block = document()->begin(); block.isValid(); block = block.next()) {
      if (block.blockFormat().headingLevel() == 0) continue;
      QTextCursor heading(block);
      heading.select(QTextCursor::BlockUnderCursor);
      QTextCharFormat anchor;
      anchor.setAnchor(true);
      anchor.setAnchorNames({anchorOfHeading(block.text())});
      QTextCursor whole(block);
      whole.movePosition(QTextCursor::EndOfBlock, QTextCursor::KeepAnchor);
      whole.mergeCharFormat(anchor);
    }
  }

  QUrl polished_;
};

namespace {

constexpr int pageRole = Qt::UserRole;
constexpr int anchorRole = Qt::UserRole + 1;

QTreeWidgetItem* makeItem(const QString& words, const QString& page, const QString& anchor) {
  auto* item = new QTreeWidgetItem({words});
  item->setToolTip(0, words);
  item->setData(0, pageRole, page);
  item->setData(0, anchorRole, anchor);
  return item;
}

} // namespace

HelpWindow::HelpWindow(
    const std::filesystem::path& folder, const QString& language, const WindowWords& words, QWidget* parent)
    : QDialog(parent), manual_(folder, language), nothingFound_(words.nothingFound), text_(new ManualBrowser),
      search_(new QLineEdit), list_(new QTreeWidget) {
  setObjectName(helpWindowName);
  setAttribute(Qt::WA_DeleteOnClose);
  setWindowTitle(words.help);
  setWindowFlag(Qt::WindowMinMaxButtonsHint);
  build(words);
  fill();
}

void HelpWindow::build(const WindowWords& words) {
  auto* bar = new QToolBar;
  bar->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
  const auto button = [&](const char* name, QStyle::StandardPixmap icon, const QString& text,
                          const QKeySequence& keys, const std::function<void()>& action) {
    QAction* added = bar->addAction(style()->standardIcon(icon), text, this, action);
    added->setObjectName(QLatin1String(name));
    added->setShortcut(keys);
    added->setToolTip(
        text + QStringLiteral(" (") + keys.toString(QKeySequence::NativeText) + QLatin1Char(')'));
    return added;
  };
  QAction* back =
      button("back", QStyle::SP_ArrowBack, words.helpBack, QKeySequence(QStringLiteral("Alt+Left")), [this] {
        text_->backward();
      });
  QAction* next = button(
      "forward", QStyle::SP_ArrowForward, words.helpForward, QKeySequence(QStringLiteral("Alt+Right")),
      [this] { text_->forward(); });
  button(
      "contents", QStyle::SP_FileDialogContentsView, words.helpContents,
      QKeySequence(QStringLiteral("Alt+Home")), [this] {
        search_->clear();
        showPage(QStringLiteral("first-circuit.md"));
      });
  back->setEnabled(false);
  next->setEnabled(false);
  connect(text_, &QTextBrowser::backwardAvailable, back, &QAction::setEnabled);
  connect(text_, &QTextBrowser::forwardAvailable, next, &QAction::setEnabled);
  connect(text_, &QTextBrowser::anchorClicked, this, [this](const QUrl& link) { follow(link); });

  search_->setObjectName(QStringLiteral("helpSearch"));
  search_->setPlaceholderText(words.helpSearch);
  search_->setAccessibleName(words.helpSearch);
  search_->setClearButtonEnabled(true);
  list_->setObjectName(QStringLiteral("helpContents"));
  list_->setAccessibleName(words.helpContents);
  list_->header()->hide();
  list_->setWordWrap(true);
  list_->setTabKeyNavigation(false);
  text_->setObjectName(QStringLiteral("helpPage"));
  text_->setAccessibleName(words.help);
  connect(search_, &QLineEdit::textChanged, this, [this] { fill(); });
  connect(search_, &QLineEdit::returnPressed, this, [this] {
    list_->setFocus(Qt::TabFocusReason);
    list_->setCurrentItem(list_->topLevelItem(0));
  });
  connect(list_, &QTreeWidget::currentItemChanged, this, [this](const QTreeWidgetItem* item) { open(item); });
  connect(list_, &QTreeWidget::itemClicked, this, [this](const QTreeWidgetItem* item) { open(item); });
  auto* find = new QShortcut(QKeySequence(QKeySequence::Find), this);
  connect(find, &QShortcut::activated, search_, [this] { search_->setFocus(Qt::ShortcutFocusReason); });

  auto* left = new QWidget;
  auto* places = new QVBoxLayout(left);
  places->setContentsMargins(6, 0, 0, 6);
  places->addWidget(search_);
  places->addWidget(list_, 1);
  auto* panes = new QSplitter;
  panes->addWidget(left);
  panes->addWidget(text_);
  panes->setStretchFactor(1, 1);
  panes->setChildrenCollapsible(false);
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(0);
  column->addWidget(bar);
  column->addWidget(panes, 1);
  setTabOrder(search_, list_);
  setTabOrder(list_, text_);

  const int character = fontMetrics().averageCharWidth();
  constexpr int border = 40; // for the title bar and the frame
  const QSize room = screen()->availableSize() - QSize(border, border);
  const QSize wanted(character * 150, character * 90);
  resize(wanted.boundedTo(room));
  const int list = std::min(character * 34, width() / 3);
  panes->setSizes({list, width() - list});
}

void HelpWindow::fill() {
  const QSignalBlocker blocker(list_);
  list_->clear();
  const bool isSearch = !search_->text().trimmed().isEmpty();
  list_->setRootIsDecorated(!isSearch);
  if (isSearch) {
    for (const ManualHit& hit : manual_.search(search_->text())) {
      QTreeWidgetItem* item = makeItem(hit.title, hit.page, hit.anchor);
      item->setToolTip(0, hit.excerpt);
      list_->addTopLevelItem(item);
    }
    if (list_->topLevelItemCount() == 0) {
      auto* none = new QTreeWidgetItem({nothingFound_});
      none->setFlags(Qt::NoItemFlags);
      list_->addTopLevelItem(none);
    }
    return;
  }
  for (const ManualPage& page : manual_.pages()) {
    QTreeWidgetItem* item = makeItem(page.title(), page.name, {});
    for (const ManualSection& section : page.sections)
      if (section.level == 2) item->addChild(makeItem(section.heading, page.name, section.anchor));
    list_->addTopLevelItem(item);
  }
}

void HelpWindow::open(const QTreeWidgetItem* item) {
  if (item == nullptr || item->data(0, pageRole).isNull()) return;
  showPage(item->data(0, pageRole).toString(), item->data(0, anchorRole).toString());
  text_->mark(search_->text().split(QLatin1Char(' '), Qt::SkipEmptyParts));
}

void HelpWindow::showPage(const QString& page, const QString& anchor) {
  const QString file = manual_.file(page);
  if (file.isEmpty()) return;
  QUrl url = QUrl::fromLocalFile(file);
  if (!anchor.isEmpty()) url.setFragment(anchor);
  text_->setSource(url, QTextDocument::MarkdownResource);
  text_->setExtraSelections({});
}

QString HelpWindow::page() const {
  return text_->source().fileName();
}

bool HelpWindow::showTopic(std::wstring_view topic) {
  const HelpTopic* row = helpTopic(topic);
  const QString page = row == nullptr ? QString() : QLatin1String(row->page);
  if (row == nullptr || manual_.file(page).isEmpty()) return false;
  showPage(page, manual_.anchorOf(page, toQt(topic)));
  return true;
}

/// A link of a page leads to the page of this language, to English, or out of the manual.
void HelpWindow::follow(const QUrl& link) {
  const QUrl url = text_->source().resolved(link);
  const QString page = url.fileName();
  if (url.isLocalFile() && !manual_.file(page).isEmpty())
    return showPage(page, url.fragment(QUrl::FullyDecoded));
  QDesktopServices::openUrl(url);
}

bool showHelpTopic(
    const std::filesystem::path& folder, const std::string& language, std::wstring_view topic,
    const WindowWords& words, QWidget* parent) {
  // A child of the calling window: a waiting modal dialog blocks all other windows.
  QWidget* known =
      parent == nullptr
          ? nullptr
          : parent->findChild<QWidget*>(QLatin1String(helpWindowName), Qt::FindDirectChildrenOnly);
  auto* window = dynamic_cast<HelpWindow*>(known);
  const bool isNew = window == nullptr;
  if (isNew) window = new HelpWindow(folder, QString::fromStdString(language), words, parent);
  // Laid out first: pictures are made for the width of the page.
  window->show();
  if (!window->showTopic(topic)) {
    if (isNew) window->close();
    return false;
  }
  window->raise();
  window->activateWindow();
  return true;
}

} // namespace simhost
