// Joining actions.
#include "simhost/qt/action_record.h"

#include <nlohmann/json.hpp>

#include <optional>
#include <utility>

namespace simhost {
namespace {

/// Whether two successive actions are one for the user: focusing a control and using it, or the letters of a
/// text.
bool isPartOf(const nlohmann::ordered_json& before, const nlohmann::ordered_json& now) {
  if (!before.is_object() || before.empty()) return false;
  const auto first = before.begin();
  const auto next = now.begin();
  if (first.value() != next.value()) return false;
  if (first.key() == "focus") return next.key() != "key" && next.key() != "expect";
  return first.key() == "type" && next.key() == "type";
}

} // namespace

ActionRecord::ActionRecord(Recorder& recorder, const std::string& dialog, const DialogClock& clock)
    : record_(recorder, dialog), clock_(clock), last_(std::make_unique<Json>()) {}

ActionRecord::~ActionRecord() = default;

void ActionRecord::open(Json shown) {
  record_.open(std::move(shown));
}

void ActionRecord::add(Json action) {
  const std::optional<std::int64_t> wait = clock_.waitToTell();
  if (wait) {
    record_.addAction({{"wait", *wait}});
    action["quick"] = true;
  } else if (isPartOf(*last_, action) && record_.replaceLast(action)) {
    *last_ = std::move(action);
    return;
  }
  *last_ = action;
  record_.addAction(std::move(action));
}

void ActionRecord::refuse(const std::string& focus) {
  *last_ = Json();
  if (focus.empty() || !record_.replaceLast({{"focus", focus}})) record_.dropLast();
}

void ActionRecord::close() {
  record_.addAction({{"close", "program"}});
}

void ActionRecord::addToLast(const char* member, Json value) {
  record_.addToLast(member, std::move(value));
}

void ActionRecord::addChanges(const Json& changes) {
  record_.addChanges(changes);
}

} // namespace simhost
