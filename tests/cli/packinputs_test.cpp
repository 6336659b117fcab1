#include "base/keptinputs.h"
#include "fuzz/checks/cli/packcheck.h"

namespace spectrane {
namespace {

TEST(KeptInputs, WhatIsPackedIsDumpedAndPackedAgainAsItWas) {
  ExpectKeptInputsRight("pack", &fuzz::CheckPack);
}

}  // namespace
}  // namespace spectrane
