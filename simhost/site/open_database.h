// Databases, Access files and workbooks by their file name.
#pragma once

#include "platform/tables.h"

#include <string>

namespace simhost {

/// Opens a database for reading only, or for writing too. Throws BadInput.
enum class DatabaseUse { read, readAndWrite };
void openDatabase(brenvolt::ZanOleDbConnection& connection, const std::string& file, DatabaseUse use);

} // namespace simhost
