// What a flow sets and reads back: the rules of the controls without anybody in front of them.
#include "test_dialogs.h"

#include <doctest/doctest.h>

#include <functional>
#include <string>

using simhost::EverythingDialog;
using simhost::Outcome;

namespace {

/// Lets a flow work on its controls between two presses, and gives the events that came of it.
std::vector<std::string> eventsOf(const std::function<void(EverythingDialog&)>& work) {
  const Outcome outcome =
      simhost::runActions(R"({"press": "report"}, {"press": "ok"})", [&work](EverythingDialog& dialog) {
        dialog.onEvent = [&work](EverythingDialog& flow, const std::string& line) {
          if (line == "clicked report") work(flow);
        };
      });
  CHECK(outcome.failure == "");
  return {outcome.events.begin() + 1, outcome.events.end() - 1};
}

} // namespace

TEST_CASE("changes by the flow raise no event, but for the tree's selection") {
  const auto events = eventsOf([](EverythingDialog& flow) {
    flow.Text(L"length").SetText(L"1");
    flow.List(L"voltage").Select(0);
    flow.List(L"factor").SetText(L"0.7");
    flow.Tick(L"drop").SetChecked(true);
    flow.Grid(L"sizes").SelectRow(2);
    flow.Grid(L"sizes").SetCell(1, 2, L"9");
    flow.Pages(L"options").ShowPage(2);
    flow.Text(L"length").SetFocus();
    flow.Tree(L"units").Select(2);
    flow.Tree(L"units").Select(2);
    flow.Button(L"report").SetFocus();
  });
  CHECK(events == std::vector<std::string>{"selected units 2,0"});
}

TEST_CASE("a list keeps its selection on its entry and tells its edit field apart") {
  eventsOf([](EverythingDialog& flow) {
    KvUiList& list = flow.List(L"voltage");
    CHECK(list.Insert(0, L"115", 5) == 0);
    CHECK(list.Text() == L"460");
    CHECK(list.Selected() == 2);
    list.Remove(1);
    CHECK(list.Selected() == 1);
    CHECK(list.DataAt(0) == 5);
    CHECK(list.TextAt(9) == L"");
    list.Remove(1);
    CHECK(list.Selected() == -1);
    CHECK(list.Text() == L"");
    list.SetText(L"115");
    CHECK(list.Selected() == 0);

    KvUiList& factor = flow.List(L"factor");
    factor.Select(1);
    CHECK(factor.Text() == L"0.9");
    factor.SetText(L"0.85");
    CHECK(factor.Selected() == -1);
    CHECK(factor.Text() == L"0.85");
    factor.Clear();
    CHECK(factor.Text() == L"");
  });
}

TEST_CASE("a grid keeps what fits when its size changes, and its selection on its row") {
  eventsOf([](EverythingDialog& flow) {
    KvUiGrid& grid = flow.Grid(L"sizes");
    grid.SelectRow(3);
    grid.RemoveRow(1);
    CHECK(grid.SelectedRow() == 2);
    CHECK(grid.Cell(1, 2) == L"25");
    CHECK(grid.Cell(0, 1) == L"Size");
    grid.SetSize(1, 3);
    CHECK(grid.SelectedRow() == 0);
    CHECK(grid.Cell(1, 2) == L"25");
    CHECK(grid.Cell(2, 2) == L"");
    grid.SetSize(2, 4);
    CHECK(grid.Cell(2, 2) == L"");
  });
}
