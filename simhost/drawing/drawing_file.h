// Drawings as files: readable JSON that a version control system can compare. The same drawing always gives the same
// bytes; each layer, variable and entity has its own line.
#pragma once

#include "simhost/drawing/drawing_database.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace simhost {

/// The file's content, UTF-8 with line feeds. Erased entities are left out.
[[nodiscard]] std::string drawingToJson(const DrawingDatabase& drawing);

/// Writes the drawing beside `path` and renames it over the old file, which stays whole on every failure. Answers
/// the reason of a failure with the path, nothing on success.
[[nodiscard]] Fault saveDrawing(const DrawingDatabase& drawing, const std::wstring& path);

/// A drawing that was read, or the reason why not.
struct LoadedDrawing {
  std::unique_ptr<DrawingDatabase> drawing; ///< null on a failure; its undo log is empty
  std::wstring error;                       ///< names the file, the place in it and the reason
};

/// `name` identifies the content in messages. Every rule for edits is checked, and an unknown field is an error,
/// because saving again would lose it.
[[nodiscard]] LoadedDrawing drawingFromJson(std::string_view json, std::wstring_view name);
[[nodiscard]] LoadedDrawing loadDrawing(const std::wstring& path);

/// Writes bytes beside `path` and renames; the reason of a failure, nothing on success.
[[nodiscard]] Fault writeFileWhole(const std::wstring& path, std::string_view bytes);

} // namespace simhost
