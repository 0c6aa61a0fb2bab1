// What is selected, property by property: of an entity what a user may learn of it, and the circuit that it belongs to.
#pragma once

#include "circuits/provenance/circuit_objects.h"
#include "simhost/gui/host_texts.h"
#include "simhost/gui/scene.h"

#include <QTreeWidget>

#include <optional>
#include <utility>
#include <vector>

namespace simhost {

using PropertyRows = std::vector<std::pair<QString, QString>>;

class PropertiesPanel final : public QTreeWidget {
public:
  explicit PropertiesPanel(const HostTexts& texts, QWidget* parent = nullptr);

  /// Name and value of each; none for no selection.
  void setRows(const PropertyRows& rows);
};

/// "Line", "Symbol" and so on.
[[nodiscard]] QString kindWords(const HostTexts& texts, EntityKind kind);

/// An entity in a line, as it is shown when the pointer is over it: its tag with what it is, else kind and layer; and its
/// circuit, which may be missing. Empty for a handle of no entity.
[[nodiscard]] QString entityLine(
    const HostTexts& texts, const DrawingDatabase& drawing, KvDbHandle handle,
    const circuits::CircuitObject* circuit);

/// Each may be missing.
[[nodiscard]] PropertyRows propertyRows(
    const HostTexts& texts, const EntityNode* entity, const std::optional<EntityFacts>& facts,
    const circuits::CircuitObject* circuit);

} // namespace simhost
