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

/// The part of a statement that contains a token.
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

/// Words that are never column names when written without brackets.
constexpr std::array<std::wstring_view, 24> reservedWords = {
    L"ALL",     L"AND",     L"AS",   L"ASC",      L"BETWEEN", L"BY",  L"CASE",   L"CAST",
    L"COLLATE", L"DEFAULT", L"DESC", L"DISTINCT", L"ELSE",    L"END", L"EXISTS", L"FALSE",
    L"IN",      L"IS",      L"LIKE", L"NOT",      L"NULL",    L"OR",  L"THEN",   L"TRUE"};

bool isReserved(const StatementToken& token) {
  return std::any_of(reservedWords.begin(), reservedWords.end(), [&token](std::wstring_view word) {
    return token.isWord(word);
  });
}

bool isComparison(const StatementToken& token) {
  return token.text == L"=" || token.text == L"<" || token.text == L">" || token.isWord(L"LIKE");
}

class Translator final {
public:
  Translator(std::wstring_view statement, const ServerDialect& dialect, const ServerTableList& tableList)
      : tokens_(splitStatement(statement)), dialect_(dialect), tableList_(tableList) {}

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
        const std::wstring table = tableList_.table(token.name());
        for (const ServerColumn& column :
             table.empty() ? std::vector<ServerColumn>() : tableList_.columns(table)) {
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
    if (isNameToTranslate(token)) return clause_ == Clause::condition ? condition() : name();
    copy();
  }

  [[nodiscard]] bool isNameToTranslate(const StatementToken& token) const {
    if (token.kind == Kind::bracketed || token.kind == Kind::quotedName) return true;
    return clause_ == Clause::tables && depth_ == 0 ? isBareTable(token) : isBareColumn(token);
  }

  /// A word that names a column of the statement's tables, with or without its table before it. Words that the tables
  /// do not have, functions and aliases are sent to the server unchanged.
  [[nodiscard]] bool isBareColumn(const StatementToken& token) const {
    if (token.kind != Kind::word || isReserved(token)) return false;
    const std::size_t last = endOfChain(at_);
    const std::size_t next = nextWord(last);
    if (next < tokens_.size() && tokens_[next].text == L"(") return false;
    if (isAlias_) return false;
    return findColumn(tokens_[last - 1].name()) != nullptr;
  }

  /// The position after a name and the names that follow it with points between.
  [[nodiscard]] std::size_t endOfChain(std::size_t at) const {
    ++at;
    while (at + 1 < tokens_.size() && tokens_[at].text == L"." && tokens_[at + 1].isName())
      at += 2;
    return at;
  }

  [[nodiscard]] std::size_t nextWord(std::size_t at) const {
    while (at < tokens_.size() && tokens_[at].kind == Kind::blank)
      ++at;
    return at;
  }

  [[nodiscard]] const ServerColumn* findColumn(std::wstring_view name) const {
    const auto found = std::find_if(columns_.begin(), columns_.end(), [name](const ServerColumn& column) {
      return equalsOrdinalNoCase(column.name, name);
    });
    return found == columns_.end() ? nullptr : &*found;
  }

  /// A table named without brackets is sent to the server unchanged, unless the server has one that differs only in
  /// case, which its own rule for bare names would miss.
  [[nodiscard]] bool isBareTable(const StatementToken& token) const {
    return clause_ == Clause::tables && token.kind == Kind::word && !tableList_.table(token.name()).empty();
  }

  void orderStep(const StatementToken& token) {
    if (token.isWord(L"BY")) return copy();
    if (token.text == L"," && depth_ == 0) {
      finishOrderItem();
      return copy();
    }
    if (token.kind != Kind::blank) hasOrderItem_ = true;
    if (token.isWord(L"DESC")) isDescending_ = true;
    if (!isNameToTranslate(token)) return copy();
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

  /// One name or several with points between: the last one is the column, or the table where tables are named.
  std::wstring chain(bool& isText) {
    const std::size_t end = endOfChain(at_);
    std::wstring text;
    for (; at_ + 1 < end; at_ += 2)
      text += serverName(tokens_[at_], NameOf::table, isText) + L".";
    const bool isTable = clause_ == Clause::tables && depth_ == 0;
    return text + serverName(tokens_[at_++], isTable ? NameOf::table : NameOf::column, isText);
  }

  enum class NameOf { table, column };

  std::wstring serverName(const StatementToken& token, NameOf what, bool& isText) const {
    const std::wstring_view name = token.name();
    const ServerColumn* column = findColumn(name);
    const std::wstring table = tableList_.table(name);
    const bool isColumn = column != nullptr && (what == NameOf::column || table.empty());
    isText = isColumn && column->isText;
    if (isColumn) return quoted(column->name);
    if (!table.empty()) return quoted(table);
    // An unknown word, such as an alias, keeps the server's own rule for words.
    return token.kind == Kind::word ? std::wstring(name) : quoted(std::wstring(name));
  }

  [[nodiscard]] std::wstring quoted(const std::wstring& name) const {
    return dialect_.openQuote +
           replaceAll(name, dialect_.closeQuote, dialect_.closeQuote + dialect_.closeQuote) +
           dialect_.closeQuote;
  }

  [[nodiscard]] std::wstring folded(const std::wstring& expression) const {
    return L"UPPER(" + expression + L")" + dialect_.collation;
  }

  void copy() {
    const StatementToken& token = tokens_[at_++];
    if (token.kind != Kind::blank) isAlias_ = token.isWord(L"AS");
    result_.text += token.text;
  }

  std::vector<StatementToken> tokens_;
  const ServerDialect& dialect_;
  const ServerTableList& tableList_;
  std::vector<ServerColumn> columns_;
  ServerStatement result_;
  std::size_t at_ = 0;
  Clause clause_ = Clause::other;
  int depth_ = 0;
  bool tookDistinct_ = false;
  /// The next word is a name defined by the statement itself, after AS.
  bool isAlias_ = false;
  bool hasOrderItem_ = false;
  bool isDescending_ = false;
};

} // namespace

ServerStatement translateStatement(
    std::wstring_view statement, const ServerDialect& dialect, const ServerTableList& tableList) {
  return Translator(statement, dialect, tableList).run();
}

} // namespace brenvolt::tables
