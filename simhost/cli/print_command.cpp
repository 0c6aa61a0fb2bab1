// `brenvolt print`: drawings of a set as one PDF, with their lists at the end.
#include "circuits/export/paper.h"
#include "simhost/cli/subcommand.h"
#include "simhost/drawing/drawing_file.h"
#include "simhost/host/errors.h"
#include "text/encoding.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <set>
#include <string>
#include <vector>

namespace simhost {

namespace {

using brenvolt::fromUtf8;
using brenvolt::toUtf8;

struct PrintOptions {
  std::vector<std::string> drawings;
  std::string pdf;
  std::string title;
  std::vector<std::string> lists;
};

ExitCode runPrint(const PrintOptions& options) {
  std::vector<circuits::PaperSheet> pages;
  circuits::SheetLists lists;
  std::set<std::wstring> known;
  circuits::PaperOptions paper{fromUtf8(options.title), {}, {}};
  for (const std::string& file : options.drawings) {
    const LoadedDrawing loaded = loadDrawing(fromUtf8(file));
    if (loaded.drawing == nullptr) throw BadInput(toUtf8(loaded.error));
    circuits::Sheet sheet =
        circuits::readSheet(*loaded.drawing, brenvolt::fromUtf8(std::filesystem::path(file).stem().string()));
    if (paper.project.empty()) paper.project = circuits::projectName(*loaded.drawing);
    circuits::PaperSheet page{file, sheet.number, sheet.title, {}};
    for (const circuits::Device& device : sheet.netlist.devices)
      if (!device.tag.empty() && known.insert(device.tag).second) page.tags.push_back(device.tag);
    pages.push_back(std::move(page));
    if (!options.lists.empty()) lists.add(circuits::SheetLists::rowsOf(sheet));
  }
  for (const std::string& kind : options.lists) {
    const auto known_kind = circuits::reportKindOf(kind);
    if (!known_kind) throw BadInput("--list: \"" + kind + "\" is not a report");
    paper.lists.push_back(lists.report(*known_kind));
  }
  if (const auto reason = circuits::writePdf(options.pdf, pages, paper)) throw CannotWrite(*reason);
  std::printf("%zu sheets: %s\n", pages.size(), options.pdf.c_str());
  return ExitCode::done;
}

} // namespace

CommandTable printCommand() {
  auto options = std::make_shared<PrintOptions>();
  return {
      .name = "print",
      .description = "put drawings into one PDF, true to scale, with lists at the end",
      .options =
          {{"DRAWING",
            &options->drawings,
            "The drawings, in the order of the set",
            "FILE",
            {.isRequired = true}},
           {"--pdf", &options->pdf, "Write this file", "FILE", {.isRequired = true}},
           {"--title", &options->title, "Title of the document"},
           {"--list", &options->lists, "Add this list of the drawings at the end; may be given again",
            "KIND"}},
      .footer = "A unit of a drawing is a millimetre. A page is as large as PAPER_WIDTH and PAPER_HEIGHT of "
                "the drawing "
                "say, else as its extents.",
      .examples =
          {"brenvolt print motor.json --pdf motor.pdf",
           "brenvolt print motor.json --pdf motor.pdf --list parts --list wires"},
      .page = "set.md",
      .run = [options] { return runPrint(*options); },
  };
}

} // namespace simhost
