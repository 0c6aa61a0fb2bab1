// `brenvolt workbook unpack|pack`: a workbook as one CSV file a sheet and back, so that changes to it can be reviewed
// line by line.
#include "platform/workbook_book.h"
#include "platform/xls_reader.h"
#include "simhost/cli/csv_text.h"
#include "simhost/cli/subcommand.h"
#include "simhost/host/errors.h"
#include "simhost/host/files.h"
#include "text/encoding.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace simhost {

namespace {

using brenvolt::fromUtf8;
using brenvolt::toUtf8;
namespace fs = std::filesystem;

struct WorkbookOptions {
  std::string workbook;
  std::string folder;
};

/// The first sheets, in this order; the others follow by name.
constexpr std::array<std::wstring_view, 2> firstSheets = {L"ZAN_CIRCS", L"ANNO_CODE"};

/// A sheet's name is its file's name, so a name that would leave the folder is refused.
void checkFileName(const std::wstring& sheet, const std::string& workbook) {
  if (sheet.empty() || sheet.find_first_of(L"/\\:") != std::wstring::npos || sheet.front() == L'.')
    throw BadInput(workbook + ": sheet \"" + toUtf8(sheet) + "\" cannot be a file name");
}

std::string sheetAsCsv(const brenvolt::WorkbookSheet& sheet) {
  std::string text;
  for (std::size_t row = 0; row < sheet.rowCount(); ++row) {
    std::vector<std::string> fields;
    for (std::size_t column = 0; column < sheet.columnCount(); ++column)
      fields.push_back(toUtf8(sheet.text(row, column)));
    text += csvLine(fields);
  }
  return text;
}

ExitCode unpack(const WorkbookOptions& options) {
  brenvolt::WorkbookReader reader;
  if (!reader.open(fromUtf8(options.workbook))) throw BadInput(toUtf8(reader.error()));
  for (const brenvolt::WorkbookSheetInfo& info : reader.sheets())
    checkFileName(info.name, options.workbook);
  for (std::size_t i = 0; i < reader.sheets().size(); ++i) {
    const std::optional<brenvolt::WorkbookSheet> sheet = reader.readSheet(i);
    if (!sheet) throw BadInput(toUtf8(reader.error()));
    const fs::path file = fs::path(options.folder) / (toUtf8(reader.sheets()[i].name) + ".csv");
    if (const std::string reason = replaceFile(file, sheetAsCsv(*sheet)); !reason.empty())
      throw CannotWrite(reason);
    std::printf("%s: %zu rows\n", file.string().c_str(), sheet->rowCount());
  }
  return ExitCode::done;
}

std::vector<fs::path> csvFiles(const std::string& folder) {
  std::vector<fs::path> files;
  std::error_code error;
  for (fs::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error))
    if (entry->path().extension() == ".csv") files.push_back(entry->path());
  if (error) throw BadInput(folder + ": " + error.message());
  if (files.empty()) throw BadInput(folder + ": contains no CSV file");
  const auto rank = [](const fs::path& file) {
    const std::wstring name = fromUtf8(file.stem().string());
    return std::find(firstSheets.begin(), firstSheets.end(), name) - firstSheets.begin();
  };
  std::sort(files.begin(), files.end(), [&rank](const fs::path& left, const fs::path& right) {
    return std::pair(rank(left), left.filename()) < std::pair(rank(right), right.filename());
  });
  return files;
}

brenvolt::BookSheet sheetOfFile(const fs::path& file) {
  const std::optional<std::string> text = readFile(file);
  if (!text) throw BadInput(file.string() + ": cannot be read");
  if (!brenvolt::fromUtf8Strict(*text)) throw BadInput(file.string() + ": is not UTF-8");
  brenvolt::BookSheet sheet;
  sheet.name = fromUtf8(file.stem().string());
  sheet.header = brenvolt::BookSheet::Header::boldAndFrozen;
  for (const CsvRecord& record : parseCsv(*text, file.string())) {
    // Every cell is a text: a number format must not change what a form or an option code looks like.
    brenvolt::BookRow& row = sheet.rows.emplace_back();
    for (const std::string& field : record.fields)
      row.emplace_back(fromUtf8(field));
  }
  return sheet;
}

ExitCode pack(const WorkbookOptions& options) {
  std::vector<brenvolt::BookSheet> sheets;
  for (const fs::path& file : csvFiles(options.folder))
    sheets.push_back(sheetOfFile(file));
  std::wstring problem;
  const std::optional<std::string> bytes = brenvolt::buildWorkbook(sheets, problem);
  if (!bytes) throw BadInput(options.folder + ": " + toUtf8(problem));
  if (const std::string reason = replaceFile(options.workbook, *bytes); !reason.empty())
    throw CannotWrite(reason);
  std::printf("%s: %zu sheets\n", options.workbook.c_str(), sheets.size());
  return ExitCode::done;
}

} // namespace

CommandTable workbookCommand() {
  auto options = std::make_shared<WorkbookOptions>();
  const OptionRow file = {"FILE.xls", &options->workbook, {}, {}, {.isRequired = true}};
  const OptionRow folder = {"DIR", &options->folder, {}, {}, {.isRequired = true}};
  return {
      .name = "workbook",
      .description = "convert a workbook to CSV files and back",
      .commands =
          {{.name = "unpack",
            .description = "write one CSV file for each sheet of FILE.xls",
            .options = {file, folder},
            .run = [options] { return unpack(*options); }},
           {.name = "pack",
            .description = "create FILE.xls from the CSV files of a folder",
            .options = {folder, file},
            .run = [options] { return pack(*options); }}},
      .footer = "All cells are texts. Sheet ZAN_CIRCS comes first, then ANNO_CODE, then the others by name.",
      .examples =
          {"brenvolt workbook unpack site/zan_brenvolt.xls sheets",
           "brenvolt workbook pack site/workbook packed.xls"},
      .page = "workbook.md",
  };
}

} // namespace simhost
