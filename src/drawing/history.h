// The history file: one XML file beside the workbook that keeps, per circuit and circuit type, any number of named
// configurations. The circuit selection lists and summarises them, the build writes the one it has just configured
// and pushes a named one back into its markers.
#pragma once

#include "drawing/markers.h"
#include "platform/xml_document.h"

#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

namespace brenvolt {

inline constexpr std::wstring_view historyFileName = L"zan_brenvolt.xml";

/// Keeps the XML parser's reason when a load failed.
class ZanXmlError {
public:
  ZanXmlError() = default;
  ZanXmlError(const ZanXmlError&) = delete;
  ZanXmlError& operator=(const ZanXmlError&) = delete;
  virtual ~ZanXmlError() = default;

  std::wstring error;
};

/// A property of a stored row: name and value.
using HistoryProperty = std::pair<std::wstring, std::wstring>;
using HistoryProperties = std::vector<HistoryProperty>;

/// A stored choice.
struct HistoryOption {
  std::wstring title; ///< of the option group
  std::wstring text;
  std::wstring value; ///< decimal integer

  friend bool operator==(const HistoryOption&, const HistoryOption&) = default;
};

/// What the circuit selection shows of a history before it is used.
struct HistorySummary {
  HistoryProperties pairs;
  std::wstring componentScale;
  std::wstring circuitScale;
};

/// Owns one document in memory. It never watches the file: of two owners the last to write wins. Operations answer
/// false for anything negative; a document that cannot be changed throws `XmlError`.
class ZanXmlHistory : public ZanXmlError {
public:
  ZanXmlHistory() = default;
  ~ZanXmlHistory() override;

  std::wstring context; ///< full path of the workbook; the folder of the history file comes from it alone
  std::wstring worksheet;
  std::wstring circuit;
  std::wstring circuitType;
  std::wstring historyName;
  std::wstring componentScale; ///< decimal text
  std::wstring circuitScale;   ///< decimal text

  virtual bool OpenFile(const std::wstring& path);
  /// Makes a new file that holds the current history alone.
  virtual bool CreateFile(const std::wstring& path, ZanDwgMarkerList& markers);
  /// Loads a file and checks root and version. A file that is not well formed leaves the reason in `error` and what was
  /// loaded before; that can still be read, but no longer be written.
  virtual bool LoadDocument(const std::wstring& path);
  /// A new document as UTF-16LE text. Afterwards no document is held.
  virtual bool BuildDocument(ZanDwgMarkerList& markers, std::string& xml);
  /// Writes UTF-16LE text behind a byte-order mark: beside the file first, then renamed over it. A failure is told on
  /// the host's command line and leaves the file as it was.
  virtual bool WriteDocument(const std::wstring& path, const std::string& xml);
  /// Adds the current history to the loaded document, the one of the same name removed, and writes the file. False
  /// unless the document was accepted and all three names are given.
  virtual bool AddHistory(ZanDwgMarkerList& markers, const std::wstring& path);
  virtual bool AppendCircuit(XmlElement parent, XmlElement& element);
  virtual bool AppendCircuitType(XmlElement parent, XmlElement& element);
  virtual bool AppendHistory(XmlElement parent, XmlElement& element);
  virtual bool AppendMarkers(XmlElement parent, ZanDwgMarkerList& markers);
  virtual bool AppendProperty(XmlElement parent, const ZanAnnotationField& field);
  virtual bool AppendRow(XmlElement parent, const ZanAnnotationDataList::Item& item);
  virtual bool AppendSelectOption(XmlElement parent, const ZanOptionGroup& group);
  virtual bool AppendMarker(XmlElement parent, const ZanDwgMarker& marker);

  /// Saves the current history. A file that is not accepted (damaged, foreign, too old) gives way to a new one that
  /// holds this history alone; the old one is kept beside it as `zan_brenvolt.damaged-1.xml`, or the next free number.
  bool SaveHistory(ZanDwgMarkerList& markers);
  /// Reads the file again and goes to the history named by `circuit`, `circuitType` and `historyName`.
  bool OpenHistory();
  /// The child of the opened history with this attribute value, compared ordinal without case; the first one wins.
  [[nodiscard]] XmlElement FindElement(
      std::wstring_view elementName, std::wstring_view attributeName, std::wstring_view value);
  [[nodiscard]] static std::vector<XmlElement> ListChildren(XmlElement node, std::wstring_view elementName);
  /// True when there is any.
  static bool ReadSelectOptions(XmlElement node, std::vector<HistoryOption>& options);
  /// One list of properties for each child of this name that has any; true when there is one.
  static bool ReadPropertySets(
      XmlElement node, std::wstring_view elementName, std::vector<HistoryProperties>& sets);
  bool Reload();
  /// Writes the document in memory.
  bool SaveFile();
  /// The names of all histories of a type in document order; true when there is one.
  bool GetHistoryNames(
      std::wstring_view circuitName, std::wstring_view typeName, std::vector<std::wstring>& names) const;
  /// Removes a history of `circuit` and `circuitType` from the document in memory; what it leaves empty stays.
  bool DeleteHistory(std::wstring_view name);
  /// The motor and load properties and the choices of a history; the second setup's labels end in " - 2".
  bool ReadHistory(std::wstring_view name, HistorySummary& summary) const;

  [[nodiscard]] bool hasDocument() const { return document_ != nullptr; }
  [[nodiscard]] bool hasOpenHistory() const { return !currentHistory_.isNull(); }

private:
  /// The three elements on the way to a history, as far as they exist.
  struct HistoryPath {
    XmlElement circuit;
    XmlElement type;
    XmlElement history;
  };

  /// The path of the history file; empty when `context` names no folder.
  [[nodiscard]] std::wstring filePath() const;
  [[nodiscard]] HistoryPath findHistory(std::wstring_view name) const;
  void forgetDocument();
  void setCurrentHistory(XmlElement history);

  std::unique_ptr<XmlDocument> document_;
  XmlElement root_;
  XmlElement currentHistory_;
  bool accepted_ = false;     ///< the last load passed: only then may the document be added to or written
  bool replacesFile_ = false; ///< the next write makes a new file where one that was not accepted may stand

  /// The children of the opened history that `FindElement` has seen, for one pair of element and attribute name: a
  /// search for each marker would otherwise cost the square of their number.
  std::pair<std::wstring, std::wstring> indexedNames_;
  std::unordered_map<std::wstring, XmlElement> indexedElements_;
};

} // namespace brenvolt
