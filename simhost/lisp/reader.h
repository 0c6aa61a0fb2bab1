// LISP text to forms. A text is untrusted: for any content the result is a form or an error with file and
// line.
#pragma once

#include "simhost/lisp/symbol.h"
#include "simhost/lisp/value.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace simhost::lisp {

/// Reads one text form by form; text and symbols must outlive the reader.
class Reader final {
public:
  /// `fileName` is for messages; `fileNumber` is stored in the places of the lists that are read.
  Reader(SymbolTable& symbols, std::wstring_view text, std::wstring fileName, std::uint32_t fileNumber);

  /// The next form, nothing at the end of the text. Throws LispError (syntax).
  [[nodiscard]] std::optional<Value> next();

private:
  struct OpenForm;

  void skipBlanksAndComments();
  [[nodiscard]] Value readString();
  [[nodiscard]] std::wstring_view readToken();
  [[nodiscard]] Value valueOf(std::wstring_view token);
  void open(std::vector<OpenForm>& openForms, char prefix);
  void placeDot(std::vector<OpenForm>& openForms) const;
  [[nodiscard]] Value close(std::vector<OpenForm>& openForms) const;
  [[nodiscard]] bool deliver(std::vector<OpenForm>& openForms, Value& datum) const;
  [[noreturn]] void failAtEnd(const std::vector<OpenForm>& openForms) const;
  [[noreturn]] void fail(std::wstring message, std::uint32_t line) const;

  SymbolTable& symbols_;
  std::wstring_view text_;
  std::wstring fileName_;
  std::uint32_t fileNumber_;
  std::size_t position_ = 0;
  std::uint32_t line_ = 1;
};

/// The integer or real of a whole word: sign, digits, point, exponent. An integer beyond 32 bits is a real; anything
/// else (1.2.3, -, 1+) is not a number.
[[nodiscard]] std::optional<Value> parseNumber(std::wstring_view word);

} // namespace simhost::lisp
