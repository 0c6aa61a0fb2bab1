// Chains as short texts, so that tests can write what they put in and what they expect on one line, malformed chains
// included: ( and ) are list marks, nil and T themselves, "a" a text, 5 a 16-bit and 5L a 32-bit integer, 1.5 a real,
// <1,2> and <1,2,3> points, #7 an entity name, 90:5 and 1:"a" group nodes.
#pragma once

#include "host/result_list.h"

#include <string>
#include <string_view>

namespace brenvolt::test {

/// The list for a text. An invalid text ends the test program.
[[nodiscard]] ResultList chainOf(std::string_view text);

/// The text of a chain, nodes separated by blanks; empty for an empty one.
[[nodiscard]] std::string textOf(const ResultList& list);

} // namespace brenvolt::test
