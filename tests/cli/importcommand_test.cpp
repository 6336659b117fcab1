#include <QProcess>

#include "cli/batchsupport.h"
#include "files/wlsfile2.h"
#include "spectrum/spectrumdocument.h"

namespace spectrane {
namespace {

std::string ExampleFilePath(const std::string& name) {
  return std::string(SPECTRANE_EXAMPLES "/") + name;
}

class CurveExchange : public testing::Test {
 protected:
  std::string Put(const std::string& name, const std::string& text) {
    WriteBytes(folder_.Path(name), text);
    return folder_.Path(name);
  }
  std::string Path(const std::string& name) const { return folder_.Path(name); }

  nlohmann::json Parsed(const BatchOutcome& outcome) {
    EXPECT_EQ(outcome.Status, 0) << outcome.Err;
    return nlohmann::json::parse(outcome.Out, nullptr, false);
  }

 private:
  TemporaryFolder folder_;
};

TEST_F(CurveExchange, ASpectrumGoesOutAndComesBackBitForBit) {
  for (const char* const name : {"holmium.wls", "holmium-processed.wls"}) {
    SCOPED_TRACE(name);
    const std::string csv = Path(std::string(name) + ".csv");
    const std::string back = Path(std::string("back-") + name);
    const auto exported = Parsed(Batch({"export", ExampleFilePath(name), csv}));
    EXPECT_EQ(exported["bytes"], ReadBytes(csv).size());
    EXPECT_EQ(Parsed(Batch({"import", csv, back})),
              nlohmann::json::parse(R"({"kind":"wls2","records":861})"));
    const auto out = Parsed(Batch({"dump", ExampleFilePath(name)}))["data"];
    const auto in = Parsed(Batch({"dump", back}))["data"];
    for (std::size_t i = 0; i < 861; ++i) {
      EXPECT_EQ(in[i]["Wavelength"], out[i]["Wavelength"]);
      EXPECT_EQ(in[i]["Abs"], out[i]["Abs"]);
      EXPECT_EQ(in[i]["Trans"], out[i]["Trans"]);
    }
    SpectrumDocument document(SpectrumDocument::Kind::Processed);
    EXPECT_TRUE(document.OpenFile(back)) << "what comes in is a processed spectrum";
  }
}

TEST_F(CurveExchange, AnIndependentReaderTakesTheJcampFiles) {
  for (const std::string name : {"holmium.wls", "holmium-processed.wls", "enzyme.tis"}) {
    SCOPED_TRACE(name);
    const std::string file = Path(name + ".jdx");
    ASSERT_EQ(Batch({"export", ExampleFilePath(name), file}).Status, 0);
    QProcess reader;
    reader.start(QStringLiteral("python3"), {QStringLiteral(SPECTRANE_SOURCE "/tests/exchange/readjcamp.py"),
                                             QString::fromStdString(file)});
    if (!reader.waitForStarted(5000)) GTEST_SKIP() << "there is no python3 here";
    ASSERT_TRUE(reader.waitForFinished(20000));
    ASSERT_EQ(reader.exitCode(), 0) << reader.readAllStandardError().toStdString();
    const auto curve = nlohmann::json::parse(reader.readAllStandardOutput().toStdString());
    const auto data = Parsed(Batch({"dump", ExampleFilePath(name)}))["data"];
    ASSERT_EQ(curve["x"].size(), data.size());
    for (std::size_t i = 0; i < data.size(); ++i) {
      const char* const x = name == "enzyme.tis" ? "Time" : "Wavelength";
      EXPECT_NEAR(curve["x"][i].get<double>(), data[i][x].get<double>(), 1e-9);
      EXPECT_NEAR(curve["y"][i].get<double>(), data[i]["Abs"].get<double>(), 1e-8);
    }
  }
}

TEST_F(CurveExchange, JcampComesBackToNinePlaces) {
  const std::string file = Path("h.jdx");
  ASSERT_EQ(Batch({"export", ExampleFilePath("holmium.wls"), file}).Status, 0);
  ASSERT_EQ(Batch({"import", file, Path("back.wls")}).Status, 0);
  const auto out = Parsed(Batch({"dump", ExampleFilePath("holmium.wls")}))["data"];
  const auto in = Parsed(Batch({"dump", Path("back.wls")}))["data"];
  ASSERT_EQ(in.size(), 861u);
  for (std::size_t i = 0; i < 861; ++i) {
    EXPECT_EQ(in[i]["Wavelength"], out[i]["Wavelength"]);
    EXPECT_NEAR(in[i]["Abs"].get<double>(), out[i]["Abs"].get<double>(), 1e-9);
  }
}

TEST_F(CurveExchange, SmoothEnableHoldsForCurvesToo) {
  ASSERT_EQ(Batch({"export", ExampleFilePath("holmium.wls"), Path("s.csv"), "--smooth-enable"}).Status, 0);
  ASSERT_EQ(Batch({"export", ExampleFilePath("holmium.wls"), Path("p.csv")}).Status, 0);
  EXPECT_NE(ReadBytes(Path("s.csv")), ReadBytes(Path("p.csv")));
}

TEST_F(CurveExchange, TimeScansGoOutAndStayOut) {
  ASSERT_EQ(Batch({"export", ExampleFilePath("enzyme.tis"), Path("e.csv")}).Status, 0);
  ASSERT_EQ(Batch({"export", ExampleFilePath("enzyme.tis"), Path("e.jdx")}).Status, 0);
  EXPECT_TRUE(ReadBytes(Path("e.csv")).starts_with("Time (s),Absorbance (Abs),Transmittance (%T)\r\n0,"));
  EXPECT_NE(ReadBytes(Path("e.jdx")).find("##XUNITS=SECONDS\r\n"), std::string::npos);
  ExpectRefused(Batch({"import", Path("e.csv"), Path("x.wls")}), "e.csv", "no wavelength");
  ExpectRefused(Batch({"import", Path("e.jdx"), Path("x.wls")}), "e.jdx", "no wavelength");
  EXPECT_FALSE(std::filesystem::exists(Path("x.wls")));
}

TEST_F(CurveExchange, OperatorAndCompanyStandInTheHead) {
  std::filesystem::create_directory(Path("home"));
  Put("home/config.ini", "[Option]\nOpearator=M. Weber $$\nDepartment=Lab 5\n");
  const ScopedVariable home("SPECTRANE_HOME", Path("home").c_str());
  ASSERT_EQ(Batch({"export", ExampleFilePath("holmium.wls"), Path("h.jdx")}).Status, 0);
  const std::string text = ReadBytes(Path("h.jdx"));
  EXPECT_NE(text.find("##ORIGIN=Lab 5\r\n##OWNER=M. Weber $_\r\n"), std::string::npos) << text.substr(0, 300);
}

TEST_F(CurveExchange, FilesWithoutACurveHaveNoSuchExport) {
  for (const char* const name : {"photometry.bas", "dye.qua", "multi.mul", "nucleic.dna", "baseline.bsl"}) {
    for (const char* const ending : {".csv", ".jdx"}) {
      const BatchOutcome outcome = Batch({"export", ExampleFilePath(name), Path(std::string("x") + ending)});
      EXPECT_EQ(outcome.Status, 1) << name;
      EXPECT_FALSE(std::filesystem::exists(Path(std::string("x") + ending))) << name;
    }
  }
}

TEST_F(CurveExchange, AnEndingThatNoCurveHasNamesThoseThatItHas) {
  ExpectRefused(Batch({"export", ExampleFilePath("holmium.wls"), Path("x.doc")}), "x.doc",
                "not one of .txt, .xls, .bmp, .pdf, .csv and .jdx");
}

TEST_F(CurveExchange, RefusesWhatCannotComeIn) {
  const std::string good = Put("good.csv", "400,1\n401,2\n");
  ExpectRefused(Batch({"import", Path("none.csv"), Path("x.wls")}), "none.csv", "");
  ExpectRefused(Batch({"import", Put("a.doc", "400,1\n"), Path("x.wls")}), "a.doc", "not one of");
  ExpectRefused(Batch({"import", good, Path("x.csv")}), "x.csv", "not a .wls file");
  ExpectRefused(Batch({"import", Put("b.csv", "no numbers\n"), Path("x.wls")}), "b.csv", "has no points");
  ExpectRefused(Batch({"import", Put("c.jdx", "400,1\n"), Path("x.wls")}), "c.jdx", "no curve");
  const std::string taken = Put("taken.wls", "precious");
  ExpectRefused(Batch({"import", good, taken}), "taken.wls", "exists already");
  EXPECT_EQ(ReadBytes(taken), "precious");
  EXPECT_EQ(Batch({"import", good, taken, "--force"}).Status, 0);
  EXPECT_FALSE(std::filesystem::exists(Path("x.wls")));
}

TEST_F(CurveExchange, SaysWhatWasPassedOver) {
  const BatchOutcome outcome =
      Batch({"import", Put("a.csv", "nm,Abs\n400,1\n401,-\n402,2\nend\n"), Path("x.wls")});
  EXPECT_EQ(outcome.Status, 0);
  EXPECT_EQ(outcome.Err, "a.csv: passed over 1 line behind the table, 1 point without numbers\n");
}

}  // namespace
}  // namespace spectrane
