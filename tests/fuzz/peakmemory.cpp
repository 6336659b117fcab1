#include "fuzz/peakmemory.h"

#include <cstddef>
#include <cstdint>

#ifdef SPECTRANE_SANITIZED
// Of the sanitizer's library; not every compiler brings the header that declares them.
extern "C" {
int __sanitizer_install_malloc_and_free_hooks(void (*taken)(const volatile void*, std::size_t),
                                              void (*given)(const volatile void*));
std::size_t __sanitizer_get_allocated_size(const volatile void*);
}
#else
#include <malloc.h>

#include <cstdlib>
#include <new>
#endif

namespace spectrane::fuzz {
namespace {

thread_local bool counting = false;
thread_local std::int64_t held = 0;
thread_local std::int64_t highest = 0;

void Taken(std::size_t size) {
  if (!counting) return;
  held += static_cast<std::int64_t>(size);
  if (held > highest) highest = held;
}

void Given(std::size_t size) {
  if (counting) held -= static_cast<std::int64_t>(size);
}

}  // namespace

void BeginPeakMemory() {
#ifdef SPECTRANE_SANITIZED
  static const int installed = __sanitizer_install_malloc_and_free_hooks(
      [](const volatile void* /*block*/, std::size_t size) { Taken(size); },
      [](const volatile void* block) {
        if (counting && block != nullptr) Given(__sanitizer_get_allocated_size(block));
      });
  static_cast<void>(installed);
#endif
  held = highest = 0;
  counting = true;
}

std::size_t EndPeakMemory() {
  counting = false;
  return static_cast<std::size_t>(highest);
}

#ifndef SPECTRANE_SANITIZED
namespace {

void* Take(std::size_t size) {
  void* const block = std::malloc(size == 0 ? 1 : size);
  if (block == nullptr) throw std::bad_alloc();
  Taken(::malloc_usable_size(block));
  return block;
}

void Give(void* block) {
  if (block != nullptr) Given(::malloc_usable_size(block));
  std::free(block);
}

}  // namespace
#endif

}  // namespace spectrane::fuzz

#ifndef SPECTRANE_SANITIZED
// Of the whole test program; what is aligned beyond the usual stays with the library.
void* operator new(std::size_t size) {
  return spectrane::fuzz::Take(size);
}
void operator delete(void* block) noexcept {
  spectrane::fuzz::Give(block);
}
void operator delete(void* block, std::size_t /*size*/) noexcept {
  spectrane::fuzz::Give(block);
}
#endif
