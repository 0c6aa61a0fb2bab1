// Taking steps in their order, with messages that name file and step.
#include "simhost/ui/step_queue.h"

#include "text/encoding.h"

#include <utility>

namespace simhost {

using brenvolt::fromUtf8;

StepQueue::StepQueue(std::vector<AnswerStep> steps, std::string source)
    : steps_(std::move(steps)), source_(std::move(source)) {}

const AnswerStep* StepQueue::take(std::string_view dialog, std::string_view says) {
  if (!failure_.empty()) return nullptr;
  const std::string name(dialog);
  if (next_ == steps_.size()) {
    fail(
        "\"" + name + "\" has no answer: " + source_ + (steps_.empty() ? "" : " has no more steps") +
        (says.empty() ? std::string() : "; it says: " + std::string(says)));
    return nullptr;
  }
  const AnswerStep& step = steps_[next_];
  if (step.dialog != dialog) {
    failAt(step, "answers \"" + step.dialog + "\", but \"" + name + "\" asks");
    return nullptr;
  }
  ++next_;
  return &step;
}

const AnswerStep* StepQueue::takeNext(const std::string& dialog, const AnswerStep* last) {
  if (last == nullptr || hasFailed()) return take(dialog);
  if (next_ < steps_.size() && steps_[next_].dialog == dialog) return take(dialog);
  std::string message = "leaves \"" + dialog + "\" open";
  if (next_ < steps_.size())
    message +=
        ", and step " + std::to_string(steps_[next_].number) + " answers \"" + steps_[next_].dialog + "\"";
  failAt(*last, message);
  return nullptr;
}

void StepQueue::fail(const std::string& message) {
  if (failure_.empty()) failure_ = fromUtf8(message);
}

void StepQueue::failAt(const AnswerStep& step, const std::string& message) {
  fail(source_ + ": step " + std::to_string(step.number) + ": " + message);
}

} // namespace simhost
