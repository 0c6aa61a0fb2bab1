// Pictures of buttons and tree items, painted so that they are sharp at every size and readable on light and dark.
#pragma once

#include <QIcon>
#include <QPalette>

#include <string_view>

namespace simhost {

/// The picture of a numbered image of the resource module; null for a number without one.
[[nodiscard]] QIcon buttonIcon(unsigned image, const QPalette& palette);
/// The picture of a tree item; `icons` names what the numbers of the tree mean. Null for a tree without pictures.
[[nodiscard]] QIcon treeIcon(std::wstring_view icons, int image, const QPalette& palette);

} // namespace simhost
