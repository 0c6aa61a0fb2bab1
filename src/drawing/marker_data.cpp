#include "drawing/marker_data.h"

#include "host/lisp_calls.h"
#include "host/lisp_symbols.h"
#include "text/format.h"
#include "text/numbers.h"

namespace brenvolt {

namespace {

/// "%s": the symbol; the second "%s": its new value.
constexpr std::wstring_view guardedChange =
    L"(if (and (consp %s) (integerp (car %s))) (progn (setq %s %s) t) nil)";
/// A new index ahead of the rest as it is.
constexpr std::wstring_view indexForm = L"(cons %d (cdr %s))";
/// The same with a new third element, where there is one.
constexpr std::wstring_view valuesForm =
    L"(cons %d (cond ((null (cdr %s)) (list 0)) ((null (cddr %s)) (cdr %s)) "
    L"(t (cons (cadr %s) (cons (list %s) (cdr (cddr %s)))))))";

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
  const std::int64_t number = index;
  const std::wstring value =
      values.empty()
          ? formatText(indexForm, {number, symbol})
          : formatText(valuesForm, {number, symbol, symbol, symbol, symbol, quotedNumbers(values), symbol});
  ResultList answer;
  const int status = evalString(formatText(guardedChange, {symbol, symbol, symbol, value}), answer);
  return status == kvstatus::normal && ListReader(answer).isT();
}

} // namespace brenvolt
