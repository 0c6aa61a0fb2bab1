// `brenvolt lisp` as a user meets it: values, order, messages, exit codes, files that are written or left alone.
#include "tool.h"

#include <doctest/doctest.h>

#include <filesystem>
#include <string>

using brenvolt::ToolFolder;
using brenvolt::ToolRun;

namespace {

bool contains(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

} // namespace

TEST_CASE("the value of the last form stands alone on the last line") {
  const ToolFolder folder;
  CHECK(folder.run({"lisp", "-e", "(string-append \"a\" \"b\")"}).output == "\"ab\"\n");
  CHECK(folder.run({"lisp", "-e", "(princ \"text\")"}).output == "text\n\"text\"\n");
  CHECK(folder.run({"lisp", "-e", "(princ \"\xc3\xa4\\n\") nil"}).output == "\xc3\xa4\nnil\n");
}

TEST_CASE("files and forms run in the order given") {
  const ToolFolder folder;
  const std::string first = folder.write("first.lsp", "(setq trail (cons 'first trail))");
  const std::string second = folder.write("second.lsp", "(setq trail (cons 'second trail))");
  const ToolRun run = folder.run(
      {"lisp", "-e", "(setq trail '(start))", second, "-e", "(setq trail (cons 'form trail))", first});
  CHECK(run.output == "(FIRST FORM SECOND START)\n");
  CHECK(run.exitCode == 0);
}

TEST_CASE("with the trace flag on, each form of a build tells itself ahead and behind") {
  const ToolFolder folder;
  const std::string here = std::filesystem::current_path().string();
  const ToolRun run = folder.run({"lisp", "--site", here + "/site", here + "/tests/cli/trace.lsp"});
  CHECK_MESSAGE(run.exitCode == 0, run.errors);
  CHECK(run.output.ends_with("\nT\n"));
  const std::string in = "\nEXEC IN: (site_title #xyz #scl \"CONTROL STATION\")";
  const std::string out = "\nEXEC OUT: (site_title #xyz #scl \"CONTROL STATION\")";
  const std::size_t ahead = run.output.find(in);
  REQUIRE(ahead != std::string::npos);
  CHECK(run.output.find(out) == ahead + in.size());
}

TEST_CASE("a LISP error names file, line and form, and nothing is written") {
  const ToolFolder folder;
  const std::string file = folder.write("wrong.lsp", "(setq a 1)\n\n(car a)\n");
  const ToolRun run =
      folder.run({"lisp", "--save", folder.path("d.json"), "--svg", folder.path("d.svg"), file});
  CHECK(run.exitCode == 3);
  CHECK(run.output.empty());
  CHECK(contains(run.errors, file + ":3: "));
  CHECK(contains(run.errors, "(CAR A)"));
  CHECK_FALSE(folder.has("d.json"));
  CHECK_FALSE(folder.has("d.svg"));
}

TEST_CASE("bad input ends with a message that names it, and code 3") {
  const ToolFolder folder;
  const std::string damaged = folder.write("damaged.json", "{\"format\": 1");
  struct Row {
    std::vector<std::string> arguments;
    std::string message;
  };
  const Row rows[] = {
      {{"lisp", folder.path("none.lsp")}, "none.lsp: cannot be read"},
      {{"lisp", folder.write("bytes.lsp", "(princ \"\xff\")")}, "bytes.lsp: not UTF-8"},
      {{"lisp", "-e", "(list 1"}, "-e:1: "},
      {{"lisp", "-e", "(defun again (n) (+ 1 (again n))) (again 1)"}, "-e:1: "},
      {{"lisp", "--drawing", damaged, "-e", "1"}, "damaged.json"},
      {{"lisp", "--drawing", folder.path("no.json"), "-e", "1"}, "no.json"},
      {{"lisp", "--answers", damaged, "-e", "1"}, "damaged.json: invalid JSON"},
      {{"lisp", "--answers", folder.write("huge.json", "{\"a\": 1e999}"), "-e", "1"},
       "huge.json: invalid JSON"},
      {{"lisp", "--site", folder.path("nowhere"), "-e", "1"}, "nowhere/site.lsp: cannot be read"},
      {{"lisp", "--module", folder.path("no.kvx"), "-e", "1"}, "no.kvx: no such module"},
      {{"lisp", "--module", damaged, "-e", "1"}, "damaged.json"},
  };
  for (const Row& row : rows) {
    const ToolRun run = folder.run(row.arguments);
    CHECK_MESSAGE(run.exitCode == 3, row.message);
    CHECK_MESSAGE(contains(run.errors, row.message), run.errors);
    CHECK(run.output.empty());
  }
}

TEST_CASE("wrong arguments give code 1, a file that cannot be written code 4, help and version code 0") {
  const ToolFolder folder;
  folder.write("file", "");
  CHECK(folder.run({}).exitCode == 1);
  CHECK(folder.run({"nonsense"}).exitCode == 1);
  CHECK(folder.run({"lisp", "--nonsense"}).exitCode == 1);
  CHECK(folder.run({"lisp", "-e"}).exitCode == 1);
  CHECK(folder.run({"--help"}).exitCode == 0);
  CHECK(contains(folder.run({"lisp", "--help"}).output, "--answers"));
  CHECK(contains(folder.run({"--version"}).output, "brenvolt 0."));
  const ToolRun run = folder.run({"lisp", "--save", folder.path("file/d.json"), "-e", "(princ \"run\")"});
  CHECK(run.exitCode == 4);
  CHECK(contains(run.errors, "cannot write " + folder.path("file/d.json")));
  CHECK(run.output.empty());
}

TEST_CASE("the prompt reads forms from a pipe, goes on behind an error and ends with its code") {
  const ToolFolder folder;
  const ToolRun run = folder.run({"lisp"}, "(+ 1 ; one (\n 2)\n(string-append \"a(\" \"b\")\n\n'x\n");
  CHECK(run.output == "3\n\"a(b\"\nX\n");
  CHECK(run.exitCode == 0);
  const ToolRun wrong = folder.run({"lisp"}, "(car 1)\n(+ 1 1)\n");
  CHECK(wrong.output == "2\n");
  CHECK(contains(wrong.errors, "input:1: "));
  CHECK(wrong.exitCode == 3);
  CHECK(contains(folder.run({"lisp"}, "(list 1\n").errors, "the last form is incomplete"));
}
