// How many phases a circuit takes, by the wire positions that its template declares.
#pragma once

#include <optional>
#include <string>

namespace circuits {

/// "1" for two wire positions beside the grounding conductor, "3" for three; nothing for a template that has others, has
/// none or cannot be read. Of a template with several motors, the positions of one of them count; where they differ,
/// nothing is returned.
/// @param site      folder
/// @param drawing   as the workbook names the template: below the site or its templates
[[nodiscard]] std::optional<std::wstring> templatePhases(
    const std::string& site, const std::wstring& drawing);

} // namespace circuits
