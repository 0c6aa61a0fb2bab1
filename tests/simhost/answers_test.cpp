// Answer files: what they may hold, how they meet the questions, and that a recording is one.
#include "host/host_api_lisp.h"
#include "host/host_api_ui.h"
#include "host_fixture.h"
#include "simhost/ui/answers.h"
#include "tests/support/answer_steps.h"

#include <doctest/doctest.h>

#include <string>

using brenvolt::test::answerFile;
using simhost::HostFixture;
using simhost::parseAnswers;

namespace {

std::string faultOfAnswers(const std::string& bytes) {
  try {
    static_cast<void>(parseAnswers(bytes, "a.json"));
  } catch (const simhost::AnswerError& error) {
    return error.what();
  }
  return {};
}

/// A line that can be picked, and its handle as text.
std::string addLine(HostFixture& host) {
  simhost::DrawingDatabase& drawing = host.session.documents().current()->drawing();
  simhost::Entity entity{simhost::Line{{0, 0, 0}, {1, 0, 0}}, L"0", {}, {}};
  const std::wstring handle = simhost::formatHandle(drawing.addEntity(drawing.modelSpace(), entity));
  return {handle.begin(), handle.end()};
}

int pick(KvEntityName& entity, KvPoint3d& point) {
  return kvedEntSel(L"Select: ", entity, point);
}

} // namespace

TEST_CASE("a damaged answer file is told with file and step") {
  CHECK(faultOfAnswers("{").starts_with("a.json: invalid JSON"));
  CHECK(faultOfAnswers("[]") == "a.json: must be an object");
  CHECK(faultOfAnswers(R"({"version": 1, "steps": []})").starts_with("a.json: \"format\""));
  CHECK(faultOfAnswers(R"({"format": "brenvolt-answers", "version": 2, "steps": []})")
            .starts_with("a.json: \"version\""));
  CHECK(faultOfAnswers(answerFile(R"({"dialog": "a"}, {"do": []})")).starts_with("a.json: step 2: "));
  for (const char* step :
       {R"({"dialog": "a", "answer": 1})",
        R"({"dialog": "a", "do": [{}]})",
        R"({"dialog": "a", "do": [{"press": true}]})",
        R"({"dialog": "a", "do": [{"tick": "b"}]})",
        R"({"dialog": "a", "do": [{"tick": "b", "to": 1}]})",
        R"({"dialog": "a", "do": [{"set": "b", "to": null}]})",
        R"({"dialog": "a", "do": [{"pick": 3}]})",
        R"({"dialog": "a", "do": [{"pick": "1", "point": [1]}]})",
        R"({"dialog": "a", "do": [{"press": 1, "to": 2}]})",
        R"({"dialog": "a", "do": [{"press": 1, "tick": "b"}]})",
        R"({"dialog": "a", "do": [{"choose": "b"}]})",
        R"({"dialog": "a", "do": [{"choose": "b", "index": -1}]})",
        R"({"dialog": "a", "do": [{"choose": "b", "to": "c", "index": 1}]})",
        R"({"dialog": "a", "do": [{"select": "b"}]})",
        R"({"dialog": "a", "do": [{"select": "b", "row": {}}]})",
        R"({"dialog": "a", "do": [{"select": "b", "row": 1, "path": [1]}]})",
        R"({"dialog": "a", "do": [{"edit": "b", "to": "c"}]})",
        R"({"dialog": "a", "do": [{"key": "X"}]})",
        R"({"dialog": "a", "do": [{"wait": -1}]})",
        R"({"dialog": "a", "do": [{"wait": "long"}]})",
        R"({"dialog": "a", "do": [{"close": "door"}]})",
        R"({"dialog": "a", "do": [{"expect": "b"}]})",
        R"({"dialog": "a", "do": [{"expect": "b", "enabled": 1}]})",
        R"({"dialog": "a", "do": [{"press": "b", "quick": 1}]})"})
    CHECK_MESSAGE(faultOfAnswers(answerFile(step)).starts_with("a.json: step 1: "), step);
}

TEST_CASE("picks take a handle, nothing or a cancel, and the recording answers the same again") {
  std::string recording;
  const auto run = [&recording](const std::string& file) {
    HostFixture host(parseAnswers(file, "a.json"));
    const std::string handle = addLine(host);
    KvEntityName entity{};
    KvPoint3d point;
    CHECK(pick(entity, point) == kvstatus::normal);
    CHECK(entity.value != 0);
    CHECK(point == KvPoint3d{1.5, 2.0, 0.0});
    CHECK(pick(entity, point) == kvstatus::none);
    CHECK(pick(entity, point) == kvstatus::none); // a handle of nothing
    kvedHelp(L"topic");
    CHECK(pick(entity, point) == kvstatus::cancel);
    CHECK(host.windows.failure().empty());
    CHECK(host.windows.unusedSteps() == 0);
    CHECK(host.printed == L"help: topic\n");
    recording = host.windows.recording();
  };
  std::string handle;
  {
    HostFixture host;
    handle = addLine(host);
  }
  run(answerFile(R"({"dialog": "pick", "do": [{"pick": ")" + handle + R"(", "point": [1.5, 2]}]},
         {"dialog": "pick", "do": [{"pick": null}]},
         {"dialog": "pick", "do": [{"pick": "FFFF"}]},
         {"dialog": "pick", "do": [{"press": "cancel"}]})"));
  const std::string first = recording;
  CHECK(first.find("\"topic\": \"topic\"") != std::string::npos);
  run(first);
  CHECK(recording == first);
}

TEST_CASE("an empty answer is refused where the prompt forbids it") {
  HostFixture host(parseAnswers(answerFile(R"({"dialog": "pick", "do": [{"pick": null}]})"), "a.json"));
  KvEntityName entity{};
  KvPoint3d point;
  kvedInitGet(1, nullptr);
  CHECK(pick(entity, point) == kvstatus::cancel);
  CHECK(
      host.windows.failure().find(L"step 1: the prompt does not allow an empty pick") != std::wstring::npos);
}

TEST_CASE("a step for another dialog names both, and everything asked later is cancelled") {
  HostFixture host(parseAnswers(
      answerFile(
          R"({"dialog": "Some.Key", "do": [{"press": "ok"}]}, {"dialog": "pick", "do": [{"pick": null}]})"),
      "a.json"));
  KvEntityName entity{};
  KvPoint3d point;
  CHECK(pick(entity, point) == kvstatus::cancel);
  const std::wstring failure = host.windows.failure();
  CHECK(failure == L"answers: step 1: answers \"Some.Key\", but \"pick\" asks");
  CHECK(pick(entity, point) == kvstatus::cancel);
  CHECK(host.windows.failure() == failure);
}
