#include "flows/circuit_memory.h"

#include "host/host_api_documents.h"
#include "text/numbers.h"

namespace brenvolt {

namespace {

constexpr wchar_t lastCircuit[] = L"LastCircuit";
constexpr wchar_t lastType[] = L"LastType";
constexpr wchar_t previewState[] = L"SplitWndState";

struct SplitValue {
  const wchar_t* name;
  int KvUiSplit::*number;
};
constexpr SplitValue splitValues[] = {
    {L"SplitWndBar", &KvUiSplit::bar},
    {L"SplitWndCX", &KvUiSplit::width},
    {L"SplitWndCY", &KvUiSplit::height},
};

int readNumber(const wchar_t* name) {
  std::wstring text;
  kvdsReadUserValue(circuitDialogName, name, text);
  return toInt(text);
}

void keep(const wchar_t* name, const std::wstring& text) {
  kvdsWriteUserValue(circuitDialogName, name, text.c_str());
}

} // namespace

std::optional<LastCircuit> readLastCircuit() {
  LastCircuit last;
  if (!kvdsReadUserValue(circuitDialogName, lastCircuit, last.circuit)) return std::nullopt;
  if (!kvdsReadUserValue(circuitDialogName, lastType, last.type)) return std::nullopt;
  return last;
}

void keepLastCircuit(const LastCircuit& last) {
  keep(lastCircuit, last.circuit);
  keep(lastType, last.type);
}

std::optional<ZanSplitterState> readSplitterState() {
  if (!kvdsUserKeyExists(circuitDialogName)) return std::nullopt;
  ZanSplitterState state;
  for (const SplitValue& value : splitValues)
    state.split.*value.number = readNumber(value.name);
  state.showsPreview = readNumber(previewState) != 0;
  return state;
}

void keepSplitterState(const ZanSplitterState& state) {
  for (const SplitValue& value : splitValues)
    keep(value.name, formatInt(state.split.*value.number));
  keep(previewState, state.showsPreview ? L"1" : L"0");
}

} // namespace brenvolt
