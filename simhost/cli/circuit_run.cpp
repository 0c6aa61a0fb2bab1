// From a circuit's name to the call that builds it.
#include "simhost/cli/circuit_run.h"

#include "circuits/provenance/load_data.h"
#include "project/saved_configurations.h"
#include "simhost/host/errors.h"
#include "simhost/lisp/list.h"
#include "simhost/lisp/printer.h"
#include "simhost/site/site_workbook.h"
#include "text/encoding.h"
#include "text/numbers.h"
#include "text/plain_number.h"
#include "text/split.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace simhost {

namespace {

using brenvolt::fromUtf8;
using brenvolt::toUtf8;

/// Where the parent product's symbol holds the scales.
constexpr const wchar_t* buildDataSymbol = L"GBL_qn_bv_data";
constexpr const wchar_t* presetOverHistorySymbol = L"GBL_qn_bv_preset_over_history";
constexpr std::size_t circuitScalePlace = 2;
constexpr std::size_t componentScalePlace = 5;

/// The values of a preset; nothing when one is not a whole number.
std::optional<std::vector<int>> presetValues(const std::wstring& text) {
  std::vector<int> values;
  for (const std::wstring& word : brenvolt::splitSkippingEmpty(text, L',')) {
    const std::string number = toUtf8(brenvolt::trim(word));
    if (number.empty()) continue;
    int value = 0;
    const char* const end = number.data() + number.size();
    const auto [rest, error] = std::from_chars(number.data(), end, value);
    if (error != std::errc() || rest != end) return std::nullopt;
    values.push_back(value);
  }
  return values;
}

bool hasOption(const brenvolt::ZanOptionGroup& group, int value) {
  return std::any_of(group.options.begin(), group.options.end(), [value](const brenvolt::ZanOption& option) {
    return option.value == value;
  });
}

/// A value applies to the group at its position; -1 leaves that group unchanged.
void checkPresetValues(
    const std::wstring& part, const brenvolt::ZanCodeRecord& record, const std::vector<int>& values,
    std::vector<std::string>& faults) {
  for (std::size_t place = 0; place < values.size(); ++place) {
    const std::string name = "preset \"" + toUtf8(part) + "\": ";
    const std::string value = std::to_string(values[place]);
    if (place >= record.groups.size()) {
      faults.push_back(
          name + "there are " + std::to_string(record.groups.size()) +
          " option groups, which is one value too many (" + value + ")");
    } else if (const auto& group = record.groups[place];
               values[place] != -1 && !hasOption(group, values[place])) {
      std::string known;
      for (const brenvolt::ZanOption& option : group.options)
        known += (known.empty() ? "" : ", ") + std::to_string(option.value);
      faults.push_back(
          name + "\"" + toUtf8(group.title) + "\" has no option " + value + "; its options are " + known);
    }
  }
}

/// A build passes over a preset that it does not know, and takes another option for a value that none has.
void needPreset(
    const SessionRun& run, const brenvolt::ZanCircuitCatalog& list, const std::wstring& worksheet) {
  std::vector<std::string> faults;
  for (const std::wstring& part : brenvolt::splitSkippingEmpty(fromUtf8(run.preset), L';')) {
    if (brenvolt::trimView(part).empty()) continue;
    const std::wstring code = brenvolt::trim(part.substr(0, part.find_first_of(L"[=")));
    const std::size_t bracket = part.find(L']');
    const std::size_t equals = part.find(L'=', bracket == std::wstring::npos ? 0 : bracket);
    const brenvolt::ZanCodeRecord* const record = list.findRecord(code);
    // A handle without brackets drops the values.
    const bool hasValues = equals != std::wstring::npos && part.find(L'=', equals + 1) == std::wstring::npos;
    const std::optional<std::vector<int>> values =
        equals == std::wstring::npos ? std::nullopt : presetValues(hasValues ? part.substr(equals + 1) : L"");
    if (record == nullptr || !values)
      faults.push_back(
          "preset \"" + toUtf8(part) + "\": must be CODE=1,2 with a CODE of the worksheet " +
          toUtf8(worksheet));
    else
      checkPresetValues(part, *record, *values, faults);
  }
  if (faults.empty()) return;
  std::string all;
  for (const std::string& fault : faults)
    all += (all.empty() ? "" : "\nbrenvolt: ") + fault;
  throw BadInput(all);
}

brenvolt::ZanCircuitEntry findEntry(const SessionRun& run, const std::string& workbook) {
  brenvolt::ZanCircuitCatalog list = readCircuitList(workbook);
  const std::wstring circuit = fromUtf8(run.circuit);
  if (!list.circuits().contains(circuit))
    throw BadInput(toUtf8(list.workbook) + ": no such circuit: \"" + run.circuit + "\"");
  const brenvolt::ZanCircuitEntry* found = list.findEntry(circuit, fromUtf8(run.type));
  if (found == nullptr)
    throw BadInput(
        toUtf8(list.workbook) + ": circuit \"" + run.circuit + "\" has no type \"" + run.type + "\"");
  brenvolt::ZanCircuitEntry entry = *found;
  if (!list.readWorksheet(entry.worksheet)) throw BadInput(workbook + ": " + toUtf8(list.error()));
  needPreset(run, list, entry.worksheet);
  return entry;
}

/// A current is read up to the first character that is not part of a number: 65,5 would become 65.
void needNumbers(const std::string& params) {
  struct Number {
    std::size_t place;
    const char* name;
  };
  constexpr Number numbers[] = {{7, "full-load current"}, {8, "multiplier"}, {9, "additional current"}};
  // As the build separates them: a text may contain a semicolon.
  constexpr std::wstring_view separator = L"\";\"";
  std::vector<std::wstring> fields;
  std::wstring rest = brenvolt::trim(fromUtf8(params));
  if (rest.starts_with(L'"')) rest = rest.substr(1);
  if (rest.ends_with(L'"')) rest.pop_back();
  for (std::size_t end = rest.find(separator); end != std::wstring::npos; end = rest.find(separator)) {
    fields.push_back(rest.substr(0, end));
    rest = rest.substr(end + separator.size());
  }
  fields.push_back(rest);
  for (const Number& number : numbers) {
    if (number.place >= fields.size()) continue;
    const std::wstring field = brenvolt::trim(fields[number.place]);
    if (field.empty() || brenvolt::plainNumber(field).value_or(-1.0) >= 0.0) continue;
    throw BadInput(
        "--params: field " + std::to_string(number.place + 1) + " (" + number.name + "): \"" + toUtf8(field) +
        "\" must be a number that is not negative, with a decimal point");
  }
}

std::optional<double> scaleOf(const std::string& option, const std::string& text) {
  if (text.empty()) return std::nullopt;
  const std::optional<double> scale = brenvolt::plainNumber(fromUtf8(text));
  if (!scale || !(*scale > 0)) throw BadInput(option + ": \"" + text + "\" must be a number greater than 0");
  return scale;
}

/// A scale that the file holds; an empty one leaves that of the site. `option` is the one that can replace it.
std::optional<double> savedScale(const std::string& option, const std::wstring& text, const SessionRun& run) {
  if (brenvolt::trimView(text).empty()) return std::nullopt;
  const std::optional<double> scale = brenvolt::plainNumber(text);
  if (!scale || !(*scale > 0))
    throw BadInput(
        "--history: the scale \"" + toUtf8(text) + "\" of \"" + run.history +
        "\" is not a number greater than 0; give " + option);
  return scale;
}

/// The settings of a saved configuration. Without this check a build would silently use the defaults when the name is
/// mistyped.
/// A build separates the texts of a wire at blanks: "14 AWG" would be drawn as the size 14.
void needSizes(const std::string& wires) {
  const std::vector<std::wstring> texts = circuits::wireTexts(fromUtf8(wires));
  for (std::size_t wire = 0; wire < texts.size(); wire += 3)
    if (texts[wire].find(L' ') != std::wstring::npos)
      throw BadInput(
          "--wires: \"" + toUtf8(texts[wire]) + "\": write the size without blanks: \"" +
          toUtf8(brenvolt::removeBlanks(texts[wire])) + "\"");
}

void takeConfiguration(SessionRun& run, const std::string& workbook, CircuitCall& call) {
  if (run.history.empty()) return;
  const brenvolt::HistoryKey key{fromUtf8(run.circuit), fromUtf8(run.type), fromUtf8(run.history)};
  const brenvolt::HistoryFile file = readHistory(workbook);
  needConfiguration(file, key);
  const brenvolt::HistorySummary summary = file.summary(key).value();
  if (!call.circuitScale) call.circuitScale = savedScale("--scale", summary.circuitScale, run);
  if (!call.componentScale)
    call.componentScale = savedScale("--component-scale", summary.componentScale, run);
  call.isPresetOverHistory = !run.preset.empty();
  // The build keeps motor or load and wires where the run has neither; a new motor gets wires of its own. New wires go
  // with the data of the configuration.
  if (!run.params.empty() || run.wires.empty()) return;
  // Of several motors those of the first: a preset carries no more.
  if (const auto controls = brenvolt::savedControls(file, key); !controls.empty())
    run.params = toUtf8(controls.front().fieldsText());
}

lisp::Value textValue(std::wstring_view text) {
  return lisp::Value::string(std::wstring(text));
}

void setScales(lisp::Interpreter& interpreter, const CircuitCall& call) {
  if (!call.circuitScale && !call.componentScale) return;
  const lisp::Value data = interpreter.value(buildDataSymbol);
  lisp::ListBuilder changed;
  std::size_t place = 0;
  for (const lisp::Value& element : lisp::Elements(data)) {
    const bool isCircuit = place == circuitScalePlace && call.circuitScale;
    const bool isComponent = place == componentScalePlace && call.componentScale;
    changed.add(
        isCircuit     ? lisp::Value::real(*call.circuitScale)
        : isComponent ? lisp::Value::real(*call.componentScale)
                      : element);
    ++place;
  }
  if (place <= componentScalePlace)
    throw BadInput(toUtf8(buildDataSymbol) + ": the site stores no scales in it, so they cannot be set");
  interpreter.setValue(buildDataSymbol, changed.take());
}

} // namespace

CircuitCall circuitCall(const SessionRun& asked, const std::string& workbook, CircuitBuild build) {
  SessionRun run = asked;
  needNumbers(run.params);
  needSizes(run.wires);
  const brenvolt::ZanCircuitEntry entry = findEntry(run, workbook);
  CircuitCall call;
  call.circuitScale = scaleOf("--scale", run.scale);
  call.componentScale = scaleOf("--component-scale", run.componentScale);
  takeConfiguration(run, workbook, call);
  for (const std::wstring& text :
       {entry.drawingTemplate, fromUtf8(workbook), entry.worksheet, fromUtf8(run.circuit), fromUtf8(run.type),
        fromUtf8(run.history)})
    call.arguments.push_back(textValue(text));
  lisp::ListBuilder point;
  point.add(lisp::Value::real(run.at[0]));
  point.add(lisp::Value::real(run.at[1]));
  call.arguments.push_back(point.take());
  for (const std::string* text : {&run.preset, &run.params, &run.wires})
    call.arguments.push_back(textValue(fromUtf8(*text)));
  call.arguments.push_back(lisp::Value::truth(build == CircuitBuild::withDialog));
  if (!run.presetDrawing.empty()) call.arguments.push_back(textValue(fromUtf8(run.presetDrawing)));
  return call;
}

lisp::Value callSite(HostRun& host, const CircuitCall& call) {
  setScales(host.interpreter(), call);
  if (call.isPresetOverHistory) host.interpreter().setValue(presetOverHistorySymbol, lisp::Value::integer(1));
  return host.call(L"site-build", call.arguments);
}

void useProject(HostRun& host, const std::string& database) {
  if (!database.empty()) host.site().setProject(database);
}

std::wstring workbookForm(const std::string& workbook) {
  return L"(setq GBL_qn_bv_data (append (sublist GBL_qn_bv_data 0 7) (list " +
         lisp::printValue(textValue(fromUtf8(workbook)), lisp::PrintStyle::readable) + L")))";
}

} // namespace simhost
