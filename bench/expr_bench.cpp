// Evaluations a second of formulas as the tables hold them, parsed each time, beside muParser doing the same.
#include "expr/expr_evaluator.h"

#include <benchmark/benchmark.h>
#include <muParser.h>

#include <string>

namespace {

const std::wstring formulas[] = {L"(i*1.25+3)^2/4", L"2*(3+i)", L"if (i>10) then (i*2) else (i*3)"};

// muParser writes the if-form in its own way.
const std::string yardstickFormulas[] = {"(i*1.25+3)^2/4", "2*(3+i)", "(i>10) ? (i*2) : (i*3)"};

/// A new value each time, so that nothing can be computed ahead.
double nextVariable(double variable) {
  return variable < 100.0 ? variable + 1.0 : 1.0;
}

void evaluateOurs(benchmark::State& state) {
  const std::wstring& formula = formulas[state.range(0)];
  double variable = 1.0;
  for ([[maybe_unused]] auto _ : state) {
    variable = nextVariable(variable);
    brenvolt::ZanExprEvaluator evaluator;
    benchmark::DoNotOptimize(evaluator.Evaluate(formula, variable));
  }
  state.SetItemsProcessed(state.iterations());
}

void evaluateMuParser(benchmark::State& state) {
  const auto& formula = yardstickFormulas[state.range(0)];
  mu::Parser parser;
  double variable = 1.0;
  parser.DefineVar(_T("i"), &variable);
  for ([[maybe_unused]] auto _ : state) {
    variable = nextVariable(variable);
    parser.SetExpr(formula);
    benchmark::DoNotOptimize(parser.Eval());
  }
  state.SetItemsProcessed(state.iterations());
}

} // namespace

BENCHMARK(evaluateOurs)->DenseRange(0, 2);
BENCHMARK(evaluateMuParser)->DenseRange(0, 2);

BENCHMARK_MAIN();
