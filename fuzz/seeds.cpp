// Writes the inputs that fuzzing begins with: fuzz-seeds FOLDER, in practice fuzz/corpus.

#include <cstdio>
#include <filesystem>
#include <fstream>

#include "fuzz/checks/madefile.h"

namespace {

namespace fs = std::filesystem;
using namespace spectrane::fuzz;

void Write(const fs::path& folder, const char* name, const std::string& bytes) {
  fs::create_directories(folder);
  std::ofstream(folder / name, std::ios::binary) << bytes;
}

void WriteKind(const FileTable& table, const fs::path& folder) {
  const std::string two = MadeFile(table, 2, 2);
  Write(folder, "two-records", two);
  Write(folder, "states-too-many", MadeFile(table, 1, 10001));
  Write(folder, "cut-in-record", two.substr(0, two.size() - 1));
  Write(folder, "cut-in-option-block", two.substr(0, kHeader + table.OptionSize - 1));
  if (table.FirstRecord > kHeader + table.OptionSize) {
    // Without records it may end before its spare bytes.
    Write(folder, "no-records", MadeFile(table, 0, 0).substr(0, kHeader + table.OptionSize));
  }
  if (table.CountAt == kFromRange) {
    // 1.5 steps: the range is as long as the even neighbour, 2.
    std::string half = two;
    PutDouble(half, kHeader, 191.5);
    Write(folder, "half-a-step", half);
  }
}

}  // namespace

int main(int count, char** arguments) {
  if (count != 2) {
    std::fputs("usage: fuzz-seeds FOLDER\n", stderr);
    return 2;
  }
  const fs::path folder = arguments[1];
  for (const FileTable& table : FileTables()) WriteKind(table, folder / table.Name);
  Write(folder / "filetype", "photometry", MadeHeader(11));
  Write(folder / "filetype", "unused-type", MadeHeader(7));
  Write(folder / "filetype", "author-in-the-middle", MadeHeader(12, "   Kestu"));
  Write(folder / "filetype", "other-author", MadeHeader(1, "Kestus"));
  std::string otherMagic = MadeHeader(1);
  PutNumber(otherMagic, 100, 0x12345679, 4);
  Write(folder / "filetype", "other-magic", otherMagic);
  Write(folder / "filetype", "one-byte-short", MadeHeader(3).substr(0, kHeader - 1));
  return 0;
}
