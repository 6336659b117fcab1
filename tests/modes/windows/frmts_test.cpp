#include <QClipboard>
#include <QFile>
#include <QLineEdit>

#include "app/ground/commands.h"
#include "modes/windows/frmtsfixture.h"

namespace spectrane::testing_windows {
namespace {

using testing::HasSubstr;

class TimeScan : public TimeScanWindow {
 protected:
  /// Draws a rectangle on the curve between two of its values.
  void Draw(double left, double right, double bottom, double top) {
    const CurveGeometry places = Curve->Geometry();
    const auto at = [&](double x, double y) {
      return (QPointF(places.XAt(x), places.YAt(y)) / 15.0).toPoint();
    };
    QTest::mousePress(Curve, Qt::LeftButton, {}, at(left, top));
    QTest::mouseMove(Curve, at(right, bottom));
    QTest::mouseRelease(Curve, Qt::LeftButton, {}, at(right, bottom));
  }
};

TEST_F(TimeScan, BeginsWithItsSettingsAndWritesThoseThatAreMissing) {
  Show();
  EXPECT_EQ(Window->CheckFileType(), 2);
  EXPECT_EQ(Window->Document().Option().WorkWL, 546);
  EXPECT_EQ(Window->Document().Interval(), 200);
  EXPECT_EQ(Window->Document().PointTotal(), 5001);
  EXPECT_EQ(Seen(), (CurveScale{{0, 1000}, {0, 3}}));
  const std::pair<const char*, const char*> stored[] = {{"Work WaveLength", "546"},
                                                        {"Start Second", "0"},
                                                        {"End Second", "1000"},
                                                        {"Interval Second", "1"},
                                                        {"Display Mode", "1"},
                                                        {"Abs Bottom", "0"},
                                                        {"Abs Top", "3"},
                                                        {"Trans Bottom", "0"},
                                                        {"Trans Top", "100"},
                                                        {"Peak Height", "0.001"},
                                                        {"Scale Color", "16711680"},
                                                        {"Curve Color", "255"},
                                                        {"Mark Color", "8388736"},
                                                        {"Peak Color", "8388863"},
                                                        {"Valley Color", "32768"},
                                                        {"Peak Enable", "True"},
                                                        {"Valley Enable", "True"},
                                                        {"Peak Detail Enable", "False"},
                                                        {"Valley Detail Enable", "False"},
                                                        {"Grid Enable", "True"},
                                                        {"Print Curve", "True"},
                                                        {"Print Peak Valley", "True"},
                                                        {"Print Data List", "False"}};
  for (const auto& [key, value] : stored) EXPECT_EQ(StoredHere(key), value) << key;
  EXPECT_EQ(Window->Document().Option().FullEnergy, 30000) << "the placeholders of a blank";
}

TEST_F(TimeScan, ShowsFrameTitlesAndTables) {
  Open();
  EXPECT_EQ(Curve->View().X.Title, QStringLiteral("Second.(s)"));
  EXPECT_EQ(Curve->View().Y.Title, QStringLiteral("Absorbancy (Abs)"));
  EXPECT_TRUE(Curve->View().Caption.startsWith(QStringLiteral("WaveLength = 546.0 nm")));
  EXPECT_EQ(Curve->View().Margins.Top, 500);
  EXPECT_EQ(Window->DataTable()->windowTitle(), Words(973));
  QStringList titles;
  for (int i = 0; i < Records().columnCount(); ++i)
    titles.append(Records().headerData(i, Qt::Horizontal, Qt::DisplayRole).toString());
  EXPECT_EQ(titles.join(u'|').toStdString(),
            "No.|Time(s)|Absorbance(Abs)|Transmittance(%T)|Energy|Energy(100%T)|Energy(0%T)|Gain");
  ExpectNamesEverywhere(*Window);
}

TEST_F(TimeScan, AnEmptyWindowAsksForTheBlankUntilOneHolds) {
  const auto asksForTheBlank = [this] { return Curve->View().Caption.contains(QStringLiteral("Set Blank")); };
  const auto asksForTheStart = [this] {
    return Curve->View().Caption.contains(QStringLiteral("Start Test"));
  };
  Open();
  ConnectNow();
  Link.State.CurrentWavelength = 546;
  EXPECT_TRUE(asksForTheBlank());
  ASSERT_EQ(Instrument.Faults().Add("rezero", "1", "bad-number", {}), std::nullopt);
  Window->mmuOperationRezero();
  EXPECT_FALSE(Window->Test().BlankHolds());
  EXPECT_TRUE(asksForTheBlank()) << "a blank that failed is none";
  Blank();
  EXPECT_FALSE(asksForTheBlank());
  EXPECT_TRUE(asksForTheStart());
  // Somebody else sets another blank, and the person comes back here.
  ++Link.State.RezeroCount;
  QLineEdit elsewhere;
  elsewhere.show();
  elsewhere.activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&elsewhere));
  Present(*Window);
  EXPECT_TRUE(asksForTheBlank());
  // Points need no hint, and a test that runs none either.
  Measure();
  EXPECT_FALSE(asksForTheBlank());
  EXPECT_FALSE(asksForTheStart());
}

TEST_F(TimeScan, ATestFillsCurveAndTableAndAsksToSave) {
  Open(2, 5);
  Measure();
  ASSERT_EQ(Window->Document().DataCount(), 4);
  EXPECT_EQ(Records().rowCount(), 4);
  const TSOption& option = Window->Document().Option();
  const TSRecord& last = Window->Document().Point(3);
  EXPECT_EQ(Row(Records(), 3).toStdString(),
            "4|5.0 s|" + Format(Window->Document().PointAbs(3), "0.000") + "|" +
                Format(Window->Document().PointTrans(3), "0.0") + "|" + std::to_string(last.Energy) + "|" +
                std::to_string(option.FullEnergy) + "|" + std::to_string(option.DarkEnergy) + "|" +
                std::to_string(option.GainNo));
  ASSERT_EQ(Curve->View().Lines[0].Count(), 4u);
  EXPECT_EQ(Curve->View().Lines[0].Y[3], Window->Document().PointAbs(3));
  EXPECT_TRUE(Window->isWindowModified());
  EXPECT_FALSE(Window->Test().TestRunning);
  EXPECT_EQ(Main.RunDepth, 0);
  EXPECT_THAT(Display.Remark, HasSubstr("4 points. By the schedule they took 3.0 s, by the clock 3."));
}

TEST_F(TimeScan, TheCurveGrowsPointByPointToThePictureOfAWholeOne) {
  Open();
  Blank();
  Insert("enzyme");
  std::vector<std::size_t> counts;
  Loop.OnYield = [this, &counts] {
    const std::size_t count = Curve->View().Lines[0].Count();
    if (counts.empty() || counts.back() != count) counts.push_back(count);
    EXPECT_EQ(Records().rowCount(), static_cast<int>(count));
  };
  Boxes.ExpectYesNo(Words(926), Answer::No);
  Window->mmuStartTest();
  Loop.OnYield = {};
  EXPECT_EQ(counts, (std::vector<std::size_t>{0, 1, 2, 3, 4, 5, 6}));
  const QImage grown = Curve->Image();
  const QImage seen = Curve->grab().toImage();
  Window->FormatsChanged();
  EXPECT_EQ(Curve->grab().toImage(), seen) << "what was drawn bit by bit is what is drawn at once";
  EXPECT_EQ(Curve->Image(), grown);
}

TEST_F(TimeScan, TheEndIsSavedOnAYes) {
  Open();
  Blank();
  Boxes.ExpectYesNo(Words(926), Answer::Yes);
  Boxes.ExpectSaveName(Words(980), PathOf("run"));
  Window->mmuStartTest();
  EXPECT_TRUE(QFile::exists(PathOf("run.tis")));
  EXPECT_FALSE(Window->isWindowModified());
  EXPECT_EQ(Window->Caption(), QStringLiteral("run.tis"));
  EXPECT_EQ(StoredHere("File Path"), Folder.Path("run.tis"));
  EXPECT_EQ(Main.Files, QStringList(PathOf("run.tis")));
  FrmTS other(Main);
  ASSERT_TRUE(other.mmuOpenFile(PathOf("run.tis")));
  ASSERT_EQ(other.Document().DataCount(), 6);
  for (int i = 0; i < 6; ++i) EXPECT_EQ(other.Document().Point(i), Window->Document().Point(i));
}

TEST_F(TimeScan, ANameForTheFileIsOfferedAndKept) {
  Settings.PutSetting(kTimeScanSection, "File Path", Folder.Path("old.tis"));
  Open();
  Window->SetCaption(QStringLiteral("Kinetics 7"));
  Measure();
  Boxes.ExpectSaveName(Words(980), {});
  EXPECT_FALSE(Window->mmuSaveFile());
  EXPECT_EQ(Boxes.BeganWith, PathOf("Kinetics 7.tis"));
  EXPECT_EQ(StoredHere("File Path"), Folder.Path("Kinetics 7.tis"));
}

TEST_F(TimeScan, ARunningTestIsStoppedOnAYesAndLosesThePointReadLast) {
  Open();
  Blank();
  WithPoints(3, [this] {
    EXPECT_TRUE(Window->Offers(kStopTest));
    EXPECT_FALSE(Window->Offers(kStartTest));
    EXPECT_FALSE(Window->Offers(kSave));
    EXPECT_TRUE(Window->Offers(kZoomIn));
    Boxes.ExpectYesNo(Words(1211), Answer::Yes);
    Window->mmuStopTest();
  });
  Window->mmuStartTest();
  EXPECT_EQ(Window->Document().DataCount(), 2);
  EXPECT_EQ(Records().rowCount(), 3) << "it stays in sight";
  EXPECT_EQ(Row(Records(), 2).section(u'|', 0, 1), QStringLiteral("3|2.0 s"));
  EXPECT_EQ(Curve->View().Lines[0].Count(), 3u);
  EXPECT_TRUE(Window->isWindowModified());
  EXPECT_FALSE(Window->Offers(kStopTest));
  EXPECT_TRUE(Display.TimerOn);
  Window->FindPeak();
  EXPECT_EQ(Records().rowCount(), 2) << "a search takes the points that there are";
}

TEST_F(TimeScan, ANoLetsTheTestRunAndSaysHowLongTheQuestionHeldIt) {
  Open();
  Blank();
  WithPoints(2, [this] {
    Boxes.ExpectYesNo(Words(1211), Answer::No, [this] { Time.Advance(4200); });
    Window->mmuStopTest();
    EXPECT_THAT(Display.Remark, HasSubstr("4.2 s"));
    Boxes.ExpectYesNo(Words(926), Answer::No);
  });
  Window->mmuStartTest();
  EXPECT_EQ(Window->Document().DataCount(), 6);
}

TEST_F(TimeScan, StopDoesNothingWithoutATest) {
  Open();
  EXPECT_FALSE(Window->Offers(kStopTest));
  Window->mmuStopTest();
  Measure();
  Window->mmuStopTest();
}

TEST_F(TimeScan, WaitsAreCountedDown) {
  Settings.PutSetting(kTimeScanSection, "Interval Second", "5");
  Settings.PutSetting(kTimeScanSection, "Start Second", "100");
  Settings.PutSetting(kTimeScanSection, "End Second", "105");
  Show();
  Blank();
  QStringList told;
  Loop.OnYield = [this, &told] {
    const QString remark = QString::fromStdString(Display.Remark);
    if (told.isEmpty() || told.last() != remark) told.append(remark);
  };
  const std::int64_t from = Time.NowMs();
  Boxes.ExpectYesNo(Words(926), Answer::No);
  Window->mmuStartTest();
  EXPECT_GE(Time.NowMs() - from, 110'000);
  EXPECT_TRUE(told.contains(QStringLiteral("First reading in 100 s")));
  EXPECT_TRUE(told.contains(QStringLiteral("First reading in 1 s")));
  EXPECT_TRUE(told.contains(QStringLiteral("Point 1 of 2. Next reading in 5 s")));
  EXPECT_EQ(Window->Document().Point(0).Time, 100);
}

TEST_F(TimeScan, AStartWithoutABlankCountsAsRunningUntilItIsStopped) {
  Open();
  ConnectNow();
  Window->mmuOperationRezero();
  Link.State.GainIndex = 5;  // somebody else has set another blank
  Boxes.ExpectMessage(971);
  Window->mmuStartTest();
  EXPECT_TRUE(Window->Test().TestRunning);
  EXPECT_FALSE(Window->RunsNow());
  EXPECT_FALSE(Display.TimerOn);
  EXPECT_TRUE(Window->Offers(kStopTest));
  Boxes.ExpectYesNo(Words(1211), Answer::No);
  EXPECT_FALSE(Window->QueryClose(false));
  Boxes.ExpectYesNo(Words(1211), Answer::Yes);
  Window->mmuStopTest();
  EXPECT_FALSE(Window->Test().TestRunning);
  EXPECT_TRUE(Display.TimerOn);
  EXPECT_TRUE(Window->QueryClose(false));
}

TEST_F(TimeScan, AWindowThatGoesAfterAStartWithoutABlankLetsTheLiveReadingRun) {
  Open();
  ConnectNow();
  Link.State.CurrentWavelength = 546;
  Boxes.ExpectMessage(971);
  Window->mmuStartTest();
  EXPECT_FALSE(Display.TimerOn);
  delete Window.data();
  EXPECT_TRUE(Display.TimerOn);
}

TEST_F(TimeScan, PeaksAreSearchedInTheAbsorbanceAndListed) {
  Open(0, 20);
  TSOption option = Window->Document().Option();
  option.DisplayMode = 2;
  option.StartSecond = 0;
  option.EndSecond = 20;
  option.FullEnergy = 10100;
  option.DarkEnergy = 100;
  const int percents[] = {50, 40, 20, 40, 50, 80, 50, 40, 40};
  SaveDataFile(TSModule(), Folder.Path("a.tis"), option, 9, [&](std::int32_t i) {
    return TSRecord{100 + 100 * percents[i], static_cast<double>(i)};
  });
  ASSERT_TRUE(Window->mmuOpenFile(PathOf("a.tis")));
  EXPECT_EQ(Curve->View().Y.Title, QStringLiteral("Transmission (%T)"));
  Window->FindPeak();
  EXPECT_EQ(Window->Found().PeakIndex, (std::vector<std::int32_t>{2}));
  EXPECT_EQ(Window->Found().ValleyIndex, (std::vector<std::int32_t>{5}));
  EXPECT_EQ(Window->DataTable()->SelectedTab(), 1);
  EXPECT_EQ(Peaks().rowCount(), 2);
  EXPECT_TRUE(Row(Peaks(), 0).startsWith(QStringLiteral("1|2.0 s|0.699|20.0|2100|10100|100|")));
  ASSERT_EQ(Curve->View().Marks.size(), 2u);
  EXPECT_EQ(Curve->View().Marks[0].Y, 20) << "the mark stands on the curve that is shown";
}

TEST_F(TimeScan, ZoomOutDrawsARectangleAndASecondTimeTakesThatBack) {
  Open(0, 100);
  Window->mmuZoomOut();
  EXPECT_TRUE(Curve->ZoomSelecting());
  Window->mmuZoomOut();
  EXPECT_FALSE(Curve->ZoomSelecting());
  Window->mmuZoomOut();
  QTest::keyClick(Curve, Qt::Key_Escape);
  EXPECT_FALSE(Curve->ZoomSelecting());
  Window->mmuZoomOut();
  Draw(20.2, 60.4, 0.5, 1.25);
  EXPECT_FALSE(Curve->ZoomSelecting());
  const CurveScale seen = Seen();
  EXPECT_NEAR(seen.X.Low, 20, 1);
  EXPECT_EQ(seen.X.Low, std::round(seen.X.Low)) << "whole seconds";
  EXPECT_EQ(seen.X.High, std::round(seen.X.High));
  EXPECT_NEAR(seen.Y.Low, 0.5, 0.02);
  EXPECT_NEAR(seen.Y.High, 1.25, 0.02);
  Window->mmuZoomWindow();
  EXPECT_EQ(Seen(), (CurveScale{{0, 100}, {0, 3}}));
}

TEST_F(TimeScan, ARectangleOfFewPixelsOrWithinASecondIsNone) {
  Open(0, 100);
  const CurveScale home = Seen();
  const auto drag = [this](const QSize& pixels) {
    const QPoint from(300, 300);
    const QPoint to = from + QPoint(pixels.width(), pixels.height());
    Window->mmuZoomOut();
    QTest::mousePress(Curve, Qt::LeftButton, {}, from);
    QTest::mouseMove(Curve, to);
    QTest::mouseRelease(Curve, Qt::LeftButton, {}, to);
  };
  drag({200, 4});
  EXPECT_EQ(Seen(), home);
  drag({4, 200});
  EXPECT_EQ(Seen(), home);
  drag({200, 6});
  EXPECT_NE(Seen(), home);
  Window->mmuZoomWindow();
  Window->mmuZoomOut();
  Draw(10, 13, 0.5, 1.5);
  const CurveScale narrow = Seen();
  EXPECT_LE(narrow.X.Length(), 4);
  Window->mmuZoomOut();
  Draw(11.1, 11.4, 0.8, 1.2);
  EXPECT_EQ(Seen(), narrow);
  EXPECT_THAT(Display.Remark, HasSubstr("whole seconds"));
}

TEST_F(TimeScan, ZoomInWidensToRoundStepsAndSaysWhereThatOverflows) {
  Open(0, 100);
  Window->mmuZoomOut();
  Draw(20, 60, 0.5, 1.25);
  Window->mmuZoomIn();
  EXPECT_EQ(Seen().X, (AxisRange{12, 66}));
  EXPECT_GT(Seen().Y.High, 1.25);
  EXPECT_LT(Seen().Y.Low, 0.5);
  delete Window.data();
  Open(0, 40000);
  const CurveScale home = Seen();
  Window->mmuZoomIn();
  EXPECT_EQ(Seen(), home);
  EXPECT_THAT(Display.Remark, HasSubstr("Overflow"));
}

TEST_F(TimeScan, AZoomedViewIsNotSaved) {
  Open();
  Measure();
  Window->mmuZoomOut();
  Draw(1, 3, 0.1, 0.9);
  ASSERT_NE(Seen(), (CurveScale{{0, 5}, {0, 3}}));
  Boxes.ExpectSaveName(Words(980), PathOf("z.tis"));
  ASSERT_TRUE(Window->mmuSaveFile());
  ASSERT_TRUE(Window->mmuOpenFile(PathOf("z.tis")));
  EXPECT_EQ(Seen(), (CurveScale{{0, 5}, {0, 3}}));
}

TEST_F(TimeScan, PicturesGoToTheClipboardAndIntoAFile) {
  Open();
  Measure();
  Window->CopyPicture();
  EXPECT_EQ(QGuiApplication::clipboard()->image().size(), Curve->size());
  Boxes.ExpectSaveName(Words(934), PathOf("p.bmp"));
  Window->mmuFileOutputBMP();
  EXPECT_EQ(QImage(PathOf("p.bmp")).size(), Curve->size());
}

}  // namespace
}  // namespace spectrane::testing_windows
