// Documents, their manager, and the plain functions on them.
#include "simhost/host/documents.h"

#include "simhost/host/session.h"
#include "simhost/ui/window_system.h"
#include "text/assertion.h"
#include "text/compare.h"

#include <algorithm>
#include <utility>

KvApDocument::~KvApDocument() = default;
KvApDocManager::~KvApDocManager() = default;

namespace simhost {

Document::Document(std::wstring fileName, std::unique_ptr<DrawingDatabase> drawing)
    : fileName_(std::move(fileName)), drawing_(std::move(drawing)) {
  BRENVOLT_ASSERT(drawing_ != nullptr, "a document is made without a drawing");
}

Document::~Document() = default;

void Document::restoreLisp(const LispState& state) {
  interpreter_.symbols().restore(state.meanings);
  exposed_ = state.exposed;
}

void Document::replaceDrawing(std::unique_ptr<DrawingDatabase> drawing) {
  BRENVOLT_ASSERT(drawing != nullptr, "a document is left without a drawing");
  drawing_ = std::move(drawing);
}

bool Document::hasView() const {
  // A user who can be asked to pick sees the drawing, even through a script.
  return windowSystem() != nullptr && windowSystem()->promptFrame() != nullptr;
}

bool Document::isReachable(const lisp::Symbol& name) const {
  return name.name.starts_with(L"C:") || exposed_.contains(&name);
}

Document* DocumentManager::find(const KvApDocument* document) const {
  for (const std::unique_ptr<Document>& known : documents_)
    if (known.get() == document) return known.get();
  return nullptr;
}

bool DocumentManager::lockDocument(KvApDocument* document) {
  Document* known = find(document);
  if (known == nullptr) return false;
  known->countLock(1);
  return true;
}

void DocumentManager::unlockDocument(KvApDocument* document) {
  Document* known = find(document);
  if (known != nullptr && known->lockCount() > 0) known->countLock(-1);
}

void DocumentManager::popResourceModule() {
  // A pop too many is the module's fault, but no reason for the host to fall over.
  if (!resources_.empty()) resources_.pop_back();
}

Document& DocumentManager::add(std::unique_ptr<Document> document) {
  documents_.push_back(std::move(document));
  activate(documents_.back().get());
  return *documents_.back();
}

void DocumentManager::close(Document& document) {
  if (current_ == &document) current_ = nullptr;
  if (active_ == &document) active_ = nullptr;
  std::erase_if(documents_, [&document](const auto& known) { return known.get() == &document; });
  if (current_ == nullptr && !documents_.empty()) activate(documents_.back().get());
}

void DocumentManager::activate(Document* document) {
  current_ = document;
  active_ = document;
  kvdbSetWorkingDatabase(document == nullptr ? nullptr : document->database());
}

} // namespace simhost

KvApDocManager* kvDocManagerPtr() {
  simhost::Session* session = simhost::Session::current();
  return session == nullptr ? nullptr : &session->documents();
}
