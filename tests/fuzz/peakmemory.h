#pragma once

#include <cstddef>
#include <cstdint>

#ifdef __SANITIZE_ADDRESS__
#include <sanitizer/allocator_interface.h>
#endif

namespace spectrane::fuzz {

/// The most memory that was taken at one time since Begin() [bytes]. Known under AddressSanitizer, elsewhere
/// 0.
class PeakMemory {
 public:
#ifdef __SANITIZE_ADDRESS__
  static void Begin() {
    static const int installed = __sanitizer_install_malloc_and_free_hooks(&Taken, &Given);
    static_cast<void>(installed);
    now_ = peak_ = 0;
    counting_ = true;
  }
  static std::size_t End() {
    counting_ = false;
    return static_cast<std::size_t>(peak_);
  }

 private:
  static void Taken(const volatile void* /*block*/, std::size_t size) {
    if (!counting_) return;
    now_ += static_cast<std::int64_t>(size);
    if (now_ > peak_) peak_ = now_;
  }
  static void Given(const volatile void* block) {
    if (!counting_ || block == nullptr) return;
    now_ -= static_cast<std::int64_t>(__sanitizer_get_allocated_size(const_cast<const void*>(block)));
  }

  inline static bool counting_ = false;
  inline static std::int64_t now_ = 0;
  inline static std::int64_t peak_ = 0;
#else
  static void Begin() {}
  static std::size_t End() {
    return 0;
  }
#endif
};

}  // namespace spectrane::fuzz
