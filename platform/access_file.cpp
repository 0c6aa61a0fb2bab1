// Cells are taken from the raw rows: the library's own binding of columns truncates long texts and cannot distinguish
// NULL from empty.
#include "platform/access_file.h"

#include "platform/shared_library.h"
#include "text/encoding.h"
#include "text/numbers.h"

// The order matters: the second header needs the first.
#include <glib.h>
#include <mdbtools.h>

#include <array>
#include <charconv>
#include <chrono>
#include <cmath>
#include <cstring>
#include <set>
#include <string_view>

namespace brenvolt::tables {

namespace {

/// The library that reads Access files; what it allocates is freed by the library that it is built on.
class MdbLibrary final : public SharedLibrary {
public:
  MdbLibrary() : SharedLibrary(BRENVOLT_MDB_LIBRARY) {}

  decltype(&::g_free) free = find("g_free");
  decltype(&::mdb_close) mdb_close = find("mdb_close");
  decltype(&::mdb_crack_row) mdb_crack_row = find("mdb_crack_row");
  decltype(&::mdb_fetch_row) mdb_fetch_row = find("mdb_fetch_row");
  decltype(&::mdb_find_pg_row) mdb_find_pg_row = find("mdb_find_pg_row");
  decltype(&::mdb_find_row) mdb_find_row = find("mdb_find_row");
  decltype(&::mdb_free_tabledef) mdb_free_tabledef = find("mdb_free_tabledef");
  decltype(&::mdb_is_user_table) mdb_is_user_table = find("mdb_is_user_table");
  decltype(&::mdb_numeric_to_string) mdb_numeric_to_string = find("mdb_numeric_to_string");
  decltype(&::mdb_open) mdb_open = find("mdb_open");
  decltype(&::mdb_read_catalog) mdb_read_catalog = find("mdb_read_catalog");
  decltype(&::mdb_read_columns) mdb_read_columns = find("mdb_read_columns");
  decltype(&::mdb_read_pg) mdb_read_pg = find("mdb_read_pg");
  decltype(&::mdb_read_table) mdb_read_table = find("mdb_read_table");
  decltype(&::mdb_rewind_table) mdb_rewind_table = find("mdb_rewind_table");
  decltype(&::mdb_unicode2ascii) mdb_unicode2ascii = find("mdb_unicode2ascii");
  decltype(&::mdb_uuid_to_string) mdb_uuid_to_string = find("mdb_uuid_to_string");
};

const MdbLibrary& mdb() {
  static const MdbLibrary library;
  return library;
}

/// Column types that the library's header does not name.
constexpr int bigIntType = 0x13;
constexpr int extendedDateType = 0x14;
/// In a column's description: the byte with further properties, and the bits of it that say that the file's program works
/// the cells out by a formula. Only versions from the first one with this kind of column on have them.
constexpr std::size_t propertiesOffset = 16;
constexpr unsigned char calculatedBits = 0xC0;
/// The bits of a row's offset that are the offset.
constexpr int offsetMask = 0x1FFF;
/// Length, position and a reserved word precede a long value.
constexpr std::size_t longValueHeader = 12;
constexpr std::uint32_t isInline = 0x80000000U;
constexpr std::uint32_t isOnePage = 0x40000000U;
constexpr std::uint32_t lengthMask = 0x3FFFFFFFU;
/// Digits that a double keeps for any number.
constexpr std::size_t exactDigits = 15;

template <typename Number>
Number readLittleEndian(std::string_view bytes) {
  // The library swaps nothing here, and neither do we: every machine we build for is little endian.
  Number value{};
  std::memcpy(&value, bytes.data(), std::min(bytes.size(), sizeof value));
  return value;
}

/// The value typed into a single-precision column: 0.3, not 0.300000012.
double typedSingle(float value) {
  if (!std::isfinite(value)) return 0.0;
  std::array<char, 64> buffer{};
  const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value);
  double result = 0.0;
  std::from_chars(buffer.data(), end.ptr, result);
  return result;
}

/// Of a number from 0 to 99.
std::string twoDigits(std::int64_t value) {
  return {static_cast<char>('0' + value / 10), static_cast<char>('0' + value % 10)};
}

/// Days since 1899-12-30 as a readable text: a date, a time of day when there is no date, or both.
std::string dateText(double value) {
  constexpr double farthestDay = 3000000.0;
  if (!std::isfinite(value) || std::fabs(value) > farthestDay) return realText(value);
  auto day = static_cast<std::int64_t>(std::trunc(value));
  // The fraction counts forward even on days before the first.
  std::int64_t seconds = std::llround(std::fabs(value - std::trunc(value)) * 86400.0);
  if (seconds == 86400) {
    seconds = 0;
    ++day;
  }
  std::string time =
      twoDigits(seconds / 3600) + ":" + twoDigits(seconds / 60 % 60) + ":" + twoDigits(seconds % 60);
  if (day == 0 && seconds != 0) return time;
  using namespace std::chrono;
  const year_month_day date(sys_days(year(1899) / December / 30) + days(day));
  const int yearNumber = static_cast<int>(date.year());
  if (yearNumber < 0 || yearNumber > 9999) return realText(value);
  std::string text = twoDigits(yearNumber / 100) + twoDigits(yearNumber % 100);
  text += '-';
  text += twoDigits(static_cast<unsigned>(date.month()));
  text += '-';
  text += twoDigits(static_cast<unsigned>(date.day()));
  return seconds == 0 ? text : text + " " + time;
}

ColumnType typeOf(const MdbColumn& column) {
  switch (column.col_type) {
  case MDB_BOOL:
  case MDB_BYTE:
  case MDB_INT:
  case bigIntType:
    return ColumnType::integer;
  case MDB_LONGINT:
    return column.is_long_auto != 0 ? ColumnType::key : ColumnType::integer;
  case MDB_MONEY:
  case MDB_FLOAT:
  case MDB_DOUBLE:
  case MDB_NUMERIC:
    return ColumnType::real;
  case MDB_BINARY:
  case MDB_OLE:
    return ColumnType::blob;
  default:
    return ColumnType::text;
  }
}

} // namespace

struct AccessFile::Native {
  MdbHandle* handle = nullptr;
  std::int64_t roundedCells = 0;
  std::int64_t brokenValues = 0;

  std::string decode(std::string_view bytes) const;
  std::string longValue(std::string_view field);
  TableValue decimal(const char* digits);
  TableValue money(std::string_view field);
  TableValue value(const MdbColumn& column, const MdbField& field);
  MdbCatalogEntry* entry(const std::string& table) const;
  void noteColumns(const MdbTableDef& table, TableReceiver& receiver) const;
  bool readRows(MdbTableDef& table, TableReceiver& receiver);
  /// The byte at a place of the present table's description, counted from the begin of its first page; steps on.
  bool readDescription(int& place, unsigned char& byte) const;
  void findCalculated(const MdbTableDef& table);
  bool isCalculated(const MdbColumn& column) const { return calculated.contains(column.col_num); }

  /// Numbers of the present table's calculated columns.
  std::set<int> calculated;
};

AccessFile::AccessFile() : native_(std::make_unique<Native>()) {}

AccessFile::~AccessFile() {
  if (native_->handle != nullptr) mdb().mdb_close(native_->handle);
}

const std::wstring& AccessFile::fault() {
  return mdb().fault();
}

bool AccessFile::open(const std::string& path) {
  native_->handle = mdb().mdb_open(path.c_str(), MDB_NOFLAGS);
  return native_->handle != nullptr && mdb().mdb_read_catalog(native_->handle, MDB_TABLE) != nullptr &&
         native_->handle->num_catalog > 0;
}

std::vector<std::string> AccessFile::tableNames() const {
  std::vector<std::string> names;
  for (unsigned index = 0; index < native_->handle->num_catalog; ++index) {
    auto* entry = static_cast<MdbCatalogEntry*>(g_ptr_array_index(native_->handle->catalog, index));
    const std::string_view name = entry->object_name;
    // Left by an interrupted change of a table: not the user's.
    const bool isLeftover = name.starts_with("~TMP");
    if (entry->object_type == MDB_TABLE && mdb().mdb_is_user_table(entry) != 0 && !isLeftover)
      names.emplace_back(name);
  }
  return names;
}

MdbCatalogEntry* AccessFile::Native::entry(const std::string& table) const {
  for (unsigned index = 0; index < handle->num_catalog; ++index) {
    auto* found = static_cast<MdbCatalogEntry*>(g_ptr_array_index(handle->catalog, index));
    if (found->object_type == MDB_TABLE && table == found->object_name) return found;
  }
  return nullptr;
}

bool AccessFile::read(const std::string& name, TableReceiver& receiver) {
  MdbCatalogEntry* entry = native_->entry(name);
  MdbTableDef* table = entry == nullptr ? nullptr : mdb().mdb_read_table(entry);
  if (table == nullptr) return false;
  mdb().mdb_read_columns(table);
  native_->findCalculated(*table);
  std::vector<SourceColumn> columns;
  for (unsigned index = 0; index < table->num_cols; ++index) {
    const auto* column = static_cast<MdbColumn*>(g_ptr_array_index(table->columns, index));
    columns.push_back({fromUtf8(column->name), typeOf(*column)});
  }
  bool done = receiver.columns(columns);
  if (done) {
    native_->noteColumns(*table, receiver);
    done = native_->readRows(*table, receiver);
  }
  mdb().mdb_free_tabledef(table);
  return done;
}

bool AccessFile::Native::readDescription(int& place, unsigned char& byte) const {
  // A description that fills its page continues on another one, after a header of eight bytes that begins with four
  // others and then names the next page.
  constexpr int head = 8;
  while (place >= handle->fmt->pg_size) {
    const auto next = readLittleEndian<std::uint32_t>({reinterpret_cast<const char*>(handle->pg_buf) + 4, 4});
    if (next == 0 || mdb().mdb_read_pg(handle, next) == 0) return false;
    place -= static_cast<int>(handle->fmt->pg_size) - head;
  }
  byte = handle->pg_buf[place++];
  return true;
}

void AccessFile::Native::findCalculated(const MdbTableDef& table) {
  calculated.clear();
  const MdbFormatConstants& format = *handle->fmt;
  const bool canCalculate = handle->f->jet_version >= MDB_VER_ACCDB_2007;
  const std::size_t size = format.tab_col_entry_size;
  std::array<unsigned char, 64> description{};
  if (!canCalculate || size > description.size() || size <= propertiesOffset) return;
  // The library's own reading of the columns leaves this property out, so their descriptions are walked once more.
  if (mdb().mdb_read_pg(handle, table.entry->table_pg) == 0) return;
  int place =
      format.tab_cols_start_offset + static_cast<int>(table.num_real_idxs) * format.tab_ridx_entry_size;
  for (unsigned index = 0; index < table.num_cols; ++index) {
    for (std::size_t at = 0; at < size; ++at)
      if (!readDescription(place, description[at])) return;
    if ((description[propertiesOffset] & calculatedBits) == calculatedBits)
      calculated.insert(description[format.col_num_offset]);
  }
}

void AccessFile::Native::noteColumns(const MdbTableDef& table, TableReceiver& receiver) const {
  for (unsigned index = 0; index < table.num_cols; ++index) {
    const auto* column = static_cast<MdbColumn*>(g_ptr_array_index(table.columns, index));
    const std::wstring name = L"column " + fromUtf8(column->name);
    if (column->col_type == MDB_COMPLEX)
      receiver.note(name + L": attachments and lists of values are not imported");
    if (isCalculated(*column)) receiver.note(name + L": calculated values are not imported");
    if (column->col_type == extendedDateType) receiver.note(name + L": extended dates are not imported");
  }
}

bool AccessFile::Native::readRows(MdbTableDef& table, TableReceiver& receiver) {
  std::int64_t brokenRows = 0;
  std::int64_t place = 0;
  std::vector<MdbField> fields(table.num_cols + 1U);
  mdb().mdb_rewind_table(&table);
  while (mdb().mdb_fetch_row(&table) != 0) {
    int start = 0;
    std::size_t size = 0;
    if (mdb().mdb_find_row(handle, static_cast<int>(table.cur_row) - 1, &start, &size) != 0 ||
        mdb().mdb_crack_row(&table, start & offsetMask, size, fields.data()) < 0) {
      ++brokenRows;
      continue;
    }
    // Long values move the page under the row: their fields are copied out first.
    std::vector<std::string> copies(table.num_cols);
    TableRow row;
    for (unsigned index = 0; index < table.num_cols; ++index) {
      MdbField& field = fields[index];
      if (field.value == nullptr || field.siz <= 0) {
        field.siz = 0;
        continue;
      }
      copies[index].assign(static_cast<const char*>(field.value), static_cast<std::size_t>(field.siz));
    }
    for (unsigned index = 0; index < table.num_cols; ++index) {
      fields[index].value = copies[index].data();
      row.push_back(value(*static_cast<MdbColumn*>(g_ptr_array_index(table.columns, index)), fields[index]));
    }
    if (!receiver.row(std::move(row), ++place)) return false;
  }
  if (brokenRows > 0) receiver.note(formatInt(brokenRows) + L" damaged rows are not imported");
  if (brokenValues > 0) receiver.note(formatInt(brokenValues) + L" damaged long values are cut short");
  if (roundedCells > 0)
    receiver.note(formatInt(roundedCells) + L" numbers of more than 15 digits are rounded");
  return true;
}

TableValue AccessFile::Native::value(const MdbColumn& column, const MdbField& field) {
  if (isCalculated(column)) return TableValue::null();
  // Whether a boolean is NULL is the value itself.
  if (column.col_type == MDB_BOOL) return TableValue::ofInteger(field.is_null != 0 ? 0 : 1);
  if (field.is_null != 0) return TableValue::null();
  const std::string_view bytes(static_cast<const char*>(field.value), static_cast<std::size_t>(field.siz));
  switch (column.col_type) {
  case MDB_BYTE:
    return TableValue::ofInteger(readLittleEndian<std::uint8_t>(bytes));
  case MDB_INT:
    return TableValue::ofInteger(readLittleEndian<std::int16_t>(bytes));
  case MDB_LONGINT:
    return TableValue::ofInteger(readLittleEndian<std::int32_t>(bytes));
  case bigIntType:
    return TableValue::ofInteger(readLittleEndian<std::int64_t>(bytes));
  case MDB_MONEY:
    return money(bytes);
  case MDB_FLOAT:
    return TableValue::ofReal(typedSingle(readLittleEndian<float>(bytes)));
  case MDB_DOUBLE:
    return TableValue::ofReal(readLittleEndian<double>(bytes));
  case MDB_DATETIME:
    return TableValue::ofText(dateText(readLittleEndian<double>(bytes)));
  case MDB_TEXT:
    return TableValue::ofText(decode(bytes));
  case MDB_MEMO:
    return TableValue::ofText(decode(longValue(bytes)));
  case MDB_OLE:
    return TableValue::ofBlob(longValue(bytes));
  case MDB_BINARY:
    return TableValue::ofBlob(std::string(bytes));
  case MDB_REPID: {
    std::array<char, 16> uuid{};
    std::memcpy(uuid.data(), bytes.data(), std::min(bytes.size(), uuid.size()));
    char* text = mdb().mdb_uuid_to_string(uuid.data(), 0);
    TableValue result = TableValue::ofText(text);
    mdb().free(text);
    return result;
  }
  case MDB_NUMERIC: {
    // The library reads this kind from a page at an offset, and the row's page is still the current one only when no
    // long value has been read; so the digits are put where it looks for them.
    std::array<unsigned char, MDB_PGSIZE> page{};
    std::memcpy(page.data(), handle->pg_buf, page.size());
    std::memset(handle->pg_buf, 0, 17);
    std::memcpy(handle->pg_buf, bytes.data(), std::min<std::size_t>(bytes.size(), 17));
    char* digits = mdb().mdb_numeric_to_string(handle, 0, column.col_scale, column.col_prec);
    std::memcpy(handle->pg_buf, page.data(), page.size());
    TableValue result = decimal(digits);
    mdb().free(digits);
    return result;
  }
  default:
    return TableValue::null();
  }
}

TableValue AccessFile::Native::decimal(const char* digits) {
  const std::string_view text(digits);
  double value = 0.0;
  const auto read = std::from_chars(text.data(), text.data() + text.size(), value);
  if (read.ec != std::errc()) return TableValue::null();
  const std::size_t first = text.find_first_of("123456789");
  const std::size_t last = text.find_last_of("123456789");
  if (first != std::string_view::npos && last - first > exactDigits) ++roundedCells;
  return TableValue::ofReal(value);
}

TableValue AccessFile::Native::money(std::string_view field) {
  // An integer of ten-thousandths.
  const auto tenThousandths = readLittleEndian<std::int64_t>(field);
  constexpr std::int64_t largestExact = 999999999999999;
  if (tenThousandths > largestExact || tenThousandths < -largestExact) ++roundedCells;
  return TableValue::ofReal(static_cast<double>(tenThousandths) / 10000.0);
}

std::string AccessFile::Native::decode(std::string_view bytes) const {
  if (bytes.empty()) return {};
  // One stored byte is at most one character, and that at most four bytes of UTF-8.
  std::string text(bytes.size() * 4 + 16, '\0');
  const int size = mdb().mdb_unicode2ascii(handle, bytes.data(), bytes.size(), text.data(), text.size() - 1);
  text.resize(size < 0 ? 0 : static_cast<std::size_t>(size));
  return text;
}

std::string AccessFile::Native::longValue(std::string_view field) {
  if (field.size() < longValueHeader) return {};
  const auto head = readLittleEndian<std::uint32_t>(field);
  const std::size_t length = head & lengthMask;
  if ((head & isInline) != 0) return std::string(field.substr(longValueHeader, length));
  std::string data;
  auto place = readLittleEndian<std::uint32_t>(field.substr(4));
  // A chain of pieces, each headed by the place of the next; each adds bytes, so a chain that bites its own tail ends.
  const std::size_t linkSize = (head & isOnePage) != 0 ? 0 : 4;
  while (place != 0 && data.size() < length) {
    void* page = nullptr;
    int start = 0;
    std::size_t size = 0;
    const bool found = mdb().mdb_find_pg_row(handle, static_cast<int>(place), &page, &start, &size) == 0;
    start &= offsetMask;
    const auto pageSize = static_cast<std::size_t>(handle->fmt->pg_size);
    if (!found || size <= linkSize || static_cast<std::size_t>(start) + size > pageSize) break;
    const std::string_view piece(static_cast<const char*>(page) + start, size);
    data += piece.substr(linkSize);
    place = linkSize == 0 ? 0 : readLittleEndian<std::uint32_t>(piece);
  }
  if (data.size() < length) ++brokenValues;
  data.resize(std::min(data.size(), length));
  return data;
}

} // namespace brenvolt::tables
