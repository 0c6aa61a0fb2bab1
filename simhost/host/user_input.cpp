// Output and questions of the plug-in outside of dialogs: the command line, picks, host variables, help, parent
// windows, waiting and messages.
#include "host/host_api_documents.h"
#include "host/host_api_lisp.h"
#include "simhost/host/chain.h"
#include "simhost/host/session.h"

#include <cstdint>
#include <utility>
#include <variant>

using simhost::ChainBuilder;
using simhost::Session;

namespace {

/// What `kvedInitGet` said of the next input; each input uses it up.
int& inputFlags() {
  static int flags = 0;
  return flags;
}
constexpr int noEmptyAnswer = 1;

/// Nested wait cursors; the outermost one shows and hides.
int& waitDepth() {
  static int depth = 0;
  return depth;
}

} // namespace

int kvutPrintf(const wchar_t* text) {
  Session* session = Session::current();
  if (session == nullptr || text == nullptr) return kvstatus::rejected;
  session->commandLine().print(text);
  return kvstatus::normal;
}

int kvedGetVar(const wchar_t* name, KvResultBuffer** value) {
  if (value == nullptr) return kvstatus::rejected;
  *value = nullptr;
  Session* session = Session::current();
  simhost::Document* document = session == nullptr ? nullptr : session->documents().current();
  if (document == nullptr || name == nullptr) return kvstatus::rejected;
  if (brenvolt::equalsOrdinalNoCase(name, L"LISPERROR")) {
    ChainBuilder chain;
    chain.add(kvtype::string).value.string = simhost::newChainString(session->callError());
    *value = chain.take().release();
    return kvstatus::normal;
  }
  const simhost::VariableValue* found = document->drawing().variable(name);
  if (found == nullptr) return kvstatus::rejected;
  ChainBuilder chain;
  if (const auto* number = std::get_if<std::int32_t>(found)) {
    const auto narrow = static_cast<std::int16_t>(*number);
    if (narrow == *number) {
      chain.add(kvtype::shortInteger).value.shortInteger = narrow;
    } else {
      chain.add(kvtype::longInteger).value.longInteger = *number;
    }
  } else if (const auto* real = std::get_if<double>(found)) {
    chain.add(kvtype::real).value.real = *real;
  } else {
    chain.add(kvtype::string).value.string = simhost::newChainString(std::get<std::wstring>(*found));
  }
  *value = chain.take().release();
  return kvstatus::normal;
}

int kvedInitGet(int flags, const wchar_t*) {
  inputFlags() = flags;
  return kvstatus::normal;
}

int kvedEntSel(const wchar_t* prompt, KvEntityName& entity, KvPoint3d& point) {
  const int flags = std::exchange(inputFlags(), 0);
  Session* session = Session::current();
  simhost::Document* document = session == nullptr ? nullptr : session->documents().current();
  if (document == nullptr) return kvstatus::cancel;
  const simhost::EntityPick pick =
      session->windows().pickEntity(prompt == nullptr ? L"" : prompt, (flags & noEmptyAnswer) == 0);
  if (pick.kind == simhost::EntityPick::Kind::cancelled) return kvstatus::cancel;
  if (pick.kind == simhost::EntityPick::Kind::nothing) return kvstatus::none;
  KvDbObjectId id;
  // A handle of no entity is a click into the void.
  if (document->drawing().find(pick.handle) == nullptr) return kvstatus::none;
  if (document->drawing().objectIdOf(pick.handle, id) != KvDbStatus::ok) return kvstatus::none;
  KvEntityName name{};
  if (kvdbGetEntityName(name, id) != KvDbStatus::ok) return kvstatus::none;
  entity = name;
  point = pick.point;
  return kvstatus::normal;
}

int kvedSSFree(KvEntityName) {
  return kvstatus::normal;
}

int kvedHelp(const wchar_t* topic) {
  Session* session = Session::current();
  if (session == nullptr || topic == nullptr) return kvstatus::rejected;
  if (!session->windows().showHelp(topic)) session->commandLine().printLine(L"help: " + std::wstring(topic));
  return kvstatus::normal;
}

void kvdsMessageBox(KvWindow*, const wchar_t* text) {
  Session* session = Session::current();
  if (session == nullptr || text == nullptr) return;
  if (!session->windows().showMessage(text)) session->commandLine().printLine(text);
}

KvWindow* kdsw_korvoMainWnd() {
  Session* session = Session::current();
  return session == nullptr ? nullptr : session->windows().mainWindow();
}

KvWindow* kvedGetKorvoFrame() {
  Session* session = Session::current();
  return session == nullptr ? nullptr : session->windows().promptFrame();
}

KvWindow* kvdsForegroundWindow() {
  Session* session = Session::current();
  return session == nullptr ? nullptr : session->windows().foregroundWindow();
}

void kvdsBeginWaitCursor() {
  Session* session = Session::current();
  if (waitDepth()++ == 0 && session != nullptr) session->windows().showWaitCursor(true);
}

void kvdsEndWaitCursor() {
  Session* session = Session::current();
  if (waitDepth() > 0 && --waitDepth() == 0 && session != nullptr) session->windows().showWaitCursor(false);
}

bool kvdsMessageWaiting() {
  Session* session = Session::current();
  return session != nullptr && session->windows().messageWaiting();
}

bool kvdsPumpMessage() {
  Session* session = Session::current();
  return session == nullptr || session->windows().pumpMessage();
}

void kvdsPostQuit() {
  Session* session = Session::current();
  if (session != nullptr) session->windows().postQuit();
}
