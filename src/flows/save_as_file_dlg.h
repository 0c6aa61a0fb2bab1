// The file dialog of the wire report: keeps name and file type consistent, and asks about an existing file.
#pragma once

#include "flows/wire_report_file.h"
#include "host/host_api_ui.h"

#include <string>

namespace brenvolt {

class ZanBVSaveAsFileDlg final : public CKvUiFileDialog {
public:
  /// @param place the proposed file; without a file name that of the first export
  /// @param parent the window of the lookup, which also owns the question about an existing file
  ZanBVSaveAsFileDlg(const ReportPlace& place, KvWindow* parent);

  /// Behind OK: the full path, with an extension.
  [[nodiscard]] const std::wstring& path() const { return path_; }
  [[nodiscard]] ReportMode mode() const { return mode_; }

protected:
  bool OnFileNameOK() override;
  void OnTypeChange() override;

private:
  [[nodiscard]] std::wstring typeExtension() const;

  KvWindow* parent_;
  std::wstring path_;
  ReportMode mode_ = ReportMode::replace;
};

} // namespace brenvolt
