// Opening the configuration workbook for the circuit selection: finding it, and telling the user what is wrong with it.
#pragma once

#include "host/host_api_ui.h"
#include "project/circuit_list.h"

#include <string>

namespace brenvolt {

/// Finds the workbook where the parent product looks; an empty name stands for the default one. A workbook that is not
/// found is told over `parent`, and the path is empty.
[[nodiscard]] std::wstring findWorkbook(const std::wstring& name, KvWindow* parent);

/// Reads the list of circuits of the found workbook. False when somebody else has the workbook open and the user does
/// not want to go on, or when it has no list, which is told.
[[nodiscard]] bool readCircuitList(ZanCircuitCatalog& catalog, KvWindow* parent);

} // namespace brenvolt
