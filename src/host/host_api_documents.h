// The host's face, session side: modules, documents, resources, user settings, wait cursor, message pump.
#pragma once

#include "host/host_api_database.h"
#include "host/host_api_types.h"

#include <string>

/// The messages that the host passes to a module's `kvrxEntryPoint(message, applicationId)`.
namespace kvmessage {
inline constexpr int moduleLoad = 1;
inline constexpr int moduleUnload = 2;
inline constexpr int drawingLoad = 3;
inline constexpr int drawingUnload = 4;
} // namespace kvmessage

/// The version that `kvrxGetApiVersion` of a module returns; the host refuses a module with another one.
inline constexpr int kvrxApiVersion = 1;

/// @name Module loading
/// A module exports `extern "C" int kvrxEntryPoint(int message, void* applicationId)` and
/// `extern "C" int kvrxGetApiVersion()`.
/// @{

class KV_HOST_API KvRxObject {
public:
  virtual ~KvRxObject();
};

/// The service "DynamicLinker".
class KV_HOST_API KvRxDynamicLinker : public KvRxObject {
public:
  /// Allows the host to unload the application.
  virtual void unlockApplication(void* applicationId) = 0;
};

class KV_HOST_API KvRxDictionary : public KvRxObject {
public:
  /// The service of this name, null when unknown. Not owned.
  [[nodiscard]] virtual KvRxObject* at(const wchar_t* name) const = 0;
};

/// The host's services by name.
KV_HOST_API KvRxDictionary* kvrxSysRegistry();
/// Tells that the application works with many drawings open.
KV_HOST_API bool kvrxRegisterAppMDIAware(void* applicationId);

/// The application object of a module, created once as a global. The host calls `InitInstance` after loading and
/// `ExitInstance` before unloading.
class KV_HOST_API CWinApp {
public:
  CWinApp();
  CWinApp(const CWinApp&) = delete;
  CWinApp& operator=(const CWinApp&) = delete;
  virtual ~CWinApp();
  virtual bool InitInstance();
  virtual int ExitInstance();
};
/// @}

/// @name Resources
/// A resource module holds texts by number and task dialogs by key, one file per language.
/// @{

class KvResourceModule;

/// Loads a resource module by its name ("ZanBrenvoltRes.dll") in the user's language; what that language lacks
/// comes from English. Null when it is not found.
KV_HOST_API KvResourceModule* kvdsLoadResourceModule(const wchar_t* name);
KV_HOST_API void kvdsFreeResourceModule(KvResourceModule* module);
/// The text of a number from the module on top of the resource stack. False when there is none; `text` is then
/// unchanged.
KV_HOST_API bool kvdsLoadString(unsigned id, std::wstring& text);
/// Shows a plain message box; without a screen the text goes to the command line.
KV_HOST_API void kvdsMessageBox(KvWindow* parent, const wchar_t* text);
/// @}

/// @name Documents
/// @{

class KV_HOST_API KvApDocument {
public:
  virtual ~KvApDocument();
  [[nodiscard]] virtual KvDbDatabase* database() = 0;
  [[nodiscard]] virtual std::wstring fileName() const = 0;
  /// Whether the document shows itself in a view that can take the focus.
  [[nodiscard]] virtual bool hasView() const = 0;
  virtual void focusView() = 0;
};

class KV_HOST_API KvApDocManager {
public:
  virtual ~KvApDocManager();
  /// The document whose code is running; may be absent.
  [[nodiscard]] virtual KvApDocument* currentDocument() = 0;
  /// The document on top of the screen; may be absent.
  [[nodiscard]] virtual KvApDocument* activeDocument() = 0;
  /// Whether the current document can run LISP now.
  [[nodiscard]] virtual bool isLispReady() const = 0;
  /// Locks a document for changes out of a dialog; false when refused.
  virtual bool lockDocument(KvApDocument* document) = 0;
  virtual void unlockDocument(KvApDocument* document) = 0;
  /// `kvdsLoadString`, forms and task dialogs use the module on top of the stack. Null is allowed.
  virtual void pushResourceModule(KvResourceModule* module) = 0;
  virtual void popResourceModule() = 0;
  /// The depth of the stack, for a host's own checks.
  [[nodiscard]] virtual int resourceDepth() const = 0;
};

/// Null in a host without documents.
KV_HOST_API KvApDocManager* kvDocManagerPtr();

/// Holds the lock of the current document for a scope.
class KvAxDocLock final {
public:
  KvAxDocLock()
      : manager_(kvDocManagerPtr()), document_(manager_ == nullptr ? nullptr : manager_->currentDocument()) {
    locked_ = document_ != nullptr && manager_->lockDocument(document_);
  }
  ~KvAxDocLock() {
    if (locked_) manager_->unlockDocument(document_);
  }
  KvAxDocLock(const KvAxDocLock&) = delete;
  KvAxDocLock& operator=(const KvAxDocLock&) = delete;
  [[nodiscard]] bool isLocked() const { return locked_; }

private:
  KvApDocManager* manager_;
  KvApDocument* document_;
  bool locked_ = false;
};
/// @}

/// @name Windows, waiting, settings
/// @{

/// The host's main window; null without a screen.
KV_HOST_API KvWindow* kdsw_korvoMainWnd();
/// The frame that command prompts belong to; null when the host cannot prompt.
KV_HOST_API KvWindow* kvedGetKorvoFrame();
/// The window that has the focus; null without a screen.
KV_HOST_API KvWindow* kvdsForegroundWindow();

KV_HOST_API void kvdsBeginWaitCursor();
KV_HOST_API void kvdsEndWaitCursor();

/// Shows the wait cursor for a scope; scopes may nest.
class KvWaitCursor final {
public:
  KvWaitCursor() { kvdsBeginWaitCursor(); }
  ~KvWaitCursor() { kvdsEndWaitCursor(); }
  KvWaitCursor(const KvWaitCursor&) = delete;
  KvWaitCursor& operator=(const KvWaitCursor&) = delete;
};

/// Whether a window message waits for this thread.
KV_HOST_API bool kvdsMessageWaiting();
/// Lets the thread handle one message; false when it was the request to quit.
KV_HOST_API bool kvdsPumpMessage();
KV_HOST_API void kvdsPostQuit();

/// Values that the host keeps for the current user, texts below a key such as "ZanBrenvolt::ZanDlgCircuit".
/// False when the key or the value does not exist (`value` unchanged), or when it cannot be written.
KV_HOST_API bool kvdsUserKeyExists(const wchar_t* key);
KV_HOST_API bool kvdsReadUserValue(const wchar_t* key, const wchar_t* name, std::wstring& value);
KV_HOST_API bool kvdsWriteUserValue(const wchar_t* key, const wchar_t* name, const wchar_t* value);
/// @}
