#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "link/port.h"

class QDeadlineTimer;
class QSerialPort;

namespace spectrane {

/// A serial device of the machine through QSerialPort; on Windows there is Win32Port in its place. Must live
/// in the thread that uses it.
class SerialPort : public Port {
 public:
  SerialPort();
  ~SerialPort() override;

  /// `path` is a device file or a link to one, in UTF-8. Links are resolved first, so that two
  /// programs that name one device differently meet at the same lock.
  bool Open(const std::string& path) override;
  bool Close() override;
  bool IsOpen() const override;
  void DiscardInput() override;
  bool Write(std::string_view bytes, int timeoutMs) override;
  std::string Read(int timeoutMs) override;

 private:
  /// Waits until the device can be read or written, or is gone. 0: not in time; below 0: errno says why.
  int WaitFor(short events, const QDeadlineTimer& deadline) const;
  void OnError();
  void LineGone(const std::string& words);
  void NoteOpenFault(const std::string& path);

  std::unique_ptr<QSerialPort> port_;
  bool opening_ = false;
};

/// What `path` says about a failed opening before the device itself is asked: missing, no rights (with the
/// group that owns the device), or nothing. The reason's words go to `reason`.
PortFault ExamineDevice(const std::string& path, std::string& reason);

}  // namespace spectrane
