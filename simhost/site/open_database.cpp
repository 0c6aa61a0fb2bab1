// Opens a data source with the engine of its file.
#include "simhost/site/open_database.h"

#include "simhost/host/errors.h"
#include "text/encoding.h"

namespace simhost {

using brenvolt::fromUtf8;
using brenvolt::toUtf8;

void openDatabase(brenvolt::ZanOleDbConnection& connection, const std::string& file, DatabaseUse use) {
  const std::wstring init = brenvolt::ZanOleDbHelper::FormatConnectString(
      fromUtf8(file), L"", use == DatabaseUse::read ? L"Mode=Read" : L"");
  if (connection.OpenFromInitializationString(init, false, true) < 0)
    throw BadInput(toUtf8(connection.ErrorInfo().GetErrorInfo(false)));
}

} // namespace simhost
