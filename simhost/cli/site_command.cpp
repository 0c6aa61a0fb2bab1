// `brenvolt site new`: the sample site as the start of a firm's own.
#include "simhost/cli/subcommand.h"
#include "simhost/host/errors.h"
#include "simhost/host/program_files.h"

#include <cstdio>
#include <filesystem>
#include <memory>

namespace simhost {

namespace {

namespace fs = std::filesystem;

struct SiteCommandOptions {
  std::string folder;
};

/// A folder that holds something is the user's: nothing is put into it.
void checkIsFree(const fs::path& folder) {
  std::error_code error;
  if (!fs::exists(folder, error)) return;
  if (!fs::is_directory(folder, error)) throw BadInput(folder.string() + ": is a file; name a new folder");
  if (!fs::is_empty(folder, error) || error)
    throw BadInput(folder.string() + ": is not empty; name a new folder");
}

ExitCode makeSite(const SiteCommandOptions& options) {
  const fs::path sample = dataFolder("site");
  std::error_code error;
  if (!fs::is_directory(sample, error))
    throw BadInput(sample.string() + ": the sample site is missing; install or build the tool again");
  fs::path folder = fs::absolute(options.folder).lexically_normal();
  if (!folder.has_filename()) folder = folder.parent_path();
  checkIsFree(folder);
  // Copied beside it and renamed: a copy that fails in the middle leaves no half site.
  fs::path copy = folder;
  copy += ".new";
  if (fs::exists(copy, error)) throw BadInput(copy.string() + ": remains of an earlier call; remove it");
  fs::create_directories(folder.parent_path(), error);
  if (!error) fs::copy(sample, copy, fs::copy_options::recursive, error);
  if (!error) fs::rename(copy, folder, error);
  if (error) {
    std::error_code ignored;
    fs::remove_all(copy, ignored);
    throw CannotWrite(folder.string() + ": " + error.message());
  }
  std::printf(
      "%s: a copy of the sample site\nnext: brenvolt catalog --site %s --check\n", options.folder.c_str(),
      options.folder.c_str());
  return ExitCode::done;
}

} // namespace

CommandTable siteCommand() {
  auto options = std::make_shared<SiteCommandOptions>();
  return {
      .name = "site",
      .description = "create a site of your own, or publish its tables on a server",
      .commands =
          {{.name = "new",
            .description = "copy the sample site into a new folder",
            .options = {{"DIR", &options->folder, "The new folder", {}, {.isRequired = true}}},
            .run = [options] { return makeSite(*options); }},
           sitePublishCommand()},
      .footer = "The copy has everything that a site needs: workbook, templates, symbols, LISP and tables. "
                "Change what "
                "differs in your firm.",
      .examples = {"brenvolt site new our-site", "brenvolt site new plants/north"},
      .page = "tool.md",
  };
}

} // namespace simhost
