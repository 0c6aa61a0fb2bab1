// Calls of the parent product's LISP functions, and the lines that trace them on the command line.
#pragma once

#include "host/result_list.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace brenvolt {

/// While tracing is on, each call prints a line before and after it. Process-wide; initially off.
void setTrace(bool on);
[[nodiscard]] bool isTracing();

/// Calls the function named by the list's first text with the rest as arguments. Returns the host's status (kvstatus);
/// `answer` is empty for nil and on failure.
int invoke(const ResultList& call, ResultList& answer);
/// The same with trace lines: `callText` is how the call reads.
int invokeTraced(const ResultList& call, std::wstring_view callText, ResultList& answer);

/// Why the last call that failed did so, in the host's words; empty where the host gives none.
[[nodiscard]] std::wstring lastCallError();

/// Lets LISP evaluate a text. Answers the host's status; kvstatus::lispNotReady without a call when the document
/// cannot run LISP now.
int evalString(std::wstring_view text, ResultList& answer);

/// Makes a LISP function reachable for `invoke`. Answers the host's status.
int exposeFunction(std::wstring_view name);

/// The full path of a file, looked for where the parent product looks; nothing when it is not found.
[[nodiscard]] std::optional<std::wstring> findFile(std::wstring_view name);

/// The wire types of the active drawing, by position: an element that is not a text gives an empty entry. Empty when
/// LISP returns nothing.
[[nodiscard]] std::vector<std::wstring> getActiveWireTypes();

/// The settings of a wire type by position: texts as they are, integers of the group codes 90 and 290 in decimal, an
/// empty entry for anything else. Empty when LISP returns nothing.
[[nodiscard]] std::vector<std::wstring> getWireTypeSettings(std::wstring_view wireType);

/// The path of the project's database, with "\" for every "/"; a result that is not a text gives an empty path.
/// Nothing when LISP returns nothing.
[[nodiscard]] std::optional<std::wstring> getProjectDatabase();

/// Passes the codes of a build with their handles to LISP. Only rows of exactly two texts (CODE, handle text) count;
/// false when there are none, or LISP returns nothing.
bool saveCodeHandles(const std::vector<std::vector<std::wstring>>& rows);

} // namespace brenvolt
