// Reading and replacing of whole files.
#include "simhost/host/files.h"

#include "simhost/drawing/drawing_file.h"
#include "simhost/ui/file_names.h"
#include "text/encoding.h"

#include <cstdio>
#include <memory>
#include <system_error>

namespace simhost {

namespace {

struct FileClose {
  void operator()(std::FILE* file) const { std::fclose(file); }
};

} // namespace

std::optional<std::string> readFile(const std::filesystem::path& file) {
  std::error_code error;
  if (std::filesystem::is_directory(file, error)) return std::nullopt;
  const std::unique_ptr<std::FILE, FileClose> in(std::fopen(file.c_str(), "rb"));
  if (in == nullptr) return std::nullopt;
  std::string bytes;
  char block[65536];
  for (std::size_t count = 0; (count = std::fread(block, 1, sizeof block, in.get())) != 0;)
    bytes.append(block, count);
  if (std::ferror(in.get()) != 0) return std::nullopt;
  return bytes;
}

std::string replaceFile(const std::filesystem::path& file, std::string_view bytes) {
  std::error_code error;
  if (file.has_parent_path()) std::filesystem::create_directories(file.parent_path(), error);
  return brenvolt::toUtf8(writeFileWhole(textOfPath(file), bytes).value_or(std::wstring()));
}

} // namespace simhost
