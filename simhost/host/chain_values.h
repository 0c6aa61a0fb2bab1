// Between chains and LISP values, both ways. Neither side is trusted: a malformed chain or a value without a form as
// a chain gives a sentence instead of a result, and nothing recurses, so depth costs no stack.
#pragma once

#include "simhost/host/chain.h"
#include "simhost/lisp/value.h"

#include <string>
#include <vector>

namespace simhost {

/// Values read from a chain; `fault` is empty on success.
struct ValuesOfChain {
  std::vector<lisp::Value> values; ///< the values at the chain's top level
  std::wstring fault;
};

/// A list from its two marks, nil and an empty list as nil, a point as a list of two or three reals, a group node of
/// entity data or wire settings as the pair (code . value). Marks that do not match and unknown codes are faults.
[[nodiscard]] ValuesOfChain valuesOfChain(const KvResultBuffer* chain);

/// One value: that of a chain with one value, nil for an empty chain, and the list of them for a chain that holds
/// several values without list marks around them.
struct ValueOfChain {
  lisp::Value value;
  std::wstring fault;
};
[[nodiscard]] ValueOfChain valueOfChain(const KvResultBuffer* chain);

/// A chain made of a value; `fault` is empty on success.
struct ChainOfValue {
  Chain chain;
  std::wstring fault;
};

/// An integer comes as a 16-bit node where it fits, else as a 32-bit one; a list with its marks, but one of exactly
/// two or three reals as a point node, at the top level too; nil as a nil node, T as T; a pair of a group code and a
/// fitting value as a group node. Symbols, functions, other pairs and lists without an end in nil are faults.
[[nodiscard]] ChainOfValue chainOfValue(const lisp::Value& value);

/// Appends a value's nodes; returns the fault, empty on success. After a fault the builder contains no usable list.
[[nodiscard]] std::wstring appendValue(ChainBuilder& chain, const lisp::Value& value);

} // namespace simhost
