// A set on paper: one PDF with a page for each drawing and its lists at the end, true to scale, fonts embedded, with
// bookmarks, page labels and links from tags to the sheets that show them.
#pragma once

#include "circuits/reports/drawing_reports.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace circuits {

/// Reads one drawing when its page is painted, so that a set of any number of sheets takes the memory of one.
struct PaperSheet {
  std::string file;
  std::wstring number; ///< as bookmarks and page labels show it
  std::wstring title;
  std::vector<std::wstring> tags; ///< of the devices that are shown here first: links lead to this page
};

struct PaperOptions {
  std::wstring title;
  std::wstring project;      ///< shown on the pages of the lists
  std::vector<Report> lists; ///< as pages at the end
};

/// One unit of a drawing is a millimetre. A page is as large as the drawing's variables PAPER_WIDTH and PAPER_HEIGHT
/// say, with its left lower corner at the origin; a drawing without them is put on a page of its extents.
/// The reason when the file cannot be written, nothing on success. Throws BadInput for a drawing that cannot be read.
[[nodiscard]] std::optional<std::string> writePdf(
    const std::string& out, const std::vector<PaperSheet>& sheets, const PaperOptions& options);

} // namespace circuits
