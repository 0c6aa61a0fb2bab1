#include "data/wire_table_cache.h"

namespace brenvolt {

namespace {

constexpr wchar_t between = L'\n'; // no table or column name holds one

} // namespace

WireTableCache::Code::Code(ZanOleDbConnection& connection, const std::wstring& code) : reader(&connection) {
  reader.KeepTableList();
  reader.SetCode(code);
  hasOptions = reader.GetOptions();
}

WireTableCache::Code& WireTableCache::codeOf(const std::wstring& code) {
  std::unique_ptr<Code>& entry = codes_[code];
  if (!entry) entry = std::make_unique<Code>(connection_, code);
  return *entry;
}

WireTableCache::Wires& WireTableCache::wiresOf(const WireTableSet& set) {
  return wires_[set.metal + between + set.standard + between + set.code];
}

void WireTableCache::forgetWires() {
  wires_.clear();
  for (const auto& [name, code] : codes_)
    code->reader.KeepTableList();
}

const std::wstring& WireTableCache::table(ZanTableKind kind, const std::wstring& code) {
  Code& of = codeOf(code);
  const auto [entry, isNew] = of.tables.try_emplace(kind);
  if (isNew) static_cast<void>(of.reader.ResolveTable(entry->second, kind, {{}, {}, code}));
  return entry->second;
}

const FactorList& WireTableCache::fill(const std::wstring& code) {
  Code& entry = codeOf(code);
  if (!entry.fill) entry.reader.ListFill(code, entry.fill.emplace());
  return *entry.fill;
}

const std::optional<std::map<std::wstring, std::wstring>>& WireTableCache::raceways(
    const std::wstring& code) {
  Code& entry = codeOf(code);
  if (!entry.hasReadRaceways) {
    entry.hasReadRaceways = true;
    if (!entry.reader.ListRaceways(code, entry.raceways.emplace())) entry.raceways.reset();
  }
  return entry.raceways;
}

const std::wstring& WireTableCache::table(ZanTableKind kind, const WireTableSet& set) {
  const auto [entry, isNew] = wiresOf(set).tables.try_emplace(kind);
  if (isNew) static_cast<void>(codeOf(set.code).reader.ResolveTable(entry->second, kind, set));
  return entry->second;
}

const std::vector<std::wstring>& WireTableCache::racewayColumns(const WireTableSet& set) {
  Wires& wires = wiresOf(set);
  if (!wires.racewayColumns) codeOf(set.code).reader.ListRacewayColumns(set, wires.racewayColumns.emplace());
  return *wires.racewayColumns;
}

const std::vector<std::wstring>& WireTableCache::insulations(const WireTableSet& set) {
  Wires& wires = wiresOf(set);
  if (!wires.insulations) codeOf(set.code).reader.ListInsulations(set, wires.insulations.emplace());
  return *wires.insulations;
}

const std::wstring& WireTableCache::insulationLabel(const WireTableSet& set, const std::wstring& insulation) {
  const auto [entry, isNew] = wiresOf(set).insulationLabels.try_emplace(insulation);
  if (isNew) codeOf(set.code).reader.InsulationLabel(set, insulation, entry->second);
  return entry->second;
}

const WireTableCache::Ambient& WireTableCache::ambient(
    const WireTableSet& set, const std::wstring& insulationDescription) {
  const auto [entry, isNew] = wiresOf(set).ambients.try_emplace(insulationDescription);
  Ambient& ambient = entry->second;
  if (isNew)
    codeOf(set.code).reader.ListAmbient(set, insulationDescription, ambient.list, ambient.defaultIndex);
  return ambient;
}

const WireTableFigures& WireTableCache::figures(const WireTableChoice& choice) {
  const auto [entry, isNew] =
      wiresOf(choice.tables)
          .figures.try_emplace(choice.temperature + between + choice.raceway + between + choice.minimumSize);
  if (isNew) entry->second = readWireFigures(codeOf(choice.tables.code).reader, choice);
  return entry->second;
}

} // namespace brenvolt
