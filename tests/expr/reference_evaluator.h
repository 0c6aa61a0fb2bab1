// A second evaluator that follows the rules step by step with plain strings and vectors, to judge the fast one.
#pragma once

#include <string>

/// As `ZanExprEvaluator::Evaluate`, for short texts in ASCII.
double referenceEvaluate(std::wstring text, double variable);
