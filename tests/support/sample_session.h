// A session with the sample's texts and the electrical code NEC, at whose end every question must be one that the test
// expects.
#pragma once

#include "host/resources.h"
#include "simhost/lisp/errors.h"
#include "tests/support/lisp_session.h"
#include "text/encoding.h"

#include <doctest/doctest.h>

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace brenvolt::test {

class SampleSession {
public:
  explicit SampleSession(std::vector<simhost::AnswerStep> steps = {}) : lisp_(std::move(steps)) {
    setResourceModule(kvdsLoadResourceModule(resourceModuleName));
    REQUIRE(resourceModule() != nullptr);
    lisp_.eval("(setq GBL_qn_electcodestd \"NEC\")");
  }
  SampleSession(const SampleSession&) = delete;
  SampleSession& operator=(const SampleSession&) = delete;
  ~SampleSession() {
    CHECK_EQ(toUtf8(lisp_.windows().failure()), "");
    CHECK_EQ(lisp_.windows().unusedSteps(), 0);
    CHECK_EQ(lisp_.host().documents().current()->lockCount(), 0);
    setResourceModule(nullptr);
  }

  /// Like LispSession's; "cancelled: " and the reason when a question had no matching answer.
  std::string eval(std::string_view forms) {
    try {
      return lisp_.eval(forms);
    } catch (const simhost::lisp::Cancelled&) {
      return "cancelled: " + toUtf8(lisp_.windows().failure());
    }
  }
  [[nodiscard]] LispSession& lisp() { return lisp_; }

private:
  LispSession lisp_;
};

} // namespace brenvolt::test
