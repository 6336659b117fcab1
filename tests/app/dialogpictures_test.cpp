#include <QDir>
#include <QTabWidget>

#include "app/dialogfixture.h"
#include "app/frmabout.h"
#include "app/frmlogo.h"
#include "app/frmnew.h"
#include "app/frmoption.h"
#include "tools/windows/frmwait.h"

namespace spectrane::testing_windows {
namespace {

/// Pictures for a person to judge, in the folder that SPECTRANE_PICTURES names; run by
/// --gtest_also_run_disabled_tests.
class DialogPictures : public DialogFixture {
 protected:
  void SetUp() override {
    Main.Creatable = {1, 2, 6};
    Start();
  }
  static void Shoot(QWidget& widget, const QString& name) {
    widget.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&widget));
    const QString folder = qEnvironmentVariable("SPECTRANE_PICTURES");
    EXPECT_TRUE(QDir().mkpath(folder));
    EXPECT_TRUE(widget.grab().save(folder + u'/' + name + QStringLiteral(".png")));
  }
};

using DISABLED_DialogPictures = DialogPictures;

TEST_F(DISABLED_DialogPictures, All) {
  FrmNew guide(Main);
  Shoot(guide, QStringLiteral("new-file"));
  FrmAbout about(Main);
  Shoot(about, QStringLiteral("about"));
  FrmLogo logo(Main, {});
  Shoot(logo, QStringLiteral("logo"));
  FrmOption options(Main);
  auto* const pages = Find<QTabWidget>(options, "TabStripOption");
  for (int page = 0; page < pages->count(); ++page) {
    pages->setCurrentIndex(page);
    Shoot(options, QStringLiteral("option-%1").arg(page + 1));
  }
  FrmWait wait(Main);
  Shoot(wait, QStringLiteral("wait"));
}

}  // namespace
}  // namespace spectrane::testing_windows
