// One function per special form; each gets the rest of the form after its name.
#include "simhost/lisp/special_forms.h"

#include "simhost/lisp/evaluator.h"
#include "simhost/lisp/list.h"
#include "simhost/lisp/printer.h"

#include <string>

namespace simhost::lisp {

namespace {

const Value& first(const Value& list) {
  static const Value none;
  return list.isCons() ? list.asCons().car() : none;
}

const Value& rest(const Value& list) {
  static const Value none;
  return list.isCons() ? list.asCons().cdr() : none;
}

void require(Interpreter& interpreter, bool isRight, const wchar_t* shape) {
  if (!isRight) interpreter.fail(std::wstring(L"the form must be ") + shape);
}

Symbol& variable(Interpreter& interpreter, const Value& name) {
  if (!name.isSymbol())
    interpreter.fail(L"this cannot be set or bound: " + printValue(name, PrintStyle::readable, 60));
  return name.asSymbol();
}

Value quote(Interpreter& interpreter, const Value& arguments) {
  require(interpreter, arguments.isCons() && rest(arguments).isNil(), L"(quote datum)");
  return first(arguments);
}

Value function(Interpreter& interpreter, const Value& arguments) {
  require(interpreter, arguments.isCons() && rest(arguments).isNil(), L"(function name)");
  return interpreter.functionOf(first(arguments));
}

Value lambda(Interpreter& interpreter, const Value& arguments) {
  require(interpreter, arguments.isCons(), L"(lambda (parameter ...) form ...)");
  return interpreter.makeLambda(nullptr, first(arguments), rest(arguments));
}

Value defun(Interpreter& interpreter, const Value& arguments) {
  require(interpreter, rest(arguments).isCons(), L"(defun name (parameter ...) form ...)");
  Symbol& name = variable(interpreter, first(arguments));
  if (name.special != nullptr) interpreter.fail(name.name + L" is a special form and cannot be redefined");
  name.function = interpreter.makeLambda(&name, first(rest(arguments)), rest(rest(arguments)));
  return first(arguments);
}

Value setq(Interpreter& interpreter, const Value& arguments) {
  Value result;
  const Value* pair = &arguments;
  for (; pair->isCons(); pair = &rest(rest(*pair))) {
    require(interpreter, rest(*pair).isCons(), L"(setq name form ...)");
    Symbol& name = variable(interpreter, first(*pair));
    result = interpreter.eval(first(rest(*pair)));
    name.value = result;
  }
  return result;
}

Value progn(Interpreter& interpreter, const Value& arguments) {
  return interpreter.evalBody(arguments);
}

Value prog1(Interpreter& interpreter, const Value& arguments) {
  require(interpreter, arguments.isCons(), L"(prog1 form ...)");
  Value result = interpreter.eval(first(arguments));
  interpreter.evalBody(rest(arguments));
  return result;
}

Value ifForm(Interpreter& interpreter, const Value& arguments) {
  const std::size_t count = listLength(arguments).value_or(0);
  require(interpreter, count == 2 || count == 3, L"(if condition then) or (if condition then else)");
  const bool isTrue = static_cast<bool>(interpreter.eval(first(arguments)));
  return interpreter.eval(first(isTrue ? rest(arguments) : rest(rest(arguments))));
}

Value when(Interpreter& interpreter, const Value& arguments) {
  require(interpreter, arguments.isCons(), L"(when condition form ...)");
  return interpreter.eval(first(arguments)) ? interpreter.evalBody(rest(arguments)) : Value();
}

Value unless(Interpreter& interpreter, const Value& arguments) {
  require(interpreter, arguments.isCons(), L"(unless condition form ...)");
  return interpreter.eval(first(arguments)) ? Value() : interpreter.evalBody(rest(arguments));
}

Value cond(Interpreter& interpreter, const Value& arguments) {
  for (const Value& clause : Elements(arguments)) {
    require(interpreter, clause.isCons(), L"(cond (condition form ...) ...)");
    Value condition = interpreter.eval(first(clause));
    if (condition) return rest(clause).isCons() ? interpreter.evalBody(rest(clause)) : condition;
  }
  return {};
}

Value caseForm(Interpreter& interpreter, const Value& arguments) {
  require(interpreter, arguments.isCons(), L"(case form (key form ...) ...)");
  const Value key = interpreter.eval(first(arguments));
  for (const Value& clause : Elements(rest(arguments))) {
    require(interpreter, clause.isCons(), L"(case form (key form ...) ...)");
    const Value& keys = first(clause);
    bool isChosen = keys.kind() == Kind::truth;
    if (!keys.isList()) isChosen = isChosen || isEqual(keys, key);
    for (const Value& candidate : Elements(keys)) {
      isChosen = isChosen || isEqual(candidate, key);
    }
    if (isChosen) return interpreter.evalBody(rest(clause));
  }
  return {};
}

Value andForm(Interpreter& interpreter, const Value& arguments) {
  Value result = Value::truth(true);
  for (const Value& form : Elements(arguments)) {
    result = interpreter.eval(form);
    if (!result) break;
  }
  return result;
}

Value orForm(Interpreter& interpreter, const Value& arguments) {
  Value result;
  for (const Value& form : Elements(arguments)) {
    result = interpreter.eval(form);
    if (result) break;
  }
  return result;
}

constexpr const wchar_t* letShape = L"(let ((name form) ...) form ...), a name alone is bound to nil";

/// (name form), (name) or name.
Symbol& boundName(Interpreter& interpreter, const Value& binding) {
  require(interpreter, !binding.isCons() || rest(rest(binding)).isNil(), letShape);
  return variable(interpreter, binding.isCons() ? first(binding) : binding);
}

Value let(Interpreter& interpreter, const Value& arguments) {
  require(interpreter, arguments.isCons() && listLength(first(arguments)), letShape);
  std::vector<std::pair<Symbol*, Value>> fresh;
  for (const Value& binding : Elements(first(arguments))) {
    Symbol& name = boundName(interpreter, binding);
    fresh.emplace_back(&name, interpreter.eval(first(rest(binding))));
  }
  Interpreter::Bindings bindings(interpreter);
  for (auto& [name, value] : fresh) {
    bindings.bind(*name, std::move(value));
  }
  return interpreter.evalBody(rest(arguments));
}

Value letInOrder(Interpreter& interpreter, const Value& arguments) {
  require(interpreter, arguments.isCons() && listLength(first(arguments)), letShape);
  Interpreter::Bindings bindings(interpreter);
  for (const Value& binding : Elements(first(arguments))) {
    Symbol& name = boundName(interpreter, binding);
    bindings.bind(name, interpreter.eval(first(rest(binding))));
  }
  return interpreter.evalBody(rest(arguments));
}

Value whileForm(Interpreter& interpreter, const Value& arguments) {
  require(interpreter, arguments.isCons(), L"(while condition form ...)");
  Value result;
  while (interpreter.eval(first(arguments))) {
    interpreter.step();
    result = interpreter.evalBody(rest(arguments));
  }
  return result;
}

Value dolist(Interpreter& interpreter, const Value& arguments) {
  constexpr const wchar_t* shape = L"(dolist (name list result) form ...)";
  const Value& head = first(arguments);
  require(interpreter, rest(head).isCons(), shape);
  Symbol& name = variable(interpreter, first(head));
  const Value list = interpreter.eval(first(rest(head)));
  if (!listLength(list))
    interpreter.fail(L"DOLIST: a list is needed, not " + printValue(list, PrintStyle::readable, 60));
  Interpreter::Bindings bindings(interpreter);
  bindings.bind(name, Value());
  for (const Value& element : Elements(list)) {
    interpreter.step();
    name.value = element;
    interpreter.evalBody(rest(arguments));
  }
  name.value = Value();
  return interpreter.eval(first(rest(rest(head))));
}

Value dotimes(Interpreter& interpreter, const Value& arguments) {
  constexpr const wchar_t* shape = L"(dotimes (name count result) form ...)";
  const Value& head = first(arguments);
  require(interpreter, rest(head).isCons(), shape);
  Symbol& name = variable(interpreter, first(head));
  const Value count = interpreter.eval(first(rest(head)));
  if (!count.isInteger())
    interpreter.fail(L"DOTIMES: an integer is needed, not " + printValue(count, PrintStyle::readable, 60));
  Interpreter::Bindings bindings(interpreter);
  bindings.bind(name, Value());
  for (std::int32_t turn = 0; turn < count.asInteger(); ++turn) {
    interpreter.step();
    name.value = Value::integer(turn);
    interpreter.evalBody(rest(arguments));
  }
  name.value = count;
  return interpreter.eval(first(rest(rest(head))));
}

Value unwindProtect(Interpreter& interpreter, const Value& arguments) {
  require(interpreter, arguments.isCons(), L"(unwind-protect form cleanup ...)");
  Value result;
  try {
    result = interpreter.eval(first(arguments));
  } catch (...) {
    // The caller must see what ended the form, so it takes precedence over a fault of the clean-up.
    try {
      interpreter.evalBody(rest(arguments));
    } catch (const LispError&) {
    }
    throw;
  }
  interpreter.evalBody(rest(arguments));
  return result;
}

Value ignoreErrors(Interpreter& interpreter, const Value& arguments) {
  try {
    return interpreter.evalBody(arguments);
  } catch (const LispError& error) {
    // A request to stop is not an error of the forms.
    const bool isStop =
        error.cause() == LispError::Cause::interruption || error.cause() == LispError::Cause::stepLimit;
    if (isStop) throw;
    return {};
  }
}

struct SpecialFormEntry {
  const wchar_t* name;
  SpecialForm evaluate;
};

constexpr SpecialFormEntry specialForms[] = {
    {L"and", andForm},
    {L"case", caseForm},
    {L"cond", cond},
    {L"defun", defun},
    {L"dolist", dolist},
    {L"dotimes", dotimes},
    {L"function", function},
    {L"if", ifForm},
    {L"ignore-errors", ignoreErrors},
    {L"lambda", lambda},
    {L"let", let},
    {L"let*", letInOrder},
    {L"or", orForm},
    {L"prog1", prog1},
    {L"progn", progn},
    {L"quote", quote},
    {L"setq", setq},
    {L"unless", unless},
    {L"unwind-protect", unwindProtect},
    {L"when", when},
    {L"while", whileForm},
};

} // namespace

void defineSpecialForms(SymbolTable& symbols) {
  for (const SpecialFormEntry& entry : specialForms) {
    symbols.intern(entry.name).special = entry.evaluate;
  }
}

} // namespace simhost::lisp
