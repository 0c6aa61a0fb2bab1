// The elements of a history, made from markers. Attributes are set in the order in which the file has them.
#include "drawing/history.h"
#include "project/history_names.h"
#include "text/numbers.h"

namespace brenvolt {

bool ZanXmlHistory::AppendCircuit(XmlElement parent, const HistoryKey& key, XmlElement& element) {
  element = parent.appendChild(xmlname::circuit);
  element.setAttribute(xmlname::name, key.circuit);
  return true;
}

bool ZanXmlHistory::AppendCircuitType(XmlElement parent, const HistoryKey& key, XmlElement& element) {
  element = parent.appendChild(xmlname::circuitType);
  element.setAttribute(xmlname::name, key.type);
  return true;
}

bool ZanXmlHistory::AppendHistory(XmlElement parent, const HistoryEntry& entry, XmlElement& element) {
  element = parent.appendChild(xmlname::history);
  element.setAttribute(xmlname::name, entry.key.name);
  element.setAttribute(xmlname::componentScale, entry.componentScale);
  element.setAttribute(xmlname::circuitScale, entry.circuitScale);
  element.appendChild(xmlname::historyCheck).setAttribute(xmlname::worksheet, entry.worksheet);
  return true;
}

bool ZanXmlHistory::AppendMarkers(XmlElement parent, ZanDwgMarkerList& markers) {
  ZanDwgMarkerListIterator walk(&markers);
  for (walk.First(); !walk.Done(); walk.Next())
    if (walk.Current()->hasOptions() && !AppendMarker(parent, *walk.Current())) return false;
  return true;
}

bool ZanXmlHistory::AppendMarker(XmlElement parent, const ZanDwgMarker& marker) {
  XmlElement element = parent.appendChild(xmlname::marker);
  element.setAttribute(xmlname::code, marker.code);
  element.setAttribute(xmlname::tag, marker.GetKey());
  for (const ZanOptionGroup& group : marker.record.groups)
    if (!AppendSelectOption(element, group)) return false;
  for (const ZanAnnotationDataList::Item& item : marker.catalog.items())
    if (!AppendRow(element, item)) return false;
  if (marker.controls.isEmpty()) return true;

  const XmlElement controlGroup = element.appendChild(xmlname::controlGroup);
  for (const ZanAnnotationDataList::Item& item : marker.controls.items())
    if (!AppendRow(controlGroup, item)) return false;
  return true;
}

bool ZanXmlHistory::AppendSelectOption(XmlElement parent, const ZanOptionGroup& group) {
  const ZanOption* option = group.selected();
  if (option == nullptr) return true;
  XmlElement element = parent.appendChild(xmlname::selectOption);
  element.setAttribute(xmlname::uiTitle, group.title);
  element.setAttribute(xmlname::uiPrompt, option->text);
  element.setAttribute(xmlname::uiValue, formatInt(option->value));
  return true;
}

bool ZanXmlHistory::AppendRow(XmlElement parent, const ZanAnnotationDataList::Item& item) {
  if (item.list)
    for (const ZanAnnotationDataList::Item& nested : item.list->items())
      if (!AppendRow(parent, nested)) return false;
  // A row without a name has no place in the format.
  if (item.row == nullptr || item.row->name.empty()) return true;
  const XmlElement element = parent.appendChild(item.row->name);
  for (const ZanAnnotationField& field : item.row->fields)
    if (!field.name.empty() && !AppendProperty(element, field)) return false;
  return true;
}

bool ZanXmlHistory::AppendProperty(XmlElement parent, const ZanAnnotationField& field) {
  XmlElement element = parent.appendChild(xmlname::property);
  element.setAttribute(xmlname::name, field.name);
  element.setAttribute(xmlname::value, field.value);
  return true;
}

} // namespace brenvolt
