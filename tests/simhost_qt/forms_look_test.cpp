// Every form as a window: whatever its flow does, a user must be able to read and to reach all of it.
#include "simhost/qt/column_widths.h"
#include "simhost/qt/form_layout.h"
#include "simhost/qt/icons.h"
#include "simhost/qt/qt_windows.h"
#include "tests/simhost_qt/piloted_windows.h"
#include "text/encoding.h"

#include <doctest/doctest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QComboBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QSet>
#include <QTableView>
#include <QTest>
#include <QTimer>
#include <QWindow>

#include <filesystem>
#include <map>
#include <set>

using brenvolt::fromUtf8;
using brenvolt::toUtf8;
using simhost::ControlView;
using simhost::Form;
using simhost::QtDialog;

namespace {

std::vector<std::wstring> formNames() {
  std::vector<std::wstring> names;
  for (const auto& entry : std::filesystem::directory_iterator("resources/forms"))
    if (entry.path().extension() == ".json") names.push_back(fromUtf8(entry.path().stem().string()));
  std::sort(names.begin(), names.end());
  return names;
}

/// A dialog without a flow, open for as long as a test looks at it.
class OpenForm final : private simhost::DialogSurroundings {
public:
  explicit OpenForm(const Form& form)
      : flow_(form.name.c_str(), nullptr),
        dialog(form, simhost::readLayout(form), flow_, *this, recorder_, nullptr) {
    dialog.frame().show();
    REQUIRE(QTest::qWaitForWindowExposed(&dialog.frame()));
  }

private:
  void dialogOpens(QtDialog&) override {}
  void dialogCloses(QtDialog&) override {}
  void dialogLends(QtDialog&) override {}
  void dialogTakesBack(QtDialog&) override {}
  bool isOnTop(const QtDialog&) const override { return true; }
  bool isPiloted() const override { return false; }
  bool keepsRecord() const override { return false; }
  simhost::CircuitFacts* circuitFacts() const override { return nullptr; }
  bool insertsBeforeOk() const override { return false; }
  const simhost::WindowWords& words() const override { return words_; }
  void pilot(QtDialog&) override {}

  struct NoFlow final : CKvUiDialog {
    using CKvUiDialog::CKvUiDialog;
  };
  NoFlow flow_;
  simhost::WindowWords words_;
  simhost::Recorder recorder_;

public:
  QtDialog dialog;
};

/// The letter after "&".
QChar mnemonicOf(const QString& text) {
  for (qsizetype at = 0; at + 1 < text.size(); ++at) {
    if (text[at] != QLatin1Char('&')) continue;
    if (text[at + 1] != QLatin1Char('&')) return text[at + 1].toLower();
    ++at;
  }
  return {};
}

QRect placeIn(const QWidget& widget, const QWidget& frame) {
  return {widget.mapTo(&frame, QPoint(0, 0)), widget.size()};
}

/// Whether a label, a tick or a button shows its whole text.
bool isReadable(const QWidget& widget, const QString& text) {
  return widget.fontMetrics().size(Qt::TextShowMnemonic, text).width() <= widget.contentsRect().width();
}

void checkLook(OpenForm& open, const QSize& room) {
  QWidget& frame = open.dialog.frame();
  for (const auto& view : open.dialog.views()) // as the flow may show it
    dynamic_cast<KvUiControl&>(view->model().face()).Show(true);
  open.dialog.refresh();
  QCoreApplication::processEvents();
  const QSize needed = frame.minimumSizeHint();
  CHECK_LE(needed.width(), room.width());
  CHECK_LE(needed.height(), room.height());
  frame.resize(frame.size().boundedTo(room));
  QCoreApplication::processEvents();
  std::vector<std::pair<std::string, QRect>> places;
  for (const auto& view : open.dialog.views()) {
    const std::string role = toUtf8(view->model().role());
    CAPTURE(role);
    const QWidget& widget = view->widget();
    REQUIRE(widget.window() == &frame);
    CHECK(frame.rect().contains(placeIn(widget, frame)));
    const bool isOneLine = widget.sizePolicy().verticalPolicy() == QSizePolicy::Fixed;
    if (isOneLine) CHECK_GE(widget.height(), widget.minimumSizeHint().height());
    if (const auto* button = qobject_cast<const QAbstractButton*>(&widget)) {
      CHECK_GE(widget.width(), widget.sizeHint().width());
      CHECK(isReadable(widget, button->text()));
    }
    if (view->label() != nullptr) {
      CHECK(isReadable(*view->label(), view->label()->text()));
      places.emplace_back(role + " (label)", placeIn(*view->label(), frame));
    }
    places.emplace_back(role, placeIn(widget, frame));
  }
  for (std::size_t one = 0; one < places.size(); ++one)
    for (std::size_t other = one + 1; other < places.size(); ++other)
      CHECK_MESSAGE(
          !places[one].second.intersects(places[other].second), places[one].first, " covers ",
          places[other].first);
}

} // namespace

TEST_CASE("each form fits a small screen, and nothing on it is cut off or covered") {
  simhost::test::startApplication();
  const QFont plain = QApplication::font();
  for (const char* language : {"en", "de"})
    // Screens of 1024 by 700 and 1280 by 720, less a title bar and, on the larger one, a panel of the desktop.
    for (const auto& [points, room] : {std::pair(9, QSize(1024, 672)), std::pair(12, QSize(1280, 690))}) {
      QApplication::setFont(QFont(plain.family(), points));
      for (const std::wstring& name : formNames()) {
        CAPTURE(language);
        CAPTURE(points);
        CAPTURE(toUtf8(name));
        OpenForm open(simhost::loadForm("resources/forms", name, language));
        checkLook(open, room);
      }
    }
  QApplication::setFont(plain);
}

TEST_CASE("each control has a label that leads to it, a letter of its own, and its turn") {
  simhost::test::startApplication();
  for (const char* language : {"en", "de"})
    for (const std::wstring& name : formNames()) {
      CAPTURE(language);
      CAPTURE(toUtf8(name));
      const Form form = simhost::loadForm("resources/forms", name, language);
      OpenForm open(form);
      QSet<QChar> letters;
      std::vector<const QWidget*> order;
      for (const simhost::FormControl& control : form.controls) {
        const std::string role = toUtf8(control.role);
        CAPTURE(role);
        const ControlView* view = open.dialog.views().of(*open.dialog.find(control.role));
        REQUIRE(view != nullptr);
        order.push_back(&view->focusWidget());
        const QWidget& widget = view->focusWidget();
        CHECK_FALSE((widget.accessibleName().isEmpty() && control.label.size() > 0));
        if (control.isReadOnly) CHECK_FALSE((widget.focusPolicy() & Qt::TabFocus));
        QString text;
        if (const auto* button = qobject_cast<const QAbstractButton*>(&view->widget())) text = button->text();
        if (view->label() != nullptr) {
          CHECK(view->label()->buddy() == &view->focusWidget());
          text = view->label()->text();
        }
        // Only what shows itself needs no label.
        CHECK((!text.isEmpty() || control.isReadOnly));
        const QChar letter = mnemonicOf(text);
        if (letter.isNull()) continue;
        CHECK_MESSAGE(
            !letters.contains(letter), "the letter ", std::string(1, letter.toLatin1()), " is taken");
        letters.insert(letter);
      }
      const QWidget* at = order.front();
      for (std::size_t next = 1; next < order.size(); ++next) {
        const auto isNext = [&](const QWidget* widget) {
          return std::find(order.begin(), order.end(), widget) != order.end();
        };
        do
          at = at->nextInFocusChain();
        while (!isNext(at));
        CHECK_MESSAGE(at == order[next], "behind ", next, " controls another one has its turn");
      }
    }
}

TEST_CASE("columns show their texts, fill their table, and leave nothing to a row head") {
  using simhost::ColumnNeed;
  using simhost::Overflow;
  struct Row {
    std::vector<ColumnNeed> columns; ///< least, wanted, share
    int room;
    Overflow overflow;
    std::vector<int> widths;
  };
  const Row rows[] = {
      {{{12, 12, 0}, {50, 50, 1}, {50, 50, 1}}, 212, Overflow::scrolls, {12, 100, 100}},
      {{{50, 50, 5}, {50, 50, 6}}, 220, Overflow::squeezes, {100, 120}},
      // A column wider than its share keeps its text, and a truncated text gets space first.
      {{{150, 150, 1}, {20, 20, 1}, {20, 20, 1}}, 300, Overflow::scrolls, {150, 75, 75}},
      {{{50, 50, 1}, {100, 180, 1}}, 230, Overflow::scrolls, {50, 180}},
      {{{200, 200, 1}, {200, 200, 1}}, 300, Overflow::scrolls, {200, 200}},
      {{{150, 150, 1}, {100, 100, 1}}, 240, Overflow::squeezes, {150, 90}},
      {{{150, 150, 1}, {100, 100, 1}}, 180, Overflow::squeezes, {120, 60}},
  };
  for (const Row& row : rows)
    CHECK_EQ(columnWidths(row.columns, row.room, row.overflow), row.widths);
}

TEST_CASE("a cell with a list has an arrow before it is opened, and the icon of a selected row is seen") {
  simhost::test::startApplication();
  OpenForm open(simhost::loadForm("resources/forms", L"ZanDlgAnnotation"));
  auto& grid = dynamic_cast<KvUiGrid&>(open.dialog.find(L"presets")->face());
  grid.SetSize(1, 2);
  grid.SetEditable(true, false);
  const auto picture = [&](KvUiCellKind kind) {
    grid.SetCellKind(1, 1, kind);
    open.dialog.refresh();
    auto& table = dynamic_cast<QTableView&>(open.dialog.views().of(*open.dialog.find(L"presets"))->widget());
    return table.viewport()->grab(table.visualRect(table.model()->index(0, 1))).toImage();
  };
  const QImage text = picture(KvUiCellKind::text);
  CHECK(text == picture(KvUiCellKind::text));
  CHECK(text != picture(KvUiCellKind::dropDown));

  QPalette palette;
  palette.setColor(QPalette::HighlightedText, Qt::magenta);
  for (const int image : {1, 2}) {
    const QPixmap selected = simhost::treeIcon(L"states", image, palette).pixmap(24, QIcon::Selected);
    const QImage icon = selected.toImage();
    int ink = 0;
    for (int y = 0; y < icon.height(); ++y)
      for (int x = 0; x < icon.width(); ++x)
        ink += icon.pixelColor(x, y) == QColor(Qt::magenta) ? 1 : 0;
    CHECK_GT(ink, 5);
  }
}

TEST_CASE("rows are sorted and searched on the screen only: a selection is the row of the grid") {
  simhost::test::startApplication();
  OpenForm open(simhost::loadForm("resources/forms", L"ZanDlgMotorSelect"));
  auto& control = *open.dialog.find(L"grid");
  auto& grid = dynamic_cast<KvUiGrid&>(control.face());
  const std::vector<std::vector<const wchar_t*>> cells = {
      {L"HP", L"Volt"}, {L"150", L"460"}, {L"15", L"230"}, {L"15", L"460"}, {L"2", L"460"}};
  grid.SetSize(4, 2);
  for (int row = 0; row < 5; ++row)
    for (int column = 0; column < 2; ++column)
      grid.SetCell(row, column, cells[static_cast<std::size_t>(row)][static_cast<std::size_t>(column)]);
  open.dialog.refresh();
  const ControlView& view = *open.dialog.views().of(control);
  auto& table = dynamic_cast<QTableView&>(view.widget());
  const auto shown = [&] {
    QStringList rows;
    for (int row = 0; row < table.model()->rowCount(); ++row)
      rows.append(
          table.model()->index(row, 0).data().toString() + QLatin1Char('/') +
          table.model()->index(row, 1).data().toString());
    return rows.join(QLatin1Char(' ')).toStdString();
  };
  const auto header = [&](int column) {
    auto& head = *table.horizontalHeader();
    QTest::mouseClick(
        head.viewport(), Qt::LeftButton, {},
        QPoint(head.sectionViewportPosition(column) + head.sectionSize(column) / 2, head.height() / 2));
  };
  header(0);
  CHECK_EQ(shown(), "2/460 15/230 15/460 150/460"); // by their values
  header(0);
  CHECK_EQ(shown(), "150/460 15/230 15/460 2/460");
  CHECK_EQ(grid.SelectedRow(), 0);
  table.setCurrentIndex(table.model()->index(3, 0));
  CHECK_EQ(grid.SelectedRow(), 4);
  auto* search = qobject_cast<QLineEdit*>(view.searchField());
  REQUIRE(search != nullptr);
  search->setFocus(Qt::TabFocusReason);
  QTest::keyClicks(search, QStringLiteral("15 460"));
  CHECK_EQ(shown(), "150/460 15/460");
  CHECK_EQ(grid.SelectedRow(), 4); // nobody has chosen another one
  header(0);
  CHECK_EQ(shown(), "150/460 15/460"); // the third click: as the table has them
  QTest::keyClick(search, Qt::Key_Return);
  CHECK_EQ(grid.SelectedRow(), 1);
  CHECK(table.hasFocus());
  // What is edited is seen whole.
  grid.SetEditable(true, true);
  open.dialog.refresh();
  CHECK_EQ(table.model()->rowCount(), 5);
  CHECK(search->text().isEmpty());
}

TEST_CASE("Tab leaves a grid from a cell's editor too, and the row stays the one in hand") {
  simhost::test::startApplication();
  OpenForm open(simhost::loadForm("resources/forms", L"ZanDlgAnnotation"));
  auto& control = *open.dialog.find(L"presets");
  auto& grid = dynamic_cast<KvUiGrid&>(control.face());
  grid.SetSize(3, 2);
  grid.SetEditable(true, false);
  for (int row = 1; row <= 3; ++row)
    grid.SetCellKind(row, 1, KvUiCellKind::text);
  open.dialog.refresh();
  auto& table = dynamic_cast<QTableView&>(open.dialog.views().of(control)->widget());
  QWindow* const window = open.dialog.frame().windowHandle();
  int text = 0;
  for (const Qt::KeyboardModifiers back : {Qt::NoModifier, Qt::ShiftModifier}) {
    table.setFocus(Qt::TabFocusReason);
    table.setCurrentIndex(table.model()->index(1, 1));
    QTest::keyClick(window, Qt::Key_F2);
    QTest::keyClick(window, Qt::Key_A, Qt::ControlModifier);
    const QString typed = QString::number(++text);
    QTest::keyClick(window, typed[0].toLatin1());
    QTest::keyClick(window, back ? Qt::Key_Backtab : Qt::Key_Tab, back);
    QCoreApplication::processEvents();
    CHECK_EQ(toUtf8(grid.Cell(2, 1)), typed.toStdString());
    CHECK_EQ(grid.SelectedRow(), 2);
    const QWidget* const now = QApplication::focusWidget();
    REQUIRE(now != nullptr);
    CHECK_FALSE((now == &table || table.isAncestorOf(now)));
  }
}

TEST_CASE("a window opens with the bar where it was left, and with an arrow though its owner waits") {
  simhost::test::startApplication();
  struct Flow final : CKvUiDialog {
    using CKvUiDialog::CKvUiDialog;
    using CKvUiDialog::Split;
    bool OnInitDialog() override {
      SetSplit({240, 900, 640});
      return true;
    }
  } flow(L"ZanDlgCircuit", nullptr);
  simhost::QtWindows windows;
  windows.setFormFolder("resources/forms");
  simhost::setWindowSystem(&windows);
  windows.showWaitCursor(true);
  bool isBusyInside = true;
  QTimer::singleShot(50, [&] {
    isBusyInside = QGuiApplication::overrideCursor() != nullptr;
    CHECK(flow.Split().bar == doctest::Approx(240).epsilon(0.02));
    QApplication::activeModalWidget()->close();
  });
  CHECK_EQ(flow.DoModal(), kvui::cancel);
  CHECK_FALSE(isBusyInside);
  REQUIRE(QGuiApplication::overrideCursor() != nullptr);
  CHECK_EQ(QGuiApplication::overrideCursor()->shape(), Qt::WaitCursor);
  windows.showWaitCursor(false);
  CHECK(QGuiApplication::overrideCursor() == nullptr);
  simhost::setWindowSystem(nullptr);
}

TEST_CASE("an empty grid says why as long as it is empty") {
  simhost::test::startApplication();
  OpenForm open(simhost::loadForm("resources/forms", L"ZanDlgExistCircuits", "de"));
  auto& control = *open.dialog.find(L"existing");
  auto& grid = dynamic_cast<KvUiGrid&>(control.face());
  const auto* note = open.dialog.frame().findChild<QLabel*>(QStringLiteral("emptyNote"));
  REQUIRE(note != nullptr);
  for (const int rows : {0, 2, 0}) {
    grid.SetSize(rows, 3);
    open.dialog.refresh();
    CHECK_EQ(note->isVisible(), rows == 0);
  }
  CHECK(note->text().contains(QStringLiteral("Projekt")));
  CHECK(QRect(note->parentWidget()->rect()).contains(note->geometry()));
}

TEST_CASE("a slip in a layout is told with form and reason") {
  struct Row {
    const char* layout;
    const char* reason;
  };
  const Row rows[] = {
      {R"({"buttons": ["ok"]})", "needs \"content\""},
      {R"({"content": {"column": ["name"]}})", "has no place for \"ok\""},
      {R"({"content": {"column": ["name", "name"]}, "buttons": ["ok"]})", "has two places for \"name\""},
      {R"({"content": "size", "buttons": ["ok"]})", "names \"size\", which the form does not have"},
      {R"({"content": {"rows": ["name"]}, "buttons": ["ok"]})", "unknown kind of place"},
      {R"({"content": {"section": "A"}, "buttons": ["ok"]})", "a section without title or \"content\""},
      {R"({"content": {"row": ["name"], "streck": 1}, "buttons": ["ok"]})", "unknown member \"streck\""},
      {R"({"content": {"row": ["name"], "stretch": -1}, "buttons": ["ok"]})",
       "\"stretch\", which must be a number"},
      {R"({"content": "name", "buttons": ["ok"], "size": [1]})",
       "\"size\" must be a list of width and height"},
  };
  for (const Row& row : rows) {
    CAPTURE(row.layout);
    const Form form = simhost::parseForm(
        std::string(R"({"format": "brenvolt-form", "version": 1, "controls": [
          {"role": "name", "kind": "text"}, {"role": "ok", "kind": "button"}], "layout": )") +
            row.layout + "}",
        "Test", "Test.json");
    std::string reason;
    try {
      (void)simhost::readLayout(form);
    } catch (const simhost::FormError& error) {
      reason = error.what();
    }
    CHECK_MESSAGE(reason.find(row.reason) != std::string::npos, reason);
    CHECK_NE(reason.find("\"Test\""), std::string::npos);
  }
}
