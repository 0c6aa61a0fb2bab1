// The LISP of the simulated host: one interpreter holds the symbols, the functions of its embedding and the
// run.
#pragma once

#include "simhost/lisp/arguments.h"
#include "simhost/lisp/errors.h"
#include "simhost/lisp/symbol.h"
#include "simhost/lisp/value.h"
#include "simhost/lisp/value_stack.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace simhost::lisp {

/// What `load` gets for a file name.
struct LoadedText final {
  std::wstring text;
  std::wstring fileName; ///< for messages, and as the place from which the file's own loads start
};

/// Finds the text for a name given to `load`; `fromFile` is the file of the calling form, empty when there is
/// none.
using Loader = std::function<std::optional<LoadedText>(std::wstring_view name, std::wstring_view fromFile)>;
using Printer = std::function<void(std::wstring_view text)>;

/// Evaluates LISP. For one thread; only `interrupt` may come from elsewhere. Functions of the embedding may
/// call back in. An exception of theirs other than LispError passes through every LISP form untouched.
class Interpreter final {
public:
  /// Forms inside forms inside calls, counted together. A function that calls itself from within an `if` and
  /// an arithmetic form uses three per call.
  static constexpr std::size_t defaultDepthLimit = 10000;

  Interpreter();
  Interpreter(const Interpreter&) = delete;
  Interpreter& operator=(const Interpreter&) = delete;
  ~Interpreter();

  [[nodiscard]] SymbolTable& symbols() { return symbols_; }
  /// The variable's value; nil when it was never set.
  [[nodiscard]] Value value(std::wstring_view name) const;
  /// The function that a call of this name would reach.
  [[nodiscard]] std::optional<Value> findFunction(std::wstring_view name) const;
  /// Names of all functions of the embedding, sorted.
  [[nodiscard]] std::vector<std::wstring> builtinNames() const;
  /// Names of all special forms, sorted.
  [[nodiscard]] std::vector<std::wstring> specialFormNames() const;

  /// Sets a global variable.
  void setValue(std::wstring_view name, Value value);
  /// Makes a function of the embedding callable; one of the same name is replaced.
  void define(
      std::wstring_view name, std::size_t minimumArguments, std::size_t maximumArguments,
      std::function<Value(Arguments&)> function);
  /// Removes a function; a missing function is not an error.
  void undefine(std::wstring_view name);

  /// Reads the whole text, then evaluates form by form; the value of the last one, nil when there is none.
  /// Nothing runs when the text cannot be read. Throws LispError, as do all below.
  Value run(std::wstring_view text, std::wstring_view fileName);
  /// Runs the text that the loader finds.
  Value load(std::wstring_view name);
  Value eval(const Value& form);
  /// Calls a function value, a symbol or a lambda expression with arguments that are already evaluated.
  Value call(const Value& function, std::span<const Value> arguments);
  Value call(std::wstring_view functionName, std::span<const Value> arguments);

  void print(std::wstring_view text) const;
  /// Where the printing functions print; at first nowhere.
  void setPrinter(Printer printer) { printer_ = std::move(printer); }
  void setLoader(Loader loader) { loader_ = std::move(loader); }
  void setDepthLimit(std::size_t limit) { depthLimit_ = limit; }
  /// The maximum number of steps (calls and passes of loops) in one outermost form; 0 means no limit.
  void setStepLimit(std::uint64_t limit) { stepLimit_ = limit; }
  /// Ends the run at its next step with an error. Safe in a signal handler.
  void interrupt() noexcept { interruptRequested_.store(true, std::memory_order_relaxed); }

  /// Throws a LispError at the innermost form of the program.
  [[noreturn]] void fail(std::wstring message, LispError::Cause cause = LispError::Cause::fault) const;

  /// Counts one turn of a loop that may not call anything, so that it can be stopped.
  void step() {
    ++steps_;
    if (stepLimit_ != 0 && steps_ > stepLimit_) failAtStepLimit();
    if (interruptRequested_.load(std::memory_order_relaxed)) failInterrupted();
  }
  /// The forms of a list in order; the value of the last one.
  Value evalBody(const Value& forms);
  [[nodiscard]] Value makeLambda(Symbol* name, const Value& parameters, const Value& body) const;
  /// The function that a value designates; throws when there is none.
  [[nodiscard]] Value functionOf(const Value& designator) const;

  /// Binds variables until the object is destroyed, also on errors. Everything called meanwhile sees them.
  class Bindings final {
  public:
    explicit Bindings(Interpreter& interpreter)
        : interpreter_(interpreter), mark_(interpreter.saved_.size()) {}
    Bindings(const Bindings&) = delete;
    Bindings& operator=(const Bindings&) = delete;
    ~Bindings();

    void bind(Symbol& symbol, Value value);

  private:
    Interpreter& interpreter_;
    const std::size_t mark_;
  };

private:
  struct Frame;
  class FileScope;
  struct SavedValue {
    Symbol* symbol;
    Value value;
  };

  Value evalCall(const Value& form);
  Value callEvaluated(const Value& function, const Value& argumentForms);
  Value apply(const Value& function, std::span<Value> arguments);
  Value applyBuiltin(const Builtin& function, std::span<const Value> arguments);
  Value applyLambda(const Lambda& function, std::span<Value> arguments);
  [[noreturn]] void failCount(
      const std::wstring& name, std::size_t given, std::size_t minimum, std::size_t maximum) const;
  [[noreturn]] void failAtDepthLimit() const;
  [[noreturn]] void failAtStepLimit() const;
  [[noreturn]] void failInterrupted();
  std::uint32_t fileNumber(std::wstring_view name);

  SymbolTable symbols_;
  ValueStack argumentStack_;
  std::vector<SavedValue> saved_;
  std::vector<std::wstring> fileNames_;
  std::vector<std::uint32_t> filesAtWork_;
  const Frame* frame_ = nullptr;
  std::ptrdiff_t stackBase_ = 0; ///< where the stack stood at the outermost form
  std::size_t depthLimit_ = defaultDepthLimit;
  std::uint64_t stepLimit_ = 0;
  std::uint64_t steps_ = 0;
  std::atomic<bool> interruptRequested_ = false;
  Printer printer_;
  Loader loader_;
};

} // namespace simhost::lisp
