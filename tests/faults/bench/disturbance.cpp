#include "faults/bench/disturbance.h"

#include <algorithm>
#include <chrono>

#include "link/interface.h"
#include "simulator/faultscript.h"

namespace spectrane::campaign {
namespace {

constexpr int kWireBytesPerMs = 11;
constexpr int kShortMs = 5;

/// Kinds after which the program learns only from the time-out that nothing comes.
bool WaitsForTimeout(const std::string& kind) {
  for (const char* each : {"no-reply", "late-reply", "cut", "no-prompt", "flood"}) {
    if (kind == each) return true;
  }
  return false;
}

}  // namespace

Disturbance::~Disturbance() {
  if (later_.joinable()) later_.join();
}

void Disturbance::Begin(const std::vector<std::string>& verbs, int times) {
  settleMs_ = 0;
  const int draw = Below(100);
  kind_ = draw < 74   ? Trouble::Answer
          : draw < 80 ? Trouble::Unplug
          : draw < 89 ? Trouble::UnplugInside
          : draw < 92 ? Trouble::Kill
          : draw < 97 ? Trouble::KillInside
                      : Trouble::OtherProgram;
  const int moment = Below(14);
  const std::string& verb = verbs[static_cast<std::size_t>(Below(static_cast<int>(verbs.size())))];
  switch (kind_) {
    case Trouble::None:
      break;
    case Trouble::Answer:
      description_ = DrawFault(verb, times, verbs.size() == 1);
      operator_.Simulator().Tell(description_);
      break;
    case Trouble::Unplug:
      description_ = "unplug";
      operator_.Simulator().Tell("unplug");
      break;
    case Trouble::UnplugInside:
      description_ = "unplug after " + std::to_string(moment) + " ms";
      Later(moment, [this] { operator_.Simulator().Tell("unplug"); });
      break;
    case Trouble::Kill:
      description_ = "kill";
      operator_.Simulator().Kill();
      break;
    case Trouble::KillInside:
      description_ = "kill after " + std::to_string(moment) + " ms";
      Later(moment, [this] { operator_.Simulator().KillFromOutside(); });
      break;
    case Trouble::OtherProgram:
      description_ = "another program";
      BesideAnAnswer(verbs);
      break;
  }
}

/// A reading whose answer takes most of its time, in two pieces; the other program has its try meanwhile.
void Disturbance::BesideAnAnswer(const std::vector<std::string>& verbs) {
  const bool reads = std::find(verbs.begin(), verbs.end(), "ge") != verbs.end();
  const int pauseMs = TimeoutMs("ge", operator_.Haste()) / 2;
  if (reads) operator_.Simulator().Tell("fault split ge 1 3 " + std::to_string(pauseMs));
  other_ = operator_.BeginBatch({QStringLiteral("instrument"), QStringLiteral("probe")});
}

void Disturbance::Later(int ms, const std::function<void()>& act) {
  later_ = std::thread([ms, act] {
    std::this_thread::sleep_for(std::chrono::milliseconds(ms));
    act();
  });
}

int Disturbance::TimeoutMs(const std::string& verb, int haste) {
  const bool takesNumber = verb == "ge" || verb == "setsampler" || verb == "swl";
  return Interface::TimeoutFor(takesNumber ? verb + " " : verb) * 1000 / haste;
}

std::string Disturbance::DrawFault(const std::string& verb, int times, bool repeats) {
  const auto kinds = FaultKinds();
  const int timeoutMs = TimeoutMs(verb, kNominalHaste);
  std::string kind;
  do {
    kind = std::string(kinds[static_cast<std::size_t>(Below(static_cast<int>(kinds.size())))].Name);
    // A move has 80 s of time: nobody waits that long again and again. And a second copy that is still on its
    // way when the same request is sent again is that request's answer, for all that can be known.
  } while ((timeoutMs > 2000 && WaitsForTimeout(kind)) || (repeats && kind == "twice"));
  const int nth = 1 + Below(times);
  return "fault " + kind + " " + verb + " " + std::to_string(nth) + ParametersOf(kind, verb);
}

std::string Disturbance::ParametersOf(const std::string& kind, const std::string& verb) {
  static constexpr const char* kTexts[] = {"abc",  "\"\"",       "-1",   "1e999", "NaN",
                                           "12,5", "2147483648", "0x1z", "\\x80", "4\\x0045"};
  const auto number = [this](int least, int most) {
    return " " + std::to_string(least + Below(most - least + 1));
  };
  if (kind == "late-reply") {
    const int later = 2 + Below(60);
    settleMs_ = later + 10;
    return " " + std::to_string(TimeoutMs(verb, operator_.Haste()) + later);
  }
  if (kind == "hang-up") settleMs_ = 40;
  if (kind == "cut" || kind == "hang-up") return number(0, 70);
  if (kind == "split") return number(0, 70) + number(3, 25);
  if (kind == "slow") return " 1";
  if (kind == "noise-before") return number(1, 12);
  if (kind == "noise-inside") return number(1, 70) + number(1, 6);
  if (kind == "twice") {
    settleMs_ = 15;
    return number(1, 4);
  }
  if (kind == "prompt-inside") {
    settleMs_ = 40;
    return number(1, 70) + number(5, 25);
  }
  if (kind == "fewer-lines" || kind == "more-lines") return number(1, 4);
  if (kind == "bad-number") return std::string(" ") + kTexts[Below(std::size(kTexts))] + number(1, 10);
  if (kind == "restart" && MaySpeakLater && Below(2) == 0) {
    // Nobody listens then. Whatever has to be heard by a command is over before the next one.
    const int later = 2 + Below(60);
    settleMs_ = later + 150;
    return " " + std::to_string(TimeoutMs(verb, operator_.Haste()) + later);
  }
  if (kind == "restart") {
    settleMs_ = 40;
    return number(0, 30);
  }
  if (kind == "flood") settleMs_ = 150;
  if (kind == "flood") return number(100, TimeoutMs(verb, kNominalHaste) * kWireBytesPerMs * 2 / 3);
  return {};
}

void Disturbance::End() {
  if (later_.joinable()) later_.join();
  if (settleMs_ > 0) operator_.Pause(settleMs_);
  switch (kind_) {
    case Trouble::Answer:
      operator_.Simulator().Tell("faults clear");
      operator_.Simulator().Tell("plug");
      break;
    case Trouble::Unplug:
    case Trouble::UnplugInside:
      operator_.Simulator().Tell("plug");
      break;
    case Trouble::Kill:
    case Trouble::KillInside:
      operator_.StartSimulator(Options);
      break;
    case Trouble::OtherProgram:
      otherStatus_ = operator_.EndOf(*other_);
      operator_.Simulator().Tell("faults clear");
      break;
    case Trouble::None:
      break;
  }
  operator_.Pause(kShortMs);
}

}  // namespace spectrane::campaign
