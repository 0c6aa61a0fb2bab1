// One host and one document a process; each circuit has a drawing of its own.
#include "circuits/building/circuit_parts.h"

#include "circuits/building/row_configurations.h"
#include "circuits/building/worker_processes.h"
#include "circuits/provenance/circuit_objects.h"
#include "circuits/set/label_places.h"
#include "circuits/set/numbering.h"
#include "circuits/set/part_outline.h"
#include "platform/file_cache.h"
#include "simhost/drawing/drawing_file.h"
#include "simhost/host/errors.h"
#include "simhost/host/files.h"
#include "simhost/lisp/list.h"
#include "simhost/lisp/printer.h"
#include "simhost/site/site_database.h"
#include "simhost/site/site_run.h"
#include "simhost/ui/scripted_windows.h"
#include "text/encoding.h"
#include "text/numbers.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdint>
#include <memory>
#include <system_error>
#include <utility>

namespace circuits {

namespace fs = std::filesystem;
namespace lisp = simhost::lisp;
using brenvolt::fromUtf8;
using brenvolt::toUtf8;
using simhost::BadInput;
using simhost::CannotWrite;
using simhost::DrawingDatabase;
using simhost::SiteRun;
using simhost::SiteRunOptions;

namespace {

/// Called for each net of a circuit; a site without it gets no labels.
constexpr std::wstring_view labelFunction = L"site-label-net";

/// Called for each end of a wire that meets nothing; a site without it leaves them so.
constexpr std::wstring_view goesOnFunction = L"site-wire-goes-on";

/// What is drawn meanwhile belongs to the circuit.
class StampedDrawing final {
public:
  StampedDrawing(DrawingDatabase& drawing, simhost::Provenance stamp) : drawing_(drawing) {
    drawing.setStamp(std::move(stamp));
  }
  StampedDrawing(const StampedDrawing&) = delete;
  StampedDrawing& operator=(const StampedDrawing&) = delete;
  ~StampedDrawing() { drawing_.setStamp({}); }

private:
  DrawingDatabase& drawing_;
};

std::wstring lispText(std::wstring_view text) {
  return lisp::printValue(lisp::Value::string(std::wstring(text)), lisp::PrintStyle::readable);
}

std::wstring setForm(std::wstring_view variable, const std::wstring& text) {
  return L"(set-variable " + lispText(variable) + L" " + lispText(text) + L")";
}

/// Of the folders in which the processes of this machine work, up to the number of the process: several machines may
/// build into one folder.
std::string workName() {
  std::array<char, 256> host{};
  static_cast<void>(::gethostname(host.data(), host.size() - 1));
  return std::string("work-") + host.data() + "-";
}

/// A process that has ended but that nobody has asked for its end counts as gone.
bool isRunning(int process) {
  if (::kill(process, 0) != 0 && errno == ESRCH) return false;
  const std::string state = simhost::readFile("/proc/" + std::to_string(process) + "/stat").value_or("");
  return state.find(") Z ") == std::string::npos;
}

/// A run that was ended leaves its processes' folders.
void removeFormerWork(const fs::path& folder) {
  std::error_code error;
  std::vector<fs::path> left;
  for (const auto& entry : fs::directory_iterator(folder, error)) {
    const std::string name = entry.path().filename().string();
    if (!name.starts_with(workName())) continue;
    const int process = brenvolt::toInt(fromUtf8(name.substr(workName().size())));
    if (process > 0 && !isRunning(process)) left.push_back(entry.path());
  }
  for (const fs::path& path : left)
    fs::remove_all(path, error);
}

/// Nobody changes a site while a set is built from it: its tables are looked for once. Empty for a site that finds them
/// in another way.
std::string tablesOf(const std::string& site) {
  return simhost::hasSiteTables(site) ? simhost::siteDataSource(site) : std::string();
}

class PartBuilder final {
public:
  PartBuilder(const PartOptions& options, const SetParts& parts)
      : options_(options), parts_(parts),
        configurations_(
            parts.folder().parent_path() / (workName() + std::to_string(::getpid())),
            options.settings.workbook),
        windows_({}, "a set is built without questions"), site_(
                                                              {options.settings.site,
                                                               {},
                                                               {},
                                                               options.module,
                                                               options.language,
                                                               SiteRunOptions::UnnamedSettings::memory,
                                                               tablesOf(options.settings.site)},
                                                              windows_) {
    refuseForeignTables(site_.session());
  }

  /// Throws BadInput and CannotWrite.
  void build(const SetCircuit& circuit) {
    site_.beginAgain();
    const lisp::Value built = site_.run(buildForm(circuit, configurations_.workbookFor(circuit), {}), L"set");
    if (built.isNil()) throw BadInput("the build failed" + lastLine());
    DrawingDatabase& drawing = site_.session().documents().current()->drawing();
    const std::vector<CircuitObject> objects = circuitsOf(drawing, CircuitExtents::unknown);
    if (objects.size() != 1) throw BadInput("the build left no circuit");
    const std::wstring& id = objects.front().id;
    const Netlist netlist = readNetlist(drawing);
    numberContacts(drawing, netlist);
    labelNets(site_, drawing, netlist, id);
    keepRow(drawing, id, circuit, circuit.tag);
    const std::string bytes = simhost::drawingToJson(drawing);
    PartOutline outline = outlineOf(drawing);
    outline.drawing = {bytes.size(), digestOf(bytes)};
    // The outline last: by it a part is known as whole.
    write(parts_.drawingOf(circuit), bytes);
    write(parts_.outlineOf(circuit), outlineText(outline));
  }

private:
  void write(const fs::path& file, std::string_view bytes) const {
    const auto reason =
        brenvolt::replaceCachedFile(file.string(), (configurations_.folder() / "part.new").string(), bytes);
    if (reason) throw CannotWrite(file.string() + ": " + toUtf8(*reason));
  }
  [[nodiscard]] std::string lastLine() const {
    return windows_.failure().empty() ? std::string() : ": " + toUtf8(windows_.failure());
  }

  const PartOptions& options_;
  const SetParts& parts_;
  ConfigurationFolder configurations_;
  simhost::ScriptedWindows windows_;
  SiteRun site_;
};

} // namespace

void refuseForeignTables(simhost::Session& session) {
  constexpr int stop = 2;
  session.answerAlways(L"ZanBrenvolt.MotorITableNotFound", {stop, {}});
}

namespace {

std::vector<KvDbHandle> entitiesBehind(const DrawingDatabase& drawing, const simhost::EntityNode* last) {
  std::vector<KvDbHandle> handles;
  const simhost::EntityNode* node =
      last == nullptr ? drawing.store().findBlock(drawing.currentSpace())->first : last->next;
  for (; node != nullptr; node = node->next)
    handles.push_back(node->handle);
  return handles;
}

} // namespace

namespace {

/// Has the site draw where the circuit's wires go on.
void endWires(SiteRun& site, DrawingDatabase& drawing, const Netlist& netlist, const std::wstring& circuit) {
  if (!site.interpreter().findFunction(goesOnFunction)) return;
  const std::vector<FreeEnd> ends = freeEnds(drawing, netlist, circuit);
  const StampedDrawing stamp(drawing, {circuit, std::wstring(lineEndCode)});
  for (const FreeEnd& end : ends) {
    const std::array arguments = {
        lisp::Value::string(end.number), lisp::makePoint(end.position.x, end.position.y, 0.0),
        lisp::Value::real(end.degrees), lisp::Value::string(end.colour), lisp::Value::string(end.size)};
    try {
      static_cast<void>(site.interpreter().call(goesOnFunction, arguments));
    } catch (const lisp::LispError& error) {
      throw BadInput(error.what());
    }
  }
}

} // namespace

void labelNets(SiteRun& site, DrawingDatabase& drawing, const Netlist& netlist, const std::wstring& circuit) {
  endWires(site, drawing, netlist, circuit);
  if (!site.interpreter().findFunction(labelFunction)) return;
  const std::vector<NetLabel> labels = netLabels(drawing, netlist, circuit);
  std::vector<lisp::Value> used;
  for (const NetLabel& label : labels)
    if (!label.number.empty()) used.push_back(lisp::Value::string(label.number));
  // The labels are part of the circuit: they move and go with it.
  const StampedDrawing stamp(drawing, {circuit, std::wstring(labelCode)});
  LabelPlaces places(drawing);
  for (const NetLabel& label : labels) {
    const std::array arguments = {
        lisp::Value::string(label.number),
        lisp::Value::truth(label.needsNumber),
        lisp::makePoint(label.place.x, label.place.y, 0.0),
        lisp::Value::truth(label.isLevel),
        lisp::Value::string(label.colour),
        lisp::Value::string(label.size),
        lisp::makeList(used)};
    try {
      const simhost::EntityNode* const last = drawing.store().findBlock(drawing.currentSpace())->last;
      const lisp::Value number = site.interpreter().call(labelFunction, arguments);
      places.place(entitiesBehind(drawing, last), label.place, label.wires);
      if (label.needsNumber && number.isString()) used.push_back(number);
    } catch (const lisp::LispError& error) {
      throw BadInput(error.what());
    }
  }
}

std::wstring buildForm(
    const SetCircuit& circuit, const std::string& workbook, const KvPoint3d& at, BuildWay way) {
  std::wstring form = L"(progn (setq GBL_qn_electcodestd " + lispText(circuit.standardCode) + L")";
  form += L"(set-variable \"SITE_CIRCUIT\" " +
          brenvolt::formatInt(static_cast<std::int64_t>(circuit.number) - 1) + L")";
  form += setForm(L"SITE_TAG", circuit.tag) + setForm(L"SITE_INST", circuit.installation) +
          setForm(L"SITE_LOC", circuit.location);
  for (std::size_t place = 0; place < circuit.descriptions.size(); ++place)
    form += setForm(
        L"SITE_DESC" + brenvolt::formatInt(static_cast<std::int64_t>(place) + 1),
        circuit.descriptions[place]);
  form += L"(setq GBL_qn_bv_data (append (sublist GBL_qn_bv_data 0 2) (list " +
          lisp::printReal(circuit.scale) + L") (sublist GBL_qn_bv_data 3 5) (list " +
          lisp::printReal(circuit.componentScale) + L") (nthcdr 6 GBL_qn_bv_data)))";
  // The row has a configuration of its own, and its option columns change that.
  const bool startsElsewhere = !circuit.configuration.empty();
  form += L"(setq GBL_qn_bv_preset_over_history ";
  form += startsElsewhere && !circuit.preset.empty() ? L"1)" : L"nil)";
  form += L"(site-build";
  for (const std::wstring& text :
       {circuit.drawingTemplate, fromUtf8(workbook), circuit.worksheet, circuit.circuit, circuit.type,
        startsElsewhere ? circuit.configuration : circuit.name})
    form += L" " + lispText(text);
  form += L" '(" + lisp::printReal(at.x) + L" " + lisp::printReal(at.y) + L")";
  form += L" " + lispText(startsElsewhere ? circuit.preset : std::wstring()) + L" \"\" \"\"";
  if (way == BuildWay::withDialog) form += L" T";
  return form + L"))";
}

void keepRow(
    DrawingDatabase& drawing, const std::wstring& id, const SetCircuit& circuit, const std::wstring& tag) {
  simhost::CircuitFields fields = {{L"tag", tag}};
  const auto add = [&fields](const wchar_t* name, const std::wstring& text) {
    if (!text.empty()) fields.emplace_back(name, text);
  };
  add(L"standard-code", circuit.standardCode);
  add(L"length", circuit.length);
  add(L"raceway", circuit.raceway);
  add(L"ambient", circuit.ambient);
  add(L"drop", circuit.drop);
  add(L"sizing", circuit.sizing);
  add(L"wire-size", circuit.fixedSizes);
  const simhost::CircuitFields& built = drawing.store().circuits().at(id);
  fields.insert(fields.end(), built.begin(), built.end());
  drawing.putCircuit(id, std::move(fields));
}

void ByteDigest::add(std::string_view bytes) {
  for (const char byte : bytes)
    hash_ = (hash_ ^ static_cast<unsigned char>(byte)) * 1099511628211U;
}

std::string ByteDigest::text() const {
  constexpr std::string_view digits = "0123456789abcdef";
  std::string text;
  for (int shift = 60; shift >= 0; shift -= 4)
    text += digits[(hash_ >> static_cast<unsigned>(shift)) & 15U];
  return text;
}

std::string digestOf(std::string_view bytes) {
  ByteDigest digest;
  digest.add(bytes);
  return digest.text();
}

std::string siteDigest(const std::string& site) {
  std::vector<fs::path> files;
  std::error_code error;
  for (const char* folder : {"lisp", "templates", "blocks", "tables"})
    for (const auto& entry : fs::recursive_directory_iterator(fs::path(site) / folder, error))
      if (entry.is_regular_file(error)) files.push_back(entry.path());
  for (const char* file : {"site.lsp", "zan_brenvolt.xls", "zan_brenvolt.xml"})
    files.push_back(fs::path(site) / file);
  std::sort(files.begin(), files.end());
  std::string all;
  for (const fs::path& file : files)
    all += file.lexically_relative(site).generic_string() + digestOf(simhost::readFile(file).value_or(""));
  return digestOf(all);
}

fs::path SetParts::drawingOf(const SetCircuit& circuit) const {
  return folder_ / (digestOf(basis_ + toUtf8(circuit.fingerprint())) + ".json");
}

fs::path SetParts::outlineOf(const SetCircuit& circuit) const {
  return drawingOf(circuit).replace_extension(".outline");
}

namespace {

std::optional<PartOutline> readPartOutline(const fs::path& file) {
  return readOutline(simhost::readFile(file).value_or(""));
}

} // namespace

bool SetParts::have(const SetCircuit& circuit) const {
  const std::optional<PartOutline> outline = readPartOutline(outlineOf(circuit));
  std::error_code error;
  return outline && fs::file_size(drawingOf(circuit), error) == outline->drawing.length && !error;
}

std::string SetParts::readDrawing(const SetCircuit& circuit) const {
  const fs::path file = drawingOf(circuit);
  std::optional<std::string> bytes = simhost::readFile(file);
  const std::optional<PartOutline> outline = readPartOutline(outlineOf(circuit));
  if (!bytes || !outline || digestOf(*bytes) != outline->drawing.digest)
    throw BadInput(file.string() + ": is damaged: delete it, and build the set again");
  return std::move(*bytes);
}

std::vector<PartFailure> buildParts(
    const std::vector<SetCircuit>& circuits, const std::vector<std::size_t>& wanted, const SetParts& parts,
    const PartOptions& options) {
  std::vector<std::size_t> missing;
  std::error_code error;
  for (const std::size_t place : wanted)
    if (!parts.have(circuits[place])) missing.push_back(place);
  std::vector<PartFailure> failures;
  removeFormerWork(parts.folder().parent_path());
  // By it a folder is known as that of a set, also when the run is ended before the first part is whole.
  fs::create_directories(parts.folder(), error);
  if (missing.empty()) return failures;
  // Once, and not by each process at the same time.
  if (fs::is_directory(fs::path(options.settings.site) / "tables", error))
    static_cast<void>(simhost::siteDatabase(options.settings.site));
  std::size_t done = 0;
  ProcessWork work;
  work.processes = options.jobs;
  work.stopsAtFailure = !options.keepsGoing;
  work.begin = [&] {
    const auto builder = std::make_shared<PartBuilder>(options, parts);
    return [&circuits, builder](std::size_t place) {
      builder->build(circuits[place]);
      return std::string();
    };
  };
  work.take = [&](PieceResult result) {
    std::replace(result.text.begin(), result.text.end(), '\n', ' ');
    if (result.hasFailed) failures.push_back({result.piece, std::move(result.text)});
    ++done;
    if (options.progress) options.progress(done, missing.size());
  };
  runProcesses(missing, work);
  removeFormerWork(parts.folder().parent_path());
  std::sort(failures.begin(), failures.end(), [](const PartFailure& one, const PartFailure& other) {
    return one.circuit < other.circuit;
  });
  return failures;
}

} // namespace circuits
