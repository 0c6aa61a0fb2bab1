// Pictures of windows as files.
#pragma once

#include <filesystem>
#include <string>

class QImage;

namespace simhost {

/// Writes the picture as PNG, as small as it gets, in place of the file. The reason when it could not be written, empty on
/// success: the old file is unchanged then.
[[nodiscard]] std::string writePicture(const QImage& picture, const std::filesystem::path& file);

} // namespace simhost
