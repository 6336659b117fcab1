// Writes what the package for Windows takes from the program's table of file types: windowsdata FOLDER. Into
// FOLDER go icon.rc, the pictures of icon.dll in the order of their numbers (its icon files belong beside
// it), and filetypes.nsh, the types for the installer.
#include <algorithm>
#include <cstdio>
#include <string>

#include "../datafile.h"
#include "app/desktop/filetypes.h"

namespace {

using spectrane::FileAssociation;

/// Its file in the folder; the program's own where no type has the number.
std::string IconWithIndex(int index) {
  for (const FileAssociation& each : spectrane::FileAssociations()) {
    if (each.IconIndex == index) return std::string(each.Extension).substr(1);
  }
  return "spectrane";
}

std::string IconResources(const std::string& folder) {
  int last = 0;
  for (const FileAssociation& each : spectrane::FileAssociations()) last = std::max(last, each.IconIndex);
  std::string text;
  // Resources are sorted by their number, which begins with 1.
  for (int index = 0; index <= last; ++index) {
    text += std::to_string(index + 1) + " ICON \"" + folder + "/" + IconWithIndex(index) + ".ico\"\n";
  }
  return text;
}

std::string InstallerTypes() {
  std::string text = "!macro FileTypes DO\n";
  for (const FileAssociation& each : spectrane::FileAssociations()) {
    text += "  !insertmacro ${DO} \"" + std::string(each.Extension) + "\" \"" + each.TypeName + "\" \"" +
            DescriptionOf(each) + "\" " + std::to_string(each.IconIndex) + "\n";
  }
  return text + "!macroend\n";
}

}  // namespace

int main(int count, char** words) {
  if (count != 2) {
    std::fputs("usage: windowsdata FOLDER\n", stderr);
    return 2;
  }
  const std::string folder = words[1];
  const bool written = WriteDataFile(folder + "/icon.rc", IconResources(folder)) &&
                       WriteDataFile(folder + "/filetypes.nsh", InstallerTypes());
  return written ? 0 : 1;
}
