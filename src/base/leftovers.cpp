#include "base/leftovers.h"

#include <chrono>
#include <filesystem>
#include <set>
#include <string_view>
#include <system_error>

#include "base/utf8path.h"

#ifdef _WIN32
#include "base/windowsheader.h"
#else
#include <signal.h>
#include <unistd.h>

#include <cerrno>
#endif

namespace spectrane {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kTemporaryBegin = ".spectrane-";
constexpr std::string_view kTemporaryEnd = ".tmp";
constexpr auto kRestTime = std::chrono::minutes(10);
constexpr auto kForgottenTime = std::chrono::hours(24);

unsigned long OwnProcess() {
#ifdef _WIN32
  return GetCurrentProcessId();
#else
  return static_cast<unsigned long>(::getpid());
#endif
}

/// In doubt a process lives.
bool ProcessLives(unsigned long process) {
#ifdef _WIN32
  HANDLE const handle = OpenProcess(SYNCHRONIZE, FALSE, static_cast<DWORD>(process));
  if (handle == nullptr) return GetLastError() != ERROR_INVALID_PARAMETER;
  const bool ended = WaitForSingleObject(handle, 0) == WAIT_OBJECT_0;
  CloseHandle(handle);
  return !ended;
#else
  return ::kill(static_cast<pid_t>(process), 0) == 0 || errno != ESRCH;
#endif
}

/// Takes the number at the start of `text` away; 0 when there is none, or none that a process has.
unsigned long TakeNumber(std::string_view& text) {
  constexpr std::size_t kMostDigits = 9;
  unsigned long number = 0;
  std::size_t digits = 0;
  while (digits < text.size() && text[digits] >= '0' && text[digits] <= '9') {
    if (digits >= kMostDigits) return 0;
    number = number * 10 + static_cast<unsigned long>(text[digits++] - '0');
  }
  text.remove_prefix(digits);
  return number;
}

/// The process that builds a file of that name; 0 when it is no temporary file of this program.
unsigned long BuilderOf(std::string_view name) {
  if (!name.starts_with(kTemporaryBegin) || !name.ends_with(kTemporaryEnd)) return 0;
  name.remove_prefix(kTemporaryBegin.size());
  const unsigned long process = TakeNumber(name);
  if (process == 0 || !name.starts_with('-')) return 0;
  name.remove_prefix(1);
  return TakeNumber(name) != 0 && name == kTemporaryEnd ? process : 0;
}

bool IsLeftOver(const fs::directory_entry& entry) {
  const unsigned long process = BuilderOf(Utf8FromPath(entry.path().filename()));
  std::error_code fault;
  if (process == 0 || !fs::is_regular_file(entry.symlink_status(fault))) return false;
  const fs::file_time_type written = entry.last_write_time(fault);
  if (fault) return false;
  const auto age = fs::file_time_type::clock::now() - written;
  return age > kForgottenTime || (age > kRestTime && !ProcessLives(process));
}

}  // namespace

std::string TemporaryName(unsigned long number) {
  return std::string(kTemporaryBegin) + std::to_string(OwnProcess()) + "-" + std::to_string(number) +
         std::string(kTemporaryEnd);
}

void RemoveLeftovers(const std::string& folder) {
  std::error_code fault;
  fs::directory_iterator entry(folder.empty() ? fs::path(".") : PathFromUtf8(folder), fault);
  for (const fs::directory_iterator end; !fault && entry != end; entry.increment(fault)) {
    std::error_code stays;
    if (IsLeftOver(*entry)) fs::remove(entry->path(), stays);
  }
}

void RemoveLeftoversOnce(const std::string& folder) {
  static std::set<std::string> looked;
  if (looked.insert(folder).second) RemoveLeftovers(folder);
}

}  // namespace spectrane
