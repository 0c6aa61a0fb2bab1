// A check without builds of a workbook of two hundred sheets and ten thousand rows, beside reading the same workbook and
// loading the site's LISP, which no check can do without. The smallest of several times counts, in time of the
// processor.
#include "circuits/check/check.h"
#include "circuits/check/check_session.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <limits>
#include <string>

namespace {

namespace fs = std::filesystem;

constexpr int sheetCount = 200;
constexpr int rowCount = 50;   ///< of each sheet
constexpr int sampleRows = 42; ///< of the sheet that the others are made from
constexpr int rounds = 9;

std::string textOf(const fs::path& file) {
  std::ifstream in(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

void writeText(const fs::path& file, const std::string& text) {
  std::ofstream(file, std::ios::binary) << text;
}

/// The sample with its first sheet two hundred times, more forms in its first record: a site without findings.
bool makeSite(const fs::path& site, const std::string& tool) {
  fs::copy("site", site, fs::copy_options::recursive);
  fs::remove(site / "zan_brenvolt.xml");
  std::string rows = textOf(site / "workbook" / "M3_DOL.csv");
  const std::size_t second = rows.find("\nMCTL,");
  if (second == std::string::npos) return false;
  for (int row = sampleRows; row < rowCount; ++row)
    rows.insert(second, "\n,,,,,,,(site_dot #xyz #scl 0 0),,,,,,");
  for (const fs::directory_entry& entry : fs::directory_iterator(site / "workbook"))
    if (entry.path().stem() != "ANNO_CODE") fs::remove(entry.path());
  std::string circuits = "CIRCUIT,TYPE,TEMPLATE,WORKSHEET,PRESETS\n";
  for (int sheet = 0; sheet < sheetCount; ++sheet) {
    const std::string name = "S" + std::to_string(sheet);
    circuits.append(sheet == 0 ? "Motors" : "").append(",Type ").append(std::to_string(sheet));
    circuits.append(",templates/motor3_dol.json,").append(name).append(",MOTOR\n");
    writeText(site / "workbook" / (name + ".csv"), rows);
  }
  writeText(site / "workbook" / "ZAN_CIRCS.csv", circuits);
  const std::string call = "'" + tool + "' workbook pack '" + (site / "workbook").string() + "' '" +
                           (site / "zan_brenvolt.xls").string() + "' > /dev/null";
  return std::system(call.c_str()) == 0; // NOLINT(concurrency-mt-unsafe)
}

/// Milliseconds of the processor: other programs do not count.
template <typename Action>
double timeOf(const Action& action) {
  const std::clock_t begin = std::clock();
  action();
  return static_cast<double>(std::clock() - begin) * 1e3 / CLOCKS_PER_SEC;
}

} // namespace

int main(int, char** words) {
  const fs::path programs = fs::absolute(words[0]).parent_path();
  std::string folder = (fs::temp_directory_path() / "check-bench-XXXXXX").string();
  if (::mkdtemp(folder.data()) == nullptr) return 1;
  const fs::path site = fs::path(folder) / "site";
  if (!makeSite(site, (programs / "brenvolt").string())) return 1;
  const fs::path workbook = site / "zan_brenvolt.xls";

  double reading = std::numeric_limits<double>::max();
  double checking = reading;
  std::size_t findings = 0;
  for (int round = 0; round < rounds; ++round) {
    reading = std::min(reading, timeOf([&] {
                         circuits::Findings own;
                         const circuits::SiteModel model = circuits::readSite(site, workbook, own);
                         const circuits::CheckSession session(model, {}, own);
                       }));
    circuits::CheckOptions options;
    options.site = site;
    options.workbook = workbook;
    options.depth = circuits::CheckDepth::quick;
    checking = std::min(checking, timeOf([&] { findings = circuits::checkSite(options).findings.size(); }));
  }
  std::printf(
      "reading and loading %.1f ms, check %.1f ms (%zu findings): ratio %.2f, allowed 1.5\n", reading,
      checking, findings, checking / reading);
  fs::remove_all(folder);
  return 0;
}
