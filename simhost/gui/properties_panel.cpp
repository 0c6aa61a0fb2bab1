// The rows.
#include "simhost/gui/properties_panel.h"

#include "simhost/qt/empty_note.h"
#include "simhost/qt/qt_text.h"

#include <QHeaderView>

namespace simhost {

PropertiesPanel::PropertiesPanel(const HostTexts& texts, QWidget* parent) : QTreeWidget(parent) {
  setObjectName(QStringLiteral("properties"));
  setRootIsDecorated(false);
  setUniformRowHeights(true);
  setColumnCount(2);
  header()->hide();
  showWhenEmpty(*this, texts(HostText::nothingSelected));
}

void PropertiesPanel::setRows(const PropertyRows& rows) {
  clear();
  QList<QTreeWidgetItem*> items;
  for (const auto& [name, value] : rows) {
    auto* item = new QTreeWidgetItem({name, value});
    item->setToolTip(1, value);
    items.append(item);
  }
  addTopLevelItems(items);
  resizeColumnToContents(0);
}

QString kindWords(const HostTexts& texts, EntityKind kind) {
  switch (kind) {
  case EntityKind::line:
    return texts(HostText::kindLine);
  case EntityKind::polyline:
    return texts(HostText::kindPolyline);
  case EntityKind::circle:
    return texts(HostText::kindCircle);
  case EntityKind::arc:
    return texts(HostText::kindArc);
  case EntityKind::blockReference:
    return texts(HostText::kindSymbol);
  case EntityKind::text:
  case EntityKind::attribute:
  case EntityKind::attributeDefinition:
    return texts(HostText::kindText);
  }
  return {};
}

QString entityLine(
    const HostTexts& texts, const DrawingDatabase& drawing, KvDbHandle handle,
    const circuits::CircuitObject* circuit) {
  const EntityNode* node = drawing.find(handle);
  const std::optional<EntityFacts> facts = factsOf(drawing, handle);
  if (node == nullptr || !facts) return {};
  const auto attribute = [&facts](std::wstring_view tag) { return toQt(facts->attribute(tag)); };
  const Layer* layer = drawing.store().findLayer(facts->layer);
  QString text = attribute(L"TAG1");
  if (!text.isEmpty()) {
    for (const wchar_t* more : {L"RATING1", L"DESC1"})
      if (const QString value = attribute(more); !value.isEmpty()) text += QStringLiteral(", ") + value;
  } else if (layer != nullptr && layer->wireSettings && node->value.kind() == EntityKind::line) {
    text = texts(HostText::wireOf, {toQt(facts->layer)});
  } else {
    text = kindWords(texts, node->value.kind()) + QStringLiteral(", ") +
           texts(HostText::layerOf, {toQt(facts->layer)});
  }
  if (circuit != nullptr && attribute(L"TAG1") != toQt(circuit->name()))
    text += QStringLiteral(", ") + texts(HostText::circuitOf, {toQt(circuit->name())});
  return text;
}

PropertyRows propertyRows(
    const HostTexts& texts, const EntityNode* entity, const std::optional<EntityFacts>& facts,
    const circuits::CircuitObject* circuit) {
  PropertyRows rows;
  const auto add = [&](HostText name, const QString& value) {
    if (!value.isEmpty()) rows.emplace_back(texts(name), value);
  };
  if (entity != nullptr && facts) {
    add(HostText::propertyKind, kindWords(texts, entity->value.kind()));
    add(HostText::propertyLayer, toQt(facts->layer));
    add(HostText::propertySymbol, toQt(facts->block));
    for (const auto& [tag, value] : facts->attributes)
      if (!value.empty()) rows.emplace_back(toQt(tag), toQt(value));
    add(HostText::propertyHandle, toQt(facts->handle));
  }
  if (circuit != nullptr) {
    const auto field = [circuit](std::wstring_view name) {
      return toQt(circuitField(circuit->fields, name));
    };
    add(HostText::propertyCircuit, toQt(circuit->name()));
    add(HostText::columnType, field(L"circuit") + QStringLiteral(", ") + field(L"type"));
    add(HostText::propertyConfiguration, field(L"configuration"));
    add(HostText::propertyPlace, field(L"point"));
  }
  return rows;
}

} // namespace simhost
