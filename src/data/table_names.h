// The names of the engineering tables: composed from family, conductor material, size system and electrical code,
// looked up with a fallback, and checked so that a missing table can be reported before it is needed.
#pragma once

#include "platform/tables.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace brenvolt {

/// The table families. The values are part of the design: masks and stored figures refer to them.
enum class ZanTableKind : int {
  ampacity = 0,
  insulation = 1,
  impedance = 2,
  racewayDescriptions = 3,
  conduitFill = 4,
  options = 5,
  grounding = 6,
  motors = 7,
  loads = 8,
  componentCalculation = 9,
  componentDescription = 10,
  componentMap = 11,
};

/// Which families `CheckTables` looks for; bits may be joined. Raceway descriptions are never checked.
namespace tablemask {
inline constexpr unsigned options = 1;
inline constexpr unsigned wires = 4; ///< ampacity, insulation, impedance, fill
inline constexpr unsigned motors = 8;
inline constexpr unsigned loads = 16;
inline constexpr unsigned grounding = 32; ///< only together with `wires`
inline constexpr unsigned components = 64;
} // namespace tablemask

/// The code whose tables serve a code that has none of its own.
inline constexpr std::wstring_view defaultCode = L"NEC";

/// What `CheckTables` found missing.
struct MissingTables {
  std::vector<std::wstring> forCode;    ///< tables of the code itself, also where a fallback serves
  std::vector<std::wstring> everywhere; ///< tables that no fallback serves either
};

/// Names and existence of tables on a connection that it does not own.
class ZanDbReaderUtils {
public:
  explicit ZanDbReaderUtils(ZanOleDbConnection* connection = nullptr) : connection_(connection) {}
  virtual ~ZanDbReaderUtils() = default;
  ZanDbReaderUtils(const ZanDbReaderUtils&) = default;
  ZanDbReaderUtils& operator=(const ZanDbReaderUtils&) = default;

  void SetConnection(ZanOleDbConnection* connection) {
    connection_ = connection;
    keptNames_.reset();
  }
  /// Reads the list of tables now and uses it from now on, for callers that look up many names while no table is
  /// created or dropped.
  void KeepTableList();
  [[nodiscard]] ZanOleDbConnection* connection() const { return connection_; }

  /// "AMP", "INSUL", ...; empty for a value that is not a family.
  [[nodiscard]] static std::wstring_view TableBaseName(ZanTableKind kind);
  /// base[_metal][_standard][_code]: an underscore before each non-empty part. An empty base gives an empty name.
  [[nodiscard]] static std::wstring ComposeTableName(
      std::wstring_view base, std::wstring_view metal, std::wstring_view standard, std::wstring_view code);
  /// The electrical code at the end of a table's name; empty for a table of no code and for one of no family.
  [[nodiscard]] static std::wstring CodeOfTable(std::wstring_view table);
  /// Whether the table list holds the name, without case. False without a list.
  [[nodiscard]] bool TableExists(std::wstring_view name) const;
  /// The table of a family: the code's own, else the one without a code, else that of the default code. A site may
  /// so keep one table for all codes. False, and an empty name, when none exists or nothing is connected.
  [[nodiscard]] bool ResolveTable(
      std::wstring& name, ZanTableKind kind, std::wstring_view metal, std::wstring_view standard,
      std::wstring_view code) const;
  /// The same for families that carry neither metal nor standard in their names.
  [[nodiscard]] bool ResolveTable(std::wstring& name, ZanTableKind kind, std::wstring_view code) const;
  /// Whether all tables of the mask exist under the code itself. A kind for which only a fallback exists is still
  /// listed in `forCode`: the user must know that the code's own table is missing.
  [[nodiscard]] bool CheckTables(
      std::wstring_view metal, std::wstring_view standard, std::wstring_view code, MissingTables& missing,
      unsigned mask) const;

  /// "[a], [b]".
  [[nodiscard]] static std::wstring JoinColumns(const std::vector<std::wstring>& names);
  /// "[a]='1' AND [b]='2'". Values are not escaped here: running the statement rejects a value with a quote.
  [[nodiscard]] static std::wstring JoinWhere(
      const std::vector<std::wstring>& names, const std::vector<std::wstring>& values);

  /// The names of all tables in the database's order; none without a connection.
  [[nodiscard]] std::vector<std::wstring> tableList() const;

private:
  ZanOleDbConnection* connection_;
  std::optional<std::vector<std::wstring>> keptNames_;
};

} // namespace brenvolt
