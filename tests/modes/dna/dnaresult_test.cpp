#include "modes/dna/dnaresult.h"

#include "base/basesupport.h"

namespace spectrane {
namespace {

DNAOption WithFactors(double f1, double f2, double f3, double f4) {
  DNAOption option;
  option.Factor = {f1, f2, f3, f4};
  return option;
}

DNARecord Row(double a1, double a2, double reference) {
  DNARecord record;
  record.Abs = {a1, a2, reference, 99};
  record.Ratio = 7;
  return record;
}

TEST(DNAResult, OfTheFirstModeIsThatOfTheHand) {
  DNARecord row = Row(0.5, 0.3, 0.05);
  ComputeDNA(WithFactors(62.9, 36, 1552, 757.3), row);
  EXPECT_NEAR(row.DNA, 28.305 - 9, 1e-12);         // 0.45 * 62.9 - 0.25 * 36
  EXPECT_NEAR(row.Protein, 388 - 340.785, 1e-11);  // 0.25 * 1552 - 0.45 * 757.3
  EXPECT_NEAR(row.Ratio, 1.8, 1e-14);
}

TEST(DNAResult, OfTheSecondModeIsThatOfTheHand) {
  DNARecord row = Row(0.6, 0.2, 0.1);
  ComputeDNA(WithFactors(49.1, 3.48, 183, 75.8), row);
  EXPECT_NEAR(row.DNA, 24.55 - 0.348, 1e-12);    // 0.5 * 49.1 - 0.1 * 3.48
  EXPECT_NEAR(row.Protein, 18.3 - 37.9, 1e-12);  // 0.1 * 183 - 0.5 * 75.8
  EXPECT_NEAR(row.Ratio, 5, 1e-13);
}

TEST(DNAResult, KeepsTheRatioWhereTheDivisorIsZero) {
  DNARecord row = Row(0.5, 0.25, 0.25);
  ComputeDNA(WithFactors(2, 4, 8, 16), row);
  EXPECT_EQ(row.Ratio, 7);
  EXPECT_EQ(row.DNA, 0.5);
  EXPECT_EQ(row.Protein, -4);
}

}  // namespace
}  // namespace spectrane
