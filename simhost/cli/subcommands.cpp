// The table of subcommands: a new one is a file, its declaration and a row here.
#include "simhost/cli/subcommand.h"

namespace simhost {

namespace {

constexpr Subcommand table[] = {
    {"draw", "draw a circuit of the site's workbook", setUpDraw},
    {"replay", "run a recorded session again, without a screen", setUpReplay},
    {"catalog", "list the circuits of the site's workbook and check it", setUpCatalog},
    {"history", "list, show or delete saved configurations", setUpHistory},
    {"workbook", "turn a workbook into CSV files and back", setUpWorkbook},
    {"lisp", "run LISP files and forms in the simulated host, or talk to it at a prompt", setUpLisp},
    {"wire", "size the wire of a circuit, or of a list of circuits", setUpWire},
    {"motors", "list the motors of a code standard", setUpMotors},
    {"loads", "list the loads of a code standard", setUpLoads},
    {"components", "size a motor's protective components", setUpComponents},
    {"expr", "work out a formula of the engineering tables", setUpExpr},
    {"standards", "list the code standards that a site has tables for", setUpStandards},
    {"import", "make a database of Access files, workbooks, databases and folders of CSV files", setUpImport},
    {"sql", "run one statement on a database", setUpSql},
};

} // namespace

std::span<const Subcommand> subcommands() {
  return table;
}

} // namespace simhost
