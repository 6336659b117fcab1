#include "modes/timescan/timescanview.h"

#include "base/numbers.h"

namespace spectrane {

TimeScanView HomeView(const TimeScanDocument& document) {
  const TSOption& option = document.Option();
  return {{RoundHalfEven(document.StartSecond()), RoundHalfEven(document.EndSecond())},
          {option.AbsBottom, option.AbsTop},
          {option.TransBottom, option.TransTop}};
}

TimeScanView Widened(const TimeScanView& view, const TimeScanDocument& document) {
  TimeScanView wide = view;
  if (document.ShowsTrans()) {
    wide.Trans = WidenedTrans(view.Trans);
  } else {
    wide.Abs = WidenedAbs(view.Abs);
  }
  wide.Time = WidenedTime(view.Time, document.EndSecond());
  return wide;
}

}  // namespace spectrane
