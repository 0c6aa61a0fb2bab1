// `brenvolt components`: ratings and catalogue choices of a motor's protective components, with the formulas they come
// from.
#include "data/component_sizing.h"
#include "simhost/cli/site_options.h"
#include "simhost/cli/subcommand.h"
#include "simhost/cli/table_output.h"
#include "simhost/host/errors.h"
#include "text/encoding.h"
#include "text/numbers.h"
#include "text/plain_number.h"

#include <cstdio>
#include <memory>

namespace simhost {

using brenvolt::fromUtf8;
using brenvolt::toUtf8;
using brenvolt::ZanTableKind;

namespace {

struct ComponentsOptions {
  SiteOptions site;
  std::string type;
  std::string fla;
  OutputOptions output;
};

/// The code whose component tables are used: the requested one, or its fallback, which the run reports. There is no
/// user to answer the alert that the plug-in would show.
std::wstring servingCode(EngineeringRun& run) {
  const brenvolt::ZanDbReaderUtils utils(&run.connection());
  brenvolt::MissingTables missing;
  if (utils.CheckTables({}, {}, run.standardCode(), missing, brenvolt::tablemask::components))
    return run.standardCode();
  for (const ZanTableKind kind :
       {ZanTableKind::componentDescription, ZanTableKind::componentCalculation, ZanTableKind::componentMap}) {
    std::wstring name;
    if (utils.ResolveTable(name, kind, run.standardCode())) continue;
    const std::wstring wanted = brenvolt::ZanDbReaderUtils::ComposeTableName(
        brenvolt::ZanDbReaderUtils::TableBaseName(kind), {}, {}, run.standardCode());
    throw BadInput(run.database() + ": has no table " + toUtf8(wanted));
  }
  return std::wstring(brenvolt::defaultCode);
}

ExitCode runComponents(const ComponentsOptions& options) {
  const std::optional<double> fla = brenvolt::plainNumber(fromUtf8(options.fla));
  if (!fla || !brenvolt::isGiven(*fla))
    throw BadInput("--fla: \"" + options.fla + "\" must be a number above 0");
  EngineeringRun run(options.site.site, options.site.standardCode);
  brenvolt::ZanAutoSizeComponent sizing(&run.connection());
  std::vector<brenvolt::ZanAutoSizeRow> rows;
  sizing.useTables(servingCode(run));
  const bool isSized = sizing.size(fromUtf8(options.type), *fla, rows);
  run.needSuccess();
  if (!isSized) throw BadInput(run.database() + ": its component tables cannot be read");
  OutputTable table;
  table.columns = {{"code", "Code"},       {"description", "Description"},
                   {"formula", "Formula"}, {"value", "Value (A)", ColumnKind::number},
                   {"rating", "Rating"},   {"default", "Catalogue choice"}};
  bool isKnown = false;
  for (const brenvolt::ZanAutoSizeRow& row : rows) {
    isKnown = isKnown || !row.expression.empty();
    table.rows.push_back(
        {row.code, row.description, row.expression, brenvolt::formatTrimmed(row.value), row.rating,
         row.defaultPart});
  }
  if (!isKnown)
    throw BadInput(
        run.database() + ", table " + toUtf8(sizing.calculationTable()) +
        ": has no row with Type = " + options.type);
  printOut(formatTable(table, options.output.form()));
  return ExitCode::done;
}

} // namespace

CommandTable componentsCommand() {
  auto options = std::make_shared<ComponentsOptions>();
  return {
      .name = "components",
      .description = "size a motor's protective components",
      .options = joinedRows(
          {{options->site.siteRow(),
            options->site.standardRow(),
            {"--type",
             &options->type,
             "Type of motor or load, as in their tables",
             "TEXT",
             {.isRequired = true}},
            {"--fla", &options->fla, "Full-load current in amperes", "A", {.isRequired = true}}},
           options->output.rows()}),
      .examples =
          {"brenvolt components --site site --type Induction --fla 52",
           "brenvolt components --site site --type Induction --fla 52 --csv"},
      .page = "tool.md",
      .run = [options] { return runComponents(*options); },
  };
}

} // namespace simhost
