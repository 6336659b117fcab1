// What the words alone show to be wrong ends a command before it looks for an instrument.

#include <filesystem>

#include "cli/batchsupport.h"

namespace spectrane {
namespace {

using UsageWords = std::vector<std::string>;

void ExpectWrong(UsageWords words) {
  words.insert(words.begin(), "instrument");
  SCOPED_TRACE(testing::PrintToString(words));
  ExpectWrongUsage(Batch(words));
}

TEST(InstrumentUsage, OfTheGroupIsRefused) {
  ExpectWrong({});
}

TEST(InstrumentUsage, OfMeasureAndSendIsRefused) {
  const TemporaryFolder folder;
  const std::string out = folder.Path("x.bas");
  for (const UsageWords& words :
       std::vector<UsageWords>{{"measure"},
                               {"measure", "--wavelength", "abc", "--count", "1", "--out", out},
                               {"measure", "--wavelength", "nan", "--count", "1", "--out", out},
                               {"measure", "--wavelength", "500", "--count", "0", "--out", out},
                               {"measure", "--wavelength", "500", "--count", "1.5", "--out", out},
                               {"measure", "--wavelength", "500", "--count", "1", "--out", ""},
                               {"send"},
                               {"send", "getwl", "--timeout", "0"},
                               {"send", "getwl", "--timeout", "1.6"},
                               {"send", "getwl\rquit"}}) {
    ExpectWrong(words);
  }
  EXPECT_FALSE(std::filesystem::exists(out));
}

TEST(InstrumentUsage, OfAcquisitionsIsRefused) {
  const TemporaryFolder folder;
  const std::string out = folder.Path("x.out");
  for (const UsageWords& words : std::vector<UsageWords>{
           {"baseline", "--from", "400", "--out", out},
           {"baseline", "--from", "400.5", "--to", "500", "--out", out},
           {"scan", "--from", "400", "--to", "500", "--out", out},
           {"scan", "--from", "400", "--to", "500", "--step", "0.3", "--out", out},
           {"scan", "--from", "400.05", "--to", "500", "--step", "1", "--out", out},
           {"scan", "--from", "400", "--to", "500", "--step", "1", "--samples", "0", "--out", out},
           {"scan", "--from", "400", "--to", "500", "--step", "1", "--samples", "201", "--out", out},
           {"scan", "--from", "400", "--to", "500", "--step", "1", "--blank", "--baseline", "x.bsl", "--out",
            out},
           {"scan", "--from", "400", "--to", "500", "--step", "1", "--from-sampler", "0", "--out", out},
           {"scan", "--from", "400", "--to", "500", "--step", "1", "--from-sampler", "9", "--out", out},
           {"scan", "--from", "400", "--to", "500", "--step", "1", "--from-sampler", "2,2", "--out", out},
           {"scan", "--from", "400", "--to", "500", "--step", "1", "--from-sampler", "2,", "--out", out},
           {"multi", "--count", "1", "--out", out},
           {"multi", "--wavelengths", "400", "--out", out},
           {"multi", "--wavelengths", "400,x", "--count", "1", "--out", out},
           {"multi", "--wavelengths", "400.05", "--count", "1", "--out", out},
           {"multi", "--wavelengths", "400,500", "--parameters", "1", "--count", "1", "--out", out},
           {"multi", "--wavelengths", "1,2,3,4,5,6,7,8,9,10,11,12,13,14,15,16", "--count", "1", "--out", out},
           {"dna", "--mode", "3", "--count", "1", "--out", out},
           {"kinetics", "--wavelength", "400", "--interval", "3", "--points", "2", "--out", out},
           {"kinetics", "--wavelength", "400", "--interval", "1", "--points", "10001", "--out", out}}) {
    ExpectWrong(words);
  }
  EXPECT_FALSE(std::filesystem::exists(out));
}

}  // namespace
}  // namespace spectrane
