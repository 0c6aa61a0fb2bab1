// Placing, numbering and writing, sheet by sheet.
#include "simhost/cli/set_maker.h"

#include "circuits/building/row_configurations.h"
#include "circuits/building/worker_processes.h"
#include "circuits/reports/drawing_reports.h"
#include "circuits/reports/list_rows.h"
#include "circuits/reports/report_files.h"
#include "circuits/set/cross_references.h"
#include "circuits/set/numbering.h"
#include "circuits/set/part_outline.h"
#include "circuits/set/sheet_maker.h"
#include "platform/file_cache.h"
#include "platform/file_replace.h"
#include "simhost/drawing/circuit_seal.h"
#include "simhost/drawing/drawing_file.h"
#include "simhost/drawing/insertion.h"
#include "simhost/host/errors.h"
#include "simhost/host/files.h"
#include "text/encoding.h"
#include "text/numbers.h"
#include "text/split.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <map>
#include <numeric>
#include <string_view>
#include <system_error>
#include <utility>

namespace simhost {

namespace {

namespace fs = std::filesystem;
using brenvolt::fromUtf8;
using brenvolt::toUtf8;
using circuits::digestOf;
using circuits::SetCircuit;
using circuits::siteDigest;
using Json = nlohmann::ordered_json;

constexpr double circuitGap = 10.0;

void write(const fs::path& file, std::string_view bytes) {
  const std::string reason = replaceFile(file, bytes);
  if (!reason.empty()) throw CannotWrite(reason);
}

std::unique_ptr<DrawingDatabase> readDrawing(const fs::path& file) {
  LoadedDrawing loaded = loadDrawing(fromUtf8(file.string()));
  if (loaded.drawing == nullptr) throw BadInput(toUtf8(loaded.error));
  // Nobody takes back what is drawn on a sheet before it is written.
  loaded.drawing->undoLog().setOff(true);
  return std::move(loaded.drawing);
}

/// A file that is written piece by piece, and replaces the old one when it is whole.
class GrowingFile final {
public:
  explicit GrowingFile(fs::path file) : file_(std::move(file)), content_(nameWithFolder(file_)) {}

  void write(std::string_view bytes) { content_.write(bytes); }
  void finish() {
    if (const auto fault = content_.commit())
      throw CannotWrite(file_.string() + ": cannot be written: " + toUtf8(fault->reason));
  }

private:
  static std::wstring nameWithFolder(const fs::path& file) {
    std::error_code error;
    fs::create_directories(file.parent_path(), error);
    return fromUtf8(file.string());
  }

  fs::path file_;
  brenvolt::FileReplacement content_;
};

/// Puts the parts on sheets, writes them and what is made from them. Each sheet is made for itself, so that several
/// processes can make them.
class SetMaker final {
public:
  SetMaker(const SetOptions& options, const SetPlan& plan)
      : options_(options), plan_(plan), folder_(options.out),
        frameFile_((fs::path(options.site.site) / "frames" / (options.frame + ".json")).string()) {
    std::error_code error;
    if (!fs::exists(frameFile_, error))
      throw BadInput(
          "--frame: the site has no frame \"" + options.frame + "\": " + frameFile_ + " is missing");
  }

  /// Findings, a sentence each.
  std::vector<std::string> make(const std::set<std::size_t>& failed, int processes) {
    plan(failed);
    std::vector<std::string> findings;
    for (const std::size_t place : tooLarge_)
      findings.push_back(
          plan_.list.source + ", row " + std::to_string(plan_.circuits[place].row) +
          ": the circuit is larger than frame " + options_.frame + ": choose a larger --frame");
    circuits::SheetLists lists;
    const std::vector<std::string> digests = makeSheets(processes, lists);
    Json sheetList = Json::array();
    for (std::size_t sheet = 0; sheet < sheets_.size(); ++sheet) {
      Json tags = Json::array();
      for (const auto& [place, offset] : sheets_[sheet].circuits)
        tags.push_back(toUtf8(plan_.circuits[place].tag));
      sheetList.push_back(
          {{"file", sheetFile(sheet)}, {"digest", digests[sheet]}, {"circuits", std::move(tags)}});
    }
    removeFormerSheets();
    writeLists(lists, findings);
    // The configurations of the set, beside no workbook of the site's: the site's own stay what they are.
    const fs::path name = fs::path(plan_.settings.workbook).filename().replace_extension(".xml");
    GrowingFile history(folder_ / name);
    circuits::ByteDigest digest;
    circuits::writeHistory(plan_.circuits, plan_.settings.workbook, [&](std::string_view bytes) {
      history.write(bytes);
      digest.add(bytes);
    });
    history.finish();
    writeSet(std::move(sheetList), {{"file", name.string()}, {"digest", digest.text()}});
    return findings;
  }

  /// Circuits that are on no sheet.
  [[nodiscard]] std::size_t leftOut() const { return tooLarge_.size(); }

private:
  /// Which circuit comes where, and what the sheets have to know of each other.
  void plan(const std::set<std::size_t>& failed) {
    const auto frame = readDrawing(frameFile_);
    const circuits::SheetZones zones(*frame);
    std::vector<Box> extents;
    for (std::size_t place = 0; place < plan_.circuits.size(); ++place)
      extents.push_back(failed.contains(place) ? Box() : outlineOf(plan_.circuits[place]).extents);
    sheets_ = planned(extents, circuits::frameArea(*frame, frameFile_));
    std::map<std::wstring, int> terminals;
    for (std::size_t sheet = 0; sheet < sheets_.size(); ++sheet) {
      terminalsBefore_.push_back(terminals);
      const std::wstring name = fromUtf8(sheetName(sheet));
      for (const auto& [place, offset] : sheets_[sheet].circuits) {
        // Read once more: the outlines of all circuits are more than a long list leaves room for.
        const circuits::PartOutline outline = outlineOf(plan_.circuits[place]);
        circuits::addSymbolPlaces(places_, outline.symbols, name, zones, offset);
        circuits::addLinePlaces(linePlaces_, outline.lineEnds, sheet, name, zones, offset);
        for (const auto& [strip, count] : outline.terminals)
          terminals[strip] += count;
      }
    }
  }

  [[nodiscard]] circuits::PartOutline outlineOf(const SetCircuit& circuit) const {
    const fs::path file = plan_.parts->outlineOf(circuit);
    if (auto outline = circuits::readOutline(readFile(file).value_or(""))) return std::move(*outline);
    throw BadInput(file.string() + ": is damaged: delete it, and build the set again");
  }

  /// Their digests; their rows go to the lists.
  std::vector<std::string> makeSheets(int processes, circuits::SheetLists& lists) {
    std::vector<std::string> digests(sheets_.size());
    std::vector<std::size_t> pieces(sheets_.size());
    std::iota(pieces.begin(), pieces.end(), std::size_t{0});
    std::string fault;
    const fs::path folder = folder_ / "sheets";
    std::error_code error;
    fs::create_directories(folder, error);
    circuits::ProcessWork work;
    work.processes = processes;
    work.begin = [this] { return [this](std::size_t sheet) { return makeSheet(sheet); }; };
    work.take = [&](circuits::PieceResult result) {
      if (result.hasFailed) {
        fault = result.text;
        return;
      }
      std::string_view bytes = result.text;
      digests[result.piece] = circuits::unpack(bytes);
      lists.put(result.piece, circuits::unpack(bytes));
    };
    circuits::runProcesses(pieces, work);
    if (!fault.empty()) throw BadInput(fault);
    // What set.json names is on the disk.
    std::vector<std::string> files;
    for (std::size_t sheet = 0; sheet < sheets_.size(); ++sheet)
      files.push_back((folder_ / sheetFile(sheet)).string());
    if (const auto unsynced = brenvolt::syncFiles(folder.string(), files))
      throw CannotWrite(toUtf8(*unsynced));
    return digests;
  }

  /// By list, or by installation and location, each of which begins a sheet.
  std::vector<circuits::SheetPlan> planned(const std::vector<Box>& extents, const Box& area) {
    if (options_.order == "list") return circuits::planSheets(extents, area, circuitGap, tooLarge_);
    std::map<std::pair<std::wstring, std::wstring>, std::vector<std::size_t>> groups;
    for (std::size_t place = 0; place < extents.size(); ++place)
      groups[{plan_.circuits[place].installation, plan_.circuits[place].location}].push_back(place);
    std::vector<circuits::SheetPlan> sheets;
    for (const auto& [where, places] : groups) {
      std::vector<Box> boxes;
      for (const std::size_t place : places)
        boxes.push_back(extents[place]);
      std::vector<std::size_t> tooLarge;
      for (circuits::SheetPlan& sheet : circuits::planSheets(boxes, area, circuitGap, tooLarge)) {
        for (auto& [place, offset] : sheet.circuits)
          place = places[place];
        sheets.push_back(std::move(sheet));
      }
      for (const std::size_t place : tooLarge)
        tooLarge_.push_back(places[place]);
    }
    return sheets;
  }

  [[nodiscard]] std::unique_ptr<DrawingDatabase> readPart(const SetCircuit& circuit) const {
    LoadedDrawing loaded = drawingFromJson(
        plan_.parts->readDrawing(circuit), fromUtf8(plan_.parts->drawingOf(circuit).string()));
    if (loaded.drawing == nullptr) throw BadInput(toUtf8(loaded.error));
    return std::move(loaded.drawing);
  }

  /// Writes a sheet; its digest and what the lists need of it, packed.
  [[nodiscard]] std::string makeSheet(std::size_t number) const {
    const circuits::SheetPlan& sheetPlan = sheets_[number];
    const std::unique_ptr<DrawingDatabase> sheet = readDrawing(frameFile_);
    for (const auto& [place, offset] : sheetPlan.circuits) {
      const std::unique_ptr<DrawingDatabase> part = readPart(plan_.circuits[place]);
      DrawingInsertion insertion;
      insertion.position = offset;
      if (const Fault fault = drawingInsertionFault(*sheet, sheet->modelSpace(), *part, insertion))
        throw BadInput(toUtf8(plan_.circuits[place].tag + L": " + *fault));
      static_cast<void>(insertDrawing(*sheet, sheet->modelSpace(), *part, insertion));
    }
    circuits::numberTerminals(*sheet, terminalsBefore_[number]);
    const std::wstring name = fromUtf8(sheetName(number));
    circuits::fillFrame(
        *sheet, {{L"PROJECT", fromUtf8(options_.title)},
                 {L"TITLE", titleOf(sheetPlan)},
                 {L"SHEET", name},
                 {L"SHEETS", brenvolt::formatInt(static_cast<std::int64_t>(sheets_.size()))},
                 {L"DATE", fromUtf8(options_.date)},
                 {L"REVISION", fromUtf8(options_.revision)},
                 {L"DRAWN", fromUtf8(options_.drawnBy)},
                 {L"CODE", codesOf(sheetPlan)}});
    // What follows adds texts only: devices, pins and nets stay as they are read here.
    const circuits::Sheet read = circuits::readSheet(*sheet, name);
    circuits::fillLineReferences(*sheet, read.netlist, linePlaces_, number);
    circuits::drawReferences(*sheet, read.netlist, places_);
    const CircuitRecords built = sheet->store().circuits();
    for (const auto& [id, fields] : built)
      sealCircuit(*sheet, id);
    const std::string bytes = drawingToJson(*sheet);
    const fs::path file = folder_ / sheetFile(number);
    std::error_code error;
    // One that exists may be a link or read-only, and is the old or the new one after a power failure.
    if (fs::exists(fs::symlink_status(file, error)))
      write(file, bytes);
    else if (const auto reason = brenvolt::replaceCachedFile(file.string(), file.string() + ".new", bytes))
      throw CannotWrite(file.string() + ": " + toUtf8(*reason));
    std::string result;
    circuits::pack(result, digestOf(bytes));
    circuits::pack(result, circuits::SheetLists::rowsOf(read));
    return result;
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

  /// "001"; all of a set are as long, so that their files are in the order of the sheets.
  [[nodiscard]] std::string sheetName(std::size_t place) const {
    const std::string text = std::to_string(place + 1);
    const std::size_t length = std::max(std::to_string(sheets_.size()).size(), std::size_t{3});
    return std::string(length - text.size(), '0') + text;
  }
  [[nodiscard]] std::string sheetFile(std::size_t place) const {
    return "sheets/" + sheetName(place) + ".json";
  }

  /// A set that has become shorter: sheets that this tool wrote and nobody has changed go, others stay and are named.
  void removeFormerSheets() {
    const Json former = formerSet();
    if (!former.is_object() || !former.contains("sheets")) return;
    std::set<std::string> present;
    for (std::size_t sheet = 0; sheet < sheets_.size(); ++sheet)
      present.insert(sheetFile(sheet));
    for (const Json& sheet : former["sheets"]) {
      const std::string file = sheet.value("file", "");
      const fs::path path = folder_ / file;
      if (!file.starts_with("sheets/") || present.contains(file)) continue;
      if (digestOf(readFile(path).value_or("")) != sheet.value("digest", "")) {
        std::fprintf(
            stderr, "brenvolt: %s: not a sheet of the set any more, but changed by hand; it was kept\n",
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

  void writeLists(const circuits::SheetLists& lists, std::vector<std::string>& findings) {
    const fs::path folder = folder_ / "out" / "lists";
    GrowingFile all(folder / "all.html");
    circuits::ReportPage page;
    for (const std::string& kind : circuits::reportKinds()) {
      GrowingFile list(folder / (kind + ".csv"));
      bool isFirst = true;
      circuits::Report last;
      lists.inPieces(*circuits::reportKindOf(kind), [&](const circuits::Report& piece) {
        if (std::exchange(isFirst, false)) {
          list.write(circuits::csvHeading(piece));
          page.begin(piece);
        }
        list.write(circuits::csvRows(piece));
        page.addRows(piece);
        all.write(page.take());
        last.notes = piece.notes;
      });
      for (const circuits::ReportNote& note : last.notes)
        findings.push_back(kind + ": " + toUtf8(note.text));
      page.end(last);
      list.finish();
    }
    all.write(page.take() + circuits::ReportPage::ending());
    all.finish();
  }

  void writeSet(Json sheets, Json history) {
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
        {"scale", options_.scale},
        {"title", options_.title},
        {"date", options_.date},
        {"revision", options_.revision},
        {"drawnBy", options_.drawnBy},
        {"mapping", options_.mapping.empty() ? "" : seen(options_.mapping)},
        {"order", options_.order},
        {"history", std::move(history)},
        {"sheets", std::move(sheets)},
        {"circuits", std::move(rows)}};
    // A line for each entry: a version control system shows what has changed.
    write(folder_ / "set.json", set.dump(1) + "\n");
  }

  std::vector<circuits::SheetPlan> sheets_;
  std::vector<std::size_t> tooLarge_;
  circuits::SymbolPlaces places_;
  circuits::LinePlaces linePlaces_;
  std::vector<std::map<std::wstring, int>> terminalsBefore_; ///< by sheet, the last number of each strip
  const SetOptions& options_;
  const SetPlan& plan_;
  fs::path folder_;
  std::string frameFile_;
};

} // namespace

MadeSet makeSet(
    const SetOptions& options, const SetPlan& plan, const std::set<std::size_t>& failed, int processes) {
  SetMaker maker(options, plan);
  std::vector<std::string> findings = maker.make(failed, processes);
  return {std::move(findings), maker.leftOut()};
}

} // namespace simhost
