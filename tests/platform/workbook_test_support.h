// What the workbook tests share: the foreign workbooks beside the project, workbooks made record by record, and a
// workbook's cells as plain lines.
#pragma once

#include "table_test_support.h"

#include "platform/biff_records.h"
#include "platform/xls_reader.h"

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace workbook_test {

/// The folder of workbooks that other programs wrote; nothing, with a message that says "skipped", without it.
[[nodiscard]] std::optional<std::filesystem::path> foreignFolder();
[[nodiscard]] std::vector<std::filesystem::path> foreignFiles();

/// All cells that are not empty: "sheet!row,column kind text".
using Cells = std::vector<std::wstring>;
[[nodiscard]] Cells cellsOf(const brenvolt::WorkbookSheet& sheet);
/// The cells of all sheets, or the one line of the error.
[[nodiscard]] Cells cellsOfFile(const std::wstring& path);

/// A stream of records, and the container around it.
class RecordStream final {
public:
  RecordStream& begin(std::uint16_t substream, std::uint16_t version = brenvolt::biff::version8);
  RecordStream& record(std::uint16_t id, const std::string& body);
  RecordStream& end() { return record(brenvolt::biff::idEndOfFile, {}); }
  /// The list entry of a worksheet whose records begin at the next `startSheet`.
  RecordStream& listSheet(const std::string& shortName);
  RecordStream& startSheet(std::uint16_t version = brenvolt::biff::version8);
  [[nodiscard]] std::string container(const std::wstring& streamName = L"Workbook") const;

private:
  std::string bytes_;
  std::vector<std::size_t> placeFields_;
  std::size_t startedSheets_ = 0;
};
[[nodiscard]] std::string words(std::initializer_list<unsigned> values);
[[nodiscard]] std::string doubleBytes(double value);

} // namespace workbook_test
