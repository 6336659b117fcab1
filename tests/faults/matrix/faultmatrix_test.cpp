// Every command of the wire with every kind of fault, on simulated time. What a spoiled answer may come to is
// reckoned from its bytes and their times alone.

#include <gmock/gmock.h>

#include <algorithm>
#include <charconv>
#include <limits>
#include <optional>

#include "base/basesupport.h"
#include "link/linkfixture.h"
#include "simulator/commandset.h"
#include "simulator/simulatedline.h"

namespace spectrane::testing_faults {
namespace {

using testing_link::MemoryPortList;
using testing_link::RecordedDisplay;
using testing_link::RecordedMessages;

/// What a command hands over; the values before are those that no instrument would give.
struct Values {
  std::vector<std::int32_t> Numbers = {-77, -77};
  double Wavelength = -77.0;
  DarkEnergyTable Dark = MakeDark();
  bool Lit = false;
  std::string Words;

  bool operator==(const Values&) const = default;
  static DarkEnergyTable MakeDark() {
    DarkEnergyTable table;
    table.fill(-77);
    return table;
  }
};

enum class Data { None, Words, Integers, Wavelength, Lamp };

struct CommandCase {
  const char* Verb;
  Data Kind;
  /// Lines that the command promises.
  std::size_t Lines;
  bool (*Run)(Interface&, Values&);
};

template <bool (Interface::*kProcedure)()>
bool Plain(Interface& instrument, Values&) {
  return (instrument.*kProcedure)();
}
template <bool (Interface::*kProcedure)(double&)>
bool Asked(Interface& instrument, Values& values) {
  return (instrument.*kProcedure)(values.Wavelength);
}
template <bool (Interface::*kProcedure)(double&)>
bool Moved(Interface& instrument, Values&) {
  double wavelength = 510.0;
  return (instrument.*kProcedure)(wavelength);
}
template <bool (Interface::*kProcedure)(std::int32_t&)>
bool AskedNumber(Interface& instrument, Values& values) {
  return (instrument.*kProcedure)(values.Numbers[0]);
}
template <bool (Interface::*kProcedure)(std::int32_t&)>
bool Told(Interface& instrument, Values&) {
  std::int32_t value = 3;
  return (instrument.*kProcedure)(value);
}
template <bool (Interface::*kProcedure)(bool&)>
bool AskedLamp(Interface& instrument, Values& values) {
  return (instrument.*kProcedure)(values.Lit);
}
template <bool (Interface::*kProcedure)(DarkEnergyTable&)>
bool AskedDark(Interface& instrument, Values& values) {
  return (instrument.*kProcedure)(values.Dark);
}

constexpr CommandCase kCommands[] = {
    {"check", Data::Words, 1, [](Interface& instrument, Values&) { return instrument.FindInstrument(); }},
    {"company", Data::Words, 1,
     [](Interface& instrument, Values& values) {
       const bool done = instrument.CheckCompany();
       values.Words = instrument.Company();
       return done;
     }},
    {"connect", Data::Words, 1, &Plain<&Interface::ConnectInstrument>},
    {"quit", Data::None, 0, &Plain<&Interface::QuitInstrument>},
    {"rezero", Data::Integers, 2,
     [](Interface& instrument, Values& values) {
       return instrument.Rezero(values.Numbers[0], values.Numbers[1]);
     }},
    {"resetdark", Data::Integers, 8, &AskedDark<&Interface::ResetDark>},
    {"getdark", Data::Integers, 8, &AskedDark<&Interface::GetDark>},
    {"ge", Data::Integers, 10,
     [](Interface& instrument, Values& values) {
       std::int32_t samples = 10;
       const std::int32_t energy = instrument.GetEnergy(samples);
       // 0 stands for a reading that failed; who stores asks whether the answer was complete.
       if (instrument.LastReply().Complete()) values.Numbers[0] = energy;
       if (instrument.LastReply().End != ExchangeEnd::Passed) {
         EXPECT_EQ(energy, 0);
       }
       return instrument.LastReply().End == ExchangeEnd::Passed;
     }},
    {"swl", Data::None, 0, &Moved<&Interface::SetWavelength>},
    {"adjustwl", Data::None, 0, &Plain<&Interface::AdjustWavelength>},
    {"getwl", Data::Wavelength, 1, &Asked<&Interface::GetWavelength>},
    {"sa", Data::None, 0, &Told<&Interface::SetGain>},
    {"setlampwl", Data::None, 0, &Moved<&Interface::SetLampWavelength>},
    {"getlampwl", Data::Wavelength, 1, &Asked<&Interface::GetLampWavelength>},
    {"wuon", Data::None, 0, &Plain<&Interface::TungstenLampOn>},
    {"wuoff", Data::None, 0, &Plain<&Interface::TungstenLampOff>},
    {"getwu", Data::Lamp, 1, &AskedLamp<&Interface::GetTungstenLamp>},
    {"d2on", Data::None, 0, &Plain<&Interface::DeuteriumLampOn>},
    {"d2off", Data::None, 0, &Plain<&Interface::DeuteriumLampOff>},
    {"getd2", Data::Lamp, 1, &AskedLamp<&Interface::GetDeuteriumLamp>},
    {"getslip", Data::Integers, 1,
     [](Interface& instrument, Values& values) { return instrument.GetSlip(values.Numbers[0]); }},
    {"getsampler", Data::Integers, 1, &AskedNumber<&Interface::GetSampler>},
    {"setslip", Data::None, 0, &Told<&Interface::SetSlip>},
    {"setsampler", Data::None, 0, &Told<&Interface::SetSampler>},
    {"startwl", Data::Wavelength, 1, &Asked<&Interface::GetStartWavelength>},
    {"endwl", Data::Wavelength, 1, &Asked<&Interface::GetEndWavelength>},
};

/// A link with an exact instrument that has the sampler, on simulated time.
class Bench {
 public:
  Bench()
      : settings_(FolderOfAll()),
        line_({.Sampler = true, .Noise = 0.0}),
        link_({ports_, Time, loop_, turn_, settings_, display_, boxes_, BrandRow(9)}) {
    ports_.Put(1, line_);
    line_.OnExchange = [this](const ExchangeRecord& record) { Exchanges.push_back(record); };
    int number = 1;
    EXPECT_TRUE(link_.Transport.OpenPort(number));
  }
  Interface& Instrument() { return link_.Instrument; }
  InstrumentModel& Model() { return line_.Model(); }
  FaultScript& Faults() { return line_.Faults(); }
  bool LineIsWhole() const { return link_.Transport.IsPortOpen(); }
  void Rejoin() {
    int number = 1;
    EXPECT_TRUE(link_.Transport.OpenPort(number));
  }

  ManualClock Time;
  std::vector<ExchangeRecord> Exchanges;

 private:
  static std::string FolderOfAll() {
    static const TemporaryFolder folder;
    return folder.Path();
  }

  ManualMessageLoop loop_{Time};
  NoExclusion turn_;
  MemoryPortList ports_{Time};
  Setting settings_;
  RecordedDisplay display_;
  RecordedMessages boxes_;
  SimulatedLine line_;
  InstrumentLink link_;
};

/// No answer, however late, takes longer.
constexpr std::int64_t kAllOverMs = 300'000;

// ---- What must come of an answer ----

/// The lines that a reply has for a request; a line without its end did not come. Nothing: no reply to it.
std::optional<std::vector<std::string>> LinesOf(const std::string& request, const std::string& reply) {
  if (!reply.starts_with(request) || !reply.ends_with('>')) return std::nullopt;
  std::vector<std::string> lines;
  for (std::size_t from = request.size() + 2, end = 0; from < reply.size(); from = end + 2) {
    end = reply.find('\r', from);
    if (end == std::string::npos) break;
    lines.push_back(reply.substr(from, end - from));
  }
  return lines;
}

std::optional<std::int32_t> WholeNumber(const std::string& line) {
  std::int32_t value = 0;
  const char* const end = line.data() + line.size();
  const auto [to, error] = std::from_chars(line.data(), end, value);
  return error == std::errc{} && to == end ? std::optional(value) : std::nullopt;
}

/// A wavelength is what its line begins with; 0 when that is no number, nothing when it is too large.
std::optional<double> Nanometres(const std::string& line) {
  double value = 0;
  const bool number = !line.empty() && (line[0] == '-' || (line[0] >= '0' && line[0] <= '9'));
  const auto [to, error] = std::from_chars(line.data(), line.data() + line.size(), value);
  if (number && error == std::errc::result_out_of_range) return std::nullopt;
  return number && error == std::errc{} ? value : 0.0;
}

struct Expected {
  bool Passed = false;
  /// Every line that the command promises came and can be read.
  bool Complete = false;
  Values Out;
};

std::int32_t MiddleOf(std::vector<std::int32_t> samples) {
  for (std::size_t i = 1; i < samples.size(); ++i) {
    if (samples[i - 1] > samples[i]) std::swap(samples[i - 1], samples[i]);
  }
  return samples[4];
}

void ExpectIntegers(const CommandCase& command, const std::vector<std::optional<std::int32_t>>& numbers,
                    Expected& expected) {
  if (std::string_view(command.Verb) == "ge") {
    if (!expected.Complete) return;
    std::vector<std::int32_t> samples;
    for (const auto& number : numbers) samples.push_back(*number);
    expected.Out.Numbers[0] = MiddleOf(samples);
    return;
  }
  for (std::size_t i = 0; i < numbers.size(); ++i) {
    if (!numbers[i]) continue;
    if (command.Lines == 8) {
      expected.Out.Dark[i + 1] = *numbers[i];
    } else {
      expected.Out.Numbers[i] = *numbers[i];
    }
  }
}

/// Data begin behind the line end of the echo: of one that goes on nothing is known for sure.
bool EchoGoesOn(const std::string& request, const std::string& reply) {
  return request.size() < reply.size() && reply[request.size()] != '\r';
}

/// `collected`: all that came in time, up to the prompt that ended it; nothing when none did.
Expected ExpectedOf(const CommandCase& command, const std::string& request,
                    const std::optional<std::string>& collected) {
  Expected expected;
  const std::string_view verb = command.Verb;
  if (verb == "getslip") expected.Out.Numbers[0] = 0;
  // A banner at its end: the instrument broke off and restarted.
  if (!collected || collected->ends_with("\r\nready.\r\n>")) return expected;
  const auto lines = LinesOf(request, *collected);
  if (!lines) return expected;
  expected.Passed = true;
  expected.Complete = lines->size() >= command.Lines;
  const std::string first = lines->empty() ? std::string() : lines->front();
  switch (command.Kind) {
    case Data::None:
      break;
    case Data::Words:
      if (verb == "company") expected.Out.Words = first;
      if (verb == "check") expected.Passed = first == "Invalid Command.";
      if (verb == "connect") expected.Passed = first == "ok.";
      break;
    case Data::Integers: {
      std::vector<std::optional<std::int32_t>> numbers(command.Lines);
      for (std::size_t i = 0; i < std::min(command.Lines, lines->size()); ++i) {
        numbers[i] = WholeNumber((*lines)[i]);
      }
      expected.Complete = std::ranges::all_of(numbers, [](const auto& number) { return number.has_value(); });
      ExpectIntegers(command, numbers, expected);
      break;
    }
    case Data::Wavelength: {
      const bool known = !lines->empty() && !EchoGoesOn(request, *collected);
      const auto wavelength = known ? Nanometres(first) : std::nullopt;
      expected.Complete = wavelength.has_value();
      if (wavelength) expected.Out.Wavelength = *wavelength;
      break;
    }
    case Data::Lamp: {
      const auto lit = WholeNumber(first);
      expected.Complete = lit.has_value();
      if (lit) expected.Out.Lit = *lit == 1;
      break;
    }
  }
  if (EchoGoesOn(request, *collected)) expected.Complete = false;
  return expected;
}

/// What came in time of a spoiled answer: nothing, when no prompt ended it.
std::optional<std::string> Collected(FaultKind kind, const std::string& clean, const std::string& spoiled,
                                     std::size_t place, int timeoutMs) {
  switch (kind) {
    case FaultKind::NoReply:
    case FaultKind::LateReply:
    case FaultKind::NoPrompt:
    case FaultKind::Flood:
      return std::nullopt;
    case FaultKind::Cut:
    case FaultKind::HangUp:
      return place < clean.size() ? std::nullopt : std::optional(clean);
    case FaultKind::Restart:
      return timeoutMs > 2000 ? std::optional(spoiled) : std::nullopt;
    case FaultKind::PromptInside:
      return place < clean.size() ? clean.substr(0, place) + '>' : clean;
    case FaultKind::Twice:
      return clean;
    default:
      return spoiled;
  }
}

// ---- A cell ----

struct Cell {
  const CommandCase& Command;
  const FaultKindEntry& Kind;
  /// Parameters as a script has them; `Place` is the byte that they name.
  std::vector<std::string> Parameters;
  std::optional<std::size_t> Place;
};

std::string NameOf(const Cell& cell) {
  std::string name = std::string(cell.Command.Verb) + " " + std::string(cell.Kind.Name);
  for (const std::string& parameter : cell.Parameters) name += " " + parameter;
  return name;
}

/// The clean answer to the command, with its request.
ExchangeRecord CleanAnswer(const CommandCase& command) {
  Bench bench;
  Values values;
  EXPECT_TRUE(command.Run(bench.Instrument(), values)) << command.Verb;
  return bench.Exchanges.at(0);
}

void RunCell(const Cell& cell, const ExchangeRecord& clean) {
  SCOPED_TRACE(NameOf(cell));
  Bench bench;
  double wavelength = 0;
  // What "previous" answers with; never the command itself.
  ASSERT_TRUE(std::string_view(cell.Command.Verb) == "getwl" ? bench.Instrument().CheckCompany()
                                                             : bench.Instrument().GetWavelength(wavelength));
  ASSERT_FALSE(bench.Faults().Add(cell.Command.Verb, "1", cell.Kind.Name, cell.Parameters));
  Values values;
  const std::int64_t began = bench.Time.NowMs();
  const bool passed = cell.Command.Run(bench.Instrument(), values);
  const std::int64_t took = bench.Time.NowMs() - began;
  const ReplyQuality quality = bench.Instrument().LastReply();
  ASSERT_GE(bench.Exchanges.size(), 2u);
  const ExchangeRecord& spoiled = bench.Exchanges[1];
  const int timeoutMs = ProgramTimeoutMs(clean.Request);
  const auto collected = Collected(cell.Kind.Kind, clean.Answer, spoiled.Answer,
                                   cell.Place.value_or(clean.Answer.size() / 2), timeoutMs);
  const Expected expected = ExpectedOf(cell.Command, clean.Request, collected);
  EXPECT_EQ(passed, expected.Passed);
  EXPECT_EQ(quality.Complete(), expected.Complete);
  EXPECT_TRUE(values == expected.Out);
  EXPECT_LE(took, timeoutMs);
  EXPECT_EQ(quality.End == ExchangeEnd::HungUp, cell.Kind.Kind == FaultKind::HangUp && !collected);

  // When all that belongs to it has come, the next exchange is as if nothing had been.
  bench.Time.Advance(kAllOverMs);
  if (cell.Kind.Kind == FaultKind::HangUp || !bench.LineIsWhole()) bench.Rejoin();
  wavelength = 0;
  EXPECT_TRUE(bench.Instrument().GetWavelength(wavelength) && bench.Instrument().LastReply().Complete());
  EXPECT_EQ(wavelength, bench.Model().Wavelength());
  Values again;
  EXPECT_TRUE(cell.Command.Run(bench.Instrument(), again));
  EXPECT_EQ(bench.Exchanges.back().Fault, "");
  EXPECT_TRUE(again == ExpectedOf(cell.Command, clean.Request, bench.Exchanges.back().Answer).Out);
}

TEST(FaultMatrix, EveryCommandWithEveryKindOfFault) {
  int cells = 0;
  for (const CommandCase& command : kCommands) {
    const ExchangeRecord clean = CleanAnswer(command);
    for (const FaultKindEntry& kind : FaultKinds()) {
      Cell cell{command, kind, {}, {}};
      // Where nothing else is said the prompt comes behind the first character of the data.
      if (kind.Kind == FaultKind::PromptInside) {
        cell.Place = std::min(clean.Request.size() + 3, clean.Answer.size() - 1);
      }
      RunCell(cell, clean);
      ++cells;
    }
  }
  EXPECT_EQ(cells, 26 * 18);
}

TEST(FaultMatrix, EveryCommandSpoiledAtEveryByte) {
  for (const CommandCase& command : kCommands) {
    const ExchangeRecord clean = CleanAnswer(command);
    for (const FaultKindEntry& kind : FaultKinds()) {
      if (kind.Parameters.find("BYTE") == std::string_view::npos || kind.Kind == FaultKind::Restart ||
          kind.Kind == FaultKind::NoiseBefore || kind.Kind == FaultKind::Slow ||
          kind.Kind == FaultKind::Flood) {
        continue;
      }
      for (std::size_t place = 0; place <= clean.Answer.size(); ++place) {
        RunCell({command, kind, {std::to_string(place)}, place}, clean);
      }
    }
  }
}

TEST(FaultMatrix, P06_NumbersThatAreNone) {
  constexpr const char* kTexts[] = {"abc",        "\"\"",   "1e999", "NaN", "2147483648",           "12,5",
                                    "0x10q",      "-",      "+",     "1e",  "99999999999999999999", "\\x80",
                                    "5\\x8046.0", "\\x005", "5\\x00"};
  for (const CommandCase& command : kCommands) {
    if (command.Kind == Data::None || command.Kind == Data::Words) continue;
    const ExchangeRecord clean = CleanAnswer(command);
    const auto kind = std::ranges::find(FaultKinds(), FaultKind::BadNumber, &FaultKindEntry::Kind);
    for (const char* text : kTexts) {
      for (std::size_t line = 1; line <= command.Lines; ++line) {
        RunCell({command, *kind, {text, std::to_string(line)}, {}}, clean);
      }
    }
  }
}

/// A value that is asked for again at once after an answer that came too late or in part is that of now, or
/// none.
TEST(FaultMatrix, P01_ALateAnswerIsNotTakenForTheNext) {
  for (const char* script :
       {"no-reply", "late-reply", "late-reply 15050", "late-reply 15090", "late-reply 15130",
        "late-reply 17000", "late-reply 29000", "late-reply 40000", "no-prompt", "split 20 15030",
        "split 20 16000", "prompt-inside 20", "cut 20", "slow 400"}) {
    SCOPED_TRACE(script);
    Bench bench;
    ASSERT_TRUE(bench.Model().PutInBeam("filter-0.3", 0));
    ASSERT_FALSE(bench.Faults().Load(std::string("ge 1 ") + script + "\n"));
    std::int32_t samples = 20;
    bench.Instrument().GetEnergy(samples);
    ASSERT_TRUE(bench.Model().PutInBeam("filter-2.0", 0));
    for (int i = 0; i < 4; ++i) {
      const std::int32_t energy = bench.Instrument().GetEnergy(samples);
      if (!bench.Instrument().LastReply().Complete()) continue;
      const auto lines = LinesOf("ge 20", bench.Exchanges.back().Answer);
      ASSERT_TRUE(lines);
      EXPECT_EQ(std::to_string(energy), lines->at(0)) << "reading " << i + 2 << " is an older one";
    }
  }
}

}  // namespace
}  // namespace spectrane::testing_faults
