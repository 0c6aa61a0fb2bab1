// The list, its filters, and the process that checks.
#include "simhost/gui/check_panel.h"

#include "simhost/qt/empty_note.h"

#include <QComboBox>
#include <QCoreApplication>
#include <QCryptographicHash>
#include <QDateTime>
#include <QDirIterator>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLabel>
#include <QProcess>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>

#include <algorithm>

namespace simhost {
namespace {

constexpr int numberRole = Qt::UserRole; ///< of the finding, in the first column
constexpr int cleanExit = 0;
constexpr int findingsExit = 5;

SiteFinding findingOf(const QJsonObject& json) {
  const auto text = [&json](const char* name) { return json.value(QLatin1String(name)).toString(); };
  SiteFinding finding{text("severity"), text("rule"), text("place"),
                      text("file"),     text("what"), text("remedy")};
  if (const QJsonArray point = json.value(QLatin1String("position")).toArray(); point.size() == 2)
    finding.position = QPointF(point.at(0).toDouble(), point.at(1).toDouble());
  return finding;
}

} // namespace

QString siteFingerprint(const QString& folder) {
  QStringList lines;
  for (QDirIterator files(folder, QDir::Files, QDirIterator::Subdirectories); files.hasNext();) {
    files.next();
    const QFileInfo file = files.fileInfo();
    // Made from the tables, or written by those who draw.
    const bool isOfUse = file.fileName().startsWith(QStringLiteral("engineering.db")) ||
                         file.fileName().startsWith(QStringLiteral("zan_brenvolt.xml"));
    if (!isOfUse)
      lines.append(
          file.filePath() + QLatin1Char('\n') + QString::number(file.size()) + QLatin1Char('\n') +
          QString::number(file.lastModified().toMSecsSinceEpoch()));
  }
  lines.sort();
  const QByteArray all = lines.join(QLatin1Char('\n')).toUtf8();
  return QString::fromLatin1(QCryptographicHash::hash(all, QCryptographicHash::Sha1).toHex());
}

CheckPanel::CheckPanel(const HostTexts& texts, QString siteFolder, QString language, QWidget* parent)
    : QWidget(parent), texts_(texts), siteFolder_(std::move(siteFolder)), language_(std::move(language)),
      run_(new QPushButton(this)), severity_(new QComboBox(this)), rule_(new QComboBox(this)),
      state_(new QLabel(this)), table_(new QTreeWidget(this)), process_(new QProcess(this)) {
  setObjectName(QStringLiteral("check"));
  run_->setObjectName(QStringLiteral("runCheck"));
  run_->setText(texts_(HostText::checkRun));
  run_->setAccessibleName(texts_(HostText::checkRun));
  run_->setEnabled(!siteFolder_.isEmpty());
  severity_->setObjectName(QStringLiteral("checkSeverity"));
  severity_->setAccessibleName(texts_(HostText::checkSeverity));
  severity_->addItem(texts_(HostText::checkAll));
  for (const char* severity : {"error", "warning", "note"})
    severity_->addItem(severityText(QLatin1String(severity)), QLatin1String(severity));
  rule_->setObjectName(QStringLiteral("checkRule"));
  rule_->setAccessibleName(texts_(HostText::checkRule));
  rule_->setSizeAdjustPolicy(QComboBox::AdjustToContents);
  state_->setObjectName(QStringLiteral("checkState"));
  state_->setTextInteractionFlags(Qt::TextSelectableByMouse);
  table_->setObjectName(QStringLiteral("checkTable"));
  table_->setAccessibleName(texts_(HostText::checkTitle));
  table_->setRootIsDecorated(false);
  table_->setAllColumnsShowFocus(true);
  table_->setTabKeyNavigation(false);
  table_->setHeaderLabels(
      {texts_(HostText::checkSeverity), texts_(HostText::checkPlace), texts_(HostText::checkWhat),
       texts_(HostText::checkRemedy), texts_(HostText::checkRule)});
  showWhenEmpty(*table_, texts_(HostText::checkEmpty));
  auto* line = new QHBoxLayout;
  for (QWidget* widget :
       {static_cast<QWidget*>(run_), static_cast<QWidget*>(severity_), static_cast<QWidget*>(rule_)})
    line->addWidget(widget);
  line->addWidget(state_, 1);
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->addLayout(line);
  column->addWidget(table_, 1);
  fillRules();
  connect(run_, &QPushButton::clicked, this, [this] { start(); });
  connect(severity_, &QComboBox::currentIndexChanged, this, [this] { fill(); });
  connect(rule_, &QComboBox::currentIndexChanged, this, [this] { fill(); });
  connect(table_, &QTreeWidget::itemActivated, this, [this] { openCurrent(); });
  connect(process_, &QProcess::finished, this, [this](int exitCode, QProcess::ExitStatus status) {
    finish(status == QProcess::NormalExit ? exitCode : -1);
  });
  connect(process_, &QProcess::errorOccurred, this, [this](QProcess::ProcessError error) {
    if (error == QProcess::FailedToStart) finish(-1);
  });
}

CheckPanel::~CheckPanel() {
  process_->disconnect(this);
  process_->kill();
  process_->waitForFinished();
}

bool CheckPanel::isRunning() const {
  return process_->state() != QProcess::NotRunning;
}

void CheckPanel::start() {
  if (siteFolder_.isEmpty()) return;
  if (isRunning()) {
    isStopped_ = true;
    process_->kill();
    return;
  }
  isStopped_ = false;
  run_->setText(texts_(HostText::checkStop));
  state_->setText(texts_(HostText::checkRunning));
  process_->start(
      QCoreApplication::applicationDirPath() + QStringLiteral("/brenvolt"),
      {QStringLiteral("check"), siteFolder_, QStringLiteral("--json"), QStringLiteral("--language"),
       language_});
}

void CheckPanel::finish(int exitCode) {
  run_->setText(texts_(HostText::checkRun));
  if (isStopped_) return state_->setText(texts_(HostText::cancelled));
  const bool isDone =
      (exitCode == cleanExit || exitCode == findingsExit) && showFindings(process_->readAllStandardOutput());
  if (!isDone) {
    const QString reason = QString::fromUtf8(process_->readAllStandardError()).trimmed();
    return state_->setText(texts_(HostText::notDone, {reason.isEmpty() ? process_->errorString() : reason}));
  }
  if (onDone) onDone(findings_.empty());
}

bool CheckPanel::showFindings(const QByteArray& json) {
  const QJsonDocument document = QJsonDocument::fromJson(json);
  if (!document.object().value(QLatin1String("findings")).isArray()) return false;
  json_ = json;
  findings_.clear();
  for (const QJsonValue& value : document.object().value(QLatin1String("findings")).toArray())
    findings_.push_back(findingOf(value.toObject()));
  fillRules();
  fill();
  state_->setText(
      findings_.empty() ? texts_(HostText::checkClean)
                        : texts_(HostText::checkCount, {QString::number(findings_.size())}));
  return true;
}

/// The rules that have findings; the chosen one stays chosen while it has some.
void CheckPanel::fillRules() {
  const QSignalBlocker blocker(rule_);
  const QString chosen = rule_->currentData().toString();
  rule_->clear();
  rule_->addItem(texts_(HostText::checkAllRules));
  QStringList rules;
  for (const SiteFinding& finding : findings_)
    if (!rules.contains(finding.rule)) rules.append(finding.rule);
  rules.sort();
  for (const QString& rule : rules)
    rule_->addItem(rule, rule);
  rule_->setCurrentIndex(std::max(rule_->findData(chosen), 0));
}

void CheckPanel::fill() {
  table_->clear();
  const QString severity = severity_->currentData().toString();
  const QString rule = rule_->currentData().toString();
  for (std::size_t i = 0; i < findings_.size(); ++i) {
    const SiteFinding& finding = findings_[i];
    const bool isWanted =
        (severity.isEmpty() || severity == finding.severity) && (rule.isEmpty() || rule == finding.rule);
    if (!isWanted) continue;
    const QStringList cells = {
        severityText(finding.severity), finding.place, finding.what, finding.remedy, finding.rule};
    auto* item = new QTreeWidgetItem(table_, cells);
    item->setData(0, numberRole, static_cast<qulonglong>(i));
    for (int column = 0; column < cells.size(); ++column)
      item->setToolTip(column, cells[column]);
  }
  constexpr int widest = 420;
  for (int column = 0; column < table_->columnCount(); ++column) {
    table_->resizeColumnToContents(column);
    table_->setColumnWidth(column, std::min(table_->columnWidth(column), widest));
  }
}

std::vector<SiteFinding> CheckPanel::shown() const {
  std::vector<SiteFinding> rows;
  for (int row = 0; row < table_->topLevelItemCount(); ++row)
    rows.push_back(findings_[table_->topLevelItem(row)->data(0, numberRole).toULongLong()]);
  return rows;
}

void CheckPanel::openCurrent() {
  if (const QTreeWidgetItem* item = table_->currentItem(); item != nullptr && onOpen)
    onOpen(findings_[item->data(0, numberRole).toULongLong()]);
}

QString CheckPanel::severityText(const QString& severity) const {
  if (severity == QStringLiteral("error")) return texts_(HostText::checkError);
  if (severity == QStringLiteral("warning")) return texts_(HostText::checkWarning);
  return texts_(HostText::checkNote);
}

} // namespace simhost
