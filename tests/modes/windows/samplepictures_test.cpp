#include <QComboBox>

#include "modes/windows/frmdnaconfig.h"
#include "modes/windows/frmmulticonfig.h"
#include "modes/windows/samplefixture.h"
#include "windowsupport/pictures.h"

namespace spectrane::testing_windows {
namespace {

using DISABLED_MultiPictures = MultiWindow;
using DISABLED_DNAPictures = DNAWindow;

QString ExampleFile(const char* name) {
  return QStringLiteral(SPECTRANE_SOURCE "/examples/") + QLatin1String(name);
}

TEST_F(DISABLED_MultiPictures, Windows) {
  Open();
  Shoot(*Window, "multi-empty");
  Window->mmuOpenFile(ExampleFile("multi.mul"));
  Shoot(*Window, "multi-rows");
  OpenTable(15);
  Shoot(*Window, "multi-fifteen");
  Window->resize(1500, 400);
  Shoot(*Window, "multi-wide");
  OpenTable(1);
  Shoot(*Window, "multi-one");
}

TEST_F(DISABLED_MultiPictures, Config) {
  for (const int number : {1, 4, 15}) {
    MultiSettings settings;
    settings.WorkWLNo = number;
    FrmMultiConfig dialog(Main, settings, {});
    dialog.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&dialog));
    Shoot(dialog, ("multi-config-" + std::to_string(number)).c_str());
  }
}

TEST_F(DISABLED_DNAPictures, Windows) {
  Open();
  Shoot(*Window, "dna-empty");
  Window->mmuOpenFile(ExampleFile("nucleic.dna"));
  Shoot(*Window, "dna-rows");
  Window->resize(1100, 400);
  Shoot(*Window, "dna-wide");
}

TEST_F(DISABLED_DNAPictures, Config) {
  FrmDNAConfig dialog(Main, DNASettings());
  dialog.show();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&dialog));
  Shoot(dialog, "dna-config-1");
  Click(dialog, "CustomOption");
  Type(dialog, "WaveLength2Text", "x");
  Shoot(dialog, "dna-config-3");
}

}  // namespace
}  // namespace spectrane::testing_windows
