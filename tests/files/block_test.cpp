#include "files/block.h"

#include <cmath>
#include <cstring>
#include <limits>

#include "files/filesupport.h"

namespace spectrane {
namespace {

struct Sample {
  std::int32_t Number = 0;
  std::int16_t Mode = 0;
  double Value = 0;
  bool Done = false;
  std::string Name;
  std::array<std::int32_t, 2> Pair{};
  std::array<std::array<double, 2>, 3> Table{};
  std::array<std::string, 2> Names;
};

constexpr LayoutField kSample[] = {
    Field<&Sample::Number>("Number", 0, 4), Field<&Sample::Mode>("Mode", 4, 2),
    Field<&Sample::Value>("Value", 6, 8),   Field<&Sample::Done>("Done", 14, 2),
    Field<&Sample::Name>("Name", 16, 5),    Field<&Sample::Pair>("Pair", 21, 8),
    Field<&Sample::Table>("Table", 29, 48), Field<&Sample::Names>("Names", 77, 6),
};
constexpr std::size_t kSize = 83;
constexpr Block kBlock = BlockOf<Sample, kSample, kSize>();

std::string Encoded(const Sample& sample, bool* lost = nullptr) {
  std::string bytes(kSize, '#');
  bool anyLost = false;
  kBlock.Encode(&sample, reinterpret_cast<unsigned char*>(bytes.data()), anyLost);
  if (lost != nullptr) *lost = anyLost;
  return bytes;
}
Sample Decoded(const std::string& bytes) {
  Sample sample;
  kBlock.Decode(reinterpret_cast<const unsigned char*>(bytes.data()), &sample, 1);
  return sample;
}

// 1.0 is 0x3FF0..., 2.0 is 0x4000..., -2.5 is -1.25 times 2: 0xC004...
const std::string kOne = Bytes({0, 0, 0, 0, 0, 0, 0xF0, 0x3F});
const std::string kTwo = Bytes({0, 0, 0, 0, 0, 0, 0, 0x40});
const std::string kMinusTwoAndAHalf = Bytes({0, 0, 0, 0, 0, 0, 0x04, 0xC0});
const std::string kZero(8, '\0');

const Sample kFilled = {
    -2, -2, 546.0, true, "a\u00B5", {1, 0x01020304}, {{{1.0, 2.0}, {0.0, -2.5}, {0.0, 1.0}}}, {"xyz", ""}};

std::string FilledBytes() {
  return Bytes({0xFE, 0xFF, 0xFF, 0xFF}) + Bytes({0xFE, 0xFF}) + Double546() + Bytes({0xFF, 0xFF}) +
         "a\xB5   " + Bytes({1, 0, 0, 0}) + Bytes({4, 3, 2, 1}) + kOne + kTwo + kZero + kMinusTwoAndAHalf +
         kZero + kOne + "xyz   ";
}

TEST(Layout, EachTypeIsWrittenByteByByte) {
  EXPECT_EQ(Encoded(kFilled), FilledBytes());
}

TEST(Layout, EachTypeIsReadByteByByte) {
  const Sample sample = Decoded(FilledBytes());
  EXPECT_EQ(sample.Number, -2);
  EXPECT_EQ(sample.Mode, -2);
  EXPECT_EQ(sample.Value, 546.0);
  EXPECT_TRUE(sample.Done);
  EXPECT_EQ(sample.Name, "a\u00B5");
  EXPECT_EQ(sample.Pair, kFilled.Pair);
  EXPECT_EQ(sample.Table, kFilled.Table);
  EXPECT_EQ(sample.Names, kFilled.Names);
}

TEST(Layout, AnyBooleanButZeroIsTrue) {
  std::string bytes = Encoded({});
  EXPECT_EQ(bytes.substr(14, 2), Bytes({0, 0}));
  EXPECT_FALSE(Decoded(bytes).Done);
  for (const auto& stored : {Bytes({1, 0}), Bytes({0, 1}), Bytes({0xFF, 0xFF})}) {
    bytes.replace(14, 2, stored);
    EXPECT_TRUE(Decoded(bytes).Done);
  }
}

TEST(Layout, TheSmallestAndLargestNumbersSurvive) {
  Sample sample;
  sample.Number = std::numeric_limits<std::int32_t>::min();
  sample.Mode = std::numeric_limits<std::int16_t>::max();
  const std::string bytes = Encoded(sample);
  EXPECT_EQ(bytes.substr(0, 6), Bytes({0, 0, 0, 0x80, 0xFF, 0x7F}));
  EXPECT_EQ(Decoded(bytes).Number, sample.Number);
  EXPECT_EQ(Decoded(bytes).Mode, sample.Mode);
}

TEST(Layout, EveryBitOfADoubleSurvives) {
  for (const std::string& bits :
       {Bytes({0, 0, 0, 0, 0, 0, 0, 0x80}), Bytes({0, 0, 0, 0, 0, 0, 0xF0, 0xFF}),
        Bytes({0x21, 0x43, 0, 0, 0, 0, 0xF8, 0x7F}), Bytes({1, 0, 0, 0, 0, 0, 0, 0})}) {
    std::string bytes = Encoded({});
    bytes.replace(6, 8, bits);
    EXPECT_EQ(Encoded(Decoded(bytes)), bytes);
  }
}

TEST(Layout, ATextIsCutAtTheWidthOfItsField) {
  Sample sample;
  sample.Name = "abcdefg";
  sample.Names = {"1234", "\u20AC\u20AC\u20AC\u20AC"};
  const std::string bytes = Encoded(sample);
  EXPECT_EQ(bytes.substr(16, 5), "abcde");
  EXPECT_EQ(bytes.substr(77), "123\x80\x80\x80");
}

TEST(Layout, ALostCharacterIsTold) {
  bool lost = true;
  Encoded(kFilled, &lost);
  EXPECT_FALSE(lost);
  Sample sample;
  sample.Names[1] = "\u6BD4";
  EXPECT_EQ(Encoded(sample, &lost).substr(80), "?  ");
  EXPECT_TRUE(lost);
}

TEST(Layout, TheShapeFollowsFromTheMember) {
  EXPECT_EQ(kSample[0].Dimensions, 0);
  EXPECT_EQ(kSample[5].Dimensions, 1);
  EXPECT_EQ(kSample[5].Rows, 2u);
  EXPECT_EQ(kSample[6].Dimensions, 2);
  EXPECT_EQ(kSample[6].Rows, 3u);
  EXPECT_EQ(kSample[6].Columns, 2u);
  EXPECT_EQ(kSample[7].ElementWidth, 3u);
}

TEST(Layout, EachTypeHasItsWidthOnDisk) {
  // Asked as the program goes, not of the compiler.
  std::size_t widths = 0;
  for (const LayoutField& field : kSample) widths += FixedWidth(field.Type) * field.Count;
  EXPECT_EQ(widths, 4U + 2 + 8 + 2 + 0 + 2 * 4 + 6 * 8 + 0);
  EXPECT_EQ(FixedWidth(FieldType::Text), 0U);
}

TEST(Layout, ATableWithAFaultDoesNotHold) {
  constexpr auto kNumber = Field<&Sample::Number>("Number", 0, 4);
  EXPECT_TRUE(LayoutHolds(std::array{kNumber}, 4));
  EXPECT_TRUE(LayoutHolds(std::array{kNumber, Field<&Sample::Name>("Name", 4, 7)}, 11))
      << "a text of any width";
  EXPECT_FALSE(LayoutHolds(std::array{kNumber}, 8)) << "total";
  EXPECT_FALSE(LayoutHolds(std::array{kNumber, Field<&Sample::Mode>("Mode", 6, 2)}, 8)) << "gap";
  EXPECT_FALSE(LayoutHolds(std::array{kNumber, Field<&Sample::Mode>("Mode", 3, 2)}, 5)) << "overlap";
  EXPECT_FALSE(LayoutHolds(std::array{Field<&Sample::Value>("Value", 0, 4)}, 4)) << "width of a double";
  EXPECT_FALSE(LayoutHolds(std::array{Field<&Sample::Done>("Done", 0, 4)}, 4)) << "width of a Boolean";
  EXPECT_FALSE(LayoutHolds(std::array{Field<&Sample::Pair>("Pair", 0, 4)}, 4)) << "width of an array";
  EXPECT_FALSE(LayoutHolds(std::array{Field<&Sample::Names>("Names", 0, 7)}, 7)) << "odd share of a text";
  EXPECT_FALSE(LayoutHolds(std::array{Field<&Sample::Name>("Name", 0, 0)}, 0)) << "empty text";
}

}  // namespace
}  // namespace spectrane
