#include "files/journal.h"

#include <gtest/gtest.h>

#include <chrono>
#include <map>

#include "files/filesupport.h"

namespace spectrane {
namespace {

JournalHead SmallHead() {
  JournalHead head;
  head.FileType = 2;
  head.RecordSize = 12;
  head.Caption = "Kinetics 1";
  head.Path = "/data/run.tis";
  head.FileSize = 250;
  head.FileTime = 1700000000123;
  head.Option = "options";
  return head;
}

/// A record of 12 bytes that is told apart by its letter.
std::string RecordOf(char letter) {
  return std::string(12, letter);
}

std::string RecordsOf(const std::string& letters) {
  std::string records;
  for (const char letter : letters) records += RecordOf(letter);
  return records;
}

/// The letters of a journal's records.
std::string LettersOf(const Journal& journal) {
  std::string letters;
  for (std::size_t i = 0; i < journal.RecordCount(); ++i) letters += journal.Records[i * 12];
  return letters;
}

std::string Begun() {
  return std::string(JournalOpening()) + JournalHeadEntry(SmallHead(), false);
}

TEST(JournalFormat, BytesOfASmallJournal) {
  // The check sums are those of zlib's crc32().
  const std::string head = Bytes({1}) + Long(2) + Long(12) + Bytes({0}) + Long(250) + Long(0) +
                           Bytes({0x7B, 0x68, 0xE5, 0xCF, 0x8B, 1, 0, 0}) + Long(10) + "Kinetics 1" +
                           Long(13) + "/data/run.tis" + Long(0) + Long(7) + "options";
  const std::string records = Bytes({2}) + Long(0) + Long(0) + RecordsOf("ab");
  EXPECT_EQ(Begun() + JournalRecordsEntry(0, 0, RecordsOf("ab"), false),
            "Spectrane journal 1\n" + Long(static_cast<std::int64_t>(head.size())) + Long(0xFA36C7BB) + head +
                Long(33) + Long(0xB2189E36) + records);
}

TEST(JournalFormat, WhatIsWrittenIsRead) {
  JournalHead head = SmallHead();
  head.HalfRead = true;
  head.HalfReadPath = "/data/other.tis";
  head.FileSize = -1;
  Journal journal;
  const std::string bytes = std::string(JournalOpening()) + JournalHeadEntry(head, true) +
                            JournalRecordsEntry(0, 0, RecordsOf("ab"), false);
  ASSERT_TRUE(ReadJournal(bytes, journal));
  EXPECT_EQ(journal.Head, head);
  EXPECT_EQ(LettersOf(journal), "ab");
  EXPECT_EQ(journal.WholeBytes, bytes.size());
}

struct ChangeRow {
  const char* Name;
  std::size_t First;
  std::size_t Removed;
  const char* Added;
  /// Of "abcde".
  const char* After;
};

const ChangeRow kChanges[] = {
    {"Append", 5, 0, "f", "abcdef"},
    {"AppendMany", 5, 0, "fgh", "abcdefgh"},
    {"InsertInFront", 0, 0, "x", "xabcde"},
    {"RemoveFirst", 0, 1, "", "bcde"},
    {"RemoveMiddle", 2, 1, "", "abde"},
    {"RemoveLast", 4, 1, "", "abcd"},
    {"RemoveAll", 0, 5, "", ""},
    {"ReplaceOne", 1, 1, "X", "aXcde"},
    {"ReplaceAll", 0, 5, "XYZ", "XYZ"},
    {"FewerByMore", 1, 1, "XYZ", "aXYZcde"},
    {"MoreByFewer", 1, 3, "X", "aXe"},
    {"Nothing", 3, 0, "", "abcde"},
    {"BeyondTheEnd", 6, 0, "x", "abcde"},
    {"RemoveBeyondTheEnd", 4, 2, "", "abcde"},
    {"ReplaceBeyondTheEnd", 4, 2, "xy", "abcde"},
    {"FarBeyond", 4294967295, 0, "x", "abcde"},
    {"RemoveFar", 1, 4294967295, "", "abcde"},
};

class JournalChange : public ::testing::TestWithParam<ChangeRow> {};

TEST_P(JournalChange, IsCarriedOutOrLeftOut) {
  const ChangeRow& row = GetParam();
  const std::string before = Begun() + JournalRecordsEntry(0, 0, RecordsOf("abcde"), false);
  Journal journal;
  ASSERT_TRUE(ReadJournal(before + JournalRecordsEntry(row.First, row.Removed, RecordsOf(row.Added), false),
                          journal));
  EXPECT_EQ(LettersOf(journal), row.After);
}

INSTANTIATE_TEST_SUITE_P(All, JournalChange, ::testing::ValuesIn(kChanges), NameOfRow<ChangeRow>);

TEST(JournalFormat, EntriesThatBelongTogetherCountTogether) {
  const std::string before = Begun() + JournalRecordsEntry(0, 0, RecordsOf("abc"), false);
  const std::string half = before + JournalRecordsEntry(0, 3, RecordsOf("x"), true);
  Journal journal;
  ASSERT_TRUE(ReadJournal(half, journal));
  EXPECT_EQ(LettersOf(journal), "abc");
  EXPECT_EQ(journal.WholeBytes, before.size());
  ASSERT_TRUE(ReadJournal(half + JournalRecordsEntry(1, 0, RecordsOf("y"), false), journal));
  EXPECT_EQ(LettersOf(journal), "xy");
  // One of them that makes no sense takes the others with it.
  ASSERT_TRUE(ReadJournal(half + JournalRecordsEntry(5, 0, RecordsOf("y"), false), journal));
  EXPECT_EQ(LettersOf(journal), "abc");
}

TEST(JournalFormat, ALaterHeadReplacesTheOptionsAndNotTheKind) {
  JournalHead later = SmallHead();
  later.Option = "others";
  later.Path.clear();
  const std::string before = Begun() + JournalRecordsEntry(0, 0, RecordsOf("ab"), false);
  Journal journal;
  ASSERT_TRUE(ReadJournal(before + JournalHeadEntry(later, false), journal));
  EXPECT_EQ(journal.Head, later);
  EXPECT_EQ(LettersOf(journal), "ab");
  later.RecordSize = 24;
  ASSERT_TRUE(ReadJournal(before + JournalHeadEntry(later, false), journal));
  EXPECT_EQ(journal.Head, SmallHead());
  later.RecordSize = 12;
  later.FileType = 11;
  ASSERT_TRUE(ReadJournal(before + JournalHeadEntry(later, false), journal));
  EXPECT_EQ(journal.Head, SmallHead());
}

/// A journal of several changes, and what it says after each of them, by the bytes up to there.
struct LongJournal {
  std::string Bytes;
  std::map<std::size_t, std::string> After;
};

LongJournal MakeLongJournal() {
  LongJournal journal;
  journal.Bytes = std::string(JournalOpening());
  std::string letters;
  const auto add = [&](const std::string& entry, const std::string& after, bool whole = true) {
    journal.Bytes += entry;
    if (whole) journal.After[journal.Bytes.size()] = after;
  };
  add(JournalHeadEntry(SmallHead(), true), "", false);
  add(JournalRecordsEntry(0, 0, RecordsOf("ab"), false), "ab");
  add(JournalRecordsEntry(2, 0, RecordsOf("c"), false), "abc");
  add(JournalRecordsEntry(0, 1, "", false), "bc");
  add(JournalRecordsEntry(1, 1, RecordsOf("X"), true), "", false);
  add(JournalRecordsEntry(2, 0, RecordsOf("Y"), false), "bXY");
  add(JournalHeadEntry(SmallHead(), false), "bXY");
  add(JournalRecordsEntry(3, 0, RecordsOf("d"), false), "bXYd");
  return journal;
}

TEST(JournalFormat, D15_CutAnywhereItSaysWhatWasWholeByThen) {
  const LongJournal written = MakeLongJournal();
  for (std::size_t cut = 0; cut <= written.Bytes.size(); ++cut) {
    Journal journal;
    const bool read = ReadJournal(written.Bytes.substr(0, cut), journal);
    const auto after = written.After.upper_bound(cut);
    ASSERT_EQ(read, after != written.After.begin()) << cut;
    if (!read) continue;
    ASSERT_EQ(LettersOf(journal), std::prev(after)->second) << cut;
    ASSERT_EQ(journal.WholeBytes, std::prev(after)->first) << cut;
  }
}

TEST(JournalFormat, D15_AnyByteBrokenItSaysWhatStoodBeforeIt) {
  const LongJournal written = MakeLongJournal();
  for (std::size_t at = 0; at < written.Bytes.size(); ++at) {
    for (const int change : {0x01, 0x80, 0xFF}) {
      std::string broken = written.Bytes;
      broken[at] = static_cast<char>(broken[at] ^ change);
      Journal journal;
      const bool read = ReadJournal(broken, journal);
      const auto after = written.After.upper_bound(at);
      ASSERT_EQ(read, after != written.After.begin()) << at;
      ASSERT_EQ(LettersOf(journal), read ? std::prev(after)->second : std::string()) << at;
    }
  }
}

TEST(JournalFormat, PartsThatAreTooLargeAreRefusedOnBothSides) {
  for (std::string JournalHead::*part :
       {&JournalHead::Caption, &JournalHead::Path, &JournalHead::HalfReadPath, &JournalHead::Option}) {
    JournalHead head = SmallHead();
    head.*part = std::string(kLargestJournalPart, 'x');
    Journal journal;
    ASSERT_TRUE(ReadJournal(std::string(JournalOpening()) + JournalHeadEntry(head, false), journal));
    EXPECT_EQ(journal.Head, head);
    head.*part += 'x';
    EXPECT_EQ(JournalHeadEntry(head, false), "");
  }
  for (const std::size_t size : {std::size_t{0}, kSmallestJournalRecord - 1, kLargestJournalPart + 1}) {
    JournalHead head = SmallHead();
    head.RecordSize = size;
    Journal journal;
    EXPECT_FALSE(ReadJournal(std::string(JournalOpening()) + JournalHeadEntry(head, false), journal)) << size;
  }
}

/// CRC-32 as IEEE 802.3 has it, bit by bit.
std::int64_t CheckSumOf(const std::string& bytes) {
  std::uint32_t sum = 0xFFFFFFFF;
  for (const char byte : bytes) {
    sum ^= static_cast<unsigned char>(byte);
    for (int bit = 0; bit < 8; ++bit) sum = (sum & 1) != 0 ? (sum >> 1) ^ 0xEDB88320 : sum >> 1;
  }
  return static_cast<std::int64_t>(sum ^ 0xFFFFFFFF);
}

/// An entry of any content, with its length and a check sum that is right.
std::string Framed(const std::string& content) {
  return Long(static_cast<std::int64_t>(content.size())) + Long(CheckSumOf(content)) + content;
}

/// The numbers of a head in front of its texts.
std::string HeadNumbers() {
  return Bytes({1}) + Long(2) + Long(12) + Bytes({0}) + Long(250) + Long(0) + Long(0) + Long(0);
}

struct EntryRow {
  const char* Name;
  std::string Content;
};
void PrintTo(const EntryRow& row, std::ostream* out) {
  *out << row.Content.size() << " bytes";
}

const EntryRow kSenselessEntries[] = {
    {"Empty", ""},
    {"UnknownKind", Bytes({3}) + Long(2) + Long(0) + RecordsOf("x")},
    {"RecordsWithoutAPlace", Bytes({2})},
    {"RecordsWithHalfAPlace", Bytes({2}) + Long(2) + Bytes({0, 0})},
    {"PartOfARecord", Bytes({2}) + Long(2) + Long(0) + std::string(11, 'x')},
    {"HeadOfOneNumber", Bytes({1}) + Long(2)},
    {"HeadWithoutTexts", HeadNumbers()},
    {"HeadWithATextThatIsCut", HeadNumbers() + Long(1000) + "ten bytes."},
    {"HeadWithATextOfNoSize", HeadNumbers() + Long(0xFFFFFFFF) + "ten bytes."},
    {"HeadWithATextTooLarge",
     HeadNumbers() + Long(65537) + std::string(65537, 'x') + Long(0) + Long(0) + Long(0)},
    {"HeadWithMoreBehindIt", HeadNumbers() + Long(0) + Long(0) + Long(0) + Long(0) + "x"},
};

class SenselessEntry : public ::testing::TestWithParam<EntryRow> {};

TEST_P(SenselessEntry, EndsWhatIsRead) {
  const std::string before = Begun() + JournalRecordsEntry(0, 0, RecordsOf("ab"), false);
  const std::string behind = JournalRecordsEntry(2, 0, RecordsOf("c"), false);
  Journal journal;
  ASSERT_TRUE(ReadJournal(before + Framed(GetParam().Content) + behind, journal));
  EXPECT_EQ(LettersOf(journal), "ab");
  EXPECT_EQ(journal.Head, SmallHead());
  EXPECT_EQ(journal.WholeBytes, before.size());
}

INSTANTIATE_TEST_SUITE_P(All, SenselessEntry, ::testing::ValuesIn(kSenselessEntries), NameOfRow<EntryRow>);

TEST(JournalFormat, EntriesMadeByHandAreRead) {
  Journal journal;
  const std::string head = HeadNumbers() + Long(0) + Long(0) + Long(0) + Long(0);
  ASSERT_TRUE(ReadJournal(
      std::string(JournalOpening()) + Framed(head) + Framed(Bytes({2}) + Long(0) + Long(0) + RecordsOf("ab")),
      journal));
  EXPECT_EQ(LettersOf(journal), "ab");
  EXPECT_EQ(journal.Head.RecordSize, 12u);
}

TEST(JournalFormat, WhatIsNoJournalIsNone) {
  Journal journal;
  for (const std::string& bytes :
       {std::string(), std::string("Spectrane journal 2\n") + Begun().substr(20),
        std::string(JournalOpening()),
        std::string(JournalOpening()) + JournalRecordsEntry(0, 0, RecordsOf("a"), false),
        std::string(JournalOpening()) + JournalHeadEntry(SmallHead(), true), BasicFileBytes(3, 3)}) {
    EXPECT_FALSE(ReadJournal(bytes, journal));
    EXPECT_EQ(journal.Head, JournalHead());
  }
}

TEST(JournalFormat, ChangesWithoutEndAreLeftOutInTime) {
  std::string bytes = Begun();
  const std::string piece = RecordsOf(std::string(5000, 'a'));
  for (std::size_t i = 0; i < 20; ++i) bytes += JournalRecordsEntry(i * 5000, 0, piece, false);
  const std::size_t before = bytes.size();
  const std::string insert = JournalRecordsEntry(0, 0, RecordsOf("b"), false);
  for (int i = 0; i < 100'000; ++i) bytes += insert;
  const auto start = std::chrono::steady_clock::now();
  Journal journal;
  ASSERT_TRUE(ReadJournal(bytes, journal));
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(5));
  EXPECT_GT(journal.WholeBytes, before);
  EXPECT_LT(journal.WholeBytes, bytes.size());
  EXPECT_EQ(journal.RecordCount(), 100'000 + (journal.WholeBytes - before) / insert.size());
}

}  // namespace
}  // namespace spectrane
