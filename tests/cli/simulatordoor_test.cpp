// The simulator as a program: when it opens a window, and how it ends.
#ifndef _WIN32

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QProcessEnvironment>
#include <QTemporaryDir>

#include <string>
#include <vector>

namespace spectrane {
namespace {

class SimulatorDoor : public testing::Test {
 protected:
  /// Starts the simulator with these variables in place of the machine's display.
  void Start(QStringList options, const std::vector<std::pair<const char*, const char*>>& display) {
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const char* name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"}) {
      environment.remove(QString::fromLatin1(name));
    }
    for (const char* name :
         {"XDG_RUNTIME_DIR", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME", "HOME"}) {
      environment.insert(QString::fromLatin1(name), Folder.path());
    }
    for (const auto& [name, value] : display) {
      environment.insert(QString::fromLatin1(name), QString::fromLatin1(value));
    }
    Process.setProcessEnvironment(environment);
    Process.setStandardInputFile(QProcess::nullDevice());
    Process.start(QStringLiteral(SPECTRANE_BIN "/spectrane-simulator"),
                  QStringList{QStringLiteral("--link"), Link(), QStringLiteral("--log"), Log()} + options);
    ASSERT_TRUE(Process.waitForStarted(5000));
    while (!Process.canReadLine()) {
      ASSERT_TRUE(Process.waitForReadyRead(10000)) << Process.readAllStandardError().toStdString();
    }
    ASSERT_EQ(Process.readLine().toStdString(), "ready " + Link().toStdString() + "\n");
  }
  /// Ends it by SIGTERM; gives what it wrote to standard error.
  std::string Stop() {
    Process.terminate();
    EXPECT_TRUE(Process.waitForFinished(5000));
    EXPECT_EQ(Process.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(Process.exitCode(), 0);
    EXPECT_FALSE(QFileInfo(Link()).isSymLink());
    return Process.readAllStandardError().toStdString();
  }
  ~SimulatorDoor() override {
    if (Process.state() == QProcess::NotRunning) return;
    Process.kill();
    Process.waitForFinished(5000);
  }
  bool UsesWidgets() {
    QFile maps(QStringLiteral("/proc/%1/maps").arg(Process.processId()));
    return maps.open(QIODevice::ReadOnly) && maps.readAll().contains("/platforms/");
  }

  QString Link() const { return Folder.filePath(QStringLiteral("line")); }
  QString Log() const { return Folder.filePath(QStringLiteral("log")); }

  QTemporaryDir Folder;
  QProcess Process;
};

TEST_F(SimulatorDoor, WithoutADisplayItSaysSoInOneLineAndGoesOn) {
  Start({}, {});
  const std::string words = Stop();
  EXPECT_EQ(words, "spectrane-simulator: there is no display; going on without a window\n");
}

TEST_F(SimulatorDoor, AnEmptyDisplayIsNone) {
  Start({}, {{"DISPLAY", ""}, {"WAYLAND_DISPLAY", ""}});
  EXPECT_THAT(Stop(), testing::HasSubstr("there is no display"));
}

TEST_F(SimulatorDoor, HeadlessSaysNothingAndAsksForNoDisplay) {
  // A display that does not answer would end a program that asks for it.
  Start({QStringLiteral("--headless")}, {{"DISPLAY", ":987"}});
#ifdef __linux__
  EXPECT_FALSE(UsesWidgets());
#endif
  EXPECT_EQ(Stop(), "");
}

TEST_F(SimulatorDoor, WithADisplayItOpensItsWindowAndEndsByASignalAsEver) {
  Start({}, {{"QT_QPA_PLATFORM", "offscreen"}});
#ifdef __linux__
  EXPECT_TRUE(UsesWidgets());
#endif
  EXPECT_THAT(Stop(), testing::Not(testing::HasSubstr("spectrane-simulator")));
}

}  // namespace
}  // namespace spectrane

#endif
