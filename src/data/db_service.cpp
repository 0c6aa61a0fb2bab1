#include "data/db_service.h"

#include "host/host_api_documents.h"
#include "host/lisp_calls.h"

namespace brenvolt {

namespace {

constexpr std::wstring_view databaseFileForm = L"(c:zan_bv_figure_mccdb_fnam)";
constexpr std::wstring_view databaseProvider = L"Microsoft.Jet.OLEDB.4.0";
constexpr std::wstring_view databaseProperties = L"Jet OLEDB:Engine Type=5";

} // namespace

std::optional<std::wstring> findEngineeringDatabase() {
  ResultList answer;
  if (evalString(databaseFileForm, answer) != kvstatus::normal) return std::nullopt;
  return ListReader(answer).text();
}

bool openEngineeringDatabase(ZanOleDbConnection& connection, std::wstring_view file) {
  const std::wstring init = ZanOleDbHelper::FormatConnectString(file, databaseProvider, databaseProperties);
  if (connection.OpenFromInitializationString(init, false, true) >= 0) return true;
  const ZanOleDbErrorInfo& error = connection.ErrorInfo();
  if (connection.observer() != nullptr && !file.empty())
    connection.observer()->statementFailed({{}, error.Text(), {}, error.IsConnectionLost()});
  return false;
}

bool openEngineeringDatabase(ZanOleDbConnection& connection) {
  const KvWaitCursor waiting;
  const std::optional<std::wstring> file = findEngineeringDatabase();
  return file && openEngineeringDatabase(connection, *file);
}

ZanDbBaseService::ZanDbBaseService(ZanOleDbConnection* connection)
    : connection_(connection), utils_(connection) {}

ZanDbBaseService::~ZanDbBaseService() = default;

void ZanDbBaseService::SetConnection(ZanOleDbConnection* connection) {
  connection_ = connection;
  utils_.SetConnection(connection);
  own_.reset();
}

bool ZanDbBaseService::Open(TableObserver* observer) {
  if (own_) return true;
  auto own = std::make_unique<ZanOleDbConnection>(observer);
  if (!openEngineeringDatabase(*own)) return false;
  SetConnection(own.get());
  own_ = std::move(own);
  return true;
}

bool ZanDbBaseService::CheckTables(
    std::wstring_view metal, std::wstring_view standard, std::wstring_view code, std::wstring& dataSource,
    MissingTables& missing, unsigned mask) const {
  dataSource.clear();
  if (connection_) connection_->GetDatasource(dataSource);
  return utils_.CheckTables(metal, standard, code, missing, mask);
}

} // namespace brenvolt
