// The dialogs that are open, one above the other, and what all of them use: words, facts about circuits, their places on
// the screen, and who acts in them.
#pragma once

#include "simhost/qt/qt_dialog.h"
#include "simhost/qt/wait_cursor.h"

#include <QPointer>
#include <QWidget>

#include <map>
#include <vector>

namespace simhost {

class UserSettings;
class WindowPilot;

class DialogStack final : public DialogSurroundings {
public:
  /// In a scope, a question or a message is open above the dialogs, with the arrow for a cursor.
  class QuestionScope final {
  public:
    explicit QuestionScope(DialogStack& stack);
    QuestionScope(const QuestionScope&) = delete;
    QuestionScope& operator=(const QuestionScope&) = delete;
    ~QuestionScope();

  private:
    DialogStack& stack_;
  };

  DialogStack() = default;
  DialogStack(const DialogStack&) = delete;
  DialogStack& operator=(const DialogStack&) = delete;

  /// A dialog or a question is open, or hidden while the host has the editor.
  [[nodiscard]] bool isBusy() const { return openQuestions_ > 0 || !dialogs_.empty(); }
  /// A dialog is on the screen and waits for its user.
  [[nodiscard]] bool isDialogSeen() const;
  /// The topmost dialog, also while it is aside; null for none.
  [[nodiscard]] QtDialog* top() const { return dialogs_.empty() ? nullptr : dialogs_.back(); }
  /// The topmost dialog, if it is beside the drawing and waits for its user; null for none.
  [[nodiscard]] QtDialog* beside() const;
  /// The name of the topmost dialog's form; empty for none.
  [[nodiscard]] QString topForm() const;
  /// The topmost dialog that is seen, as the parent of a new window; null for none.
  [[nodiscard]] QWidget* topWidget() const;
  [[nodiscard]] WindowPilot* pilot() const { return pilot_; }
  [[nodiscard]] const WindowWords& words() const override { return words_; }
  [[nodiscard]] WaitCursor& cursor() { return cursor_; }

  /// Where place and size of dialogs are kept; null forgets them. Must outlive its use here.
  void setSettings(UserSettings* settings) { settings_ = settings; }
  /// Null: a user answers. Must outlive its use here.
  void setPilot(WindowPilot* pilot) { pilot_ = pilot; }
  /// Whether a dialog driven by a pilot is recorded like a user's, and not by the pilot.
  void setRecordsPerson(bool records) { recordsPerson_ = records; }
  /// Whether OK of a dialog that inserts units inserts first what waits: where a circuit is there already, leaving a part
  /// of it out would be a loss.
  void setInsertsBeforeOk(bool inserts) { insertsBeforeOk_ = inserts; }
  /// Null: dialogs show what their flows put in. Must outlive its use here.
  void setCircuitFacts(CircuitFacts* facts) { circuitFacts_ = facts; }
  [[nodiscard]] CircuitFacts* circuitFacts() const override { return circuitFacts_; }
  void setWords(WindowWords words) { words_ = std::move(words); }

  /// Hides all dialogs that are seen, and shows them again: the lowest one first, so that the topmost one is modal.
  [[nodiscard]] std::vector<QtDialog*> putAside();
  void showAgain(const std::vector<QtDialog*>& dialogs);

private:
  void dialogOpens(QtDialog& dialog) override;
  void dialogCloses(QtDialog& dialog) override;
  void dialogLends(QtDialog& dialog) override;
  void dialogTakesBack(QtDialog& dialog) override;
  [[nodiscard]] bool isOnTop(const QtDialog& dialog) const override;
  [[nodiscard]] bool isPiloted() const override { return pilot_ != nullptr; }
  [[nodiscard]] bool keepsRecord() const override { return pilot_ == nullptr || recordsPerson_; }
  [[nodiscard]] bool insertsBeforeOk() const override { return insertsBeforeOk_; }
  void pilot(QtDialog& dialog) override;

  std::vector<QtDialog*> dialogs_; ///< the topmost last; their runs own them
  std::map<const QtDialog*, std::vector<QtDialog*>>
      aside_; ///< whom a dialog that lends the editor has hidden
  int openQuestions_ = 0;
  WaitCursor cursor_;
  WindowPilot* pilot_ = nullptr;
  bool recordsPerson_ = false;
  bool insertsBeforeOk_ = false;
  CircuitFacts* circuitFacts_ = nullptr;
  UserSettings* settings_ = nullptr;
  WindowWords words_;
};

} // namespace simhost
