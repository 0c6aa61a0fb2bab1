#include "circuits/check/saved_rules.h"

#include "circuits/check/similar_name.h"
#include "platform/xml_document.h"
#include "text/compare.h"
#include "text/encoding.h"
#include "text/numbers.h"
#include "text/plain_number.h"
#include "text/split.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <optional>
#include <set>
#include <system_error>

namespace circuits {

using brenvolt::equalsCollating;
using brenvolt::equalsOrdinalNoCase;
using brenvolt::XmlElement;

namespace {

constexpr const char* savedFile = "zan_brenvolt.xml";

/// Places in the row of a motor or load; their names vary with the language, so places count.
namespace setupplace {
constexpr std::size_t type = 0, load = 1, units = 2, voltage = 3, phase = 4, frequency = 5, speed = 6,
                      current = 7, standard = 10, metal = 11, insulation = 12, temperature = 13;
}

/// Places in the values of a part.
namespace partplace {
constexpr std::size_t maker = 0, number = 1, assembly = 2;
}

std::vector<std::wstring> valuesOf(const XmlElement& row) {
  std::vector<std::wstring> values;
  for (const XmlElement& property : row.children(L"Property"))
    values.push_back(property.attribute(L"Value"));
  return values;
}

std::wstring at(const std::vector<std::wstring>& values, std::size_t place) {
  return place < values.size() ? values[place] : std::wstring();
}

class SavedCheck final {
public:
  SavedCheck(
      const SiteModel& site, const TableSet& tables, const std::vector<ElectricalCode>& codes,
      Findings& findings)
      : site_(site), tables_(tables), codes_(codes), findings_(findings) {
    const std::filesystem::path file = std::filesystem::path(site.workbook).replace_filename(savedFile);
    path_ = file;
    place_.file = site.shownFile(file);
  }

  /// The parts that the configurations hold.
  std::vector<SavedPart> run() {
    checkFile();
    return std::move(parts_);
  }

private:
  void checkFile() {
    std::error_code error;
    if (!std::filesystem::exists(path_, error)) return;
    brenvolt::XmlDocument document;
    std::wstring reason;
    if (!document.load(brenvolt::fromUtf8(path_.string()), reason)) {
      while (reason.ends_with(L'.'))
        reason.pop_back(); // the sentence of the finding has its own
      findings_.add(L"saved-unreadable", place_, {{L"reason", site_.shownText(reason)}});
      return;
    }
    const XmlElement root = document.root();
    if (!root.isNamed(L"BrenvoltHistory") || brenvolt::toDouble(root.attribute(L"Version")) < 1.0) {
      findings_.add(
          L"saved-unreadable", place_, {{L"reason", L"its format is not that of saved configurations"}});
      return;
    }
    for (const XmlElement& circuit : root.children(L"Circuit"))
      for (const XmlElement& type : circuit.children(L"CircuitType"))
        checkType(circuit.attribute(L"Name"), type);
  }

  void checkType(const std::wstring& circuit, const XmlElement& type) {
    const std::wstring typeName = type.attribute(L"Name");
    const auto entry = std::ranges::find_if(site_.entries, [&](const CircuitEntry& each) {
      return equalsCollating(each.circuit, circuit) && equalsCollating(each.type, typeName);
    });
    std::set<std::wstring, brenvolt::CollatingLess> names;
    for (const XmlElement& saved : type.children(L"History")) {
      name_ = circuit + L" / " + typeName + L", \"" + saved.attribute(L"Name") + L"\"";
      if (!names.insert(saved.attribute(L"Name")).second)
        findings_.add(L"saved-twice", place_, {{L"saved", name_}});
      // A workbook of which no circuit could be read has lost none: what was saved must not be deleted for it.
      if (site_.entries.empty()) continue;
      if (entry == site_.entries.end()) {
        std::vector<std::wstring> known;
        for (const CircuitEntry& each : site_.entries)
          known.push_back(SiteModel::nameOf(each));
        findings_.add(
            L"saved-circuit-gone", place_,
            {{L"saved", name_}, {L"similar", didYouMean(similarName(circuit + L" / " + typeName, known))}});
        continue;
      }
      checkSaved(*entry, saved);
    }
  }

  void checkSaved(const CircuitEntry& entry, const XmlElement& saved) {
    const std::wstring sheet = saved.firstChild(L"HistoryCheck").attribute(L"Worksheet");
    if (!sheet.empty() && !equalsOrdinalNoCase(sheet, entry.worksheet))
      findings_.add(
          L"saved-sheet", place_, {{L"saved", name_}, {L"sheet", sheet}, {L"today", entry.worksheet}});
    const SheetModel* model = site_.findModel(entry.worksheet);
    if (model == nullptr) return;
    for (const XmlElement& marker : saved.children(L"Marker"))
      checkMarker(entry, *model, marker);
  }

  [[nodiscard]] FindingPlace placeOf(const std::wstring& code) const {
    FindingPlace place = place_;
    place.code = code;
    return place;
  }

  void checkMarker(const CircuitEntry& entry, const SheetModel& model, const XmlElement& marker) {
    const std::wstring code = marker.attribute(L"Code");
    const SheetCode* record = model.find(code);
    if (record == nullptr) {
      findings_.add(
          L"saved-code-gone", placeOf(code), {{L"saved", name_}, {L"code", code}, {L"sheet", model.name}});
      return;
    }
    for (const XmlElement& option : marker.children(L"SelectOption"))
      checkOption(*record, option);
    for (const XmlElement& part : marker.children(L"Catalog"))
      checkPart(entry, *record, part);
    for (const XmlElement& group : marker.children(L"ControlGroup"))
      checkSetup(code, group);
  }

  void checkOption(const SheetCode& record, const XmlElement& saved) {
    const std::wstring title = saved.attribute(L"UI_TITLE");
    const std::wstring text = saved.attribute(L"UI_PROMPT");
    const std::int32_t value = brenvolt::toInt(saved.attribute(L"UI_VAL"));
    const auto group = std::ranges::find_if(
        record.groups, [&title](const SheetGroup& each) { return equalsCollating(each.title, title); });
    const FindingPlace place = placeOf(record.code);
    if (group == record.groups.end()) {
      findings_.add(L"saved-group-gone", place, {{L"saved", name_}, {L"group", title}, {L"option", text}});
      return;
    }
    const auto option = std::ranges::find(group->options, value, &SheetOption::value);
    if (option == group->options.end())
      findings_.add(
          L"saved-option-gone", place,
          {{L"saved", name_}, {L"group", title}, {L"option", text}, {L"value", brenvolt::formatInt(value)}});
    else if (!group->isControl() && !equalsCollating(option->text, text))
      findings_.add(
          L"saved-option-changed", place,
          {{L"saved", name_}, {L"group", title}, {L"option", text}, {L"today", option->text}});
  }

  /// A part is handed to the forms by the table and the title of its group. Which parts a table holds is known to the
  /// site's lookups alone.
  void checkPart(const CircuitEntry& entry, const SheetCode& record, const XmlElement& part) {
    std::wstring title;
    std::wstring table;
    std::vector<std::wstring> values; // the part's own; their names vary with the language
    for (const XmlElement& property : part.children(L"Property")) {
      if (equalsCollating(property.attribute(L"Name"), L"TITLE"))
        title = property.attribute(L"Value");
      else if (equalsCollating(property.attribute(L"Name"), L"TABLE"))
        table = property.attribute(L"Value");
      else
        values.push_back(property.attribute(L"Value"));
    }
    const auto form = std::ranges::find_if(record.forms, [&](const SheetForm& each) {
      return std::ranges::any_of(each.pairs, [&](const SheetPair& pair) {
        return equalsCollating(pair.title, title) &&
               (table.empty() || equalsOrdinalNoCase(pair.table, table));
      });
    });
    if (form == record.forms.end()) {
      if (!title.empty())
        findings_.add(
            L"saved-part-gone", placeOf(record.code),
            {{L"saved", name_}, {L"title", title}, {L"table", table.empty() ? L"?" : table}});
    } else if (!table.empty() && !at(values, partplace::number).empty()) {
      parts_.push_back(
          {name_,
           placeOf(record.code),
           &entry,
           &*form,
           {table, at(values, partplace::maker), at(values, partplace::number),
            at(values, partplace::assembly)}});
    }
  }

  void checkSetup(const std::wstring& code, const XmlElement& group) {
    std::vector<std::wstring> setup;
    for (const wchar_t* kind : {L"MotorSetup", L"LOADSetup"})
      for (const XmlElement& row : group.children(kind)) {
        setup = valuesOf(row);
        checkRating(code, setup, std::wstring_view(kind) == L"MotorSetup" ? L"MOTOR" : L"FEED");
      }
    const std::wstring metal = at(setup, setupplace::metal);
    const std::wstring standard = at(setup, setupplace::standard);
    checkInsulation(code, setup);
    struct Wires {
      const wchar_t* kind;
      const wchar_t* family; ///< its tables hold their sizes
    };
    for (const Wires& wires : {Wires{L"WireSetup", L"AMP_"}, Wires{L"GroundingWireSetup", L"AMPG_"}})
      for (const XmlElement& wire : group.children(wires.kind))
        checkSize(code, wires.family, at(valuesOf(wire), 0), metal, standard);
  }

  /// Description and temperature, letter by letter as the wire lookup looks for them.
  void checkInsulation(const std::wstring& code, const std::vector<std::wstring>& setup) {
    const std::wstring insulation = at(setup, setupplace::insulation);
    const std::wstring temperature = at(setup, setupplace::temperature);
    if (insulation.empty()) return;
    const Search search = findRow(
        L"INSUL_", at(setup, setupplace::metal), at(setup, setupplace::standard),
        [&](const TableText& text, const TableText::Row& row) {
          return row.cell(text.columnOf(L"INSUL_DESC")) == insulation &&
                 row.cell(text.columnOf(L"TEMP")) == temperature;
        });
    if (!search.isFound && search.last != nullptr)
      findings_.add(
          L"saved-insulation-gone", placeOf(code),
          {{L"saved", name_},
           {L"insulation", insulation},
           {L"temperature", temperature},
           {L"table", search.last->text.name}});
  }

  void checkSize(
      const std::wstring& code, const wchar_t* family, const std::wstring& size, const std::wstring& metal,
      const std::wstring& standard) {
    if (size.empty() || metal.empty()) return;
    const Search search =
        findRow(family, metal, standard, [&](const TableText& text, const TableText::Row& row) {
          return equalsOrdinalNoCase(
              brenvolt::removeBlanks(row.cell(text.columnOf(L"SIZE_DESC"))), brenvolt::removeBlanks(size));
        });
    if (search.isFound) return;
    if (search.last != nullptr)
      findings_.add(
          L"saved-size-gone", placeOf(code),
          {{L"saved", name_}, {L"size", size}, {L"table", search.last->text.name}});
    else if (tables_.isWhole) // else it may be in a table that cannot be read
      findings_.add(
          L"saved-table-gone", placeOf(code),
          {{L"saved", name_}, {L"metal", metal}, {L"standard", standard}});
  }

  struct Search {
    bool isFound = false;
    const SiteTable* last = nullptr; ///< the table that was searched last; null when the site has none
  };
  /// In the tables of every code: a configuration does not say for which one it was made.
  Search findRow(
      const std::wstring& family, const std::wstring& metal, const std::wstring& standard,
      const std::function<bool(const TableText&, const TableText::Row&)>& isMeant) const {
    Search search;
    for (const ElectricalCode& electrical : codes_) {
      const SiteTable* table = tables_.find(family + metal + L"_" + standard + L"_" + electrical.name);
      if (table == nullptr) continue;
      search.last = table;
      for (const TableText::Row& row : table->text.rows)
        search.isFound = search.isFound || isMeant(table->text, row);
    }
    return search;
  }

  void checkRating(const std::wstring& code, const std::vector<std::wstring>& setup, const wchar_t* family) {
    const std::wstring type = at(setup, setupplace::type);
    if (type.empty()) return;
    bool tableFound = false;
    std::wstring today; // what the tables have for the motor, when it is another current
    for (const ElectricalCode& electrical : codes_) {
      const SiteTable* table = tables_.resolve(family, electrical.name);
      if (table == nullptr) continue;
      tableFound = true;
      const int column = table->text.columnOf(L"FLA (A)");
      for (const TableText::Row& row : table->text.rows) {
        if (!isSame(*table, row, setup)) continue;
        if (column == 0 || isEqual(row.cell(column), at(setup, setupplace::current))) return;
        today = row.cell(column);
      }
    }
    const std::wstring motor = type + L" " + at(setup, setupplace::load) + L" " +
                               at(setup, setupplace::units) + L", " + at(setup, setupplace::voltage) + L" V";
    if (!today.empty())
      findings_.add(
          L"saved-current-changed", placeOf(code),
          {{L"saved", name_},
           {L"motor", motor},
           {L"current", at(setup, setupplace::current)},
           {L"today", today}});
    else if (tableFound)
      findings_.add(L"saved-motor-gone", placeOf(code), {{L"saved", name_}, {L"motor", motor}});
  }

  /// Whether two cells say the same; a configuration that holds nothing contradicts nothing.
  static bool isEqual(const std::wstring& cell, const std::wstring& saved) {
    const std::optional<double> number = brenvolt::plainNumber(cell);
    const std::optional<double> other = brenvolt::plainNumber(saved);
    if (number && other) return std::abs(*number - *other) <= brenvolt::numberTolerance;
    return saved.empty() || equalsOrdinalNoCase(cell, saved);
  }

  static bool isSame(
      const SiteTable& table, const TableText::Row& row, const std::vector<std::wstring>& setup) {
    struct Field {
      const wchar_t* column;
      std::size_t place;
    };
    constexpr Field fields[] = {
        {L"Type", setupplace::type},        {L"Load", setupplace::load},
        {L"Units", setupplace::units},      {L"Voltage (V)", setupplace::voltage},
        {L"Phase", setupplace::phase},      {L"Frequency (HZ)", setupplace::frequency},
        {L"Speed (RPM)", setupplace::speed}};
    return std::ranges::all_of(fields, [&](const Field& field) {
      const int column = table.text.columnOf(field.column);
      return column == 0 || isEqual(row.cell(column), at(setup, field.place));
    });
  }

  const SiteModel& site_;
  const TableSet& tables_;
  const std::vector<ElectricalCode>& codes_;
  Findings& findings_;
  std::filesystem::path path_;
  FindingPlace place_;
  std::wstring name_; ///< of the configuration at work
  std::vector<SavedPart> parts_;
};

} // namespace

std::vector<SavedPart> checkSaved(
    const SiteModel& site, const TableSet& tables, const std::vector<ElectricalCode>& codes,
    Findings& findings) {
  return SavedCheck(site, tables, codes, findings).run();
}

} // namespace circuits
