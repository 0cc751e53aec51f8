// THostError: what keeps a command from doing its work, as one line for people.
//
// A command line that is wrong is a TUsageError; all else is a THostError.
#pragma once

#include <stdexcept>

namespace havhost {

class THostError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

class TUsageError : public THostError {
 public:
  using THostError::THostError;
};

}  // namespace havhost
