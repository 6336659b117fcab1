#include <QGuiApplication>
#include <QPainter>
#include <QPdfWriter>

#include "output/outputsupport.h"
#include "output/photometryoutput.h"
#include "output/quantitationoutput.h"
#include "output/reportpages.h"
#include "output/workbook/workbooksupport.h"

namespace spectrane {
namespace {

using testing::HasSubstr;
using testing::Not;
using testing_output::HeadFor;
using testing_output::RedDye;
using testing_output::SmallScan;
using testing_output::ThreeReadings;
using testing_workbook::OutputOf;

const DisplayFormats kReportFormats = DisplayFormats::AtStart(0);

/// A report as a PDF file, and what other programs find in it.
class ReportFile : public testing::Test {
 protected:
  void Write(const Report& report) {
    const QByteArray pdf = ReportPdf(report);
    ASSERT_FALSE(pdf.isEmpty());
    WriteBytes(Folder.Path("report.pdf"), pdf.toStdString());
  }
  /// Text of the pages `from` to `to`; blanks between columns are one.
  std::string PagesText(int from, int to) const {
    const std::string range = " -f " + std::to_string(from) + " -l " + std::to_string(to);
    return OutputOf("pdftotext -layout" + range + " '" + Folder.Path("report.pdf") +
                    "' - | sed 's/  */ /g; s/^ //'");
  }
  int PageCount() const {
    return std::stoi(OutputOf("pdfinfo '" + Folder.Path("report.pdf") + "' | sed -n 's/^Pages: *//p'"));
  }
  std::string PictureCount() const {
    return OutputOf("pdfimages -list '" + Folder.Path("report.pdf") +
                    "' | tail -n +3 | wc -l | tr -d ' \\n'");
  }

  TemporaryFolder Folder;
};

/// The same text without its empty lines.
std::string LinesOf(const std::string& text) {
  std::string lines;
  for (const char letter : text) {
    if (letter != '\n' || !lines.ends_with('\n')) lines += letter;
  }
  return lines;
}

/// Rows that tell their number, and a note of that many letters.
Report LongReport(std::int32_t rows, std::size_t noteLetters = 5) {
  Report report;
  report.Title = QStringLiteral("Long Report");
  report.DocumentName = QStringLiteral("long.bas");
  DataTable table;
  table.Heading = "All rows";
  table.Columns = {{"No.", "0", 6}, {"Twice", "0.0", 10}, {"Note", "", 30}};
  table.RowCount = rows;
  table.EmptyWords = "No rows.";
  table.CellAt = [noteLetters](std::int32_t row, std::size_t column) -> TableCell {
    if (column == 2) return std::string(noteLetters, 'n') + std::to_string(row + 1);
    return (row + 1) * (column == 0 ? 1.0 : 2.0);
  };
  report.Blocks.emplace_back(table);
  return report;
}

TEST_F(ReportFile, OfPhotometryHasFactsAndRowsAsText) {
  const PhotometryDocument document = ThreeReadings();
  Write(PhotometryReport(document, kReportFormats, HeadFor("/data/flow filter.bas")));
  const std::string text = PagesText(1, 1);
  EXPECT_THAT(text, HasSubstr("Photometry Test Report\n"
                              "File Name: /data/flow filter.bas\n"
                              "Test Time: 2024/2/29/ 13:05\n"
                              "Software Version: V1.62.0\n"
                              "Operator: M\xC3\xBCller\n"
                              "Company: Laboratory\n"
                              "Photometry Option: Wavelength: 546.0nm, 620.5nm\n"));
  EXPECT_THAT(text, HasSubstr("No. Wavelength(nm) Absorbance(Abs) Transmittance(%T) Energy Note\n"));
  EXPECT_THAT(text, HasSubstr("1 546.0 0.301 50.0 5000 half\n"));
  EXPECT_THAT(text, HasSubstr("3 546.0 3.000 -1.0 50\n"));
  EXPECT_THAT(text, HasSubstr("End of report Page 1 of 1"));
}

TEST_F(ReportFile, SaysWhenTheInstrumentIsSimulated) {
  const PhotometryDocument document = ThreeReadings();
  DocumentHead head = HeadFor("a.bas");
  Write(PhotometryReport(document, kReportFormats, head));
  EXPECT_THAT(PagesText(1, 1), Not(HasSubstr("Simulated")));
  head.Simulated = true;
  Write(PhotometryReport(document, kReportFormats, head));
  EXPECT_THAT(PagesText(1, 1), HasSubstr("Instrument: Simulated instrument\n"));
}

TEST_F(ReportFile, OfQuantitationHasEquationCurveAndBothTables) {
  const QuantitationDocument document = RedDye();
  Write(QuantitationReport(document, kReportFormats, HeadFor("red.qua")));
  const std::string text = PagesText(1, 1);
  EXPECT_THAT(text, HasSubstr("Quantitation Test Report\n"));
  EXPECT_THAT(text, HasSubstr("Coefficients\nConc.=(10.000)xA r = 1.000000\n"));
  EXPECT_THAT(text, HasSubstr("Standard Sample\n"));
  EXPECT_THAT(text, HasSubstr("1 weak 0.100 1.0000\n"));
  EXPECT_THAT(text, HasSubstr("Test Record List.\n"));
  EXPECT_THAT(text, HasSubstr("0.500 5.0000\n"));
  EXPECT_EQ(PictureCount(), "0") << "the curve is drawn, not a picture of dots";
}

TEST_F(ReportFile, OfASpectrumHasTheTablesThatWereChosenInTheirOrder) {
  const SmallScan scan;
  const ScanSource source = scan.Source();
  ScanReportParts parts;
  parts.MaxMinAverage = parts.DataList = true;
  parts.MaxStartWavelength = 500.5;
  parts.MaxEndWavelength = 501.5;
  parts.PrintInterval = 2;
  const ReportPicture picture{[](QPainter& painter, const QRectF& surface, double) {
    painter.drawLine(surface.topLeft(), surface.bottomRight());
  }};
  Write(ScanReport(source, kReportFormats, HeadFor("/data/holmium.wls"), parts, picture));
  const std::string text = LinesOf(PagesText(1, PageCount()));
  EXPECT_THAT(text, HasSubstr("Wavelength Scan Test Report\n"
                              "File Name: /data/holmium.wls\n"));
  EXPECT_THAT(text, HasSubstr("Scan Range: 500.0nm - 502.0nm\n"
                              "Scan Mode: Absorbance(Abs)\n"));
  const std::string titles = "No. Wavelength(nm) Abs Trans(%T)\n";
  // By transmittance: 50 for the first time, and 10; (0.30103 + 1 + 0.30103) / 3, 110 / 3.
  const std::string statistics = "MaxMinAverage 500.5nm - 501.5nm\n" + titles +
                                 "Max Record 500.5 0.301 50.0\n"
                                 "MinRecord 501.0 1.000 10.0\n"
                                 "Average Record 0.534 36.7\n";
  const std::string points = titles + "1 500.0 0.000 100.0\n3 501.0 1.000 10.0\n5 502.0 - 100.0\n";
  const std::string peaks = titles + "1 501.0 1.000 10.0\n2 500.5 0.301 50.0\n3 501.5 0.301 50.0\n";
  EXPECT_THAT(text, HasSubstr(peaks));
  EXPECT_THAT(text, HasSubstr(statistics));
  EXPECT_THAT(text, HasSubstr(points));
  EXPECT_LT(text.find(peaks), text.find(statistics));
  EXPECT_LT(text.find(statistics), text.find(points));
  EXPECT_EQ(PictureCount(), "0") << "the curve is drawn, not a picture of dots";
}

TEST_F(ReportFile, OfASpectrumWithoutPointsSaysSo) {
  SmallScan scan;
  scan.Wavelength = scan.Trans = scan.Abs = {};
  scan.Peaks = scan.Valleys = {};
  const ScanSource source = scan.Source();
  ScanReportParts parts;
  parts.Curve = false;
  parts.DataList = true;
  Write(ScanReport(source, kReportFormats, HeadFor("a.wls"), parts, {}));
  const std::string text = PagesText(1, 1);
  EXPECT_THAT(text, HasSubstr("No Peak Data!\n"));
  EXPECT_THAT(text, HasSubstr("No Data!\n"));
  parts.PeakValley = parts.DataList = false;
  Write(ScanReport(source, kReportFormats, HeadFor("a.wls"), parts, {}));
  EXPECT_THAT(PagesText(1, 1), Not(HasSubstr("Data!")));
}

TEST_F(ReportFile, WithoutRecordsSaysSo) {
  const PhotometryDocument photometry;
  Write(PhotometryReport(photometry, kReportFormats, HeadFor("")));
  EXPECT_THAT(PagesText(1, 1), HasSubstr("File Name: Photometry 1\n"));
  EXPECT_THAT(PagesText(1, 1), HasSubstr("No Records.\n"));
  const QuantitationDocument quantitation;
  Write(QuantitationReport(quantitation, kReportFormats, HeadFor("")));
  EXPECT_THAT(PagesText(1, 1), HasSubstr("No Records.\n"));
}

TEST_F(ReportFile, RepeatsTheTitlesOnEachPageAndHasEachRowOnce) {
  Write(LongReport(200));
  const int pages = PageCount();
  ASSERT_GT(pages, 2);
  for (int page = 1; page <= pages; ++page) {
    const std::string text = PagesText(page, page);
    EXPECT_THAT(text, HasSubstr("No. Twice Note\n")) << page;
    EXPECT_THAT(text, HasSubstr("Page " + std::to_string(page) + " of " + std::to_string(pages)));
    EXPECT_EQ(text.find("End of report") != std::string::npos, page == pages);
  }
  const std::string all = PagesText(1, pages);
  for (int row = 1; row <= 200; ++row) {
    const std::string line =
        "\n" + std::to_string(row) + " " + std::to_string(row * 2) + ".0 nnnnn" + std::to_string(row) + "\n";
    const std::size_t at = all.find(line);
    ASSERT_NE(at, std::string::npos) << row;
    ASSERT_EQ(all.find(line, at + 1), std::string::npos) << row << " stands twice";
  }
}

// Wherever the first table ends, the second one's heading has rows below it on its own page.
TEST_F(ReportFile, NeverLeavesAHeadingAtTheFootOfAPage) {
  int moved = 0;
  for (int rows = 45; rows <= 75; ++rows) {
    Report report = LongReport(rows);
    DataTable second = std::get<DataTable>(LongReport(5).Blocks[0]);
    second.Heading = "Second table";
    report.Blocks.emplace_back(second);
    Write(report);
    const int pages = PageCount();
    for (int page = 1; page <= pages; ++page) {
      const std::string text = PagesText(page, page);
      const std::size_t heading = text.find("Second table");
      if (heading == std::string::npos) continue;
      EXPECT_THAT(text.substr(heading), HasSubstr("2 4.0 nnnnn2")) << rows << " rows before, page " << page;
      if (page > 1) ++moved;
      break;
    }
  }
  EXPECT_GT(moved, 0) << "none of the reports reached the foot of the page";
}

TEST_F(ReportFile, BreaksLongNotesIntoLinesAndLosesNothing) {
  Write(LongReport(3, 400));
  std::string text = PagesText(1, 1);
  EXPECT_EQ(std::ranges::count(text, 'n'), 3 * 400 + 3)
      << "the notes, and one each in Long, long.bas and End\n"
      << text;
  EXPECT_THAT(text, HasSubstr("n3\n"));
}

TEST_F(ReportFile, EndsWhenItIsCancelled) {
  int steps = 0;
  EXPECT_TRUE(ReportPdf(LongReport(500), [&steps](int) { return ++steps < 3; }).isEmpty());
  EXPECT_EQ(steps, 3);
}

/// A printer that takes so many pages and no more.
class ShortOfPaper : public QPdfWriter {
 public:
  ShortOfPaper(const QString& path, int pages) : QPdfWriter(path), left_(pages - 1) {}
  bool newPage() override { return left_-- > 0 && QPdfWriter::newPage(); }

 private:
  int left_;
};

TEST_F(ReportFile, APrinterThatFailsInTheMiddleIsNoticed) {
  ShortOfPaper printer(QString::fromStdString(Folder.Path("paper.pdf")), 2);
  EXPECT_FALSE(PaintReport(printer, LongReport(500)));
  ShortOfPaper enough(QString::fromStdString(Folder.Path("paper.pdf")), 2);
  EXPECT_TRUE(PaintReport(enough, LongReport(80)));
}

}  // namespace
}  // namespace spectrane
