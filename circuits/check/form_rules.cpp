#include "circuits/check/form_rules.h"

#include "circuits/check/check_session.h"
#include "circuits/check/similar_name.h"
#include "host/script_form.h"
#include "simhost/lisp/symbol.h"
#include "text/compare.h"
#include "text/numbers.h"
#include "text/split.h"

#include <algorithm>
#include <array>
#include <optional>
#include <span>
#include <string_view>
#include <utility>

namespace circuits {

namespace lisp = simhost::lisp;
using brenvolt::equalsOrdinalNoCase;
using brenvolt::formatInt;
using brenvolt::ScriptToken;

namespace {

const std::array<std::wstring, 5> drawVariables = {L"#xyz", L"#scl", L"#data", L"#data2", L"#misc1"};
const std::array<std::wstring, 9> motorVariables = {L"@type",  L"@phase", L"@voltage",   L"@speed",  L"@load",
                                                    L"@units", L"@fla",   L"@frequency", L"@flamult"};
const std::array<std::wstring, 4> partVariables = {L"@table", L"@mfg", L"@cat", L"@asm"};

/// The words that are filled in where a form stands.
std::span<const std::wstring> variablesOf(const SheetCode& code, const SheetForm& form) {
  if (form.column != sheetcolumn::controlForms) return drawVariables;
  if (code.controlGroup() != nullptr) return motorVariables;
  return partVariables;
}

bool isVariable(std::wstring_view word, std::span<const std::wstring> variables) {
  return std::ranges::any_of(
      variables, [word](const std::wstring& each) { return equalsOrdinalNoCase(each, word); });
}

bool looksLikeNumber(std::wstring_view word) {
  if (word.starts_with(L'-') || word.starts_with(L'+')) word.remove_prefix(1);
  const bool hasDigit = word.find_first_of(L"0123456789") != word.npos;
  return hasDigit && word.find_first_not_of(L"0123456789.,") == word.npos;
}

/// How many values a function takes.
struct Arity {
  std::size_t least = 0;
  std::size_t most = 0;
};

std::optional<Arity> arityOf(const lisp::Value& function) {
  if (function.kind() == lisp::Kind::builtin)
    return Arity{function.asBuiltin().minimumArguments, function.asBuiltin().maximumArguments};
  if (function.kind() != lisp::Kind::lambda) return std::nullopt;
  const lisp::Lambda& lambda = function.asLambda();
  return Arity{lambda.requiredCount, lambda.takesRest ? lisp::anyNumber : lambda.parameters.size()};
}

std::wstring arityText(const Arity& arity) {
  const auto number = [](std::size_t count) { return formatInt(static_cast<std::int64_t>(count)); };
  if (arity.most == lisp::anyNumber) return L"at least " + number(arity.least);
  if (arity.least == arity.most) return number(arity.least);
  return number(arity.least) + L" to " + number(arity.most);
}

class FormCheck final {
public:
  FormCheck(
      const SiteModel& site, CheckSession& session, const SheetModel& model, const SheetCode& code,
      const SheetForm& form, Findings& findings)
      : site_(site), session_(session), model_(model), code_(code), form_(form), findings_(findings),
        tokens_(brenvolt::cutTokens(form.text)), variables_(variablesOf(code, form)) {}

  void run() {
    if (!form_.text.starts_with(L'(')) {
      add(L"form-not-a-form", 0, form_.text.size(), {});
      return;
    }
    if (tokens_.empty() || tokens_.front().type != kvtype::string) {
      add(L"form-without-function", 0, form_.text.size(), {});
      return;
    }
    checkQuotes();
    checkFunction();
    bool isInList = false;
    for (std::size_t i = 1; i < tokens_.size(); ++i)
      checkToken(i, isInList);
  }

private:
  void add(std::wstring_view rule, std::size_t from, std::size_t length, RuleValues values) {
    findings_.add(
        rule, site_.place(model_, code_, form_.row, form_.column), {form_.cell, form_.from + from, length},
        values);
  }
  [[nodiscard]] std::size_t placeOf(const ScriptToken& token) const {
    return static_cast<std::size_t>(token.text.data() - form_.text.data());
  }
  [[nodiscard]] bool isQuoted(const ScriptToken& token) const {
    const std::size_t place = placeOf(token);
    return token.type == kvtype::string && place > 0 && place <= form_.text.size() &&
           form_.text[place - 1] == L'"';
  }

  /// What the cutting into words passes over: a text without its end, and the word "list" where it makes no list.
  void checkQuotes() {
    std::size_t open = std::wstring::npos;
    wchar_t before = L' ';
    for (std::size_t i = 0; i < form_.text.size(); ++i) {
      const wchar_t letter = form_.text[i];
      if (letter == L'"') open = open == std::wstring::npos ? i : std::wstring::npos;
      if (open != std::wstring::npos || brenvolt::isBlank(letter)) continue;
      const bool isWord = letter != L'(' && letter != L')' && letter != L'"';
      const std::size_t end = std::min(form_.text.find_first_of(L" \t\r\n()", i), form_.text.size());
      if (isWord && before != L'(' && equalsOrdinalNoCase(form_.text.substr(i, end - i), L"list"))
        add(L"form-list-word", i, end - i, {});
      before = letter;
      if (isWord) i = std::max(end, i + 1) - 1;
    }
    if (open != std::wstring::npos) add(L"form-open-quote", open, form_.text.size() - open, {});
  }

  void checkFunction() {
    const ScriptToken& token = tokens_.front();
    const std::wstring name(token.text);
    const std::size_t place = placeOf(token);
    const lisp::Symbol* symbol = session_.interpreter().symbols().find(name);
    if (symbol == nullptr || !symbol->function.isFunction()) {
      if (!session_.isComplete()) return; // the file that defines it may be the one that does not load
      add(L"form-unknown-function", place, name.size(),
          {{L"function", name}, {L"similar", didYouMean(similarName(name, session_.siteFunctions()))}});
      return;
    }
    if (!session_.document().isReachable(*symbol)) {
      add(L"form-not-exposed", place, name.size(), {{L"function", name}});
      return;
    }
    const std::optional<Arity> arity = arityOf(symbol->function);
    const std::optional<std::size_t> given = argumentCount();
    if (!arity || !given || (*given >= arity->least && *given <= arity->most)) return;
    add(L"form-argument-count", 0, form_.text.size(),
        {{L"function", name},
         {L"takes", arityText(*arity)},
         {L"given", formatInt(static_cast<std::int64_t>(*given))}});
  }

  /// Values after the function's name, a list counted as one; nothing for lists that do not close.
  [[nodiscard]] std::optional<std::size_t> argumentCount() const {
    std::size_t count = 0;
    int depth = 0;
    for (std::size_t i = 1; i < tokens_.size(); ++i) {
      if (tokens_[i].type == kvtype::listEnd && --depth < 0) return std::nullopt;
      if (depth == 0 && tokens_[i].type != kvtype::listEnd) ++count;
      if (tokens_[i].type == kvtype::listBegin) ++depth;
    }
    if (depth != 0) return std::nullopt;
    return count;
  }

  void checkToken(std::size_t index, bool& wasListBegin) {
    const ScriptToken& token = tokens_[index];
    const std::size_t place = placeOf(token);
    const std::wstring word(token.text);
    if (token.type == kvtype::listBegin) {
      wasListBegin = true;
      return;
    }
    if (wasListBegin) checkNested(token);
    wasListBegin = false;
    if (token.type == kvtype::listEnd || isQuoted(token)) return;
    if (token.type == kvtype::shortInteger) checkInteger(word, place);
    if (token.type == kvtype::string) checkWord(word, place);
  }

  /// The first word within inner parentheses: a form there is not run, it becomes a list.
  void checkNested(const ScriptToken& token) {
    if (token.type != kvtype::string || isQuoted(token)) return;
    const std::size_t place = placeOf(token);
    const std::size_t open = form_.text.rfind(L'(', place);
    const std::wstring between = brenvolt::trim(form_.text.substr(open + 1, place - open - 1));
    if (equalsOrdinalNoCase(between, L"list")) return;
    const std::wstring word(token.text);
    if (session_.interpreter().findFunction(word))
      add(L"form-nested-call", place, word.size(), {{L"function", word}});
  }

  void checkInteger(const std::wstring& word, std::size_t place) {
    if (std::ranges::count(word, L'.') > 1)
      add(L"form-two-points", place, word.size(),
          {{L"word", word}, {L"read", formatInt(brenvolt::toInt(word))}});
    const std::int32_t value = brenvolt::toInt(word);
    const auto passed =
        static_cast<std::int16_t>(static_cast<std::uint16_t>(static_cast<std::uint32_t>(value)));
    if (passed != value)
      add(L"form-integer-wraps", place, word.size(), {{L"word", word}, {L"read", formatInt(passed)}});
  }

  void checkWord(const std::wstring& word, std::size_t place) {
    if (isVariable(word, variables_)) return;
    if (word.starts_with(L'#') || word.starts_with(L'@')) {
      add(L"form-unknown-variable", place, word.size(),
          {{L"word", word},
           {L"known", brenvolt::join({variables_.begin(), variables_.end()}, L" ")},
           {L"similar", didYouMean(similarName(word, variables_))}});
      return;
    }
    if (looksLikeNumber(word)) {
      add(L"form-number", place, word.size(), {{L"word", word}});
      return;
    }
    if (equalsOrdinalNoCase(word, L"nil") || equalsOrdinalNoCase(word, L"t")) {
      add(L"form-nil", place, word.size(),
          {{L"word", word}, {L"meant", equalsOrdinalNoCase(word, L"t") ? L"T" : L"nil"}});
      return;
    }
    const auto near = std::ranges::find_if(variables_, [&word](const std::wstring& each) {
      const std::wstring bare = each.substr(1);
      return equalsOrdinalNoCase(bare, word) || (bare.size() > 3 && nameDistance(bare, word) == 1);
    });
    if (near != variables_.end())
      add(L"form-word-is-text", place, word.size(), {{L"word", word}, {L"variable", *near}});
  }

  const SiteModel& site_;
  CheckSession& session_;
  const SheetModel& model_;
  const SheetCode& code_;
  const SheetForm& form_;
  Findings& findings_;
  std::vector<ScriptToken> tokens_;
  std::span<const std::wstring> variables_;
};

/// What a cell loses when it is cut into forms.
void checkCell(
    const SiteModel& site, const SheetModel& model, const SheetCode& code, const SheetForm& last,
    Findings& findings) {
  const std::size_t end = last.from + last.text.size();
  const std::wstring rest =
      brenvolt::trim(std::wstring_view(last.cell).substr(std::min(end, last.cell.size())));
  const bool isCut = last.text.starts_with(L'(') && last.text.ends_with(L')');
  const bool isUnbalanced = !isCut && last.text.starts_with(L'(') &&
                            std::ranges::count(last.text, L'(') != std::ranges::count(last.text, L')');
  if (!isUnbalanced && rest.empty()) return;
  const FindingPlace place = site.place(model, code, last.row, last.column);
  if (isUnbalanced) {
    findings.add(L"form-unbalanced", place, {last.cell, last.from, last.text.size()}, {});
    return;
  }
  const std::size_t from = last.cell.find(rest, std::min(end, last.cell.size()));
  const bool begins = rest.starts_with(L'(');
  findings.add(
      begins ? L"form-unbalanced" : L"form-trailing-text", place, {last.cell, from, rest.size()},
      {{L"text", rest}});
}

} // namespace

void FormRules::check(const SheetModel& sheet) {
  for (const SheetCode& code : sheet.codes) {
    if (!code.hasTitle || code.isRepeated) continue;
    for (auto form = code.forms.begin(); form != code.forms.end(); ++form) {
      const auto next = std::next(form);
      const bool isLast = next == code.forms.end() || next->row != form->row || next->column != form->column;
      if (isLast) checkCell(site_, sheet, code, *form, findings_);
      const bool isWhole = !form->text.starts_with(L'(') || form->text.ends_with(L')');
      if (!isWhole) continue;
      std::unordered_set<std::wstring_view>& clean = cleanByVariables_[variablesOf(code, *form).data()];
      const auto [place, isNew] = clean.insert(form->text);
      if (!isNew) continue;
      const std::size_t before = findings_.count();
      FormCheck(site_, session_, sheet, code, *form, findings_).run();
      if (findings_.count() != before) clean.erase(place); // it is named wherever it is
    }
  }
}

} // namespace circuits
