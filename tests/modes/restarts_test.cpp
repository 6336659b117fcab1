// An instrument that is switched off and on under a command: the banner in place of the answer tells it. A
// banner that comes between two commands is thrown away unread, like all that nobody asked for.

#include "link/linkfixture.h"
#include "modes/photometry/photometrytest.h"
#include "modes/quantitation/quantitationtest.h"
#include "modes/timescan/timescantest.h"
#include "simulator/console.h"

namespace spectrane::testing_link {
namespace {

using BoxIds = std::vector<int>;

class Restarts : public LinkFixture {
 protected:
  Restarts() { Ports.Put(1, Line); }
  void SetUp() override {
    ConnectNow();
    // A wavelength, a gain and a trim that are not those of the power-up.
    ASSERT_TRUE(Link.Instrument.SetWavelength(wavelength_));
    Link.State.CurrentWavelength = wavelength_;
  }
  void Type(const std::string& command) { ASSERT_EQ(Prompt.Execute(command).Error, "") << command; }
  /// The next answer of that verb is a banner.
  void RestartAt(const std::string& verb) { Type("fault restart " + verb); }
  TestBench Bench() { return {Link.Instrument, Link.State, Link.Live, Display, Boxes, Link.Formats}; }

  InstrumentOptions Exact() const {
    InstrumentOptions options;
    options.Noise = 0.0;
    return options;
  }
  SimulatedLine Line{Exact()};
  Console Prompt{Line,
                 Time,
                 {{},
                  {},
                  {},
                  [this](const Deliveries& pieces) {
                    for (const Delivery& piece : pieces) Ports.Current->Inject(piece.Bytes, piece.DelayMs);
                  },
                  {}}};

 private:
  double wavelength_ = 500.0;
};

/// Time that passes, and nothing happens in it.
class PassingLoop : public MessageLoop {
 public:
  explicit PassingLoop(ManualClock& clock) : clock_(clock) {}
  void RunOnce() override {}
  void RunUntil(const Clock&, std::int64_t deadlineMs) override {
    if (deadlineMs > clock_.NowMs()) clock_.Set(deadlineMs);
  }

 private:
  ManualClock& clock_;
};

TEST_F(Restarts, P11_InAPointOfAKineticsRun) {
  TimeScanDocument document;
  PassingLoop waits(Time);
  TimeScanTest test(Bench(), document, Time, waits);
  TSOption option = document.Option();
  option.IntervalSecond = 6;
  option.WorkWL = 500;
  document.Configure(option, 0, 3000);
  test.mmuOperationRezero();
  ASSERT_TRUE(test.BlankHolds());
  Boxes.Ids.clear();
  test.OnPoint = [&](std::int32_t point) {
    if (point == 3) RestartAt("ge");
  };
  EXPECT_EQ(test.mmuStartTest(), TimeScanEnd::Stopped);
  EXPECT_EQ(Boxes.Ids, BoxIds{1096});
  EXPECT_EQ(document.DataCount(), 4) << "what was read before it stays, nothing is read after it";
  EXPECT_FALSE(test.BlankHolds());
  EXPECT_EQ(Link.State.GainIndex, kUnknownGain);
  Boxes.Ids.clear();
  EXPECT_EQ(test.mmuStartTest(), TimeScanEnd::NotBegun);
  EXPECT_EQ(Boxes.Ids, BoxIds{971});
  test.mmuOperationRezero();
  EXPECT_TRUE(test.BlankHolds()) << "a new blank holds, at the wavelength of the test";
  EXPECT_EQ(Line.Model().Wavelength(), 500.0);
}

TEST_F(Restarts, P11_InASampleOfPhotometry) {
  for (const double wavelength : {500.0, 546.0}) {  // that of the power-up as well
    for (const char* verb : {"getwl", "ge"}) {
      SCOPED_TRACE(std::string(verb) + " " + std::to_string(wavelength));
      PhotometryDocument document;
      PhotometryTest test(Bench(), document);
      test.WaveLength = wavelength;
      test.mmuOperationRezero();
      ASSERT_TRUE(test.BlankHolds());
      ASSERT_TRUE(test.mmuStartTest());
      RestartAt(verb);
      EXPECT_FALSE(test.mmuStartTest());
      EXPECT_EQ(document.RecordCount(), 1);
      EXPECT_FALSE(test.BlankHolds());
      Boxes.Ids.clear();
      EXPECT_FALSE(test.mmuStartTest());
      EXPECT_EQ(Boxes.Ids, BoxIds{971}) << "set the blank first";
      test.mmuOperationRezero();
      EXPECT_TRUE(test.BlankHolds());
      EXPECT_TRUE(test.mmuStartTest());
      EXPECT_EQ(Line.Model().Wavelength(), wavelength);
      EXPECT_EQ(document.RecordCount(), 2);
      EXPECT_EQ(document.RecordEnergy(1), document.RecordEnergy(0)) << "the blank itself in the beam";
    }
  }
}

TEST_F(Restarts, P11_InABlankTheNextOneHolds) {
  for (const char* verb : {"getwl", "swl", "rezero"}) {
    SCOPED_TRACE(verb);
    PhotometryDocument document;
    PhotometryTest test(Bench(), document);
    test.WaveLength = Line.Model().Wavelength() == 500.0 ? 600.0 : 500.0;
    RestartAt(verb);
    test.mmuOperationRezero();
    EXPECT_FALSE(test.BlankHolds());
    EXPECT_EQ(Line.Faults().Pending(), 0u);
    test.mmuOperationRezero();
    EXPECT_TRUE(test.BlankHolds());
    EXPECT_EQ(Line.Model().Wavelength(), test.WaveLength);
  }
}

// Its banner comes when that command has been given up already; the next one moves whatever its reply says.
TEST_F(Restarts, P11_HeardWhileTheLineFallsQuietMovesWhateverTheReplySays) {
  PhotometryDocument document;
  PhotometryTest test(Bench(), document);
  test.WaveLength = 500;
  Type("fault restart getwl 1 3050");
  test.mmuOperationRezero();
  ASSERT_FALSE(test.BlankHolds());
  ASSERT_EQ(Link.State.RestartCount, 0) << "silence until now";
  test.mmuOperationRezero();
  EXPECT_EQ(Link.State.RestartCount, 1);
  EXPECT_TRUE(test.BlankHolds());
  EXPECT_EQ(Line.Model().Wavelength(), 500.0);
}

TEST_F(Restarts, P11_InTheSamplerOfARun) {
  Type("sampler on");
  Link.State.SamplerPresent = true;
  for (const char* verb : {"ge", "setsampler"}) {
    SCOPED_TRACE(verb);
    PhotometryDocument document;
    PhotometryTest test(Bench(), document);
    test.WaveLength = 500;
    test.mmuOperationRezero();
    ASSERT_TRUE(test.BlankHolds());
    Boxes.Ids.clear();
    test.OnRow = [&](std::int32_t row) {
      if (row == 2) RestartAt(verb);
    };
    EXPECT_FALSE(test.mmuStartTest());
    EXPECT_EQ(Boxes.Ids, BoxIds{972});
    EXPECT_EQ(document.RecordCount(), 3);
    EXPECT_FALSE(test.BlankHolds());
  }
}

TEST_F(Restarts, P11_InASampleOfAQuantitation) {
  QuantitationDocument document;
  QuantitationTest test(Bench(), document);
  QuantitationSettings settings;
  settings.CurveItem = 2;
  settings.FittingMethod = 0;
  settings.InputK = {0, 10, 0, 0};
  settings.WaveLengthNumber = 2;
  settings.WaveLengthList = {500, 600, 700};
  document.Configure(settings);
  test.mmuOperationRezero();
  ASSERT_TRUE(test.BlankHolds());
  ASSERT_TRUE(test.mmuStartTest());
  // Between its two wavelengths.
  for (const char* verb : {"swl", "sa", "ge"}) {
    SCOPED_TRACE(verb);
    test.OnReading = [&](std::size_t index, double) {
      if (index == 0) RestartAt(verb);
    };
    Boxes.Ids.clear();
    EXPECT_FALSE(test.mmuStartTest());
    EXPECT_EQ(Boxes.Ids, BoxIds{1045});
    EXPECT_EQ(document.RecordCount(), 1);
    EXPECT_FALSE(test.BlankHolds());
    test.OnReading = nullptr;
    Boxes.Ids.clear();
    EXPECT_FALSE(test.mmuStartTest());
    EXPECT_EQ(Boxes.Ids, BoxIds{1048});
    test.mmuOperationRezero();
    ASSERT_TRUE(test.BlankHolds());
  }
}

TEST_F(Restarts, WhatComesBetweenTwoCommandsIsNeitherReadNorReported) {
  PhotometryDocument document;
  PhotometryTest test(Bench(), document);
  test.WaveLength = 500;
  test.mmuOperationRezero();
  ASSERT_TRUE(test.BlankHolds());
  ASSERT_TRUE(test.mmuStartTest());
  std::int32_t rows = 1;
  for (const char* text : {"\r\nSimulated instrument\r\nready.\r\n>", "ge 3\r\n1\r\n>", ">", "Simulated"}) {
    SCOPED_TRACE(text);
    Ports.Current->Inject(text);
    for (int i = 0; i < 7; ++i) Link.Live.SampleTimerTick();
    Ports.Current->Inject(text);
    EXPECT_TRUE(test.mmuStartTest());
    EXPECT_TRUE(test.BlankHolds());
    EXPECT_EQ(document.RecordCount(), ++rows);
    EXPECT_EQ(document.RecordEnergy(rows - 1), document.RecordEnergy(0));
    EXPECT_EQ(Display.Remark, "");
    EXPECT_EQ(Link.State.RestartCount, 0);
  }
}

TEST_F(Restarts, P11_InsideAnyAnswerAtAnyByte) {
  for (const char* verb : {"getwl", "swl", "rezero", "ge", "sa"}) {
    for (int byte = 0; byte <= 40; ++byte) {
      PhotometryDocument document;
      PhotometryTest test(Bench(), document);
      test.WaveLength = 500;
      test.mmuOperationRezero();
      ASSERT_TRUE(test.BlankHolds()) << verb << " " << byte;
      Type(std::string("fault restart ") + verb + " 1 0 " + std::to_string(byte));
      std::int32_t full = 0;
      std::int32_t gain = 3;
      std::int32_t samples = 3;
      double wavelength = 500;
      const std::string name(verb);
      const bool passed = name == "getwl"    ? Link.Instrument.GetWavelength(wavelength)
                          : name == "swl"    ? Link.Instrument.SetWavelength(wavelength)
                          : name == "rezero" ? Link.Instrument.Rezero(full, gain)
                          : name == "sa"     ? Link.Instrument.SetGain(gain)
                                             : Link.Instrument.GetEnergy(samples) != 0;
      EXPECT_FALSE(passed) << verb << " " << byte;
      EXPECT_FALSE(Link.Instrument.LastReply().Complete()) << verb << " " << byte;
      EXPECT_FALSE(test.BlankHolds()) << verb << " " << byte;
    }
  }
}

TEST_F(Restarts, P11_InALiveReadingIsSaid) {
  PhotometryDocument document;
  PhotometryTest test(Bench(), document);
  test.WaveLength = 500;
  test.mmuOperationRezero();
  ASSERT_TRUE(test.BlankHolds());
  RestartAt("ge");
  for (int i = 0; i < 7; ++i) Link.Live.SampleTimerTick();
  EXPECT_EQ(Display.Remark, "The instrument has restarted: a blank has to be set again.");
  EXPECT_FALSE(test.BlankHolds());
  EXPECT_EQ(Link.State.GainIndex, kUnknownGain);
  EXPECT_TRUE(Link.State.InstrumentConnected);
  EXPECT_TRUE(Boxes.Ids.empty());
  EXPECT_FALSE(test.mmuStartTest());
  EXPECT_EQ(Boxes.Ids, BoxIds{971});
  test.mmuOperationRezero();
  EXPECT_EQ(Display.Remark, "") << "until there is a blank";
}

TEST_F(Restarts, P11_ADamagedAnswerLosesNoBlank) {
  PhotometryDocument document;
  PhotometryTest test(Bench(), document);
  test.mmuOperationRezero();
  ASSERT_TRUE(test.BlankHolds());
  for (const char* kind : {"twice", "wrong-echo", "previous", "prompt-inside", "bad-number", "noise-before",
                           "noise-inside", "fewer-lines", "more-lines"}) {
    for (const char* verb : {"getwl", "ge"}) {
      Type(std::string("fault ") + kind + " " + verb);
      test.mmuStartTest();
      Time.Advance(2000);
      EXPECT_TRUE(test.BlankHolds()) << kind << " " << verb;
    }
  }
  EXPECT_TRUE(test.mmuStartTest());
}

TEST_F(Restarts, P02_APromptInsideAPointIsRepairedByTheSecondTry) {
  TimeScanDocument document;
  PassingLoop waits(Time);
  TimeScanTest test(Bench(), document, Time, waits);
  TSOption option = document.Option();
  option.IntervalSecond = 3;
  option.WorkWL = 500;
  document.Configure(option, 0, 5);
  test.mmuOperationRezero();
  ASSERT_TRUE(test.BlankHolds());
  Boxes.Ids.clear();
  test.OnPoint = [this](std::int32_t point) {
    if (point == 1) Type("fault prompt-inside ge");
  };
  EXPECT_EQ(test.mmuStartTest(), TimeScanEnd::Finished);
  EXPECT_EQ(Boxes.Ids, BoxIds{});
  EXPECT_EQ(Line.Faults().Pending(), 0u);
  EXPECT_TRUE(test.BlankHolds());
  for (std::int32_t i = 0; i < document.DataCount(); ++i) {
    EXPECT_EQ(document.Point(i).Energy, document.Point(0).Energy) << i;
  }
}

}  // namespace
}  // namespace spectrane::testing_link
