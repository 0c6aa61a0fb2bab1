// The functions that modules offer to LISP: the code of a name, the function that serves a code, and the calls that
// are running. Calls nest, because a function may call LISP that calls a function.
#pragma once

#include "simhost/host/chain.h"
#include "simhost/lisp/evaluator.h"

#include <map>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace simhost {

class Session;

using NativeFunction = int (*)();

class FunctionRegistry final {
public:
  /// Deeper nesting of native functions and LISP is an error: each level costs stack of both.
  static constexpr std::size_t nestingLimit = 200;

  explicit FunctionRegistry(Session& session) : session_(session) {}
  FunctionRegistry(const FunctionRegistry&) = delete;
  FunctionRegistry& operator=(const FunctionRegistry&) = delete;

  /// The module (a number from 1; 0 is the host itself) whose functions are named meanwhile.
  class ModuleScope final {
  public:
    ModuleScope(FunctionRegistry& registry, int module) : registry_(registry), former_(registry.module_) {
      registry_.module_ = module;
    }
    ModuleScope(const ModuleScope&) = delete;
    ModuleScope& operator=(const ModuleScope&) = delete;
    ~ModuleScope() { registry_.module_ = former_; }

  private:
    FunctionRegistry& registry_;
    int former_;
  };

  /// Makes the name a function of the current document's LISP. False without a document, for a name that is not a
  /// symbol, and for one that would replace a function of the host.
  bool define(std::wstring_view name, int code);
  bool bind(NativeFunction function, int code);
  /// Forgets what a module has bound; its LISP functions then fail.
  void dropModule(int module);

  /// Of the innermost call, -1 outside one.
  [[nodiscard]] int code() const { return frames_.empty() ? -1 : frames_.back().code; }
  [[nodiscard]] Chain arguments() const;
  /// Sets the value of the innermost call; false outside one.
  bool answer(lisp::Value value);

private:
  struct Frame {
    int code;
    std::span<const lisp::Value> arguments;
    lisp::Value answer;
  };

  lisp::Value call(int module, int code, lisp::Arguments& arguments);

  Session& session_;
  int module_ = 0;
  std::map<std::pair<int, int>, NativeFunction> functions_; ///< by module and code
  std::set<std::wstring> names_;                            ///< upper case, of all functions defined here
  std::vector<Frame> frames_;
};

} // namespace simhost
