// Roles with the same meaning in every dialog. The buttons "ok", "cancel" and "help" raise no event: their operations
// of the dialog are called.
#pragma once

#include <string_view>

namespace brenvolt::role {

inline constexpr std::wstring_view ok = L"ok";
inline constexpr std::wstring_view cancel = L"cancel";
inline constexpr std::wstring_view help = L"help";
/// The result grid of a dialog on the engineering database.
inline constexpr std::wstring_view grid = L"grid";

} // namespace brenvolt::role
