#include "simulator/ptytransport.h"

#ifdef _WIN32

namespace spectrane {

PtyTransport::PtyTransport(QString link, QObject* parent) : Transport(parent), link_(std::move(link)) {}
PtyTransport::~PtyTransport() = default;

bool PtyTransport::Open(QString& reason) {
  reason = QStringLiteral("this system has no pseudo-terminals; use --device with a serial port");
  return false;
}

void PtyTransport::HangUp() {}
void PtyTransport::Send(const QByteArray&) {}

}  // namespace spectrane

#else

#include <fcntl.h>
#include <stdlib.h>
#include <termios.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <string>
#include <utility>

namespace spectrane {
namespace {

namespace fs = std::filesystem;

// What a program never reads must not grow without end.
constexpr qsizetype MaximumWaiting = 1 << 20;

QString SystemReason(const char* what) {
  return QString::fromUtf8(what) + QStringLiteral(": ") + QString::fromLocal8Bit(std::strerror(errno));
}

}  // namespace

PtyTransport::PtyTransport(QString link, QObject* parent) : Transport(parent), link_(std::move(link)) {}

PtyTransport::~PtyTransport() {
  PtyTransport::HangUp();
}

bool PtyTransport::Open(QString& reason) {
  HangUp();
  if (!OpenPair(reason) || !PlaceLink(reason)) {
    HangUp();
    return false;
  }
  readable_ = std::make_unique<QSocketNotifier>(master_, QSocketNotifier::Read);
  connect(readable_.get(), &QSocketNotifier::activated, this, [this] { ReadAll(); });
  writable_ = std::make_unique<QSocketNotifier>(master_, QSocketNotifier::Write);
  writable_->setEnabled(false);
  connect(writable_.get(), &QSocketNotifier::activated, this, [this] { WriteWaiting(); });
  return true;
}

bool PtyTransport::OpenPair(QString& reason) {
  master_ = posix_openpt(O_RDWR | O_NOCTTY);
  if (master_ < 0 || grantpt(master_) != 0 || unlockpt(master_) != 0) {
    reason = SystemReason("no pseudo-terminal");
    return false;
  }
  const char* name = ptsname(master_);
  slave_ = name == nullptr ? -1 : open(name, O_RDWR | O_NOCTTY | O_CLOEXEC);
  termios settings{};
  if (slave_ < 0 || tcgetattr(slave_, &settings) != 0) {
    reason = SystemReason("pseudo-terminal");
    return false;
  }
  slaveName_ = QString::fromLocal8Bit(name);
  // Raw from the start: a terminal that echoes would answer the first program with its own words.
  cfmakeraw(&settings);
  settings.c_cflag |= CREAD | CLOCAL;
  cfsetspeed(&settings, B115200);
  const int flags = fcntl(master_, F_GETFL);
  if (tcsetattr(slave_, TCSANOW, &settings) != 0 || fcntl(master_, F_SETFL, flags | O_NONBLOCK) != 0 ||
      fcntl(master_, F_SETFD, FD_CLOEXEC) != 0) {
    reason = SystemReason("pseudo-terminal");
    return false;
  }
  return true;
}

bool PtyTransport::PlaceLink(QString& reason) {
  if (link_.isEmpty()) return true;
  const fs::path link(link_.toStdString());
  fs::path temporary = link;
  temporary += ".new" + std::to_string(getpid());
  std::error_code error;
  const fs::file_status status = fs::symlink_status(link, error);
  if (fs::exists(status) && !fs::is_symlink(status)) {
    reason = link_ + QStringLiteral(": exists and is no symbolic link");
    return false;
  }
  fs::remove(temporary, error);
  fs::create_symlink(slaveName_.toStdString(), temporary, error);
  if (!error) fs::rename(temporary, link, error);
  if (!error) return true;
  reason = link_ + QStringLiteral(": ") + QString::fromStdString(error.message());
  std::error_code ignored;
  fs::remove(temporary, ignored);
  return false;
}

void PtyTransport::RemoveLink() {
  if (link_.isEmpty() || slaveName_.isEmpty()) return;
  const fs::path link(link_.toStdString());
  std::error_code error;
  if (fs::read_symlink(link, error) == fs::path(slaveName_.toStdString()) && !error) fs::remove(link, error);
}

void PtyTransport::HangUp() {
  RemoveLink();
  // The notifiers must go before their descriptors; they may be the very ones that called.
  for (auto* notifier : {readable_.release(), writable_.release()}) {
    if (notifier == nullptr) continue;
    notifier->setEnabled(false);
    notifier->deleteLater();
  }
  if (slave_ >= 0) close(std::exchange(slave_, -1));
  if (master_ >= 0) close(std::exchange(master_, -1));
  slaveName_.clear();
  waiting_.clear();
}

void PtyTransport::ReadAll() {
  char buffer[4096];
  while (master_ >= 0) {
    const ssize_t count = read(master_, buffer, sizeof buffer);
    if (count > 0) {
      emit Received(QByteArray(buffer, static_cast<qsizetype>(count)));
      continue;
    }
    if (count < 0 && errno == EINTR) continue;
    if (count < 0 && errno == EAGAIN) return;
    HangUp();
    emit Lost();
  }
}

void PtyTransport::Send(const QByteArray& bytes) {
  if (master_ < 0) return;
  waiting_.append(bytes.left(MaximumWaiting - waiting_.size()));
  WriteWaiting();
}

void PtyTransport::WriteWaiting() {
  while (master_ >= 0 && !waiting_.isEmpty()) {
    const ssize_t count = write(master_, waiting_.constData(), static_cast<std::size_t>(waiting_.size()));
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) break;
    waiting_.remove(0, static_cast<qsizetype>(count));
  }
  if (writable_) writable_->setEnabled(!waiting_.isEmpty());
}

}  // namespace spectrane

#endif
