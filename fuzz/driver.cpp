// One fuzzing program a target; SPECTRANE_FUZZ_TARGET is its name. A target that is no reader of data files
// has its check (SPECTRANE_FUZZ_CHECK) from a header of its own (SPECTRANE_FUZZ_HEADER).

#ifndef SPECTRANE_FUZZ_FAST
#include <sanitizer/allocator_interface.h>
#endif

#include <cstdio>
#include <cstdlib>
#include <vector>

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

#ifdef SPECTRANE_FUZZ_NEIGHBOURS
/// Without sanitizers most of the time of an execution is that of choosing its input and of looking what it
/// reached. Each input therefore brings so many others along, of which one byte is another; which ones
/// follows from the input, so that a finding comes again with it.
constexpr int kNeighbours = 15;

void CheckNeighbours(Bytes input) {
  static std::vector<unsigned char> bytes;
  bytes.assign(input.begin(), input.end());
  std::uint64_t state = 0x9E3779B97F4A7C15U ^ bytes.size();
  for (const unsigned char byte : bytes) state = (state ^ byte) * 0x100000001B3U;
  for (int i = 0; i < kNeighbours; ++i) {
    state = state * 6364136223846793005U + 1442695040888963407U;
    unsigned char& byte = bytes[(state >> 33) % bytes.size()];
    const unsigned char before = byte;
    constexpr unsigned char kValues[] = {0x00, 0x01, 0x7F, 0x80, 0xFE, 0xFF};
    const std::uint64_t way = (state >> 24) % 16;
    if (way < 6)
      byte = kValues[way];
    else if (way < 8)
      byte = static_cast<unsigned char>(byte + (way == 6 ? 1 : -1));
    else
      byte = static_cast<unsigned char>(byte ^ (1U << (way - 8)));
    ++executions;
    const std::string wrong = Check(bytes);
    if (!wrong.empty()) Violation(("with another byte: " + wrong).c_str());
    byte = before;
  }
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
#ifdef SPECTRANE_FUZZ_NEIGHBOURS
  if (!input.empty()) CheckNeighbours(input);
#endif
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
