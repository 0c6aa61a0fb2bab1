// Putting the parts of an error into one line.
#include "simhost/lisp/errors.h"

#include "text/encoding.h"
#include "text/numbers.h"

namespace simhost::lisp {

LispError::LispError(Cause cause, std::wstring message, std::wstring file, unsigned line, std::wstring form)
    : cause_(cause), message_(std::move(message)), file_(std::move(file)), line_(line),
      form_(std::move(form)) {
  if (line_ != 0) text_ = file_ + L":" + brenvolt::formatInt(line_) + L": ";
  text_ += message_;
  if (!form_.empty()) text_ += L", in " + form_;
  bytes_ = brenvolt::toUtf8(text_);
}

} // namespace simhost::lisp
