// Saving, opening and deleting of histories; history_append.cpp makes their elements.
#include "drawing/history.h"

#include "host/host_api_documents.h"
#include "host/host_api_lisp.h"
#include "host/resources.h"
#include "platform/file_replace.h"
#include "project/history_names.h"
#include "text/compare.h"
#include "text/format.h"

#include <algorithm>

namespace brenvolt {

namespace {

constexpr std::string_view byteOrderMark = "\xFF\xFE";

void printLine(TextId text, std::initializer_list<FormatArgument> parts) {
  // Without words the parts alone, paths and names, still say what it is about.
  std::wstring format = L"%s";
  for (std::size_t part = 1; part < parts.size(); ++part)
    format += L" %s";
  kvutPrintf((formatText(findText(text).value_or(format), parts) + L"\n").c_str());
}

void reportFault(FileFault::Step step, const std::wstring& path, const std::wstring& reason) {
  const TextId text = step == FileFault::Step::open ? TextId::historyOpenFailed : TextId::historyWriteFailed;
  const std::wstring place = reason.empty() ? path : path + L" (" + reason + L")";
  printLine(text, {std::wstring_view(place)});
}

/// A list, a prompt or a file name of a later program would show such a name as something else.
void requireReadable(std::wstring_view name) {
  const bool hasControl =
      std::any_of(name.begin(), name.end(), [](wchar_t c) { return c < 0x20 || (c >= 0x7F && c < 0xA0); });
  if (hasControl) throw XmlError("the name of a configuration must not contain control characters");
}

} // namespace

ZanXmlHistory::~ZanXmlHistory() = default;

bool ZanXmlHistory::OpenFile(const std::wstring& path) {
  return LoadDocument(path);
}

bool ZanXmlHistory::LoadDocument(const std::wstring& path) {
  if (file_.read(path) != HistoryFile::State::accepted) error = file_.error();
  setCurrentHistory({});
  deletions_.clear();
  return file_.isAccepted();
}

bool ZanXmlHistory::CreateFile(
    const std::wstring& path, const HistoryEntry& entry, ZanDwgMarkerList& markers) {
  std::string xml;
  return BuildDocument(entry, markers, xml) && WriteDocument(path, xml);
}

bool ZanXmlHistory::BuildDocument(const HistoryEntry& entry, ZanDwgMarkerList& markers, std::string& xml) {
  const KvWaitCursor waiting;
  HistoryFile created;
  created.startEmpty(context);
  append(created, entry, markers);
  xml = created.bytes().substr(byteOrderMark.size());
  // Nothing is held afterwards, so that the next save reads what is on disk by then.
  setCurrentHistory({});
  file_.forget();
  return true;
}

bool ZanXmlHistory::WriteDocument(const std::wstring& path, const std::string& xml) {
  const std::optional<FileFault> fault = writeWholeFile(path, std::string(byteOrderMark) + xml);
  if (fault) reportFault(fault->step, path, fault->reason);
  return !fault;
}

bool ZanXmlHistory::AddHistory(
    const HistoryEntry& entry, ZanDwgMarkerList& markers, const std::wstring& path) {
  if (!file_.isAccepted() || !entry.key.isComplete()) return false;
  append(file_, entry, markers);
  return WriteDocument(path, file_.bytes().substr(byteOrderMark.size()));
}

bool ZanXmlHistory::SaveHistory(const HistoryEntry& entry, ZanDwgMarkerList& markers) {
  if (!entry.key.isComplete() || historyPathOf(context).empty()) return false;
  setCurrentHistory({});
  return report(changeHistory(context, file_, [&](HistoryFile& present) {
    std::vector<HistoryRecord> records{recordOf(HistoryAction::saved, present, entry.key)};
    append(present, entry, markers);
    return records;
  }));
}

void ZanXmlHistory::append(HistoryFile& file, const HistoryEntry& entry, ZanDwgMarkerList& markers) {
  requireReadable(entry.key.name);
  HistoryFile::Path found = file.find(entry.key);
  if (!found.history.isNull()) {
    if (found.history == currentHistory_) setCurrentHistory({});
    found.type.removeChild(found.history);
  }
  if (found.circuit.isNull()) AppendCircuit(file.root(), entry.key, found.circuit);
  if (found.type.isNull()) AppendCircuitType(found.circuit, entry.key, found.type);
  // After all others, also when it replaces one: the latest is the last.
  AppendHistory(found.type, entry, found.history);
  AppendMarkers(found.history, markers);
}

bool ZanXmlHistory::report(const HistoryOutcome& outcome) const {
  using Result = HistoryOutcome::Result;
  const std::wstring path = historyPathOf(context);
  switch (outcome.result) {
  case Result::done:
    if (!outcome.keptAs.empty())
      printLine(TextId::historyKept, {std::wstring_view(path), std::wstring_view(outcome.keptAs)});
    return true;
  case Result::unchanged:
    return true;
  case Result::busy:
    printLine(
        TextId::historyBusy,
        {std::wstring_view(path), std::wstring_view(outcome.holder->user),
         std::wstring_view(outcome.holder->machine), std::wstring_view(outcome.holder->process)});
    return false;
  case Result::openFailed:
    reportFault(FileFault::Step::open, path, outcome.reason);
    return false;
  case Result::writeFailed:
    reportFault(FileFault::Step::write, path, outcome.reason);
    return false;
  }
  return false;
}

bool ZanXmlHistory::OpenHistory(const HistoryKey& key) {
  setCurrentHistory({});
  if (!Reload() || !key.isComplete()) return false;
  setCurrentHistory(file_.find(key).history);
  return !currentHistory_.isNull();
}

XmlElement ZanXmlHistory::FindElement(
    std::wstring_view elementName, std::wstring_view attributeName, std::wstring_view value) {
  if (indexedNames_.first != elementName || indexedNames_.second != attributeName) {
    indexedNames_ = {std::wstring(elementName), std::wstring(attributeName)};
    indexedElements_.clear();
    for (const XmlElement& child : currentHistory_.children(elementName))
      indexedElements_.emplace(toUpper(child.attribute(attributeName)), child);
  }
  const auto found = indexedElements_.find(toUpper(value));
  return found == indexedElements_.end() ? XmlElement() : found->second;
}

std::vector<XmlElement> ZanXmlHistory::ListChildren(XmlElement node, std::wstring_view elementName) {
  return node.children(elementName);
}

bool ZanXmlHistory::ReadSelectOptions(XmlElement node, std::vector<HistoryOption>& options) {
  options.clear();
  for (const XmlElement& child : node.children(xmlname::selectOption))
    options.push_back(
        {child.attribute(xmlname::uiTitle), child.attribute(xmlname::uiPrompt),
         child.attribute(xmlname::uiValue)});
  return !options.empty();
}

bool ZanXmlHistory::ReadPropertySets(
    XmlElement node, std::wstring_view elementName, std::vector<HistoryProperties>& sets) {
  sets.clear();
  for (const XmlElement& child : node.children(elementName)) {
    HistoryProperties set;
    for (const XmlElement& property : child.children(xmlname::property))
      set.emplace_back(property.attribute(xmlname::name), property.attribute(xmlname::value));
    if (!set.empty()) sets.push_back(std::move(set));
  }
  return !sets.empty();
}

bool ZanXmlHistory::Reload() {
  const std::wstring path = historyPathOf(context);
  return !path.empty() && OpenFile(path);
}

bool ZanXmlHistory::SaveFile() {
  if (!file_.isAccepted() || historyPathOf(context).empty()) return false;
  if (deletions_.empty()) return true;
  std::vector<HistoryKey> stayed;
  setCurrentHistory({});
  const bool isDone = report(deleteFromHistory(context, file_, deletions_, stayed));
  for (const HistoryKey& each : stayed)
    printLine(TextId::historyDeletionStayed, {std::wstring_view(each.name)});
  if (isDone) deletions_.clear();
  return isDone;
}

bool ZanXmlHistory::GetHistoryNames(
    std::wstring_view circuitName, std::wstring_view typeName, std::vector<std::wstring>& names) const {
  names = file_.names(circuitName, typeName);
  return !names.empty();
}

bool ZanXmlHistory::DeleteHistory(const HistoryKey& key) {
  const XmlElement history = key.isComplete() ? file_.find(key).history : XmlElement();
  if (history.isNull()) return false;
  if (history == currentHistory_) setCurrentHistory({});
  deletions_.push_back({key, history.text()});
  return file_.remove(key);
}

bool ZanXmlHistory::ReadHistory(const HistoryKey& key, HistorySummary& summary) const {
  std::optional<HistorySummary> found = file_.summary(key);
  if (!found) return false;
  summary = std::move(*found);
  return !summary.pairs.empty();
}

void ZanXmlHistory::setCurrentHistory(XmlElement history) {
  currentHistory_ = history;
  indexedNames_ = {};
  indexedElements_.clear();
}

} // namespace brenvolt
