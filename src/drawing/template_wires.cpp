#include "drawing/template_wires.h"

#include "text/compare.h"

#include <set>
#include <string>
#include <utility>

namespace brenvolt {

namespace {

using Codes = std::set<std::wstring, CollatingLess>;

void collectCodes(const ZanWireFormatter& formats, Codes& codes) {
  for (const auto& [format, code] : formats.types())
    codes.insert(code);
  for (const auto& [numbers, code] : formats.numbers())
    codes.insert(code);
}

void addPositions(const ZanWireFormatter& formats, const Codes& taken, ZanWireFormatter& merged) {
  for (const auto& [format, code] : formats.types())
    if (!taken.contains(code)) merged.AddWireType(format, code);
  for (const auto& [numbers, code] : formats.numbers())
    if (!taken.contains(code)) merged.AddWireNumbers(numbers, code);
}

} // namespace

ZanWireFormatter TemplateWires::formats(SamePosition rule) const {
  ZanWireFormatter merged;
  Codes taken;
  if (rule == SamePosition::eachCounts) {
    for (const Template& each : templates_)
      merged.Merge(each.formats);
    return merged;
  }
  for (auto each = templates_.rbegin(); each != templates_.rend(); ++each) {
    addPositions(each->formats, taken, merged);
    collectCodes(each->formats, taken);
  }
  return merged;
}

void TemplateWires::add(std::int32_t run, ZanWireFormatter formats) {
  if (formats.types().empty() && formats.numbers().empty()) return;
  templates_.push_back({run, std::move(formats)});
}

void TemplateWires::takeBack(std::int32_t run) {
  if (run > 0) std::erase_if(templates_, [run](const Template& each) { return each.run == run; });
}

void TemplateWires::joinRun(std::int32_t run, std::int32_t former) {
  for (Template& each : templates_)
    if (each.run == run) each.run = former;
}

} // namespace brenvolt
