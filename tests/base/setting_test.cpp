#include "base/setting.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <ctime>
#include <filesystem>
#include <functional>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include "base/basesupport.h"

namespace spectrane {
namespace {

namespace fs = std::filesystem;

class SettingTest : public testing::Test {
 protected:
  void Put(const std::string& bytes) { WriteBytes(Ini(), bytes); }
  std::string Stored() const { return ReadBytes(Ini()); }
  std::string Ini() const { return folder_.Path("config.ini"); }
  std::vector<std::string> Names() const {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(folder_.Path()))
      names.push_back(entry.path().filename().string());
    return names;
  }

  TemporaryFolder folder_;
  Setting settings_{folder_.Path()};
};

TEST_F(SettingTest, AMissingFileGivesEmptyTexts) {
  EXPECT_EQ(settings_.GetSetting("Option", "Precise"), "");
  EXPECT_EQ(settings_.Problem(), "");
  EXPECT_FALSE(fs::exists(Ini()));
}

TEST_F(SettingTest, TheFirstWriteCreatesTheFile) {
  EXPECT_TRUE(settings_.PutSetting("Option", "Opearator", "Kestu"));
  EXPECT_EQ(settings_.GetSetting("Option", "Opearator"), "Kestu");
  EXPECT_EQ(Stored(), "[Option]\nOpearator=Kestu\n");
  EXPECT_EQ(Names(), std::vector<std::string>{"config.ini"});
}

TEST_F(SettingTest, SeveralValuesAreOneReplacement) {
  Put("[A]\nk=1\n");
  EXPECT_TRUE(settings_.PutSettings({{"A", "k", "2"}, {"A", "l", "3"}, {"B", "m", "4"}}));
  EXPECT_EQ(Stored(), "[A]\nk=2\nl=3\n[B]\nm=4\n");
}

TEST_F(SettingTest, AnUnchangedValueLeavesTheFileAlone) {
  Put("[A]\nk = 1\n");
  const auto before = fs::last_write_time(Ini());
  struct stat first {};
  ASSERT_EQ(::stat(Ini().c_str(), &first), 0);
  EXPECT_TRUE(settings_.PutSetting("a", "K", "1"));
  struct stat second {};
  ASSERT_EQ(::stat(Ini().c_str(), &second), 0);
  EXPECT_EQ(first.st_ino, second.st_ino);
  EXPECT_EQ(fs::last_write_time(Ini()), before);
}

TEST_F(SettingTest, AChangeByAnotherProgramIsSeen) {
  Put("[A]\nk=1\n");
  EXPECT_EQ(settings_.GetSetting("A", "k"), "1");
  Put("[A]\nk=22\n");
  EXPECT_EQ(settings_.GetSetting("A", "k"), "22");
  fs::remove(Ini());
  EXPECT_EQ(settings_.GetSetting("A", "k"), "");
}

TEST_F(SettingTest, AFileOfTheSameSizeWrittenInPlaceIsSeen) {
  Put("[A]\nk=1\n");
  EXPECT_EQ(settings_.GetSetting("A", "k"), "1");
  const auto time = fs::last_write_time(Ini());
  Put("[A]\nk=2\n");
  fs::last_write_time(Ini(), time + std::chrono::nanoseconds(1));
  EXPECT_EQ(settings_.GetSetting("A", "k"), "2");
}

TEST_F(SettingTest, AReplacedFileOfTheSameSizeAndTimeIsSeen) {
  Put("[A]\nk=1\n");
  EXPECT_EQ(settings_.GetSetting("A", "k"), "1");
  const auto time = fs::last_write_time(Ini());
  WriteBytes(folder_.Path("other"), "[A]\nk=2\n");
  fs::last_write_time(folder_.Path("other"), time);
  fs::rename(folder_.Path("other"), Ini());
  EXPECT_EQ(settings_.GetSetting("A", "k"), "2");
}

TEST_F(SettingTest, AnUnchangedFileIsNotReadAgain) {
  Put("[A]\nk=1\n");
  const auto time = fs::last_write_time(Ini());
  EXPECT_EQ(settings_.GetSetting("A", "k"), "1");
  Put("[A]\nk=2\n");
  fs::last_write_time(Ini(), time);
  EXPECT_EQ(settings_.GetSetting("A", "k"), "1") << "same size, time and file: nothing tells of the change";
}

TEST_F(SettingTest, AWriteKeepsWhatAnotherProgramPutThereUnderTheSameSizeAndTime) {
  Put("[A]\nk=1\n");
  const auto time = fs::last_write_time(Ini());
  EXPECT_EQ(settings_.GetSetting("A", "k"), "1");
  Put("[A]\nk=2\n");
  fs::last_write_time(Ini(), time);
  EXPECT_TRUE(settings_.PutSetting("A", "l", "3"));
  EXPECT_EQ(Stored(), "[A]\nk=2\nl=3\n");
}

TEST_F(SettingTest, AChangeByAnotherProgramAfterAnOwnWriteIsSeen) {
  EXPECT_TRUE(settings_.PutSetting("A", "k", "1"));
  Put("[A]\nk=22\n");
  EXPECT_EQ(settings_.GetSetting("A", "k"), "22");
}

struct ValueRow {
  const char* Name;
  std::string Put;
  std::string Expected;
};
void PrintTo(const ValueRow& row, std::ostream* out) {
  *out << row.Put.size() << " bytes";
}

std::string Repeat(const std::string& text, int count) {
  std::string result;
  for (int i = 0; i < count; ++i) result += text;
  return result;
}

class SettingValueTest : public testing::TestWithParam<ValueRow> {};

TEST_P(SettingValueTest, ComesBack) {
  const TemporaryFolder folder;
  Setting settings(folder.Path());
  EXPECT_TRUE(settings.PutSetting("Option", "Opearator", GetParam().Put));
  EXPECT_EQ(settings.GetSetting("Option", "Opearator"), GetParam().Expected);
  Setting other(folder.Path());
  EXPECT_EQ(other.GetSetting("Option", "Opearator"), GetParam().Expected);
  EXPECT_EQ(other.GetSetting("Main Window", "Menu Style"), "");
  EXPECT_TRUE(other.PutSetting("Option", "Department", "next"));
  EXPECT_EQ(settings.GetSetting("Option", "Opearator"), GetParam().Expected);
}

const ValueRow kValueRows[] = {
    {"Plain", "Kestu", "Kestu"},
    {"Empty", "", ""},
    {"BlanksInside", "a  b", "a  b"},
    {"BlanksBehind", "a \t ", "a"},
    {"BlanksInFront", "  a", "a"},
    {"OnlyBlanks", "   ", ""},
    {"Equals", "=a=b=", "=a=b="},
    {"Semicolon", ";a;b", ";a;b"},
    {"Hash", "#a", "#a"},
    {"Brackets", "[Main Window]", "[Main Window]"},
    {"Quotes", "\"a\" 'b'", "\"a\" 'b'"},
    {"OneQuote", "\"a", "\"a"},
    {"Backslashes", "C:\\new\\table\\x.wls", "C:\\new\\table\\x.wls"},
    {"Percent", "%n%20", "%n%20"},
    {"Comma", "1,5", "1,5"},
    {"Mu", "\xCE\xBCg/ml \xC2\xB5g", "\xCE\xBCg/ml \xC2\xB5g"},
    {"Chinese", "\xE6\xAF\x94\xE8\x89\xB2", "\xE6\xAF\x94\xE8\x89\xB2"},
    {"OutsideTheBasicPlane", "\xF0\x9F\x94\xAC", "\xF0\x9F\x94\xAC"},
    // The first and the last of those whose lead leaves only a part of the second bytes.
    {"ThreeBytesFirst", "\xE0\xA0\x80", "\xE0\xA0\x80"},
    {"BeforeTheHalvesOfPairs", "\xED\x9F\xBF", "\xED\x9F\xBF"},
    {"FourBytesFirst", "\xF0\x90\x80\x80", "\xF0\x90\x80\x80"},
    {"LastOfAll", "\xF4\x8F\xBF\xBF", "\xF4\x8F\xBF\xBF"},
    {"MultiLineMark", "<<<END", "<<<END"},
    {"LineBreakCannotInjectAKey", "Eve\n[Main Window]\nMenu Style=6", "Eve [Main Window] Menu Style=6"},
    {"CarriageReturnCannotInjectAKey", "Eve\rMenu Style=6", "Eve Menu Style=6"},
    {"CrLfCannotInjectAKey", "Eve\r\nMenu Style=6", "Eve  Menu Style=6"},
    {"Nul", std::string("a\0b", 3), "a b"},
    {"NulAtTheEnd", std::string("a\0", 2), "a"},
    {"Characters255", std::string(255, 'x'), std::string(255, 'x')},
    {"Characters256", std::string(256, 'x'), std::string(255, 'x')},
    {"BlankAtTheCut", std::string(254, 'x') + " y", std::string(254, 'x')},
    {"Mu255", Repeat("\xC2\xB5", 255), Repeat("\xC2\xB5", 255)},
    {"Mu256", Repeat("\xC2\xB5", 256), Repeat("\xC2\xB5", 255)},
    {"LongLine", std::string(1'000'000, 'x'), std::string(255, 'x')},
};
INSTANTIATE_TEST_SUITE_P(Rows, SettingValueTest, testing::ValuesIn(kValueRows), NameOfRow<ValueRow>);

TEST_F(SettingTest, TextOfAnOlderFileIsReadAsSingleBytes) {
  Put("[Option]\nOpearator=M\xFCller \xB5g\nDepartment=\xC3\xBC\n");
  EXPECT_EQ(settings_.GetSetting("Option", "Opearator"), "M\xC3\xBCller \xC2\xB5g");
  EXPECT_EQ(settings_.GetSetting("Option", "Department"), "\xC3\xBC");
  EXPECT_TRUE(settings_.PutSetting("Option", "Precise", "1"));
  EXPECT_EQ(Stored(), "[Option]\nOpearator=M\xFCller \xB5g\nDepartment=\xC3\xBC\nPrecise=1\n");
}

TEST_F(SettingTest, MalformedUtf8IsReadAsSingleBytes) {
  const std::pair<std::string, std::string> rows[] = {
      {"\xC0\x80", "\xC3\x80\xE2\x82\xAC"},                                  // overlong
      {"\xED\xA0\x80", "\xC3\xAD\xC2\xA0\xE2\x82\xAC"},                      // half of a pair
      {"\xF4\x90\x80\x80", "\xC3\xB4\xC2\x90\xE2\x82\xAC\xE2\x82\xAC"},      // beyond the last character
      {"\xE6\xAF", "\xC3\xA6\xC2\xAF"},                                      // cut
      {"\xE0\x9F\xBF", "\xC3\xA0\xC5\xB8\xC2\xBF"},                          // two bytes in three
      {"\xF0\x8F\xBF\xBF", "\xC3\xB0\xC2\x8F\xC2\xBF\xC2\xBF"},              // three bytes in four
      {"\xF5\x80\x80\x80", "\xC3\xB5\xE2\x82\xAC\xE2\x82\xAC\xE2\x82\xAC"},  // no such lead
      {"\xE6\x41\xAF", "\xC3\xA6\x41\xC2\xAF"},                              // broken off inside
  };
  for (const auto& [stored, expected] : rows) {
    Put("[A]\nk=" + stored + "\n");
    EXPECT_EQ(Setting(folder_.Path()).GetSetting("A", "k"), expected);
  }
}

TEST_F(SettingTest, NamesThatDoNotFitALineAreRefused) {
  Put("[A]\nk=1\n");
  const std::pair<const char*, const char*> rows[] = {
      {"", "k"},   {"A", ""},   {"A]", "k"}, {"A", "k=l"}, {"A", "k\nl"}, {"A\r", "k"}, {"A", ";k"},
      {"A", "#k"}, {"A", "[k"}, {"A", " k"}, {"A", "k "},  {" A", "k"},   {"\tA", "k"}, {"A", "k\t"}};
  for (const auto& [section, key] : rows) {
    EXPECT_FALSE(settings_.PutSetting(section, key, "2")) << section << "/" << key;
    EXPECT_EQ(settings_.GetSetting(section, key), "") << section << "/" << key;
  }
  EXPECT_EQ(Stored(), "[A]\nk=1\n");
  EXPECT_FALSE(settings_.PutSettings({{"A", "k=", "2"}, {"A", "l", "3"}}));
  EXPECT_EQ(Stored(), "[A]\nk=1\nl=3\n");
}

struct FaultRow {
  const char* Name;
  std::string Bytes;
};
void PrintTo(const FaultRow& row, std::ostream* out) {
  *out << row.Name;
}

class NoSettingsFileTest : public testing::TestWithParam<FaultRow> {};

TEST_P(NoSettingsFileTest, IsLeftAlone) {
  const TemporaryFolder folder;
  const std::string path = folder.Path("config.ini");
  WriteBytes(path, GetParam().Bytes);
  Setting settings(folder.Path());
  EXPECT_EQ(settings.GetSetting("A", "k"), "");
  EXPECT_NE(settings.Problem().find(path), std::string::npos);
  EXPECT_FALSE(settings.PutSetting("A", "k", "2"));
  EXPECT_EQ(settings.GetSetting("A", "k"), "2") << "the value holds for this run";
  EXPECT_EQ(ReadBytes(path), GetParam().Bytes);

  WriteBytes(path, "[B]\nl=1\n");
  EXPECT_TRUE(settings.PutSetting("A", "m", "3")) << "what waited goes with the first write that succeeds";
  EXPECT_EQ(settings.Problem(), "");
  EXPECT_EQ(ReadBytes(path), "[B]\nl=1\n[A]\nk=2\nm=3\n");
}

/// Plain text in two bytes a character.
std::string Widened(const std::string& text, bool highByteFirst) {
  std::string result;
  for (const char c : text) result += highByteFirst ? std::string{'\0', c} : std::string{c, '\0'};
  return result;
}

const FaultRow kFaultRows[] = {
    {"Utf16LittleEndian", "\xFF\xFE" + Widened("[A]\nk=1\n", false)},
    {"Utf16BigEndian", "\xFE\xFF" + Widened("[A]\nk=1\n", true)},
    {"Utf16WithoutMark", Widened("[A]\nk=1\n", false)},
    {"Utf16WithoutNul", "\xFF\xFE\x2E\x4E\x2E\x4E"},
    {"Nul", std::string("[A]\nk=1\n\0", 9)},
    {"Oversized", "[A]\nk=1\n" + std::string((16U << 20), ';')},
};
INSTANTIATE_TEST_SUITE_P(Rows, NoSettingsFileTest, testing::ValuesIn(kFaultRows), NameOfRow<FaultRow>);

TEST_F(SettingTest, AFolderOfThatNameIsLeftAlone) {
  fs::create_directory(Ini());
  EXPECT_EQ(settings_.GetSetting("A", "k"), "");
  EXPECT_EQ(settings_.Problem(), Ini() + ": Is a directory");
  EXPECT_FALSE(settings_.PutSetting("A", "k", "2"));
  EXPECT_EQ(settings_.GetSetting("A", "k"), "2");
  EXPECT_TRUE(fs::is_empty(Ini()));
}

TEST_F(SettingTest, APipeOfThatNameDoesNotBlock) {
  ASSERT_EQ(::mkfifo(Ini().c_str(), 0600), 0);
  EXPECT_EQ(settings_.GetSetting("A", "k"), "");
  EXPECT_FALSE(settings_.PutSetting("A", "k", "2"));
  EXPECT_TRUE(fs::is_fifo(Ini()));
}

TEST_F(SettingTest, AMissingFolderKeepsValuesInMemory) {
  Setting settings(folder_.Path("none"));
  EXPECT_FALSE(settings.PutSetting("A", "k", "2"));
  EXPECT_EQ(settings.GetSetting("A", "k"), "2");
  EXPECT_EQ(settings.Problem(), folder_.Path("none/config.ini") + ": No such file or directory");
}

TEST_F(SettingTest, AFolderOfANameThatNoSystemTakesKeepsValuesInMemory) {
  const std::string folder = folder_.Path(std::string(300, 'n'));
  Setting settings(folder);
  EXPECT_EQ(settings.GetSetting("A", "k"), "");
  EXPECT_EQ(settings.Problem(), folder + "/config.ini: File name too long");
  EXPECT_FALSE(settings.PutSetting("A", "k", "2"));
  EXPECT_EQ(settings.GetSetting("A", "k"), "2");
}

TEST_F(SettingTest, WhatTheFileCannotHoldAnyMoreStaysInMemory) {
  Put("[A]\nk=1\n" + std::string((16U << 20) - 20, ';'));
  EXPECT_FALSE(settings_.PutSetting("A", "long", std::string(40, 'x')));
  EXPECT_EQ(settings_.Problem(), Ini() + ": File too large");
  EXPECT_EQ(settings_.GetSetting("A", "long"), std::string(40, 'x'));
  EXPECT_EQ(Setting(folder_.Path()).GetSetting("A", "long"), "");
  EXPECT_EQ(fs::file_size(Ini()), (16U << 20) - 12);
}

TEST_F(SettingTest, AFileInThePlaceOfTheFolderKeepsValuesInMemory) {
  WriteBytes(folder_.Path("file"), "x");
  Setting settings(folder_.Path("file"));
  EXPECT_EQ(settings.GetSetting("A", "k"), "");
  EXPECT_FALSE(settings.PutSetting("A", "k", "2"));
  EXPECT_EQ(settings.GetSetting("A", "k"), "2");
}

TEST_F(SettingTest, ValuesInMemoryFollowTheLastPut) {
  Setting settings(folder_.Path("none"));
  settings.PutSetting("A", "k", "1");
  settings.PutSetting("a", "K", "2");
  EXPECT_EQ(settings.GetSetting("A", "k"), "2");
  EXPECT_EQ(settings.GetSetting("a", "K"), "2");
  EXPECT_EQ(settings.GetSetting("B", "k"), "") << "the key of another section";
}

TEST_F(SettingTest, AValueThatWaitsIsStoredAndTheDefaultThatWaitsWithItIsNot) {
  fs::create_directory(Ini());
  EXPECT_FALSE(settings_.PutDefaults({{"A", "k", "usual"}, {"A", "l", "usual"}}));
  EXPECT_FALSE(settings_.PutSetting("A", "k", "chosen"));
  EXPECT_EQ(settings_.GetSetting("A", "k"), "chosen");
  EXPECT_EQ(settings_.GetSetting("A", "l"), "usual");
  fs::remove(Ini());
  EXPECT_TRUE(settings_.PutSetting("B", "m", "1"));
  EXPECT_EQ(Stored(), "[A]\nk=chosen\nl=usual\n[B]\nm=1\n");
}

TEST_F(SettingTest, AFileThatIsFarTooLargeIsNotReadToItsEnd) {
  Put("[A]\nk=1\n");
  fs::resize_file(Ini(), std::uintmax_t{1} << 40);
  EXPECT_EQ(settings_.GetSetting("A", "k"), "");
  EXPECT_EQ(settings_.Problem(), Ini() + ": File too large");
}

TEST_F(SettingTest, ALinkIsFollowed) {
  WriteBytes(folder_.Path("real"), "[A]\nk=1\n");
  fs::create_symlink("real", Ini());
  EXPECT_TRUE(settings_.PutSetting("A", "k", "2"));
  EXPECT_TRUE(fs::is_symlink(Ini()));
  EXPECT_EQ(ReadBytes(folder_.Path("real")), "[A]\nk=2\n");
}

/// Runs `work` as somebody without rights in a child process; true when it returned true.
template <typename Work>
bool AsNobody(Work work) {
  const pid_t child = ::fork();
  if (child == 0) ::_exit(::setgid(65534) == 0 && ::setuid(65534) == 0 && work() ? 0 : 1);
  int status = -1;
  ::waitpid(child, &status, 0);
  return status == 0;
}

TEST_F(SettingTest, AnUnreadableFileIsLeftAlone) {
  if (::geteuid() != 0) GTEST_SKIP() << "needs root to become somebody else";
  Put("[A]\nk=1\n");
  ASSERT_EQ(::chmod(Ini().c_str(), 0000), 0);
  ASSERT_EQ(::chmod(folder_.Path().c_str(), 0777), 0);
  EXPECT_TRUE(AsNobody([this] {
    return settings_.GetSetting("A", "k").empty() && settings_.Problem() == Ini() + ": Permission denied" &&
           !settings_.PutSetting("A", "k", "2") && settings_.GetSetting("A", "k") == "2";
  }));
  EXPECT_EQ(Stored(), "[A]\nk=1\n");
}

TEST_F(SettingTest, AReadOnlyFolderKeepsValuesInMemory) {
  if (::geteuid() != 0) GTEST_SKIP() << "needs root to become somebody else";
  Put("[A]\nk=1\n");
  ASSERT_EQ(::chmod(folder_.Path().c_str(), 0555), 0);
  EXPECT_TRUE(AsNobody([this] {
    return settings_.GetSetting("A", "k") == "1" && !settings_.PutSetting("A", "k", "2") &&
           settings_.GetSetting("A", "k") == "2" && settings_.PutSetting("A", "k", "1") &&
           settings_.Problem().empty();
  }));
  ::chmod(folder_.Path().c_str(), 0755);
  EXPECT_EQ(Stored(), "[A]\nk=1\n");
}

TEST_F(SettingTest, AFullDiskKeepsTheOldFile) {
  Put("[A]\nk=1\n");
  const pid_t child = ::fork();
  if (child == 0) {
    std::signal(SIGXFSZ, SIG_IGN);
    const rlimit limit{4, 4};
    const bool right = ::setrlimit(RLIMIT_FSIZE, &limit) == 0 && !settings_.PutSetting("A", "k", "22") &&
                       settings_.GetSetting("A", "k") == "22" && !settings_.Problem().empty();
    ::_exit(right ? 0 : 1);
  }
  int status = -1;
  ::waitpid(child, &status, 0);
  EXPECT_EQ(status, 0);
  EXPECT_EQ(Stored(), "[A]\nk=1\n");
  EXPECT_EQ(Names(), std::vector<std::string>{"config.ini"});
}

TEST_F(SettingTest, CopiesThatWriteAtOnceKeepEachOthersKeys) {
  constexpr int kCopies = 4;
  constexpr int kKeys = 40;
  std::vector<pid_t> children;
  for (int copy = 0; copy < kCopies; ++copy) {
    const pid_t child = ::fork();
    if (child == 0) {
      Setting settings(folder_.Path());
      const std::string section = "Copy " + std::to_string(copy);
      for (int i = 0; i < kKeys; ++i)
        settings.PutSetting(section, "Key " + std::to_string(i), std::to_string(i));
      // A write that the others delayed for too long goes with the next one.
      bool stored = false;
      for (int i = 0; i < 20 && !stored; ++i)
        stored = settings.PutSetting(section, "Last", std::to_string(i));
      ::_exit(stored ? 0 : 1);
    }
    children.push_back(child);
  }
  for (const pid_t child : children) {
    int status = -1;
    ::waitpid(child, &status, 0);
    EXPECT_EQ(status, 0);
  }
  for (int copy = 0; copy < kCopies; ++copy) {
    for (int i = 0; i < kKeys; ++i) {
      EXPECT_EQ(settings_.GetSetting("Copy " + std::to_string(copy), "Key " + std::to_string(i)),
                std::to_string(i));
    }
  }
  EXPECT_EQ(Names(), std::vector<std::string>{"config.ini"});
}

TEST_F(SettingTest, ACopyThatHoldsTheLockDelaysAWriteButNeverForLong) {
  Put("[A]\nk=1\n");
  const int holder = ::open(folder_.Path().c_str(), O_RDONLY | O_DIRECTORY);
  ASSERT_EQ(::flock(holder, LOCK_EX), 0);
  const auto start = std::chrono::steady_clock::now();
  EXPECT_FALSE(settings_.PutSetting("A", "k", "2"));
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(3));
  EXPECT_EQ(settings_.GetSetting("A", "k"), "2");
  EXPECT_EQ(Stored(), "[A]\nk=1\n");
  ::close(holder);
  EXPECT_TRUE(settings_.PutSetting("A", "l", "3"));
  EXPECT_EQ(Stored(), "[A]\nk=2\nl=3\n");
}

TEST_F(SettingTest, AProcessKilledWhileItWritesLeavesOldOrNew) {
  const std::string padding = "[Pad]\nx=" + std::string(200000, 'x') + "\n";
  for (int delayUs = 0; delayUs < 5000; delayUs += 250) {
    Put(padding + "[A]\nk=0\n");
    const pid_t child = ::fork();
    if (child == 0) {
      Setting settings(folder_.Path());
      for (int i = 1;; ++i) settings.PutSetting("A", "k", std::to_string(i));
    }
    ::usleep(static_cast<useconds_t>(delayUs));
    ::kill(child, SIGKILL);
    ::waitpid(child, nullptr, 0);
    const std::string stored = Stored();
    ASSERT_EQ(stored.compare(0, padding.size() + 6, padding + "[A]\nk="), 0) << stored.size();
    ASSERT_EQ(stored.back(), '\n');
  }
  EXPECT_TRUE(settings_.PutSetting("A", "k", "done"));
}

/// Of the processor, whatever else the machine does.
double SecondsOf(const std::function<void()>& work) {
  const std::clock_t start = std::clock();
  work();
  return static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
}

TEST_F(SettingTest, AMillionKeysTakeLessThanASecond) {
  std::string bytes = "[Option]\n";
  for (int i = 0; i < 1'000'000; ++i) bytes += "k" + std::to_string(i) + "=v\n";
  bytes += "Precise=1\n";
  Put(bytes);
  std::string value;
  EXPECT_LT(SecondsOf([&] { value = settings_.GetSetting("Option", "Precise"); }), 1.0);
  EXPECT_EQ(value, "1");
}

TEST_F(SettingTest, ALongLineTakesLessThanASecond) {
  Put("[Option]\n" + std::string(1'000'000, 'k') + "\nPrecise=1\n[" + std::string(1'000'000, 's') + "\n");
  std::string value;
  EXPECT_LT(SecondsOf([&] { value = settings_.GetSetting("Option", "Precise"); }), 1.0);
  EXPECT_EQ(value, "1");
}

}  // namespace
}  // namespace spectrane
