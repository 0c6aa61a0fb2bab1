// Lists. They are immutable: a function that "changes" a list returns another one.
#include "simhost/lisp/builtins.h"
#include "simhost/lisp/list.h"

#include <algorithm>
#include <array>

namespace simhost::lisp {

namespace {

Value integerOf(std::size_t number) {
  return Value::integer(static_cast<std::int32_t>(number));
}

/// The list without its first elements; a list that is too short gives nil.
const Value& tailAfter(const Value& list, std::size_t count) {
  const Value* rest = &list;
  for (; count > 0 && rest->isCons(); --count) {
    rest = &rest->asCons().cdr();
  }
  return *rest;
}

Value elementAt(const Value& list, std::size_t index) {
  const Value& rest = tailAfter(list, index);
  return rest.isCons() ? rest.asCons().car() : Value();
}

/// car, cdr and their compositions: the letters between c and r, applied from right to left.
Value carAndCdr(Arguments& arguments) {
  const std::wstring& name = arguments.functionName();
  const Value* value = &arguments[0];
  for (std::size_t i = name.size() - 2; i > 0; --i) {
    if (value->isNil()) return {};
    if (!value->isCons())
      arguments.expected(0, name.size() == 3 ? L"a list" : L"a list with lists where the name asks for them");
    value = name[i] == L'A' ? &value->asCons().car() : &value->asCons().cdr();
  }
  return *value;
}

Value first(Arguments& arguments) {
  return elementAt(arguments.list(0), 0);
}

Value second(Arguments& arguments) {
  return elementAt(arguments.list(0), 1);
}

Value third(Arguments& arguments) {
  return elementAt(arguments.list(0), 2);
}

Value rest(Arguments& arguments) {
  return tailAfter(arguments.list(0), 1);
}

Value cons(Arguments& arguments) {
  return Value::cons(arguments[0], arguments[1]);
}

Value list(Arguments& arguments) {
  return makeList(arguments.values());
}

Value listWithTail(Arguments& arguments) {
  ListBuilder result;
  for (std::size_t i = 0; i + 1 < arguments.size(); ++i) {
    result.add(arguments[i]);
  }
  result.setTail(arguments[arguments.size() - 1]);
  return result.take();
}

Value append(Arguments& arguments) {
  ListBuilder result;
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    const Value& part = arguments.list(i);
    if (i + 1 == arguments.size()) {
      result.setTail(part);
      break;
    }
    for (const Value& element : Elements(part)) {
      result.add(element);
    }
  }
  return result.take();
}

Value reverse(Arguments& arguments) {
  Value result;
  for (const Value& element : Elements(arguments.list(0))) {
    result = Value::cons(element, std::move(result));
  }
  return result;
}

Value length(Arguments& arguments) {
  if (arguments[0].isString()) return integerOf(arguments[0].asString().size());
  const std::optional<std::size_t> count = listLength(arguments[0]);
  if (!count) arguments.expected(0, L"a list or a string");
  return integerOf(*count);
}

Value nth(Arguments& arguments) {
  return elementAt(arguments.list(1), arguments.count(0));
}

Value nthcdr(Arguments& arguments) {
  return tailAfter(arguments.list(1), arguments.count(0));
}

/// The last pair, as in Common Lisp: (car (last list)) is the last element.
Value last(Arguments& arguments) {
  const std::size_t length = *listLength(arguments.list(0));
  return length == 0 ? Value() : tailAfter(arguments[0], length - 1);
}

Value firstElements(const Value& list, std::size_t count) {
  ListBuilder result;
  for (const Value& element : Elements(list)) {
    if (count-- == 0) break;
    result.add(element);
  }
  return result.take();
}

Value butlast(Arguments& arguments) {
  const std::size_t length = *listLength(arguments.list(0));
  const std::size_t dropped = arguments.has(1) ? arguments.count(1) : 1;
  return firstElements(arguments[0], length - std::min(length, dropped));
}

Value sublist(Arguments& arguments) {
  const std::size_t length = *listLength(arguments.list(0));
  const std::size_t start = arguments.count(1);
  const std::size_t end = arguments.has(2) ? arguments.count(2) : length;
  if (start > end || end > length) arguments.fail(L"start and end must be in order within the list");
  return firstElements(tailAfter(arguments[0], start), end - start);
}

Value member(Arguments& arguments) {
  const Value* tail = &arguments.list(1);
  for (; tail->isCons(); tail = &tail->asCons().cdr()) {
    if (isEqual(tail->asCons().car(), arguments[0])) return *tail;
  }
  return {};
}

Value assoc(Arguments& arguments) {
  for (const Value& entry : Elements(arguments.list(1))) {
    if (entry.isCons() && isEqual(entry.asCons().car(), arguments[0])) return entry;
  }
  return {};
}

Value position(Arguments& arguments) {
  std::size_t index = 0;
  for (const Value& element : Elements(arguments.list(1))) {
    if (isEqual(element, arguments[0])) return integerOf(index);
    ++index;
  }
  return {};
}

template <typename Predicate>
Value keptElements(const Value& list, Predicate isKept) {
  ListBuilder result;
  for (const Value& element : Elements(list)) {
    if (isKept(element)) result.add(element);
  }
  return result.take();
}

Value removeElement(Arguments& arguments) {
  return keptElements(
      arguments.list(1), [&](const Value& element) { return !isEqual(element, arguments[0]); });
}

bool holds(Arguments& arguments, const Value& function, const Value& element) {
  return static_cast<bool>(arguments.interpreter().call(function, {&element, 1}));
}

Value removeIf(Arguments& arguments) {
  const Value function = arguments.function(0);
  return keptElements(
      arguments.list(1), [&](const Value& element) { return !holds(arguments, function, element); });
}

Value removeIfNot(Arguments& arguments) {
  const Value function = arguments.function(0);
  return keptElements(
      arguments.list(1), [&](const Value& element) { return holds(arguments, function, element); });
}

Value removeDuplicates(Arguments& arguments) {
  std::vector<Value> kept;
  for (const Value& element : Elements(arguments.list(0))) {
    const bool isKnown =
        std::any_of(kept.begin(), kept.end(), [&](const Value& other) { return isEqual(element, other); });
    arguments.interpreter().step();
    if (!isKnown) kept.push_back(element);
  }
  return makeList(kept);
}

Value findIf(Arguments& arguments) {
  const Value function = arguments.function(0);
  for (const Value& element : Elements(arguments.list(1))) {
    if (holds(arguments, function, element)) return element;
  }
  return {};
}

Value every(Arguments& arguments) {
  const Value function = arguments.function(0);
  for (const Value& element : Elements(arguments.list(1))) {
    if (!holds(arguments, function, element)) return {};
  }
  return Value::truth(true);
}

Value some(Arguments& arguments) {
  const Value function = arguments.function(0);
  for (const Value& element : Elements(arguments.list(1))) {
    if (Value result = arguments.interpreter().call(function, {&element, 1})) return result;
  }
  return {};
}

/// Calls the function with the first elements of all lists, then with the second ones, up to the end of the
/// shortest list.
template <typename Use>
void callAlong(Arguments& arguments, Use use) {
  const Value function = arguments.function(0);
  std::vector<const Value*> rests;
  for (std::size_t i = 1; i < arguments.size(); ++i) {
    rests.push_back(&arguments.list(i));
  }
  std::vector<Value> elements(rests.size());
  for (;;) {
    for (std::size_t i = 0; i < rests.size(); ++i) {
      if (!rests[i]->isCons()) return;
      elements[i] = rests[i]->asCons().car();
      rests[i] = &rests[i]->asCons().cdr();
    }
    use(arguments.interpreter().call(function, elements));
  }
}

Value mapcar(Arguments& arguments) {
  ListBuilder result;
  callAlong(arguments, [&result](Value value) { result.add(std::move(value)); });
  return result.take();
}

Value mapc(Arguments& arguments) {
  callAlong(arguments, [](const Value&) {});
  return arguments[1];
}

Value reduce(Arguments& arguments) {
  const Value function = arguments.function(0);
  const Value* rest = &arguments.list(1);
  std::array<Value, 2> pair;
  if (arguments.has(2)) {
    pair[0] = arguments[2];
  } else {
    if (rest->isNil()) return arguments.interpreter().call(function, {});
    pair[0] = rest->asCons().car();
    rest = &rest->asCons().cdr();
  }
  for (const Value& element : Elements(*rest)) {
    pair[1] = element;
    pair[0] = arguments.interpreter().call(function, pair);
  }
  return pair[0];
}

/// Merges from the bottom up: stable, and a predicate that contradicts itself only spoils the order.
Value sort(Arguments& arguments) {
  std::vector<Value> from = toVector(arguments.list(0));
  const Value isLess = arguments.function(1);
  std::vector<Value> to(from.size());
  for (std::size_t width = 1; width < from.size(); width *= 2) {
    for (std::size_t start = 0; start < from.size(); start += 2 * width) {
      const std::size_t middle = std::min(start + width, from.size());
      const std::size_t end = std::min(start + 2 * width, from.size());
      std::size_t left = start;
      std::size_t right = middle;
      for (std::size_t out = start; out < end; ++out) {
        bool takesRight = left == middle;
        if (left < middle && right < end) {
          const std::array<Value, 2> pair{from[right], from[left]};
          takesRight = static_cast<bool>(arguments.interpreter().call(isLess, pair));
        }
        to[out] = from[takesRight ? right++ : left++];
      }
    }
    from.swap(to);
  }
  return makeList(from);
}

Value substitute(Arguments& arguments) {
  ListBuilder result;
  for (const Value& element : Elements(arguments.list(2))) {
    result.add(isEqual(element, arguments[1]) ? arguments[0] : element);
  }
  return result.take();
}

constexpr BuiltinEntry listBuiltins[] = {
    {L"car", 1, 1, carAndCdr},
    {L"cdr", 1, 1, carAndCdr},
    {L"caar", 1, 1, carAndCdr},
    {L"cadr", 1, 1, carAndCdr},
    {L"cdar", 1, 1, carAndCdr},
    {L"cddr", 1, 1, carAndCdr},
    {L"caaar", 1, 1, carAndCdr},
    {L"caadr", 1, 1, carAndCdr},
    {L"cadar", 1, 1, carAndCdr},
    {L"caddr", 1, 1, carAndCdr},
    {L"cdaar", 1, 1, carAndCdr},
    {L"cdadr", 1, 1, carAndCdr},
    {L"cddar", 1, 1, carAndCdr},
    {L"cdddr", 1, 1, carAndCdr},
    {L"cadddr", 1, 1, carAndCdr},
    {L"first", 1, 1, first},
    {L"second", 1, 1, second},
    {L"third", 1, 1, third},
    {L"rest", 1, 1, rest},
    {L"cons", 2, 2, cons},
    {L"list", 0, anyNumber, list},
    {L"list*", 1, anyNumber, listWithTail},
    {L"append", 0, anyNumber, append},
    {L"reverse", 1, 1, reverse},
    {L"length", 1, 1, length},
    {L"nth", 2, 2, nth},
    {L"nthcdr", 2, 2, nthcdr},
    {L"last", 1, 1, last},
    {L"butlast", 1, 2, butlast},
    {L"sublist", 2, 3, sublist},
    {L"member", 2, 2, member},
    {L"assoc", 2, 2, assoc},
    {L"position", 2, 2, position},
    {L"remove", 2, 2, removeElement},
    {L"remove-if", 2, 2, removeIf},
    {L"remove-if-not", 2, 2, removeIfNot},
    {L"remove-duplicates", 1, 1, removeDuplicates},
    {L"substitute", 3, 3, substitute},
    {L"find-if", 2, 2, findIf},
    {L"every", 2, 2, every},
    {L"some", 2, 2, some},
    {L"mapcar", 2, anyNumber, mapcar},
    {L"mapc", 2, anyNumber, mapc},
    {L"reduce", 2, 3, reduce},
    {L"sort", 2, 2, sort},
};

} // namespace

void defineListBuiltins(Interpreter& interpreter) {
  defineAll(interpreter, listBuiltins);
}

} // namespace simhost::lisp
