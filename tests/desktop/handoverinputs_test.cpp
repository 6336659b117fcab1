#include "base/keptinputs.h"
#include "fuzz/checks/desktop/handovercheck.h"

namespace spectrane {
namespace {

TEST(KeptInputs, H03_H04_MessagesAreJudgedAsTheirBytesSay) {
  ExpectKeptInputsRight("handover", &fuzz::CheckHandover);
}

}  // namespace
}  // namespace spectrane
