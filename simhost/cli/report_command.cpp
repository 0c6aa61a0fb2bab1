// `brenvolt report`: the lists of a set, made from its drawings.
#include "circuits/reports/drawing_reports.h"
#include "circuits/reports/report_files.h"
#include "simhost/cli/subcommand.h"
#include "simhost/cli/table_output.h"
#include "simhost/drawing/drawing_file.h"
#include "simhost/host/errors.h"
#include "simhost/host/files.h"
#include "simhost/site/site_run.h"
#include "text/encoding.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace simhost {

namespace {

using brenvolt::fromUtf8;
using brenvolt::toUtf8;
using circuits::Report;
using circuits::ReportFormat;

struct ReportOptions {
  std::string kind;
  std::vector<std::string> drawings;
  std::string format;
  std::string site;
  std::string out;
};

/// Columns and order of the site's own lists: {"parts": {"columns": [...], "sort": [...]}, ...}.
circuits::ReportLayout layoutOf(const std::string& site, const std::string& kind) {
  circuits::ReportLayout layout;
  const std::filesystem::path file = std::filesystem::path(site) / "reports.json";
  std::error_code error;
  if (site.empty() || !std::filesystem::exists(file, error)) return layout;
  const nlohmann::json all = nlohmann::json::parse(readInput(file.string()), nullptr, false);
  if (!all.is_object()) throw BadInput(file.string() + ": must be a JSON object of reports by kind");
  if (!all.contains(kind)) return layout;
  const auto take = [&](const char* name, std::vector<std::string>& words) {
    if (!all[kind].is_object()) throw BadInput(file.string() + ": \"" + kind + "\" must be an object");
    if (!all[kind].contains(name)) return;
    for (const nlohmann::json& word : all[kind][name]) {
      if (!word.is_string())
        throw BadInput(file.string() + ": \"" + kind + "\", \"" + name + "\" must be a list of column names");
      words.push_back(word.get<std::string>());
    }
  };
  take("columns", layout.columns);
  take("sort", layout.sort);
  return layout;
}

/// Of each drawing only the rows are kept.
circuits::SheetLists readLists(const std::vector<std::string>& drawings) {
  circuits::SheetLists lists;
  for (const std::string& file : drawings) {
    const LoadedDrawing loaded = loadDrawing(fromUtf8(file));
    if (loaded.drawing == nullptr) throw BadInput(toUtf8(loaded.error));
    lists.add(circuits::SheetLists::rowsOf(
        circuits::readSheet(*loaded.drawing, fromUtf8(std::filesystem::path(file).stem().string()))));
  }
  return lists;
}

std::string shownText(const Report& report) {
  OutputTable table;
  for (const circuits::ReportColumn& column : report.columns)
    table.columns.push_back(
        {column.key, toUtf8(column.title), column.isNumber ? ColumnKind::number : ColumnKind::text});
  for (const auto& row : report.rows)
    table.rows.emplace_back(row.begin(), row.end());
  return formatTable(table, OutputForm::text);
}

ExitCode runReport(const ReportOptions& options) {
  const auto kind = circuits::reportKindOf(options.kind);
  if (!kind) throw BadInput("KIND: \"" + options.kind + "\" is not a kind of report");
  if (options.format == "xls" && options.out.empty())
    throw BadInput("--format: xls needs --out with the name of the workbook");
  const circuits::ReportLayout layout = layoutOf(options.site, options.kind);
  Report report = readLists(options.drawings).report(*kind);
  if (const auto fault = circuits::applyLayout(report, layout))
    throw BadInput(options.site + "/reports.json: " + options.kind + ": " + *fault);
  for (const circuits::ReportNote& note : report.notes)
    std::fprintf(stderr, "brenvolt: %s: %s\n", options.kind.c_str(), toUtf8(note.text).c_str());
  if (options.format == "xls") {
    if (const auto fault = circuits::writeWorkbook(report, fromUtf8(options.out)))
      throw CannotWrite(toUtf8(*fault));
    return ExitCode::done;
  }
  const std::string text = options.format == "csv"    ? circuits::reportText(report, ReportFormat::csv)
                           : options.format == "json" ? circuits::reportText(report, ReportFormat::json)
                           : options.format == "html" ? circuits::reportText(report, ReportFormat::html)
                                                      : shownText(report);
  if (options.out.empty()) {
    printOut(text);
  } else if (const std::string reason = replaceFile(options.out, text); !reason.empty()) {
    throw CannotWrite(reason);
  }
  return ExitCode::done;
}

} // namespace

CommandTable reportCommand() {
  auto options = std::make_shared<ReportOptions>();
  return {
      .name = "report",
      .description = "list parts, wires, terminals, motors, cables or sheets of drawings",
      .options =
          {{"KIND",
            &options->kind,
            "Kind of list",
            "KIND",
            {.isRequired = true, .choices = circuits::reportKinds()}},
           {"DRAWING",
            &options->drawings,
            "The drawings, in the order of the set",
            "FILE",
            {.isRequired = true}},
           {"--format",
            &options->format,
            "Write this format instead of columns",
            "FORMAT",
            {.choices = {"csv", "json", "html", "xls"}}},
           {"--site",
            &options->site,
            "Folder of the site: its reports.json defines columns and order",
            "DIR",
            {.path = OptionRules::Path::existingFolder}},
           {"--out", &options->out, "Write to this file instead of the screen", "FILE"}},
      .examples =
          {"brenvolt report parts motor.json",
           "brenvolt report wires motor.json --format csv --out wires.csv"},
      .page = "tool.md",
      .run = [options] { return runReport(*options); },
  };
}

} // namespace simhost
