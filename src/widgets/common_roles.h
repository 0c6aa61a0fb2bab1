// Roles that mean the same in every dialog. The buttons "ok", "cancel" and "help" raise no event of their own: the
// dialog is told by its operations for them.
#pragma once

#include <string_view>

namespace brenvolt::role {

inline constexpr std::wstring_view ok = L"ok";
inline constexpr std::wstring_view cancel = L"cancel";
inline constexpr std::wstring_view help = L"help";
/// The result grid of a dialog on the engineering database.
inline constexpr std::wstring_view grid = L"grid";

} // namespace brenvolt::role
