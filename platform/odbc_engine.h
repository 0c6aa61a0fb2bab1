// A server that many designers share, as an engine.
#pragma once

#include "platform/table_engine.h"

#include <memory>
#include <string>

namespace brenvolt::tables {

/// `connectionString` is the part of the data source after "odbc:". Nothing on a failure, with the reason in `error`.
[[nodiscard]] std::unique_ptr<Engine> openOdbcEngine(
    const std::wstring& connectionString, Access access, ZanOleDbErrorInfo& error);

} // namespace brenvolt::tables
