#include "platform/statement_text.h"

#include "platform/statement_tokens.h"

#include "text/encoding.h"

#include <doctest/doctest.h>

using namespace brenvolt;

TEST_CASE("a statement is built only from values that cannot end their quotes or brackets") {
  struct Row {
    const wchar_t* format;
    std::vector<std::wstring> values;
    /// Null when the statement must be refused.
    const wchar_t* expected;
  };
  const std::vector<Row> rows = {
      {L"SELECT [DEFAULT] FROM [%s] WHERE [CODE]='%s'",
       {L"OPT_NEC", L"VOLTS"},
       L"SELECT [DEFAULT] FROM [OPT_NEC] WHERE [CODE]='VOLTS'"},
      {L"WHERE [CODE]='%s'", {L"it's"}, nullptr},
      {L"WHERE [CODE]='%s'", {L"it''s"}, L"WHERE [CODE]='it''s'"},
      {L"WHERE [CODE]='%s'", {L"'''"}, nullptr},
      {L"WHERE [CODE]='%s'", {L""}, L"WHERE [CODE]=''"},
      {L"WHERE [CODE]='50%s'", {L"%d"}, L"WHERE [CODE]='50%d'"},
      {L"FROM [%s]", {L"A] --"}, nullptr},
      {L"FROM [%s]", {L"A[B"}, nullptr},
      {L"FROM [%s]", {L""}, nullptr},
      {L"FROM [%s]", {L"it's"}, L"FROM [it's]"},
      {L"[ID]=%d", {L"-12"}, L"[ID]=-12"},
      {L"[ID]=%d", {L"1 OR 1"}, nullptr},
      {L"[ID]=%d", {L""}, nullptr},
      {L"SELECT * FROM %s ORDER BY %s", {L"[T]", L"[A] ASC"}, L"SELECT * FROM [T] ORDER BY [A] ASC"},
      {L"LIKE '5%%'", {}, L"LIKE '5%'"},
      {L"[A]='%s'", {}, nullptr},
      {L"[A]='%s'", {L"1", L"2"}, nullptr},
  };
  for (const Row& row : rows) {
    CAPTURE(toUtf8(row.format));
    const StatementText built = buildStatement(row.format, row.values);
    CHECK(built.isBuilt() == (row.expected != nullptr));
    CHECK(toUtf8(built.text) == toUtf8(row.expected == nullptr ? L"" : row.expected));
  }
}

TEST_CASE("DISTINCT is sorted only where the statement asks for no order itself") {
  struct Row {
    const wchar_t* statement;
    bool expected;
  };
  for (const Row& row : {
           Row{L"SELECT DISTINCT [Type] FROM [M]", true},
           Row{L"  select distinct [ORDER] from [LIMIT] where [A]='order by'", true},
           Row{L"SELECT DISTINCT [A] FROM [T] ORDER BY [A] DESC", false},
           Row{L"SELECT DISTINCT [A] FROM (SELECT * FROM [T] ORDER BY [B])", true},
           Row{L"SELECT [DISTINCT] FROM [T]", false},
           Row{L"SELECT [A] FROM [T]", false},
           Row{L"", false},
       }) {
    CAPTURE(toUtf8(row.statement));
    CHECK(tables::isUnorderedDistinct(tables::splitStatement(row.statement)) == row.expected);
  }
}
