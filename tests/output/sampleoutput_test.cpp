#include "files/samplefiles.h"
#include "output/dnaoutput.h"
#include "output/exportsheet.h"
#include "output/multioutput.h"
#include "output/outputsupport.h"
#include "output/reportpages.h"
#include "output/workbook/workbooksupport.h"

namespace spectrane {
namespace {

using testing::HasSubstr;
using testing::Not;
using testing_output::HeadFor;

const DisplayFormats kSampleFormats = DisplayFormats::AtStart(0);

MultiDocument MultiOf(std::int32_t wavelengths) {
  const TemporaryFolder folder;
  MultiDocument document;
  EXPECT_TRUE(WriteSamples(MultiModule(), folder.Path("run.mul"), MultiTable(wavelengths),
                           std::vector{MultiSample("one", 0.5, 71.25), MultiSample("two", 100, 1234.56)}));
  EXPECT_TRUE(document.OpenFile(folder.Path("run.mul")));
  return document;
}

DNADocument DNAOf(const DNAOption& option) {
  const TemporaryFolder folder;
  DNADocument document;
  EXPECT_TRUE(WriteSamples(DNAModule(), folder.Path("run.dna"), option,
                           std::vector{DNASample("a", 0.5, 0.3, 0.05), DNASample("b", 1, 0.5, 0.25)}));
  EXPECT_TRUE(document.OpenFile(folder.Path("run.dna")));
  return document;
}

/// What another program finds in the report; blanks between columns are one.
std::string FoundInReport(const Report& report) {
  const TemporaryFolder folder;
  WriteBytes(folder.Path("report.pdf"), ReportPdf(report).toStdString());
  return testing_workbook::OutputOf("pdftotext -layout '" + folder.Path("report.pdf") +
                                    "' - | sed 's/  */ /g; s/^ //' | grep -v '^$'");
}

std::string WorkbookText(const ExportSheet& sheet) {
  const TemporaryFolder folder;
  const std::optional<Workbook> book = ExportWorkbook(sheet, {});
  EXPECT_TRUE(book && book->Save(folder.Path("sheet.xls")));
  return testing_workbook::WorkbookListing(folder.Path("sheet.xls"));
}

TEST(MultiOutput, FormulaHasATermForEachWavelengthInUse) {
  MultiOption option = MultiTable(1);
  EXPECT_EQ(MultiFormula(option), "Result = 1.000×Abs(200.0nm)");
  option.WorkWLNo = 3;
  option.Parameter[1] = -0.12345;
  option.WorkWaveLength[2] = 350.25;
  EXPECT_EQ(MultiFormula(option), "Result = 1.000×Abs(200.0nm)+-0.123×Abs(250.0nm)+3.000×Abs(350.3nm)");
  option.WorkWLNo = 15;
  EXPECT_TRUE(MultiFormula(option).ends_with("+15.000×Abs(900.0nm)"));
}

TEST(MultiOutput, ABadTableIsToldInThePlaceOfTheFormula) {
  for (const std::int32_t number : {0, 16, -1})
    EXPECT_EQ(MultiFormula(MultiTable(number)), "Error Wavelength and Error Wavelength Coefficient!");
}

TEST(MultiOutput, TextIsTheGridLineByLine) {
  EXPECT_EQ(ExportText(MultiSheet(MultiOf(2), kSampleFormats, HeadFor("/data/run.mul"))),
            "run.mul\n"
            "Multi Wavelength Test Report  Time:2024-02-29 13:05:09\n"
            "Result = 1.000×Abs(200.0nm)+2.000×Abs(250.0nm)\n"
            "No.\tSample Name\tAbs(200.0nm)\tAbs(250.0nm)\tResult\n"
            "1\tone\t0.500\t0.600\t71.250\n"
            "2\ttwo\t100.00\t100.10\t1234.6\n");
}

TEST(MultiOutput, NumbersOfASpreadsheetHaveTheirOwnDecimals) {
  const std::string listing = WorkbookText(MultiSheet(MultiOf(2), kSampleFormats, HeadFor("run.mul")));
  EXPECT_THAT(listing, HasSubstr("cell 4 2 number 0.5 0.000 "));
  EXPECT_THAT(listing, HasSubstr("cell 4 4 number 71.25 0.000 "));
  EXPECT_THAT(listing, HasSubstr("cell 5 2 number 100.0 0.00 "));
  EXPECT_THAT(listing, HasSubstr("cell 5 4 number 1234.56 0.0 "));
}

TEST(MultiOutput, EmptyTablesHaveTheirOwnWords) {
  const MultiDocument document;
  EXPECT_TRUE(ExportText(MultiSheet(document, kSampleFormats, HeadFor("")))
                  .ends_with("No.\tSample Name\tAbs(546.0nm)\tResult\nNo Multi-Wavelength Record!\n"));
  EXPECT_THAT(FoundInReport(MultiReport(document, kSampleFormats, HeadFor(""))),
              HasSubstr("No Multi-Wavelength Record!"));
}

TEST(MultiOutput, AnEmptyReportOfManyWavelengthsSaysItsWordsOnce) {
  MultiDocument document;
  MultiSettings settings = document.Settings();
  settings.WorkWLNo = 15;
  document.Configure(settings);
  const std::string text = FoundInReport(MultiReport(document, kSampleFormats, HeadFor("")));
  const std::size_t first = text.find("No Multi-Wavelength Record!");
  ASSERT_NE(first, std::string::npos);
  EXPECT_EQ(text.find("No Multi-Wavelength Record!", first + 1), std::string::npos);
}

TEST(MultiOutput, ReportHasTitleFormulaAndRows) {
  const std::string text = FoundInReport(MultiReport(MultiOf(2), kSampleFormats, HeadFor("/data/run.mul")));
  EXPECT_THAT(text, HasSubstr("Multi Wavelength Test Report\n"));
  EXPECT_THAT(text, HasSubstr("File Name: /data/run.mul\n"));
  EXPECT_THAT(text, HasSubstr("Result = 1.000×Abs(200.0nm)+2.000×Abs(250.0nm)\n"));
  EXPECT_THAT(text, HasSubstr("No. Sample Name Abs(200.0nm) Abs(250.0nm) Result\n"
                              "1 one 0.500 0.600 71.250\n"
                              "2 two 100.00 100.10 1234.6\n"));
}

// Fifteen columns ran over the edge of the paper; with wide type a name ran into the next title.
TEST(MultiOutput, ReportOfManyWavelengthsGoesInPartsThatFitThePage) {
  const auto found = [](std::int32_t wavelengths) {
    return FoundInReport(MultiReport(MultiOf(wavelengths), kSampleFormats, HeadFor("run.mul")));
  };
  const std::string text = found(15);
  EXPECT_THAT(text, HasSubstr("Wavelength 1 - 5\n"));
  EXPECT_THAT(text, HasSubstr("(400.0nm)\n1 one 0.500 0.600 0.700 0.800 0.900\n"));
  EXPECT_THAT(text, HasSubstr("Wavelength 6 - 10\n"));
  EXPECT_THAT(text, HasSubstr("(650.0nm)\n1 one 1.000 1.100 1.200 1.300 1.400\n"));
  EXPECT_THAT(text, HasSubstr("Wavelength 11 - 15\n"));
  EXPECT_THAT(text, HasSubstr("(900.0nm) Result\n1 one 1.500 1.600 1.700 1.800 1.900 71.250\n"));
  EXPECT_THAT(text, testing::ContainsRegex("No. Sample Name (Abs)?.700.0nm. (Abs)?.750.0nm."));
  EXPECT_THAT(found(5), HasSubstr("(400.0nm) Result\n1 one 0.500 0.600 0.700 0.800 0.900 71.250\n"));
  EXPECT_THAT(found(5), Not(HasSubstr("Wavelength 1 - 5")));
  EXPECT_THAT(found(6), HasSubstr("Wavelength 6\nNo. Sample Name Abs(450.0nm) Result\n1 one 1.000 71.250\n"));
}

constexpr const char* kMode1Lines =
    "Conc.(DNA) = [Abs(260.0nm)-Abs(320.0nm)]×(62.9)-[Abs(280.0nm)-Abs(320.0nm)]×(36)\n"
    "Conc.(Protein) = [Abs(280.0nm)-Abs(320.0nm)]×(1552)-[Abs(260.0nm)-Abs(320.0nm)]×(757.3)\n"
    "Radio = [Abs(260.0nm)-Abs(320.0nm)]/[Abs(280.0nm)-Abs(320.0nm)]\n";

TEST(DNAOutput, TextIsTheGridLineByLine) {
  EXPECT_EQ(ExportText(DNASheet(DNAOf(DNATable()), kSampleFormats, HeadFor("/data/run.dna"))),
            "run.dna\n"
            "DNA/Protein Test Report  Time:2024-02-29 13:05:09\n"
            "Analysis Mode: Mode 1\n" +
                std::string(kMode1Lines) +
                "No.\tSample Name\tAbs(260.0nm)\tAbs(280.0nm)\tAbs(320.0nm)\tDNA(ug/ml)\tProtein(ug/ml)\t"
                "Radio\tNote\n"
                "1\ta\t0.500\t0.300\t0.050\t1.5000\t2.5000\t3.5000\tnote of a\n"
                "2\tb\t1.000\t0.500\t0.250\t1.5000\t2.5000\t3.5000\tnote of b\n");
}

TEST(DNAOutput, TheModeIsToldByWhatItsValuesAre) {
  const auto mode = [](std::int32_t stored, const DNAValues& values) {
    DNADocument document;
    document.Begin({stored, values});
    return DNASheet(document, kSampleFormats, HeadFor("")).Lines[2];
  };
  EXPECT_EQ(mode(1, kDNAMode1), "Analysis Mode: Mode 1");
  EXPECT_EQ(mode(2, kDNAMode2), "Analysis Mode: Mode 2");
  EXPECT_EQ(mode(3, kDNAMode2), "Analysis Mode: Custom Mode");
  EXPECT_EQ(mode(1, kDNAMode2), "Analysis Mode: Custom Mode");
  EXPECT_EQ(mode(99, kDNAMode1), "Analysis Mode: Custom Mode");
}

TEST(DNAOutput, FormulasHaveTheFactorsInForce) {
  DNAOption option = DNATable();
  option.WaveLength = {250, 230.25, 330, 0};
  option.Factor = {-1.5, 0, 1e-7, std::nan("")};
  EXPECT_EQ(DNAFormulas(option),
            (std::vector<std::string>{
                "Conc.(DNA) = [Abs(250.0nm)-Abs(330.0nm)]×(-1.5)-[Abs(230.3nm)-Abs(330.0nm)]×(0)",
                "Conc.(Protein) = [Abs(230.3nm)-Abs(330.0nm)]×(1e-07)-[Abs(250.0nm)-Abs(330.0nm)]×(-)",
                "Radio = [Abs(250.0nm)-Abs(330.0nm)]/[Abs(230.3nm)-Abs(330.0nm)]"}));
}

TEST(DNAOutput, EmptyTablesHaveTheirOwnWords) {
  const DNADocument document;
  EXPECT_TRUE(ExportText(DNASheet(document, kSampleFormats, HeadFor("")))
                  .ends_with("\nNo DNA/Protein Test Record!\n"));
  EXPECT_THAT(FoundInReport(DNAReport(document, kSampleFormats, HeadFor(""))),
              HasSubstr("No DNA/Protein Test Record!"));
}

TEST(DNAOutput, ReportHasModeFormulasAndRows) {
  const std::string text = FoundInReport(DNAReport(DNAOf(DNATable()), kSampleFormats, HeadFor("run.dna")));
  EXPECT_THAT(text, HasSubstr("DNA/Protein Test Report\n"));
  EXPECT_THAT(text, HasSubstr("Analysis Mode: Mode 1\n"));
  EXPECT_THAT(text, HasSubstr(kMode1Lines));
  EXPECT_THAT(text, HasSubstr("Radio Note\n"
                              "1 a 0.500 0.300 0.050 1.5000 2.5000 3.5000 note of a\n"));
}

TEST(DNAOutput, NumbersOfASpreadsheetHaveTheirOwnDecimals) {
  const std::string listing = WorkbookText(DNASheet(DNAOf(DNATable()), kSampleFormats, HeadFor("run.dna")));
  EXPECT_THAT(listing, HasSubstr("number 0.3 0.000 "));
  EXPECT_THAT(listing, HasSubstr("number 2.5 0.0000 "));
}

}  // namespace
}  // namespace spectrane
