#pragma once

#include <fcntl.h>
#include <poll.h>
#include <stdlib.h>
#include <termios.h>
#include <unistd.h>

#include <atomic>
#include <functional>
#include <string>
#include <string_view>
#include <thread>
#include <utility>

#include "link/portlist.h"

namespace spectrane {

/// The far end of a pseudo-terminal, in a thread of its own: what comes in goes to `serve`, which answers
/// with Write().
class FarEnd {
 public:
  using Serve = std::function<void(FarEnd& line, std::string_view bytes)>;

  explicit FarEnd(Serve serve) : serve_(std::move(serve)) {
    master_ = posix_openpt(O_RDWR | O_NOCTTY);
    grantpt(master_);
    unlockpt(master_);
    path_ = ptsname(master_);
    slave_ = open(path_.c_str(), O_RDWR | O_NOCTTY);
    termios raw = {};
    tcgetattr(slave_, &raw);
    cfmakeraw(&raw);
    tcsetattr(slave_, TCSANOW, &raw);
    thread_ = std::thread([this] { Run(); });
  }
  ~FarEnd() {
    stop_ = true;
    thread_.join();
    close(slave_);
    close(master_);
  }
  FarEnd(const FarEnd&) = delete;
  FarEnd& operator=(const FarEnd&) = delete;

  const std::string& Path() const { return path_; }
  void Write(std::string_view bytes) { static_cast<void>(!write(master_, bytes.data(), bytes.size())); }

 private:
  void Run() {
    while (!stop_) {
      pollfd wait = {master_, POLLIN, 0};
      if (poll(&wait, 1, 50) <= 0) continue;
      char buffer[256];
      const ssize_t count = read(master_, buffer, sizeof buffer);
      if (count > 0) serve_(*this, {buffer, static_cast<std::size_t>(count)});
    }
  }

  Serve serve_;
  int master_ = -1;
  int slave_ = -1;
  std::string path_;
  std::atomic<bool> stop_{false};
  std::thread thread_;
};

/// Its near end as the only port of the machine.
class NearEnd : public SerialPortList {
 public:
  explicit NearEnd(std::string path) : path_(std::move(path)) {}
  std::string Path(int number) const override { return number == 1 ? path_ : std::string(); }

 private:
  std::string path_;
};

}  // namespace spectrane
