#pragma once

#include <stdexcept>

namespace spectrane {

/// A numeric fault of the kind an operation reports by skipping a statement or ending: a subscript outside
/// its table, an overflow, a division by zero, a text that is no number. Caught inside the module that
/// defines the reaction; it never leaves a window.
class NumericFault : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

}  // namespace spectrane
