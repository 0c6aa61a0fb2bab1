// Element by element through the symbol's list, in both directions.
#include "host/build_data.h"

#include "host/host_api_lisp.h"
#include "host/lisp_symbols.h"
#include "host/resources.h"
#include "host/result_list.h"

#include <utility>

namespace brenvolt {

namespace {

/// The scales as LISP lists them: not in the order of their letters.
template <typename Data, typename Action>
bool forEachScale(Data& data, Action action) {
  return action(data.scaleA) && action(data.scaleD) && action(data.scaleC) && action(data.scaleB);
}

std::int16_t traceNumber(const BuildData& data) {
  return data.trace ? 1 : 0;
}

ResultList newList(const std::wstring& name, const BuildData& data) {
  ListBuilder list;
  list.beginList().addText(name).addNil();
  forEachScale(data, [&](double scale) {
    list.addReal(scale);
    return true;
  });
  list.addShort(traceNumber(data)).endList();
  return list.take();
}

/// The list with name, scales and trace replaced, a missing trace added; empty when it is shorter or has no end.
ResultList changedList(ListReader reader, const std::wstring& name, const BuildData& data) {
  ListBuilder list;
  list.beginList().addText(name);
  reader.skipElement();
  ResultList point = reader.copyElement();
  if (point.isEmpty()) return ResultList();
  list.splice(std::move(point));
  const bool hasScales = forEachScale(data, [&](double scale) {
    list.addReal(scale);
    return reader.skipElement();
  });
  if (!hasScales || (!reader.atEnd() && !reader.skipElement())) return ResultList();
  list.addShort(traceNumber(data));
  while (!reader.atEnd()) {
    ResultList rest = reader.copyElement();
    if (rest.isEmpty()) return ResultList();
    list.splice(std::move(rest));
  }
  if (!reader.leaveList()) return ResultList();
  return list.endList().take();
}

} // namespace

bool readBuildData(BuildData& data) {
  const ResultList symbol = getSymbol(lispsymbol::buildData);
  ListReader reader(symbol);
  if (!reader.enterList() || !reader.skipElement()) return false;
  BuildData read = data;
  read.point = reader.point().value_or(read.point);
  if (!reader.skipElement()) return false;
  const bool hasScales = forEachScale(read, [&](double& scale) {
    scale = reader.real().value_or(scale);
    return reader.skipElement();
  });
  if (!hasScales) return false;
  if (const auto trace = reader.integer()) read.trace = *trace == 1;
  reader.skipElement();
  read.workbook = reader.text().value_or(read.workbook);
  data = std::move(read);
  return true;
}

bool writeBuildData(const std::wstring& name, const BuildData& data) {
  // What the user has chosen now counts more than a value that cannot be passed on, a symbol for instance.
  ResultList symbol;
  const bool isRead = kvedGetSym(lispsymbol::buildData, symbol.receive()) == kvstatus::normal;
  if (!isRead) kvutPrintf((loadText(TextId::buildDataReplaced) + L"\n").c_str());
  ListReader reader(symbol);
  const bool isFilled = isRead && reader.enterList() && !reader.atEnd();
  const ResultList changed = isFilled ? changedList(reader, name, data) : newList(name, data);
  return !changed.isEmpty() && putList(lispsymbol::buildData, changed);
}

} // namespace brenvolt
