// Types and identity, symbols and their values, calling, evaluating, loading and failing.
#include "simhost/lisp/builtins.h"
#include "simhost/lisp/list.h"
#include "simhost/lisp/printer.h"
#include "simhost/lisp/reader.h"

namespace simhost::lisp {

namespace {

Value isNull(Arguments& arguments) {
  return Value::truth(arguments[0].isNil());
}

Value isAtom(Arguments& arguments) {
  return Value::truth(!arguments[0].isCons());
}

Value isCons(Arguments& arguments) {
  return Value::truth(arguments[0].isCons());
}

Value isList(Arguments& arguments) {
  return Value::truth(arguments[0].isList());
}

/// nil and T are symbols to a program, although they are values of their own here.
Value isSymbol(Arguments& arguments) {
  const Kind kind = arguments[0].kind();
  return Value::truth(kind == Kind::symbol || kind == Kind::nil || kind == Kind::truth);
}

Value isString(Arguments& arguments) {
  return Value::truth(arguments[0].isString());
}

Value isFunction(Arguments& arguments) {
  return Value::truth(arguments[0].isFunction());
}

Value areSame(Arguments& arguments) {
  return Value::truth(arguments[0].isSame(arguments[1]));
}

Value areEqual(Arguments& arguments) {
  return Value::truth(isEqual(arguments[0], arguments[1]));
}

Value typeOf(Arguments& arguments) {
  const wchar_t* name = L"OPAQUE";
  switch (arguments[0].kind()) {
  case Kind::nil:
    name = L"NULL";
    break;
  case Kind::truth:
  case Kind::symbol:
    name = L"SYMBOL";
    break;
  case Kind::integer:
    name = L"INTEGER";
    break;
  case Kind::real:
    name = L"FLOAT";
    break;
  case Kind::entity:
    name = L"ENTITY";
    break;
  case Kind::string:
    name = L"STRING";
    break;
  case Kind::cons:
    name = L"CONS";
    break;
  case Kind::builtin:
  case Kind::lambda:
    name = L"FUNCTION";
    break;
  case Kind::opaque:
    break;
  }
  return Value::symbol(arguments.interpreter().symbols().intern(name));
}

Value set(Arguments& arguments) {
  arguments.symbol(0).value = arguments[1];
  return arguments[1];
}

Value symbolValue(Arguments& arguments) {
  return arguments.symbol(0).value;
}

Value isBound(Arguments& arguments) {
  return Value::truth(!arguments.symbol(0).value.isNil());
}

Value hasFunction(Arguments& arguments) {
  return Value::truth(arguments.interpreter().findFunction(arguments.symbol(0).name).has_value());
}

Value symbolName(Arguments& arguments) {
  if (arguments[0].isNil()) return Value::string(L"NIL");
  if (arguments[0].kind() == Kind::truth) return Value::string(L"T");
  return Value::string(arguments.symbol(0).name);
}

/// The name of the symbol is the text in upper case, for any characters.
Value intern(Arguments& arguments) {
  Symbol& symbol = arguments.interpreter().symbols().intern(arguments.text(0));
  if (symbol.name == L"NIL") return {};
  if (symbol.name == L"T") return Value::truth(true);
  return Value::symbol(symbol);
}

Value apply(Arguments& arguments) {
  const Value function = arguments.function(0);
  std::vector<Value> values(arguments.values().begin() + 1, arguments.values().end() - 1);
  for (const Value& element : Elements(arguments.list(arguments.size() - 1))) {
    values.push_back(element);
  }
  return arguments.interpreter().call(function, values);
}

Value funcall(Arguments& arguments) {
  return arguments.interpreter().call(arguments.function(0), arguments.values().subspan(1));
}

Value eval(Arguments& arguments) {
  return arguments.interpreter().eval(arguments[0]);
}

Value identity(Arguments& arguments) {
  return arguments[0];
}

/// The first form of a text; nil when it holds none.
Value readFromString(Arguments& arguments) {
  try {
    Reader reader(arguments.interpreter().symbols(), arguments.text(0), L"the string", 0);
    return reader.next().value_or(Value());
  } catch (const LispError& error) {
    if (error.cause() != LispError::Cause::syntax) throw;
    arguments.fail(error.message());
  }
}

Value load(Arguments& arguments) {
  return arguments.interpreter().load(arguments.text(0));
}

/// The arguments as they print, strings without quotes, are the message.
Value error(Arguments& arguments) {
  std::wstring message;
  for (const Value& part : arguments.values()) {
    message += printValue(part, PrintStyle::display);
  }
  arguments.interpreter().fail(message);
}

Value builtins(Arguments& arguments) {
  ListBuilder names;
  for (const std::wstring& name : arguments.interpreter().builtinNames()) {
    names.add(Value::symbol(arguments.interpreter().symbols().intern(name)));
  }
  return names.take();
}

constexpr BuiltinEntry controlBuiltins[] = {
    {L"not", 1, 1, isNull},
    {L"null", 1, 1, isNull},
    {L"atom", 1, 1, isAtom},
    {L"consp", 1, 1, isCons},
    {L"listp", 1, 1, isList},
    {L"symbolp", 1, 1, isSymbol},
    {L"stringp", 1, 1, isString},
    {L"functionp", 1, 1, isFunction},
    {L"eq", 2, 2, areSame},
    {L"eql", 2, 2, areSame},
    {L"equal", 2, 2, areEqual},
    {L"type-of", 1, 1, typeOf},
    {L"set", 2, 2, set},
    {L"symbol-value", 1, 1, symbolValue},
    {L"symbol-name", 1, 1, symbolName},
    {L"intern", 1, 1, intern},
    {L"boundp", 1, 1, isBound},
    {L"fboundp", 1, 1, hasFunction},
    {L"apply", 2, anyNumber, apply},
    {L"funcall", 1, anyNumber, funcall},
    {L"eval", 1, 1, eval},
    {L"identity", 1, 1, identity},
    {L"read-from-string", 1, 1, readFromString},
    {L"load", 1, 1, load},
    {L"error", 1, anyNumber, error},
    {L"builtins", 0, 0, builtins},
};

} // namespace

void defineControlBuiltins(Interpreter& interpreter) {
  defineAll(interpreter, controlBuiltins);
}

} // namespace simhost::lisp
