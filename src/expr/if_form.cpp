#include "expr/if_form.h"

#include "expr/arithmetic.h"
#include "expr/expr_evaluator.h"

#include <algorithm>
#include <vector>

namespace brenvolt {
namespace {

constexpr std::size_t nowhere = std::string_view::npos;
constexpr std::size_t noNode = static_cast<std::size_t>(-1);

std::string_view trimmed(std::string_view text) {
  constexpr std::string_view blanks = " \t\r\n";
  const std::size_t first = text.find_first_not_of(blanks);
  return first == nowhere ? std::string_view()
                          : text.substr(first, text.find_last_not_of(blanks) + 1 - first);
}

/// A condition with branches, or a branch that is an expression. Nodes name each other by their place in the tree.
struct ZanIfNode {
  std::size_t parent = noNode;
  std::string_view text;
  std::size_t thenNode = noNode;
  std::size_t elseNode = noNode;
};

/// A word and its next place in a text that is read forwards: each stretch is searched once.
class WordFinder final {
public:
  WordFinder(std::string_view text, std::string_view word)
      : text_(text), word_(word), place_(text.find(word)) {}

  [[nodiscard]] std::size_t placeFrom(std::size_t position) {
    if (place_ < position) place_ = text_.find(word_, position);
    return place_;
  }
  [[nodiscard]] std::size_t length() const { return word_.size(); }

private:
  std::string_view text_;
  std::string_view word_;
  std::size_t place_;
};

class ZanIfTree final {
public:
  explicit ZanIfTree(std::string_view text) : text_(text) {}

  void parse() {
    nodes_.emplace_back();
    node_ = 0;
    while (node_ != noNode && position_ < text_.size()) {
      const std::size_t ifPlace = if_.placeFrom(position_);
      const std::size_t elsePlace = else_.placeFrom(position_);
      const std::size_t first = std::min({ifPlace, then_.placeFrom(position_), elsePlace});
      if (first != nowhere && first == ifPlace) {
        readCondition(ifPlace);
      } else if (start_ == nowhere) {
        throw IllegalExprException(); // "then" or "else" before any "if"
      } else if (first != nowhere && first == elsePlace && first > position_) {
        readBranchAheadOfElse(elsePlace);
      } else {
        readLastBranch();
      }
    }
  }

  [[nodiscard]] IfForm resolve(double variable) const {
    std::size_t node = 0;
    while (node != noNode && (nodes_[node].thenNode != noNode || nodes_[node].elseNode != noNode)) {
      const bool holds = evaluateArithmetic(nodes_[node].text, variable) != 0.0;
      node = holds ? nodes_[node].thenNode : nodes_[node].elseNode;
    }
    return {start_, position_, node == noNode ? std::string_view() : nodes_[node].text};
  }

private:
  void readCondition(std::size_t ifPlace) {
    if (start_ == nowhere) start_ = ifPlace;
    const std::size_t open = text_.find('(', ifPlace + if_.length());
    const std::size_t close = open == nowhere ? nowhere : text_.find(')', open);
    const std::size_t then = close == nowhere ? nowhere : then_.placeFrom(close + 1);
    if (then == nowhere) throw IllegalExprException();
    nodes_[node_].text = text_.substr(open, close + 1 - open);
    position_ = then + then_.length();
    const std::size_t branch = addNode(node_);
    nodes_[node_].thenNode = branch;
    node_ = branch;
  }

  void readBranchAheadOfElse(std::size_t elsePlace) {
    // The character before "else" is dropped in any case: a blank is expected there.
    nodes_[node_].text = trimmed(text_.substr(position_, elsePlace - 1 - position_));
    const std::size_t above = nodes_[node_].parent;
    const bool isThenBranch = nodes_[above].thenNode == node_;
    const std::size_t owner = isThenBranch ? above : nodes_[above].parent;
    if (owner == noNode) throw IllegalExprException(); // one "else" too many
    position_ = elsePlace + else_.length();
    const std::size_t branch = addNode(owner);
    nodes_[owner].elseNode = branch; // a second "else" of the same "if" takes the place of the first
    node_ = branch;
  }

  void readLastBranch() {
    const std::size_t open = text_.find('(', position_);
    const std::size_t close = open == nowhere ? nowhere : text_.find(')', open);
    const std::size_t begin = close == nowhere ? position_ : open;
    const std::size_t end = close == nowhere ? text_.size() : close + 1;
    nodes_[node_].text = trimmed(text_.substr(begin, end - begin));
    position_ = end;
    node_ = noNode;
  }

  std::size_t addNode(std::size_t parent) {
    nodes_.push_back({parent, {}, noNode, noNode});
    return nodes_.size() - 1;
  }

  std::string_view text_;
  WordFinder if_{text_, "if"};
  WordFinder then_{text_, "then"};
  WordFinder else_{text_, "else"};
  std::vector<ZanIfNode> nodes_;
  std::size_t node_ = noNode;   ///< current node; none when the form is complete
  std::size_t position_ = 0;    ///< the text before it belongs to the form
  std::size_t start_ = nowhere; ///< of the first "if"
};

} // namespace

IfForm resolveIfForm(std::string_view text, double variable) {
  ZanIfTree tree(text);
  tree.parse();
  return tree.resolve(variable);
}

} // namespace brenvolt
