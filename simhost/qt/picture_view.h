// A text control that names a drawing, shown as the picture of that drawing.
#pragma once

#include "simhost/qt/control_view.h"

namespace simhost {

[[nodiscard]] std::unique_ptr<ControlView> makePictureView(QtDialog& dialog, TextModel& model);

} // namespace simhost
