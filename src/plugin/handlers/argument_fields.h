// Positional arguments and answers of the pickers as tables: which field of a record stands at which place.
#pragma once

#include "host/result_list.h"

#include <cstddef>
#include <span>
#include <string>
#include <variant>

namespace brenvolt {

/// A text or a real of a record.
template <typename Record>
using ArgumentField = std::variant<std::wstring Record::*, double Record::*>;

/// Puts the arguments into the fields by position. An argument of another type leaves its field and the walk goes on;
/// arguments beyond the fields are ignored.
template <typename Record>
void readArguments(
    const ResultList& arguments, std::span<const ArgumentField<Record>> fields, Record& record) {
  ListReader reader(arguments);
  for (std::size_t place = 0; place < fields.size() && !reader.atEnd(); ++place, reader.skipElement()) {
    if (const auto* text = std::get_if<std::wstring Record::*>(&fields[place])) {
      record.** text = reader.text().value_or(record.**text);
    } else {
      double& number = record.*std::get<double Record::*>(fields[place]);
      number = reader.real().value_or(number);
    }
  }
}

/// The list of the fields in their order.
template <typename Record>
ResultList listOf(const Record& record, std::span<const ArgumentField<Record>> fields) {
  ListBuilder list;
  list.beginList();
  for (const ArgumentField<Record>& field : fields) {
    if (const auto* text = std::get_if<std::wstring Record::*>(&field)) {
      list.addText(record.**text);
    } else {
      list.addReal(record.*std::get<double Record::*>(field));
    }
  }
  return list.endList().take();
}

} // namespace brenvolt
