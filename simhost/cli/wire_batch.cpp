// Reading a list of circuits, sizing them and writing the result beside what was read.
#include "simhost/cli/wire_batch.h"

#include "data/wire_columns.h"
#include "simhost/cli/csv_text.h"
#include "simhost/host/errors.h"
#include "simhost/host/files.h"
#include "text/encoding.h"
#include "text/split.h"

#include <algorithm>
#include <array>
#include <span>
#include <utility>

namespace simhost {

using brenvolt::toUtf8;
using brenvolt::WireCandidate;

namespace {

/// What is added to each circuit from its proposed row, in the order of `WireColumn`.
constexpr std::array<const char*, std::size(brenvolt::wireColumns)> resultColumns = {
    "size", "count", "fill-range", "ampacity", "load-percent", "drop", "drop-percent", "loss", "yearly-cost"};
constexpr const char* groundColumn = "ground";
/// Why there is no proposal; empty if there is one.
constexpr const char* noteColumn = "note";

class WireList final {
public:
  WireList(std::string file, const WireTexts& common) : file_(std::move(file)), common_(common) {
    const std::optional<std::string> text = readFile(file_);
    if (!text) throw BadInput(file_ + ": cannot be read");
    if (!brenvolt::fromUtf8Strict(*text)) throw BadInput(file_ + ": is not UTF-8");
    records_ = parseCsv(*text, file_);
    if (records_.empty()) throw BadInput(file_ + ": is empty; write a header with the names of the columns");
    readHeader();
  }

  SizedList size(WireRequests& requests) {
    SizedList result{csvLine(resultHeader())};
    for (const CsvRecord& record : std::span(records_).subspan(1))
      sizeOne(requests, record, result);
    throwFaults();
    return result;
  }

private:
  void readHeader() {
    for (std::size_t column = 0; column < header().size(); ++column) {
      const std::string name = toUtf8(brenvolt::trim(brenvolt::fromUtf8(header()[column])));
      const auto field = std::find_if(wireFields.begin(), wireFields.end(), [&name](const WireFieldRow& row) {
        return name == row.name;
      });
      if (field != wireFields.end()) addColumn(column, *field);
      for (const std::string& result : addedColumns())
        if (name == result)
          faults_.push_back(file_ + ", row 1: the column " + name + " is one of the result");
    }
    if (columns_.empty()) faults_.push_back(file_ + ", row 1: has no column of a circuit, such as fla");
    throwFaults();
  }

  void addColumn(std::size_t column, const WireFieldRow& field) {
    const bool isTwice = std::ranges::any_of(
        columns_, [&field](const auto& earlier) { return earlier.second == field.field; });
    if (isTwice) faults_.push_back(file_ + ", row 1: names the column " + field.name + " twice");
    columns_.emplace_back(column, field.field);
  }

  [[nodiscard]] const std::vector<std::string>& header() const { return records_.front().fields; }

  [[nodiscard]] std::vector<std::string> resultHeader() const {
    std::vector<std::string> names = header();
    for (std::string& name : addedColumns())
      names.push_back(std::move(name));
    return names;
  }

  [[nodiscard]] static std::vector<std::string> addedColumns() {
    std::vector<std::string> names(resultColumns.begin(), resultColumns.end());
    names.emplace_back(groundColumn);
    names.emplace_back(noteColumn);
    return names;
  }

  void sizeOne(WireRequests& requests, const CsvRecord& record, SizedList& result) {
    const std::string place = file_ + ", row " + std::to_string(record.line);
    if (record.fields.size() != header().size()) {
      faults_.push_back(
          place + ": has " + std::to_string(record.fields.size()) + " cells, the header has " +
          std::to_string(header().size()));
      return;
    }
    WireTexts texts = common_;
    for (const auto& [column, field] : columns_) {
      std::wstring cell = brenvolt::trim(brenvolt::fromUtf8(record.fields[column]));
      if (!cell.empty()) texts[field] = std::move(cell);
    }
    std::vector<WireFault> faults;
    const std::optional<WireRequest> request = requests.resolve(texts, faults);
    for (const WireFault& fault : faults)
      faults_.push_back(place + ", column " + wireField(fault.field).name + ": " + fault.reason);
    // Once a cell is bad no result is written, and only further bad cells are of interest.
    if (!request || !faults_.empty()) return;
    const brenvolt::WireLookupResult lookup = requests.lookUp(*request);
    result.isComplete = result.isComplete && isSized(*request, lookup);
    result.text += csvLine(resultOf(record, *request, lookup));
  }

  static std::vector<std::string> resultOf(
      const CsvRecord& record, const WireRequest& request, const brenvolt::WireLookupResult& lookup) {
    std::vector<std::string> cells = record.fields;
    const WireCandidate none;
    const WireCandidate& row = lookup.proposed ? lookup.rows[*lookup.proposed] : none;
    for (const brenvolt::WireColumnRow& column : brenvolt::wireColumns)
      cells.push_back(toUtf8(row.*column.cell));
    const std::vector<std::wstring>& grounds = request.groundSizes();
    cells.push_back(grounds.empty() ? std::string() : toUtf8(grounds.front()));
    cells.push_back(toUtf8(noteOn(request, lookup)));
    return cells;
  }

  void throwFaults() const {
    if (faults_.empty()) return;
    std::string message;
    for (const std::string& fault : faults_)
      message.append(message.empty() ? "" : "\n").append(fault);
    throw BadInput(message);
  }

  std::string file_;
  const WireTexts& common_;
  std::vector<CsvRecord> records_;
  std::vector<std::pair<std::size_t, WireField>> columns_; ///< place in the list and field
  std::vector<std::string> faults_;
};

} // namespace

SizedList sizeWires(WireRequests& requests, const std::string& file, const WireTexts& common) {
  return WireList(file, common).size(requests);
}

} // namespace simhost
