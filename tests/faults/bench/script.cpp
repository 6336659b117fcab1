#include "faults/bench/script.h"

#include <algorithm>

#include "app/ground/commands.h"
#include "app/ground/words.h"
#include "app/mainstatus.h"

namespace spectrane::campaign {
namespace {

constexpr int kPortError = 1097;
constexpr int kCannotConnect = 1099;
/// Live readings that an operator watches between two acts [ms].
constexpr int kWatchMs = 130;
/// After a lost reading the next one is due within this, on the program's clock, and more than that on the
/// machine's is a stop [ms].
constexpr int kLostReadingPauseMs = 3000;
constexpr int kStoppedMs = 1000;

bool AnySlow(const std::vector<Exchanged>& exchanges) {
  return std::ranges::any_of(exchanges, [](const Exchanged& each) { return each.Slow(); });
}

}  // namespace

const Exchanged* Script::Act::Broken() const {
  const auto found = std::ranges::find_if(Exchanges, [](const Exchanged& each) { return !each.Passed(); });
  return found == Exchanges.end() ? nullptr : &*found;
}

const Exchanged* Script::Act::Unsound() const {
  const auto found = std::ranges::find_if(Exchanges, [](const Exchanged& each) { return !each.Sound(); });
  return found == Exchanges.end() ? nullptr : &*found;
}

int Script::Act::Count(const std::string& verb) const {
  return static_cast<int>(
      std::ranges::count_if(Exchanges, [&](const Exchanged& each) { return each.Verb() == verb; }));
}

Script::Script(Operator& person, std::uint64_t seed, const std::vector<std::string>& simulatorOptions)
    : operator_(person), random_(seed), disturbance_(person, random_) {
  disturbance_.Options = simulatorOptions;
  sampler_ = std::ranges::find(simulatorOptions, "--sampler") != simulatorOptions.end();
}

void Script::Expect(bool holds, const std::string& what) {
  if (!holds) problems_ << QString::fromStdString(what);
}

void Script::ExpectTold(const Act& act, int textId, int broken) {
  if (broken != 0 && act.LineGone && !act.Unsound() && act.Told == QStringList(Words(broken))) return;
  const QStringList wanted = textId == 0 ? QStringList() : QStringList(Words(textId));
  Expect(act.Told == wanted, act.Name + " told \"" + act.Told.join(QStringLiteral("\", \"")).toStdString() +
                                 "\" instead of \"" + wanted.join(QString()).toStdString() + '"');
}

std::vector<std::string> Script::VerbsOf(Kind kind) const {
  switch (kind) {
    case Kind::Blank: {
      std::vector<std::string> verbs = {"getwl", "rezero", "ge"};
      if (sampler_) verbs.emplace_back("setsampler");
      return verbs;
    }
    case Kind::Measure:
      return MeasureVerbs();
    case Kind::Idle:
      return {"ge"};
    case Kind::Reconnect:
      break;
  }
  return {"quit",    "check",  "company",    "connect", "getwl",
          "getdark", "rezero", "getsampler", "startwl", "endwl"};
}

Script::Act Script::Do(Kind kind) {
  static constexpr const char* kNames[] = {"blank", "measure", "idle", "reconnect"};
  Act act;
  act.Name = kNames[static_cast<int>(kind)];
  operator_.Hands().Told.clear();
  operator_.TakeWire();
  operator_.News();
  switch (kind) {
    case Kind::Blank:
      operator_.Choose(kSetBlank);
      break;
    case Kind::Measure:
      operator_.Choose(kStartTest);
      break;
    case Kind::Idle:
      WatchLiveReadings();
      break;
    case Kind::Reconnect:
      operator_.Choose(kRelease);
      operator_.Choose(kConnect);
      break;
  }
  act.Exchanges = Together(operator_.TakeWire(), operator_.News());
  act.Told = operator_.Hands().Told;
  act.Remark = operator_.Frame().findChild<MainStatus*>()->Remark().toStdString();
  act.LineGone = !operator_.Frame().Link().Transport.IsPortOpen();
  // With a broken line no answer arrives, fast or slow.
  tooSlow_ = tooSlow_ || (!act.LineGone && AnySlow(act.Exchanges));
  return act;
}

void Script::Judge(Kind kind, const Act& act, bool disturbed) {
  switch (kind) {
    case Kind::Blank:
      JudgeBlank(act);
      break;
    case Kind::Measure:
      JudgeMeasurement(act, disturbed);
      break;
    case Kind::Idle:
      ExpectTold(act, 0);
      JudgeLiveReadings(act);
      break;
    case Kind::Reconnect:
      JudgeConnection(act);
  }
}

bool Script::ReadsLive() const {
  return operator_.Connected() && operator_.Frame().Link().Transport.IsPortOpen();
}

void Script::WatchLiveReadings() {
  operator_.Pause(kWatchMs);
  operator_.PauseUntil([&] { return operator_.HasSent() || !ReadsLive(); },
                       kLostReadingPauseMs / operator_.Haste() + kStoppedMs);
}

void Script::JudgeLiveReadings(const Act& act) {
  if (act.Exchanges.empty()) {
    Expect(!ReadsLive(), "no live reading on a line that is up");
    return;
  }
  const Exchanged& last = act.Exchanges.back();
  if (!last.Passed() && !last.Restarted()) {
    Expect(act.Remark.starts_with(Words(1096).toStdString()), "a lost live reading is not told");
  } else if (std::ranges::any_of(act.Exchanges, &Exchanged::Restarted)) {
    Expect(act.Remark == "The instrument has restarted: a blank has to be set again.",
           "a restart is not told");
  }
}

void Script::JudgeConnection(const Act& act) {
  const bool connected = operator_.Connected();
  const auto passes = [&](const char* request, const char* words) {
    return std::ranges::any_of(act.Exchanges, [&](const Exchanged& each) {
      return each.Request == request && each.Passed() &&
             each.Collected.starts_with(std::string(request) + "\r\n" + words);
    });
  };
  const bool found = passes("check", "Invalid Command.\r");
  const bool company = passes("company", "");
  const bool agreed = passes("connect", "ok.\r");
  Expect(connected == (found && company && agreed), "connected, or not, against the answers");
  ExpectTold(act, connected ? 0 : found ? kCannotConnect : kPortError);
}

void Script::Disturbed() {
  const int draw = static_cast<int>(random_() % 10);
  const Kind kind = draw < 6   ? Kind::Measure
                    : draw < 8 ? Kind::Blank
                    : draw < 9 ? Kind::Idle
                               : Kind::Reconnect;
  const int times = kind == Kind::Measure && sampler_ ? 8 : 1;
  disturbance_.MaySpeakLater = kind == Kind::Idle;
  disturbance_.Begin(VerbsOf(kind), times);
  story_ << QString::fromStdString(disturbance_.Description()) +
                QStringLiteral(" in %1").arg(static_cast<int>(kind));
  ++troubles_;
  const Act act = Do(kind);
  for (const Exchanged& each : act.Exchanges) {
    story_ << QStringLiteral("    %1%2 -> %3 [%4]")
                  .arg(QString::fromStdString(each.Request),
                       each.Logged ? QString() : QStringLiteral(" (not logged)"),
                       each.Ended ? QStringLiteral("ended") : QStringLiteral("not ended"),
                       QString::fromStdString(each.Fault));
  }
  Judge(kind, act, true);
  disturbance_.End();
  // With the line let go of in between, either of them may have it.
  if (disturbance_.Kind() == Trouble::OtherProgram && kind != Kind::Reconnect)
    Expect(disturbance_.OtherWasRefused(), "another program got at the line");
  Repair();
}

void Script::Repair() {
  if (!operator_.Frame().Link().Transport.IsPortOpen() || !operator_.Connected()) {
    const Act act = Do(Kind::Reconnect);
    // Nobody touches the cable now: that the port is closed is the end of a failed connection.
    tooSlow_ = tooSlow_ || AnySlow(act.Exchanges);
    JudgeConnection(act);
    Expect(operator_.Connected() || tooSlow_, "no connection after the trouble was over");
  }
}

void Script::Clean() {
  if (!operator_.Connected()) return;
  if (!BlankHolds()) {
    const Act blank = Do(Kind::Blank);
    JudgeBlank(blank);
    Expect(BlankHolds() || tooSlow_, "no blank after the trouble was over");
  }
  const Act act = Do(Kind::Measure);
  JudgeMeasurement(act, false);
  Expect(act.Count("ge") > 0 && act.Unsound() == nullptr, "no reading after the trouble was over");
}

Verdict Script::Run() {
  operator_.CloseAll();
  tooSlow_ = AnySlow(Do(Kind::Reconnect).Exchanges);
  Expect(operator_.Connected(), "no connection at the begin");
  if (!problems_.isEmpty()) return tooSlow_ ? Verdict::TooSlow : Verdict::Violated;
  operator_.Choose(NewCommand());
  const int acts = 2 + static_cast<int>(random_() % 4);
  Clean();
  for (int i = 0; i < acts && problems_.isEmpty() && !tooSlow_; ++i) {
    Disturbed();
    if (problems_.isEmpty() && !tooSlow_) Clean();
  }
  if (problems_.isEmpty() && !tooSlow_) JudgeFile();
  operator_.Hands().Saves = Answer::No;
  operator_.CloseAll();
  operator_.Hands().Saves = Answer::Yes;
  // What went wrong with an answer that came too late is no fault of the program.
  if (tooSlow_) return Verdict::TooSlow;
  return problems_.isEmpty() ? Verdict::Held : Verdict::Violated;
}

}  // namespace spectrane::campaign
