// The documents of a session: each has a drawing and a LISP of its own. The document manager knows which one's code
// is running and which one is on top, and whose resources serve.
#pragma once

#include "host/host_api_documents.h"
#include "simhost/drawing/drawing_database.h"
#include "simhost/lisp/evaluator.h"

#include <memory>
#include <set>
#include <string>
#include <vector>

namespace simhost {

class Document final : public KvApDocument {
public:
  Document(std::wstring fileName, std::unique_ptr<DrawingDatabase> drawing);
  ~Document() override;

  [[nodiscard]] KvDbDatabase* database() override { return drawing_.get(); }
  [[nodiscard]] std::wstring fileName() const override { return fileName_; }
  [[nodiscard]] bool hasView() const override;
  void focusView() override {}

  [[nodiscard]] DrawingDatabase& drawing() { return *drawing_; }
  [[nodiscard]] lisp::Interpreter& interpreter() { return interpreter_; }

  /// Lets native code call the function of this name, whether it is defined yet or not.
  void expose(const lisp::Symbol& name) { exposed_.insert(&name); }
  /// Exposed functions and commands ("c:...").
  [[nodiscard]] bool isReachable(const lisp::Symbol& name) const;

  /// What the document's LISP is at one moment.
  struct LispState {
    std::vector<lisp::SymbolTable::Meaning> meanings;
    std::set<const lisp::Symbol*> exposed;
  };
  [[nodiscard]] LispState lispState() { return {interpreter_.symbols().meanings(), exposed_}; }
  void restoreLisp(const LispState& state);
  /// Takes the place of the drawing, which ends.
  void replaceDrawing(std::unique_ptr<DrawingDatabase> drawing);

  [[nodiscard]] int lockCount() const { return lockCount_; }
  void countLock(int change) { lockCount_ += change; }

private:
  std::wstring fileName_;
  std::unique_ptr<DrawingDatabase> drawing_;
  lisp::Interpreter interpreter_;
  std::set<const lisp::Symbol*> exposed_;
  int lockCount_ = 0;
};

class DocumentManager final : public KvApDocManager {
public:
  [[nodiscard]] KvApDocument* currentDocument() override { return current_; }
  [[nodiscard]] KvApDocument* activeDocument() override { return active_; }
  [[nodiscard]] bool isLispReady() const override { return current_ != nullptr && isLispAllowed_; }
  bool lockDocument(KvApDocument* document) override;
  void unlockDocument(KvApDocument* document) override;
  void pushResourceModule(KvResourceModule* module) override { resources_.push_back(module); }
  void popResourceModule() override;
  [[nodiscard]] int resourceDepth() const override { return static_cast<int>(resources_.size()); }

  /// The module on top of the stack, null when there is none.
  [[nodiscard]] KvResourceModule* topResources() const {
    return resources_.empty() ? nullptr : resources_.back();
  }
  /// Takes a document in; it becomes current and active, and its drawing the working database.
  Document& add(std::unique_ptr<Document> document);
  void close(Document& document);
  /// Makes a document current and active; null for none.
  void activate(Document* document);
  /// The same for the running code only: no document is current while no code of a document runs.
  void setCurrent(Document* document) { current_ = document; }
  [[nodiscard]] Document* current() const { return current_; }
  [[nodiscard]] const std::vector<std::unique_ptr<Document>>& all() const { return documents_; }
  /// Off while the host could not take a LISP call.
  void allowLisp(bool isAllowed) { isLispAllowed_ = isAllowed; }

private:
  [[nodiscard]] Document* find(const KvApDocument* document) const;

  std::vector<std::unique_ptr<Document>> documents_;
  Document* current_ = nullptr;
  Document* active_ = nullptr;
  std::vector<KvResourceModule*> resources_;
  bool isLispAllowed_ = true;
};

} // namespace simhost
