// LISP symbols read and written as values.
#pragma once

#include "host/host_api_database.h"
#include "host/result_list.h"

#include <optional>
#include <string>

namespace brenvolt {

/// Symbols that the plug-in shares with the parent product's LISP.
namespace lispsymbol {
inline constexpr wchar_t buildData[] = L"GBL_qn_bv_data";
inline constexpr wchar_t codeStandard[] = L"GBL_qn_electcodestd";
inline constexpr wchar_t codeCombos[] = L"GBL_qn_bv_save_codehdl_combos";
inline constexpr wchar_t markerData[] = L"GBL_qn_bv_marker_data";
inline constexpr wchar_t combinedTagLocation[] = L"GBL_qn_combined_tagloc";
inline constexpr wchar_t upperCaseTexts[] = L"GBL_qn_strcase";
/// How many motors and loads of the last direct build have wires without a size, as a real; nil for none.
inline constexpr wchar_t unsizedWires[] = L"GBL_qn_bv_unsized_wires";
/// How many problems with tables have been reported since the last build began, those of calls after it included, as a
/// real; nil for none.
inline constexpr wchar_t tableProblems[] = L"GBL_qn_bv_table_problems";
/// 1: the preset, fields and wires of the next build hold also where its saved configuration says something else.
inline constexpr wchar_t presetOverHistory[] = L"GBL_qn_bv_preset_over_history";
/// What the build under way has saved, as (workbook circuit type name); nil for nothing.
inline constexpr wchar_t savedConfiguration[] = L"GBL_qn_bv_saved_configuration";
} // namespace lispsymbol

/// The value of a symbol; empty when it is unset, nil or cannot be read.
[[nodiscard]] ResultList getSymbol(const wchar_t* name);

/// Whether the symbol holds the 16-bit integer 1, which means yes in the parent product's settings.
[[nodiscard]] bool isSwitchedOn(const wchar_t* name);

/// The electrical code standard; nothing when the symbol holds no string.
[[nodiscard]] std::optional<std::wstring> getCodeStandard();

/// Each sets a symbol and returns whether the host accepted it. The list stays the caller's.
bool putPoint(const wchar_t* name, const KvPoint3d& point);
bool putReal(const wchar_t* name, double value);
bool putList(const wchar_t* name, const ResultList& list);

/// The list ((CODE ...) (CODE ...) ...) of codes that LISP keeps itself; empty when there is none.
[[nodiscard]] ResultList getCodeCombos();
/// An empty list is refused.
bool putCodeCombos(const ResultList& list);

/// The hexadecimal text of a handle, upper case; nothing for no object.
[[nodiscard]] std::optional<std::wstring> handleToText(KvDbHandle handle);
/// The handle that a text begins with; the null handle for a text without hexadecimal digits or with more than 16.
[[nodiscard]] KvDbHandle handleFromText(std::wstring_view text);

} // namespace brenvolt
