// `brenvolt wire`: the wire lookup without its dialog, for one circuit or a list of them.
#include "simhost/cli/site_options.h"
#include "simhost/cli/subcommand.h"
#include "simhost/cli/table_output.h"
#include "simhost/cli/wire_batch.h"
#include "simhost/cli/wire_explain.h"
#include "simhost/host/errors.h"
#include "simhost/host/files.h"
#include "simhost/json/json_text.h"
#include "simhost/site/wire_request.h"
#include "text/encoding.h"
#include "text/numbers.h"
#include "text/split.h"

#include <nlohmann/json.hpp>

#include <array>
#include <memory>

namespace simhost {

using brenvolt::fromUtf8;
using brenvolt::toUtf8;
using brenvolt::WireCandidate;
using brenvolt::WireLookupResult;
using brenvolt::WireValue;

namespace {

struct WireOptions {
  SiteOptions site;
  std::array<std::string, wireFieldCount> fields;
  bool hidesUndersized = false;
  bool isUnattended = false;
  bool isExplained = false;
  std::string batch;
  std::string out;
  OutputOptions output;
};

/// The columns of the output, in the order of `WireColumn`.
const std::array<OutputColumn, std::size(brenvolt::wireColumns)>& candidateColumns() {
  constexpr ColumnKind number = ColumnKind::number;
  static const std::array<OutputColumn, std::size(brenvolt::wireColumns)> columns = {{
      {"size", "Size"},
      {"count", "Runs", number},
      {"fillRange", "Fill"},
      {"ampacity", "Ampacity (A)", number},
      {"loadPercent", "Utilisation (%)", number},
      {"drop", "Drop (V)", number},
      {"dropPercent", "Drop (%)", number},
      {"loss", "Loss (kW)", number},
      {"yearlyCost", "Yearly cost", number},
  }};
  return columns;
}

WireTexts textsOf(const WireOptions& options) {
  WireTexts texts;
  for (std::size_t i = 0; i < wireFieldCount; ++i)
    texts.texts[i] = brenvolt::trim(fromUtf8(options.fields[i]));
  texts.hidesUndersized = options.hidesUndersized;
  texts.isUnattended = options.isUnattended;
  return texts;
}

OutputTable tableOf(const WireRequest& request, const WireLookupResult& result) {
  const std::vector<brenvolt::WireColumn> columns = brenvolt::presentColumns(request.input);
  OutputTable table;
  table.columns = {{"proposed", ""}, {"overloaded", ""}};
  for (const brenvolt::WireColumn column : columns)
    table.columns.push_back(candidateColumns()[static_cast<std::size_t>(column)]);
  for (std::size_t i = 0; i < result.rows.size(); ++i) {
    std::vector<OutputCell>& row = table.rows.emplace_back();
    row.emplace_back(result.proposed == i ? L"*" : L"");
    row.emplace_back(result.rows[i].isOverloaded ? L"!" : L"");
    for (const brenvolt::WireColumn column : columns)
      row.emplace_back(brenvolt::cellOf(result.rows[i], column));
  }
  return table;
}

/// What is printed below the table for a reader.
std::string closingLines(const WireRequest& request, const WireLookupResult& result) {
  std::wstring text = L"\n";
  if (result.proposed) {
    const WireCandidate& row = result.rows[*result.proposed];
    text += (request.build ? L"* taken by a build: " : L"* proposed: ") + row.size +
            (row.count.empty() ? L"" : L" x " + row.count) + L"\n";
  }
  if (const std::wstring note = noteOn(request, result); !note.empty()) text += note + L"\n";
  text += L"! ampacity below the design current\n";
  if (const std::vector<std::wstring> sizes = brenvolt::sizesWithoutDrop(result.rows); !sizes.empty()) {
    std::wstring names;
    for (const std::wstring& size : sizes)
      names.append(names.empty() ? L"" : L", ").append(size);
    text += L"voltage drop unknown, no impedance in the tables: " + names + L"\n";
  }
  text += L"grounding conductor: " +
          (request.groundSizes().empty() ? std::wstring(L"none") : request.groundSizes().front()) + L"\n";
  return toUtf8(text);
}

std::string jsonAnswer(
    const WireRequest& request, const WireLookupResult& result,
    const std::vector<ExplainedFigure>& explanation, bool isExplained) {
  nlohmann::ordered_json answer;
  nlohmann::ordered_json circuit = nlohmann::ordered_json::object();
  for (const WireFieldRow& row : wireFields)
    if (const WireValue& value = request[row.field]; !value.text.empty())
      circuit[row.name] = {{"value", toUtf8(value.text)}, {"from", toUtf8(value.origin)}};
  answer["circuit"] = std::move(circuit);
  answer["designCurrent"] = request.input.total;
  answer["deratingFactor"] = request.input.overallFactor;
  answer["rows"] = parseJson(jsonRows(tableOf(request, result)));
  answer["proposed"] =
      result.proposed ? nlohmann::ordered_json(toUtf8(result.rows[*result.proposed].size)) : nullptr;
  if (const std::wstring note = noteOn(request, result); !note.empty()) answer["note"] = toUtf8(note);
  answer["withoutDrop"] = nlohmann::ordered_json::array();
  for (const std::wstring& size : brenvolt::sizesWithoutDrop(result.rows))
    answer["withoutDrop"].push_back(toUtf8(size));
  answer["grounding"] = nlohmann::ordered_json::array();
  for (const std::wstring& size : request.groundSizes())
    answer["grounding"].push_back(toUtf8(size));
  if (isExplained) answer["explanation"] = parseJson(explanationJson(explanation));
  return jsonText(answer, 2) + '\n';
}

ExitCode runBatch(WireRequests& requests, const WireOptions& options) {
  const SizedList result = sizeWires(requests, options.batch, textsOf(options));
  const std::string reason = replaceFile(options.out, result.text);
  if (!reason.empty()) throw CannotWrite(reason);
  return result.isComplete ? ExitCode::done : ExitCode::findings;
}

ExitCode runCircuit(
    brenvolt::ZanOleDbConnection& tables, WireRequests& requests, const WireOptions& options) {
  const brenvolt::TableReading reading(tables);
  std::vector<WireFault> faults;
  const std::optional<WireRequest> request = requests.resolve(textsOf(options), faults);
  if (!request) {
    std::string message;
    for (const WireFault& fault : faults)
      message.append(message.empty() ? "--" : "\n--")
          .append(wireField(fault.field).name)
          .append(": " + fault.reason);
    throw BadInput(message);
  }
  const WireLookupResult result = requests.lookUp(*request);
  std::vector<ExplainedFigure> explanation;
  if (options.isExplained && result.proposed)
    explanation = explainWire(
        *request, result, *result.proposed, requests.facts(*request, result.rows[*result.proposed].size));
  const ExitCode code = isSized(*request, result) ? ExitCode::done : ExitCode::findings;
  const OutputForm form = options.output.form();
  if (form == OutputForm::json) {
    printOut(jsonAnswer(*request, result, explanation, options.isExplained));
    return code;
  }
  printOut(formatTable(tableOf(*request, result), form));
  if (form == OutputForm::text) printOut(closingLines(*request, result) + explanationText(explanation));
  return code;
}

ExitCode runWire(const WireOptions& options) {
  SiteTables tables(options.site.site);
  WireRequests requests(tables.connection());
  return options.batch.empty() ? runCircuit(tables.connection(), requests, options)
                               : runBatch(requests, options);
}

} // namespace

CommandTable wireCommand() {
  auto options = std::make_shared<WireOptions>();
  OptionRows fields;
  for (const WireFieldRow& row : wireFields) {
    const std::wstring_view setting =
        row.lookup ? brenvolt::wireDefaultOf(*row.lookup).setting : std::wstring_view();
    const std::string preset = setting.empty() ? "" : " [" + toUtf8(setting) + "]";
    fields.push_back(
        {std::string("--") + row.name, &options->fields[static_cast<std::size_t>(row.field)],
         row.help + preset, row.typeName});
  }
  const OptionRows results = {
      {"--explain",
       &options->isExplained,
       "Show how each figure of the proposed size is computed",
       {},
       {.excludes = {"--csv"}}},
      {"--unattended",
       &options->isUnattended,
       "Print the size that a build without dialogs takes",
       {},
       {.excludes = {"--explain", "--hide-undersized"}}},
      {"--batch",
       &options->batch,
       "List of circuits: a column for each option",
       "LIST.csv",
       {.excludes = {"--explain"}, .needs = {"--out"}}},
      {"--out", &options->out, "The list with the proposed sizes", "RESULT.csv", {.needs = {"--batch"}}},
  };
  return {
      .name = "wire",
      .description = "size the wire of a circuit, or of a list of circuits",
      .options = joinedRows(
          {{options->site.siteRow()},
           fields,
           {{"--hide-undersized", &options->hidesUndersized,
             "Omit sizes with 100 % utilisation or more, not only above 300 %"}},
           options->output.rows(),
           results}),
      .footer = "--fla, --voltage and --phase are required. A word in brackets is the setting of the option "
                "table that provides the default. With --batch the other options apply to every circuit "
                "whose cell is empty. The exit code is 5 if a circuit has no size that fits.",
      .examples =
          {"brenvolt wire --site site --fla 52 --voltage 460 --phase 3",
           "brenvolt wire --site site --fla 52 --voltage 460 --phase 3 --length 250 --explain"},
      .page = "wire-sizing.md",
      .run = [options] { return runWire(*options); },
  };
}

} // namespace simhost
