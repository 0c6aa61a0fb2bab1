// Reading mapping and list, and guarding the folder.
#include "simhost/cli/set_plan.h"

#include "circuits/set/type_rules.h"
#include "simhost/host/errors.h"
#include "simhost/host/files.h"
#include "simhost/site/site_run.h"
#include "text/encoding.h"
#include "text/plain_number.h"

#include <nlohmann/json.hpp>

#include <cstdio>
#include <optional>
#include <system_error>

namespace simhost {

namespace fs = std::filesystem;
using brenvolt::fromUtf8;
using brenvolt::toUtf8;
using circuits::SetSettings;
using Json = nlohmann::ordered_json;

namespace {

constexpr double smallestScale = 0.2;
constexpr double largestScale = 5.0;

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
  const Json columns = json.value("columns", Json::object());
  for (const auto& [theirs, ours] : columns.items()) {
    if (!ours.is_string()) throw BadInput(file + ": columns: \"" + theirs + "\" must name a column");
    mapping.columns[fromUtf8(theirs)] = fromUtf8(ours.get<std::string>());
  }
  const Json types = json.value("types", Json::array());
  for (const Json& text : types) {
    std::wstring fault = L"must be a text such as \"hp <= 10 -> Direct on line\"";
    const auto rule =
        text.is_string() ? circuits::TypeRule::parse(fromUtf8(text.get<std::string>()), fault) : std::nullopt;
    if (!rule) throw BadInput(file + ": types: " + text.dump() + ": " + toUtf8(fault));
    mapping.rules.push_back(*rule);
  }
  return mapping;
}

} // namespace

std::string faultsText(const circuits::SetList& list) {
  std::string text;
  for (const circuits::SetFault& fault : list.faults)
    text += (text.empty() ? "" : "\n") + circuits::faultText(list, fault);
  return text;
}

namespace {

/// Nothing, or what a run has begun: another one may be making these folders at this moment.
bool holdsOnlyParts(const fs::path& folder) {
  std::error_code error;
  for (const auto& entry : fs::directory_iterator(folder, error))
    if (entry.path().filename() != "out") return false;
  for (const auto& entry : fs::directory_iterator(folder / "out", error)) {
    const std::string name = entry.path().filename().string();
    if (name != "parts" && !name.starts_with("work-")) return false;
  }
  return true;
}

} // namespace

void needSetFolder(const fs::path& folder) {
  std::error_code error;
  if (!fs::exists(folder, error)) return;
  if (!fs::is_directory(folder, error)) throw CannotWrite(folder.string() + ": is not a folder");
  if (fs::exists(folder / "set.json", error) || fs::exists(folder / "out" / "parts", error) ||
      holdsOnlyParts(folder))
    return;
  throw CannotWrite(folder.string() + ": holds something else than a set; name an empty or new folder");
}

void needUnchangedSet(const SetOptions& options) {
  if (options.replacesChanged) return;
  const fs::path folder = options.out;
  const Json set = Json::parse(readFile(folder / "set.json").value_or(""), nullptr, false);
  if (!set.is_object()) return;
  Json files = set.value("sheets", Json::array());
  files.push_back(set.value("history", Json::object()));
  std::string changed;
  for (const Json& file : files) {
    const std::string name = file.is_object() ? file.value("file", "") : std::string();
    const std::optional<std::string> bytes = name.empty() ? std::nullopt : readFile(folder / name);
    if (bytes && circuits::digestOf(*bytes) != file.value("digest", ""))
      changed += (folder / name).string() + ": was changed since the set was made\n";
  }
  if (!changed.empty())
    throw CannotWrite(changed + "keep these files elsewhere, or give --replace to build over them");
}

SetPlan planSet(const SetOptions& options) {
  SetPlan plan;
  plan.settings = {options.site.site, options.site.path(), options.standardCode};
  if (options.sizing == "build")
    plan.settings.sizing = SetSettings::Sizing::build;
  else if (options.sizing != "lookup")
    throw BadInput("--sizing: \"" + options.sizing + "\" must be lookup or build");
  const std::optional<double> scale = brenvolt::plainNumber(fromUtf8(options.scale));
  if (!scale || *scale < smallestScale || *scale > largestScale)
    throw BadInput("--scale: \"" + options.scale + "\" must be a number from 0.2 to 5, such as 0.8");
  plan.settings.scale = *scale;
  if (options.order != "list" && options.order != "location")
    throw BadInput("--order: \"" + options.order + "\" must be list or location");
  const ListMapping mapping = mappingOf(options.mapping);
  plan.list = circuits::readSetList(options.list, mapping.columns, mapping.rules);
  plan.circuits = circuits::resolveRows(plan.settings, plan.list);
  plan.list.rows = {}; // everything that is needed of them is in the circuits
  for (const std::wstring& note : plan.list.notes)
    std::fprintf(stderr, "brenvolt: %s: %s\n", options.list.c_str(), toUtf8(note).c_str());
  if (!plan.list.faults.empty() && !options.keepsGoing) throw BadInput(faultsText(plan.list));
  plan.parts = std::make_unique<circuits::SetParts>(
      fs::path(options.out) / "out" / "parts", circuits::siteDigest(options.site.site) + BRENVOLT_VERSION);
  return plan;
}

} // namespace simhost
