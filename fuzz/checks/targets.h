#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "files/filefault.h"
#include "fuzz/checks/filetable.h"

namespace spectrane::fuzz {

/// What a file came to that was loaded and, whatever the fault, saved again.
struct Reload {
  FileFault Fault;
  std::size_t Records;
  FileFault SaveFault;
};

/// One set of inputs and what is asked of every one of them.
struct Target {
  /// Also of its folder of inputs.
  const char* Name;
  /// Null for the file type alone.
  const FileTable* Table;
  /// Words about the first answer that is wrong; empty when all are right.
  std::string (*Check)(Bytes file);
  /// Loads the file and saves what was read at `path`; null for the file type alone.
  Reload (*LoadAndSave)(Bytes file, const std::string& path);
};

/// GetFileType, then the kinds.
std::span<const Target> Targets();
const Target* TargetNamed(const std::string& name);

}  // namespace spectrane::fuzz
