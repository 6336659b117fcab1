// From exec to the first painted main window, and the memory at idle, of programs side by side in turns.
// Needs an X server without other windows: xvfb-run build/release/bin/startup_bench [ROUNDS] PROGRAM PROGRAM
// ... The first program is the one the others are compared with.
#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>
#include <xcb/xcb.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <string>
#include <thread>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;
constexpr auto kGiveUp = std::chrono::seconds(20);
constexpr auto kIdle = std::chrono::milliseconds(1500);
constexpr int kSmallest = 300;  // less wide windows are no main windows [px]

struct Start {
  double MappedMs = 0;
  double PaintedMs = 0;
  double CpuMs = 0;
  double ResidentMiB = 0;
};

double MsSince(Clock::time_point from) {
  return std::chrono::duration<double, std::milli>(Clock::now() - from).count();
}

double CpuMsOf(pid_t pid) {
  std::ifstream stat("/proc/" + std::to_string(pid) + "/stat");
  std::string text;
  std::getline(stat, text);
  text = text.substr(text.rfind(')') + 2);
  long user = 0;
  long kernel = 0;
  std::sscanf(text.c_str(), "%*c %*d %*d %*d %*d %*d %*u %*u %*u %*u %*u %ld %ld", &user, &kernel);
  return static_cast<double>(user + kernel) * 1000.0 / static_cast<double>(sysconf(_SC_CLK_TCK));
}

double ResidentMiBOf(pid_t pid) {
  std::ifstream status("/proc/" + std::to_string(pid) + "/status");
  std::string line;
  while (std::getline(status, line)) {
    if (line.starts_with("VmRSS:")) return std::atof(line.c_str() + 6) / 1024.0;
  }
  return 0;
}

pid_t Launch(const std::string& program) {
  const pid_t pid = fork();
  if (pid != 0) return pid;
  const int null = open("/dev/null", O_RDWR);
  dup2(null, 0);
  dup2(null, 1);
  dup2(null, 2);
  execl(program.c_str(), program.c_str(), nullptr);
  _exit(127);
}

xcb_window_t WaitForMainWindow(xcb_connection_t* x, Clock::time_point from) {
  while (Clock::now() - from < kGiveUp) {
    xcb_generic_event_t* event = xcb_poll_for_event(x);
    if (!event) {
      std::this_thread::sleep_for(std::chrono::microseconds(200));
      continue;
    }
    const bool mapped = (event->response_type & 0x7f) == XCB_MAP_NOTIFY;
    const xcb_window_t window = reinterpret_cast<xcb_map_notify_event_t*>(event)->window;
    free(event);
    if (!mapped) continue;
    auto* size = xcb_get_geometry_reply(x, xcb_get_geometry(x, window), nullptr);
    const bool isMain = size && size->width >= kSmallest;
    free(size);
    if (isMain) return window;
  }
  return XCB_NONE;
}

// A window without a background of its own shows the root's black until it is painted.
bool IsPainted(xcb_connection_t* x, xcb_window_t window) {
  auto* image =
      xcb_get_image_reply(x, xcb_get_image(x, XCB_IMAGE_FORMAT_Z_PIXMAP, window, 60, 8, 32, 1, ~0U), nullptr);
  if (!image) return false;
  const std::uint8_t* bytes = xcb_get_image_data(image);
  const int length = xcb_get_image_data_length(image);
  bool painted = false;
  for (int i = 0; i < length; ++i) painted = painted || (i % 4 != 3 && bytes[i] != 0);
  free(image);
  return painted;
}

Start Measure(xcb_connection_t* x, const std::string& program) {
  Start start;
  const auto from = Clock::now();
  const pid_t pid = Launch(program);
  const xcb_window_t window = WaitForMainWindow(x, from);
  start.MappedMs = MsSince(from);
  while (window != XCB_NONE && !IsPainted(x, window) && Clock::now() - from < kGiveUp) {
    std::this_thread::sleep_for(std::chrono::microseconds(500));
  }
  start.PaintedMs = MsSince(from);
  start.CpuMs = CpuMsOf(pid);
  std::this_thread::sleep_for(kIdle);
  start.ResidentMiB = ResidentMiBOf(pid);
  kill(pid, SIGKILL);
  waitpid(pid, nullptr, 0);
  std::this_thread::sleep_for(std::chrono::milliseconds(150));
  while (xcb_generic_event_t* event = xcb_poll_for_event(x)) free(event);
  return start;
}

double Median(std::vector<Start> starts, double Start::*field) {
  std::sort(starts.begin(), starts.end(),
            [field](const Start& a, const Start& b) { return a.*field < b.*field; });
  return starts[starts.size() / 2].*field;
}

}  // namespace

int main(int argc, char** argv) {
  int first = 1;
  int rounds = 7;
  if (argc > 1 && std::isdigit(static_cast<unsigned char>(argv[1][0])))
    rounds = std::max(1, std::atoi(argv[first++]));
  const std::vector<std::string> programs(argv + first, argv + argc);
  xcb_connection_t* x = xcb_connect(nullptr, nullptr);
  if (programs.empty() || xcb_connection_has_error(x)) {
    std::fprintf(stderr, "usage (in an X server): startup_bench [ROUNDS] PROGRAM PROGRAM ...\n");
    return 2;
  }
  const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(x)).data->root;
  const std::uint32_t events = XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
  xcb_change_window_attributes(x, root, XCB_CW_EVENT_MASK, &events);
  xcb_flush(x);
  std::vector<std::vector<Start>> starts(programs.size());
  for (int round = 0; round < rounds; ++round) {
    for (std::size_t i = 0; i < programs.size(); ++i) starts[i].push_back(Measure(x, programs[i]));
  }
  std::printf("%-40s %10s %10s %8s %10s %8s\n", "program", "mapped ms", "painted ms", "cpu ms", "memory MiB",
              "ratio");
  const double floor = Median(starts[0], &Start::PaintedMs);
  for (std::size_t i = 0; i < programs.size(); ++i) {
    std::printf("%-40s %10.1f %10.1f %8.1f %10.1f %8.2f\n", programs[i].c_str(),
                Median(starts[i], &Start::MappedMs), Median(starts[i], &Start::PaintedMs),
                Median(starts[i], &Start::CpuMs), Median(starts[i], &Start::ResidentMiB),
                Median(starts[i], &Start::PaintedMs) / floor);
  }
  xcb_disconnect(x);
  return 0;
}
