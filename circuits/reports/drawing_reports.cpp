// Each list as its columns and what joins the rows of the sheets.
#include "circuits/reports/drawing_reports.h"

#include "circuits/reports/list_rows.h"
#include "text/compare.h"
#include "text/numbers.h"
#include "text/split.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <map>
#include <tuple>
#include <utility>

namespace circuits {

namespace {

struct PartLine {
  std::vector<std::wstring> tags;
  std::size_t quantity = 0;
};

/// From the rows of devices to those of orders. A device that is shown on several sheets is one part, with the catalogue
/// number of the sheet that has it.
void joinParts(Report& report, std::array<std::size_t, 3>& missing) {
  constexpr std::size_t nameCells = 3;
  constexpr std::size_t family = 3;
  constexpr std::size_t catalogue = 5;
  using Key = std::vector<std::optional<std::wstring>>;
  std::map<Key, ReportRow> devices;
  std::map<Key, PartLine> lines;
  const auto add = [&lines](const ReportRow& device, const std::wstring& tag) {
    PartLine& line = lines[Key(device.begin() + nameCells, device.end())];
    ++line.quantity;
    line.tags.push_back(tag);
  };
  for (ReportRow& device : report.rows) {
    if (device[family] == terminalFamily || !device[0]) {
      add(device, device[0].value_or(L"?"));
      continue;
    }
    const auto [place, isNew] = devices.try_emplace(Key(device.begin(), device.begin() + nameCells), device);
    if (!isNew && !place->second[catalogue]) place->second = std::move(device);
  }
  for (const auto& [key, device] : devices)
    add(device, *device[0]);
  report.rows.clear();
  for (auto& [key, line] : lines) {
    if (!key[catalogue - nameCells]) missing[0] += line.quantity;
    ReportRow row = {brenvolt::formatInt(static_cast<std::int64_t>(line.quantity))};
    row.insert(row.end(), key.begin(), key.end());
    row.emplace_back(brenvolt::join(sortedOnce(std::move(line.tags)), L", "));
    report.rows.push_back(std::move(row));
  }
}

void joinTerminals(Report& report, std::array<std::size_t, 3>& missing) {
  std::stable_sort(report.rows.begin(), report.rows.end(), [](const ReportRow& one, const ReportRow& other) {
    if (one[0] != other[0]) return comesBefore(one[0].value_or(L""), other[0].value_or(L""));
    return comesBefore(one[1].value_or(L""), other[1].value_or(L""));
  });
  for (std::size_t row = 0; row + 1 < report.rows.size(); ++row) {
    const auto isSame = [&](std::size_t one, std::size_t other) {
      return report.rows[one][0] == report.rows[other][0] && report.rows[one][1] == report.rows[other][1];
    };
    if (isSame(row, row + 1) && (row == 0 || !isSame(row - 1, row))) ++missing[0];
  }
}

std::vector<ReportColumn> motorColumns() {
  std::vector<ReportColumn> columns = {{"tag", L"Tag"}, {"circuit", L"Circuit"}};
  for (const LoadField& field : loadFields())
    columns.push_back({field.key, field.title, field.place != 0 && field.place != 2});
  for (const ReportColumn& column : std::vector<ReportColumn>{
           {"wires", L"Wires"},
           {"length", L"Length"},
           {"drop", L"Voltage drop"},
           {"protection", L"Protection"},
           {"sheet", L"Sheet"}})
    columns.push_back(column);
  return columns;
}

struct KindRow {
  const char* word;
  ReportKind kind;
  Report heading;
  void (*join)(Report&, std::array<std::size_t, 3>&); ///< null: the rows of the sheets one after the other
  std::array<const wchar_t*, 3> notes;                ///< behind the number that is missing
};

const std::array<KindRow, 6>& kinds() {
  static const std::array<KindRow, 6> rows = {
      KindRow{
          "parts",
          ReportKind::parts,
          {L"Parts",
           {{"quantity", L"Quantity", true},
            {"family", L"Family"},
            {"maker", L"Maker"},
            {"catalogue", L"Catalogue number"},
            {"assembly", L"Assembly"},
            {"rating", L"Rating"},
            {"tags", L"Tags"}}},
          joinParts,
          {L" devices have no catalogue number: no part was chosen for them."}},
      KindRow{
          "wires",
          ReportKind::wires,
          {L"Wires",
           {{"number", L"Number"},
            {"size", L"Size"},
            {"colour", L"Colour"},
            {"from", L"From"},
            {"to", L"To"},
            {"length", L"Length"},
            {"sheet", L"Sheet"}}},
          nullptr,
          {L" wires have no number: the drawing shows none on their nets.",
           L" wires touch no pin at all and are not in this list.",
           L" wires have an end that meets nothing: the list does not say where they go on."}},
      KindRow{
          "terminals",
          ReportKind::terminals,
          {L"Terminals",
           {{"strip", L"Strip"},
            {"terminal", L"Terminal"},
            {"number", L"Wire number"},
            {"size", L"Size"},
            {"inside", L"One side"},
            {"outside", L"Other side"},
            {"jumper", L"Jumper to"},
            {"cable", L"Cable"},
            {"sheet", L"Sheet"}}},
          joinTerminals,
          {L" terminals of a strip are drawn more than once."}},
      KindRow{
          "motors",
          ReportKind::motors,
          {L"Motors and loads", motorColumns()},
          nullptr,
          {L" motors or loads were drawn without data: nothing is known of their load."}},
      KindRow{
          "cables",
          ReportKind::cables,
          {L"Cables",
           {{"cable", L"Cable"},
            {"from", L"From"},
            {"to", L"To"},
            {"conductors", L"Conductors"},
            {"length", L"Length"},
            {"raceway", L"Raceway"},
            {"sheet", L"Sheet"}}},
          nullptr,
          {L" cables have no length: the drawings do not keep one."}},
      KindRow{
          "sheets",
          ReportKind::sheets,
          {L"Sheets",
           {{"sheet", L"Sheet"},
            {"title", L"Title"},
            {"file", L"File"},
            {"circuits", L"Circuits", true},
            {"devices", L"Devices", true},
            {"nets", L"Nets", true},
            {"unnumbered", L"Nets without a number", true},
            {"doubled", L"Nets with several numbers", true},
            {"names", L"Circuits by name"}}},
          nullptr,
          {}}};
  return rows;
}

std::wstring titleText(const simhost::DrawingDatabase& drawing, std::wstring_view tag) {
  const simhost::EntityNode* node = drawing.store().findBlock(drawing.currentSpace())->first;
  for (; node != nullptr; node = node->next)
    for (const KvDbHandle handle : node->attributes)
      if (const simhost::EntityNode* attribute = drawing.find(handle)) {
        const auto& value = std::get<simhost::Attribute>(attribute->value.shape);
        if (brenvolt::equalsOrdinalNoCase(value.tag, tag) && !value.text.text.empty()) return value.text.text;
      }
  return {};
}

std::optional<std::size_t> columnOf(const Report& report, const std::string& key) {
  const auto found =
      std::find_if(report.columns.begin(), report.columns.end(), [&key](const ReportColumn& column) {
        return column.key == key;
      });
  if (found == report.columns.end()) return std::nullopt;
  return static_cast<std::size_t>(found - report.columns.begin());
}

/// The heading, the rows of one sheet after the other, what joins them, and the notes.
class ReportMaker final {
public:
  explicit ReportMaker(ReportKind kind)
      : kind_(kinds()[static_cast<std::size_t>(kind)]), report_(kind_.heading) {}
  void add(ListRows list) {
    std::move(list.rows.begin(), list.rows.end(), std::back_inserter(report_.rows));
    for (std::size_t place = 0; place < missing_.size(); ++place)
      missing_[place] += list.missing[place];
  }
  Report finish() {
    if (kind_.join != nullptr) kind_.join(report_, missing_);
    for (std::size_t place = 0; place < missing_.size(); ++place)
      if (missing_[place] != 0)
        report_.notes.push_back(
            brenvolt::formatInt(static_cast<std::int64_t>(missing_[place])) + kind_.notes[place]);
    return std::move(report_);
  }

private:
  const KindRow& kind_;
  Report report_;
  std::array<std::size_t, 3> missing_{};
};

} // namespace

std::wstring sheetNumber(const simhost::DrawingDatabase& drawing, const std::wstring& file) {
  std::wstring number = titleText(drawing, L"SHEET");
  return number.empty() ? file : number;
}

Sheet readSheet(const simhost::DrawingDatabase& drawing, std::wstring file) {
  std::wstring number = sheetNumber(drawing, file);
  return {
      std::move(number), titleText(drawing, L"TITLE"), std::move(file), readNetlist(drawing),
      circuitsOf(drawing)};
}

std::optional<ReportKind> reportKindOf(std::string_view word) {
  for (const KindRow& row : kinds())
    if (row.word == word) return row.kind;
  return std::nullopt;
}

std::vector<std::string> reportKinds() {
  std::vector<std::string> words;
  for (const KindRow& row : kinds())
    words.emplace_back(row.word);
  return words;
}

Report makeReport(ReportKind kind, const std::vector<Sheet>& sheets) {
  ReportMaker maker(kind);
  for (const Sheet& sheet : sheets)
    maker.add(rowsOf(kind, sheet));
  return maker.finish();
}

std::string SheetLists::rowsOf(const Sheet& sheet) {
  std::string bytes;
  for (const KindRow& row : kinds())
    pack(bytes, packed(circuits::rowsOf(row.kind, sheet)));
  return bytes;
}

Report SheetLists::report(ReportKind kind) const {
  ReportMaker maker(kind);
  for (std::string_view bytes : sheets_) {
    for (std::size_t place = 0; place < static_cast<std::size_t>(kind); ++place)
      static_cast<void>(unpack(bytes));
    maker.add(unpacked(unpack(bytes)));
  }
  return maker.finish();
}

std::optional<std::string> applyLayout(Report& report, const ReportLayout& layout) {
  for (const auto* names : {&layout.columns, &layout.sort})
    for (const std::string& name : *names)
      if (!columnOf(report, name)) return "there is no column \"" + name + "\"";
  for (auto name = layout.sort.rbegin(); name != layout.sort.rend(); ++name) {
    const std::size_t column = *columnOf(report, *name);
    std::stable_sort(
        report.rows.begin(), report.rows.end(), [column](const ReportRow& one, const ReportRow& other) {
          return comesBefore(one[column].value_or(std::wstring()), other[column].value_or(std::wstring()));
        });
  }
  if (layout.columns.empty()) return std::nullopt;
  Report chosen{report.title, {}, {}, std::move(report.notes)};
  for (const std::string& name : layout.columns)
    chosen.columns.push_back(report.columns[*columnOf(report, name)]);
  for (const ReportRow& row : report.rows) {
    ReportRow cells;
    for (const std::string& name : layout.columns)
      cells.push_back(row[*columnOf(report, name)]);
    chosen.rows.push_back(std::move(cells));
  }
  report = std::move(chosen);
  return std::nullopt;
}

bool comesBefore(std::wstring_view one, std::wstring_view other) {
  const auto isDigit = [](wchar_t character) { return character >= L'0' && character <= L'9'; };
  std::size_t left = 0;
  std::size_t right = 0;
  while (left < one.size() && right < other.size()) {
    if (!isDigit(one[left]) || !isDigit(other[right])) {
      if (one[left] != other[right]) return one[left] < other[right];
      ++left;
      ++right;
      continue;
    }
    const auto number = [&isDigit](std::wstring_view text, std::size_t& at) {
      while (at + 1 < text.size() && text[at] == L'0' && isDigit(text[at + 1]))
        ++at;
      const std::size_t start = at;
      while (at < text.size() && isDigit(text[at]))
        ++at;
      return text.substr(start, at - start);
    };
    const std::wstring_view first = number(one, left);
    const std::wstring_view second = number(other, right);
    if (first.size() != second.size()) return first.size() < second.size();
    if (first != second) return first < second;
  }
  if (one.size() - left != other.size() - right) return one.size() - left < other.size() - right;
  return one < other; // 01 and 1 differ after all
}

} // namespace circuits
