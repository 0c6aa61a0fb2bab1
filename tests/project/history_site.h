// A folder with a history file, changed the way a build and the tool change it.
#pragma once

#include "project/history_change.h"
#include "tests/support/golden.h"
#include "tests/support/temporary_folder.h"
#include "text/encoding.h"

#include <algorithm>
#include <string>
#include <vector>

namespace brenvolt::test {

inline HistoryKey keyOf(const std::wstring& name) {
  return {L"Motor", L"Direct on line", name};
}

struct HistorySite {
  TemporaryFolder folder;
  /// The folder as this program sees it: on a network each machine has its own mount.
  std::filesystem::path seen = folder.path();

  [[nodiscard]] std::filesystem::path file() const { return seen / "zan_brenvolt.xml"; }
  [[nodiscard]] std::wstring path() const { return fromUtf8(file().string()); }
  [[nodiscard]] std::wstring workbook() const { return fromUtf8((seen / "zan_brenvolt.xls").string()); }

  /// Saves a configuration that has `value` as its one choice.
  [[nodiscard]] HistoryOutcome save(const std::wstring& name, const std::wstring& value = L"1") const {
    XmlDocument document;
    XmlElement history = document.createRoot(L"History");
    history.setAttribute(L"Name", name);
    XmlElement option = history.appendChild(L"Marker").appendChild(L"SelectOption");
    option.setAttribute(L"UI_PROMPT", value);
    HistoryFile present;
    return changeHistory(workbook(), present, [&](HistoryFile& each) {
      std::vector<HistoryRecord> records{recordOf(HistoryAction::saved, each, keyOf(name))};
      each.put(keyOf(name), history);
      return records;
    });
  }
  [[nodiscard]] HistoryOutcome remove(const std::wstring& name) const {
    HistoryFile present;
    std::vector<HistoryKey> stayed;
    return deleteFromHistory(workbook(), present, {{keyOf(name), {}}}, stayed);
  }
  [[nodiscard]] std::vector<std::wstring> names() const {
    HistoryFile present;
    present.read(path());
    return present.names(L"Motor", L"Direct on line");
  }
  /// The choice of a configuration; empty when there is none.
  [[nodiscard]] std::wstring value(const std::wstring& name) const {
    HistoryFile present;
    present.read(path());
    const std::optional<HistorySummary> summary = present.summary(keyOf(name));
    return summary ? summary->pairs.at(0).second : std::wstring();
  }
};

using Names = std::vector<std::wstring>;
using Files = std::vector<std::string>;

} // namespace brenvolt::test
