#include "drawing/annotation_rows.h"

#include "text/numbers.h"

#include <algorithm>

namespace brenvolt {

namespace {

/// False when the type has no LISP form.
bool addField(ListBuilder& builder, const ZanAnnotationField& field) {
  switch (static_cast<std::int16_t>(field.type)) {
  case kvtype::real:
    builder.addReal(toDouble(field.value));
    return true;
  case kvtype::shortInteger:
    builder.addShort(static_cast<std::int16_t>(toInt(field.value)));
    return true;
  case kvtype::string:
    builder.addText(field.value);
    return true;
  case kvtype::longInteger:
    builder.addLong(toInt(field.value));
    return true;
  case kvtype::nil:
    builder.addNil();
    return true;
  case kvtype::t:
    builder.addT();
    return true;
  default:
    return false;
  }
}

ResultList nilNode() {
  ListBuilder builder;
  builder.addNil();
  return builder.take();
}

bool sameItem(const ZanAnnotationDataList::Item& left, const ZanAnnotationDataList::Item& right) {
  if ((left.row == nullptr) != (right.row == nullptr)) return false;
  if ((left.list == nullptr) != (right.list == nullptr)) return false;
  return (left.row == nullptr || *left.row == *right.row) &&
         (left.list == nullptr || *left.list == *right.list);
}

} // namespace

ResultList ZanAnnotationData::ToLisp() const {
  const bool nothingShows =
      std::all_of(fields.begin(), fields.end(), [](const ZanAnnotationField& field) { return field.hidden; });
  if (nothingShows) return nilNode();

  ListBuilder builder;
  builder.beginList();
  for (const ZanAnnotationField& field : fields)
    if (!field.hidden && !addField(builder, field)) return {};
  builder.endList();
  return builder.take();
}

void ZanAnnotationData::Add(
    std::wstring_view value, std::int16_t type, std::wstring_view fieldName, bool hidden) {
  fields.push_back({std::wstring(value), static_cast<std::uint32_t>(type), std::wstring(fieldName), hidden});
}

void ZanAnnotationData::AddText(std::wstring_view value, std::wstring_view fieldName) {
  Add(value, kvtype::string, fieldName, false);
}

ZanAnnotationDataList& ZanAnnotationDataList::operator=(const ZanAnnotationDataList& other) {
  Assign(other);
  return *this;
}

ResultList ZanAnnotationDataList::ToLisp() const {
  if (items_.empty()) return nilNode();
  ListBuilder builder;
  builder.beginList();
  for (const Item& item : items_) {
    ResultList converted = item.row ? item.row->ToLisp() : item.list->ToLisp();
    if (converted.isEmpty()) return {};
    builder.splice(std::move(converted));
  }
  builder.endList();
  return builder.take();
}

void ZanAnnotationDataList::AddRow(ZanAnnotationData row) {
  items_.push_back({std::make_unique<ZanAnnotationData>(std::move(row)), nullptr});
}

void ZanAnnotationDataList::AddList(ZanAnnotationDataList list) {
  items_.push_back({nullptr, std::make_unique<ZanAnnotationDataList>(std::move(list))});
}

void ZanAnnotationDataList::AddItem(const Item& item) {
  if (item.row) AddRow(*item.row);
  if (item.list) AddList(*item.list);
}

void ZanAnnotationDataList::Assign(const ZanAnnotationDataList& other) {
  if (this == &other) return;
  ZanAnnotationDataList copy(other); // `other` may be part of this list
  items_ = std::move(copy.items_);
}

void ZanAnnotationDataList::Append(const ZanAnnotationDataList& other) {
  std::vector<Item> copies;
  copies.reserve(other.items_.size());
  for (const Item& item : other.items_) {
    if (item.row) copies.push_back({std::make_unique<ZanAnnotationData>(*item.row), nullptr});
    if (item.list) copies.push_back({nullptr, std::make_unique<ZanAnnotationDataList>(*item.list)});
  }
  items_.insert(items_.end(), std::make_move_iterator(copies.begin()), std::make_move_iterator(copies.end()));
}

bool operator==(const ZanAnnotationDataList& left, const ZanAnnotationDataList& right) {
  return std::equal(
      left.items_.begin(), left.items_.end(), right.items_.begin(), right.items_.end(), sameItem);
}

} // namespace brenvolt
