// Checks whether a site's tables contain a given electrical code.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace brenvolt {
class ZanOleDbConnection;
}

namespace simhost::lisp {
class Interpreter;
}

namespace simhost {

/// The variable of LISP that names the code standard.
inline constexpr std::wstring_view codeStandardSymbol = L"GBL_qn_electcodestd";

/// That of the session; empty where its LISP sets none.
[[nodiscard]] std::wstring sessionStandard(const lisp::Interpreter& interpreter);

/// Why a circuit cannot be worked out by this standard; nothing when it can. The default standard always can: its
/// tables serve where a standard has none of its own, so that any other word would silently give its figures.
[[nodiscard]] std::optional<std::string> codeStandardFault(
    brenvolt::ZanOleDbConnection& connection, const std::wstring& code);

} // namespace simhost
