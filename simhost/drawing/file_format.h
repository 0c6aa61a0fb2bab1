// The words of the drawing file, shared by its reader and its writer.
#pragma once

#include <string_view>

namespace simhost {

inline constexpr std::string_view formatName = "brenvolt-drawing";
/// Raised when older programs could not read a new file rightly.
inline constexpr int formatVersion = 1;

namespace field {
inline constexpr const char* format = "format";
inline constexpr const char* version = "version";
inline constexpr const char* nextHandle = "nextHandle";
inline constexpr const char* variables = "variables";
inline constexpr const char* layers = "layers";
inline constexpr const char* circuits = "circuits";
inline constexpr const char* id = "id";
inline constexpr const char* blocks = "blocks";
inline constexpr const char* entities = "entities";
inline constexpr const char* handle = "handle";
inline constexpr const char* name = "name";
inline constexpr const char* base = "base";
inline constexpr const char* kind = "kind";
inline constexpr const char* layer = "layer";
inline constexpr const char* colour = "colour";
inline constexpr const char* lineType = "lineType";
inline constexpr const char* wireSettings = "wireSettings";
inline constexpr const char* from = "from";
inline constexpr const char* to = "to";
inline constexpr const char* points = "points";
inline constexpr const char* closed = "closed";
inline constexpr const char* width = "width";
inline constexpr const char* centre = "centre";
inline constexpr const char* radius = "radius";
inline constexpr const char* start = "start";
inline constexpr const char* end = "end";
inline constexpr const char* position = "position";
inline constexpr const char* text = "text";
inline constexpr const char* height = "height";
inline constexpr const char* rotation = "rotation";
inline constexpr const char* justification = "justification";
inline constexpr const char* block = "block";
inline constexpr const char* scale = "scale";
inline constexpr const char* tag = "tag";
inline constexpr const char* prompt = "prompt";
inline constexpr const char* visible = "visible";
inline constexpr const char* data = "data";
inline constexpr const char* attributes = "attributes";
} // namespace field

} // namespace simhost
