#include "tools/windows/frmwait.h"

#include <QLabel>
#include <QLineEdit>

#include "app/ground/languagefont.h"
#include "windowsupport/windowfixture.h"

namespace spectrane::testing_windows {
namespace {

class Wait : public WindowFixture {
 protected:
  void ShowFrame() {
    Field = new QLineEdit(&Main.Frame());
    Main.Frame().setGeometry(100, 80, 500, 300);
    Main.Frame().show();
    Main.Frame().activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&Main.Frame()));
    Field->setFocus();
  }

  QLineEdit* Field = nullptr;
};

TEST_F(Wait, IsOnTheScreenAsSoonAsItExistsAndGoneWithTheObject) {
  ShowFrame();
  QPointer<QWidget> box;
  {
    FrmWait wait(Main);
    box = &wait;
    EXPECT_TRUE(wait.isVisible());
    EXPECT_TRUE(wait.windowHandle()->isExposed());
    EXPECT_EQ(wait.objectName(), QStringLiteral("FrmWait"));
    EXPECT_FALSE(wait.accessibleName().isEmpty());
  }
  EXPECT_TRUE(box.isNull());
  EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
}

TEST_F(Wait, ItsTextIsBlackOnWhiteInTheLanguageFontAtTenPoints) {
  ShowFrame();
  QPalette dark;
  dark.setColor(QPalette::Window, Qt::black);
  dark.setColor(QPalette::WindowText, Qt::white);
  Main.Frame().setPalette(dark);
  Main.Frame().setStyleSheet(QStringLiteral("QMenuBar { color: red; }"));
  FrmWait wait(Main, 30);
  const auto* const label = Find<QLabel>(wait, "PicInfor");
  EXPECT_EQ(label->text(), QStringLiteral("Please wait."));
  EXPECT_EQ(label->font().family(), LanguageFont().family());
  EXPECT_EQ(label->font().pointSize(), 10);
  EXPECT_EQ(label->palette().color(QPalette::WindowText), QColor(Qt::black));
  const QImage picture = wait.grab().toImage();
  EXPECT_EQ(picture.pixelColor(picture.width() / 2, 4), QColor(Qt::white));
  for (const char* name : {"PicInfor", "LabelTime"}) {
    const QPoint corner = Find<QLabel>(wait, name)->mapTo(&wait, QPoint(0, 0));
    EXPECT_EQ(picture.pixelColor(corner), QColor(Qt::white)) << name;
  }
  int black = 0;
  for (int x = 0; x < picture.width(); ++x) {
    for (int y = 4; y < picture.height() - 4; ++y)
      black += picture.pixelColor(x, y).lightness() < 100 ? 1 : 0;
  }
  EXPECT_GT(black, 50) << "no letters";
}

TEST_F(Wait, StandsInTheMiddleOfTheMainWindow) {
  ShowFrame();
  FrmWait wait(Main);
  // A window manager may tell the place in several steps.
  EXPECT_TRUE(QTest::qWaitFor([&] {
    const QPoint apart = wait.frameGeometry().center() - Main.Frame().frameGeometry().center();
    return apart.manhattanLength() <= 4;
  }));
}

TEST_F(Wait, TheFocusIsBackAfterwards) {
  ShowFrame();
  {
    FrmWait wait(Main);
    EXPECT_EQ(QApplication::activeModalWidget(), &wait) << "no command can begin meanwhile";
    QCoreApplication::processEvents();
  }
  EXPECT_TRUE(QTest::qWaitForWindowActive(&Main.Frame()));
  EXPECT_TRUE(Field->hasFocus());
}

TEST_F(Wait, SecondsGoOnBeingShownWhileAnExchangeBlocks) {
  ShowFrame();
  ConnectNow();
  FrmWait wait(Main, LongestSeconds({"getwl", "adjustwl"}));
  const auto* const time = Find<QLabel>(wait, "LabelTime");
  EXPECT_EQ(time->text(), QStringLiteral("0 s of at most 183 s"));
  ASSERT_EQ(Instrument.Faults().Add("adjustwl", "1", "no-reply", {}), std::nullopt);
  // What is painted is what the person sees: no message loop runs in the middle of an exchange.
  std::vector<std::string> shown;
  QList<QImage> pictures;
  const auto watch = std::move(Link.Transport.OnWaiting);
  Link.Transport.OnWaiting = [&] {
    watch();
    if (!shown.empty() && shown.back() == time->text().toStdString()) return;
    shown.push_back(time->text().toStdString());
    pictures.append(wait.grab().toImage());
  };
  EXPECT_FALSE(Link.Instrument.AdjustWavelength());
  ASSERT_EQ(shown.size(), 180u);
  EXPECT_EQ(shown.front(), "0 s of at most 183 s");
  EXPECT_EQ(shown[90], "90 s of at most 183 s");
  EXPECT_EQ(shown.back(), "179 s of at most 183 s");
  EXPECT_NE(pictures[5], pictures[6]);
  Link.Transport.OnWaiting = watch;
}

TEST_F(Wait, NothingWatchesTheLineAfterwards) {
  ShowFrame();
  {
    const FrmWait wait(Main, 10);
    EXPECT_TRUE(Link.Transport.OnWaiting);
  }
  EXPECT_FALSE(Link.Transport.OnWaiting);
}

TEST_F(Wait, WithoutALongestTimeNoTimesAreShown) {
  ShowFrame();
  const FrmWait wait(Main);
  EXPECT_EQ(wait.findChild<QLabel*>(QStringLiteral("LabelTime")), nullptr);
}

TEST_F(Wait, ThePersonCannotCloseIt) {
  ShowFrame();
  FrmWait wait(Main);
  QTest::keyClick(&wait, Qt::Key_Escape);
  EXPECT_FALSE(wait.close());
  EXPECT_TRUE(wait.isVisible());
}

}  // namespace
}  // namespace spectrane::testing_windows
