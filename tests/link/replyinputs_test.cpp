#include "base/keptinputs.h"
#include "fuzz/checks/link/replycheck.h"

namespace spectrane {
namespace {

TEST(KeptInputs, S10_S12_P02_P06_RepliesAreCutAsTheirBytesSay) {
  ExpectKeptInputsRight("reply", &fuzz::CheckReply);
}

TEST(KeptInputs, S12_EveryWayToCutAReplyIsTheSameToo) {
  const std::string recipe = "\x04\x01ge 3\r\n25000\r\n-1\r\n1e9\r\n>";
  for (int seed = 0; seed < 256; ++seed) {
    std::string bytes = recipe;
    bytes[1] = static_cast<char>(seed);
    EXPECT_EQ(fuzz::CheckReply({reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size()}), "")
        << seed;
  }
}

}  // namespace
}  // namespace spectrane
