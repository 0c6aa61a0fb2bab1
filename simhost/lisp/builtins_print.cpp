// Printing, and texts composed of values. All output is sent to the printer of the embedding program.
#include "simhost/lisp/builtins.h"
#include "simhost/lisp/printer.h"
#include "text/numbers.h"

#include <algorithm>
#include <optional>
#include <string>

namespace simhost::lisp {

namespace {

Value prin1(Arguments& arguments) {
  arguments.interpreter().print(printValue(arguments[0]));
  return arguments[0];
}

Value princ(Arguments& arguments) {
  arguments.interpreter().print(printValue(arguments[0], PrintStyle::display));
  return arguments[0];
}

Value print(Arguments& arguments) {
  arguments.interpreter().print(L"\n" + printValue(arguments[0]) + L" ");
  return arguments[0];
}

Value terpri(Arguments& arguments) {
  arguments.interpreter().print(L"\n");
  return {};
}

Value writeLine(Arguments& arguments) {
  arguments.interpreter().print(arguments.text(0) + L"\n");
  return arguments[0];
}

Value prin1ToString(Arguments& arguments) {
  return Value::string(printValue(arguments[0]));
}

Value princToString(Arguments& arguments) {
  return Value::string(printValue(arguments[0], PrintStyle::display));
}

constexpr std::size_t mostDecimals = 15;

/// Walks through a template and takes an argument for each directive.
class Formatting final {
public:
  explicit Formatting(Arguments& arguments) : arguments_(arguments), pattern_(arguments.text(1)) {}

  std::wstring run() {
    while (position_ < pattern_.size()) {
      const wchar_t character = pattern_[position_++];
      if (character == L'~') {
        directive();
      } else {
        out_ += character;
      }
    }
    if (arguments_.has(nextArgument_)) arguments_.fail(L"more arguments than directives");
    return std::move(out_);
  }

private:
  /// "~,2F": the decimals after the comma.
  std::optional<int> readDecimals() {
    if (position_ >= pattern_.size() || pattern_[position_] != L',') return std::nullopt;
    std::size_t decimals = 0;
    for (++position_;
         position_ < pattern_.size() && pattern_[position_] >= L'0' && pattern_[position_] <= L'9';
         ++position_) {
      decimals = std::min(decimals * 10 + static_cast<std::size_t>(pattern_[position_] - L'0'), mostDecimals);
    }
    return static_cast<int>(decimals);
  }

  void directive() {
    const std::optional<int> decimals = readDecimals();
    const wchar_t letter = position_ < pattern_.size() ? pattern_[position_++] : L'\0';
    switch (letter) {
    case L'~':
      out_ += L'~';
      return;
    case L'%':
      out_ += L'\n';
      return;
    case L'a':
    case L'A':
    case L'd':
    case L'D':
      out_ += printValue(take(), PrintStyle::display);
      return;
    case L's':
    case L'S':
      out_ += printValue(take());
      return;
    case L'f':
    case L'F': {
      const double number = arguments_.number(nextArgument_++);
      out_ += decimals ? brenvolt::formatFixed(number, *decimals) : printReal(number);
      return;
    }
    default:
      arguments_.fail(L"the template has a ~ that is none of ~A ~S ~D ~F ~,nF ~% ~~");
    }
  }

  const Value& take() {
    if (!arguments_.has(nextArgument_)) arguments_.fail(L"fewer arguments than directives");
    return arguments_[nextArgument_++];
  }

  Arguments& arguments_;
  const std::wstring& pattern_;
  std::size_t position_ = 0;
  std::size_t nextArgument_ = 2;
  std::wstring out_;
};

/// (format nil template ...) returns the text, (format T template ...) prints it.
Value format(Arguments& arguments) {
  const Kind destination = arguments[0].kind();
  if (destination != Kind::nil && destination != Kind::truth) arguments.expected(0, L"nil or T");
  std::wstring text = Formatting(arguments).run();
  if (destination == Kind::nil) return Value::string(std::move(text));
  arguments.interpreter().print(text);
  return {};
}

constexpr BuiltinEntry printBuiltins[] = {
    {L"prin1", 1, 1, prin1},
    {L"princ", 1, 1, princ},
    {L"print", 1, 1, print},
    {L"terpri", 0, 0, terpri},
    {L"write-line", 1, 1, writeLine},
    {L"prin1-to-string", 1, 1, prin1ToString},
    {L"princ-to-string", 1, 1, princToString},
    {L"format", 2, anyNumber, format},
};

} // namespace

void definePrintBuiltins(Interpreter& interpreter) {
  defineAll(interpreter, printBuiltins);
}

} // namespace simhost::lisp
