// Tables as a page of text.
#include "simhost/gui/report_window.h"

#include "simhost/qt/qt_text.h"

#include <QDialog>
#include <QDialogButtonBox>
#include <QTextBrowser>
#include <QVBoxLayout>

namespace simhost {
namespace {

QString tableOf(const circuits::Report& list) {
  QString page = QStringLiteral("<h3>%1</h3><table border='1' cellspacing='0' cellpadding='4'><tr>")
                     .arg(toQt(list.title).toHtmlEscaped());
  for (const circuits::ReportColumn& column : list.columns)
    page += QStringLiteral("<th>%1</th>").arg(toQt(column.title).toHtmlEscaped());
  page += QStringLiteral("</tr>");
  for (const auto& row : list.rows) {
    page += QStringLiteral("<tr>");
    for (const auto& cell : row)
      page += QStringLiteral("<td>%1</td>").arg(toQt(cell.value_or(std::wstring())).toHtmlEscaped());
    page += QStringLiteral("</tr>");
  }
  page += QStringLiteral("</table>");
  for (const std::wstring& note : list.notes)
    page += QStringLiteral("<p>%1</p>").arg(toQt(note).toHtmlEscaped());
  return page;
}

} // namespace

void showReport(const QString& title, const std::vector<circuits::Report>& lists, QWidget* parent) {
  QDialog window(parent);
  window.setObjectName(QStringLiteral("report"));
  window.setWindowTitle(title);
  auto* text = new QTextBrowser;
  QString page;
  for (const circuits::Report& list : lists)
    if (!list.rows.empty()) page += tableOf(list);
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
