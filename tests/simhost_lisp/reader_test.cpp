// Text to forms and back.
#include "lisp_support.h"

#include "simhost/lisp/reader.h"

#include <doctest/doctest.h>

using namespace simhost::lisp;

namespace {

/// All forms of a text as they print, one per line, or the error.
std::string readAll(std::string_view text) {
  SymbolTable symbols;
  const std::wstring wide = brenvolt::fromUtf8(text);
  try {
    Reader reader(symbols, wide, L"file.lsp", 1);
    std::wstring printed;
    while (const std::optional<Value> form = reader.next()) {
      printed += printed.empty() ? L"" : L"\n";
      printed += printValue(*form);
    }
    return brenvolt::toUtf8(printed);
  } catch (const LispError& error) {
    return std::string("error: ") + error.what();
  }
}

} // namespace

TEST_CASE("words are numbers, symbols, nil or T") {
  constexpr Expectation rows[] = {
      {"12 -7 +3 007", "12\n-7\n3\n7"},
      {"2147483647 -2147483648 2147483648 99999999999999999999",
       "2147483647\n-2147483648\n2147483648.0\n1e+20"},
      {"1.5 .5 5. -.25 1e3 2E-3 0.1", "1.5\n0.5\n5.0\n-0.25\n1000.0\n0.002\n0.1"},
      {"1.2.3 - + 1+ 1- -a 12a . . ", "error: file.lsp:1: unexpected dot"},
      {"1.2.3 - + 1+ 1- -a 12a 1e 1e+ ...", "1.2.3\n-\n+\n1+\n1-\n-A\n12A\n1E\n1E+\n..."},
      {"nil NIL t T ()", "nil\nnil\nT\nT\nnil"},
      {"#xyz c:zan_find_file veval-str+ @sel !ctl *glob* a->b \xC3\xA9t\xC3\xA9",
       "#XYZ\nC:ZAN_FIND_FILE\nVEVAL-STR+\n@SEL\n!CTL\n*GLOB*\nA->B\n\xC3\x89T\xC3\x89"},
      {"\xEF\xBB\xBF 1", "1"},
      {"", ""},
      {"; only a comment", ""},
  };
  for (const Expectation& row : rows) {
    CAPTURE(row.form);
    CHECK(readAll(row.form) == row.printed);
  }
}

TEST_CASE("lists, pairs, quotes, comments and strings print as they were read") {
  constexpr Expectation rows[] = {
      {"(a(b)c)", "(A (B) C)"},
      {"(a . b) (a b . c) (a . (b))", "(A . B)\n(A B . C)\n(A B)"},
      {"'a ''(b) (quote c d) #'car", "'A\n''(B)\n(QUOTE C D)\n(FUNCTION CAR)"},
      {"(a ; comment )\n b)", "(A B)"},
      {R"("say \"x\" \\ \n \t")", R"("say \"x\" \\ \n \t")"},
      {"\"two\nlines\"", "\"two\\nlines\""},
      {"\"semi;colon (\" b\"c\"", "\"semi;colon (\"\nB\n\"c\""},
  };
  for (const Expectation& row : rows) {
    CAPTURE(row.form);
    CHECK(readAll(row.form) == row.printed);
  }
}

TEST_CASE("what cannot be read is told with file and line") {
  constexpr Expectation rows[] = {
      {"a\n(b\n(c", "file.lsp:2: the ( here has no ); lists still open at the end of the text: 2"},
      {"\n(b", "file.lsp:2: the ( here has no )"},
      {"(b)\n)", "file.lsp:2: a ) without a ("},
      {"a\n\"b\n\n", "file.lsp:2: the string that begins here has no closing quote"},
      {"\"a\\", "file.lsp:1: the string that begins here has no closing quote"},
      {"\n\"C:\\dir\"",
       "file.lsp:2: a string has \\ before a character that needs none; a backslash itself is \\\\"},
      {"(a\n')", "file.lsp:2: a quote without a datum"},
      {"'", "file.lsp:1: a quote without a datum"},
      {"( . a)", "file.lsp:1: unexpected dot"},
      {"(a . b c)", "file.lsp:1: a pair with more than one datum after its dot"},
      {"(a . )", "file.lsp:1: a pair without a datum after its dot"},
      {"(a . b . c)", "file.lsp:1: unexpected dot"},
      {"(a '. b)", "file.lsp:1: unexpected dot"},
  };
  for (const Expectation& row : rows) {
    CAPTURE(row.form);
    CHECK(readAll(row.form) == "error: " + std::string(row.printed));
  }
}
