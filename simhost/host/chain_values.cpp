// Conversion of chains to LISP values and back.
#include "simhost/host/chain_values.h"

#include "simhost/lisp/list.h"
#include "simhost/lisp/printer.h"
#include "text/numbers.h"

#include <cstdint>
#include <limits>
#include <optional>
#include <utility>

namespace simhost {

using lisp::Kind;
using lisp::Value;

namespace {

constexpr std::size_t shownLength = 60;   ///< of a value in a message
constexpr std::size_t usualArguments = 8; ///< room that is reserved at once

bool isGroupCode(std::int16_t type) {
  return type < kvtype::none && storageOf(type) != ChainStorage::unknown;
}

/// The value of a node that is not a list mark, nothing for an unknown code.
std::optional<Value> valueOfNode(const KvResultBuffer& node) {
  const auto scalar = [&node]() -> std::optional<Value> {
    switch (storageOf(node.type)) {
    case ChainStorage::unknown:
      return std::nullopt;
    case ChainStorage::nothing:
      return Value::truth(node.type == kvtype::t);
    case ChainStorage::real:
      return Value::real(node.value.real);
    case ChainStorage::shortInteger:
      return Value::integer(node.value.shortInteger);
    case ChainStorage::longInteger:
      return Value::integer(node.value.longInteger);
    case ChainStorage::entityName:
      return Value::entity(node.value.entityName.value);
    case ChainStorage::string:
      return Value::string(node.value.string == nullptr ? std::wstring() : std::wstring(node.value.string));
    case ChainStorage::point:
      break;
    }
    const double* point = node.value.point;
    if (node.type == kvtype::point2d) return lisp::makeList({Value::real(point[0]), Value::real(point[1])});
    return lisp::makePoint(point[0], point[1], point[2]);
  };
  std::optional<Value> value = scalar();
  if (value && isGroupCode(node.type)) return Value::cons(Value::integer(node.type), std::move(*value));
  return value;
}

/// Two or three reals and nothing else: how LISP writes a point. The number of reals, 0 for anything else.
int pointSize(const Value& list) {
  int size = 0;
  const Value* rest = &list;
  for (; rest->isCons() && size < 4; ++size) {
    if (!rest->asCons().car().isReal()) return 0;
    rest = &rest->asCons().cdr();
  }
  return rest->isNil() && (size == 2 || size == 3) ? size : 0;
}

void addPoint(ChainBuilder& chain, const Value& list, int size) {
  KvResultBuffer& node = chain.add(size == 2 ? kvtype::point2d : kvtype::point3d);
  int axis = 0;
  for (const Value& coordinate : lisp::Elements(list))
    node.value.point[axis++] = coordinate.asReal();
}

/// Appends a pair (code . value) as one group node; false when it is none.
bool addGroup(ChainBuilder& chain, const lisp::Cons& pair) {
  if (!pair.car().isInteger()) return false;
  const auto code = static_cast<std::int16_t>(pair.car().asInteger());
  if (code != pair.car().asInteger() || !isGroupCode(code)) return false;
  const Value& value = pair.cdr();
  if (storageOf(code) == ChainStorage::string) {
    if (!value.isString()) return false;
    chain.add(code).value.string = newChainString(value.asString());
    return true;
  }
  if (!value.isInteger()) return false;
  if (storageOf(code) == ChainStorage::longInteger) {
    chain.add(code).value.longInteger = value.asInteger();
    return true;
  }
  const auto narrow = static_cast<std::int16_t>(value.asInteger());
  if (narrow != value.asInteger()) return false;
  chain.add(code).value.shortInteger = narrow;
  return true;
}

std::wstring notForNativeCode(const Value& value) {
  return L"no form for native code: " + lisp::printValue(value, lisp::PrintStyle::readable, shownLength);
}

/// Appends a value that is not a pair; false when native code has no such type.
bool addAtom(ChainBuilder& chain, const Value& value) {
  switch (value.kind()) {
  case Kind::nil:
    chain.add(kvtype::nil);
    return true;
  case Kind::truth:
    chain.add(kvtype::t);
    return true;
  case Kind::integer: {
    const std::int32_t number = value.asInteger();
    const auto narrow = static_cast<std::int16_t>(number);
    if (narrow == number) {
      chain.add(kvtype::shortInteger).value.shortInteger = narrow;
    } else {
      chain.add(kvtype::longInteger).value.longInteger = number;
    }
    return true;
  }
  case Kind::real:
    chain.add(kvtype::real).value.real = value.asReal();
    return true;
  case Kind::entity:
    chain.add(kvtype::entityName).value.entityName = {value.asEntity()};
    return true;
  case Kind::string:
    chain.add(kvtype::string).value.string = newChainString(value.asString());
    return true;
  case Kind::symbol:
  case Kind::cons:
  case Kind::builtin:
  case Kind::lambda:
  case Kind::opaque:
    break;
  }
  return false;
}

} // namespace

ValuesOfChain valuesOfChain(const KvResultBuffer* chain) {
  ValuesOfChain result;
  result.values.reserve(usualArguments);
  std::vector<lisp::ListBuilder> open;
  const auto deliver = [&](Value value) {
    if (open.empty()) {
      result.values.push_back(std::move(value));
    } else {
      open.back().add(std::move(value));
    }
  };
  for (; chain != nullptr; chain = chain->next) {
    if (chain->type == kvtype::listBegin) {
      open.emplace_back();
    } else if (chain->type == kvtype::listEnd) {
      if (open.empty()) {
        result.fault = L"a list end without its begin";
        return result;
      }
      Value list = open.back().take();
      open.pop_back();
      deliver(std::move(list));
    } else if (std::optional<Value> value = valueOfNode(*chain)) {
      deliver(std::move(*value));
    } else {
      result.fault = L"a node of unknown type " + brenvolt::formatInt(chain->type);
      return result;
    }
  }
  if (!open.empty()) result.fault = L"a list begin without its end";
  return result;
}

ValueOfChain valueOfChain(const KvResultBuffer* chain) {
  // Most symbols hold one number, text or point.
  const bool isOneNode = chain != nullptr && chain->next == nullptr;
  if (isOneNode && chain->type != kvtype::listBegin && chain->type != kvtype::listEnd)
    if (std::optional<Value> value = valueOfNode(*chain)) return {std::move(*value), {}};
  ValuesOfChain all = valuesOfChain(chain);
  if (!all.fault.empty()) return {Value(), std::move(all.fault)};
  if (all.values.size() == 1) return {std::move(all.values.front()), {}};
  return {lisp::makeList(all.values), {}};
}

std::wstring appendValue(ChainBuilder& chain, const Value& value) {
  std::vector<const Value*> rests; // the remaining elements of each open list
  const Value* current = &value;
  while (true) {
    if (!current->isCons()) {
      if (!addAtom(chain, *current)) return notForNativeCode(*current);
    } else if (const int size = pointSize(*current); size != 0) {
      addPoint(chain, *current, size);
    } else if (!current->asCons().cdr().isList()) {
      if (!addGroup(chain, current->asCons())) return notForNativeCode(*current);
    } else {
      chain.add(kvtype::listBegin);
      rests.push_back(current);
    }
    while (!rests.empty() && rests.back()->isNil()) {
      chain.add(kvtype::listEnd);
      rests.pop_back();
    }
    if (rests.empty()) return {};
    if (!rests.back()->isCons()) return notForNativeCode(*rests.back());
    current = &rests.back()->asCons().car();
    rests.back() = &rests.back()->asCons().cdr();
  }
}

ChainOfValue chainOfValue(const Value& value) {
  ChainBuilder chain;
  std::wstring fault = appendValue(chain, value);
  if (!fault.empty()) return {nullptr, std::move(fault)};
  return {chain.take(), {}};
}

} // namespace simhost
