#include "cli/batchsupport.h"
#include "files/tsfile.h"
#include "files/wlsfile.h"
#include "files/wlsfile2.h"

namespace spectrane {
namespace {

using Json = nlohmann::ordered_json;

class PeaksCommand : public testing::Test {
 protected:
  std::string Path(const std::string& name) const { return folder_.Path(name); }

  template <typename OptionT, typename RecordT>
  std::string Saved(const FileModule<OptionT, RecordT>& module, const std::string& name,
                    const std::vector<RecordT>& records, const OptionT& option = {}) const {
    const FileFault fault =
        SaveDataFile(module, Path(name), option, static_cast<std::int32_t>(records.size()),
                     [&records](std::int32_t i) { return records[static_cast<std::size_t>(i)]; });
    EXPECT_FALSE(fault) << FaultWords(fault);
    return Path(name);
  }
  /// A spectrum from 500 nm on with these transmittances in whole percent.
  std::string Spectrum(const std::vector<int>& percents) const {
    std::vector<WLSRecord> records;
    for (const int percent : percents) {
      records.push_back({percent * 100 + 50, 10050, 50, 500.0 + static_cast<double>(records.size()), 3});
    }
    return Saved(WLSModule(), "a.wls", records);
  }
  std::string Processed(const std::vector<double>& abs) const {
    std::vector<WLS2Record> records;
    for (const double value : abs) {
      records.push_back({600.0 - static_cast<double>(records.size()), 7.5, value});
    }
    return Saved(WLS2Module(), "b.wls", records);
  }
  static std::vector<int> Indices(const BatchOutcome& outcome, const char* list) {
    std::vector<int> indices;
    const Json json = Json::parse(outcome.Out);
    for (const Json& point : json[list]) indices.push_back(point["index"].get<int>());
    return indices;
  }

  TemporaryFolder folder_;
};

using Numbers = std::vector<int>;

TEST_F(PeaksCommand, GivesIndexPlaceAndBothValues) {
  const BatchOutcome outcome = Batch({"peaks", Spectrum({100, 10, 100, 50, 100})});
  ASSERT_EQ(outcome.Status, 0) << outcome.Err;
  const Json json = Json::parse(outcome.Out);
  std::vector<std::string> members;
  for (const auto& member : json.items()) members.push_back(member.key());
  for (const auto& member : json["peaks"][0].items()) members.push_back(member.key());
  EXPECT_EQ(members, (std::vector<std::string>{"peaks", "valleys", "index", "x", "Abs", "Trans"}));
  EXPECT_EQ(Indices(outcome, "peaks"), (Numbers{1, 3}));
  EXPECT_EQ(Indices(outcome, "valleys"), (Numbers{2}));
  EXPECT_EQ(json["peaks"][0]["x"], 501.0);
  EXPECT_DOUBLE_EQ(json["peaks"][0]["Abs"].get<double>(), 1.0);
  EXPECT_DOUBLE_EQ(json["peaks"][0]["Trans"].get<double>(), 10.0);
  EXPECT_EQ(json["valleys"][0]["x"], 502.0);
}

TEST_F(PeaksCommand, NothingFoundIsTwoEmptyLists) {
  const BatchOutcome outcome = Batch({"peaks", Spectrum({90, 80})});
  EXPECT_EQ(outcome.Status, 0) << outcome.Err;
  EXPECT_EQ(outcome.Out, "{\"peaks\":[],\"valleys\":[]}\n");
}

TEST_F(PeaksCommand, TheHeightIsTheOneGiven) {
  const std::string file = Spectrum({100, 10, 100, 50, 100});
  EXPECT_EQ(Indices(Batch({"peaks", file, "--height", "0.5"}), "peaks"), (Numbers{1}));
  EXPECT_EQ(Indices(Batch({"peaks", file, "--height", "2"}), "peaks"), (Numbers{}));
  EXPECT_EQ(Indices(Batch({"peaks", file, "--height", "-1"}), "peaks"), (Numbers{1, 3}));
}

TEST_F(PeaksCommand, EitherSearchCanBeLeftOut) {
  const std::string file = Spectrum({100, 10, 100, 50, 100});
  const BatchOutcome valleys = Batch({"peaks", file, "--no-peaks"});
  EXPECT_EQ(Indices(valleys, "peaks"), (Numbers{}));
  EXPECT_EQ(Indices(valleys, "valleys"), (Numbers{2}));
  const BatchOutcome peaks = Batch({"peaks", "--no-valleys", file});
  EXPECT_EQ(Indices(peaks, "peaks"), (Numbers{1, 3}));
  EXPECT_EQ(Indices(peaks, "valleys"), (Numbers{}));
}

TEST_F(PeaksCommand, SearchesTheWeightedMeansWhenTold) {
  const std::string file = Spectrum({2, 8, 10, 2, 10, 8, 2});
  EXPECT_EQ(Json::parse(Batch({"peaks", file}).Out)["peaks"][0]["Trans"], 2.0);
  // The mean of the middle one: (2 * 8 + 3 * 10 + 6 * 2 + 3 * 10 + 2 * 8) / 16.
  const BatchOutcome smooth = Batch({"peaks", file, "--smooth-enable"});
  ASSERT_EQ(Indices(smooth, "peaks"), (Numbers{3})) << smooth.Out;
  EXPECT_DOUBLE_EQ(Json::parse(smooth.Out)["peaks"][0]["Trans"].get<double>(), 6.5);
}

TEST_F(PeaksCommand, AProcessedSpectrumShowsItsStoredValuesAndAsksForMore) {
  const std::string file = Processed({0, 0.005, 0, 0.2, 0});
  const BatchOutcome outcome = Batch({"peaks", file});
  ASSERT_EQ(Indices(outcome, "peaks"), (Numbers{3})) << "0.005 is below the 0.01 of its kind";
  EXPECT_EQ(Json::parse(outcome.Out)["peaks"].dump(),
            "[{\"index\":3,\"x\":597.0,\"Abs\":0.2,\"Trans\":7.5}]");
  EXPECT_EQ(Indices(Batch({"peaks", file, "--height", "0.001"}), "peaks"), (Numbers{3, 1}))
      << "by rising wavelength";
}

TEST_F(PeaksCommand, ATimeScanIsSearchedOverItsTime) {
  TSOption option;
  option.FullEnergy = 10050;
  option.DarkEnergy = 50;
  const std::string file =
      Saved(TSModule(), "a.tis", std::vector<TSRecord>{{10050, 0}, {1050, 0.5}, {10050, 1.0}, {10050, 1.5}},
            option);
  const BatchOutcome outcome = Batch({"peaks", file});
  ASSERT_EQ(Indices(outcome, "peaks"), (Numbers{1})) << outcome.Err;
  EXPECT_EQ(Json::parse(outcome.Out)["peaks"][0]["x"], 0.5);
}

TEST_F(PeaksCommand, RefusesWhatHasNoCurveOrIsDamaged) {
  WriteBytes(Path("a.bas"), BasicFileBytes(2, 2));
  ExpectRefused(Batch({"peaks", Path("a.bas")}), "a.bas", "no curve");
  ExpectRefused(Batch({"peaks", Path("gone.wls")}), "gone.wls", "");
  const std::string file = Spectrum({100, 10, 100});
  std::filesystem::resize_file(file, std::filesystem::file_size(file) - 1);
  ExpectRefused(Batch({"peaks", file}), "a.wls", "3");
  ExpectWrongUsage(Batch({"peaks", file, "--height", "high"}));
  ExpectWrongUsage(Batch({"peaks"}));
}

}  // namespace
}  // namespace spectrane
