// Writes what an installed program tells the desktop: desktopdata FOLDER PROGRAM. Into FOLDER go the desktop
// entry that starts PROGRAM and the description of the file types.
#include <cstdio>
#include <string>

#include "../datafile.h"
#include "app/desktop/desktopfiles.h"
#include "base/applicationfolder.h"

int main(int count, char** words) {
  if (count != 3) {
    std::fputs("usage: desktopdata FOLDER PROGRAM\n", stderr);
    return 2;
  }
  const std::string place = std::string(words[1]) + "/" + spectrane::kDesktopId;
  const bool written = WriteDataFile(place + ".desktop", spectrane::DesktopEntry(words[2], "spectrane")) &&
                       WriteDataFile(place + ".xml", spectrane::MimePackage());
  return written ? 0 : 1;
}
