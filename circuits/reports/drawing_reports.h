// The lists that a firm delivers with its drawings, made from the drawings themselves: parts, wires, terminals, motors
// and loads, cables, sheets.
#pragma once

#include "circuits/netlist/netlist.h"
#include "circuits/provenance/circuit_objects.h"
#include "circuits/reports/spool.h"

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace circuits {

/// What the lists need of one drawing; the drawing itself may be gone.
struct Sheet {
  std::wstring number{}; ///< as its title block says, else the file's name
  std::wstring title{};
  std::wstring file{};
  Netlist netlist{};
  std::vector<CircuitObject> circuits{}; ///< without their extents
};

/// As the title block says; empty without one.
[[nodiscard]] std::wstring projectName(const simhost::DrawingDatabase& drawing);
/// What the title block says, else the name given.
[[nodiscard]] std::wstring sheetNumber(const simhost::DrawingDatabase& drawing, const std::wstring& file);
/// `file`: how the drawing is named where the sheet has no number of its own.
[[nodiscard]] Sheet readSheet(const simhost::DrawingDatabase& drawing, std::wstring file);

enum class ReportKind { parts, wires, terminals, motors, cables, sheets };
/// "parts" and so on; nothing for any other word.
[[nodiscard]] std::optional<ReportKind> reportKindOf(std::string_view word);
[[nodiscard]] std::vector<std::string> reportKinds();

struct ReportColumn {
  std::string key;
  std::wstring title;
  bool isNumber = false;
};

/// A cell without a value is something that the drawings do not say.
using ReportRow = std::vector<std::optional<std::wstring>>;
/// What the reader of a list has to know: how much is missing in it, and a sentence that says so and why.
struct ReportNote {
  std::size_t count = 0;
  std::wstring text{};
};

struct Report {
  std::wstring title{};
  std::vector<ReportColumn> columns{};
  std::vector<ReportRow> rows{};
  std::vector<ReportNote> notes{};
};

[[nodiscard]] Report makeReport(ReportKind kind, const std::vector<Sheet>& sheets);

/// The lists of many drawings, of each of which only its rows are kept, on the disk.
class SheetLists final {
public:
  /// What all lists need of a sheet, as bytes: another process may have read it.
  [[nodiscard]] static std::string rowsOf(const Sheet& sheet);
  /// Of the sheet with this number, from 0; they can come in any order.
  void put(std::size_t sheet, std::string_view rows) { sheets_.put(sheet, rows); }
  void add(std::string_view rows) { sheets_.put(sheets_.size(), rows); }

  [[nodiscard]] Report report(ReportKind kind) const;
  /// The same list piece by piece, each with title and columns and its own rows, the last one with the notes: a long
  /// list that needs no sorting is never in memory as a whole.
  void inPieces(ReportKind kind, const std::function<void(const Report&)>& take) const;

private:
  Spool sheets_;
};

/// Columns, their order, and the columns by which rows are sorted; what is empty leaves the report as it is.
struct ReportLayout {
  std::vector<std::string> columns;
  std::vector<std::string> sort;
};
/// Why the layout does not fit the report; nothing when it has been applied.
[[nodiscard]] std::optional<std::string> applyLayout(Report& report, const ReportLayout& layout);

/// Whether a text comes before another one as people sort tags: CB2 before CB10.
[[nodiscard]] bool comesBefore(std::wstring_view one, std::wstring_view other);

} // namespace circuits
