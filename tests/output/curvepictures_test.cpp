#include <gtest/gtest.h>

#include <QDir>
#include <QPageSize>
#include <QPdfWriter>

#include "base/numbers.h"
#include "output/curvesupport.h"

namespace spectrane {
namespace {

/// Pictures for a person to judge, in the folder that SPECTRANE_PICTURES names; run by
/// --gtest_also_run_disabled_tests.
class DISABLED_CurvePictures : public testing::Test {
 protected:
  static QString PicturePath(const char* name) {
    const QString folder = qEnvironmentVariable("SPECTRANE_PICTURES");
    EXPECT_TRUE(QDir().mkpath(folder));
    return folder + QStringLiteral("/curve-") + QLatin1String(name);
  }
  static void Shoot(const CurveView& view, const char* name, const QSize& size = {800, 500}) {
    for (const int dots : {1, 2}) {
      EXPECT_TRUE(CurveImage(view, size, {}, dots)
                      .save(PicturePath(name) + QStringLiteral("-%1.png").arg(dots * 100)));
    }
  }
  /// Marks on the extremes of the bands, as a search would find them.
  static void Mark(OwnedCurve& curve, bool detail, const char* unit = "") {
    int number = 0;
    for (std::size_t i = 1; i + 1 < curve.X.size(); ++i) {
      const bool peak = curve.Y[i] > curve.Y[i - 1] && curve.Y[i] > curve.Y[i + 1];
      const bool valley = curve.Y[i] < curve.Y[i - 1] && curve.Y[i] < curve.Y[i + 1];
      if (!peak && !valley) continue;
      const std::string text = detail ? Format(curve.X[i], "0.0nm") + "-" +
                                            Format(curve.Y[i], TickPattern(curve.View.Y.Kind)) + unit
                                      : std::to_string(++number);
      curve.View.Marks.push_back({curve.X[i], curve.Y[i], valley, QString::fromStdString(text)});
    }
  }
};

TEST_F(DISABLED_CurvePictures, Holmium) {
  OwnedCurve abs = HolmiumCurve(7501);
  abs.View.Scale = {{350, 700}, {0, 1.5}};
  Mark(abs, false);
  Shoot(abs.View, "abs");
  abs.View.Marks.clear();
  Mark(abs, true);
  Shoot(abs.View, "abs-detail");
  abs.View.Grid = false;
  Shoot(abs.View, "abs-detail-nogrid", {1200, 700});
}

TEST_F(DISABLED_CurvePictures, OtherAxes) {
  OwnedCurve trans = HolmiumCurve(7501);
  for (double& y : trans.Y) y = 100 * std::pow(10, -y);
  trans.View.Y = {AxisKind::Trans, QStringLiteral("Transmittance(%T)"), {}, {}};
  trans.View.Scale = {{350, 700}, {0, 100}};
  Mark(trans, true, "%T");
  Shoot(trans.View, "trans");
  for (double& y : trans.Y) y = 100 + y * 300;
  trans.View.Y = {AxisKind::Energy, QStringLiteral("Energy"), {}, {}};
  trans.View.Scale.Y = {0, 65535};
  trans.View.Marks.clear();
  Mark(trans, false);
  Shoot(trans.View, "energy");
}

TEST_F(DISABLED_CurvePictures, Crowded) {
  OwnedCurve noisy = HolmiumCurve(10001, 0.05);
  noisy.View.Scale = {{350, 1100}, {0, 1.5}};
  Shoot(noisy.View, "noisy", {1200, 700});
  Mark(noisy, true);
  Shoot(noisy.View, "noisy-marks", {1200, 700});
}

TEST_F(DISABLED_CurvePictures, Paper) {
  QPdfWriter pdf(PicturePath("paper.pdf"));
  pdf.setResolution(600);
  pdf.setPageSize(QPageSize(QPageSize::A4));
  CurvePictureOptions options;
  options.TwipsPerUnit = 1440.0 / pdf.resolution();
  OwnedCurve abs = HolmiumCurve(7501);
  abs.View.Scale = {{350, 700}, {0, 1.5}};
  Mark(abs, true);
  QPainter painter(&pdf);
  PaintCurve(painter, QRectF(0, 0, pdf.width(), pdf.height() / 2.0), abs.View, options);
  EXPECT_TRUE(painter.end());
}

TEST_F(DISABLED_CurvePictures, SmallAndEmpty) {
  OwnedCurve few = HolmiumCurve(60);
  Shoot(few.View, "few");
  Shoot(few.View, "narrow", {230, 170});
  Shoot(few.View, "too-small", {110, 60});
  few.View.Lines.clear();
  Shoot(few.View, "empty");
  few.View.Scale.Y = {3, 0};
  Shoot(few.View, "no-scale");
}

}  // namespace
}  // namespace spectrane
