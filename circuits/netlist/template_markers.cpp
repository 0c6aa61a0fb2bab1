#include "circuits/netlist/template_markers.h"

#include "text/compare.h"
#include "text/numbers.h"
#include "text/split.h"

namespace circuits {

using brenvolt::equalsOrdinalNoCase;

namespace {

constexpr std::wstring_view markerBlock = L"ZAN_BV_MARKER_BLOCK";

std::optional<std::wstring> attributeOf(
    const simhost::DrawingStore& store, const simhost::EntityNode& reference, std::wstring_view tag) {
  for (const KvDbHandle handle : reference.attributes) {
    const simhost::EntityNode* node = store.findEntity(handle);
    if (node == nullptr || node->isErased) continue;
    const auto* attribute = std::get_if<simhost::Attribute>(&node->value.shape);
    if (attribute != nullptr && equalsOrdinalNoCase(attribute->tag, tag)) return attribute->text.text;
  }
  return std::nullopt;
}

} // namespace

bool TemplateMarker::isWire() const {
  return key.starts_with(L"WT");
}

bool TemplateMarker::isGround() const {
  // WT01E or WT01E-A; WT01-E is a conductor of the motor E.
  return isWire() && key.substr(0, key.rfind(L'-')).find(L'E', 2) != std::wstring::npos;
}

std::wstring TemplateMarker::suffix() const {
  const std::size_t dash = code.rfind(L'-');
  return dash == std::wstring::npos ? std::wstring() : code.substr(dash);
}

std::optional<LayerFormat> TemplateMarker::layerFormat() const {
  constexpr std::wstring_view setting = L"_WIRETYPE=";
  const std::size_t from = misc1 ? misc1->find(setting) : std::wstring::npos;
  if (from == std::wstring::npos) return std::nullopt;
  const std::size_t begin = from + setting.size();
  const std::wstring text = misc1->substr(begin, misc1->find(L';', begin) - begin);
  const std::vector<std::wstring> parts = brenvolt::splitKeepingEmpty(text, L'@');
  constexpr std::size_t withOnePlaceholder = 3;
  if (parts.size() != withOnePlaceholder) return std::nullopt;
  return LayerFormat{from, setting.size() + text.size(), text, parts[0], parts[1], parts[2]};
}

std::vector<TemplateMarker> templateMarkers(const simhost::DrawingDatabase& drawing) {
  std::vector<TemplateMarker> markers;
  const simhost::DrawingStore& store = drawing.store();
  const simhost::BlockNode* space = store.findBlock(drawing.modelSpace());
  for (const simhost::EntityNode* node = space->first; node != nullptr; node = node->next) {
    if (node->isErased) continue;
    const auto* reference = std::get_if<simhost::BlockReference>(&node->value.shape);
    if (reference == nullptr) continue;
    const simhost::BlockNode* block = store.findBlock(reference->block);
    if (block == nullptr || !equalsOrdinalNoCase(block->name, markerBlock)) continue;
    TemplateMarker marker;
    marker.handle = node->handle;
    marker.x = reference->position.x;
    marker.y = reference->position.y;
    marker.code = attributeOf(store, *node, L"CODE").value_or(L"");
    marker.order = attributeOf(store, *node, L"ORDER");
    marker.misc1 = attributeOf(store, *node, L"MISC1");
    marker.key = brenvolt::toUpper(marker.code);
    marker.suffixKey = brenvolt::toUpper(marker.suffix());
    marker.orderNumber = brenvolt::toDouble(marker.order.value_or(L""));
    markers.push_back(std::move(marker));
  }
  return markers;
}

} // namespace circuits
