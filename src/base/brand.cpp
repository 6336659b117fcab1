#include "base/brand.h"

namespace spectrane {
namespace {

constexpr const char* kBasic = "Spectrane Basic";

// Addresses of a domain and a country code that nobody can own.
constexpr BrandContact kHouse = {"support@spectrane.example.org", "+00 00 5550100", "spectrane.example.org"};
constexpr BrandContact kBrenn = {"service@brenn.example.org", "+00 00 5550110", "brenn.example.org"};
constexpr BrandContact kMobrel = {"service@mobrel.example.org", "+00 00 5550120", "mobrel.example.org"};
constexpr BrandContact kDunmere = {"service@dunmere.example.org", "+00 00 5550130", "dunmere.example.org"};
constexpr BrandContact kQvr = {"service@qvr.example.org", "+00 00 5550140", "qvr.example.org"};

constexpr Brand kCommonRow = {0, kBasic, 8, 0, false, kHouse};

constexpr Brand kBrandRows[] = {
    {1, kBasic, 8, 801, false, kBrenn},   {2, "Spectrane Solution", 11, 0, false, kHouse},
    {3, kBasic, 8, 0, true, kHouse},      {4, kBasic, 8, 0, false, kHouse},
    {5, kBasic, 8, 804, false, kMobrel},  {6, "QX-7000 External Software", 8, 0, false, kHouse},
    {7, kBasic, 8, 1600, true, kDunmere}, {8, kBasic, 8, 1600, false, kDunmere},
    {9, kBasic, 8, 1650, false, kQvr},
};

}  // namespace

const Brand& BrandRow(int number) {
  for (const Brand& row : kBrandRows) {
    if (row.Number == number) return row;
  }
  return kCommonRow;
}

const Brand& BuildBrand() {
  return BrandRow(SPECTRANE_BRAND_NUMBER);
}

}  // namespace spectrane
