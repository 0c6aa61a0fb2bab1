// A circuit that is built in the memory of a check and taken back.
#pragma once

#include "circuits/check/check_session.h"

#include <filesystem>

namespace circuits {

class TrialBuild final {
public:
  /// The name of the saved configuration with which a trial is built: it brings motor or load, choices and parts.
  static constexpr const wchar_t* savedName = L"check";

  /// Builds in the session's drawing.
  /// @param workbook  with the saved configuration beside it
  TrialBuild(CheckSession& session, const CircuitEntry& entry, const std::filesystem::path& workbook);
  TrialBuild(const TrialBuild&) = delete;
  TrialBuild& operator=(const TrialBuild&) = delete;
  /// Takes back what was drawn.
  ~TrialBuild();

  [[nodiscard]] const CheckSession::Answer& answer() const { return answer_; }
  [[nodiscard]] bool isBuilt() const { return answer_.value && !answer_.value->isNil(); }

private:
  CheckSession& session_;
  int undoCount_;
  CheckSession::Answer answer_;
};

} // namespace circuits
