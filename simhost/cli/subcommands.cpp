// The list of subcommands: a new one is a file, its declaration and a word here.
#include "simhost/cli/subcommand.h"

namespace simhost {

std::vector<CommandTable> subcommands() {
  return {
      drawCommand(),   replayCommand(),  catalogCommand(),    checkCommand(), circuitsCommand(),
      reportCommand(), historyCommand(), workbookCommand(),   lispCommand(),  wireCommand(),
      motorsCommand(), loadsCommand(),   componentsCommand(), exprCommand(),  standardsCommand(),
      importCommand(), sqlCommand(),     siteCommand(),
  };
}

} // namespace simhost
