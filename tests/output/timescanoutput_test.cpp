#include "output/timescanoutput.h"

#include "output/outputsupport.h"
#include "output/workbook/workbooksupport.h"

namespace spectrane {
namespace {

using testing::HasSubstr;
using testing::Not;
using testing_output::HeadFor;

/// Three points with a peak in the middle: half of the light, a tenth, half again.
struct SmallTimeScan {
  SmallTimeScan() {
    TSOption option = Document.Option();
    option.WorkWL = 340;
    option.IntervalSecond = 3;
    Document.Configure(option, 10, 12);
    Document.SetBlank(10100, 100, 4);
    Document.BeginTest();
    for (const int energy : {5100, 1100, 5100}) Document.Append(energy);
    Document.EndTest(3);
    Points.TakeAll(Document);
  }
  void ShowTrans() {
    TSOption option = Document.Option();
    option.DisplayMode = 2;
    Document.Configure(option, 10, 12);
  }

  TimeScanDocument Document;
  TimeScanPoints Points;
  FoundPeaks Found{{1}, {}};
  TimeScanSettings Settings;
  DisplayFormats Formats = DisplayFormats::AtStart(0);
  TimeScanSource Source{Document, Points, Found, Settings, Formats};
};

constexpr const char* kTimeScanTitles = "No.\tTime(s)\tAbs\tTrans(%T)\tEnergy\tEnergy(100%T)\tEnergy(0%T)\n";

TEST(TimeScanExport, ListsPeaksAndPoints) {
  const SmallTimeScan scan;
  EXPECT_EQ(ExportText(TimeScanSheet(scan.Source, HeadFor("/data/run.tis"))),
            std::string("run.tis\n"
                        "Wavelength: 340.0 nm   Time: 10.0s-12.0s  Test Mode: Abs Mode"
                        "  Time:2024-02-29 13:05:09\n"
                        "PeaK/Valley Data Record\n") +
                kTimeScanTitles + "1\t11.0\t1.000\t10.0\t1100\t10100\t100\n" + "Time Scan Data Record\n" +
                kTimeScanTitles +
                "1\t10.0\t0.301\t50.0\t5100\t10100\t100\n"
                "2\t11.0\t1.000\t10.0\t1100\t10100\t100\n"
                "3\t12.0\t0.301\t50.0\t5100\t10100\t100\n");
}

TEST(TimeScanExport, SaysWhatThereIsNot) {
  SmallTimeScan scan;
  scan.ShowTrans();
  scan.Document.BeginTest();
  scan.Found = {};
  const std::string text = ExportText(TimeScanSheet(scan.Source, HeadFor({})));
  EXPECT_THAT(text, HasSubstr("12.0s Test Mode: Trans.(%T) Mode  Time:"));
  EXPECT_THAT(text, HasSubstr("\nNo Peak Data.\n"));
  EXPECT_TRUE(text.ends_with("Error: No Time Scan Data Record!\n"));
}

TEST(TimeScanExport, AWorkbookBeginsWithTheLineOfTheTest) {
  const SmallTimeScan scan;
  const std::optional<Workbook> book =
      ExportWorkbook(TimeScanSheet(scan.Source, HeadFor("/data/run.tis")), {});
  ASSERT_TRUE(book);
  TemporaryFolder folder;
  WriteBytes(folder.Path("run.xls"), book->Bytes());
  const std::string cells = testing_workbook::WorkbookListing(folder.Path("run.xls"));
  EXPECT_THAT(cells, HasSubstr("cell 0 0 text 'Wavelength: 340.0 nm   Time: 10.0s-12.0s"));
  EXPECT_THAT(cells, HasSubstr("cell 1 0 text 'PeaK/Valley Data Record"));
  EXPECT_THAT(cells, HasSubstr("cell 2 6 text 'Energy(0%T)"));
  EXPECT_THAT(cells, HasSubstr("cell 3 1 number 11.0 0.0"));
  EXPECT_THAT(cells, Not(HasSubstr("run.tis")));
}

TEST(TimeScanReports, HaveTheirOwnFactsAndTheChosenParts) {
  SmallTimeScan scan;
  scan.Settings.PrintDataList = true;
  const Report report = TimeScanReport(scan.Source, HeadFor("/data/run.tis"), HomeView(scan.Document));
  EXPECT_EQ(report.Title, QStringLiteral("Time Scan Test Report"));
  std::string facts;
  for (const ReportFact& fact : report.Facts)
    facts += fact.Label.toStdString() + " " + fact.Value.toStdString() + "\n";
  EXPECT_THAT(facts, HasSubstr("Scan Time: 10s - 12s\n"));
  EXPECT_THAT(facts, HasSubstr("Scan Interval: 1 Second\n"));
  EXPECT_THAT(facts, HasSubstr("Scan Mode: Abs(0.000Abs - 3.000Abs)\n"));
  ASSERT_EQ(report.Blocks.size(), 3u);
  EXPECT_TRUE(std::holds_alternative<ReportPicture>(report.Blocks[0]));
  const auto& peaks = std::get<DataTable>(report.Blocks[1]);
  EXPECT_EQ(peaks.Heading, "Peak/Valley Data List");
  EXPECT_EQ(peaks.EmptyWords, "No Peak/Valley Data");
  EXPECT_EQ(peaks.RowCount, 1);
  EXPECT_EQ(peaks.Columns.size(), 4u);
  const auto& points = std::get<DataTable>(report.Blocks[2]);
  EXPECT_EQ(points.Heading, "Data List");
  EXPECT_EQ(points.EmptyWords, "No Data");
  EXPECT_EQ(points.RowCount, 3);

  scan.ShowTrans();
  scan.Settings.PrintCurve = scan.Settings.PrintPeakValley = scan.Settings.PrintDataList = false;
  const Report bare = TimeScanReport(scan.Source, HeadFor({}), HomeView(scan.Document));
  EXPECT_EQ(bare.Facts.back().Value, QStringLiteral("Trans%(0.0%T - 100.0%T)"));
  EXPECT_TRUE(bare.Blocks.empty());
}

TEST(TimeScanCurves, HaveTheirOwnMarginsAndTexts) {
  SmallTimeScan scan;
  scan.Settings.PeakDetailEnable = true;
  const CurveView view = TimeScanCurve(scan.Source, HomeView(scan.Document), QStringLiteral("run"));
  EXPECT_EQ(view.Margins.Left, 1200);
  EXPECT_EQ(view.Margins.Top, 500);
  EXPECT_EQ(view.Margins.Right, 500);
  EXPECT_EQ(view.Margins.Bottom, 700);
  EXPECT_FALSE(view.Room.Either);
  EXPECT_EQ(view.Room.Width, 2000);
  EXPECT_EQ(view.Room.Height, 1300);
  EXPECT_EQ(view.Caption, QStringLiteral("WaveLength = 340.0 nm"));
  EXPECT_EQ(view.Scale, (CurveScale{{10, 12}, {0, 3}}));
  ASSERT_EQ(view.Marks.size(), 1u);
  EXPECT_EQ(view.Marks[0].Text, QStringLiteral("11.0s-1.000Abs"));
  scan.ShowTrans();
  EXPECT_EQ(TimeScanCurve(scan.Source, HomeView(scan.Document), {}).Marks[0].Text,
            QStringLiteral("11.0s-10.0%T"));
}

}  // namespace
}  // namespace spectrane
