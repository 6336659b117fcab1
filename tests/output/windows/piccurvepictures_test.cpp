#include <gtest/gtest.h>

#include <QDir>
#include <QTest>

#include "output/curvesupport.h"
#include "output/windows/piccurve.h"

namespace spectrane {
namespace {

/// Pictures for a person to judge, in the folder that SPECTRANE_PICTURES names; run by
/// --gtest_also_run_disabled_tests. QT_SCALE_FACTOR=2 shows them as on a screen with twice the dots.
class DISABLED_CurveSurfacePictures : public testing::Test {
 protected:
  void SetUp() override {
    Curve = HolmiumCurve(7501, 0.002);
    Curve.Show();
    Curve.View.Scale = {{350, 700}, {0, 1.6}};
    Curve.View.Marks = {{416.5, 0.72, false, QStringLiteral("1")}, {536.6, 0.68, false, QStringLiteral("2")}};
    Surface.resize(800, 500);
    Surface.SetView(Curve.View);
    Surface.show();
    EXPECT_TRUE(QTest::qWaitForWindowExposed(&Surface));
  }
  void Shoot(const char* name) {
    const QString folder = qEnvironmentVariable("SPECTRANE_PICTURES");
    ASSERT_TRUE(QDir().mkpath(folder));
    const QString path = QStringLiteral("%1/surface-%2-%3.png")
                             .arg(folder, QLatin1String(name))
                             .arg(std::lround(Surface.devicePixelRatioF() * 100));
    EXPECT_TRUE(Surface.grab().save(path));
  }
  void ShootAll(const char* shade) {
    const std::string name = shade;
    QTest::mousePress(&Surface, Qt::LeftButton, {}, {420, 220});
    Shoot((name + "-cursor").c_str());
    QTest::mouseRelease(&Surface, Qt::LeftButton, {}, {420, 220});
    Surface.SetZoomSelecting(true);
    QTest::mousePress(&Surface, Qt::LeftButton, {}, {150, 120});
    QTest::mouseMove(&Surface, {520, 330});
    Shoot((name + "-rectangle").c_str());
    QTest::mouseRelease(&Surface, Qt::LeftButton, {}, {520, 330});
    QTest::keyClick(&Surface, Qt::Key_End);
    Shoot((name + "-keys").c_str());
    QTest::keyClick(&Surface, Qt::Key_Escape);
  }

  OwnedCurve Curve;
  PicCurve Surface;
};

TEST_F(DISABLED_CurveSurfacePictures, Light) {
  ShootAll("light");
}

TEST_F(DISABLED_CurveSurfacePictures, Dark) {
  QPalette dark(QColor(50, 50, 54), QColor(36, 36, 40));
  dark.setColor(QPalette::ToolTipBase, QColor(60, 60, 66));
  dark.setColor(QPalette::ToolTipText, QColor(235, 235, 235));
  Surface.setPalette(dark);
  ShootAll("dark");
}

}  // namespace
}  // namespace spectrane
