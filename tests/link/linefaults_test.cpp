// Faults of the serial line itself, over pseudo-terminals and on simulated time. The names begin with the row
// of the catalogue in docs/reliability.md.

#include <signal.h>
#include <sys/time.h>

#include <chrono>
#include <filesystem>
#include <fstream>

#include <QElapsedTimer>

#include "link/linkfixture.h"
#include "link/portlist.h"
#include "link/ptyline.h"
#include "link/serialport.h"

#ifdef SPECTRANE_SANITIZED
extern "C" std::size_t __sanitizer_get_current_allocated_bytes();
#endif

namespace spectrane::testing_link {
namespace {

/// Answers as the healthy instrument of the fixture does.
void AnswerAll(PtyLine& line, const std::string& command) {
  static const std::map<std::string, std::vector<std::string>> lines = ScriptedPeer().Lines;
  const auto row = lines.find(command);
  line.Send(ScriptedPeer::Reply(command, row == lines.end() ? std::vector<std::string>() : row->second));
}

/// Devices by the paths that are in the list at the moment.
class ListedPorts : public SerialPortList {
 public:
  std::string Path(int number) const override {
    const auto index = static_cast<std::size_t>(number) - 1;
    return number >= 1 && index < Paths.size() ? Paths[index] : std::string();
  }
  std::unique_ptr<Port> MakePort(int number) override {
    Opened.push_back(Path(number));
    return SerialPortList::MakePort(number);
  }
  std::vector<std::string> Paths;
  std::vector<std::string> Opened;
};

/// The link of a program over real devices and on the real clock.
class RealLine : public LinkFixture {
 protected:
  ListedPorts Devices;
  SteadyClock Real;
  QtMessageLoop Events;
  InstrumentLink Program{{Devices, Real, Events, Turn, Settings, Display, Boxes, BrandRow(9)}};
};

TEST_F(RealLine, S04_PluggedBackUnderAnotherNameItConnectsAgain) {
  PtyLine first(AnswerAll);
  Devices.Paths = {first.Path};
  ASSERT_TRUE(Program.Connect.mmuOperationConnect());
  first.HangUp();
  double w = 0.0;
  // The device goes within a moment; no exchange passes from then on.
  while (Program.Instrument.GetWavelength(w)) std::this_thread::sleep_for(std::chrono::milliseconds(5));
  PtyLine second(AnswerAll);
  Devices.Paths = {second.Path};
  Devices.Opened.clear();
  EXPECT_FALSE(Program.Instrument.GetWavelength(w)) << "nothing opens by itself";
  EXPECT_TRUE(Program.State.InstrumentConnected) << "until it is released";
  Program.Connect.ReleaseCommand();
  EXPECT_FALSE(Program.State.InstrumentConnected);
  Program.Connect.ConnectCommand();
  EXPECT_TRUE(Program.State.InstrumentConnected);
  EXPECT_TRUE(Program.Instrument.GetWavelength(w));
  EXPECT_EQ(w, 546.0);
  EXPECT_EQ(Devices.Opened, (std::vector<std::string>{second.Path})) << "the old name is not tried";
}

TEST_F(RealLine, S05_MissingAndForeignDevicesDoNotEndTheSearch) {
  PtyLine held(AnswerAll);
  SerialPort somebody;
  ASSERT_TRUE(somebody.Open(held.Path));
  PtyLine instrument(AnswerAll);
  Devices.Paths = {"/dev/no-such-device", "/dev/null", held.Path, instrument.Path};
  EXPECT_TRUE(Program.Connect.mmuOperationConnect());
  EXPECT_EQ(Program.State.PortNumber, 4);
  ASSERT_EQ(Program.Instrument.Attempts().size(), 3u);
  EXPECT_EQ(Program.Instrument.Attempts()[0].Fault, PortFault::Missing);
  EXPECT_EQ(Program.Instrument.Attempts()[1].Fault, PortFault::Other);
  EXPECT_EQ(Program.Instrument.Attempts()[2].Fault, PortFault::InUse);
}

TEST_F(RealLine, S05_AFixedPortThatCannotBeOpenedIsToldWithItsReason) {
  PtyLine held(AnswerAll);
  SerialPort somebody;
  ASSERT_TRUE(somebody.Open(held.Path));
  Devices.Paths = {"/dev/no-such-device", held.Path};
  Program.State.PortSearchMode = 1;
  const std::pair<const char*, const char*> cases[] = {{"1", "No such file"}, {"2", "in use"}};
  for (const auto& [port, words] : cases) {
    Settings.PutSetting("Option", "Port ID", port);
    Boxes.Ids.clear();
    EXPECT_FALSE(Program.Connect.mmuOperationConnect());
    EXPECT_EQ(Boxes.Ids, (std::vector<int>{1097})) << port;
    EXPECT_NE(Boxes.Details.find(words), std::string::npos) << Boxes.Details;
  }
}

// An error raised while the device is being opened must not free what is being opened.
TEST(LineFaults, S08_APortThatFailedToOpenOpensTheNextDevice) {
  PtyLine line(AnswerAll);
  SerialPort port;
  for (const char* bad : {"/dev/null", "/dev/no-such-device", "/dev", "", "/dev/zero"}) {
    EXPECT_FALSE(port.Open(bad)) << bad;
    EXPECT_FALSE(port.IsOpen()) << bad;
    EXPECT_EQ(port.Read(1), "") << bad;
    EXPECT_FALSE(port.Write("check\r", 10)) << bad;
    ASSERT_TRUE(port.Open(line.Path)) << "after " << bad << ": " << port.LastReason();
    ASSERT_TRUE(port.Write("getwl\r", 1000));
    std::string reply;
    for (int i = 0; i < 50 && !reply.ends_with(">"); ++i) reply += port.Read(100);
    EXPECT_EQ(reply, "getwl\r\n546.0\r\n>") << "after " << bad;
  }
}

TEST_F(RealLine, S11_EndlessBytesAreCappedAndMemoryStaysFlat) {
  const auto resident = []() -> long {
#ifdef SPECTRANE_SANITIZED
    // The sanitizer holds back what was given back.
    return static_cast<long>(__sanitizer_get_current_allocated_bytes());
#else
    std::ifstream status("/proc/self/statm");
    long total = 0;
    long pages = 0;
    status >> total >> pages;
    return pages * sysconf(_SC_PAGESIZE);
#endif
  };
  std::atomic<long> sent = 0;
  PtyLine line([&sent](PtyLine& end, const std::string& command) {
    if (command != "ge 10") return AnswerAll(end, command);
    QElapsedTimer clock;
    clock.start();
    while (clock.elapsed() < 1200) {
      end.Send(std::string(4096, 'x'));
      sent += 4096;
    }
  });
  Devices.Paths = {line.Path};
  int number = 1;
  ASSERT_TRUE(Program.Transport.OpenPort(number));
  const long before = resident();
  QElapsedTimer clock;
  clock.start();
  std::string reply;
  EXPECT_FALSE(Program.Transport.Exchange("ge 10", reply, 1));
  EXPECT_LT(clock.elapsed(), 2000);
  EXPECT_EQ(Program.Transport.LastEnd(), ExchangeEnd::TimedOut);
  EXPECT_EQ(reply.size(), 65536u);
  EXPECT_GT(sent.load(), 1 << 20) << "a real flood";
  EXPECT_LT(resident() - before, 4 << 20);
  std::this_thread::sleep_for(std::chrono::milliseconds(400));
  EXPECT_TRUE(Program.Transport.Exchange("getwl", reply, 3)) << "the clean exchange after it";
}

/// A clock signal that interrupts every system call again and again.
class ManySignals {
 public:
  ManySignals() {
    struct sigaction act = {};
    act.sa_handler = [](int) { Count = Count + 1; };  // without SA_RESTART
    sigaction(SIGALRM, &act, &before_);
    const itimerval every = {{0, 500}, {0, 500}};
    setitimer(ITIMER_REAL, &every, nullptr);
  }
  ~ManySignals() {
    const itimerval never = {};
    setitimer(ITIMER_REAL, &never, nullptr);
    sigaction(SIGALRM, &before_, nullptr);
  }
  ManySignals(const ManySignals&) = delete;
  ManySignals& operator=(const ManySignals&) = delete;
  static volatile sig_atomic_t Count;

 private:
  struct sigaction before_ = {};
};
volatile sig_atomic_t ManySignals::Count = 0;

TEST_F(RealLine, S15_InterruptedSystemCallsChangeNoReply) {
  PtyLine line([](PtyLine& end, const std::string& command) {
    // The serving thread leaves the signals to the program.
    sigset_t all;
    sigfillset(&all);
    pthread_sigmask(SIG_BLOCK, &all, nullptr);
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
    AnswerAll(end, command);
  });
  Devices.Paths = {line.Path};
  int number = 1;
  ASSERT_TRUE(Program.Transport.OpenPort(number));
  std::string reply;
  ASSERT_TRUE(Program.Transport.Exchange("getwl", reply, 3));
  const ManySignals signals;
  for (int i = 0; i < 50; ++i) {
    EXPECT_TRUE(Program.Transport.Exchange("getdark", reply, 3)) << i;
    EXPECT_EQ(reply, ScriptedPeer::Reply("getdark", ScriptedPeer().Lines["getdark"])) << i;
  }
  EXPECT_GT(ManySignals::Count, 50) << "signals did come in the middle";
}

class ReplyFaults : public LinkFixture {
 protected:
  std::string Reply;
  bool Ask(const std::string& command) { return Link.Transport.Exchange(command, Reply, 1); }
  Interface& I() { return Link.Instrument; }
};

TEST_F(ReplyFaults, S10_EveryByteOfNoiseSpoilsOneExchangeOnly) {
  OpenLine();
  for (int byte = 0; byte < 256; ++byte) {
    const std::string noise(1, static_cast<char>(byte));
    Peer.NextText("getwl", noise + "getwl\r\n546.0\r\n>");
    EXPECT_FALSE(Ask("getwl")) << "in front of the echo: " << byte;
    EXPECT_EQ(Link.Transport.LastEnd(), ExchangeEnd::WrongEcho) << byte;
    EXPECT_TRUE(Ask("getwl")) << "after " << byte;
    Peer.NextText("getwl", "get" + noise + "wl\r\n546.0\r\n>");
    EXPECT_FALSE(Ask("getwl")) << "inside the echo: " << byte;
    EXPECT_TRUE(Ask("getwl")) << "after " << byte;
    EXPECT_EQ(Reply, "getwl\r\n546.0\r\n>") << "after " << byte;
    Ports.Current->Inject(noise + noise + noise);
    EXPECT_TRUE(Ask("getwl")) << "between two exchanges: " << byte;
    EXPECT_EQ(Reply, "getwl\r\n546.0\r\n>") << byte;
  }
}

/// A device that is no instrument and says what it says.
class OtherDevice : public LinePeer {
 public:
  explicit OtherDevice(std::function<std::vector<Delivery>(std::string_view)> answer)
      : answer_(std::move(answer)) {}
  std::vector<Delivery> Receive(std::string_view bytes, std::int64_t) override {
    Received += bytes;
    return answer_(bytes);
  }
  std::string Received;

 private:
  std::function<std::vector<Delivery>(std::string_view)> answer_;
};

TEST_F(ReplyFaults, S13_OtherDevicesArePassedOverInASecondAndHearTheProbeAlone) {
  OtherDevice receiver([](std::string_view) {
    std::vector<Delivery> chatter;
    for (int i = 0; i < 40; ++i) chatter.push_back({50, "$GPGGA,123519,4807.038,N*47\r\n", false});
    return chatter;
  });
  OtherDevice modem([](std::string_view) { return std::vector<Delivery>{{3, "check\r\r\nOK\r\n", false}}; });
  OtherDevice loop([](std::string_view sent) {
    return std::vector<Delivery>{{0, std::string(sent), false}};
  });
  OtherDevice prompt([](std::string_view) {
    return std::vector<Delivery>{{2, "check\r\nERROR\r\n>", false}};
  });
  OtherDevice silent([](std::string_view) { return std::vector<Delivery>(); });
  OtherDevice* const others[] = {&receiver, &modem, &loop, &prompt, &silent};
  int number = 0;
  for (OtherDevice* other : others) Ports.Put(++number, *other);
  ScriptedPeer instrument;
  Ports.Put(++number, instrument);
  const std::int64_t before = Time.NowMs();
  EXPECT_TRUE(I().FindInstrument());
  EXPECT_EQ(I().GetPortID(), number);
  EXPECT_LE(Time.NowMs() - before, 1000 * static_cast<std::int64_t>(std::size(others)) + 100);
  for (OtherDevice* other : others) EXPECT_EQ(other->Received, "check\r");
}

TEST_F(ReplyFaults, P03_ADoubledEchoIsNoReading) {
  OpenLine();
  const auto twice = [this](const std::string& command, const std::vector<std::string>& lines) {
    Peer.NextText(command, command + ScriptedPeer::Reply(command, lines));
  };
  for (std::int32_t samples : {1, 2, 10}) {
    const std::string command = "ge " + std::to_string(samples);
    twice(command, std::vector<std::string>(static_cast<std::size_t>(samples), "25000"));
    I().GetEnergy(samples);
    EXPECT_FALSE(I().LastReply().Complete()) << "the rest of \"" << command << "\" reads as a number";
  }
  double w = 1.0;
  twice("getwl", {"546.0"});
  I().GetWavelength(w);
  EXPECT_EQ(w, 1.0);
  EXPECT_FALSE(I().LastReply().Complete());
  std::int32_t energy = 77;
  std::int32_t gain = 78;
  twice("rezero", {"50000", "3"});
  I().Rezero(energy, gain);
  EXPECT_FALSE(I().LastReply().Complete());
  twice("connect", {"ok."});
  EXPECT_FALSE(I().ConnectInstrument());
}

TEST_F(ReplyFaults, P06_NonsenseInAnyAnswerIsNeverANumber) {
  OpenLine();
  const std::string nul("1\0002", 3);
  for (const std::string& line : {std::string("abc"), std::string(), std::string("1e999"), std::string("NaN"),
                                  std::string("2147483648"), std::string("12,5"), std::string("0x10"),
                                  std::string("1e"), std::string("\xB5"), nul}) {
    for (const char* verb : {"getsampler", "getslip", "rezero", "getdark", "resetdark", "getwu", "getd2"}) {
      Peer.Next(verb, {{1, ScriptedPeer::Reply(verb, std::vector<std::string>(8, line)), false}});
    }
    Peer.Next("ge 10", {{1, ScriptedPeer::Reply("ge 10", std::vector<std::string>(10, line)), false}});
    std::int32_t sampler = 77;
    EXPECT_TRUE(I().GetSampler(sampler));
    EXPECT_EQ(sampler, 77) << line;
    EXPECT_FALSE(I().LastReply().Complete()) << line;
    std::int32_t slit = 77;
    EXPECT_TRUE(I().GetSlip(slit));
    EXPECT_EQ(slit, 0) << line << ": begins at zero by its definition";
    std::int32_t energy = 77;
    std::int32_t gain = 78;
    EXPECT_TRUE(I().Rezero(energy, gain));
    EXPECT_EQ(std::pair(energy, gain), std::pair(77, 78)) << line;
    EXPECT_FALSE(I().LastReply().Complete()) << line;
    for (const bool anew : {false, true}) {
      DarkEnergyTable table;
      table.fill(9);
      EXPECT_TRUE(anew ? I().ResetDark(table) : I().GetDark(table));
      EXPECT_EQ(std::count(table.begin(), table.end(), 9), kGainTableSize) << line;
      EXPECT_FALSE(I().LastReply().Complete()) << line;
    }
    for (const bool before : {false, true}) {
      bool tungsten = before;
      bool deuterium = before;
      Peer.Next("getwu", {{1, ScriptedPeer::Reply("getwu", {line}), false}});
      EXPECT_TRUE(I().GetTungstenLamp(tungsten));
      EXPECT_TRUE(I().GetTungstenLamp(tungsten));
      Peer.Next("getd2", {{1, ScriptedPeer::Reply("getd2", {line}), false}});
      EXPECT_TRUE(I().GetDeuteriumLamp(deuterium));
      EXPECT_EQ(std::pair(tungsten, deuterium), std::pair(before, before)) << line;
    }
    std::int32_t count = 10;
    EXPECT_EQ(I().GetEnergy(count), 0) << line;
    EXPECT_FALSE(I().LastReply().Complete()) << line << ": no row comes of it";
  }
}

TEST_F(ReplyFaults, P07_AGainOutsideTheTableReadsNoDarkEnergy) {
  ConnectNow();
  for (const char* gain : {"12", "-1", "1000000000", "-2147483648"}) {
    const std::function<bool()> ways[] = {[this] { return Link.Live.mmuRezeroEnergy(); },
                                          [this] { return Link.Live.mmuToolsbarReZero(); },
                                          [this] { return Link.Connect.ReadReference(); }};
    for (const auto& way : ways) {
      Link.State.DarkEnergy = 77;
      Peer.NextText("rezero", ScriptedPeer::Reply("rezero", {"50000", gain}));
      EXPECT_TRUE(way()) << gain;
      EXPECT_EQ(Link.State.DarkEnergy, 77) << gain;
    }
  }
}

TEST_F(ReplyFaults, P08_ABlankWithoutLightReadsAsDefinedAndIsSaid) {
  ConnectNow();
  for (const char* energy : {"103", "102", "0", "-5", "-2147483648"}) {
    Display.SetRemark({});
    Peer.Next("ge 30", {{1, ScriptedPeer::Reply("ge 30", std::vector<std::string>(30, energy)), false}});
    EXPECT_TRUE(Link.Live.mmuRezeroEnergy()) << energy;
    EXPECT_EQ(Display.Remark, "The blank gives no light.") << energy;
    EXPECT_EQ(Display.Trans, "  -1.0%T") << energy;
    EXPECT_EQ(Display.Abs, " 3.000Abs") << energy;
    Display.SetRemark({});
    Peer.NextText("rezero", ScriptedPeer::Reply("rezero", {energy, "3"}));
    EXPECT_TRUE(Link.Connect.ReadReference()) << energy;
    EXPECT_EQ(Display.Remark, "The blank gives no light.") << energy;
  }
}

TEST_F(ReplyFaults, P16_LongLinesAndNulAreNoReading) {
  OpenLine();
  const std::string longLine(300'000, '7');
  const std::string nul("25\0000", 4);
  for (const std::string& line : {longLine, nul}) {
    Peer.NextText("ge 2", ScriptedPeer::Reply("ge 2", {line, "25000"}));
    std::int32_t count = 2;
    I().GetEnergy(count);
    EXPECT_FALSE(I().LastReply().Complete()) << line.size();
    Peer.NextText("getsampler", ScriptedPeer::Reply("getsampler", {line}));
    std::int32_t kind = 77;
    I().GetSampler(kind);
    EXPECT_EQ(kind, 77) << line.size();
    EXPECT_FALSE(I().LastReply().Complete()) << line.size();
  }
  Peer.NextText("getwl", ScriptedPeer::Reply("getwl", {longLine}));
  EXPECT_FALSE(Ask("getwl"));
  EXPECT_EQ(Reply.size(), 65536u);
  EXPECT_TRUE(Ask("getwl")) << "the clean exchange after it";
}

TEST_F(ReplyFaults, N03_ThirtyTwoBitsOfMillisecondsAreNoEnd) {
  ConnectNow();
  for (const std::int64_t at : {std::int64_t{1} << 31, (std::int64_t{1} << 32) - 500, std::int64_t{1} << 32,
                                (std::int64_t{1} << 33) + 7}) {
    Time.Set(at);
    Peer.Next("ge 10", {{2000, ScriptedPeer::Reply("ge 10", std::vector<std::string>(10, "25000")), false}});
    std::int32_t count = 10;
    EXPECT_EQ(I().GetEnergy(count), 25000) << at;
    EXPECT_TRUE(I().LastReply().Complete()) << at;
    EXPECT_EQ(Time.NowMs(), at + 2000);
    Link.Transport.PauseMs(750);
    EXPECT_EQ(Time.NowMs(), at + 2750);
    Peer.Next("getwl", {});
    double w = 0.0;
    EXPECT_FALSE(I().GetWavelength(w)) << "a time-out is one there, too";
    EXPECT_EQ(Time.NowMs(), at + 5750);
    EXPECT_TRUE(I().GetWavelength(w));
  }
}

}  // namespace
}  // namespace spectrane::testing_link
