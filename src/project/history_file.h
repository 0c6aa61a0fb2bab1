// The history file as a document in memory: its saved configurations by key, and what a list shows of each. One XML
// file beside the workbook keeps, per circuit and circuit type, any number of them by name.
#pragma once

#include "platform/xml_document.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace brenvolt {

inline constexpr std::wstring_view historyFileName = L"zan_brenvolt.xml";

/// The folder of a path with its last separator; empty when the path has none.
[[nodiscard]] std::wstring folderOf(std::wstring_view path);
/// The path of the history file in a workbook's folder; empty when `workbook` has no folder.
[[nodiscard]] std::wstring historyPathOf(std::wstring_view workbook);

/// Which saved configuration. Names are compared as a user reads them, without case.
struct HistoryKey {
  std::wstring circuit;
  std::wstring type;
  std::wstring name;

  [[nodiscard]] bool isComplete() const { return !circuit.empty() && !type.empty() && !name.empty(); }

  friend bool operator==(const HistoryKey&, const HistoryKey&) = default;
};

/// A property of a stored row: name and value.
using HistoryProperty = std::pair<std::wstring, std::wstring>;
using HistoryProperties = std::vector<HistoryProperty>;

/// What the circuit selection shows of a saved configuration before it is used.
struct HistorySummary {
  HistoryProperties pairs;
  std::wstring componentScale;
  std::wstring circuitScale;
};

class HistoryFile final {
public:
  enum class State {
    absent,   ///< nothing was read, or the file does not exist
    accepted, ///< it may be changed and written
    refused,  ///< damaged, foreign or too old; what was read before can still be read
  };

  [[nodiscard]] State state() const { return state_; }
  [[nodiscard]] bool isAccepted() const { return state_ == State::accepted; }
  [[nodiscard]] bool hasDocument() const { return document_ != nullptr; }
  /// Why the file was refused.
  [[nodiscard]] const std::wstring& error() const { return error_; }
  [[nodiscard]] XmlElement root() const { return root_; }

  /// Reads the file and checks root and version.
  State read(const std::wstring& path);
  /// An accepted file without any configuration. `context` is written as the workbook that it belongs to.
  void startEmpty(std::wstring_view context);
  void forget();

  /// The three elements on the way to a configuration, as far as they exist.
  struct Path {
    XmlElement circuit;
    XmlElement type;
    XmlElement history;
  };
  [[nodiscard]] Path find(const HistoryKey& key) const;
  /// The names of all configurations of a type in the order of the file.
  [[nodiscard]] std::vector<std::wstring> names(std::wstring_view circuit, std::wstring_view type) const;
  /// All configurations in the order of the file.
  [[nodiscard]] std::vector<HistoryKey> keys() const;
  /// The motor and load properties and the choices; the second setup's labels end in " - 2". Nothing when no
  /// configuration has the key.
  [[nodiscard]] std::optional<HistorySummary> summary(const HistoryKey& key) const;

  /// The elements above a configuration of this key, made when they are missing.
  [[nodiscard]] Path makeParents(const HistoryKey& key);
  /// Puts a copy of a configuration's element under the key, in place of the one that is there.
  void put(const HistoryKey& key, XmlElement history);
  /// What is left empty stays. False when there is none.
  bool remove(const HistoryKey& key);

  /// The bytes of the file, the byte-order mark included.
  [[nodiscard]] std::string bytes() const;

private:
  State state_ = State::absent;
  std::wstring error_;
  std::unique_ptr<XmlDocument> document_;
  XmlElement root_;
};

} // namespace brenvolt
