// The base of every service on the engineering database: it works on a connection that a dialog lends, or opens one
// of its own on the file that the parent product names.
#pragma once

#include "data/table_names.h"
#include "platform/tables.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace brenvolt {

/// The path of the engineering database's file from the parent product; nothing when its result is not a text.
[[nodiscard]] std::optional<std::wstring> findEngineeringDatabase();
/// Opens the database of a file. False when it cannot be opened: `connection.ErrorInfo()` says why, and its observer
/// learns of it.
[[nodiscard]] bool openEngineeringDatabase(ZanOleDbConnection& connection, std::wstring_view file);
/// Opens the engineering database; the parent product's function "(c:zan_bv_figure_mccdb_fnam)" names the file. False
/// when the result is not a text or the file cannot be opened (see `connection.ErrorInfo()` then).
[[nodiscard]] bool openEngineeringDatabase(ZanOleDbConnection& connection);

class ZanDbBaseService {
public:
  /// A borrowed connection is never closed here; null is allowed.
  explicit ZanDbBaseService(ZanOleDbConnection* connection = nullptr);
  ZanDbBaseService(const ZanDbBaseService&) = delete;
  ZanDbBaseService& operator=(const ZanDbBaseService&) = delete;
  virtual ~ZanDbBaseService();

  /// Closes a connection of its own and works on this one from now on.
  virtual void SetConnection(ZanOleDbConnection* connection);
  /// Opens a connection of its own unless it has one. On a failure the former connection stays.
  [[nodiscard]] bool Open(TableObserver* observer = nullptr);
  [[nodiscard]] bool CheckTables(
      std::wstring_view metal, std::wstring_view standard, std::wstring_view code, std::wstring& dataSource,
      MissingTables& missing, unsigned mask) const;
  [[nodiscard]] ZanOleDbConnection* connection() const { return connection_; }
  [[nodiscard]] bool isConnected() const { return connection_ != nullptr && connection_->IsConnected(); }
  [[nodiscard]] const ZanDbReaderUtils& utils() const { return utils_; }

private:
  ZanOleDbConnection* connection_;
  ZanDbReaderUtils utils_;
  std::unique_ptr<ZanOleDbConnection> own_;
};

} // namespace brenvolt
