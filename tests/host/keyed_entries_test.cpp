// Keyed lists: entries are found by their first text and taken out whole; a malformed list is left alone.
#include "host/keyed_entries.h"

#include "tests/support/chain_text.h"

#include <doctest/doctest.h>

using namespace brenvolt;
using test::chainOf;
using test::textOf;

TEST_CASE("entries of a key are found and taken out") {
  struct Row {
    const char* list;
    bool has;
    const char* without; ///< null: the list is malformed and stays
  };
  const Row rows[] = {
      {"( ( \"M1\" 1 ) ( \"M2\" ) )", true, "( ( \"M2\" ) )"},
      {"( ( \"m1\" ( ( 1 ) ) ) nil ( \"M1\" ) 7 )", true, "( nil 7 )"},
      {"( ( \"M10\" ) ( ) ( 1 \"M1\" ) ( ( \"M1\" ) ) )", false,
       "( ( \"M10\" ) ( ) ( 1 \"M1\" ) ( ( \"M1\" ) ) )"},
      {"( )", false, "( )"},
      {"( \"M1\" )", false, "( \"M1\" )"},
      {"", false, nullptr},
      {"nil", false, nullptr},
      {"\"M1\"", false, nullptr},
      {"( ( \"M2\" ) ( \"M1\" )", true, nullptr},
      {"( ( \"M1\" 1", false, nullptr},
  };
  for (const Row& row : rows) {
    CAPTURE(row.list);
    ResultList list = chainOf(row.list);
    CHECK_EQ(hasKeyedEntry(list, L"M1"), row.has);
    CHECK_EQ(removeKeyedEntry(list, L"M1"), row.without != nullptr);
    CHECK_EQ(textOf(list), row.without != nullptr ? row.without : row.list);
  }
}
