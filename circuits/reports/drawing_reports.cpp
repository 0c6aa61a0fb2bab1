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
#include <set>
#include <utility>

namespace circuits {

namespace {

/// From the rows of devices to those of orders. A device that is shown on several sheets is one part, with the catalogue
/// number of the sheet that has it. Of a device only its name is kept, and which part it is.
class PartLines final {
public:
  void add(const std::vector<ReportRow>& devices) {
    for (const ReportRow& device : devices) {
      Line& line = *lines_.try_emplace(Key(device.begin() + nameCells, device.end())).first;
      if (device[family] == terminalFamily || !device[0]) {
        count(line, device[0].value_or(L"?"));
        continue;
      }
      std::wstring name = *device[0];
      for (std::size_t cell = 1; cell < nameCells; ++cell)
        name += L'\n' + device[cell].value_or(std::wstring());
      const auto [place, isNew] = devices_.try_emplace(std::move(name), &line);
      if (!isNew && !place->second->first[catalogue]) place->second = &line;
    }
  }

  void finish(Report& report, std::array<std::size_t, 3>& missing) {
    for (const auto& [name, line] : devices_)
      count(*line, name.substr(0, name.find(L'\n')));
    for (const auto& [key, part] : lines_) {
      if (part.quantity == 0) continue; // all its devices have a number on another sheet
      if (!key[catalogue]) missing[0] += part.quantity;
      ReportRow row = {brenvolt::formatInt(static_cast<std::int64_t>(part.quantity))};
      row.insert(row.end(), key.begin(), key.end());
      row.emplace_back(brenvolt::join(sortedOnce({part.tags.begin(), part.tags.end()}), L", "));
      report.rows.push_back(std::move(row));
    }
  }

private:
  static constexpr std::size_t nameCells = 3;
  static constexpr std::size_t family = 3;
  static constexpr std::size_t catalogue = 2; ///< behind the cells of the name

  struct Part {
    std::set<std::wstring> tags{};
    std::size_t quantity = 0;
  };
  using Key = std::vector<std::optional<std::wstring>>;
  using Line = std::pair<const Key, Part>;

  static void count(Line& line, const std::wstring& tag) {
    ++line.second.quantity;
    line.second.tags.insert(tag);
  }

  std::map<Key, Part> lines_;
  std::map<std::wstring, Line*> devices_;
};

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
          nullptr,
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
          {L" motors or loads were drawn without data: nothing is known of their load.",
           L" loads have a breaker or fuse above the limit for their small conductors (NEC 240.4(D)): choose "
           L"larger conductors.",
           L" motors have a feeder that is too small, or whose breaker or fuse is above its limit or has an "
           L"unknown one (NEC 430.24, 430.62): choose larger conductors or a smaller rating."}},
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
      : kind_(kinds()[static_cast<std::size_t>(kind)]), report_(kind_.heading) {
    if (kind == ReportKind::parts) parts_.emplace();
  }
  void add(ListRows list) {
    if (parts_)
      parts_->add(list.rows);
    else
      std::move(list.rows.begin(), list.rows.end(), std::back_inserter(report_.rows));
    for (std::size_t place = 0; place < missing_.size(); ++place)
      missing_[place] += list.missing[place];
  }
  /// Whether all rows have to be there before the first can be given on.
  [[nodiscard]] bool joins() const { return parts_ || kind_.join != nullptr; }
  /// Gives the rows on and forgets them.
  void passOn(const std::function<void(const Report&)>& take) {
    take(report_);
    report_.rows.clear();
  }
  Report finish() {
    if (parts_) parts_->finish(report_, missing_);
    if (kind_.join != nullptr) kind_.join(report_, missing_);
    for (std::size_t place = 0; place < missing_.size(); ++place)
      if (missing_[place] != 0)
        report_.notes.push_back(
            {missing_[place],
             brenvolt::formatInt(static_cast<std::int64_t>(missing_[place])) + kind_.notes[place]});
    return std::move(report_);
  }

private:
  const KindRow& kind_;
  Report report_;
  std::optional<PartLines> parts_; ///< of a parts list
  std::array<std::size_t, 3> missing_{};
};

} // namespace

std::wstring projectName(const simhost::DrawingDatabase& drawing) {
  return titleText(drawing, L"PROJECT");
}

std::wstring sheetNumber(const simhost::DrawingDatabase& drawing, const std::wstring& file) {
  std::wstring number = titleText(drawing, L"SHEET");
  return number.empty() ? file : number;
}

Sheet readSheet(const simhost::DrawingDatabase& drawing, std::wstring file) {
  std::wstring number = sheetNumber(drawing, file);
  return {
      std::move(number), titleText(drawing, L"TITLE"), std::move(file), readNetlist(drawing),
      circuitsOf(drawing, CircuitExtents::unknown)};
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
  Report report;
  inPieces(kind, [&report](const Report& piece) {
    std::vector<ReportRow> rows = std::move(report.rows);
    rows.insert(rows.end(), piece.rows.begin(), piece.rows.end());
    report = {piece.title, piece.columns, std::move(rows), piece.notes};
  });
  return report;
}

void SheetLists::inPieces(ReportKind kind, const std::function<void(const Report&)>& take) const {
  ReportMaker maker(kind);
  for (std::size_t sheet = 0; sheet < sheets_.size(); ++sheet) {
    const std::string text = sheets_.get(sheet);
    std::string_view bytes = text;
    for (std::size_t place = 0; place < static_cast<std::size_t>(kind); ++place)
      static_cast<void>(unpack(bytes));
    maker.add(unpacked(unpack(bytes)));
    if (!maker.joins()) maker.passOn(take);
  }
  take(maker.finish());
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
