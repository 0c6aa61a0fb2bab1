#include "data/wire_defaults.h"

#include "text/numbers.h"
#include "text/plain_number.h"

#include <utility>

namespace brenvolt {

std::wstring rowOrigin(
    std::wstring_view table, std::wstring_view keyColumn, std::wstring_view key, std::wstring_view column) {
  return std::wstring(table)
      .append(L", row ")
      .append(keyColumn)
      .append(L" = ")
      .append(key)
      .append(L", column ")
      .append(column);
}

WireValue WireDefaults::setting(std::wstring_view setting) const {
  if (setting.empty()) return {};
  WireValue value{reader().options().defaultOf(setting), {}};
  if (!value.text.empty())
    value.origin =
        rowOrigin(tables_.table(ZanTableKind::options, code_), L"CODE", setting, optionfield::defaultValue);
  return value;
}

std::vector<std::wstring> WireDefaults::list(std::wstring_view setting) const {
  std::vector<std::wstring> values;
  reader().GetList(setting, values);
  return values;
}

WireValue WireDefaults::textOr(std::wstring_view text, std::wstring_view setting) const {
  return text.empty() ? this->setting(setting) : WireValue{std::wstring(text), std::wstring(givenOrigin)};
}

WireValue WireDefaults::numberOr(double number, std::wstring_view setting) const {
  return textOr(isGiven(number) ? formatTrimmed(number) : std::wstring(), setting);
}

double WireDefaults::figureOf(std::wstring_view setting) const {
  const WireValue value = this->setting(setting);
  TableObserver* const observer = tables_.connection().observer();
  if (observer != nullptr && !value.text.empty() && !plainNumber(value.text)) {
    std::wstring source;
    tables_.connection().GetDatasource(source);
    observer->statementFailed({std::move(source), L"\"" + value.text + L"\" is not a number", value.origin});
  }
  return toDouble(value.text);
}

WireValue WireDefaults::valueOf(LookupField field, std::wstring_view text) const {
  const WireDefault row = wireDefaultOf(field);
  WireValue value = textOr(text, row.setting);
  if (value.text.empty() && !row.assumed.empty())
    value = {std::wstring(row.assumed), std::wstring(assumedOrigin)};
  return value;
}

} // namespace brenvolt
