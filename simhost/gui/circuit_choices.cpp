// The commands on the choices of a placed circuit: opened in the configuration dialog, or saved.
#include "circuits/building/circuit_configure.h"
#include "simhost/gui/circuit_commands.h"
#include "simhost/gui/circuit_selection.h"
#include "simhost/host/session.h"
#include "simhost/qt/qt_text.h"
#include "simhost/qt/qt_windows.h"
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
  explicit InsertingOk(QtWindows& windows) : windows_(windows) {
    windows_.dialogs().setInsertsBeforeOk(true);
  }
  InsertingOk(const InsertingOk&) = delete;
  InsertingOk& operator=(const InsertingOk&) = delete;
  ~InsertingOk() { windows_.dialogs().setInsertsBeforeOk(false); }

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

void CircuitCommands::configure() {
  run(HostText::configureCircuit,
      [this](const auto&, const CircuitObject& circuit) -> std::optional<QString> {
        const QString name = toQt(circuit.name());
        if (circuit.fields.empty()) return services_.texts(HostText::circuitHasNoRecord, {name});
        const SiteConfigurations* site = selection_.siteConfigurations();
        constexpr const wchar_t* known = L"rebuildIsKnown";
        if (site == nullptr) return std::nullopt;
        if (services_.settings.value(known) != QStringLiteral("1")) {
          const Consent consent = askToBuildAgain(&services_.window, services_.texts, name);
          if (consent == Consent::refused) return std::nullopt;
          if (consent == Consent::givenForGood) services_.settings.setValue(known, QStringLiteral("1"));
        }
        const InsertingOk inserting(services_.windows);
        const circuits::ConfigureResult result = circuits::configureCircuit(
            services_.site, {services_.site.session().options().siteFolder.string(),
                             brenvolt::toUtf8(site->workbook), circuit.id});
        if (!result.isBuilt) return std::nullopt;
        if (!result.notSaved.empty())
          return services_.texts(
              HostText::configurationNotSaved, {name, QString::fromUtf8(result.notSaved.c_str())});
        return services_.texts(HostText::circuitRebuilt, {name});
      });
}

void CircuitCommands::saveConfiguration() {
  run(HostText::saveConfiguration,
      [this](const auto&, const CircuitObject& circuit) -> std::optional<QString> {
        if (circuit.fields.empty())
          return services_.texts(HostText::circuitHasNoRecord, {toQt(circuit.name())});
        const SiteConfigurations* site = selection_.siteConfigurations();
        if (site == nullptr) return std::nullopt;
        bool isNamed = false;
        const QString name = QInputDialog::getText(
                                 &services_.window, services_.texts(HostText::configurationTitle),
                                 services_.texts(HostText::configurationName), QLineEdit::Normal,
                                 toQt(circuit.name()), &isNamed)
                                 .trimmed();
        if (!isNamed || name.isEmpty()) return std::nullopt;
        if (isTaken(*site, circuit, fromQt(name)) &&
            askQuestion(
                services_, HostText::configurationTitle,
                services_.texts(HostText::configurationExists, {name}),
                {HostText::keepEditing, HostText::configurationReplace}) != 1)
          return std::nullopt;
        circuits::saveConfiguration(
            services_.site,
            {services_.site.session().options().siteFolder.string(), brenvolt::toUtf8(site->workbook),
             circuit.id},
            fromQt(name));
        return services_.texts(HostText::configurationSaved, {name});
      });
}

} // namespace simhost
