#include "spectrum/windows/frmwlsconfig.h"

#include <QLabel>

#include <limits>

#include "spectrum/windows/scanfixture.h"

namespace spectrane::testing_windows {
namespace {

using ScanConfig = ScanWindow;

TEST_F(ScanConfig, ShowsWhatTheWindowHas) {
  OpenPoints({100, 10, 1});
  Options([](QWidget& dialog) {
    EXPECT_EQ(dialog.windowTitle(), QStringLiteral("Wavelength Scan Option"));
    ExpectNamesEverywhere(dialog);
    EXPECT_TRUE(Find<QRadioButton>(dialog, "OptionTrans")->isChecked());
    EXPECT_TRUE(Find<QRadioButton>(dialog, "OptionTrans")->hasFocus());
    EXPECT_EQ(Find<QLineEdit>(dialog, "ScaleTopText")->text(), QStringLiteral("120.0"));
    EXPECT_EQ(Find<QLineEdit>(dialog, "ScaleBottomText")->text(), QStringLiteral("10.0"));
    EXPECT_EQ(Find<QLineEdit>(dialog, "StartWLText")->text(), QStringLiteral("490.5"));
    EXPECT_EQ(Find<QLineEdit>(dialog, "EndWLText")->text(), QStringLiteral("520.0"));
    EXPECT_EQ(Find<QComboBox>(dialog, "ComboInterval")->currentText(), QStringLiteral("1.0 nm"));
    EXPECT_EQ(Find<QComboBox>(dialog, "ComboGain")->currentText(), QStringLiteral("4"));
    EXPECT_EQ(Find<QComboBox>(dialog, "ComboFilter")->currentText(), QStringLiteral("No Filter"));
    EXPECT_EQ(Find<QComboBox>(dialog, "ComboLamp")->currentText(), QStringLiteral("Auto"));
    EXPECT_TRUE(Find<QRadioButton>(dialog, "OptionStandard")->isChecked());
    EXPECT_FALSE(Find<QCheckBox>(dialog, "CheckSmooth")->isChecked());
    EXPECT_TRUE(Find<QPushButton>(dialog, "OKCmd")->isDefault());
    QTest::keyClick(&dialog, Qt::Key_Escape);
  });
  EXPECT_FALSE(Window->isWindowModified());
  EXPECT_EQ(Stored("Display Mode"), "1") << "Esc stores nothing";
}

TEST_F(ScanConfig, EveryFieldReachesTheWindowAndTheFile) {
  OpenPoints({100, 10, 1});
  const QColor colours[] = {QColor(1, 2, 3), QColor(4, 5, 6), QColor(7, 8, 9), QColor(10, 11, 12),
                            QColor(13, 14, 15)};
  const char* const titles[] = {"Scale Color", "Curve Color", "Mark Color", "Peak Color", "Valley Color"};
  for (int i = 0; i < 5; ++i) Boxes.ExpectColour(QLatin1String(titles[i]), colours[i]);
  Options([](QWidget& dialog) {
    Click(dialog, "OptionAbs");
    Type(dialog, "ScaleTopText", "1.25");
    Type(dialog, "ScaleBottomText", "-0.125");
    Type(dialog, "StartWLText", "400");
    Type(dialog, "EndWLText", "700.5");
    Choose(dialog, "ComboInterval", "5.0 nm");
    Choose(dialog, "ComboGain", "Auto");
    Choose(dialog, "ComboFilter", "Auto");
    Choose(dialog, "ComboLamp", "Deuterium");
    Click(dialog, "OptionQuick");
    for (const char* check : {"CheckGrid", "CheckPeak", "CheckValley", "CheckDetailPeak", "CheckDetailValley",
                              "CheckSmooth", "CheckDataTable", "CheckPrintPicture", "CheckPrintPeakData",
                              "CheckPrintAllData", "CheckPrintMaxMinAverage"}) {
      Click(dialog, check);
    }
    for (const char* colour : {"PictureScale", "PictureCurve", "PictureMark", "PicturePeak", "PictureValley"})
      Click(dialog, colour);
    Choose(dialog, "ComboPrintInterval", "10");
    Click(dialog, "OKCmd");
  });
  ScanSettings expected;
  expected.Option = {400, 700.5, 1.25, -0.125, 120, 10, 40000, 100, 0, 1, 1, 5, 3, 1};
  expected.QuickSpeed = 2;
  expected.ScaleColor = 1 + 256 * 2 + 65536 * 3;
  expected.CurveColor = 4 + 256 * 5 + 65536 * 6;
  expected.MarkColor = 7 + 256 * 8 + 65536 * 9;
  expected.PeakColor = 10 + 256 * 11 + 65536 * 12;
  expected.ValleyColor = 13 + 256 * 14 + 65536 * 15;
  expected.GridEnable = expected.PeakEnable = expected.ValleyEnable = false;
  expected.PeakDetailEnable = expected.ValleyDetailEnable = expected.SmoothEnable = true;
  expected.PrintCurve = expected.PrintPeakValley = expected.DataTableEnable = false;
  expected.PrintDataList = expected.PrintMaxMinAverage = true;
  expected.PrintInterval = 10;
  EXPECT_EQ(Window->Settings(), expected);
  EXPECT_EQ(Window->Document().Option(), expected.Option);
  EXPECT_EQ(Seen(), (CurveScale{{400, 700.5}, {-0.125, 1.25}}));
  EXPECT_FALSE(Curve->View().Grid);
  EXPECT_EQ(Curve->View().Lines[0].Colour, colours[1]);
  EXPECT_EQ(Window->DataTable(), nullptr) << "the table is not wanted";
  EXPECT_TRUE(Window->isWindowModified());
  ScanSettings stored;
  Setting again(Folder.Path());
  LoadSettings<ScanSettings>(again, kScanSettingRows, stored);
  expected.Option.PointCount = 0;
  expected.DataTableEnable = true;
  expected.PrintMaxMinAverage = false;
  expected.PrintInterval = 1;
  EXPECT_EQ(stored, expected) << "all but what has no key";
}

struct ClampRow {
  const char* Name;
  const char* Mode;
  const char* Top;
  const char* Bottom;
  ScanRange Taken;
};

class ScanClamp : public ScanWindow, public testing::WithParamInterface<ClampRow> {};

TEST_P(ScanClamp, EndsAreHeldWithoutAMessage) {
  OpenPoints({100, 10, 1});
  Options([](QWidget& dialog) {
    Click(dialog, GetParam().Mode);
    Type(dialog, "ScaleTopText", GetParam().Top);
    Type(dialog, "ScaleBottomText", GetParam().Bottom);
    Click(dialog, "OKCmd");
  });
  EXPECT_EQ(Window->Document().View().Of(Window->Document().Mode()), GetParam().Taken);
}

INSTANTIATE_TEST_SUITE_P(Ranges, ScanClamp,
                         testing::Values(ClampRow{"AbsInside", "OptionAbs", "3", "-0.5", {3, -0.5}},
                                         ClampRow{"AbsOutside", "OptionAbs", "3.001", "-0.501", {3, -0.5}},
                                         ClampRow{"TransInside", "OptionTrans", "200", "-1", {200, -1}},
                                         ClampRow{"TransOutside", "OptionTrans", "1e9", "-1.01", {200, -1}},
                                         ClampRow{"EnergyInside", "OptionEnergy", "65535", "0", {65535, 0}},
                                         ClampRow{
                                             "EnergyOutside", "OptionEnergy", "65536", "-1e300", {65535, 0}}),
                         NameOfRow<ClampRow>);

TEST_F(ScanConfig, WavelengthsAreHeldInTheRangeOfTheInstrument) {
  Link.State.WavelengthMin = 325;
  Link.State.WavelengthMax = 1000;
  OpenPoints({100, 10, 1});
  Options([](QWidget& dialog) {
    Type(dialog, "StartWLText", "324.9");
    Type(dialog, "EndWLText", "1000.1");
    Click(dialog, "OKCmd");
  });
  EXPECT_EQ(Window->Document().Option().StartWavelength, 325);
  EXPECT_EQ(Window->Document().Option().EndWavelength, 1000);
}

// 99.6 and 100.4 lie apart, and are stored as one whole number.
TEST_F(ScanConfig, EndsOfTheEnergiesAreComparedAsTheyAreStored) {
  OpenPoints({100, 10, 1});
  Options([](QWidget& dialog) {
    Click(dialog, "OptionEnergy");
    Type(dialog, "ScaleTopText", "100.4");
    Type(dialog, "ScaleBottomText", "99.6");
    Click(dialog, "OKCmd");
    EXPECT_TRUE(dialog.isVisible());
    EXPECT_TRUE(Find<QLineEdit>(dialog, "ScaleTopText")->hasFocus());
    EXPECT_EQ(Find<QLabel>(dialog, "LabelRemark")->text(), QStringLiteral("The top lies above the bottom."));
    // Half to even.
    Type(dialog, "ScaleTopText", "101.5");
    Type(dialog, "ScaleBottomText", "100.5");
    Click(dialog, "OKCmd");
  });
  EXPECT_EQ(Window->Document().Option().EnergyTop, 102);
  EXPECT_EQ(Window->Document().Option().EnergyBottom, 100);
  EXPECT_EQ(Stored("Energy Top"), "102");
}

// The value kept what was typed, and the box showed a digit less.
TEST_F(ScanConfig, ATypedWavelengthIsWhatItsBoxShows) {
  OpenPoints({100, 10, 1});
  Options([](QWidget& dialog) {
    Type(dialog, "StartWLText", "400");
    Type(dialog, "EndWLText", "400.04");
    Click(dialog, "OKCmd");
    EXPECT_TRUE(dialog.isVisible());
    EXPECT_EQ(Find<QLineEdit>(dialog, "EndWLText")->text(), QStringLiteral("400.0"));
    EXPECT_EQ(Find<QLabel>(dialog, "LabelRemark")->text(), QStringLiteral("The end lies above the start."));
    Type(dialog, "EndWLText", "700.26");
    Click(dialog, "OKCmd");
    if (dialog.isVisible()) dialog.close();
  });
  EXPECT_EQ(Window->Document().Option().StartWavelength, 400);
  EXPECT_EQ(Window->Document().Option().EndWavelength, 700.3);
  EXPECT_EQ(Stored("End WaveLength"), "700.3");
}

TEST_F(ScanConfig, AWavelengthOfTheFileStaysWholeBesideATypedOne) {
  WLSOption option = OtherOption();
  option.StartWavelength = 490.123;
  OpenPoints({100, 10, 1}, option);
  Options([](QWidget& dialog) {
    Type(dialog, "EndWLText", "512.34");
    Click(dialog, "OKCmd");
  });
  EXPECT_EQ(Window->Document().Option().StartWavelength, 490.123);
  EXPECT_EQ(Window->Document().Option().EndWavelength, 512.3);
}

// "1000.1" is what the box shows of 1000.05, and the instrument has no such wavelength.
TEST_F(ScanConfig, RoundingLeadsNoWavelengthOutOfTheRange) {
  Link.State.WavelengthMax = 1000.05;
  OpenPoints({100, 10, 1});
  Options([](QWidget& dialog) {
    Type(dialog, "EndWLText", "2000");
    Click(dialog, "OKCmd");
  });
  EXPECT_EQ(Window->Document().Option().EndWavelength, 1000.05);
}

TEST_F(ScanConfig, WrongInputStaysInItsField) {
  OpenPoints({100, 10, 1});
  struct Wrong {
    const char* Field;
    const char* Text;
  };
  for (const Wrong& wrong :
       {Wrong{"ScaleTopText", ""}, Wrong{"ScaleTopText", "1,5"}, Wrong{"ScaleTopText", "10"},
        Wrong{"ScaleBottomText", "nan"}, Wrong{"StartWLText", "x"}, Wrong{"EndWLText", "490.5"},
        Wrong{"EndWLText", "1e999"}}) {
    Options([&wrong](QWidget& dialog) {
      Type(dialog, wrong.Field, wrong.Text);
      Click(dialog, "OKCmd");
      EXPECT_TRUE(dialog.isVisible()) << wrong.Field << wrong.Text;
      EXPECT_TRUE(Find<QLineEdit>(dialog, wrong.Field)->hasFocus()) << wrong.Field << wrong.Text;
      EXPECT_FALSE(Find<QLabel>(dialog, "LabelRemark")->text().isEmpty());
      dialog.close();
    });
    EXPECT_FALSE(Window->isWindowModified()) << wrong.Field << wrong.Text;
  }
}

TEST_F(ScanConfig, LimitsOfADamagedFileThatAreNoNumbersAreRefused) {
  WLSOption option = OtherOption();
  option.StartWavelength = std::numeric_limits<double>::quiet_NaN();
  OpenPoints({100, 10, 1}, option);
  Options([](QWidget& dialog) {
    Click(dialog, "OKCmd");
    EXPECT_TRUE(dialog.isVisible()) << "an end that is no number stays in its field";
    QTest::keyClick(&dialog, Qt::Key_Escape);
  });
  EXPECT_NE(Stored("Start WaveLength"), "NaN");
}

TEST_F(ScanConfig, EachModeKeepsWhatWasTypedForIt) {
  OpenPoints({100, 10, 1});
  Options([](QWidget& dialog) {
    auto* const top = Find<QLineEdit>(dialog, "ScaleTopText");
    Type(dialog, "ScaleTopText", "77");
    Click(dialog, "OptionEnergy");
    EXPECT_EQ(top->text(), QStringLiteral("40000"));
    Click(dialog, "OptionAbs");
    EXPECT_EQ(top->text(), QStringLiteral("2.500"));
    Click(dialog, "OptionTrans");
    EXPECT_EQ(top->text(), QStringLiteral("77"));
    Click(dialog, "OKCmd");
  });
  EXPECT_EQ(Window->Document().Option().TransTop, 77);
  EXPECT_EQ(Window->Document().Option().AbsTop, 2.5);
}

TEST_F(ScanConfig, AnOKWithoutAChangeChangesNothing) {
  WLSOption option = OtherOption();
  option.TransTop = 99.987654321;
  option.StartWavelength = 490.123;
  option.EnergyFilter = 9;
  option.IntervalWavelength = -3;
  OpenPoints({100, 10, 1}, option);
  Options([](QWidget& dialog) {
    EXPECT_EQ(Find<QComboBox>(dialog, "ComboFilter")->currentIndex(), -1) << "no row has this number";
    QTest::keyClick(&dialog, Qt::Key_Return);
  });
  EXPECT_FALSE(Window->isWindowModified());
}

TEST_F(ScanConfig, ASearchThatIsOffForgetsItsMarks) {
  OpenPoints({100, 10, 100, 50, 100});
  Window->FindPeak();
  Options([](QWidget& dialog) {
    Click(dialog, "CheckValley");
    Click(dialog, "OKCmd");
  });
  EXPECT_EQ(Curve->View().Marks.size(), 2U);
  EXPECT_EQ(Peaks().rowCount(), 2);
  Options([](QWidget& dialog) {
    Click(dialog, "CheckPeak");
    Click(dialog, "OKCmd");
  });
  EXPECT_TRUE(Curve->View().Marks.empty());
  EXPECT_EQ(Peaks().rowCount(), 1);
}

TEST_F(ScanConfig, SmoothingMovesTheMarksAlong) {
  OpenPoints({100, 100, 100, 10, 100, 100, 100});
  Window->FindPeak();
  Options([](QWidget& dialog) {
    Click(dialog, "CheckSmooth");
    Click(dialog, "OKCmd");
  });
  // (2 * 100 + 3 * 100 + 6 * 10 + 3 * 100 + 2 * 100) / 16 = 66.25.
  ASSERT_EQ(Curve->View().Marks.size(), 1U);
  EXPECT_DOUBLE_EQ(Curve->View().Marks[0].Y, 66.25);
  EXPECT_EQ(RowText(Peaks(), 0).section(u'|', 3, 3), QStringLiteral("66.3"));
  EXPECT_FALSE(Window->isWindowModified());
}

/// One band of 1 Abs, which the means of five points bring down to 0.179: above and below a peak value of
/// 0.5.
const std::vector<int> kNarrowBand = {100, 100, 100, 10, 100, 100, 100};

// A search without a result counted as none.
TEST_F(ScanConfig, ASearchThatFoundNothingIsMadeAgain) {
  Settings.PutSetting(kScanSection, "Peak Height", "0.5");
  OpenPoints(kNarrowBand);
  const auto switchSmoothing = [this] {
    Options([](QWidget& dialog) {
      Click(dialog, "CheckSmooth");
      Click(dialog, "OKCmd");
    });
  };
  switchSmoothing();
  Window->FindPeak();
  ASSERT_TRUE(Curve->View().Marks.empty());
  switchSmoothing();
  ASSERT_EQ(Curve->View().Marks.size(), 1U);
  EXPECT_DOUBLE_EQ(Curve->View().Marks[0].Y, 10);
  EXPECT_EQ(Peaks().rowCount(), 1);
}

TEST_F(ScanConfig, ASearchThatWasNotMadeOrIsGoneIsNotMadeAgain) {
  OpenPoints(kNarrowBand);
  const auto switchSmoothing = [this] {
    Options([](QWidget& dialog) {
      Click(dialog, "CheckSmooth");
      Click(dialog, "OKCmd");
    });
    EXPECT_TRUE(Curve->View().Marks.empty());
  };
  switchSmoothing();
  Window->FindPeak();
  ASSERT_FALSE(Curve->View().Marks.empty());
  ASSERT_TRUE(Window->mmuOpenFile(PathOf("a.wls")));
  switchSmoothing();
  // Both kinds off, and on again.
  Window->FindPeak();
  for (int i = 0; i < 2; ++i) {
    Options([](QWidget& dialog) {
      Click(dialog, "CheckPeak");
      Click(dialog, "CheckValley");
      Click(dialog, "OKCmd");
    });
  }
  switchSmoothing();
}

TEST_F(ScanConfig, APeakValueIsShownAsStored) {
  Settings.PutSetting(kScanSection, "Peak Height", "0.0123456");
  Open();
  PeakValue([](QWidget& dialog, QLineEdit& field) {
    EXPECT_EQ(dialog.windowTitle(), QStringLiteral("Peak Value Setup"));
    EXPECT_EQ(field.text(), QStringLiteral("0.01235"));
    EXPECT_EQ(field.selectedText(), field.text());
    ExpectNamesEverywhere(dialog);
    QTest::keyClick(&field, Qt::Key_Return);
  });
  EXPECT_EQ(Window->Settings().PeakHeight, 0.0123456) << "what is not shown is not lost";
}

TEST_F(ScanConfig, ANewPeakValueHoldsForTheNextSearchAndIsStored) {
  OpenPoints({100, 10, 100, 50, 100});
  PeakValue([](QWidget& dialog, QLineEdit&) {
    Type(dialog, "PeakHeightText", "0.5");
    Click(dialog, "OKCmd");
  });
  EXPECT_EQ(Stored("Peak Height"), "0.5");
  Window->FindPeak();
  EXPECT_EQ(Curve->View().Marks.size(), 1U);
  EXPECT_FALSE(Window->isWindowModified());
}

TEST_F(ScanConfig, APeakValueThatIsNoneStaysInTheField) {
  Open();
  for (const char* wrong : {"", "x", "-0.001", "1,5", "nan"}) {
    PeakValue([wrong](QWidget& dialog, QLineEdit& field) {
      Type(dialog, "PeakHeightText", wrong);
      Click(dialog, "OKCmd");
      EXPECT_TRUE(dialog.isVisible()) << wrong;
      EXPECT_TRUE(field.hasFocus()) << wrong;
      dialog.close();
    });
    EXPECT_EQ(Window->Settings().PeakHeight, 0.001) << wrong;
  }
  PeakValue([](QWidget& dialog, QLineEdit&) {
    Type(dialog, "PeakHeightText", "0");
    Click(dialog, "OKCmd");
  });
  EXPECT_EQ(Window->Settings().PeakHeight, 0);
}

}  // namespace
}  // namespace spectrane::testing_windows
