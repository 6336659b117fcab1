#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "link/port.h"

namespace spectrane {

/// The machine's port numbers: which device stands behind number n (1-based), and how it is driven.
class PortList {
 public:
  virtual ~PortList() = default;
  /// Looks again which ports there are: an adapter may be back under another name.
  virtual void Refresh() {}
  /// Device path of port `number`; empty when there is no such port.
  virtual std::string Path(int number) const = 0;
  virtual std::unique_ptr<Port> MakePort(int number) = 0;
};

/// Serial ports of the machine: those of the environment variable SPECTRANE_PORTS (paths separated by ":", on
/// Windows by ";"; an empty entry is a port that does not exist), or without it the machine's serial devices
/// in name order (on Windows port n is COMn). The machine is looked at when a port is asked for, first and
/// after each Refresh(): that takes tens of milliseconds.
class SerialPortList : public PortList {
 public:
  void Refresh() override;

  std::string Path(int number) const override;
  std::unique_ptr<Port> MakePort(int number) override;

 private:
  const std::vector<std::string>& Paths() const;

  mutable std::optional<std::vector<std::string>> paths_;
};

/// The entries of a list of paths; an empty text gives no entry, ":" two empty ones.
std::vector<std::string> SplitPortPaths(const std::string& list, char separator);

}  // namespace spectrane
