#include "data/table_names.h"

#include "data/table_watch.h"
#include "text/compare.h"
#include "text/split.h"

#include <algorithm>
#include <array>
#include <iterator>

namespace brenvolt {

namespace {

enum class WireParts { no, yes };

struct Family {
  std::wstring_view baseName;
  WireParts inName; ///< whether material and size system are part of the name
};

/// In the order of ZanTableKind.
constexpr std::array<Family, 12> families = {{
    {L"AMP", WireParts::yes},
    {L"INSUL", WireParts::yes},
    {L"XL&R", WireParts::yes},
    {L"XL&R_DESC", WireParts::no},
    {L"FILL", WireParts::no},
    {L"OPT", WireParts::no},
    {L"AMPG", WireParts::yes},
    {L"MOTOR", WireParts::no},
    {L"FEED", WireParts::no},
    {L"MOTOR_I_CALC", WireParts::no},
    {L"MOTOR_I_DESC", WireParts::no},
    {L"MOTOR_I_MAP", WireParts::no},
}};

const Family* familyOf(ZanTableKind kind) {
  const auto index = static_cast<std::size_t>(kind);
  return index < families.size() ? &families[index] : nullptr;
}

/// The kinds of a mask, in the order in which they are reported.
std::vector<ZanTableKind> kindsOf(unsigned mask) {
  using enum ZanTableKind;
  std::vector<ZanTableKind> kinds;
  const auto add = [&kinds](std::initializer_list<ZanTableKind> more) { kinds.insert(kinds.end(), more); };
  if (mask & tablemask::options) add({options});
  if (mask & tablemask::wires) {
    add({ampacity, insulation, impedance, conduitFill});
    if (mask & tablemask::grounding) add({grounding});
  }
  if (mask & tablemask::motors) add({motors});
  if (mask & tablemask::loads) add({loads});
  if (mask & tablemask::components) add({componentCalculation, componentDescription, componentMap});
  return kinds;
}

bool holds(const std::vector<std::wstring>& names, std::wstring_view name) {
  return std::any_of(names.begin(), names.end(), [name](const std::wstring& each) {
    return equalsOrdinalNoCase(each, name);
  });
}

} // namespace

std::wstring_view ZanDbReaderUtils::TableBaseName(ZanTableKind kind) {
  const Family* family = familyOf(kind);
  return family ? family->baseName : std::wstring_view();
}

std::wstring ZanDbReaderUtils::ComposeTableName(
    std::wstring_view base, std::wstring_view metal, std::wstring_view standard, std::wstring_view code) {
  std::wstring name(base);
  if (name.empty()) return name;
  for (const std::wstring_view part : {metal, standard, code})
    if (!part.empty()) name.append(L"_").append(part);
  return name;
}

void ZanDbReaderUtils::KeepTableList() {
  keptNames_.reset();
  keptNames_ = tableList();
}

std::vector<std::wstring> ZanDbReaderUtils::tableList() const {
  if (keptNames_) return *keptNames_;
  std::vector<std::wstring> names;
  if (!connection_ || !connection_->IsConnected()) return names;
  ZanOleDbTables tables;
  if (tables.Open(*connection_, L"TABLE")) tables.GetTableList(names);
  return names;
}

std::wstring ZanDbReaderUtils::CodeOfTable(std::wstring_view table) {
  std::wstring code;
  std::size_t longest = 0;
  for (const Family& family : families) {
    const std::size_t size = family.baseName.size();
    const bool isLonger = size > longest && table.size() > size && table[size] == L'_';
    if (!isLonger || !equalsOrdinalNoCase(table.substr(0, size), family.baseName)) continue;
    longest = size;
    const std::vector<std::wstring> parts = splitKeepingEmpty(table.substr(size + 1), L'_');
    const std::size_t expected = family.inName == WireParts::yes ? 3 : 1;
    code = parts.size() == expected ? parts.back() : std::wstring();
  }
  return code;
}

bool ZanDbReaderUtils::TableExists(std::wstring_view name) const {
  return holds(tableList(), name);
}

bool ZanDbReaderUtils::ResolveTable(
    std::wstring& name, ZanTableKind kind, std::wstring_view metal, std::wstring_view standard,
    std::wstring_view code) const {
  name.clear();
  const std::wstring_view base = TableBaseName(kind);
  if (base.empty()) return false;
  std::vector<std::wstring> read;
  if (!keptNames_) read = tableList();
  const std::vector<std::wstring>& names = keptNames_ ? *keptNames_ : read;

  std::vector<std::wstring> candidates = {ComposeTableName(base, metal, standard, code)};
  if (!code.empty()) candidates.push_back(ComposeTableName(base, metal, standard, {}));
  if (!equalsOrdinalNoCase(code, defaultCode))
    candidates.push_back(ComposeTableName(base, metal, standard, defaultCode));

  const auto found =
      std::find_if(candidates.begin(), candidates.end(), [&names](const std::wstring& candidate) {
        return holds(names, candidate);
      });
  if (found == candidates.end()) return false;
  name = *found;
  const bool isOfDefaultCode = found != candidates.begin() && found + 1 == candidates.end();
  const bool isReplaced = isOfDefaultCode && !code.empty() && !equalsOrdinalNoCase(code, defaultCode);
  if (isReplaced && connection_->observer() != nullptr)
    connection_->observer()->defaultTableUsed({candidates.front(), name});
  return true;
}

bool ZanDbReaderUtils::ResolveTable(std::wstring& name, ZanTableKind kind, std::wstring_view code) const {
  return ResolveTable(name, kind, {}, {}, code);
}

bool ZanDbReaderUtils::CheckTables(
    std::wstring_view metal, std::wstring_view standard, std::wstring_view code, MissingTables& missing,
    unsigned mask) const {
  missing = {};
  std::vector<std::wstring> read;
  if (!keptNames_) read = tableList();
  const std::vector<std::wstring>& names = keptNames_ ? *keptNames_ : read;
  const bool hasFallback = !code.empty() && !equalsOrdinalNoCase(code, defaultCode);
  for (const ZanTableKind kind : kindsOf(mask)) {
    const Family& family = *familyOf(kind);
    const bool usesWireParts = family.inName == WireParts::yes;
    if (usesWireParts && (metal.empty() || standard.empty())) continue;
    const auto compose = [&](std::wstring_view ofCode) {
      return ComposeTableName(
          family.baseName, usesWireParts ? metal : std::wstring_view(),
          usesWireParts ? standard : std::wstring_view(), ofCode);
    };
    if (holds(names, compose(code))) continue;
    if (code.empty()) continue; // an empty code reports nothing: the lack shows up at the first query
    missing.forCode.push_back(compose(code));
    const std::wstring plain = compose({});
    if (holds(names, plain)) continue;
    // The default code itself has no further fallback, and deliberately never enters the second list.
    if (!hasFallback || holds(names, compose(defaultCode))) continue;
    missing.everywhere.push_back(plain);
    missing.everywhere.push_back(compose(defaultCode));
  }
  return missing.forCode.empty() && missing.everywhere.empty();
}

std::wstring ZanDbReaderUtils::JoinColumns(const std::vector<std::wstring>& names) {
  std::wstring joined;
  for (const std::wstring& name : names) {
    if (!joined.empty()) joined += L", ";
    joined.append(L"[").append(name).append(L"]");
  }
  return joined;
}

std::wstring ZanDbReaderUtils::JoinWhere(
    const std::vector<std::wstring>& names, const std::vector<std::wstring>& values) {
  std::wstring joined;
  for (std::size_t i = 0; i < names.size() && i < values.size(); ++i) {
    if (!joined.empty()) joined += L" AND ";
    joined.append(L"[").append(names[i]).append(L"]='").append(values[i]).append(L"'");
  }
  return joined;
}

} // namespace brenvolt
