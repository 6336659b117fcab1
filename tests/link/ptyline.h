#pragma once

#include <fcntl.h>
#include <poll.h>
#include <stdlib.h>
#include <termios.h>
#include <unistd.h>

#include <atomic>
#include <functional>
#include <string>
#include <thread>

namespace spectrane::testing_link {

/// A pseudo-terminal whose far end is served by a thread: each line that comes in goes to `Answer`, which
/// writes to the line itself through Send().
class PtyLine {
 public:
  explicit PtyLine(std::function<void(PtyLine&, const std::string&)> answer = {})
      : answer_(std::move(answer)) {
    master_ = posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
    grantpt(master_);
    unlockpt(master_);
    Path = ptsname(master_);
    slave_ = open(Path.c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC);
    termios raw = {};
    tcgetattr(slave_, &raw);
    cfmakeraw(&raw);
    tcsetattr(slave_, TCSANOW, &raw);
    thread_ = std::thread([this] { Serve(); });
  }
  ~PtyLine() {
    HangUp();
    if (thread_.joinable()) thread_.join();
  }
  PtyLine(const PtyLine&) = delete;
  PtyLine& operator=(const PtyLine&) = delete;

  void Send(const std::string& bytes) {
    std::size_t at = 0;
    while (at < bytes.size() && !gone_) {
      const ssize_t count = write(master_, bytes.data() + at, bytes.size() - at);
      if (count <= 0) return;
      at += static_cast<std::size_t>(count);
    }
  }
  /// The far end goes away: the serving thread closes it within a moment.
  void HangUp() { gone_ = true; }

  std::string Path;

 private:
  void Serve() {
    std::string line;
    while (!gone_) {
      pollfd wait = {master_, POLLIN, 0};
      if (poll(&wait, 1, 10) <= 0) continue;
      char buffer[4096];
      const ssize_t count = read(master_, buffer, sizeof buffer);
      if (count <= 0) continue;
      line.append(buffer, static_cast<std::size_t>(count));
      for (std::size_t end; (end = line.find('\r')) != std::string::npos; line.erase(0, end + 1)) {
        if (answer_) answer_(*this, line.substr(0, end));
      }
    }
    // As when a cable is pulled, nobody holds the near end open but the program.
    close(slave_);
    close(master_);
  }

  std::function<void(PtyLine&, const std::string&)> answer_;
  int master_ = -1;
  int slave_ = -1;
  std::atomic<bool> gone_{false};
  std::thread thread_;
};

}  // namespace spectrane::testing_link
