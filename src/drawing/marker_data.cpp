#include "drawing/marker_data.h"

#include "host/lisp_calls.h"
#include "host/lisp_symbols.h"
#include "text/format.h"
#include "text/numbers.h"

namespace brenvolt {

namespace {

/// "%s": the symbol, twice ahead of its new value, which is made of the old one, d. LISP reads this text for each
/// marker, so it is short.
constexpr std::wstring_view guardedChange =
    L"(let ((d %s)) (if (and (consp d) (integerp (car d))) (progn (setq %s (cons %d %s)) t)))";
/// All behind the index as it is.
constexpr std::wstring_view keptRest = L"(cdr d)";
/// A new third element, where there is one.
constexpr std::wstring_view valuesForm =
    L"(cond ((cddr d) (list* (cadr d) '(%s) (cdddr d))) ((cdr d)) (t '(0)))";

std::wstring quotedNumbers(const std::vector<std::int32_t>& values) {
  std::wstring texts;
  for (const std::int32_t value : values)
    texts += formatText(texts.empty() ? L"\"%d\"" : L" \"%d\"", {std::int64_t{value}});
  return texts;
}

} // namespace

bool PublishMarkerData(ZanDwgMarkerList& markers) {
  ListBuilder builder;
  builder.beginList().addLong(0).beginList();
  ZanDwgMarkerListIterator walk(&markers);
  for (walk.First(); !walk.Done(); walk.Next()) {
    const auto handle = handleToText(walk.Current()->handle);
    if (!handle) return false;
    builder.addText(*handle);
  }
  builder.endList().beginList().addText(L"-1").endList().endList();
  const ResultList list = builder.take();
  return !list.isEmpty() && putList(lispsymbol::markerData, list);
}

bool SetMarkerData(std::int32_t index, const std::vector<std::int32_t>& values) {
  // LISP makes the change, since it can share the list of handles. Reading and writing the value as a list would copy
  // every handle for each marker of a run.
  const std::wstring_view symbol = lispsymbol::markerData;
  const std::wstring rest =
      values.empty() ? std::wstring(keptRest) : formatText(valuesForm, {quotedNumbers(values)});
  ResultList answer;
  const int status =
      evalString(formatText(guardedChange, {symbol, symbol, std::int64_t{index}, rest}), answer);
  return status == kvstatus::normal && ListReader(answer).isT();
}

} // namespace brenvolt
