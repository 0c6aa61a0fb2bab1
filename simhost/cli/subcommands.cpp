// The table of subcommands: a new one is a file, its declaration and a row here.
#include "simhost/cli/subcommand.h"

namespace simhost {

namespace {

constexpr Subcommand table[] = {
    {"lisp", "run LISP files and forms in the simulated host, or talk to it at a prompt", setUpLisp},
};

} // namespace

std::span<const Subcommand> subcommands() {
  return table;
}

} // namespace simhost
