// A session in which the pickers run: tables of the test's own or those of the sample site, the plug-in's functions,
// its texts, and the user's actions as steps of an answer file.
#pragma once

#include "tests/support/engineering_tables.h"
#include "tests/support/sample_session.h"

#include <filesystem>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace brenvolt::test {

class PickerTables final : public EngineeringTables {
public:
  using EngineeringTables::EngineeringTables;

  /// Runs statements beside the plug-in.
  void run(const std::string& statements) const;
  /// The rows that a query returns: cells separated by "|", rows by a new line.
  [[nodiscard]] std::string rows(const std::string& query) const;
};

/// A step of an answer file: a dialog with actions.
[[nodiscard]] std::string stepOf(const std::string& dialog, const std::string& actions);

/// The steps of an answer file, in their brackets.
[[nodiscard]] std::string stepsOfFile(const std::filesystem::path& file);

/// A motor and a load table of a few rows, and options.
[[nodiscard]] TableTexts fewMotorsAndLoads();

class PickerSession final : public SampleSession {
public:
  /// `steps` is the list of an answer file's steps.
  PickerSession(const std::filesystem::path& database, std::string_view steps);

  /// A value kept for the user; "-" when there is none.
  [[nodiscard]] std::string kept(std::wstring_view dialog, std::wstring_view name);
  /// The recording, with the database's path taken out.
  [[nodiscard]] std::string recording();

private:
  std::string database_;
};

} // namespace brenvolt::test
