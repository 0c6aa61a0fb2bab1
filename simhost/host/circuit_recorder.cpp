// Derives the origin of entities from a build's arguments, the marker data in LISP and the drawing.
#include "simhost/host/circuit_recorder.h"

#include "simhost/drawing/circuit_seal.h"
#include "simhost/host/session.h"
#include "simhost/lisp/list.h"
#include "text/compare.h"
#include "text/encoding.h"
#include "text/numbers.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <iterator>
#include <utility>
#include <vector>

namespace simhost {

using lisp::Value;

namespace {

/// LISP stores the current marker here: (number (handle ...) ...).
constexpr std::wstring_view markerData = L"GBL_qn_bv_marker_data";
/// Called at the end of a build with ((CODE nil "1,2") ...).
constexpr std::wstring_view codesFunction = L"qn_bv_save_codehdl";
/// What the parent product says of a build: (name point scale ...).
constexpr std::wstring_view buildData = L"GBL_qn_bv_data";
constexpr std::wstring_view codeTag = L"CODE";
/// Variables of a drawing that are its site's own begin so.
constexpr std::wstring_view siteVariables = L"SITE_";

constexpr std::size_t lastHandlePosition = 6;

/// What of a build's arguments is kept, by position.
struct KeptArgument {
  std::size_t position;
  std::wstring_view name;
};
constexpr std::array keptArguments{KeptArgument{2, L"circuit"},       KeptArgument{3, L"type"},
                                   KeptArgument{0, L"workbook"},      KeptArgument{1, L"worksheet"},
                                   KeptArgument{4, L"configuration"}, KeptArgument{9, L"params"},
                                   KeptArgument{11, L"wires"}};

std::wstring textAt(const std::vector<Value>& values, std::size_t position) {
  return position < values.size() && values[position].isString() ? values[position].asString()
                                                                 : std::wstring();
}

const std::wstring* attributeText(
    const DrawingDatabase& drawing, const EntityNode& reference, std::wstring_view tag) {
  for (const KvDbHandle handle : reference.attributes) {
    const EntityNode* attribute = drawing.find(handle);
    if (attribute == nullptr) continue;
    const auto& value = std::get<Attribute>(attribute->value.shape);
    if (brenvolt::equalsOrdinalNoCase(value.tag, tag)) return &value.text.text;
  }
  return nullptr;
}

/// "CODE=1,2;CODE=": as a later build takes them for presets.
std::wstring codesText(const Value& rows) {
  std::wstring text;
  for (const Value& row : lisp::Elements(rows)) {
    const std::vector<Value> parts = lisp::toVector(row);
    if (!text.empty()) text += L';';
    text += textAt(parts, 0) + L'=' + textAt(parts, 2);
  }
  return text;
}

} // namespace

CircuitRecorder::Build::Build(CircuitRecorder& recorder, std::span<const Value> arguments)
    : recorder_(recorder), isOuter_(!recorder.circuit_) {
  Document* document = recorder.session_.documents().current();
  if (isOuter_ && document != nullptr) recorder.begin(document->drawing(), arguments);
}

CircuitRecorder::Build::~Build() {
  if (isOuter_) recorder_.circuit_.reset();
}

void CircuitRecorder::Build::succeed() {
  if (!isOuter_ || !recorder_.circuit_) return;
  if (DrawingDatabase* drawing = DrawingDatabase::of(recorder_.circuit_->space)) recorder_.finish(*drawing);
}

CircuitRecorder::Form::Form(
    CircuitRecorder& recorder, std::wstring_view function, std::span<const Value> arguments)
    : recorder_(recorder) {
  if (!recorder.circuit_) return;
  drawing_ = DrawingDatabase::of(recorder.circuit_->space);
  if (drawing_ == nullptr) return;
  former_ = drawing_->stamp();
  drawing_->setStamp(recorder.stampNow(*drawing_));
  marker_ = recorder.circuit_->marker;
  if (brenvolt::equalsOrdinalNoCase(function, codesFunction) && !arguments.empty())
    recorder.circuit_->fields.emplace_back(L"codes", codesText(arguments.front()));
}

CircuitRecorder::Form::~Form() {
  if (drawing_ == nullptr) return;
  // A marker has several forms, and between two of them a whole template can have been built.
  if (const std::optional<Provenance>& stamp = drawing_->stamp(); stamp && recorder_.circuit_)
    recorder_.circuit_->orders[marker_] = stamp->order;
  // What a form has native code call draws for the same marker.
  if (former_ && drawing_->stamp() && former_->code == drawing_->stamp()->code)
    former_->order = drawing_->stamp()->order;
  drawing_->setStamp(std::move(former_));
}

void CircuitRecorder::begin(DrawingDatabase& drawing, std::span<const Value> arguments) {
  // One list, or the items bare.
  const std::vector<Value> values = arguments.size() == 1 && arguments.front().isList()
                                        ? lisp::toVector(arguments.front())
                                        : std::vector<Value>(arguments.begin(), arguments.end());
  Circuit circuit;
  circuit.space = drawing.currentSpaceId();
  if (const auto before = parseHandle(textAt(values, lastHandlePosition))) circuit.before = *before;
  for (const KeptArgument& kept : keptArguments) {
    std::wstring text = textAt(values, kept.position);
    // The folder is that of the machine; where the file is, the site knows.
    if (kept.position == 0)
      text = brenvolt::fromUtf8(std::filesystem::path(brenvolt::toUtf8(text)).filename().string());
    if (!text.empty()) circuit.fields.emplace_back(kept.name, std::move(text));
  }
  // The site's own variables, such as the number of the circuit: a build of the circuit that comes later needs them.
  for (const auto& [name, value] : drawing.store().variables()) {
    if (!name.starts_with(siteVariables)) continue;
    if (const auto* text = std::get_if<std::wstring>(&value); text != nullptr && !text->empty())
      circuit.fields.emplace_back(name, *text);
    if (const auto* number = std::get_if<std::int32_t>(&value))
      circuit.fields.emplace_back(name, brenvolt::formatInt(*number));
  }
  circuit_ = std::move(circuit);
  const EntityNode* first = firstOf(drawing);
  if (first == nullptr) return circuit_.reset();
  circuit_->id = continued_.empty() ? formatHandle(first->handle) : std::exchange(continued_, {});
  const std::vector<Value> data =
      lisp::toVector(session_.documents().current()->interpreter().value(buildData));
  if (data.size() > 1) {
    std::wstring point;
    for (const Value& part : lisp::Elements(data[1]))
      if (part.isNumber()) point += (point.empty() ? L"" : L",") + brenvolt::formatShortest(part.asNumber());
    circuit_->fields.emplace_back(L"point", point);
  }
  // A circuit that was drawn smaller is built again as small.
  for (const auto& [place, name] : {std::pair{2U, L"scale"}, std::pair{5U, L"component-scale"}})
    if (data.size() > place && data[place].isNumber() && data[place].asNumber() != 1.0)
      circuit_->fields.emplace_back(name, brenvolt::formatShortest(data[place].asNumber()));
}

const EntityNode* CircuitRecorder::firstOf(const DrawingDatabase& drawing) const {
  if (const EntityNode* before = drawing.store().findEntity(circuit_->before))
    return drawing.store().following(*before);
  const BlockNode* space = drawing.store().findBlock(DrawingDatabase::handleOf(circuit_->space));
  return space == nullptr ? nullptr : space->first;
}

void CircuitRecorder::finish(DrawingDatabase& drawing) {
  std::vector<KvDbHandle> ofTemplate;
  for (const EntityNode* entity = firstOf(drawing); entity != nullptr; entity = entity->next)
    if (const auto origin = provenanceOf(entity->value); !origin || origin->circuit != circuit_->id)
      ofTemplate.push_back(entity->handle);
  for (const KvDbHandle handle : ofTemplate) {
    Entity value = drawing.find(handle)->value;
    setProvenance(value, {circuit_->id});
    drawing.changeEntity(handle, std::move(value));
  }
  drawing.putCircuit(circuit_->id, circuit_->fields);
  built_.emplace_back(circuit_->space, circuit_->id);
}

void CircuitRecorder::sealBuilt() {
  if (circuit_) return; // a build goes on around this evaluation
  for (const auto& [space, circuit] : std::exchange(built_, {}))
    if (DrawingDatabase* drawing = DrawingDatabase::of(space)) sealCircuit(*drawing, circuit);
}

Provenance CircuitRecorder::stampNow(const DrawingDatabase& drawing) {
  // What was undone runs again from its beginning.
  if (std::exchange(circuit_->replays, drawing.undoLog().replayCount()) != circuit_->replays)
    circuit_->orders.clear();
  findMarker(drawing);
  Provenance stamp{circuit_->id, circuit_->code};
  stamp.order = stamp.code.empty() ? 0 : circuit_->orders[circuit_->marker];
  return stamp;
}

void CircuitRecorder::findMarker(const DrawingDatabase& drawing) {
  const Value data = session_.documents().current()->interpreter().value(markerData);
  const bool isData = data.isCons() && data.asCons().car().isInteger() && data.asCons().cdr().isCons();
  const std::int32_t number = isData ? data.asCons().car().asInteger() : -1;
  const Value handles = isData ? data.asCons().cdr().asCons().car() : Value();
  if (number == circuit_->number && handles.isSame(circuit_->handles)) return;
  circuit_->number = number;
  circuit_->handles = handles;
  circuit_->marker.clear();
  circuit_->code.clear();
  std::int32_t place = 0;
  for (const Value& handle : lisp::Elements(handles)) {
    if (place++ != number) continue;
    const auto parsed = handle.isString() ? parseHandle(handle.asString()) : std::nullopt;
    const EntityNode* reference = parsed ? drawing.find(*parsed) : nullptr;
    const std::wstring* code = reference == nullptr ? nullptr : attributeText(drawing, *reference, codeTag);
    if (code == nullptr) return;
    circuit_->marker = handle.asString();
    circuit_->code = *code;
    return;
  }
}

} // namespace simhost
