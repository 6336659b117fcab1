#include "base/brand.h"

#include <gtest/gtest.h>

#include <string>

#include "base/language.h"
#include "base/version.h"

namespace spectrane {
namespace {

TEST(Brand, EachNumberHasItsRow) {
  struct Row {
    int Number;
    const char* Title;
    int GainCount;
    const char* Company;
    bool ReadsSlit;
  };
  const Row rows[] = {
      {1, "Spectrane Basic", 8, "Brenn Instrument Works", false},
      {2, "Spectrane Solution", 11, "", false},
      {3, "Spectrane Basic", 8, "", true},
      {4, "Spectrane Basic", 8, "", false},
      {5, "Spectrane Basic", 8, "Mobrel Analytical Works", false},
      {6, "QX-7000 External Software", 8, "", false},
      {7, "Spectrane Basic", 8, "Dunmere Works", true},
      {8, "Spectrane Basic", 8, "Dunmere Works", false},
      {9, "Spectrane Basic", 8, "Qvr Works", false},
      {0, "Spectrane Basic", 8, "", false},
      {10, "Spectrane Basic", 8, "", false},
      {-1, "Spectrane Basic", 8, "", false},
  };
  for (const Row& row : rows) {
    const Brand& brand = BrandRow(row.Number);
    EXPECT_STREQ(brand.Title, row.Title) << row.Number;
    EXPECT_EQ(brand.GainCount, row.GainCount) << row.Number;
    EXPECT_EQ(Text(brand.CompanyTextId), row.Company) << row.Number;
    EXPECT_EQ(brand.ReadsSlit, row.ReadsSlit) << row.Number;
  }
}

TEST(Brand, ContactRowsBelongToTheCompany) {
  for (int number = 0; number <= 9; ++number) {
    const Brand& brand = BrandRow(number);
    for (const char* value : {brand.Contact.EMail, brand.Contact.Phone, brand.Contact.WebSite}) {
      ASSERT_NE(value, nullptr) << number;
      EXPECT_STRNE(value, "") << number;
    }
    for (int other = 0; other <= 9; ++other) {
      const Brand& further = BrandRow(other);
      EXPECT_EQ(brand.CompanyTextId == further.CompanyTextId,
                std::string(brand.Contact.WebSite) == further.Contact.WebSite)
          << number << " and " << other;
    }
  }
}

TEST(Brand, TheBuildServesItsOwnNumber) {
  EXPECT_EQ(&BuildBrand(), &BrandRow(SPECTRANE_BRAND_NUMBER));
}

TEST(Version, IsReadFromItsText) {
  constexpr Version version = VersionOf("12.3.405");
  EXPECT_EQ(version.Major, 12);
  EXPECT_EQ(version.Minor, 3);
  EXPECT_EQ(version.Revision, 405);
}

TEST(Version, MissingAndFurtherPartsDoNotMatter) {
  EXPECT_EQ(VersionOf("2").Major, 2);
  EXPECT_EQ(VersionOf("2").Minor, 0);
  EXPECT_EQ(VersionOf("2.1.0.7").Revision, 0);
}

TEST(Version, TheProgramsOwnTextIsTheOneOfTheBuild) {
  EXPECT_EQ(VersionText(), SPECTRANE_VERSION);
}

}  // namespace
}  // namespace spectrane
