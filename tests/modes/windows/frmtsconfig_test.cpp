#include "modes/windows/frmtsconfig.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>

#include "modes/windows/frmtsfixture.h"

namespace spectrane::testing_windows {
namespace {

class TimeScanConfig : public WindowFixture {
 protected:
  bool Open(const std::function<void(QWidget& dialog)>& act) {
    bool opened = false;
    InDialog("FrmTSConfig", [&](QWidget& dialog) {
      opened = true;
      act(dialog);
    });
    FrmTSConfig dialog(Main, Given);
    const int result = dialog.exec();
    Result = dialog.Settings();
    EXPECT_TRUE(opened);
    return result == QDialog::Accepted;
  }
  static void Enter(QWidget& dialog, const char* name, const char* text) {
    auto* const field = Find<QLineEdit>(dialog, name);
    field->setFocus();
    field->selectAll();
    QTest::keyClick(field, Qt::Key_Delete);
    QTest::keyClicks(field, QLatin1String(text));
  }
  static void Tab(QWidget& dialog) {
    QTest::keyClick(dialog.focusWidget(), Qt::Key_Tab);
    QCoreApplication::processEvents();
  }
  static void Push(QWidget& dialog, const char* button) {
    auto* const found = Find<QAbstractButton>(dialog, button);
    QTest::mouseClick(found, Qt::LeftButton, {}, QPoint(8, found->height() / 2));
  }
  static std::string TextIn(QWidget& dialog, const char* field) {
    return Find<QLineEdit>(dialog, field)->text().toStdString();
  }
  std::string StoredHere(const char* key) { return Setting(Folder.Path()).GetSetting(kTimeScanSection, key); }

  TimeScanSettings Given;
  TimeScanSettings Result;
};

TEST_F(TimeScanConfig, ShowsWhatItWasGivenInItsForms) {
  Given.Option.WorkWL = 340;
  Given.StartSecond = 10.4;
  Given.EndSecond = 99.6;
  Open([](QWidget& dialog) {
    EXPECT_EQ(dialog.windowTitle(), QStringLiteral("Kinetics Option"));
    EXPECT_EQ(TextIn(dialog, "WLText"), "340.0");
    EXPECT_EQ(TextIn(dialog, "StartTimeText"), "10");
    EXPECT_EQ(TextIn(dialog, "EndTimeText"), "100");
    EXPECT_EQ(TextIn(dialog, "ScaleTopText"), "3.000");
    EXPECT_EQ(TextIn(dialog, "ScaleBottomText"), "0.000");
    EXPECT_EQ(Find<QLabel>(dialog, "ScaleTopUnit")->text(), QStringLiteral("Abs"));
    const auto* const intervals = Find<QComboBox>(dialog, "InternalTimeCombo");
    ASSERT_EQ(intervals->count(), 10);
    EXPECT_EQ(intervals->itemText(0), QStringLiteral(" 0.1 Second"));
    EXPECT_EQ(intervals->itemText(9), QStringLiteral(" 1 Minute"));
    EXPECT_EQ(intervals->currentIndex(), 1);
    EXPECT_TRUE(Find<QRadioButton>(dialog, "AbsOption")->isChecked());
    ExpectNamesEverywhere(dialog);
    Push(dialog, "CancelCmd");
  });
  EXPECT_EQ(StoredHere("Work WaveLength"), "") << "nothing is written";
}

TEST_F(TimeScanConfig, OKTakesAndStoresEverythingButThePeakValue) {
  Given.PeakHeight = 0.25;
  Boxes.ExpectColour(QStringLiteral("Curve Color"), QColor(1, 2, 3));
  EXPECT_TRUE(Open([](QWidget& dialog) {
    Enter(dialog, "WLText", "260.04nm");
    Enter(dialog, "StartTimeText", "5.5");
    Enter(dialog, "EndTimeText", "65 s");
    Find<QComboBox>(dialog, "InternalTimeCombo")->setCurrentIndex(3);
    Push(dialog, "TransOption");
    EXPECT_EQ(TextIn(dialog, "ScaleTopText"), "100.0");
    Enter(dialog, "ScaleTopText", "80");
    Enter(dialog, "ScaleBottomText", "-1");
    for (const char* box : {"CheckPeak", "CheckValley", "CheckDetailPeak", "CheckDetailValley", "CheckGrid",
                            "CheckDataTable", "CheckPrintPicture", "CheckPrintPeakData", "CheckPrintAllData"})
      Push(dialog, box);
    Push(dialog, "PictureCurve");
    Push(dialog, "OKCmd");
  }));
  TimeScanSettings expected = Given;
  expected.Option.WorkWL = 260;
  expected.StartSecond = 6;
  expected.EndSecond = 65;
  expected.Option.IntervalSecond = 3;
  expected.DisplayMode = 2;
  expected.Option.TransTop = 80;
  expected.Option.TransBottom = -1;
  expected.PeakEnable = expected.ValleyEnable = expected.GridEnable = expected.DataTableEnable = false;
  expected.PeakDetailEnable = expected.ValleyDetailEnable = true;
  expected.PrintCurve = expected.PrintPeakValley = false;
  expected.PrintDataList = true;
  expected.CurveColor = ColourNumber(1, 2, 3);
  EXPECT_EQ(Result, expected);
  EXPECT_EQ(StoredHere("Peak Height"), "");
  TimeScanSettings next;
  next.PeakHeight = 0.25;
  next.DataTableEnable = false;
  Setting again(Folder.Path());
  LoadSettings<TimeScanSettings>(again, kTimeScanSettingRows, next);
  EXPECT_EQ(next, expected);
}

TEST_F(TimeScanConfig, AWavelengthOutsideTheRangeFallsBackTo546) {
  for (const char* typed : {"189.9", "1100.1", "abc", "", "1e999"}) {
    SCOPED_TRACE(typed);
    Given.Option.WorkWL = 340;
    EXPECT_TRUE(Open([&](QWidget& dialog) {
      Enter(dialog, "WLText", typed);
      Boxes.ExpectMessage(1006);
      Tab(dialog);
      EXPECT_TRUE(Boxes.AllAsked());
      EXPECT_EQ(TextIn(dialog, "WLText"), "546.0");
      Push(dialog, "OKCmd");
    }));
    EXPECT_EQ(Result.Option.WorkWL, 546);
  }
}

TEST_F(TimeScanConfig, TheLimitsOfTheRangeBelongToIt) {
  for (const double wavelength : {190.0, 1100.0}) {
    EXPECT_TRUE(Open([&](QWidget& dialog) {
      Enter(dialog, "WLText", ShortestText(wavelength).c_str());
      Tab(dialog);
      Push(dialog, "OKCmd");
    }));
    EXPECT_EQ(Result.Option.WorkWL, wavelength);
  }
}

TEST_F(TimeScanConfig, ConfirmedByEnterAWrongWavelengthIsShownFirst) {
  bool closed = true;
  EXPECT_FALSE(Open([&](QWidget& dialog) {
    Enter(dialog, "WLText", "5");
    Boxes.ExpectMessage(1006);
    QTest::keyClick(dialog.focusWidget(), Qt::Key_Return);
    closed = !dialog.isVisible();
    QTest::keyClick(&dialog, Qt::Key_Escape);
  }));
  EXPECT_FALSE(closed);
}

TEST_F(TimeScanConfig, AnOddStartIsRemarkedOnAndTakenAllTheSame) {
  const struct {
    const char* Start;
    const char* End;
    double Taken;
  } rows[] = {{"10001", "20000", 10001}, {"50", "50", 50}, {"60", "50", 60}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.Start);
    EXPECT_TRUE(Open([&](QWidget& dialog) {
      Enter(dialog, "EndTimeText", row.End);
      Enter(dialog, "StartTimeText", row.Start);
      Boxes.ExpectMessage(1005);
      Tab(dialog);
      EXPECT_TRUE(Boxes.AllAsked());
      EXPECT_EQ(TextIn(dialog, "StartTimeText"), row.Start);
      Push(dialog, "OKCmd");
    }));
    EXPECT_EQ(Result.StartSecond, row.Taken);
  }
}

// The box showed 11, and OK stored 10.
TEST_F(TimeScanConfig, OKStoresTheSecondsThatTheBoxesShow) {
  const struct {
    const char* Typed;
    const char* Shown;
    double Taken;
  } rows[] = {{"10.5", "11", 11}, {"4.5", "5", 5}, {"5.5", "6", 6}, {"7.4", "7", 7}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.Typed);
    EXPECT_TRUE(Open([&](QWidget& dialog) {
      Enter(dialog, "StartTimeText", row.Typed);
      Tab(dialog);
      EXPECT_EQ(TextIn(dialog, "StartTimeText"), row.Shown);
      Push(dialog, "OKCmd");
    }));
    EXPECT_EQ(Result.StartSecond, row.Taken);
  }
  Given.StartSecond = 4.5;
  Given.EndSecond = 20.5;
  Given.Option.WorkWL = 546.07;
  EXPECT_TRUE(Open([](QWidget& dialog) {
    EXPECT_EQ(TextIn(dialog, "StartTimeText"), "5");
    EXPECT_EQ(TextIn(dialog, "EndTimeText"), "21");
    Push(dialog, "OKCmd");
  }));
  EXPECT_EQ(Result.StartSecond, 5);
  EXPECT_EQ(Result.EndSecond, 21);
  EXPECT_EQ(Result.Option.WorkWL, 546.07) << "what nobody typed over keeps the decimals that are not shown";
}

TEST_F(TimeScanConfig, TheEndIsNeverRemarkedOnByABox) {
  EXPECT_TRUE(Open([](QWidget& dialog) {
    Enter(dialog, "EndTimeText", "");
    EXPECT_EQ(Find<QLabel>(dialog, "LabelPoints")->text(), Words(1004));
    Tab(dialog);
    Enter(dialog, "EndTimeText", "0");
    Tab(dialog);
    Push(dialog, "OKCmd");
  }));
  EXPECT_EQ(Result.EndSecond, 0);
}

TEST_F(TimeScanConfig, WhoCancelsIsNotToldWhatIsWrong) {
  EXPECT_FALSE(Open([](QWidget& dialog) {
    Enter(dialog, "WLText", "5");
    auto* const cancel = Find<QAbstractButton>(dialog, "CancelCmd");
    // A finger stays on the button for a while.
    QTest::mousePress(cancel, Qt::LeftButton, {}, QPoint(8, cancel->height() / 2));
    QCoreApplication::processEvents();
    QTest::mouseRelease(cancel, Qt::LeftButton, {}, QPoint(8, cancel->height() / 2));
  }));
  EXPECT_FALSE(Open([](QWidget& dialog) {
    Enter(dialog, "StartTimeText", "99999");
    QTest::keyClick(&dialog, Qt::Key_Escape);
  }));
  EXPECT_EQ(Result, Given);
}

TEST_F(TimeScanConfig, TheScaleOfTheOtherModeStaysAsItWas) {
  EXPECT_TRUE(Open([](QWidget& dialog) {
    Push(dialog, "TransOption");
    EXPECT_EQ(Find<QLabel>(dialog, "ScaleBottomUnit")->text(), QStringLiteral("%T"));
    Enter(dialog, "ScaleTopText", "50");
    Push(dialog, "AbsOption");
    EXPECT_EQ(TextIn(dialog, "ScaleTopText"), "3.000");
    Push(dialog, "OKCmd");
  }));
  EXPECT_EQ(Result.Option.TransTop, 100);
  EXPECT_EQ(Result.DisplayMode, 1);
}

TEST_F(TimeScanConfig, SaysHowManyPointsThatMakes) {
  Open([](QWidget& dialog) {
    const auto* const points = Find<QLabel>(dialog, "LabelPoints");
    EXPECT_EQ(points->text(), QStringLiteral("5001 points"));
    Enter(dialog, "EndTimeText", "99999");
    EXPECT_EQ(points->text(), QStringLiteral("10000 points, the most"));
    Push(dialog, "CancelCmd");
  });
}

class TimeScanOptions : public TimeScanWindow {
 protected:
  void Options(const std::function<void(QWidget& dialog)>& act) {
    InDialog("FrmTSConfig", [&](QWidget& dialog) {
      act(dialog);
      QTest::mouseClick(Find<QPushButton>(dialog, "OKCmd"), Qt::LeftButton);
    });
    Window->ShowConfigWindow();
  }
};

TEST_F(TimeScanOptions, ChangeTheHomeViewAndForgetWhatIsNotSearchedAnyMore) {
  Open(0, 20);
  Measure("enzyme");
  Window->FindPeak();
  const auto valleys = Window->Found().ValleyIndex;
  Options([](QWidget& dialog) {
    Find<QLineEdit>(dialog, "EndTimeText")->setText(QStringLiteral("40"));
    Find<QAbstractButton>(dialog, "CheckPeak")->click();
    Find<QAbstractButton>(dialog, "CheckDataTable")->click();
  });
  EXPECT_EQ(Seen().X, (AxisRange{0, 40}));
  EXPECT_TRUE(Window->Found().PeakIndex.empty());
  EXPECT_EQ(Window->Found().ValleyIndex, valleys);
  EXPECT_EQ(Window->DataTable(), nullptr);
  EXPECT_EQ(Window->Document().DataCount(), 21);
}

TEST_F(TimeScanOptions, AnotherWavelengthIsThatOfTheNextTest) {
  Open();
  Measure();
  Options([](QWidget& dialog) { Find<QLineEdit>(dialog, "WLText")->setText(QStringLiteral("600")); });
  EXPECT_EQ(Curve->View().Caption, QStringLiteral("WaveLength = 546.0 nm")) << "where they were measured";
  EXPECT_THAT(Display.Remark, testing::HasSubstr("the next test goes to 600.0 nm"));
  EXPECT_FALSE(Window->Test().BlankHolds());
}

}  // namespace
}  // namespace spectrane::testing_windows
