// A parent product in LISP, a workbook and a history file for sessions of the configuration dialog. Each session has a
// host and a drawing of its own; workbook and history stay.
//
// Forms of the worksheet draw: `put` a text, `nest` a text and a nested template with a marker for each CODE, `bare` a
// nested template without markers. `fail` is an error.
#pragma once

#include "build/driver.h"
#include "tests/support/lisp_session.h"
#include "tests/support/temporary_folder.h"

#include <functional>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

namespace brenvolt::test {

/// @name The user's actions, as steps of an answer file
/// @{
/// The configuration dialog; actions as below.
[[nodiscard]] std::string configStep(std::initializer_list<std::string> actions);
/// A task dialog of the plug-in, by the end of its key.
[[nodiscard]] std::string answerStep(std::string_view key, int button);
[[nodiscard]] std::string pressing(std::string_view control);
[[nodiscard]] std::string choosing(std::string_view list, std::string_view entry);
[[nodiscard]] std::string selecting(std::initializer_list<std::string_view> path);
[[nodiscard]] std::string naming(std::string_view name);
/// The outline of the tree in the format of the answers' documentation.
[[nodiscard]] std::string expectingUnits(std::initializer_list<std::string_view> outline);
[[nodiscard]] std::string expecting(std::string_view control, std::string_view members);
/// @}

struct ConfigRun {
  /// CODE, ORDER and, where it has one, MISC1 of the template's markers.
  std::string markers = "((BRK 1) (CON 2) (LMP 3))";
  std::vector<std::string> steps = {};
  std::string historyName = {};
  bool isDirect = false;
  std::string setup = {}; ///< forms that are run before the template
};

/// What a session leaves.
struct ConfigResult {
  std::string answer;  ///< of the build; "cancelled" when the run has failed
  std::string drawn;   ///< the texts in the drawing
  std::string drawing; ///< the whole file
  std::string before;  ///< the whole file before the template
  std::string markers; ///< that are left
  std::string saved;   ///< the data passed to LISP at the end
  std::string printed;
  std::string failure; ///< of the script; steps that were not used count as one
};

class ConfigSite final {
public:
  /// The sheet below its header.
  explicit ConfigSite(const std::vector<std::string>& lines = usualSheet());
  ConfigSite(const ConfigSite&) = delete;
  ConfigSite& operator=(const ConfigSite&) = delete;

  /// Breaker, contactor (which can nest an auxiliary block, and that a lamp), lamp, a heading without choices.
  [[nodiscard]] static std::vector<std::string> usualSheet();

  /// Inserts the template and calls the plug-in's function.
  [[nodiscard]] ConfigResult run(const ConfigRun& run);
  /// The same, with the build prepared and passed to the test in place of the function.
  [[nodiscard]] ConfigResult run(const ConfigRun& run, const std::function<bool(ZanBrenvolt&)>& configure);

  /// The value of the last form in a drawing of their own.
  [[nodiscard]] static std::string evaluate(std::string_view forms);

  [[nodiscard]] std::filesystem::path history() const { return folder_ / "zan_brenvolt.xml"; }
  /// The names in the history file in their order, separated by "|".
  [[nodiscard]] std::string historyNames() const;

private:
  TemporaryFolder folder_;
  std::wstring workbook_;
};

} // namespace brenvolt::test
