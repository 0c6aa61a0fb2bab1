// A small parent product in LISP, a workbook with one circuit's sheet and an empty drawing: what a build needs, for
// tests of the driver and of all that it calls.
//
// LISP offers `(mark CODE ORDER [MISC1])`, which places a marker, and to forms `note` (keeps its arguments in `ran`),
// `nest` (places a marker for each CODE and returns 2), `broken` (fails), `wipe` (erases the markers of a CODE),
// `look` (keeps the values of the script symbols in `seen`) and `give` (returns its argument).
#pragma once

#include "build/driver.h"
#include "simhost/host/resource_module.h"
#include "tests/support/lisp_session.h"
#include "tests/support/temporary_folder.h"

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace brenvolt::test {

class BuildSite final {
public:
  /// `executionErrors`: how many failing forms are reported.
  explicit BuildSite(int executionErrors = 0);
  BuildSite(const BuildSite&) = delete;
  BuildSite& operator=(const BuildSite&) = delete;
  ~BuildSite();

  std::string eval(std::string_view forms) { return lisp_.eval(forms); }
  [[nodiscard]] LispSession& lisp() { return lisp_; }
  [[nodiscard]] simhost::DrawingDatabase& drawing();
  [[nodiscard]] std::filesystem::path folder() const { return folder_.path(); }

  /// Writes the workbook with this sheet below its header, under the name "S".
  void writeSheet(const std::vector<std::string>& lines);
  /// Arguments of a direct build of that sheet.
  [[nodiscard]] ZanBuildArgs arguments() const;
  /// A build up to the point where its rows run; null when it ends before it.
  [[nodiscard]] std::unique_ptr<ZanBrenvolt> prepared(ZanBuildArgs args);
  [[nodiscard]] CircuitContext& circuit() { return circuit_; }
  [[nodiscard]] LentValues lent() { return {circuit_, {acceptedTables_, nullptr}, lastMarkerId_}; }

  /// The CODEs of the markers in the drawing.
  std::string markersLeft() { return eval("(codes-left)"); }
  /// The texts of the task dialogs shown so far.
  [[nodiscard]] std::vector<std::string> shown();

private:
  LispSession lisp_;
  TemporaryFolder folder_;
  KvResourceModule resources_;
  std::wstring workbook_;
  CircuitContext circuit_;
  AcceptedTables acceptedTables_;
  std::int32_t lastMarkerId_ = 0;
};

/// "M1" and "M1 M2" of codes; "M1=1,2" of selections.
[[nodiscard]] std::string describeCodes(const std::vector<std::wstring>& codes);
[[nodiscard]] std::string describeSelections(const BuildState& state);
/// Rows and nested lists as "(a b/3 (c nil))": texts unchanged, "/" and the type after any other value.
[[nodiscard]] std::string describeRows(const ZanAnnotationDataList& rows);

} // namespace brenvolt::test
