// The words of a statement, separated as every engine does: text in quotes or brackets is never a
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
  /// Unchanged, delimiters included; all tokens in sequence are the statement.
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
/// The text of `error` for an invalid statement.
inline constexpr const wchar_t* severalStatements =
    L"there are several statements; one statement can be run at a time";

/// The first token that is not blank; an empty blank when there is none.
[[nodiscard]] StatementToken firstWord(const std::vector<StatementToken>& tokens);

/// The condition for "DISTINCT" here: a SELECT DISTINCT without its own order.
[[nodiscard]] bool isUnorderedDistinct(const std::vector<StatementToken>& tokens);

} // namespace brenvolt::tables
