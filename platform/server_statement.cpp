#include "platform/server_statement.h"

#include "platform/statement_tokens.h"

#include "text/compare.h"
#include "text/split.h"

#include <algorithm>
#include <array>
#include <optional>

namespace brenvolt::tables {

namespace {

using Kind = StatementToken::Kind;

/// The part of a statement that a token stands in.
enum class Clause { other, tables, condition, order };

struct ClauseWord {
  const wchar_t* word;
  Clause clause;
};

constexpr std::array<ClauseWord, 15> clauseWords{{
    {L"SELECT", Clause::other},
    {L"FROM", Clause::tables},
    {L"JOIN", Clause::tables},
    {L"INTO", Clause::tables},
    {L"UPDATE", Clause::tables},
    {L"TABLE", Clause::tables},
    {L"WHERE", Clause::condition},
    {L"ON", Clause::condition},
    {L"HAVING", Clause::condition},
    {L"ORDER", Clause::order},
    {L"SET", Clause::other},
    {L"VALUES", Clause::other},
    {L"GROUP", Clause::other},
    {L"LIMIT", Clause::other},
    {L"UNION", Clause::other},
}};

std::optional<Clause> clauseOf(const StatementToken& token) {
  for (const ClauseWord& entry : clauseWords) {
    if (token.isWord(entry.word)) return entry.clause;
  }
  return std::nullopt;
}

bool isComparison(const StatementToken& token) {
  return token.text == L"=" || token.text == L"<" || token.text == L">" || token.isWord(L"LIKE");
}

class Translator final {
public:
  Translator(std::wstring_view statement, const ServerDialect& dialect, const ServerCatalogue& catalogue)
      : tokens_(splitStatement(statement)), dialect_(dialect), catalogue_(catalogue) {}

  ServerStatement run() {
    findTables();
    result_.isDistinct = isDistinctWithoutLimit();
    result_.isSorted = isUnorderedDistinct(tokens_);
    while (at_ < tokens_.size())
      step();
    finishOrderItem();
    return std::move(result_);
  }

private:
  [[nodiscard]] bool isDistinctWithoutLimit() const {
    std::vector<const StatementToken*> words;
    bool hasLimit = false;
    for (const StatementToken& token : tokens_) {
      if (token.kind != Kind::blank && words.size() < 2) words.push_back(&token);
      hasLimit = hasLimit || token.isWord(L"LIMIT");
    }
    return !hasLimit && words.size() == 2 && words[0]->isWord(L"SELECT") && words[1]->isWord(L"DISTINCT");
  }

  void findTables() {
    bool expected = false;
    for (const StatementToken& token : tokens_) {
      if (token.kind == Kind::blank) continue;
      const std::optional<Clause> clause = clauseOf(token);
      if (expected && !clause && token.isName()) {
        const std::wstring table = catalogue_.table(token.name());
        for (const ServerColumn& column :
             table.empty() ? std::vector<ServerColumn>() : catalogue_.columns(table)) {
          columns_.push_back(column);
        }
      }
      if (clause) expected = *clause == Clause::tables;
    }
  }

  void step() {
    const StatementToken& token = tokens_[at_];
    if (result_.isDistinct && !tookDistinct_ && token.isWord(L"DISTINCT")) {
      tookDistinct_ = true;
      ++at_;
      return;
    }
    if (const std::optional<Clause> clause = clauseOf(token)) {
      finishOrderItem();
      clause_ = *clause;
      return copy();
    }
    if (token.text == L"(") ++depth_;
    if (token.text == L")" && depth_ > 0) --depth_;
    if (clause_ == Clause::order) return orderStep(token);
    if (token.kind == Kind::bracketed || token.kind == Kind::quotedName || isBareTable(token)) {
      return clause_ == Clause::condition ? condition() : name();
    }
    copy();
  }

  /// A table that is named without brackets goes to the server as it stands, unless the server knows one that differs in
  /// case only, which its own rule for bare names would miss.
  [[nodiscard]] bool isBareTable(const StatementToken& token) const {
    return clause_ == Clause::tables && token.kind == Kind::word && !catalogue_.table(token.name()).empty();
  }

  void orderStep(const StatementToken& token) {
    if (token.isWord(L"BY")) return copy();
    if (token.text == L"," && depth_ == 0) {
      finishOrderItem();
      return copy();
    }
    if (token.kind != Kind::blank) hasOrderItem_ = true;
    if (token.isWord(L"DESC")) isDescending_ = true;
    if (token.kind != Kind::bracketed && token.kind != Kind::quotedName) return copy();
    bool isText = false;
    const std::wstring column = chain(isText);
    result_.text += isText && depth_ == 0 ? folded(column) : column;
  }

  void finishOrderItem() {
    if (hasOrderItem_ && dialect_.sortsNullsLast) {
      const std::size_t end = result_.text.find_last_not_of(L" \t\r\n;") + 1;
      result_.text.insert(end, isDescending_ ? L" NULLS LAST" : L" NULLS FIRST");
    }
    hasOrderItem_ = false;
    isDescending_ = false;
  }

  void name() {
    bool isText = false;
    result_.text += chain(isText);
  }

  /// A column in a condition, and the text that it is compared with.
  void condition() {
    bool isText = false;
    const std::wstring column = chain(isText);
    const std::size_t behindColumn = at_;
    std::wstring comparison;
    while (at_ < tokens_.size() && (tokens_[at_].kind == Kind::blank || isComparison(tokens_[at_]))) {
      comparison += tokens_[at_++].text;
    }
    const bool isTextComparison = isText && at_ < tokens_.size() && tokens_[at_].kind == Kind::text;
    if (!isTextComparison || trimView(comparison).empty()) {
      at_ = behindColumn;
      result_.text += column;
      return;
    }
    result_.text += folded(column) + comparison + folded(std::wstring(tokens_[at_].text));
    ++at_;
  }

  /// One name or several with points between.
  std::wstring chain(bool& isText) {
    std::wstring text = serverName(tokens_[at_++], isText);
    while (at_ + 1 < tokens_.size() && tokens_[at_].text == L"." && tokens_[at_ + 1].isName()) {
      text += L"." + serverName(tokens_[at_ + 1], isText);
      at_ += 2;
    }
    return text;
  }

  std::wstring serverName(const StatementToken& token, bool& isText) const {
    const std::wstring_view name = token.name();
    isText = false;
    if (clause_ == Clause::tables) {
      const std::wstring table = catalogue_.table(name);
      if (!table.empty()) return quoted(table);
    }
    for (const ServerColumn& column : columns_) {
      if (!equalsOrdinalNoCase(column.name, name)) continue;
      isText = column.isText;
      return quoted(column.name);
    }
    const std::wstring table = catalogue_.table(name);
    return quoted(table.empty() ? std::wstring(name) : table);
  }

  [[nodiscard]] std::wstring quoted(const std::wstring& name) const {
    return dialect_.openQuote +
           replaceAll(name, dialect_.closeQuote, dialect_.closeQuote + dialect_.closeQuote) +
           dialect_.closeQuote;
  }

  [[nodiscard]] std::wstring folded(const std::wstring& expression) const {
    return L"UPPER(" + expression + L")" + dialect_.collation;
  }

  void copy() { result_.text += tokens_[at_++].text; }

  std::vector<StatementToken> tokens_;
  const ServerDialect& dialect_;
  const ServerCatalogue& catalogue_;
  std::vector<ServerColumn> columns_;
  ServerStatement result_;
  std::size_t at_ = 0;
  Clause clause_ = Clause::other;
  int depth_ = 0;
  bool tookDistinct_ = false;
  bool hasOrderItem_ = false;
  bool isDescending_ = false;
};

} // namespace

ServerStatement translateStatement(
    std::wstring_view statement, const ServerDialect& dialect, const ServerCatalogue& catalogue) {
  return Translator(statement, dialect, catalogue).run();
}

} // namespace brenvolt::tables
