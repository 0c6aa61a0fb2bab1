// What one drawing adds to each list. Lists of many drawings are joined from these rows, so that the drawings need not be
// kept, and may have been read by other processes.
#pragma once

#include "circuits/reports/drawing_reports.h"

#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace circuits {

struct ListRows {
  /// As the list has them; of the parts list a row for each device: tag, installation, location, family, maker,
  /// catalogue number, assembly, rating.
  std::vector<ReportRow> rows{};
  std::array<std::size_t, 3> missing{}; ///< what the notes of the list count
};
[[nodiscard]] ListRows rowsOf(ReportKind kind, const Sheet& sheet);

/// Each text once, as people sort them.
[[nodiscard]] std::vector<std::wstring> sortedOnce(std::vector<std::wstring> texts);

/// Adds a text with its length before it, so that it may hold anything.
void pack(std::string& bytes, std::string_view text);
/// Takes what `pack` has added from the front of the bytes.
std::string_view unpack(std::string_view& bytes);

/// As bytes, for a pipe or for keeping; about a quarter of the size.
[[nodiscard]] std::string packed(const ListRows& list);
/// What `packed` has made.
[[nodiscard]] ListRows unpacked(std::string_view bytes);

/// A field of a motor or load, by its place in what the parent product keeps on it.
struct LoadField {
  std::size_t place;
  const char* key;
  const wchar_t* title;
};
[[nodiscard]] const std::array<LoadField, 8>& loadFields();

} // namespace circuits
