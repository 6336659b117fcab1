#pragma once

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

namespace spectrane {

/// A file in a folder of its own, gone with this object.
class BenchFile {
 public:
  explicit BenchFile(std::string name)
      : folder_(std::filesystem::temp_directory_path() / "spectrane-file-bench"), name_(std::move(name)) {
    std::filesystem::create_directories(folder_);
  }
  ~BenchFile() { std::filesystem::remove_all(folder_); }
  std::string Path() const { return folder_ / name_; }
  void Remove() const { std::filesystem::remove(Path()); }

 private:
  std::filesystem::path folder_;
  std::string name_;
};

inline bool WriteAtOnce(const std::string& path, const std::vector<char>& bytes) {
  std::FILE* const file = std::fopen(path.c_str(), "wb");
  const bool whole = std::fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size();
  return std::fclose(file) == 0 && whole;
}

inline bool ReadAtOnce(const std::string& path, std::vector<char>& bytes) {
  std::FILE* const file = std::fopen(path.c_str(), "rb");
  const bool whole = std::fread(bytes.data(), 1, bytes.size(), file) == bytes.size();
  return std::fclose(file) == 0 && whole;
}

inline double Median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  return values[values.size() / 2];
}

/// Times both ways in turn, so that a disturbance of the machine meets both.
template <typename Procedures, typename AtOnce, typename Between>
void Compare(benchmark::State& state, Procedures procedures, AtOnce atOnce, Between between) {
  std::vector<double> own;
  std::vector<double> peer;
  const auto timed = [&](auto& work, std::vector<double>& times) {
    between();
    const auto start = std::chrono::steady_clock::now();
    const bool done = work();
    times.push_back(
        std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count());
    return done;
  };
  for (auto _ : state) {
    if (!timed(procedures, own) || !timed(atOnce, peer)) {
      state.SkipWithError("the file could not be written or read");
      return;
    }
  }
  state.counters["procedures_ms"] = Median(own);
  state.counters["at_once_ms"] = Median(peer);
  state.counters["ratio"] = Median(own) / Median(peer);
}

}  // namespace spectrane
