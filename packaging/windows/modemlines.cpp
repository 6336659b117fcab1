// Loaded into Wine ahead of the C library: gives pseudo-terminals the modem lines and counters of a serial
// port. Wine asks for them when a program for Windows opens a port, and a pseudo-terminal has none.
#include <dlfcn.h>
#include <linux/serial.h>
#include <sys/ioctl.h>

#include <atomic>
#include <cerrno>
#include <cstdarg>
#include <cstring>

namespace {

/// The far end is there and ready.
constexpr int kInputs = TIOCM_CTS | TIOCM_DSR | TIOCM_CAR;
std::atomic<int> outputs{TIOCM_DTR | TIOCM_RTS};

/// What a serial port would have answered; false for a question that it would not have answered either.
bool AnswerAsPort(unsigned long request, void* value) {
  switch (request) {
    case TIOCMGET:
      *static_cast<int*>(value) = kInputs | outputs;
      return true;
    case TIOCMSET:
      outputs = *static_cast<int*>(value);
      return true;
    case TIOCMBIS:
      outputs |= *static_cast<int*>(value);
      return true;
    case TIOCMBIC:
      outputs &= ~*static_cast<int*>(value);
      return true;
    case TIOCGICOUNT:
      std::memset(value, 0, sizeof(serial_icounter_struct));
      return true;
    case TIOCSERGETLSR:
      *static_cast<unsigned*>(value) = TIOCSER_TEMT;
      return true;
    default:
      return false;
  }
}

}  // namespace

extern "C" int ioctl(int file, unsigned long request, ...) noexcept {
  using Ioctl = int (*)(int, unsigned long, ...);
  static const auto original = reinterpret_cast<Ioctl>(dlsym(RTLD_NEXT, "ioctl"));
  va_list rest;
  va_start(rest, request);
  void* const value = va_arg(rest, void*);
  va_end(rest);
  const int result = original(file, request, value);
  if (result != -1 || (errno != ENOTTY && errno != EINVAL) || !AnswerAsPort(request, value)) return result;
  return 0;
}
