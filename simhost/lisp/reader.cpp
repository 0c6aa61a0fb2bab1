// The reader keeps the open lists on a stack of its own: nesting costs memory, never C++ recursion.
#include "simhost/lisp/reader.h"

#include "simhost/lisp/errors.h"
#include "simhost/lisp/list.h"
#include "text/numbers.h"

#include <limits>

namespace simhost::lisp {

namespace {

bool isBlankOrControl(wchar_t character) {
  constexpr wchar_t noBreakSpace = 0xA0;
  constexpr wchar_t byteOrderMark = 0xFEFF;
  return (character >= 0 && character <= L' ') || character == noBreakSpace || character == byteOrderMark;
}

bool endsToken(wchar_t character) {
  return isBlankOrControl(character) || character == L'(' || character == L')' || character == L'"' ||
         character == L';' || character == L'\'';
}

bool isDigit(wchar_t character) {
  return character >= L'0' && character <= L'9';
}

std::size_t skipDigits(std::wstring_view word, std::size_t from) {
  while (from < word.size() && isDigit(word[from])) {
    ++from;
  }
  return from;
}

std::optional<std::int32_t> toInteger(std::wstring_view digitsWithSign) {
  const bool isNegative = digitsWithSign.front() == L'-';
  std::int64_t number = 0;
  for (const wchar_t digit : digitsWithSign) {
    if (!isDigit(digit)) continue;
    number = number * 10 + (digit - L'0');
    if (number > std::int64_t{std::numeric_limits<std::int32_t>::max()} + 1) return std::nullopt;
  }
  if (isNegative) number = -number;
  if (number > std::numeric_limits<std::int32_t>::max()) return std::nullopt;
  return static_cast<std::int32_t>(number);
}

} // namespace

/// A list that waits for its ")", or a quote that waits for its datum.
struct Reader::OpenForm {
  enum class Tail { none, afterDot, complete };

  char prefix; ///< '(' for a list, '\'' for quote, '#' for function
  Place place;
  ListBuilder elements;
  Tail tail = Tail::none;
};

Reader::Reader(SymbolTable& symbols, std::wstring_view text, std::wstring fileName, std::uint32_t fileNumber)
    : symbols_(symbols), text_(text), fileName_(std::move(fileName)), fileNumber_(fileNumber) {}

std::optional<Value> Reader::next() {
  std::vector<OpenForm> openForms;
  for (;;) {
    skipBlanksAndComments();
    if (position_ == text_.size()) {
      if (!openForms.empty()) failAtEnd(openForms);
      return std::nullopt;
    }
    Value datum;
    const wchar_t character = text_[position_];
    if (character == L'(' || character == L'\'') {
      open(openForms, static_cast<char>(character));
      continue;
    }
    if (character == L')') {
      datum = close(openForms);
      ++position_;
    } else if (character == L'"') {
      datum = readString();
    } else {
      const std::wstring_view token = readToken();
      if (token == L"#" && position_ < text_.size() && text_[position_] == L'\'') {
        open(openForms, '#');
        continue;
      }
      if (token == L".") {
        placeDot(openForms);
        continue;
      }
      datum = valueOf(token);
    }
    if (deliver(openForms, datum)) return datum;
  }
}

void Reader::skipBlanksAndComments() {
  bool isComment = false;
  for (; position_ < text_.size(); ++position_) {
    const wchar_t character = text_[position_];
    if (character == L'\n') {
      ++line_;
      isComment = false;
    } else if (character == L';') {
      isComment = true;
    } else if (!isComment && !isBlankOrControl(character)) {
      return;
    }
  }
}

Value Reader::readString() {
  const std::uint32_t firstLine = line_;
  std::wstring content;
  for (++position_; position_ < text_.size(); ++position_) {
    wchar_t character = text_[position_];
    if (character == L'"') {
      ++position_;
      return Value::string(std::move(content));
    }
    if (character == L'\n') ++line_;
    if (character == L'\\') {
      if (++position_ == text_.size()) break;
      character = text_[position_];
      switch (character) {
      case L'"':
      case L'\\':
        break;
      case L'n':
        character = L'\n';
        break;
      case L'r':
        character = L'\r';
        break;
      case L't':
        character = L'\t';
        break;
      default:
        // A path typed with single backslashes must not lose them silently.
        fail(L"a string has \\ before a character that needs none; a backslash itself is \\\\", line_);
      }
    }
    content += character;
  }
  fail(L"the string that begins here has no closing quote", firstLine);
}

std::wstring_view Reader::readToken() {
  const std::size_t start = position_;
  while (position_ < text_.size() && !endsToken(text_[position_])) {
    ++position_;
  }
  return text_.substr(start, position_ - start);
}

Value Reader::valueOf(std::wstring_view token) {
  if (const std::optional<Value> number = parseNumber(token)) return *number;
  Symbol& symbol = symbols_.intern(token);
  if (symbol.name == L"NIL") return {};
  if (symbol.name == L"T") return Value::truth(true);
  return Value::symbol(symbol);
}

void Reader::open(std::vector<OpenForm>& openForms, char prefix) {
  const Place place{fileNumber_, line_};
  openForms.push_back({prefix, place, ListBuilder(place)});
  ++position_;
  if (prefix == '(') return;
  openForms.back().elements.add(Value::symbol(symbols_.intern(prefix == '#' ? L"FUNCTION" : L"QUOTE")));
}

void Reader::placeDot(std::vector<OpenForm>& openForms) const {
  const bool isAllowed = !openForms.empty() && openForms.back().prefix == '(' &&
                         !openForms.back().elements.isEmpty() &&
                         openForms.back().tail == OpenForm::Tail::none;
  if (!isAllowed) fail(L"unexpected dot", line_);
  openForms.back().tail = OpenForm::Tail::afterDot;
}

Value Reader::close(std::vector<OpenForm>& openForms) const {
  if (openForms.empty()) fail(L"a ) without a (", line_);
  OpenForm& form = openForms.back();
  if (form.prefix != '(') fail(L"a quote without a datum", form.place.line);
  if (form.tail == OpenForm::Tail::afterDot) fail(L"a pair without a datum after its dot", line_);
  Value list = form.elements.take();
  openForms.pop_back();
  return list;
}

/// Puts a finished datum into its list; true when it is the whole requested form.
bool Reader::deliver(std::vector<OpenForm>& openForms, Value& datum) const {
  while (!openForms.empty()) {
    OpenForm& form = openForms.back();
    if (form.tail == OpenForm::Tail::complete) fail(L"a pair with more than one datum after its dot", line_);
    if (form.tail == OpenForm::Tail::afterDot) {
      form.elements.setTail(std::move(datum));
      form.tail = OpenForm::Tail::complete;
      return false;
    }
    form.elements.add(std::move(datum));
    if (form.prefix == '(') return false;
    datum = form.elements.take();
    openForms.pop_back();
  }
  return true;
}

void Reader::failAtEnd(const std::vector<OpenForm>& openForms) const {
  if (openForms.back().prefix != '(') fail(L"a quote without a datum", openForms.back().place.line);
  // The outermost list is the definition that was being written; the inner ones are a consequence.
  std::wstring message = L"the ( here has no )";
  if (openForms.size() > 1) {
    message += L"; lists still open at the end of the text: " +
               brenvolt::formatInt(static_cast<std::int64_t>(openForms.size()));
  }
  fail(std::move(message), openForms.front().place.line);
}

void Reader::fail(std::wstring message, std::uint32_t line) const {
  throw LispError(LispError::Cause::syntax, std::move(message), fileName_, line, {});
}

std::optional<Value> parseNumber(std::wstring_view word) {
  const std::size_t start = !word.empty() && (word[0] == L'-' || word[0] == L'+') ? 1 : 0;
  std::size_t end = skipDigits(word, start);
  std::size_t digitCount = end - start;
  bool isReal = false;
  if (end < word.size() && word[end] == L'.') {
    const std::size_t fraction = skipDigits(word, end + 1);
    digitCount += fraction - (end + 1);
    end = fraction;
    isReal = true;
  }
  if (digitCount == 0) return std::nullopt;
  if (end < word.size() && (word[end] == L'e' || word[end] == L'E')) {
    std::size_t exponent = end + 1;
    if (exponent < word.size() && (word[exponent] == L'-' || word[exponent] == L'+')) ++exponent;
    const std::size_t exponentEnd = skipDigits(word, exponent);
    if (exponentEnd == exponent) return std::nullopt;
    end = exponentEnd;
    isReal = true;
  }
  if (end != word.size()) return std::nullopt;
  if (!isReal) {
    if (const std::optional<std::int32_t> number = toInteger(word)) return Value::integer(*number);
  }
  return Value::real(brenvolt::toDouble(word));
}

} // namespace simhost::lisp
