#include "project/entry_content.h"

#include "project/history_names.h"
#include "text/numbers.h"

namespace brenvolt {

namespace {

constexpr std::wstring_view fullSize = L"1.000000";

void appendRow(XmlElement group, const EntryRow& row) {
  XmlElement element = group.appendChild(row.element);
  for (const auto& [name, value] : row.properties) {
    XmlElement property = element.appendChild(xmlname::property);
    property.setAttribute(xmlname::name, name);
    property.setAttribute(xmlname::value, value);
  }
}

void appendMarker(XmlElement history, const EntryMarker& marker) {
  XmlElement element = history.appendChild(xmlname::marker);
  element.setAttribute(xmlname::code, marker.code);
  element.setAttribute(
      xmlname::tag, marker.code + L"." + formatInt(marker.ordinal) + L"." + formatInt(marker.depth));
  for (const EntryOption& option : marker.options) {
    XmlElement select = element.appendChild(xmlname::selectOption);
    select.setAttribute(xmlname::uiTitle, option.group);
    select.setAttribute(xmlname::uiPrompt, option.title);
    select.setAttribute(xmlname::uiValue, formatInt(option.value));
  }
  for (const EntryRow& part : marker.parts)
    appendRow(element, part);
  if (marker.rows.empty()) return;
  const XmlElement group = element.appendChild(xmlname::controlGroup);
  for (const EntryRow& row : marker.rows)
    appendRow(group, row);
}

} // namespace

void appendEntry(HistoryFile& file, const EntryContent& entry) {
  XmlElement history = file.makeParents(entry.key).type.appendChild(xmlname::history);
  history.setAttribute(xmlname::name, entry.key.name);
  history.setAttribute(xmlname::componentScale, fullSize);
  history.setAttribute(xmlname::circuitScale, fullSize);
  if (!entry.worksheet.empty())
    history.appendChild(xmlname::historyCheck).setAttribute(xmlname::worksheet, entry.worksheet);
  for (const EntryMarker& marker : entry.markers)
    appendMarker(history, marker);
}

} // namespace brenvolt
