// Standard streams that nobody reads, or that came closed.

#include "processes.h"

namespace spectrane::testing_processes {
namespace {

Outcome Shell(const std::string& script) {
  QProcess process;
  process.start(QStringLiteral("sh"), Arguments({"-c", script, SPECTRANE_BIN "/spectrane-cli"}));
  EXPECT_TRUE(process.waitForFinished(20000));
  return {process.exitCode(), process.readAllStandardOutput().toStdString(),
          process.readAllStandardError().toStdString()};
}

TEST(Streams, AReaderThatIsGoneIsARefusal) {
  const Outcome outcome = Shell("(sleep 0.3; \"$0\" format 1.25 0.0; echo \"status $?\" >&2) | true");
  EXPECT_NE(outcome.Err.find("standard output: cannot be written"), std::string::npos) << outcome.Err;
  EXPECT_NE(outcome.Err.find("status 1"), std::string::npos) << outcome.Err;
}

TEST(Streams, AClosedErrorStreamIsNoOtherFile) {
  const Outcome outcome = Shell("\"$0\" info /no/such/file.bas 0<&- 2>&-; echo \"status $?\"");
  EXPECT_EQ(outcome.Out, "status 1\n");
  EXPECT_EQ(Shell("\"$0\" format 1.25 0.0 0<&- 2>&-").Out, "{\"text\":\"1.3\"}\n");
}

TEST(Streams, UsageNamesTheArgumentThatIsNoNumber) {
  const Outcome outcome = Shell("\"$0\" format inf 0.0");
  EXPECT_EQ(outcome.Status, 2);
  EXPECT_TRUE(outcome.Err.starts_with("VALUE: inf is no number\n")) << outcome.Err;
}

TEST(Streams, AnEmptyPathIsNamed) {
  const Outcome outcome = Shell("\"$0\" info ''");
  EXPECT_EQ(outcome.Status, 1);
  EXPECT_EQ(outcome.Err, "empty path: no such file\n");
}

}  // namespace
}  // namespace spectrane::testing_processes
