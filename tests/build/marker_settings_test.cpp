// Which motor's rows a marker gets, by its place in the tree of templates.
#include "build/marker_settings.h"

#include "text/encoding.h"

#include <doctest/doctest.h>

using namespace brenvolt;

namespace {

/// A tree written as "order[=motor]", children in brackets: "1 10=A(1 5=N) 20". Ids count from 1 as it is read.
class Tree final {
public:
  explicit Tree(const std::wstring& text) : text_(text) { read(markers); }

  ZanDwgMarkerList markers;
  std::vector<std::int32_t> ids;
  std::vector<MotorRows> pages; ///< in the order of the text, for any order of insertion

private:
  void read(ZanDwgMarkerList& list) {
    struct Entry {
      std::wstring order, motor;
      std::size_t children = 0;
    };
    std::vector<Entry> entries(1);
    std::wstring* field = &entries.back().order;
    const auto next = [&] {
      entries.emplace_back();
      field = &entries.back().order;
    };
    std::size_t depth = 0;
    for (; at_ < text_.size(); ++at_) {
      const wchar_t character = text_[at_];
      if (depth == 0 && character == L')') break;
      if (character == L'(' && depth++ == 0) entries.back().children = at_ + 1;
      if (character == L')') --depth;
      if (depth > 0 || character == L')') continue;
      if (character == L' ')
        next();
      else if (character == L'=')
        field = &entries.back().motor;
      else
        *field += character;
    }
    const std::size_t end = at_;
    for (const Entry& entry : entries) {
      ZanDwgMarker marker;
      marker.order = entry.order;
      if (!entry.motor.empty()) marker.controls.AddRow(ZanAnnotationData(entry.motor));
      list.Insert(std::move(marker));
    }
    list.Finish();
    for (std::size_t index = 0; index < entries.size(); ++index) {
      ZanDwgMarker& marker = list.markers()[index];
      ids.push_back(marker.id);
      if (!marker.controls.isEmpty()) pages.push_back({marker.id, marker.controls});
      if (entries[index].children == 0) continue;
      at_ = entries[index].children;
      read(marker.EnsureChildren());
    }
    at_ = end;
  }

  const std::wstring& text_;
  std::size_t at_ = 0;
};

/// The motor of each marker, in the order of the text, "-" for the circuit as a whole.
std::string motorsOf(const Tree& tree, const MarkerSettings::RowsOfMotor& rows) {
  const ZanAnnotationDataList circuit;
  MarkerSettings settings(tree.markers, rows, circuit);
  std::string got;
  for (const std::int32_t id : tree.ids) {
    const RowsInForce inForce = settings.at(*tree.markers.findById(id));
    got += inForce.rows->isEmpty() ? "-" : toUtf8(inForce.rows->items().front().row->name);
  }
  return got;
}

} // namespace

TEST_CASE("markers get the rows of the motor that their order has reached, in every way of building") {
  struct Row {
    const char* promise;
    const wchar_t* tree;
    const char* got;
  };
  const Row rows[] = {
      {"one motor serves all, also what stands before it", L"1 5=A 9", "AAA"},
      {"no motor serves none", L"1 9", "--"},
      {"the second begins at its order", L"1=A 9 10=B 11", "AABB"},
      {"an equal order has reached it, whichever was drawn first", L"1=A 10 10=B", "ABB"},
      {"the third is reached at its own order and not before", L"1=A 10=B 11 20=C 30", "ABBCC"},
      {"four motors, and markers of each", L"1=A 2 3=B 4 5=C 6 7=D 8", "AABBCCDD"},
      {"a nested template has the motor of its place, whatever its own orders say",
       L"1=A 10=B(1 15 30) 20=C(1)", "ABBBBCC"},
      {"a motor of its own begins at its order, and ends with the template", L"1=A(1 5=N 9) 2", "AANNA"},
      {"nested twice", L"1=A 10=B(1(7) 3=N(1 2)) 11", "ABBBNNNB"},
      {"below a marker before the first motor", L"1(1) 5=A", "AAA"},
      {"a nested motor says nothing about the template around it", L"1(5=N) 2", "-N-"},
      {"orders that are no numbers are 0", L"a=A b 1=B", "AAB"},
  };
  for (const Row& row : rows) {
    CAPTURE(row.promise);
    const std::wstring text = row.tree;
    const Tree tree(text);
    CHECK_EQ(motorsOf(tree, rowsOfMarkers()), row.got);
    CHECK_EQ(motorsOf(tree, rowsOfPages(tree.pages)), row.got);
  }
}

TEST_CASE("a list that has grown since it was asked for has its new motors") {
  const std::wstring text = L"1=A 2";
  Tree tree(text);
  const ZanAnnotationDataList circuit;
  MarkerSettings settings(tree.markers, rowsOfMarkers(), circuit);
  ZanDwgMarkerList& children = tree.markers.markers().front().EnsureChildren();
  for (const wchar_t* motor : {L"", L"N"}) {
    ZanDwgMarker marker;
    marker.order = L"1";
    if (*motor != L'\0') marker.controls.AddRow(ZanAnnotationData(motor));
    children.Insert(std::move(marker));
    children.Finish();
    const RowsInForce inForce = settings.at(children.markers().front());
    CHECK_EQ(inForce.rows->items().front().row->name, *motor == L'\0' ? L"A" : motor);
  }
}
