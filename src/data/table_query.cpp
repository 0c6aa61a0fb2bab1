#include "data/table_query.h"

#include "platform/statement_text.h"
#include "text/encoding.h"

#include <cstddef>

namespace brenvolt {

TableQuery::TableQuery(ZanOleDbConnection* connection) : connection_(connection) {}

bool TableQuery::run(std::wstring_view statement, const std::vector<std::wstring>& values) {
  error_.clear();
  if (!connection_ || !connection_->IsConnected()) {
    error_ = L"no database is open";
    return false;
  }
  const StatementText built = buildStatement(statement, values);
  if (!built.isBuilt()) {
    error_ = built.error;
    return false;
  }
  command_.Close();
  command_.SetConnection(connection_);
  command_.SetCommandText(built.text);
  if (command_.Execute() == dbStatus::success) return true;
  error_ = command_.ErrorInfo().GetErrorInfo(false);
  return false;
}

std::wstring TableQuery::text(int column) const {
  std::vector<std::byte> bytes;
  if (!command_.IsBlob(column) || !command_.GetBlobData(column, bytes)) return command_.FieldAsString(column);
  return fromUtf16Le({reinterpret_cast<const char*>(bytes.data()), bytes.size()});
}

bool TableQuery::next() {
  return command_.FetchNext() == dbStatus::success;
}

bool TableQuery::runForRow(std::wstring_view statement, const std::vector<std::wstring>& values) {
  return run(statement, values) && next();
}

} // namespace brenvolt
