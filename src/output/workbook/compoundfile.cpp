#include "output/workbook/compoundfile.h"

#include <algorithm>
#include <cstdint>

#include "output/workbook/bytewriter.h"

namespace spectrane {
namespace {

constexpr std::size_t kSectorSize = 512;
constexpr std::size_t kEntriesInSector = kSectorSize / 4;
/// Streams below this length would stand in sectors of 64 bytes.
constexpr std::size_t kSmallestStream = 4096;
/// Places of allocation sectors that the header itself holds.
constexpr std::size_t kPlacesInHeader = 109;

// Marks in the allocation table.
constexpr std::uint32_t kPlaceSector = 0xFFFFFFFC;
constexpr std::uint32_t kTableSector = 0xFFFFFFFD;
constexpr std::uint32_t kChainEnd = 0xFFFFFFFE;
constexpr std::uint32_t kFree = 0xFFFFFFFF;

constexpr std::size_t Sectors(std::size_t size, std::size_t inOne) {
  return (size + inOne - 1) / inOne;
}

/// How many sectors each part takes; they lie in this order.
struct Plan {
  std::size_t Stream = 0;
  std::size_t Directory = 1;
  /// The allocation table.
  std::size_t Table = 1;
  /// Places of table sectors that the header has no room for.
  std::size_t Places = 0;

  std::size_t Total() const { return Stream + Directory + Table + Places; }
  std::size_t FirstTable() const { return Stream + Directory; }
  std::size_t FirstPlace() const { return FirstTable() + Table; }
};

Plan PlanFor(std::size_t streamSize) {
  Plan plan;
  plan.Stream = Sectors(streamSize, kSectorSize);
  // The table has an entry for itself too.
  for (;;) {
    const std::size_t table = Sectors(plan.Total(), kEntriesInSector);
    const std::size_t beyond = table > kPlacesInHeader ? table - kPlacesInHeader : 0;
    const std::size_t places = Sectors(beyond, kEntriesInSector - 1);
    if (table == plan.Table && places == plan.Places) return plan;
    plan.Table = table;
    plan.Places = places;
  }
}

void WriteHeader(ByteWriter& file, const Plan& plan) {
  file.Raw("\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1").Zeros(16);
  file.U16(0x003E).U16(0x0003).U16(0xFFFE).U16(9).U16(6).Zeros(6);
  file.U32(0).U32(plan.Table).U32(plan.Stream).U32(0);
  file.U32(kSmallestStream).U32(kChainEnd).U32(0);
  file.U32(plan.Places > 0 ? plan.FirstPlace() : kChainEnd).U32(plan.Places);
  for (std::size_t i = 0; i < kPlacesInHeader; ++i) {
    file.U32(i < plan.Table ? plan.FirstTable() + i : kFree);
  }
}

void WriteEntry(ByteWriter& file, std::u16string_view name, std::uint32_t type, std::uint32_t child,
                std::string_view classId, std::uint32_t start, std::size_t size) {
  constexpr std::size_t kNameBytes = 64;
  name = name.substr(0, kNameBytes / 2 - 1);
  file.Units(name).Zeros(kNameBytes - 2 * name.size());
  file.U16(static_cast<std::uint32_t>(2 * name.size() + 2)).U8(type).U8(1);
  file.U32(kFree).U32(kFree).U32(child);
  file.Raw(classId).Zeros(16 - classId.size()).Zeros(4 + 8 + 8);
  file.U32(start).U64(size);
}

void WriteDirectory(ByteWriter& file, std::u16string_view streamName, std::size_t streamSize) {
  constexpr std::uint32_t kRoot = 5;
  constexpr std::uint32_t kStream = 2;
  // The class of workbooks of this format: {00020820-0000-0000-C000-000000000046}.
  constexpr std::string_view kWorkbookClass(
      "\x20\x08\x02\x00\x00\x00\x00\x00\xC0\x00\x00\x00\x00\x00\x00\x46", 16);
  WriteEntry(file, u"Root Entry", kRoot, 1, kWorkbookClass, kChainEnd, 0);
  WriteEntry(file, streamName, kStream, kFree, {}, 0, streamSize);
  for (int unused = 0; unused < 2; ++unused) {
    file.Zeros(64 + 2 + 2).U32(kFree).U32(kFree).U32(kFree).Zeros(16 + 4 + 16 + 12);
  }
}

void WriteChain(ByteWriter& file, std::size_t first, std::size_t count) {
  for (std::size_t i = 1; i <= count; ++i) file.U32(i == count ? kChainEnd : first + i);
}

void WriteTable(ByteWriter& file, const Plan& plan) {
  WriteChain(file, 0, plan.Stream);
  WriteChain(file, plan.Stream, plan.Directory);
  for (std::size_t i = 0; i < plan.Table; ++i) file.U32(kTableSector);
  for (std::size_t i = 0; i < plan.Places; ++i) file.U32(kPlaceSector);
  for (std::size_t i = plan.Total(); i < plan.Table * kEntriesInSector; ++i) file.U32(kFree);
}

void WritePlaces(ByteWriter& file, const Plan& plan) {
  std::size_t next = kPlacesInHeader;
  for (std::size_t sector = 0; sector < plan.Places; ++sector) {
    for (std::size_t i = 0; i + 1 < kEntriesInSector; ++i, ++next) {
      file.U32(next < plan.Table ? plan.FirstTable() + next : kFree);
    }
    file.U32(sector + 1 < plan.Places ? plan.FirstPlace() + sector + 1 : kChainEnd);
  }
}

}  // namespace

std::string CompoundFile(std::u16string_view streamName, std::string_view stream) {
  const std::size_t size = std::max(stream.size(), kSmallestStream);
  const Plan plan = PlanFor(size);
  ByteWriter file;
  file.Reserve((1 + plan.Total()) * kSectorSize);
  WriteHeader(file, plan);
  file.Raw(stream).Zeros(plan.Stream * kSectorSize - stream.size());
  WriteDirectory(file, streamName, size);
  WriteTable(file, plan);
  WritePlaces(file, plan);
  return file.Bytes();
}

}  // namespace spectrane
