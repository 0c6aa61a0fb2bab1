// Patterns of the host's command line.
#include "host/host_api_lisp.h"
#include "simhost/host/wildcard.h"

#include <doctest/doctest.h>

#include <string>

namespace {

struct Row {
  const wchar_t* text;
  const wchar_t* pattern;
  bool matches;
};

constexpr Row rows[] = {
    {L"WIRE", L"wire", true},   {L"WIRE", L"WIR", false},   {L"", L"", true},
    {L"", L"*", true},          {L"", L"?", false},         {L"3-10", L"3-*", true},
    {L"13-10", L"3-*", false},  {L"a1b", L"@#@", true},     {L"a-b", L"@.@", true},
    {L"a1b", L"@.@", false},    {L"\u00e9", L"@", true},    {L"5", L"@", false},
    {L"abc", L"a?c", true},     {L"abbbc", L"a*b*c", true}, {L"abcabd", L"*ab?d", false},
    {L"abcabd", L"*abd", true}, {L"B", L"[abc]", true},     {L"d", L"[a-c]", false},
    {L"b", L"[c-a]", true},     {L"d", L"[~a-c]", true},    {L"-", L"[a-]", true},
    {L"]", L"[`]]", true},      {L"x", L"y,x", true},       {L"x", L"y,z", false},
    {L"x", L"~x", false},       {L"y", L"~x", true},        {L"a~b", L"a~b", true},
    {L"x", L"~x,x", true},      {L"*", L"`*", true},        {L"a", L"`*", false},
    {L"a,b", L"a`,b", true},    {L"[x", L"[x", true},       {L"`", L"`", true},
};

} // namespace

TEST_CASE("each sign of a wildcard pattern means what it promises") {
  for (const Row& row : rows) {
    CAPTURE(std::wstring(row.text).size());
    CHECK_MESSAGE(simhost::matchesWildcard(row.text, row.pattern) == row.matches, "row ", &row - rows);
  }
  CHECK(kvutWcMatch(L"a", L"A") == kvstatus::normal);
  CHECK(kvutWcMatch(L"a", L"b") != kvstatus::normal);
  CHECK(kvutWcMatch(nullptr, L"b") != kvstatus::normal);
}

TEST_CASE("a pattern of many runs costs no more than text times pattern") {
  std::wstring pattern;
  for (int run = 0; run < 200; ++run)
    pattern += L"*a";
  pattern += L"b";
  const std::wstring text(20000, L'a');
  // A search that tries every division of the text among the runs would never end.
  CHECK_FALSE(simhost::matchesWildcard(text, pattern));
}
