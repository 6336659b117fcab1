#include <QComboBox>
#include <QDir>

#include "modes/windows/frmdnaconfig.h"
#include "modes/windows/frmmulticonfig.h"
#include "modes/windows/samplefixture.h"

namespace spectrane::testing_windows {
namespace {

/// Pictures for a person to judge, in the folder that SPECTRANE_PICTURES names; run by
/// --gtest_also_run_disabled_tests.
void ShootSample(QWidget& widget, const char* name) {
  QCoreApplication::processEvents();
  const QString folder = qEnvironmentVariable("SPECTRANE_PICTURES");
  EXPECT_TRUE(QDir().mkpath(folder));
  EXPECT_TRUE(widget.grab().save(folder + u'/' + QLatin1String(name) + QStringLiteral(".png")));
}

using DISABLED_MultiPictures = MultiWindow;
using DISABLED_DNAPictures = DNAWindow;

QString ExampleFile(const char* name) {
  return QStringLiteral(SPECTRANE_SOURCE "/examples/") + QLatin1String(name);
}

TEST_F(DISABLED_MultiPictures, Windows) {
  Open();
  ShootSample(*Window, "multi-empty");
  Window->mmuOpenFile(ExampleFile("multi.mul"));
  ShootSample(*Window, "multi-rows");
  OpenTable(15);
  ShootSample(*Window, "multi-fifteen");
  Window->resize(1500, 400);
  ShootSample(*Window, "multi-wide");
  OpenTable(1);
  ShootSample(*Window, "multi-one");
}

TEST_F(DISABLED_MultiPictures, Config) {
  for (const int number : {1, 4, 15}) {
    MultiSettings settings;
    settings.WorkWLNo = number;
    FrmMultiConfig dialog(Main, settings, {});
    dialog.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&dialog));
    ShootSample(dialog, ("multi-config-" + std::to_string(number)).c_str());
  }
}

TEST_F(DISABLED_DNAPictures, Windows) {
  Open();
  ShootSample(*Window, "dna-empty");
  Window->mmuOpenFile(ExampleFile("nucleic.dna"));
  ShootSample(*Window, "dna-rows");
  Window->resize(1100, 400);
  ShootSample(*Window, "dna-wide");
}

TEST_F(DISABLED_DNAPictures, Config) {
  FrmDNAConfig dialog(Main, DNASettings());
  dialog.show();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&dialog));
  ShootSample(dialog, "dna-config-1");
  Click(dialog, "CustomOption");
  Type(dialog, "WaveLength2Text", "x");
  ShootSample(dialog, "dna-config-3");
}

}  // namespace
}  // namespace spectrane::testing_windows
