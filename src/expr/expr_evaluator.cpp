#include "expr/expr_evaluator.h"

#include "expr/arithmetic.h"
#include "expr/if_form.h"
#include "text/split.h"

#include <array>

namespace brenvolt {
namespace {

/// A character that no expression holds, for all that are not ASCII.
constexpr char foreignCharacter = '?';

/// No formula comes near it; up to here the level of the parentheses is counted in 32 bits without overflow.
constexpr std::size_t longestText = 100'000'000;

char lowerAscii(wchar_t c) {
  if (c >= L'A' && c <= L'Z') return static_cast<char>(c - L'A' + L'a');
  return c >= 0 && c < 0x80 ? static_cast<char>(c) : foreignCharacter;
}

double evaluateLowered(std::string_view text, double variable) {
  if (text.find("if") == std::string_view::npos) return evaluateArithmetic(text, variable);
  const IfForm form = resolveIfForm(text, variable);
  std::string resolved(text.substr(0, form.start));
  resolved += form.branch;
  resolved += text.substr(form.end);
  return evaluateArithmetic(resolved, variable);
}

} // namespace

double ZanExprEvaluator::Evaluate(std::wstring_view text, const double& variable) const {
  text = trimView(text);
  if (text.empty()) return 1.0;
  if (text.size() > longestText) throw IllegalExprException();

  std::array<char, 128> shortText{};
  std::string longText;
  char* lowered = shortText.data();
  if (text.size() > shortText.size()) {
    longText.resize(text.size());
    lowered = longText.data();
  }
  for (std::size_t i = 0; i < text.size(); ++i)
    lowered[i] = lowerAscii(text[i]);
  return evaluateLowered({lowered, text.size()}, variable);
}

} // namespace brenvolt
