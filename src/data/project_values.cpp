#include "data/project_values.h"

#include "data/project_circuits.h"
#include "host/lisp_calls.h"
#include "text/compare.h"

#include <optional>

namespace brenvolt {

namespace {

/// The columns and tables with the values of an attribute. Empty names end the list of tables.
struct ValueSource {
  std::wstring_view attribute; ///< empty: any other one
  std::wstring_view column;    ///< empty: named as the attribute
  std::wstring_view tables[4];
};
constexpr ValueSource sources[] = {
    {L"TAG1", L"TAGNAME", {L"COMP", L"PNLCOMP"}},
    {L"TAG2", L"TAGNAME", {L"COMP", L"PNLCOMP"}},
    {L"TAGSTRIP", L"", {L"TERMS", L"PNLTERM"}},
    {L"SIGCODE", L"", {L"SIG"}},
    {L"", L"", {L"COMP", L"PNLCOMP", L"PNLTERM", L"TERMS"}},
};

const ValueSource& sourceOf(std::wstring_view attribute) {
  const ValueSource* source = sources;
  while (!source->attribute.empty() && !equalsOrdinalNoCase(source->attribute, attribute))
    ++source;
  return *source;
}

} // namespace

std::vector<std::wstring> readProjectValues(std::wstring_view attribute, TableObserver* observer) {
  std::vector<std::wstring> values;
  const std::optional<std::wstring> path = getProjectDatabase();
  if (!path || attribute.empty()) return values;
  ProjectDatabase database(*path, observer);
  const ValueSource& source = sourceOf(attribute);
  const std::wstring_view column = source.column.empty() ? attribute : source.column;
  for (const std::wstring_view table : source.tables)
    if (!table.empty()) selectDistinct(database, table, column, L"SELECT %s FROM [%s]", {}, values);
  return values;
}

} // namespace brenvolt
