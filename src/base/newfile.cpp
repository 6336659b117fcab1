#include "base/newfile.h"

#include <cerrno>

#include "base/utf8path.h"

#include <fcntl.h>
#include <sys/stat.h>
#ifdef _WIN32
#include <io.h>
#include <share.h>
#else
#include <unistd.h>
#endif

namespace spectrane {

#ifdef _WIN32

/// Not _wfopen: the oldest runtime has no letter for a file that must be new.
std::FILE* OpenNewFile(const std::string& path, bool /*ownerOnly*/) {
  int descriptor = -1;
  constexpr int kFlags = _O_RDWR | _O_CREAT | _O_EXCL | _O_BINARY | _O_NOINHERIT;
  const errno_t fault =
      ::_wsopen_s(&descriptor, PathFromUtf8(path).c_str(), kFlags, _SH_DENYNO, _S_IREAD | _S_IWRITE);
  if (fault != 0) {
    errno = fault;
    return nullptr;
  }
  std::FILE* const file = ::_fdopen(descriptor, "w+b");
  if (file == nullptr) ::_close(descriptor);
  return file;
}

#else

std::FILE* OpenNewFile(const std::string& path, bool ownerOnly) {
  constexpr int kFlags = O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC;
  const int descriptor = ::open(path.c_str(), kFlags, ownerOnly ? 0600 : 0666);
  if (descriptor < 0) return nullptr;
  std::FILE* const file = ::fdopen(descriptor, "w+b");
  if (file == nullptr) {
    const int code = errno;
    ::close(descriptor);
    errno = code;
  }
  return file;
}

#endif

}  // namespace spectrane
