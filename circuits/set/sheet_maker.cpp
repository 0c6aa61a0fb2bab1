// Placing by rows: the order of the list is kept, so that a reader finds a circuit where the list has it.
#include "circuits/set/sheet_maker.h"

#include "circuits/set/label_places.h"
#include "simhost/drawing/display_list.h"
#include "simhost/host/errors.h"
#include "text/compare.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace circuits {

using simhost::Box;
using simhost::DrawingDatabase;

namespace {

/// A place of the grid that drawings keep to, so that wires of a moved circuit stay on it.
constexpr double grid = 1.0;

double onGrid(double value) {
  return std::round(value / grid) * grid;
}

double frameNumber(const DrawingDatabase& frame, std::wstring_view name, const std::string& file) {
  const simhost::VariableValue* value = frame.variable(name);
  if (value != nullptr) {
    if (const double* real = std::get_if<double>(value)) return *real;
    if (const auto* integer = std::get_if<std::int32_t>(value)) return *integer;
  }
  throw simhost::BadInput(
      file + ": has no number in the variable " + std::string(name.begin(), name.end()) +
      ", which a frame needs to say where circuits go");
}

} // namespace

Box shownExtents(const DrawingDatabase& drawing) {
  Box box;
  if (const auto items = simhost::displayList(drawing, drawing.currentSpace()))
    for (const simhost::DisplayItem& item : *items)
      if (!isEmptyText(item.shape)) box.include(simhost::boxOf(item.shape));
  return box;
}

Box frameArea(const DrawingDatabase& frame, const std::string& file) {
  Box area;
  area.left = frameNumber(frame, L"AREA_LEFT", file);
  area.bottom = frameNumber(frame, L"AREA_BOTTOM", file);
  area.right = frameNumber(frame, L"AREA_RIGHT", file);
  area.top = frameNumber(frame, L"AREA_TOP", file);
  if (!(area.width() > 0.0) || !(area.height() > 0.0))
    throw simhost::BadInput(file + ": its area for circuits has no extent: see AREA_LEFT to AREA_TOP");
  return area;
}

std::vector<SheetPlan> planSheets(
    const std::vector<Box>& extents, const Box& area, double gap, std::vector<std::size_t>& tooLarge) {
  std::vector<SheetPlan> sheets;
  double x = 0.0;
  double top = 0.0;    // of the row at work
  double bottom = 0.0; // of the lowest circuit in it
  const auto beginSheet = [&] {
    sheets.emplace_back();
    x = area.left;
    top = bottom = area.top;
  };
  for (std::size_t circuit = 0; circuit < extents.size(); ++circuit) {
    const Box& box = extents[circuit];
    if (box.isEmpty()) continue;
    // Moves keep to the grid, which takes up to one square more.
    const double width = std::ceil(box.width() / grid + 1.0) * grid;
    const double height = std::ceil(box.height() / grid + 1.0) * grid;
    if (width > area.width() || height > area.height()) {
      tooLarge.push_back(circuit);
      continue;
    }
    if (sheets.empty()) beginSheet();
    if (x + width > area.right) {
      x = area.left;
      top = bottom - gap;
    }
    if (top - height < area.bottom) beginSheet();
    sheets.back().circuits.emplace_back(
        circuit, KvPoint3d{onGrid(x + grid / 2.0 - box.left), onGrid(top - grid / 2.0 - box.top), 0.0});
    x += width + gap;
    bottom = std::min(bottom, top - height);
  }
  return sheets;
}

void fillFrame(DrawingDatabase& sheet, const FrameTexts& texts) {
  const simhost::EntityNode* node = sheet.store().findBlock(sheet.modelSpace())->first;
  for (; node != nullptr; node = node->next) {
    // A frame's own block; what a circuit brought has its marks.
    if (simhost::provenanceOf(node->value)) continue;
    for (const KvDbHandle handle : std::vector<KvDbHandle>(node->attributes)) {
      const simhost::EntityNode* attribute = sheet.find(handle);
      if (attribute == nullptr) continue;
      simhost::Entity value = attribute->value;
      auto& shape = std::get<simhost::Attribute>(value.shape);
      for (const auto& [tag, text] : texts)
        if (brenvolt::equalsOrdinalNoCase(tag, shape.tag)) shape.text.text = text;
      sheet.changeEntity(handle, std::move(value));
    }
  }
}

} // namespace circuits
