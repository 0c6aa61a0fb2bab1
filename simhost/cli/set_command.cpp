// `brenvolt set`: from a motor list to a set of drawings with its lists, and what has become out of date since.
#include "simhost/cli/csv_text.h"
#include "simhost/cli/set_maker.h"
#include "simhost/cli/set_plan.h"
#include "simhost/cli/subcommand.h"
#include "simhost/cli/table_output.h"
#include "simhost/host/errors.h"
#include "simhost/host/files.h"
#include "simhost/site/site_run.h"
#include "text/encoding.h"

#include <nlohmann/json.hpp>

#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <system_error>
#include <thread>
#include <vector>

namespace simhost {

namespace {

namespace fs = std::filesystem;
using brenvolt::fromUtf8;
using brenvolt::toUtf8;
using circuits::digestOf;
using circuits::PartFailure;
using circuits::PartOptions;
using circuits::SetCircuit;
using Json = nlohmann::ordered_json;

int wholeNumber(const char* option, const std::string& text, int highest) {
  const bool isWhole =
      !text.empty() && text.size() < 6 && text.find_first_not_of("0123456789") == std::string::npos;
  const int number = isWhole ? std::stoi(text) : 0;
  if (number < 1 || number > highest)
    throw BadInput(
        std::string(option) + ": \"" + text + "\" is not a whole number from 1 to " +
        std::to_string(highest));
  return number;
}

/// On a terminal: how many are built, at which rate, how long the rest takes.
std::function<void(std::size_t, std::size_t)> progressLine() {
  if (::isatty(STDERR_FILENO) == 0) return {};
  const auto start = std::chrono::steady_clock::now();
  return [start](std::size_t done, std::size_t all) {
    const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    const double rate = static_cast<double>(done) / std::max(seconds, 1e-3);
    std::fprintf(
        stderr, "\r%zu of %zu circuits, %.1f a second, %.0f s left ", done, all, rate,
        static_cast<double>(all - done) / rate);
    if (done == all) std::fputc('\n', stderr);
    std::fflush(stderr);
  };
}

/// All cores unless the user names a number.
int processesOf(const SetOptions& options) {
  return options.jobs.empty() ? static_cast<int>(std::max(std::thread::hardware_concurrency(), 1U))
                              : wholeNumber("--jobs", options.jobs, 256);
}

ExitCode finish(const SetOptions& options, const SetPlan& plan, const std::vector<PartFailure>& failures) {
  std::set<std::size_t> failed;
  for (const PartFailure& failure : failures)
    failed.insert(failure.circuit);
  auto [findings, leftOut] = makeSet(options, plan, failed, processesOf(options));
  for (const circuits::SetFault& fault : plan.list.faults)
    findings.push_back(circuits::faultText(plan.list, fault));
  for (const circuits::SetFault& finding : plan.list.findings)
    findings.push_back(circuits::faultText(plan.list, finding));
  for (const PartFailure& failure : failures)
    findings.push_back(
        plan.list.source + ", row " + std::to_string(plan.circuits[failure.circuit].row) + ": " +
        failure.reason);
  for (const std::string& finding : findings)
    std::fprintf(stderr, "brenvolt: %s\n", finding.c_str());
  std::printf("%zu circuits in %s\n", plan.circuits.size() - failed.size() - leftOut, options.out.c_str());
  return findings.empty() ? ExitCode::done : ExitCode::findings;
}

ExitCode runBuild(SetOptions& options) {
  needSetFolder(options.out);
  PartOptions building;
  building.jobs = processesOf(options);
  std::size_t share = 0;
  std::size_t shares = 1;
  if (!options.shard.empty()) {
    const std::size_t slash = options.shard.find('/');
    if (slash == std::string::npos)
      throw BadInput("--shard: \"" + options.shard + "\" must be I/N, such as 2/4");
    shares = static_cast<std::size_t>(wholeNumber("--shard", options.shard.substr(slash + 1), 99999));
    share = static_cast<std::size_t>(
        wholeNumber("--shard", options.shard.substr(0, slash), static_cast<int>(shares)) - 1);
  }
  if (shares == 1) needUnchangedSet(options);
  const SetPlan plan = planSet(options);
  if (plan.circuits.empty()) throw BadInput(options.list + ": no row can be built\n" + faultsText(plan.list));
  std::vector<std::size_t> wanted;
  for (std::size_t place = share; place < plan.circuits.size(); place += shares)
    wanted.push_back(place);
  building.settings = plan.settings;
  building.module = options.module;
  building.keepsGoing = options.keepsGoing;
  building.progress = progressLine();
  const std::vector<PartFailure> failures =
      circuits::buildParts(plan.circuits, wanted, *plan.parts, building);
  if (!failures.empty() && !options.keepsGoing) {
    std::string text;
    for (const PartFailure& failure : failures)
      text += (text.empty() ? "" : "\n") + plan.list.source + ", row " +
              std::to_string(plan.circuits[failure.circuit].row) + ": " + failure.reason;
    throw BadInput(text);
  }
  if (shares == 1) return finish(options, plan, failures);
  std::printf(
      "%zu of %zu circuits in %s\n", wanted.size() - failures.size(), plan.circuits.size(),
      plan.parts->folder().string().c_str());
  return failures.empty() ? ExitCode::done : ExitCode::findings;
}

ExitCode runJoin(SetOptions& options) {
  needSetFolder(options.out);
  needUnchangedSet(options);
  const SetPlan plan = planSet(options);
  std::string missing;
  for (const SetCircuit& circuit : plan.circuits)
    if (!plan.parts->have(circuit))
      missing += (missing.empty() ? "" : "\n") + plan.list.source + ", row " + std::to_string(circuit.row) +
                 ": its part is not in " + plan.parts->folder().string() +
                 ": build its shard, or build without --shard";
  if (!missing.empty()) throw BadInput(missing);
  return finish(options, plan, {});
}

ExitCode runStatus(const SetOptions& options) {
  const fs::path folder = options.out;
  const std::string file = (folder / "set.json").string();
  const Json set = Json::parse(readInput(file), nullptr, false);
  if (!set.is_object() || set.value("format", "") != setFormat) throw BadInput(file + ": is not a set");
  const auto text = [&set](const char* name) { return set.value(name, ""); };
  const auto reached = [&folder](const std::string& path) {
    return path.starts_with("odbc:") || path.empty() ? path : (folder / path).lexically_normal().string();
  };
  std::vector<std::string> stale;
  SetOptions now;
  now.site.site = reached(text("site"));
  now.list = reached(text("list"));
  now.mapping = reached(text("mapping"));
  now.standardCode = text("standardCode");
  now.sizing = set.value("sizing", "lookup");
  now.scale = set.value("scale", "1");
  now.out = options.out;
  now.keepsGoing = true;
  const SetPlan plan = planSet(now);
  if (circuits::siteDigest(now.site.site) != text("siteDigest"))
    stale.push_back("the site has changed: all circuits are out of date");
  std::map<std::string, std::string> former;
  for (const Json& row : set.value("circuits", Json::array())) {
    const std::string entry = row.is_string() ? row.get<std::string>() : std::string();
    const std::size_t blank = entry.rfind(' ');
    if (blank != std::string::npos) former[entry.substr(0, blank)] = entry.substr(blank + 1);
  }
  for (const SetCircuit& circuit : plan.circuits) {
    const auto known = former.find(toUtf8(circuit.tag));
    if (known == former.end())
      stale.push_back(toUtf8(circuit.tag) + ": is new in the list");
    else if (known->second != digestOf(toUtf8(circuit.fingerprint())))
      stale.push_back(toUtf8(circuit.tag) + ": its row has changed");
    if (known != former.end()) former.erase(known);
  }
  for (const auto& [tag, digest] : former)
    stale.push_back(tag + ": is not in the list any more, or its row cannot be built");
  for (const circuits::SetFault& fault : plan.list.faults)
    stale.push_back(circuits::faultText(plan.list, fault));
  for (const Json& sheet : set.value("sheets", Json::array())) {
    const std::string name = sheet.value("file", "");
    const std::optional<std::string> bytes = readFile(folder / name);
    if (!bytes)
      stale.push_back(name + ": is missing");
    else if (digestOf(*bytes) != sheet.value("digest", ""))
      stale.push_back(name + ": was changed since it was made; a build needs --replace");
  }
  for (const std::string& line : stale)
    std::printf("%s\n", line.c_str());
  if (stale.empty()) std::printf("%s: everything is up to date\n", options.out.c_str());
  return stale.empty() ? ExitCode::done : ExitCode::findings;
}

/// An example list with a comment for each column and a row for each type of circuit of the workbook.
ExitCode runNew(SetOptions& options) {
  std::error_code error;
  if (fs::exists(options.list, error)) throw CannotWrite(options.list + ": exists already; name a new file");
  const brenvolt::ZanCircuitCatalog catalogue = readCircuitList(options.site.path());
  std::string text =
      "# A motor list. Lines that begin with # are comments. Columns may come in any order, and those that\n"
      "# are not needed may go; a column named as a CODE of the worksheet chooses its options.\n";
  std::vector<std::string> header;
  for (const circuits::SetFieldRow& field : circuits::setFields()) {
    const std::string name = toUtf8(field.name);
    header.push_back(name);
    if (*field.meaning != '\0') text += "# " + name + ": " + field.meaning + "\n";
  }
  text += csvLine(header);
  int number = 100;
  for (const auto& [circuit, types] : catalogue.circuits())
    for (const brenvolt::ZanCircuitEntry& entry : types.entries) {
      std::vector<std::string> cells(header.size());
      cells[0] = "P-" + std::to_string(++number);
      cells[1] = toUtf8(circuit);
      cells[2] = toUtf8(entry.type);
      // Loads differ from site to site: the example rows are completed by the user.
      text += "# " + csvLine(cells);
    }
  const std::string reason = replaceFile(options.list, text);
  if (!reason.empty()) throw CannotWrite(reason);
  return ExitCode::done;
}

} // namespace

CommandTable setCommand() {
  auto options = std::make_shared<SetOptions>();
  const OptionRow list = {
      "LIST",
      &options->list,
      "The list: a .csv or .xls file, FILE:TABLE of a database, or odbc:...:TABLE",
      "LIST",
      {.isRequired = true}};
  const OptionRows common = {
      {"--out", &options->out, "Folder of the set", "DIR", {.isRequired = true}},
      {"--standard-code", &options->standardCode, "Code standard of rows that name none; NEC without it",
       "CODE"},
      {"--sizing", &options->sizing,
       "lookup takes the wire size that the wire lookup proposes, build the one of an unattended build; "
       "lookup "
       "without it",
       "RULE"},
      {"--order", &options->order, "list, or location: sheets by installation and location; list without it",
       "ORDER"},
      {"--replace", &options->replacesChanged, "Build over sheets that were changed since they were made"},
      {"--frame", &options->frame, "Frame of the sheets, a drawing in frames of the site; A3 without it",
       "NAME"},
      {"--scale", &options->scale, "Draw the circuits smaller or larger than their templates; 1 without it",
       "FACTOR"},
      {"--mapping",
       &options->mapping,
       "What the list's own column names mean, and rules for types, as JSON",
       "FILE",
       {.path = OptionRules::Path::existingFile}},
      {"--jobs", &options->jobs, "How many processes build; all cores without it", "N"},
      {"--title", &options->title, "Project, for the title block"},
      {"--date", &options->date, "Date, for the title block"},
      {"--revision", &options->revision, "Revision, for the title block"},
      {"--drawn-by", &options->drawnBy, "Who has drawn it, for the title block"},
      {"--keep-going", &options->keepsGoing, "Build the good rows when others cannot be built"},
      {"--module", &options->module, "The plug-in, else ZanBrenvolt.kvx beside the program", "FILE"}};
  return {
      .name = "set",
      .description = "build a set of drawings from a motor list",
      .commands =
          {{.name = "new",
            .description = "write an example of a list for the site",
            .options = joinedRows({{list}, options->site.rows()}),
            .run = [options] { return runNew(*options); }},
           {.name = "build",
            .description =
                "build the circuits of a list onto sheets, with lists of parts, wires and terminals",
            .options = joinedRows(
                {{list},
                 options->site.rows(),
                 common,
                 {{"--shard", &options->shard, "Build only every Nth circuit from the Ith on, and no sheets",
                   "I/N"}}}),
            .run = [options] { return runBuild(*options); }},
           {.name = "join",
            .description = "make the sheets of a set whose shards have been built",
            .options = joinedRows({{list}, options->site.rows(), common}),
            .run = [options] { return runJoin(*options); }},
           {.name = "status",
            .description = "say what of a set is out of date",
            .options = {{"DIR", &options->out, "Folder of the set", "DIR", {.isRequired = true}}},
            .run = [options] { return runStatus(*options); }}},
      .examples =
          {"brenvolt set new motors.csv --site site",
           "brenvolt set build site/lists/first_steps.csv --site site --out plant"},
      .page = "set.md",
  };
}

} // namespace simhost
