#pragma once

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <vector>

namespace spectrane {

using Wall = std::chrono::steady_clock;

inline double MsSince(Wall::time_point from) {
  return std::chrono::duration<double, std::milli>(Wall::now() - from).count();
}

/// Processor time of the process: what a machine that is busy with other things does not lengthen.
inline double CpuMs() {
  return static_cast<double>(std::clock()) * 1e3 / CLOCKS_PER_SEC;
}

inline void ReportTimes(const char* what, std::vector<double> ms) {
  std::sort(ms.begin(), ms.end());
  std::printf("%-48s median %7.3f ms   p99 %7.3f ms   worst %7.3f ms\n", what, ms[ms.size() / 2],
              ms[ms.size() * 99 / 100], ms.back());
}

}  // namespace spectrane
