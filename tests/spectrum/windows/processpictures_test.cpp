#include <QApplication>
#include <QClipboard>

#include "spectrum/windows/frmcaculate.h"
#include "spectrum/windows/frmdev.h"
#include "spectrum/windows/frmsmooth.h"
#include "spectrum/windows/frmwlscompare.h"
#include "spectrum/windows/processfixture.h"
#include "windowsupport/pictures.h"

namespace spectrane::testing_windows {
namespace {

/// Pictures for a person to judge.
class ProcessPictures : public ProcessFixture {
 protected:
  void ShootOptions(DocumentWindow& window, const char* dialogName, const char* name) {
    OptionsOf(window, dialogName, [name](QWidget& dialog) {
      Shoot(dialog, name);
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
  Shoot(smoothed, "smooth");
  smoothed.DataTable()->resize(600, 260);
  Shoot(*smoothed.DataTable(), "smooth-tables");
  ShootOptions(smoothed, "FrmSmoothConfig", "smooth-options");
  smoothed.mmuSpectrumDev();
  Last<FrmDev>().resize(1000, 560);
  Shoot(Last<FrmDev>(), "derivative");
}

TEST_F(DISABLED_ProcessPictures, Calculation) {
  FrmCaculate window(Main, SpectrumOperation::Divide);
  Present(window);
  window.resize(1000, 560);
  Shoot(window, "calculation-empty");
  CopyHolmium();
  OptionsOf(window, "FrmCaculateConfig", [this](QWidget& dialog) {
    Find<QLineEdit>(dialog, "TextFileName0")->setText(PathOf("holmium.wls"));
    Find<QLineEdit>(dialog, "TextFileName1")->setText(PathOf("holmium.wls"));
    Shoot(dialog, "calculation-options");
    Click(dialog, "OKCmd");
  });
  Shoot(window, "calculation");
}

TEST_F(DISABLED_ProcessPictures, Comparison) {
  FrmWLSCompare window(Main);
  Present(window);
  window.resize(1100, 560);
  Shoot(window, "compare-empty");
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
    Shoot(dialog, "compare-options");
    Click(dialog, "OKCmd");
  });
  Shoot(window, "compare");
  window.DataTable()->resize(700, 260);
  Shoot(*window.DataTable(), "compare-tables");
  window.CopyPicture();
  EXPECT_TRUE(QGuiApplication::clipboard()->image().save(qEnvironmentVariable("SPECTRANE_PICTURES") +
                                                         QStringLiteral("/compare-copied.png")));
}

}  // namespace
}  // namespace spectrane::testing_windows
