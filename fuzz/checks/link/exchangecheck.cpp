#include "fuzz/checks/link/exchangecheck.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <utility>

#include "base/numbers.h"
#include "base/numericfault.h"
#include "base/setting.h"
#include "fuzz/checks/link/scriptedline.h"
#include "link/interface.h"
#include "link/replybuffer.h"

namespace spectrane::fuzz {
namespace {

constexpr std::size_t kMostSteps = 24;
constexpr std::int64_t kClearingMs = 1000;
constexpr std::int32_t kUntouched = -7;
constexpr std::size_t kMostNoise = 48;
#ifdef SPECTRANE_FUZZ_FAST
constexpr std::size_t kFloodBytes = 262144;
#else
constexpr std::size_t kFloodBytes = 2097152;
#endif

enum class Asks { Energy, Rezero, Dark, Wavelength, Slip, Sampler, Move, Gain, Connect, Company, Bare };

struct Request {
  Asks What;
  /// As it goes over the line.
  const char* Text;
  std::int32_t Argument = 0;
};

constexpr Request kRequests[16] = {
    {Asks::Energy, "ge 1", 1},   {Asks::Energy, "ge 2", 2}, {Asks::Energy, "ge 3", 3},
    {Asks::Energy, "ge 20", 20}, {Asks::Rezero, "rezero"},  {Asks::Dark, "getdark"},
    {Asks::Wavelength, "getwl"}, {Asks::Slip, "getslip"},   {Asks::Sampler, "getsampler"},
    {Asks::Move, "swl  500"},    {Asks::Gain, "sa 3", 3},   {Asks::Connect, "connect"},
    {Asks::Company, "company"},  {Asks::Bare, "ge 1"},      {Asks::Bare, "getslip"},
    {Asks::Bare, "check"},
};

/// What a request came to.
struct Told {
  bool Passed = false;
  bool Complete = false;
  /// The whole numbers that came out; kUntouched where none did.
  std::vector<std::int32_t> Numbers;
  std::optional<double> Wavelength;
  std::string Words;
  std::int64_t TookMs = 0;
};

/// The lines behind each echo that a prompt follows, as they are cut out of a reply.
std::vector<std::vector<std::string_view>> RepliesIn(std::string_view heard, std::string_view command) {
  std::vector<std::vector<std::string_view>> replies;
  const std::size_t last = heard.rfind('>');
  if (last == std::string_view::npos) return replies;
  heard = heard.substr(0, last);
  const std::string echo = std::string(command) + '\r';
  for (std::size_t p = heard.find(echo); p != std::string_view::npos; p = heard.find(echo, p + 1)) {
    std::vector<std::string_view>& lines = replies.emplace_back();
    for (std::size_t at = p + echo.size() + 1; at < heard.size() && lines.size() < 20;) {
      const std::size_t end = heard.find('\r', at);
      if (end == std::string_view::npos) break;
      lines.push_back(heard.substr(at, end - at));
      at = end + 2;
    }
  }
  return replies;
}

std::optional<std::int32_t> WholeNumber(std::string_view line) {
  try {
    return ParseLong(line);
  } catch (const NumericFault&) {
    return std::nullopt;
  }
}

std::optional<double> LeadingNumber(std::string_view line) {
  try {
    return Val(line);
  } catch (const NumericFault&) {
    return std::nullopt;
  }
}

/// One reading out of the samples that the lines say.
std::optional<std::int32_t> Statistic(const std::vector<std::string_view>& lines, std::size_t count) {
  std::vector<std::int32_t> samples;
  for (const std::string_view line : lines) {
    const auto number = WholeNumber(line);
    if (!number) return std::nullopt;
    samples.push_back(*number);
    if (samples.size() == count) break;
  }
  if (samples.size() < count) return std::nullopt;
  return EnergyOfSamples(std::move(samples));
}

class Script {
 public:
  explicit Script(Bytes input) : rest_(input) {
    const unsigned char flags = Byte();
    Forges = (flags & 1U) != 0;
    Watched = (flags & 2U) != 0;
  }
  bool Forges = false;
  bool Watched = false;

  bool AtEnd() const { return rest_.empty(); }
  unsigned char Byte() {
    if (rest_.empty()) return 0;
    const unsigned char byte = rest_.front();
    rest_ = rest_.subspan(1);
    return byte;
  }
  /// Up to 100 s; the finer the shorter.
  std::int64_t Delay() {
    constexpr std::int64_t kDelays[] = {0,    1,     2,     5,     10,    50,    99,    100,
                                        101,  200,   500,   900,   990,   999,   1000,  1001,
                                        1100, 2000,  2990,  3000,  3001,  3010,  3100,  4000,
                                        9990, 10000, 14900, 15000, 15001, 15050, 16000, 80000};
    const unsigned char byte = Byte();
    return byte < 224 ? kDelays[byte % 32U] : (byte - 223) * std::int64_t{3000};
  }
  /// Any bytes where answers may be forged; otherwise no byte that an answer could be made of.
  std::string Noise() {
    std::string noise;
    constexpr char kHarmless[] = {'\0', '>', '?', 'Z'};
    for (std::size_t left = Byte() % kMostNoise; left > 0 && !AtEnd(); --left) {
      const unsigned char byte = Byte();
      const bool stays = Forges || byte >= 0x80;
      noise += stays ? static_cast<char>(byte) : kHarmless[byte % std::size(kHarmless)];
    }
    return noise;
  }

 private:
  Bytes rest_;
};

/// The program's side of the line, and the instrument's.
class Day {
 public:
  explicit Day(const Script& script) : forges_(script.Forges) {
    peer_.Forges = script.Forges;
    if (script.Watched) sci_.OnWaiting = [] {};
    Open();
  }

  std::string Run(Script& script) {
    for (std::size_t i = 0; i < kMostSteps && !script.AtEnd(); ++i) {
      if (std::string wrong = Step(script); !wrong.empty()) return wrong;
    }
    return Recover(script.Byte());
  }

 private:
  void Open() {
    int number = 1;
    sci_.OpenPort(number);
  }
  std::string Step(Script& script);
  void Prepare(Fate fate, const Turn& turn);
  Told Ask(const Request& request);
  Told AskBare(const Request& request);
  std::string Check(const Request& request, const Told& told) const;
  std::string CheckValues(const Request& request, const Told& told) const;
  bool IsIn(const std::vector<std::string_view>& lines, const Request& request, const Told& told) const;
  std::string CheckOwn(const Request& request, const Told& told) const;
  std::string CheckBare(const Request& request, bool passed, const std::string& reply) const;
  std::string Recover(unsigned char kind);

  bool forges_;
  ManualClock clock_;
  NumberedPeer peer_;
  OnePort port_{clock_, peer_};
  ManualMessageLoop loop_{clock_};
  NoExclusion turn_;
  SCI sci_{port_, clock_, loop_, turn_};
  InstrumentState state_;
  Setting settings_{{}};
  Interface instrument_{sci_, state_, settings_};
  bool flooded_ = false;
  int requestsBefore_ = 0;
  std::string bareWrong_;
};

std::string Day::Step(Script& script) {
  const unsigned char what = script.Byte();
  Turn turn;
  turn.What = static_cast<Fate>(what >> 4U);
  if (!forges_ && turn.What >= Fate::Doubled) turn.What = Fate::Whole;
  turn.DelayMs = script.Delay();
  turn.Place = script.Byte();
  clock_.Advance(script.Delay());
  if (turn.What == Fate::NoiseInside || turn.What == Fate::NoiseBefore || turn.What == Fate::Unasked ||
      turn.What == Fate::Replaced)
    turn.Noise = script.Noise();
  // Who finds the line closed opens it again, some time or other.
  if (!sci_.IsPortOpen() && turn.Place % 2 == 0) Open();
  Prepare(turn.What, turn);
  const Request& request = kRequests[what & 0x0FU];
  return Check(request, Ask(request));
}

void Day::Prepare(Fate fate, const Turn& turn) {
  peer_.Next = turn;
  requestsBefore_ = peer_.Requests;
  if (!sci_.IsPortOpen()) return;
  if (fate == Fate::Unasked) port_.Current->Inject(turn.Noise, turn.DelayMs);
  if (fate == Fate::Flood && !std::exchange(flooded_, true)) port_.Current->FloodLeft = kFloodBytes;
  if (fate == Fate::SlowWrite) {
    port_.Current->WriteMs = turn.DelayMs;
    port_.Current->WriteFails = turn.Place % 4 == 3;
  }
}

Told Day::Ask(const Request& request) {
  if (request.What == Asks::Bare) return AskBare(request);
  Told told;
  const std::int64_t before = clock_.NowMs();
  std::int32_t argument = request.Argument;
  switch (request.What) {
    case Asks::Energy:
      told.Numbers = {instrument_.GetEnergy(argument)};
      told.Passed = instrument_.LastReply().End == ExchangeEnd::Passed;
      break;
    case Asks::Rezero:
      told.Numbers = {kUntouched, kUntouched};
      told.Passed = instrument_.Rezero(told.Numbers[0], told.Numbers[1]);
      break;
    case Asks::Dark: {
      DarkEnergyTable table;
      table.fill(kUntouched);
      told.Passed = instrument_.GetDark(table);
      told.Numbers.assign(table.begin() + 1, table.begin() + 1 + state_.GainCount);
      break;
    }
    case Asks::Wavelength: {
      double wavelength = kUntouched;
      told.Passed = instrument_.GetWavelength(wavelength);
      if (wavelength != kUntouched) told.Wavelength = wavelength;
      break;
    }
    case Asks::Slip:
    case Asks::Sampler:
      told.Numbers = {kUntouched};
      told.Passed = request.What == Asks::Slip ? instrument_.GetSlip(told.Numbers[0])
                                               : instrument_.GetSampler(told.Numbers[0]);
      break;
    case Asks::Move: {
      double wavelength = 500.0;
      told.Passed = instrument_.SetWavelength(wavelength);
      break;
    }
    case Asks::Gain:
      told.Passed = instrument_.SetGain(argument);
      break;
    case Asks::Connect:
      told.Words = instrument_.ConnectInstrument() ? "ok." : "";
      told.Passed = instrument_.LastReply().End == ExchangeEnd::Passed;
      break;
    case Asks::Company:
      told.Passed = instrument_.CheckCompany();
      told.Words = instrument_.Company();
      break;
    case Asks::Bare:
      break;
  }
  told.Complete = told.Passed && instrument_.LastReply().Complete();
  told.TookMs = clock_.NowMs() - before;
  return told;
}

Told Day::AskBare(const Request& request) {
  Told told;
  const std::int64_t before = clock_.NowMs();
  std::string reply;
  told.Passed = sci_.Exchange(request.Text, reply, Interface::TimeoutFor(request.Text));
  told.TookMs = clock_.NowMs() - before;
  bareWrong_ = CheckBare(request, told.Passed, reply);
  return told;
}

std::string Day::CheckBare(const Request& request, bool passed, const std::string& reply) const {
  const std::string_view command = request.Text;
  if (reply.size() > ReplyBuffer::kLimit) return "a reply without a limit";
  if (passed != (sci_.LastEnd() == ExchangeEnd::Passed)) return "passed, and did not";
  if (!passed) return {};
  if (reply.substr(0, command.size()) != command) return "passed without its command";
  if (reply.back() != '>') return "passed without a prompt";
  if (port_.Current->Heard.find(reply) == std::string::npos) return "a reply that nobody sent";
  if (forges_) return {};
  const std::string own = std::to_string(NumberedPeer::kFirstNumber + peer_.Requests);
  for (const auto& lines : RepliesIn(reply, command)) {
    for (const std::string_view line : lines) {
      const bool isNumber = line.size() == own.size() && WholeNumber(line).has_value();
      if (isNumber && line != own) return "the answer to another request in a reply";
    }
  }
  return {};
}

std::string Day::Check(const Request& request, const Told& told) const {
  const std::string_view text = request.Text;
  if (told.TookMs > Interface::TimeoutFor(text) * std::int64_t{1000} + kClearingMs) return "takes too long";
  if (request.What == Asks::Bare) return bareWrong_;
  if (told.Passed && peer_.Requests == requestsBefore_) return "passed, and was not sent";
  return CheckValues(request, told);
}

std::string Day::CheckValues(const Request& request, const Told& told) const {
  if (!told.Complete) {
    if (told.Passed) return {};
    // Energies and slits have 0 for what failed.
    const bool zero = request.What == Asks::Energy || request.What == Asks::Slip;
    for (const std::int32_t number : told.Numbers) {
      if (number != (zero ? 0 : kUntouched)) return "a number from a reply that failed";
    }
    if (told.Wavelength || !told.Words.empty()) return "something from a reply that failed";
    return {};
  }
  bool said = false;
  for (const auto& lines : RepliesIn(port_.Current->Heard, request.Text))
    said = said || IsIn(lines, request, told);
  if (!said) return "no whole reply says that";
  return forges_ ? std::string() : CheckOwn(request, told);
}

bool Day::IsIn(const std::vector<std::string_view>& lines, const Request& request, const Told& told) const {
  if (request.What == Asks::Energy)
    return Statistic(lines, static_cast<std::size_t>(request.Argument)) == told.Numbers.front();
  if (request.What == Asks::Wavelength)
    return !lines.empty() && LeadingNumber(lines.front()) == told.Wavelength;
  if (request.What == Asks::Connect) return (!lines.empty() && lines.front() == "ok.") == !told.Words.empty();
  if (request.What == Asks::Company) return !lines.empty() && lines.front() == told.Words;
  if (lines.size() < told.Numbers.size()) return false;
  for (std::size_t i = 0; i < told.Numbers.size(); ++i) {
    if (WholeNumber(lines[i]) != told.Numbers[i]) return false;
  }
  return true;
}

/// Where nothing is forged: each number is that of this request.
std::string Day::CheckOwn(const Request& request, const Told& told) const {
  const std::int32_t own = NumberedPeer::kFirstNumber + peer_.Requests;
  for (const std::int32_t number : told.Numbers) {
    if (number != own) return "the answer to another request";
  }
  const std::string digits = std::to_string(own);
  // Noise behind its first digits shortens a wavelength.
  if (told.Wavelength) {
    const std::string text = digits + ".5";
    bool shortened = false;
    for (std::size_t i = 0; i <= text.size(); ++i)
      shortened = shortened || LeadingNumber(text.substr(0, i)) == told.Wavelength;
    if (!shortened) return "the wavelength of another request";
  }
  if (request.What == Asks::Company && told.Words.find(" 1") != std::string::npos &&
      told.Words.size() == std::string("Qvr 100000").size() && told.Words != "Qvr " + digits)
    return "the name of another request";
  return {};
}

/// Quiet and clean again: at most the second answer passes, is the own one, and the next is in step.
std::string Day::Recover(unsigned char kind) {
  constexpr std::int64_t kLongestMs = 200000;
  clock_.Set(std::max(clock_.NowMs(), peer_.FreeMs) + kLongestMs);
  // What lies there is thrown away by the next exchange in any case; a line that goes is closed here.
  if (sci_.IsPortOpen()) port_.Current->DiscardInput();
  if (!sci_.IsPortOpen()) Open();
  port_.Current->FloodLeft = 0;
  const Request& request = kRequests[kind % 11U];
  const bool forged = std::exchange(forges_, false);
  std::string wrong;
  bool good = false;
  for (int i = 0; i < 3 && wrong.empty(); ++i) {
    Prepare(Fate::Whole, {});
    const Told told = Ask(request);
    wrong = Check(request, told);
    if (i == 2 && told.TookMs > 10) wrong = "not in step again";
    if (i == 2 && !told.Complete) good = false;
    if (i < 2) good = told.Complete;
    if (i == 1 && !good) wrong = "two clean exchanges, and no answer";
  }
  if (wrong.empty() && !good) wrong = "a clean answer that does not pass";
  forges_ = forged;
  return wrong.empty() ? wrong : "quiet again: " + wrong;
}

}  // namespace

std::string CheckExchange(Bytes input) {
  if (input.empty()) return {};
  Script script(input);
  Day day(script);
  return day.Run(script);
}

}  // namespace spectrane::fuzz
