#include <random>

#include "base/keptinputs.h"
#include "fuzz/checks/link/exchangecheck.h"

namespace spectrane {
namespace {

TEST(KeptInputs, P01_S09_S11_S12_ExchangesStayInStepWhateverComesWhen) {
  ExpectKeptInputsRight("exchange", &fuzz::CheckExchange);
}

TEST(KeptInputs, P01_ScriptsOfALineDrawnAtRandom) {
  for (unsigned seed = 1; seed <= 600; ++seed) {
    std::mt19937 draw(seed);
    std::vector<unsigned char> script(1 + draw() % 120);
    for (unsigned char& byte : script) byte = static_cast<unsigned char>(draw());
    ASSERT_EQ(fuzz::CheckExchange(script), "") << "seed " << seed;
  }
}

}  // namespace
}  // namespace spectrane
