// The writing half of drawing files, and how files are replaced safely.
#include "simhost/drawing/drawing_file.h"

#include "platform/file_replace.h"
#include "simhost/drawing/file_format.h"
#include "simhost/json/json_text.h"
#include "text/encoding.h"
#include "text/numbers.h"

#include <nlohmann/json.hpp>

#include <cstdio>

namespace simhost {
namespace {

std::string quoteText(std::wstring_view text) {
  return jsonText(nlohmann::ordered_json(brenvolt::toUtf8(text)));
}

std::string number(double value) {
  // Minus zero would come back as another text than it went.
  return brenvolt::toUtf8(brenvolt::formatShortest(value == 0.0 ? 0.0 : value));
}

std::string pointText(const KvPoint3d& point) {
  std::string text = "[" + number(point.x) + "," + number(point.y);
  if (point.z != 0.0) text += "," + number(point.z);
  return text + "]";
}

/// Items between brackets on one line, in the order in which they come.
class LineBuilder final {
public:
  LineBuilder(char open, char close) : text_(1, open), close_(close) {}

  void item(std::string_view value) {
    if (text_.size() > 1) text_ += ',';
    text_ += value;
  }
  void field(std::string_view key, std::string_view value) {
    item("\"" + std::string(key) + "\":" + std::string(value));
  }
  void text(std::string_view key, std::wstring_view value) { field(key, quoteText(value)); }
  void real(std::string_view key, double value) { field(key, number(value)); }
  void point(std::string_view key, const KvPoint3d& value) { field(key, pointText(value)); }
  void flag(std::string_view key, bool value) { field(key, value ? "true" : "false"); }

  [[nodiscard]] std::string done() const { return text_ + close_; }

private:
  std::string text_;
  char close_;
};

LineBuilder object() {
  return {'{', '}'};
}

LineBuilder array() {
  return {'[', ']'};
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
    LineBuilder points = array();
    for (const KvPoint3d& point : polyline.points) {
      points.item(pointText(point));
    }
    line_.field(field::points, points.done());
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

std::string dataText(const std::vector<ApplicationData>& data) {
  LineBuilder applications = object();
  for (const ApplicationData& one : data) {
    LineBuilder texts = array();
    for (const std::wstring& text : one.texts) {
      texts.item(quoteText(text));
    }
    applications.item(quoteText(one.application) + ":" + texts.done());
  }
  return applications.done();
}

std::string entityText(const EntityNode& entity, const DrawingStore& store) {
  LineBuilder line = object();
  line.text(field::handle, formatHandle(entity.handle));
  line.text(field::kind, entityKindName(entity.value.kind()));
  line.text(field::layer, entity.value.layer);
  if (entity.value.colour) line.text(field::colour, formatColour(*entity.value.colour));
  std::visit(ShapeWriter(line, store), entity.value.shape);
  if (!entity.value.data.empty()) line.field(field::data, dataText(entity.value.data));
  LineBuilder attributes = array();
  bool hasAttributes = false;
  for (const KvDbHandle handle : entity.attributes) {
    const EntityNode* attribute = store.findEntity(handle);
    if (attribute->isErased) continue;
    attributes.item(entityText(*attribute, store));
    hasAttributes = true;
  }
  if (hasAttributes) line.field(field::attributes, attributes.done());
  return line.done();
}

std::string layerText(const Layer& layer) {
  LineBuilder line = object();
  line.text(field::name, layer.name);
  line.text(field::colour, formatColour(layer.colour));
  line.text(field::lineType, lineTypeName(layer.lineType));
  if (layer.wireSettings) {
    LineBuilder settings = array();
    for (const WireSetting& setting : *layer.wireSettings) {
      LineBuilder pair = array();
      pair.item(number(setting.code));
      const auto* integer = std::get_if<std::int32_t>(&setting.value);
      pair.item(integer != nullptr ? number(*integer) : quoteText(std::get<std::wstring>(setting.value)));
      settings.item(pair.done());
    }
    line.field(field::wireSettings, settings.done());
  }
  return line.done();
}

std::string circuitText(const std::wstring& id, const CircuitFields& fields) {
  LineBuilder line = object();
  line.text(field::id, id);
  for (const auto& [name, value] : fields)
    line.item(quoteText(name) + ":" + quoteText(value));
  return line.done();
}

/// Integers are written without a point and reals always with one (or an exponent), which keeps the two apart.
std::string variableText(const VariableValue& value) {
  if (const auto* text = std::get_if<std::wstring>(&value)) return quoteText(*text);
  if (const auto* integer = std::get_if<std::int32_t>(&value)) return number(*integer);
  std::string real = number(std::get<double>(value));
  if (real.find_first_of(".e") == std::string::npos) real += ".0";
  return real;
}

/// Lines between brackets, one item a line.
class BlockBuilder final {
public:
  explicit BlockBuilder(std::string& text) : text_(text) {}

  void item(std::string_view line) {
    text_ += isFirst_ ? "\n" : ",\n";
    text_ += line;
    isFirst_ = false;
  }
  void end(std::string_view closing) {
    if (!isFirst_) text_ += '\n';
    text_ += closing;
  }

private:
  std::string& text_;
  bool isFirst_ = true;
};

std::string key(std::string_view name) {
  return "\"" + std::string(name) + "\":";
}

} // namespace

std::string drawingToJson(const DrawingDatabase& drawing) {
  const DrawingStore& store = drawing.store();
  std::string text = "{\n";
  text += key(field::format) + "\"" + std::string(formatName) + "\",\n";
  text += key(field::version) + std::to_string(formatVersion) + ",\n";
  text += key(field::nextHandle) + quoteText(formatHandle(store.nextHandle())) + ",\n";
  text += key(field::variables) + "{";
  BlockBuilder variables(text);
  for (const auto& [name, value] : store.variables()) {
    variables.item(quoteText(name) + ":" + variableText(value));
  }
  variables.end("},\n");
  text += key(field::layers) + "[";
  BlockBuilder layers(text);
  for (const Layer& layer : store.layers()) {
    layers.item(layerText(layer));
  }
  layers.end("],\n");
  if (!store.circuits().empty()) {
    text += key(field::circuits) + "[";
    BlockBuilder circuits(text);
    for (const auto& [id, fields] : store.circuits())
      circuits.item(circuitText(id, fields));
    circuits.end("],\n");
  }
  text += key(field::blocks) + "[";
  BlockBuilder blocks(text);
  for (const auto& block : store.blocks()) {
    LineBuilder head = object();
    head.text(field::handle, formatHandle(block->handle));
    head.text(field::name, block->name);
    head.point(field::base, block->basePoint);
    std::string opening = head.done();
    opening.back() = ',';
    blocks.item(opening + key(field::entities) + "[");
    BlockBuilder entities(text);
    for (const EntityNode* entity = block->first; entity != nullptr; entity = entity->next) {
      entities.item(entityText(*entity, store));
    }
    entities.end("]}");
  }
  blocks.end("]\n");
  return text + "}\n";
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
