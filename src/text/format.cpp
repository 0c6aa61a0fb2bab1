#include "text/format.h"

#include "text/numbers.h"

#include <algorithm>
#include <optional>

namespace brenvolt {
namespace {

/// A width or precision beyond this comes from a damaged text and would only fill memory.
constexpr int mostColumns = 1024;

struct Placeholder {
  bool leftAligned = false;
  bool zeroFilled = false;
  int width = 0;
  std::optional<int> precision;
  wchar_t letter = 0;
  std::size_t length = 0; ///< of its text in the format, "%" included
};

int readColumns(std::wstring_view format, std::size_t& position) {
  int columns = 0;
  for (; position < format.size() && format[position] >= L'0' && format[position] <= L'9'; ++position) {
    columns = std::min(columns * 10 + static_cast<int>(format[position] - L'0'), mostColumns);
  }
  return columns;
}

/// The placeholder at the start of `format`, which begins with "%". Nothing when the text ends before its letter.
std::optional<Placeholder> readPlaceholder(std::wstring_view format) {
  Placeholder result;
  std::size_t position = 1;
  for (; position < format.size(); ++position) {
    if (format[position] == L'-') {
      result.leftAligned = true;
    } else if (format[position] == L'0') {
      result.zeroFilled = true;
    } else {
      break;
    }
  }
  result.width = readColumns(format, position);
  if (position < format.size() && format[position] == L'.') {
    ++position;
    result.precision = readColumns(format, position);
  }
  if (position == format.size()) return std::nullopt;
  result.letter = format[position];
  result.length = position + 1;
  return result;
}

std::wstring padded(std::wstring text, const Placeholder& placeholder, bool isNumber) {
  const auto width = static_cast<std::size_t>(placeholder.width);
  if (text.size() >= width) return text;
  const std::size_t missing = width - text.size();
  if (placeholder.leftAligned) return text.append(missing, L' ');
  if (!isNumber || !placeholder.zeroFilled) return text.insert(0, missing, L' ');
  return text.insert(text.starts_with(L'-') ? 1 : 0, missing, L'0');
}

std::wstring integerText(std::int64_t value, const Placeholder& placeholder) {
  std::wstring text = formatInt(value);
  const std::size_t signs = value < 0 ? 1 : 0;
  const auto digits = static_cast<std::size_t>(placeholder.precision.value_or(0));
  if (text.size() - signs < digits) text.insert(signs, digits + signs - text.size(), L'0');
  return text;
}

/// The text for one argument; nothing when the placeholder needs another kind.
std::optional<std::wstring> fill(const Placeholder& placeholder, const FormatArgument& argument) {
  if (const auto* text = std::get_if<std::wstring_view>(&argument); text && placeholder.letter == L's') {
    const auto most = static_cast<std::size_t>(placeholder.precision.value_or(0));
    return padded(std::wstring(placeholder.precision ? text->substr(0, most) : *text), placeholder, false);
  }
  if (const auto* integer = std::get_if<std::int64_t>(&argument); integer && placeholder.letter == L'd') {
    return padded(integerText(*integer, placeholder), placeholder, true);
  }
  if (const auto* real = std::get_if<double>(&argument); real && placeholder.letter == L'f') {
    return padded(formatFixed(*real, placeholder.precision.value_or(6)), placeholder, true);
  }
  return std::nullopt;
}

bool takesArgument(wchar_t letter) {
  return letter == L's' || letter == L'd' || letter == L'f';
}

} // namespace

std::wstring formatText(std::wstring_view format, std::initializer_list<FormatArgument> arguments) {
  std::wstring result;
  const FormatArgument* next = arguments.begin();
  while (true) {
    const std::size_t percent = format.find(L'%');
    result += format.substr(0, percent);
    if (percent == std::wstring_view::npos) return result;
    format.remove_prefix(percent);

    const auto placeholder = readPlaceholder(format);
    if (!placeholder) return result.append(format);
    const std::wstring_view asItStands = format.substr(0, placeholder->length);
    if (asItStands == L"%%") {
      result += L'%';
    } else if (takesArgument(placeholder->letter) && next != arguments.end()) {
      result += fill(*placeholder, *next).value_or(std::wstring(asItStands));
      ++next;
    } else {
      // Of an unknown placeholder only the "%" is settled: its letter may be the "%" of the next one.
      result += L'%';
      format.remove_prefix(1);
      continue;
    }
    format.remove_prefix(placeholder->length);
  }
}

} // namespace brenvolt
