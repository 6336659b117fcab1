#pragma once

#include <cstdio>
#include <fstream>
#include <string>

/// Writes what a package is made with. False, with a line on the error stream: the file does not hold it, or
/// there was nothing to write.
inline bool WriteDataFile(const std::string& path, const std::string& text) {
  std::ofstream file(path, std::ios::binary);
  file << text;
  file.close();
  if (file && !text.empty()) return true;
  std::fprintf(stderr, "cannot write %s\n", path.c_str());
  return false;
}
