// Texts on their way between the host and the widgets.
#pragma once

#include <QString>

#include <string>
#include <string_view>

namespace simhost {

[[nodiscard]] inline QString toQt(std::wstring_view text) {
  return QString::fromWCharArray(text.data(), static_cast<qsizetype>(text.size()));
}

/// For captions that read "&" as the mark of a mnemonic.
[[nodiscard]] inline QString toQtPlain(std::wstring_view text) {
  return toQt(text).replace(QLatin1Char('&'), QLatin1String("&&"));
}

[[nodiscard]] inline std::wstring fromQt(const QString& text) {
  return text.toStdWString();
}

} // namespace simhost
