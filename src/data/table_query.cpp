#include "data/table_query.h"

#include "platform/statement_text.h"
#include "text/encoding.h"

#include <cstddef>
#include <utility>

namespace brenvolt {

TableQuery::TableQuery(ZanOleDbConnection* connection, Refusal refusal)
    : connection_(connection), refusal_(refusal) {}

bool TableQuery::run(std::wstring_view statement, const std::vector<std::wstring>& values) {
  error_.clear();
  statement_.clear();
  command_.Close();
  if (!connection_ || !connection_->IsConnected()) {
    error_ = L"no database is open";
    return false;
  }
  const StatementText built = buildStatement(statement, values);
  if (!built.isBuilt()) {
    error_ = built.error;
    return false;
  }
  command_.SetConnection(connection_);
  command_.SetCommandText(built.text);
  statement_ = built.text;
  if (command_.Execute() == dbStatus::success) return true;
  fail();
  return false;
}

void TableQuery::fail() {
  error_ = command_.ErrorInfo().GetErrorInfo(false);
  if (refusal_ == Refusal::fault) noteFault();
}

void TableQuery::noteFault() const {
  note(error_);
}

void TableQuery::note(std::wstring reason) const {
  TableObserver* const observer = connection_->observer();
  if (observer == nullptr) return;
  std::wstring source;
  connection_->GetDatasource(source);
  const bool isLost = command_.ErrorInfo().IsConnectionLost();
  observer->statementFailed({std::move(source), std::move(reason), statement_, isLost});
}

std::optional<double> TableQuery::figure(int column) const {
  const std::optional<double> number = command_.FieldAsFigure(column);
  if (number) return number;
  if (!command_.FieldAsString(column).empty()) noteBadCell(column, L"is not a number");
  return std::nullopt;
}

void TableQuery::noteBadCell(int column, std::wstring_view what) const {
  std::wstring reason = L"column " + columnName(column) + L": \"" + command_.FieldAsString(column) + L"\" ";
  note(reason.append(what));
}

std::wstring TableQuery::text(int column) const {
  std::vector<std::byte> bytes;
  if (!command_.IsBlob(column) || !command_.GetBlobData(column, bytes)) return command_.FieldAsString(column);
  return fromUtf16Le({reinterpret_cast<const char*>(bytes.data()), bytes.size()});
}

bool TableQuery::next() {
  const dbStatus status = command_.FetchNext();
  if (status == dbStatus::failure && error_.empty() && !statement_.empty()) fail();
  return status == dbStatus::success;
}

bool TableQuery::runForRow(std::wstring_view statement, const std::vector<std::wstring>& values) {
  return run(statement, values) && next();
}

} // namespace brenvolt
