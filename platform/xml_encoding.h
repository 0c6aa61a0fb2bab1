// The characters of an XML file: which encoding its first bytes declare, and whether all of its bytes fit it.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace brenvolt {

struct XmlText {
  std::string utf8;
  std::optional<std::wstring> fault; ///< why the bytes are not what the file declares
};

/// The text of a file in UTF-8, UTF-16 (either order), US-ASCII or ISO-8859-1. A byte-order mark and the declaration
/// must agree; without both it is UTF-8.
[[nodiscard]] XmlText decodeXml(std::string_view bytes);

/// The readable text of a damaged file, regardless of the declared encoding.
[[nodiscard]] std::string decodeDamagedXml(std::string_view bytes);

} // namespace brenvolt
