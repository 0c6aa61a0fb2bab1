#include "circuits/reports/spool.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

#include <unistd.h>

namespace circuits {

Spool::Spool() : file_(std::tmpfile()) {}

void Spool::put(std::size_t number, std::string_view text) {
  places_.resize(std::max(places_.size(), number + 1));
  Place& place = places_[number];
  place.length = text.size();
  const bool isWritten =
      file_ != nullptr &&
      ::pwrite(::fileno(file_.get()), text.data(), text.size(), end_) == static_cast<ssize_t>(text.size());
  if (!isWritten) {
    place.kept = std::make_unique<std::string>(text);
    return;
  }
  place.offset = std::exchange(end_, end_ + static_cast<std::int64_t>(text.size()));
}

std::string Spool::get(std::size_t number) const {
  const Place& place = places_[number];
  if (place.kept != nullptr) return *place.kept;
  std::string text(place.length, '\0');
  if (place.length != 0 && ::pread(::fileno(file_.get()), text.data(), text.size(), place.offset) !=
                               static_cast<ssize_t>(text.size()))
    throw std::runtime_error("a temporary file with rows of the lists cannot be read again");
  return text;
}

} // namespace circuits
