#include "simhost/gui/site_circuits.h"

#include "simhost/drawing/provenance.h"
#include "simhost/gui/check_panel.h"
#include "simhost/gui/configuration_table.h"
#include "simhost/host/session.h"
#include "simhost/qt/qt_text.h"
#include "simhost/qt/qt_windows.h"
#include "simhost/site/site_run.h"
#include "text/compare.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QFileInfo>

#include <cwctype>
#include <exception>
#include <map>
#include <set>
#include <utility>

namespace simhost {
namespace {

constexpr int delayMilliseconds = 120;
constexpr qint64 fingerprintMilliseconds = 2000;
/// Beside "done": drawn, with wires that could not be sized, as a circuit without a motor has them.
constexpr int findingsExit = 5;

QString stateOf(const QString& file) {
  const QFileInfo info(file);
  return file + QLatin1Char('\n') + QString::number(info.size()) + QLatin1Char('\n') +
         QString::number(info.lastModified().toMSecsSinceEpoch());
}

const brenvolt::SavedConfiguration* typeOf(const SiteConfigurations& site, const OfferedCircuit& circuit) {
  for (const brenvolt::SavedConfiguration& type : site.types)
    if (brenvolt::equalsOrdinalNoCase(type.key.circuit, circuit.circuit) &&
        brenvolt::equalsOrdinalNoCase(type.key.type, circuit.type))
      return &type;
  return nullptr;
}

/// Tag, rating and part; empty for what has neither rating nor part.
QString componentLine(const EntityFacts& facts) {
  const auto text = [&facts](std::wstring_view tag) { return toQt(facts.attribute(tag)); };
  const QString part = (text(L"MFG") + QLatin1Char(' ') + text(L"CAT")).trimmed();
  if (text(L"RATING1").isEmpty() && part.isEmpty()) return {};
  QStringList words = {text(L"TAG1"), text(L"RATING1"), part};
  words.removeAll(QString());
  return words.join(QStringLiteral("   "));
}

} // namespace

SiteCircuits::SiteCircuits(SiteRun& site, QtWindows& windows, UnitMarkers& units, const HostTexts& texts)
    : site_(site), windows_(windows), units_(units), texts_(texts) {
  delay_.setSingleShot(true);
  delay_.setInterval(delayMilliseconds);
  connect(&delay_, &QTimer::timeout, this, [this] { start(); });
  connect(&process_, &QProcess::finished, this, [this](int exitCode, QProcess::ExitStatus status) {
    finish(status == QProcess::NormalExit && (exitCode == 0 || exitCode == findingsExit));
  });
  connect(&process_, &QProcess::errorOccurred, this, [this](QProcess::ProcessError error) {
    if (error == QProcess::FailedToStart) finish(false);
  });
}

SiteCircuits::~SiteCircuits() {
  process_.disconnect(this);
  process_.kill();
  process_.waitForFinished();
}

QString SiteCircuits::siteFolder() const {
  return QString::fromStdString(site_.session().options().siteFolder.string());
}

QString SiteCircuits::keyOf(const OfferedCircuit& circuit) {
  QString key = toQt(circuit.circuit + L'\n' + circuit.type + L'\n' + circuit.configuration);
  // Whoever goes through a list looks at the site's files once.
  if (fingerprint_.isEmpty() || !fingerprintAge_.isValid() ||
      fingerprintAge_.hasExpired(fingerprintMilliseconds)) {
    fingerprint_ = siteFingerprint(siteFolder());
    fingerprintAge_.start();
  }
  return key + QLatin1Char('\n') + fingerprint_ + stateOf(siteFolder() + QStringLiteral("/zan_brenvolt.xml"));
}

CircuitFacts::Picture SiteCircuits::picture(const OfferedCircuit& circuit, std::function<void()> ready) {
  const Picture making{Picture::State::making, {}, texts_(HostText::previewMaking)};
  const QString key = keyOf(circuit);
  if (const auto known = made_.constFind(key); known != made_.constEnd()) {
    forgetPicture();
    return *known;
  }
  ready_ = std::move(ready);
  if (key == wantedKey_) return making;
  wantedKey_ = key;
  wanted_ = circuit;
  delay_.start();
  return making;
}

void SiteCircuits::forgetPicture() {
  ready_ = nullptr;
  wantedKey_.clear();
  delay_.stop();
}

void SiteCircuits::start() {
  if (process_.state() != QProcess::NotRunning) {
    // Its end is answered by the start of the one that is wanted now.
    process_.kill();
    return;
  }
  const QString file = folder_.filePath(QString::number(made_.size()) + QStringLiteral(".json"));
  process_.setProperty("key", wantedKey_);
  process_.setProperty("file", file);
  QStringList arguments = {QStringLiteral("draw"),      QStringLiteral("--site"), siteFolder(),
                           QStringLiteral("--circuit"), toQt(wanted_.circuit),    QStringLiteral("--type"),
                           toQt(wanted_.type),          QStringLiteral("--out"),  file};
  if (!wanted_.configuration.empty()) arguments << QStringLiteral("--history") << toQt(wanted_.configuration);
  process_.start(QCoreApplication::applicationDirPath() + QStringLiteral("/brenvolt"), arguments);
}

void SiteCircuits::finish(bool isDone) {
  const QString key = process_.property("key").toString();
  if (key != wantedKey_) {
    if (!wantedKey_.isEmpty()) start();
    return;
  }
  Picture picture;
  if (isDone) {
    picture = {Picture::State::made, fromQt(process_.property("file").toString()), {}};
  } else {
    const QString reason = QString::fromUtf8(process_.readAllStandardError()).trimmed();
    picture.note = texts_(HostText::previewFailed, {reason.isEmpty() ? process_.errorString() : reason});
  }
  made_.insert(key, picture);
  wantedKey_.clear();
  if (const std::function<void()> ready = std::exchange(ready_, nullptr)) ready();
}

const SiteConfigurations* SiteCircuits::saved() {
  const QString key = stateOf(siteFolder() + QStringLiteral("/zan_brenvolt.xml")) + QLatin1Char('\n') +
                      stateOf(siteFolder() + QStringLiteral("/zan_brenvolt.xls"));
  if (key == savedKey_) return saved_ ? &*saved_ : nullptr;
  savedKey_ = key;
  saved_.reset();
  try {
    saved_ = savedConfigurations(siteFolder().toStdString());
  } catch (const std::exception&) {
    // The dialog itself reports a workbook or a history file that cannot be read.
  }
  return saved_ ? &*saved_ : nullptr;
}

const circuits::SheetTitles& SiteCircuits::titlesOf(const OfferedCircuit& circuit) {
  const QString key = toQt(circuit.circuit + L'\n' + circuit.type + L'\n') +
                      stateOf(siteFolder() + QStringLiteral("/zan_brenvolt.xls"));
  if (key == titlesKey_) return titles_;
  titlesKey_ = key;
  const SiteConfigurations* site = saved();
  const auto* type = site == nullptr ? nullptr : typeOf(*site, circuit);
  titles_ =
      type == nullptr ? circuits::SheetTitles() : circuits::readSheetTitles(site->workbook, type->worksheet);
  return titles_;
}

QStringList SiteCircuits::onlyWith(const OfferedCircuit& circuit, const QString& unit, const QString& group) {
  const circuits::SheetTitles& titles = titlesOf(circuit);
  QStringList options;
  if (const auto found = titles.onlyWith.find({fromQt(unit), fromQt(group)}); found != titles.onlyWith.end())
    for (const std::wstring& option : found->second)
      options.append(toQt(option));
  return options;
}

QString SiteCircuits::phase() {
  if (windows_.dialogs().topForm() != QStringLiteral("ZanDlgConfig")) return {};
  const DrawingDatabase& drawing = site_.session().documents().current()->drawing();
  std::map<std::wstring, std::set<std::wstring>> wires; // by what follows the number: "-A" of motor A
  for (const std::wstring& code : markerCodes(drawing))
    if (code.size() >= 4 && code.starts_with(L"WT") && std::iswdigit(static_cast<wint_t>(code[3])) != 0)
      if (code.size() == 4 || code[4] != L'E') wires[code.substr(4)].insert(code.substr(0, 4));
  std::set<std::size_t> counts;
  for (const auto& [suffix, numbers] : wires)
    counts.insert(numbers.size());
  if (counts == std::set<std::size_t>{3}) return QStringLiteral("3");
  return counts == std::set<std::size_t>{2} ? QStringLiteral("1") : QString();
}

std::vector<EntityFacts> SiteCircuits::drawnComponents() {
  const std::set<std::wstring> codes = units_.currentCodes();
  const std::wstring circuit = site_.session().circuits().current();
  if (codes.empty() || circuit.empty()) return {};
  const DrawingDatabase& drawing = site_.session().documents().current()->drawing();
  std::vector<EntityFacts> components;
  for (const EntityNode* node = drawing.store().findBlock(drawing.currentSpace())->first; node != nullptr;
       node = node->next) {
    const auto origin = provenanceOf(node->value);
    if (!origin || origin->circuit != circuit || !codes.contains(brenvolt::toUpper(origin->code))) continue;
    if (std::optional<EntityFacts> facts = factsOf(drawing, node->handle))
      components.push_back(std::move(*facts));
  }
  return components;
}

QString SiteCircuits::drawnByUnit() {
  QStringList lines;
  for (const EntityFacts& facts : drawnComponents())
    if (QString line = componentLine(facts); !line.isEmpty()) lines.append(std::move(line));
  if (lines.isEmpty()) return {};
  lines.prepend(texts_(HostText::drawnByUnit));
  return lines.join(QLatin1Char('\n'));
}

QStringList SiteCircuits::drawnInGroup(const OfferedCircuit& circuit, const QString& group) {
  // The rows of every group of parts; count and kind are no attributes of a component.
  static constexpr const wchar_t* rows[] = {L"MFG",     L"CAT",     L"ASSYCODE", L"",
                                            L"",        L"RATING1", L"RATING2",  L"RATING3",
                                            L"RATING4", L"RATING5", L"RATING6"};
  const auto& tables = titlesOf(circuit).partTables;
  std::set<std::wstring> families;
  for (const std::wstring& code : units_.currentCodes())
    if (const auto found = tables.find({code, fromQt(group)}); found != tables.end())
      families.insert(found->second.begin(), found->second.end());
  if (families.empty()) return {};
  QStringList texts;
  for (const EntityFacts& facts : drawnComponents()) {
    if (!families.contains(brenvolt::toUpper(facts.attribute(L"FAMILY")))) continue;
    for (const wchar_t* row : rows)
      texts.append(toQt(facts.attribute(row)));
    break;
  }
  return texts;
}

QStringList SiteCircuits::configurations(const OfferedCircuit& circuit) {
  QStringList names;
  if (const SiteConfigurations* site = saved())
    for (const brenvolt::SavedConfiguration& row : site->saved)
      if (brenvolt::equalsOrdinalNoCase(row.key.circuit, circuit.circuit) &&
          brenvolt::equalsOrdinalNoCase(row.key.type, circuit.type))
        names.append(toQt(row.key.name));
  return names;
}

QString SiteCircuits::chooseConfiguration(const OfferedCircuit& circuit, QWidget* parent) {
  const SiteConfigurations* site = saved();
  if (site == nullptr) return {};
  std::vector<std::size_t> rows;
  for (std::size_t place = 0; place < site->saved.size(); ++place)
    if (const brenvolt::HistoryKey& key = site->saved[place].key;
        brenvolt::equalsOrdinalNoCase(key.circuit, circuit.circuit) &&
        brenvolt::equalsOrdinalNoCase(key.type, circuit.type))
      rows.push_back(place);
  const std::optional<std::size_t> chosen = simhost::chooseConfiguration(parent, texts_, *site, rows);
  return chosen ? toQt(site->saved[*chosen].key.name) : QString();
}

} // namespace simhost
