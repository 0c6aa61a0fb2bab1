// The table of subcommands: a new one is a file, its declaration and a row here.
#include "simhost/cli/subcommand.h"

namespace simhost {

namespace {

constexpr Subcommand table[] = {
    {"draw", "draw a circuit of the site's workbook by a direct build", setUpDraw},
    {"catalog", "list the circuits of the site's workbook and check it", setUpCatalog},
    {"history", "list, show or delete saved configurations", setUpHistory},
    {"workbook", "turn a workbook into CSV files and back", setUpWorkbook},
    {"lisp", "run LISP files and forms in the simulated host, or talk to it at a prompt", setUpLisp},
};

} // namespace

std::span<const Subcommand> subcommands() {
  return table;
}

} // namespace simhost
