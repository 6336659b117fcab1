#include "spectrum/windows/processwindow.h"

#include <QClipboard>
#include <QTabWidget>

#include <cmath>

#include "app/ground/commands.h"
#include "base/notfinite.h"
#include "spectrum/windows/frmdev.h"
#include "spectrum/windows/frmsmooth.h"
#include "spectrum/windows/frmwlsver2.h"
#include "spectrum/windows/processfixture.h"

namespace spectrane::testing_windows {
namespace {

using testing::DoubleNear;
using testing::Each;
using testing::Pointwise;

/// 0, 1, 0, 1, 0 Abs from 500 to 504 nm.
const std::vector<int> kTeeth = {100, 10, 100, 10, 100};

class Processing : public ProcessFixture {};

TEST_F(Processing, SmoothsIntoAWindowOfItsOwn) {
  OpenPoints(kTeeth);
  Window->mmuSpectrumSmooth();
  ASSERT_EQ(Main.Children.size(), 1U);
  auto& smoothed = Last<FrmSmooth>();
  EXPECT_EQ(smoothed.objectName(), QStringLiteral("FrmSmooth"));
  EXPECT_EQ(smoothed.Caption(), QStringLiteral("Spectrum Smooth-Wavelength Scan"));
  EXPECT_EQ(smoothed.SourceFileName(), PathOf("a.wls"));
  EXPECT_EQ(smoothed.SourcePoints().Size(), 5U);
  EXPECT_THAT(AbsOf(smoothed),
              Pointwise(DoubleNear(1e-12), {12.0 / 26, 14.0 / 38, 24.0 / 35, 14.0 / 38, 12.0 / 26}));
  EXPECT_EQ(smoothed.CheckFileType(), 3);
  EXPECT_TRUE(smoothed.OpenFileName().isEmpty());
  EXPECT_FALSE(smoothed.isWindowModified()) << "what can be made again is not unsaved";
  EXPECT_TRUE(smoothed.QueryClose(false));
  EXPECT_EQ(Window->GetRecordNo(), 5) << "the source is as it was";
}

TEST_F(Processing, ShowsSourceAndResultInTheirColoursAndTables) {
  OpenPoints(kTeeth);
  Window->mmuSpectrumSmooth();
  auto& smoothed = Last<FrmSmooth>();
  const CurveView& view = ViewOf(smoothed);
  ASSERT_EQ(view.Lines.size(), 2U);
  EXPECT_EQ(view.Lines[0].Colour, QColor(255, 0, 0));
  EXPECT_EQ(view.Lines[1].Colour, QColor(255, 128, 0));
  EXPECT_EQ(view.Lines[0].Count(), 5U);
  EXPECT_EQ(view.Lines[1].Count(), 5U);
  EXPECT_TRUE(view.Room.Either);
  EXPECT_EQ(view.Scale, (CurveScale{{490.5, 520}, {10, 120}})) << "scales, range and mode of the source";
  EXPECT_EQ(view.Lines[0].Y[1], 10) << "in %T the source is drawn as it is";
  EXPECT_NEAR(view.Lines[1].Y[2], 100 * std::pow(10, -24.0 / 35), 1e-9);

  ASSERT_EQ(smoothed.DataTable()->TabCount(), 3);
  EXPECT_EQ(smoothed.DataTable()->SelectedTab(), 1) << "the result";
  EXPECT_EQ(smoothed.DataTable()->windowTitle(),
            QStringLiteral("Result List-Spectrum Smooth-Wavelength Scan"));
  EXPECT_EQ(TabText(smoothed, 0), QStringLiteral("Record List"));
  EXPECT_EQ(TabText(smoothed, 1), QStringLiteral("Smooth Data"));
  EXPECT_EQ(TabText(smoothed, 2), QStringLiteral("Peak List"));
  EXPECT_EQ(RowText(Grid(smoothed, 0), 1), QStringLiteral("2|501.0|1.000|10.0"));
  EXPECT_EQ(RowText(Grid(smoothed, 1), 2), QStringLiteral("3|502.0|0.686|20.6"));
  for (int tab = 0; tab < 3; ++tab) {
    QStringList titles;
    for (int column = 0; column < Grid(smoothed, tab).columnCount(); ++column)
      titles.append(Grid(smoothed, tab).headerData(column, Qt::Horizontal, Qt::DisplayRole).toString());
    EXPECT_EQ(titles.join(u'|'), QStringLiteral("No.|WL.(nm)|Absorbance(Abs)|Transmittance(%T)"));
  }
}

TEST_F(Processing, TheDerivativeHasItsWords) {
  OpenPoints({100, 10, 1});
  Window->mmuSpectrumDev();
  auto& derived = Last<FrmDev>();
  EXPECT_EQ(derived.objectName(), QStringLiteral("FrmDev"));
  EXPECT_EQ(derived.Caption(), QStringLiteral("Spectrum Derivative-Wavelength Scan"));
  EXPECT_EQ(TabText(derived, 1), QStringLiteral("Derivative Data"));
  EXPECT_THAT(AbsOf(derived), Pointwise(DoubleNear(1e-12), {1.0, 1.0, 1.0}));
  EXPECT_EQ(RowText(Grid(derived, 1), 2), QStringLiteral("3|502.0|1.000|10.0"));
}

TEST_F(Processing, ChainsGoOnFromTheResult) {
  OpenPoints({100, 10, 1, 10, 100, 10});  // 0 1 2 1 0 1
  Window->mmuSpectrumDev();
  Last<FrmDev>().mmuSpectrumDev();
  Last<FrmDev>().mmuSpectrumSmooth();
  Last<FrmSmooth>().mmuSpectrumSmooth();
  ASSERT_EQ(Main.Children.size(), 4U);
  const auto& first = dynamic_cast<FrmDev&>(*Main.Children[0]);
  const auto& second = dynamic_cast<FrmDev&>(*Main.Children[1]);
  EXPECT_THAT(AbsOf(first), Pointwise(DoubleNear(1e-12), {1.0, 1.0, -1.0, -1.0, 1.0, 1.0}));
  EXPECT_THAT(AbsOf(second), Pointwise(DoubleNear(1e-12), {0.0, -2.0, 0.0, 2.0, 0.0, 0.0}));
  EXPECT_EQ(second.SourcePoints().Abs, AbsOf(first));
  EXPECT_EQ(second.SourceFileName(), PathOf("a.wls")) << "the name is handed on";
  EXPECT_EQ(Last<FrmSmooth>().Caption(),
            QStringLiteral("Spectrum Smooth-Spectrum Smooth-Spectrum Derivative-Spectrum "
                           "Derivative-Wavelength Scan"));
  // The windows own their copies.
  Main.Children.erase(Main.Children.begin(), Main.Children.begin() + 3);
  delete Window.data();
  EXPECT_EQ(Grid(Last<FrmSmooth>(), 0).rowCount(), 6);
  Last<FrmSmooth>().grab();
}

TEST_F(Processing, AConstantStaysHoweverOften) {
  OpenPoints(std::vector<int>(30, 50));
  Window->mmuSpectrumSmooth();
  for (int i = 0; i < 5; ++i) Last<FrmSmooth>().mmuSpectrumSmooth();
  EXPECT_THAT(AbsOf(Last<FrmSmooth>()), Each(DoubleNear(std::log10(2.0), 1e-12)));
}

TEST_F(Processing, SmoothingKeepsTheViewAndTheDerivativeGoesHome) {
  OpenPoints(kTeeth);
  Window->mmuZoomIn();
  const CurveScale zoomed = Seen();
  ASSERT_NE(zoomed, (CurveScale{{490.5, 520}, {10, 120}}));
  Window->mmuSpectrumSmooth();
  EXPECT_EQ(ViewOf(Last<FrmSmooth>()).Scale, zoomed);
  Last<FrmSmooth>().mmuZoomWindow();
  EXPECT_EQ(ViewOf(Last<FrmSmooth>()).Scale, (CurveScale{{490.5, 520}, {10, 120}}));
  Window->mmuSpectrumDev();
  EXPECT_EQ(ViewOf(Last<FrmDev>()).Scale, (CurveScale{{490.5, 520}, {10, 120}}));
}

TEST_F(Processing, AnEnergyViewIsHandedOnAsAbsorbance) {
  WLSOption option = OtherOption();
  option.DisplayMode = 3;
  OpenPoints(kTeeth, option);
  Window->mmuSpectrumSmooth();
  EXPECT_EQ(ViewOf(Last<FrmSmooth>()).Y.Kind, AxisKind::Abs);
  EXPECT_EQ(Last<FrmSmooth>().Document().Option().DisplayMode, 1);
}

TEST_F(Processing, ColoursAndChoicesComeFromBothSides) {
  Settings.PutSetting(kScanSection, "Curve Color", "11");
  Settings.PutSetting(kScanSection, "Peak Color", "12");
  Settings.PutSetting(kSmoothSection, "Result Color", "13");
  Settings.PutSetting(kSmoothSection, "Peak Enable", "False");
  OpenPoints(kTeeth);
  Window->mmuSpectrumSmooth();
  const ProcessSettings settings = Last<FrmSmooth>().AllSettings();
  EXPECT_EQ(settings.SourceColor[0], 11) << "of the source";
  EXPECT_EQ(settings.Shown.PeakColor, 12) << "of the source";
  EXPECT_EQ(settings.Shown.CurveColor, 13) << "its own";
  EXPECT_FALSE(settings.Shown.PeakEnable) << "its own";
  Last<FrmSmooth>().mmuSpectrumDev();
  EXPECT_EQ(Last<FrmDev>().AllSettings().Shown.CurveColor, 13) << "results keep their colour along a chain";
}

TEST_F(Processing, TheSearchIsThatOfTheResult) {
  OpenPoints({100, 50, 10, 50, 100, 50, 10, 50, 100});
  Window->mmuSpectrumDev();
  auto& derived = Last<FrmDev>();
  derived.FindPeak();
  EXPECT_EQ(derived.DataTable()->SelectedTab(), 2);
  EXPECT_FALSE(ViewOf(derived).Marks.empty());
  EXPECT_EQ(static_cast<std::size_t>(Grid(derived, 2).rowCount()), ViewOf(derived).Marks.size());
  for (const PointMark& mark : ViewOf(derived).Marks)
    EXPECT_TRUE(mark.Text.contains(QStringLiteral("nm-")) || mark.Valley);
  InDialog("FrmPeakHeight", [](QWidget& dialog) {
    EXPECT_EQ(Find<QLineEdit>(dialog, "PeakHeightText")->text(), QStringLiteral("0.010"));
    TypeInto(dialog, "PeakHeightText", "0.25");
    QTest::keyClick(&dialog, Qt::Key_Return);
  });
  derived.mmuSetPeakHeight();
  EXPECT_EQ(Key(kDevSection, "Peak Height"), "0.25");
  EXPECT_EQ(Key(kScanSection, "Peak Height"), "0.001");
}

TEST_F(Processing, PointsOfBothCurvesAreReadOut) {
  OpenPoints(kTeeth);
  Window->mmuSpectrumSmooth();
  auto* const curve = Find<PicCurve>(Last<FrmSmooth>(), "PicCurve");
  emit curve->PointedAt(0, 1);
  EXPECT_TRUE(Main.Readout.contains(QStringLiteral("1.000 Abs"))) << Main.Readout.toStdString();
  emit curve->PointedAt(1, 1);
  EXPECT_TRUE(Main.Readout.contains(QStringLiteral("0.368 Abs"))) << Main.Readout.toStdString();
}

TEST_F(Processing, OffersWhatItCanDo) {
  OpenPoints(kTeeth);
  EXPECT_TRUE(Window->Offers(kSpectrumSmooth));
  EXPECT_TRUE(Window->Offers(kSpectrumDerivative));
  Window->mmuSpectrumSmooth();
  for (const int command :
       {kSave, kSaveAs, kSearchPeak, kPeakValueSetup, kSpectrumSmooth, kSpectrumDerivative, kTestOption,
        kOutputText, kOutputWorkbook, kOutputPicture, kCopyPicture, kZoomIn})
    EXPECT_TRUE(Last<FrmSmooth>().Offers(command)) << command;
  for (const int command : {kPrint, kPrintPreview, kStartTest, kStopTest, kDeleteRecord, kMaxMinAverage})
    EXPECT_FALSE(Last<FrmSmooth>().Offers(command)) << command;
}

struct NoResultRow {
  const char* Name;
  std::vector<double> Wavelengths;
  bool Derive;
  const char* Words;
};

class NoResults : public ProcessFixture, public testing::WithParamInterface<NoResultRow> {};

INSTANTIATE_TEST_SUITE_P(
    Sources, NoResults,
    testing::Values(NoResultRow{"SmoothThree", {500, 501, 502}, false, "No result: too few points."},
                    NoResultRow{"SmoothOne", {500}, false, "No result: too few points."},
                    NoResultRow{"DeriveOne", {500}, true, "No result: too few points."},
                    NoResultRow{"SmoothNone", {}, false, "No result: no points."},
                    NoResultRow{"DeriveNone", {}, true, "No result: no points."},
                    NoResultRow{"DeriveEqualWavelengths",
                                {500, 501, 501, 502},
                                true,
                                "No result: two neighbouring points with the same wavelength."}),
    NameOfRow<NoResultRow>);

TEST_P(NoResults, AreExplainedAndShowTheSource) {
  const NoResultRow& row = GetParam();
  FrmWLSVer2 source(Main);
  std::int32_t count = 0;
  for (const double wavelength : row.Wavelengths) source.SetWLSRecord(count++, wavelength, 50, 0.3);
  source.SetWLSRecordNo(count);
  if (row.Derive) {
    source.mmuSpectrumDev();
  } else {
    source.mmuSpectrumSmooth();
  }
  auto& window = Last<ProcessWindow>();
  EXPECT_EQ(Display.Remark, row.Words);
  EXPECT_EQ(ViewOf(window).Caption, QString::fromUtf8(row.Words));
  EXPECT_EQ(window.GetRecordNo(), 0);
  EXPECT_EQ(Grid(window, 0).rowCount(), count);
  EXPECT_EQ(Grid(window, 1).rowCount(), 0);
  for (const int command : {kSave, kSaveAs, kSpectrumSmooth, kSpectrumDerivative})
    EXPECT_FALSE(window.Offers(command)) << command;
  window.FindPeak();
  window.mmuZoomIn();
  window.grab();
}

TEST_F(Processing, TakesEverySpectrumThatThereCanBe) {
  FrmWLSVer2 source(Main);
  source.SetWLSRecordNo(10001);
  for (std::int32_t i = 0; i < 10001; ++i)
    source.SetWLSRecord(i, 1100 - 0.09 * i, i == 7 ? kInfinity : 50, i == 7 ? kNaN : 0.3);
  source.mmuSpectrumSmooth();
  auto& smoothed = Last<FrmSmooth>();
  EXPECT_EQ(smoothed.GetRecordNo(), 10001);
  EXPECT_EQ(RowText(Grid(smoothed, 0), 7), QStringLiteral("8|1099.4|-|-")) << "no numbers, no figures";
  EXPECT_EQ(RowText(Grid(smoothed, 1), 5), QStringLiteral("6|1099.6|-|-"));
  EXPECT_EQ(RowText(Grid(smoothed, 1), 10000), QStringLiteral("10001|200.0|0.300|50.1"));
  EXPECT_FALSE(smoothed.SetWLSRecord(10001, 1, 1, 1));
  EXPECT_FALSE(smoothed.SetWLSRecord(-1, 1, 1, 1));
  EXPECT_FALSE(smoothed.SetWLSRecordNo(10002));
  EXPECT_EQ(smoothed.SourcePoints().Size(), 10001U);
  smoothed.grab();
}

TEST_F(Processing, AHugeSlopeKeepsItsInfiniteTransmittance) {
  FrmWLSVer2 source(Main);
  source.SetWLSRecord(0, 500, 50, 0);
  source.SetWLSRecord(1, 500.001, 50, -0.5);
  source.mmuSpectrumDev();
  EXPECT_TRUE(std::isinf(Last<FrmDev>().Document().Trans()[0]));
  EXPECT_EQ(RowText(Grid(Last<FrmDev>(), 1), 0), QStringLiteral("1|500.0|-500.000|-"));
}

TEST_F(Processing, SavesAProcessedFileThatItsWindowOpensAndHandsOn) {
  OpenPoints(kTeeth);
  Window->mmuSpectrumSmooth();
  auto& smoothed = Last<FrmSmooth>();
  smoothed.mmuZoomIn();
  Boxes.ExpectSaveName(Words(928), PathOf("smoothed"));
  ASSERT_TRUE(smoothed.mmuSaveFile());
  EXPECT_EQ(Boxes.BeganWith, PathOf("Spectrum Smooth-Wavelength Scan.wls"));
  EXPECT_EQ(Key(kScanSection, "File Path"), PathOf("Spectrum Smooth-Wavelength Scan.wls").toStdString());
  EXPECT_EQ(Key(kSmoothSection, "File Path"), PathOf("smoothed.wls").toStdString());
  EXPECT_EQ(smoothed.Caption(), QStringLiteral("smoothed.wls"));
  EXPECT_EQ(smoothed.DataTable()->windowTitle(), QStringLiteral("Result List-smoothed.wls"));
  WLSOption option;
  std::vector<WLS2Record> points;
  ASSERT_FALSE(LoadDataFile(WLS2Module(), Folder.Path("smoothed.wls"), option, points));
  EXPECT_EQ(option, (WLSOption{490.5, 520, 2.5, -0.25, 120, 10, 0, 0, 0, 0, 0, 0, 5, 2}))
      << "the home view, and nothing of energies";
  ASSERT_EQ(points.size(), 5U);
  EXPECT_EQ(points[2], (WLS2Record{502, smoothed.Document().Trans()[2], smoothed.Document().Abs()[2]}));
  // Again under the same name, without a question.
  ASSERT_TRUE(smoothed.mmuSaveFile());

  FrmWLSVer2 again(Main);
  ASSERT_TRUE(again.mmuOpenFile(PathOf("smoothed.wls")));
  EXPECT_EQ(AbsOf(again), AbsOf(smoothed));
  again.mmuSpectrumDev();
  EXPECT_EQ(Last<FrmDev>().SourcePoints().Abs, AbsOf(smoothed));
  EXPECT_EQ(Last<FrmDev>().SourceFileName(), PathOf("smoothed.wls"));
}

TEST_F(Processing, AProposedNameHasNothingThatNamesCannotHave) {
  OpenPoints(kTeeth);
  Window->SetCaption(QStringLiteral("a/b:c"));
  Window->mmuSpectrumSmooth();
  Boxes.ExpectSaveName(Words(928), {});
  EXPECT_FALSE(Last<FrmSmooth>().mmuSaveFile());
  EXPECT_EQ(Boxes.BeganWith, PathOf("Spectrum Smooth-a_b_c.wls"));
  // The spectrum windows look for a folder in that place.
  FrmWLSVer2 unnamed(Main);
  unnamed.SetWLSRecord(0, 500, 50, 0.3);
  Boxes.ExpectSaveName(Words(928), {});
  EXPECT_FALSE(unnamed.mmuSaveFile());
  EXPECT_EQ(Boxes.BeganWith, QString::fromStdString(Folder.Path()));
}

TEST_F(Processing, AFailedSaveIsToldAndLeavesNothing) {
  OpenPoints(kTeeth);
  Window->mmuSpectrumSmooth();
  Boxes.ExpectSaveName(Words(928), PathOf("none/smoothed.wls"));
  Boxes.ExpectWords(Words(1213));
  EXPECT_FALSE(Last<FrmSmooth>().mmuSaveFile());
  EXPECT_TRUE(Last<FrmSmooth>().OpenFileName().isEmpty());
}

TEST_F(Processing, ExportsTheResult) {
  OpenPoints(kTeeth);
  Window->mmuSpectrumSmooth();
  Boxes.ExpectSaveName(Words(921), PathOf("s.txt"));
  Last<FrmSmooth>().mmuFileOutputTXT();
  const std::string text = ReadBytes(Folder.Path("s.txt"));
  EXPECT_THAT(text, testing::HasSubstr("Peak/Valley Data Record"));
  EXPECT_THAT(text, testing::HasSubstr("3\t502.0\t0.686\t20.6\t0\t0\t0\n"));
  Boxes.ExpectSaveName(Words(935), PathOf("s.xls"));
  Last<FrmSmooth>().mmuFileOutputXLS();
  EXPECT_GT(ReadBytes(Folder.Path("s.xls")).size(), 4096U);
  Boxes.ExpectSaveName(Words(934), PathOf("s.bmp"));
  Last<FrmSmooth>().mmuFileOutputBMP();
  EXPECT_EQ(ReadBytes(Folder.Path("s.bmp")).substr(0, 2), "BM");
  Last<FrmSmooth>().CopyPicture();
  EXPECT_FALSE(QGuiApplication::clipboard()->image().isNull());
}

TEST_F(Processing, OpensNoFile) {
  OpenPoints(kTeeth);
  Window->mmuSpectrumSmooth();
  Boxes.ExpectWords(PathOf("a.wls") + Words(1214));
  EXPECT_FALSE(Last<FrmSmooth>().mmuOpenFile(PathOf("a.wls")));
  EXPECT_EQ(Last<FrmSmooth>().GetRecordNo(), 5);
}

TEST_F(Processing, FiguresFollowThePrecision) {
  OpenPoints(kTeeth);
  Window->mmuSpectrumSmooth();
  Link.Formats = DisplayFormats::AtStart(1);
  Last<FrmSmooth>().FormatsChanged();
  EXPECT_EQ(RowText(Grid(Last<FrmSmooth>(), 0), 1), QStringLiteral("2|501.0|1.0000|10.00"));
  EXPECT_EQ(RowText(Grid(Last<FrmSmooth>(), 1), 2), QStringLiteral("3|502.0|0.6857|20.62"));
}

}  // namespace
}  // namespace spectrane::testing_windows
