// `brenvolt motors` and `brenvolt loads`: the rows of the motor and the load table, with a filter for each column.
#include "data/rating_tables.h"
#include "simhost/cli/engineering_run.h"
#include "simhost/cli/subcommand.h"
#include "simhost/cli/table_output.h"
#include "simhost/host/errors.h"
#include "text/encoding.h"

#include <memory>

namespace simhost {

using brenvolt::RatingRecord;
using brenvolt::RatingTable;
using brenvolt::RatingTableService;
using brenvolt::toUtf8;

namespace {

/// A column of a rating table as the tool names it; the option's value is the filter.
struct RatingField {
  std::size_t column;
  const char* name;
  ColumnKind kind;
};

constexpr ColumnKind text = ColumnKind::text;
constexpr ColumnKind number = ColumnKind::number;

constexpr RatingField motorFields[] = {
    {brenvolt::motorcolumn::id, "id", number},
    {brenvolt::motorcolumn::type, "type", text},
    {brenvolt::motorcolumn::load, "load", number},
    {brenvolt::motorcolumn::units, "units", text},
    {brenvolt::motorcolumn::voltage, "voltage", number},
    {brenvolt::motorcolumn::phase, "phase", number},
    {brenvolt::motorcolumn::frequency, "frequency", number},
    {brenvolt::motorcolumn::speed, "speed", number},
    {brenvolt::motorcolumn::fla, "fla", number},
    {brenvolt::motorcolumn::description, "description", text},
};

constexpr RatingField loadFields[] = {
    {brenvolt::loadcolumn::id, "id", number},
    {brenvolt::loadcolumn::type, "type", text},
    {brenvolt::loadcolumn::phase, "phase", number},
    {brenvolt::loadcolumn::voltage, "voltage", number},
    {brenvolt::loadcolumn::load, "load", number},
    {brenvolt::loadcolumn::units, "units", text},
    {brenvolt::loadcolumn::fla, "fla", number},
    {brenvolt::loadcolumn::frequency, "frequency", number},
    {brenvolt::loadcolumn::description, "description", text},
};

struct RatingOptions {
  SiteOptions site;
  OutputOptions output;
  std::array<std::string, brenvolt::ratingColumnLimit> filters; ///< by column; empty lets every row pass
};

ExitCode runRatings(
    const RatingOptions& options, const RatingTable& description, std::span<const RatingField> fields) {
  EngineeringRun run(options.site.site, options.site.standardCode);
  const RatingTableService service(description, &run.connection());
  if (service.TableName().empty()) {
    const std::wstring wanted = brenvolt::ZanDbReaderUtils::ComposeTableName(
        brenvolt::ZanDbReaderUtils::TableBaseName(description.kind), {}, {}, run.standardCode());
    throw BadInput(run.database() + ": has no table " + toUtf8(wanted));
  }
  brenvolt::ZanTableFilter filter;
  OutputTable table;
  for (const RatingField& field : fields) {
    const std::wstring value = brenvolt::fromUtf8(options.filters[field.column]);
    filter.active[field.column] = !value.empty();
    filter.values[field.column] = value;
    filter.selected[field.column] = true;
    table.columns.push_back({field.name, toUtf8(description.columns[field.column]), field.kind});
    if (!service.columnNames().contains(field.column))
      throw BadInput(
          run.database() + ", table " + toUtf8(service.TableName()) + ": has no column " +
          toUtf8(description.columns[field.column]));
    if (value.find(L'\'') != std::wstring::npos)
      throw BadInput(std::string("--") + field.name + ": a value cannot hold a single quote");
  }
  std::vector<RatingRecord> records;
  const bool isRead = service.Query(filter, records);
  run.needSuccess();
  if (!isRead) throw BadInput(run.database() + ", table " + toUtf8(service.TableName()) + ": cannot be read");
  for (const RatingRecord& record : records) {
    std::vector<OutputCell>& row = table.rows.emplace_back();
    for (const RatingField& field : fields)
      row.push_back(record[field.column]);
  }
  printOut(formatTable(table, options.output.form()));
  return ExitCode::done;
}

CommandTable ratingCommand(
    const char* name, const char* description, const RatingTable& table,
    std::span<const RatingField> fields) {
  auto options = std::make_shared<RatingOptions>();
  OptionRows filters;
  for (const RatingField& field : fields)
    filters.push_back(
        {std::string("--") + field.name, &options->filters[field.column],
         "Only rows whose column " + toUtf8(table.columns[field.column]) + " is this", "TEXT"});
  return {
      .name = name,
      .description = description,
      .options = joinedRows(
          {{options->site.siteRow(), options->site.standardRow()}, filters, options->output.rows()}),
      .examples =
          {std::string("brenvolt ") + name + " --site site --voltage 460",
           std::string("brenvolt ") + name + " --site site --csv"},
      .page = "pickers.md",
      .run = [options, &table, fields] { return runRatings(*options, table, fields); },
  };
}

} // namespace

CommandTable motorsCommand() {
  return ratingCommand("motors", "list the motors of a code standard", brenvolt::motorTable(), motorFields);
}

CommandTable loadsCommand() {
  return ratingCommand("loads", "list the loads of a code standard", brenvolt::loadTable(), loadFields);
}

} // namespace simhost
