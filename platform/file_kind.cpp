#include "platform/file_kind.h"

#include "text/encoding.h"

#include <array>
#include <filesystem>
#include <fstream>
#include <string_view>

namespace brenvolt::tables {

namespace {

using namespace std::string_view_literals;

struct Signature {
  FileKind kind;
  std::size_t offset;
  std::string_view bytes;
};

constexpr std::array<Signature, 5> signatures{{
    {FileKind::sqlite, 0, "SQLite format 3\0"sv},
    {FileKind::access, 4, "Standard Jet DB\0"sv},
    {FileKind::access, 4, "Standard ACE DB\0"sv},
    {FileKind::compound, 0, "\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1"sv},
    {FileKind::archive, 0, "PK\x03\x04"sv},
}};

} // namespace

FileKind fileKind(const std::wstring& path) {
  const std::filesystem::path file(toUtf8(path));
  std::error_code error;
  const std::filesystem::file_status status = std::filesystem::status(file, error);
  if (!std::filesystem::exists(status)) return FileKind::absent;
  if (std::filesystem::is_directory(status)) return FileKind::folder;
  // A pipe or a device could keep the reader waiting for ever.
  if (!std::filesystem::is_regular_file(status)) return FileKind::unreadable;
  std::ifstream stream(file, std::ios::binary);
  if (!stream) return FileKind::unreadable;
  std::array<char, 32> start{};
  stream.read(start.data(), static_cast<std::streamsize>(start.size()));
  const std::string_view bytes(start.data(), static_cast<std::size_t>(stream.gcount()));
  if (bytes.empty()) return FileKind::empty;
  for (const Signature& signature : signatures) {
    const bool fits = bytes.size() >= signature.offset + signature.bytes.size();
    if (fits && bytes.substr(signature.offset, signature.bytes.size()) == signature.bytes)
      return signature.kind;
  }
  return FileKind::unknown;
}

std::wstring refusalOf(FileKind kind) {
  switch (kind) {
  case FileKind::absent:
    return L"no such file";
  case FileKind::folder:
    return L"is a folder, not a database file";
  case FileKind::unreadable:
    return L"cannot be read";
  case FileKind::empty:
    return L"is empty";
  case FileKind::archive:
    return L"is a zip archive; a workbook of that kind must be saved as .xls first";
  case FileKind::unknown:
    return L"is neither a database nor a workbook (.xls)";
  case FileKind::sqlite:
  case FileKind::access:
  case FileKind::compound:
    return {};
  }
  return {};
}

} // namespace brenvolt::tables
