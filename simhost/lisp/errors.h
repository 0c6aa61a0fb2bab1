// The failure of a LISP program: one exception that names the place, for the command line and for native
// callers.
#pragma once

#include <exception>
#include <string>

namespace simhost::lisp {

/// A fault in LISP text or in its run.
class LispError final : public std::exception {
public:
  enum class Cause {
    syntax,      ///< the text cannot be read
    fault,       ///< wrong arguments, no such function, `error`
    depth,       ///< forms nested without end
    stepLimit,   ///< more steps than the embedding allows
    interruption ///< the embedding asked to stop
  };

  /// `file` and `line` (from 1; 0 when no form read from a text is running), and the form at fault.
  LispError(Cause cause, std::wstring message, std::wstring file, unsigned line, std::wstring form);

  [[nodiscard]] Cause cause() const { return cause_; }
  [[nodiscard]] const std::wstring& message() const { return message_; }
  [[nodiscard]] const std::wstring& file() const { return file_; }
  [[nodiscard]] unsigned line() const { return line_; }
  /// The innermost form of the program, printed and cut to a bounded length; may be empty.
  [[nodiscard]] const std::wstring& form() const { return form_; }

  /// "file:line: message, in (form)", without what is not known.
  [[nodiscard]] const std::wstring& text() const { return text_; }
  /// The same in UTF-8.
  [[nodiscard]] const char* what() const noexcept override { return bytes_.c_str(); }

private:
  Cause cause_;
  std::wstring message_;
  std::wstring file_;
  unsigned line_;
  std::wstring form_;
  std::wstring text_;
  std::string bytes_;
};

/// Thrown by a function of the embedding when the user cancelled: it ends the whole run, no LISP form stops
/// it.
struct Cancelled final {};

} // namespace simhost::lisp
