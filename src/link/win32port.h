#pragma once

#include <string>
#include <string_view>

#include "link/port.h"

namespace spectrane {

/// A serial device of the machine through the functions of Windows alone. Nobody else can open it meanwhile.
class Win32Port : public Port {
 public:
  Win32Port() = default;
  ~Win32Port() override;
  Win32Port(const Win32Port&) = delete;
  Win32Port& operator=(const Win32Port&) = delete;

  /// `path` is a COM name ("COM3"), in UTF-8.
  bool Open(const std::string& path) override;
  bool Close() override;
  bool IsOpen() const override { return device_ != nullptr; }
  void DiscardInput() override;
  bool Write(std::string_view bytes, int timeoutMs) override;
  std::string Read(int timeoutMs) override;

 private:
  bool CloseDevice();
  bool OpenFailed(const std::string& path, unsigned long error);
  /// Reads up to `size` bytes; ends with the first byte, or without one after one slice of waiting.
  /// False when the line has gone.
  bool ReadSome(char* buffer, unsigned long size, unsigned long& count);
  void LineGone(unsigned long error);

  void* device_ = nullptr;  ///< HANDLE
  void* event_ = nullptr;   ///< HANDLE; ends of reads and writes
};

}  // namespace spectrane
