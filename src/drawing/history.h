// Markers and the history file: the circuit selection lists and summarises saved configurations, the build writes the
// one it has just configured and pushes a named one back into its markers.
#pragma once

#include "drawing/markers.h"
#include "platform/xml_document.h"
#include "project/history_change.h"
#include "project/history_file.h"

#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

namespace brenvolt {

/// Keeps the XML parser's reason when a load failed.
class ZanXmlError {
public:
  ZanXmlError() = default;
  ZanXmlError(const ZanXmlError&) = delete;
  ZanXmlError& operator=(const ZanXmlError&) = delete;
  virtual ~ZanXmlError() = default;

  std::wstring error;
};

/// A stored choice.
struct HistoryOption {
  std::wstring title; ///< of the option group
  std::wstring text;
  std::wstring value; ///< decimal integer

  friend bool operator==(const HistoryOption&, const HistoryOption&) = default;
};

/// What a save stores beside the markers, and under which key.
struct HistoryEntry {
  HistoryKey key;
  std::wstring worksheet;
  std::wstring componentScale; ///< decimal text
  std::wstring circuitScale;   ///< decimal text
};

/// Owns one document in memory and never watches the file: a save and a deletion read it again and apply their one
/// change, so that nothing that others have saved meanwhile is lost. Operations answer false for anything negative, and
/// say on the host's command line why a file was not written; a document that cannot be changed throws `XmlError`.
class ZanXmlHistory : public ZanXmlError {
public:
  ZanXmlHistory() = default;
  ~ZanXmlHistory() override;

  std::wstring context; ///< full path of the workbook; the folder of the history file comes from it alone

  virtual bool OpenFile(const std::wstring& path);
  /// Makes a new file that holds this entry alone.
  virtual bool CreateFile(const std::wstring& path, const HistoryEntry& entry, ZanDwgMarkerList& markers);
  /// Loads a file and checks root and version. A file that is not well formed leaves the reason in `error` and what was
  /// loaded before; that can still be read, but no longer be written.
  virtual bool LoadDocument(const std::wstring& path);
  /// A new document as UTF-16LE text. Afterwards no document is held.
  virtual bool BuildDocument(const HistoryEntry& entry, ZanDwgMarkerList& markers, std::string& xml);
  /// Writes UTF-16LE text after a byte-order mark. A failure is reported on the host's command line and leaves the file
  /// as it was.
  virtual bool WriteDocument(const std::wstring& path, const std::string& xml);
  /// Adds an entry to the loaded document, the one of the same name removed, and writes the file. False
  /// unless the document was accepted and all three names are given.
  virtual bool AddHistory(const HistoryEntry& entry, ZanDwgMarkerList& markers, const std::wstring& path);
  virtual bool AppendCircuit(XmlElement parent, const HistoryKey& key, XmlElement& element);
  virtual bool AppendCircuitType(XmlElement parent, const HistoryKey& key, XmlElement& element);
  virtual bool AppendHistory(XmlElement parent, const HistoryEntry& entry, XmlElement& element);
  virtual bool AppendMarkers(XmlElement parent, ZanDwgMarkerList& markers);
  virtual bool AppendProperty(XmlElement parent, const ZanAnnotationField& field);
  virtual bool AppendRow(XmlElement parent, const ZanAnnotationDataList::Item& item);
  virtual bool AppendSelectOption(XmlElement parent, const ZanOptionGroup& group);
  virtual bool AppendMarker(XmlElement parent, const ZanDwgMarker& marker);

  /// Saves an entry in a turn of its own. A file that is not accepted (damaged, foreign, too old) gives way
  /// to a new one that holds this history alone; the old one is kept beside it, and the command line says where.
  bool SaveHistory(const HistoryEntry& entry, ZanDwgMarkerList& markers);
  /// Reads the file again and goes to the history of a key.
  bool OpenHistory(const HistoryKey& key);
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
  /// Deletes in the file, as it is now, what was deleted in memory; an entry that was saved again by another program
  /// meanwhile stays, and the command line says so.
  bool SaveFile();
  /// The names of all histories of a type in document order; true when there is one.
  bool GetHistoryNames(
      std::wstring_view circuitName, std::wstring_view typeName, std::vector<std::wstring>& names) const;
  /// Removes a history from the document in memory; what it leaves empty stays.
  bool DeleteHistory(const HistoryKey& key);
  /// The motor and load properties and the choices of a history; the second setup's labels end in " - 2".
  bool ReadHistory(const HistoryKey& key, HistorySummary& summary) const;

  [[nodiscard]] bool hasDocument() const { return file_.hasDocument(); }
  [[nodiscard]] bool hasOpenHistory() const { return !currentHistory_.isNull(); }

private:
  /// Adds an entry to a document, the one of the same name removed.
  void append(HistoryFile& file, const HistoryEntry& entry, ZanDwgMarkerList& markers);
  /// Reports what the user must know; true when the file is as it was asked for.
  bool report(const HistoryOutcome& outcome) const;
  void setCurrentHistory(XmlElement history);

  HistoryFile file_;
  XmlElement currentHistory_;
  std::vector<HistoryDeletion> deletions_; ///< in memory and not yet in the file

  /// The children of the opened history that `FindElement` has seen, for one pair of element and attribute name: a
  /// search for each marker would otherwise cost the square of their number.
  std::pair<std::wstring, std::wstring> indexedNames_;
  std::unordered_map<std::wstring, XmlElement> indexedElements_;
};

} // namespace brenvolt
