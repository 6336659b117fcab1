// Tries what keeps the program's files on Windows by itself, without the toolkit: filetry FOLDER. The folder
// should have letters in its name that no code page has. One line for each expectation; the status is the
// number of those that failed.
#include <windows.h>
// The second header needs the first.
#include <shellapi.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "base/applicationfolder.h"
#include "base/dateserial.h"
#include "base/environment.h"
#include "base/filereplacement.h"
#include "base/folderlock.h"
#include "base/leftovers.h"
#include "base/setting.h"
#include "base/utf8path.h"
#include "files/basicfile.h"
#include "files/journalfile.h"

namespace {

using namespace spectrane;

namespace fs = std::filesystem;

int failed = 0;

void Expect(bool held, const std::string& what) {
  std::printf("%s %s\n", held ? "ok     " : "FAILED ", what.c_str());
  std::fflush(stdout);
  if (!held) ++failed;
}

std::string BytesOf(const std::string& path) {
  std::ifstream file(PathFromUtf8(path), std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

std::size_t FilesIn(const std::string& folder) {
  const fs::directory_iterator all(PathFromUtf8(folder));
  return static_cast<std::size_t>(std::distance(begin(all), end(all)));
}

void TryReplacement(const std::string& folder) {
  const std::string path = folder + "/one.txt";
  std::string reason;
  Expect(ReplaceFileContent(path, "first\r\n", &reason) && BytesOf(path) == "first\r\n",
         "writes a file byte for byte: " + reason);
  Expect(ReplaceFileContent(path, "second", &reason) && BytesOf(path) == "second", "and over it: " + reason);
  SetFileAttributesW(PathFromUtf8(path).c_str(), FILE_ATTRIBUTE_READONLY);
  const bool overReadOnly = ReplaceFileContent(path, "third", &reason);
  Expect(!overReadOnly && BytesOf(path) == "second", "not over a protected one: " + reason);
  SetFileAttributesW(PathFromUtf8(path).c_str(), FILE_ATTRIBUTE_NORMAL);
  const bool intoNowhere = ReplaceFileContent(folder + "/no/one.txt", "x", &reason);
  Expect(!intoNowhere && !reason.empty(), "not into a folder that is not there: " + reason);
  HANDLE const held =
      CreateFileW(PathFromUtf8(path).c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
  const bool overHeld = ReplaceFileContent(path, "third", &reason);
  CloseHandle(held);
  Expect(!overHeld && BytesOf(path) == "second", "not over one that another program holds: " + reason);
  Expect(FilesIn(folder) == 1, "and nothing is left beside it");
}

void TrySettings(const std::string& folder) {
  Setting settings(folder);
  Expect(settings.GetSetting("Option", "Port ID").empty(), "no setting at first");
  Expect(settings.PutSetting("Option", "Port ID", "7") && settings.GetSetting("Option", "Port ID") == "7",
         "keeps a setting");
  Setting other(folder);
  Expect(other.PutSetting("Option", "Words", "\xC3\xA4\xE2\x82\xAC") &&
             settings.GetSetting("Option", "Words") == "\xC3\xA4\xE2\x82\xAC",
         "and sees what another copy wrote");
  Expect(BytesOf(folder + "/config.ini").find("Port ID") != std::string::npos, "in config.ini");
  const FolderLock lock(folder, 100);
  Expect(lock.Held(), "the folder can be locked");
}

void TryJournal(const std::string& folder) {
  std::string reason;
  const std::string path = folder + "/journal.bin";
  auto journal = JournalFile::Create(path, reason);
  Expect(journal != nullptr, "a journal begins: " + reason);
  if (journal == nullptr) return;
  Expect(journal->Append("abcdef", reason) && journal->Append("ghi", reason) && journal->Sync(),
         "grows: " + reason);
  Expect(journal->CutTo(4) && journal->Append("XY", reason) && journal->Read(100) == "abcdXY",
         "is cut and goes on");
  Expect(JournalFile::Take(path) == nullptr, "nobody takes it meanwhile");
  journal.reset();
  journal = JournalFile::Take(path);
  Expect(journal != nullptr && journal->Read(100) == "abcdXY", "and then it can be taken");
  if (journal != nullptr) journal->Remove();
  journal.reset();
  Expect(!fs::exists(PathFromUtf8(path)), "and goes");
}

void TryDataFile(const std::string& folder) {
  const std::string path = folder + "/day.bas";
  int number = 0;
  BasicOption option;
  option.Written = DateTimeText(Now());
  option.RecordCount = 2;
  Expect(CreateBasicFile(path, number, option), "a data file is made, " + option.Written);
  for (std::int32_t i = 0; i < 2; ++i)
    WriteBasicRecord(number, {1000 + i, 2000, 100, 546.0, "note\r\n\x1a"}, i);
  CloseBasicFile(number);
  BasicOption read;
  BasicRecord record;
  Expect(OpenBasicFile(path, number, read) && read.RecordCount == 2 && ReadBasicRecord(number, record, 1) &&
             record.SampleEnergy == 1001 && record.Wavelength == 546.0,
         "and reads back");
  CloseBasicFile(number);
  Expect(!CreateBasicFile(path, number, option), "and is not made twice");
}

void TryPlaces(const std::string& folder) {
  Expect(ApplicationFolder(folder) == folder, "an unpacked program keeps its settings beside it");
  const std::string installed = folder + "/installed";
  Expect(EnsureFolder(installed), "folders are made");
  std::ofstream(PathFromUtf8(installed + "/uninstall.exe")) << "x";
  const std::string place = ApplicationFolder(installed);
  Expect(place == EnvironmentText("APPDATA").value_or("?") + "\\Spectrane", "an installed one in " + place);
  const std::string leftover = folder + "/" + TemporaryName(1);
  std::ofstream(PathFromUtf8(leftover)) << "x";
  RemoveLeftovers(folder);
  Expect(fs::exists(PathFromUtf8(leftover)), "a fresh temporary file is nobody's leftover");
}

}  // namespace

int main() {
  int count = 0;
  wchar_t** const words = CommandLineToArgvW(GetCommandLineW(), &count);
  if (count != 2) return 100;
  const std::string folder = Utf8FromPath(fs::path(words[1]));
  Expect(EnsureFolder(folder), "a folder of any letters");
  TryReplacement(folder);
  TrySettings(folder);
  TryJournal(folder);
  TryDataFile(folder);
  TryPlaces(folder);
  return failed;
}
