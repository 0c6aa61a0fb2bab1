// Script forms: the LISP calls that a workbook's cells hold as text. A form is cut into tokens, each word typed by how
// it looks, variables put in, and the call made.
#pragma once

#include "host/result_list.h"

#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace brenvolt {

/// A value that replaces every token equal to its name, without case: "#xyz", "@type".
struct ZanScriptVariable {
  std::wstring_view name;          ///< a constant of the program
  std::int16_t type = kvtype::nil; ///< which decides how `value` is read
  /// Integers of both widths are one kind here; a list is a whole chain with its marks.
  std::variant<std::monostate, double, KvPoint3d, std::int32_t, std::wstring, ResultList> value;

  [[nodiscard]] static ZanScriptVariable ofReal(std::wstring_view name, double value);
  /// A 2D point.
  [[nodiscard]] static ZanScriptVariable ofPoint(std::wstring_view name, const KvPoint3d& value);
  [[nodiscard]] static ZanScriptVariable ofText(std::wstring_view name, std::wstring value);
  [[nodiscard]] static ZanScriptVariable ofList(std::wstring_view name, ResultList value);
  [[nodiscard]] static ZanScriptVariable ofNil(std::wstring_view name);
};

/// A piece of a form: list mark, nil, T, or a text still to be converted to its type. It refers to the form.
struct ScriptToken {
  std::int16_t type = kvtype::string;
  std::wstring_view text;
  friend bool operator==(const ScriptToken&, const ScriptToken&) = default;
};

/// Cuts a form into tokens. The outer parentheses, when they are the very first and the very last character, are
/// dropped; the word "list" vanishes, so that "(list 1 2)" inside a form is the list itself.
[[nodiscard]] std::vector<ScriptToken> cutTokens(std::wstring_view form);

/// The type of a word: nil, T, a real, an integer of 16 or 32 bits, or a string for all others, symbols included.
[[nodiscard]] std::int16_t typeOfWord(std::wstring_view word);

/// The call that a form describes: its first text names the function. Empty when the form has no tokens.
[[nodiscard]] ResultList buildCall(std::wstring_view form, std::span<const ZanScriptVariable> variables);

/// Runs a form. True when the call was made and succeeded; `answer` then contains its value, empty for nil.
[[nodiscard]] bool runForm(
    std::wstring_view form, std::span<const ZanScriptVariable> variables, ResultList& answer);

} // namespace brenvolt
