// Runs the built tool the way a user does and looks at what it leaves.
#pragma once

#include "tests/support/temporary_folder.h"

#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

namespace brenvolt {

struct ToolRun {
  int exitCode = -1;
  std::string output;
  std::string errors;
};

/// The tool as it was built, by its whole path.
[[nodiscard]] std::string toolPath();
[[nodiscard]] std::vector<std::string> linesOf(const std::string& text);

/// Checks that each part is in the text, which is shown otherwise.
void checkHolds(const std::string& text, std::initializer_list<std::string> parts);

/// A folder of its own for one test; every run of the tool has its home there, so that no settings of a user matter.
class ToolFolder final {
public:
  /// The path of a file in the folder, written first when there is a text for it.
  [[nodiscard]] std::string path(const std::string& name) const;
  std::string write(const std::string& name, std::string_view text) const;
  /// Empty when the file does not exist.
  [[nodiscard]] std::string read(const std::string& name) const;
  [[nodiscard]] bool has(const std::string& name) const;

  /// Runs `brenvolt` with these arguments; `input` becomes its standard input, `environment` ("NAME=text") is added.
  [[nodiscard]] ToolRun run(
      const std::vector<std::string>& arguments, std::string_view input = {},
      const std::vector<std::string>& environment = {}) const;

private:
  test::TemporaryFolder folder_;
};

} // namespace brenvolt
