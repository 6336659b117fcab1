#include "modes/multi/multiresult.h"

#include <cmath>

#include "base/basesupport.h"
#include "base/notfinite.h"

namespace spectrane {
namespace {

MultiOption Using(std::int32_t wavelengths) {
  MultiOption option;
  option.WorkWLNo = wavelengths;
  for (std::size_t k = 0; k < 16; ++k) option.Parameter[k] = static_cast<double>(k) + 1;
  return option;
}

MultiRecord Row() {
  MultiRecord record;
  for (std::size_t k = 0; k < 16; ++k) record.Abs[k] = 0.5;
  record.Abs[1] = 0.25;
  return record;
}

TEST(MultiResult, IsTheSumOverTheWavelengthsInUse) {
  EXPECT_EQ(MultiResult(Using(1), Row()), 0.5);               // 1 * 0.5
  EXPECT_EQ(MultiResult(Using(2), Row()), 1.0);               // + 2 * 0.25
  EXPECT_EQ(MultiResult(Using(3), Row()), 2.5);               // + 3 * 0.5
  EXPECT_EQ(MultiResult(Using(15), Row()), 120 * 0.5 - 0.5);  // 1 + ... + 15 = 120
}

TEST(MultiResult, NeverTakesMoreWavelengthsThanThereAre) {
  for (const std::int32_t stated : {16, 17, 2147483647}) {
    EXPECT_EQ(MultiWavelengths(Using(stated)), 15);
    EXPECT_EQ(MultiResult(Using(stated), Row()), 59.5);
  }
  for (const std::int32_t stated : {0, -1, -2147483647 - 1}) {
    EXPECT_EQ(MultiWavelengths(Using(stated)), 0);
    EXPECT_EQ(MultiResult(Using(stated), Row()), 0);
  }
}

TEST(MultiResult, LeavesOutWhatIsNotInUse) {
  MultiRecord row = Row();
  row.Abs[2] = kNaN;
  EXPECT_EQ(MultiResult(Using(2), row), 1.0);
  EXPECT_TRUE(std::isnan(MultiResult(Using(3), row)));
}

}  // namespace
}  // namespace spectrane
