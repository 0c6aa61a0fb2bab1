#include "simhost/cli/finding_output.h"

#include "text/encoding.h"

#include <nlohmann/json.hpp>

#include <cstdio>

namespace simhost {

using brenvolt::toUtf8;
using Json = nlohmann::ordered_json;

namespace {

Json jsonOf(const circuits::Finding& finding) {
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
  addText("place", circuits::placeText(place));
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

Json findingsJson(const std::vector<circuits::Finding>& findings) {
  Json list = Json::array();
  for (const circuits::Finding& finding : findings)
    list.push_back(jsonOf(finding));
  return list;
}

void printFindings(const circuits::CheckReport& report) {
  for (const circuits::Finding& finding : report.findings)
    std::printf("%s\n", toUtf8(circuits::findingText(finding)).c_str());
  std::printf("%s", toUtf8(circuits::countsText(report.findings)).c_str());
  if (!report.allowed.empty()) std::printf("; %zu allowed", report.allowed.size());
  std::printf("\n");
}

} // namespace simhost
