#include "simhost/drawing/drawing_file.h"
#include "simhost/drawing_lisp/drawing_functions.h"
#include "simhost/lisp/list.h"
#include "simhost/lisp/printer.h"
#include "text/compare.h"
#include "text/encoding.h"
#include "text/split.h"

#include <doctest/doctest.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <memory>
#include <random>
#include <string>
#include <vector>

using namespace simhost;

namespace {

/// An interpreter with a drawing; the file "template" is the drawing of another bench.
struct Bench {
  Bench() {
    const std::vector<std::wstring> before = interpreter.builtinNames();
    defineDrawingFunctions(
        interpreter, {[this] { return drawing.get(); },
                      [this](const std::wstring& name) {
                        if (name == L"template")
                          return SharedDrawing{drawingFromJson(templateJson, name).drawing, L""};
                        return SharedDrawing{nullptr, name + L": cannot read the file"};
                      }});
    for (const std::wstring& name : interpreter.builtinNames()) {
      if (std::find(before.begin(), before.end(), name) == before.end()) names.push_back(name);
    }
  }

  /// The printed value, or the error's message.
  std::string run(const std::string& text) {
    try {
      return brenvolt::toUtf8(lisp::printValue(interpreter.run(brenvolt::fromUtf8(text), L"t.lsp")));
    } catch (const lisp::LispError& error) {
      return "error: " + brenvolt::toUtf8(error.message());
    }
  }

  std::unique_ptr<DrawingDatabase> drawing = std::make_unique<DrawingDatabase>();
  std::string templateJson;
  lisp::Interpreter interpreter;
  std::vector<std::wstring> names; ///< of the functions on drawings
};

const char* const motorBlock = R"(
  (layer-define "Wires" "#c00000" 'dashed '((1 . "BLK") (90 . 100000) (290 . 1)))
  (define-block "Motor" '(0 0) (lambda ()
    (draw-circle '(0 0) 5)
    (draw-attribute-definition "TAG1" '(6 0) "M?" 2.5)
    (draw-attribute-definition "MFG" '(6 3) "" 2.5 "Hidden" T "Maker"))))";

} // namespace

TEST_CASE("what is drawn can be asked for again") {
  Bench bench;
  bench.run(motorBlock);
  const struct {
    const char* form;
    const char* value;
  } rows[] = {
      {R"((entity-get (draw-line '(1 2) '(3 4 5)) 'to))", "(3.0 4.0 5.0)"},
      {R"((entity-get (draw-polyline '((0 0) (1 0) (1 1)) "Wires" T 0.5) 'points))",
       "((0.0 0.0 0.0) (1.0 0.0 0.0) (1.0 1.0 0.0))"},
      {R"((list (entity-get (entity-last) 'closed) (entity-get (entity-last) "WIDTH")))", "(T 0.5)"},
      {R"((entity-get (draw-arc '(0 0) 2 0 90) 'end))", "90.0"},
      {R"((entity-get (draw-text '(0 0) "a" 2 nil 'right 90) 'justification))", "\"right\""},
      {R"((setq m (insert-block "motor" '(10 20) 2 0 "Wires" '(("tag1" . "M7")))))", nullptr},
      {R"((entity-attributes m))", R"((("TAG1" . "M7") ("MFG" . "")))"},
      {R"((entity-get (entity-attribute m "tag1") 'position))", "(22.0 20.0 0.0)"},
      {R"((entity-get (entity-attribute m "MFG") 'visible))", "nil"},
      {R"((entity-attribute m "none"))", "nil"},
      {R"((list (entity-get m 'kind) (entity-get m 'block) (entity-get m 'colour)))",
       R"(("block-reference" "Motor" nil))"},
      {R"((entity-set! m 'colour "#0000ff"))", "\"#0000ff\""},
      {R"((entity-get m 'colour))", "\"#0000ff\""},
      {R"((progn (entity-set! (entity-attribute m "MFG") 'text "ACME") (cdr (nth 1 (entity-attributes m)))))",
       "\"ACME\""},
      {R"((progn (entity-data-set! m "APP" "a;b") (entity-data m "app")))", R"(("a;b"))"},
      {R"((progn (entity-data-set! m "APP" '("x" "y")) (entity-data m "APP")))", R"(("x" "y"))"},
      {R"((progn (entity-data-set! m "APP" nil) (entity-data m "APP")))", "nil"},
      {R"((eq m (handle->entity (entity-handle m))))", "T"},
      {R"((list (length (entities-in-space)) (entity-erase m) (length (entities-in-space))))", "(5 T 4)"},
      {R"((handle->entity "0"))", "nil"},
      {R"((entity-get m 'kind))", "error: ENTITY-GET: the entity is erased or not of this drawing"},
      {R"((list (block-defined? "MOTOR") (block-defined? "x")))", "(T nil)"},
      {R"((progn (layer-define "wires" nil 'dotted) (wire-layer-settings "WIRES")))",
       R"(((1 . "BLK") (90 . 100000) (290 . 1)))"},
      {R"((progn (layer-define "Plain") (layer-define "Bare" nil nil T) (list (layers) (wire-layers))))",
       R"((("0" "Wires" "Hidden" "Plain" "Bare") ("Wires" "Bare")))"},
      {R"((progn (set-variable "TILEMODE" 0) (draw-circle '(0 0) 1) (list (current-space) (length (entities-in-space)))))",
       R"(("*Paper_Space" 1))"},
      {R"((list (set-variable "scale" 2.5) (get-variable "SCALE") (get-variable "none")))", "(2.5 2.5 nil)"},
  };
  for (const auto& row : rows) {
    CAPTURE(row.form);
    const std::string value = bench.run(row.form);
    if (row.value != nullptr) CHECK(value == row.value);
  }
}

TEST_CASE("a block whose drawing fails is not defined, and what was drawn is one step of undo") {
  Bench bench;
  const std::string before = drawingToJson(*bench.drawing);
  bench.run("(defun half (last) (define-block \"NB\" '(0 0) (lambda () (draw-line '(0 0) '(1 1) \"LQ\") (car "
            "last))))");
  CHECK(
      bench.run("(progn (draw-line '(0 0) '(2 2)) (ignore-errors (half 5)) (block-defined? \"NB\"))") ==
      "nil");
  CHECK(bench.run("(length (entities-in-space))") == "1");
  bench.drawing->undoLog().undo(1);
  CHECK(drawingToJson(*bench.drawing) == before);
  CHECK(bench.run("(half nil)") == "\"NB\"");
}

TEST_CASE("wrong arguments are told in words") {
  Bench bench;
  bench.run(motorBlock);
  const struct {
    const char* form;
    const char* message;
  } rows[] = {
      {"(draw-line '(1 2) 3)", "DRAW-LINE: argument 2 must be a point, not 3"},
      {"(draw-circle '(1 2) 0)", "DRAW-CIRCLE: the radius must be above 0"},
      {"(draw-polyline '((0 0) 1))", "DRAW-POLYLINE: argument 1 must be a list of points, not ((0 0) 1)"},
      {"(draw-text '(0 0) \"a\" 1 nil 'up)",
       "DRAW-TEXT: argument 5 must be left, centre, right or middle, not UP"},
      {"(define-block \"MOTOR\" '(0 0) (lambda () nil))", "DEFINE-BLOCK: block MOTOR exists already"},
      {"(insert-block \"x\" '(0 0))", "INSERT-BLOCK: block x is not defined"},
      {"(insert-block \"Motor\" '(0 0) 1 0 nil '((\"X\" . \"1\")))",
       "INSERT-BLOCK: block Motor has no attribute X"},
      {"(define-block \"Loop\" '(0 0) (lambda () (insert-block \"Loop\" '(0 0))))",
       "INSERT-BLOCK: a block can only contain references to blocks that were defined before it"},
      {"(entity-get (draw-circle '(0 0) 1) 'height)", "ENTITY-GET: a circle has no property height"},
      {"(entity-set! (entity-last) 'kind \"arc\")", "ENTITY-SET!: the property kind cannot be changed"},
      {"(entity-set! (entity-last) 'radius -1)", "ENTITY-SET!: the radius must be above 0"},
      {"(entity-attributes (entity-last))", "ENTITY-ATTRIBUTES: argument 1 must be a block reference, not "},
      {"(entity-erase \"1A\")", "ENTITY-ERASE: argument 1 must be an entity, not \"1A\""},
      {"(layer-define \"L\" nil nil '((290 . 100000)))",
       "LAYER-DEFINE: a wire setting has codes 1 to 4 for a text, 90 or 290 for an integer"},
      {"(set-variable \"TILEMODE\" 5)", "SET-VARIABLE: TILEMODE is 0 or 1"},
      {"(undo \"1\")", "UNDO: argument 1 must be an integer, not \"1\""},
  };
  for (const auto& row : rows) {
    CAPTURE(row.form);
    CHECK(bench.run(row.form).starts_with("error: " + std::string(row.message)));
  }
  bench.drawing.reset();
  CHECK(bench.run("(entity-last)") == "error: ENTITY-LAST: no drawing is open");
}

TEST_CASE("no arguments of any type harm the host or the drawing") {
  Bench bench;
  bench.run(motorBlock);
  bench.templateJson = drawingToJson(*bench.drawing);
  const std::vector<std::wstring> values = brenvolt::splitKeepingEmpty(
      LR"~(nil|T|0|-1|7|2.5|1e308|-1e-308|""|"TAG1"|"Motor"|"template"|"*Model_Space"|"#ff0000"|)~"
      LR"~("TILEMODE"|'layer|'scale|'points|'text|'(1 2)|'(1.5 1e308 3)|'((0 0) (1 1))|'(1 . 2)|)~"
      LR"~('(("TAG1" . "K"))|'((290 . 1))|(lambda () (undo 3))|(lambda () (draw-circle '(0 0) 1))|)~"
      LR"~((entity-last)|(insert-block "Motor" '(0 0))|(handle->entity "5"))~",
      L'|');
  std::mt19937 random(7);
  const auto pick = [&](std::size_t count) { return static_cast<std::size_t>(random() % count); };
  int done = 0;
  for (int round = 0; round < 6000; ++round) {
    const std::wstring& name = bench.names[pick(bench.names.size())];
    const lisp::Value function = bench.interpreter.findFunction(name).value();
    const std::size_t least = function.asBuiltin().minimumArguments;
    const std::size_t most = function.asBuiltin().maximumArguments;
    std::string form = "(" + brenvolt::toUtf8(name);
    for (std::size_t count = least + pick(most - least + 1); count > 0; --count) {
      form += " " + brenvolt::toUtf8(values[pick(values.size())]);
    }
    if (!bench.run(form + ")").starts_with("error")) ++done;
  }
  CHECK(done > 500); // enough of them really did something
  const std::string json = drawingToJson(*bench.drawing);
  const LoadedDrawing loaded = drawingFromJson(json, L"after");
  REQUIRE_MESSAGE(loaded.drawing != nullptr, brenvolt::toUtf8(loaded.error));
  CHECK(drawingToJson(*loaded.drawing) == json);
}

TEST_CASE("every function on drawings is described in the manual") {
  std::ifstream file("docs/lisp_drawing.md");
  const std::string manual{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
  Bench bench;
  CHECK(bench.names.size() > 30);
  for (const std::wstring& name : bench.names) {
    const std::string entry = "| `(" + brenvolt::toUtf8(brenvolt::toLower(name));
    CAPTURE(entry);
    CHECK((manual.find(entry + " ") != std::string::npos || manual.find(entry + ")") != std::string::npos));
  }
}
