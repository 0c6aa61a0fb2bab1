// The pictures of commands: line drawings in the colour of the text beside them, so that they suit light and dark.
#pragma once

#include <QColor>
#include <QIcon>

namespace simhost {

/// An empty icon for a name that has no picture.
[[nodiscard]] QIcon commandIcon(const char* name, const QColor& colour);

} // namespace simhost
