#include "site_tool.h"

#include "text/encoding.h"
#include "text/split.h"

#include <doctest/doctest.h>

#include <algorithm>
#include <filesystem>

namespace brenvolt {

namespace fs = std::filesystem;

namespace {

constexpr SampleCircuit samples[] = {
    {"motor3_dol", "Three-phase motors", "Direct on line", "Pump 10 HP"},
    {"motor3_reversing", "Three-phase motors", "Reversing", "Hoist 5 HP"},
    {"motor3_star_delta", "Three-phase motors", "Star-delta", "Fan 40 HP"},
    {"motor3_two", "Three-phase motors", "Two motors, one feeder", "Two pumps 10 and 5 HP"},
    {"motor1_dol", "Single-phase motors", "Direct on line", "Sump 1.5 HP"},
    {"feed3", "Power feeds", "Three-phase", "Heater 15 kW"},
    {"feed2", "Power feeds", "Single-phase", "Heater 2 kW"},
    {"control_station", "Control circuits", "Start and stop station", "Station"},
};

/// Handles, also where a row names one, and the index that the project gave the drawing, are left out.
std::string withoutHandles(std::string text) {
  for (const std::string_view mark : {"\"handle\":\"", "[=", "h="})
    for (std::size_t at = text.find(mark); at != std::string::npos; at = text.find(mark, at + mark.size())) {
      const std::size_t first = at + mark.size();
      text.erase(first, std::min(text.find_first_not_of("0123456789ABCDEF", first), text.size()) - first);
    }
  return text;
}

} // namespace

std::span<const SampleCircuit> sampleCircuits() {
  return samples;
}

SiteCopy::SiteCopy() {
  fs::copy("site", site(), fs::copy_options::recursive);
}

ToolRun SiteCopy::draw(
    const SampleCircuit& circuit, const std::string& out, const std::vector<std::string>& more) const {
  std::vector<std::string> arguments = {"draw",   "--site",     site(),  "--circuit",      circuit.circuit,
                                        "--type", circuit.type, "--out", folder_.path(out)};
  arguments.insert(arguments.end(), more.begin(), more.end());
  return folder_.run(arguments);
}

std::string SiteCopy::done(const std::vector<std::string>& arguments) const {
  const ToolRun run = folder_.run(arguments);
  REQUIRE_MESSAGE(run.exitCode == 0, run.errors);
  return run.output;
}

std::string SiteCopy::drawn(
    const SampleCircuit& circuit, const std::string& out, const std::vector<std::string>& more) const {
  const ToolRun run = draw(circuit, out, more);
  REQUIRE_MESSAGE(run.exitCode == 0, run.errors);
  return folder_.read(out);
}

std::string SiteCopy::newProject() const {
  const std::string project = folder_.path("project.db");
  done({"import", project, site() + "/project"});
  return project;
}

void SiteCopy::changeSheet(
    const std::string& sheet, std::string_view part, std::string_view replacement) const {
  std::string text = folder_.read("site/workbook/" + sheet + ".csv");
  const std::size_t place = text.find(part);
  REQUIRE(place != std::string::npos);
  writeSheet(sheet, text.replace(place, part.size(), replacement));
}

void SiteCopy::writeSheet(const std::string& sheet, std::string_view csv) const {
  folder_.write("site/workbook/" + sheet + ".csv", csv);
  pack();
}

void SiteCopy::pack() const {
  done({"workbook", "pack", folder_.path("site/workbook"), folder_.path("site/zan_brenvolt.xls")});
}

std::string historyText(const std::string& bytes, const std::string& folder) {
  REQUIRE(bytes.substr(0, 2) == "\xFF\xFE");
  return toUtf8(replaceAll(fromUtf16Le(bytes.substr(2)), fromUtf8(folder), L"SITE"));
}

std::string historyEntry(const std::string& history, const std::string& name) {
  constexpr std::string_view end = "</History>";
  const std::size_t start = history.find("<History Name=\"" + name + "\"");
  if (start == std::string::npos) return {};
  const std::string entry = history.substr(start, history.find(end, start) + end.size() - start);
  return toUtf8(replaceAll(fromUtf8(entry), L"><", L">\n<")) + "\n";
}

std::vector<std::string> sortedLines(const std::string& text) {
  std::vector<std::string> lines;
  for (const std::wstring& line : splitKeepingEmpty(fromUtf8(withoutHandles(text)), L'\n')) {
    if (line.starts_with(L"\"SITE_DWGIX\"")) continue;
    lines.push_back(toUtf8(line));
    if (lines.back().ends_with(',')) lines.back().pop_back();
  }
  std::sort(lines.begin(), lines.end());
  return lines;
}

} // namespace brenvolt
