// fit and conc.

#include <cmath>
#include <filesystem>

#include "cli/batchsupport.h"

namespace spectrane {
namespace {

using Json = nlohmann::ordered_json;

/// A quantitation whose settings are those of the folder of the test.
class QuantitationCommands : public testing::Test {
 protected:
  std::string Path(const std::string& name) const { return folder_.Path(name); }
  /// The file of an option block: standards of one wavelength, fitted by `method`, with more members put in.
  std::string Packed(int method, const std::vector<std::pair<double, double>>& standards,
                     const Json& members = Json::object()) const {
    Json option = {{"FittingMethod", method}, {"SampleNumber", standards.size()}, {"CurveItem", 1},
                   {"WaveLengthNumber", 1},   {"CurveK", {7.5, 7.5, 7.5, 7.5}},   {"CurveR", 0.5}};
    for (std::size_t i = 0; i < standards.size(); ++i) {
      option["StandardAbs"][i] = {standards[i].first};
      option["StandardConc"][i] = standards[i].second;
      option["StandardAbsSet"][i] = true;
      option["StandardConcSet"][i] = true;
    }
    option.update(members);
    const std::string path = Path("a.qua");
    const Json document = {{"kind", "qua"}, {"option", option}, {"data", {{{"Name", "one"}}}}};
    const BatchOutcome pack = Batch({"pack", "-", path, "--force"}, document.dump());
    EXPECT_EQ(pack.Status, 0) << pack.Err;
    return path;
  }
  static std::string Fit(const std::string& path) {
    const BatchOutcome outcome = Batch({"fit", path});
    EXPECT_EQ(outcome.Status, 0) << outcome.Err;
    EXPECT_EQ(outcome.Err, "");
    return outcome.Out;
  }
  static std::string Conc(const std::string& path, std::vector<std::string> absorbances) {
    absorbances.insert(absorbances.begin(), {"conc", path});
    const BatchOutcome outcome = Batch(absorbances);
    EXPECT_EQ(outcome.Status, 0) << outcome.Err;
    return outcome.Out;
  }
  TemporaryFolder folder_;
  ScopedVariable home_{"SPECTRANE_HOME", Path("home").c_str()};
};

TEST_F(QuantitationCommands, FitOfALineThroughZero) {
  EXPECT_EQ(Fit(Packed(0, {{1, 2}, {2, 4}})),
            "{\"CurveK\":[0.0,2.0,0.0,0.0],\"CurveR\":1.0,\"CurveValid\":true,"
            "\"equation\":\"Conc.=(2.000)xA  r = 1.000000\"}\n");
}

TEST_F(QuantitationCommands, FitOfAFallingLineHasAPositiveR) {
  EXPECT_EQ(Fit(Packed(1, {{1, 4}, {1, 4}, {3, 2}, {3, 2}})),
            "{\"CurveK\":[5.0,-1.0,0.0,0.0],\"CurveR\":1.0,\"CurveValid\":true,"
            "\"equation\":\"Conc.=(-1.000)xA+(5.000)  r = 1.000000\"}\n");
}

TEST_F(QuantitationCommands, FitOfAParabola) {
  EXPECT_EQ(Fit(Packed(2, {{0, 1}, {1, 3}, {2, 7}})),
            "{\"CurveK\":[1.0,1.0,1.0,0.0],\"CurveR\":1.0,\"CurveValid\":true,"
            "\"equation\":\"Conc.=(1.000)xA2+(1.000)xA+(1.000)\"}\n");
}

TEST_F(QuantitationCommands, FitOfThirdOrderTakesTheRowBehindTheStandardsForTheFirst) {
  const std::string path = Packed(3, {{9, 9}, {0, 1}, {1, 3}, {2, 7}}, {{"SampleNumber", 3}});
  EXPECT_EQ(Fit(path),
            "{\"CurveK\":[1.0,1.0,1.0,0.0],\"CurveR\":1.0,\"CurveValid\":true,"
            "\"equation\":\"Conc.=(0.000)xA3+(1.000)xA2+(1.000)xA+(1.000)\"}\n");
}

TEST_F(QuantitationCommands, FitAtSeveralWavelengthsTakesTheCombinedColumn) {
  const Json columns = {{5, 5, 1}, {6, 6, 2}};
  for (const int wavelengths : {2, 3}) {
    const std::string path =
        Packed(1, {{0, 3}, {0, 5}}, {{"StandardAbs", columns}, {"WaveLengthNumber", wavelengths}});
    EXPECT_EQ(Json::parse(Fit(path))["CurveK"].dump(), "[1.0,2.0,0.0,0.0]") << wavelengths;
  }
}

TEST_F(QuantitationCommands, ARejectedFitIsAResult) {
  // The middle one lies above the other two: r is 0.
  EXPECT_EQ(Fit(Packed(1, {{1, 1}, {2, 3}, {3, 1}}, {{"CurveValid", true}})),
            "{\"CurveK\":[0.0,0.0,0.0,0.0],\"CurveR\":1.0,\"CurveValid\":false,"
            "\"equation\":\"Conc.=(0.000)xA+(0.000)  r = 1.000000\"}\n");
  // Through zero the figures stay. About the means 2 and 5/3 of the three and with the origin beside them the
  // sums of products are 10/3, 6 and 49/9. rows.
  const Json zero = Json::parse(Fit(Packed(0, {{1, 1}, {2, 3}, {3, 1}})));
  EXPECT_EQ(zero["CurveValid"], false);
  EXPECT_NEAR(zero["CurveR"], (10.0 / 3) / std::sqrt(6 * (49.0 / 9)), 1e-12);
  EXPECT_NEAR(zero["CurveK"][1], 10.0 / 14, 1e-12);
}

TEST_F(QuantitationCommands, IncompleteStandardsKeepTheStoredVerdict) {
  for (const bool valid : {true, false}) {
    const Json fit = Json::parse(
        Fit(Packed(1, {{1, 1}, {2, 2}}, {{"StandardConcSet", {true, false}}, {"CurveValid", valid}})));
    EXPECT_EQ(fit["CurveK"].dump(), "[0.0,0.0,0.0,0.0]");
    EXPECT_EQ(fit["CurveR"], 1.0);
    EXPECT_EQ(fit["CurveValid"], valid);
  }
}

TEST_F(QuantitationCommands, FitPrintsWithThePrecisionOfTheWindows) {
  std::filesystem::create_directory(Path("home"));
  WriteBytes(Path("home/config.ini"), "[Option]\nPrecise=1\n");
  EXPECT_EQ(Json::parse(Fit(Packed(0, {{1, 2}})))["equation"], "Conc.=(2.0000)xA  r = 1.000000");
}

TEST_F(QuantitationCommands, TheFileStaysAsItIs) {
  const std::string path = Packed(0, {{1, 2}, {2, 4}}, {{"StandardConc", {2, 4, 99}}});
  const std::string before = ReadBytes(path);
  Fit(path);
  Conc(path, {"1"});
  EXPECT_TRUE(ReadBytes(path) == before);
}

struct ConcRow {
  const char* Name;
  int Method;
  int CurveItem;
  std::vector<std::string> Absorbances;
  const char* Out;
};

class ConcByEquation : public QuantitationCommands, public testing::WithParamInterface<ConcRow> {};

TEST_P(ConcByEquation, GivesNumberAndText) {
  const std::string path =
      Packed(GetParam().Method, {},
             {{"CurveItem", GetParam().CurveItem}, {"CurveK", {1, 2, 3, 4}}, {"InputK", {10, 20, 30, 40}}});
  EXPECT_EQ(Conc(path, GetParam().Absorbances), std::string(GetParam().Out) + "\n");
}

INSTANTIATE_TEST_SUITE_P(
    Equations, ConcByEquation,
    testing::Values(
        ConcRow{"ThroughZero", 0, 1, {"2", "-.5"}, R"({"conc":[4.0,-1.0],"text":["4.0000","-1.0000"]})"},
        ConcRow{"FirstOrder", 1, 1, {"2"}, R"({"conc":[5.0],"text":["5.0000"]})"},
        ConcRow{"SecondOrder", 2, 1, {"2"}, R"({"conc":[17.0],"text":[" 17.000"]})"},
        ConcRow{"ThirdOrder", 3, 1, {"2"}, R"({"conc":[49.0],"text":[" 49.000"]})"},
        ConcRow{"Typed", 3, 2, {"2"}, R"({"conc":[490.0],"text":[" 490.00"]})"},
        ConcRow{"NegativeNumbersAreValues",
                1,
                2,
                {"-5", "-100"},
                R"({"conc":[-90.0,-1990.0],"text":["-90.000","-1990.0"]})"},
        ConcRow{"AnUnknownMethodTakesTheTypedK0", 9, 1, {"2"}, R"({"conc":[20.0],"text":[" 20.000"]})"},
        ConcRow{"Overflow", 2, 1, {"1e308"}, R"({"conc":[null],"text":["-"]})"}),
    NameOfRow<ConcRow>);

TEST_F(QuantitationCommands, LostRecordsDoNotMatterButACountThatMakesNoSenseDoes) {
  const std::string path = Packed(0, {{1, 2}});
  std::string bytes = ReadBytes(path);
  WriteBytes(path, bytes.substr(0, 12600));
  EXPECT_EQ(Json::parse(Fit(path))["CurveValid"], true);
  ExpectRefused(Batch({"dump", path}), "a.qua", "has 0 of the 1 records");
  bytes.replace(104 + 12472, 4, Long(-1));
  WriteBytes(path, bytes);
  ExpectRefused(Batch({"fit", path}), "a.qua", "a number of records that makes no sense");
  ExpectRefused(Batch({"conc", path, "1"}), "a.qua", "a number of records that makes no sense");
}

TEST_F(QuantitationCommands, OtherFilesAreRefused) {
  WriteBytes(Path("a.bas"), BasicFileBytes(1, 1));
  WriteBytes(Path("cut.qua"), ReadBytes(Packed(0, {})).substr(0, 5000));
  for (const std::string command : {"fit", "conc"}) {
    const auto run = [&](const std::string& name) {
      std::vector<std::string> words = {command, Path(name)};
      if (command == "conc") words.push_back("1");
      return Batch(words);
    };
    ExpectRefused(run("none.qua"), "none.qua", "no such file");
    ExpectRefused(run("a.bas"), "a.bas", "kind");
    ExpectRefused(run("cut.qua"), "cut.qua", "at byte 5000");
  }
}

TEST_F(QuantitationCommands, WrongUsageGetsTheUsage) {
  const std::string path = Packed(0, {});
  ExpectWrongUsage(Batch({"fit"}));
  ExpectWrongUsage(Batch({"fit", path, "1"}));
  ExpectWrongUsage(Batch({"conc", path}));
  for (const char* text : {"nan", "inf", "1,5", "abc", "1e400", ""}) {
    ExpectWrongUsage(Batch({"conc", path, "1", text}));
  }
}

}  // namespace
}  // namespace spectrane
