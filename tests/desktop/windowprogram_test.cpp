// The window program where its command line is answered in words.
#include "base/version.h"
#include "cli/processes.h"

namespace spectrane {
namespace {

using testing_processes::Arguments;
using testing_processes::Outcome;

/// The real program in a folder of its own. `platform`: what the toolkit would show windows on.
Outcome StartedWith(const std::vector<std::string>& words, const char* platform,
                    const QTemporaryDir& folder) {
  QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
  for (const char* name :
       {"SPECTRANE_HOME", "HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_STATE_HOME", "TMPDIR"})
    environment.insert(QLatin1String(name), folder.path());
  for (const char* name : {"DISPLAY", "WAYLAND_DISPLAY", "XDG_RUNTIME_DIR", "DBUS_SESSION_BUS_ADDRESS"})
    environment.remove(QLatin1String(name));
  environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QLatin1String(platform));
  environment.insert(QStringLiteral("SPECTRANE_PORTS"), QStringLiteral(":"));
  QProcess program;
  program.setProcessEnvironment(environment);
  program.setWorkingDirectory(folder.path());
  program.start(QStringLiteral(SPECTRANE_BIN "/spectrane"), Arguments(words));
  // A window that came up would stay.
  EXPECT_TRUE(program.waitForFinished(20000));
  EXPECT_EQ(program.exitStatus(), QProcess::NormalExit);
  return {program.exitCode(), program.readAllStandardOutput().toStdString(),
          program.readAllStandardError().toStdString()};
}

QStringList LeftIn(const QTemporaryDir& folder) {
  return QDir(folder.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
}

TEST(WindowProgram, TellsUsageAndVersionWithoutAnyDisplayAndWritesNothing) {
  const QTemporaryDir folder;
  for (const std::vector<std::string>& words :
       {std::vector<std::string>{"--help"}, {"-h"}, {"-style", "fusion", "data.bas", "--help"}}) {
    const Outcome told = StartedWith(words, "none-such", folder);
    EXPECT_EQ(told.Status, 0) << words[0];
    EXPECT_NE(told.Out.find("Usage: spectrane [OPTIONS] [FILE]"), std::string::npos) << told.Out;
    EXPECT_NE(told.Out.find(".qua"), std::string::npos) << told.Out;
    EXPECT_EQ(told.Err, "");
  }
  const Outcome version = StartedWith({"--version"}, "none-such", folder);
  EXPECT_EQ(version.Status, 0);
  EXPECT_EQ(version.Out, "spectrane " + VersionText() + "\n");
  EXPECT_EQ(LeftIn(folder).join(u' ').toStdString(), "");
}

TEST(WindowProgram, RefusesAnOptionThatNeitherItNorTheToolkitKnows) {
  const QTemporaryDir folder;
  for (const std::vector<std::string>& words :
       {std::vector<std::string>{"--halp"}, {"-style", "fusion", "--halp"}, {"data.bas", "--halp"}}) {
    const Outcome refused = StartedWith(words, "offscreen", folder);
    EXPECT_EQ(refused.Status, 2) << words[0];
    EXPECT_EQ(refused.Out, "");
    EXPECT_NE(refused.Err.find("spectrane: there is no option --halp"), std::string::npos) << refused.Err;
  }
  EXPECT_FALSE(LeftIn(folder).contains(QStringLiteral("journal")));
}

#ifdef __linux__
TEST(WindowProgram, UsageThatReachesNobodyIsAFailedWrite) {
  QProcess program;
  program.setStandardOutputFile(QStringLiteral("/dev/full"));
  program.start(QStringLiteral(SPECTRANE_BIN "/spectrane"), {QStringLiteral("--help")});
  ASSERT_TRUE(program.waitForFinished(20000));
  EXPECT_EQ(program.exitCode(), 1);
}
#endif

}  // namespace
}  // namespace spectrane
