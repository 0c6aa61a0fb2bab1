// Making, comparing and freeing values. Lists may be very long and very deep, so nothing here recurses.
#include "simhost/lisp/value.h"

#include "simhost/lisp/symbol.h"

namespace simhost::lisp {

namespace {

struct String final : Object {
  explicit String(std::wstring content) : Object(Kind::string), text(std::move(content)) {}

  const std::wstring text;
};

} // namespace

void Object::destroy(Object* dead) noexcept {
  const auto drop = [&dead](Value& value) {
    if (!value.isOnHeap()) return;
    Object* object = value.content_.object;
    value.kind_ = Kind::nil;
    if (--object->references == 0) {
      object->nextDead = dead;
      dead = object;
    }
  };
  dead->nextDead = nullptr;
  while (dead != nullptr) {
    Object* current = dead;
    dead = current->nextDead;
    switch (current->kind) {
    case Kind::string:
      delete static_cast<String*>(current);
      break;
    case Kind::cons: {
      auto* cons = static_cast<Cons*>(current);
      drop(cons->car_);
      drop(cons->cdr_);
      delete cons;
      break;
    }
    case Kind::builtin:
      delete static_cast<Builtin*>(current);
      break;
    case Kind::lambda: {
      auto* lambda = static_cast<Lambda*>(current);
      drop(lambda->body);
      delete lambda;
      break;
    }
    case Kind::opaque:
      delete static_cast<Opaque*>(current);
      break;
    case Kind::nil:
    case Kind::truth:
    case Kind::integer:
    case Kind::real:
    case Kind::symbol:
    case Kind::entity:
      break;
    }
  }
}

Value Value::ofObject(Object* fresh) noexcept {
  Value value;
  value.kind_ = fresh->kind;
  value.content_.object = fresh;
  fresh->references = 1;
  return value;
}

Value Value::truth(bool condition) noexcept {
  Value value;
  if (condition) value.kind_ = Kind::truth;
  return value;
}

Value Value::integer(std::int32_t number) noexcept {
  Value value;
  value.kind_ = Kind::integer;
  value.content_.integer = number;
  return value;
}

Value Value::real(double number) noexcept {
  Value value;
  value.kind_ = Kind::real;
  value.content_.real = number;
  return value;
}

Value Value::symbol(Symbol& symbol) noexcept {
  Value value;
  value.kind_ = Kind::symbol;
  value.content_.symbol = &symbol;
  return value;
}

Value Value::entity(std::uint64_t number) noexcept {
  Value value;
  value.kind_ = Kind::entity;
  value.content_.entity = number;
  return value;
}

Value Value::string(std::wstring text) {
  return ofObject(new String(std::move(text)));
}

Value Value::cons(Value car, Value cdr, Place place) {
  return ofObject(new Cons(std::move(car), std::move(cdr), place));
}

Value Value::builtin(
    std::wstring name, std::size_t minimum, std::size_t maximum, std::function<Value(Arguments&)> function) {
  return ofObject(new Builtin(std::move(name), minimum, maximum, std::move(function)));
}

Value Value::lambda(
    Symbol* name, std::vector<Symbol*> parameters, std::size_t required, bool takesRest, Value body) {
  return ofObject(new Lambda(name, std::move(parameters), required, takesRest, std::move(body)));
}

Value Value::opaque(std::shared_ptr<void> content, std::wstring label) {
  return ofObject(new Opaque(std::move(content), std::move(label)));
}

std::int32_t Value::asInteger() const {
  expect(Kind::integer);
  return content_.integer;
}

double Value::asReal() const {
  expect(Kind::real);
  return content_.real;
}

double Value::asNumber() const {
  return isInteger() ? static_cast<double>(content_.integer) : asReal();
}

Symbol& Value::asSymbol() const {
  expect(Kind::symbol);
  return *content_.symbol;
}

std::uint64_t Value::asEntity() const {
  expect(Kind::entity);
  return content_.entity;
}

const std::wstring& Value::asString() const {
  expect(Kind::string);
  return static_cast<const String*>(content_.object)->text;
}

const Cons& Value::asCons() const {
  expect(Kind::cons);
  return *static_cast<const Cons*>(content_.object);
}

const Builtin& Value::asBuiltin() const {
  expect(Kind::builtin);
  return *static_cast<const Builtin*>(content_.object);
}

const Lambda& Value::asLambda() const {
  expect(Kind::lambda);
  return *static_cast<const Lambda*>(content_.object);
}

const Opaque& Value::asOpaque() const {
  expect(Kind::opaque);
  return *static_cast<const Opaque*>(content_.object);
}

bool Value::isSame(const Value& other) const noexcept {
  if (kind_ != other.kind_) return false;
  switch (kind_) {
  case Kind::nil:
  case Kind::truth:
    return true;
  case Kind::integer:
    return content_.integer == other.content_.integer;
  case Kind::real:
    return content_.real == other.content_.real;
  case Kind::symbol:
    return content_.symbol == other.content_.symbol;
  case Kind::entity:
    return content_.entity == other.content_.entity;
  case Kind::string:
  case Kind::cons:
  case Kind::builtin:
  case Kind::lambda:
  case Kind::opaque:
    return content_.object == other.content_.object;
  }
  return false;
}

bool isEqual(const Value& left, const Value& right) {
  const auto areEqualAtoms = [](const Value& one, const Value& other) {
    if (one.isString() && other.isString()) return one.asString() == other.asString();
    return one.isSame(other);
  };
  std::vector<std::pair<const Value*, const Value*>> pending{{&left, &right}};
  while (!pending.empty()) {
    auto [one, other] = pending.back();
    pending.pop_back();
    while (one->isCons() && other->isCons() && !one->isSame(*other)) {
      const Value& firstOfOne = one->asCons().car();
      const Value& firstOfOther = other->asCons().car();
      if (firstOfOne.isCons() && firstOfOther.isCons()) {
        pending.emplace_back(&firstOfOne, &firstOfOther);
      } else if (!areEqualAtoms(firstOfOne, firstOfOther)) {
        return false;
      }
      one = &one->asCons().cdr();
      other = &other->asCons().cdr();
    }
    if (!areEqualAtoms(*one, *other)) return false;
  }
  return true;
}

Cons::Cons(Value car, Value cdr, Place place)
    : Object(Kind::cons), place_(place), car_(std::move(car)), cdr_(std::move(cdr)) {}

Builtin::Builtin(
    std::wstring nameOfFunction, std::size_t minimum, std::size_t maximum,
    std::function<Value(Arguments&)> code)
    : Object(Kind::builtin), name(std::move(nameOfFunction)), minimumArguments(minimum),
      maximumArguments(maximum), function(std::move(code)) {}

Lambda::Lambda(
    Symbol* nameOfFunction, std::vector<Symbol*> parameterSymbols, std::size_t required, bool hasRest,
    Value forms)
    : Object(Kind::lambda), name(nameOfFunction), parameters(std::move(parameterSymbols)),
      requiredCount(required), takesRest(hasRest), body(std::move(forms)) {}

Opaque::Opaque(std::shared_ptr<void> object, std::wstring text)
    : Object(Kind::opaque), content(std::move(object)), label(std::move(text)) {}

} // namespace simhost::lisp
