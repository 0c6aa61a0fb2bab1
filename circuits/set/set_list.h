// A motor list as a firm keeps it: a text file, a sheet of a workbook or a table of a database, columns by name in any
// order. Every cell that cannot be used is reported, not only the first one.
#pragma once

#include <array>
#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace circuits {

enum class SetField : std::size_t {
  tag,
  circuit,
  type,
  kind,
  load,
  units,
  voltage,
  phase,
  frequency,
  speed,
  length,
  lengthUnits,
  raceway,
  ambient,
  wireSize,
  options,
  configuration,
  installation,
  location,
  description1,
  description2,
  description3,
  standardCode
};
inline constexpr std::size_t setFieldCount = 23;

struct SetFieldRow {
  SetField field;
  const wchar_t* name; ///< of its column
  bool isNumber;
  const char* meaning;
};
[[nodiscard]] const std::array<SetFieldRow, setFieldCount>& setFields();

/// One row of the list. A column of a name that no field has is the choice for the CODE of that name.
struct SetRow {
  std::size_t number = 0; ///< as the user counts: the header is row 1
  std::array<std::wstring, setFieldCount> texts{};
  std::vector<std::pair<std::wstring, std::wstring>> codes{}; ///< CODE and the cell, where that is not empty
  /// Of a circuit that is built again with the motor or load that its drawing has.
  bool keepsLoad = false;

  [[nodiscard]] const std::wstring& operator[](SetField field) const {
    return texts[static_cast<std::size_t>(field)];
  }
};

/// A cell that cannot be used.
struct SetFault {
  std::size_t row = 0;
  std::wstring column; ///< empty for the row as a whole
  std::wstring reason;
};

struct SetList {
  std::string source; ///< as the user named it
  std::vector<SetRow> rows;
  std::vector<SetFault> faults;
  std::vector<SetFault> findings{};  ///< of rows that can be built, but need a look
  std::vector<std::wstring> notes{}; ///< what was understood in a way that the user may want to know
  std::size_t header = 1;            ///< its row
  std::map<std::wstring, std::wstring>
      codeColumns{}; ///< CODE in upper case, and its column as the list writes it
};

class TypeRule;

/// Column names of the firm's own lists, each with the field or CODE that it means.
using ColumnAliases = std::map<std::wstring, std::wstring>;

/// Reads "motors.csv", "motors.xls", "motors.xls:Sheet", "plant.db:table" or "odbc:...:table". Comma, semicolon or tab
/// parts the cells of a text file; a decimal comma is taken where it cannot be a thousands separator. Throws BadInput
/// for a list that cannot be read at all.
[[nodiscard]] SetList readSetList(
    const std::string& source, const ColumnAliases& aliases, const std::vector<TypeRule>& rules = {});

/// "motors.csv, row 7, column load: ..."
[[nodiscard]] std::string faultText(const SetList& list, const SetFault& fault);

} // namespace circuits
