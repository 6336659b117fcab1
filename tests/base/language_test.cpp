#include "base/language.h"

#include <gtest/gtest.h>

#include <map>
#include <string>

#include "base/basesupport.h"

namespace spectrane {
namespace {

TEST(Text, GivesTheRowOfTheNumber) {
  EXPECT_EQ(Text(101), "File(&F)");
  EXPECT_EQ(Text(701), "Wavelength(nm)");
  EXPECT_EQ(Text(1912), "Setup Sampler Error.");
}

TEST(Text, BlanksAtTheEndsBelongToTheText) {
  EXPECT_EQ(Text(104), "Quantitation ");
  EXPECT_EQ(Text(924), "  Record List  ");
  EXPECT_EQ(Text(1214), " Open File Error!");
}

TEST(Text, ATabIsACharacterOfTheText) {
  EXPECT_EQ(Text(309), "Set Wavelength(&G)...\t");
}

TEST(Text, ANumberWithoutARowGivesNothing) {
  for (const int id : {0, -1, 100, 122, 704, 1093, 1913, 2147483647}) EXPECT_EQ(Text(id), "") << id;
}

TEST(Text, MisspellingsStay) {
  EXPECT_EQ(Text(1092), "Slip width unknown.");
  EXPECT_EQ(Text(411), "Spectrum Caculate");
  EXPECT_EQ(Text(1030), "Conc. Radio");
}

TEST(LanguageIndex, ThreeChineseLocalesGiveZero) {
  for (const unsigned id : {2052u, 4u, 4100u}) EXPECT_EQ(LanguageIndexFor(id), 0) << id;
}

TEST(LanguageIndex, EveryOtherLocaleGivesTwo) {
  for (const unsigned id : {1033u, 1041u, 1028u, 3076u, 0u, 2u, 4101u})
    EXPECT_EQ(LanguageIndexFor(id), 2) << id;
}

TEST(LocaleId, ChineseNamesHaveTheirNumbers) {
  const std::map<std::string, unsigned> rows = {
      {"zh", 4},           {"zh_CN", 2052},       {"zh_CN.UTF-8", 2052}, {"zh_CN@radical", 2052},
      {"zh_SG.gbk", 4100}, {"zh_TW.UTF-8", 1028}, {"zh_HK", 3076},       {"zh_MO", 5124}};
  for (const auto& [name, id] : rows) EXPECT_EQ(LocaleIdOf(name), id) << name;
}

TEST(LocaleId, OtherNamesCountAsEnglish) {
  for (const char* name : {"", "C", "C.UTF-8", "POSIX", "en_US.UTF-8", "ja_JP", "zha", ".zh_CN"}) {
    EXPECT_EQ(LocaleIdOf(name), 1033u) << name;
  }
}

TEST(LanguageIndex, FollowsTheMachine) {
  const ScopedVariable all("LC_ALL", nullptr);
  const ScopedVariable messages("LC_MESSAGES", "");
  {
    const ScopedVariable language("LANG", "zh_CN.UTF-8");
    EXPECT_EQ(GetLanguageIndex(), 0);
    const ScopedVariable stronger("LC_MESSAGES", "en_US.UTF-8");
    EXPECT_EQ(GetLanguageIndex(), 2);
    const ScopedVariable strongest("LC_ALL", "zh_SG");
    EXPECT_EQ(GetLanguageIndex(), 0);
  }
  const ScopedVariable language("LANG", nullptr);
  EXPECT_EQ(GetLanguageIndex(), 2);
}

TEST(Font, AnEnglishSystemGetsTheTenPointFace) {
  const UIFont font = FontFor(LanguageIndexFor(1033));
  EXPECT_EQ(font.Name, "MS UI Gothic");
  EXPECT_EQ(font.Size, 10);
  EXPECT_EQ(font.Charset, 1);
}

TEST(Font, AChineseSystemGetsTheNinePointFace) {
  const UIFont font = FontFor(LanguageIndexFor(2052));
  EXPECT_EQ(font.Name, "Verdana");
  EXPECT_EQ(font.Size, 9);
  EXPECT_EQ(font.Charset, 1);
}

}  // namespace
}  // namespace spectrane
