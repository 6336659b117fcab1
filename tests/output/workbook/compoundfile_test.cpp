#include "output/workbook/compoundfile.h"

#include <vector>

#include "base/basesupport.h"
#include "output/workbook/workbooksupport.h"

namespace spectrane {
namespace {

using testing_workbook::NumberAt;

constexpr std::size_t kSector = 512;
constexpr std::uint64_t kEnd = 0xFFFFFFFE;
constexpr std::uint64_t kUnused = 0xFFFFFFFF;

/// Reads a compound file by the published rules, without the writer's knowledge of where things lie.
struct CompoundReader {
  explicit CompoundReader(std::string_view file) : File(file) {
    EXPECT_EQ(file.substr(0, 8), "\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1");
    EXPECT_EQ(NumberAt(file, 26, 2), 3u) << "version";
    EXPECT_EQ(NumberAt(file, 28, 2), 0xFFFEu) << "byte order";
    EXPECT_EQ(NumberAt(file, 30, 2), 9u) << "sector size";
    EXPECT_EQ(NumberAt(file, 32, 2), 6u) << "small sector size";
    EXPECT_EQ(NumberAt(file, 40, 4), 0u) << "directory sectors are not counted in this version";
    EXPECT_EQ(NumberAt(file, 56, 4), 4096u) << "smallest stream";
    EXPECT_EQ(NumberAt(file, 60, 4), kEnd) << "no small sectors";
    EXPECT_EQ(NumberAt(file, 64, 4), 0u);
    EXPECT_EQ(file.size() % kSector, 0u);
    SectorCount = file.size() / kSector - 1;
    Owners.resize(SectorCount);
    ReadTable();
  }

  std::string_view Sector(std::uint64_t number, const char* owner) {
    if (number >= SectorCount) {
      ADD_FAILURE() << owner << ": no sector " << number;
      return {};
    }
    EXPECT_EQ(Owners[number], "") << "sector " << number << " belongs to " << owner << " too";
    Owners[number] = owner;
    return File.substr((number + 1) * kSector, kSector);
  }

  void ReadTable() {
    std::vector<std::uint64_t> places;
    for (std::size_t i = 0; i < 109; ++i) places.push_back(NumberAt(File, 76 + 4 * i, 4));
    std::uint64_t next = NumberAt(File, 68, 4);
    std::size_t sectors = 0;
    for (; next != kEnd && sectors <= SectorCount; ++sectors) {
      const std::string_view sector = Sector(next, "places");
      for (std::size_t i = 0; i < 127; ++i) places.push_back(NumberAt(sector, 4 * i, 4));
      next = NumberAt(sector, 508, 4);
    }
    EXPECT_EQ(sectors, NumberAt(File, 72, 4));
    std::size_t used = 0;
    for (const std::uint64_t place : places) {
      if (place == kUnused) continue;
      ++used;
      const std::string_view sector = Sector(place, "table");
      for (std::size_t i = 0; i < 128; ++i) Table.push_back(NumberAt(sector, 4 * i, 4));
    }
    EXPECT_EQ(used, NumberAt(File, 44, 4));
  }

  std::string Chain(std::uint64_t first, const char* owner) {
    std::string bytes;
    for (std::uint64_t next = first; next != kEnd; next = Table[next]) {
      const std::string_view sector = Sector(next, owner);
      if (sector.empty() || next >= Table.size()) break;
      bytes += sector;
    }
    return bytes;
  }

  std::string_view File;
  std::size_t SectorCount = 0;
  std::vector<std::uint64_t> Table;
  std::vector<std::string> Owners;
};

std::string PatternOf(std::size_t size) {
  std::string bytes(size, '\0');
  for (std::size_t i = 0; i < size; ++i) bytes[i] = static_cast<char>((i * 2654435761u) >> 13);
  return bytes;
}

struct SizeRow {
  const char* Name;
  std::size_t Size;
};

class CompoundFileOfSize : public testing::TestWithParam<SizeRow> {};

TEST_P(CompoundFileOfSize, GivesTheStreamBack) {
  const std::string stream = PatternOf(GetParam().Size);
  const std::string file = CompoundFile(u"Workbook", stream);
  CompoundReader reader(file);

  const std::string directory = reader.Chain(NumberAt(file, 48, 4), "directory");
  ASSERT_EQ(directory.size(), kSector);
  EXPECT_EQ(directory.substr(0, 22), std::string("R\0o\0o\0t\0 \0E\0n\0t\0r\0y\0\0\0", 22));
  EXPECT_EQ(NumberAt(directory, 64, 2), 22u);
  EXPECT_EQ(directory[66], 5) << "the root";
  EXPECT_EQ(NumberAt(directory, 76, 4), 1u) << "its child";
  EXPECT_EQ(NumberAt(directory, 116, 4), kEnd) << "no small sectors";
  const std::string_view entry = std::string_view(directory).substr(128, 128);
  EXPECT_EQ(entry.substr(0, 18), std::string_view("W\0o\0r\0k\0b\0o\0o\0k\0\0\0", 18));
  EXPECT_EQ(NumberAt(entry, 64, 2), 18u);
  EXPECT_EQ(entry[66], 2) << "a stream";
  const std::size_t size = std::max<std::size_t>(stream.size(), 4096);
  EXPECT_EQ(NumberAt(entry, 120, 8), size);
  EXPECT_EQ(directory[256 + 66], 0) << "unused";

  std::string content = reader.Chain(NumberAt(entry, 116, 4), "stream");
  ASSERT_EQ(content.size(), (size + kSector - 1) / kSector * kSector);
  content.resize(size);
  std::string wanted = stream;
  wanted.resize(size, '\0');
  EXPECT_TRUE(content == wanted);
  for (std::size_t i = 0; i < reader.SectorCount; ++i) {
    ASSERT_NE(reader.Owners[i], "") << "sector " << i << " belongs to nothing";
    const std::uint64_t mark = reader.Table[i];
    ASSERT_EQ(mark == 0xFFFFFFFD, reader.Owners[i] == "table") << i;
    ASSERT_EQ(mark == 0xFFFFFFFC, reader.Owners[i] == "places") << i;
  }
  for (std::size_t i = reader.SectorCount; i < reader.Table.size(); ++i) ASSERT_EQ(reader.Table[i], kUnused);
}

INSTANTIATE_TEST_SUITE_P(
    Sizes, CompoundFileOfSize,
    testing::Values(SizeRow{"Empty", 0}, SizeRow{"OneByte", 1}, SizeRow{"JustFilledUp", 4095},
                    SizeRow{"WholeSectors", 4096}, SizeRow{"OneByteMore", 4097},
                    // One table sector has 128 entries: 126 of the stream, the directory, itself.
                    SizeRow{"FullTable", 126 * 512}, SizeRow{"SecondTableSector", 126 * 512 + 1},
                    // 109 table sectors: 13952 entries, 13842 of them for the stream.
                    SizeRow{"LastWithoutPlaces", 13842 * 512}, SizeRow{"FirstWithPlaces", 13842 * 512 + 1},
                    SizeRow{"SecondSectorOfPlaces", 31000 * 512}),
    NameOfRow<SizeRow>);

}  // namespace
}  // namespace spectrane
