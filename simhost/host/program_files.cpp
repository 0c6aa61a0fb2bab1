// The files of the programs, in a build folder and installed.
#include "simhost/host/program_files.h"

#include "simhost/host/module_loader.h"
#include "simhost/host/resource_module.h"

#include <sys/auxv.h>

#include <system_error>

namespace simhost {

namespace {

namespace fs = std::filesystem;

/// The first that exists; where none does, the one beside the program, which messages then name.
fs::path besideOrInstalled(std::string_view name, const fs::path& installed) {
  const fs::path beside = programFolder() / name;
  const fs::path inPrefix = programFolder().parent_path() / installed / name;
  std::error_code error;
  return !fs::exists(beside, error) && fs::exists(inPrefix, error) ? inPrefix : beside;
}

} // namespace

fs::path programFolder() {
  std::error_code error;
  fs::path program = fs::read_symlink("/proc/self/exe", error);
  // A bare root may have no /proc: the path by which the program was started serves there.
  const unsigned long started = ::getauxval(AT_EXECFN);
  if (error && started != 0) program = fs::canonical(reinterpret_cast<const char*>(started), error);
  return error ? fs::current_path() : program.parent_path();
}

fs::path dataFolder(std::string_view name) {
  return besideOrInstalled(name, BRENVOLT_DATA_FOLDER);
}

fs::path defaultResourceFolder() {
  return dataFolder("resources");
}

fs::path defaultModule() {
  return besideOrInstalled("ZanBrenvolt.kvx", BRENVOLT_MODULE_FOLDER);
}

} // namespace simhost
