#pragma once

#include <cstdint>
#include <vector>

#include "modes/timescan/timescandocument.h"

namespace spectrane {

/// The points of a time scan as columns of values, for curves and tables. It keeps what was taken: a point
/// that a stop has dropped from the document stays until all are taken anew.
class TimeScanPoints {
 public:
  /// All points of the document in the place of what was here.
  void TakeAll(const TimeScanDocument& document);
  /// The next point of the document.
  void TakeNext(const TimeScanDocument& document);

  std::int32_t Count() const { return static_cast<std::int32_t>(Time.size()); }
  const std::vector<double>& Values(bool trans) const { return trans ? Trans : Abs; }

  /// [s], [Abs], [%T], [counts]
  std::vector<double> Time;
  std::vector<double> Abs;
  std::vector<double> Trans;
  std::vector<std::int32_t> Energy;
};

}  // namespace spectrane
