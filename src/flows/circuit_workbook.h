// Opening the configuration workbook for the circuit selection: finds it, and reports its problems to the user.
#pragma once

#include "host/host_api_ui.h"
#include "project/circuit_list.h"

#include <string>

namespace brenvolt {

/// Finds the workbook through the parent product; an empty name means the default one. A missing workbook is reported
/// with `parent` as owner, and the path is empty.
[[nodiscard]] std::wstring findWorkbook(const std::wstring& name, KvWindow* parent);

/// Reads the circuit list of the found workbook. False when another program has the workbook open and the user does
/// not continue, or when it has no list, which is reported.
[[nodiscard]] bool readCircuitList(ZanCircuitCatalog& catalog, KvWindow* parent);

} // namespace brenvolt
