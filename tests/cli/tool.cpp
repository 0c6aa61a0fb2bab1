// Starts the tool through the shell, with its streams in files.
#include "tool.h"

#include <doctest/doctest.h>
#include <sys/wait.h>

#include <cstdlib>
#include <fstream>
#include <sstream>

namespace brenvolt {

namespace {

std::string shellWord(const std::string& word) {
  std::string text = "'";
  for (const char character : word)
    text += character == '\'' ? std::string("'\\''") : std::string(1, character);
  return text + "'";
}

} // namespace

std::string toolPath() {
  const char* bin = std::getenv("BRENVOLT_BIN");
  return (std::filesystem::absolute(bin == nullptr ? "out/bin" : bin) / "brenvolt").string();
}

std::vector<std::string> linesOf(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);)
    lines.push_back(line);
  return lines;
}

void checkHolds(const std::string& text, std::initializer_list<std::string> parts) {
  for (const std::string& part : parts)
    CHECK_MESSAGE(text.find(part) != std::string::npos, "lacks \"", part, "\": ", text);
}

std::string ToolFolder::path(const std::string& name) const {
  return (folder_ / name).string();
}

std::string ToolFolder::write(const std::string& name, std::string_view text) const {
  std::filesystem::create_directories((folder_ / name).parent_path());
  std::ofstream(folder_ / name, std::ios::binary) << text;
  return path(name);
}

std::string ToolFolder::read(const std::string& name) const {
  std::ifstream in(folder_ / name, std::ios::binary);
  std::stringstream text;
  text << in.rdbuf();
  return text.str();
}

bool ToolFolder::has(const std::string& name) const {
  return std::filesystem::exists(folder_ / name);
}

ToolRun ToolFolder::run(
    const std::vector<std::string>& arguments, std::string_view input,
    const std::vector<std::string>& environment) const {
  const std::string in = write("tool.in", input);
  std::string command = "env HOME=" + shellWord(folder_.path().string()) +
                        " XDG_CONFIG_HOME= XDG_STATE_HOME= XDG_CACHE_HOME= BRENVOLT_DB= LC_ALL=C";
  for (const std::string& setting : environment)
    command += " " + shellWord(setting);
  command += " " + shellWord(toolPath());
  for (const std::string& argument : arguments)
    command += " " + shellWord(argument);
  command += " <" + shellWord(in) + " >" + shellWord(path("tool.out")) + " 2>" + shellWord(path("tool.err"));
  const int status = std::system(command.c_str());
  return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, read("tool.out"), read("tool.err")};
}

} // namespace brenvolt
