// The colours of all windows on light and on dark paper.
#pragma once

#include "simhost/drawing/display_list.h"

#include <QColor>

namespace simhost {

/// Of the application: style, colours and letters.
void applyTheme(Paper paper);

/// The ground of prompts over the drawing.
[[nodiscard]] QColor bannerColour(Paper paper);

} // namespace simhost
