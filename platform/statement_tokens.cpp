#include "platform/statement_tokens.h"

#include "text/compare.h"
#include "text/split.h"

#include <algorithm>

namespace brenvolt::tables {

namespace {

using Kind = StatementToken::Kind;

bool isDigit(wchar_t c) {
  return c >= L'0' && c <= L'9';
}

bool isWordCharacter(wchar_t c) {
  return isDigit(c) || (c >= L'A' && c <= L'Z') || (c >= L'a' && c <= L'z') || c == L'_' || c > 0x7F;
}

/// The position after a delimited token that starts at `start`; a doubled `close` stays inside when `doubles`.
std::size_t endOfDelimited(std::wstring_view text, std::size_t start, wchar_t close, bool doubles) {
  for (std::size_t at = start + 1; at < text.size(); ++at) {
    if (text[at] != close) continue;
    if (!doubles || at + 1 >= text.size() || text[at + 1] != close) return at + 1;
    ++at;
  }
  return text.size();
}

std::size_t endOfRun(std::wstring_view text, std::size_t start, bool (*belongs)(wchar_t)) {
  std::size_t at = start;
  while (at < text.size() && belongs(text[at]))
    ++at;
  return at;
}

StatementToken nextToken(std::wstring_view text, std::size_t start) {
  const auto upTo = [&](Kind kind, std::size_t end) {
    return StatementToken{kind, text.substr(start, end - start)};
  };
  const wchar_t first = text[start];
  if (isBlank(first)) return upTo(Kind::blank, endOfRun(text, start, isBlank));
  if (text.substr(start, 2) == L"--")
    return upTo(Kind::blank, std::min(text.find(L'\n', start), text.size()));
  if (text.substr(start, 2) == L"/*") {
    const std::size_t close = text.find(L"*/", start + 2);
    return upTo(Kind::blank, close == std::wstring_view::npos ? text.size() : close + 2);
  }
  if (first == L'\'') return upTo(Kind::text, endOfDelimited(text, start, L'\'', true));
  if (first == L'"') return upTo(Kind::quotedName, endOfDelimited(text, start, L'"', true));
  if (first == L'[') return upTo(Kind::bracketed, endOfDelimited(text, start, L']', false));
  if (isDigit(first)) {
    return upTo(
        Kind::number, endOfRun(text, start, [](wchar_t c) { return isWordCharacter(c) || c == L'.'; }));
  }
  if (isWordCharacter(first)) return upTo(Kind::word, endOfRun(text, start, isWordCharacter));
  return upTo(Kind::symbol, start + 1);
}

} // namespace

bool StatementToken::isWord(std::wstring_view word) const {
  return kind == Kind::word && equalsOrdinalNoCase(text, word);
}

bool StatementToken::isName() const {
  return kind == Kind::word || kind == Kind::bracketed || kind == Kind::quotedName;
}

std::wstring_view StatementToken::name() const {
  if (kind != Kind::bracketed && kind != Kind::quotedName) return text;
  const bool closed = text.size() > 1 && (text.back() == L']' || text.back() == L'"');
  return text.substr(1, text.size() - (closed ? 2 : 1));
}

std::vector<StatementToken> splitStatement(std::wstring_view statement) {
  std::vector<StatementToken> tokens;
  for (std::size_t at = 0; at < statement.size();) {
    tokens.push_back(nextToken(statement, at));
    at += tokens.back().text.size();
  }
  return tokens;
}

bool isOneStatement(const std::vector<StatementToken>& tokens) {
  const auto hasWord = [&tokens](std::wstring_view word) {
    return std::any_of(
        tokens.begin(), tokens.end(), [word](const StatementToken& token) { return token.isWord(word); });
  };
  if (firstWord(tokens).isWord(L"CREATE") && hasWord(L"TRIGGER")) return true;
  const auto separator = std::find_if(
      tokens.begin(), tokens.end(), [](const StatementToken& token) { return token.text == L";"; });
  return std::all_of(separator, tokens.end(), [](const StatementToken& token) {
    return token.kind == Kind::blank || token.text == L";";
  });
}

StatementToken firstWord(const std::vector<StatementToken>& tokens) {
  const auto first = std::find_if(
      tokens.begin(), tokens.end(), [](const StatementToken& token) { return token.kind != Kind::blank; });
  return first == tokens.end() ? StatementToken{} : *first;
}

bool isUnorderedDistinct(const std::vector<StatementToken>& tokens) {
  int words = 0;
  int depth = 0;
  for (const StatementToken& token : tokens) {
    if (token.kind == Kind::blank) continue;
    if (words < 2 && !token.isWord(words == 0 ? L"SELECT" : L"DISTINCT")) return false;
    ++words;
    if (token.text == L"(") ++depth;
    if (token.text == L")") --depth;
    if (depth == 0 && (token.isWord(L"ORDER") || token.isWord(L"LIMIT"))) return false;
  }
  return words > 2;
}

} // namespace brenvolt::tables
