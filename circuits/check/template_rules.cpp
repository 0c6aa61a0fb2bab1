#include "circuits/check/template_rules.h"

#include "circuits/check/similar_name.h"
#include "text/compare.h"
#include "text/encoding.h"
#include "text/numbers.h"
#include "text/split.h"

#include <algorithm>
#include <map>
#include <tuple>
#include <unordered_set>

namespace circuits {

using brenvolt::equalsOrdinalNoCase;
using brenvolt::formatInt;
using brenvolt::toUpper;

namespace {

/// A marker's ORDER and what a build reads it as.
bool isNumber(std::wstring_view text) {
  text = brenvolt::trimView(text);
  if (text.starts_with(L'-')) text.remove_prefix(1);
  const auto points = std::ranges::count(text, L'.');
  return !text.empty() && points <= 1 && text.find_first_not_of(L"0123456789.") == text.npos && text != L".";
}

/// A template by itself: what holds whatever sheet it serves.
class DrawingCheck final {
public:
  DrawingCheck(const TemplateDrawing& drawing, Findings& findings) : drawing_(drawing), findings_(findings) {}

  void run() {
    if (drawing_.drawing == nullptr) {
      findings_.add(L"template-damaged", {.file = drawing_.file}, {{L"reason", drawing_.error}});
      return;
    }
    if (drawing_.markers.empty()) findings_.add(L"template-without-markers", {.file = drawing_.file}, {});
    for (const TemplateMarker& marker : drawing_.markers) {
      checkAttributes(marker);
      if (marker.misc1) checkSettings(marker, *marker.misc1);
      const bool isUnset = marker.misc1 && brenvolt::trimView(*marker.misc1).empty();
      if (marker.isWire() && isUnset)
        findings_.add(L"wire-format-missing", drawing_.place(marker), {{L"wire", marker.code}});
    }
    checkRepeated();
    checkOrders();
    checkWires();
  }

private:
  void checkAttributes(const TemplateMarker& marker) {
    if (marker.code.empty()) findings_.add(L"marker-without-code", drawing_.place(marker), {});
    for (const auto& [name, text] : {std::pair(L"ORDER", &marker.order), std::pair(L"MISC1", &marker.misc1)})
      if (!*text) findings_.add(L"marker-attribute", drawing_.place(marker), {{L"attribute", name}});
    if (marker.order && !isNumber(*marker.order))
      findings_.add(
          L"marker-order", drawing_.place(marker), {*marker.order},
          {{L"order", *marker.order}, {L"read", brenvolt::formatTrimmed(brenvolt::toDouble(*marker.order))}});
  }

  void checkSettings(const TemplateMarker& marker, const std::wstring& misc1) {
    const auto add = [&](std::wstring_view rule, const std::wstring& part, RuleValues values) {
      const std::size_t from = misc1.find(part);
      findings_.add(rule, drawing_.place(marker), {misc1, from, part.size()}, values);
    };
    static const std::vector<std::wstring> known = {L"_WIRETYPE", L"_WIRENUMBERS"};
    for (const std::wstring& part : brenvolt::splitSkippingEmpty(misc1, L';')) {
      const std::size_t equals = part.find(L'=');
      if (equals == std::wstring::npos || !part.starts_with(L'_')) {
        if (marker.isWire()) add(L"wire-setting", part, {{L"setting", part}, {L"similar", L"."}});
        continue;
      }
      const std::wstring name = part.substr(0, equals);
      const std::wstring value = part.substr(equals + 1);
      if (name == known[0])
        checkFormat(marker, part, value, add);
      else if (name == known[1] && value != L"0" && value != L"1")
        add(L"wire-numbers", part, {{L"value", value}});
      else if (name != known[1])
        add(L"wire-setting", part, {{L"setting", name}, {L"similar", didYouMean(similarName(name, known))}});
    }
  }

  template <typename Add>
  static void checkFormat(
      const TemplateMarker& marker, const std::wstring& part, const std::wstring& format, const Add& add) {
    const auto marks = std::ranges::count(format, L'@');
    if (marks % 2 != 0 || marks > 2)
      add(L"wire-format", part, {{L"format", format}});
    else if (marks == 0 && marker.isWire())
      add(L"wire-format-size", part, {{L"format", format}});
  }

  void checkRepeated() {
    std::map<std::tuple<std::wstring, double, double>, const TemplateMarker*> seen;
    for (const TemplateMarker& marker : drawing_.markers)
      if (!seen.try_emplace({toUpper(marker.code), marker.x, marker.y}, &marker).second)
        findings_.add(L"marker-twice", drawing_.place(marker), {{L"code", marker.code}});
  }

  /// Different CODEs with one ORDER run in the order in which they were drawn. Wires, and the markers of two motors, do
  /// not depend on each other.
  void checkOrders() {
    std::map<double, const TemplateMarker*> seen;
    for (const TemplateMarker& marker : drawing_.markers) {
      if (!marker.order || !isNumber(*marker.order)) continue;
      const auto [place, isNew] = seen.try_emplace(brenvolt::toDouble(*marker.order), &marker);
      const TemplateMarker& first = *place->second;
      const bool isOther = !first.suffix().empty() && !marker.suffix().empty() &&
                           !equalsOrdinalNoCase(first.suffix(), marker.suffix());
      const bool isHarmless = isNew || isOther || equalsOrdinalNoCase(first.code, marker.code) ||
                              (first.isWire() && marker.isWire());
      if (!isHarmless)
        findings_.add(
            L"marker-order-twice", drawing_.place(marker),
            {{L"order", *marker.order}, {L"first", first.code}, {L"second", marker.code}});
    }
  }

  void checkWires() {
    std::map<std::wstring, std::vector<const TemplateMarker*>> sets; // by suffix, conductors
    for (const TemplateMarker& marker : drawing_.markers)
      if (marker.isWire() && !marker.isGround()) sets[toUpper(marker.suffix())].push_back(&marker);
    for (const auto& [suffix, wires] : sets) {
      const bool hasGround =
          std::ranges::any_of(drawing_.markers, [&wanted = suffix](const TemplateMarker& each) {
            return each.isGround() && toUpper(each.suffix()) == wanted;
          });
      if (!hasGround)
        findings_.add(
            L"wire-without-ground", drawing_.place(*wires.front()),
            {{L"wire", wires.front()->code}, {L"ground", L"WT01E" + wires.front()->suffix()}});
      checkNumbers(wires);
    }
  }

  /// The conductors of a set count from 1 without a gap: the build hands them out in that order.
  void checkNumbers(const std::vector<const TemplateMarker*>& wires) {
    std::map<int, const TemplateMarker*> byNumber;
    for (const TemplateMarker* wire : wires)
      byNumber.try_emplace(brenvolt::toInt(wire->code.substr(2)), wire);
    int expected = 1;
    for (const auto& [number, wire] : byNumber)
      if (number != expected++) {
        findings_.add(
            L"wire-number", drawing_.place(*wire),
            {{L"wire", wire->code}, {L"missing", formatInt(expected - 1)}});
        return;
      }
  }

  const TemplateDrawing& drawing_;
  Findings& findings_;
};

/// Templates against the sheet whose circuits they serve.
class SheetTemplatesCheck final {
public:
  SheetTemplatesCheck(
      const SiteModel& site, const SheetModel& sheet, std::vector<const TemplateDrawing*> drawings,
      Findings& findings)
      : site_(site), sheet_(sheet), drawings_(std::move(drawings)), findings_(findings) {}

  void run() {
    for (const TemplateDrawing* drawing : drawings_) {
      std::vector<MarkerOfSheet> markers;
      markers.reserve(drawing->markers.size());
      for (const TemplateMarker& marker : drawing->markers)
        markers.push_back({marker, sheet_.findKey(marker.key)});
      for (const MarkerOfSheet& each : markers)
        marked_.insert(each.record);
      for (const MarkerOfSheet& each : markers)
        checkMarker(*drawing, each);
      checkMotors(*drawing, markers);
    }
    const bool allRead = std::ranges::all_of(
        drawings_, [](const TemplateDrawing* drawing) { return drawing->drawing != nullptr; });
    if (drawings_.empty() || !allRead) return; // a marker may be in the one that is missing
    for (const SheetCode& code : sheet_.codes)
      if (code.hasTitle && !code.isRepeated && !marked_.contains(&code))
        findings_.add(
            L"record-without-marker", site_.place(sheet_, code, code.row, sheetcolumn::code), {code.code},
            {{L"code", code.code}, {L"similar", didYouMean(similarName(code.code, markerCodes()))}});
  }

private:
  /// Each record is looked for once.
  struct MarkerOfSheet {
    const TemplateMarker& marker;
    const SheetCode* record; ///< null where the sheet has none
  };

  [[nodiscard]] std::vector<std::wstring> markerCodes() const {
    std::vector<std::wstring> codes;
    for (const TemplateDrawing* drawing : drawings_)
      for (const TemplateMarker& marker : drawing->markers)
        if (sheet_.find(marker.code) == nullptr) codes.push_back(marker.code);
    return codes;
  }

  [[nodiscard]] bool hasMarker(const SheetCode& code) const {
    const std::wstring key = toUpper(code.code);
    return std::ranges::any_of(
        drawings_, [&key](const TemplateDrawing* drawing) { return drawing->keys.contains(key); });
  }

  void checkMarker(const TemplateDrawing& drawing, const MarkerOfSheet& each) {
    const TemplateMarker& marker = each.marker;
    if (marker.code.empty() || each.record != nullptr) return;
    std::vector<std::wstring> codes;
    for (const SheetCode& code : sheet_.codes)
      if (!hasMarker(code)) codes.push_back(code.code);
    findings_.add(
        L"marker-without-record", drawing.place(marker),
        {{L"code", marker.code},
         {L"sheet", sheet_.name},
         {L"similar", didYouMean(similarName(marker.code, codes))}});
  }

  /// Wires and everything that takes a motor's data belong after the marker of their motor.
  void checkMotors(const TemplateDrawing& drawing, const std::vector<MarkerOfSheet>& markers) {
    std::map<std::wstring, const TemplateMarker*> motors; // by suffix
    for (const auto& [marker, record] : markers)
      if (record != nullptr && record->controlGroup() != nullptr)
        motors.try_emplace(marker.suffixKey, &marker);
    if (motors.empty()) return;
    for (const auto& [marker, record] : markers) {
      const auto motor = motors.find(marker.suffixKey);
      if (motor == motors.end()) {
        if (marker.isWire())
          findings_.add(
              L"wire-suffix", drawing.place(marker),
              {{L"wire", marker.code}, {L"motor", motors.begin()->second->code}});
        continue;
      }
      const bool isBefore = marker.order && motor->second->order && &marker != motor->second &&
                            marker.orderNumber <= motor->second->orderNumber;
      if (isBefore && record != nullptr && takesData(*record))
        findings_.add(
            L"marker-before-motor", drawing.place(marker), {*marker.order},
            {{L"code", marker.code}, {L"motor", motor->second->code}, {L"order", *motor->second->order}});
    }
  }

  [[nodiscard]] static bool takesData(const SheetCode& record) {
    return std::ranges::any_of(record.forms, [](const SheetForm& form) {
      return form.column != sheetcolumn::controlForms &&
             brenvolt::findNoCase(form.text, L"#data") != std::wstring::npos;
    });
  }

  const SiteModel& site_;
  const SheetModel& sheet_;
  std::vector<const TemplateDrawing*> drawings_;
  Findings& findings_;
  std::unordered_set<const SheetCode*> marked_; ///< records with a marker
};

void checkCircuitDrawings(const SiteModel& site, TemplateSet& templates, Findings& findings) {
  for (const CircuitEntry& entry : site.entries)
    if (!entry.drawing.empty() && templates.find(entry.drawing).empty())
      findings.add(
          L"template-missing", site.place(circuitListSheet, entry.row, 3), {entry.drawing},
          {{L"template", entry.drawing}});
}

void checkNames(const SiteModel& site, const SheetModel& sheet, TemplateSet& templates, Findings& findings) {
  for (const auto& [code, form, name] : templates.namedBy(sheet))
    if (templates.find(name).empty())
      findings.add(
          L"template-missing", site.place(sheet, *code, form->row, form->column),
          {form->cell, form->cell.find(name, form->from), name.size()}, {{L"template", name}});
}

} // namespace

void checkTemplates(const SiteModel& site, TemplateSet& templates, Findings& findings) {
  checkCircuitDrawings(site, templates, findings);
  std::vector<const TemplateDrawing*> all;
  for (const SheetModel& sheet : site.models) {
    checkNames(site, sheet, templates, findings);
    if (std::ranges::none_of(sheet.codes, &SheetCode::hasTitle)) continue; // which is a finding of its own
    std::vector<const TemplateDrawing*> drawings = templates.templatesOf(sheet);
    for (const TemplateDrawing* drawing : drawings)
      if (std::ranges::find(all, drawing) == all.end()) {
        all.push_back(drawing);
        DrawingCheck(*drawing, findings).run();
      }
    SheetTemplatesCheck(site, sheet, std::move(drawings), findings).run();
  }
  checkWireFormats(all, findings);
}

} // namespace circuits
