#include "reference_evaluator.h"

#include "expr/expr_evaluator.h"
#include "text/compare.h"
#include "text/numbers.h"
#include "text/split.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <memory>
#include <vector>

using namespace brenvolt;

namespace {

using Tokens = std::vector<std::wstring>;

struct Entry {
  double value = 0.0;
  std::wstring type;
  int priority = -1;
};

struct Node {
  Node* parent = nullptr;
  std::wstring text;
  std::unique_ptr<Node> thenNode, elseNode;
};

const std::map<std::wstring, int> priorities = {{L">", 1},  {L"<", 1},  {L"=", 1},  {L">=", 1}, {L"=>", 1},
                                                {L"<=", 1}, {L"=<", 1}, {L"+", 10}, {L"-", 10}, {L"*", 11},
                                                {L"/", 11}, {L"^", 12}, {L"(", 13}, {L")", 0}};

void dropTo(std::wstring& text, std::size_t length, std::size_t& end) {
  text.erase(0, length);
  end += length;
}

bool parseIf(std::wstring text, Node& root, std::size_t& start, std::size_t& end) {
  constexpr auto npos = std::wstring::npos;
  for (Node* node = &root; node != nullptr && !text.empty();) {
    const std::size_t ifAt = text.find(L"if"), thenAt = text.find(L"then"), elseAt = text.find(L"else");
    const std::size_t p = std::min({ifAt, thenAt, elseAt});
    if (p != npos && p == ifAt) {
      if (start == npos) start = p;
      const std::size_t open = text.find(L'(', p + 2);
      const std::size_t close = open == npos ? npos : text.find(L')', open);
      const std::size_t then = close == npos ? npos : text.find(L"then", close);
      if (then == npos) return false;
      node->text = text.substr(open, close - open + 1);
      node->thenNode = std::make_unique<Node>();
      node->thenNode->parent = node;
      node = node->thenNode.get();
      dropTo(text, then + 4, end);
    } else if (p != npos && p == elseAt && start != npos && p >= 1) {
      node->text = trim(text.substr(0, p - 1));
      node = node->parent->thenNode.get() == node ? node->parent : node->parent->parent;
      if (node == nullptr) return false;
      node->elseNode = std::make_unique<Node>();
      node->elseNode->parent = node;
      node = node->elseNode.get();
      dropTo(text, p + 4, end);
    } else if (start != npos) {
      const std::size_t open = text.find(L'(');
      const std::size_t close = open == npos ? npos : text.find(L')', open);
      node->text = trim(close == npos ? text : text.substr(open, close - open + 1));
      dropTo(text, close == npos ? text.size() : close + 1, end);
      node = nullptr;
    } else {
      return p == npos;
    }
  }
  return true;
}

Tokens split(std::wstring text) {
  Tokens tokens;
  bool afterOperator = false;
  for (text = trim(text); !text.empty(); text = trim(text)) {
    const std::size_t at = text.find_first_of(L"+-*/^()><=");
    if (at != 0) {
      tokens.push_back(trim(text.substr(0, at)));
      afterOperator = false;
    }
    if (at == std::wstring::npos) break;
    const std::wstring character(1, text[at]);
    if (afterOperator && !tokens.empty() && priorities.contains(tokens.back() + character)) {
      tokens.back() += character;
    } else {
      tokens.push_back(character);
    }
    text.erase(0, at + 1);
    afterOperator = true;
  }
  return tokens;
}

bool reduce(std::vector<Entry>& stack) {
  if (stack.size() < 2) return true;
  Entry right = stack.back();
  stack.pop_back();
  for (bool stop = false; !stop && !stack.empty();) {
    const Entry left = stack.back();
    if (left.type.empty()) return false;
    if (right.priority > left.priority) break;
    const double a = left.value, b = right.value;
    if (left.type == L">") right.value = a > b;
    if (left.type == L"<") right.value = a < b;
    if (left.type == L"=") right.value = a == b;
    if (left.type == L">=" || left.type == L"=>") right.value = a >= b;
    if (left.type == L"<=" || left.type == L"=<") right.value = a <= b;
    if (left.type == L"+") right.value = a + b;
    if (left.type == L"-") right.value = a - b;
    if (left.type == L"*") right.value = a * b;
    if (left.type == L"/" && b == 0.0) return false;
    if (left.type == L"/") right.value = a / b;
    if (left.type == L"^") right.value = std::pow(a, b);
    if (left.type == L"(") stop = right.type == L")";
    stack.pop_back();
  }
  stack.push_back(right);
  return true;
}

bool isNumber(const std::wstring& token) {
  return token.find_first_not_of(L"0123456789.") == std::wstring::npos && token != L"." &&
         std::ranges::count(token, L'.') <= 1;
}

double evaluateTokens(const Tokens& tokens, double variable) {
  std::vector<Entry> stack;
  Entry current;
  int level = 0;
  std::size_t at = 0;
step1:
  if (at < tokens.size()) {
    current = Entry();
    bool negate = false;
    for (; at < tokens.size() && tokens[at] == L"-"; ++at)
      negate = !negate;
    if (at < tokens.size() && (isNumber(tokens[at]) || tokens[at] == L"i" || tokens[at] == L"pi")) {
      const double value = tokens[at] == L"i"    ? variable
                           : tokens[at] == L"pi" ? 3.14159265
                                                 : toDouble(tokens[at]);
      current.value = negate ? -value : value;
      ++at;
    }
  step4:
    if (at == tokens.size()) goto step1;
    current.type = tokens[at];
    if (!priorities.contains(current.type)) throw IllegalExprException();
    current.priority = current.type == L")" ? 0 : level + priorities.at(current.type);
    level += current.type == L"(" ? 20 : current.type == L")" ? -20 : 0;
    const bool mayReduce = !stack.empty() && current.priority <= stack.back().priority;
    stack.push_back(current);
    if (mayReduce && !reduce(stack)) throw IllegalExprException();
    ++at;
    if (current.type != L")") goto step1;
    current = stack.back();
    stack.pop_back();
    goto step4;
  }
  stack.push_back(current);
  static_cast<void>(reduce(stack));
  return stack.empty() ? 0.0 : stack.back().value;
}

} // namespace

double referenceEvaluate(std::wstring text, double variable) {
  text = toLower(trim(text));
  if (text.empty()) return 1.0;
  Node root;
  std::size_t start = std::wstring::npos, end = 0;
  if (!parseIf(text, root, start, end)) throw IllegalExprException();
  if (start != std::wstring::npos) {
    const Node* node = &root;
    while (node != nullptr && (node->thenNode || node->elseNode)) {
      node = referenceEvaluate(node->text, variable) != 0.0 ? node->thenNode.get() : node->elseNode.get();
    }
    text = text.replace(start, end - start, node == nullptr ? L"" : node->text);
  }
  return evaluateTokens(split(text), variable);
}
