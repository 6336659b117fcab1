#include "output/curvereport.h"

#include "base/language.h"
#include "output/curvepicture.h"

namespace spectrane {

ReportPicture CurveReportPicture(const CurveView& view) {
  ReportPicture picture;
  picture.LeftMargin = view.Margins.Left;
  picture.RightMargin = view.Margins.Right;
  picture.Paint = [view](QPainter& painter, const QRectF& surface, double twipsPerUnit) {
    PaintCurve(painter, surface, view,
               {twipsPerUnit, QFont(QString::fromStdString(FontFor(GetLanguageIndex()).Name))});
  };
  return picture;
}

}  // namespace spectrane
