#include "cli/batchsupport.h"
#include "files/wlsfile.h"
#include "files/wlsfile2.h"

namespace spectrane {
namespace {

using ProcessedJson = nlohmann::ordered_json;

/// Measured and processed spectra to work on.
class ProcessingCommands : public testing::Test {
 protected:
  std::string Path(const std::string& name) const { return folder_.Path(name); }

  template <typename RecordT>
  void Save(const FileModule<WLSOption, RecordT>& module, const std::string& name,
            const std::vector<RecordT>& records, std::int32_t mode = 1) const {
    WLSOption option{400, 500, 3, -0.25, 120, -1, 4000, 5, 2, 1, 1, 3, 0, mode};
    const FileFault fault =
        SaveDataFile(module, Path(name), option, static_cast<std::int32_t>(records.size()),
                     [&records](std::int32_t i) { return records[static_cast<std::size_t>(i)]; });
    ASSERT_FALSE(fault) << FaultWords(fault);
  }
  /// A measured spectrum with these transmittances [%T] from `first` nm on by `step`.
  std::string Measured(const std::string& name, const std::vector<int>& percents, double first = 500,
                       double step = -1, std::int32_t mode = 1) const {
    std::vector<WLSRecord> records;
    for (const int percent : percents) {
      records.push_back(
          {percent * 100 + 50, 10050, 50, first + step * static_cast<double>(records.size()), 3});
    }
    Save(WLSModule(), name, records, mode);
    return Path(name);
  }
  std::string Processed(const std::string& name, const std::vector<double>& abs) const {
    std::vector<WLS2Record> records;
    for (const double value : abs) {
      records.push_back({600.0 - 2.0 * static_cast<double>(records.size()), 7.5, value});
    }
    Save(WLS2Module(), name, records);
    return Path(name);
  }
  static ProcessedJson Dumped(const std::string& path) {
    const BatchOutcome outcome = Batch({"dump", path});
    EXPECT_EQ(outcome.Status, 0) << outcome.Err;
    return ProcessedJson::parse(outcome.Out);
  }
  static std::vector<double> Column(const ProcessedJson& dump, const char* field) {
    std::vector<double> column;
    for (const ProcessedJson& row : dump["data"]) column.push_back(row[field].get<double>());
    return column;
  }

  TemporaryFolder folder_;
};

TEST_F(ProcessingCommands, SmoothWritesTheSmoothedSpectrum) {
  const std::string in = Processed("in.wls", {1, 2, 4, 8, 16});
  const std::string out = Path("out.wls");
  const BatchOutcome outcome = Batch({"smooth", in, out});
  ASSERT_EQ(outcome.Status, 0) << outcome.Err;
  EXPECT_EQ(outcome.Out, "{\"kind\":\"wls2\",\"records\":5}\n");
  const ProcessedJson dump = Dumped(out);
  EXPECT_EQ(dump["kind"], "wls2");
  EXPECT_EQ(Column(dump, "Wavelength"), (std::vector<double>{600, 598, 596, 594, 592}));
  const std::vector<double> abs = Column(dump, "Abs");
  EXPECT_NEAR(abs[0], 29.0 / 26, 1e-14);
  EXPECT_NEAR(abs[2], (-3.0 + 24 + 68 + 96 - 48) / 35, 1e-14);
  EXPECT_NEAR(abs[4], (-12.0 + 96 + 272) / 26, 1e-13);
}

TEST_F(ProcessingCommands, TheHomeViewGoesAlongAndTheEnergyDoesNot) {
  const std::string in = Measured("in.wls", {90, 50, 10, 50, 90}, 500, -1, 3);
  ASSERT_EQ(Batch({"smooth", in, Path("out.wls")}).Status, 0);
  const ProcessedJson option = Dumped(Path("out.wls"))["option"];
  EXPECT_EQ(option["StartWavelength"], 400.0);
  EXPECT_EQ(option["EndWavelength"], 500.0);
  EXPECT_EQ(option["AbsTop"], 3.0);
  EXPECT_EQ(option["AbsBottom"], -0.25);
  EXPECT_EQ(option["TransTop"], 120.0);
  EXPECT_EQ(option["TransBottom"], -1.0);
  EXPECT_EQ(option["PointCount"], 5);
  EXPECT_EQ(option["DisplayMode"], 1);
  for (const char* field :
       {"EnergyTop", "EnergyBottom", "EnergyAmp", "EnergyFilter", "EnergyLamp", "IntervalWavelength"}) {
    EXPECT_EQ(option[field], 0) << field;
  }
}

TEST_F(ProcessingCommands, DerivativeDividesByTheStep) {
  const std::string in = Processed("in.wls", {1, 2, 4});
  ASSERT_EQ(Batch({"derivative", in, Path("out.wls")}).Status, 0);
  const ProcessedJson dump = Dumped(Path("out.wls"));
  EXPECT_EQ(Column(dump, "Abs"), (std::vector<double>{-0.5, -1, -1}));
  EXPECT_NEAR(Column(dump, "Trans")[0], 316.227766016838, 1e-9);
}

TEST_F(ProcessingCommands, WeightedMeansComeFirstWhereTheyAreWanted) {
  const std::string in = Measured("in.wls", {90, 50, 10, 50, 90, 20, 70});
  ASSERT_EQ(Batch({"derivative", in, Path("plain.wls")}).Status, 0);
  ASSERT_EQ(Batch({"derivative", in, Path("weighted.wls"), "--smooth-enable"}).Status, 0);
  const ProcessedJson means = ProcessedJson::parse(Batch({"dump", in, "--smooth-enable"}).Out);
  const std::vector<double> weighted = Column(Dumped(Path("weighted.wls")), "Abs");
  EXPECT_NEAR(weighted[0], Column(means, "Abs")[0] - Column(means, "Abs")[1], 1e-14);
  EXPECT_GT(std::abs(weighted[0] - Column(Dumped(Path("plain.wls")), "Abs")[0]), 0.01);
}

TEST_F(ProcessingCommands, TooFewPointsAreRefusedAndNoneGiveNone) {
  const BatchOutcome three = Batch({"smooth", Processed("three.wls", {1, 2, 3}), Path("out.wls")});
  EXPECT_EQ(three.Status, 1);
  EXPECT_EQ(three.Out, "");
  EXPECT_EQ(three.Err, "three.wls: too few points\n");
  EXPECT_EQ(Batch({"derivative", Processed("one.wls", {1}), Path("out.wls")}).Status, 1);
  EXPECT_FALSE(std::filesystem::exists(Path("out.wls")));
  const BatchOutcome none = Batch({"smooth", Processed("none.wls", {}), Path("out.wls")});
  EXPECT_EQ(none.Status, 0) << none.Err;
  EXPECT_EQ(Dumped(Path("out.wls"))["data"].size(), 0u);
}

TEST_F(ProcessingCommands, EqualNeighboursHaveNoDerivative) {
  const std::string in = Measured("in.wls", {90, 50, 10}, 500, 0);
  const BatchOutcome outcome = Batch({"derivative", in, Path("out.wls")});
  EXPECT_EQ(outcome.Status, 1);
  EXPECT_EQ(outcome.Err, "in.wls: two neighbouring points with the same wavelength\n");
}

TEST_F(ProcessingCommands, CalcCombinesInTheModeAsked) {
  const std::string a = Measured("a.wls", {10, 10, 10, 10, 10});
  // Rising: turned round while it is read.
  const std::string b = Measured("b.wls", {50, 50, 50, 50, 50}, 496, 1);
  const BatchOutcome outcome = Batch({"calc", "sub", a, b, Path("abs.wls")});
  ASSERT_EQ(outcome.Status, 0) << outcome.Err;
  EXPECT_EQ(outcome.Out, "{\"kind\":\"wls2\",\"records\":5}\n");
  EXPECT_EQ(outcome.Err, "");
  ASSERT_EQ(Batch({"calc", "sub", a, b, Path("trans.wls"), "--mode", "trans"}).Status, 0);
  const ProcessedJson abs = Dumped(Path("abs.wls"));
  const ProcessedJson trans = Dumped(Path("trans.wls"));
  EXPECT_NEAR(Column(abs, "Abs")[2], 0.698970004336, 1e-11);
  EXPECT_NEAR(Column(abs, "Trans")[2], 20, 1e-11);
  EXPECT_EQ(abs["option"]["DisplayMode"], 1);
  EXPECT_NEAR(Column(trans, "Trans")[2], -40, 1e-11);
  EXPECT_EQ(Column(trans, "Abs")[2], 3);
  EXPECT_EQ(trans["option"]["DisplayMode"], 2);
}

TEST_F(ProcessingCommands, CalcTellsWhatItLeavesOut) {
  const std::string a = Measured("a.wls", {10, 10, 10});
  const std::string apart = Measured("apart.wls", {10, 10, 10}, 300);
  const BatchOutcome empty = Batch({"calc", "add", a, apart, Path("empty.wls")});
  EXPECT_EQ(empty.Status, 0);
  EXPECT_EQ(empty.Out, "{\"kind\":\"wls2\",\"records\":0}\n");
  EXPECT_NE(empty.Err.find("no wavelengths in common"), std::string::npos) << empty.Err;
  // 491 nm is looked for where a uniform step would put it, which is behind the end.
  std::vector<WLSRecord> uneven;
  for (const double wavelength : {500.0, 491.0, 490.0}) uneven.push_back({5050, 10050, 50, wavelength, 3});
  Save(WLSModule(), "uneven.wls", uneven);
  const std::string b = Measured("b.wls", {10}, 491);
  const BatchOutcome skipped = Batch({"calc", "add", b, Path("uneven.wls"), Path("skipped.wls")});
  EXPECT_EQ(skipped.Status, 0);
  EXPECT_EQ(skipped.Out, "{\"kind\":\"wls2\",\"records\":0}\n");
  EXPECT_EQ(skipped.Err,
            "The result has no points: no point of the second spectrum stands beside one of the first\n"
            "1 point left out: no point of the second spectrum stands beside it\n");
}

TEST_F(ProcessingCommands, WrongKindsAndTakenOutputsAreRefused) {
  const std::string measured = Measured("a.wls", {10, 10, 10, 10});
  const std::string processed = Processed("p.wls", {1, 2, 3, 4});
  const BatchOutcome wrong = Batch({"calc", "add", measured, processed, Path("out.wls")});
  EXPECT_EQ(wrong.Status, 1);
  EXPECT_EQ(wrong.Err.substr(0, 6), "p.wls:") << wrong.Err;
  EXPECT_EQ(Batch({"smooth", Path("gone.wls"), Path("out.wls")}).Status, 1);
  EXPECT_FALSE(std::filesystem::exists(Path("out.wls")));

  EXPECT_EQ(Batch({"smooth", measured, processed}).Status, 1);
  EXPECT_EQ(Batch({"smooth", measured, processed, "--force"}).Status, 0);
  EXPECT_EQ(Dumped(processed)["data"].size(), 4u);
  EXPECT_EQ(Batch({"calc", "pow", measured, measured, Path("out.wls")}).Status, 2);
  EXPECT_EQ(Batch({"calc", "add", measured, measured, Path("out.wls"), "--mode", "energy"}).Status, 2);
}

TEST_F(ProcessingCommands, ADamagedSourceLeavesNoFile) {
  const std::string a = Measured("a.wls", {10, 10, 10, 10});
  std::filesystem::resize_file(a, std::filesystem::file_size(a) - 3);
  for (const std::vector<std::string>& command : std::vector<std::vector<std::string>>{
           {"smooth", a, Path("out.wls")}, {"calc", "add", a, a, Path("out.wls")}}) {
    const BatchOutcome outcome = Batch(command);
    EXPECT_EQ(outcome.Status, 1);
    EXPECT_EQ(outcome.Err.substr(0, 6), "a.wls:") << outcome.Err;
  }
  EXPECT_FALSE(std::filesystem::exists(Path("out.wls")));
}

}  // namespace
}  // namespace spectrane
