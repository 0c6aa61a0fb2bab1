// The differences between the motor picker and the load picker. Everything else is one flow.
#pragma once

#include "data/rating_tables.h"
#include "flows/rating_selection.h"
#include "host/alerts.h"
#include "host/host_api_database.h"
#include "host/resources.h"

#include <array>
#include <cstddef>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace brenvolt {

/// A text of the selection by column; null for a column that is none (key, current, description).
using RatingText = std::wstring Ratings::*;

struct RatingPickerKind {
  const wchar_t* form;
  const wchar_t* dialogName; ///< also the key of the values that are kept for the user
  const wchar_t* helpTopic;
  /// The service on the picker's table; the connection stays the dialog's.
  std::unique_ptr<RatingTableService> (*makeService)(ZanOleDbConnection*);
  AlertKind missingTable;
  std::vector<RatingText> texts; ///< by column index of the table
  std::size_t flaColumn;
  std::array<std::wstring_view, 3> filterRoles; ///< in the order of the table's filter columns
  TextId firstColumnTitle;                      ///< plus the column index
  TextId pickPrompt;
  std::optional<TextId> title; ///< the form's own where there is none
  std::optional<TextId> typeLabel;

  /// Names of the values kept for the user, by column index; null for a column that is not kept.
  std::span<const wchar_t* const> keptTexts;
  const wchar_t* keptFla;
  const wchar_t* keptMultiplier;
  double absentFla;          ///< where no current was kept
  double fallbackMultiplier; ///< where the one that was kept is not above the tolerance

  bool (*isPicked)(KvDbObjectId);
  /// The ratings that the picked entity carries; nothing when they cannot be read.
  std::optional<RatingSelection> (*readPicked)(KvDbObjectId);
};

[[nodiscard]] const RatingPickerKind& motorPicker();
[[nodiscard]] const RatingPickerKind& loadPicker();

} // namespace brenvolt
