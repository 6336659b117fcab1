// Small damage to a small file of every kind: cut at every length, and twelve values in the place of each
// byte of header and option block. SPECTRANE_ALL_DAMAGE in the environment: all of it; else a part drawn by
// SPECTRANE_SEED.

#include <array>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <random>

#include "base/basesupport.h"
#include "fuzz/checks/madefile.h"
#include "fuzz/checks/targets.h"
#include "fuzz/peakmemory.h"

namespace spectrane::fuzz {
namespace {

/// Beside ten times the file [bytes]: what the checks hold on their own.
constexpr std::size_t kCheckRoom = 65536;
constexpr std::size_t kTimesTheFile = 10;

struct Portion {
  std::size_t Cuts;
  std::size_t Bytes;
  std::size_t Saves;
};
constexpr Portion kDrawn = {150, 400, 30};

bool Everything() {
  return std::getenv("SPECTRANE_ALL_DAMAGE") != nullptr;
}

unsigned Seed() {
  static const unsigned seed = [] {
    const char* const given = std::getenv("SPECTRANE_SEED");
    const unsigned drawn =
        given != nullptr ? static_cast<unsigned>(std::strtoul(given, nullptr, 10)) : std::random_device{}();
    std::printf("SPECTRANE_SEED=%u\n", drawn);
    return drawn;
  }();
  return seed;
}

std::array<unsigned char, 12> ValuesFor(char byte) {
  const auto b = static_cast<unsigned char>(byte);
  const auto low = [](int value) { return static_cast<unsigned char>(value); };
  return {0x00,       0x01,       0x7F,          0x80,          0xFE,          0xFF,
          low(b + 1), low(b - 1), low(b ^ 0x01), low(b ^ 0x10), low(b ^ 0x80), low(~b)};
}

class SmallDamage : public testing::TestWithParam<Target> {
 protected:
  void SetUp() override {
    // The first run makes the objects that stay.
    ASSERT_EQ(target_.Check(Bytes()), "");
  }

  /// Every number below `count`, or `part` of them.
  template <typename Do>
  std::size_t ForEach(std::size_t count, std::size_t part, Do todo) {
    if (Everything() || part >= count) {
      for (std::size_t i = 0; i < count; ++i) todo(i);
      return count;
    }
    std::uniform_int_distribution<std::size_t> draw(0, count - 1);
    for (std::size_t i = 0; i < part; ++i) todo(draw(random_));
    return part;
  }

  /// The right answers, within memory and time.
  void ExpectSoundReading(const std::string& file, const std::string& what) {
    const std::clock_t start = std::clock();
    BeginPeakMemory();
    const std::string wrong = target_.Check(BytesOf(file));
    const std::size_t peak = EndPeakMemory();
    const double seconds = static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
    EXPECT_EQ(wrong, "") << what;
    EXPECT_LE(peak, kCheckRoom + kTimesTheFile * file.size()) << what;
    EXPECT_LT(seconds, 1.0) << what;
  }

  /// What opens can be saved, and what was saved reads and saves as the same.
  void ExpectSaves(const std::string& file, const std::string& what) {
    if (!Opens(table_, BytesOf(file))) return;
    const Reload first = target_.LoadAndSave(BytesOf(file), folder_.Path("first"));
    ASSERT_FALSE(first.SaveFault) << what;
    const std::string saved = ReadBytes(folder_.Path("first"));
    const Reload second = target_.LoadAndSave(BytesOf(saved), folder_.Path("second"));
    EXPECT_EQ(second.Records, first.Records) << what;
    EXPECT_FALSE(second.SaveFault) << what;
    EXPECT_TRUE(first.Fault || !second.Fault) << what;
    EXPECT_TRUE(ReadBytes(folder_.Path("second")) == saved) << what << ": saved again it is another file";
  }

  std::string Damaged(std::size_t number) const {
    std::string file = whole_;
    file[number / 12] = static_cast<char>(ValuesFor(file[number / 12])[number % 12]);
    return file;
  }
  static std::string NameOf(std::size_t number) {
    return "byte " + std::to_string(number / 12) + ", value " + std::to_string(number % 12);
  }
  std::size_t DamageCount() const { return 12 * (kHeader + table_.OptionSize); }

  const Target& target_ = GetParam();
  const FileTable& table_ = *target_.Table;
  const std::string whole_ = MadeFile(table_, 2, 2);
  TemporaryFolder folder_;
  std::mt19937 random_{Seed()};
};

TEST_P(SmallDamage, D01_CutAtEveryLengthItReadsAsFarAsItGoes) {
  const std::size_t done = ForEach(whole_.size() + 1, kDrawn.Cuts, [&](std::size_t length) {
    ExpectSoundReading(whole_.substr(0, length), "cut at " + std::to_string(length));
  });
  RecordProperty("cuts", static_cast<int>(done));
}

TEST_P(SmallDamage, D02_D05_AnyValueInAnyByteIsReadOrRefused) {
  const std::size_t done = ForEach(DamageCount(), kDrawn.Bytes, [&](std::size_t number) {
    ExpectSoundReading(Damaged(number), NameOf(number));
  });
  RecordProperty("damages", static_cast<int>(done));
}

TEST_P(SmallDamage, D06_WhatIsTakenCanBeSavedAndReadAgain) {
  ForEach(DamageCount(), kDrawn.Saves,
          [&](std::size_t number) { ExpectSaves(Damaged(number), NameOf(number)); });
  ForEach(whole_.size() + 1, kDrawn.Saves, [&](std::size_t length) {
    ExpectSaves(whole_.substr(0, length), "cut at " + std::to_string(length));
  });
}

std::vector<Target> FileKinds() {
  std::vector<Target> kinds;
  for (const Target& target : Targets()) {
    if (target.Table != nullptr) kinds.push_back(target);
  }
  return kinds;
}

INSTANTIATE_TEST_SUITE_P(Kinds, SmallDamage, testing::ValuesIn(FileKinds()), NameOfRow<Target>);

}  // namespace
}  // namespace spectrane::fuzz
