// Words for what was found.
#include "simhost/gui/circuit_rows.h"

#include "circuits/reports/circuit_summary.h"
#include "simhost/qt/qt_text.h"
#include "text/compare.h"
#include "text/split.h"

#include <QStringList>

#include <algorithm>

namespace simhost {
namespace {

using circuits::CircuitFault;

/// Type, load, unit, voltage, phase, frequency, speed, current: what a motor or load is.
constexpr std::size_t comparedFields = 8;

HostText wordsOf(CircuitFault fault) {
  switch (fault) {
  case CircuitFault::noRecord:
    return HostText::circuitNoRecord;
  case CircuitFault::noLoadData:
    return HostText::circuitNoLoadData;
  case CircuitFault::noWireSize:
    return HostText::circuitNoWireSize;
  case CircuitFault::tagTwice:
    return HostText::circuitTagTwice;
  }
  return HostText::none;
}

bool isSameLoad(const brenvolt::SavedControl& saved, const circuits::CircuitLoad& load) {
  const std::vector<std::wstring> built = brenvolt::splitKeepingEmpty(load.params, L';');
  for (std::size_t each = 0; each < std::min({comparedFields, saved.fields.size(), built.size()}); ++each)
    if (brenvolt::trim(saved.fields[each]) != brenvolt::trim(built[each])) return false;
  return true;
}

/// Whether the saved configuration that the circuit was built from holds a motor or load that the circuit does not have.
bool isOutOfDate(const circuits::CircuitObject& circuit, const SiteConfigurations& site) {
  const std::wstring name = circuitField(circuit.fields, L"configuration");
  if (name.empty() || circuit.loads.empty()) return false;
  for (std::size_t place = 0; place < site.saved.size(); ++place) {
    const brenvolt::HistoryKey& key = site.saved[place].key;
    if (!isOfType(key, circuit) || !brenvolt::equalsOrdinalNoCase(key.name, name)) continue;
    return std::any_of(
        site.controls[place].begin(), site.controls[place].end(), [&circuit](const auto& saved) {
          return std::none_of(circuit.loads.begin(), circuit.loads.end(), [&saved](const auto& load) {
            return isSameLoad(saved, load);
          });
        });
  }
  return false;
}

} // namespace

bool isOfType(const brenvolt::HistoryKey& key, const circuits::CircuitObject& circuit) {
  return brenvolt::equalsOrdinalNoCase(key.circuit, circuitField(circuit.fields, L"circuit")) &&
         brenvolt::equalsOrdinalNoCase(key.type, circuitField(circuit.fields, L"type"));
}

bool hasType(const SiteConfigurations& site, const circuits::CircuitObject& circuit) {
  return std::any_of(site.types.begin(), site.types.end(), [&circuit](const auto& type) {
    return isOfType(type.key, circuit);
  });
}

std::vector<CircuitRow> circuitRows(
    const std::vector<circuits::CircuitObject>& circuits, const std::wstring& sheet,
    const SiteConfigurations* site, const HostTexts& texts) {
  std::vector<CircuitRow> rows;
  const std::vector<circuits::CircuitSummary> summaries = circuits::summariesOf(circuits);
  for (std::size_t place = 0; place < summaries.size(); ++place) {
    const circuits::CircuitSummary& summary = summaries[place];
    const circuits::CircuitObject& circuit = circuits[place];
    QStringList notes;
    for (const circuits::CircuitFinding& finding : summary.findings)
      notes.append(texts(wordsOf(finding.fault), {toQt(finding.tag)}));
    QStringList stale;
    if (site != nullptr && !circuit.fields.empty() && !hasType(*site, circuit))
      stale.append(texts(HostText::circuitTypeGone, {toQt(summary.circuit), toQt(summary.type)}));
    if (site != nullptr && isOutOfDate(circuit, *site))
      stale.append(texts(
          HostText::circuitConfigurationChanged, {toQt(circuitField(circuit.fields, L"configuration"))}));
    const QString state = !notes.isEmpty() ? texts(HostText::circuitFindings, {QString::number(notes.size())})
                          : !stale.isEmpty() ? texts(HostText::circuitOutOfDate)
                                             : texts(HostText::circuitBuilt);
    QString type = toQt(summary.circuit);
    if (!summary.type.empty()) type += QStringLiteral(", ") + toQt(summary.type);
    CircuitRow row{
        summary.id,
        {toQt(summary.number), toQt(summary.tag), type, toQt(summary.load), toQt(summary.wires), toQt(sheet),
         state},
        (notes + stale).join(QLatin1Char('\n'))};
    for (const QString& cell : row.cells)
      row.searchText += cell + QLatin1Char('\n');
    for (const std::wstring& tag : circuit.tags)
      row.searchText += toQt(tag) + QLatin1Char('\n');
    rows.push_back(std::move(row));
  }
  return rows;
}

} // namespace simhost
