// The commands on the choices of a placed circuit: opened in the configuration dialog, or saved.
#include "circuits/building/circuit_configure.h"
#include "simhost/drawing/circuit_seal.h"
#include "simhost/gui/circuit_commands.h"
#include "simhost/gui/circuit_rows.h"
#include "simhost/qt/qt_text.h"
#include "simhost/qt/qt_windows.h"
#include "text/compare.h"

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
  explicit InsertingOk(QtWindows& windows) : windows_(windows) {
    windows_.dialogs().setInsertsBeforeOk(true);
  }
  InsertingOk(const InsertingOk&) = delete;
  InsertingOk& operator=(const InsertingOk&) = delete;
  ~InsertingOk() { windows_.dialogs().setInsertsBeforeOk(false); }

private:
  QtWindows& windows_;
};

} // namespace

void CircuitCommands::configure() {
  runUnrecorded(
      HostText::configureCircuit,
      [this](const auto&, const CircuitObject& circuit) -> std::optional<QString> {
        const QString name = toQt(circuit.name());
        if (circuit.fields.empty()) return services_.texts(HostText::circuitHasNoRecord, {name});
        const circuits::RebuildRequest request = requestFor(circuit, savedConfigurations(siteFolder()));
        constexpr const wchar_t* known = L"rebuildIsKnown";
        // A circuit that is as it was built has nothing to lose.
        const bool isAsBuilt = isChangedSinceBuilt(services_.drawing(), circuit.id) == std::optional(false);
        if (!isAsBuilt && services_.settings.value(known) != QStringLiteral("1")) {
          const Consent consent = askToBuildAgain(&services_.window, services_.texts, name);
          if (consent == Consent::refused) return std::nullopt;
          if (consent == Consent::givenForGood) services_.settings.setValue(known, QStringLiteral("1"));
        }
        const InsertingOk inserting(services_.windows);
        const circuits::ConfigureResult result = circuits::configureCircuit(services_.site, request);
        if (!result.isBuilt) return std::nullopt;
        if (!result.notSaved.empty())
          return services_.texts(
              HostText::configurationNotSaved, {name, QString::fromUtf8(result.notSaved.c_str())});
        return services_.texts(HostText::circuitRebuilt, {name});
      });
}

void CircuitCommands::saveConfiguration() {
  runUnrecorded(
      HostText::saveConfiguration,
      [this](const auto&, const CircuitObject& circuit) -> std::optional<QString> {
        if (circuit.fields.empty())
          return services_.texts(HostText::circuitHasNoRecord, {toQt(circuit.name())});
        const SiteConfigurations site = savedConfigurations(siteFolder());
        bool isNamed = false;
        const QString name = QInputDialog::getText(
                                 &services_.window, services_.texts(HostText::configurationTitle),
                                 services_.texts(HostText::configurationName), QLineEdit::Normal,
                                 toQt(circuit.name()), &isNamed)
                                 .trimmed();
        if (!isNamed || name.isEmpty()) return std::nullopt;
        const bool isTaken = std::any_of(site.saved.begin(), site.saved.end(), [&](const auto& row) {
          return isOfType(row.key, circuit) && brenvolt::equalsOrdinalNoCase(row.key.name, fromQt(name));
        });
        if (isTaken && askQuestion(
                           services_, HostText::configurationTitle,
                           services_.texts(HostText::configurationExists, {name}),
                           {HostText::keepEditing, HostText::configurationReplace}) != 1)
          return std::nullopt;
        circuits::saveConfiguration(services_.site, requestFor(circuit, site), fromQt(name));
        return services_.texts(HostText::configurationSaved, {name});
      });
}

} // namespace simhost
