// The list of subcommands: a new one is a file, its declaration and a row here.
#include "simhost/cli/subcommand.h"

#include "text/assertion.h"

#include <algorithm>

namespace simhost {

namespace {

struct Subcommand {
  std::string_view name;
  CommandTable (*table)();
};

constexpr Subcommand all[] = {
    {"draw", drawCommand},         {"replay", replayCommand},
    {"catalog", catalogCommand},   {"check", checkCommand},
    {"circuits", circuitsCommand}, {"report", reportCommand},
    {"rebuild", rebuildCommand},   {"set", setCommand},
    {"print", printCommand},       {"history", historyCommand},
    {"workbook", workbookCommand}, {"lisp", lispCommand},
    {"wire", wireCommand},         {"motors", motorsCommand},
    {"loads", loadsCommand},       {"components", componentsCommand},
    {"expr", exprCommand},         {"standards", standardsCommand},
    {"import", importCommand},     {"sql", sqlCommand},
    {"site", siteCommand},
};

} // namespace

std::vector<CommandTable> subcommands(std::string_view firstWord) {
  const bool isNamed =
      std::ranges::any_of(all, [&](const Subcommand& each) { return each.name == firstWord; });
  std::vector<CommandTable> tables;
  for (const Subcommand& each : all) {
    if (isNamed && each.name != firstWord) continue;
    tables.push_back(each.table());
    BRENVOLT_ASSERT(tables.back().name == each.name, "a subcommand is listed under its own name");
  }
  return tables;
}

} // namespace simhost
