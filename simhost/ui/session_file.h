// The part of a session file in addition to its answers: what has to be run, so that anyone with the site can repeat
// the session.
#pragma once

#include <nlohmann/json_fwd.hpp>

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace simhost {

/// One command at the host: LISP, or an action of the user with the whole drawing.
struct SessionCommand {
  enum class Kind { lisp, undo, redo, open, project };
  enum class End { done, cancelled, failed };
  Kind kind = Kind::lisp;
  std::vector<std::string> forms{}; ///< of `lisp`: together they are one step of undo
  std::string
      file{}; ///< of `open`: empty for a new drawing; of `project`: empty when it is closed; in a file relative
              ///< to its folder
  End end = End::done; ///< how the last form ended
  std::string fault{}; ///< the reported message; for readers of the file
};

/// The member "run" of an answer file. It contains LISP forms, or commands as in a recording, or a circuit of the
/// workbook, which is then built with the configuration dialog.
struct SessionRun {
  std::vector<std::string> forms;       ///< run in their order after the site's LISP, each a command
  std::vector<SessionCommand> commands; ///< done in their order after the site's LISP
  std::string circuit;
  std::string type;
  std::vector<double> at = {0.0, 0.0}; ///< position of the circuit's template: x, y
  std::string history;                 ///< a saved configuration to take over
  std::string preset;                  ///< the fields of a rebuild, as `draw` takes them
  std::string params;
  std::string wires;
  std::string
      presetDrawing; ///< index of the project's drawing whose parts the preset names; empty for the first
  std::string scale; ///< of the circuit; empty for that of the saved configuration or of the site
  std::string componentScale; ///< the same of components
  std::string drawing;  ///< file that is opened, empty for a new drawing; in a file relative to its folder
  std::string project;  ///< database of the project, or a folder of its tables; empty for none
  std::string language; ///< two letters, empty for the one of the environment

  [[nodiscard]] bool isCircuit() const { return !circuit.empty(); }
};

/// Reads the member. Throws AnswerError with the reason, without a place.
[[nodiscard]] SessionRun readSessionRun(const nlohmann::ordered_json& run);

/// The member, empty parts left out.
[[nodiscard]] nlohmann::ordered_json sessionRunAsJson(const SessionRun& run);

/// The same run with paths that lead there from `to` instead of from `from`. Empty paths stay empty.
[[nodiscard]] SessionRun seenFrom(
    SessionRun run, const std::filesystem::path& from, const std::filesystem::path& to);

} // namespace simhost
