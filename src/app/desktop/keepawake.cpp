#include "app/desktop/keepawake.h"

#ifdef _WIN32
#include "base/windowsheader.h"
#else
#include <sys/stat.h>

#include <optional>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusUnixFileDescriptor>
#include <QLocalSocket>
#include <string>

#include "base/brand.h"
#include "base/environment.h"
#endif

namespace spectrane {

#ifdef _WIN32

class KeepAwake::Requests {
 public:
  Requests() { SetThreadExecutionState(ES_CONTINUOUS | ES_SYSTEM_REQUIRED | ES_DISPLAY_REQUIRED); }
  ~Requests() { SetThreadExecutionState(ES_CONTINUOUS); }
};

#else

namespace {

bool IsSocket(const std::string& path) {
  struct stat status {};
  return ::stat(path.c_str(), &status) == 0 && S_ISSOCK(status.st_mode);
}

/// Addresses of the session's bus, where it is known to run.
std::optional<std::string> SessionBusAddress() {
  if (auto address = EnvironmentText("DBUS_SESSION_BUS_ADDRESS")) return address;
  const auto folder = EnvironmentText("XDG_RUNTIME_DIR");
  if (!folder || folder->front() != '/' || !IsSocket(*folder + "/bus")) return std::nullopt;
  return "unix:path=" + *folder + "/bus";
}

std::optional<std::string> SystemBusAddress() {
  if (auto address = EnvironmentText("DBUS_SYSTEM_BUS_ADDRESS")) return address;
  constexpr const char* kUsualPlace = "/run/dbus/system_bus_socket";
  if (!IsSocket(kUsualPlace)) return std::nullopt;
  return std::string("unix:path=") + kUsualPlace;
}

/// The local socket of a bus.
struct BusSocket {
  /// The part of the bus's address that names it.
  QString Address;
  QString Name;
  QLocalSocket::SocketOptions Options;
};

/// The first local socket that the addresses of a bus name. Buses reached otherwise are left alone, above all
/// one that would have to be started first.
std::optional<BusSocket> SocketOf(const std::string& addresses) {
  for (const QString& address : QString::fromStdString(addresses).split(u';')) {
    if (!address.startsWith(QStringLiteral("unix:"))) continue;
    for (const QString& part : address.sliced(5).split(u',')) {
      const qsizetype equals = part.indexOf(u'=');
      if (equals < 0) continue;
      const QString key = part.first(equals);
      const QString name =
          QString::fromUtf8(QByteArray::fromPercentEncoding(part.sliced(equals + 1).toUtf8()));
      if (key == QStringLiteral("path")) return BusSocket{address, name, {}};
      if (key == QStringLiteral("abstract"))
        return BusSocket{address, name, QLocalSocket::AbstractNamespaceOption};
    }
  }
  return std::nullopt;
}

}  // namespace

/// Each request has a connection of its own, so that the end of the connection takes the request back
/// whatever became of it.
class KeepAwake::Requests : public QObject {
 public:
  Requests() {
    WhenAlive(SessionBusAddress(), &Requests::AskScreenSaver);
    WhenAlive(SystemBusAddress(), &Requests::AskLoginManager);
  }

  ~Requests() override {
    if (cookie_) {
      QDBusMessage call = ScreenSaverCall(QStringLiteral("UnInhibit"));
      call << *cookie_;
      QDBusConnection(sessionName_).send(call);
    }
    QDBusConnection::disconnectFromBus(sessionName_);
    QDBusConnection::disconnectFromBus(systemName_);
  }

 private:
  static QDBusMessage ScreenSaverCall(const QString& method) {
    const QString service = QStringLiteral("org.freedesktop.ScreenSaver");
    QDBusMessage call = QDBusMessage::createMethodCall(
        service, QStringLiteral("/org/freedesktop/ScreenSaver"), service, method);
    call.setAutoStartService(false);
    return call;
  }

  /// Calls `ask` from the event loop once the bus has shown that it answers: connecting to one that hangs
  /// would hold the program up for good. Asked is how one may log in, the one question that needs no
  /// connection.
  void WhenAlive(const std::optional<std::string>& addresses, void (Requests::*ask)(const QString&)) {
    const auto bus = addresses ? SocketOf(*addresses) : std::nullopt;
    if (!bus) return;
    auto* const probe = new QLocalSocket(this);
    probe->setSocketOptions(bus->Options);
    connect(probe, &QLocalSocket::connected, this, [probe] { probe->write(QByteArray("\0AUTH\r\n", 7)); });
    connect(probe, &QLocalSocket::readyRead, this, [this, probe, ask, address = bus->Address] {
      probe->disconnect(this);
      probe->abort();
      probe->deleteLater();
      (this->*ask)(address);
    });
    probe->connectToServer(bus->Name);
  }

  static QString Who() { return QString::fromUtf8(BuildBrand().Title); }
  static QString Why() { return QStringLiteral("An instrument is in use"); }

  void AskScreenSaver(const QString& address) {
    const QDBusConnection bus = QDBusConnection::connectToBus(address, sessionName_);
    if (!bus.isConnected()) return;
    QDBusMessage call = ScreenSaverCall(QStringLiteral("Inhibit"));
    call << Who() << Why();
    auto* const watcher = new QDBusPendingCallWatcher(bus.asyncCall(call), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
      const QDBusPendingReply<uint> reply = *watcher;
      if (reply.isValid()) cookie_ = reply.value();
      watcher->deleteLater();
    });
  }

  /// For desktops whose screen saver knows nothing of the machine's own idle action.
  void AskLoginManager(const QString& address) {
    const QDBusConnection bus = QDBusConnection::connectToBus(address, systemName_);
    if (!bus.isConnected()) return;
    QDBusMessage call = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.login1"), QStringLiteral("/org/freedesktop/login1"),
        QStringLiteral("org.freedesktop.login1.Manager"), QStringLiteral("Inhibit"));
    call.setAutoStartService(false);
    call << QStringLiteral("idle") << Who() << Why() << QStringLiteral("block");
    auto* const watcher = new QDBusPendingCallWatcher(bus.asyncCall(call), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
      const QDBusPendingReply<QDBusUnixFileDescriptor> reply = *watcher;
      if (reply.isValid()) inhibitor_ = reply.value();
      watcher->deleteLater();
    });
  }

  const QString sessionName_ = QStringLiteral("keep-awake-session-%1").arg(quintptr(this));
  const QString systemName_ = QStringLiteral("keep-awake-system-%1").arg(quintptr(this));
  std::optional<uint> cookie_;
  /// The request holds as long as this is open.
  QDBusUnixFileDescriptor inhibitor_;
};

#endif

KeepAwake::KeepAwake(QObject* parent) : QObject(parent) {}

KeepAwake::~KeepAwake() = default;

void KeepAwake::Start() {
  if (requests_ == nullptr) requests_ = std::make_unique<Requests>();
}

}  // namespace spectrane
