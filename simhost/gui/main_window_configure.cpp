// The main window's commands on the choices of a placed circuit: opened in the configuration dialog, or saved.
#include "circuits/building/circuit_configure.h"
#include "simhost/gui/main_window.h"
#include "simhost/host/session.h"
#include "simhost/qt/qt_text.h"
#include "simhost/site/saved_configurations.h"
#include "simhost/site/site_run.h"
#include "text/compare.h"
#include "text/encoding.h"

#include <QCheckBox>
#include <QInputDialog>
#include <QMessageBox>
#include <QPushButton>

#include <algorithm>

namespace simhost {
namespace {

using circuits::CircuitObject;

enum class Consent { refused, given, givenForGood };

Consent askToBuildAgain(QWidget* parent, const HostTexts& texts, const QString& circuit) {
  QMessageBox box(
      QMessageBox::Warning, texts(HostText::rebuildTitle), texts(HostText::rebuildQuestion, {circuit}),
      QMessageBox::NoButton, parent);
  box.setTextFormat(Qt::PlainText);
  const QAbstractButton* builds = box.addButton(texts(HostText::rebuild), QMessageBox::AcceptRole);
  box.setDefaultButton(box.addButton(texts(HostText::keepEditing), QMessageBox::RejectRole));
  box.setCheckBox(new QCheckBox(texts(HostText::hideForGood)));
  box.exec();
  if (box.clickedButton() != builds) return Consent::refused;
  return box.checkBox()->isChecked() ? Consent::givenForGood : Consent::given;
}

/// In a scope, OK of the configuration dialog inserts what waits.
class InsertingOk final {
public:
  explicit InsertingOk(QtWindows& windows) : windows_(windows) { windows_.setInsertsBeforeOk(true); }
  InsertingOk(const InsertingOk&) = delete;
  InsertingOk& operator=(const InsertingOk&) = delete;
  ~InsertingOk() { windows_.setInsertsBeforeOk(false); }

private:
  QtWindows& windows_;
};

bool isTaken(const SiteConfigurations& site, const CircuitObject& circuit, const std::wstring& name) {
  const auto field = [&circuit](std::wstring_view key) { return circuitField(circuit.fields, key); };
  return std::any_of(site.saved.begin(), site.saved.end(), [&](const brenvolt::SavedConfiguration& row) {
    return brenvolt::equalsOrdinalNoCase(row.key.circuit, field(L"circuit")) &&
           brenvolt::equalsOrdinalNoCase(row.key.type, field(L"type")) &&
           brenvolt::equalsOrdinalNoCase(row.key.name, name);
  });
}

} // namespace

void MainWindow::configureCircuit() {
  onCircuit(
      HostText::configureCircuit,
      [this](const auto&, const CircuitObject& circuit) -> std::optional<QString> {
        const QString name = toQt(circuit.name());
        if (circuit.fields.empty()) return texts_(HostText::circuitHasNoRecord, {name});
        const SiteConfigurations* site = siteConfigurations();
        constexpr const wchar_t* known = L"rebuildIsKnown";
        if (site == nullptr) return std::nullopt;
        if (setting(known) != QStringLiteral("1")) {
          const Consent consent = askToBuildAgain(this, texts_, name);
          if (consent == Consent::refused) return std::nullopt;
          if (consent == Consent::givenForGood) setSetting(known, QStringLiteral("1"));
        }
        const InsertingOk inserting(windows_);
        const circuits::ConfigureResult result = circuits::configureCircuit(
            site_,
            {site_.session().options().siteFolder.string(), brenvolt::toUtf8(site->workbook), circuit.id});
        if (!result.isBuilt) return std::nullopt;
        if (!result.notSaved.empty())
          return texts_(HostText::configurationNotSaved, {name, QString::fromUtf8(result.notSaved.c_str())});
        return texts_(HostText::circuitRebuilt, {name});
      });
}

void MainWindow::saveConfiguration() {
  onCircuit(
      HostText::saveConfiguration,
      [this](const auto&, const CircuitObject& circuit) -> std::optional<QString> {
        if (circuit.fields.empty()) return texts_(HostText::circuitHasNoRecord, {toQt(circuit.name())});
        const SiteConfigurations* site = siteConfigurations();
        if (site == nullptr) return std::nullopt;
        bool isNamed = false;
        const QString name =
            QInputDialog::getText(
                this, texts_(HostText::configurationTitle), texts_(HostText::configurationName),
                QLineEdit::Normal, toQt(circuit.name()), &isNamed)
                .trimmed();
        if (!isNamed || name.isEmpty()) return std::nullopt;
        if (isTaken(*site, circuit, fromQt(name)) &&
            ask(HostText::configurationTitle, texts_(HostText::configurationExists, {name}),
                {HostText::keepEditing, HostText::configurationReplace}) != 1)
          return std::nullopt;
        circuits::saveConfiguration(
            site_,
            {site_.session().options().siteFolder.string(), brenvolt::toUtf8(site->workbook), circuit.id},
            fromQt(name));
        return texts_(HostText::configurationSaved, {name});
      });
}

} // namespace simhost
