// `brenvolt motors` and `brenvolt loads`: the rows of the motor and the load table, with a filter for each column.
#include "data/rating_tables.h"
#include "simhost/cli/site_options.h"
#include "simhost/cli/subcommand.h"
#include "simhost/cli/table_output.h"
#include "simhost/host/errors.h"
#include "text/encoding.h"

#include <memory>
#include <utility>
#include <vector>

namespace simhost {

using brenvolt::RatingRecord;
using brenvolt::RatingTable;
using brenvolt::RatingTableService;
using brenvolt::toUtf8;

namespace {

/// A column of a rating table as the tool names it; the option's value is the filter.
struct RatingField {
  std::size_t column;
  std::string name;
  ColumnKind kind;
};

/// The fields of a table, named as the lookup commands name the ratings.
std::vector<RatingField> fieldsOf(const RatingTable& table) {
  std::vector<RatingField> fields = {{0, "id", ColumnKind::number}};
  for (std::size_t column = 1; column + 1 < table.columnCount(); ++column) {
    const bool isText =
        column == table.columnOf(brenvolt::Rating::type) || column == table.columnOf(brenvolt::Rating::units);
    fields.push_back(
        {column, toUtf8(table.fieldOf(column)->argument.substr(1)),
         isText ? ColumnKind::text : ColumnKind::number});
  }
  fields.push_back({table.columnCount() - 1, "description", ColumnKind::text});
  return fields;
}

struct RatingOptions {
  SiteOptions site;
  OutputOptions output;
  std::array<std::string, brenvolt::ratingColumnLimit> filters; ///< by column; empty lets every row pass
};

ExitCode runRatings(
    const RatingOptions& options, const RatingTable& description, const std::vector<RatingField>& fields) {
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
    table.columns.push_back({field.name, toUtf8(description.nameOf(field.column)), field.kind});
    if (!service.columnNames().contains(field.column))
      throw BadInput(
          run.database() + ", table " + toUtf8(service.TableName()) + ": has no column " +
          toUtf8(description.nameOf(field.column)));
    if (value.find(L'\'') != std::wstring::npos)
      throw BadInput("--" + field.name + ": must not contain a single quote");
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

CommandTable ratingCommand(const char* name, const char* description, const RatingTable& table) {
  std::vector<RatingField> fields = fieldsOf(table);
  auto options = std::make_shared<RatingOptions>();
  OptionRows filters;
  for (const RatingField& field : fields)
    filters.push_back(
        {"--" + field.name, &options->filters[field.column],
         "Only rows with this value in column " + toUtf8(table.nameOf(field.column)), "TEXT"});
  return {
      .name = name,
      .description = description,
      .options = joinedRows(
          {{options->site.siteRow(), options->site.standardRow()}, filters, options->output.rows()}),
      .examples =
          {std::string("brenvolt ") + name + " --site site --voltage 460",
           std::string("brenvolt ") + name + " --site site --csv"},
      .page = "pickers.md",
      .run = [options, &table, fields = std::move(fields)] { return runRatings(*options, table, fields); },
  };
}

} // namespace

CommandTable motorsCommand() {
  return ratingCommand("motors", "list the motors of an electrical code", brenvolt::motorTable());
}

CommandTable loadsCommand() {
  return ratingCommand("loads", "list the loads of an electrical code", brenvolt::loadTable());
}

} // namespace simhost
