// `brenvolt expr`: a formula as the engineering tables hold it, worked out for one value.
#include "expr/expr_evaluator.h"
#include "simhost/cli/subcommand.h"
#include "simhost/cli/table_output.h"
#include "simhost/host/errors.h"
#include "text/encoding.h"
#include "text/numbers.h"
#include "text/plain_number.h"

#include <cmath>
#include <memory>

namespace simhost {

namespace {

struct ExprOptions {
  std::string text;
  std::string variable = "0";
};

ExitCode runExpr(const ExprOptions& options) {
  const std::optional<double> variable = brenvolt::plainNumber(brenvolt::fromUtf8(options.variable));
  if (!variable) throw BadInput("\"" + options.variable + "\" is not a number");
  double value = 0.0;
  try {
    value = brenvolt::ZanExprEvaluator().Evaluate(brenvolt::fromUtf8(options.text), *variable);
  } catch (const brenvolt::IllegalExprException&) {
    throw BadInput("\"" + options.text + "\" is not a formula");
  }
  if (!std::isfinite(value)) throw BadInput("\"" + options.text + "\" has no finite value");
  printOut(brenvolt::toUtf8(brenvolt::formatShortest(value)) + "\n");
  return ExitCode::done;
}

} // namespace

CommandTable exprCommand() {
  auto options = std::make_shared<ExprOptions>();
  return {
      .name = "expr",
      .description = "evaluate a formula of the engineering tables",
      .options =
          {{"TEXT", &options->text, "The formula, with the variable \"i\"", {}, {.isRequired = true}},
           {"I", &options->variable, "The value of \"i\"; default: 0"}},
      .footer = "Write -- before a formula that begins with a minus sign.",
      .examples = {"brenvolt expr '2*(3+i)' 4", "brenvolt expr -- '-3+i' 5"},
      .page = "tables.md",
      .run = [options] { return runExpr(*options); },
  };
}

} // namespace simhost
