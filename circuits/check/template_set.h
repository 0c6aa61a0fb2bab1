// The template drawings of a site, each read once: their markers, and which drawings the forms of a sheet insert.
#pragma once

#include "circuits/check/site_model.h"
#include "circuits/netlist/template_markers.h"
#include "simhost/drawing/drawing_database.h"

#include <filesystem>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

namespace circuits {

struct TemplateDrawing {
  std::filesystem::path path;
  std::wstring file;                                 ///< as findings show it
  std::unique_ptr<simhost::DrawingDatabase> drawing; ///< null for one that cannot be read
  std::wstring error;
  std::vector<TemplateMarker> markers; ///< of model space, in drawing order
  std::set<std::wstring> keys;         ///< of its markers

  [[nodiscard]] FindingPlace place(const TemplateMarker& marker) const;
};

/// A drawing that a form of a sheet names.
struct NamedDrawing {
  const SheetCode* code;
  const SheetForm* form;
  std::wstring name; ///< as it is written
};
class TemplateSet final {
public:
  explicit TemplateSet(const SiteModel& site);

  /// The drawing of a file, read at the first call.
  [[nodiscard]] const TemplateDrawing& read(const std::filesystem::path& path);
  /// The file that a form means by a text: below the site, or beside a template. Empty for none.
  [[nodiscard]] std::filesystem::path find(std::wstring_view name);

  /// A drawing that a build has inserted for a sheet, whatever form named it.
  void addInserted(std::wstring_view sheet, std::filesystem::path path);
  /// Notes the drawings that the forms of a sheet name.
  void addNamed(const SheetModel& sheet);
  [[nodiscard]] const std::vector<NamedDrawing>& namedBy(const SheetModel& sheet) { return named_[&sheet]; }
  /// The templates of a sheet: those of its circuits, then those that its forms name and insert.
  [[nodiscard]] std::vector<const TemplateDrawing*> templatesOf(const SheetModel& sheet);

private:
  /// The drawing of this name; null when the site has none.
  [[nodiscard]] const TemplateDrawing* readNamed(const std::wstring& name);

  const SiteModel& site_;
  std::vector<std::filesystem::path> folders_;          ///< where drawings are looked for, in this order
  std::map<std::wstring, std::filesystem::path> found_; ///< by name
  std::map<std::filesystem::path, TemplateDrawing> drawings_;
  std::map<std::wstring, const TemplateDrawing*, std::less<>> byName_;
  std::map<const SheetModel*, std::vector<NamedDrawing>> named_;
  // By the sheet's upper-case name:
  std::map<std::wstring, std::vector<std::wstring>> ofCircuits_; ///< templates of its circuits
  std::map<std::wstring, std::set<std::filesystem::path>> inserted_;
};

} // namespace circuits
