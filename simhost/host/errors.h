// Errors that end a run of the host and that the user can correct. The messages name file, place and reason.
#pragma once

#include <stdexcept>

namespace simhost {

/// A missing file, a damaged one, a wrong name.
class BadInput final : public std::runtime_error {
public:
  using std::runtime_error::runtime_error;
};

/// A file that could not be written; its former content is untouched.
class CannotWrite final : public std::runtime_error {
public:
  using std::runtime_error::runtime_error;
};

} // namespace simhost
