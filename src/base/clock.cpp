#include "base/clock.h"

#include <chrono>

namespace spectrane {

std::int64_t SteadyClock::NowMs() const {
  using namespace std::chrono;
  static const steady_clock::time_point start = steady_clock::now();
  return duration_cast<milliseconds>(steady_clock::now() - start).count();
}

}  // namespace spectrane
