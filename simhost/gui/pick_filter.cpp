#include "simhost/gui/pick_filter.h"

#include "text/compare.h"
#include "text/split.h"

#include <array>
#include <utility>

namespace simhost {
namespace {

constexpr std::wstring_view paramsApplication = L"ORL_QN_BV_CIRCPARAMS";

/// How motors and loads are known: by letters of their block's name, or by their data.
struct LoadKind {
  std::wstring_view blockLetters; ///< after the first letter of the name
  std::wstring_view group;        ///< that asked for the data
};
constexpr LoadKind motorKind = {L"MO", L"!MCC_CTRL"};
constexpr LoadKind loadKind = {L"DV", L"!PF_CTRL"};

bool isOfKind(const DrawingDatabase& drawing, const EntityNode& node, const LoadKind& kind) {
  const auto* reference = std::get_if<BlockReference>(&node.value.shape);
  const BlockNode* block = reference == nullptr ? nullptr : drawing.store().findBlock(reference->block);
  if (block == nullptr) return false;
  if (block->name.size() >= 3 &&
      brenvolt::equalsOrdinalNoCase(std::wstring_view(block->name).substr(1, 2), kind.blockLetters))
    return true;
  const std::vector<std::wstring>* texts = findData(node.value, paramsApplication);
  return texts != nullptr && !texts->empty() && texts->front().find(kind.group) != std::wstring::npos;
}

bool isComponent(const DrawingDatabase& drawing, const EntityNode& node) {
  for (const KvDbHandle handle : node.attributes)
    if (const EntityNode* attribute = drawing.find(handle)) {
      const std::wstring& tag = std::get<Attribute>(attribute->value.shape).tag;
      if (brenvolt::equalsOrdinalNoCase(tag, L"TAG1") || brenvolt::equalsOrdinalNoCase(tag, L"TAG2"))
        return true;
    }
  return false;
}

} // namespace

PickKind pickKindOf(const QString& form) {
  constexpr std::array kinds = {
      std::pair{"ZanDlgMotorSelect", PickKind::motor}, std::pair{"ZanDlgPowerFeed", PickKind::load},
      std::pair{"ZanDlgConfig", PickKind::motorOrLoad}};
  for (const auto& [name, kind] : kinds)
    if (form == QLatin1String(name)) return kind;
  return PickKind::any;
}

bool fits(const DrawingDatabase& drawing, KvDbHandle entity, PickKind kind) {
  const EntityNode* node = drawing.find(entity);
  if (node == nullptr) return false;
  switch (kind) {
  case PickKind::any:
    return true;
  case PickKind::circuit:
    return provenanceOf(node->value).has_value();
  case PickKind::motor:
    return isOfKind(drawing, *node, motorKind);
  case PickKind::load:
    return isOfKind(drawing, *node, loadKind);
  case PickKind::motorOrLoad:
    return isOfKind(drawing, *node, motorKind) || isOfKind(drawing, *node, loadKind);
  case PickKind::sized:
    return findData(node->value, paramsApplication) != nullptr || isComponent(drawing, *node);
  }
  return true;
}

HostText reasonOf(PickKind kind) {
  switch (kind) {
  case PickKind::any:
    return HostText::none;
  case PickKind::circuit:
    return HostText::noCircuitThere;
  case PickKind::motor:
    return HostText::onlyMotorFits;
  case PickKind::load:
    return HostText::onlyLoadFits;
  case PickKind::motorOrLoad:
    return HostText::onlyMotorOrLoadFits;
  case PickKind::sized:
    return HostText::onlyComponentFits;
  }
  return HostText::none;
}

} // namespace simhost
