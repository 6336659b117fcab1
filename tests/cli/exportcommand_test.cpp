#include <QProcess>

#include "base/notfinite.h"
#include "cli/batchsupport.h"
#include "cli/processes.h"
#include "files/basicfile.h"
#include "files/bslfile.h"
#include "files/samplefiles.h"
#include "files/tsfile.h"
#include "files/wlsfile.h"

namespace spectrane {
namespace {

class ExportCommand : public testing::Test {
 protected:
  std::string Path(const std::string& name) const { return folder_.Path(name); }
  std::string Photometry() const {
    WriteBytes(Path("run.bas"), HeaderBytes(11) + BasicOptionBytes(1) + Long(50) + Long(100) + Long(0) +
                                    Double546() + Padded("\xB5g ", 256));
    return Path("run.bas");
  }
  /// 100, 10 and 1 %T at 500, 501 and 502 nm.
  std::string Spectrum() const {
    const std::vector<WLSRecord> points = {
        {10050, 10050, 50, 500, 1}, {1050, 10050, 50, 501, 1}, {150, 10050, 50, 502, 1}};
    WLSOption option{500, 502, 3, 0, 100, 0, 65535, 0, 1, 1, 1, 1, 3, 1};
    const FileFault fault = SaveDataFile(WLSModule(), Path("scan.wls"), option, 3,
                                         [&](std::int32_t i) { return points[static_cast<std::size_t>(i)]; });
    EXPECT_FALSE(fault);
    return Path("scan.wls");
  }
  /// The real program, which has fonts.
  BatchOutcome Program(const std::vector<std::string>& arguments) const {
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("SPECTRANE_HOME"), QString::fromStdString(folder_.Path()));
    process.setProcessEnvironment(environment);
    process.start(QStringLiteral(SPECTRANE_BIN "/spectrane-cli"), testing_processes::Arguments(arguments));
    EXPECT_TRUE(process.waitForFinished(60000));
    return {process.exitCode(), process.readAllStandardOutput().toStdString(),
            process.readAllStandardError().toStdString()};
  }

  TemporaryFolder folder_;
};

TEST_F(ExportCommand, TextOfAPhotometryFile) {
  const ScopedVariable home("SPECTRANE_HOME", folder_.Path().c_str());
  const BatchOutcome outcome = Batch({"export", Photometry(), Path("run.txt")});
  ASSERT_EQ(outcome.Status, 0) << outcome.Err;
  std::string text = ReadBytes(Path("run.txt"));
  const std::size_t time = text.find("Time:") + 5;
  text.replace(time, 19, "now");
  EXPECT_EQ(text,
            "run.bas\n"
            "Photometry Test Report  Time:now\n"
            "Photometry Option  Wavelength: 546.0nm\n"
            "No.\tWavelength(nm)\tAbsorbance(Abs)\tTransmittance(%T)\tEnergy\tNote\n"
            "1\t546.0\t0.301\t50.0\t50\t\xC2\xB5g\n");
}

TEST_F(ExportCommand, APictureThatTheWindowRefusesIsRefusedInItsWords) {
  const BatchOutcome outcome = Program({"export", Photometry(), Path("run.bmp")});
  ExpectRefused(outcome, "run.bas",
                "Photometry can't save as BMP format file.Please select TXT or CSV format.");
  EXPECT_EQ(NamesIn(folder_.Path()), 1u);
}

TEST_F(ExportCommand, SamplesAtSeveralWavelengths) {
  ASSERT_TRUE(WriteSamples(MultiModule(), Path("run.mul"), MultiTable(2), {MultiSample("one", 0.5, 71.25)}));
  for (const char* const name : {"run.txt", "run.xls", "run.pdf"})
    EXPECT_EQ(Program({"export", Path("run.mul"), Path(name)}).Status, 0) << name;
  EXPECT_NE(ReadBytes(Path("run.txt"))
                .find("Result = 1.000×Abs(200.0nm)+2.000×Abs(250.0nm)\n"
                      "No.\tSample Name\tAbs(200.0nm)\tAbs(250.0nm)\tResult\n"
                      "1\tone\t0.500\t0.600\t71.250\n"),
            std::string::npos);
  EXPECT_EQ(ReadBytes(Path("run.xls")).substr(0, 4), "\xD0\xCF\x11\xE0");
  EXPECT_EQ(ReadBytes(Path("run.pdf")).substr(0, 5), "%PDF-");
  ExpectRefused(Program({"export", Path("run.mul"), Path("run.bmp")}), "run.mul",
                "Multi Wavelength can't save as BMP format file.Please select TXT or CSV format.");
}

TEST_F(ExportCommand, SamplesOfDNAAndProtein) {
  ASSERT_TRUE(WriteSamples(DNAModule(), Path("run.dna"), DNATable(), {DNASample("one", 0.5, 0.3, 0.05)}));
  for (const char* const name : {"run.txt", "run.xls", "run.pdf"})
    EXPECT_EQ(Program({"export", Path("run.dna"), Path(name)}).Status, 0) << name;
  EXPECT_NE(ReadBytes(Path("run.txt"))
                .find("\tRadio\tNote\n1\tone\t0.500\t0.300\t0.050\t1.5000\t2.5000\t3.5000\tnote of one\n"),
            std::string::npos);
  ExpectRefused(Program({"export", Path("run.dna"), Path("run.bmp")}), "run.dna",
                "DNA/Protein Test can't save as BMP format file.Please select TXT or CSV format.");
}

TEST_F(ExportCommand, PictureReportAndSpreadsheetOfASpectrum) {
  const std::string file = Spectrum();
  for (const char* const name : {"scan.bmp", "scan.pdf", "scan.xls", "scan.TXT"}) {
    const BatchOutcome outcome = Program({"export", file, Path(name)});
    EXPECT_EQ(outcome.Status, 0) << name << outcome.Err;
  }
  EXPECT_EQ(ReadBytes(Path("scan.bmp")).substr(0, 2), "BM");
  EXPECT_EQ(ReadBytes(Path("scan.pdf")).substr(0, 5), "%PDF-");
  EXPECT_EQ(ReadBytes(Path("scan.xls")).substr(0, 4), "\xD0\xCF\x11\xE0");
  EXPECT_NE(ReadBytes(Path("scan.TXT")).find("3\t502.0\t2.000\t1.0\t150\t10050\t50\n"), std::string::npos);
}

TEST_F(ExportCommand, TextAndSpreadsheetOfABaseline) {
  const BSLOption option{501, 500, 45000.5, 2};
  ASSERT_FALSE(SaveDataFile(BSLModule(), Path("own.bsl"), option, 2, [](std::int32_t i) {
    return BSLRecord{500.0 + i, i + 1, 1000 + i};
  }));
  EXPECT_EQ(Program({"export", Path("own.bsl"), Path("own.txt")}).Status, 0);
  EXPECT_EQ(ReadBytes(Path("own.txt")), "No\tWL.(nm)\tAmp\tEnergy\n1\t500.0\t1\t1000\n2\t501.0\t2\t1001\n");
  EXPECT_EQ(Program({"export", Path("own.bsl"), Path("own.xls")}).Status, 0);
  EXPECT_EQ(ReadBytes(Path("own.xls")).substr(0, 4), "\xD0\xCF\x11\xE0");
  ExpectRefused(Program({"export", Path("own.bsl"), Path("own.pdf")}), "own.bsl", "has no report");
  ExpectRefused(Program({"export", Path("own.bsl"), Path("own.bmp")}), "own.bmp", "cannot be drawn");
}

TEST_F(ExportCommand, EveryFormOfATimeScan) {
  TSOption option;
  option.WorkWL = 340;
  option.EndSecond = 3;
  option.IntervalSecond = 3;
  option.DisplayMode = 1;
  option.AbsTop = 3;
  option.FullEnergy = 10100;
  option.DarkEnergy = 100;
  constexpr std::int32_t kEnergies[] = {5100, 1100, 5100, 5100};
  const FileFault fault = SaveDataFile(TSModule(), Path("run.tis"), option, 4, [&](std::int32_t i) {
    return TSRecord{kEnergies[i], static_cast<double>(i)};
  });
  ASSERT_FALSE(fault);
  for (const char* const name : {"run.bmp", "run.pdf", "run.xls", "run.txt"}) {
    const BatchOutcome outcome = Program({"export", Path("run.tis"), Path(name)});
    EXPECT_EQ(outcome.Status, 0) << name << outcome.Err;
  }
  EXPECT_EQ(ReadBytes(Path("run.bmp")).substr(0, 2), "BM");
  EXPECT_EQ(ReadBytes(Path("run.pdf")).substr(0, 5), "%PDF-");
  EXPECT_EQ(ReadBytes(Path("run.xls")).substr(0, 4), "\xD0\xCF\x11\xE0");
  const std::string text = ReadBytes(Path("run.txt"));
  EXPECT_NE(text.find("Energy(0%T)\n1\t1.0\t1.000\t10.0\t1100\t10100\t100\n"), std::string::npos)
      << "the peak, searched with the stored settings";
  EXPECT_NE(text.find("4\t3.0\t0.301\t50.0\t5100\t10100\t100\n"), std::string::npos);
}

TEST_F(ExportCommand, WhatCannotBeDoneIsRefusedAndLeavesNothing) {
  const std::string file = Photometry();
  ExpectRefused(Program({"export", file, Path("run.csv")}), "run.csv",
                "not one of .txt, .xls, .bmp and .pdf");
  ExpectRefused(Program({"export", file, Path("run")}), "run", "not one of");
  ExpectRefused(Program({"export", file, Path("missing/run.txt")}), "run.txt", "No such file");
  ExpectRefused(Program({"export", Path("none.bas"), Path("run.txt")}), "none.bas", "");
  ExpectRefused(Program({"export", file, file}), "run.bas", "");
  ExpectRefused(Program({"export", "--force", file, file}), "run.bas", "is the file that the command reads");
  EXPECT_EQ(NamesIn(folder_.Path()), 1u);
}

TEST_F(ExportCommand, AnExistingFileIsReplacedOnlyByForce) {
  const std::string file = Photometry();
  WriteBytes(Path("run.txt"), "old");
  ExpectRefused(Program({"export", file, Path("run.txt")}), "run.txt", "exists already");
  EXPECT_EQ(ReadBytes(Path("run.txt")), "old");
  EXPECT_EQ(Program({"export", "--force", file, Path("run.txt")}).Status, 0);
  EXPECT_NE(ReadBytes(Path("run.txt")), "old");
}

// The rows that the sheet has no place for were left out, and the command ended well.
TEST_F(ExportCommand, MoreRowsThanASpreadsheetHoldsAreRefused) {
  // Three lines and the titles stand above the rows.
  constexpr std::int32_t kMost = 65536 - 4;
  ASSERT_FALSE(SaveDataFile(BasicModule(), Path("long.bas"), BasicOption(), kMost + 1, [](std::int32_t) {
    return BasicRecord{50, 100, 0, 546, ""};
  }));
  WriteBytes(Path("run.xls"), "old");
  ExpectRefused(Program({"export", "--force", Path("long.bas"), Path("run.xls")}), "run.xls",
                "a spreadsheet of this kind holds 65536 rows; export as text");
  EXPECT_EQ(ReadBytes(Path("run.xls")), "old");
  EXPECT_EQ(NamesIn(folder_.Path()), 2u);
}

TEST_F(ExportCommand, E04_NoCommandWritesOntoTheSettingsOrOntoWhatItReads) {
  namespace fs = std::filesystem;
  const ScopedVariable home("SPECTRANE_HOME", folder_.Path().c_str());
  const std::string scan = Spectrum();
  WriteBytes(Path("config.ini"), "[Option]\nOperator=Anna\n");
  WriteBytes(Path("pack.json"), R"({"kind":"bas"})");
  WriteBytes(Path("in.csv"), "500,0.1\n501,0.2\n502,0.3\n");
  // Each command with its last argument to come, and what it reads.
  const std::vector<std::pair<std::vector<std::string>, std::string>> commands = {
      {{"pack", Path("pack.json")}, "pack.json"},
      {{"export", scan}, "scan.wls"},
      {{"import", Path("in.csv")}, "in.csv"},
      {{"smooth", scan}, "scan.wls"},
      {{"derivative", scan}, "scan.wls"},
      {{"calc", "add", scan, scan}, "scan.wls"},
      {{"instrument", "measure", "--wavelength", "546", "--count", "1", "--out"}, ""},
      {{"instrument", "scan", "--from", "500", "--to", "510", "--step", "1", "--yes", "--out"}, ""}};
  fs::create_symlink("config.ini", Path("link.wls"));
  fs::create_hard_link(Path("config.ini"), Path("hard.wls"));
  for (const auto& [words, reads] : commands) {
    const std::string what = words[0] + " " + words[1];
    const auto refused = [&](const std::string& name, const char* reason) {
      std::vector<std::string> line = words;
      line.insert(line.end(), {Path(name), "--force"});
      const std::string before = ReadBytes(Path(name));
      ExpectRefused(Batch(line), name, reason);
      EXPECT_EQ(ReadBytes(Path(name)), before) << what << " onto " << name;
    };
    for (const char* settings : {"link.wls", "hard.wls"}) refused(settings, "holds the settings");
    if (words[0] == "pack" || words[0] == "export") refused("config.ini", "holds the settings");
    if (reads.empty()) continue;
    // Under a name with the ending that the command asks for.
    const std::string other = "other-" + words[0] + ".wls";
    fs::create_hard_link(Path(reads), Path(other));
    refused(other, "the file that the command reads");
  }
  EXPECT_TRUE(fs::is_symlink(Path("link.wls")));
  EXPECT_EQ(fs::hard_link_count(Path("config.ini")), 2u);
}

TEST_F(ExportCommand, StatsGivesMaximumMinimumAndMeans) {
  const BatchOutcome outcome = Batch({"stats", Spectrum(), "502", "501"});
  ASSERT_EQ(outcome.Status, 0) << outcome.Err;
  const nlohmann::json json = nlohmann::json::parse(outcome.Out);
  const auto expect = [&json](const char* point, double wavelength, double abs, double trans) {
    EXPECT_EQ(json[point].value("Wavelength", 0.0), wavelength);
    EXPECT_NEAR(json[point]["Abs"].get<double>(), abs, 1e-12);
    EXPECT_NEAR(json[point]["Trans"].get<double>(), trans, 1e-12);
  };
  expect("max", 501, 1, 10);
  expect("min", 502, 2, 1);
  expect("average", 0, 1.5, 5.5);
  ExpectRefused(Batch({"stats", Photometry(), "1", "2"}), "run.bas", "no measured spectrum");
  ExpectWrongUsage(Batch({"stats", Spectrum(), "1", "x"}));
}

}  // namespace
}  // namespace spectrane
