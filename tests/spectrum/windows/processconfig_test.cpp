#include "spectrum/windows/processconfig.h"

#include <QDropEvent>
#include <QLabel>
#include <QMimeData>

#include "spectrum/windows/frmcaculate.h"
#include "spectrum/windows/frmdev.h"
#include "spectrum/windows/frmsmooth.h"
#include "spectrum/windows/processfixture.h"

namespace spectrane::testing_windows {
namespace {

class ProcessOptions : public ProcessFixture {
 protected:
  FrmSmooth& Smoothed() {
    if (Main.Children.empty()) {
      OpenPoints({100, 10, 100, 10, 100});
      Window->mmuSpectrumSmooth();
    }
    return Last<FrmSmooth>();
  }
  static QString TextOf(QWidget& dialog, const char* field) { return Find<QLineEdit>(dialog, field)->text(); }
  /// Types and leaves the field.
  static void Enter(QWidget& dialog, const char* field, const char* text) {
    Type(dialog, field, text);
    QTest::keyClick(Find<QLineEdit>(dialog, field), Qt::Key_Tab);
  }
};

TEST_F(ProcessOptions, ShowsWhatTheWindowHas) {
  OptionsOf(Smoothed(), "FrmSmoothConfig", [this](QWidget& dialog) {
    EXPECT_EQ(dialog.windowTitle(), QStringLiteral("Spectrum Smooth"));
    ExpectNamesEverywhere(dialog);
    EXPECT_EQ(TextOf(dialog, "TextFileName"), PathOf("a.wls"));
    EXPECT_TRUE(Find<QLineEdit>(dialog, "TextFileName")->isReadOnly());
    EXPECT_TRUE(Find<QRadioButton>(dialog, "OptionTrans")->isChecked());
    EXPECT_EQ(TextOf(dialog, "ScaleTopText"), QStringLiteral("120.0"));
    EXPECT_EQ(TextOf(dialog, "ScaleBottomText"), QStringLiteral("10.0"));
    EXPECT_EQ(Find<QLabel>(dialog, "ScaleTopUnitLabel")->text(), QStringLiteral("%T"));
    Click(dialog, "OptionAbs");
    EXPECT_EQ(TextOf(dialog, "ScaleTopText"), QStringLiteral("2.500"));
    EXPECT_EQ(TextOf(dialog, "ScaleBottomText"), QStringLiteral("-0.250"));
    EXPECT_EQ(Find<QLabel>(dialog, "ScaleBottomUnitLabel")->text(), QStringLiteral("Abs"));
    EXPECT_EQ(TextOf(dialog, "StartWLText"), QStringLiteral("490.5"));
    EXPECT_EQ(TextOf(dialog, "EndWLText"), QStringLiteral("520.0"));
    EXPECT_TRUE(Find<QCheckBox>(dialog, "CheckDetailPeak")->isChecked());
    EXPECT_FALSE(Find<QCheckBox>(dialog, "CheckDetailValley")->isChecked());
    QTest::keyClick(&dialog, Qt::Key_Escape);
  });
  EXPECT_EQ(Key(kSmoothSection, "Display Mode"), "2") << "Esc stores what the window has";
  EXPECT_EQ(Key(kSmoothSection, "Trans Top"), "120");
  EXPECT_EQ(ViewOf(Smoothed()).Y.Kind, AxisKind::Trans);
}

TEST_F(ProcessOptions, EveryFieldReachesTheWindowAndTheSettings) {
  FrmSmooth& window = Smoothed();
  struct ColourRow {
    const char* Button;
    const char* Title;
    const char* Key;
  };
  constexpr ColourRow kColours[] = {
      {"PictureCurve", "Curve Color", "Curve Color"}, {"PictureResult", "Result", "Result Color"},
      {"PictureScale", "Scale Color", "Scale Color"}, {"PictureMark", "Mark Color", "Mark Color"},
      {"PicturePeak", "Peak Color", "Peak Color"},    {"PictureValley", "Valley Color", "Valley Color"}};
  int red = 0;
  for (const ColourRow& row : kColours) Boxes.ExpectColour(QLatin1String(row.Title), QColor(++red, 0, 0));
  OptionsOf(window, "FrmSmoothConfig", [&](QWidget& dialog) {
    Enter(dialog, "ScaleTopText", "110");
    Enter(dialog, "ScaleBottomText", "5");
    Click(dialog, "OptionAbs");
    Enter(dialog, "ScaleTopText", "1.25");
    Enter(dialog, "ScaleBottomText", "-0.125");
    Enter(dialog, "StartWLText", "400.5");
    Enter(dialog, "EndWLText", "700");
    for (const char* check :
         {"CheckGrid", "CheckPeak", "CheckValley", "CheckDetailPeak", "CheckDetailValley", "CheckDataTable"})
      Click(dialog, check);
    for (const ColourRow& row : kColours) Click(dialog, row.Button);
    Click(dialog, "OKCmd");
  });
  EXPECT_EQ(ViewOf(window).Scale, (CurveScale{{400.5, 700}, {-0.125, 1.25}}));
  EXPECT_EQ(ViewOf(window).Lines[0].Colour, QColor(1, 0, 0));
  EXPECT_EQ(ViewOf(window).Lines[1].Colour, QColor(2, 0, 0));
  EXPECT_EQ(ViewOf(window).Colours.Scale, QColor(3, 0, 0));
  EXPECT_FALSE(ViewOf(window).Grid);
  EXPECT_EQ(window.DataTable(), nullptr);
  EXPECT_EQ(window.AllSettings().Shown.Option.TransTop, 110);
  red = 0;
  for (const ColourRow& row : kColours) EXPECT_EQ(Key(kSmoothSection, row.Key), std::to_string(++red));
  EXPECT_EQ(Key(kSmoothSection, "Display Mode"), "1");
  EXPECT_EQ(Key(kSmoothSection, "Abs Bottom"), "-0.125");
  EXPECT_EQ(Key(kSmoothSection, "Trans Bottom"), "5");
  EXPECT_EQ(Key(kSmoothSection, "Start Wavelength"), "400.5");
  EXPECT_EQ(Key(kSmoothSection, "Valley Detail Enable"), "True");
  EXPECT_EQ(Key(kSmoothSection, "Peak Enable"), "False");
  // The next one begins with them, but for what it takes from its source.
  Window->mmuSpectrumSmooth();
  EXPECT_EQ(Last<FrmSmooth>().AllSettings().Shown.CurveColor, 2);
}

TEST_F(ProcessOptions, FieldsAreHeldInTheirLimitsWhenTheyAreLeft) {
  OptionsOf(Smoothed(), "FrmSmoothConfig", [](QWidget& dialog) {
    struct Row {
      const char* Field;
      const char* Typed;
      const char* Becomes;
    };
    const auto expect = [&dialog](std::initializer_list<Row> rows) {
      for (const Row& row : rows) {
        Enter(dialog, row.Field, row.Typed);
        EXPECT_EQ(TextOf(dialog, row.Field), QLatin1String(row.Becomes)) << row.Typed;
      }
    };
    expect({{"ScaleTopText", "200.1", "200.0"},
            {"ScaleBottomText", "-1.1", "-1.0"},
            {"ScaleTopText", "199.9", "199.9"},
            {"ScaleBottomText", "-0.9", "-0.9"}});
    Click(dialog, "OptionAbs");
    expect({{"ScaleTopText", "3.1", "3.000"},
            {"ScaleBottomText", "-0.6", "-0.500"},
            {"StartWLText", "189.9", "190.0"},
            {"StartWLText", "1100.1", "1100.0"},
            {"EndWLText", "100", "190.0"},
            {"EndWLText", "2000", "1100.0"},
            {"EndWLText", "300.26", "300.3"},
            {"EndWLText", "abc", "abc"}});
    QTest::keyClick(&dialog, Qt::Key_Escape);
  });
}

TEST_F(ProcessOptions, ATypedWavelengthIsWhatItsBoxShows) {
  FrmSmooth& window = Smoothed();
  OptionsOf(window, "FrmSmoothConfig", [](QWidget& dialog) {
    Enter(dialog, "StartWLText", "400.04");
    Enter(dialog, "EndWLText", "400.0");
    EXPECT_EQ(TextOf(dialog, "StartWLText"), QStringLiteral("400.0"));
    Click(dialog, "OKCmd");
    EXPECT_TRUE(dialog.isVisible());
    EXPECT_EQ(Find<QLabel>(dialog, "LabelRemark")->text(), QStringLiteral("Start and end are equal."));
    Type(dialog, "EndWLText", "700.26");
    QTest::keyClick(Find<QLineEdit>(dialog, "EndWLText"), Qt::Key_Return);
    if (dialog.isVisible()) dialog.close();
  });
  EXPECT_EQ(window.AllSettings().Shown.Option.StartWavelength, 400);
  EXPECT_EQ(window.AllSettings().Shown.Option.EndWavelength, 700.3);
  EXPECT_EQ(Key(kSmoothSection, "End Wavelength"), "700.3");
}

TEST_F(ProcessOptions, AWavelengthOfTheSourceStaysWholeWhenItsFieldIsLeft) {
  WLSOption option = OtherOption();
  option.StartWavelength = 490.123;
  OpenPoints({100, 10, 100, 10, 100}, option);
  Window->mmuSpectrumSmooth();
  OptionsOf(Last<FrmSmooth>(), "FrmSmoothConfig", [](QWidget& dialog) {
    auto* const start = Find<QLineEdit>(dialog, "StartWLText");
    start->setFocus();
    QTest::keyClick(start, Qt::Key_Tab);
    Enter(dialog, "EndWLText", "512.34");
    Click(dialog, "OKCmd");
  });
  EXPECT_EQ(Last<FrmSmooth>().AllSettings().Shown.Option.StartWavelength, 490.123);
  EXPECT_EQ(Last<FrmSmooth>().AllSettings().Shown.Option.EndWavelength, 512.3);
}

TEST_F(ProcessOptions, EndsTheWrongWayRoundChangePlaces) {
  FrmSmooth& window = Smoothed();
  OptionsOf(window, "FrmSmoothConfig", [](QWidget& dialog) {
    Enter(dialog, "ScaleTopText", "20");
    Enter(dialog, "ScaleBottomText", "80");
    Click(dialog, "OptionAbs");
    Enter(dialog, "ScaleTopText", "0.5");
    Enter(dialog, "ScaleBottomText", "1.5");
    Enter(dialog, "StartWLText", "600");
    Enter(dialog, "EndWLText", "450");
    QTest::keyClick(Find<QLineEdit>(dialog, "EndWLText"), Qt::Key_Return);
  });
  EXPECT_EQ(ViewOf(window).Scale, (CurveScale{{450, 600}, {0.5, 1.5}}));
  EXPECT_EQ(window.AllSettings().Shown.Option.TransBottom, 20);
  EXPECT_EQ(window.AllSettings().Shown.Option.TransTop, 80);
}

TEST_F(ProcessOptions, CancelKeepsTheValuesAndShowsTheHomeView) {
  FrmSmooth& smoothed = Smoothed();
  const CurveScale home = ViewOf(smoothed).Scale;
  smoothed.mmuZoomIn();
  ASSERT_NE(ViewOf(smoothed).Scale, home);
  OptionsOf(smoothed, "FrmSmoothConfig", [](QWidget& dialog) {
    Type(dialog, "ScaleTopText", "77");
    QTest::keyClick(&dialog, Qt::Key_Escape);
  });
  EXPECT_EQ(ViewOf(smoothed).Scale, home);
  EXPECT_NE(Key(kSmoothSection, "Trans Top"), "77");
  EXPECT_EQ(Key(kSmoothSection, "Data Table Enable"), "True");
}

TEST_F(ProcessOptions, WhatIsNoRangeIsPointedOut) {
  OptionsOf(Smoothed(), "FrmSmoothConfig", [](QWidget& dialog) {
    Type(dialog, "ScaleTopText", "x");
    Click(dialog, "OKCmd");
    EXPECT_TRUE(dialog.isVisible());
    EXPECT_TRUE(Find<QLineEdit>(dialog, "ScaleTopText")->hasFocus());
    EXPECT_EQ(Find<QLabel>(dialog, "LabelRemark")->text(), QStringLiteral("This is no number."));
    Type(dialog, "ScaleTopText", "10");
    Click(dialog, "OKCmd");
    EXPECT_EQ(Find<QLabel>(dialog, "LabelRemark")->text(), QStringLiteral("Top and bottom are equal."));
    // The wrong way round and beyond the limits: both become the highest.
    Type(dialog, "ScaleTopText", "300");
    Type(dialog, "ScaleBottomText", "400");
    Click(dialog, "OKCmd");
    EXPECT_TRUE(dialog.isVisible());
    EXPECT_EQ(Find<QLabel>(dialog, "LabelRemark")->text(), QStringLiteral("Top and bottom are equal."));
    Type(dialog, "ScaleBottomText", "10");
    Type(dialog, "ScaleTopText", "100");
    Type(dialog, "EndWLText", "490.5");
    Click(dialog, "OKCmd");
    EXPECT_EQ(Find<QLabel>(dialog, "LabelRemark")->text(), QStringLiteral("Start and end are equal."));
    QTest::keyClick(&dialog, Qt::Key_Escape);
  });
}

TEST_F(ProcessOptions, TheDerivativeStoresWhereItCameFrom) {
  OpenPoints({100, 10, 100, 10, 100});
  Window->mmuSpectrumDev();
  OptionsOf(Last<FrmDev>(), "FrmDevConfig", [](QWidget& dialog) {
    EXPECT_EQ(dialog.windowTitle(), QStringLiteral("Spectrum Derivative Option"));
    Click(dialog, "OKCmd");
  });
  EXPECT_EQ(Key(kDevSection, "File name"), PathOf("a.wls").toStdString());
}

class DroppedFiles : public ProcessOptions {
 protected:
  static bool Drop(QWidget& field, const QList<QUrl>& urls) {
    QMimeData data;
    data.setUrls(urls);
    QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    enter.ignore();
    QCoreApplication::sendEvent(&field, &enter);
    QDropEvent drop(QPointF(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    drop.ignore();
    if (enter.isAccepted()) QCoreApplication::sendEvent(&field, &drop);
    return drop.isAccepted();
  }
};

TEST_F(DroppedFiles, FillTheRowsFromTheirOwnOn) {
  FrmCaculate window(Main, SpectrumOperation::Add);
  OptionsOf(window, "FrmCaculateConfig", [](QWidget& dialog) {
    QWidget& first = *Find<QLineEdit>(dialog, "TextFileName0");
    EXPECT_TRUE(Drop(first, {QUrl::fromLocalFile(QStringLiteral("/x/a b.wls")),
                             QUrl::fromLocalFile(QStringLiteral("/x/c.wls")),
                             QUrl::fromLocalFile(QStringLiteral("/x/d.wls"))}));
    EXPECT_EQ(TextOf(dialog, "TextFileName0"), QStringLiteral("/x/a b.wls"));
    EXPECT_EQ(TextOf(dialog, "TextFileName1"), QStringLiteral("/x/c.wls"));
    EXPECT_TRUE(
        Drop(*Find<QLineEdit>(dialog, "TextFileName1"), {QUrl::fromLocalFile(QStringLiteral("/x/e.wls"))}));
    EXPECT_EQ(TextOf(dialog, "TextFileName0"), QStringLiteral("/x/a b.wls"));
    EXPECT_EQ(TextOf(dialog, "TextFileName1"), QStringLiteral("/x/e.wls"));
    EXPECT_FALSE(Drop(first, {QUrl(QStringLiteral("https://example.org/a.wls"))}));
    EXPECT_EQ(TextOf(dialog, "TextFileName0"), QStringLiteral("/x/a b.wls"));
    QTest::keyClick(&dialog, Qt::Key_Escape);
  });
}

TEST_F(DroppedFiles, DoNotReplaceWhatWasHandedOver) {
  OptionsOf(Smoothed(), "FrmSmoothConfig", [this](QWidget& dialog) {
    EXPECT_FALSE(
        Drop(*Find<QLineEdit>(dialog, "TextFileName"), {QUrl::fromLocalFile(QStringLiteral("/x/c.wls"))}));
    EXPECT_EQ(TextOf(dialog, "TextFileName"), PathOf("a.wls"));
    QTest::keyClick(&dialog, Qt::Key_Escape);
  });
}

}  // namespace
}  // namespace spectrane::testing_windows
