// `brenvolt check`: every mistake of a site, found before anyone draws.
#include "simhost/cli/finding_output.h"
#include "simhost/cli/subcommand.h"
#include "simhost/host/errors.h"
#include "simhost/json/json_text.h"
#include "text/encoding.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <memory>

namespace simhost {

namespace {

namespace fs = std::filesystem;
using brenvolt::fromUtf8;
using brenvolt::toUtf8;

struct CheckCommandOptions {
  std::string site;
  std::string workbook;
  std::string module;
  std::string language;
  std::vector<std::string> only;
  bool isQuick = false;
  bool asJson = false;
  bool showsRules = false;
};

circuits::CheckOptions checkOptions(const CheckCommandOptions& options) {
  std::error_code error;
  if (options.site.empty()) throw BadInput("SITE: name the folder of the site");
  if (!fs::is_directory(options.site, error)) throw BadInput(options.site + ": not a folder");
  circuits::CheckOptions check;
  check.site = fs::absolute(options.site).lexically_normal();
  if (!check.site.has_filename()) check.site = check.site.parent_path();
  check.workbook = options.workbook.empty() ? check.site / "zan_brenvolt.xls"
                                            : fs::absolute(options.workbook).lexically_normal();
  check.module = options.module;
  if (options.isQuick) check.depth = circuits::CheckDepth::quick;
  for (const std::string& name : options.only)
    check.kinds.insert(*circuits::kindOf(fromUtf8(name)));
  return check;
}

ExitCode runCheck(const CheckCommandOptions& options) {
  const FindingLanguages languages;
  const circuits::FindingWords& words = languages.words(options.language);
  if (options.showsRules) {
    std::printf("%s", toUtf8(circuits::rulesTable(words)).c_str());
    return ExitCode::done;
  }
  circuits::CheckOptions check = checkOptions(options);
  check.languages = languages.all();
  const circuits::CheckReport report = circuits::checkSite(check);
  if (options.asJson) {
    const nlohmann::ordered_json all = {
        {"findings", findingsJson(report.findings, words)}, {"allowed", findingsJson(report.allowed, words)}};
    std::puts(jsonText(all, 2).c_str());
  } else {
    printFindings(report, words);
  }
  return report.findings.empty() ? ExitCode::done : ExitCode::findings;
}

/// Those that have rules.
std::vector<std::string> kindNames() {
  std::vector<std::string> names;
  for (const circuits::Rule& rule : circuits::rules()) {
    const std::string name = toUtf8(circuits::kindName(rule.kind));
    if (std::ranges::find(names, name) == names.end()) names.push_back(name);
  }
  return names;
}

} // namespace

CommandTable checkCommand() {
  auto options = std::make_shared<CheckCommandOptions>();
  return {
      .name = "check",
      .description =
          "find mistakes of a site: workbook, forms, templates, tables, saved configurations, LISP",
      .options =
          {{"SITE", &options->site, "Folder of the site"},
           {"--workbook", &options->workbook, "Use this workbook instead of the site's", "FILE"},
           {"--only",
            &options->only,
            "Check only this kind of rules; can be repeated",
            "KIND",
            {.choices = kindNames()}},
           {"--quick", &options->isQuick, "Do not build the circuits"},
           {"--json", &options->asJson, "Print as JSON"},
           {"--rules", &options->showsRules, "Print the table of all rules instead"},
           {"--language", &options->language, "Two letters; default: from the environment", "CODE"},
           {"--module", &options->module, "The plug-in; default: ZanBrenvolt.kvx of the installation",
            "FILE"}},
      .footer = "The exit code is 0 for a site without findings, otherwise 5. Nothing is written.",
      .examples = {"brenvolt check site --quick", "brenvolt check site --only forms --json"},
      .page = "check.md",
      .run = [options] { return runCheck(*options); },
  };
}

} // namespace simhost
