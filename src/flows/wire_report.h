// The report of the wire lookup: its inputs, then the table of sizes.
#pragma once

#include "data/wire_lookup.h"
#include "flows/wire_report_file.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace brenvolt {

/// What the user reads over a column of the table.
[[nodiscard]] std::wstring wireColumnTitle(WireColumn column);

/// What the report takes from the window.
struct WireReportTexts {
  std::wstring title;
  std::optional<std::wstring> circuit; ///< the name, when the lookup was opened out of a configuration
  std::function<std::wstring(LookupField)> tickLabel;
};

[[nodiscard]] std::vector<ReportRow> wireReportRows(const WireLookup& lookup, const WireReportTexts& texts);

} // namespace brenvolt
