// info, dump and pack of every kind of data file.

#include <cmath>
#include <filesystem>
#include <map>

#include "cli/batchsupport.h"
#include "files/kindpattern.h"

namespace spectrane {
namespace {

using Json = nlohmann::ordered_json;

struct NamesRow {
  const char* Name;
  std::vector<std::string> Option;
  std::vector<std::string> Data;
};

std::vector<std::string> MembersOf(const Json& object) {
  std::vector<std::string> names;
  for (const auto& member : object.items()) names.push_back(member.key());
  return names;
}

const KindPattern& PatternOf(const std::string& name) {
  for (const KindPattern& pattern : KindPatterns()) {
    if (pattern.Name == name) return pattern;
  }
  throw std::invalid_argument(name);
}

class KindNames : public testing::TestWithParam<NamesRow> {
 protected:
  TemporaryFolder folder_;
};

TEST_P(KindNames, StandInTheOrderOfTheFile) {
  const std::string path = folder_.Path("a");
  WriteBytes(path, RandomFiles(1).Make(PatternOf(GetParam().Name), 2));
  const BatchOutcome outcome = Batch({"dump", path});
  ASSERT_EQ(outcome.Status, 0) << outcome.Err;
  const Json json = Json::parse(outcome.Out);
  EXPECT_EQ(json["kind"], GetParam().Name);
  EXPECT_EQ(json["file_type"], PatternOf(GetParam().Name).FileType);
  EXPECT_EQ(MembersOf(json["option"]), GetParam().Option);
  EXPECT_EQ(MembersOf(json["data"][1]), GetParam().Data);
  const Json info = Json::parse(Batch({"info", path}).Out);
  EXPECT_EQ(info["option"], json["option"]);
  EXPECT_EQ(info["records"], 2);
}

const std::vector<std::string> kSpectrumOption = {
    "StartWavelength", "EndWavelength",      "AbsTop",       "AbsBottom",  "TransTop",
    "TransBottom",     "EnergyTop",          "EnergyBottom", "EnergyAmp",  "EnergyFilter",
    "EnergyLamp",      "IntervalWavelength", "PointCount",   "DisplayMode"};

INSTANTIATE_TEST_SUITE_P(
    Kinds, KindNames,
    testing::Values(
        NamesRow{"wls",
                 kSpectrumOption,
                 {"SampleEnergy", "ReferenceEnergy", "DarkEnergy", "Wavelength", "Gain", "Trans", "Abs"}},
        NamesRow{"wls2", kSpectrumOption, {"Wavelength", "Trans", "Abs"}},
        NamesRow{"tis",
                 {"WorkWL", "StartSecond", "EndSecond", "IntervalSecond", "DisplayMode", "AbsBottom",
                  "AbsTop", "TransBottom", "TransTop", "DataCount", "GainNo", "FullEnergy", "DarkEnergy"},
                 {"Energy", "Time", "Trans", "Abs"}},
        NamesRow{"qua",
                 {"StandardName",   "StandardAbs",     "StandardAbsSet",  "StandardConc", "StandardConcSet",
                  "StandardNote",   "FittingMethod",   "SampleNumber",    "CurveK",       "CurveR",
                  "CurveValid",     "CurveItem",       "InputK",          "ConcUnit",     "WaveLengthNumber",
                  "WaveLengthList", "BlankFullEnergy", "BlankDarkEnergy", "BlankGain",    "BlankDone",
                  "WaveLengthPara", "TestRecordCount"},
                 {"Name", "Abs", "Conc", "Note"}},
        NamesRow{"bas",
                 {"Version", "Written", "RecordCount"},
                 {"SampleEnergy", "ReferenceEnergy", "DarkEnergy", "Wavelength", "Note", "Trans", "Abs"}},
        NamesRow{
            "mul", {"WorkWaveLength", "Parameter", "WorkWLNo", "RecordCount"}, {"Abs", "Result", "Name"}},
        NamesRow{"dna",
                 {"WaveLength", "Factor", "Option", "Spare", "RecordCount"},
                 {"Name", "Abs", "DNA", "Protein", "Ratio", "Note"}},
        NamesRow{"bsl",
                 {"EndWavelength", "StartWavelength", "CreateDate", "Reserved"},
                 {"Wavelength", "Amp", "Energy"}}),
    NameOfRow<NamesRow>);

/// Of a file: where the number of records stands; the last whole number of a block, or the one before it.
std::size_t OffsetOfCount(const KindPattern& kind) {
  const std::map<std::string, std::size_t> offsets = {{"bas", 384}, {"qua", 12472}, {"tis", 54}, {"wls", 72},
                                                      {"wls2", 72}, {"mul", 260},   {"dna", 72}, {"bsl", 24}};
  return 104 + offsets.at(kind.Name);
}

class EveryKind : public testing::TestWithParam<KindPattern> {
 protected:
  std::string Path(const std::string& name) const { return folder_.Path(name); }
  TemporaryFolder folder_;
};

/// The sanitizers take ten times as long, and see as much in a tenth of the files.
#ifdef SPECTRANE_SANITIZED
constexpr int kFiles = 100;
#else
constexpr int kFiles = 1000;
#endif

/// A folder in memory where the machine has one: each of thousands of files is brought to its disk.
std::string FastRoot() {
  return std::filesystem::is_directory("/dev/shm") ? "/dev/shm" : testing::TempDir();
}

TEST_P(EveryKind, DumpAndPackGiveTheSameBytes) {
  const TemporaryFolder fast(FastRoot());
  RandomFiles files(20231);
  for (int i = 0; i < kFiles; ++i) {
    // Mostly small files, now and then a longer one.
    const std::string bytes = files.Make(GetParam(), files.Below(i % 50 == 0 ? 40 : 4));
    WriteBytes(fast.Path("a"), bytes);
    const BatchOutcome dump = Batch({"dump", fast.Path("a")});
    ASSERT_EQ(dump.Status, 0) << dump.Err;
    const BatchOutcome pack = Batch({"pack", "--force", "-", fast.Path("b")}, dump.Out);
    ASSERT_EQ(pack.Status, 0) << pack.Err;
    ASSERT_EQ(pack.Err, "");
    ASSERT_EQ(ReadBytes(fast.Path("b")), bytes) << "file " << i;
  }
}

TEST_P(EveryKind, FewerRecordsThanStatedShowInInfoAndAreRefusedByDump) {
  std::string bytes = RandomFiles(3).Make(GetParam(), 3);
  WriteBytes(Path("short"), bytes.substr(0, bytes.size() - 1));
  const BatchOutcome info = Batch({"info", Path("short")});
  ASSERT_EQ(info.Status, 0) << info.Err;
  EXPECT_EQ(Json::parse(info.Out)["records"], 2);
  ExpectRefused(Batch({"dump", Path("short")}), "short", "has 2 of the 3 records");
}

TEST_P(EveryKind, ACountBeyondEveryLimitShowsWhatIsThere) {
  std::string bytes = RandomFiles(3).Make(GetParam(), 3);
  const std::size_t at = OffsetOfCount(GetParam());
  bytes.replace(at, 4, Long(INT32_MAX));
  if (std::string(GetParam().Name) == "bsl") bytes.replace(104, 8, DoubleBytes(190.0 + 2147483646.0));
  WriteBytes(Path("many"), bytes);
  const BatchOutcome info = Batch({"info", Path("many")});
  ASSERT_EQ(info.Status, 0) << info.Err;
  EXPECT_EQ(Json::parse(info.Out)["records"], 3);
  ExpectRefused(Batch({"dump", Path("many")}), "many", "2147483647 records");
}

TEST_P(EveryKind, PackOfAKindAloneHasEveryFieldEmpty) {
  WriteBytes(Path("in.json"), std::string("{\"kind\":\"") + GetParam().Name + "\"}");
  ASSERT_EQ(Batch({"pack", Path("in.json"), Path("out")}).Status, 0);
  const Json info = Json::parse(Batch({"info", Path("out")}).Out);
  EXPECT_EQ(info["kind"], GetParam().Name);
  EXPECT_EQ(info["records"], 0);
  for (const auto& member : info["option"].items()) {
    const Json flat = Json(member.value()).flatten();
    for (const Json& value : flat) {
      EXPECT_TRUE(value == Json(0) || value == Json("") || value == Json(false)) << member.key();
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Kinds, EveryKind, testing::ValuesIn(KindPatterns()), NameOfRow<KindPattern>);

TEST(PackedBaseline, EndsWhereItsRecordsDo) {
  const TemporaryFolder folder;
  const std::string range = R"({"kind":"bsl","option":{"StartWavelength":190,"EndWavelength":200},"data":)";
  for (const auto& [data, end] : std::map<std::string, double>{{"[{},{},{}]", 192}, {"[]", 200}}) {
    const std::string path = folder.Path("a.bsl");
    ASSERT_EQ(Batch({"pack", "--force", "-", path}, range + data + "}").Status, 0);
    EXPECT_EQ(Json::parse(Batch({"info", path}).Out)["option"]["EndWavelength"], end) << data;
  }
}

TEST(LongFile, MoreThanCanBeTakenIsRefusedByInfoToo) {
  const TemporaryFolder folder;
  WriteBytes(folder.Path("a.wls"),
             HeaderBytes(3) + std::string(72, '\0') + Long(10002) + Long(1) + std::string(10002 * 24, '\0'));
  for (const char* command : {"info", "dump"}) {
    ExpectRefused(Batch({command, folder.Path("a.wls")}), "a.wls", "more than the 10001");
  }
}

class DerivedValues : public testing::Test {
 protected:
  Json Data(const std::string& bytes, const std::vector<std::string>& words = {}) {
    WriteBytes(folder_.Path("a"), bytes);
    std::vector<std::string> line = {"dump", folder_.Path("a")};
    line.insert(line.end(), words.begin(), words.end());
    const BatchOutcome outcome = Batch(line);
    EXPECT_EQ(outcome.Status, 0) << outcome.Err;
    return Json::parse(outcome.Out)["data"];
  }
  TemporaryFolder folder_;
};

TEST_F(DerivedValues, OfATimeScanUseTheBlankOfTheWholeTest) {
  const std::string option = DoubleBytes(546) + Long(0) + Long(60) + Long(3) + Bytes({1, 0}) +
                             DoubleBytes(0) + DoubleBytes(3) + DoubleBytes(0) + DoubleBytes(100) + Long(2) +
                             Long(3) + Long(10050) + Long(50);
  const Json data =
      Data(HeaderBytes(2) + option + Long(1050) + DoubleBytes(0) + Long(5050) + DoubleBytes(1.5));
  EXPECT_EQ(data[0]["Trans"], 10.0);
  EXPECT_NEAR(data[0]["Abs"].get<double>(), 1.0, 1e-12);
  EXPECT_EQ(data[1]["Trans"], 50.0);
  EXPECT_EQ(data[1]["Time"], 1.5);
}

TEST_F(DerivedValues, OfASpectrumAreWeightedOnRequest) {
  std::string bytes = HeaderBytes(3) + std::string(72, '\0') + Long(4) + Long(1);
  for (const int percent : {10, 20, 40, 80}) {
    bytes += Long(percent * 100) + Long(10000) + Long(0) + DoubleBytes(500) + Long(3);
  }
  const Json plain = Data(bytes);
  EXPECT_EQ(plain[0]["Trans"], 10.0);
  EXPECT_NEAR(plain[0]["Abs"].get<double>(), 1.0, 1e-12);
  const Json smooth = Data(bytes, {"--smooth-enable"});
  EXPECT_DOUBLE_EQ(smooth[0]["Trans"].get<double>(), 200.0 / 11);
  EXPECT_DOUBLE_EQ(smooth[3]["Trans"].get<double>(), 640.0 / 11);
  EXPECT_NEAR(smooth[3]["Abs"].get<double>(), -std::log10(6.4 / 11), 1e-12);
}

TEST_F(DerivedValues, OfAProcessedSpectrumAreTheStoredOnes) {
  const std::string bytes = HeaderBytes(12) + std::string(72, '\0') + Long(1) + Long(1) + DoubleBytes(500) +
                            DoubleBytes(-3.5) + DoubleBytes(7.25);
  EXPECT_EQ(Data(bytes, {"--smooth-enable"}).dump(), R"([{"Wavelength":500.0,"Trans":-3.5,"Abs":7.25}])");
}

}  // namespace
}  // namespace spectrane
