// Tables as a page of text.
#include "simhost/gui/report_window.h"

#include "simhost/qt/qt_text.h"

#include <QDialog>
#include <QDialogButtonBox>
#include <QTextBrowser>
#include <QVBoxLayout>

#include <array>
#include <string_view>

namespace simhost {
namespace {

struct ColumnText {
  std::string_view key;
  HostText text;
};
constexpr std::array columnTexts = {
    ColumnText{"tag", HostText::reportTag},
    ColumnText{"circuit", HostText::reportCircuit},
    ColumnText{"type", HostText::reportType},
    ColumnText{"load", HostText::reportLoad},
    ColumnText{"units", HostText::reportUnits},
    ColumnText{"voltage", HostText::reportVoltage},
    ColumnText{"phase", HostText::reportPhase},
    ColumnText{"frequency", HostText::reportFrequency},
    ColumnText{"speed", HostText::reportSpeed},
    ColumnText{"current", HostText::reportCurrent},
    ColumnText{"wires", HostText::reportWires},
    ColumnText{"length", HostText::reportLength},
    ColumnText{"drop", HostText::reportDrop},
    ColumnText{"protection", HostText::reportProtection},
    ColumnText{"sheet", HostText::reportSheet},
    ColumnText{"quantity", HostText::reportQuantity},
    ColumnText{"family", HostText::reportFamily},
    ColumnText{"maker", HostText::reportMaker},
    ColumnText{"catalogue", HostText::reportCatalogue},
    ColumnText{"assembly", HostText::reportAssembly},
    ColumnText{"rating", HostText::reportRating},
    ColumnText{"tags", HostText::reportTags},
};

QString tableOf(const HostTexts& texts, const ShownList& shown) {
  const circuits::Report& list = shown.list;
  QString page = QStringLiteral("<h3>%1</h3><table border='1' cellspacing='0' cellpadding='4'><tr>")
                     .arg(texts(shown.title).toHtmlEscaped());
  for (const circuits::ReportColumn& column : list.columns)
    page += QStringLiteral("<th>%1</th>").arg(columnTitle(texts, column).toHtmlEscaped());
  page += QStringLiteral("</tr>");
  for (const auto& row : list.rows) {
    page += QStringLiteral("<tr>");
    for (const auto& cell : row)
      page += QStringLiteral("<td>%1</td>").arg(toQt(cell.value_or(std::wstring())).toHtmlEscaped());
    page += QStringLiteral("</tr>");
  }
  page += QStringLiteral("</table>");
  for (const circuits::ReportNote& note : list.notes)
    page += QStringLiteral("<p>%1</p>").arg(texts(shown.note, {QString::number(note.count)}).toHtmlEscaped());
  return page;
}

} // namespace

QString columnTitle(const HostTexts& texts, const circuits::ReportColumn& column) {
  for (const ColumnText& row : columnTexts)
    if (row.key == column.key) return texts(row.text);
  return toQt(column.title);
}

void showReport(
    const HostTexts& texts, const QString& title, const std::vector<ShownList>& lists, QWidget* parent) {
  QDialog window(parent);
  window.setObjectName(QStringLiteral("report"));
  window.setWindowTitle(title);
  auto* text = new QTextBrowser;
  QString page;
  for (const ShownList& shown : lists)
    if (!shown.list.rows.empty()) page += tableOf(texts, shown);
  text->setHtml(page);
  text->setAccessibleName(title);
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close);
  QObject::connect(buttons, &QDialogButtonBox::rejected, &window, &QDialog::reject);
  auto* column = new QVBoxLayout(&window);
  column->addWidget(text);
  column->addWidget(buttons);
  window.resize(900, 420);
  window.exec();
}

} // namespace simhost
