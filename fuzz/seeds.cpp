// Writes the inputs that fuzzing begins with: fuzz-seeds FOLDER, in practice fuzz/corpus. Those of `pack` are
// what `spectrane-cli dump` prints of the files "two-records", those of `exchange` were written by hand.

#include <cstdio>
#include <filesystem>
#include <fstream>

#include "files/journal.h"
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

using namespace std::string_literals;

void WriteReplies(const fs::path& folder) {
  Write(folder, "energy-at-once", "\x04\x00ge 3\r\n25000\r\n25001\r\n24999\r\n>"s);
  Write(folder, "energy-byte-by-byte", "\x04\x01ge 3\r\n25000\r\n-1\r\n1e9\r\n>"s);
  Write(folder, "dark-in-pieces",
        "\x07\x40getdark\r\n101\r\n102\r\n103\r\n104\r\n105\r\n106\r\n107\r\n108\r\n>"s);
  Write(folder, "prompt-inside", "\x04\x02ge 1\r\n25>00\r\n>ge 1\r\n"s);
  Write(folder, "no-numbers",
        "\x04\x90ge 9\r\nabc\r\n\r\n1e999\r\nNaN\r\n2147483648\r\n12,5\r\n0x10\r\n 7 \r\n>"s);
  Write(folder, "noise", "\x04\x05ge 1\r\n\x00\x80\xFF\n\r>"s);
  Write(folder, "flood",
        "\xFF\xFF"
        "company\r\nendlessendless, a noise"s);
}

void WriteSettings(const fs::path& folder) {
  const std::string changes =
      "Option\0Port ID\0"
      "4\0New\0Key\0 \xCE\xBC = 1; \0"s;
  Write(folder, "sections", "; note\n[Option]\nPort ID=3\n\n[Window]\nLeft = -5\n"s + '\0' + changes);
  Write(folder, "missing", std::string(1, '\0') + changes);
  Write(folder, "mark-and-carriage-returns",
        "\xEF\xBB\xBF[option]\r\nport id=3\r\nport id=4"s + '\0' + changes);
  // The second mark is a part of the first line.
  Write(folder, "two-marks-of-the-encoding",
        "\xEF\xBB\xBF\xEF\xBB\xBF[option]\r=6rt8\0Option\0P\0004\0New\0Ke\0"s);
  Write(folder, "old-line-ends", "[a]\rk=1\r[A]\rk=2\r[b\r=x\rlost\r"s + "\0A\0K\0v\0"s);
  Write(folder, "a-nul-in-it", "[Option]\nPort ID=\xFF\0\n"s + '\0' + changes);
  Write(folder, "other-letters",
        "[Option]\nOperator=\xE4\xF6\n"s + "\0Option\0Operator\0a\nb=c\0Op]\0x\0y\0"s);
}

void WriteMessages(const fs::path& folder) {
  Write(folder, "message", "FormMain\n/home/anna/\xCE\xBC.wls\0"s);
  Write(folder, "unfinished", "FormMain\n/ho"s);
  Write(folder, "relative", "FormMain\na.wls\0"s);
  Write(folder, "two", "FormMain\n/a\0FormMain\n/b\0"s);
  Write(folder, "no-unicode", "FormMain\n/\xC3\x28\0"s);
}

void WriteJournals(const fs::path& folder) {
  spectrane::JournalHead head;
  head.FileType = 2;
  head.RecordSize = 12;
  head.Caption = "Time Scan 1";
  head.Path = "/home/anna/a.tis";
  head.FileSize = 198;
  head.FileTime = 1'600'000'000'000;
  head.Option = std::string(70, 'o');
  const std::string opening(spectrane::JournalOpening());
  const std::string begin = opening + spectrane::JournalHeadEntry(head, false);
  const std::string three(36, 'r');
  const std::string rows = begin + spectrane::JournalRecordsEntry(0, 0, three, false);
  head.HalfRead = true;
  head.HalfReadPath = "/b";
  Write(folder, "opening", opening);
  Write(folder, "head", begin);
  Write(folder, "records", rows);
  Write(folder, "changed",
        rows + spectrane::JournalRecordsEntry(1, 1, "123456789012", false) +
            spectrane::JournalRecordsEntry(0, 2, {}, false) + spectrane::JournalHeadEntry(head, true) +
            spectrane::JournalRecordsEntry(1, 0, three, false));
  Write(folder, "half-a-change", rows + spectrane::JournalHeadEntry(head, true));
  Write(folder, "cut", rows.substr(0, rows.size() - 1));
  Write(folder, "wrong-place", rows + spectrane::JournalRecordsEntry(4, 0, three, false));
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
  WriteReplies(folder / "reply");
  WriteSettings(folder / "config");
  WriteMessages(folder / "handover");
  WriteJournals(folder / "journal");
  return 0;
}
