#include "app/desktop/keepawake.h"

#include <signal.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <memory>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusUnixFileDescriptor>
#include <QDBusVirtualObject>
#include <QElapsedTimer>

#include "desktopsupport.h"

namespace spectrane {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// Stands in for the services that keep a desktop awake, and remembers what it was asked.
class FakeDesktop : public QDBusVirtualObject {
 public:
  enum class Manner { Answers, Refuses, StaysSilent };

  QString introspect(const QString&) const override { return {}; }
  bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
    std::string call = message.member().toStdString();
    for (const QVariant& argument : message.arguments()) call += " | " + argument.toString().toStdString();
    Calls.push_back(call);
    if (Asked == Manner::StaysSilent) return true;
    if (Asked == Manner::Refuses) {
      connection.send(message.createErrorReply(QStringLiteral("org.example.No"), QStringLiteral("no")));
    } else if (message.interface() == QStringLiteral("org.freedesktop.login1.Manager")) {
      int ends[2] = {};
      EXPECT_EQ(::socketpair(AF_UNIX, SOCK_STREAM, 0, ends), 0);
      QDBusUnixFileDescriptor given;
      given.giveFileDescriptor(ends[0]);
      OwnEnd = ends[1];
      connection.send(message.createReply(QVariant::fromValue(given)));
    } else if (message.member() == QStringLiteral("Inhibit")) {
      connection.send(message.createReply(77U));
    } else {
      connection.send(message.createReply());
    }
    return true;
  }

  Manner Asked = Manner::Answers;
  std::vector<std::string> Calls;
  /// This side of the inhibitor that the login manager gave away; readable once the other side is closed.
  int OwnEnd = -1;
};

/// A bus of the test's own.
class KeepAwakeTest : public testing::Test {
 protected:
  void SetUp() override {
    if (!HasTool("dbus-daemon")) GTEST_SKIP() << "dbus-daemon is not installed";
    daemon_.start(QStringLiteral("dbus-daemon"),
                  {QStringLiteral("--session"), QStringLiteral("--nofork"), QStringLiteral("--print-address"),
                   QStringLiteral("--address=unix:path=%1/bus").arg(QString::fromStdString(folder_.Path()))});
    ASSERT_TRUE(WaitFor([&] { return daemon_.canReadLine(); }));
    address_ = daemon_.readLine().trimmed();
  }
  void TearDown() override {
    QDBusConnection::disconnectFromBus(QStringLiteral("fake"));
    if (daemon_.state() == QProcess::NotRunning) return;
    daemon_.kill();
    daemon_.waitForFinished();
  }

  /// Puts the fake service on the bus under that name.
  void Serve(const char* service) {
    QDBusConnection bus = QDBusConnection::connectToBus(QString::fromUtf8(address_), QStringLiteral("fake"));
    ASSERT_TRUE(bus.registerVirtualObject(QStringLiteral("/org"), &fake_, QDBusConnection::SubPath));
    ASSERT_TRUE(bus.registerService(QString::fromUtf8(service)));
  }

  ShortFolder folder_;
  ScopedVariable runtime_{"XDG_RUNTIME_DIR", nullptr};
  ScopedVariable display_{"DISPLAY", nullptr};
  ScopedVariable session_{"DBUS_SESSION_BUS_ADDRESS", nullptr};
  ScopedVariable system_{"DBUS_SYSTEM_BUS_ADDRESS", "unix:path=/nonexistent"};
  QProcess daemon_;
  QByteArray address_;
  FakeDesktop fake_;
};

const char* const kAsked = "Inhibit | Spectrane Basic | An instrument is in use";

TEST_F(KeepAwakeTest, AsksOnceAndTakesItBackAtTheEnd) {
  ScopedVariable session("DBUS_SESSION_BUS_ADDRESS", address_.constData());
  Serve("org.freedesktop.ScreenSaver");
  {
    KeepAwake keep;
    EXPECT_FALSE(WaitFor([&] { return !fake_.Calls.empty(); }, 50)) << "asked before Start()";
    keep.Start();
    keep.Start();
    ASSERT_TRUE(WaitFor([&] { return !fake_.Calls.empty(); }));
    EXPECT_FALSE(WaitFor([&] { return fake_.Calls.size() > 1; }, 100));
  }
  ASSERT_TRUE(WaitFor([&] { return fake_.Calls.size() > 1; }));
  EXPECT_THAT(fake_.Calls, ElementsAre(kAsked, "UnInhibit | 77"));
}

TEST_F(KeepAwakeTest, FindsTheBusInTheRuntimeFolder) {
  ScopedVariable runtime("XDG_RUNTIME_DIR", folder_.Path().c_str());
  Serve("org.freedesktop.ScreenSaver");
  KeepAwake keep;
  keep.Start();
  ASSERT_TRUE(WaitFor([&] { return !fake_.Calls.empty(); }));
  EXPECT_THAT(fake_.Calls, ElementsAre(kAsked));
}

TEST_F(KeepAwakeTest, FindsABusWithoutAFile) {
  const std::string name = "unix:abstract=/spectrane%2dtest-" + std::to_string(::getpid());
  QProcess daemon;
  daemon.start(QStringLiteral("dbus-daemon"),
               {QStringLiteral("--session"), QStringLiteral("--nofork"), QStringLiteral("--print-address"),
                QStringLiteral("--address=") + QString::fromStdString(name)});
  ASSERT_TRUE(WaitFor([&] { return daemon.canReadLine(); }));
  address_ = daemon.readLine().trimmed();
  // Behind one of a kind that the program does not use.
  ScopedVariable session("DBUS_SESSION_BUS_ADDRESS", ("tcp:host=127.0.0.1,port=1;" + address_).constData());
  Serve("org.freedesktop.ScreenSaver");
  KeepAwake keep;
  keep.Start();
  EXPECT_TRUE(WaitFor([&] { return !fake_.Calls.empty(); }));
  EXPECT_THAT(fake_.Calls, ElementsAre(kAsked));
  daemon.kill();
  daemon.waitForFinished();
}

TEST_F(KeepAwakeTest, TheEndBeforeTheAnswerTakesTheConnectionAway) {
  ScopedVariable session("DBUS_SESSION_BUS_ADDRESS", address_.constData());
  fake_.Asked = FakeDesktop::Manner::StaysSilent;
  Serve("org.freedesktop.ScreenSaver");
  {
    KeepAwake keep;
    keep.Start();
    ASSERT_TRUE(WaitFor([&] { return !fake_.Calls.empty(); }));
  }
  // The bus itself and the fake service are all that is left on it.
  const auto names = [] {
    const QDBusMessage list =
        QDBusMessage::createMethodCall(QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/"),
                                       QStringLiteral("org.freedesktop.DBus"), QStringLiteral("ListNames"));
    const QDBusMessage reply = QDBusConnection(QStringLiteral("fake")).call(list);
    return reply.arguments().at(0).toStringList().filter(QStringLiteral(":")).size();
  };
  EXPECT_TRUE(WaitFor([&] { return names() == 1; }));
}

TEST_F(KeepAwakeTest, ARefusalAndAMissingServiceAreSilent) {
  ScopedVariable session("DBUS_SESSION_BUS_ADDRESS", address_.constData());
  testing::internal::CaptureStderr();
  {
    KeepAwake nobody;
    nobody.Start();
    EXPECT_FALSE(WaitFor([] { return false; }, 50));
  }
  fake_.Asked = FakeDesktop::Manner::Refuses;
  Serve("org.freedesktop.ScreenSaver");
  {
    KeepAwake refused;
    refused.Start();
    ASSERT_TRUE(WaitFor([&] { return !fake_.Calls.empty(); }));
    EXPECT_FALSE(WaitFor([] { return false; }, 50));
  }
  EXPECT_FALSE(WaitFor([&] { return fake_.Calls.size() > 1; }, 100)) << "takes back what was never given";
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST_F(KeepAwakeTest, ABusThatEndsMeanwhileDoesNoHarm) {
  ScopedVariable session("DBUS_SESSION_BUS_ADDRESS", address_.constData());
  Serve("org.freedesktop.ScreenSaver");
  KeepAwake keep;
  keep.Start();
  ASSERT_TRUE(WaitFor([&] { return !fake_.Calls.empty(); }));
  daemon_.kill();
  ASSERT_TRUE(daemon_.waitForFinished());
  EXPECT_FALSE(WaitFor([] { return false; }, 100));
}

TEST_F(KeepAwakeTest, WithoutABusNoneIsStartedAndNothingIsSaid) {
  // A program of that name would be asked to start a bus.
  TemporaryFolder tools;
  WriteBytes(tools.Path("dbus-launch"), "#!/bin/sh\n: > '" + tools.Path("launched") + "'\n");
  std::filesystem::permissions(tools.Path("dbus-launch"), std::filesystem::perms::owner_all);
  ScopedVariable path("PATH", tools.Path().c_str());
  ScopedVariable display("DISPLAY", ":77");
  testing::internal::CaptureStderr();
  for (const char* address :
       {static_cast<const char*>(nullptr), "autolaunch:", "unix:path=/nonexistent", "x"}) {
    ScopedVariable session("DBUS_SESSION_BUS_ADDRESS", address);
    KeepAwake keep;
    keep.Start();
    EXPECT_FALSE(WaitFor([] { return false; }, 20));
  }
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
  EXPECT_FALSE(std::filesystem::exists(tools.Path("launched")));
}

TEST_F(KeepAwakeTest, TheLoginManagersInhibitorIsHeldUntilTheEnd) {
  ScopedVariable system("DBUS_SYSTEM_BUS_ADDRESS", address_.constData());
  Serve("org.freedesktop.login1");
  char byte = 0;
  {
    KeepAwake keep;
    keep.Start();
    ASSERT_TRUE(WaitFor([&] { return fake_.OwnEnd >= 0; }));
    EXPECT_FALSE(WaitFor([] { return false; }, 50));
    EXPECT_EQ(::recv(fake_.OwnEnd, &byte, 1, MSG_DONTWAIT), -1) << "let go of it";
    EXPECT_THAT(fake_.Calls,
                ElementsAre("Inhibit | idle | Spectrane Basic | An instrument is in use | block"));
  }
  EXPECT_TRUE(WaitFor([&] { return ::recv(fake_.OwnEnd, &byte, 1, MSG_DONTWAIT) == 0; }));
  ::close(fake_.OwnEnd);
}

TEST_F(KeepAwakeTest, ABusThatHangsDoesNotHoldTheProgramUp) {
  ScopedVariable session("DBUS_SESSION_BUS_ADDRESS", address_.constData());
  ::kill(static_cast<pid_t>(daemon_.processId()), SIGSTOP);
  QElapsedTimer timer;
  timer.start();
  {
    KeepAwake keep;
    keep.Start();
    EXPECT_FALSE(WaitFor([] { return false; }, 200));
  }
  EXPECT_LT(timer.elapsed(), 2000);
}

TEST_F(KeepAwakeTest, StartDoesNotWaitForTheAnswer) {
  ScopedVariable session("DBUS_SESSION_BUS_ADDRESS", address_.constData());
  fake_.Asked = FakeDesktop::Manner::StaysSilent;
  Serve("org.freedesktop.ScreenSaver");
  QElapsedTimer timer;
  KeepAwake keep;
  timer.start();
  keep.Start();
  qint64 longest = timer.nsecsElapsed();
  RecordProperty("start_us", std::to_string(longest / 1000));
  // Later, from the event loop, comes the connection.
  ASSERT_TRUE(WaitFor([&] {
    longest = std::max(longest, timer.nsecsElapsed());
    timer.start();
    return !fake_.Calls.empty();
  }));
  RecordProperty("longest_us", std::to_string(longest / 1000));
  // The answer never comes; far above what the connection takes.
  EXPECT_LT(longest, 1'000'000'000);
}

}  // namespace
}  // namespace spectrane
