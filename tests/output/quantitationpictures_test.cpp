#include <QDir>
#include <QPageSize>
#include <QPdfWriter>

#include "output/quantitationpicturesupport.h"

namespace spectrane {
namespace {

/// Pictures for a person to judge, in the folder that SPECTRANE_PICTURES names; run by
/// --gtest_also_run_disabled_tests.
class DISABLED_QuantitationPictures : public testing::Test {
 protected:
  static void Shoot(const QuaOption& qua, const char* name, const QSize& size = {600, 400},
                    std::int32_t selected = -1) {
    const QString folder = qEnvironmentVariable("SPECTRANE_PICTURES");
    ASSERT_TRUE(QDir().mkpath(folder));
    QuantitationPictureOptions options;
    options.SelectedRow = selected;
    for (const int dots : {1, 2}) {
      const QString path =
          QStringLiteral("%1/qua-%2-%3.png").arg(folder, QLatin1String(name)).arg(dots * 100);
      EXPECT_TRUE(PictureOf(qua, size, options, dots).save(path));
    }
  }
};

TEST_F(DISABLED_QuantitationPictures, Curves) {
  Shoot(FittedStandards({{0.102, 2}, {0.211, 4}, {0.297, 6}, {0.412, 8}, {0.488, 10}}, 1), "first",
        {600, 400}, 2);
  Shoot(FittedStandards({{0.102, 2}, {0.211, 4}, {0.297, 6}, {0.412, 8}, {0.488, 10}}, 0), "zero");
  Shoot(FittedStandards({{0.1, 20}, {0.35, 90}, {0.8, 310}, {1.2, 620}, {1.71, 1150}}, 2), "second");
  Shoot(FittedStandards({{0.1, 20}, {0.35, 90}, {0.8, 310}, {1.2, 620}, {1.71, 1150}}, 3), "third");
  QuaOption two = FittedStandards({{0.11, 0.02}, {0.23, 0.04}, {0.34, 0.061}}, 1, 2);
  two.ConcUnit = "\u00B5g/ml";
  Shoot(two, "two-wavelengths");
  two.ConcUnit = "mg of protein in a litre of the buffer solution of the day, pH 7.4";
  Shoot(two, "long-unit");
  QuaOption typed;
  typed.CurveItem = 2;
  typed.FittingMethod = 3;
  typed.InputK = {1.5, 1203.25, -88.5, 12.125};
  typed.ConcUnit = "ppm";
  Shoot(typed, "typed");
  Shoot(typed, "narrow", {260, 200});
  Shoot(typed, "wide", {1400, 300});
}

TEST_F(DISABLED_QuantitationPictures, Paper) {
  QPdfWriter pdf(qEnvironmentVariable("SPECTRANE_PICTURES") + QStringLiteral("/qua-paper.pdf"));
  pdf.setResolution(600);
  pdf.setPageSize(QPageSize(QPageSize::A4));
  QuantitationPictureOptions options;
  options.TwipsPerUnit = 1440.0 / pdf.resolution();
  QPainter painter(&pdf);
  const QuaOption qua = FittedStandards({{0.1, 20}, {0.35, 90}, {0.8, 310}, {1.2, 620}, {1.71, 1150}}, 2);
  PaintQuantitation(painter, QRectF(0, 0, pdf.width(), pdf.height() / 3.0), qua, DisplayFormats(), options);
  EXPECT_TRUE(painter.end());
}

TEST_F(DISABLED_QuantitationPictures, Hints) {
  QuaOption qua = WithStandards({{0.1, 1}, {0.2, 2}, {0.3, 3}, {0.4, 4}, {0.5, 5}}, 1);
  qua.StandardAbsSet = {true};
  qua.StandardConcSet[3] = false;
  Shoot(qua, "incomplete");
  Shoot(qua, "incomplete-narrow", {200, 150});
  Shoot(FittedStandards({{0.1, 10}, {0.5, 1}, {0.6, 9}}, 0), "rejected-zero");
  Shoot(FittedStandards({{0.1, 10}, {0.5, 1}, {0.6, 9}}, 1), "rejected-first");
  Shoot(FittedStandards({{0.1, 10}}, 1), "rejected-one");
  Shoot(QuaOption(), "no-standards");
  Shoot(FittedStandards({{0.1, 10000}, {0.5, 50000}}, 1), "off-scale");
  Shoot(FittedStandards({{0.1, 10000}, {0.5, 50000}}, 1), "off-scale-narrow", {200, 150});
  Shoot(FittedStandards({{0.1, 10}, {0.5, 50}}, 1), "too-small", {140, 90});
}

}  // namespace
}  // namespace spectrane
