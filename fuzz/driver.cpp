// One fuzzing program a target; SPECTRANE_FUZZ_TARGET is its name. A target that is no reader of data files
// has its check (SPECTRANE_FUZZ_CHECK) from a header of its own (SPECTRANE_FUZZ_HEADER).

#ifndef SPECTRANE_FUZZ_FAST
#include <sanitizer/allocator_interface.h>
#endif

#include <cstdio>
#include <cstdlib>

#ifdef SPECTRANE_FUZZ_CHECK
#include SPECTRANE_FUZZ_HEADER
#else
#include "fuzz/checks/targets.h"

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t maxSize);
#endif

namespace {

using spectrane::fuzz::Bytes;

#ifdef SPECTRANE_FUZZ_CHECK
std::string Check(Bytes input) {
  return spectrane::fuzz::SPECTRANE_FUZZ_CHECK(input);
}
/// Memory that the check has at one time [bytes]: this much, and so many times the input. A check that
/// reckons keeps much beside what it checks.
[[maybe_unused]] constexpr std::size_t kRoom = std::size_t{1} << 20;
[[maybe_unused]] constexpr std::size_t kTimesTheInput = 64;
#else
const spectrane::fuzz::Target& TheTarget() {
  static const spectrane::fuzz::Target& target = *spectrane::fuzz::TargetNamed(SPECTRANE_FUZZ_TARGET);
  return target;
}
std::string Check(Bytes input) {
  return TheTarget().Check(input);
}
[[maybe_unused]] constexpr std::size_t kRoom = 65536;
[[maybe_unused]] constexpr std::size_t kTimesTheInput = 10;
#endif

std::uint64_t executions = 0;

[[noreturn]] void Violation(const char* words) {
  std::fprintf(stderr, "Violation (%s): %s\n", SPECTRANE_FUZZ_TARGET, words);
  std::abort();
}

#ifndef SPECTRANE_FUZZ_FAST
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
#endif

}  // namespace

extern "C" int LLVMFuzzerInitialize(int* /*count*/, char*** /*arguments*/) {
#ifndef SPECTRANE_FUZZ_FAST
  __sanitizer_install_malloc_and_free_hooks(&Taken, &Given);
#endif
  // The first run makes the objects that stay.
  if (!Check(Bytes()).empty()) Violation("of the empty input");
  std::atexit([] {
    std::fprintf(stderr, "%s: %llu executions\n", SPECTRANE_FUZZ_TARGET,
                 static_cast<unsigned long long>(executions));
  });
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const Bytes input(data, size);
  ++executions;
#ifndef SPECTRANE_FUZZ_FAST
  now = peak = 0;
  counting = true;
#endif
  const std::string wrong = Check(input);
  if (!wrong.empty()) Violation(wrong.c_str());
#ifndef SPECTRANE_FUZZ_FAST
  counting = false;
  if (peak > static_cast<std::int64_t>(kRoom + kTimesTheInput * size)) Violation("takes too much memory");
#endif
  return 0;
}

#ifndef SPECTRANE_FUZZ_CHECK
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
#endif
