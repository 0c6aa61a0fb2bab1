// The writing half of drawing files, and how files are replaced safely.
#include "simhost/drawing/drawing_file.h"

#include "platform/file_replace.h"
#include "simhost/drawing/file_format.h"
#include "text/encoding.h"
#include "text/shortest_number.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

namespace simhost {
namespace {

/// A text in quotes, with the escapes that JSON requires and no others.
void addQuoted(std::string& bytes, std::string_view text) {
  bytes += '"';
  for (const char character : text) {
    if (static_cast<unsigned char>(character) >= 0x20 && character != '"' && character != '\\') {
      bytes += character;
      continue;
    }
    constexpr std::string_view escaped = "\"\\\b\f\n\r\t";
    constexpr std::string_view letters = "\"\\bfnrt";
    bytes += '\\';
    if (const std::size_t place = escaped.find(character); place != std::string_view::npos) {
      bytes += letters[place];
    } else {
      constexpr std::string_view digits = "0123456789abcdef";
      bytes += "u00";
      bytes += digits[static_cast<unsigned char>(character) >> 4U];
      bytes += digits[static_cast<unsigned char>(character) & 15U];
    }
  }
  bytes += '"';
}

/// Most texts need neither an escape nor a code of several bytes: they are copied as they are.
void addText(std::string& bytes, std::wstring_view text) {
  const auto isPlain = [](wchar_t character) {
    return character >= L' ' && character < 0x7F && character != L'"' && character != L'\\';
  };
  if (!std::all_of(text.begin(), text.end(), isPlain)) return addQuoted(bytes, brenvolt::toUtf8(text));
  const std::size_t start = bytes.size();
  bytes.resize(start + text.size() + 2, '"');
  std::transform(
      text.begin(), text.end(), bytes.begin() + static_cast<std::ptrdiff_t>(start) + 1,
      [](wchar_t character) { return static_cast<char>(character); });
}

void addPoint(std::string& bytes, const KvPoint3d& point) {
  bytes += '[';
  brenvolt::appendShortest(bytes, point.x);
  bytes += ',';
  brenvolt::appendShortest(bytes, point.y);
  if (point.z != 0.0) {
    bytes += ',';
    brenvolt::appendShortest(bytes, point.z);
  }
  bytes += ']';
}

/// Items between brackets on one line, at the end of the file's text, in the order in which they come.
class LineBuilder final {
public:
  LineBuilder(std::string& bytes, char open, char close) : bytes_(bytes), close_(close) { bytes_ += open; }

  /// Where the next item is written.
  std::string& item() {
    if (!isFirst_) bytes_ += ',';
    isFirst_ = false;
    return bytes_;
  }
  /// Where the value of the field is written.
  std::string& field(std::string_view key) {
    bytes_ += isFirst_ ? "\"" : ",\"";
    isFirst_ = false;
    bytes_ += key;
    return bytes_ += "\":";
  }
  void text(std::string_view key, std::wstring_view value) { addText(field(key), value); }
  void real(std::string_view key, double value) { brenvolt::appendShortest(field(key), value); }
  void point(std::string_view key, const KvPoint3d& value) { addPoint(field(key), value); }
  void flag(std::string_view key, bool value) { field(key) += value ? "true" : "false"; }

  void end() { bytes_ += close_; }

private:
  std::string& bytes_;
  char close_;
  bool isFirst_ = true;
};

LineBuilder object(std::string& bytes) {
  return {bytes, '{', '}'};
}

LineBuilder array(std::string& bytes) {
  return {bytes, '[', ']'};
}

/// The fields of each kind of shape; those that hold their usual value are left out.
class ShapeWriter final {
public:
  ShapeWriter(LineBuilder& line, const DrawingStore& store) : line_(line), store_(store) {}

  void operator()(const Line& line) const {
    line_.point(field::from, line.from);
    line_.point(field::to, line.to);
  }

  void operator()(const Polyline& polyline) const {
    LineBuilder points = array(line_.field(field::points));
    for (const KvPoint3d& point : polyline.points)
      addPoint(points.item(), point);
    points.end();
    if (polyline.isClosed) line_.flag(field::closed, true);
    if (polyline.width != 0.0) line_.real(field::width, polyline.width);
  }

  void operator()(const Circle& circle) const {
    line_.point(field::centre, circle.centre);
    line_.real(field::radius, circle.radius);
  }

  void operator()(const Arc& arc) const {
    line_.point(field::centre, arc.centre);
    line_.real(field::radius, arc.radius);
    line_.real(field::start, arc.startDegrees);
    line_.real(field::end, arc.endDegrees);
  }

  void operator()(const Text& text) const {
    line_.point(field::position, text.position);
    line_.text(field::text, text.text);
    line_.real(field::height, text.height);
    if (text.rotationDegrees != 0.0) line_.real(field::rotation, text.rotationDegrees);
    if (text.justification != Justification::left) {
      line_.text(field::justification, justificationName(text.justification));
    }
  }

  void operator()(const BlockReference& reference) const {
    line_.text(field::block, store_.findBlock(reference.block)->name);
    line_.point(field::position, reference.position);
    if (reference.scale != 1.0) line_.real(field::scale, reference.scale);
    if (reference.rotationDegrees != 0.0) line_.real(field::rotation, reference.rotationDegrees);
  }

  void operator()(const Attribute& attribute) const {
    line_.text(field::tag, attribute.tag);
    (*this)(attribute.text);
    if (!attribute.isVisible) line_.flag(field::visible, false);
  }

  void operator()(const AttributeDefinition& definition) const {
    line_.text(field::tag, definition.tag);
    if (!definition.prompt.empty()) line_.text(field::prompt, definition.prompt);
    (*this)(definition.text);
    if (!definition.isVisible) line_.flag(field::visible, false);
  }

private:
  LineBuilder& line_;
  const DrawingStore& store_;
};

void addData(std::string& bytes, const std::vector<ApplicationData>& data) {
  LineBuilder applications = object(bytes);
  for (const ApplicationData& one : data) {
    std::string& place = applications.item();
    addText(place, one.application);
    place += ':';
    LineBuilder texts = array(place);
    for (const std::wstring& text : one.texts)
      addText(texts.item(), text);
    texts.end();
  }
  applications.end();
}

void addEntity(std::string& bytes, const EntityNode& entity, const DrawingStore& store) {
  LineBuilder line = object(bytes);
  line.text(field::handle, formatHandle(entity.handle));
  line.text(field::kind, entityKindName(entity.value.kind()));
  line.text(field::layer, entity.value.layer);
  if (entity.value.colour) line.text(field::colour, formatColour(*entity.value.colour));
  std::visit(ShapeWriter(line, store), entity.value.shape);
  if (!entity.value.data.empty()) addData(line.field(field::data), entity.value.data);
  std::optional<LineBuilder> attributes;
  for (const KvDbHandle handle : entity.attributes) {
    const EntityNode* attribute = store.findEntity(handle);
    if (attribute->isErased) continue;
    if (!attributes) attributes.emplace(array(line.field(field::attributes)));
    addEntity(attributes->item(), *attribute, store);
  }
  if (attributes) attributes->end();
  line.end();
}

void addLayer(std::string& bytes, const Layer& layer) {
  LineBuilder line = object(bytes);
  line.text(field::name, layer.name);
  line.text(field::colour, formatColour(layer.colour));
  line.text(field::lineType, lineTypeName(layer.lineType));
  if (layer.wireSettings) {
    LineBuilder settings = array(line.field(field::wireSettings));
    for (const WireSetting& setting : *layer.wireSettings) {
      LineBuilder pair = array(settings.item());
      brenvolt::appendShortest(pair.item(), setting.code);
      if (const auto* integer = std::get_if<std::int32_t>(&setting.value))
        brenvolt::appendShortest(pair.item(), *integer);
      else
        addText(pair.item(), std::get<std::wstring>(setting.value));
      pair.end();
    }
    settings.end();
  }
  line.end();
}

void addCircuit(std::string& bytes, const std::wstring& id, const CircuitFields& fields) {
  LineBuilder line = object(bytes);
  line.text(field::id, id);
  for (const auto& [name, value] : fields) {
    addText(line.item(), name);
    bytes += ':';
    addText(bytes, value);
  }
  line.end();
}

/// Integers are written without a point and reals always with one (or an exponent), which keeps the two apart.
void addVariable(std::string& bytes, const VariableValue& value) {
  if (const auto* text = std::get_if<std::wstring>(&value)) return addText(bytes, *text);
  if (const auto* integer = std::get_if<std::int32_t>(&value))
    return brenvolt::appendShortest(bytes, *integer);
  const std::size_t start = bytes.size();
  brenvolt::appendShortest(bytes, std::get<double>(value));
  if (bytes.find_first_of(".e", start) == std::string::npos) bytes += ".0";
}

/// Lines between brackets, one item a line.
class BlockBuilder final {
public:
  explicit BlockBuilder(std::string& bytes) : bytes_(bytes) {}

  std::string& item() {
    bytes_ += isFirst_ ? "\n" : ",\n";
    isFirst_ = false;
    return bytes_;
  }
  void end(std::string_view closing) {
    if (!isFirst_) bytes_ += '\n';
    bytes_ += closing;
  }

private:
  std::string& bytes_;
  bool isFirst_ = true;
};

std::string& addKey(std::string& bytes, std::string_view name) {
  bytes += '"';
  bytes += name;
  return bytes += "\":";
}

} // namespace

std::string drawingToJson(const DrawingDatabase& drawing) {
  const DrawingStore& store = drawing.store();
  std::string bytes = "{\n";
  addQuoted(addKey(bytes, field::format), formatName);
  bytes += ",\n";
  brenvolt::appendShortest(addKey(bytes, field::version), formatVersion);
  bytes += ",\n";
  addText(addKey(bytes, field::nextHandle), formatHandle(store.nextHandle()));
  bytes += ",\n";
  addKey(bytes, field::variables) += '{';
  BlockBuilder variables(bytes);
  for (const auto& [name, value] : store.variables()) {
    addText(variables.item(), name);
    bytes += ':';
    addVariable(bytes, value);
  }
  variables.end("},\n");
  addKey(bytes, field::layers) += '[';
  BlockBuilder layers(bytes);
  for (const Layer& layer : store.layers())
    addLayer(layers.item(), layer);
  layers.end("],\n");
  if (!store.circuits().empty()) {
    addKey(bytes, field::circuits) += '[';
    BlockBuilder circuits(bytes);
    for (const auto& [id, fields] : store.circuits())
      addCircuit(circuits.item(), id, fields);
    circuits.end("],\n");
  }
  addKey(bytes, field::blocks) += '[';
  BlockBuilder blocks(bytes);
  for (const auto& block : store.blocks()) {
    LineBuilder head = object(blocks.item());
    head.text(field::handle, formatHandle(block->handle));
    head.text(field::name, block->name);
    head.point(field::base, block->basePoint);
    head.field(field::entities) += '[';
    BlockBuilder entities(bytes);
    for (const EntityNode* entity = block->first; entity != nullptr; entity = entity->next)
      addEntity(entities.item(), *entity, store);
    entities.end("]}");
  }
  blocks.end("]\n");
  bytes += "}\n";
  return bytes;
}

Fault saveDrawing(const DrawingDatabase& drawing, const std::wstring& path) {
  return writeFileWhole(path, drawingToJson(drawing));
}

Fault writeFileWhole(const std::wstring& path, std::string_view bytes) {
  const std::optional<std::wstring> reason = brenvolt::replaceFile(path, bytes);
  if (!reason) return std::nullopt;
  return path + L": " + *reason;
}

} // namespace simhost
