// Texts that are needed again later, on the disk meanwhile: what a set keeps in memory does not grow with its sheets.
#pragma once

#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace circuits {

/// Keeps the texts in a file without a name; what cannot be written there stays in memory.
class Spool final {
public:
  Spool();

  /// A text under its number; each number once, in any order.
  void put(std::size_t number, std::string_view text);
  /// Empty for a number that was not put.
  [[nodiscard]] std::string get(std::size_t number) const;
  /// One more than the highest number.
  [[nodiscard]] std::size_t size() const { return places_.size(); }

private:
  struct CloseFile {
    void operator()(std::FILE* file) const { std::fclose(file); }
  };
  struct Place {
    std::int64_t offset = 0;
    std::size_t length = 0;
    std::unique_ptr<std::string> kept{}; ///< null for a text in the file
  };

  std::unique_ptr<std::FILE, CloseFile> file_;
  std::int64_t end_ = 0;
  std::vector<Place> places_;
};

} // namespace circuits
