// The file dialog of the wire report: keeps name and file type together, and asks what becomes of a file that exists.
#pragma once

#include "flows/wire_report_file.h"
#include "host/host_api_ui.h"

#include <string>

namespace brenvolt {

class ZanBVSaveAsFileDlg final : public CKvUiFileDialog {
public:
  /// @param place what the dialog proposes; without a file name that of the first export
  /// @param parent the window of the lookup; also the one that the question about an existing file stands over
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
