// The site's LISP loaded in a host of its own for a check: nothing that it does reaches a file of the site or a database,
// and nothing that it does lasts without end.
#pragma once

#include "circuits/check/finding.h"
#include "circuits/check/quiet_windows.h"
#include "circuits/check/site_model.h"
#include "simhost/host/session.h"

#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace circuits {

/// Most steps of one form: a form of a site takes some thousands, a build some hundred thousands.
inline constexpr std::uint64_t stepLimit = 5'000'000;

class CheckSession final {
public:
  /// Loads the plug-in and runs the site's LISP. What does not load is a finding. `module` may be empty. Throws BadInput
  /// when the module itself cannot be loaded.
  CheckSession(const SiteModel& site, const std::filesystem::path& module, Findings& findings);
  CheckSession(const CheckSession&) = delete;
  CheckSession& operator=(const CheckSession&) = delete;
  ~CheckSession();

  [[nodiscard]] simhost::lisp::Interpreter& interpreter() { return document_->interpreter(); }
  [[nodiscard]] simhost::Document& document() { return *document_; }
  [[nodiscard]] simhost::Session& host() { return *session_; }
  [[nodiscard]] QuietWindows& windows() { return windows_; }
  /// A message of another part of the program, without the folders that a check works in.
  [[nodiscard]] std::wstring shownText(const std::wstring& text) const;
  /// What was printed since the last call, line by line.
  [[nodiscard]] std::vector<std::wstring> takeLines();

  /// Whether all of the site's LISP ran: only then does a function that is missing mean anything.
  [[nodiscard]] bool isComplete() const { return isComplete_; }
  /// Names of the functions that LISP of the site defines or native code can reach, for proposals.
  [[nodiscard]] const std::vector<std::wstring>& siteFunctions() const { return siteFunctions_; }

  /// A value, or why there is none.
  struct Answer {
    std::optional<simhost::lisp::Value> value{};
    std::wstring error{};
    FindingPlace place{}; ///< of the error in the site's LISP, as far as it is known
    bool isLoop = false;
  };
  [[nodiscard]] Answer call(std::wstring_view function, std::span<const simhost::lisp::Value> arguments);
  [[nodiscard]] Answer run(std::wstring_view text, std::wstring_view fileName);

  /// A copy of the workbook with this file of saved configurations beside it; empty when it cannot be made.
  [[nodiscard]] std::filesystem::path workbookWith(std::string_view savedConfigurations);
  /// A copy of the engineering tables that nobody else sees; empty when they cannot be read, and the reason is in `error`.
  [[nodiscard]] std::filesystem::path database(std::wstring& error);
  /// Whether a function of the site answers the file of the engineering tables by its name alone. The copy, which takes
  /// longer than a quick check of most sites, is not made for that.
  [[nodiscard]] bool answersDatabase(std::wstring_view function);

private:
  void loadSite(Findings& findings);
  void replaceOutside();
  template <typename Action>
  [[nodiscard]] Answer guarded(const Action& action);

  const SiteModel& site_;
  std::filesystem::path folder_; ///< goes away with this object
  QuietWindows windows_;
  std::optional<simhost::Session> session_;
  simhost::Document* document_ = nullptr;
  std::wstring printed_;
  std::vector<std::wstring> siteFunctions_;
  bool isComplete_ = true;
  bool isNameEnough_ = false; ///< site-database answers the name of a file that may not be there
};

} // namespace circuits
