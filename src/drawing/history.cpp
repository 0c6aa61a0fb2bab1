// The document in memory and its way from and to the file; history_append.cpp makes its elements.
#include "drawing/history.h"

#include "drawing/history_file.h"
#include "drawing/history_names.h"
#include "host/host_api_documents.h"
#include "host/host_api_lisp.h"
#include "host/resources.h"
#include "text/compare.h"
#include "text/format.h"
#include "text/numbers.h"

#include <algorithm>

namespace brenvolt {

namespace {

constexpr double oldestVersion = 1.0;

/// The first child whose "Name" a reader would call the same.
XmlElement findNamed(XmlElement parent, std::wstring_view elementName, std::wstring_view name) {
  for (const XmlElement& child : parent.children(elementName))
    if (equalsCollating(child.attribute(xmlname::name), name)) return child;
  return {};
}

void collectProperties(XmlElement group, std::wstring_view setupName, HistoryProperties& pairs) {
  for (const XmlElement& setup : group.children(setupName))
    for (const XmlElement& property : setup.children(xmlname::property))
      pairs.emplace_back(property.attribute(xmlname::name), property.attribute(xmlname::value));
}

/// Labels of the second setup and of what follows it are told apart by its number.
std::wstring withSetupNumber(std::wstring label, int setup) {
  if (setup > 1) label += L" - " + formatInt(setup);
  return label;
}

void tellWriteFailure(TextId text, const std::wstring& path) {
  // Without words the path alone still says what could not be written.
  const std::wstring message = formatText(findText(text).value_or(L"%s"), {path});
  kvutPrintf(formatText(L"%s\n", {message}).c_str());
}

} // namespace

ZanXmlHistory::~ZanXmlHistory() = default;

bool ZanXmlHistory::OpenFile(const std::wstring& path) {
  return LoadDocument(path);
}

bool ZanXmlHistory::LoadDocument(const std::wstring& path) {
  accepted_ = false;
  auto loaded = std::make_unique<XmlDocument>();
  // What was loaded before stays to be read, but no longer to be written.
  if (!loaded->load(path, error)) return false;

  forgetDocument();
  document_ = std::move(loaded);
  root_ = document_->root();
  if (!root_.isNamed(xmlname::brenvoltHistory)) return false;
  accepted_ = toDouble(root_.attribute(xmlname::version)) >= oldestVersion;
  return accepted_;
}

bool ZanXmlHistory::CreateFile(const std::wstring& path, ZanDwgMarkerList& markers) {
  std::string xml;
  if (!BuildDocument(markers, xml)) return false;
  replacesFile_ = true;
  const bool written = WriteDocument(path, xml);
  replacesFile_ = false;
  return written;
}

bool ZanXmlHistory::BuildDocument(ZanDwgMarkerList& markers, std::string& xml) {
  const KvWaitCursor waiting;
  // Nothing is held afterwards, so that the next save reads what is on disk by then.
  forgetDocument();

  XmlDocument created;
  XmlElement root = created.createRoot(xmlname::brenvoltHistory);
  root.setAttribute(xmlname::context, context);
  root.setAttribute(xmlname::version, L"1.0");
  XmlElement circuitElement;
  XmlElement typeElement;
  XmlElement history;
  const bool built = AppendCircuit(root, circuitElement) && AppendCircuitType(circuitElement, typeElement) &&
                     AppendHistory(typeElement, history) && AppendMarkers(history, markers);
  if (built) xml = created.serializeUtf16Le(xmlDeclarationData);
  return built;
}

bool ZanXmlHistory::WriteDocument(const std::wstring& path, const std::string& xml) {
  const OldFile oldFile = replacesFile_ ? OldFile::keepBeside : OldFile::overwrite;
  switch (writeHistoryFile(path, xml, oldFile)) {
  case FileWriteResult::done:
    return true;
  case FileWriteResult::openFailed:
    tellWriteFailure(TextId::historyOpenFailed, path);
    return false;
  case FileWriteResult::writeFailed:
    tellWriteFailure(TextId::historyWriteFailed, path);
    return false;
  }
  return false;
}

bool ZanXmlHistory::AddHistory(ZanDwgMarkerList& markers, const std::wstring& path) {
  if (!accepted_ || historyName.empty() || circuit.empty() || circuitType.empty()) return false;

  HistoryPath found = findHistory(historyName);
  if (!found.history.isNull()) {
    if (found.history == currentHistory_) setCurrentHistory({});
    found.type.removeChild(found.history);
  }
  if (found.circuit.isNull() && !AppendCircuit(root_, found.circuit)) return false;
  if (found.type.isNull() && !AppendCircuitType(found.circuit, found.type)) return false;
  // Behind all others, also when it replaces one: the latest stands last.
  if (!AppendHistory(found.type, found.history) || !AppendMarkers(found.history, markers)) return false;
  return WriteDocument(path, document_->serializeUtf16Le(xmlDeclarationData));
}

bool ZanXmlHistory::SaveHistory(ZanDwgMarkerList& markers) {
  const std::wstring path = filePath();
  if (path.empty()) return false;
  if (accepted_ || OpenFile(path)) return AddHistory(markers, path);
  return CreateFile(path, markers);
}

bool ZanXmlHistory::OpenHistory() {
  setCurrentHistory({});
  if (!Reload()) return false;
  if (historyName.empty() || circuit.empty() || circuitType.empty()) return false;
  setCurrentHistory(findHistory(historyName).history);
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
  const std::wstring path = filePath();
  return !path.empty() && OpenFile(path);
}

bool ZanXmlHistory::SaveFile() {
  const std::wstring path = filePath();
  if (!accepted_ || path.empty()) return false;
  return WriteDocument(path, document_->serializeUtf16Le(xmlDeclarationData));
}

bool ZanXmlHistory::GetHistoryNames(
    std::wstring_view circuitName, std::wstring_view typeName, std::vector<std::wstring>& names) const {
  names.clear();
  const XmlElement circuitElement = findNamed(root_, xmlname::circuit, circuitName);
  const XmlElement typeElement = findNamed(circuitElement, xmlname::circuitType, typeName);
  for (const XmlElement& history : typeElement.children(xmlname::history))
    names.push_back(history.attribute(xmlname::name));
  return !names.empty();
}

bool ZanXmlHistory::DeleteHistory(std::wstring_view name) {
  if (name.empty() || circuit.empty() || circuitType.empty()) return false;
  HistoryPath found = findHistory(name);
  if (found.history.isNull()) return false;
  if (found.history == currentHistory_) setCurrentHistory({});
  found.type.removeChild(found.history);
  return true;
}

bool ZanXmlHistory::ReadHistory(std::wstring_view name, HistorySummary& summary) const {
  if (name.empty() || circuit.empty() || circuitType.empty()) return false;
  const XmlElement history = findHistory(name).history;
  if (history.isNull()) return false;

  summary.componentScale = history.attribute(xmlname::componentScale);
  summary.circuitScale = history.attribute(xmlname::circuitScale);
  summary.pairs.clear();
  int setups = 0;
  for (const XmlElement& marker : history.children(xmlname::marker)) {
    for (const XmlElement& group : marker.children(xmlname::controlGroup)) {
      HistoryProperties pairs;
      collectProperties(group, rowname::motorSetup, pairs);
      collectProperties(group, rowname::loadSetup, pairs);
      if (pairs.empty()) continue;
      ++setups;
      for (auto& [label, value] : pairs)
        summary.pairs.emplace_back(withSetupNumber(std::move(label), setups), std::move(value));
    }
    for (const XmlElement& option : marker.children(xmlname::selectOption))
      summary.pairs.emplace_back(
          withSetupNumber(option.attribute(xmlname::uiTitle), setups), option.attribute(xmlname::uiPrompt));
  }
  return !summary.pairs.empty();
}

std::wstring ZanXmlHistory::filePath() const {
  std::wstring path = folderOf(context);
  if (!path.empty()) path += historyFileName;
  return path;
}

ZanXmlHistory::HistoryPath ZanXmlHistory::findHistory(std::wstring_view name) const {
  HistoryPath path;
  path.circuit = findNamed(root_, xmlname::circuit, circuit);
  path.type = findNamed(path.circuit, xmlname::circuitType, circuitType);
  path.history = findNamed(path.type, xmlname::history, name);
  return path;
}

void ZanXmlHistory::forgetDocument() {
  setCurrentHistory({});
  root_ = {};
  document_.reset();
  accepted_ = false;
}

void ZanXmlHistory::setCurrentHistory(XmlElement history) {
  currentHistory_ = history;
  indexedNames_ = {};
  indexedElements_.clear();
}

} // namespace brenvolt
