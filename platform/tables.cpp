#include "platform/tables.h"

#include "platform/connect_string.h"
#include "platform/statement_log.h"
#include "platform/table_engine.h"
#include "platform/table_value.h"

#include "text/compare.h"
#include "text/encoding.h"
#include "text/split.h"

#include <algorithm>
#include <utility>

namespace brenvolt {

namespace {

tables::Access wantedAccess(std::wstring_view init, bool shared) {
  if (equalsOrdinalNoCase(tables::connectValue(init, L"Mode"), L"Read")) return tables::Access::read;
  return shared ? tables::Access::readWrite : tables::Access::exclusive;
}

} // namespace

std::wstring ZanOleDbErrorInfo::GetErrorInfo(bool clear) {
  return clear ? std::exchange(message_, {}) : message_;
}

std::wstring ZanOleDbHelper::FormatConnectString(
    std::wstring_view dataSource, std::wstring_view provider, std::wstring_view extendedProperties) {
  std::wstring init =
      L"Provider=" + tables::connectQuoted(provider) + L";Data Source=" + tables::connectQuoted(dataSource);
  if (!extendedProperties.empty()) init += L";" + std::wstring(extendedProperties);
  return init;
}

struct ZanOleDbConnection::State {
  std::unique_ptr<tables::Engine> engine;
  std::wstring dataSource;
  ZanOleDbErrorInfo error;
};

ZanOleDbConnection::ZanOleDbConnection(TableObserver* observer)
    : state_(std::make_unique<State>()), observer_(observer) {}

ZanOleDbConnection::~ZanOleDbConnection() = default;

int ZanOleDbConnection::OpenFromInitializationString(std::wstring_view init, bool, bool shared) {
  constexpr int opened = 0;
  constexpr int failed = -1;
  Close();
  state_->error.Clear();
  const std::wstring dataSource = tables::connectValue(init, L"Data Source");
  if (dataSource.empty()) {
    state_->error.Set(L"the initialisation string names no data source");
    return failed;
  }
  const std::wstring extended = tables::connectValue(init, L"Extended Properties");
  const bool delimitedText = equalsOrdinalNoCase(extended.substr(0, 5), L"text;");
  state_->engine = tables::openEngine(dataSource, wantedAccess(init, shared), delimitedText, state_->error);
  if (!state_->engine) {
    if (tables::isServer(dataSource)) state_->error.SetConnectionLost(state_->error.GetErrorInfo(true));
    return failed;
  }
  state_->dataSource = dataSource;
  return opened;
}

bool ZanOleDbConnection::IsConnected() const {
  return state_->engine != nullptr;
}

void ZanOleDbConnection::Close() {
  state_->engine.reset();
  state_->dataSource.clear();
}

bool ZanOleDbConnection::GetDatasource(std::wstring& path) const {
  if (!IsConnected()) return false;
  path = tables::shownDataSource(state_->dataSource);
  return true;
}

ZanOleDbErrorInfo& ZanOleDbConnection::ErrorInfo() {
  return state_->error;
}

std::unique_ptr<tables::Statement> ZanOleDbConnection::run(
    const std::wstring& statement, ZanOleDbErrorInfo& error) const {
  if (!state_->engine) {
    error.Set(L"the connection is not open");
    return nullptr;
  }
  tables::logStatement(state_->dataSource, statement);
  return state_->engine->execute(statement, error);
}

tables::Engine* ZanOleDbConnection::engine() const {
  return state_->engine.get();
}

ZanOleDbCommand::ZanOleDbCommand() = default;

ZanOleDbCommand::~ZanOleDbCommand() = default;

void ZanOleDbCommand::SetConnection(ZanOleDbConnection* connection) {
  Close();
  connection_ = connection;
}

ZanOleDbConnection* ZanOleDbCommand::GetConnection() const {
  return connection_;
}

void ZanOleDbCommand::SetCommandText(std::wstring_view text) {
  Close();
  text_ = text;
}

dbStatus ZanOleDbCommand::Execute() {
  Close();
  error_.Clear();
  if (connection_ == nullptr) {
    error_.Set(L"the connection is not open");
    return dbStatus::failure;
  }
  statement_ = connection_->run(text_, error_);
  return statement_ ? dbStatus::success : dbStatus::failure;
}

dbStatus ZanOleDbCommand::FetchNext() {
  return statement_ ? statement_->fetchNext(error_) : dbStatus::failure;
}

void ZanOleDbCommand::Close() {
  statement_.reset();
}

int ZanOleDbCommand::GetColumnCount() const {
  return statement_ ? statement_->columnCount() : 0;
}

bool ZanOleDbCommand::hasColumn(int column) const {
  return column >= 1 && column <= GetColumnCount();
}

std::wstring ZanOleDbCommand::GetColumnName(int column) const {
  return hasColumn(column) ? statement_->columnName(column) : std::wstring();
}

std::wstring ZanOleDbCommand::FieldAsString(int column) const {
  return hasColumn(column) ? statement_->text(column) : std::wstring();
}

double ZanOleDbCommand::FieldAsDouble(int column) const {
  return hasColumn(column) ? statement_->number(column) : 0.0;
}

std::optional<double> ZanOleDbCommand::FieldAsFigure(int column) const {
  if (IsNull(column)) return std::nullopt;
  if (statement_->isNumber(column)) return statement_->number(column);
  const tables::TableValue number = tables::TableValue::ofNumber(toUtf8(trim(statement_->text(column))));
  if (number.kind == tables::TableValue::Kind::null) return std::nullopt;
  return tables::valueNumber(number);
}

bool ZanOleDbCommand::IsNumber(int column) const {
  return hasColumn(column) && statement_->isNumber(column);
}

bool ZanOleDbCommand::IsNull(int column) const {
  return !hasColumn(column) || statement_->isNull(column);
}

bool ZanOleDbCommand::IsBlob(int column) const {
  return hasColumn(column) && statement_->isBlob(column);
}

bool ZanOleDbCommand::GetBlobData(int column, std::vector<std::byte>& buffer) const {
  if (!IsBlob(column)) return false;
  buffer = statement_->blob(column);
  return true;
}

bool ZanOleDbTables::Open(ZanOleDbConnection& connection, std::wstring_view type) {
  Close();
  tables::Engine* engine = connection.engine();
  if (engine == nullptr || !equalsOrdinalNoCase(type, L"TABLE")) return false;
  if (!engine->tableNames(names_, connection.ErrorInfo())) return false;
  std::sort(names_.begin(), names_.end(), [](const std::wstring& left, const std::wstring& right) {
    const int order = compareOrdinalNoCase(left, right);
    return order != 0 ? order < 0 : left < right;
  });
  return true;
}

void ZanOleDbTables::GetTableList(std::vector<std::wstring>& names) {
  names.assign(names_.begin() + static_cast<std::ptrdiff_t>(next_), names_.end());
  next_ = names_.size();
}

bool ZanOleDbTables::FetchNext() {
  if (next_ >= names_.size()) return false;
  ++next_;
  return true;
}

bool ZanOleDbTables::GetName(std::wstring& name) const {
  if (next_ == 0) return false;
  name = names_[next_ - 1];
  return true;
}

void ZanOleDbTables::Close() {
  names_.clear();
  next_ = 0;
}

bool ZanOleDbColumns::Open(ZanOleDbConnection& connection, std::wstring_view table) {
  Close();
  tables::Engine* engine = connection.engine();
  std::vector<std::wstring> known;
  if (engine == nullptr || !engine->tableNames(known, connection.ErrorInfo())) return false;
  const auto found = std::find_if(
      known.begin(), known.end(), [&](const std::wstring& name) { return equalsOrdinalNoCase(name, table); });
  if (found == known.end()) {
    connection.ErrorInfo().Set(L"no such table: " + std::wstring(table));
    return false;
  }
  return engine->columnNames(*found, names_, connection.ErrorInfo());
}

bool ZanOleDbColumns::FetchNext() {
  if (next_ >= names_.size()) return false;
  ++next_;
  return true;
}

bool ZanOleDbColumns::GetName(std::wstring& name) const {
  if (next_ == 0) return false;
  name = names_[next_ - 1];
  return true;
}

int ZanOleDbColumns::OrdinalPosition() const {
  return static_cast<int>(next_);
}

void ZanOleDbColumns::Close() {
  names_.clear();
  next_ = 0;
}

void ZanOleDbRecordset::Close() {
  ZanOleDbCommand::Close();
  own_.Close();
}

// One kind of file recordset exists; its two numbers are how callers ask for it.
ZanOleDbFileRecordset::ZanOleDbFileRecordset(ConnectType, FileType, TableObserver* observer)
    : ZanOleDbRecordset(observer) {}

bool ZanOleDbFileRecordset::Open(std::wstring_view filePath) {
  Close();
  const std::wstring init = ZanOleDbHelper::FormatConnectString(filePath, L"File", L"Mode=Read");
  SetConnection(&own_);
  if (own_.OpenFromInitializationString(init, false, true) >= 0) return true;
  ErrorInfo() = own_.ErrorInfo();
  return false;
}

TableTransaction::TableTransaction(ZanOleDbConnection& connection) : connection_(connection) {
  tables::Engine* engine = connection.engine();
  open_ = engine != nullptr && engine->begin(connection.ErrorInfo());
}

TableTransaction::~TableTransaction() {
  if (open_ && connection_.engine() != nullptr) connection_.engine()->rollback();
}

TableReading::TableReading(ZanOleDbConnection& connection) : connection_(connection) {
  if (tables::Engine* engine = connection.engine()) engine->beginReading();
}

TableReading::~TableReading() {
  if (tables::Engine* engine = connection_.engine()) engine->endReading();
}

bool TableTransaction::commit() {
  if (!open_ || connection_.engine() == nullptr) return false;
  if (!connection_.engine()->commit(connection_.ErrorInfo())) return false;
  open_ = false;
  return true;
}

} // namespace brenvolt
