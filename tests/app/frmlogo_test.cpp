#include "app/frmlogo.h"

#include "app/dialogfixture.h"
#include "base/version.h"

namespace spectrane::testing_windows {
namespace {

/// A document that only has to be there.
class SomeDocument : public DocumentWindow {
 public:
  using DocumentWindow::DocumentWindow;
  int CheckFileType() const override { return 11; }
  QString OpenFileName() const override { return {}; }
  bool Offers(int) const override { return false; }

 protected:
  FileKindWords FileWords() const override { return {0, ".bas", "Basic Test"}; }
  bool IsModified() const override { return false; }
  bool WriteDocument(const QString&, QString&) override { return false; }
  bool ReadDocument(const QString&, QString&) override { return false; }
};

class Logo : public DialogFixture {
 protected:
  LogoWork Work() {
    return {[this](const QString& path) {
              Sent.append(path);
              return CopyRuns;
            },
            [this] { ++Guides; }, [this] { ++Ends; }};
  }
  static QTimer* StartTimer(const FrmLogo& logo) { return Find<QTimer>(logo, "StartTimer"); }

  bool CopyRuns = false;
  QStringList Sent;
  int Guides = 0;
  int Ends = 0;
};

TEST_F(Logo, ShowsTheBrandForThreeSeconds) {
  FrmLogo logo(Main, Work(), BrandRow(2));
  logo.Load({});
  EXPECT_EQ(Find<QLabel>(logo, "LabelCompany")->text().toStdString(), "Spectrane Solution " + VersionText());
  EXPECT_FALSE(Find<QLabel>(logo, "PicLogo")->pixmap().isNull());
  EXPECT_FALSE(Find<QLabel>(logo, "PictureBackground")->pixmap().isNull());
  EXPECT_TRUE(StartTimer(logo)->isActive());
  EXPECT_TRUE(StartTimer(logo)->isSingleShot());
  EXPECT_EQ(StartTimer(logo)->interval(), 3000);
  EXPECT_TRUE(Sent.isEmpty());
  EXPECT_EQ(Ends, 0);
}

TEST_F(Logo, ClosesByItselfAtAClickAndAtAKeyAndOpensTheGuideOnce) {
  const std::function<void(FrmLogo&)> ways[] = {
      [](FrmLogo& logo) {
        QTimerEvent event(StartTimer(logo)->timerId());
        QCoreApplication::sendEvent(StartTimer(logo), &event);
      },
      [](FrmLogo& logo) { QTest::mouseClick(&logo, Qt::LeftButton); },
      [](FrmLogo& logo) { QTest::mouseClick(Find<QLabel>(logo, "PicLogo"), Qt::LeftButton); },
      [](FrmLogo& logo) { QTest::keyClick(&logo, Qt::Key_Space); },
      [](FrmLogo& logo) { QTest::keyClick(&logo, Qt::Key_Escape); }};
  int guides = 0;
  for (const auto& way : ways) {
    FrmLogo logo(Main, Work());
    logo.Load({});
    logo.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&logo));
    way(logo);
    EXPECT_FALSE(logo.isVisible());
    EXPECT_EQ(Guides, ++guides);
    EXPECT_FALSE(StartTimer(logo)->isActive());
    logo.close();
    EXPECT_EQ(Guides, guides);
  }
}

TEST_F(Logo, WithADocumentOpenThereIsNoGuide) {
  SomeDocument document(Main);
  Main.Active = &document;
  FrmLogo logo(Main, Work());
  logo.Load({});
  logo.show();
  logo.close();
  EXPECT_EQ(Guides, 0);
}

TEST_F(Logo, ARunningCopyTakesThePathAndThisOneEnds) {
  CopyRuns = true;
  FrmLogo logo(Main, Work());
  logo.Load(QStringLiteral("\"/data/a b.bas\""));
  EXPECT_EQ(Sent, QStringList{QStringLiteral("/data/a b.bas")});
  EXPECT_EQ(Ends, 1);
  EXPECT_FALSE(StartTimer(logo)->isActive());
}

TEST_F(Logo, WithoutARunningCopyThisOneGoesOn) {
  FrmLogo logo(Main, Work());
  logo.Load(QStringLiteral("\"/data/a.bas\""));
  EXPECT_EQ(Sent.size(), 1);
  EXPECT_EQ(Ends, 0);
  EXPECT_TRUE(StartTimer(logo)->isActive());
}

TEST_F(Logo, ALineThatHoldsNoPathIsNotSent) {
  CopyRuns = true;
  for (const char* line : {"", "\"", "\"\""}) {
    FrmLogo logo(Main, Work());
    logo.Load(QString::fromUtf8(line));
    EXPECT_TRUE(Sent.isEmpty()) << line;
    EXPECT_EQ(Ends, 0) << line;
    EXPECT_TRUE(StartTimer(logo)->isActive()) << line;
  }
}

}  // namespace
}  // namespace spectrane::testing_windows
