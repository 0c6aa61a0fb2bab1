// The groups of catalogue parts: the results of a lookup, and the way of values to rows, to the head and back.
#include "config/config_units.h"
#include "config/widget_manager_catalog.h"
#include "config/widget_manager_maker.h"
#include "host/lisp_calls.h"
#include "host/resources.h"
#include "simhost/host/resource_module.h"
#include "tests/config/page_dialog.h"
#include "text/encoding.h"

#include <doctest/doctest.h>

namespace brenvolt::test {

namespace {

constexpr char lookupFunction[] =
    "(setq asked nil) (setq answer nil) (defun find-part (&rest what) (setq asked what) answer)";

ZanScriptEntry partRule(std::wstring command = L"(find-part @table @mfg @cat @asm)") {
  return {std::move(command), 1, {{L"FU", L"Fuse"}, {L"CB", L"Breaker"}}};
}

/// A manager's two groups in a dialog, with a lookup function that keeps its arguments in `asked` and returns
/// `answer`.
struct PartsPage {
  explicit PartsPage(std::string_view actions = {}) : session(actions) {
    session.eval(lookupFunction);
    exposeFunction(L"find-part");
    manager.Configure(&unit, partRule());
    dialog.onOpen = [this](ZanSettingsWnd& window) {
      manager.AttachWindow(&window);
      if (act) act(window);
    };
    dialog.onOk = [this](ZanSettingsWnd&) { closing = {group(0), group(1)}; };
  }
  [[nodiscard]] ZanGroupCtrl* at(ZanSettingsWnd& window, std::size_t place) const {
    return window.GroupAt(manager.GetPage(), place);
  }
  /// The values of a group separated by "|".
  [[nodiscard]] std::string group(std::size_t place) {
    const ZanAnnotationDataList rows = manager.ExportRows().value();
    std::string text;
    for (std::size_t field = 2; field < rows.items()[place].row->fields.size(); ++field)
      text += (field == 2 ? "" : "|") + toUtf8(rows.items()[place].row->fields[field].value);
    return text;
  }
  void run() { session.run(dialog); }

  PageSession session;
  ZanConfigUnit unit{7};
  ZanWidgetManagerCatalog manager{nullptr};
  PageDialog dialog;
  std::function<void(ZanSettingsWnd&)> act;
  std::vector<std::string> closing; ///< the values of both groups when the dialog was closed
};

} // namespace

TEST_CASE("the answer of a lookup fills a group from its first row on") {
  struct Case {
    const char* answer;
    const char* values;
  };
  const Case cases[] = {
      // The count is fourth, and a lookup returns none.
      {R"('("ARDEN" "X1" "A" "TYPE" "1A" "2A"))", "ARDEN|X1|A|1|TYPE|1A|2A||||"},
      {R"('("ARDEN" "X1" "A"))", "ARDEN|X1|A|9|old||||||"},
      {R"("ARDEN")", "ARDEN|old|old|9|old||||||"},
      {R"('("ARDEN" 5 nil 2.5))", "ARDEN|||1|||||||"},
      {R"('("A" "B" "C" "D" "E" "F" "G" "H" "I" "J" "K" "L"))", "A|B|C|1|D|E|F|G|H|I|J"},
      {R"('("ARDEN" ("in" "out") "behind"))", "ARDEN||in|1|out||||||"},
      {"nil", "old|old|old|9|old||||||"},
      {"7", "old|old|old|9|old||||||"},
      {"T", "old|old|old|9|old||||||"},
      {"(car 5)", "old|old|old|9|old||||||"},
  };
  for (const Case& each : cases) {
    CAPTURE(each.answer);
    PartsPage page(R"({"press": "settings.1.0.button.0"})");
    page.session.eval(std::string("(defun find-part (&rest what) ") + each.answer + ")");
    page.act = [&page](ZanSettingsWnd& window) {
      page.at(window, 0)->WriteValues({L"old", L"old", L"old", L"9", L"old"});
    };
    page.run();
    CHECK_EQ(page.closing[0], each.values);
    CHECK_EQ(page.closing[1], "||||||||||");
  }
}

TEST_CASE("the command learns table and first rows, and has the editor to itself") {
  PartsPage page(
      R"({"edit": "settings.1.1", "row": 1, "to": "ARDEN"}, {"edit": "settings.1.1", "row": 3, "to": "A 1"},
      {"doubleClick": "settings.1.1", "row": 2})");
  page.run();
  CHECK_EQ(page.session.eval("asked"), R"(("CB" "ARDEN" "" "A 1"))");
  CHECK_EQ(page.dialog.calls, std::vector<std::string>{"editor host", "editor dialog"});
}

TEST_CASE("rows go to the history and come back; rows of another title or table are dropped") {
  ZanAnnotationDataList rows;
  {
    PartsPage page;
    page.act = [&](ZanSettingsWnd& window) {
      page.at(window, 0)->WriteValues({L"ARDEN", L"X1"});
      page.at(window, 1)->WriteValues({L"ELTON"});
      rows = page.manager.ExportRows().value();
    };
    page.run();
    CHECK_FALSE(page.manager.ExportRows().has_value()); // its window is gone
    page.manager.ImportRows(rows);
  }
  REQUIRE_EQ(rows.size(), 2);
  const ZanAnnotationData& fuse = *rows.items()[0].row;
  CHECK_EQ(toUtf8(fuse.name), "Catalog");
  CHECK_EQ(fuse.fields[0], ZanAnnotationField{L"Fuse", 5005, L"TITLE", true});
  CHECK_EQ(fuse.fields[1], ZanAnnotationField{L"FU", 5005, L"TABLE", false});
  CHECK_EQ(fuse.fields[2], ZanAnnotationField{L"ARDEN", 5005, L"Manufacturer", false});

  struct Case {
    std::size_t row;
    std::size_t field;
    const wchar_t* text;
    const char* first;
    const char* second;
  };
  const Case cases[] = {
      {0, 2, L"SOLVA", "SOLVA|X1|||||||||", "ELTON||||||||||"},
      {0, 0, L"FUSE", "ARDEN|X1|||||||||", "ELTON||||||||||"}, // names have no case
      {0, 0, L"Fuses", "||||||||||", "ELTON||||||||||"},
      {1, 1, L"CB2", "ARDEN|X1|||||||||", "||||||||||"},
  };
  for (const Case& each : cases) {
    CAPTURE(toUtf8(each.text));
    PartsPage page;
    ZanAnnotationDataList changed = rows;
    changed.items()[each.row].row->fields[each.field].value = each.text;
    page.act = [&](ZanSettingsWnd&) { page.manager.ImportRows(changed); };
    page.run();
    CHECK_EQ(page.closing, std::vector<std::string>{each.first, each.second});
  }
}

} // namespace brenvolt::test
