#include "project/history_file.h"

#include "platform/file_read.h"
#include "project/history_names.h"
#include "text/compare.h"
#include "text/numbers.h"

namespace brenvolt {

namespace {

constexpr double oldestVersion = 1.0;
constexpr std::string_view byteOrderMark = "\xFF\xFE";

/// The first child whose "Name" a reader would call the same.
XmlElement findNamed(XmlElement parent, std::wstring_view elementName, std::wstring_view name) {
  for (const XmlElement& child : parent.children(elementName))
    if (equalsCollating(child.attribute(xmlname::name), name)) return child;
  return {};
}

XmlElement appendNamed(XmlElement parent, std::wstring_view elementName, std::wstring_view name) {
  XmlElement element = parent.appendChild(elementName);
  element.setAttribute(xmlname::name, name);
  return element;
}

void collectProperties(XmlElement group, std::wstring_view setupName, HistoryProperties& pairs) {
  for (const XmlElement& setup : group.children(setupName))
    for (const XmlElement& property : setup.children(xmlname::property))
      pairs.emplace_back(property.attribute(xmlname::name), property.attribute(xmlname::value));
}

/// The number of the second setup distinguishes its labels and those of the following ones.
std::wstring withSetupNumber(std::wstring label, int setup) {
  if (setup > 1) label += L" - " + formatInt(setup);
  return label;
}

} // namespace

std::wstring folderOf(std::wstring_view path) {
  // Both separators: the workbook's path comes from the host in the manner of the system that it runs on.
  const std::size_t separator = path.find_last_of(L"\\/");
  return separator == std::wstring_view::npos ? std::wstring() : std::wstring(path.substr(0, separator + 1));
}

std::wstring historyPathOf(std::wstring_view workbook) {
  std::wstring path = folderOf(workbook);
  if (!path.empty()) path += historyFileName;
  return path;
}

HistoryFile::State HistoryFile::read(const std::wstring& path) {
  const FileContent file = readWholeFile(path);
  // What was read before stays to be read, but no longer to be written.
  state_ = file.exists ? State::refused : State::absent;
  error_ = file.fault;
  auto read = std::make_unique<XmlDocument>();
  if (!file.isRead() || !read->read(file.bytes, error_)) return state_;

  document_ = std::move(read);
  root_ = document_->root();
  error_.clear();
  if (!root_.isNamed(xmlname::brenvoltHistory))
    error_ = L"The root element is not " + std::wstring(xmlname::brenvoltHistory) + L".";
  else if (!(toDouble(root_.attribute(xmlname::version)) >= oldestVersion))
    error_ = L"The version is not 1.0 or later.";
  else
    state_ = State::accepted;
  return state_;
}

void HistoryFile::startEmpty(std::wstring_view context) {
  document_ = std::make_unique<XmlDocument>();
  root_ = document_->createRoot(xmlname::brenvoltHistory);
  root_.setAttribute(xmlname::context, context);
  root_.setAttribute(xmlname::version, L"1.0");
  state_ = State::accepted;
}

void HistoryFile::forget() {
  document_.reset();
  root_ = {};
  state_ = State::absent;
}

HistoryFile::Path HistoryFile::find(const HistoryKey& key) const {
  Path path;
  path.circuit = findNamed(root_, xmlname::circuit, key.circuit);
  path.type = findNamed(path.circuit, xmlname::circuitType, key.type);
  path.history = findNamed(path.type, xmlname::history, key.name);
  return path;
}

std::vector<std::wstring> HistoryFile::names(std::wstring_view circuit, std::wstring_view type) const {
  std::vector<std::wstring> names;
  const XmlElement typeElement =
      findNamed(findNamed(root_, xmlname::circuit, circuit), xmlname::circuitType, type);
  for (const XmlElement& history : typeElement.children(xmlname::history))
    names.push_back(history.attribute(xmlname::name));
  return names;
}

std::vector<HistoryKey> HistoryFile::keys() const {
  std::vector<HistoryKey> keys;
  for (const XmlElement& circuit : root_.children(xmlname::circuit))
    for (const XmlElement& type : circuit.children(xmlname::circuitType))
      for (const XmlElement& history : type.children(xmlname::history))
        keys.push_back(
            {circuit.attribute(xmlname::name), type.attribute(xmlname::name),
             history.attribute(xmlname::name)});
  return keys;
}

std::optional<HistorySummary> HistoryFile::summary(const HistoryKey& key) const {
  const XmlElement history = key.isComplete() ? find(key).history : XmlElement();
  if (history.isNull()) return std::nullopt;
  HistorySummary summary;
  summary.componentScale = history.attribute(xmlname::componentScale);
  summary.circuitScale = history.attribute(xmlname::circuitScale);
  int setups = 0;
  for (const XmlElement& marker : history.children(xmlname::marker)) {
    for (const XmlElement& group : marker.children(xmlname::controlGroup)) {
      HistoryProperties pairs;
      collectProperties(group, xmlname::motorSetup, pairs);
      collectProperties(group, xmlname::loadSetup, pairs);
      if (pairs.empty()) continue;
      ++setups;
      for (auto& [label, value] : pairs)
        summary.pairs.emplace_back(withSetupNumber(std::move(label), setups), std::move(value));
    }
    for (const XmlElement& option : marker.children(xmlname::selectOption))
      summary.pairs.emplace_back(
          withSetupNumber(option.attribute(xmlname::uiTitle), setups), option.attribute(xmlname::uiPrompt));
  }
  return summary;
}

HistoryFile::Path HistoryFile::makeParents(const HistoryKey& key) {
  Path path = find(key);
  if (path.circuit.isNull()) path.circuit = appendNamed(root_, xmlname::circuit, key.circuit);
  if (path.type.isNull()) path.type = appendNamed(path.circuit, xmlname::circuitType, key.type);
  return path;
}

void HistoryFile::put(const HistoryKey& key, XmlElement history) {
  Path path = makeParents(key);
  if (!path.history.isNull()) path.type.removeChild(path.history);
  path.type.appendCopy(history).setAttribute(xmlname::name, key.name);
}

bool HistoryFile::remove(const HistoryKey& key) {
  Path path = find(key);
  if (path.history.isNull()) return false;
  path.type.removeChild(path.history);
  return true;
}

std::string HistoryFile::bytes() const {
  return std::string(byteOrderMark) + document_->serializeUtf16Le(xmlDeclarationData);
}

} // namespace brenvolt
