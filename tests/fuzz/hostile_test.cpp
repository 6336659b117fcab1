// Broken files of every kind: each is read as far as it goes, or refused, and what was read is written back
// as it was.

#include <cmath>
#include <limits>

#include "base/basesupport.h"
#include "fuzz/checks/madefile.h"
#include "fuzz/checks/targets.h"

namespace spectrane::fuzz {
namespace {

class HostileFile : public testing::TestWithParam<Target> {
 protected:
  const Target& target_ = GetParam();
  const FileTable& table_ = *target_.Table;

  /// Every answer is the one that the bytes ask for.
  void ExpectRightAnswers(const std::string& file, const std::string& what) const {
    EXPECT_EQ(target_.Check(BytesOf(file)), "") << what;
  }
  Reload LoadAndSave(const std::string& file) const {
    return target_.LoadAndSave(BytesOf(file), folder_.Path("saved"));
  }
  /// Loads without a fault; saved again, everything behind the header is as it was.
  void ExpectWrittenBack(const std::string& file, std::size_t records, const std::string& what) const {
    const Reload reload = LoadAndSave(file);
    EXPECT_FALSE(reload.Fault) << what << ": " << FaultWords(reload.Fault);
    EXPECT_FALSE(reload.SaveFault) << what;
    EXPECT_EQ(reload.Records, records) << what;
    // One comparison of a Boolean: a failure need not print fourteen thousand bytes.
    EXPECT_TRUE(ReadBytes(folder_.Path("saved")).substr(kHeader) == file.substr(kHeader)) << what;
  }
  /// Offsets in the file of all elements of a form: of the option block, then of both records.
  std::vector<Element> ElementsInFile(Form form) const {
    std::vector<Element> elements;
    const auto add = [&](std::span<const Row> rows, std::size_t start) {
      for (Element element : ElementsOf(rows)) {
        element.Offset += start;
        if (element.Is == form) elements.push_back(element);
      }
    };
    add(table_.Option, kHeader);
    add(table_.Record, table_.FirstRecord);
    add(table_.Record, table_.FirstRecord + table_.RecordSize);
    return elements;
  }
  /// A number in the place of the count that follows from the range would be another count.
  bool TellsTheCount(const Element& element) const {
    return table_.CountAt == kFromRange && element.Offset < kHeader + 16;
  }

  TemporaryFolder folder_;
};

TEST_P(HostileFile, TwoRecordsAreReadAndWrittenBack) {
  const std::string file = MadeFile(table_, 2, 2);
  ASSERT_EQ(file.size(), table_.FirstRecord + 2 * table_.RecordSize);
  ExpectRightAnswers(file, "whole");
  ExpectWrittenBack(file, 2, "whole");
}

TEST_P(HostileFile, CutAnywhereItGivesTheRecordsBeforeTheCut) {
  const std::string file = MadeFile(table_, 2, 2);
  for (std::size_t length = 0; length < file.size(); ++length) {
    ExpectRightAnswers(file.substr(0, length), "cut at " + std::to_string(length));
  }
}

TEST_P(HostileFile, TheLastByteDecidesAboutTheBlocks) {
  const std::string file = MadeFile(table_, 2, 2);
  const std::size_t optionEnd = kHeader + table_.OptionSize;
  const std::size_t firstEnd = table_.FirstRecord + table_.RecordSize;
  const struct {
    std::size_t Length, Records;
    const char* Words;
  } rows[] = {
      {0, 0, "ends too early"},         {kHeader - 1, 0, "ends too early"},
      {kHeader, 0, "ends too early"},   {optionEnd - 1, 0, "ends too early"},
      {optionEnd, 0, "has 0 of the 2"}, {firstEnd - 1, 0, "has 0 of the 2"},
      {firstEnd, 1, "has 1 of the 2"},  {file.size() - 1, 1, "has 1 of the 2"},
  };
  for (const auto& row : rows) {
    const Reload reload = LoadAndSave(file.substr(0, row.Length));
    EXPECT_EQ(reload.Fault.Error, FileError::Damaged) << row.Length;
    EXPECT_EQ(reload.Records, row.Records) << row.Length;
    EXPECT_THAT(FaultWords(reload.Fault), testing::HasSubstr(row.Words)) << row.Length;
  }
}

TEST_P(HostileFile, ACountIsBelievedAsFarAsTheFileGoes) {
  const bool limited = table_.MostRecords == 10001;
  constexpr std::size_t stored = 2;
  const struct {
    std::int64_t Stated;
    FileError Error;
    std::size_t Records;
  } rows[] = {
      {-1, FileError::Damaged, 0},
      {0, FileError::None, 0},
      {1, FileError::None, 1},
      {3, FileError::Damaged, stored},
      {10001, FileError::Damaged, stored},
      {10002, limited ? FileError::TooBig : FileError::Damaged, limited ? 0 : stored},
      {0x7FFFFFFF, limited ? FileError::TooBig : FileError::Damaged, limited ? 0 : stored},
  };
  for (const auto& row : rows) {
    const std::string file = MadeFile(table_, 2, row.Stated);
    const std::string what = "states " + std::to_string(row.Stated);
    ExpectRightAnswers(file, what);
    const Reload reload = LoadAndSave(file);
    EXPECT_EQ(reload.Fault.Error, row.Error) << what;
    EXPECT_EQ(reload.Records, row.Records) << what;
  }
}

TEST_P(HostileFile, TheLongestSpectrumAndOnePointMore) {
  const bool limited = table_.MostRecords == 10001;
  for (const int held : {10001, 10002}) {
    const std::string file = MadeFile(table_, held, held);
    ExpectRightAnswers(file, std::to_string(held));
    const Reload reload = LoadAndSave(file);
    const bool tooMany = limited && held == 10002;
    EXPECT_EQ(reload.Fault.Error, tooMany ? FileError::TooBig : FileError::None) << held;
    EXPECT_EQ(reload.Records, tooMany ? 0u : static_cast<std::size_t>(held));
  }
}

TEST_P(HostileFile, DoublesThatAreNoNumbersAreKeptBitByBit) {
  using Limits = std::numeric_limits<double>;
  const std::string whole = MadeFile(table_, 2, 2);
  const auto doubles = ElementsInFile(Form::Double);
  ASSERT_FALSE(doubles.empty());
  for (const double value :
       {Limits::quiet_NaN(), -Limits::quiet_NaN(), Limits::signaling_NaN(), Limits::infinity(),
        -Limits::infinity(), Limits::max(), Limits::denorm_min(), -0.0}) {
    std::string all = whole;
    for (const Element& element : doubles) {
      std::string file = whole;
      PutDouble(file, element.Offset, value);
      ExpectRightAnswers(file, std::to_string(value) + " at " + std::to_string(element.Offset));
      if (!TellsTheCount(element)) PutDouble(all, element.Offset, value);
    }
    ExpectRightAnswers(all, std::to_string(value) + " everywhere");
    ExpectWrittenBack(all, 2, std::to_string(value) + " everywhere");
  }
}

TEST_P(HostileFile, TextsAreKeptByteByByte) {
  const std::string whole = MadeFile(table_, 2, 2);
  const auto texts = ElementsInFile(Form::Text);
  const auto fill = [&](auto byteAt) {
    std::string file = whole;
    for (const Element& text : texts) {
      for (std::size_t i = 0; i < text.Width; ++i)
        file[text.Offset + i] = static_cast<char>(byteAt(i, text.Width));
    }
    return file;
  };
  const struct {
    const char* Name;
    std::string File;
  } rows[] = {
      {"no blank", fill([](std::size_t, std::size_t) { return 'x'; })},
      {"blanks alone", fill([](std::size_t, std::size_t) { return ' '; })},
      {"NULs alone", fill([](std::size_t, std::size_t) { return '\0'; })},
      {"NULs behind a text", fill([](std::size_t i, std::size_t) { return i < 3 ? 'a' : '\0'; })},
      {"blanks before a text", fill([](std::size_t i, std::size_t) {
         return i < 9 ? ' ' : i == 9 ? 'a' : ' ';
       })},
      {"a NUL between blanks",
       fill([](std::size_t i, std::size_t width) { return i + 2 == width ? '\0' : ' '; })},
      {"every byte value", fill([](std::size_t i, std::size_t) { return i; })},
      {"every byte value, downward", fill([](std::size_t i, std::size_t) { return 255 - i; })},
      {"three bytes each", fill([](std::size_t, std::size_t) { return 0x80; })},
      {"format letters", fill([](std::size_t i, std::size_t) { return "%n%s\t\r\n"[i % 7]; })},
      {"halves of characters", fill([](std::size_t i, std::size_t) { return i % 2 == 0 ? 0xC2 : 0xE2; })},
  };
  for (const auto& row : rows) {
    ExpectRightAnswers(row.File, row.Name);
    ExpectWrittenBack(row.File, 2, row.Name);
  }
}

TEST_P(HostileFile, EveryNumberMayBeAnything) {
  const std::string whole = MadeFile(table_, 2, 2);
  for (const Form form : {Form::Long, Form::Integer, Form::Boolean}) {
    for (const Element& element : ElementsInFile(form)) {
      for (const std::int64_t value :
           {-1LL, 0LL, 7LL, 0x100LL, 0x7FFFLL, -0x8000LL, 0x7FFFFFFFLL, -0x80000000LL}) {
        std::string file = whole;
        PutNumber(file, element.Offset, value, element.Width);
        ExpectRightAnswers(file, std::to_string(value) + " at " + std::to_string(element.Offset));
      }
    }
  }
}

TEST_P(HostileFile, OnlyTheOwnKindOpens) {
  for (std::int64_t fileType : {-1, 0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 0x7FFFFFFF}) {
    std::string file = MadeFile(table_, 2, 2);
    PutNumber(file, 0, fileType, 4);
    ExpectRightAnswers(file, std::to_string(fileType));
    const bool own = fileType == table_.FileType;
    const Reload reload = LoadAndSave(file);
    EXPECT_EQ(reload.Fault.Error, own ? FileError::None : FileError::WrongKind) << fileType;
    EXPECT_EQ(reload.Records, own ? 2u : 0u) << fileType;
  }
}

TEST_P(HostileFile, TheAuthorMayStandAmongBlanksOnly) {
  const struct {
    const char* Author;
    bool Taken;
  } rows[] = {
      {"Kestu", true},    {"  Kestu", true}, {"           Kestu", true},
      {"Kestu\t", false}, {"kestu", false},  {"Kestu x", false},
      {"Kest", false},    {"", false},       {"Kestu\xA0", false},
      {"Kes tu", false},  {"xKestu", false},
  };
  for (const auto& row : rows) {
    const std::string file = MadeHeader(table_.FileType, row.Author) + MadeFile(table_, 2, 2).substr(kHeader);
    ExpectRightAnswers(file, row.Author);
    EXPECT_EQ(LoadAndSave(file).Fault.Error, row.Taken ? FileError::None : FileError::Foreign) << row.Author;
  }
}

TEST_P(HostileFile, EachBitOfTheHeaderThatCountsCounts) {
  for (std::size_t at = 0; at < kHeader; ++at) {
    for (int bit = 0; bit < 8; ++bit) {
      std::string file = MadeFile(table_, 1, 1);
      file[at] = static_cast<char>(file[at] ^ (1 << bit));
      const bool free = (at >= 4 && at < 20) || (at >= 36 && at < 100);
      ExpectRightAnswers(file, "byte " + std::to_string(at));
      ASSERT_EQ(Opens(table_, BytesOf(file)), free) << at;
    }
  }
}

TEST_P(HostileFile, WhatFollowsTheLastRecordIsIgnored) {
  const std::string file = MadeFile(table_, 2, 2) + std::string(table_.RecordSize * 3 - 1, '\xFF');
  ExpectRightAnswers(file, "tail");
  const Reload reload = LoadAndSave(file);
  EXPECT_FALSE(reload.Fault);
  EXPECT_EQ(reload.Records, 2u);
}

std::vector<Target> Kinds() {
  std::vector<Target> kinds;
  for (const Target& target : Targets()) {
    if (target.Table != nullptr) kinds.push_back(target);
  }
  return kinds;
}

INSTANTIATE_TEST_SUITE_P(Kinds, HostileFile, testing::ValuesIn(Kinds()), NameOfRow<Target>);

TEST(HostileFileType, CutAnywhereAHeaderIsNone) {
  const Target& target = *TargetNamed("filetype");
  const std::string header = MadeHeader(7);
  for (std::size_t length = 0; length <= header.size(); ++length) {
    EXPECT_EQ(target.Check(BytesOf(header.substr(0, length))), "") << length;
  }
}

}  // namespace
}  // namespace spectrane::fuzz
