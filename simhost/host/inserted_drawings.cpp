// Reading with memory.
#include "simhost/host/inserted_drawings.h"

#include "simhost/drawing/drawing_file.h"
#include "simhost/host/files.h"
#include "simhost/ui/file_names.h"

#include <optional>
#include <utility>

namespace simhost {

SharedDrawing InsertedDrawings::read(const std::wstring& path) {
  std::optional<std::string> bytes = readFile(pathOf(path));
  if (!bytes) return {nullptr, path + L": cannot read the file"};
  const auto found = known_.find(path);
  if (found != known_.end() && found->second.bytes == *bytes) return found->second.drawing;
  LoadedDrawing loaded = drawingFromJson(*bytes, path);
  if (loaded.drawing == nullptr) return {nullptr, std::move(loaded.error)};
  if (known_.size() == mostDrawings) known_.clear();
  Known& known = known_[path];
  known = {std::move(*bytes), {std::move(loaded.drawing), {}}};
  return known.drawing;
}

} // namespace simhost
