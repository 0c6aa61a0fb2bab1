// Three lists to choose from.
#include "simhost/gui/page_setup.h"

#include <QComboBox>
#include <QDialog>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QStringList>

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
  return QLatin1String(row == std::end(sizes) ? "A3" : row->name) +
         (orientation == QPageLayout::Landscape ? QStringLiteral(" landscape ")
                                                : QStringLiteral(" portrait ")) +
         QString::number(unitsPerMillimetre);
}

PageSetup PageSetup::of(const QString& text) {
  PageSetup setup;
  const QStringList words = text.split(QLatin1Char(' '));
  for (const SizeRow& row : sizes)
    if (words.value(0) == QLatin1String(row.name)) setup.size = row.size;
  if (words.value(1) == QStringLiteral("portrait")) setup.orientation = QPageLayout::Portrait;
  setup.unitsPerMillimetre = std::max(words.value(2).toDouble(), 0.0);
  return setup;
}

std::optional<PageSetup> askPageSetup(const PageSetup& now, const HostTexts& texts, QWidget* parent) {
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
  auto* form = new QFormLayout(&window);
  form->addRow(texts(HostText::paperSize), size);
  form->addRow(texts(HostText::paperOrientation), orientation);
  form->addRow(texts(HostText::paperScale), scale);
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
  QObject::connect(buttons, &QDialogButtonBox::accepted, &window, &QDialog::accept);
  QObject::connect(buttons, &QDialogButtonBox::rejected, &window, &QDialog::reject);
  form->addRow(buttons);
  if (window.exec() != QDialog::Accepted) return std::nullopt;
  PageSetup chosen;
  chosen.size = sizes[size->currentIndex()].size;
  chosen.orientation = orientation->currentIndex() == 1 ? QPageLayout::Landscape : QPageLayout::Portrait;
  chosen.unitsPerMillimetre = scale->currentData().toDouble();
  return chosen;
}

} // namespace simhost
