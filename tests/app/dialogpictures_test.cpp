#include <QTabWidget>

#include "app/dialogfixture.h"
#include "app/frmabout.h"
#include "app/frmlogo.h"
#include "app/frmnew.h"
#include "app/frmoption.h"
#include "tools/windows/frmwait.h"
#include "windowsupport/pictures.h"

namespace spectrane::testing_windows {
namespace {

/// Pictures for a person to judge.
class DialogPictures : public DialogFixture {
 protected:
  void SetUp() override { Start(); }
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
