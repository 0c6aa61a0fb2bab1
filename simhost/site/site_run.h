// One run of the host at a site: a session with the plug-in loaded, a document open and the site's LISP run. The tool
// and `brenvolt-gui` start this way; they differ only in their windows.
#pragma once

#include "simhost/host/session.h"

#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace simhost {

/// The options of the command line; an empty text is the default.
struct SiteRunOptions {
  std::string site;     ///< folder with site.lsp
  std::string drawing;  ///< opened instead of an empty one
  std::string settings; ///< file of the user's settings
  std::string module;   ///< the plug-in, else the one beside the program
  std::string language; ///< two letters, else those of the environment
  /// Where settings are kept when `settings` names no file.
  enum class UnnamedSettings { user, memory } unnamedSettings = UnnamedSettings::user;
  std::string database{}; ///< engineering tables in place of the site's own
  std::string project{};  ///< database of the project, empty for none
};

class SiteRun final {
public:
  /// Reads the drawing, loads the module and runs the site's LISP. The windows must outlive it. Throws BadInput.
  SiteRun(SiteRunOptions options, WindowSystem& windows);

  [[nodiscard]] Session& session() { return session_; }
  /// The interpreter of the current document.
  [[nodiscard]] lisp::Interpreter& interpreter();

  /// Takes a drawing's place: the former document is closed, the site's LISP runs for the new one. An empty file
  /// name starts an empty drawing. Throws BadInput, and the former document stays then.
  void openDrawing(const std::string& file);

  /// As `openDrawing` without a file, but the site's LISP is not read again: its names mean what they meant when it had
  /// run. For a program that draws one drawing after the other at a site that nobody changes meanwhile. Throws
  /// BadInput.
  void beginAgain();

  /// The project whose records the site's LISP keeps, also for drawings that are opened later; empty for none.
  void setProject(const std::string& database);
  [[nodiscard]] const std::string& project() const { return options_.project; }
  /// Calls a function of the site's LISP without arguments, if it exists. Errors are printed on the command line: the
  /// host itself makes the call, and continues.
  void callSite(std::wstring_view function);

  /// Runs a LISP text; a LISP error and a run that was ended throw BadInput.
  lisp::Value run(std::wstring_view text, std::wstring_view fileName);
  /// Calls a LISP function with arguments that are values already; errors as for `run`.
  lisp::Value call(std::wstring_view function, std::span<const lisp::Value> arguments);

private:
  template <class Work>
  lisp::Value guarded(Work work);
  void runSite();
  void tellProject();
  void close(Document& document, Document& next);

  SiteRunOptions options_;
  Session session_;
  /// Of the current document after the site's LISP has run; nothing when that has drawn something, or is of another
  /// project.
  std::optional<Document::LispState> beginning_;
};

/// The bytes of a file that the user named. Throws BadInput.
[[nodiscard]] std::string readInput(const std::string& file);
/// The text of a LISP file. Throws BadInput.
[[nodiscard]] std::wstring readLisp(const std::string& file);

} // namespace simhost
