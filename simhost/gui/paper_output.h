// The drawing on paper: a page of a PDF or of a printer.
#pragma once

#include "simhost/drawing/drawing_database.h"
#include "simhost/gui/page_setup.h"

class QPagedPaintDevice;

namespace simhost {

/// Paints the current space in its shown colours on a light page. False when the drawing has too many shapes or the
/// device cannot be painted on.
[[nodiscard]] bool paintPage(
    const DrawingDatabase& drawing, QPagedPaintDevice& device, const PageSetup& setup = {});

/// Writes the current space as a PDF of one page, as a temporary file and renames it to `path`; the
/// reason of a failure, nothing on success. The same drawing gives the same bytes.
[[nodiscard]] Fault savePdf(
    const DrawingDatabase& drawing, const std::wstring& path, const PageSetup& setup = {},
    const QString& title = {});

} // namespace simhost
