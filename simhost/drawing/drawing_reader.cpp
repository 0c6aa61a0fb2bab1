// The reading half of drawing files: everything is checked by the rules that hold for edits too.
#include "simhost/drawing/drawing_file.h"

#include "simhost/drawing/file_format.h"
#include "simhost/drawing/json_fields.h"
#include "simhost/json/json_tree.h"
#include "text/encoding.h"
#include "text/numbers.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <fstream>
#include <limits>
#include <sstream>
#include <utility>

namespace simhost {

using Kind = JsonNode::Kind;

namespace {

[[noreturn]] void failAt(const std::wstring& place, std::wstring_view reason) {
  throw DrawingFileError{place + L": " + std::wstring(reason)};
}

Colour colourField(JsonFields& fields) {
  const std::optional<Colour> colour = parseColour(fields.text(field::colour));
  if (!colour) fields.fail(L"the field colour must be of the form #rrggbb");
  return *colour;
}

KvDbHandle handleField(JsonFields& fields, std::string_view name) {
  const std::optional<KvDbHandle> handle = parseHandle(fields.text(name));
  if (!handle) fields.fail(L"the field " + brenvolt::fromUtf8(name) + L" must be a hexadecimal number");
  return *handle;
}

WireSetting readWireSetting(const JsonNode& item, const JsonFields& fields) {
  if (item.kind != Kind::list || item.count != 2 || item.first->kind != Kind::integer) {
    fields.fail(L"a wire setting must be a code and a value");
  }
  const double code = item.first->number;
  const JsonNode& value = *item.first->next;
  WireSetting setting{code >= 1 && code <= 290 ? static_cast<int>(code) : 0, {}};
  if (!value.isNumber()) {
    setting.value = fields.textOf(value, field::wireSettings);
    return setting;
  }
  const bool fits = value.kind == Kind::integer && value.number >= std::numeric_limits<std::int32_t>::min() &&
                    value.number <= std::numeric_limits<std::int32_t>::max();
  if (!fits) fields.fail(L"a number of a wire setting must be a 32-bit integer");
  setting.value = static_cast<std::int32_t>(value.number);
  return setting;
}

Layer readLayer(const JsonNode& item, std::int64_t position) {
  JsonFields fields(item, {L"layer", position});
  Layer layer{fields.text(field::name)};
  fields.setPlace({.word = L"layer", .name = layer.name});
  layer.colour = colourField(fields);
  const std::optional<LineType> lineType = lineTypeOf(fields.text(field::lineType));
  if (!lineType) fields.fail(L"the line type is unknown");
  layer.lineType = *lineType;
  if (fields.find(field::wireSettings) != nullptr) {
    layer.wireSettings.emplace();
    for (const JsonNode* setting = fields.array(field::wireSettings).first; setting != nullptr;
         setting = setting->next)
      layer.wireSettings->push_back(readWireSetting(*setting, fields));
  }
  fields.finish();
  fields.check(DrawingDatabase::layerFault(layer));
  return layer;
}

VariableValue readVariable(const JsonNode& value, const std::wstring& place) {
  if (value.kind == Kind::text) return brenvolt::fromUtf8(value.text);
  if (value.kind == Kind::real) return value.number;
  if (value.kind != Kind::integer) failAt(place, L"a text or a number is expected");
  if (value.number < std::numeric_limits<std::int32_t>::min() ||
      value.number > std::numeric_limits<std::int32_t>::max()) {
    failAt(place, L"an integer must have 32 bits");
  }
  return static_cast<std::int32_t>(value.number);
}

Text readText(JsonFields& fields) {
  Text text{
      fields.point(field::position), fields.text(field::text), fields.real(field::height),
      fields.real(field::rotation, 0.0)};
  const std::wstring name = fields.text(field::justification, justificationName(Justification::left));
  const std::optional<Justification> justification = justificationOf(name);
  if (!justification) fields.fail(L"the justification is unknown");
  text.justification = *justification;
  return text;
}

Shape readShape(EntityKind kind, JsonFields& fields, const DrawingStore& store) {
  switch (kind) {
  case EntityKind::line:
    return Line{fields.point(field::from), fields.point(field::to)};
  case EntityKind::polyline: {
    Polyline polyline;
    const JsonNode& points = fields.array(field::points);
    polyline.points.reserve(points.count);
    for (const JsonNode* point = points.first; point != nullptr; point = point->next)
      polyline.points.push_back(fields.pointOf(*point, field::points));
    polyline.isClosed = fields.flag(field::closed, false);
    polyline.width = fields.real(field::width, 0.0);
    return polyline;
  }
  case EntityKind::circle:
    return Circle{fields.point(field::centre), fields.real(field::radius)};
  case EntityKind::arc:
    return Arc{
        fields.point(field::centre), fields.real(field::radius), fields.real(field::start),
        fields.real(field::end)};
  case EntityKind::text:
    return readText(fields);
  case EntityKind::blockReference: {
    const std::wstring name = fields.text(field::block);
    const BlockNode* block = store.findBlock(name);
    if (block == nullptr) fields.fail(L"the block \"" + name + L"\" is not defined");
    return BlockReference{
        block->handle, fields.point(field::position), fields.real(field::scale, 1.0),
        fields.real(field::rotation, 0.0)};
  }
  case EntityKind::attribute:
    return Attribute{fields.text(field::tag), readText(fields), fields.flag(field::visible, true)};
  case EntityKind::attributeDefinition:
    return AttributeDefinition{
        fields.text(field::tag), fields.text(field::prompt, L""), readText(fields),
        fields.flag(field::visible, true)};
  }
  fields.fail(L"the kind is unknown");
}

std::vector<ApplicationData> readData(JsonFields& fields) {
  std::vector<ApplicationData> data;
  const JsonNode* object = fields.find(field::data);
  if (object == nullptr) return data;
  if (object->kind != Kind::object) fields.fail(L"the field data must be an object");
  for (const JsonNode* texts = object->first; texts != nullptr; texts = texts->next) {
    if (texts->kind != Kind::list) fields.fail(L"entity data must be lists of texts");
    ApplicationData one{brenvolt::fromUtf8(texts->key), {}};
    one.texts.reserve(texts->count);
    for (const JsonNode* text = texts->first; text != nullptr; text = text->next)
      one.texts.push_back(fields.textOf(*text, field::data));
    data.push_back(std::move(one));
  }
  return data;
}

/// "line 12" for a position in the text.
std::wstring lineOf(std::string_view json, std::size_t byte) {
  const auto end = json.begin() + static_cast<std::ptrdiff_t>(std::min(byte, json.size()));
  return L"line " + brenvolt::formatInt(std::count(json.begin(), end, '\n') + 1);
}

} // namespace

/// Builds a drawing with the handles of a file.
class DrawingReader final {
public:
  std::unique_ptr<DrawingDatabase> read(const JsonNode& json) {
    JsonFields fields(json, {L"drawing"});
    const JsonNode* format = fields.find(field::format);
    if (format == nullptr || format->kind != Kind::text || format->text != formatName)
      fields.fail(L"not a drawing file");
    const JsonNode& version = fields.get(field::version);
    if (version.kind != Kind::integer) fields.fail(L"the version must be a number");
    if (version.number != formatVersion) fields.fail(L"the version of the file is not supported");
    nextHandle_ = handleField(fields, field::nextHandle);
    // Far above any drawing's count, and far enough below the limit to go on drawing.
    if (nextHandle_.value() > DrawingDatabase::handleLimit / 2)
      fields.fail(L"the field nextHandle is too large");

    drawing_->undoLog_.setOff(true);
    readVariables(fields.get(field::variables));
    readLayers(fields.array(field::layers));
    if (const JsonNode* circuits = fields.find(field::circuits)) readCircuits(*circuits);
    const JsonNode& blocks = fields.array(field::blocks);
    fields.finish();
    // All blocks first: references name them.
    for (const JsonNode* block = blocks.first; block != nullptr; block = block->next)
      readBlock(*block);
    auto block = blocks_.begin();
    for (const JsonNode* item = blocks.first; item != nullptr; item = item->next)
      readEntities(*item->find(field::entities), **block++);
    drawing_->store_.setNextHandle(nextHandle_);
    drawing_->undoLog_.setOff(false);
    return std::move(drawing_);
  }

private:
  void readVariables(const JsonNode& object) {
    if (object.kind != Kind::object) failAt(L"drawing", L"the field variables must be an object");
    for (const JsonNode* item = object.first; item != nullptr; item = item->next) {
      const std::wstring name = brenvolt::fromUtf8(item->key);
      const std::wstring place = L"variable \"" + name + L"\"";
      VariableValue value = readVariable(*item, place);
      if (const Fault fault = DrawingDatabase::variableFault(name, value)) failAt(place, *fault);
      drawing_->setVariable(name, std::move(value));
    }
  }

  void readLayers(const JsonNode& layers) {
    std::int64_t position = 0;
    for (const JsonNode* item = layers.first; item != nullptr; item = item->next) {
      Layer layer = readLayer(*item, ++position);
      // Layer "0" is there from the start; it may come in any place of the list.
      const bool isDefault = layer.name == defaultLayer;
      if (!isDefault && drawing_->store_.findLayer(layer.name) != nullptr) {
        failAt(L"layer \"" + layer.name + L"\"", L"it is defined twice");
      }
      drawing_->putLayer(std::move(layer));
    }
  }

  void readCircuits(const JsonNode& circuits) {
    if (circuits.kind != Kind::list) failAt(L"drawing", L"the field circuits must be a list");
    std::int64_t position = 0;
    for (const JsonNode* item = circuits.first; item != nullptr; item = item->next) {
      JsonFields fields(*item, {L"circuit", ++position});
      const std::optional<KvDbHandle> id = parseHandle(fields.text(field::id));
      if (!id) fields.fail(L"the field id must be a hexadecimal number");
      const std::wstring name = formatHandle(*id);
      if (drawing_->store_.circuits().contains(name)) fields.fail(L"its id is used twice");
      CircuitFields texts;
      for (const JsonNode* value = item->first; value != nullptr; value = value->next)
        if (value->key != field::id)
          texts.emplace_back(brenvolt::fromUtf8(value->key), fields.textOf(*value, value->key));
      if (texts.empty()) fields.fail(L"it says nothing");
      drawing_->putCircuit(name, std::move(texts));
    }
  }

  void checkHandle(KvDbHandle handle, const JsonFields& fields) const {
    KvDbObjectId taken;
    if (drawing_->objectIdOf(handle, taken) == KvDbStatus::ok) fields.fail(L"the handle is used twice");
    if (handle >= nextHandle_) fields.fail(L"the handle is not below nextHandle");
  }

  void readBlock(const JsonNode& item) {
    JsonFields fields(item, {L"block", static_cast<std::int64_t>(blocks_.size()) + 1});
    const std::wstring name = fields.text(field::name);
    fields.setPlace({.word = L"block", .name = name});
    const KvDbHandle handle = handleField(fields, field::handle);
    const KvPoint3d basePoint = fields.point(field::base);
    static_cast<void>(fields.array(field::entities));
    fields.finish();
    const bool isSpace = !name.empty() && name.front() == L'*';
    if (isSpace) {
      const BlockNode* space = drawing_->store_.findBlock(name);
      if (space == nullptr || space->handle != handle) fields.fail(L"this space is unknown");
      if (std::find(blocks_.begin(), blocks_.end(), space) != blocks_.end())
        fields.fail(L"it is defined twice");
      if (basePoint != KvPoint3d{}) fields.fail(L"a space has its base at 0, 0");
      blocks_.push_back(space);
      return;
    }
    fields.check(drawing_->blockFault(name, basePoint));
    checkHandle(handle, fields);
    drawing_->store_.setNextHandle(handle);
    drawing_->addBlock(name, basePoint);
    blocks_.push_back(drawing_->store_.findBlock(handle));
  }

  void readEntities(const JsonNode& entities, const BlockNode& block) {
    const JsonPlace place{.word = L"block", .name = block.name};
    std::int64_t position = 0;
    for (const JsonNode* entity = entities.first; entity != nullptr; entity = entity->next)
      readEntity(*entity, block.handle, {L"entity", L"entity number", &place}, ++position);
  }

  /// The name of a layer that is defined, in its first spelling. Neighbours are often on the same one.
  std::wstring layerField(JsonFields& fields) {
    const JsonNode& name = fields.get(field::layer);
    if (layer_ == nullptr || name.kind != Kind::text || name.text != layerText_) {
      const std::wstring text = fields.textOf(name, field::layer);
      layer_ = drawing_->store_.findLayer(text);
      if (layer_ == nullptr) fields.fail(L"the layer \"" + text + L"\" is not defined");
      layerText_ = name.text;
    }
    return layer_->name;
  }

  /// How an entity is named in messages, by its handle and by its number.
  struct EntityWords {
    std::wstring_view byHandle;
    std::wstring_view byNumber;
    const JsonPlace* in;
  };

  void readEntity(const JsonNode& item, KvDbHandle owner, const EntityWords& words, std::int64_t position) {
    JsonFields fields(item, {.word = words.byNumber, .number = position, .in = words.in});
    const KvDbHandle handle = handleField(fields, field::handle);
    fields.setPlace({.word = words.byHandle, .handle = handle, .in = words.in});
    const std::optional<EntityKind> kind = entityKindOf(fields.text(field::kind));
    if (!kind) fields.fail(L"the kind is unknown");
    Entity entity{readShape(*kind, fields, drawing_->store_), layerField(fields)};
    if (fields.find(field::colour) != nullptr) entity.colour = colourField(fields);
    entity.data = readData(fields);
    const JsonNode* attributes =
        *kind == EntityKind::blockReference ? fields.find(field::attributes) : nullptr;
    if (attributes != nullptr) attributes = &fields.array(field::attributes);
    fields.finish();
    fields.check(drawing_->entityFault(owner, entity));
    checkHandle(handle, fields);
    drawing_->store_.attach(std::make_unique<EntityNode>(EntityNode{handle, owner, std::move(entity)}));
    if (attributes == nullptr) return;
    std::int64_t attributePosition = 0;
    for (const JsonNode* attribute = attributes->first; attribute != nullptr; attribute = attribute->next)
      readEntity(
          *attribute, handle, {L"attribute", L"attribute number", &fields.place()}, ++attributePosition);
  }

  std::unique_ptr<DrawingDatabase> drawing_ = std::make_unique<DrawingDatabase>();
  KvDbHandle nextHandle_;
  std::vector<const BlockNode*> blocks_; ///< in the order of the file
  const Layer* layer_ = nullptr;         ///< of the last entity
  std::string_view layerText_;           ///< and its name in the file
};

LoadedDrawing drawingFromJson(std::string_view json, std::wstring_view name) {
  const auto failure = [&](const std::wstring& text) {
    return LoadedDrawing{nullptr, std::wstring(name) + L": " + text};
  };
  try {
    return {DrawingReader().read(JsonTree(json).root()), L""};
  } catch (const DrawingFileError& error) {
    return failure(error.text);
  } catch (const nlohmann::json::parse_error& error) {
    return failure(lineOf(json, error.byte) + L": this is not JSON text");
  } catch (const nlohmann::json::exception&) {
    return failure(L"a number is too large");
  }
}

LoadedDrawing loadDrawing(const std::wstring& path) {
  std::ifstream file(brenvolt::toUtf8(path), std::ios::binary);
  std::ostringstream content;
  // A folder opens like a file and fails when it is read.
  const bool isRead =
      file.is_open() && (file.peek() == std::ifstream::traits_type::eof() || content << file.rdbuf());
  if (!isRead || file.bad()) return {nullptr, path + L": cannot read the file"};
  return drawingFromJson(content.str(), path);
}

} // namespace simhost
