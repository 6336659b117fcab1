#include "modes/timescan/timescanpoints.h"

#include "files/tsfile.h"

namespace spectrane {

void TimeScanPoints::TakeAll(const TimeScanDocument& document) {
  // Whoever looks at the values keeps its place while a test adds to them.
  for (std::vector<double>* values : {&Time, &Abs, &Trans}) {
    values->clear();
    values->reserve(static_cast<std::size_t>(kMostTimeScanPoints));
  }
  Energy.clear();
  while (Count() < document.DataCount()) TakeNext(document);
}

void TimeScanPoints::TakeNext(const TimeScanDocument& document) {
  const std::int32_t index = Count();
  Abs.push_back(document.PointAbs(index));
  Trans.push_back(document.PointTrans(index));
  Energy.push_back(document.Point(index).Energy);
  Time.push_back(document.Point(index).Time);
}

}  // namespace spectrane
