// The reading half of drawing files: everything is checked by the rules that hold for edits too.
#include "simhost/drawing/drawing_file.h"

#include "simhost/drawing/file_format.h"
#include "simhost/drawing/json_fields.h"
#include "simhost/json/json_text.h"
#include "text/encoding.h"
#include "text/numbers.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <fstream>
#include <limits>
#include <sstream>
#include <utility>

namespace simhost {
namespace {

[[noreturn]] void failAt(const std::wstring& place, std::wstring_view reason) {
  throw DrawingFileError{place + L": " + std::wstring(reason)};
}

void check(const std::wstring& place, const Fault& fault) {
  if (fault) failAt(place, *fault);
}

Colour colourField(JsonFields& fields) {
  const std::optional<Colour> colour = parseColour(fields.text(field::colour));
  if (!colour) fields.fail(L"the field colour must be of the form #rrggbb");
  return *colour;
}

KvDbHandle handleField(JsonFields& fields, const char* name) {
  const std::optional<KvDbHandle> handle = parseHandle(fields.text(name));
  if (!handle) fields.fail(L"the field " + brenvolt::fromUtf8(name) + L" must be a hexadecimal number");
  return *handle;
}

WireSetting readWireSetting(const Json& item, const JsonFields& fields) {
  if (!item.is_array() || item.size() != 2 || !item[0].is_number_integer()) {
    fields.fail(L"a wire setting must be a code and a value");
  }
  const double code = item[0].get<double>();
  WireSetting setting{code >= 1 && code <= 290 ? static_cast<int>(code) : 0, {}};
  if (!item[1].is_number()) {
    setting.value = fields.textOf(item[1], field::wireSettings);
    return setting;
  }
  const double number = item[1].get<double>();
  const bool fits = item[1].is_number_integer() && number >= std::numeric_limits<std::int32_t>::min() &&
                    number <= std::numeric_limits<std::int32_t>::max();
  if (!fits) fields.fail(L"a number of a wire setting must be a 32-bit integer");
  setting.value = static_cast<std::int32_t>(number);
  return setting;
}

Layer readLayer(const Json& item, std::size_t position) {
  JsonFields fields(item, L"layer " + brenvolt::formatInt(static_cast<std::int64_t>(position)));
  Layer layer{fields.text(field::name)};
  fields.setPlace(L"layer \"" + layer.name + L"\"");
  layer.colour = colourField(fields);
  const std::optional<LineType> lineType = lineTypeOf(fields.text(field::lineType));
  if (!lineType) fields.fail(L"the line type is unknown");
  layer.lineType = *lineType;
  if (fields.find(field::wireSettings) != nullptr) {
    layer.wireSettings.emplace();
    for (const Json& setting : fields.array(field::wireSettings)) {
      layer.wireSettings->push_back(readWireSetting(setting, fields));
    }
  }
  fields.finish();
  check(fields.place(), DrawingDatabase::layerFault(layer));
  return layer;
}

VariableValue readVariable(const Json& value, const std::wstring& place) {
  if (value.is_string()) return brenvolt::fromUtf8(value.get_ref<const std::string&>());
  if (value.is_number_float()) return value.get<double>();
  if (!value.is_number_integer()) failAt(place, L"a text or a number is expected");
  const double number = value.get<double>();
  if (number < std::numeric_limits<std::int32_t>::min() ||
      number > std::numeric_limits<std::int32_t>::max()) {
    failAt(place, L"an integer must have 32 bits");
  }
  return static_cast<std::int32_t>(number);
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
    for (const Json& point : fields.array(field::points)) {
      polyline.points.push_back(fields.pointOf(point, field::points));
    }
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
  const Json* object = fields.find(field::data);
  if (object == nullptr) return data;
  if (!object->is_object()) fields.fail(L"the field data must be an object");
  for (const auto& [application, texts] : object->items()) {
    if (!texts.is_array()) fields.fail(L"entity data must be lists of texts");
    ApplicationData one{brenvolt::fromUtf8(application), {}};
    for (const Json& text : texts) {
      one.texts.push_back(fields.textOf(text, field::data));
    }
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
  std::unique_ptr<DrawingDatabase> read(const Json& json) {
    JsonFields fields(json, L"drawing");
    const Json* format = fields.find(field::format);
    if (format == nullptr || *format != formatName) fields.fail(L"not a drawing file");
    const Json& version = fields.get(field::version);
    if (!version.is_number_integer()) fields.fail(L"the version must be a number");
    if (version.get<double>() != formatVersion) fields.fail(L"the version of the file is not supported");
    nextHandle_ = handleField(fields, field::nextHandle);
    // Far above any drawing's count, and far enough below the limit to go on drawing.
    if (nextHandle_.value() > DrawingDatabase::handleLimit / 2)
      fields.fail(L"the field nextHandle is too large");

    drawing_->undoLog_.setOff(true);
    readVariables(fields.get(field::variables));
    readLayers(fields.array(field::layers));
    if (const Json* circuits = fields.find(field::circuits)) readCircuits(*circuits);
    const Json& blocks = fields.array(field::blocks);
    fields.finish();
    // All blocks first: references name them.
    for (const Json& block : blocks) {
      readBlock(block);
    }
    for (std::size_t index = 0; index < blocks.size(); ++index) {
      readEntities(blocks[index], *blocks_[index]);
    }
    drawing_->store_.setNextHandle(nextHandle_);
    drawing_->undoLog_.setOff(false);
    return std::move(drawing_);
  }

private:
  void readVariables(const Json& object) {
    if (!object.is_object()) failAt(L"drawing", L"the field variables must be an object");
    for (const auto& [key, item] : object.items()) {
      const std::wstring name = brenvolt::fromUtf8(key);
      const std::wstring place = L"variable \"" + name + L"\"";
      VariableValue value = readVariable(item, place);
      check(place, DrawingDatabase::variableFault(name, value));
      drawing_->setVariable(name, std::move(value));
    }
  }

  void readLayers(const Json& layers) {
    for (std::size_t index = 0; index < layers.size(); ++index) {
      Layer layer = readLayer(layers[index], index + 1);
      // Layer "0" is there from the start; it may come in any place of the list.
      const bool isDefault = layer.name == defaultLayer;
      if (!isDefault && drawing_->store_.findLayer(layer.name) != nullptr) {
        failAt(L"layer \"" + layer.name + L"\"", L"it is defined twice");
      }
      drawing_->putLayer(std::move(layer));
    }
  }

  void readCircuits(const Json& circuits) {
    if (!circuits.is_array()) failAt(L"drawing", L"the field circuits must be a list");
    std::int64_t position = 0;
    for (const Json& item : circuits) {
      JsonFields fields(item, L"circuit " + brenvolt::formatInt(++position));
      const std::optional<KvDbHandle> id = parseHandle(fields.text(field::id));
      if (!id) fields.fail(L"the field id must be a hexadecimal number");
      const std::wstring name = formatHandle(*id);
      if (drawing_->store_.circuits().contains(name)) fields.fail(L"its id is used twice");
      CircuitFields texts;
      for (const auto& [key, value] : item.items())
        if (key != field::id) texts.emplace_back(brenvolt::fromUtf8(key), fields.textOf(value, key.c_str()));
      if (texts.empty()) fields.fail(L"it says nothing");
      drawing_->putCircuit(name, std::move(texts));
    }
  }

  void takeHandle(KvDbHandle handle, const std::wstring& place) {
    KvDbObjectId taken;
    if (drawing_->objectIdOf(handle, taken) == KvDbStatus::ok) failAt(place, L"the handle is used twice");
    if (handle >= nextHandle_) failAt(place, L"the handle is not below nextHandle");
    drawing_->store_.setNextHandle(handle);
  }

  void readBlock(const Json& item) {
    JsonFields fields(item, L"block " + brenvolt::formatInt(static_cast<std::int64_t>(blocks_.size()) + 1));
    const std::wstring name = fields.text(field::name);
    fields.setPlace(L"block \"" + name + L"\"");
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
    check(fields.place(), drawing_->blockFault(name, basePoint));
    takeHandle(handle, fields.place());
    drawing_->addBlock(name, basePoint);
    blocks_.push_back(drawing_->store_.findBlock(handle));
  }

  void readEntities(const Json& item, const BlockNode& block) {
    std::size_t position = 0;
    for (const Json& entity : item[field::entities]) {
      const std::wstring place = L"block \"" + block.name + L"\", entity ";
      readEntity(entity, block.handle, place, ++position);
    }
  }

  void readEntity(const Json& item, KvDbHandle owner, const std::wstring& place, std::size_t position) {
    JsonFields fields(item, place + L"number " + brenvolt::formatInt(static_cast<std::int64_t>(position)));
    const KvDbHandle handle = handleField(fields, field::handle);
    fields.setPlace(place + formatHandle(handle));
    const std::optional<EntityKind> kind = entityKindOf(fields.text(field::kind));
    if (!kind) fields.fail(L"the kind is unknown");
    Entity entity{readShape(*kind, fields, drawing_->store_), fields.text(field::layer)};
    if (drawing_->store_.findLayer(entity.layer) == nullptr) {
      fields.fail(L"the layer \"" + entity.layer + L"\" is not defined");
    }
    if (fields.find(field::colour) != nullptr) entity.colour = colourField(fields);
    entity.data = readData(fields);
    const bool hasAttributes =
        *kind == EntityKind::blockReference && fields.find(field::attributes) != nullptr;
    fields.finish();
    check(fields.place(), drawing_->entityFault(owner, entity));
    takeHandle(handle, fields.place());
    drawing_->addEntity(owner, std::move(entity));
    if (!hasAttributes) return;
    std::size_t attributePosition = 0;
    for (const Json& attribute : fields.array(field::attributes)) {
      readEntity(attribute, handle, fields.place() + L", attribute ", ++attributePosition);
    }
  }

  std::unique_ptr<DrawingDatabase> drawing_ = std::make_unique<DrawingDatabase>();
  KvDbHandle nextHandle_;
  std::vector<const BlockNode*> blocks_; ///< in the order of the file
};

LoadedDrawing drawingFromJson(std::string_view json, std::wstring_view name) {
  const auto failure = [&](const std::wstring& text) {
    return LoadedDrawing{nullptr, std::wstring(name) + L": " + text};
  };
  try {
    return {DrawingReader().read(parseJson(json)), L""};
  } catch (const DrawingFileError& error) {
    return failure(error.text);
  } catch (const Json::parse_error& error) {
    return failure(lineOf(json, error.byte) + L": this is no JSON text");
  } catch (const Json::exception&) {
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
