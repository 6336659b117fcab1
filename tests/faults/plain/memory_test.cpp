// A program that has too little memory, which sanitizers cannot be given. The names begin with the row of the
// catalogue in docs/reliability.md.

#include <sys/resource.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>

#include "app/framefixture.h"
#include "cli/processes.h"
#include "files/filesupport.h"

namespace spectrane::testing_faults {
namespace {

/// Little more memory can be had than is in use, while it lives.
class LittleMemory {
 public:
  explicit LittleMemory(std::size_t more) {
    std::ifstream status("/proc/self/statm");
    std::size_t pages = 0;
    status >> pages;
    getrlimit(RLIMIT_AS, &before_);
    const rlimit limit{pages * static_cast<std::size_t>(sysconf(_SC_PAGESIZE)) + more, before_.rlim_max};
    setrlimit(RLIMIT_AS, &limit);
  }
  ~LittleMemory() { setrlimit(RLIMIT_AS, &before_); }
  LittleMemory(const LittleMemory&) = delete;
  LittleMemory& operator=(const LittleMemory&) = delete;

 private:
  rlimit before_ = {};
};

class LittleMemoryFrame : public testing_windows::FrameFixture {};

TEST_F(LittleMemoryFrame, N02_ALoadWithoutMemoryEndsAloneAndLeavesNoWindow) {
  Start();
  const auto sample = [this](const char* name) {
    return WriteFile(name, QByteArray::fromStdString(BasicFileBytes(1, 1)));
  };
  const QString small = sample("small.bas");
  ASSERT_TRUE(Main->OpenDataFile(small));
  // As many rows as the file is long, all but the first of zeros and none of them on the disk.
  constexpr int kRows = 400'000;
  const QString large = WriteFile("large.bas", QByteArray::fromStdString(BasicFileBytes(1, kRows)));
  const std::size_t row = BasicRecordBytes(0, "").size();
  std::filesystem::resize_file(large.toStdString(), BasicFileBytes(0, 0).size() + kRows * row);
  Main->OpenLater(large);
  {
    const LittleMemory little(48 << 20);
    QTest::qWait(1);
  }
  EXPECT_EQ(Remark(), "The command ended early: std::bad_alloc");
  EXPECT_EQ(WindowCount(), 1);
  EXPECT_EQ(Main->ActiveForm()->OpenFileName(), small);
  EXPECT_TRUE(Main->OpenDataFile(sample("next.bas"))) << "the next one opens";
}
class LittleMemoryProgram : public testing_processes::SimulatorProcess {};

TEST_F(LittleMemoryProgram, N02_AFileForWhichThereIsNoMemoryIsRefused) {
  constexpr int kRows = 2'000'000;
  const std::size_t row = BasicRecordBytes(0, "").size();
  WriteBytes(Path("large.bas"), BasicFileBytes(1, kRows));
  std::filesystem::resize_file(Path("large.bas"), BasicFileBytes(0, 0).size() + kRows * row);
  QProcess process;
  process.start(
      QStringLiteral("/bin/sh"),
      {QStringLiteral("-c"), QStringLiteral("ulimit -v 400000; exec \"$0\" \"$@\""), Program("spectrane-cli"),
       QStringLiteral("dump"), QString::fromStdString(Path("large.bas"))});
  ASSERT_TRUE(process.waitForStarted(5000));
  testing_processes::ExpectRefusal(Finish(process), "not enough memory");
}

}  // namespace
}  // namespace spectrane::testing_faults
