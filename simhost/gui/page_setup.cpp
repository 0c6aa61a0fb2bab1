// Lists to choose from, and the texts of the title block.
#include "simhost/gui/page_setup.h"

#include <QComboBox>
#include <QDialog>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QVBoxLayout>

#include <algorithm>
#include <iterator>

namespace simhost {
namespace {

constexpr double marginMillimetres = 10.0;

struct SizeRow {
  QPageSize::PageSizeId size;
  const char* name;
};
constexpr SizeRow sizes[] = {{QPageSize::A4, "A4"},          {QPageSize::A3, "A3"},
                             {QPageSize::A2, "A2"},          {QPageSize::A1, "A1"},
                             {QPageSize::A0, "A0"},          {QPageSize::Letter, "Letter"},
                             {QPageSize::Tabloid, "Tabloid"}};

constexpr double scales[] = {0.0, 1.0, 2.0, 2.5, 5.0, 10.0};

} // namespace

QPageLayout PageSetup::layout() const {
  return {
      QPageSize(size), orientation,
      QMarginsF(marginMillimetres, marginMillimetres, marginMillimetres, marginMillimetres),
      QPageLayout::Millimeter};
}

QString PageSetup::text() const {
  const auto* row = std::find_if(
      std::begin(sizes), std::end(sizes), [this](const SizeRow& each) { return each.size == size; });
  const QString paper =
      QLatin1String(row == std::end(sizes) ? "A3" : row->name) +
      (orientation == QPageLayout::Landscape ? QStringLiteral(" landscape ") : QStringLiteral(" portrait ")) +
      QString::number(unitsPerMillimetre);
  return QStringList({paper, frame, project, drawnBy, revision, date}).join(QLatin1Char('\n'));
}

PageSetup PageSetup::of(const QString& text) {
  PageSetup setup;
  const QStringList lines = text.split(QLatin1Char('\n'));
  const QStringList words = lines.value(0).split(QLatin1Char(' '));
  for (const SizeRow& row : sizes)
    if (words.value(0) == QLatin1String(row.name)) setup.size = row.size;
  if (words.value(1) == QStringLiteral("portrait")) setup.orientation = QPageLayout::Portrait;
  setup.unitsPerMillimetre = std::max(words.value(2).toDouble(), 0.0);
  setup.frame = lines.value(1);
  setup.project = lines.value(2);
  setup.drawnBy = lines.value(3);
  setup.revision = lines.value(4);
  setup.date = lines.value(5);
  return setup;
}

std::optional<PageSetup> askPageSetup(
    const PageSetup& now, const QStringList& frames, PageTitle& title, const HostTexts& texts,
    QWidget* parent) {
  QDialog window(parent);
  window.setObjectName(QStringLiteral("pageSetup"));
  window.setWindowTitle(texts(HostText::pageSetupTitle));
  auto* size = new QComboBox;
  for (const SizeRow& row : sizes) {
    size->addItem(QLatin1String(row.name));
    if (row.size == now.size) size->setCurrentIndex(size->count() - 1);
  }
  auto* orientation = new QComboBox;
  orientation->addItems({texts(HostText::portrait), texts(HostText::landscape)});
  orientation->setCurrentIndex(now.orientation == QPageLayout::Landscape ? 1 : 0);
  auto* scale = new QComboBox;
  for (const double each : scales) {
    scale->addItem(
        each == 0.0 ? texts(HostText::fitPage) : QStringLiteral("1 : ") + QString::number(each), each);
    if (each == now.unitsPerMillimetre) scale->setCurrentIndex(scale->count() - 1);
  }
  auto* frame = new QComboBox;
  frame->setObjectName(QStringLiteral("frame"));
  frame->addItem(texts(HostText::pageNoFrame), QString());
  for (const QString& name : frames)
    frame->addItem(name, name);
  if (const int known = frame->findData(now.frame); known >= 0) frame->setCurrentIndex(known);
  auto* column = new QVBoxLayout(&window);
  if (title.hasFrame) {
    auto* note = new QLabel(texts(HostText::pageOwnFrame));
    note->setWordWrap(true);
    column->addWidget(note);
  }
  auto* form = new QFormLayout;
  form->addRow(texts(HostText::pageFrame), frame);
  form->addRow(texts(HostText::paperSize), size);
  form->addRow(texts(HostText::paperOrientation), orientation);
  form->addRow(texts(HostText::paperScale), scale);
  column->addLayout(form);
  auto* box = new QGroupBox(texts(HostText::pageTitleBlock));
  auto* block = new QFormLayout(box);
  const auto addField = [&](const char* name, HostText label, const QString& text) {
    auto* field = new QLineEdit(text);
    field->setObjectName(QLatin1String(name));
    constexpr int letters = 28;
    field->setMinimumWidth(letters * field->fontMetrics().averageCharWidth());
    block->addRow(texts(label), field);
    return field;
  };
  QLineEdit* project = addField("project", HostText::pageProject, now.project);
  QLineEdit* name = addField("title", HostText::pageName, title.title);
  QLineEdit* drawnBy = addField("drawnBy", HostText::pageDrawnBy, now.drawnBy);
  QLineEdit* revision = addField("revision", HostText::pageRevision, now.revision);
  QLineEdit* date = addField("date", HostText::pageDate, now.date);
  date->setPlaceholderText(texts(HostText::pageToday));
  column->addWidget(box);
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
  QObject::connect(buttons, &QDialogButtonBox::accepted, &window, &QDialog::accept);
  QObject::connect(buttons, &QDialogButtonBox::rejected, &window, &QDialog::reject);
  column->addWidget(buttons);
  const auto showState = [&] {
    const bool hasOwn = title.hasFrame;
    const bool isFramed = !frame->currentData().toString().isEmpty();
    frame->setEnabled(!hasOwn);
    scale->setEnabled(!hasOwn);
    size->setEnabled(!hasOwn && !isFramed);
    orientation->setEnabled(!hasOwn && !isFramed);
    box->setEnabled(!hasOwn);
  };
  QObject::connect(frame, &QComboBox::currentIndexChanged, &window, showState);
  showState();
  if (window.exec() != QDialog::Accepted) return std::nullopt;
  PageSetup chosen;
  chosen.size = sizes[size->currentIndex()].size;
  chosen.orientation = orientation->currentIndex() == 1 ? QPageLayout::Landscape : QPageLayout::Portrait;
  chosen.unitsPerMillimetre = scale->currentData().toDouble();
  chosen.frame = frame->currentData().toString();
  chosen.project = project->text().trimmed();
  chosen.drawnBy = drawnBy->text().trimmed();
  chosen.revision = revision->text().trimmed();
  chosen.date = date->text().trimmed();
  title.title = name->text().trimmed();
  return chosen;
}

} // namespace simhost
