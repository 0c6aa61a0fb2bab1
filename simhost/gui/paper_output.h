// The drawing on paper: a page of a PDF or of a printer, with a frame of the site around it.
#pragma once

#include "simhost/drawing/box.h"
#include "simhost/drawing/drawing_database.h"
#include "simhost/gui/page_setup.h"

#include <filesystem>
#include <memory>

class QPagedPaintDevice;

namespace simhost {

/// What a page is made of beside the drawing.
struct PaperPage {
  QPageLayout layout;
  std::unique_ptr<DrawingDatabase> frame{}; ///< with its texts; null for none
  Box area{};                      ///< of the frame, in millimetres from the page's left lower corner
  double unitsPerMillimetre = 0.0; ///< 0: all of the drawing fills the page or the area
  bool isSheet = false;            ///< the drawing has its own frame, with its corner at the origin
  QString title{};
  QString date{};
};

/// Whether a drawing has a frame of its own.
[[nodiscard]] bool hasOwnFrame(const DrawingDatabase& drawing);

/// `frames`: the site's folder of frames. `today` fills an empty date. `code`: the electrical code of the session, for
/// circuits that do not say theirs. Throws BadInput for a frame that cannot be used.
[[nodiscard]] PaperPage makePage(
    const DrawingDatabase& drawing, const PageSetup& setup, const std::filesystem::path& frames,
    const QString& title, const QString& today, const QString& code);

enum class PageResult {
  whole,
  cutOff,    ///< the drawing is larger than its place at this scale
  notPainted ///< too many shapes, or the device cannot be painted on
};

/// Paints the current space in its shown colours on a light page, which has the layout already.
[[nodiscard]] PageResult paintPage(
    const DrawingDatabase& drawing, QPagedPaintDevice& device, const PaperPage& page);

/// Writes the current space as a PDF of one page, as a temporary file and renames it to `path`; the reason of a failure,
/// nothing on success. The same drawing and page give the same bytes: the document is of the page's date.
[[nodiscard]] Fault savePdf(
    const DrawingDatabase& drawing, const std::wstring& path, const PaperPage& page,
    PageResult* result = nullptr);

} // namespace simhost
