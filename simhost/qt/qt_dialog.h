// A dialog on the screen. The models of the controls and the rules for gestures are those of every window system; here
// they are shown, and a user makes the gestures. The actions are recorded as an answer file.
#pragma once

#include "simhost/qt/action_record.h"
#include "simhost/qt/dialog_clock.h"
#include "simhost/qt/form_layout.h"
#include "simhost/qt/held_exception.h"
#include "simhost/qt/view_set.h"
#include "simhost/qt/window_words.h"
#include "simhost/ui/dialog_model.h"
#include "simhost/ui/gestures.h"

#include <QPointer>
#include <nlohmann/json_fwd.hpp>

#include <functional>
#include <memory>
#include <utility>

class QEventLoop;

namespace simhost {

class CircuitFacts;
class DialogFrame;

/// What a dialog needs of the windows around it.
class DialogSurroundings {
public:
  virtual ~DialogSurroundings();
  virtual void dialogOpens(QtDialog& dialog) = 0;
  virtual void dialogCloses(QtDialog& dialog) = 0;
  /// The host gets the editor from the dialog, which is hidden: all other dialogs are hidden too, or they would cover
  /// the drawing. They are shown again when the dialog takes the editor back.
  virtual void dialogLends(QtDialog& dialog) = 0;
  virtual void dialogTakesBack(QtDialog& dialog) = 0;
  /// No other window is open above it.
  [[nodiscard]] virtual bool isOnTop(const QtDialog& dialog) const = 0;
  /// Whether a pilot acts in it instead of a user.
  [[nodiscard]] virtual bool isPiloted() const = 0;
  /// What is done in it is to be recorded.
  [[nodiscard]] virtual bool keepsRecord() const = 0;
  [[nodiscard]] virtual const WindowWords& words() const = 0;
  /// What is known of circuits that a dialog offers; null for nothing.
  [[nodiscard]] virtual CircuitFacts* circuitFacts() const = 0;
  /// OK inserts first what waits.
  [[nodiscard]] virtual bool insertsBeforeOk() const = 0;
  /// The dialog waits for its pilot.
  virtual void pilot(QtDialog& dialog) = 0;
};

class QtDialog final : public DialogModel {
public:
  using Json = nlohmann::ordered_json;

  QtDialog(
      const Form& form, const FormLayout& layout, CKvUiDialog& dialog, DialogSurroundings& around,
      Recorder& recorder, QWidget* parent);
  ~QtDialog() override;

  void setTitle(std::wstring_view title) override;
  void startTimer(int timer, int milliseconds) override { clock_.start(timer, milliseconds); }
  void killTimer(int timer) override { clock_.kill(timer); }
  void setSplit(const KvUiSplit& split) override;
  [[nodiscard]] KvUiSplit split() const override;
  bool beginEditorCommand() override;
  void completeEditorCommand() override;
  void run() override;

  void add(std::unique_ptr<ControlModel> control) override;
  void forget(ControlModel& control) override;
  void touched(ControlModel& control) override;

  [[nodiscard]] QWidget& frame() const;
  [[nodiscard]] Gestures& gestures() { return gestures_; }
  [[nodiscard]] DialogClock& clock() { return clock_; }
  [[nodiscard]] const WindowWords& words() const { return around_.words(); }
  [[nodiscard]] CircuitFacts* circuitFacts() const { return around_.circuitFacts(); }
  [[nodiscard]] const ViewSet& views() const { return views_; }

  /// One action of the user. `action` is its form in an answer file; the gesture may add to it. Does nothing while the
  /// flow works on another one, or when the dialog cannot be reached.
  using Gesture = std::function<Refusal(Gestures& gestures, Json& action)>;
  void act(Json action, const Gesture& gesture);
  /// Whether the flow took what was typed into a cell last.
  [[nodiscard]] CellAnswer lastCellAnswer() const { return lastCellAnswer_; }
  void setLastCellAnswer(CellAnswer answer) { lastCellAnswer_ = answer; }
  /// Why the last gesture was refused, returned once; nothing when it was done.
  [[nodiscard]] Refusal takeRefusal() { return std::exchange(lastRefusal_, std::nullopt); }
  /// Before OK is pressed: inserts what waits, where that is asked for.
  void prepareOk();
  /// The user focuses a control.
  void focusBy(ControlView& view);
  /// The user leaves all controls.
  void leaveBy();

  /// For the recording: the user quits the program while the dialog is open, which then ends without a question.
  void noteLeft();

  /// Shows all that has changed.
  void refresh();
  /// Shows the window of a dialog that runs on and was hidden.
  void showAgain();
  /// Ends the wait when the dialog is ended.
  void settle();

private:
  /// Runs code of the flow. If it throws, the dialog ends, `run` rethrows, and the result is false.
  [[nodiscard]] bool work(const std::function<void()>& body);
  void passTime();
  void showFocus();
  /// Asks for the keyboard until a window of the program has it, so many times.
  void takeKeyboard(int tries);

  DialogSurroundings& around_;
  Gestures gestures_;
  DialogClock clock_;
  ActionRecord record_;
  FormLayout layout_;
  std::unique_ptr<DialogFrame> frame_;
  ViewSet views_;
  HeldException thrown_;
  Refusal lastRefusal_;
  CellAnswer lastCellAnswer_ = CellAnswer::taken;
  QEventLoop* loop_ = nullptr; ///< while it runs
  bool isActing_ = false;
  bool isShowing_ = false; ///< changes of widgets now are not actions of the user
  bool isRefreshPosted_ = false;
};

} // namespace simhost
