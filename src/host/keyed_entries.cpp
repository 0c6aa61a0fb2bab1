// Both operations are one walk over the entries.
#include "host/keyed_entries.h"

#include "text/compare.h"

#include <utility>

namespace brenvolt {

namespace {

bool isEntryOf(ListReader element, std::wstring_view key) {
  if (!element.enterList()) return false;
  const auto name = element.text();
  return name && equalsOrdinalNoCase(*name, key);
}

} // namespace

bool removeKeyedEntry(ResultList& list, std::wstring_view key) {
  ListReader reader(list);
  if (!reader.enterList()) return false;
  ListBuilder kept;
  kept.beginList();
  while (!reader.atEnd()) {
    const bool matches = isEntryOf(reader, key);
    ResultList entry = reader.copyElement();
    if (entry.isEmpty()) return false;
    if (!matches) kept.splice(std::move(entry));
  }
  if (!reader.leaveList()) return false;
  ResultList result = kept.endList().take();
  if (result.isEmpty()) return false;
  list = std::move(result);
  return true;
}

bool hasKeyedEntry(const ResultList& list, std::wstring_view key) {
  ListReader reader(list);
  if (!reader.enterList()) return false;
  while (!reader.atEnd()) {
    const ListReader entry = reader;
    if (!reader.skipElement()) return false;
    if (isEntryOf(entry, key)) return true;
  }
  return false;
}

} // namespace brenvolt
