#include "spectrum/windows/frmcaculate.h"

#include <QTabWidget>

#include <cmath>

#include "app/ground/commandicon.h"
#include "app/ground/commands.h"
#include "output/workbook/workbooksupport.h"
#include "spectrum/windows/frmsmooth.h"
#include "spectrum/windows/processfixture.h"

namespace spectrane::testing_windows {
namespace {

using testing::DoubleNear;
using testing::HasSubstr;
using testing::Pointwise;

class Caculation : public ProcessFixture {
 protected:
  /// Names both files in the options, shows %T or absorbance, and confirms.
  void Combine(FrmCaculate& window, const QString& first, const QString& second, bool onTrans = false) {
    OptionsOf(window, "FrmCaculateConfig", [&](QWidget& dialog) {
      Find<QLineEdit>(dialog, "TextFileName0")->setText(first);
      Find<QLineEdit>(dialog, "TextFileName1")->setText(second);
      Click(dialog, onTrans ? "OptionTrans" : "OptionAbs");
      Click(dialog, "OKCmd");
    });
  }
};

struct CombinedRow {
  const char* Name;
  SpectrumOperation Operation;
  int Command;
  const char* Caption;
  /// Of 1 Abs, 10 %T and 2 Abs, 1 %T.
  double OnAbs;
  double OnTrans;
};

class Operations : public Caculation, public testing::WithParamInterface<CombinedRow> {};

INSTANTIATE_TEST_SUITE_P(
    All, Operations,
    testing::Values(CombinedRow{"Add", SpectrumOperation::Add, kSpectrumAdd, "Spectrum Add", 3, 11},
                    CombinedRow{"Subtract", SpectrumOperation::Subtract, kSpectrumSubtraction,
                                "Spectrum Subtraction", -1, 9},
                    CombinedRow{"Multiply", SpectrumOperation::Multiply, kSpectrumMultiplication,
                                "Spectrum Multiplication", 2, 10},
                    CombinedRow{"Divide", SpectrumOperation::Divide, kSpectrumDivision, "Spectrum Division",
                                0.5, 10}),
    NameOfRow<CombinedRow>);

TEST_P(Operations, RunInBothModesWithTheirCaptionAndIcon) {
  const CombinedRow& row = GetParam();
  EXPECT_EQ(OperationOfCommand(row.Command), row.Operation);
  FrmCaculate window(Main, OperationOfCommand(row.Command));
  EXPECT_EQ(window.Operation(), row.Operation);
  EXPECT_EQ(window.Caption(), QLatin1String(row.Caption));
  EXPECT_EQ(window.windowIcon().pixmap(32).toImage(), CommandIcon(row.Command).pixmap(32).toImage());
  const QString first = Measured("a.wls", {10, 10, 10});
  const QString second = Measured("b.wls", {1, 1, 1});
  Combine(window, first, second);
  EXPECT_THAT(AbsOf(window), Pointwise(DoubleNear(1e-12), {row.OnAbs, row.OnAbs, row.OnAbs}));
  EXPECT_NEAR(window.Document().Trans()[0], 100 * std::pow(10, -row.OnAbs), 1e-9);
  Combine(window, first, second, true);
  ASSERT_EQ(window.GetRecordNo(), 3);
  EXPECT_NEAR(window.Document().Trans()[2], row.OnTrans, 1e-12) << "another mode calculates anew";
  EXPECT_NEAR(window.Document().Abs()[2], -std::log10(row.OnTrans / 100), 1e-12);
}

TEST_F(Caculation, ShowsBothSourcesAndTheResult) {
  FrmCaculate window(Main, SpectrumOperation::Add);
  EXPECT_EQ(ViewOf(window).Caption,
            QStringLiteral("Two files are combined here: Operate, Option (F4) names them."));
  EXPECT_EQ(window.CheckFileType(), 3);
  Combine(window, Measured("a.wls", {10, 10, 10}), Measured("b.wls", {1, 1, 1, 1}));
  ASSERT_EQ(ViewOf(window).Lines.size(), 3U);
  EXPECT_EQ(ViewOf(window).Lines[0].Colour, QColor(255, 128, 128));
  EXPECT_EQ(ViewOf(window).Lines[1].Colour, QColor(255, 255, 128));
  EXPECT_EQ(ViewOf(window).Lines[2].Colour, QColor(255, 128, 0));
  ASSERT_EQ(window.DataTable()->TabCount(), 4);
  EXPECT_EQ(window.DataTable()->windowTitle(), QStringLiteral("Result List-Spectrum Add"));
  EXPECT_EQ(TabText(window, 0), QStringLiteral("Record List 1"));
  EXPECT_EQ(TabText(window, 1), QStringLiteral("Record List 2"));
  EXPECT_EQ(TabText(window, 2), QStringLiteral("Caculate Data"));
  EXPECT_EQ(TabText(window, 3), QStringLiteral("Peak List"));
  EXPECT_EQ(RowText(Grid(window, 0), 0), QStringLiteral("1|502.0|1.000|10.0")) << "highest first";
  EXPECT_EQ(RowText(Grid(window, 1), 0), QStringLiteral("1|503.0|2.000|1.0"));
  EXPECT_EQ(RowText(Grid(window, 2), 2), QStringLiteral("3|500.0|3.000|0.1"));
  window.FindPeak();
  EXPECT_EQ(window.DataTable()->SelectedTab(), 3);
}

TEST_F(Caculation, NamesAreKeptAndOfferedAgain) {
  const QString first = Measured("first file.wls", {10, 10});
  const QString second = Measured("b.wls", {1, 1});
  {
    FrmCaculate window(Main, SpectrumOperation::Add);
    Combine(window, QStringLiteral("  ") + first + u' ', second);
    EXPECT_EQ(window.SourceFileName(0), first) << "blanks around a name are no part of it";
    EXPECT_EQ(window.GetRecordNo(), 2);
  }
  EXPECT_EQ(Key(kCaculateSection, "File name 0"), first.toStdString());
  EXPECT_EQ(Key(kCaculateSection, "File name 1"), second.toStdString());
  FrmCaculate again(Main, SpectrumOperation::Divide);
  EXPECT_EQ(again.GetRecordNo(), 0) << "nothing is read before the options are confirmed";
  OptionsOf(again, "FrmCaculateConfig", [&](QWidget& dialog) {
    EXPECT_EQ(dialog.windowTitle(), QStringLiteral("Spectrum Caculate"));
    ExpectNamesEverywhere(dialog);
    EXPECT_EQ(Find<QLineEdit>(dialog, "TextFileName0")->text(), first);
    Click(dialog, "OKCmd");
  });
  EXPECT_THAT(AbsOf(again), Pointwise(DoubleNear(1e-12), {0.5, 0.5}));
}

TEST_F(Caculation, FilesAreChosenFromTheFolderOfTheLastSpectrum) {
  FrmCaculate window(Main, SpectrumOperation::Add);
  const QString first = Measured("a.wls", {10});
  Boxes.ExpectOpenName(Words(928), first);
  Boxes.ExpectOpenName(Words(928), {});
  OptionsOf(window, "FrmCaculateConfig", [&](QWidget& dialog) {
    Click(dialog, "CmdOpen0");
    EXPECT_EQ(Boxes.BeganWith, PathOf("WaveLength.wls"));
    EXPECT_EQ(Find<QLineEdit>(dialog, "TextFileName0")->text(), first);
    Find<QLineEdit>(dialog, "TextFileName1")->setText(QStringLiteral("kept"));
    Click(dialog, "CmdOpen1");
    EXPECT_EQ(Boxes.BeganWith, first);
    EXPECT_EQ(Find<QLineEdit>(dialog, "TextFileName1")->text(), QStringLiteral("kept"));
    QTest::keyClick(&dialog, Qt::Key_Escape);
  });
  EXPECT_EQ(Key(kScanSection, "File Path"), first.toStdString());
  EXPECT_EQ(Key(kCaculateSection, "File name 0"), "") << "Esc takes nothing over";
}

TEST_F(Caculation, WhatIsLeftOutIsTold) {
  const QString first = Measured("a.wls", {10, 10});
  FrmCaculate window(Main, SpectrumOperation::Add);
  Combine(window, first, {});
  EXPECT_EQ(window.GetRecordNo(), 0);
  EXPECT_EQ(Display.Remark, "No result: the second file is missing.");

  std::vector<WLSRecord> apart = MeasuredPoints({10, 10});
  for (WLSRecord& point : apart) point.Wavelength += 100;
  SaveSpectrum(WLSModule(), Folder.Path("apart.wls"), OtherOption(), apart);
  Combine(window, first, PathOf("apart.wls"));
  EXPECT_EQ(window.GetRecordNo(), 0);
  EXPECT_EQ(Display.Remark, "No result: the two spectra have no wavelengths in common.");
  EXPECT_EQ(ViewOf(window).Caption,
            QStringLiteral("No result: the two spectra have no wavelengths in common."));

  // 491 nm: the place of a uniform grid lies behind the end of 500, 491, 490.
  std::vector<WLSRecord> one = MeasuredPoints({10});
  one[0].Wavelength = 491;
  SaveSpectrum(WLSModule(), Folder.Path("one.wls"), OtherOption(), one);
  std::vector<WLSRecord> uneven = MeasuredPoints({10, 10, 10});
  for (std::size_t i = 0; i < 3; ++i) uneven[i].Wavelength = std::array{500.0, 491.0, 490.0}[i];
  SaveSpectrum(WLSModule(), Folder.Path("uneven.wls"), OtherOption(), uneven);
  Combine(window, PathOf("one.wls"), PathOf("uneven.wls"));
  EXPECT_EQ(Display.Remark, "No result: no point of the second spectrum stands beside one of the first.");
  std::vector<WLSRecord> two = MeasuredPoints({10, 10});
  two[0].Wavelength = 500;
  two[1].Wavelength = 491;
  SaveSpectrum(WLSModule(), Folder.Path("two.wls"), OtherOption(), two);
  Combine(window, PathOf("two.wls"), PathOf("uneven.wls"));
  EXPECT_EQ(window.GetRecordNo(), 1);
  EXPECT_THAT(Display.Remark, HasSubstr("1 point of the first spectrum has no partner"));
}

TEST_F(Caculation, ADivisorOfZeroGivesZeroAndATinyOneAHugeNumber) {
  const QString first = Measured("a.wls", {10, 10});
  FrmCaculate window(Main, SpectrumOperation::Divide);
  Combine(window, first, Measured("zero.wls", {100, 100}));
  EXPECT_THAT(AbsOf(window), Pointwise(DoubleNear(0), {0.0, 0.0}));
  std::vector<WLSRecord> tiny = MeasuredPoints({100, 100});
  for (WLSRecord& point : tiny) point = {2000000049, 2000000050, 50, point.Wavelength, 3};
  SaveSpectrum(WLSModule(), Folder.Path("tiny.wls"), OtherOption(), tiny);
  Combine(window, first, PathOf("tiny.wls"));
  EXPECT_GT(AbsOf(window).at(0), 1e9);
  EXPECT_EQ(RowText(Grid(window, 2), 0).section(u'|', 3), QStringLiteral("0.0"));
  window.grab();
}

struct BadSourceRow {
  const char* Name;
  std::function<QString(const std::string& folder)> Make;
};

class BadSources : public Caculation, public testing::WithParamInterface<BadSourceRow> {};

QString BadSourcePath(const std::string& folder, const char* name) {
  return QString::fromStdString(folder + "/" + name);
}

INSTANTIATE_TEST_SUITE_P(
    Files, BadSources,
    testing::Values(
        BadSourceRow{"Missing", [](const std::string& f) { return BadSourcePath(f, "no.wls"); }},
        BadSourceRow{
            "Processed",
            [](const std::string& f) {
              SaveSpectrum(WLS2Module(), f + "/p.wls", OtherOption(), std::vector<WLS2Record>{{500, 10, 1}});
              return BadSourcePath(f, "p.wls");
            }},
        BadSourceRow{
            "CutShort",
            [](const std::string& f) {
              CutFile(SaveSpectrum(WLSModule(), f + "/c.wls", OtherOption(), MeasuredPoints({10, 10})), 1);
              return BadSourcePath(f, "c.wls");
            }},
        BadSourceRow{"NoDataFile",
                     [](const std::string& f) {
                       WriteBytes(f + "/t.wls", "text");
                       return BadSourcePath(f, "t.wls");
                     }},
        BadSourceRow{"TooManyPoints",
                     [](const std::string& f) {
                       const std::string path =
                           SaveSpectrum(WLSModule(), f + "/m.wls", OtherOption(), MeasuredPoints({10}));
                       std::string bytes = ReadBytes(path);
                       bytes[104 + 72] = 0x12;  // 10002 points
                       bytes[104 + 73] = 0x27;
                       WriteBytes(path, bytes);
                       return BadSourcePath(f, "m.wls");
                     }},
        BadSourceRow{"Folder", [](const std::string& f) { return QString::fromStdString(f); }}),
    NameOfRow<BadSourceRow>);

TEST_P(BadSources, AreToldAndTheirNameIsCleared) {
  const QString good = Measured("good.wls", {10, 10});
  FrmCaculate window(Main, SpectrumOperation::Add);
  Combine(window, good, good);
  ASSERT_EQ(window.GetRecordNo(), 2);
  const QString bad = GetParam().Make(Folder.Path());
  Boxes.ExpectWords(QStringLiteral("Read file Error:") + bad, [&window] { window.grab(); });
  Combine(window, good, bad);
  EXPECT_FALSE(Boxes.Details.isEmpty());
  EXPECT_EQ(window.SourceFileName(0), good);
  EXPECT_TRUE(window.SourceFileName(1).isEmpty());
  EXPECT_EQ(window.GetRecordNo(), 0);
  EXPECT_EQ(Key(kCaculateSection, "File name 1"), "");
  EXPECT_EQ(Grid(window, 1).rowCount(), 0);
  window.grab();
}

TEST_F(Caculation, AFileThatVanishesWhileTheDialogIsOpen) {
  const QString good = Measured("good.wls", {10, 10});
  FrmCaculate window(Main, SpectrumOperation::Add);
  Boxes.ExpectWords(QStringLiteral("Read file Error:") + good);
  Boxes.ExpectWords(QStringLiteral("Read file Error:") + good);
  OptionsOf(window, "FrmCaculateConfig", [&](QWidget& dialog) {
    Find<QLineEdit>(dialog, "TextFileName0")->setText(good);
    Find<QLineEdit>(dialog, "TextFileName1")->setText(good);
    ASSERT_TRUE(QFile::remove(good));
    Click(dialog, "OKCmd");
  });
  EXPECT_EQ(window.GetRecordNo(), 0);
}

TEST_F(Caculation, ExportsResultAndSources) {
  FrmCaculate window(Main, SpectrumOperation::Add);
  Combine(window, Measured("a.wls", {10, 10}), Measured("b.wls", {1, 1}));
  Boxes.ExpectSaveName(Words(921), PathOf("c.txt"));
  window.mmuFileOutputTXT();
  EXPECT_THAT(ReadBytes(Folder.Path("c.txt")),
              HasSubstr("Wavelength Scan Data Record\n"
                        "No.\tWavelength(nm)\tAbs\tTrans(%T)\tEnergy\tEnergy(100%T)\tEnergy(0%T)\n"
                        "1\t501.0\t3.000\t0.1\t0\t0\t0\n"
                        "2\t500.0\t3.000\t0.1\t0\t0\t0\n"
                        "\n\n\n"
                        "No\tWL.(nm)\tAbsorbance(Abs)\tTransmittance(%T)\n"
                        "1\t501.0\t1.000\t10.0\n"
                        "2\t500.0\t1.000\t10.0\n"
                        "\n\n\n"
                        "No\tWL.(nm)\tAbsorbance(Abs)\tTransmittance(%T)\n"
                        "1\t501.0\t2.000\t1.0\n"
                        "2\t500.0\t2.000\t1.0\n"));
  Boxes.ExpectSaveName(Words(935), PathOf("c.xls"));
  window.mmuFileOutputXLS();
  const std::string listing = testing_workbook::WorkbookListing(Folder.Path("c.xls"));
  EXPECT_THAT(listing, HasSubstr("No"));
  EXPECT_THAT(listing, HasSubstr("WL.(nm)"));
}

// Options that were taken in the middle of an export put other sources under it.
TEST_F(Caculation, NothingIsSetWhileAnExportRuns) {
  FrmCaculate window(Main, SpectrumOperation::Add);
  Combine(window, Measured("a.wls", {10, 10}), Measured("b.wls", {1, 1}));
  bool tried = false;
  QTimer::singleShot(0, &window, [&] {
    tried = true;
    ExpectNoOptions(window);
  });
  Boxes.ExpectSaveName(Words(921), PathOf("c.txt"));
  window.mmuFileOutputTXT();
  EXPECT_TRUE(tried);
  EXPECT_TRUE(window.Offers(kTestOption));
}

TEST_F(Caculation, SavesTheResultAloneAndHandsItOn) {
  FrmCaculate window(Main, SpectrumOperation::Subtract);
  Combine(window, Measured("a.wls", {10, 10, 10, 10}), Measured("b.wls", {1, 1, 1, 1}));
  Boxes.ExpectSaveName(Words(928), PathOf("d.wls"));
  ASSERT_TRUE(window.mmuSaveFile());
  EXPECT_EQ(Key(kSmoothSection, "File Path"), PathOf("d.wls").toStdString());
  WLSOption option;
  std::vector<WLS2Record> points;
  ASSERT_FALSE(LoadDataFile(WLS2Module(), Folder.Path("d.wls"), option, points));
  ASSERT_EQ(points.size(), 4U);
  EXPECT_EQ(points[0].Wavelength, 503);
  EXPECT_NEAR(points[0].Abs, -1, 1e-12);
  window.mmuSpectrumSmooth();
  EXPECT_THAT(AbsOf(Last<FrmSmooth>()), Pointwise(DoubleNear(1e-12), {-1.0, -1.0, -1.0, -1.0}));
}

}  // namespace
}  // namespace spectrane::testing_windows
