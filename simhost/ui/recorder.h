// The recording of a run: steps in the order in which they occurred, in the format of answer files.
#pragma once

#include "simhost/ui/session_file.h"
#include "simhost/ui/window_system.h"

#include <nlohmann/json_fwd.hpp>

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

namespace simhost {

/// The recorded form of a question.
[[nodiscard]] nlohmann::ordered_json shownOf(const TaskQuestion& question);
[[nodiscard]] nlohmann::ordered_json shownOf(const FileQuestion& question);

class Recorder final {
public:
  using Json = nlohmann::ordered_json;

  Recorder();
  ~Recorder();

  /// What is run: with it the recording is a session. Its paths must lead from the folder of the recording.
  void setRun(const SessionRun& run);
  /// Records what is shown, and returns the number of the step.
  std::size_t begin(std::string_view dialog, Json shown);
  /// Records what is only shown and needs no answer.
  void note(std::string_view dialog, Json shown);
  /// More of a step after another one came between.
  std::size_t resume(std::string_view dialog);

  [[nodiscard]] std::size_t count() const;
  [[nodiscard]] Json& step(std::size_t number);
  [[nodiscard]] std::string text() const;

private:
  // As pointers: files that include this need not include the library.
  std::unique_ptr<Json> run_;
  std::unique_ptr<Json> steps_;
};

/// The steps of one dialog. Questions of other dialogs in between divide them, so that a recording is in the order of
/// what happened.
class DialogRecord final {
public:
  using Json = Recorder::Json;

  DialogRecord(Recorder& recorder, std::string dialog) : recorder_(recorder), dialog_(std::move(dialog)) {}

  /// Called when the dialog opens.
  void open(Json shown);
  void addAction(Json action);
  /// Puts another action in the place of the last one, which keeps what followed from it. False when a step of another
  /// dialog has come since.
  bool replaceLast(Json action);
  /// Takes back an action that could not be done; what followed from it belongs to the one before.
  void dropLast();
  /// Beside the last action, or what was shown at first when there was none yet.
  void addToLast(const char* member, Json value);
  /// Changes upon the last action, or of the opening when there was none.
  void addChanges(const Json& changes);

private:
  Recorder& recorder_;
  std::string dialog_;
  std::size_t step_ = 0;
  std::size_t actionStep_ = 0;
  bool hasAction_ = false;
  std::size_t action_ = 0;
};

} // namespace simhost
