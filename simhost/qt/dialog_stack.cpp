// Opening, lending and closing.
#include "simhost/qt/dialog_stack.h"

#include "simhost/qt/window_pilot.h"
#include "simhost/qt/window_places.h"

#include <algorithm>
#include <utility>

namespace simhost {

DialogStack::QuestionScope::QuestionScope(DialogStack& stack) : stack_(stack) {
  ++stack_.openQuestions_;
  stack_.cursor_.suspend();
}

DialogStack::QuestionScope::~QuestionScope() {
  --stack_.openQuestions_;
  stack_.cursor_.resume();
}

bool DialogStack::isDialogSeen() const {
  return topWidget() != nullptr;
}

QtDialog* DialogStack::beside() const {
  const bool isBeside = top() != nullptr && top()->frame().isVisible() && !top()->frame().isModal();
  return isBeside ? top() : nullptr;
}

QString DialogStack::topForm() const {
  return top() == nullptr ? QString() : top()->frame().objectName();
}

QWidget* DialogStack::topWidget() const {
  const auto seen = std::find_if(
      dialogs_.rbegin(), dialogs_.rend(), [](const QtDialog* dialog) { return dialog->frame().isVisible(); });
  return seen == dialogs_.rend() ? nullptr : &(*seen)->frame();
}

std::vector<QtDialog*> DialogStack::putAside() {
  std::vector<QtDialog*> aside;
  for (QtDialog* dialog : dialogs_)
    if (dialog->frame().isVisible()) aside.push_back(dialog);
  for (auto dialog = aside.rbegin(); dialog != aside.rend(); ++dialog)
    (*dialog)->frame().hide();
  return aside;
}

void DialogStack::showAgain(const std::vector<QtDialog*>& dialogs) {
  for (QtDialog* dialog : dialogs)
    if (std::find(dialogs_.begin(), dialogs_.end(), dialog) != dialogs_.end()) dialog->showAgain();
}

void DialogStack::dialogOpens(QtDialog& dialog) {
  dialogs_.push_back(&dialog);
  cursor_.suspend();
  if (settings_ != nullptr) restorePlace(*settings_, dialog);
}

void DialogStack::dialogCloses(QtDialog& dialog) {
  std::erase(dialogs_, &dialog);
  cursor_.resume();
  aside_.erase(&dialog);
  if (settings_ != nullptr) keepPlace(*settings_, dialog);
}

void DialogStack::dialogLends(QtDialog& dialog) {
  aside_[&dialog] = putAside();
}

void DialogStack::dialogTakesBack(QtDialog& dialog) {
  showAgain(std::exchange(aside_[&dialog], {}));
}

bool DialogStack::isOnTop(const QtDialog& dialog) const {
  return openQuestions_ == 0 && top() == &dialog;
}

void DialogStack::pilot(QtDialog& dialog) {
  pilot_->drive(dialog);
}

} // namespace simhost
