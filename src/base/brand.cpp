#include "base/brand.h"

namespace spectrane {
namespace {

constexpr const char* kBasic = "Spectrane Basic";

constexpr Brand kCommonRow = {0, kBasic, 8, 0, false};

constexpr Brand kRows[] = {
    {1, kBasic, 8, 801, false},  {2, "Spectrane Solution", 11, 0, false},
    {3, kBasic, 8, 0, true},     {4, kBasic, 8, 0, false},
    {5, kBasic, 8, 804, false},  {6, "QX-7000 External Software", 8, 0, false},
    {7, kBasic, 8, 1600, true},  {8, kBasic, 8, 1600, false},
    {9, kBasic, 8, 1650, false},
};

}  // namespace

const Brand& BrandRow(int number) {
  for (const Brand& row : kRows) {
    if (row.Number == number) return row;
  }
  return kCommonRow;
}

const Brand& BuildBrand() {
  return BrandRow(SPECTRANE_BRAND_NUMBER);
}

}  // namespace spectrane
