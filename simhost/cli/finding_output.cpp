#include "simhost/cli/finding_output.h"

#include "simhost/host/errors.h"
#include "simhost/host/program_files.h"
#include "simhost/host/resource_module.h"
#include "text/encoding.h"

#include <nlohmann/json.hpp>

#include <cstdio>
#include <stdexcept>
#include <utility>

namespace simhost {

using brenvolt::toUtf8;
using Json = nlohmann::ordered_json;

namespace {

Json jsonOf(const circuits::Finding& finding, const circuits::FindingWords& words) {
  const circuits::FindingPlace& place = finding.place;
  Json json = {
      {"severity", toUtf8(circuits::severityName(finding.rule->severity))},
      {"rule", toUtf8(finding.rule->id)},
      {"kind", toUtf8(circuits::kindName(finding.rule->kind))}};
  const auto addText = [&json](const char* name, const std::wstring& text) {
    if (!text.empty()) json[name] = toUtf8(text);
  };
  addText("file", place.file);
  addText("sheet", place.sheet);
  if (place.row > 0) json["row"] = place.row;
  if (place.column > 0) json["column"] = place.column;
  addText("columnName", place.columnName);
  addText("code", place.code);
  if (place.position) json["position"] = {place.position->first, place.position->second};
  addText("place", circuits::placeText(place, words));
  addText("text", finding.text.text);
  if (finding.text.length > 0) {
    json["from"] = finding.text.from;
    json["length"] = finding.text.length;
  }
  addText("what", finding.what);
  addText("remedy", finding.remedy);
  return json;
}

} // namespace

FindingLanguages::FindingLanguages() {
  try {
    languages_ = circuits::readFindingWords(dataFolder("resources") / "rules");
  } catch (const std::runtime_error& error) {
    throw BadInput(error.what());
  }
}

const circuits::FindingWords& FindingLanguages::words(std::string language) const {
  if (language.empty()) language = languageOfEnvironment();
  const auto found = languages_.find(language);
  return found == languages_.end() ? english_ : found->second;
}

std::vector<circuits::FindingWords> FindingLanguages::all() const {
  std::vector<circuits::FindingWords> words;
  for (const auto& [language, each] : languages_)
    words.push_back(each);
  return words;
}

Json findingsJson(std::vector<circuits::Finding> findings, const circuits::FindingWords& words) {
  circuits::translate(findings, words);
  Json list = Json::array();
  for (const circuits::Finding& finding : findings)
    list.push_back(jsonOf(finding, words));
  return list;
}

void printFindings(circuits::CheckReport report, const circuits::FindingWords& words) {
  circuits::translate(report.findings, words);
  for (const circuits::Finding& finding : report.findings)
    std::printf("%s\n", toUtf8(circuits::findingText(finding, words)).c_str());
  std::printf("%s", toUtf8(circuits::countsText(report.findings, words)).c_str());
  if (!report.allowed.empty())
    std::printf("; %zu %s", report.allowed.size(), toUtf8(words.word(L"counts", L"allowed")).c_str());
  std::printf("\n");
}

} // namespace simhost
