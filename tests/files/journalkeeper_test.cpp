#include "files/journalkeeper.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>

#include <csignal>
#include <functional>
#include <new>
#include <optional>
#include <random>
#include <utility>

#include "base/childprocess.h"
#include "files/bslfile.h"
#include "files/filesupport.h"

namespace spectrane {
namespace {

namespace fs = std::filesystem;

/// A document of photometry records with a journal below the test's folder.
class JournalKeeping : public ::testing::Test {
 protected:
  std::string Folder() const { return folder_.Path("journal"); }
  void AddRow(const std::string& note = {}) {
    Records.push_back({static_cast<std::int32_t>(Records.size()), 20000, -7, 546, note});
  }
  bool KeepIn(JournalKeeper& keeper, std::int32_t first = 0, bool mayTidy = false) {
    JournalImage image = JournalImageOf(
        BasicModule(), Option, static_cast<std::int32_t>(Records.size()),
        [this](std::int32_t i) -> const BasicRecord& { return Records[static_cast<std::size_t>(i)]; });
    image.Head.Caption = Caption;
    return keeper.Keep(image, first, mayTidy);
  }
  std::vector<std::string> Files() const {
    std::vector<std::string> files;
    if (fs::exists(Folder())) {
      for (const auto& each : fs::directory_iterator(Folder())) files.push_back(each.path().string());
    }
    return files;
  }
  /// What the only journal says now.
  void ExpectSays(const std::vector<BasicRecord>& records) {
    const std::vector<std::string> files = Files();
    ASSERT_EQ(files.size(), 1u);
    Journal journal;
    const std::string bytes = ReadBytes(files[0]);
    ASSERT_TRUE(ReadJournal(bytes, journal));
    EXPECT_EQ(journal.WholeBytes, bytes.size());
    EXPECT_EQ(journal.Head.Caption, Caption);
    BasicOption option;
    std::vector<BasicRecord> read;
    ASSERT_TRUE(TakeJournal(BasicModule(), journal, option, read));
    EXPECT_EQ(read, records);
    EXPECT_EQ(option.Written, Option.Written);
    EXPECT_EQ(option.RecordCount, static_cast<std::int32_t>(records.size()));
  }

  BasicOption Option{"1.62.0", "2024-02-29  13:05:09", 0};
  std::vector<BasicRecord> Records;
  std::string Caption = "Photometry 1";

 private:
  TemporaryFolder folder_;
};

TEST_F(JournalKeeping, ARowIsAppendedAndNothingElse) {
  JournalKeeper keeper(Folder());
  EXPECT_TRUE(Files().empty());
  AddRow("first");
  ASSERT_TRUE(KeepIn(keeper));
  const std::size_t before = keeper.Size();
  for (const std::int32_t first : {1, 0}) {
    const std::size_t size = keeper.Size();
    AddRow("next");
    ASSERT_TRUE(KeepIn(keeper, first));
    // Its frame, its kind, its place, and the record.
    EXPECT_EQ(keeper.Size(), size + 8 + 9 + 276);
  }
  EXPECT_GT(keeper.Size(), before);
  const std::size_t same = keeper.Size();
  ASSERT_TRUE(KeepIn(keeper));
  EXPECT_EQ(keeper.Size(), same);
  ExpectSays(Records);
}

TEST_F(JournalKeeping, FollowsAnyChangeOfTheDocument) {
  std::mt19937 random(20261121);
  const auto upTo = [&](std::size_t most) {
    return std::uniform_int_distribution<std::size_t>(0, most)(random);
  };
  JournalKeeper keeper(Folder());
  for (int step = 0; step < 400; ++step) {
    std::int32_t first = 0;
    switch (Records.empty() ? 0 : upTo(5)) {
      case 0:
        // Many at once go in several pieces.
        first = static_cast<std::int32_t>(Records.size());
        for (std::size_t i = upTo(step % 50 == 7 ? 600 : 2) + 1; i > 0; --i) AddRow(std::to_string(step));
        break;
      case 1:
        Records.erase(Records.begin() + static_cast<std::ptrdiff_t>(upTo(Records.size() - 1)));
        break;
      case 2:
        Records[upTo(Records.size() - 1)].Note = "note " + std::to_string(step);
        break;
      case 3:
        for (BasicRecord& record : Records) record.Wavelength += 1;
        break;
      case 4:
        Option.Written = std::to_string(step);
        Caption = "Photometry " + std::to_string(step);
        break;
      default:
        Records.resize(upTo(Records.size()));
        AddRow();
        break;
    }
    ASSERT_TRUE(KeepIn(keeper, first)) << step;
    ASSERT_NO_FATAL_FAILURE(ExpectSays(Records)) << step;
  }
}

TEST_F(JournalKeeping, D15_StaysWhenTheProgramGoesAndGoesWhenTheDocumentIsSaved) {
  AddRow();
  {
    JournalKeeper keeper(Folder());
    ASSERT_TRUE(KeepIn(keeper));
  }
  ExpectSays(Records);
  std::vector<LeftJournal> left = TakeLeftJournals(Folder());
  ASSERT_EQ(left.size(), 1u);
  JournalKeeper keeper(std::move(left[0].File), left[0].Content);
  AddRow();
  ASSERT_TRUE(KeepIn(keeper, 1));
  ExpectSays(Records);
  keeper.Drop();
  EXPECT_TRUE(Files().empty());
  EXPECT_FALSE(keeper.Begun());
  ASSERT_TRUE(KeepIn(keeper));
  ExpectSays(Records);
}

TEST_F(JournalKeeping, GoesOnBehindATornEntry) {
  AddRow("a");
  {
    JournalKeeper keeper(Folder());
    ASSERT_TRUE(KeepIn(keeper));
    AddRow("b");
    ASSERT_TRUE(KeepIn(keeper));
  }
  fs::resize_file(Files()[0], fs::file_size(Files()[0]) - 100);
  std::vector<LeftJournal> left = TakeLeftJournals(Folder());
  ASSERT_EQ(left.size(), 1u);
  EXPECT_EQ(left[0].Content.RecordCount(), 1u);
  JournalKeeper keeper(std::move(left[0].File), left[0].Content);
  ASSERT_TRUE(KeepIn(keeper));
  ExpectSays(Records);
}

TEST_F(JournalKeeping, W01_IsNobodyElsesWhileItsProgramLives) {
  int pipes[2] = {-1, -1};
  ASSERT_EQ(::pipe(pipes), 0);
  AddRow();
  const pid_t other = ::fork();
  if (other == 0) {
    JournalKeeper keeper(Folder());
    const char done = KeepIn(keeper) ? 1 : 0;
    if (::write(pipes[1], &done, 1) == 1) ::pause();
    ::_exit(1);
  }
  char done = 0;
  ASSERT_EQ(::read(pipes[0], &done, 1), 1);
  ASSERT_EQ(done, 1);
  EXPECT_TRUE(TakeLeftJournals(Folder()).empty());
  EXPECT_EQ(Files().size(), 1u);
  ::kill(other, SIGKILL);
  ::waitpid(other, nullptr, 0);
  const std::vector<LeftJournal> left = TakeLeftJournals(Folder());
  EXPECT_EQ(left.size(), 1u);
  // Whoever asks the person about it has it meanwhile.
  EXPECT_TRUE(TakeLeftJournals(Folder()).empty());
  ::close(pipes[0]);
  ::close(pipes[1]);
}

TEST_F(JournalKeeping, AFullDiskLeavesTheJournalWhole) {
  AddRow();
  EXPECT_TRUE(InChild([this] {
    std::signal(SIGXFSZ, SIG_IGN);
    JournalKeeper keeper(Folder());
    if (!KeepIn(keeper)) return false;
    const std::size_t size = keeper.Size();
    rlimit limit = {size + 100, RLIM_INFINITY};
    if (::setrlimit(RLIMIT_FSIZE, &limit) != 0) return false;
    AddRow("does not fit");
    const bool refused =
        !KeepIn(keeper, 1) && !keeper.LastFault().empty() && fs::file_size(Files()[0]) == size;
    limit.rlim_cur = RLIM_INFINITY;
    if (::setrlimit(RLIMIT_FSIZE, &limit) != 0) return false;
    AddRow("fits again");
    return refused && KeepIn(keeper, 2);
  }));
  Records.clear();
  AddRow();
  AddRow("does not fit");
  AddRow("fits again");
  ExpectSays(Records);
}

/// What a disk was too full for is not forgotten when the next call tells of a new row alone.
TEST_F(JournalKeeping, D15_AChangeThatFailedComesWithTheNextRow) {
  struct Case {
    const char* Name;
    std::function<void()> Change;
  };
  for (const Case& each : {Case{"a row is removed", [this] { Records.erase(Records.begin() + 1); }},
                           Case{"a note is written", [this] { Records[1].Note = "by hand"; }},
                           Case{"rows are removed at the end", [this] { Records.resize(1); }},
                           Case{"all rows go", [this] { Records.clear(); }}}) {
    SCOPED_TRACE(each.Name);
    Records.clear();
    for (const char* note : {"r0", "r1", "r2", "r3"}) AddRow(note);
    const std::vector<BasicRecord> before = Records;
    each.Change();
    const auto next = static_cast<std::int32_t>(Records.size());
    AddRow("next");
    EXPECT_TRUE(InChild([&] {
      std::signal(SIGXFSZ, SIG_IGN);
      const std::vector<BasicRecord> after = std::exchange(Records, before);
      JournalKeeper keeper(Folder());
      if (!KeepIn(keeper)) return false;
      rlimit limit = {keeper.Size(), RLIM_INFINITY};
      if (::setrlimit(RLIMIT_FSIZE, &limit) != 0) return false;
      each.Change();
      const bool refused = !KeepIn(keeper);
      limit.rlim_cur = RLIM_INFINITY;
      if (::setrlimit(RLIMIT_FSIZE, &limit) != 0) return false;
      Records = after;
      return refused && KeepIn(keeper, next);
    }));
    ExpectSays(Records);
    fs::remove_all(Folder());
  }
}

TEST_F(JournalKeeping, D15_AChangeThatCouldNotBeReadComesWithTheNextRow) {
  for (const char* note : {"r0", "r1", "r2"}) AddRow(note);
  JournalKeeper keeper(Folder());
  ASSERT_TRUE(KeepIn(keeper));
  Records.erase(Records.begin());
  JournalImage image = JournalImageOf(BasicModule(), Option, 2,
                                      [](std::int32_t) -> const BasicRecord& { throw std::bad_alloc(); });
  EXPECT_THROW(keeper.Keep(image, 0, false), std::bad_alloc);
  AddRow("next");
  ASSERT_TRUE(KeepIn(keeper, 2));
  ExpectSays(Records);
}

TEST_F(JournalKeeping, WithoutAPlaceItSaysWhy) {
  WriteBytes(Folder(), "a file");
  AddRow();
  JournalKeeper keeper(Folder());
  EXPECT_FALSE(KeepIn(keeper));
  EXPECT_FALSE(keeper.LastFault().empty());
  EXPECT_FALSE(keeper.Begun());
  fs::remove(Folder());
  EXPECT_TRUE(KeepIn(keeper));
}

TEST_F(JournalKeeping, AFileThatIsMostlyReplacedIsWrittenAnewWhenNothingIsMeasured) {
  for (int i = 0; i < 1000; ++i) AddRow();
  std::optional<JournalKeeper> kept(std::in_place, Folder());
  JournalKeeper& keeper = *kept;
  ASSERT_TRUE(KeepIn(keeper));
  const std::string first = Files()[0];
  for (int i = 0; i < 30; ++i) {
    for (BasicRecord& record : Records) record.Wavelength += 1;
    ASSERT_TRUE(KeepIn(keeper, 0, false));
  }
  EXPECT_EQ(Files()[0], first);
  EXPECT_GT(keeper.Size(), 30u * 276'000);
  const std::string old = ReadBytes(first);
  AddRow();
  ASSERT_TRUE(KeepIn(keeper, 1000, true));
  EXPECT_LT(keeper.Size(), 300'000u);
  ExpectSays(Records);
  kept.reset();
  // The program died before the older file was gone: the newer one counts.
  WriteBytes(first, old);
  const std::vector<LeftJournal> left = TakeLeftJournals(Folder());
  ASSERT_EQ(left.size(), 1u);
  EXPECT_EQ(left[0].Content.RecordCount(), 1001u);
  ExpectSays(Records);
}

TEST_F(JournalKeeping, ANewerFileThatIsNotWholeLeavesTheOlderOne) {
  AddRow();
  {
    JournalKeeper keeper(Folder());
    ASSERT_TRUE(KeepIn(keeper));
  }
  const std::string first = Files()[0];
  const std::string newer = first.substr(0, first.rfind('-')) + "-1.journal";
  WriteBytes(newer, ReadBytes(first).substr(0, 50));
  const std::vector<LeftJournal> left = TakeLeftJournals(Folder());
  ASSERT_EQ(left.size(), 1u);
  EXPECT_EQ(left[0].File->Path(), first);
  EXPECT_FALSE(fs::exists(newer));
}

/// The smallest journal that names a document.
std::string SmallestJournal() {
  JournalHead head;
  head.FileType = 11;
  head.RecordSize = 276;
  return std::string(JournalOpening()) + JournalHeadEntry(head, false);
}

TEST_F(JournalKeeping, OfADocumentWithoutRecordsTheHeadIsKept) {
  JournalKeeper keeper(Folder());
  EXPECT_EQ(keeper.Size(), 0u);
  keeper.Drop();
  EXPECT_FALSE(keeper.Begun());
  ASSERT_TRUE(KeepIn(keeper, 0, true));
  ExpectSays({});
}

TEST_F(JournalKeeping, ADocumentThatBecomesOneOfAnotherKindGetsANewFile) {
  AddRow();
  JournalKeeper keeper(Folder());
  ASSERT_TRUE(KeepIn(keeper));
  const std::string first = Files()[0];
  for (const auto& change : std::vector<std::function<void(JournalHead&)>>{
           [](JournalHead& head) { head.RecordSize = 28; }, [](JournalHead& head) { head.FileType = 2; }}) {
    JournalImage image;
    image.Head.FileType = 11;
    image.Head.RecordSize = 276;
    change(image.Head);
    ASSERT_TRUE(keeper.Keep(image, 0, false));
    ASSERT_EQ(Files().size(), 1u);
    EXPECT_NE(Files()[0], first);
    Journal journal;
    ASSERT_TRUE(ReadJournal(ReadBytes(Files()[0]), journal));
    EXPECT_EQ(journal.Head, image.Head);
    EXPECT_EQ(journal.RecordCount(), 0u);
  }
}

TEST_F(JournalKeeping, ATextThatIsTooLargeIsToldAndTheJournalStays) {
  AddRow();
  JournalKeeper keeper(Folder());
  const std::string usual = Caption;
  Caption = std::string(kLargestJournalPart + 1, 'x');
  EXPECT_FALSE(KeepIn(keeper));
  EXPECT_EQ(keeper.LastFault(), "the document is too large for a journal");
  EXPECT_TRUE(Files().empty());
  Caption = usual;
  ASSERT_TRUE(KeepIn(keeper));
  Caption = std::string(kLargestJournalPart + 1, 'x');
  AddRow();
  EXPECT_FALSE(KeepIn(keeper));
  Caption = usual;
  Records.pop_back();
  ExpectSays(Records);
}

TEST_F(JournalKeeping, AFullJournalTakesNothingMore) {
  fs::create_directories(Folder());
  WriteBytes(Folder() + "/a-0.journal", SmallestJournal());
  std::vector<LeftJournal> left = TakeLeftJournals(Folder());
  ASSERT_EQ(left.size(), 1u);
  // The file grows by zeros up to the size that is said to be whole.
  left[0].Content.WholeBytes = kLargestJournal - 100;
  JournalKeeper keeper(std::move(left[0].File), left[0].Content);
  EXPECT_EQ(keeper.Size(), kLargestJournal - 100);
  AddRow();
  EXPECT_FALSE(KeepIn(keeper));
  EXPECT_EQ(keeper.LastFault(), "the journal is full");
  EXPECT_EQ(keeper.Size(), kLargestJournal - 100);
}

TEST_F(JournalKeeping, ADocumentOfMoreBytesThanAJournalTakesHasNone) {
  JournalImage image;
  image.Head.FileType = 11;
  image.Head.RecordSize = kLargestJournalPart;
  image.Encode = [](std::int32_t, unsigned char*) {};
  image.Count = 1024;
  JournalKeeper keeper(Folder());
  EXPECT_FALSE(keeper.Keep(image, 0, false));
  EXPECT_EQ(keeper.LastFault(), "the document is too large for a journal");
  EXPECT_TRUE(Files().empty());
}

TEST_F(JournalKeeping, JournalsOfSeveralDocumentsAreAllTaken) {
  fs::create_directories(Folder());
  // Behind the last dash stands how often a file was written anew, and nothing else counts as that.
  for (const char* name : {"a-0", "b-0", "b-", "b-x", "b-1234567890", "c"})
    WriteBytes(Folder() + "/" + name + ".journal", SmallestJournal());
  WriteBytes(Folder() + "/journal.txt", SmallestJournal());
  std::vector<std::string> names;
  for (const LeftJournal& left : TakeLeftJournals(Folder()))
    names.push_back(fs::path(left.File->Path()).stem().string());
  EXPECT_EQ(names, (std::vector<std::string>{"a-0", "b-0", "b-", "b-1234567890", "b-x", "c"}));
  EXPECT_EQ(Files().size(), 7u);
}

TEST_F(JournalKeeping, AFolderNamedFromWhereTheProgramStandsServes) {
  fs::create_directories(Folder());
  for (const char* name : {"/a.journal", "/b.journal"}) WriteBytes(Folder() + name, SmallestJournal());
  EXPECT_TRUE(
      InChild([this] { return ::chdir(Folder().c_str()) == 0 && TakeLeftJournals(".").size() == 2; }));
}

TEST_F(JournalKeeping, OneStartTakesSixtyFourAndTheNextOneTheRest) {
  fs::create_directories(Folder());
  for (int i = 0; i < 66; ++i)
    WriteBytes(Folder() + "/a" + std::to_string(i) + "-0.journal", SmallestJournal());
  const std::vector<LeftJournal> first = TakeLeftJournals(Folder());
  EXPECT_EQ(first.size(), 64u);
  EXPECT_EQ(TakeLeftJournals(Folder()).size(), 2u);
}

TEST_F(JournalKeeping, OneStartReadsAQuarterOfAGigabyteAndNotMuchMore) {
  fs::create_directories(Folder());
  for (const char letter : std::string("abcdef")) {
    const std::string path = Folder() + "/" + letter + "-0.journal";
    WriteBytes(path, SmallestJournal());
    fs::resize_file(path, kLargestJournal + 1);
  }
  const std::vector<LeftJournal> first = TakeLeftJournals(Folder());
  EXPECT_EQ(first.size(), 5u) << "four of 64 MiB are a quarter, the fifth is more";
  EXPECT_EQ(TakeLeftJournals(Folder()).size(), 1u);
}

TEST_F(JournalKeeping, AJournalOfMoreRecordsThanItsKindHasIsNotTaken) {
  Journal journal;
  journal.Head.FileType = 6;
  journal.Head.RecordSize = 16;
  journal.Head.Option = std::string(28, '\0');
  journal.Records = std::string(16 * 10'001, '\0');
  BSLOption option;
  std::vector<BSLRecord> records;
  EXPECT_TRUE(TakeJournal(BSLModule(), journal, option, records));
  EXPECT_EQ(records.size(), 10'001u);
  records.clear();
  journal.Records += std::string(16, '\0');
  EXPECT_FALSE(TakeJournal(BSLModule(), journal, option, records));
  EXPECT_TRUE(records.empty());
}

TEST_F(JournalKeeping, WhatIsNoJournalIsLeftAlone) {
  fs::create_directories(Folder() + "/folder.journal");
  WriteBytes(Folder() + "/notes.journal", "my own notes");
  WriteBytes(Folder() + "/later.journal", "Spectrane journal 2\nand more");
  WriteBytes(Folder() + "/empty.journal", "");
  WriteBytes(Folder() + "/begun.journal", std::string(JournalOpening()));
  fs::create_symlink(Folder() + "/notes.journal", Folder() + "/link.journal");
  ASSERT_EQ(::mkfifo((Folder() + "/pipe.journal").c_str(), 0600), 0);
  EXPECT_TRUE(TakeLeftJournals(Folder()).empty());
  EXPECT_EQ(Files().size(), 5u);
  EXPECT_FALSE(fs::exists(Folder() + "/empty.journal"));
  EXPECT_FALSE(fs::exists(Folder() + "/begun.journal"));
  EXPECT_TRUE(TakeLeftJournals(Folder() + "/none").empty());
}

TEST_F(JournalKeeping, AJournalOfAnotherKindIsNotTaken) {
  AddRow();
  JournalKeeper keeper(Folder());
  ASSERT_TRUE(KeepIn(keeper));
  Journal journal;
  ASSERT_TRUE(ReadJournal(ReadBytes(Files()[0]), journal));
  BasicOption option;
  std::vector<BasicRecord> records;
  for (const auto& spoil : std::vector<std::function<void(Journal&)>>{
           [](Journal& j) { j.Head.FileType = 2; }, [](Journal& j) { j.Head.Option.pop_back(); },
           [](Journal& j) { j.Head.RecordSize = 138; }}) {
    Journal spoiled = journal;
    spoil(spoiled);
    EXPECT_FALSE(TakeJournal(BasicModule(), spoiled, option, records));
    EXPECT_TRUE(records.empty());
  }
}

}  // namespace
}  // namespace spectrane
