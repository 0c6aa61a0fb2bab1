// `brenvolt set`: from a motor list to a set of drawings with its lists, and what has become out of date since.
#include "circuits/building/circuit_parts.h"
#include "circuits/building/row_configurations.h"
#include "circuits/reports/drawing_reports.h"
#include "circuits/reports/report_files.h"
#include "circuits/set/cross_references.h"
#include "circuits/set/numbering.h"
#include "circuits/set/sheet_maker.h"
#include "circuits/set/type_rules.h"
#include "simhost/cli/csv_text.h"
#include "simhost/cli/site_options.h"
#include "simhost/cli/subcommand.h"
#include "simhost/cli/table_output.h"
#include "simhost/drawing/drawing_file.h"
#include "simhost/drawing/insertion.h"
#include "simhost/host/errors.h"
#include "simhost/host/files.h"
#include "simhost/site/site_run.h"
#include "text/encoding.h"
#include "text/numbers.h"
#include "text/split.h"

#include <nlohmann/json.hpp>

#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <map>
#include <memory>
#include <numeric>
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
using circuits::buildParts;
using circuits::digestOf;
using circuits::historyOf;
using circuits::PartFailure;
using circuits::PartOptions;
using circuits::resolveRows;
using circuits::SetCircuit;
using circuits::SetParts;
using circuits::SetSettings;
using circuits::siteDigest;
using Json = nlohmann::ordered_json;

constexpr const char* setFormat = "brenvolt-set";
constexpr double circuitGap = 10.0;

struct SetOptions {
  std::string list;
  SiteWorkbookOptions site;
  std::string out;
  std::string standardCode = assumedStandard;
  std::string frame = "A3";
  std::string mapping;
  std::string title;
  std::string date;
  std::string revision;
  std::string drawnBy;
  std::string jobs;
  std::string shard;
  std::string sizing = "lookup";
  bool keepsGoing = false;
  std::string module;
};

void write(const fs::path& file, std::string_view bytes) {
  const std::string reason = replaceFile(file, bytes);
  if (!reason.empty()) throw CannotWrite(reason);
}

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

/// What the mapping file of a firm's lists says.
struct ListMapping {
  circuits::ColumnAliases columns;
  std::vector<circuits::TypeRule> rules;
};

/// {"columns": {"their column": "our column"}, "types": ["hp <= 10 -> Direct on line"]}, both as needed.
ListMapping mappingOf(const std::string& file) {
  ListMapping mapping;
  if (file.empty()) return mapping;
  const Json json = Json::parse(readInput(file), nullptr, false);
  if (!json.is_object()) throw BadInput(file + ": must be a JSON object with \"columns\" and \"types\"");
  for (const auto& [name, value] : json.items())
    if (name == "columns" ? !value.is_object() : name == "types" ? !value.is_array() : true)
      throw BadInput(
          file + ": \"" + name +
          "\" must be \"columns\" with an object of names, or \"types\" with a list of rules");
  for (const auto& [theirs, ours] : json.value("columns", Json::object()).items()) {
    if (!ours.is_string()) throw BadInput(file + ": columns: \"" + theirs + "\" must name a column");
    mapping.columns[fromUtf8(theirs)] = fromUtf8(ours.get<std::string>());
  }
  for (const Json& text : json.value("types", Json::array())) {
    std::wstring fault = L"must be a text such as \"hp <= 10 -> Direct on line\"";
    const auto rule =
        text.is_string() ? circuits::TypeRule::parse(fromUtf8(text.get<std::string>()), fault) : std::nullopt;
    if (!rule) throw BadInput(file + ": types: " + text.dump() + ": " + toUtf8(fault));
    mapping.rules.push_back(*rule);
  }
  return mapping;
}

std::string faultsText(const circuits::SetList& list) {
  std::string text;
  for (const circuits::SetFault& fault : list.faults)
    text += (text.empty() ? "" : "\n") + circuits::faultText(list, fault);
  return text;
}

/// A folder of something else is not built into.
void needSetFolder(const fs::path& folder) {
  std::error_code error;
  if (!fs::exists(folder, error)) return;
  if (!fs::is_directory(folder, error)) throw CannotWrite(folder.string() + ": is not a folder");
  if (fs::exists(folder / "set.json", error) || fs::is_empty(folder, error) ||
      fs::exists(folder / "out" / "parts", error))
    return;
  throw CannotWrite(folder.string() + ": holds something else than a set; name an empty or new folder");
}

/// A list, the circuits of its good rows, and where their parts lie.
struct Plan {
  circuits::SetList list;
  std::vector<SetCircuit> circuits;
  std::unique_ptr<SetParts> parts;
  SetSettings settings;
};

Plan planOf(SetOptions& options) {
  Plan plan;
  plan.settings = {options.site.site, options.site.path(), options.standardCode};
  if (options.sizing == "build")
    plan.settings.sizing = SetSettings::Sizing::build;
  else if (options.sizing != "lookup")
    throw BadInput("--sizing: \"" + options.sizing + "\" must be lookup or build");
  const ListMapping mapping = mappingOf(options.mapping);
  plan.list = circuits::readSetList(options.list, mapping.columns, mapping.rules);
  plan.circuits = resolveRows(plan.settings, plan.list);
  for (const std::wstring& note : plan.list.notes)
    std::fprintf(stderr, "brenvolt: %s: %s\n", options.list.c_str(), toUtf8(note).c_str());
  if (!plan.list.faults.empty() && !options.keepsGoing) throw BadInput(faultsText(plan.list));
  plan.parts = std::make_unique<SetParts>(
      fs::path(options.out) / "out" / "parts", siteDigest(options.site.site) + BRENVOLT_VERSION);
  return plan;
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

std::unique_ptr<DrawingDatabase> readDrawing(const fs::path& file) {
  LoadedDrawing loaded = loadDrawing(fromUtf8(file.string()));
  if (loaded.drawing == nullptr) throw BadInput(toUtf8(loaded.error));
  return std::move(loaded.drawing);
}

std::string sheetName(std::size_t number) {
  std::string text = std::to_string(number);
  return std::string(text.size() < 3 ? 3 - text.size() : 0, '0') + text;
}

/// Puts the parts on sheets, writes them and what is made from them.
class SetMaker final {
public:
  SetMaker(const SetOptions& options, const Plan& plan)
      : options_(options), plan_(plan), folder_(options.out),
        frameFile_((fs::path(options.site.site) / "frames" / (options.frame + ".json")).string()) {
    std::error_code error;
    if (!fs::exists(frameFile_, error))
      throw BadInput(
          "--frame: the site has no frame \"" + options.frame + "\": " + frameFile_ + " is missing");
  }

  /// Findings, a sentence each.
  std::vector<std::string> make(const std::set<std::size_t>& failed) {
    const Box area = circuits::frameArea(*readDrawing(frameFile_), frameFile_);
    const circuits::SheetZones zones(*readDrawing(frameFile_));
    std::vector<Box> extents;
    for (std::size_t place = 0; place < plan_.circuits.size(); ++place)
      extents.push_back(
          failed.contains(place)
              ? Box()
              : circuits::shownExtents(*readDrawing(plan_.parts->drawingOf(plan_.circuits[place]))));
    const std::vector<circuits::SheetPlan> sheets =
        circuits::planSheets(extents, area, circuitGap, tooLarge_);
    // A device may be shown on sheets that come later: all places first.
    for (std::size_t sheet = 0; sheet < sheets.size(); ++sheet)
      for (const auto& [place, offset] : sheets[sheet].circuits) {
        const auto part = readDrawing(plan_.parts->drawingOf(plan_.circuits[place]));
        circuits::addSymbolPlaces(
            places_, *part, circuits::readNetlist(*part), fromUtf8(sheetName(sheet + 1)), zones, offset);
      }
    std::vector<std::string> findings;
    for (const std::size_t place : tooLarge_)
      findings.push_back(
          plan_.list.source + ", row " + std::to_string(plan_.circuits[place].row) +
          ": the circuit is larger than frame " + options_.frame + ": choose a larger --frame");
    std::vector<circuits::Sheet> read;
    std::map<std::wstring, int> terminals;
    Json sheetList = Json::array();
    for (std::size_t sheet = 0; sheet < sheets.size(); ++sheet) {
      read.push_back(makeSheet(sheets[sheet], sheet + 1, sheets.size(), terminals));
      Json tags = Json::array();
      for (const auto& [place, offset] : sheets[sheet].circuits)
        tags.push_back(toUtf8(plan_.circuits[place].tag));
      const std::string file = "sheets/" + sheetName(sheet + 1) + ".json";
      sheetList.push_back(
          {{"file", file},
           {"digest", digestOf(readFile(folder_ / file).value_or(""))},
           {"circuits", std::move(tags)}});
    }
    removeSheetsAfter(sheets.size());
    writeLists(read, findings);
    std::vector<const SetCircuit*> circuits;
    for (const SetCircuit& circuit : plan_.circuits)
      circuits.push_back(&circuit);
    // The configurations of the set, beside no workbook of the site's: the site's own stay what they are.
    write(
        folder_ / fs::path(plan_.settings.workbook).filename().replace_extension(".xml"),
        historyOf(circuits, plan_.settings.workbook));
    writeSet(std::move(sheetList));
    return findings;
  }

  /// Circuits that are on no sheet.
  [[nodiscard]] std::size_t leftOut() const { return tooLarge_.size(); }

private:
  circuits::Sheet makeSheet(
      const circuits::SheetPlan& sheetPlan, std::size_t number, std::size_t count,
      std::map<std::wstring, int>& terminals) {
    const std::unique_ptr<DrawingDatabase> sheet = readDrawing(frameFile_);
    for (const auto& [place, offset] : sheetPlan.circuits) {
      const std::unique_ptr<DrawingDatabase> part =
          readDrawing(plan_.parts->drawingOf(plan_.circuits[place]));
      DrawingInsertion insertion;
      insertion.position = offset;
      if (const Fault fault = drawingInsertionFault(*sheet, sheet->modelSpace(), *part, insertion))
        throw BadInput(toUtf8(plan_.circuits[place].tag + L": " + *fault));
      static_cast<void>(insertDrawing(*sheet, sheet->modelSpace(), *part, insertion));
    }
    circuits::numberTerminals(*sheet, terminals);
    circuits::drawReferences(*sheet, places_);
    const std::string name = sheetName(number);
    circuits::fillFrame(
        *sheet, {{L"PROJECT", fromUtf8(options_.title)},
                 {L"TITLE", titleOf(sheetPlan)},
                 {L"SHEET", fromUtf8(name)},
                 {L"SHEETS", brenvolt::formatInt(static_cast<std::int64_t>(count))},
                 {L"DATE", fromUtf8(options_.date)},
                 {L"REVISION", fromUtf8(options_.revision)},
                 {L"DRAWN", fromUtf8(options_.drawnBy)},
                 {L"CODE", codesOf(sheetPlan)}});
    write(folder_ / "sheets" / (name + ".json"), drawingToJson(*sheet));
    return circuits::readSheet(*sheet, fromUtf8(name));
  }

  [[nodiscard]] std::wstring titleOf(const circuits::SheetPlan& sheet) const {
    const std::wstring& first = plan_.circuits[sheet.circuits.front().first].tag;
    const std::wstring& last = plan_.circuits[sheet.circuits.back().first].tag;
    return first == last ? first : first + L" - " + last;
  }

  [[nodiscard]] std::wstring codesOf(const circuits::SheetPlan& sheet) const {
    std::set<std::wstring> codes;
    for (const auto& [place, offset] : sheet.circuits)
      codes.insert(plan_.circuits[place].standardCode);
    return brenvolt::join({codes.begin(), codes.end()}, L", ");
  }

  /// A set that has become shorter: sheets that this tool wrote and nobody has changed go, others stay and are named.
  void removeSheetsAfter(std::size_t count) {
    const Json former = formerSet();
    if (!former.is_object() || !former.contains("sheets")) return;
    for (const Json& sheet : former["sheets"]) {
      const std::string file = sheet.value("file", "");
      const fs::path path = folder_ / file;
      if (file.size() < 12 || file <= "sheets/" + sheetName(count) + ".json") continue;
      if (digestOf(readFile(path).value_or("")) != sheet.value("digest", "")) {
        std::fprintf(
            stderr, "brenvolt: %s: is no sheet of the set any more, and was changed by hand: it stays\n",
            path.string().c_str());
        continue;
      }
      std::error_code error;
      fs::remove(path, error);
    }
  }

  [[nodiscard]] Json formerSet() const {
    return Json::parse(readFile(folder_ / "set.json").value_or(""), nullptr, false);
  }

  void writeLists(const std::vector<circuits::Sheet>& sheets, std::vector<std::string>& findings) {
    std::vector<circuits::Report> reports;
    for (const std::string& kind : circuits::reportKinds()) {
      circuits::Report report = circuits::makeReport(*circuits::reportKindOf(kind), sheets);
      write(
          folder_ / "out" / "lists" / (kind + ".csv"),
          circuits::reportText(report, circuits::ReportFormat::csv));
      for (const std::wstring& note : report.notes)
        findings.push_back(kind + ": " + toUtf8(note));
      reports.push_back(std::move(report));
    }
    write(folder_ / "out" / "lists" / "all.html", circuits::reportPage(reports));
  }

  void writeSet(Json sheets) {
    Json rows = Json::array();
    for (const SetCircuit& circuit : plan_.circuits)
      rows.push_back(toUtf8(circuit.tag) + " " + digestOf(toUtf8(circuit.fingerprint())));
    const auto seen = [this](const std::string& file) {
      std::error_code error;
      const fs::path relative = fs::proximate(file, folder_, error);
      return error ? file : relative.generic_string();
    };
    const Json set = {
        {"format", setFormat},
        {"version", 1},
        {"tool", BRENVOLT_VERSION},
        {"list", options_.list.starts_with("odbc:") ? options_.list : seen(options_.list)},
        {"site", seen(options_.site.site)},
        {"siteDigest", siteDigest(options_.site.site)},
        {"standardCode", options_.standardCode},
        {"sizing", options_.sizing},
        {"frame", options_.frame},
        {"title", options_.title},
        {"date", options_.date},
        {"revision", options_.revision},
        {"drawnBy", options_.drawnBy},
        {"mapping", options_.mapping.empty() ? "" : seen(options_.mapping)},
        {"sheets", std::move(sheets)},
        {"circuits", std::move(rows)}};
    // A line for each entry: a version control system shows what has changed.
    write(folder_ / "set.json", set.dump(1) + "\n");
  }

  std::vector<std::size_t> tooLarge_;
  circuits::SymbolPlaces places_;
  const SetOptions& options_;
  const Plan& plan_;
  fs::path folder_;
  std::string frameFile_;
};

ExitCode finish(const SetOptions& options, const Plan& plan, const std::vector<PartFailure>& failures) {
  std::set<std::size_t> failed;
  for (const PartFailure& failure : failures)
    failed.insert(failure.circuit);
  SetMaker maker(options, plan);
  std::vector<std::string> findings = maker.make(failed);
  for (const circuits::SetFault& fault : plan.list.faults)
    findings.push_back(circuits::faultText(plan.list, fault));
  for (const PartFailure& failure : failures)
    findings.push_back(
        plan.list.source + ", row " + std::to_string(plan.circuits[failure.circuit].row) + ": " +
        failure.reason);
  for (const std::string& finding : findings)
    std::fprintf(stderr, "brenvolt: %s\n", finding.c_str());
  std::printf(
      "%zu circuits in %s\n", plan.circuits.size() - failed.size() - maker.leftOut(), options.out.c_str());
  return findings.empty() ? ExitCode::done : ExitCode::findings;
}

ExitCode runBuild(SetOptions& options) {
  needSetFolder(options.out);
  PartOptions building;
  const unsigned cores = std::max(std::thread::hardware_concurrency(), 1U);
  building.jobs = options.jobs.empty() ? static_cast<int>(cores) : wholeNumber("--jobs", options.jobs, 256);
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
  const Plan plan = planOf(options);
  if (plan.circuits.empty()) throw BadInput(options.list + ": no row can be built\n" + faultsText(plan.list));
  std::vector<std::size_t> wanted;
  for (std::size_t place = share; place < plan.circuits.size(); place += shares)
    wanted.push_back(place);
  building.settings = plan.settings;
  building.module = options.module;
  building.keepsGoing = options.keepsGoing;
  building.progress = progressLine();
  const std::vector<PartFailure> failures = buildParts(plan.circuits, wanted, *plan.parts, building);
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
  const Plan plan = planOf(options);
  std::string missing;
  std::error_code error;
  for (const SetCircuit& circuit : plan.circuits)
    if (!fs::exists(plan.parts->drawingOf(circuit), error))
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
  now.out = options.out;
  now.keepsGoing = true;
  const Plan plan = planOf(now);
  if (siteDigest(now.site.site) != text("siteDigest"))
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
      stale.push_back(name + ": was changed since it was made; a build replaces it");
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
  write(options.list, text);
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
      {"--frame", &options->frame, "Frame of the sheets, a drawing in frames of the site; A3 without it",
       "NAME"},
      {"--mapping",
       &options->mapping,
       "What the list's own column names mean, and rules for types, as JSON",
       "FILE",
       {.path = OptionRules::Path::existingFile}},
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
                 {{"--jobs", &options->jobs, "How many processes build; all cores without it", "N"},
                  {"--shard", &options->shard, "Build only every Nth circuit from the Ith on, and no sheets",
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
