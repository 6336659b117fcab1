// Every input that fuzzing begins with or once found, and the example files, through every check.

#include <algorithm>
#include <filesystem>

#include "base/basesupport.h"
#include "fuzz/checks/madefile.h"
#include "fuzz/checks/targets.h"

namespace spectrane::fuzz {
namespace {

namespace fs = std::filesystem;

const fs::path kSource = SPECTRANE_SOURCE;

std::vector<fs::path> FilesIn(const fs::path& folder) {
  std::vector<fs::path> files;
  if (!fs::is_directory(folder)) return files;
  for (const auto& entry : fs::recursive_directory_iterator(folder)) {
    if (entry.is_regular_file()) files.push_back(entry.path());
  }
  std::sort(files.begin(), files.end());
  return files;
}

/// Paths below the source folder.
std::vector<std::string> Inputs() {
  std::vector<std::string> inputs;
  for (const char* folder : {"fuzz/corpus", "fuzz/found", "examples"}) {
    for (const fs::path& file : FilesIn(kSource / folder)) {
      if (file.extension() != ".md") inputs.push_back(file.lexically_relative(kSource).generic_string());
    }
  }
  return inputs;
}

class Replay : public testing::TestWithParam<std::string> {};

TEST_P(Replay, AnswersAsTheBytesSay) {
  const std::string bytes = ReadBytes((kSource / GetParam()).string());
  for (const Target& target : Targets()) {
    EXPECT_EQ(target.Check(BytesOf(bytes)), "") << target.Name << " of " << GetParam();
  }
}

INSTANTIATE_TEST_SUITE_P(Inputs, Replay, testing::ValuesIn(Inputs()), [](const auto& row) {
  std::string name = row.param;
  std::replace_if(
      name.begin(), name.end(), [](unsigned char c) { return std::isalnum(c) == 0; }, '_');
  return name;
});

TEST(ReplayFolders, EveryTargetHasInputs) {
  for (const Target& target : Targets()) {
    EXPECT_FALSE(FilesIn(kSource / "fuzz/corpus" / target.Name).empty()) << target.Name;
  }
}

TEST(ReplayFolders, EveryKindHasAnExampleThatOpens) {
  const std::vector<fs::path> examples = FilesIn(kSource / "examples");
  for (const FileTable& table : FileTables()) {
    EXPECT_TRUE(std::any_of(examples.begin(), examples.end(), [&](const fs::path& path) {
      return Opens(table, BytesOf(ReadBytes(path.string())));
    })) << table.Name;
  }
}

TEST(ReplayFolders, EveryKindHasAnInputThatOpensAndOneThatDoesNotHoldItsRecords) {
  for (const FileTable& table : FileTables()) {
    bool whole = false;
    bool cut = false;
    for (const fs::path& path : FilesIn(kSource / "fuzz/corpus" / table.Name)) {
      const std::string bytes = ReadBytes(path.string());
      if (!Opens(table, BytesOf(bytes))) continue;
      const std::int64_t stated = Stated(table, BytesOf(bytes));
      whole = whole || (stated > 0 && stated == Held(table, bytes.size()));
      cut = cut || stated > Held(table, bytes.size());
    }
    EXPECT_TRUE(whole && cut) << table.Name;
  }
}

TEST(ReplayFolders, NoFolderOfFindingsIsEmpty) {
  if (!fs::is_directory(kSource / "fuzz/found")) return;
  for (const auto& folder : fs::directory_iterator(kSource / "fuzz/found")) {
    EXPECT_FALSE(FilesIn(folder.path()).empty()) << folder.path();
    EXPECT_TRUE(fs::is_directory(kSource / "fuzz/corpus" / folder.path().filename())) << folder.path();
  }
}

}  // namespace
}  // namespace spectrane::fuzz
