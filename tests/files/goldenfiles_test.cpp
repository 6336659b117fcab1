// Each kind of file, written out field by field and without the code under test, beside what its module
// writes and reads. The numbers of the fields are all different, so that two that changed places show.

#include <cmath>

#include "base/version.h"
#include "files/bslfile.h"
#include "files/dnafile.h"
#include "files/file.h"
#include "files/filesupport.h"
#include "files/multifile.h"
#include "files/quafile.h"
#include "files/tsfile.h"
#include "files/wlsfile.h"
#include "files/wlsfile2.h"

namespace spectrane {
namespace {

std::string Doubles(double first, double step, int count) {
  std::string bytes;
  for (int i = 0; i < count; ++i) bytes += DoubleBytes(first + step * i);
  return bytes;
}
std::string Longs(std::int64_t first, int count) {
  std::string bytes;
  for (int i = 0; i < count; ++i) bytes += Long(first + i);
  return bytes;
}
std::string Texts(const std::string& name, std::size_t width, int count) {
  std::string bytes;
  for (int i = 0; i < count; ++i) bytes += Padded(name + std::to_string(i), width);
  return bytes;
}
template <std::size_t N>
std::array<double, N> Row(double first, double step) {
  std::array<double, N> row{};
  for (std::size_t i = 0; i < N; ++i) row[i] = first + step * static_cast<double>(i);
  return row;
}

/// How the file of a kind stands on disk, and what it says.
template <typename OptionT, typename RecordT>
struct Golden {
  OptionT Option;
  std::vector<RecordT> Records;
  /// Header to the last byte.
  std::string Bytes;
  /// Where the first record begins.
  std::size_t First;
};

struct BasicKind {
  static const auto& Module() { return BasicModule(); }
  static constexpr auto Create = CreateBasicFile;
  static constexpr auto Open = OpenBasicFile;
  static constexpr auto Read = ReadBasicRecord;
  static constexpr auto Write = WriteBasicRecord;
  static constexpr auto Close = CloseBasicFile;
  static Golden<BasicOption, BasicRecord> File() {
    return {{"1.62.0", "2024-02-29  13:05:09", 2},
            {{100, 20000, -7, 546.0, "row 0"}, {101, 20000, -7, 546.0, "row 1"}},
            BasicFileBytes(2, 2),
            492};
  }
};

struct BaselineKind {
  static const auto& Module() { return BSLModule(); }
  static constexpr auto Create = CreateBaselineFile;
  static constexpr auto Open = OpenBaselineFile;
  static constexpr auto Read = ReadBaselineRecord;
  static constexpr auto Write = WriteBaselineRecord;
  static constexpr auto Close = CloseBaselineFile;
  static Golden<BSLOption, BSLRecord> File() {
    return {{191.0, 190.0, 45351.54524305556, 0x01020304},
            {{190.0, 3, 40000}, {191.0, 4, -5}},
            HeaderBytes(6) + DoubleBytes(191) + DoubleBytes(190) + DoubleBytes(45351.54524305556) +
                Bytes({4, 3, 2, 1}) + DoubleBytes(190) + Long(3) + Long(40000) + DoubleBytes(191) + Long(4) +
                Long(-5),
            132};
  }
};

WLSOption SpectrumOption(std::int32_t points) {
  return {350.5, 700.25, 3.0, -0.5, 200.0, -1.0, 65535, -70000, 4, 5, 6, 2, points, 3};
}
std::string SpectrumOptionBytes(std::int32_t points) {
  return DoubleBytes(350.5) + DoubleBytes(700.25) + DoubleBytes(3.0) + DoubleBytes(-0.5) + DoubleBytes(200) +
         DoubleBytes(-1) + Long(65535) + Long(-70000) + Long(4) + Long(5) + Long(6) + Long(2) + Long(points) +
         Long(3);
}

struct ScanKind {
  static const auto& Module() { return WLSModule(); }
  static constexpr auto Create = CreateWLSFile;
  static constexpr auto Open = OpenWLSFile;
  static constexpr auto Read = ReadWLSRecord;
  static constexpr auto Write = WriteWLSRecord;
  static constexpr auto Close = CloseWLSFile;
  static Golden<WLSOption, WLSRecord> File() {
    return {SpectrumOption(2),
            {{31000, 50000, 120, 350.5, 3}, {-1, 2147483647, -120, 351.0, 8}},
            HeaderBytes(3) + SpectrumOptionBytes(2) + Long(31000) + Long(50000) + Long(120) +
                DoubleBytes(350.5) + Long(3) + Long(-1) + Long(2147483647) + Long(-120) + DoubleBytes(351) +
                Long(8),
            184};
  }
};

struct ProcessedKind {
  static const auto& Module() { return WLS2Module(); }
  static constexpr auto Create = CreateWLS2File;
  static constexpr auto Open = OpenWLS2File;
  static constexpr auto Read = ReadWLS2Record;
  static constexpr auto Write = WriteWLS2Record;
  static constexpr auto Close = CloseWLS2File;
  static Golden<WLSOption, WLS2Record> File() {
    return {SpectrumOption(2),
            {{350.5, 10.0, 1.0}, {351.0, 0.1, 3.0}},
            HeaderBytes(12) + SpectrumOptionBytes(2) + DoubleBytes(350.5) + DoubleBytes(10) + DoubleBytes(1) +
                DoubleBytes(351) + DoubleBytes(0.1) + DoubleBytes(3),
            184};
  }
};

struct TimeScanKind {
  static const auto& Module() { return TSModule(); }
  static constexpr auto Create = CreateTSFile;
  static constexpr auto Open = OpenTSFile;
  static constexpr auto Read = ReadTSRecord;
  static constexpr auto Write = WriteTSRecord;
  static constexpr auto Close = CloseTSFile;
  static Golden<TSOption, TSRecord> File() {
    return {{546.0, 5, 600, 3, 2, -0.5, 3.0, -1.0, 200.0, 2, 7, 50000, 120},
            {{31000, 5.0}, {-30000, 5.5}},
            HeaderBytes(2) + DoubleBytes(546) + Long(5) + Long(600) + Long(3) + Bytes({2, 0}) +
                DoubleBytes(-0.5) + DoubleBytes(3) + DoubleBytes(-1) + DoubleBytes(200) + Long(2) + Long(7) +
                Long(50000) + Long(120) + Long(31000) + DoubleBytes(5) + Long(-30000) + DoubleBytes(5.5),
            174};
  }
};

struct QuantitationKind {
  static const auto& Module() { return QuaModule(); }
  static constexpr auto Create = CreateQuaFile;
  static constexpr auto Open = OpenQuaFile;
  static constexpr auto Read = ReadQuaRecord;
  static constexpr auto Write = WriteQuaRecord;
  static constexpr auto Close = CloseQuaFile;
  static Golden<QuaOption, QuaRecord> File() {
    QuaOption option;
    std::string flags;
    std::string otherFlags;
    for (std::size_t r = 0; r < 21; ++r) {
      option.StandardName[r] = "standard " + std::to_string(r);
      option.StandardNote[r] = "note " + std::to_string(r);
      option.StandardAbs[r] = Row<6>(static_cast<double>(r), 0.125);
      option.StandardConc[r] = 100.5 + static_cast<double>(r);
      option.StandardAbsSet[r] = r % 2 == 0;
      option.StandardConcSet[r] = r % 3 == 0;
      flags += r % 2 == 0 ? Bytes({0xFF, 0xFF}) : Bytes({0, 0});
      otherFlags += r % 3 == 0 ? Bytes({0xFF, 0xFF}) : Bytes({0, 0});
    }
    option.FittingMethod = 2;
    option.SampleNumber = 5;
    option.CurveK = Row<4>(0.25, 1);
    option.CurveR = 0.9998;
    option.CurveValid = true;
    option.CurveItem = 1;
    option.InputK = Row<4>(-0.25, -1);
    option.ConcUnit = "\u00B5g/ml";
    option.WaveLengthNumber = 2;
    option.WaveLengthList = Row<4>(260.5, 20);
    option.BlankFullEnergy = {50001, 50002, 50003, 50004};
    option.BlankDarkEnergy = {-121, -120, -119, -118};
    option.BlankGain = {1, 2, 3, 4};
    option.BlankDone = true;
    option.WaveLengthPara = Row<4>(1.5, 0.5);
    option.TestRecordCount = 2;
    std::string table;
    for (int r = 0; r < 21; ++r) table += Doubles(r, 0.125, 6);
    std::string bytes = HeaderBytes(1) + Texts("standard ", 256, 21) + table + flags + Doubles(100.5, 1, 21) +
                        otherFlags + Texts("note ", 256, 21) + Long(2) + Long(5) + Doubles(0.25, 1, 4) +
                        DoubleBytes(0.9998) + Bytes({0xFF, 0xFF}) + Long(1) + Doubles(-0.25, -1, 4) +
                        Padded("\xB5g/ml", 256) + Long(2) + Doubles(260.5, 20, 4) + Longs(50001, 4) +
                        Longs(-121, 4) + Longs(1, 4) + Bytes({0xFF, 0xFF}) + Doubles(1.5, 0.5, 4) + Long(2) +
                        Bytes({0, 0});
    bytes += Padded("sample A", 256) + Doubles(0.5, 0.25, 4) + DoubleBytes(12.5) + Padded("first", 256);
    bytes += Padded("sample B", 256) + Doubles(1.5, 0.25, 4) + DoubleBytes(25.5) + Padded("second", 256);
    return {option,
            {{"sample A", Row<4>(0.5, 0.25), 12.5, "first"}, {"sample B", Row<4>(1.5, 0.25), 25.5, "second"}},
            bytes,
            12582};
  }
};

struct MultiKind {
  static const auto& Module() { return MultiModule(); }
  static constexpr auto Create = CreateMultiFile;
  static constexpr auto Open = OpenMultiFile;
  static constexpr auto Read = ReadMultiRecord;
  static constexpr auto Write = WriteMultiRecord;
  static constexpr auto Close = CloseMultiFile;
  static Golden<MultiOption, MultiRecord> File() {
    return {{Row<16>(200, 10.5), Row<16>(-1, 0.25), 3, 2},
            {{Row<16>(0.125, 0.125), 7.5, "one"}, {Row<16>(3, -0.25), -7.5, "two"}},
            HeaderBytes(4) + Doubles(200, 10.5, 16) + Doubles(-1, 0.25, 16) + Long(3) + Long(2) +
                Doubles(0.125, 0.125, 16) + DoubleBytes(7.5) + Padded("one", 256) + Doubles(3, -0.25, 16) +
                DoubleBytes(-7.5) + Padded("two", 256),
            368};
  }
};

struct NucleicKind {
  static const auto& Module() { return DNAModule(); }
  static constexpr auto Create = CreateDNAFile;
  static constexpr auto Open = OpenDNAFile;
  static constexpr auto Read = ReadDNARecord;
  static constexpr auto Write = WriteDNARecord;
  static constexpr auto Close = CloseDNAFile;
  static Golden<DNAOption, DNARecord> File() {
    return {{Row<4>(260, 20), Row<4>(62.9, -36), 1, 77, 2},
            {{"a", Row<4>(0.5, 0.125), 31.5, 250.25, 1.8, "clean"},
             {"b", Row<4>(1.5, 0.125), 32.5, 251.25, 1.9, "half"}},
            HeaderBytes(5) + Doubles(260, 20, 4) + Doubles(62.9, -36, 4) + Long(1) + Long(77) + Long(2) +
                Padded("a", 256) + Doubles(0.5, 0.125, 4) + DoubleBytes(31.5) + DoubleBytes(250.25) +
                DoubleBytes(1.8) + Padded("clean", 256) + Padded("b", 256) + Doubles(1.5, 0.125, 4) +
                DoubleBytes(32.5) + DoubleBytes(251.25) + DoubleBytes(1.9) + Padded("half", 256),
            180};
  }
};

/// Everything that an object of a block says.
template <typename ObjectT>
std::string Said(const Block& block, const ObjectT& object) {
  std::string text;
  for (const LayoutField& field : block.Fields) {
    text += std::string(field.Name) + ":";
    for (std::size_t i = 0; i < field.Count; ++i) {
      text += VisitElement(field.Type, field.Element(&object, i),
                           [](const auto& value) { return " " + testing::PrintToString(value); });
    }
    text += "\n";
  }
  return text;
}

template <typename Kind>
class GoldenFile : public testing::Test {
 protected:
  std::string Path() const { return folder_.Path("golden." + std::string(Kind::Module().Name)); }
  const decltype(Kind::File()) golden_ = Kind::File();
  decltype(golden_.Option) option_;
  std::decay_t<decltype(golden_.Records[0])> record_;
  TemporaryFolder folder_;
};

using AllKinds = testing::Types<BasicKind, BaselineKind, ScanKind, ProcessedKind, TimeScanKind,
                                QuantitationKind, MultiKind, NucleicKind>;
TYPED_TEST_SUITE(GoldenFile, AllKinds);

TYPED_TEST(GoldenFile, IsWrittenFieldByField) {
  ASSERT_EQ(VersionText(), "1.62.0");
  int number = 0;
  ASSERT_TRUE(TypeParam::Create(this->Path(), number, this->golden_.Option));
  for (std::int32_t i = 0; i < 2; ++i) {
    EXPECT_TRUE(TypeParam::Write(number, this->golden_.Records[static_cast<std::size_t>(i)], i));
  }
  TypeParam::Close(number);
  EXPECT_FALSE(FaultOf(number));
  EXPECT_EQ(ReadBytes(this->Path()), this->golden_.Bytes);
}

TYPED_TEST(GoldenFile, IsReadFieldByField) {
  WriteBytes(this->Path(), this->golden_.Bytes);
  NumberAtEnd file;
  ASSERT_TRUE(TypeParam::Open(this->Path(), file.Number, this->option_));
  const FileKind& kind = TypeParam::Module();
  EXPECT_TRUE(this->option_ == this->golden_.Option) << Said(kind.Option, this->option_);
  for (const std::int32_t i : {1, 0}) {
    ASSERT_TRUE(TypeParam::Read(file.Number, this->record_, i));
    EXPECT_TRUE(this->record_ == this->golden_.Records[static_cast<std::size_t>(i)])
        << Said(kind.Record, this->record_);
  }
  EXPECT_FALSE(TypeParam::Read(file.Number, this->record_, 2));
  EXPECT_FALSE(TypeParam::Read(file.Number, this->record_, -1));
}

TYPED_TEST(GoldenFile, ComesBackAsAWhole) {
  WriteBytes(this->Path(), this->golden_.Bytes + "tail");
  std::vector<std::decay_t<decltype(this->record_)>> records;
  ASSERT_FALSE(LoadDataFile(TypeParam::Module(), this->Path(), this->option_, records));
  ASSERT_EQ(records.size(), 2u);
  ASSERT_FALSE(SaveDataFile(TypeParam::Module(), this->Path(), this->option_, 2,
                            [&](std::int32_t i) { return records[static_cast<std::size_t>(i)]; }));
  EXPECT_EQ(ReadBytes(this->Path()), this->golden_.Bytes);
}

TYPED_TEST(GoldenFile, TheOptionBlockEndsWhereTheRecordsBegin) {
  const FileKind& kind = TypeParam::Module();
  EXPECT_EQ(kind.FirstRecord, this->golden_.First);
  const std::string head = this->golden_.Bytes.substr(0, this->golden_.First);
  int number = 0;
  ASSERT_TRUE(TypeParam::Create(this->Path(), number, this->golden_.Option));
  TypeParam::Close(number);
  EXPECT_EQ(ReadBytes(this->Path()), head) << "a file without records";
}

TYPED_TEST(GoldenFile, AnExistingFileStaysAsItWas) {
  WriteBytes(this->Path(), "old");
  int number = 0;
  EXPECT_FALSE(TypeParam::Create(this->Path(), number, this->golden_.Option));
  TypeParam::Close(number);
  EXPECT_EQ(ReadBytes(this->Path()), "old");
}

TYPED_TEST(GoldenFile, OnlyItsOwnModuleTakesIt) {
  WriteBytes(this->Path(), this->golden_.Bytes);
  std::int32_t type = 0;
  ASSERT_TRUE(GetFileType(this->Path(), type));
  EXPECT_EQ(type, TypeParam::Module().FileType);
  for (const std::int32_t other : {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, -1}) {
    std::string bytes = this->golden_.Bytes;
    bytes.replace(0, 4, Long(other));
    WriteBytes(this->Path(), bytes);
    NumberAtEnd file;
    EXPECT_EQ(TypeParam::Open(this->Path(), file.Number, this->option_), other == type) << other;
    std::int32_t told = 0;
    EXPECT_TRUE(GetFileType(this->Path(), told)) << "any number passes";
    EXPECT_EQ(told, other);
  }
}

TYPED_TEST(GoldenFile, ALastRecordThatMissesAByteCountsAsAbsent) {
  WriteBytes(this->Path(), this->golden_.Bytes.substr(0, this->golden_.Bytes.size() - 1));
  std::vector<std::decay_t<decltype(this->record_)>> records;
  const FileFault fault = LoadDataFile(TypeParam::Module(), this->Path(), this->option_, records);
  EXPECT_EQ(fault.Error, FileError::Damaged);
  EXPECT_EQ(fault.Stated, 2);
  ASSERT_EQ(records.size(), 1u);
  EXPECT_TRUE(records[0] == this->golden_.Records[0]);
}

TEST(QuantitationFile, EndsWithOrWithoutItsSpareBytes) {
  const TemporaryFolder folder;
  QuaOption option;
  option.ConcUnit = "old";
  std::string bytes = QuantitationKind::File().Bytes.substr(0, 12582);
  bytes.replace(104 + 12472, 4, Long(0));
  for (const std::size_t length : {12580u, 12581u, 12582u}) {
    WriteBytes(folder.Path("a.qua"), bytes.substr(0, length));
    std::vector<QuaRecord> records;
    EXPECT_FALSE(LoadDataFile(QuaModule(), folder.Path("a.qua"), option, records)) << length;
    EXPECT_EQ(option.ConcUnit, "\u00B5g/ml");
    EXPECT_TRUE(records.empty());
  }
  WriteBytes(folder.Path("a.qua"), bytes.substr(0, 12579));
  std::vector<QuaRecord> records;
  EXPECT_EQ(LoadDataFile(QuaModule(), folder.Path("a.qua"), option, records).Error, FileError::Damaged);
}

struct RangeRow {
  const char* Name;
  double Start;
  double End;
  std::int64_t Records;
};

class BaselineRange : public testing::TestWithParam<RangeRow> {};

TEST_P(BaselineRange, GivesTheNumberOfRecords) {
  const RangeRow& row = GetParam();
  EXPECT_EQ(BSLModule().StatedCount({row.End, row.Start, 0, 0}), row.Records);
}

INSTANTIATE_TEST_SUITE_P(
    Nanometres, BaselineRange,
    testing::Values(RangeRow{"Whole", 190, 1100, 911}, RangeRow{"OnePoint", 546, 546, 1},
                    RangeRow{"HalfToEvenDown", 190, 192.5, 3}, RangeRow{"HalfToEvenUp", 190, 193.5, 5},
                    RangeRow{"EmptyByOne", 191, 190, 0}, RangeRow{"TheWrongWayRound", 1100, 190, -1},
                    RangeRow{"NoNumber", 190, std::nan(""), -1}, RangeRow{"Infinite", 190, INFINITY, -1},
                    RangeRow{"BothInfinite", INFINITY, INFINITY, -1},
                    RangeRow{"Huge", -1e9, 1e308, INT32_MAX}),
    NameOfRow<RangeRow>);

struct LimitRow {
  const char* Name;
  std::int32_t Stated;
  int Held;
  FileError Error;
};

class SpectrumLimit : public testing::TestWithParam<LimitRow> {};

TEST_P(SpectrumLimit, IsTenThousandAndOnePoints) {
  const LimitRow& row = GetParam();
  const TemporaryFolder folder;
  const std::string path = folder.Path("a.wls");
  WriteBytes(path, HeaderBytes(12) + SpectrumOptionBytes(row.Stated) +
                       std::string(static_cast<std::size_t>(row.Held) * 24, '\0'));
  WLSOption option;
  std::vector<WLS2Record> records;
  EXPECT_EQ(LoadDataFile(WLS2Module(), path, option, records).Error, row.Error);
  EXPECT_EQ(records.size(), row.Error == FileError::None ? static_cast<std::size_t>(row.Stated) : 0u);
  EXPECT_EQ(option.PointCount, row.Stated);
}

INSTANTIATE_TEST_SUITE_P(Points, SpectrumLimit,
                         testing::Values(LimitRow{"None", 0, 0, FileError::None},
                                         LimitRow{"TheLast", 10001, 10001, FileError::None},
                                         LimitRow{"OneTooMany", 10002, 10002, FileError::TooBig},
                                         LimitRow{"Largest", INT32_MAX, 5, FileError::TooBig},
                                         LimitRow{"Negative", -1, 5, FileError::Damaged}),
                         NameOfRow<LimitRow>);

}  // namespace
}  // namespace spectrane
