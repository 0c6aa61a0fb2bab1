// The words of a statement, told apart as every engine does: what stands in quotes or brackets is never taken for a
// keyword.
#pragma once

#include <string_view>
#include <vector>

namespace brenvolt::tables {

struct StatementToken {
  enum class Kind {
    word,
    number,
    /// [name]
    bracketed,
    /// "name"
    quotedName,
    /// 'text', quotes inside doubled
    text,
    symbol,
    /// Blanks and comments.
    blank,
  };

  Kind kind = Kind::blank;
  /// As it stands, delimiters included; all tokens one behind the other are the statement.
  std::wstring_view text;

  [[nodiscard]] bool isWord(std::wstring_view word) const;
  /// A word, [name] or "name".
  [[nodiscard]] bool isName() const;
  /// The name without its delimiters.
  [[nodiscard]] std::wstring_view name() const;
};

/// The tokens view into `statement`, which must outlive them. A delimiter without its partner runs to the end.
[[nodiscard]] std::vector<StatementToken> splitStatement(std::wstring_view statement);

/// Whether nothing but blanks follows the first ";". The body of a trigger holds several statements and is one.
[[nodiscard]] bool isOneStatement(const std::vector<StatementToken>& tokens);
/// What `error` says of a text that is none.
inline constexpr const wchar_t* severalStatements =
    L"there are several statements; one statement can be run at a time";

/// The first token that is no blank; an empty blank when there is none.
[[nodiscard]] StatementToken firstWord(const std::vector<StatementToken>& tokens);

/// What "DISTINCT" needs to know: a SELECT DISTINCT that asks for no order of its own.
[[nodiscard]] bool isUnorderedDistinct(const std::vector<StatementToken>& tokens);

} // namespace brenvolt::tables
