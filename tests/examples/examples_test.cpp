#include <array>
#include <cmath>
#include <map>
#include <numeric>
#include <set>

#include "base/numbers.h"
#include "cli/batchsupport.h"
#include "examplefiles/examples.h"
#include "files/bslfile.h"
#include "files/dnafile.h"
#include "files/file.h"
#include "files/multifile.h"
#include "files/quafile.h"
#include "files/tsfile.h"
#include "files/wlsfile.h"
#include "files/wlsfile2.h"
#include "link/function.h"

namespace spectrane {
namespace {

/// File name and type of every example.
const std::map<std::string, std::int32_t> kExampleTypes = {
    {"baseline.bsl", 6},           {"dye.qua", 1},   {"enzyme.tis", 2},  {"holmium.wls", 3},
    {"holmium-processed.wls", 12}, {"multi.mul", 4}, {"nucleic.dna", 5}, {"photometry.bas", 11},
};

std::string ExamplePath(const std::string& name) {
  return std::string(SPECTRANE_EXAMPLES "/") + name;
}

std::set<std::string> NamesOf(const std::string& folder) {
  std::set<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    names.insert(entry.path().filename().string());
  }
  return names;
}

/// An example with its records.
template <typename OptionT, typename RecordT>
struct Loaded {
  Loaded(const FileModule<OptionT, RecordT>& module, const std::string& name) {
    const FileFault fault = LoadDataFile(module, ExamplePath(name), Option, Records);
    EXPECT_FALSE(fault) << name << ": " << FaultWords(fault);
    EXPECT_FALSE(Records.empty()) << name;
  }
  OptionT Option;
  std::vector<RecordT> Records;
};

TEST(Examples, FolderHoldsOneOfEachKindAndNothingElse) {
  std::set<std::string> expected = {"README.md"};
  for (const auto& [name, type] : kExampleTypes) expected.insert(name);
  EXPECT_EQ(NamesOf(SPECTRANE_EXAMPLES), expected);
}

TEST(Examples, ReadmeHasALineForEach) {
  const std::string readme = ReadBytes(ExamplePath("README.md"));
  for (const auto& [name, type] : kExampleTypes) {
    EXPECT_NE(readme.find("\n| `" + name + "` |"), std::string::npos) << name;
  }
}

TEST(Examples, MeasuredAnewAreTheSameBytes) {
  const TemporaryFolder folder;
  WriteExamples(folder.Path());
  std::set<std::string> expected = NamesOf(SPECTRANE_EXAMPLES);
  expected.erase("README.md");
  EXPECT_EQ(NamesOf(folder.Path()), expected);
  for (const auto& [name, type] : kExampleTypes) {
    EXPECT_TRUE(ReadBytes(folder.Path(name)) == ReadBytes(ExamplePath(name)))
        << name << " is not what would be measured today: run dev/examples.sh and look at what changed";
  }
}

class ExampleFile : public testing::TestWithParam<std::pair<const std::string, std::int32_t>> {};

TEST_P(ExampleFile, HasItsType) {
  std::int32_t type = 0;
  EXPECT_TRUE(GetFileType(ExamplePath(GetParam().first), type));
  EXPECT_EQ(type, GetParam().second);
}

TEST_P(ExampleFile, DumpedAndPackedIsTheSameBytes) {
  const TemporaryFolder folder;
  const std::string path = ExamplePath(GetParam().first);
  const BatchOutcome dump = Batch({"dump", path});
  ASSERT_EQ(dump.Status, 0) << dump.Err;
  WriteBytes(folder.Path("dump.json"), dump.Out);
  const std::string packed = folder.Path(GetParam().first);
  const BatchOutcome pack = Batch({"pack", folder.Path("dump.json"), packed});
  ASSERT_EQ(pack.Status, 0) << pack.Err;
  EXPECT_TRUE(ReadBytes(packed) == ReadBytes(path));
}

INSTANTIATE_TEST_SUITE_P(Examples, ExampleFile, testing::ValuesIn(kExampleTypes), [](const auto& instance) {
  std::string name = instance.param.first;
  for (char& c : name) {
    if (std::isalnum(static_cast<unsigned char>(c)) == 0) c = '_';
  }
  return name;
});

// ---- What the numbers say ----

double AbsOf(const WLSRecord& point) {
  return AbsFromEnergy(point.SampleEnergy, point.ReferenceEnergy, point.DarkEnergy);
}

TEST(ExamplePhysics, PhotometryReadsTheFilters) {
  const Loaded file(BasicModule(), "photometry.bas");
  std::set<double> wavelengths;
  for (const BasicRecord& row : file.Records) {
    wavelengths.insert(row.Wavelength);
    const double named = std::stod(row.Note.substr(std::string("Grey filter ").size()));
    EXPECT_NEAR(AbsFromEnergy(row.SampleEnergy, row.ReferenceEnergy, row.DarkEnergy), named, 0.005)
        << row.Wavelength << " nm, " << row.Note;
  }
  EXPECT_EQ(wavelengths.size(), 3u);
}

TEST(ExamplePhysics, HolmiumEnergiesAreThoseOfAConverter) {
  const Loaded file(WLSModule(), "holmium.wls");
  for (const WLSRecord& point : file.Records) {
    EXPECT_GT(point.DarkEnergy, 0);
    EXPECT_GT(point.SampleEnergy, point.DarkEnergy) << point.Wavelength;
    EXPECT_GT(point.ReferenceEnergy, 20000) << point.Wavelength;
    EXPECT_LT(point.ReferenceEnergy, 60000) << point.Wavelength;
  }
}

TEST(ExamplePhysics, HolmiumCoversItsRangeAtItsInterval) {
  const Loaded file(WLSModule(), "holmium.wls");
  EXPECT_EQ(file.Option.IntervalWavelength, 2);  // 0.5 nm
  EXPECT_EQ(file.Records.front().Wavelength, file.Option.StartWavelength);
  EXPECT_EQ(file.Records.back().Wavelength, file.Option.EndWavelength);
  for (std::size_t i = 1; i < file.Records.size(); ++i) {
    EXPECT_EQ(file.Records[i].Wavelength - file.Records[i - 1].Wavelength, 0.5);
  }
  for (const WLSRecord& point : file.Records) {
    EXPECT_GT(AbsOf(point), file.Option.AbsBottom) << point.Wavelength;
    EXPECT_LT(AbsOf(point), file.Option.AbsTop) << point.Wavelength;
  }
}

TEST(ExamplePhysics, HolmiumPeaksStandWherePublished) {
  const Loaded file(WLSModule(), "holmium.wls");
  for (const double published : {241.13, 249.87, 278.10, 287.18, 333.44, 345.47, 361.31, 385.66, 416.28,
                                 451.30, 467.83, 485.29, 536.64, 640.52}) {
    double top = 0.0;
    double found = 0.0;
    for (const WLSRecord& point : file.Records) {
      if (std::abs(point.Wavelength - published) > 4.0 || AbsOf(point) <= top) continue;
      top = AbsOf(point);
      found = point.Wavelength;
    }
    EXPECT_NEAR(found, published, 1.0);
    EXPECT_GT(top, 0.1) << published;  // the solution between the bands has 0.02
  }
}

TEST(ExamplePhysics, ProcessedHolmiumIsTheScan) {
  const Loaded scan(WLSModule(), "holmium.wls");
  const Loaded processed(WLS2Module(), "holmium-processed.wls");
  EXPECT_EQ(processed.Option.IntervalWavelength, 0);
  EXPECT_EQ(processed.Option.EnergyTop, 0);
  ASSERT_EQ(processed.Records.size(), scan.Records.size());
  for (std::size_t i = 0; i < scan.Records.size(); ++i) {
    EXPECT_EQ(processed.Records[i].Wavelength, scan.Records[i].Wavelength);
    EXPECT_NEAR(processed.Records[i].Abs, AbsOf(scan.Records[i]), 1e-12);
    EXPECT_NEAR(processed.Records[i].Trans, TransFromAbs(processed.Records[i].Abs), 1e-9);
  }
}

TEST(ExamplePhysics, DyeStandardsLieOnALine) {
  const Loaded file(QuaModule(), "dye.qua");
  const QuaOption& option = file.Option;
  EXPECT_EQ(option.SampleNumber, 5);
  EXPECT_TRUE(option.CurveValid);
  EXPECT_GT(option.CurveR, 0.999);
  EXPECT_LE(option.CurveR, 1.0);
  EXPECT_NEAR(option.CurveK[1], 10.0, 0.05);  // 0.1 Abs for each mg/L
  for (std::size_t i = 0; i < kStandardRows; ++i) {
    const bool used = i < 5;
    EXPECT_EQ(option.StandardAbsSet[i], used);
    EXPECT_EQ(option.StandardConcSet[i], used);
    if (!used) continue;
    EXPECT_NEAR(option.StandardAbs[i][0], 0.1 * option.StandardConc[i], 0.005);
    EXPECT_NEAR(option.CurveK[0] + option.CurveK[1] * option.StandardAbs[i][0], option.StandardConc[i], 0.05);
  }
}

TEST(ExamplePhysics, DyeFittedAnewIsWhatTheFileHolds) {
  const Loaded file(QuaModule(), "dye.qua");
  const auto fit = nlohmann::json::parse(Batch({"fit", ExamplePath("dye.qua")}).Out);
  EXPECT_EQ((fit["CurveK"].get<std::array<double, 4>>()), file.Option.CurveK);
  EXPECT_EQ(fit["CurveR"], file.Option.CurveR);
  for (const QuaRecord& record : file.Records) {
    const BatchOutcome conc = Batch({"conc", ExamplePath("dye.qua"), ShortestText(record.Abs[0])});
    EXPECT_EQ(nlohmann::json::parse(conc.Out)["conc"][0], record.Conc) << record.Name;
  }
}

// A least-squares line: what is left over has no mean and no slope.
TEST(ExamplePhysics, DyeLineIsTheLeastSquaresOne) {
  const QuaOption option = Loaded(QuaModule(), "dye.qua").Option;
  double sum = 0.0;
  double moment = 0.0;
  for (std::size_t i = 0; i < 5; ++i) {
    const double abs = option.StandardAbs[i][0];
    const double rest = option.StandardConc[i] - option.CurveK[0] - option.CurveK[1] * abs;
    sum += rest;
    moment += rest * abs;
  }
  EXPECT_NEAR(sum, 0.0, 1e-9);
  EXPECT_NEAR(moment, 0.0, 1e-9);
}

TEST(ExamplePhysics, DyeUnknownsComeOutAsWeighedIn) {
  const Loaded file(QuaModule(), "dye.qua");
  ASSERT_EQ(file.Records.size(), 3u);
  const double weighed[] = {2, 6, 10};
  for (std::size_t i = 0; i < 3; ++i) {
    EXPECT_NEAR(file.Records[i].Conc, weighed[i], 0.05) << file.Records[i].Name;
    EXPECT_EQ(file.Records[i].Conc, file.Option.CurveK[0] + file.Option.CurveK[1] * file.Records[i].Abs[0]);
  }
}

TEST(ExamplePhysics, EnzymeFallsAsItsCoenzymeIsUsedUp) {
  const Loaded file(TSModule(), "enzyme.tis");
  const TSOption& option = file.Option;
  std::vector<double> abs;
  for (const TSRecord& point : file.Records) {
    EXPECT_EQ(point.Time, 2.0 * static_cast<double>(abs.size()));
    abs.push_back(AbsFromEnergy(point.Energy, option.FullEnergy, option.DarkEnergy));
  }
  EXPECT_EQ(file.Records.back().Time, option.EndSecond);
  // 0.2 mmol/L of 6.22 L/(mmol cm), of which a tenth stays.
  EXPECT_NEAR(abs.front(), 1.244, 0.01);
  EXPECT_LT(abs.back(), 0.5);
  EXPECT_GT(abs.back(), 0.1244);
  // Falling in every stretch of ten points; between two of them no more than noise goes up.
  constexpr std::size_t kStretch = 10;
  double before = 2.0;
  for (std::size_t i = 0; i + kStretch <= abs.size(); i += kStretch) {
    const auto from = abs.begin() + static_cast<std::ptrdiff_t>(i);
    const double mean = std::accumulate(from, from + kStretch, 0.0) / kStretch;
    EXPECT_LT(mean, before) << i;
    before = mean;
  }
  for (std::size_t i = 1; i < abs.size(); ++i) EXPECT_LT(abs[i], abs[i - 1] + 0.003) << i;
}

TEST(ExamplePhysics, MultiWavelengthResultsAreTheConcentrations) {
  const Loaded file(MultiModule(), "multi.mul");
  const MultiOption& option = file.Option;
  ASSERT_EQ(option.WorkWLNo, 4);
  ASSERT_EQ(file.Records.size(), 5u);
  for (std::size_t row = 0; row < 5; ++row) {
    const MultiRecord& record = file.Records[row];
    double result = 0.0;
    for (std::size_t k = 0; k < 4; ++k) result += option.Parameter[k] * record.Abs[k];
    EXPECT_DOUBLE_EQ(record.Result, result);
    EXPECT_NEAR(record.Result, 20.0 * static_cast<double>(row + 1), 1.0) << record.Name;
  }
  // The certified values of the 60 mg/L solution.
  const double nominal[] = {0.743, 0.865, 0.290, 0.643};
  for (std::size_t k = 0; k < 4; ++k) EXPECT_NEAR(file.Records[2].Abs[k], nominal[k], 0.004);
}

TEST(ExamplePhysics, DnaTableFollowsItsFormulas) {
  const Loaded file(DNAModule(), "nucleic.dna");
  const auto& f = file.Option.Factor;
  EXPECT_EQ(file.Option.Option, 1);
  for (const DNARecord& record : file.Records) {
    const double first = record.Abs[0] - record.Abs[2];
    const double second = record.Abs[1] - record.Abs[2];
    EXPECT_DOUBLE_EQ(record.DNA, first * f[0] - second * f[1]) << record.Name;
    EXPECT_DOUBLE_EQ(record.Protein, second * f[2] - first * f[3]) << record.Name;
    EXPECT_DOUBLE_EQ(record.Ratio, first / second) << record.Name;
  }
}

TEST(ExamplePhysics, DnaRatioTellsHowPureItIs) {
  const Loaded file(DNAModule(), "nucleic.dna");
  ASSERT_EQ(file.Records.size(), 7u);
  for (std::size_t i = 0; i < 3; ++i) EXPECT_NEAR(file.Records[i].Ratio, 1.86, 0.03) << file.Records[i].Name;
  for (std::size_t i = 3; i < 7; ++i) {
    EXPECT_LT(file.Records[i].Ratio, file.Records[i - 1].Ratio - 0.1) << file.Records[i].Name;
  }
  EXPECT_NEAR(file.Records.back().Ratio, 0.57, 0.01);  // protein alone
  EXPECT_NEAR(file.Records[2].Abs[0], 1.0, 0.01);      // 50 ug/mL at 260 nm
}

TEST(ExamplePhysics, BaselineCoversTheInstrument) {
  const Loaded file(BSLModule(), "baseline.bsl");
  ASSERT_EQ(file.Records.size(), 911u);
  for (std::size_t i = 0; i < file.Records.size(); ++i) {
    const BSLRecord& record = file.Records[i];
    EXPECT_EQ(record.Wavelength, 190.0 + static_cast<double>(i));
    EXPECT_GE(record.Amp, 1);
    EXPECT_LE(record.Amp, 8);
    EXPECT_GT(record.Energy, 20000) << record.Wavelength;
    EXPECT_LT(record.Energy, 60000) << record.Wavelength;
  }
  // Little light at both ends, most in the red.
  EXPECT_GT(file.Records.front().Amp, file.Records[550].Amp);
  EXPECT_GT(file.Records.back().Amp, file.Records[550].Amp);
}

}  // namespace
}  // namespace spectrane
