// Filling a list of choices with texts in a given order, and selecting one of them.
#pragma once

#include "host/host_api_ui.h"

#include <string>
#include <string_view>
#include <vector>

namespace brenvolt {

/// What happens to a selection that the list lacks. Where factors belong to the places of a list an added entry would
/// shift them, so there the first entry is selected.
enum class AbsentSelection { addAtTop, selectFirst };

/// Puts the texts into the list in their order and selects one; an empty selection selects the first entry.
void fillTextList(
    KvUiList& list, const std::vector<std::wstring>& texts, std::wstring_view selection,
    AbsentSelection absent);

/// Selects the entry with exactly this text; false, and nothing changed, when there is none.
bool selectText(KvUiList& list, std::wstring_view text);

} // namespace brenvolt
