#include "data/entity_records.h"

#include "host/host_api_documents.h"
#include "host/open_object.h"
#include "host/result_list.h"
#include "text/compare.h"
#include "text/split.h"

#include <algorithm>
#include <optional>
#include <unordered_set>

namespace brenvolt {

namespace {

constexpr wchar_t fieldsApplication[] = L"ORL_QN_BV_CIRCPARAMS";
constexpr wchar_t wiresApplication[] = L"ORL_QN_BV_CIRCPARAMS2";
constexpr std::size_t terminalTagLength = 8;

/// A kind of load: what its block's name holds at positions 1 and 2, and the code in its record.
struct LoadKind {
  std::wstring_view blockLetters;
  std::wstring_view controlCode;
};
constexpr LoadKind motorKind = {L"MO", L"!MCC_CTRL"};
constexpr LoadKind powerFeedKind = {L"DV", L"!PF_CTRL"};

/// The text of an application's entity data: application, brace, text, in this order.
std::wstring entityDataText(const KvDbObject& object, const wchar_t* application) {
  const ResultList data(object.xData(application));
  ListReader reader(data);
  for (const std::int16_t expected : {kvtype::applicationName, kvtype::controlString}) {
    if (reader.type() != expected) return {};
    reader.skipElement();
  }
  return reader.type() == kvtype::dataString ? reader.groupText().value_or(std::wstring()) : std::wstring();
}

std::wstring trimQuotes(std::wstring_view text) {
  return trim(text, L"\"");
}

void takeWires(std::wstring_view text, ZanCircParams& record) {
  bool hasTaken = false;
  for (const std::wstring_view item : wrappedGroups(text)) {
    const std::size_t lastBlank = item.rfind(L' ');
    if (lastBlank == std::wstring_view::npos) continue;
    const std::wstring flag = trimQuotes(item.substr(lastBlank + 1));
    const std::wstring_view left = item.substr(0, lastBlank);
    const std::wstring value = trimQuotes(left.substr(0, left.find(L' ')));
    // A grounding wire before the conductor keeps the conductor's field blank: required behaviour.
    if (!hasTaken && (flag == L"0" || flag == L"1")) {
      record.set(circparam::wire, value);
      hasTaken = true;
    }
    if (flag == L"3") {
      record.set(circparam::groundWire, value);
      hasTaken = true;
    }
  }
}

std::wstring blockNameOf(KvDbObjectId id) {
  const OpenObject<KvDbBlockReference> reference(id, KvOpenMode::forRead);
  if (!reference) return {};
  const OpenObject<KvDbBlockTableRecord> block(reference->blockTableRecord(), KvOpenMode::forRead);
  return block ? block->name() : std::wstring();
}

bool isOfKind(KvDbObjectId id, const LoadKind& kind) {
  const std::wstring name = blockNameOf(id);
  if (name.size() >= 3 && equalsOrdinalNoCase(std::wstring_view(name).substr(1, 2), kind.blockLetters))
    return true;
  std::wstring code;
  return readCircField(id, circparam::controlCode, code) == RecordStatus::ok &&
         equalsOrdinalNoCase(code, kind.controlCode);
}

/// The number of a terminal's tag such as X1TERM01; nothing when the tag is not a terminal's. Position 1 is free.
std::optional<std::wstring_view> terminalNumber(std::wstring_view tag) {
  if (tag.size() != terminalTagLength) return std::nullopt;
  if (!equalsOrdinalNoCase(tag.substr(0, 1), L"X") || !equalsOrdinalNoCase(tag.substr(2, 4), L"TERM"))
    return std::nullopt;
  return tag.substr(6);
}

std::vector<std::wstring> definitionTagsOf(KvDbObjectId blockRecord) {
  std::vector<std::wstring> tags;
  forEachEntity(blockRecord, [&tags](KvDbObjectId id) {
    const OpenObject<KvDbAttributeDefinition> definition(id, KvOpenMode::forRead);
    if (definition) tags.push_back(definition->tag());
  });
  return tags;
}

template <std::size_t size>
RecordStatus readFields(
    KvDbObjectId id, const std::array<std::size_t, size>& order, std::array<std::wstring, size>& fields) {
  ZanCircParams record;
  const RecordStatus status = readCircParams(id, record);
  if (status != RecordStatus::ok) return status;
  std::transform(
      order.begin(), order.end(), fields.begin(), [&record](std::size_t index) { return record.get(index); });
  return RecordStatus::ok;
}

} // namespace

std::wstring ZanCircParams::get(std::size_t index) const {
  return index < fields_.size() ? fields_[index] : std::wstring();
}

void ZanCircParams::set(std::size_t index, std::wstring_view text) {
  if (index < fields_.size()) fields_[index] = text;
}

ZanCircParams parseCircParams(std::wstring_view fields, std::wstring_view wires) {
  ZanCircParams record;
  // Empty fields vanish, so later ones shift down: the writer has to write a blank.
  const std::vector<std::wstring> texts = splitSkippingEmpty(fields, L';');
  for (std::size_t i = 0; i < texts.size(); ++i)
    record.set(i, trimQuotes(texts[i]));
  takeWires(wires, record);
  return record;
}

RecordStatus readCircParams(KvDbObjectId id, ZanCircParams& record) {
  record = {};
  if (id.isNull()) return RecordStatus::invalidId;
  const OpenObject<KvDbBlockReference> reference(id, KvOpenMode::forRead);
  if (!reference) return RecordStatus::notABlockReference;
  const KvDbBlockReference& component = *reference.operator->();
  record = parseCircParams(
      entityDataText(component, fieldsApplication), entityDataText(component, wiresApplication));
  return RecordStatus::ok;
}

RecordStatus readCircField(KvDbObjectId id, std::size_t index, std::wstring& text) {
  ZanCircParams record;
  const RecordStatus status = readCircParams(id, record);
  if (status == RecordStatus::ok) text = record.get(index);
  return status;
}

RecordStatus readMotorFields(KvDbObjectId id, std::array<std::wstring, 9>& fields) {
  return readFields(id, motorFieldOrder, fields);
}

RecordStatus readPowerFeedFields(KvDbObjectId id, std::array<std::wstring, 8>& fields) {
  return readFields(id, powerFeedFieldOrder, fields);
}

bool hasCircParams(KvDbObjectId id) {
  const OpenObject<KvDbEntity> entity(id, KvOpenMode::forRead);
  return entity && !ResultList(entity->xData(fieldsApplication)).isEmpty();
}

bool isDevice(KvDbObjectId id) {
  const OpenObject<KvDbBlockReference> reference(id, KvOpenMode::forRead);
  if (!reference) return false;
  bool hasTag = false;
  bool twoTerminals = false;
  std::optional<std::wstring> firstTerminal;
  for (const std::wstring& tag : definitionTagsOf(reference->blockTableRecord())) {
    if (equalsOrdinalNoCase(tag, L"TAG1") || equalsOrdinalNoCase(tag, L"TAG2")) hasTag = true;
    if (const std::optional<std::wstring_view> number = terminalNumber(tag)) {
      if (!firstTerminal)
        firstTerminal = *number;
      else if (!equalsOrdinalNoCase(*firstTerminal, *number))
        twoTerminals = true;
    }
    if (hasTag && twoTerminals) return true;
  }
  return false;
}

bool isMotorEntity(KvDbObjectId id) {
  return isOfKind(id, motorKind);
}
bool isPowerFeedEntity(KvDbObjectId id) {
  return isOfKind(id, powerFeedKind);
}

std::vector<std::wstring> readAttributeTexts(std::wstring_view tag) {
  std::vector<std::wstring> texts;
  std::unordered_set<std::wstring> seen;
  KvDbDatabase* database = kvdbWorkingDatabase();
  const KvAxDocLock lock;
  if (!database || !lock.isLocked()) return texts;

  const auto add = [&](const std::wstring& ofTag, std::wstring text) {
    if (!equalsOrdinalNoCase(ofTag, tag) || text.empty()) return;
    if (seen.insert(text).second) texts.push_back(std::move(text));
  };
  forEachEntity(database->currentSpaceId(), [&add](KvDbObjectId id) {
    const OpenObject<KvDbEntity> entity(id, KvOpenMode::forRead);
    if (!entity) return;
    if (const auto* definition = dynamic_cast<const KvDbAttributeDefinition*>(entity.operator->()))
      add(definition->tag(), definition->textString());
    const auto* reference = dynamic_cast<const KvDbBlockReference*>(entity.operator->());
    if (!reference) return;
    for (const KvDbObjectId attributeId : reference->attributes()) {
      const OpenObject<KvDbAttribute> attribute(attributeId, KvOpenMode::forRead);
      if (attribute) add(attribute->tag(), attribute->textString());
    }
  });
  return texts;
}

} // namespace brenvolt
