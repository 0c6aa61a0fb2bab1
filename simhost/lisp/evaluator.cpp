// Evaluates by walking the lists as they were read. Each running form has a frame on the C++ stack, which limits the
// depth and gives an error its place.
#include "simhost/lisp/evaluator.h"

#include "simhost/lisp/builtins.h"
#include "simhost/lisp/list.h"
#include "simhost/lisp/printer.h"
#include "simhost/lisp/reader.h"
#include "simhost/lisp/special_forms.h"
#include "text/numbers.h"

#include <algorithm>

namespace simhost::lisp {

namespace {

constexpr std::size_t shownFormLength = 120;
/// Files that load each other would end only with the memory.
constexpr std::size_t mostFilesAtWork = 100;

/// The C++ stack has 8 MB; the remainder is for what the embedding does below the first form and above the last
/// one. Measured per level of depth: 300 to 1100 bytes when optimised, up to 1900 without and 3600 under the
/// sanitizers. So the depth limit rules for calls in LISP, and this one where frames are larger or functions
/// of the embedding call back in.
constexpr std::ptrdiff_t mostStackBytes = std::ptrdiff_t{6} * 1024 * 1024;

/// Falls as the stack fills. The frame's own address: locals may live elsewhere under a sanitizer.
inline std::ptrdiff_t stackPosition() {
  return reinterpret_cast<std::ptrdiff_t>(__builtin_frame_address(0));
}

std::wstring countedArguments(std::size_t count) {
  return brenvolt::formatInt(static_cast<std::int64_t>(count)) + (count == 1 ? L" argument" : L" arguments");
}

} // namespace

/// A running form, linked to the one around it.
struct Interpreter::Frame final {
  Frame(Interpreter& owner, const Value& formAtWork)
      : interpreter(owner), form(formAtWork), outer(owner.frame_),
        depth(outer == nullptr ? 1 : outer->depth + 1) {
    if (outer == nullptr) {
      interpreter.steps_ = 0;
      interpreter.stackBase_ = stackPosition();
    }
    interpreter.frame_ = this;
  }
  Frame(const Frame&) = delete;
  Frame& operator=(const Frame&) = delete;
  ~Frame() { interpreter.frame_ = outer; }

  Interpreter& interpreter;
  const Value& form;
  const Frame* const outer;
  const std::size_t depth;
};

/// Notes which file is being run, so that its loads start there.
class Interpreter::FileScope final {
public:
  FileScope(Interpreter& interpreter, std::uint32_t file) : interpreter_(interpreter) {
    if (interpreter.filesAtWork_.size() == mostFilesAtWork) {
      interpreter.fail(L"too many files load each other", LispError::Cause::depth);
    }
    interpreter.filesAtWork_.push_back(file);
  }
  FileScope(const FileScope&) = delete;
  FileScope& operator=(const FileScope&) = delete;
  ~FileScope() { interpreter_.filesAtWork_.pop_back(); }

private:
  Interpreter& interpreter_;
};

Interpreter::Bindings::~Bindings() {
  while (interpreter_.saved_.size() > mark_) {
    SavedValue saved = std::move(interpreter_.saved_.back());
    interpreter_.saved_.pop_back();
    saved.symbol->value.swap(saved.value);
  }
}

void Interpreter::Bindings::bind(Symbol& symbol, Value value) {
  interpreter_.saved_.push_back({&symbol, std::move(symbol.value)});
  symbol.value = std::move(value);
}

Interpreter::Interpreter() {
  defineSpecialForms(symbols_);
  defineListBuiltins(*this);
  defineTextBuiltins(*this);
  defineNumberBuiltins(*this);
  defineControlBuiltins(*this);
  definePrintBuiltins(*this);
}

Interpreter::~Interpreter() = default;

Value Interpreter::value(std::wstring_view name) const {
  const Symbol* symbol = symbols_.find(name);
  return symbol == nullptr ? Value() : symbol->value;
}

std::optional<Value> Interpreter::findFunction(std::wstring_view name) const {
  const Symbol* symbol = symbols_.find(name);
  if (symbol == nullptr) return std::nullopt;
  if (symbol->function.isFunction()) return symbol->function;
  if (symbol->value.isFunction()) return symbol->value;
  return std::nullopt;
}

std::vector<std::wstring> Interpreter::builtinNames() const {
  std::vector<std::wstring> names;
  for (const Symbol* symbol : symbols_.all()) {
    if (symbol->function.kind() == Kind::builtin) names.push_back(symbol->name);
  }
  return names;
}

std::vector<std::wstring> Interpreter::specialFormNames() const {
  std::vector<std::wstring> names;
  for (const Symbol* symbol : symbols_.all()) {
    if (symbol->special != nullptr) names.push_back(symbol->name);
  }
  return names;
}

void Interpreter::setValue(std::wstring_view name, Value value) {
  symbols_.intern(name).value = std::move(value);
}

void Interpreter::define(
    std::wstring_view name, std::size_t minimumArguments, std::size_t maximumArguments,
    std::function<Value(Arguments&)> function) {
  Symbol& symbol = symbols_.intern(name);
  symbol.function = Value::builtin(symbol.name, minimumArguments, maximumArguments, std::move(function));
}

void Interpreter::undefine(std::wstring_view name) {
  if (Symbol* symbol = symbols_.find(name)) symbol->function = Value();
}

Value Interpreter::run(std::wstring_view text, std::wstring_view fileName) {
  const std::uint32_t file = fileNumber(fileName);
  const FileScope scope(*this, file);
  std::vector<Value> forms;
  Reader reader(symbols_, text, std::wstring(fileName), file);
  while (std::optional<Value> form = reader.next()) {
    forms.push_back(std::move(*form));
  }
  Value result;
  for (const Value& form : forms) {
    result = eval(form);
  }
  return result;
}

Value Interpreter::load(std::wstring_view name) {
  const std::wstring fromFile = filesAtWork_.empty() ? std::wstring() : fileNames_[filesAtWork_.back() - 1];
  std::optional<LoadedText> loaded;
  if (loader_) loaded = loader_(name, fromFile);
  if (!loaded) fail(L"LOAD: no file " + std::wstring(name));
  return run(loaded->text, loaded->fileName);
}

Value Interpreter::eval(const Value& form) {
  if (form.isSymbol()) return form.asSymbol().value;
  if (form.isCons()) return evalCall(form);
  return form;
}

Value Interpreter::evalCall(const Value& form) {
  const Cons& call = form.asCons();
  const Frame frame(*this, form);
  if (frame.depth > depthLimit_ || stackBase_ - stackPosition() > mostStackBytes) failAtDepthLimit();
  step();
  const Value& head = call.car();
  if (head.isSymbol() && head.asSymbol().special != nullptr) {
    return head.asSymbol().special(*this, call.cdr());
  }
  // A copy of its own: the function may be redefined while it runs.
  const Value function = functionOf(head);
  return callEvaluated(function, call.cdr());
}

Value Interpreter::callEvaluated(const Value& function, const Value& argumentForms) {
  const std::optional<std::size_t> count = listLength(argumentForms);
  if (!count) fail(L"a call must be a list that ends in nil");
  const ValueStack::Slots slots(argumentStack_, *count);
  std::size_t position = 0;
  for (const Value& argument : Elements(argumentForms)) {
    slots.values()[position++] = eval(argument);
  }
  return apply(function, slots.values());
}

Value Interpreter::evalBody(const Value& forms) {
  Value result;
  for (const Value& form : Elements(forms)) {
    result = eval(form);
  }
  return result;
}

Value Interpreter::call(const Value& designator, std::span<const Value> arguments) {
  const Value function = functionOf(designator);
  const ValueStack::Slots slots(argumentStack_, arguments.size());
  std::copy(arguments.begin(), arguments.end(), slots.values().begin());
  return apply(function, slots.values());
}

Value Interpreter::call(std::wstring_view functionName, std::span<const Value> arguments) {
  return call(Value::symbol(symbols_.intern(functionName)), arguments);
}

Value Interpreter::apply(const Value& function, std::span<Value> arguments) {
  return function.kind() == Kind::builtin ? applyBuiltin(function.asBuiltin(), arguments)
                                          : applyLambda(function.asLambda(), arguments);
}

Value Interpreter::applyBuiltin(const Builtin& function, std::span<const Value> arguments) {
  if (arguments.size() < function.minimumArguments || arguments.size() > function.maximumArguments) {
    failCount(function.name, arguments.size(), function.minimumArguments, function.maximumArguments);
  }
  Arguments call(*this, function, arguments);
  return function.function(call);
}

Value Interpreter::applyLambda(const Lambda& function, std::span<Value> arguments) {
  const std::size_t positional = function.parameters.size() - (function.takesRest ? 1 : 0);
  if (arguments.size() < function.requiredCount || (!function.takesRest && arguments.size() > positional)) {
    failCount(
        function.name == nullptr ? L"a lambda" : function.name->name, arguments.size(),
        function.requiredCount, function.takesRest ? anyNumber : positional);
  }
  Bindings bindings(*this);
  for (std::size_t i = 0; i < positional; ++i) {
    bindings.bind(*function.parameters[i], i < arguments.size() ? std::move(arguments[i]) : Value());
  }
  if (function.takesRest) {
    const std::size_t taken = std::min(positional, arguments.size());
    bindings.bind(*function.parameters.back(), makeList(arguments.subspan(taken)));
  }
  return evalBody(function.body);
}

Value Interpreter::functionOf(const Value& designator) const {
  if (designator.isFunction()) return designator;
  if (designator.isSymbol()) {
    const Symbol& symbol = designator.asSymbol();
    if (symbol.function.isFunction()) return symbol.function;
    if (symbol.value.isFunction()) return symbol.value;
    if (symbol.special != nullptr) fail(symbol.name + L" is a special form, not a function");
    fail(L"the function is not defined: " + symbol.name);
  }
  if (designator.isCons()) {
    const Cons& expression = designator.asCons();
    const bool isLambda = expression.car().isSymbol() && expression.car().asSymbol().name == L"LAMBDA";
    if (isLambda && expression.cdr().isCons()) {
      const Cons& rest = expression.cdr().asCons();
      return makeLambda(nullptr, rest.car(), rest.cdr());
    }
  }
  fail(L"not a function: " + printValue(designator, PrintStyle::readable, shownFormLength));
}

Value Interpreter::makeLambda(Symbol* name, const Value& parameters, const Value& body) const {
  enum class Part { required, optional, rest, done };
  Part part = Part::required;
  std::vector<Symbol*> symbols;
  std::size_t required = 0;
  for (const Value& parameter : Elements(parameters)) {
    if (!parameter.isSymbol())
      fail(L"a parameter must be a symbol other than nil and T, not " + printValue(parameter));
    Symbol& symbol = parameter.asSymbol();
    if (symbol.name == L"&OPTIONAL" && part == Part::required) {
      part = Part::optional;
      continue;
    }
    if (symbol.name == L"&REST" && (part == Part::required || part == Part::optional)) {
      part = Part::rest;
      continue;
    }
    if (symbol.name.front() == L'&' || part == Part::done)
      fail(L"a parameter list cannot have " + symbol.name + L" here");
    symbols.push_back(&symbol);
    if (part == Part::required) ++required;
    if (part == Part::rest) part = Part::done;
  }
  if (!listLength(parameters) || part == Part::rest) fail(L"a parameter list must be a list of symbols");
  if (!listLength(body)) fail(L"the body of a function must be a list of forms");
  return Value::lambda(name, std::move(symbols), required, part == Part::done, body);
}

void Interpreter::print(std::wstring_view text) const {
  if (printer_) printer_(text);
}

void Interpreter::fail(std::wstring message, LispError::Cause cause) const {
  const Frame* atWork = frame_;
  while (atWork != nullptr && atWork->form.asCons().place().line == 0) {
    atWork = atWork->outer;
  }
  if (atWork == nullptr) throw LispError(cause, std::move(message), {}, 0, {});
  const Place place = atWork->form.asCons().place();
  throw LispError(
      cause, std::move(message), fileNames_[place.file - 1], place.line,
      printValue(atWork->form, PrintStyle::readable, shownFormLength));
}

void Interpreter::failCount(
    const std::wstring& name, std::size_t given, std::size_t minimum, std::size_t maximum) const {
  std::wstring message = name + L" takes ";
  if (maximum == anyNumber) {
    message += L"at least " + countedArguments(minimum);
  } else if (minimum == maximum) {
    message += countedArguments(minimum);
  } else {
    message += brenvolt::formatInt(static_cast<std::int64_t>(minimum)) + L" to " + countedArguments(maximum);
  }
  fail(message + L", not " + brenvolt::formatInt(static_cast<std::int64_t>(given)));
}

void Interpreter::failAtDepthLimit() const {
  fail(L"forms and calls are nested too deeply", LispError::Cause::depth);
}

void Interpreter::failAtStepLimit() const {
  fail(L"the limit of steps is reached", LispError::Cause::stepLimit);
}

void Interpreter::failInterrupted() {
  interruptRequested_.store(false, std::memory_order_relaxed);
  fail(L"interrupted", LispError::Cause::interruption);
}

std::uint32_t Interpreter::fileNumber(std::wstring_view name) {
  const auto found = std::find(fileNames_.begin(), fileNames_.end(), name);
  if (found == fileNames_.end()) {
    fileNames_.emplace_back(name);
    return static_cast<std::uint32_t>(fileNames_.size());
  }
  return static_cast<std::uint32_t>(found - fileNames_.begin()) + 1;
}

} // namespace simhost::lisp
