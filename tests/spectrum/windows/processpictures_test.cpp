#include <QApplication>
#include <QClipboard>
#include <QDir>

#include "spectrum/windows/frmcaculate.h"
#include "spectrum/windows/frmdev.h"
#include "spectrum/windows/frmsmooth.h"
#include "spectrum/windows/frmwlscompare.h"
#include "spectrum/windows/processfixture.h"

namespace spectrane::testing_windows {
namespace {

/// Pictures for a person to judge, in the folder that SPECTRANE_PICTURES names; run by
/// --gtest_also_run_disabled_tests, with QT_SCALE_FACTOR=2 for a dense screen.
class ProcessPictures : public ProcessFixture {
 protected:
  static void ShootProcessed(QWidget& widget, const char* name) {
    QCoreApplication::processEvents();
    const QString folder = qEnvironmentVariable("SPECTRANE_PICTURES");
    EXPECT_TRUE(QDir().mkpath(folder));
    const QString scale = QString::number(widget.devicePixelRatioF() * 100);
    EXPECT_TRUE(
        widget.grab().save(folder + u'/' + QLatin1String(name) + u'-' + scale + QStringLiteral(".png")));
  }
  void ShootOptions(DocumentWindow& window, const char* dialogName, const char* name) {
    OptionsOf(window, dialogName, [name](QWidget& dialog) {
      ShootProcessed(dialog, name);
      QTest::keyClick(&dialog, Qt::Key_Escape);
    });
  }
};

using DISABLED_ProcessPictures = ProcessPictures;

TEST_F(DISABLED_ProcessPictures, SmoothAndDerivative) {
  OpenHolmium();
  Window->mmuSpectrumSmooth();
  auto& smoothed = Last<FrmSmooth>();
  smoothed.resize(1000, 560);
  smoothed.FindPeak();
  ShootProcessed(smoothed, "smooth");
  smoothed.DataTable()->resize(600, 260);
  ShootProcessed(*smoothed.DataTable(), "smooth-tables");
  ShootOptions(smoothed, "FrmSmoothConfig", "smooth-options");
  smoothed.mmuSpectrumDev();
  Last<FrmDev>().resize(1000, 560);
  ShootProcessed(Last<FrmDev>(), "derivative");
}

TEST_F(DISABLED_ProcessPictures, Calculation) {
  FrmCaculate window(Main, SpectrumOperation::Divide);
  Present(window);
  window.resize(1000, 560);
  ShootProcessed(window, "calculation-empty");
  CopyHolmium();
  OptionsOf(window, "FrmCaculateConfig", [this](QWidget& dialog) {
    Find<QLineEdit>(dialog, "TextFileName0")->setText(PathOf("holmium.wls"));
    Find<QLineEdit>(dialog, "TextFileName1")->setText(PathOf("holmium.wls"));
    ShootProcessed(dialog, "calculation-options");
    Click(dialog, "OKCmd");
  });
  ShootProcessed(window, "calculation");
}

TEST_F(DISABLED_ProcessPictures, Comparison) {
  FrmWLSCompare window(Main);
  Present(window);
  window.resize(1100, 560);
  ShootProcessed(window, "compare-empty");
  std::vector<QString> paths;
  for (int i = 0; i < 10; ++i) {
    std::vector<int> percents;
    for (int point = 0; point < 120; ++point)
      percents.push_back(95 - 7 * i - (point % 40 < 20 ? 0 : point % 20));
    const QByteArray name =
        QByteArray("a spectrum with a name that is long, number ") + QByteArray::number(i) + ".wls";
    paths.push_back(i == 6 ? PathOf("missing.wls") : Measured(name.constData(), percents));
  }
  OptionsOf(window, "FrmWLSCompareConfig", [&](QWidget& dialog) {
    for (int i = 0; i < 10; ++i)
      Find<QLineEdit>(dialog, qPrintable(QStringLiteral("TextFileName%1").arg(i)))
          ->setText(paths[static_cast<std::size_t>(i)]);
    Click(dialog, "OptionTrans");
    TypeInto(dialog, "StartWLText", "490");
    TypeInto(dialog, "EndWLText", "630");
    ShootProcessed(dialog, "compare-options");
    Click(dialog, "OKCmd");
  });
  ShootProcessed(window, "compare");
  window.DataTable()->resize(700, 260);
  ShootProcessed(*window.DataTable(), "compare-tables");
  window.CopyPicture();
  EXPECT_TRUE(QGuiApplication::clipboard()->image().save(qEnvironmentVariable("SPECTRANE_PICTURES") +
                                                         QStringLiteral("/compare-copied.png")));
}

}  // namespace
}  // namespace spectrane::testing_windows
