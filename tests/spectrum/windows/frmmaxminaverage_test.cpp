#include "spectrum/windows/frmmaxminaverage.h"

#include <QLabel>
#include <QLineEdit>

#include "files/wlsfile.h"
#include "spectrum/windows/frmwls.h"
#include "windowsupport/windowfixture.h"

namespace spectrane::testing_windows {
namespace {

/// A spectrum window with 100, 10 and 1 %T at 500, 501 and 502 nm, without smoothing.
class MaxMinAverageDialog : public WindowFixture {
 protected:
  MaxMinAverageDialog() {
    Settings.PutSetting(kScanSection, "Smooth Enable", "False");
    const std::vector<WLSRecord> points = {
        {10050, 10050, 50, 500, 1}, {1050, 10050, 50, 501, 1}, {150, 10050, 50, 502, 1}};
    const WLSOption option{400, 600, 3, 0, 100, 0, 65535, 0, 1, 1, 1, 1, 3, 1};
    SaveDataFile(WLSModule(), Folder.Path("scan.wls"), option, 3,
                 [&](std::int32_t i) { return points[static_cast<std::size_t>(i)]; });
    Window = std::make_unique<FrmWLS>(Main);
    EXPECT_TRUE(Window->mmuOpenFile(PathOf("scan.wls")));
    Present(*Window);
  }
  static QString LabelText(const QWidget& dialog, const char* name) {
    return Find<QLabel>(dialog, name)->text();
  }
  static void Type(const QWidget& dialog, const char* name, const char* text) {
    auto* const field = Find<QLineEdit>(dialog, name);
    field->selectAll();
    QTest::keyClicks(field, QString::fromUtf8(text));
  }

  std::unique_ptr<FrmWLS> Window;
};

TEST_F(MaxMinAverageDialog, BeginsWithTheWholeSpectrum) {
  InDialog("FrmMaxMinAverage", [](QWidget& dialog) {
    EXPECT_EQ(Find<QLineEdit>(dialog, "TextStartWavelength")->text(), QStringLiteral("500.0"));
    EXPECT_EQ(Find<QLineEdit>(dialog, "TextEndWavelength")->text(), QStringLiteral("502.0"));
    EXPECT_EQ(LabelText(dialog, "LabelMax"), QStringLiteral("500.0 nm  0.000 Abs  100.0%T"));
    EXPECT_EQ(LabelText(dialog, "LabelMin"), QStringLiteral("502.0 nm  2.000 Abs  1.0%T"));
    EXPECT_EQ(LabelText(dialog, "LabelAverage"), QStringLiteral("1.000 Abs  37.0%T"));
    ExpectNamesEverywhere(dialog);
    QTest::mouseClick(Find<QWidget>(dialog, "CmdClose"), Qt::LeftButton);
  });
  Window->ShowMaxMinAverageWindow();
}

TEST_F(MaxMinAverageDialog, SwapsTheEndsAndTheWindowKeepsTheRange) {
  InDialog("FrmMaxMinAverage", [](QWidget& dialog) {
    Type(dialog, "TextStartWavelength", "502");
    Type(dialog, "TextEndWavelength", "501");
    QTest::mouseClick(Find<QWidget>(dialog, "CmdCaculate"), Qt::LeftButton);
    EXPECT_EQ(Find<QLineEdit>(dialog, "TextStartWavelength")->text(), QStringLiteral("501.0"));
    EXPECT_EQ(Find<QLineEdit>(dialog, "TextEndWavelength")->text(), QStringLiteral("502.0"));
    EXPECT_EQ(LabelText(dialog, "LabelMax"), QStringLiteral("501.0 nm  1.000 Abs  10.0%T"));
    EXPECT_EQ(LabelText(dialog, "LabelAverage"), QStringLiteral("1.500 Abs  5.5%T"));
    dialog.close();
  });
  Window->ShowMaxMinAverageWindow();
  EXPECT_EQ(Window->MaxRange(), (std::pair{501.0, 502.0}));
}

TEST_F(MaxMinAverageDialog, WhatIsNoNumberChangesNothing) {
  InDialog("FrmMaxMinAverage", [](QWidget& dialog) {
    Type(dialog, "TextEndWavelength", "abc");
    QTest::keyClick(&dialog, Qt::Key_Return);
    EXPECT_TRUE(Find<QLineEdit>(dialog, "TextEndWavelength")->hasFocus());
    EXPECT_EQ(LabelText(dialog, "LabelMin"), QStringLiteral("502.0 nm  2.000 Abs  1.0%T"));
    dialog.close();
  });
  Window->ShowMaxMinAverageWindow();
  EXPECT_EQ(Window->MaxRange(), (std::pair{500.0, 502.0}));
}

}  // namespace
}  // namespace spectrane::testing_windows
