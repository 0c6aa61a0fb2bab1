// A command line as tables: which options a program or a subcommand has, which members they fill, and what runs at the
// end. Parsing, --help and messages come from these tables alone.
#pragma once

#include "simhost/cli/exit_code.h"

#include <functional>
#include <initializer_list>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace simhost {

/// A word of several options whose order on the command line counts.
struct OrderedWord {
  std::string option; ///< the name of its row
  std::string text;
};

/// The member that an option fills. Its type is the option's kind: a flag, a text, two numbers with a comma between
/// them, an option or a word that may occur several times, one of several options that share one order.
using OptionTarget = std::variant<
    bool*, std::string*, std::vector<double>*, std::vector<std::string>*, std::vector<OrderedWord>*>;

struct OptionRules {
  bool isRequired = false;
  std::vector<std::string> choices = {}; ///< the only texts allowed; empty for any
  enum class Path { any, existingFile, existingFolder } path = Path::any;
  std::vector<std::string> excludes = {}; ///< options that cannot be given beside it
  std::vector<std::string> needs = {};    ///< options that must be given beside it
};

struct OptionRow {
  /// "--out" or "-e"; without a dash a word at its place, in the order of the rows: "FILE".
  std::string name;
  OptionTarget target;
  std::string help = {};
  std::string typeName = {}; ///< of an option's value in --help; TEXT without it
  OptionRules rules = {};
};
using OptionRows = std::vector<OptionRow>;

/// Whether a row is a word by its place and not an option.
[[nodiscard]] bool isWordByPlace(const OptionRow& row);

/// Rows that several subcommands share, and a subcommand's own, as one table.
[[nodiscard]] OptionRows joinedRows(std::initializer_list<OptionRows> parts);

/// A program or a subcommand. What the rows point to lives as long as the table: `run` holds it.
struct CommandTable {
  std::string name;
  std::string description; ///< one line
  OptionRows options = {};
  std::vector<CommandTable> commands = {}; ///< where there are any, exactly one must be given
  std::string footer = {};                 ///< below the options in --help
  /// Two command lines for a folder with the sample site as "site" and a motor's circuit as "motor.json"; a test runs
  /// them. Commands without their own have those of the table above, and so for the page.
  std::vector<std::string> examples = {};
  std::string page = {}; ///< of the manual: "tool.md"
  /// May throw BadInput and CannotWrite. Empty for a program that continues by itself, and above `commands`.
  std::function<ExitCode()> run = {};
};

struct CommandLineResult {
  /// How the program ends now: after --help and --version, and for wrong arguments, which have been reported.
  std::optional<int> end = {};
  /// The innermost table that was given: the program itself or one of its commands.
  const CommandTable* command = nullptr;
};

/// Fills the members that the tables name. `version` is what --version prints. `--write-help DIR` writes the manual
/// pages and the completions of shells into a folder and ends the program.
[[nodiscard]] CommandLineResult readCommandLine(
    const CommandTable& program, const std::string& version, int argc, const char* const* argv);

} // namespace simhost
