#include "widgets/text_list.h"

namespace brenvolt {

bool selectText(KvUiList& list, std::wstring_view text) {
  for (int index = 0; index < list.Count(); ++index)
    if (list.TextAt(index) == text) {
      list.Select(index);
      return true;
    }
  return false;
}

void fillTextList(
    KvUiList& list, const std::vector<std::wstring>& texts, std::wstring_view selection,
    AbsentSelection absent) {
  list.Clear();
  for (const std::wstring& text : texts)
    list.Insert(-1, text, 0);
  if (!selection.empty()) {
    if (selectText(list, selection)) return;
    if (absent == AbsentSelection::addAtTop) list.Insert(0, selection, 0);
  }
  list.Select(list.Count() > 0 ? 0 : -1);
}

} // namespace brenvolt
