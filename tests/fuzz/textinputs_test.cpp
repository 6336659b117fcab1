#include "base/keptinputs.h"
#include "fuzz/checks/configcheck.h"
#include "fuzz/checks/journalcheck.h"

namespace spectrane::fuzz {
namespace {

TEST(KeptInputs, C02_C06_SettingsAreChangedWhereTheyAreToBe) {
  ExpectKeptInputsRight("config", &CheckConfig);
}

TEST(KeptInputs, JournalsReadAsTheirBytesSay) {
  ExpectKeptInputsRight("journal", &CheckJournal);
}

}  // namespace
}  // namespace spectrane::fuzz
