// The real program, started on settings, folders, lock and socket that are broken: its window comes all the
// same, soon, and with no more boxes than a sound start has.

#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <QElapsedTimer>
#include <QProcess>
#include <QProcessEnvironment>
#include <QRegularExpression>
#include <random>
#include <set>
#include <sstream>

#include "desktopsupport.h"
#include "startdamages.h"

namespace spectrane {
namespace {

namespace fs = std::filesystem;

/// What is promised of a quiet machine, and looked at when all damages are asked for.
constexpr int kPromisedMs = 2000;
/// When a start has failed, however busy the machine.
constexpr int kGivenUpMs = 30000;
/// Boxes are counted so long after the window, and where the search for the instrument matters.
constexpr int kWatchedMs = 800;
constexpr int kWatchedAtThePortMs = 3500;
constexpr uid_t kNobody = 65534;
constexpr std::size_t kSample = 10;

struct Seen {
  /// Until the main window has painted; -1: it did not.
  qint64 WindowMs = -1;
  /// Of it, what the program itself worked; what else the machine did is left out.
  qint64 WorkedMs = 0;
  qint64 Width = 0;
  qint64 Height = 0;
  std::size_t Boxes = 0;
  /// Ended on its own.
  bool Ended = false;
  std::string Last;
};

/// Processor time of a process so far, all its threads together.
qint64 ProcessorMs(qint64 process) {
  const std::string words = ReadBytes("/proc/" + std::to_string(process) + "/stat");
  // Behind the name, which may have anything in it: the 12th and the 13th field.
  std::istringstream fields(words.substr(std::min(words.rfind(')') + 1, words.size())));
  std::string passed;
  for (int i = 0; i < 11; ++i) fields >> passed;
  qint64 user = 0;
  qint64 system = 0;
  fields >> user >> system;
  return (user + system) * 1000 / ::sysconf(_SC_CLK_TCK);
}

class DamagedStart : public testing::Test {
 protected:
  DamagedStart() { place_.Root = folder_.Path(); }
  ~DamagedStart() override { Clear(); }

  /// The folders as they are before a sound start.
  void Prepare() {
    Clear();
    for (const std::string& path : {place_.App(), place_.Runtime(), place_.Home(), place_.Temporary()})
      fs::create_directories(path);
    fs::permissions(place_.Runtime(), fs::perms::owner_all);
  }

  void Clear() {
    for (const auto& end : place_.AtEnd) end();
    place_.AtEnd.clear();
    place_.Environment.clear();
    std::error_code fault;
    if (fs::exists(place_.App(), fault)) fs::permissions(place_.App(), fs::perms::owner_all, fault);
    for (const auto& entry : fs::directory_iterator(place_.Root, fault)) fs::remove_all(entry.path(), fault);
  }

  QProcessEnvironment Environment() const {
    QProcessEnvironment environment;
    const std::pair<const char*, std::string> usual[] = {
        {"PATH", "/usr/bin:/bin"},
        {"HOME", place_.Home()},
        {"SPECTRANE_HOME", place_.App()},
        {"SPECTRANE_PORTS", ":"},
        {"XDG_RUNTIME_DIR", place_.Runtime()},
        {"XDG_DATA_HOME", place_.Home() + "/data"},
        {"TMPDIR", place_.Temporary()},
        {"QT_QPA_PLATFORM", "offscreen"},
        {"QT_LOGGING_RULES", "qt.widgets.painting=true"},
        {"QT_LOGGING_TO_CONSOLE", "1"},
        {"DBUS_SESSION_BUS_ADDRESS", "unix:path=/nowhere"},
    };
    for (const auto& [name, value] : usual) environment.insert(Q(name), Q(value));
    for (const auto& [name, value] : place_.Environment) {
      if (value) {
        environment.insert(Q(name), Q(*value));
      } else {
        environment.remove(Q(name));
      }
    }
    return environment;
  }

  /// Starts the program, watches its windows and kills it.
  Seen Start(int watchedMs, bool asNobody = false) const {
    static const QRegularExpression painted(
        QStringLiteral("QRegion\\((?:size=\\d+, bounds=\\()?-?\\d+,-?\\d+ (\\d+)x(\\d+)\\)* of top level "
                       "spectrane::FrmMain\\("));
    static const QRegularExpression box(QStringLiteral("top level QMessageBox\\((0x[0-9a-f]+)"));
    Seen seen;
    QProcess program;
    program.setProcessEnvironment(Environment());
    program.setWorkingDirectory(Q(place_.Root));
    program.setProcessChannelMode(QProcess::MergedChannels);
    program.setStandardInputFile(QProcess::nullDevice());
    if (asNobody) program.setChildProcessModifier(&BecomeNobody);
    QElapsedTimer clock;
    clock.start();
    program.start(QStringLiteral(SPECTRANE_BIN "/spectrane"), {});
    std::set<QString> boxes;
    while (clock.elapsed() < kGivenUpMs) {
      if (seen.WindowMs >= 0 && clock.elapsed() - seen.WindowMs > watchedMs) break;
      if (!program.canReadLine() && !program.waitForReadyRead(20) && program.state() == QProcess::NotRunning)
        break;
      while (program.canReadLine()) {
        const QString line = QString::fromUtf8(program.readLine());
        const auto window = painted.match(line);
        if (window.hasMatch() && seen.WindowMs < 0) {
          seen.WindowMs = clock.elapsed();
          seen.WorkedMs = ProcessorMs(program.processId());
          seen.Width = window.captured(1).toLongLong();
          seen.Height = window.captured(2).toLongLong();
        }
        if (const auto shown = box.match(line); shown.hasMatch()) boxes.insert(shown.captured(1));
        if (!line.startsWith(QStringLiteral("qt.widgets"))) seen.Last = line.toStdString();
      }
    }
    seen.Ended = program.state() == QProcess::NotRunning;
    program.kill();
    program.waitForFinished(5000);
    seen.Boxes = boxes.size();
    return seen;
  }

  Seen StartOn(const StartDamage& damage) {
    Prepare();
    damage.Do(place_);
    const bool asNobody = damage.OfRights && ::geteuid() == 0 && EverybodyReaches(SPECTRANE_BIN "/spectrane");
    if (asNobody) GiveToNobody();
    return Start(WatchedMs(damage.AtThePort), asNobody);
  }
  static int WatchedMs(bool atThePort) { return atThePort ? kWatchedAtThePortMs : kWatchedMs; }

  static void BecomeNobody() {
    if (::setgid(kNobody) != 0 || ::setuid(kNobody) != 0) ::_exit(126);
  }
  static bool EverybodyReaches(const fs::path& path) {
    if (path == path.root_path()) return true;
    const bool may = (fs::status(path).permissions() & fs::perms::others_exec) != fs::perms::none;
    return may && EverybodyReaches(path.parent_path());
  }
  void GiveToNobody() const {
    std::vector<fs::path> all{place_.Root};
    for (const auto& entry : fs::recursive_directory_iterator(place_.Root)) all.push_back(entry.path());
    for (const fs::path& path : all) ASSERT_EQ(::lchown(path.c_str(), kNobody, kNobody), 0) << path;
  }

  /// A sound start, and the settings file that it writes.
  Seen SoundStart(bool atThePort) {
    Prepare();
    const Seen seen = Start(WatchedMs(atThePort));
    place_.Written = ReadBytes(place_.Config());
    return seen;
  }

  ShortFolder folder_;
  StartPlace place_;
};

/// All, or so many of them by a seed, which is printed.
std::vector<StartDamage> Chosen(bool all) {
  std::vector<StartDamage> table = StartDamages();
  if (all) return table;
  const char* const given = std::getenv("SPECTRANE_SEED");
  const unsigned seed =
      given != nullptr ? static_cast<unsigned>(std::strtoul(given, nullptr, 10)) : std::random_device{}();
  std::printf("SPECTRANE_SEED=%u\n", seed);
  std::shuffle(table.begin(), table.end(), std::mt19937(seed));
  table.resize(kSample);
  return table;
}

void PrintTimes(const char* what, qint64 sound, std::vector<qint64> times) {
  std::sort(times.begin(), times.end());
  std::printf("%zu starts, %s: sound %lld ms, median %lld ms, longest %lld ms\n", times.size(), what,
              static_cast<long long>(sound), static_cast<long long>(times[times.size() / 2]),
              static_cast<long long>(times.back()));
}

TEST(StartDamageTable, HasAHundredOfDifferentNames) {
  std::set<std::string> names;
  for (const StartDamage& damage : StartDamages()) names.insert(damage.Name);
  EXPECT_EQ(names.size(), StartDamages().size());
  EXPECT_GE(names.size(), 100u);
}

TEST_F(DamagedStart, C01_C08_H01_H06_N01_TheWindowComesSoonWithoutAStormOfBoxes) {
  const bool all = std::getenv("SPECTRANE_ALL_STARTS") != nullptr;
  const Seen sound = SoundStart(false);
  const Seen soundAtThePort = SoundStart(true);
  ASSERT_GE(sound.WindowMs, 0) << sound.Last;
  ASSERT_NE(place_.Written.find("Windows Height="), std::string::npos);
  std::vector<qint64> times;
  std::vector<qint64> worked;
  for (const StartDamage& damage : Chosen(all)) {
    Seen seen = StartOn(damage);
    // What else goes on in the machine can hold up one start; not two.
    if (all && seen.WindowMs > kPromisedMs) seen = StartOn(damage);
    EXPECT_GE(seen.WindowMs, 0) << damage.Name << ": no window; " << seen.Last;
    EXPECT_FALSE(seen.Ended) << damage.Name << ": " << seen.Last;
    EXPECT_LE(seen.Boxes, (damage.AtThePort ? soundAtThePort : sound).Boxes) << damage.Name;
    EXPECT_GE(std::min(seen.Width, seen.Height), 100) << damage.Name;
    if (all) {
      EXPECT_LE(seen.WindowMs, kPromisedMs) << damage.Name;
      std::printf("%-45s %5lld ms (worked %lld ms), %zu box(es)\n", damage.Name.c_str(),
                  static_cast<long long>(seen.WindowMs), static_cast<long long>(seen.WorkedMs), seen.Boxes);
    }
    times.push_back(seen.WindowMs);
    worked.push_back(seen.WorkedMs);
  }
  PrintTimes("until the window", sound.WindowMs, times);
  PrintTimes("processor time of it", sound.WorkedMs, worked);
}

}  // namespace
}  // namespace spectrane
