#include "app/desktop/handover.h"

#include <signal.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <atomic>
#include <cstdio>
#include <cstring>
#include <future>
#include <memory>
#include <QDir>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QTimer>

#include "app/desktop/handovermessage.h"
#include "app/desktop/handoverplace.h"
#include "desktopsupport.h"

namespace spectrane {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using namespace std::string_literals;

// The message.

struct MessageRow {
  const char* Name;
  std::string Bytes;
  MessageState State;
};

class HandoverMessageTest : public testing::TestWithParam<MessageRow> {};

TEST_P(HandoverMessageTest, IsJudged) {
  QString path = QStringLiteral("untouched");
  EXPECT_EQ(ReadHandoverMessage(QByteArray::fromStdString(GetParam().Bytes), path), GetParam().State);
  EXPECT_EQ(path == QStringLiteral("untouched"), GetParam().State != MessageState::Whole);
}

INSTANTIATE_TEST_SUITE_P(
    Messages, HandoverMessageTest,
    testing::Values(MessageRow{"Whole", "FormMain\n/a/b.wls\0"s, MessageState::Whole},
                    MessageRow{"Utf8", "FormMain\n/\xce\xbcl/\xf0\x9f\x94\xac.bas\0"s, MessageState::Whole},
                    MessageRow{"Longest", "FormMain\n/" + std::string(4085, 'a') + '\0', MessageState::Whole},
                    MessageRow{"OneByteTooLong", "FormMain\n/" + std::string(4086, 'a') + '\0',
                               MessageState::Wrong},
                    MessageRow{"FullWithoutEnd", "FormMain\n/" + std::string(4086, 'a'), MessageState::Wrong},
                    MessageRow{"Nothing", "", MessageState::Unfinished},
                    MessageRow{"HalfATopic", "FormM", MessageState::Unfinished},
                    MessageRow{"HalfAPath", "FormMain\n/a", MessageState::Unfinished},
                    MessageRow{"OtherTopic", "FormOther\n/a\0"s, MessageState::Wrong},
                    MessageRow{"LowerCaseTopic", "formmain\n/a\0"s, MessageState::Wrong},
                    MessageRow{"Garbage", "\xff\xfe\x01", MessageState::Wrong},
                    MessageRow{"EndMarkAtOnce", "\0"s, MessageState::Wrong},
                    MessageRow{"EmptyPath", "FormMain\n\0"s, MessageState::Wrong},
                    MessageRow{"RelativePath", "FormMain\na/b.wls\0"s, MessageState::Wrong},
                    MessageRow{"ResourcePath", "FormMain\n:/a.wls\0"s, MessageState::Wrong},
                    MessageRow{"LineEnd", "FormMain\n/a\n/b\0"s, MessageState::Wrong},
                    MessageRow{"CarriageReturn", "FormMain\n/a\r\0"s, MessageState::Wrong},
                    MessageRow{"NoUtf8", "FormMain\n/\xff.wls\0"s, MessageState::Wrong},
                    MessageRow{"OverlongUtf8", "FormMain\n/\xc0\xaf\0"s, MessageState::Wrong},
                    MessageRow{"HalfASurrogate", "FormMain\n/\xed\xa0\x80\0"s, MessageState::Wrong},
                    MessageRow{"MoreBehindTheEnd", "FormMain\n/a\0/b\0"s, MessageState::Wrong}),
    [](const auto& row) { return std::string(row.param.Name); });

TEST(HandoverMessageTest, EachPathComesBackAsItWent) {
  for (const char* text : {"/a", "/a b/c\td.wls", "/\xce\xbc\xe4\xb8\xad.bas", "/a/../b"}) {
    QString path;
    EXPECT_EQ(ReadHandoverMessage(HandoverMessage(QString::fromUtf8(text)), path), MessageState::Whole);
    EXPECT_EQ(path, QString::fromUtf8(text));
  }
}

TEST(HandoverMessageTest, WhatCannotBeHandedOverMakesNoMessage) {
  for (const std::string& text : {""s, "a.wls"s, "/a\nb"s, "/a\0b"s, "/" + std::string(4086, 'a')}) {
    EXPECT_TRUE(HandoverMessage(Q(text)).isEmpty()) << text.substr(0, 20);
  }
  EXPECT_TRUE(HandoverMessage(QStringLiteral("/") + QChar(0xD800)).isEmpty());
}

// The place.

class HandoverPlaceTest : public testing::Test {
 protected:
  ShortFolder folder_;
  const std::string runtime_ = folder_.Path() + "/r";
  const std::string temporary_ = folder_.Path() + "/t";
  const std::string ofUser_ = temporary_ + "/spectrane-" + std::to_string(::geteuid());
  ScopedVariable runtimeVariable_{"XDG_RUNTIME_DIR", runtime_.c_str()};
  ScopedVariable temporaryVariable_{"TMPDIR", temporary_.c_str()};

  void SetUp() override {
    ASSERT_EQ(::mkdir(runtime_.c_str(), 0700), 0);
    ASSERT_EQ(::mkdir(temporary_.c_str(), 0777), 0);
  }
  /// Folder of the place; empty when there is none.
  static std::string Folder() {
    const auto place = FindHandoverPlace();
    return place ? fs::path(place->SocketName.toStdString()).parent_path().string() : std::string();
  }
  static unsigned ModeOf(const std::string& path) {
    struct stat status {};
    return ::stat(path.c_str(), &status) == 0 ? status.st_mode & 07777 : 0;
  }
};

TEST_F(HandoverPlaceTest, IsAPrivateFolderOfTheRuntimeFolder) {
  EXPECT_EQ(Folder(), runtime_ + "/spectrane");
  EXPECT_EQ(ModeOf(runtime_ + "/spectrane"), 0700U);
  EXPECT_EQ(Folder(), runtime_ + "/spectrane");
}

TEST_F(HandoverPlaceTest, WithoutARuntimeFolderIsAPrivateFolderOfTheTemporaryOne) {
  ::chmod(runtime_.c_str(), 0755);
  EXPECT_EQ(Folder(), ofUser_) << "runtime folder open to others";
  for (const char* value : {static_cast<const char*>(nullptr), "", "relative", "/nonexistent"}) {
    ScopedVariable runtime("XDG_RUNTIME_DIR", value);
    EXPECT_EQ(Folder(), ofUser_);
  }
  EXPECT_EQ(ModeOf(ofUser_), 0700U);
}

TEST_F(HandoverPlaceTest, AFolderThatOthersCanEnterIsNoPlace) {
  ScopedVariable runtime("XDG_RUNTIME_DIR", nullptr);
  ::mkdir(ofUser_.c_str(), 0700);
  ::chmod(ofUser_.c_str(), 0710);
  EXPECT_EQ(Folder(), "");
  ::chmod(ofUser_.c_str(), 0700);
  EXPECT_EQ(Folder(), ofUser_);
}

TEST_F(HandoverPlaceTest, ALinkOrAFileInItsPlaceIsNoPlace) {
  ScopedVariable runtime("XDG_RUNTIME_DIR", nullptr);
  fs::create_directory_symlink(runtime_, ofUser_);
  EXPECT_EQ(Folder(), "");
  fs::remove(ofUser_);
  WriteBytes(ofUser_, "");
  EXPECT_EQ(Folder(), "");
}

TEST_F(HandoverPlaceTest, AnotherUsersFolderIsNoPlace) {
  if (::geteuid() != 0) GTEST_SKIP() << "only root can give a folder away";
  ScopedVariable runtime("XDG_RUNTIME_DIR", nullptr);
  ::mkdir(ofUser_.c_str(), 0700);
  ASSERT_EQ(::chown(ofUser_.c_str(), 65534, 65534), 0);
  EXPECT_EQ(Folder(), "");
}

TEST_F(HandoverPlaceTest, EachScreenHasItsOwn) {
  ScopedVariable wayland("WAYLAND_DISPLAY", nullptr);
  QStringList names;
  for (const char* display : {static_cast<const char*>(nullptr), ":0", ":1", "localhost:10.0"}) {
    ScopedVariable variable("DISPLAY", display);
    names += FindHandoverPlace()->SocketName;
  }
  ScopedVariable variable("WAYLAND_DISPLAY", "/run/user/1000/wayland-0");
  names += FindHandoverPlace()->SocketName;
  EXPECT_EQ(names.removeDuplicates(), 0);
  EXPECT_EQ(names, names.filter(Q(runtime_ + "/spectrane/")));
}

// Server and client.

constexpr const char* kRoleVariable = "SPECTRANE_TEST_OTHER_COPY";

/// Another process of this test program, which plays another copy: it listens until it is killed.
std::unique_ptr<QProcess> OtherCopy() {
  const ScopedVariable role(kRoleVariable, "1");
  auto copy = std::make_unique<QProcess>();
  copy->start(QCoreApplication::applicationFilePath(), {QStringLiteral("--gtest_filter=HandoverCopy.*")});
  return copy;
}

/// Waits until the other copy has told whether it owns the name.
std::string Verdict(QProcess& copy) {
  std::string verdict;
  WaitFor([&] {
    while (copy.canReadLine()) {
      const std::string line = copy.readLine().trimmed().toStdString();
      if (line == "owner" || line == "other") verdict = line;
    }
    return !verdict.empty();
  });
  return verdict;
}

TEST(HandoverCopy, OwnsTheNameUntilItIsKilled) {
  if (std::getenv(kRoleVariable) != nullptr) {
    HandoverServer server;
    std::puts(server.Listen() ? "owner" : "other");
    std::fflush(stdout);
    WaitFor([] { return false; }, 20000);
    return;
  }
  const ShortFolder folder;
  const ScopedVariable runtime("XDG_RUNTIME_DIR", folder.Path().c_str());
  for (int i = 0; i < 2; ++i) {
    const auto owner = OtherCopy();
    EXPECT_EQ(Verdict(*owner), "owner");
    const auto other = OtherCopy();
    EXPECT_EQ(Verdict(*other), "other");
    other->kill();
    owner->kill();
    EXPECT_TRUE(other->waitForFinished() && owner->waitForFinished());
  }
}

class HandoverTest : public testing::Test {
 protected:
  ShortFolder folder_;
  ScopedVariable runtime_{"XDG_RUNTIME_DIR", folder_.Path().c_str()};
  HandoverServer server_;
  std::vector<std::string> received_;

  void SetUp() override {
    QObject::connect(&server_, &HandoverServer::PathReceived, &server_,
                     [this](const QString& path) { received_.push_back(path.toStdString()); });
  }

  /// SendToRunningCopy() from a thread, as from another process.
  static std::future<bool> Send(const std::string& path, int timeoutMs = 2000) {
    return std::async(std::launch::async, [=] { return SendToRunningCopy(Q(path), timeoutMs); });
  }
  static bool Finished(std::future<bool>& sending) {
    return WaitFor([&] { return sending.wait_for(std::chrono::seconds(0)) == std::future_status::ready; });
  }
  /// A well-behaved copy gets its file through.
  void ExpectStillServing() {
    received_.clear();
    auto sending = Send("/still/here.bas");
    ASSERT_TRUE(Finished(sending));
    EXPECT_TRUE(sending.get());
    EXPECT_TRUE(WaitFor([&] { return !received_.empty(); }));
    EXPECT_THAT(received_, ElementsAre("/still/here.bas"));
  }
};

/// A peer that sends what it likes.
class RawPeer {
 public:
  RawPeer() : socket_(::socket(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK, 0)) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    const std::string name = FindHandoverPlace()->SocketName.toStdString();
    name.copy(address.sun_path, sizeof address.sun_path - 1);
    Connected = ::connect(socket_, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0;
  }
  ~RawPeer() { ::close(socket_); }
  RawPeer(const RawPeer&) = delete;
  RawPeer& operator=(const RawPeer&) = delete;

  /// Bytes that were taken, -1 when the connection is gone.
  ssize_t Send(const std::string& bytes) const {
    return ::send(socket_, bytes.data(), bytes.size(), MSG_NOSIGNAL);
  }
  /// What has come; "gone" at the end of the connection.
  std::string Receive() const {
    char buffer[64];
    const ssize_t count = ::recv(socket_, buffer, sizeof buffer, 0);
    if (count > 0) return std::string(buffer, static_cast<std::size_t>(count));
    return count == 0 || errno == ECONNRESET ? "gone" : "";
  }
  bool Gone() const { return Receive() == "gone"; }

  bool Connected = false;

 private:
  int socket_;
};

TEST_F(HandoverTest, APathGoesFromCopyToCopy) {
  ASSERT_TRUE(server_.Listen());
  EXPECT_TRUE(server_.Listen());
  auto sending = Send("/data/\xce\xbcl scan.wls");
  ASSERT_TRUE(Finished(sending));
  EXPECT_TRUE(sending.get());
  ASSERT_TRUE(WaitFor([&] { return !received_.empty(); }));
  EXPECT_FALSE(WaitFor([&] { return received_.size() > 1; }, 50));
  EXPECT_THAT(received_, ElementsAre("/data/\xce\xbcl scan.wls"));
}

TEST_F(HandoverTest, ARelativePathIsSentAsTheSendersOwnFile) {
  ASSERT_TRUE(server_.Listen());
  auto sending = Send("today.bas");
  ASSERT_TRUE(Finished(sending));
  EXPECT_TRUE(sending.get());
  ASSERT_TRUE(WaitFor([&] { return !received_.empty(); }));
  EXPECT_THAT(received_, ElementsAre(QDir::currentPath().toStdString() + "/today.bas"));
}

TEST_F(HandoverTest, NobodyThereIsToldAtOnce) {
  QElapsedTimer timer;
  timer.start();
  EXPECT_FALSE(SendToRunningCopy(QStringLiteral("/a.bas")));
  EXPECT_LT(timer.elapsed(), 400);
  EXPECT_FALSE(SendToRunningCopy(QString()));
}

TEST_F(HandoverTest, OneOwnerAndTheNextOneWhenItEnds) {
  HandoverServer second;
  {
    HandoverServer first;
    ASSERT_TRUE(first.Listen());
    EXPECT_FALSE(second.Listen());
    EXPECT_FALSE(second.Listening());
    EXPECT_TRUE(first.Listening());
  }
  EXPECT_TRUE(second.Listen());
  EXPECT_FALSE(server_.Listen());
}

TEST_F(HandoverTest, ALivingOwnerKeepsTheNameThoughItsLockFileWasSweptAway) {
  HandoverServer other;
  ASSERT_TRUE(server_.Listen());
  ASSERT_TRUE(fs::remove(FindHandoverPlace()->LockPath.toStdString()));
  EXPECT_FALSE(other.Listen());
  ExpectStillServing();
}

TEST_F(HandoverTest, TheSocketIsThisUsersAlone) {
  ASSERT_TRUE(server_.Listen());
  struct stat status {};
  ASSERT_EQ(::stat(FindHandoverPlace()->SocketName.toStdString().c_str(), &status), 0);
  EXPECT_TRUE(S_ISSOCK(status.st_mode));
  EXPECT_EQ(status.st_mode & 0077, 0U);
}

TEST_F(HandoverTest, ANameLeftByACrashIsTakenOver) {
  const auto crashed = OtherCopy();
  ASSERT_EQ(Verdict(*crashed), "owner");
  EXPECT_FALSE(server_.Listen());
  crashed->kill();
  ASSERT_TRUE(crashed->waitForFinished());
  ASSERT_TRUE(fs::exists(FindHandoverPlace()->SocketName.toStdString()));
  ASSERT_TRUE(fs::exists(FindHandoverPlace()->LockPath.toStdString()));
  EXPECT_FALSE(SendToRunningCopy(QStringLiteral("/a.bas")));
  ASSERT_TRUE(server_.Listen());
  ExpectStillServing();
}

TEST_F(HandoverTest, OfManyCopiesStartedTogetherOneIsTheOwner) {
  // The name of a crashed one lies there: all find it dead at the same moment.
  const auto crashed = OtherCopy();
  ASSERT_EQ(Verdict(*crashed), "owner");
  crashed->kill();
  ASSERT_TRUE(crashed->waitForFinished());
  std::vector<std::unique_ptr<QProcess>> copies;
  for (int i = 0; i < 6; ++i) copies.push_back(OtherCopy());
  int owners = 0;
  for (const auto& copy : copies) owners += Verdict(*copy) == "owner" ? 1 : 0;
  EXPECT_EQ(owners, 1);
  for (const auto& copy : copies) {
    copy->kill();
    copy->waitForFinished();
  }
}

TEST_F(HandoverTest, AnOwnerThatHangsKeepsTheNameAndHoldsNobodyUp) {
  const auto hung = OtherCopy();
  ASSERT_EQ(Verdict(*hung), "owner");
  ::kill(static_cast<pid_t>(hung->processId()), SIGSTOP);
  QElapsedTimer timer;
  timer.start();
  EXPECT_FALSE(SendToRunningCopy(QStringLiteral("/a.bas"), 200));
  EXPECT_GE(timer.elapsed(), 190);
  EXPECT_LT(timer.elapsed(), 1500);
  EXPECT_FALSE(server_.Listen());
  hung->kill();
  hung->waitForFinished();
}

TEST_F(HandoverTest, WithoutAPlaceTheProgramGoesOn) {
  const std::string deep = folder_.Path() + "/" + std::string(90, 'd');
  ASSERT_EQ(::mkdir(deep.c_str(), 0700), 0);
  for (const std::string& runtime : {deep, folder_.Path() + "/missing"}) {
    ScopedVariable variable("XDG_RUNTIME_DIR", runtime.c_str());
    ScopedVariable temporary("TMPDIR", (folder_.Path() + "/missing").c_str());
    EXPECT_FALSE(server_.Listen());
    EXPECT_FALSE(SendToRunningCopy(QStringLiteral("/a.bas")));
  }
  EXPECT_TRUE(server_.Listen());
}

TEST_F(HandoverTest, AMessageInPiecesArrivesWhole) {
  ASSERT_TRUE(server_.Listen());
  const RawPeer peer;
  for (const char c : "FormMain\n/a/b.wls"s) {
    EXPECT_EQ(peer.Send(std::string(1, c)), 1);
    WaitFor([] { return false; }, 5);
  }
  EXPECT_THAT(received_, IsEmpty());
  EXPECT_EQ(peer.Receive(), "");
  peer.Send("\0"s);
  ASSERT_TRUE(WaitFor([&] { return !received_.empty(); }));
  EXPECT_THAT(received_, ElementsAre("/a/b.wls"));
  EXPECT_EQ(peer.Receive(), "OK\n");
  // Nothing more is taken from it.
  peer.Send("FormMain\n/second\0"s);
  EXPECT_TRUE(WaitFor([&] { return peer.Gone(); }));
  EXPECT_THAT(received_, SizeIs(1));
}

TEST_F(HandoverTest, ASenderThatDoesNotWaitForTheAnswerIsHeard) {
  ASSERT_TRUE(server_.Listen());
  { EXPECT_GT(RawPeer().Send("FormMain\n/hasty.bas\0"s), 0); }
  EXPECT_TRUE(WaitFor([&] { return !received_.empty(); }));
  EXPECT_THAT(received_, ElementsAre("/hasty.bas"));
  ExpectStillServing();
}

TEST_F(HandoverTest, WrongMessagesEndTheConnectionAtOnce) {
  ASSERT_TRUE(server_.Listen());
  for (const std::string& bytes :
       {"GET / HTTP/1.1\r\n"s, "FormMain\nrelative\0"s, "FormMain\n/a\nb\0"s, "FormMain\n/\xff\0"s,
        "FormMain\n/a\0/b\0"s, "FormMain\n/" + std::string(5000, 'a')}) {
    const RawPeer peer;
    peer.Send(bytes);
    QElapsedTimer timer;
    timer.start();
    EXPECT_TRUE(WaitFor([&] { return peer.Gone(); })) << bytes.substr(0, 20);
    EXPECT_LT(timer.elapsed(), 1500);
  }
  EXPECT_THAT(received_, IsEmpty());
  ExpectStillServing();
}

TEST_F(HandoverTest, AFloodIsCutOff) {
  ASSERT_TRUE(server_.Listen());
  const RawPeer peer;
  const std::string piece(65536, 'x');
  std::size_t sent = 0;
  ASSERT_GT(peer.Send("FormMain\n/"), 0);
  ASSERT_TRUE(WaitFor([&] {
    const ssize_t count = peer.Send(piece);
    if (count > 0) sent += static_cast<std::size_t>(count);
    return count < 0 && errno != EAGAIN;
  }));
  EXPECT_LT(sent, 4000000U);
  ExpectStillServing();
}

TEST_F(HandoverTest, SilentAndDawdlingPeersAreDroppedAfterTwoSeconds) {
  ASSERT_TRUE(server_.Listen());
  QElapsedTimer timer;
  timer.start();
  const RawPeer silent;
  const RawPeer dawdling;
  QTimer drip;
  dawdling.Send("FormMain\n/");
  QObject::connect(&drip, &QTimer::timeout, &drip, [&] { dawdling.Send("a"); });
  drip.start(100);
  WaitFor([&] { return silent.Gone() || dawdling.Gone(); }, 1500);
  EXPECT_GE(timer.elapsed(), 1500) << "dropped too early";
  bool silentGone = false;
  bool dawdlingGone = false;
  EXPECT_TRUE(WaitFor([&] {
    silentGone = silentGone || silent.Gone();
    dawdlingGone = dawdlingGone || dawdling.Gone();
    return silentGone && dawdlingGone;
  }));
  EXPECT_LT(timer.elapsed(), 4000);
  ExpectStillServing();
}

TEST_F(HandoverTest, TheNinthPeerIsDroppedAndTheEightStay) {
  ASSERT_TRUE(server_.Listen());
  std::vector<std::unique_ptr<RawPeer>> peers;
  for (int i = 0; i < 9; ++i) peers.push_back(std::make_unique<RawPeer>());
  EXPECT_TRUE(WaitFor([&] { return peers[8]->Gone(); }, 1000));
  for (std::size_t i = 0; i < 8; ++i) EXPECT_FALSE(peers[i]->Gone()) << i;
  peers[0]->Send("FormMain\n/first.bas\0"s);
  EXPECT_TRUE(WaitFor([&] { return !received_.empty(); }));
  peers.clear();
  WaitFor([] { return false; }, 50);
  ExpectStillServing();
}

TEST_F(HandoverTest, AThousandConnectionsDoNoHarm) {
  ASSERT_TRUE(server_.Listen());
  std::vector<std::unique_ptr<RawPeer>> peers;
  int connected = 0;
  for (int i = 0; i < 1000; ++i) {
    auto peer = std::make_unique<RawPeer>();
    connected += peer->Connected ? 1 : 0;
    if (i % 3 != 0) peers.push_back(std::move(peer));
    QCoreApplication::processEvents();
    if (peers.size() > 100) peers.clear();
  }
  EXPECT_EQ(connected, 1000);
  peers.clear();
  WaitFor([] { return false; }, 100);
  ExpectStillServing();
}

TEST_F(HandoverTest, PathsWaitWhileAReceiverIsBusy) {
  ASSERT_TRUE(server_.Listen());
  int depth = 0;
  int deepest = 0;
  QObject::connect(&server_, &HandoverServer::PathReceived, &server_, [&] {
    deepest = std::max(deepest, ++depth);
    // Like a message box that stays open for a while.
    WaitFor([] { return false; }, 100);
    --depth;
  });
  std::vector<std::unique_ptr<RawPeer>> peers;
  for (int i = 0; i < 3; ++i) {
    peers.push_back(std::make_unique<RawPeer>());
    peers.back()->Send("FormMain\n/" + std::to_string(i) + '\0');
  }
  ASSERT_TRUE(WaitFor([&] { return received_.size() == 3 && depth == 0; }));
  EXPECT_EQ(deepest, 1);
  EXPECT_THAT(received_, ElementsAre("/0", "/1", "/2"));
}

TEST_F(HandoverTest, TheQueueOfABusyReceiverHasAnEnd) {
  ASSERT_TRUE(server_.Listen());
  int taken = 0;
  bool once = false;
  QObject::connect(&server_, &HandoverServer::PathReceived, &server_, [&] {
    if (std::exchange(once, true)) return;
    for (int i = 0; i < 80; ++i) {
      const RawPeer peer;
      peer.Send("FormMain\n/more\0"s);
      std::string answer;
      WaitFor([&] { return !(answer = peer.Receive()).empty(); });
      taken += answer == "OK\n" ? 1 : 0;
    }
  });
  RawPeer().Send("FormMain\n/first\0"s);
  ASSERT_TRUE(WaitFor([&] { return received_.size() == 65; }, 10000));
  EXPECT_EQ(taken, 64);
  ExpectStillServing();
}

TEST_F(HandoverTest, TheServerMayGoWhileItDelivers) {
  auto server = std::make_unique<HandoverServer>();
  ASSERT_TRUE(server->Listen());
  QObject::connect(server.get(), &HandoverServer::PathReceived, QCoreApplication::instance(),
                   [&] { server.reset(); });
  const RawPeer first;
  const RawPeer second;
  const RawPeer silent;
  first.Send("FormMain\n/1\0"s);
  second.Send("FormMain\n/2\0"s);
  EXPECT_TRUE(WaitFor([&] { return server == nullptr; }));
  EXPECT_TRUE(WaitFor([&] { return silent.Gone(); }));
  EXPECT_TRUE(server_.Listen());
}

TEST_F(HandoverTest, ListeningCostsAStartNextToNothing) {
  QElapsedTimer timer;
  timer.start();
  ASSERT_TRUE(server_.Listen());
  RecordProperty("listen_us", std::to_string(timer.nsecsElapsed() / 1000));
  EXPECT_LT(timer.elapsed(), 500);
}

}  // namespace
}  // namespace spectrane
