// Writes what an installed program tells the desktop: desktopdata FOLDER PROGRAM. Into FOLDER go the desktop
// entry that starts PROGRAM and the description of the file types.
#include <cstdio>
#include <fstream>
#include <string>

#include "app/desktop/desktopfiles.h"

namespace {

bool Write(const std::string& path, const std::string& text) {
  std::ofstream file(path, std::ios::binary);
  file << text;
  file.close();
  if (file && !text.empty()) return true;
  std::fprintf(stderr, "cannot write %s\n", path.c_str());
  return false;
}

}  // namespace

int main(int count, char** words) {
  if (count != 3) {
    std::fputs("usage: desktopdata FOLDER PROGRAM\n", stderr);
    return 2;
  }
  const std::string place = std::string(words[1]) + "/" + spectrane::kDesktopId;
  const bool written = Write(place + ".desktop", spectrane::DesktopEntry(words[2], "spectrane")) &&
                       Write(place + ".xml", spectrane::MimePackage());
  return written ? 0 : 1;
}
