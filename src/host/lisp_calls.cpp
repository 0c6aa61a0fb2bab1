// The calls by name: the arguments of each, and which part of the result is used.
#include "host/lisp_calls.h"

#include "host/host_api_documents.h"
#include "host/host_api_lisp.h"
#include "text/format.h"
#include "text/numbers.h"
#include "text/split.h"

namespace brenvolt {

namespace {

/// The parent product's functions that evaluate a text and that expose a function to native code.
constexpr wchar_t evaluator[] = L"veval-str+";
constexpr std::wstring_view exposureFormat = L"(vz-korvo-defun '%s)";
/// The longest exposure call that the parent product takes.
constexpr std::size_t exposureLimit = 127;

bool& traceFlag() {
  static bool on = false;
  return on;
}

void printTrace(std::wstring_view prefix, std::wstring_view callText) {
  kvutPrintf(std::wstring(prefix).append(callText).c_str());
}

/// One entry per element of the result, without its own list marks.
template <typename TextOfElement>
std::vector<std::wstring> textsOf(const ResultList& answer, TextOfElement textOfElement) {
  std::vector<std::wstring> texts;
  ListReader reader(answer);
  reader.enterList();
  for (; !reader.atEnd(); reader.skipElement())
    texts.push_back(textOfElement(reader));
  return texts;
}

std::wstring settingText(const ListReader& element) {
  if (const auto number = element.groupInteger()) return formatInt(*number);
  return element.groupText().value_or(std::wstring());
}

} // namespace

void setTrace(bool on) {
  traceFlag() = on;
}

bool isTracing() {
  return traceFlag();
}

int invoke(const ResultList& call, ResultList& answer) {
  answer.reset();
  if (call.isEmpty()) return kvstatus::rejected;
  return kvedInvoke(call.get(), answer.receive());
}

int invokeTraced(const ResultList& call, std::wstring_view callText, ResultList& answer) {
  // Asked once: a call that changes the flag still gets both of its lines or none.
  const bool traced = isTracing();
  if (traced) printTrace(L"\nEXEC IN: ", callText);
  const int status = invoke(call, answer);
  if (traced) printTrace(L"\nEXEC OUT: ", callText);
  return status;
}

std::wstring lastCallError() {
  ResultList value;
  if (kvedGetVar(L"LISPERROR", value.receive()) != kvstatus::normal) return {};
  return ListReader(value).text().value_or(std::wstring());
}

int evalString(std::wstring_view text, ResultList& answer) {
  answer.reset();
  KvApDocManager* manager = kvDocManagerPtr();
  if (manager == nullptr || !manager->isLispReady()) return kvstatus::lispNotReady;
  return invoke(ListBuilder().addText(evaluator).addText(text).take(), answer);
}

int exposeFunction(std::wstring_view name) {
  const std::wstring text = formatText(exposureFormat, {name});
  if (text.size() > exposureLimit) return kvstatus::rejected;
  ResultList answer;
  return evalString(text, answer);
}

std::optional<std::wstring> findFile(std::wstring_view name) {
  constexpr std::int16_t searchEverywhere = 3;
  const ResultList call =
      ListBuilder().addText(L"c:zan_find_file").addText(name).addShort(searchEverywhere).take();
  ResultList answer;
  const int status = invokeTraced(call, formatText(L"(c:zan_find_file \"%s\" 3)", {name}), answer);
  if (status != kvstatus::normal) return std::nullopt;
  std::optional<std::wstring> path = ListReader(answer).text();
  if (!path || path->empty()) return std::nullopt;
  return path;
}

std::vector<std::wstring> getActiveWireTypes() {
  const ResultList call = ListBuilder().addText(L"zan_get_active_dwg_wiretype").take();
  ResultList answer;
  if (invokeTraced(call, L"(zan_get_active_dwg_wiretype)", answer) != kvstatus::normal) return {};
  return textsOf(answer, [](const ListReader& element) { return element.text().value_or(std::wstring()); });
}

std::vector<std::wstring> getWireTypeSettings(std::wstring_view wireType) {
  const ResultList call =
      ListBuilder().addText(L"zan_get_activedrawing_wiretype_settings").addText(wireType).take();
  ResultList answer;
  if (invokeTraced(call, L"(zan_get_activedrawing_wiretype_settings)", answer) != kvstatus::normal) return {};
  return textsOf(answer, settingText);
}

std::optional<std::wstring> getProjectDatabase() {
  const ResultList call = ListBuilder().addText(L"qn_mdb_proj_dbfnam").addNil().take();
  ResultList answer;
  if (invoke(call, answer) != kvstatus::normal || answer.isEmpty()) return std::nullopt;
  return replaceAll(ListReader(answer).text().value_or(std::wstring()), L"/", L"\\");
}

bool saveCodeHandles(const std::vector<std::vector<std::wstring>>& rows) {
  ListBuilder call;
  call.addText(L"qn_bv_save_codehdl").beginList();
  bool hasRows = false;
  for (const std::vector<std::wstring>& row : rows) {
    if (row.size() != 2) continue;
    call.beginList().addText(row[0]).addNil().addText(row[1]).endList();
    hasRows = true;
  }
  call.endList();
  if (!hasRows) return false;
  ResultList answer;
  return invoke(call.take(), answer) == kvstatus::normal && !answer.isEmpty();
}

} // namespace brenvolt
