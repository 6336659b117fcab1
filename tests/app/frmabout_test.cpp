#include "app/frmabout.h"

#include <QPushButton>
#include <QToolButton>

#include "app/dialogfixture.h"
#include "base/version.h"

namespace spectrane::testing_windows {
namespace {

class About : public DialogFixture {
 protected:
  void Open(std::function<void(QWidget& dialog)> act, int brand = 9) {
    bool opened = false;
    InDialog("FrmAbout", [&opened, act = std::move(act)](QWidget& dialog) {
      opened = true;
      act(dialog);
    });
    FrmAbout(Main, BrandRow(brand)).exec();
    EXPECT_TRUE(opened);
  }
  static std::string TextOf(const QWidget& dialog, const char* label) {
    return Find<QLabel>(dialog, label)->text().toStdString();
  }
  static QImage PictureOf(const QWidget& dialog) {
    return Find<QLabel>(dialog, "LogoPic")->pixmap().toImage();
  }
  /// The timer fires without its second being waited for.
  static void Tick(const QWidget& dialog) {
    auto* const timer = Find<QTimer>(dialog, "TimerPic");
    QTimerEvent event(timer->timerId());
    QCoreApplication::sendEvent(timer, &event);
  }
};

TEST_F(About, TheBrandOfTheBuild) {
  Open([](QWidget& dialog) {
    EXPECT_EQ(dialog.windowTitle(), QStringLiteral("About..."));
    EXPECT_EQ(TextOf(dialog, "LabelTitle"), "Spectrane Basic " + VersionText());
    EXPECT_EQ(TextOf(dialog, "LabelCompany"), "Qvr Works");
    EXPECT_TRUE(Find<QLabel>(dialog, "LabelCompany")->isVisible());
    EXPECT_EQ(TextOf(dialog, "LabelEMail"), BrandRow(9).Contact.EMail);
    EXPECT_EQ(TextOf(dialog, "LabelPhone"), BrandRow(9).Contact.Phone);
    EXPECT_EQ(TextOf(dialog, "LabelWebSite"), BrandRow(9).Contact.WebSite);
    QStringList all;
    for (const QLabel* label : dialog.findChildren<QLabel*>()) all.append(label->text());
    for (const char* words : {"E-Mail:", "TelePhone:", "WebSite:"}) {
      EXPECT_TRUE(all.contains(QString::fromUtf8(words))) << words;
    }
    ExpectNamesEverywhere(dialog);
    EXPECT_EQ(FocusName(), QStringLiteral("OKCmd"));
    Press(dialog, Qt::Key_Return);
  });
}

TEST_F(About, N01_SaysWhereTheSettingsAre) {
  Open([this](QWidget& dialog) {
    const auto* folder = Find<QLabel>(dialog, "LabelFolder");
    EXPECT_EQ(folder->toolTip().toStdString(), "Settings: " + Settings.Path());
    EXPECT_TRUE(folder->isVisible());
    EXPECT_TRUE(folder->text().startsWith(QStringLiteral("Settings: /")));
    EXPECT_TRUE(folder->text().endsWith(QStringLiteral("config.ini")));
    EXPECT_LE(folder->sizeHint().width(), Find<QLabel>(dialog, "LogoPic")->width());
    Press(dialog, Qt::Key_Return);
  });
}

TEST_F(About, EachBrandHasItsTitleAndCompany) {
  for (int number = 0; number <= 9; ++number) {
    const Brand& brand = BrandRow(number);
    Open(
        [&](QWidget& dialog) {
          EXPECT_EQ(TextOf(dialog, "LabelTitle"), std::string(brand.Title) + " " + VersionText());
          EXPECT_EQ(Find<QLabel>(dialog, "LabelCompany")->isVisible(), brand.CompanyTextId != 0) << number;
          EXPECT_EQ(TextOf(dialog, "LabelEMail"), brand.Contact.EMail);
          Press(dialog, Qt::Key_Escape);
        },
        number);
  }
}

TEST_F(About, ThreePicturesASecondEachAndBackToTheFirst) {
  Open([](QWidget& dialog) {
    const auto* const timer = Find<QTimer>(dialog, "TimerPic");
    EXPECT_TRUE(timer->isActive());
    EXPECT_FALSE(timer->isSingleShot());
    EXPECT_EQ(timer->interval(), 1000);
    const QImage first = PictureOf(dialog);
    EXPECT_FALSE(first.isNull());
    Tick(dialog);
    const QImage second = PictureOf(dialog);
    Tick(dialog);
    const QImage third = PictureOf(dialog);
    EXPECT_NE(first, second);
    EXPECT_NE(second, third);
    EXPECT_NE(first, third);
    Tick(dialog);
    EXPECT_EQ(PictureOf(dialog), first);
    Click(dialog, "OKCmd");
  });
}

TEST_F(About, AClickOnTheIconBeginsAnew) {
  Open([](QWidget& dialog) {
    const QImage first = PictureOf(dialog);
    Tick(dialog);
    EXPECT_NE(PictureOf(dialog), first);
    Find<QLabel>(dialog, "LabelTitle")->setText({});
    Find<QTimer>(dialog, "TimerPic")->stop();
    Click(dialog, "ImageIcon");
    EXPECT_EQ(PictureOf(dialog), first);
    EXPECT_EQ(TextOf(dialog, "LabelTitle"), "Spectrane Basic " + VersionText());
    EXPECT_TRUE(Find<QTimer>(dialog, "TimerPic")->isActive());
    Press(dialog, Qt::Key_Escape);
  });
}

}  // namespace
}  // namespace spectrane::testing_windows
