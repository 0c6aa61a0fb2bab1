// Alerts and texts: each missing table is reported once, and the resource stack is left as it was found.
#include "host/alerts.h"

#include "host/resources.h"
#include "simhost/host/resource_module.h"
#include "simhost/json/json_text.h"
#include "tests/support/lisp_session.h"

#include <doctest/doctest.h>
#include <nlohmann/json.hpp>

#include <memory>
#include <string>
#include <vector>

using namespace brenvolt;
using test::LispSession;
using test::press;

namespace {

constexpr std::string_view words = "text 10039 = New\n"
                                   "dialog ZanBrenvolt.TableNotFound\nmain = {source}: {tablename}\n"
                                   "button 1001 = Continue\nbutton 1002 = Stop\nhideable\n"
                                   "dialog ZanBrenvolt.MotorTableNotFound\nmain = motor {tablename}\n"
                                   "button 1001 = Continue\n"
                                   "dialog ZanBrenvolt.LoadTableNotFound\nmain = load {tablename}\n"
                                   "button 1001 = Continue\n"
                                   "dialog ZanBrenvolt.MotorITableNotFound\nmain = component {tablename}\n"
                                   "button 1001 = Continue\n"
                                   "dialog ZanBrenvolt.DefaultTableNotFound\nmain = default {tablename}\n"
                                   "button 2 = Stop\n"
                                   "dialog ZanBrenvolt.DatabaseError\nmain = no database\nbutton 1 = OK\n";

/// A host whose resource module holds the words above, with the plug-in's resources on the stack.
class AlertHost final {
public:
  explicit AlertHost(std::vector<simhost::AnswerStep> steps, std::string_view text = words)
      : lisp_(std::move(steps)) {
    simhost::readLanguageFile(text, "words", simhost::LanguageRole::base, module_);
    setResourceModule(&module_);
    scope_ = std::make_unique<ResourceScope>();
  }
  AlertHost(const AlertHost&) = delete;
  AlertHost& operator=(const AlertHost&) = delete;
  ~AlertHost() {
    scope_.reset();
    setResourceModule(nullptr);
  }

  AcceptedTables accepted;

  LispSession& session() { return lisp_; }
  /// The text of each dialog shown so far.
  [[nodiscard]] std::vector<std::string> shown() {
    std::vector<std::string> texts;
    const auto recording = simhost::parseJson(lisp_.windows().recording());
    for (const auto& step : recording["steps"]) {
      texts.push_back(step["shown"]["text"].get<std::string>());
    }
    return texts;
  }

private:
  LispSession lisp_;
  KvResourceModule module_;
  std::unique_ptr<ResourceScope> scope_;
};

simhost::AnswerStep hideAndPress(std::string_view taskDialog, int button) {
  simhost::AnswerStep step = press(taskDialog, button);
  simhost::AnswerAction hide;
  hide.verb = "tick";
  hide.subject = "hide";
  hide.isOn = true;
  step.actions.insert(step.actions.begin(), hide);
  return step;
}

using Texts = std::vector<std::string>;
constexpr const char* tableKey = "ZanBrenvolt.TableNotFound";

} // namespace

TEST_CASE("a missing default table always stops, with its own alert alone") {
  AlertHost host(
      {press("ZanBrenvolt.DefaultTableNotFound", 2), press("ZanBrenvolt.DefaultTableNotFound", 2)});
  CHECK_FALSE(alertTables(L"db", {L"A"}, {L"D", L"E"}, AlertKind::table, host.accepted));
  host.accepted = {{L"D", 1001}, {L"E", 1001}};
  CHECK_FALSE(alertTables(L"db", {}, {L"D", L"E"}, AlertKind::table, host.accepted));
  CHECK_EQ(host.shown(), Texts{"default D, E", "default "});
}

TEST_CASE("an alert hidden for good answers by itself and accepts nothing per table") {
  AlertHost host({hideAndPress(tableKey, 1001)});
  CHECK(alertTables(L"db", {L"A"}, {}, AlertKind::table, host.accepted));
  CHECK_EQ(host.accepted.size(), 1);
  CHECK(alertTables(L"db", {L"B"}, {}, AlertKind::table, host.accepted));
  CHECK_EQ(host.accepted.size(), 1);
  CHECK_EQ(host.shown(), Texts{"db: A"});
}

TEST_CASE("an alert without its text stops the reader; the database alert is then skipped") {
  AlertHost host({}, "text 1 = nothing\n");
  CHECK_FALSE(alertTables(L"db", {L"A"}, {}, AlertKind::table, host.accepted));
  CHECK_FALSE(alertTables(L"db", {}, {L"A"}, AlertKind::table, host.accepted));
  CHECK_FALSE(showTaskDialog(L"ZanBrenvolt.ExecutionError", {}, nullptr));
  alertDatabaseError(nullptr);
  CHECK(host.shown().empty());
  CHECK(host.session().windows().failure().empty());
}
