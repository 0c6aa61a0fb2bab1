#include "widgets/numeric_list.h"

#include "text/numbers.h"
#include "text/split.h"
#include "widgets/text_list.h"

#include <set>

namespace brenvolt {

void ZanNumericList::fill(const std::vector<std::wstring>& numbers, std::wstring_view selection) {
  std::set<double> sorted;
  for (const std::wstring& number : numbers)
    sorted.insert(toDouble(number));
  std::vector<std::wstring> texts;
  texts.reserve(sorted.size());
  for (const double number : sorted)
    texts.push_back(formatTrimmed(number));
  fillTextList(list_, texts, selection, AbsentSelection::addAtTop);
}

std::wstring ZanNumericList::text() const {
  return trim(list_.Text());
}

double ZanNumericList::value() const {
  return toDouble(list_.Text());
}

void ZanNumericList::setValue(double value) {
  const std::wstring text = formatTrimmed(value);
  for (int index = 0; index < list_.Count(); ++index)
    if (list_.TextAt(index) == text) {
      list_.Select(index);
      return;
    }
  list_.SetText(text);
}

} // namespace brenvolt
