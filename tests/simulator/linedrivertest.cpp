#include <gtest/gtest.h>

#include <QElapsedTimer>

#include "simulator/linedriver.h"
#include "simulator/waitfor.h"

namespace spectrane {
namespace {

/// A wire that only remembers, with the time of each piece.
class RecordingTransport : public Transport {
 public:
  bool Open(QString& reason) override {
    if (refuse_) reason = QStringLiteral("refused");
    open_ = !refuse_;
    return open_;
  }
  void HangUp() override { open_ = false; }
  bool IsOpen() const override { return open_; }
  QString Name() const override { return QStringLiteral("memory"); }
  void Send(const QByteArray& bytes) override {
    if (bytes.isEmpty()) return;
    Pieces.emplace_back(watch_.elapsed(), bytes.toStdString());
    All += bytes.toStdString();
  }

  void Start() { watch_.start(); }
  void Refuse() { refuse_ = true; }

  std::vector<std::pair<qint64, std::string>> Pieces;
  std::string All;

 private:
  bool open_ = false;
  bool refuse_ = false;
  QElapsedTimer watch_;
};

InstrumentOptions Fast(double speed) {
  InstrumentOptions options;
  options.Noise = 0.0;
  options.Speed = speed;
  return options;
}

class LineDriverTest : public testing::Test {
 protected:
  void Begin(double speed, bool paced = false, double reopenSeconds = -1.0) {
    line_ = std::make_unique<SimulatedLine>(Fast(speed));
    driver_ = std::make_unique<LineDriver>(*line_, clock_, wire_, paced, reopenSeconds);
    wire_.Start();
    ASSERT_FALSE(driver_->Plug());
  }
  bool WaitForBytes(const std::string& bytes) {
    return WaitFor([&] { return wire_.All == bytes; });
  }

  SteadyClock clock_;
  RecordingTransport wire_;
  std::unique_ptr<SimulatedLine> line_;
  std::unique_ptr<LineDriver> driver_;
};

TEST_F(LineDriverTest, KeepsTheInstrumentsTimes) {
  Begin(1.0);
  emit wire_.Received("connect\r");
  EXPECT_EQ(wire_.All, "connect\r\n");
  ASSERT_TRUE(WaitForBytes("connect\r\nok.\r\n>"));
  const qint64 passed = wire_.Pieces.back().first - wire_.Pieces.front().first;
  EXPECT_GE(passed, 249);
  EXPECT_LT(passed, 1000);
}

TEST_F(LineDriverTest, PacesBytesAsTheWireDoes) {
  Begin(1e6, true);
  emit wire_.Received("ge 100\r");
  ASSERT_TRUE(WaitFor([&] { return wire_.All.ends_with('>'); }));
  const double expected = static_cast<double>(wire_.All.size()) * 10.0 / 115.2;
  const auto passed = static_cast<double>(wire_.Pieces.back().first - wire_.Pieces.front().first);
  EXPECT_GT(expected, 40.0);
  EXPECT_GE(passed, expected - 2.0);
  EXPECT_GT(wire_.Pieces.size(), 5U);
}

TEST_F(LineDriverTest, CommandsDuringAnAnswerWaitAndSeeTheBeamOfTheirTime) {
  Begin(5.0);
  emit wire_.Received("sa 1\rconnect\r");
  emit wire_.Received("ge 1\r");
  EXPECT_EQ(line_->Requests(), 1);
  line_->Model().PutInBeam("closed", 0);
  ASSERT_TRUE(WaitForBytes("sa 1\r\n>connect\r\nok.\r\n>ge 1\r\n52\r\n>"));
}

TEST_F(LineDriverTest, HangUpBreaksTheLineAndJoinsItAgain) {
  Begin(1e6, false, 0.05);
  line_->Faults().Load("getwl 1 hang-up 4");
  emit wire_.Received("getwl\rgetd2\r");
  ASSERT_TRUE(WaitFor([&] { return !driver_->Plugged(); }));
  EXPECT_EQ(wire_.All, "getw");
  ASSERT_TRUE(WaitFor([&] { return driver_->Plugged(); }));
  emit wire_.Received("getwl\r");
  EXPECT_TRUE(WaitForBytes("getwgetwl\r\n546.0\r\n>"));
}

TEST_F(LineDriverTest, UnplugLosesWhatWasStillToCome) {
  Begin(2.0);
  emit wire_.Received("connect\r");
  driver_->Unplug();
  EXPECT_FALSE(driver_->Plugged());
  ASSERT_FALSE(driver_->Plug());
  EXPECT_TRUE(driver_->Plug()) << "twice is refused";
  emit wire_.Received("getwl\r");
  EXPECT_TRUE(WaitForBytes("connect\r\ngetwl\r\n546.0\r\n>"));
}

TEST_F(LineDriverTest, BrokenLineEndsTheRunningCommand) {
  Begin(1.0);
  for (const bool pulled : {false, true}) {
    wire_.All.clear();
    emit wire_.Received("adjustwl\r");
    wire_.HangUp();
    if (pulled) {
      ASSERT_FALSE(driver_->Plug());
      driver_->Unplug();
    } else {
      emit wire_.Lost();
    }
    ASSERT_FALSE(driver_->Plug());
    emit wire_.Received("getwl\r");
    EXPECT_TRUE(WaitForBytes("adjustwl\r\ngetwl\r\n546.0\r\n>")) << pulled;
  }
}

TEST_F(LineDriverTest, PlayDropsWhatIsUnderWay) {
  Begin(1.0);
  emit wire_.Received("connect\rgetwl\r");
  driver_->Play({{20, "banner>", false}});
  ASSERT_TRUE(WaitForBytes("connect\r\nbanner>"));
  emit wire_.Received("x\r");
  EXPECT_FALSE(WaitFor([] { return false; }, 300)) << "time for the dropped answer to appear";
  EXPECT_EQ(wire_.All.find("ok."), std::string::npos);
}

TEST_F(LineDriverTest, RefusedOpeningIsReported) {
  line_ = std::make_unique<SimulatedLine>(Fast(1.0));
  driver_ = std::make_unique<LineDriver>(*line_, clock_, wire_, false, -1.0);
  wire_.Refuse();
  EXPECT_EQ(driver_->Plug(), "refused");
}

}  // namespace
}  // namespace spectrane
