// Inserting blocks into a space: a reference with the attributes of its definition, and whole drawings, such as
// templates.
#pragma once

#include "simhost/drawing/drawing_database.h"

#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace simhost {

/// Texts by tag; tags compare without case.
using AttributeTexts = std::vector<std::pair<std::wstring, std::wstring>>;

/// Places a block with an attribute for each of its definitions: position, height and rotation follow the placement,
/// a tag without a text of its own takes the default. A text whose tag the block does not define is a fault.
[[nodiscard]] Fault blockInsertionFault(
    const DrawingDatabase& drawing, KvDbHandle owner, const Entity& reference, const AttributeTexts& texts);
/// Answers the reference.
KvDbHandle insertBlock(
    DrawingDatabase& drawing, KvDbHandle owner, const Entity& reference, const AttributeTexts& texts);

class Placement;
/// The record of a circuit that is placed: the point at which it was built goes with it.
[[nodiscard]] CircuitFields placedCircuit(CircuitFields fields, const Placement& placement);

enum class InsertionForm {
  exploded, ///< the entities of the source's model space come in one by one
  asBlock   ///< they become a block, placed once
};

struct DrawingInsertion {
  KvPoint3d position;
  double scale = 1.0; ///< not 0
  double rotationDegrees = 0.0;
  InsertionForm form = InsertionForm::exploded;
  std::wstring blockName{}; ///< with `asBlock`
  std::function<std::wstring(const std::wstring& layer)>
      layer{}; ///< new name of a layer; without one names stay
};

/// Why the source cannot come into this owner (a block or a space); nothing when it can.
[[nodiscard]] Fault drawingInsertionFault(
    const DrawingDatabase& target, KvDbHandle owner, const DrawingDatabase& source,
    const DrawingInsertion& insertion);
/// Brings in the source's model space in its order with new handles, attributes and entity data included. Layers and
/// block definitions that the target does not have yet come along; where it has one of the same name its own
/// holds, so what is already drawn keeps its look. Answers the new entities, attributes not counted.
std::vector<KvDbHandle> insertDrawing(
    DrawingDatabase& target, KvDbHandle owner, const DrawingDatabase& source,
    const DrawingInsertion& insertion);

} // namespace simhost
