// One fuzzing program a target; SPECTRANE_FUZZ_TARGET is its name.

#include <sanitizer/allocator_interface.h>

#include <cstdio>
#include <cstdlib>

#include "fuzz/checks/targets.h"

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t maxSize);

namespace {

using spectrane::fuzz::Bytes;
using spectrane::fuzz::HeaderStands;
using spectrane::fuzz::Opens;
using spectrane::fuzz::Target;

/// Memory that the check has at one time [bytes]: this much, and ten times the file.
constexpr std::size_t kRoom = 65536;
constexpr std::size_t kTimesTheFile = 10;

bool counting = false;
std::int64_t now = 0;
std::int64_t peak = 0;

void Taken(const volatile void* /*block*/, std::size_t size) {
  if (!counting) return;
  now += static_cast<std::int64_t>(size);
  if (now > peak) peak = now;
}

void Given(const volatile void* block) {
  if (!counting || block == nullptr) return;
  now -= static_cast<std::int64_t>(__sanitizer_get_allocated_size(const_cast<const void*>(block)));
}

const Target& TheTarget() {
  static const Target& target = *spectrane::fuzz::TargetNamed(SPECTRANE_FUZZ_TARGET);
  return target;
}

std::uint64_t executions = 0;
std::uint64_t opened = 0;

[[noreturn]] void Violation(const char* words) {
  std::fprintf(stderr, "Violation (%s): %s\n", TheTarget().Name, words);
  std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int* /*count*/, char*** /*arguments*/) {
  __sanitizer_install_malloc_and_free_hooks(&Taken, &Given);
  // The first run makes the objects that stay.
  if (!TheTarget().Check(Bytes()).empty()) Violation("of the empty file");
  std::atexit([] {
    std::fprintf(stderr, "%s: %llu executions, %llu of files that open\n", TheTarget().Name,
                 static_cast<unsigned long long>(executions), static_cast<unsigned long long>(opened));
  });
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const Bytes file(data, size);
  ++executions;
  const auto* const table = TheTarget().Table;
  if (table != nullptr ? Opens(*table, file) : HeaderStands(file)) ++opened;
  now = peak = 0;
  counting = true;
  const std::string wrong = TheTarget().Check(file);
  counting = false;
  if (!wrong.empty()) Violation(wrong.c_str());
  if (peak > static_cast<std::int64_t>(kRoom + kTimesTheFile * size)) Violation("takes too much memory");
  return 0;
}

/// Most mutations of a small file break its header, behind which nothing is reached: seven of eight times it
/// is made whole again. One of four times the count is brought near to what the file holds.
extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size, std::size_t maxSize,
                                               unsigned int seed) {
  size = LLVMFuzzerMutate(data, size, maxSize);
  const std::span<unsigned char> file(data, size);
  const auto* const table = TheTarget().Table;
  if (seed % 8 == 0) return size;
  const std::int32_t fileType = table == nullptr ? static_cast<std::int32_t>(seed >> 3) : table->FileType;
  spectrane::fuzz::MendHeader(fileType, file);
  if (table != nullptr && (seed >> 3) % 4 == 0) {
    const std::int64_t held = spectrane::fuzz::Held(*table, size);
    spectrane::fuzz::MendCount(*table, file, held - 1 + (seed >> 5) % 3);
  }
  return size;
}
