// The loops of list.h.
#include "simhost/lisp/list.h"

namespace simhost::lisp {

void ListBuilder::add(Value element) {
  Value pair = Value::cons(std::move(element), Value(), isEmpty() ? place_ : Place{});
  // The builder is the only owner, so changing the pair cannot be seen by any program.
  auto* added = const_cast<Cons*>(&pair.asCons());
  if (last_ == nullptr) {
    head_ = std::move(pair);
  } else {
    last_->cdr_ = std::move(pair);
  }
  last_ = added;
}

void ListBuilder::setTail(Value tail) {
  if (last_ == nullptr) {
    head_ = std::move(tail);
  } else {
    last_->cdr_ = std::move(tail);
  }
}

Value ListBuilder::take() {
  last_ = nullptr;
  return std::move(head_);
}

Value makeList(std::span<const Value> elements) {
  Value list;
  for (std::size_t i = elements.size(); i > 0; --i) {
    list = Value::cons(elements[i - 1], std::move(list));
  }
  return list;
}

Value makeList(std::initializer_list<Value> elements) {
  return makeList(std::span<const Value>(elements.begin(), elements.size()));
}

Value makePoint(double x, double y, double z) {
  return makeList({Value::real(x), Value::real(y), Value::real(z)});
}

std::optional<std::size_t> listLength(const Value& list) {
  std::size_t length = 0;
  const Value* rest = &list;
  for (; rest->isCons(); rest = &rest->asCons().cdr()) {
    ++length;
  }
  if (!rest->isNil()) return std::nullopt;
  return length;
}

std::vector<Value> toVector(const Value& list) {
  std::vector<Value> elements;
  for (const Value& element : Elements(list)) {
    elements.push_back(element);
  }
  return elements;
}

} // namespace simhost::lisp
