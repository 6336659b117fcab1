#include "link/win32port.h"

#ifdef _WIN32

#define WIN32_LEAN_AND_MEAN
#include "base/windowsheader.h"

#include <algorithm>
#include <vector>

namespace spectrane {
namespace {

constexpr DWORD kBaudRate = 115200;
/// How long one read waits for a byte [ms]; longer waits are several reads.
constexpr DWORD kSliceMs = 20;
/// How much longer a driver may take over it before the read is called back [ms].
constexpr DWORD kDriverMs = 100;

std::wstring Wide(std::string_view text) {
  const int length = MultiByteToWideChar(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), nullptr, 0);
  std::wstring wide(static_cast<std::size_t>(std::max(length, 0)), L'\0');
  MultiByteToWideChar(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), wide.data(), length);
  return wide;
}

std::string SystemWords(DWORD error) {
  wchar_t* words = nullptr;
  const DWORD length = FormatMessageW(
      FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr,
      error, 0, reinterpret_cast<wchar_t*>(&words), 0, nullptr);
  if (length == 0) return "error " + std::to_string(error);
  std::wstring wide(words, length);
  LocalFree(words);
  while (!wide.empty() && (wide.back() == L'\r' || wide.back() == L'\n' || wide.back() == L' '))
    wide.pop_back();
  const int size = WideCharToMultiByte(CP_UTF8, 0, wide.data(), static_cast<int>(wide.size()), nullptr, 0,
                                       nullptr, nullptr);
  std::string text(static_cast<std::size_t>(std::max(size, 0)), '\0');
  WideCharToMultiByte(CP_UTF8, 0, wide.data(), static_cast<int>(wide.size()), text.data(), size, nullptr,
                      nullptr);
  return text;
}

/// 115200 baud, 8 data bits, no parity, 1 stop bit, no handshake; the lines DTR and RTS are on, since some
/// adapters take their power from them.
bool Configure(HANDLE device) {
  DCB line = {};
  line.DCBlength = sizeof line;
  if (!GetCommState(device, &line)) return false;
  line.BaudRate = kBaudRate;
  line.ByteSize = 8;
  line.Parity = NOPARITY;
  line.StopBits = ONESTOPBIT;
  line.fBinary = TRUE;
  line.fParity = FALSE;
  line.fOutxCtsFlow = FALSE;
  line.fOutxDsrFlow = FALSE;
  line.fDsrSensitivity = FALSE;
  line.fOutX = FALSE;
  line.fInX = FALSE;
  line.fNull = FALSE;
  line.fErrorChar = FALSE;
  line.fAbortOnError = FALSE;
  line.fDtrControl = DTR_CONTROL_ENABLE;
  line.fRtsControl = RTS_CONTROL_ENABLE;
  if (!SetCommState(device, &line)) return false;
  // One byte is asked for at a time, so a read ends with it. The form of time-outs that ends with the first
  // of many bytes is not known to every system that runs programs for Windows.
  COMMTIMEOUTS waits = {0, 0, kSliceMs, 0, 0};
  return SetCommTimeouts(device, &waits) != 0;
}

}  // namespace

Win32Port::~Win32Port() {
  CloseDevice();
}

bool Win32Port::Open(const std::string& path) {
  Close();
  SetFault(PortFault::None, {});
  // COM10 and above are found only by their full name.
  const std::wstring name = path.rfind("\\\\", 0) == 0 ? Wide(path) : L"\\\\.\\" + Wide(path);
  HANDLE device = CreateFileW(name.c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_EXISTING,
                              FILE_FLAG_OVERLAPPED, nullptr);
  if (device == INVALID_HANDLE_VALUE) return OpenFailed(path, GetLastError());
  HANDLE event = CreateEventW(nullptr, TRUE, FALSE, nullptr);
  if (event == nullptr || !Configure(device)) {
    const DWORD error = GetLastError();
    CloseHandle(device);
    if (event != nullptr) CloseHandle(event);
    return OpenFailed(path, error);
  }
  PurgeComm(device, PURGE_RXCLEAR | PURGE_TXCLEAR);
  device_ = device;
  event_ = event;
  return true;
}

bool Win32Port::OpenFailed(const std::string& path, unsigned long error) {
  PortFault fault = PortFault::Other;
  if (error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND || error == ERROR_INVALID_NAME) {
    fault = PortFault::Missing;
  } else if (error == ERROR_ACCESS_DENIED || error == ERROR_SHARING_VIOLATION) {
    // Everybody may use a serial port here: another program has it.
    fault = PortFault::InUse;
  }
  SetFault(fault, path + ": " + SystemWords(error));
  return false;
}

bool Win32Port::Close() {
  return CloseDevice();
}

bool Win32Port::CloseDevice() {
  if (device_ == nullptr) return false;
  CloseHandle(device_);
  CloseHandle(event_);
  device_ = nullptr;
  event_ = nullptr;
  return true;
}

void Win32Port::DiscardInput() {
  if (device_ != nullptr) PurgeComm(device_, PURGE_RXCLEAR);
}

bool Win32Port::Write(std::string_view bytes, int timeoutMs) {
  if (device_ == nullptr) return false;
  OVERLAPPED job = {};
  job.hEvent = event_;
  ResetEvent(event_);
  DWORD count = 0;
  if (WriteFile(device_, bytes.data(), static_cast<DWORD>(bytes.size()), &count, &job)) {
    return count == bytes.size();
  }
  if (const DWORD error = GetLastError(); error != ERROR_IO_PENDING) {
    LineGone(error);
    return false;
  }
  const bool ended = WaitForSingleObject(event_, static_cast<DWORD>(std::max(timeoutMs, 0))) == WAIT_OBJECT_0;
  // What was not taken in time is not sent later.
  if (!ended) CancelIoEx(device_, &job);
  if (GetOverlappedResult(device_, &job, &count, TRUE)) return count == bytes.size();
  if (const DWORD error = GetLastError(); error != ERROR_OPERATION_ABORTED) LineGone(error);
  PurgeComm(device_, PURGE_TXCLEAR);
  return false;
}

std::string Win32Port::Read(int timeoutMs) {
  const ULONGLONG deadline = GetTickCount64() + static_cast<ULONGLONG>(std::max(timeoutMs, 0));
  while (device_ != nullptr) {
    // All that has arrived, or else one byte to wait for.
    DWORD errors = 0;
    COMSTAT state = {};
    if (!ClearCommError(device_, &errors, &state)) {
      LineGone(GetLastError());
      break;
    }
    if (state.cbInQue == 0 && timeoutMs <= 0) break;
    std::vector<char> buffer(std::clamp<DWORD>(state.cbInQue, 1, 65536));
    DWORD count = 0;
    if (!ReadSome(buffer.data(), static_cast<DWORD>(buffer.size()), count)) break;
    if (count > 0) return std::string(buffer.data(), count);
    if (GetTickCount64() >= deadline) break;
  }
  return {};
}

bool Win32Port::ReadSome(char* buffer, unsigned long size, unsigned long& count) {
  OVERLAPPED job = {};
  job.hEvent = event_;
  ResetEvent(event_);
  bool done = ReadFile(device_, buffer, size, &count, &job) != 0;
  if (!done && GetLastError() == ERROR_IO_PENDING) {
    // Not every driver keeps to the time-outs it was given.
    const bool ended = WaitForSingleObject(event_, kSliceMs + kDriverMs) == WAIT_OBJECT_0;
    if (!ended) CancelIoEx(device_, &job);
    done = GetOverlappedResult(device_, &job, &count, TRUE) != 0 ||
           (!ended && GetLastError() == ERROR_OPERATION_ABORTED);
  }
  // A wait without a byte ends as a read of nothing, or as an error of that name.
  if (done || GetLastError() == ERROR_TIMEOUT) return true;
  LineGone(GetLastError());
  return false;
}

void Win32Port::LineGone(unsigned long error) {
  SetFault(PortFault::Other, "the line is gone: " + SystemWords(error));
  Close();
}

}  // namespace spectrane

#endif
