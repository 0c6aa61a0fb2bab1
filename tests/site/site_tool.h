// The sample site in a folder of its own, so that a test may change its workbook and saves histories without touching
// the site.
#pragma once

#include "tool.h"

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace brenvolt {

struct SampleCircuit {
  const char* name; ///< of the golden files
  const char* circuit;
  const char* type;
  const char* history;
};

/// The circuits of the sample site, each with a saved configuration.
[[nodiscard]] std::span<const SampleCircuit> sampleCircuits();

/// A history file as UTF-8 without its mark, with `folder` left out of its text as SITE.
[[nodiscard]] std::string historyText(const std::string& bytes, const std::string& folder);
/// The entry of this name, an element a line; empty when there is none.
[[nodiscard]] std::string historyEntry(const std::string& history, const std::string& name);

/// Lines of a drawing or of rows, sorted, without what a drawing gives entities by the order in which they come.
[[nodiscard]] std::vector<std::string> sortedLines(const std::string& text);

class SiteCopy final {
public:
  SiteCopy();

  /// `brenvolt draw` in the copy; the drawing is `out`, and `more` follows the arguments.
  [[nodiscard]] ToolRun draw(
      const SampleCircuit& circuit, const std::string& out, const std::vector<std::string>& more = {}) const;
  [[nodiscard]] ToolRun run(const std::vector<std::string>& arguments) const {
    return folder_.run(arguments);
  }
  /// The same two where the run must succeed: what it prints, and the drawing's text.
  std::string done(const std::vector<std::string>& arguments) const;
  std::string drawn(
      const SampleCircuit& circuit, const std::string& out, const std::vector<std::string>& more = {}) const;
  /// The path of a new project database.
  [[nodiscard]] std::string newProject() const;
  /// The rows that a statement returns, as CSV with a header.
  [[nodiscard]] std::string query(const std::string& database, const std::string& statement) const {
    return done({"sql", database, statement, "--csv"});
  }
  /// Replaces a part of a sheet's CSV, which must be there, and packs the workbook again.
  void changeSheet(const std::string& sheet, std::string_view part, std::string_view replacement) const;
  void writeSheet(const std::string& sheet, std::string_view csv) const;

  [[nodiscard]] const ToolFolder& folder() const { return folder_; }
  [[nodiscard]] std::string site() const { return folder_.path("site"); }
  [[nodiscard]] std::string history() const {
    return historyText(folder_.read("site/zan_brenvolt.xml"), site());
  }

private:
  void pack() const;

  ToolFolder folder_;
};

} // namespace brenvolt
