// Ownership, building and walking of the host's lists.
#include "host/result_list.h"

#include "host/host_api_lisp.h"
#include "text/assertion.h"

#include <utility>

namespace brenvolt {

namespace {

bool carriesText(std::int16_t type) {
  return type == kvtype::string || (type >= 1 && type <= 4) || type == kvtype::dataString ||
         type == kvtype::applicationName || type == kvtype::controlString;
}

std::wstring textOf(const KvResultBuffer& node) {
  return node.value.string == nullptr ? std::wstring() : std::wstring(node.value.string);
}

/// A copy of one node without its successor, null when the host refuses.
KvResultBuffer* copyNode(const KvResultBuffer& node) {
  KvResultBuffer* copy = kvutNewRb(node.type);
  if (copy == nullptr) return nullptr;
  copy->value = node.value;
  if (carriesText(node.type)) copy->value.string = kvutNewString(node.value.string);
  return copy;
}

/// A copy of the nodes from `first` up to but excluding `behind`; empty when the host refuses one.
ResultList copyNodes(const KvResultBuffer* first, const KvResultBuffer* behind) {
  ResultList copy;
  KvResultBuffer* last = nullptr;
  for (const KvResultBuffer* node = first; node != behind; node = node->next) {
    KvResultBuffer* next = copyNode(*node);
    if (next == nullptr) return ResultList();
    if (last == nullptr) {
      copy = ResultList(next);
    } else {
      last->next = next;
    }
    last = next;
  }
  return copy;
}

/// The node after the end of the list whose inside begins at `node`; nothing when the list has no end.
std::optional<const KvResultBuffer*> behindList(const KvResultBuffer* node) {
  int depth = 1;
  for (; node != nullptr; node = node->next) {
    if (node->type == kvtype::listBegin) ++depth;
    if (node->type == kvtype::listEnd && --depth == 0) return node->next;
  }
  return std::nullopt;
}

} // namespace

ResultList& ResultList::operator=(ResultList&& other) noexcept {
  if (this != &other) {
    reset();
    chain_ = other.release();
  }
  return *this;
}

ResultList ResultList::clone() const {
  return copyNodes(chain_, nullptr);
}

KvResultBuffer* ResultList::release() {
  return std::exchange(chain_, nullptr);
}

void ResultList::reset() {
  if (chain_ != nullptr) kvutRelRb(release());
}

KvResultBuffer** ResultList::receive() {
  reset();
  return &chain_;
}

KvResultBuffer* ListBuilder::append(std::int16_t type) {
  if (failed_) return nullptr;
  KvResultBuffer* node = kvutNewRb(type);
  if (node == nullptr) {
    failed_ = true;
    list_.reset();
    last_ = nullptr;
    return nullptr;
  }
  if (last_ == nullptr) {
    list_ = ResultList(node);
  } else {
    last_->next = node;
  }
  last_ = node;
  return node;
}

ListBuilder& ListBuilder::addText(std::wstring_view text) {
  if (KvResultBuffer* node = append(kvtype::string)) {
    node->value.string = kvutNewString(std::wstring(text).c_str());
  }
  return *this;
}

ListBuilder& ListBuilder::addReal(double value) {
  if (KvResultBuffer* node = append(kvtype::real)) node->value.real = value;
  return *this;
}

ListBuilder& ListBuilder::addShort(std::int16_t value) {
  if (KvResultBuffer* node = append(kvtype::shortInteger)) node->value.shortInteger = value;
  return *this;
}

ListBuilder& ListBuilder::addLong(std::int32_t value) {
  if (KvResultBuffer* node = append(kvtype::longInteger)) node->value.longInteger = value;
  return *this;
}

ListBuilder& ListBuilder::addNil() {
  append(kvtype::nil);
  return *this;
}

ListBuilder& ListBuilder::addT() {
  append(kvtype::t);
  return *this;
}

ListBuilder& ListBuilder::addEntity(KvEntityName name) {
  if (KvResultBuffer* node = append(kvtype::entityName)) node->value.entityName = name;
  return *this;
}

ListBuilder& ListBuilder::addPoint2d(const KvPoint3d& point) {
  if (KvResultBuffer* node = append(kvtype::point2d)) {
    node->value.point[0] = point.x;
    node->value.point[1] = point.y;
    node->value.point[2] = 0.0;
  }
  return *this;
}

ListBuilder& ListBuilder::addPoint3d(const KvPoint3d& point) {
  if (KvResultBuffer* node = append(kvtype::point3d)) {
    node->value.point[0] = point.x;
    node->value.point[1] = point.y;
    node->value.point[2] = point.z;
  }
  return *this;
}

ListBuilder& ListBuilder::beginList() {
  append(kvtype::listBegin);
  ++depth_;
  return *this;
}

ListBuilder& ListBuilder::endList() {
  BRENVOLT_ASSERT(depth_ > 0, "a list was ended that had not begun");
  append(kvtype::listEnd);
  --depth_;
  return *this;
}

ListBuilder& ListBuilder::splice(ResultList list) {
  if (failed_ || list.isEmpty()) return *this;
  KvResultBuffer* first = list.release();
  if (last_ == nullptr) {
    list_ = ResultList(first);
  } else {
    last_->next = first;
  }
  last_ = first;
  while (last_->next != nullptr)
    last_ = last_->next;
  return *this;
}

ResultList ListBuilder::take() {
  BRENVOLT_ASSERT(depth_ == 0, "a list was taken that had not ended");
  last_ = nullptr;
  return std::move(list_);
}

bool ListReader::atEnd() const {
  return node_ == nullptr || node_->type == kvtype::listEnd;
}

std::int16_t ListReader::type() const {
  return atEnd() ? kvtype::none : node_->type;
}

std::optional<std::wstring> ListReader::text() const {
  if (type() != kvtype::string) return std::nullopt;
  return textOf(*node_);
}

std::optional<double> ListReader::real() const {
  if (type() != kvtype::real) return std::nullopt;
  return node_->value.real;
}

std::optional<std::int32_t> ListReader::integer() const {
  switch (type()) {
  case kvtype::shortInteger:
    return node_->value.shortInteger;
  case kvtype::longInteger:
    return node_->value.longInteger;
  default:
    return std::nullopt;
  }
}

std::optional<KvPoint3d> ListReader::point() const {
  if (!isPoint()) return std::nullopt;
  const double* values = node_->value.point;
  return KvPoint3d{values[0], values[1], type() == kvtype::point3d ? values[2] : 0.0};
}

std::optional<KvEntityName> ListReader::entityName() const {
  if (type() != kvtype::entityName) return std::nullopt;
  return node_->value.entityName;
}

std::optional<std::wstring> ListReader::groupText() const {
  if (atEnd() || !carriesText(node_->type)) return std::nullopt;
  return textOf(*node_);
}

std::optional<std::int32_t> ListReader::groupInteger() const {
  constexpr std::int16_t longGroup = 90;
  constexpr std::int16_t shortGroup = 290;
  if (type() == longGroup) return node_->value.longInteger;
  if (type() == shortGroup) return node_->value.shortInteger;
  return std::nullopt;
}

bool ListReader::skipElement() {
  if (atEnd()) return false;
  if (!isList()) {
    node_ = node_->next;
    return true;
  }
  const std::optional<const KvResultBuffer*> behind = behindList(node_->next);
  node_ = behind.value_or(nullptr);
  return behind.has_value();
}

bool ListReader::enterList() {
  if (!isList()) return false;
  node_ = node_->next;
  ++depth_;
  return true;
}

bool ListReader::leaveList() {
  if (depth_ == 0) return false;
  --depth_;
  const std::optional<const KvResultBuffer*> behind = behindList(node_);
  node_ = behind.value_or(nullptr);
  return behind.has_value();
}

ResultList ListReader::copyElement() {
  const KvResultBuffer* first = node_;
  if (!skipElement()) return ResultList();
  return copyNodes(first, node_);
}

} // namespace brenvolt
