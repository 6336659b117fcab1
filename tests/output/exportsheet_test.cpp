#include "output/exportsheet.h"

#include <cmath>
#include <cstdlib>
#include <limits>
#include <map>
#include <sstream>

#include "base/numbers.h"
#include "files/datafile.h"
#include "output/outputsupport.h"
#include "output/photometryoutput.h"
#include "output/quantitationoutput.h"
#include "output/scanoutput.h"
#include "output/workbook/workbooksupport.h"

namespace spectrane {
namespace {

using testing::HasSubstr;
using testing::Not;
using testing_output::HeadFor;
using testing_output::RedDye;
using testing_output::SmallScan;
using testing_output::ThreeReadings;

const DisplayFormats kFormats = DisplayFormats::AtStart(0);

std::string SheetListing(const ExportSheet& sheet) {
  const TemporaryFolder folder;
  const std::optional<Workbook> book = ExportWorkbook(sheet, {});
  EXPECT_TRUE(book && book->Save(folder.Path("sheet.xls")));
  return testing_workbook::WorkbookListing(folder.Path("sheet.xls"));
}

TEST(PhotometryExport, IsTheGridLineByLine) {
  const PhotometryDocument document = ThreeReadings();
  EXPECT_EQ(ExportText(PhotometrySheet(document, kFormats, HeadFor("/data/run.bas"))),
            "run.bas\n"
            "Photometry Test Report  Time:2024-02-29 13:05:09\n"
            "Photometry Option  Wavelength: 546.0nm, 620.5nm\n"
            "No.\tWavelength(nm)\tAbsorbance(Abs)\tTransmittance(%T)\tEnergy\tNote\n"
            "1\t546.0\t0.301\t50.0\t5000\thalf\n"
            "2\t620.5\t0.000\t100.0\t10000\t=1+1 \xCE\xBCg next\n"
            "3\t546.0\t3.000\t-1.0\t50\t\n");
}

TEST(PhotometryExport, HasItsOwnWordsWithoutReadings) {
  const PhotometryDocument document;
  EXPECT_EQ(ExportText(PhotometrySheet(document, kFormats, HeadFor(""))),
            "Photometry 1\n"
            "Photometry Test Report  Time:2024-02-29 13:05:09\n"
            "Photometry Option  Wavelength: \n"
            "No.\tWavelength(nm)\tAbsorbance(Abs)\tTransmittance(%T)\tEnergy\tNote\n"
            "No Photometry Test Record!\n");
}

TEST(PhotometryExport, FollowsThePrecision) {
  const PhotometryDocument document = ThreeReadings();
  const DisplayFormats high = DisplayFormats::AtStart(1);
  EXPECT_THAT(ExportText(PhotometrySheet(document, high, HeadFor("run.bas"))),
              HasSubstr("1\t546.0\t0.3010\t50.00\t5000\thalf\n"));
}

TEST(PhotometryExport, IsASpreadsheetOfNumbers) {
  const PhotometryDocument document = ThreeReadings();
  const std::string listing = SheetListing(PhotometrySheet(document, kFormats, HeadFor("/data/run.bas")));
  EXPECT_THAT(listing, HasSubstr("biff 80\n"
                                 "sheet sheet1 7 6\n"
                                 "merged 0 1 0 6\n"
                                 "merged 1 2 0 6\n"
                                 "merged 2 3 0 6\n"));
  EXPECT_THAT(listing, HasSubstr("cell 0 0 text 'run.bas' @ Verdana 10 plain 0\n"));
  EXPECT_THAT(listing, HasSubstr("cell 3 2 text 'Absorbance(Abs)' @ Verdana 10 bold 3\n"));
  EXPECT_THAT(listing, HasSubstr("cell 4 0 number 1.0 0 Verdana 10 plain 0\n"
                                 "cell 4 1 number 546.0 0.0 Verdana 10 plain 0\n"
                                 // log10(2), to the digits that the logarithm of the platform has.
                                 "cell 4 2 number 0.301029995663981"));
  EXPECT_THAT(listing, HasSubstr(" 0.000 Verdana 10 plain 0\n"
                                 "cell 4 3 number 50.0 0.0 Verdana 10 plain 0\n"
                                 "cell 4 4 number 5000.0 0 Verdana 10 plain 0\n"
                                 "cell 4 5 text 'half' @ Verdana 10 plain 0\n"));
  EXPECT_THAT(listing, HasSubstr("cell 5 5 text '=1+1\\t\xCE\xBCg\\nnext' @"));
}

TEST(QuantitationExport, HasStandardsAndSamplesLineByLine) {
  const QuantitationDocument document = RedDye();
  EXPECT_EQ(ExportText(QuantitationSheet(document, kFormats, HeadFor("/data/red.qua"))),
            "red.qua\n"
            "Quantitation Test Report  Time:2024-02-29 13:05:09\n"
            "Wavelength: 546.0nm\n"
            "Coefficients: Conc.=(10.000)xA  r = 1.000000\n"
            "Standard Sample\n"
            "No.\tName\tAbsorbance(Abs)\tConc.(" +
                document.Option().ConcUnit +
                ")\tNote\n"
                "1\tweak\t0.100\t1.0000\t\n"
                "2\t\t1.000\t10.000\t\n"
                "Test Record List.\n"
                "No.\tName\tAbsorbance(Abs)\tConc.(" +
                document.Option().ConcUnit +
                ")\tNote\n"
                "1\tsample \xE6\xB5\x8B\t0.500\t5.0000\t\n");
}

TEST(QuantitationExport, ConcentrationsHaveTheirDecimalsInASpreadsheetToo) {
  const QuantitationDocument document = RedDye();
  const std::string listing = SheetListing(QuantitationSheet(document, kFormats, HeadFor("red.qua")));
  EXPECT_THAT(listing, HasSubstr("cell 6 3 number 1.0 0.0000 Verdana 10 plain 0\n"));
  EXPECT_THAT(listing, HasSubstr("cell 7 3 number 10.0 0.000 Verdana 10 plain 0\n"));
}

TEST(QuantitationExport, LeavesWhatIsNotMeasuredEmptyAndSaysThatThereAreNoSamples) {
  const QuantitationDocument document;
  const std::string text = ExportText(QuantitationSheet(document, kFormats, HeadFor("red.qua")));
  EXPECT_THAT(text, HasSubstr("\n1\t\t\t\t\n2\t\t\t\t\n"));
  EXPECT_TRUE(text.ends_with("\tNote\nNo Quantitation Test Record!\n")) << text;
}

TEST(QuantitationExport, TwoWavelengthsHaveAColumnEachAndTheirSum) {
  QuantitationDocument document;
  QuantitationSettings settings = document.Settings();
  settings.WaveLengthNumber = 2;
  settings.WaveLengthList = {500, 620.5, 0};
  document.Begin(settings);
  const std::string text = ExportText(QuantitationSheet(document, kFormats, HeadFor("red.qua")));
  EXPECT_THAT(text, HasSubstr("\nWavelength: 500.0nm, 620.5nm\n"));
  EXPECT_THAT(text, HasSubstr("No.\tName\t500.0nm\t620.5nm\tAbsorbance(Abs)\tConc.("));
}

constexpr const char* kScanTitles =
    "No.\tWavelength(nm)\tAbs\tTrans(%T)\tEnergy\tEnergy(100%T)\tEnergy(0%T)\n";

TEST(ScanExport, ListsPeaksValleysAndPoints) {
  const SmallScan scan;
  const ScanSource source = scan.Source();
  EXPECT_EQ(
      ExportText(ScanSheet(source, kFormats, HeadFor("/data/holmium.wls"))),
      std::string("holmium.wls\n"
                  "Scan Wavelength: 500.0 nm - 502.0 nm  Time:2024-02-29 13:05:09  Test Mode: Abs Mode\n"
                  "Peak/Valley Data Record\n") +
          kScanTitles +
          "1\t501.0\t1.000\t10.0\t1002\t20000\t60\n"
          "2\t500.5\t0.301\t50.0\t1001\t20000\t60\n"
          "3\t501.5\t0.301\t50.0\t1003\t20000\t60\n"
          "Wavelength Scan Data Record\n" +
          kScanTitles +
          "1\t500.0\t0.000\t100.0\t1000\t20000\t60\n"
          "2\t500.5\t0.301\t50.0\t1001\t20000\t60\n"
          "3\t501.0\t1.000\t10.0\t1002\t20000\t60\n"
          "4\t501.5\t0.301\t50.0\t1003\t20000\t60\n"
          "5\t502.0\t-\t100.0\t1004\t20000\t60\n");
}

TEST(ScanExport, WithoutPointsHasItsWordsBelowTheTitles) {
  SmallScan scan;
  scan.Wavelength = scan.Trans = scan.Abs = {};
  scan.Peaks = scan.Valleys = {};
  scan.Option.DisplayMode = 2;
  const ScanSource source = scan.Source();
  EXPECT_EQ(ExportText(ScanSheet(source, kFormats, HeadFor("a.wls"))),
            std::string("a.wls\n"
                        "Scan Wavelength: 500.0 nm - 502.0 nm  Time:2024-02-29 13:05:09"
                        " Test Mode: Trans.(%T) Mode\n"
                        "Peak/Valley Data Record\n") +
                kScanTitles + "No Peak/Valley Data.\nWavelength Scan Data Record\n" + kScanTitles +
                "Error: No Wavelength Scan Data Record!\n");
}

// Energies mean nothing in a processed spectrum: its mode is the document's, whatever its file says.
TEST(ScanExport, AProcessedSpectrumIsNeverInEnergyMode) {
  const TemporaryFolder folder;
  SmallScan scan;
  scan.Option.DisplayMode = 3;
  ASSERT_FALSE(SaveDataFile(WLS2Module(), folder.Path("a.wls"), scan.Option, 1, [](std::int32_t) {
    return WLS2Record{500, 50, 0.3};
  }));
  SpectrumDocument document(SpectrumDocument::Kind::Processed);
  ASSERT_TRUE(document.OpenFile(folder.Path("a.wls")));
  EXPECT_THAT(ExportText(ScanSheet(ScanSourceOf(document), kFormats, HeadFor("a.wls"))),
              HasSubstr("  Test Mode: Abs Mode\n"));
}

TEST(ScanExport, ALongSpectrumIsReadBackCellByCell) {
  constexpr int kPoints = 10001;
  SmallScan scan;
  scan.Peaks = scan.Valleys = {};
  scan.Wavelength.clear();
  scan.Abs.clear();
  for (int i = 0; i < kPoints; ++i) {
    scan.Wavelength.push_back((1900 + i) / 10.0);
    scan.Abs.push_back(std::sin(i * 0.01) / 3);
  }
  scan.Trans = scan.Abs;
  const ScanSource source = scan.Source();
  std::istringstream listing(SheetListing(ScanSheet(source, kFormats, HeadFor("long.wls"))));
  std::map<std::string, std::string> cells;
  for (std::string line; std::getline(listing, line);) {
    std::istringstream words(line);
    std::string kind, row, column, type, value;
    words >> kind >> row >> column >> type >> value;
    if (kind == "cell" && type == "number") cells[row + "," + column] = value;
  }
  EXPECT_EQ(cells.size(), 7U * kPoints);
  for (int i = 0; i < kPoints; ++i) {
    const auto index = static_cast<std::size_t>(i);
    const std::string row = std::to_string(7 + i) + ",";
    ASSERT_EQ(ParseNumber(cells[row + "0"]), i + 1.0);
    ASSERT_EQ(ParseNumber(cells[row + "1"]), scan.Wavelength[index]) << i;
    ASSERT_EQ(ParseNumber(cells[row + "2"]), scan.Abs[index]) << i;
    ASSERT_EQ(ParseNumber(cells[row + "4"]), 1000.0 + i) << i;
  }
}

TEST(ScanExport, AnOfficeReadsTheCellsAsTheyArePrinted) {
  if (std::system("command -v soffice >/dev/null 2>&1") != 0)
    GTEST_SKIP() << "soffice (libreoffice-calc-nogui) is not installed";
  const TemporaryFolder folder;
  SmallScan scan;
  scan.Abs[4] = 2;
  const ScanSource source = scan.Source();
  const ExportSheet sheet = ScanSheet(source, kFormats, HeadFor("/data/\xE6\xB5\x8B.wls"));
  ASSERT_TRUE(ExportWorkbook(sheet, {})->Save(folder.Path("sheet.xls")));
  testing_workbook::OutputOf("cd '" + folder.Path() + "' && HOME='" + folder.Path() +
                             "' soffice --headless --convert-to 'csv:Text - txt - csv (StarCalc):9,34,76'"
                             " sheet.xls >/dev/null 2>&1");
  // The lines in front and the headings go across all columns there.
  std::istringstream csv(ReadBytes(folder.Path("sheet.csv")));
  std::istringstream text(ExportText(sheet));
  for (std::string line; std::getline(text, line);) {
    std::string found;
    ASSERT_TRUE(std::getline(csv, found)) << line;
    found.erase(found.find_last_not_of("\t\r") + 1);
    EXPECT_EQ(found, line);
  }
}

TEST(ScanExport, SpreadsheetHasItsPlacesMergesAndFormats) {
  const SmallScan scan;
  const ScanSource source = scan.Source();
  const std::string listing = SheetListing(ScanSheet(source, kFormats, HeadFor("/data/holmium.wls")));
  EXPECT_THAT(listing,
              HasSubstr("sheet sheet1 14 7\nmerged 0 1 0 7\nmerged 1 2 0 7\nmerged 2 3 0 7\ncolumn"));
  EXPECT_THAT(listing, HasSubstr("cell 2 0 text 'Peak/Valley Data Record' @"));
  EXPECT_THAT(listing, HasSubstr("cell 3 6 text 'Energy(0%T)' @"));
  EXPECT_THAT(listing, HasSubstr("cell 4 0 number 1.0 0 Verdana 10 plain 0\n"
                                 "cell 4 1 number 501.0 0.0 Verdana 10 plain 0\n"
                                 "cell 4 2 number 1.0 0.000 Verdana 10 plain 0\n"
                                 "cell 4 3 number 10.0 0.0 Verdana 10 plain 0\n"
                                 "cell 4 4 number 1002.0 0 Verdana 10 plain 0\n"
                                 "cell 4 5 number 20000.0 0 Verdana 10 plain 0\n"
                                 "cell 4 6 number 60.0 0 Verdana 10 plain 0\n"));
  EXPECT_THAT(listing, HasSubstr("cell 7 0 text 'Wavelength Scan Data Record' @"));
  EXPECT_THAT(listing, HasSubstr("cell 13 2 text '-' 0.000 Verdana 10 plain 0\n"));
  EXPECT_THAT(listing, Not(HasSubstr("nan")));
}

// Rows behind the last one of a sheet were left out without a word.
TEST(LongSheet, IsNoSpreadsheet) {
  std::int32_t asked = 0;
  DataTable table;
  table.Heading = "Readings";
  table.LinesBefore = 3;
  table.Columns = {{"No.", "0", 6}};
  table.CellAt = [&asked](std::int32_t row, std::size_t) -> TableCell {
    ++asked;
    return row + 1.0;
  };
  DataTable empty = table;
  empty.EmptyWords = "none";
  // Two lines; six rows of the empty table; three empty ones, a heading and the titles: 13.
  ExportSheet sheet{{"text alone", "a", "b"}, {empty, table}, 1};
  sheet.Tables[1].RowCount = 65536 - 13;
  EXPECT_TRUE(FitsWorkbook(sheet));
  EXPECT_TRUE(ExportWorkbook(sheet, {}));
  EXPECT_EQ(asked, 65536 - 13);
  ++sheet.Tables[1].RowCount;
  EXPECT_FALSE(FitsWorkbook(sheet));
  EXPECT_FALSE(ExportWorkbook(sheet, {}));
  EXPECT_EQ(asked, 65536 - 13) << "refused before the first row";
  sheet.Tables[1].RowCount = std::numeric_limits<std::int32_t>::max();
  EXPECT_FALSE(FitsWorkbook(sheet));
}

TEST(ExportProgress, RisesInTensAndEndsTheWork) {
  DataTable table;
  table.Columns = {{"No.", "0", 6}};
  table.RowCount = 1000;
  table.CellAt = [](std::int32_t row, std::size_t) -> TableCell { return row + 1.0; };
  const ExportSheet sheet{{}, {table}};
  std::vector<int> told;
  const auto tell = [&told](int percent) {
    told.push_back(percent);
    return true;
  };
  EXPECT_NE(ExportText(sheet, tell), "");
  EXPECT_EQ(told, (std::vector<int>{10, 20, 30, 40, 50, 60, 70, 80, 90, 100}));
  const auto stopAt30 = [](int percent) { return percent < 30; };
  EXPECT_EQ(ExportText(sheet, stopAt30), "");
  EXPECT_FALSE(ExportWorkbook(sheet, {}, stopAt30));
}

}  // namespace
}  // namespace spectrane
