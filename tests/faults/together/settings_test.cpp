// Two programs that write one config.ini, while a third one reads it and now and then one of them is killed.

#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <iostream>
#include <random>

#include "base/basesupport.h"
#include "base/setting.h"
#include "faults/together/rounds.h"

namespace spectrane {
namespace {

constexpr int kKeys = 7;

std::string KeyName(int key) {
  return "Key " + std::to_string(key);
}

/// A process that counts upward in its own section, key after key, and reports each number before it writes
/// it and after it was told that it is stored.
class Writer {
 public:
  Writer(const std::string& folder, int number) : section_("Copy " + std::to_string(number)) {
    int ends[2] = {-1, -1};
    EXPECT_EQ(::pipe(ends), 0);
    process_ = ::fork();
    if (process_ == 0) Write(folder, ends[1]);
    ::close(ends[1]);
    reports_ = ends[0];
  }
  ~Writer() {
    End(SIGKILL);
    ::close(reports_);
  }
  Writer(const Writer&) = delete;
  Writer& operator=(const Writer&) = delete;

  void End(int signal) {
    if (process_ <= 0) return;
    ::kill(process_, signal);
    ::waitpid(process_, nullptr, 0);
    process_ = 0;
  }
  /// After the end: begun writes, and those told as stored.
  void ReadReports() {
    char report = 0;
    while (::read(reports_, &report, 1) == 1) ++(report == 'b' ? Begun : Stored);
  }
  /// What the process has left in the file. Values that were not taken wait for the next write, so what is
  /// stored is never behind what was told, and never ahead of what was begun.
  void ExpectWithin(Setting& settings, int before) const {
    int stored = before;
    for (int key = 0; key < kKeys; ++key) {
      const std::string text = settings.GetSetting(section_, KeyName(key));
      if (!text.empty()) stored = std::max(stored, std::stoi(text));
    }
    EXPECT_GE(stored, before + Stored);
    EXPECT_LE(stored, before + Begun);
    // No key in between is behind its turn.
    for (int number = std::max(1, stored - kKeys + 1); number <= stored; ++number)
      EXPECT_EQ(settings.GetSetting(section_, KeyName(number % kKeys)), std::to_string(number)) << section_;
  }

  int Begun = 0;
  int Stored = 0;

 private:
  [[noreturn]] void Write(const std::string& folder, int reports) const {
    Setting settings(folder);
    int number = 0;
    for (int key = 0; key < kKeys; ++key) {
      const std::string text = settings.GetSetting(section_, KeyName(key));
      if (!text.empty()) number = std::max(number, std::stoi(text));
    }
    const auto tell = [reports](char what) {
      if (::write(reports, &what, 1) != 1) ::_exit(1);
    };
    for (;;) {
      ++number;
      tell('b');
      // Somebody else may hold the file for too long: the value waits.
      while (!settings.PutSetting(section_, KeyName(number % kKeys), std::to_string(number))) {
      }
      tell('s');
    }
  }

  std::string section_;
  pid_t process_ = 0;
  int reports_ = -1;
};

class SharedSettings : public testing::Test {
 protected:
  static int Highest(Setting& settings, int copy) {
    int highest = 0;
    for (int key = 0; key < kKeys; ++key) {
      const std::string text = settings.GetSetting("Copy " + std::to_string(copy), KeyName(key));
      if (!text.empty()) highest = std::max(highest, std::stoi(text));
    }
    return highest;
  }
  TemporaryFolder folder_;
};

TEST_F(SharedSettings, C07_NoKeyIsLostOrTornBetweenTwoCopiesThatAreKilledInTheirWrites) {
  const std::string foreign = "; kept by hand\n[Mine]\nnote = " + std::string(30000, 'x') + "\n";
  WriteBytes(folder_.Path("config.ini"), foreign);
  std::mt19937 draw(SeedOfRounds());
  int writes = 0;
  const int rounds = Rounds(15);
  for (int round = 0; round < rounds; ++round) {
    Setting settings(folder_.Path());
    const int before[2] = {Highest(settings, 0), Highest(settings, 1)};
    Writer first(folder_.Path(), 0);
    Writer second(folder_.Path(), 1);
    const int looks = static_cast<int>(draw() % 12) + 1;
    for (int look = 0; look < looks; ++look) {
      ::usleep(static_cast<useconds_t>(draw() % 16000));
      const std::string bytes = ReadBytes(folder_.Path("config.ini"));
      ASSERT_TRUE(bytes.starts_with(foreign)) << bytes.size() << " bytes";
      ASSERT_EQ(bytes.back(), '\n');
    }
    (round % 2 == 0 ? first : second).End(SIGKILL);
    ::usleep(static_cast<useconds_t>(draw() % 20000));
    first.End(SIGKILL);
    second.End(SIGKILL);
    first.ReadReports();
    second.ReadReports();
    first.ExpectWithin(settings, before[0]);
    second.ExpectWithin(settings, before[1]);
    writes += first.Stored + second.Stored;
  }
  EXPECT_GT(writes, 0);
  EXPECT_TRUE(ReadBytes(folder_.Path("config.ini")).starts_with(foreign));
  std::cout << "writes told as stored: " << writes << ", kills: " << 2 * rounds << ", seed " << SeedOfRounds()
            << '\n';
}

}  // namespace
}  // namespace spectrane
