#include "drawing/marker_data.h"

#include "host/lisp_calls.h"
#include "host/lisp_symbols.h"
#include "text/format.h"
#include "text/numbers.h"

namespace brenvolt {

namespace {

constexpr wchar_t setter[] = L"zan_bv_set_marker_data";

/// LISP makes the change, since it can share the list of handles: reading and writing the value as a list would copy
/// every handle for each marker of a run. It is a function, so that its text is read once a run. As long as the value
/// is the very list that the function made last, its handles are known and nothing has to be looked at.
/// The names come from `defineSetter`.
constexpr std::wstring_view setterForm =
    L"(progn (setq %s (list nil) %s nil) (defun %s (index values) (if (and values (eq %s %s)) "
    L"(if (setq %s (list index %s values) %s %s) t) "
    L"(let ((data %s)) (if (and (consp data) (integerp (car data))) "
    L"(progn (setq %s (cons index (cond ((null values) (cdr data)) "
    L"((cddr data) (list* (cadr data) values (cdddr data))) ((cdr data)) (t '(0))))) "
    L"(if (and values (cddr data) (null (cdddr data))) (setq %s %s %s (cadr data))) t))))) t)";

bool defineSetter() {
  const std::wstring_view symbol = lispsymbol::markerData;
  constexpr std::wstring_view made = L"zan_bv_marker_data_made";  // the list that the setter made last
  constexpr std::wstring_view handles = L"zan_bv_marker_handles"; // its handles
  const std::wstring form = formatText(
      setterForm, {made, handles, setter, symbol, made, symbol, handles, made, symbol, symbol, symbol, made,
                   symbol, handles});
  ResultList answer;
  return evalString(form, answer) == kvstatus::normal && exposeFunction(setter) == kvstatus::normal;
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
  return !list.isEmpty() && defineSetter() && putList(lispsymbol::markerData, list);
}

bool SetMarkerData(std::int32_t index, const std::vector<std::int32_t>& values) {
  ListBuilder call;
  call.addText(setter).addLong(index).beginList();
  for (const std::int32_t value : values)
    call.addText(formatInt(value));
  call.endList();
  ResultList answer;
  return invoke(call.take(), answer) == kvstatus::normal && ListReader(answer).isT();
}

} // namespace brenvolt
