// What the configuration workbook holds: the circuit list, and for each circuit sheet what every
// CODE offers. Sheets are read whole before anything is done with them.
#pragma once

#include "project/annotation_presets.h"
#include "project/code_record.h"
#include "text/compare.h"

#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace brenvolt {

/// The workbook's file name where nothing names another.
inline constexpr std::wstring_view defaultWorkbook = L"zan_brenvolt.xls";

class SheetReader;
struct SheetRows;

/// One type of a circuit.
struct ZanCircuitEntry {
  std::wstring type;
  std::wstring drawingTemplate;
  std::wstring worksheet;
  std::wstring presetKey; ///< of the annotation presets; may be empty
  int id = 0;             ///< circuits and entries count through one counter
};

struct ZanCircuit {
  int id = 0;
  std::vector<ZanCircuitEntry> entries; ///< in the sheet's order
};

/// The class keeps the name by which other documents know it; what it holds is the circuit list.
class ZanCircuitCatalog final {
public:
  using Circuits = std::map<std::wstring, ZanCircuit, CollatingLess>;

  explicit ZanCircuitCatalog(std::wstring_view path = {}) : workbook(path) {}

  /// Each reads one sheet and is true when anything was stored. `error` says why a file or a sheet cannot be read.
  /// @{
  bool readCircuits();
  bool readAnnotationCodes();
  bool readWorksheet(std::wstring_view name);
  /// @}
  /// The reads that follow all take the workbook as it is now: it is opened once. False when it cannot be opened.
  [[nodiscard]] bool keepOpen();

  [[nodiscard]] const Circuits& circuits() const { return circuits_; }
  /// The entry of a circuit's type, both compared by collation without case; null when there is none.
  [[nodiscard]] const ZanCircuitEntry* findEntry(std::wstring_view circuit, std::wstring_view type) const;
  /// The worksheet's record of a CODE, without case; null when there is none.
  [[nodiscard]] const ZanCodeRecord* findRecord(std::wstring_view code) const;
  [[nodiscard]] ZanCodeRecord* findRecord(std::wstring_view code);
  /// The records by upper-cased CODE.
  [[nodiscard]] const std::map<std::wstring, ZanCodeRecord>& records() const { return records_; }
  [[nodiscard]] ZanAnnotationExList& annotationCodes() { return annotationCodes_; }
  [[nodiscard]] const std::wstring& error() const { return error_; }

  std::wstring workbook; ///< full path

private:
  enum class OtherSheet { none, first };
  [[nodiscard]] bool readSheet(std::wstring_view name, OtherSheet other, SheetRows& rows);

  std::shared_ptr<SheetReader> kept_; ///< null unless the workbook is kept open
  Circuits circuits_;
  std::map<std::wstring, ZanCodeRecord> records_;
  ZanAnnotationExList annotationCodes_;
  std::wstring error_;
};

} // namespace brenvolt
