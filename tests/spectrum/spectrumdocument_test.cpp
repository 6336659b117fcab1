#include "spectrum/spectrumdocument.h"

#include <gtest/gtest.h>

#include "base/notfinite.h"
#include "base/numericfault.h"
#include "spectrum/spectrumsupport.h"

namespace spectrane {
namespace {

using Kind = SpectrumDocument::Kind;
using Numbers = std::vector<double>;

Numbers Copied(std::span<const double> values) {
  return {values.begin(), values.end()};
}

class SpectrumDocumentTest : public testing::Test {
 protected:
  std::string Path(const char* name) const { return folder_.Path(name); }
  std::string Measured(const std::vector<int>& percents, const WLSOption& option = OtherOption()) const {
    return SaveSpectrum(WLSModule(), Path("a.wls"), option, MeasuredPoints(percents));
  }
  std::string Processed(const std::vector<WLS2Record>& points) const {
    return SaveSpectrum(WLS2Module(), Path("b.wls"), OtherOption(), points);
  }
  TemporaryFolder folder_;
  SpectrumDocument document_{Kind::Measured};
};

TEST_F(SpectrumDocumentTest, AFileGivesPointsHomeViewAndParameters) {
  ASSERT_TRUE(document_.OpenFile(Measured({100, 10, 1})));
  EXPECT_EQ(document_.FileType(), 3);
  EXPECT_EQ(document_.PointCount(), 3);
  EXPECT_EQ(Copied(document_.Wavelength()), (Numbers{500, 501, 502}));
  EXPECT_EQ(Copied(document_.Energy()), (Numbers{10050, 1050, 150}));
  EXPECT_DOUBLE_EQ(document_.Trans()[1], 10);
  EXPECT_DOUBLE_EQ(document_.Abs()[2], 2);
  EXPECT_EQ(document_.Record(1), (WLSRecord{1050, 10050, 50, 501, 3}));
  WLSOption expected = OtherOption();
  expected.PointCount = 3;
  EXPECT_EQ(document_.Option(), expected);
  EXPECT_EQ(document_.Mode(), ScanMode::Trans);
  EXPECT_EQ(document_.View(), (ScanScale{490.5, 520, {2.5, -0.25}, {120, 10}, {40000, 100}}));
  EXPECT_FALSE(document_.IsModified());
  EXPECT_EQ(document_.FileName(), Path("a.wls"));
}

TEST_F(SpectrumDocumentTest, ValuesFollowTheMode) {
  ASSERT_TRUE(document_.OpenFile(Measured({100, 10})));
  EXPECT_EQ(Copied(document_.Values(ScanMode::Energy)), (Numbers{10050, 1050}));
  EXPECT_DOUBLE_EQ(document_.Values(ScanMode::Trans)[1], 10);
  EXPECT_DOUBLE_EQ(document_.Values(ScanMode::Abs)[1], 1);
}

TEST_F(SpectrumDocumentTest, SmoothingTakesWeightedMeansAndGivesThemBack) {
  ASSERT_TRUE(document_.OpenFile(Measured({10, 20, 40, 80, 50, 30})));
  const Numbers plain = Copied(document_.Abs());
  document_.SetSmooth(true);
  // 2 * 10 + 3 * 20 + 6 * 40 + 3 * 80 + 2 * 50 over 16.
  EXPECT_DOUBLE_EQ(document_.Trans()[2], 41.25);
  document_.SetSmooth(false);
  EXPECT_EQ(Copied(document_.Abs()), plain);
  EXPECT_FALSE(document_.IsModified()) << "a file holds energies";
}

TEST_F(SpectrumDocumentTest, ADocumentThatSmoothsReadsSmoothed) {
  document_.SetSmooth(true);
  ASSERT_TRUE(document_.OpenFile(Measured({10, 20, 40, 80, 50, 30})));
  EXPECT_DOUBLE_EQ(document_.Trans()[2], 41.25);
}

TEST_F(SpectrumDocumentTest, TheViewIsNotSavedTheHomeViewIs) {
  ASSERT_TRUE(document_.OpenFile(Measured({100, 10, 1})));
  ScanScale view = document_.View();
  view.StartWavelength = 500.7;
  view.Trans = {50, 20};
  document_.SetView(view);
  EXPECT_FALSE(document_.IsModified());
  ASSERT_TRUE(document_.SaveFile(Path("c.wls")));
  EXPECT_EQ(ReadBytes(Path("c.wls")), ReadBytes(Path("a.wls")));
  EXPECT_EQ(document_.View(), view) << "saving leaves what is seen";
  document_.ShowHome();
  EXPECT_EQ(document_.View().Trans, (ScanRange{120, 10}));
  EXPECT_EQ(document_.View().StartWavelength, 490.5);
}

TEST_F(SpectrumDocumentTest, OtherOptionsAreAChangeThatIsSaved) {
  ASSERT_TRUE(document_.OpenFile(Measured({100, 10, 1})));
  WLSOption option = document_.Option();
  document_.SetOption(option);
  EXPECT_FALSE(document_.IsModified()) << "nothing was new";
  option.AbsTop = 1.5;
  option.DisplayMode = 1;
  option.PointCount = 77;
  document_.SetOption(option);
  EXPECT_TRUE(document_.IsModified());
  EXPECT_EQ(document_.View().Abs, (ScanRange{1.5, -0.25}));
  EXPECT_EQ(document_.Option().PointCount, 3);
  ASSERT_TRUE(document_.SaveFile(Path("a.wls")));
  EXPECT_FALSE(document_.IsModified());
  SpectrumDocument again(Kind::Measured);
  ASSERT_TRUE(again.OpenFile(Path("a.wls")));
  EXPECT_EQ(again.Option().AbsTop, 1.5);
  EXPECT_EQ(again.Mode(), ScanMode::Abs);
}

TEST_F(SpectrumDocumentTest, OptionsOfAnEmptyDocumentAreNoWorkToLose) {
  document_.SetOption(OtherOption());
  EXPECT_FALSE(document_.IsModified());
  EXPECT_EQ(document_.View().EndWavelength, 520);
  EXPECT_FALSE(document_.SaveFile(Path("c.wls")));
  EXPECT_EQ(document_.LastFault().Error, FileError::NotSavable);
  EXPECT_FALSE(std::filesystem::exists(Path("c.wls")));
}

TEST_F(SpectrumDocumentTest, PeaksAreThoseOfTheAbsorbanceAndGoWithTheFile) {
  ASSERT_TRUE(document_.OpenFile(Measured({100, 10, 100, 50, 100})));
  document_.FindPeak({0.001, true, true});
  EXPECT_EQ(document_.Found().PeakIndex, (std::vector<std::int32_t>{1, 3}));
  EXPECT_EQ(document_.Found().ValleyIndex, (std::vector<std::int32_t>{2}));
  document_.ForgetPeaks();
  EXPECT_TRUE(document_.Found().PeakIndex.empty());
  EXPECT_FALSE(document_.Found().ValleyIndex.empty());
  document_.ForgetValleys();
  EXPECT_TRUE(document_.Found().ValleyIndex.empty());
  document_.FindPeak({});
  ASSERT_TRUE(document_.OpenFile(Path("a.wls")));
  EXPECT_TRUE(document_.Found().PeakIndex.empty());
}

TEST_F(SpectrumDocumentTest, AFileThatIsCutGivesWhatItHasAndIsNotReplaced) {
  const std::string path = Measured({100, 10, 1});
  CutFile(path, 1);
  const std::string before = ReadBytes(path);
  EXPECT_FALSE(document_.OpenFile(path));
  EXPECT_TRUE(document_.IsHalfLoaded());
  EXPECT_EQ(document_.PointCount(), 2);
  EXPECT_EQ(document_.FileName(), path);
  EXPECT_FALSE(document_.SaveFile(path));
  EXPECT_EQ(document_.LastFault().Error, FileError::HalfRead);
  EXPECT_EQ(ReadBytes(path), before);
  ASSERT_TRUE(document_.SaveFile(Path("rest.wls")));
  EXPECT_FALSE(document_.IsHalfLoaded());
  EXPECT_EQ(document_.FileName(), Path("rest.wls"));
}

TEST_F(SpectrumDocumentTest, WhatCannotBeReadChangesNothing) {
  ASSERT_TRUE(document_.OpenFile(Measured({100, 10, 1})));
  document_.FindPeak({});
  Processed({{500, 10, 1}});
  WriteBytes(Path("foreign.wls"), "not a spectrum");
  WLSOption many = OtherOption();
  const std::string tooMany = SaveSpectrum(WLSModule(), Path("many.wls"), many, MeasuredPoints({1}));
  std::string bytes = ReadBytes(tooMany);
  bytes.replace(104 + 72, 4, std::string("\x12\x27\0\0", 4));  // 10002 points
  WriteBytes(tooMany, bytes);
  for (const char* name : {"b.wls", "foreign.wls", "gone.wls", "many.wls", ""}) {
    EXPECT_FALSE(document_.OpenFile(name[0] == '\0' ? "" : Path(name))) << name;
    EXPECT_EQ(document_.PointCount(), 3) << name;
    EXPECT_EQ(document_.FileName(), Path("a.wls")) << name;
    EXPECT_FALSE(document_.IsHalfLoaded()) << name;
  }
}

TEST_F(SpectrumDocumentTest, NoPointsIsAnEmptyCurve) {
  ASSERT_TRUE(document_.OpenFile(Measured({})));
  EXPECT_EQ(document_.PointCount(), 0);
  EXPECT_EQ(document_.WavelengthRange(), (std::pair<double, double>{0, 0}));
  document_.FindPeak({});
  EXPECT_TRUE(document_.Found().PeakIndex.empty());
  EXPECT_THROW(document_.Record(0), NumericFault);
}

TEST_F(SpectrumDocumentTest, TheRangeOfThePointsLeavesOutWhatIsNoNumber) {
  SpectrumDocument processed(Kind::Processed);
  ASSERT_TRUE(processed.OpenFile(Processed({{kNaN, 1, 1}, {600, 1, 1}, {kInfinity, 1, 1}, {450, 1, 1}})));
  EXPECT_EQ(processed.WavelengthRange(), (std::pair<double, double>{450, 600}));
}

struct IntervalRow {
  const char* Name;
  std::int32_t Index;
  double Start;
  double End;
  std::int32_t Step;
  std::int32_t Points;
};

class SpectrumInterval : public testing::TestWithParam<IntervalRow> {};

TEST_P(SpectrumInterval, GivesStepAndExpectedPoints) {
  SpectrumDocument document(Kind::Measured);
  WLSOption option = OtherOption();
  option.IntervalWavelength = GetParam().Index;
  option.StartWavelength = GetParam().Start;
  option.EndWavelength = GetParam().End;
  document.SetOption(option);
  EXPECT_EQ(document.IntervalStep(), GetParam().Step);
  EXPECT_EQ(document.ExpectedPoints(), GetParam().Points);
}

INSTANTIATE_TEST_SUITE_P(
    Indices, SpectrumInterval,
    testing::Values(
        IntervalRow{"Tenth", 0, 500, 510, 100, 101}, IntervalRow{"Fifth", 1, 500, 510, 200, 51},
        IntervalRow{"Half", 2, 500, 510.2, 500, 21}, IntervalRow{"One", 3, 500, 510.9, 1000, 11},
        IntervalRow{"Two", 4, 500, 510, 2000, 6}, IntervalRow{"Five", 5, 500, 510, 5000, 3},
        IntervalRow{"Beyond", 6, 500, 510, 1000, 11}, IntervalRow{"Negative", -1, 500, 510, 1000, 11},
        IntervalRow{"StartIsEnd", 3, 500, 500, 1000, 1}, IntervalRow{"TurnedRound", 3, 510, 500, 1000, 0},
        IntervalRow{"NoNumber", 3, kNaN, 500, 1000, 0}, IntervalRow{"Endless", 3, 0, kInfinity, 1000, 10001},
        IntervalRow{"TooMany", 0, 0, 1e9, 100, 10001}),
    NameOfRow<IntervalRow>);

TEST_F(SpectrumDocumentTest, AProcessedSpectrumKeepsItsValues) {
  SpectrumDocument processed(Kind::Processed);
  EXPECT_EQ(processed.FileType(), 12);
  ASSERT_TRUE(processed.OpenFile(Processed({{500, 12.5, 0.9}, {501, 13, 0.8}})));
  EXPECT_EQ(Copied(processed.Trans()), (Numbers{12.5, 13}));
  EXPECT_EQ(Copied(processed.Abs()), (Numbers{0.9, 0.8}));
  EXPECT_EQ(Copied(processed.Energy()), (Numbers{0, 0}));
  processed.SetSmooth(true);
  EXPECT_EQ(Copied(processed.Abs()), (Numbers{0.9, 0.8})) << "smoothing is for measured ones";
  EXPECT_EQ(processed.Record(1), (WLSRecord{0, 0, 0, 501, 0}));
}

TEST_F(SpectrumDocumentTest, AProcessedSpectrumHasNoEnergyMode) {
  SpectrumDocument processed(Kind::Processed);
  processed.SetMode(ScanMode::Energy);
  EXPECT_EQ(processed.Mode(), ScanMode::Abs);
  document_.SetMode(ScanMode::Energy);
  EXPECT_EQ(document_.Mode(), ScanMode::Energy);
  WLSOption option = OtherOption();
  option.DisplayMode = 7;
  document_.SetOption(option);
  EXPECT_EQ(document_.Mode(), ScanMode::Abs);
  EXPECT_EQ(document_.Option().DisplayMode, 7) << "a file gets back what it had";
}

TEST_F(SpectrumDocumentTest, AProcessedSpectrumIsMadePointByPoint) {
  SpectrumDocument processed(Kind::Processed);
  EXPECT_TRUE(processed.SetPoint(2, {502, 1, 2}));
  EXPECT_EQ(processed.PointCount(), 3);
  EXPECT_TRUE(processed.SetPoint(0, {500, 100, 0}));
  EXPECT_TRUE(processed.SetPointCount(2));
  EXPECT_TRUE(processed.IsModified());
  EXPECT_EQ(Copied(processed.Wavelength()), (Numbers{500, 0}));
  EXPECT_TRUE(processed.SetPoint(10000, {502, 1, 2}));
  EXPECT_EQ(processed.PointCount(), 10001);
  for (const std::int32_t index : {-1, 10001}) EXPECT_FALSE(processed.SetPoint(index, {}));
  for (const std::int32_t count : {-1, 10002}) EXPECT_FALSE(processed.SetPointCount(count));
  EXPECT_EQ(processed.PointCount(), 10001);
  EXPECT_FALSE(document_.SetPoint(0, {})) << "a measured one is made of energies";
  EXPECT_FALSE(document_.SetPointCount(1));
}

TEST_F(SpectrumDocumentTest, TheFileOfAProcessedSpectrumHasNoEnergies) {
  SpectrumDocument processed(Kind::Processed);
  processed.SetOption(OtherOption());
  processed.SetPoint(0, {500, 100, 0});
  ASSERT_TRUE(processed.SaveFile(Path("c.wls")));
  EXPECT_FALSE(processed.IsModified());
  WLSOption option;
  std::vector<WLS2Record> points;
  ASSERT_FALSE(LoadDataFile(WLS2Module(), Path("c.wls"), option, points));
  EXPECT_EQ(option, (WLSOption{490.5, 520, 2.5, -0.25, 120, 10, 0, 0, 0, 0, 0, 0, 1, 2}));
  EXPECT_EQ(points, (std::vector<WLS2Record>{{500, 100, 0}}));
}

}  // namespace
}  // namespace spectrane
