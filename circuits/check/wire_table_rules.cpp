// The tables that size wires: ampacities, insulations, impedances, fill, grounding conductors, and whether they speak of
// the same sizes.
#include "circuits/check/similar_name.h"
#include "circuits/check/table_rules.h"
#include "data/wire_lists.h"
#include "text/compare.h"
#include "text/numbers.h"
#include "text/plain_number.h"
#include "text/split.h"

#include <algorithm>
#include <set>

namespace circuits {

using brenvolt::equalsOrdinalNoCase;
using brenvolt::formatInt;
using brenvolt::formatTrimmed;
using brenvolt::toUpper;

namespace {

/// Texts of a column without blanks, upper case: sizes are compared so.
std::set<std::wstring> sizesOf(const SiteTable& table, std::wstring_view column) {
  std::set<std::wstring> sizes;
  const int position = table.text.columnOf(column);
  if (position == 0) return sizes;
  for (const TableText::Row& row : table.text.rows)
    sizes.insert(toUpper(brenvolt::removeBlanks(row.cell(position))));
  return sizes;
}

enum class Order { rising, falling };

/// Reports each cell that breaks the order down a column.
void checkOrder(const SiteTable& table, int column, Order order, std::wstring_view rule, Findings& findings) {
  std::optional<double> before;
  for (const TableText::Row& row : table.text.rows) {
    const std::optional<double> value = brenvolt::plainNumber(row.cell(column));
    if (!value) continue;
    if (before && (order == Order::rising ? *value < *before : *value > *before))
      findings.add(
          rule, table.place(row.number, column), {row.cell(column)},
          {{L"value", formatTrimmed(*value)}, {L"before", formatTrimmed(*before)}});
    before = value;
  }
}

/// A size without an ampacity between two that have one: the next larger wire is taken in silence.
void checkHoles(const SiteTable& table, int column, Findings& findings) {
  std::vector<const TableText::Row*> empty;
  bool hasBegun = false;
  for (const TableText::Row& row : table.text.rows) {
    if (brenvolt::trimView(row.cell(column)).empty()) {
      if (hasBegun) empty.push_back(&row);
      continue;
    }
    for (const TableText::Row* hole : empty)
      findings.add(
          L"ampacity-hole", table.place(hole->number, column), {hole->cell(1)}, {{L"size", hole->cell(1)}});
    empty.clear();
    hasBegun = true;
  }
}

void checkAmpacities(const SiteTable& table, Findings& findings) {
  const TableText& text = table.text;
  constexpr int firstColumn = 3;
  for (int column = firstColumn; column <= text.columnCount(); ++column) {
    checkOrder(table, column, Order::rising, L"ampacity-order", findings);
    checkHoles(table, column, findings);
  }
  // A conductor that may get hotter carries at least as much.
  for (const TableText::Row& row : text.rows) {
    std::optional<double> before;
    std::wstring name;
    for (int column = firstColumn; column <= text.columnCount(); ++column) {
      const std::optional<double> value = brenvolt::plainNumber(row.cell(column));
      if (!value) continue;
      const std::wstring& here = text.columns[static_cast<std::size_t>(column) - 1];
      const bool isHotter = brenvolt::toInt(here) > brenvolt::toInt(name);
      if (before && isHotter && *value < *before)
        findings.add(
            L"ampacity-columns", table.place(row.number, column), {row.cell(column)},
            {{L"value", formatTrimmed(*value)}, {L"column", name}, {L"before", formatTrimmed(*before)}});
      before = value;
      name = here;
    }
  }
}

/// "30C": digits and the letter, as the setting T_AMBIENT writes them.
bool isBracket(std::wstring_view name) {
  if (name.size() < 2 || (name.back() != L'C' && name.back() != L'c')) return false;
  const std::wstring_view digits = name.substr(0, name.size() - 1);
  return digits.find_first_not_of(L"0123456789") == digits.npos;
}

void checkInsulations(const SiteTable& table, const SiteTable* ampacities, Findings& findings) {
  const TableText& text = table.text;
  constexpr int firstBracket = 5;
  int before = -1;
  for (int column = firstBracket; column <= text.columnCount(); ++column) {
    const std::wstring& name = text.columns[static_cast<std::size_t>(column) - 1];
    const int degrees = brenvolt::toInt(name);
    if (!isBracket(name) || degrees <= before)
      findings.add(
          L"ambient-bracket", table.place(1, column), {name},
          {{L"column", name}, {L"before", formatInt(std::max(before, 0))}});
    before = degrees;
  }
  const int temperature = text.columnOf(L"TEMP");
  const int description = text.columnOf(L"INSUL_DESC");
  std::set<std::wstring> descriptions;
  for (const TableText::Row& row : text.rows) {
    std::optional<double> last;
    bool hasHole = false;
    for (int column = firstBracket; column <= text.columnCount(); ++column) {
      const std::optional<double> factor = brenvolt::plainNumber(row.cell(column));
      if (!factor) {
        hasHole = last.has_value();
        continue;
      }
      constexpr double highest = 2.0;
      const bool rises = last && *factor > *last;
      if (hasHole) findings.add(L"factor-hole", table.place(row.number, column), {row.cell(column)}, {});
      if (*factor <= 0.0 || *factor > highest || rises)
        findings.add(
            L"factor-value", table.place(row.number, column), {row.cell(column)},
            {{L"factor", row.cell(column)},
             {L"rule", rises ? L"factors fall as it gets warmer" : L"it must be above 0 and at most 2"}});
      last = factor;
      hasHole = false;
    }
    if (temperature > 0 && ampacities != nullptr && ampacities->text.columnOf(row.cell(temperature)) == 0)
      findings.add(
          L"insulation-column", table.place(row.number, temperature), {row.cell(temperature)},
          {{L"column", row.cell(temperature)},
           {L"table", ampacities->text.name},
           {L"similar", didYouMean(similarName(row.cell(temperature), ampacities->text.columns))}});
    if (description == 0) continue;
    const std::wstring& words = row.cell(description);
    const bool isRepeated = !descriptions.insert(toUpper(words)).second;
    if (isRepeated || words.find(L'/') != std::wstring::npos)
      findings.add(
          L"insulation-description", table.place(row.number, description), {words},
          {{L"fault", isRepeated ? L"is there twice" : L"holds a slash"}});
  }
}

class ImpedanceCheck final {
public:
  ImpedanceCheck(const SiteTable& table, Findings& findings) : table_(table), findings_(findings) {}

  void run() {
    const int size = table_.text.columnOf(L"SIZE");
    constexpr int firstRaceway = 3;
    for (int column = firstRaceway; column <= table_.text.columnCount(); ++column)
      checkColumn(column, size);
  }

private:
  void checkColumn(int column, int size) {
    std::vector<brenvolt::ImpedanceRow> rows;
    for (const TableText::Row& row : table_.text.rows)
      rows.push_back({row.cell(size), row.cell(column)});
    std::optional<double> before;
    for (const TableText::Row& row : table_.text.rows) {
      const std::wstring& cell = row.cell(column);
      const FindingPlace place = table_.place(row.number, column);
      if (cell.empty()) {
        const brenvolt::ImpedanceNeighbours near = brenvolt::impedanceNeighbours(rows, row.cell(size));
        if (!near.lower && !near.upper)
          findings_.add(L"impedance-alone", place, {row.cell(size)}, {{L"size", row.cell(size)}});
        continue;
      }
      const std::vector<std::wstring> parts = brenvolt::splitKeepingEmpty(cell, L';');
      const bool isPair =
          parts.size() == 2 && brenvolt::plainNumber(parts[0]) && brenvolt::plainNumber(parts[1]);
      if (!isPair) {
        findings_.add(L"impedance-cell", place, {cell}, {{L"text", cell}});
        continue;
      }
      const double resistance = *brenvolt::plainNumber(parts[1]);
      if (before && resistance > *before)
        findings_.add(
            L"impedance-order", place, {cell}, {{L"value", parts[1]}, {L"before", formatTrimmed(*before)}});
      before = resistance;
    }
  }

  const SiteTable& table_;
  Findings& findings_;
};

void checkFill(const SiteTable& table, Findings& findings) {
  const int limit = table.text.columnOf(L"MAX");
  const int factor = table.text.columnOf(L"FACTOR");
  if (limit == 0 || factor == 0) return;
  if (table.text.rows.size() < 2)
    findings.add(
        L"fill-rows", table.place(),
        {{L"count", formatInt(static_cast<std::int64_t>(table.text.rows.size()))}});
  std::optional<double> before;
  for (const TableText::Row& row : table.text.rows) {
    const std::optional<double> most = brenvolt::plainNumber(row.cell(limit));
    if (!most) continue;
    if (before && *most <= *before)
      findings.add(
          L"fill-order", table.place(row.number, limit), {row.cell(limit)},
          {{L"value", row.cell(limit)}, {L"before", formatTrimmed(*before)}});
    before = most;
    const std::optional<double> value = brenvolt::plainNumber(row.cell(factor));
    if (value && (*value <= 0.0 || *value > 1.0))
      findings.add(
          L"factor-value", table.place(row.number, factor), {row.cell(factor)},
          {{L"factor", row.cell(factor)}, {L"rule", L"it must be above 0 and at most 1"}});
  }
  checkOrder(table, factor, Order::falling, L"fill-factor-order", findings);
}

void checkGrounds(const SiteTable& table, Findings& findings) {
  const int limit = table.text.columnOf(L"MAX");
  if (limit == 0) return;
  std::set<double> seen;
  for (const TableText::Row& row : table.text.rows) {
    const std::optional<double> value = brenvolt::plainNumber(row.cell(limit));
    if (value && !seen.insert(*value).second)
      findings.add(
          L"ground-limit-twice", table.place(row.number, limit), {row.cell(limit)},
          {{L"value", row.cell(limit)}});
  }
  checkOrder(table, limit, Order::rising, L"ground-order", findings);
}

void checkRaceways(const SiteTable& descriptions, const SiteTable* impedances, Findings& findings) {
  const int column = descriptions.text.columnOf(L"CODE");
  if (column == 0 || impedances == nullptr) return;
  for (const TableText::Row& row : descriptions.text.rows)
    if (!row.cell(column).empty() && impedances->text.columnOf(row.cell(column)) == 0)
      findings.add(
          L"raceway-unknown", descriptions.place(row.number, column), {row.cell(column)},
          {{L"raceway", row.cell(column)},
           {L"table", impedances->text.name},
           {L"similar", didYouMean(similarName(row.cell(column), impedances->text.columns))}});
}

/// Sizes that one table has and another needs.
class SizeCheck final {
public:
  SizeCheck(const TableSet& tables, const SiteTable& ampacities, Findings& findings)
      : tables_(tables), ampacities_(ampacities), findings_(findings) {}

  void run(const SiteTable* impedances, const SiteTable* grounds) {
    const int size = ampacities_.text.columnOf(L"SIZE");
    const int description = ampacities_.text.columnOf(L"SIZE_DESC");
    if (size == 0 || description == 0) return;
    if (impedances != nullptr)
      need(ampacities_, size, *impedances, L"SIZE", L"its voltage drop cannot be computed");
    if (const SiteTable* sizes = tables_.find(L"WIRESIZE")) {
      const std::set<std::wstring> known = wireSizes(*sizes);
      for (const TableText::Row& row : ampacities_.text.rows) {
        const bool isKnown = known.contains(toUpper(brenvolt::removeBlanks(row.cell(description)))) ||
                             known.contains(toUpper(brenvolt::removeBlanks(row.cell(size))));
        if (!isKnown)
          findings_.add(
              L"area-missing", ampacities_.place(row.number, description), {row.cell(description)},
              {{L"size", row.cell(description)}, {L"table", sizes->text.name}});
      }
    }
    if (grounds == nullptr) return;
    if (const int ground = grounds->text.columnOf(L"SIZE_DESC"); ground != 0)
      need(*grounds, ground, ampacities_, L"SIZE_DESC", L"such a conductor cannot be chosen");
  }

private:
  /// Those of WIRESIZE in the table's size system: 10 means another wire in AWG than in mm2.
  [[nodiscard]] std::set<std::wstring> wireSizes(const SiteTable& table) const {
    const int size = table.text.columnOf(L"SIZE");
    const int standard = table.text.columnOf(L"STANDARD");
    const std::wstring own = toUpper(ampacities_.text.name) + L"_";
    std::set<std::wstring> sizes;
    if (size == 0) return sizes;
    for (const TableText::Row& row : table.text.rows)
      if (standard == 0 || own.find(L"_" + toUpper(row.cell(standard)) + L"_") != std::wstring::npos)
        sizes.insert(toUpper(brenvolt::removeBlanks(row.cell(size))));
    return sizes;
  }

  /// Impedances alone are interpolated between the sizes beside.
  static bool isFilledIn(const SiteTable& table) { return toUpper(table.text.name).starts_with(L"XL&R"); }

  void need(
      const SiteTable& table, int column, const SiteTable& other, const wchar_t* otherColumn,
      const wchar_t* consequence) {
    const std::set<std::wstring> known = sizesOf(other, otherColumn);
    for (const TableText::Row& row : table.text.rows)
      if (!known.contains(toUpper(brenvolt::removeBlanks(row.cell(column)))))
        tell(table, row, column, other, consequence);
  }

  void tell(
      const SiteTable& table, const TableText::Row& row, int column, const SiteTable& other,
      const wchar_t* consequence) {
    findings_.add(
        L"size-missing", table.place(row.number, column), {row.cell(column)},
        {{L"size", row.cell(column)},
         {L"table", other.text.name},
         {L"consequence", consequence},
         {L"added", isFilledIn(other)
                        ? L"a row for it; its empty cells are interpolated between the sizes beside"
                        : L"a row for it"}});
  }

  const TableSet& tables_;
  const SiteTable& ampacities_;
  Findings& findings_;
};

} // namespace

void checkWireTables(const TableSet& tables, const std::vector<ElectricalCode>& codes, Findings& findings) {
  for (const SiteTable& table : tables.tables) {
    const std::wstring name = toUpper(table.text.name);
    const auto isOf = [&name](std::wstring_view family) {
      return name == family || name.starts_with(std::wstring(family) + L"_");
    };
    // "AMP_CU_AWG_NEC" beside "INSUL_CU_AWG_NEC": the same metal, standard and code.
    const auto beside = [&](std::wstring_view family, std::wstring_view own) {
      return tables.find(std::wstring(family) + table.text.name.substr(own.size()));
    };
    if (isOf(L"AMPG")) {
      checkGrounds(table, findings);
    } else if (isOf(L"AMP")) {
      checkAmpacities(table, findings);
      SizeCheck(tables, table, findings).run(beside(L"XL&R", L"AMP"), beside(L"AMPG", L"AMP"));
    } else if (isOf(L"INSUL")) {
      checkInsulations(table, beside(L"AMP", L"INSUL"), findings);
    } else if (isOf(L"FILL")) {
      checkFill(table, findings);
    } else if (isOf(L"XL&R") && !isOf(L"XL&R_DESC")) {
      ImpedanceCheck(table, findings).run();
    }
  }
  for (const ElectricalCode& electrical : codes) {
    const SiteTable* descriptions = tables.resolve(L"XL&R_DESC", electrical.name);
    if (descriptions != nullptr)
      checkRaceways(
          *descriptions,
          tables.resolve(
              L"XL&R", electrical.defaultOf(L"W_METAL"), electrical.defaultOf(L"W_STD"), electrical.name),
          findings);
  }
}

} // namespace circuits
