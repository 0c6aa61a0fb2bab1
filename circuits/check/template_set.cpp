#include "circuits/check/template_set.h"

#include "host/script_form.h"
#include "simhost/drawing/drawing_file.h"
#include "text/compare.h"
#include "text/encoding.h"

#include <algorithm>
#include <system_error>

namespace circuits {

namespace fs = std::filesystem;
using brenvolt::equalsOrdinalNoCase;

namespace {

constexpr std::wstring_view drawingEnding = L".json";

} // namespace

FindingPlace TemplateDrawing::place(const TemplateMarker& marker) const {
  FindingPlace result;
  result.file = file;
  result.code = marker.code;
  result.position = {marker.x, marker.y};
  return result;
}

TemplateSet::TemplateSet(const SiteModel& site) : site_(site) {
  const auto add = [this](fs::path folder) {
    if (std::ranges::find(folders_, folder) == folders_.end()) folders_.push_back(std::move(folder));
  };
  add(site.folder);
  add(site.folder / "templates");
  std::set<std::wstring_view> seen; // many types have one template
  for (const CircuitEntry& entry : site.entries) {
    if (seen.insert(entry.drawing).second) add((site.folder / brenvolt::toUtf8(entry.drawing)).parent_path());
    ofCircuits_[brenvolt::toUpper(entry.worksheet)].push_back(entry.drawing);
  }
}

const TemplateDrawing& TemplateSet::read(const fs::path& path) {
  const fs::path whole = path.lexically_normal();
  const auto [place, isNew] = drawings_.try_emplace(whole);
  TemplateDrawing& drawing = place->second;
  if (!isNew) return drawing;
  drawing.path = whole;
  drawing.file = site_.shownFile(whole);
  simhost::LoadedDrawing loaded = simhost::loadDrawing(brenvolt::fromUtf8(whole.string()));
  drawing.error = site_.shownText(loaded.error);
  drawing.drawing = std::move(loaded.drawing);
  if (drawing.drawing != nullptr) drawing.markers = templateMarkers(*drawing.drawing);
  for (const TemplateMarker& marker : drawing.markers)
    drawing.keys.insert(marker.key);
  return drawing;
}

fs::path TemplateSet::find(std::wstring_view name) {
  if (name.empty()) return {};
  const auto [place, isNew] = found_.try_emplace(std::wstring(name));
  if (!isNew) return place->second;
  const fs::path asked = brenvolt::toUtf8(name);
  std::error_code error;
  for (const fs::path& folder : folders_)
    if (fs::is_regular_file(folder / asked, error))
      return place->second = (folder / asked).lexically_normal();
  return {};
}

const TemplateDrawing* TemplateSet::readNamed(const std::wstring& name) {
  const auto [place, isNew] = byName_.try_emplace(name, nullptr);
  if (!isNew) return place->second;
  const fs::path path = find(name);
  return place->second = path.empty() ? nullptr : &read(path);
}

void TemplateSet::addInserted(std::wstring_view sheet, fs::path path) {
  inserted_[brenvolt::toUpper(sheet)].insert(path.lexically_normal());
}

std::vector<const TemplateDrawing*> TemplateSet::templatesOf(const SheetModel& sheet) {
  std::vector<const TemplateDrawing*> drawings;
  const auto add = [&drawings](const TemplateDrawing* drawing) {
    if (drawing != nullptr && std::ranges::find(drawings, drawing) == drawings.end())
      drawings.push_back(drawing);
  };
  const std::wstring key = brenvolt::toUpper(sheet.name);
  for (const std::wstring& name : ofCircuits_[key])
    add(readNamed(name));
  for (const NamedDrawing& each : namedBy(sheet))
    add(readNamed(each.name));
  for (const fs::path& path : inserted_[key])
    add(&read(path));
  return drawings;
}

void TemplateSet::addNamed(const SheetModel& sheet) {
  std::vector<NamedDrawing>& named = named_[&sheet];
  for (const SheetCode& code : sheet.codes)
    for (const SheetForm& form : code.forms) {
      const std::size_t point = form.text.find(drawingEnding.front());
      if (point == std::wstring::npos ||
          brenvolt::findNoCase(form.text, drawingEnding, point) == std::wstring::npos)
        continue; // most forms name none
      for (const brenvolt::ScriptToken& token : brenvolt::cutTokens(form.text)) {
        const bool isDrawing =
            token.text.size() > drawingEnding.size() &&
            equalsOrdinalNoCase(token.text.substr(token.text.size() - drawingEnding.size()), drawingEnding);
        if (token.type == kvtype::string && isDrawing)
          named.push_back({&code, &form, std::wstring(token.text)});
      }
    }
}

} // namespace circuits
