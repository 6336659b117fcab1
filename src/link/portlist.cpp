#include "link/portlist.h"

#include <algorithm>

#include "base/environment.h"

#ifdef _WIN32
#include "link/win32port.h"
#else
#include <QSerialPortInfo>

#include "link/portnames.h"
#include "link/serialport.h"
#endif

namespace spectrane {
namespace {

#ifdef _WIN32
constexpr char kSeparator = ';';
#else
constexpr char kSeparator = ':';
#endif

std::vector<std::string> MachinePaths() {
  std::vector<std::string> paths;
#ifdef _WIN32
  constexpr int kHighestCom = 256;
  for (int n = 1; n <= kHighestCom; ++n) paths.push_back("COM" + std::to_string(n));
#else
  for (const QSerialPortInfo& info : QSerialPortInfo::availablePorts()) {
    paths.push_back(info.systemLocation().toStdString());
  }
  std::sort(paths.begin(), paths.end(), PortNameBefore);
#endif
  return paths;
}

}  // namespace

std::vector<std::string> SplitPortPaths(const std::string& list, char separator) {
  std::vector<std::string> entries;
  if (list.empty()) return entries;
  std::size_t start = 0;
  for (;;) {
    const std::size_t end = list.find(separator, start);
    entries.push_back(list.substr(start, end - start));
    if (end == std::string::npos) return entries;
    start = end + 1;
  }
}

void SerialPortList::Refresh() {
  paths_.reset();
}

const std::vector<std::string>& SerialPortList::Paths() const {
  if (!paths_) {
    const std::optional<std::string> named = EnvironmentText("SPECTRANE_PORTS");
    paths_ = named ? SplitPortPaths(*named, kSeparator) : MachinePaths();
  }
  return *paths_;
}

std::string SerialPortList::Path(int number) const {
  if (number < 1 || static_cast<std::size_t>(number) > Paths().size()) return {};
  return Paths()[static_cast<std::size_t>(number) - 1];
}

std::unique_ptr<Port> SerialPortList::MakePort(int) {
#ifdef _WIN32
  return std::make_unique<Win32Port>();
#else
  return std::make_unique<SerialPort>();
#endif
}

}  // namespace spectrane
