#include "flows/save_as_file_dlg.h"

#include "host/alerts.h"
#include "host/resources.h"
#include "text/encoding.h"

#include <filesystem>
#include <iterator>

namespace brenvolt {

namespace {

constexpr wchar_t firstFileName[] = L"wire_size_lookup_config.xls";
constexpr wchar_t defaultExtension[] = L"xls";
constexpr wchar_t existingFileKey[] = L"ZanBrenvolt.WireSizeLookupSaveAs";
constexpr wchar_t fileNameParameter[] = L"filename";

/// The extensions in the order of the file types.
constexpr std::wstring_view extensions[] = {L".xls", L".csv", L".rep"};

std::wstring fileTypes() {
  return loadText(TextId::fileTypeWorkbook) + L" (*.xls)|*.xls|CSV(" + loadText(TextId::fileTypeCsv) +
         L") (*.csv)|*.csv|ASCII(" + loadText(TextId::fileTypeReport) + L") (*.rep)|*.rep|";
}

std::filesystem::path pathOf(const std::wstring& text) {
  return std::filesystem::path(toUtf8(text));
}

} // namespace

ZanBVSaveAsFileDlg::ZanBVSaveAsFileDlg(const ReportPlace& place, KvWindow* parent)
    : CKvUiFileDialog(
          true, defaultExtension, place.fileName.empty() ? firstFileName : place.fileName.c_str(),
          place.folder.c_str(), fileTypes().c_str(), parent),
      parent_(parent) {}

std::wstring ZanBVSaveAsFileDlg::typeExtension() const {
  const int type = GetFilterIndex();
  const bool isKnown = type >= 1 && static_cast<std::size_t>(type) <= std::size(extensions);
  return std::wstring(extensions[isKnown ? type - 1 : 0]);
}

void ZanBVSaveAsFileDlg::OnTypeChange() {
  const std::filesystem::path name = pathOf(GetFileName());
  SetFileName(fromUtf8(name.stem().string()) + typeExtension());
}

bool ZanBVSaveAsFileDlg::OnFileNameOK() {
  path_ = GetPathName();
  if (!pathOf(path_).has_extension()) path_ += typeExtension();
  mode_ = ReportMode::replace;
  std::error_code error;
  if (!std::filesystem::exists(pathOf(path_), error)) return true;
  const std::optional<int> answer = showTaskDialog(existingFileKey, {{fileNameParameter, path_}}, parent_);
  if (answer == kvui::secondCommand) mode_ = ReportMode::append;
  return !answer || *answer == kvui::firstCommand || *answer == kvui::secondCommand;
}

} // namespace brenvolt
