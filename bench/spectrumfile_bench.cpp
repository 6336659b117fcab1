// A spectrum of 10001 points (240 KB): opened and decoded beside one read of the whole file with a memcpy a
// field, and written beside one write with the sync. Read the ratios, not the milliseconds.

#include <fcntl.h>
#include <unistd.h>

#include <cstring>
#include <QFile>

#include "filebench.h"
#include "files/wlsfile.h"

namespace spectrane {
namespace {

constexpr std::int32_t kPoints = 10001;
constexpr std::size_t kFirst = 184;
constexpr std::size_t kRecord = 24;
constexpr std::size_t kBytes = kFirst + std::size_t{kPoints} * kRecord;

std::vector<WLSRecord> MakePoints() {
  std::vector<WLSRecord> points;
  for (std::int32_t i = 0; i < kPoints; ++i) points.push_back({30000 + i % 97, 50000, 120, 190 + i * 0.1, 3});
  return points;
}

bool Save(const std::string& path, const std::vector<WLSRecord>& points) {
  const FileFault fault =
      SaveDataFile(WLSModule(), path, WLSOption(), kPoints,
                   [&](std::int32_t i) -> const WLSRecord& { return points[static_cast<std::size_t>(i)]; });
  return !fault;
}

bool Load(const std::string& path) {
  WLSOption option;
  std::vector<WLSRecord> points;
  const FileFault fault = LoadDataFile(WLSModule(), path, option, points);
  benchmark::DoNotOptimize(points.data());
  return !fault && points.size() == static_cast<std::size_t>(kPoints);
}

/// The least that reading can cost: no check of header or count, the machine's own byte order.
bool LoadAtOnce(const std::string& path) {
  QFile file(QString::fromStdString(path));
  if (!file.open(QIODevice::ReadOnly)) return false;
  const QByteArray bytes = file.readAll();
  std::vector<WLSRecord> points(static_cast<std::size_t>(kPoints));
  const char* from = bytes.constData() + kFirst;
  for (WLSRecord& point : points) {
    std::memcpy(&point.SampleEnergy, from, 4);
    std::memcpy(&point.ReferenceEnergy, from + 4, 4);
    std::memcpy(&point.DarkEnergy, from + 8, 4);
    std::memcpy(&point.Wavelength, from + 12, 8);
    std::memcpy(&point.Gain, from + 20, 4);
    from += kRecord;
  }
  benchmark::DoNotOptimize(points.data());
  return static_cast<std::size_t>(bytes.size()) == kBytes;
}

bool WriteWithSync(const std::string& path, const std::vector<char>& bytes) {
  const int file = ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
  const bool whole = ::write(file, bytes.data(), bytes.size()) == static_cast<ssize_t>(bytes.size());
  const bool synced = ::fsync(file) == 0;
  return ::close(file) == 0 && whole && synced;
}

void SpectrumFileRead(benchmark::State& state) {
  const BenchFile file("a.wls");
  if (!Save(file.Path(), MakePoints())) {
    state.SkipWithError("no file");
    return;
  }
  Compare(
      state, [&] { return Load(file.Path()); }, [&] { return LoadAtOnce(file.Path()); }, [] {});
}

void SpectrumFileWrite(benchmark::State& state) {
  const BenchFile file("a.wls");
  const std::vector<WLSRecord> points = MakePoints();
  const std::vector<char> bytes(kBytes, 'x');
  Compare(
      state, [&] { return Save(file.Path(), points); }, [&] { return WriteWithSync(file.Path(), bytes); },
      [&] { file.Remove(); });
}

BENCHMARK(SpectrumFileRead)->Iterations(400)->UseRealTime();
BENCHMARK(SpectrumFileWrite)->Iterations(60)->UseRealTime();

}  // namespace
}  // namespace spectrane
