// The drawing on paper: a page of a PDF or of a printer, the whole of it as large as the page allows.
#pragma once

#include "simhost/drawing/drawing_database.h"

class QPagedPaintDevice;

namespace simhost {

/// Paints the current space in its shown colours on a light page. False when the drawing has too many shapes or the
/// device cannot be painted on.
[[nodiscard]] bool paintPage(const DrawingDatabase& drawing, QPagedPaintDevice& device);

/// Writes the current space as a PDF of one page, landscape A3, as a temporary file and renames it to `path`; the
/// reason of a failure, nothing on success. The same drawing gives the same bytes.
[[nodiscard]] Fault savePdf(const DrawingDatabase& drawing, const std::wstring& path);

} // namespace simhost
