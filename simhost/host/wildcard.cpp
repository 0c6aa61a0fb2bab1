// Patterns are first split into one-character tests; matching then only returns to the last "*", which is sufficient
// because an earlier one could not match more.
#include "simhost/host/wildcard.h"

#include "host/host_api_lisp.h"
#include "text/compare.h"

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

namespace simhost {

namespace {

struct Range {
  wchar_t first;
  wchar_t last;
};

/// A test for one character, or a run of any.
struct Token {
  enum class Kind { literal, digit, letter, other, any, run, set };
  Kind kind = Kind::literal;
  wchar_t character = L'\0';
  std::vector<Range> ranges{};
  bool isNegated = false;
};

struct Alternative {
  std::vector<Token> tokens;
  bool isNegated = false;
};

bool isDigit(wchar_t character) {
  return character >= L'0' && character <= L'9';
}

/// A letter is what has two cases. Texts are upper-cased before they are matched.
bool isLetter(wchar_t character) {
  return brenvolt::toLower(std::wstring_view(&character, 1)).front() != character;
}

/// The set that begins after "[" at `position`, which moves past the "]"; nothing when there is none.
std::optional<Token> readSet(std::wstring_view pattern, std::size_t& position) {
  Token set{Token::Kind::set};
  std::size_t at = position;
  if (at < pattern.size() && pattern[at] == L'~') {
    set.isNegated = true;
    ++at;
  }
  while (at < pattern.size() && pattern[at] != L']') {
    if (pattern[at] == L'`' && at + 1 < pattern.size()) ++at;
    const wchar_t first = pattern[at++];
    const bool isRange = at + 1 < pattern.size() && pattern[at] == L'-' && pattern[at + 1] != L']';
    if (!isRange) {
      set.ranges.push_back({first, first});
      continue;
    }
    ++at;
    if (pattern[at] == L'`' && at + 1 < pattern.size()) ++at;
    const wchar_t last = pattern[at++];
    set.ranges.push_back({std::min(first, last), std::max(first, last)});
  }
  if (at >= pattern.size()) return std::nullopt;
  position = at + 1;
  return set;
}

std::vector<Alternative> readPattern(std::wstring_view pattern) {
  std::vector<Alternative> alternatives(1);
  bool isFirst = true;
  for (std::size_t position = 0; position < pattern.size();) {
    const wchar_t character = pattern[position++];
    std::vector<Token>& tokens = alternatives.back().tokens;
    const bool atStart = isFirst;
    isFirst = false;
    switch (character) {
    case L',':
      alternatives.emplace_back();
      isFirst = true;
      break;
    case L'~':
      if (atStart) {
        alternatives.back().isNegated = true;
      } else {
        tokens.push_back({Token::Kind::literal, character});
      }
      break;
    case L'#':
      tokens.push_back({Token::Kind::digit});
      break;
    case L'@':
      tokens.push_back({Token::Kind::letter});
      break;
    case L'.':
      tokens.push_back({Token::Kind::other});
      break;
    case L'?':
      tokens.push_back({Token::Kind::any});
      break;
    case L'*':
      tokens.push_back({Token::Kind::run});
      break;
    case L'[': {
      std::optional<Token> set = readSet(pattern, position);
      tokens.push_back(set ? std::move(*set) : Token{Token::Kind::literal, character});
      break;
    }
    case L'`':
      tokens.push_back({Token::Kind::literal, position < pattern.size() ? pattern[position++] : character});
      break;
    default:
      tokens.push_back({Token::Kind::literal, character});
    }
  }
  return alternatives;
}

bool fits(const Token& token, wchar_t character) {
  switch (token.kind) {
  case Token::Kind::literal:
    return token.character == character;
  case Token::Kind::digit:
    return isDigit(character);
  case Token::Kind::letter:
    return isLetter(character);
  case Token::Kind::other:
    return !isDigit(character) && !isLetter(character);
  case Token::Kind::any:
  case Token::Kind::run:
    return true;
  case Token::Kind::set: {
    const bool isMember = std::any_of(token.ranges.begin(), token.ranges.end(), [&](const Range& range) {
      return range.first <= character && character <= range.last;
    });
    return isMember != token.isNegated;
  }
  }
  return false;
}

bool matches(std::wstring_view text, const std::vector<Token>& tokens) {
  std::size_t at = 0;
  std::size_t token = 0;
  std::optional<std::size_t> lastRun;
  std::size_t runEnd = 0; // how far the last run has been stretched
  while (at < text.size()) {
    if (token < tokens.size() && tokens[token].kind == Token::Kind::run) {
      lastRun = token++;
      runEnd = at;
    } else if (token < tokens.size() && fits(tokens[token], text[at])) {
      ++token;
      ++at;
    } else if (lastRun) {
      token = *lastRun + 1;
      at = ++runEnd;
    } else {
      return false;
    }
  }
  while (token < tokens.size() && tokens[token].kind == Token::Kind::run)
    ++token;
  return token == tokens.size();
}

} // namespace

bool matchesWildcard(std::wstring_view text, std::wstring_view pattern) {
  const std::wstring upperText = brenvolt::toUpper(text);
  const std::vector<Alternative> alternatives = readPattern(brenvolt::toUpper(pattern));
  return std::any_of(alternatives.begin(), alternatives.end(), [&](const Alternative& alternative) {
    return matches(upperText, alternative.tokens) != alternative.isNegated;
  });
}

} // namespace simhost

int kvutWcMatch(const wchar_t* text, const wchar_t* pattern) {
  if (text == nullptr || pattern == nullptr) return kvstatus::rejected;
  return simhost::matchesWildcard(text, pattern) ? kvstatus::normal : kvstatus::rejected;
}
