// One statement with its values filled in, run on a connection, its rows walked: every service of this layer reads the
// tables in this way.
#pragma once

#include "platform/tables.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace brenvolt {

/// The meaning of a refused statement. Most statements must run; some only test whether a table has something, and
/// their failure is a result.
enum class Refusal { fault, answer };

/// Placeholders of a statement: "%s" inside quotes is a value, inside brackets a name, elsewhere a piece of statement;
/// "%d" is an integer. A value that holds a quote and a name that holds a bracket stop the statement here: it counts
/// as failed and never reaches the engine.
class TableQuery final {
public:
  /// The connection is not owned; null and closed ones make every statement fail. A fault is passed to the
  /// connection's observer.
  explicit TableQuery(ZanOleDbConnection* connection, Refusal refusal = Refusal::fault);

  /// Fills and runs a statement. False on any failure, see `error`.
  [[nodiscard]] bool run(std::wstring_view statement, const std::vector<std::wstring>& values = {});
  /// Moves to the next row; false after the last one, and when the rows end too early (see `error` then).
  [[nodiscard]] bool next();
  /// `run` and a first row.
  [[nodiscard]] bool runForRow(std::wstring_view statement, const std::vector<std::wstring>& values = {});

  /// Columns count from 1. NULL reads as an empty text and as 0; a blob as the UTF-16 text that it holds.
  [[nodiscard]] std::wstring text(int column) const;
  [[nodiscard]] bool isNull(int column) const { return command_.IsNull(column); }
  [[nodiscard]] double number(int column) const { return command_.FieldAsDouble(column); }
  /// The column as a number. Nothing for NULL and for an empty text; nothing for any other text that is not a number,
  /// which is noted as a fault: in a table that was not imported such a cell must not sort or propose as another figure.
  [[nodiscard]] std::optional<double> figure(int column) const;
  /// Notes a text that is not a number as a fault, where the text itself is passed on.
  void noteUnlessFigure(int column) const { static_cast<void>(figure(column)); }
  /// Notes a cell that cannot be used: column, text, and what is wrong with it ("is not a number").
  void noteBadCell(int column, std::wstring_view what) const;
  [[nodiscard]] int columnCount() const { return command_.GetColumnCount(); }
  [[nodiscard]] std::wstring columnName(int column) const { return command_.GetColumnName(column); }
  [[nodiscard]] const std::wstring& error() const { return error_; }

  /// Records as a fault a failure that the query treated as a result.
  void noteFault() const;

private:
  void fail();
  void note(std::wstring reason) const;

  ZanOleDbConnection* connection_;
  Refusal refusal_;
  std::wstring statement_;
  ZanOleDbCommand command_;
  std::wstring error_;
};

} // namespace brenvolt
