// What the disk and other programs can do to a file of any kind while it is saved or read.

#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <functional>

#include "files/allkinds.h"
#include "files/kindpattern.h"

namespace spectrane {
namespace {

namespace fs = std::filesystem;

/// A kind as the tests of this file need it, whatever its structures are.
struct KindUnderTest {
  const char* Name;
  std::int32_t MostRecords;
  FileFault (*Load)(const std::string& path, std::size_t& records);
  FileFault (*Save)(const std::string& path, std::int32_t records);
  /// Opens the file, lets `meddle` run, and counts the records that can be read then.
  int (*ReadAfter)(const std::string& path, const std::function<void()>& meddle);
};

template <typename OptionT, typename RecordT, const FileModule<OptionT, RecordT>& (*kModule)()>
KindUnderTest KindOf() {
  return {kModule().Name, kModule().MostRecords,
          [](const std::string& path, std::size_t& count) {
            OptionT option;
            std::vector<RecordT> records;
            const FileFault fault = LoadDataFile(kModule(), path, option, records);
            count = records.size();
            return fault;
          },
          [](const std::string& path, std::int32_t count) {
            return SaveDataFile(kModule(), path, OptionT(), count, [](std::int32_t) { return RecordT(); });
          },
          [](const std::string& path, const std::function<void()>& meddle) {
            NumberAtEnd file;
            OptionT option;
            EXPECT_TRUE(kModule().Open(path, file.Number, option));
            meddle();
            RecordT record;
            int count = 0;
            while (kModule().Read(file.Number, record, count)) ++count;
            return count;
          }};
}

class FileTrouble : public testing::TestWithParam<KindUnderTest> {
 protected:
  std::string File() const { return folder_.Path("a"); }
  std::string Bytes(int records) const {
    for (const KindPattern& pattern : KindPatterns()) {
      if (std::string(pattern.Name) == GetParam().Name) return RandomFiles(7).Make(pattern, records);
    }
    return {};
  }
  /// Enough records that the file is longer than what is read ahead, where a kind takes so many.
  int Many() const { return GetParam().MostRecords > 20000 ? 20000 : 3; }
  TemporaryFolder folder_;
};

TEST_P(FileTrouble, AFullDiskKeepsTheOldFileAndLeavesNoOther) {
  fs::create_directory(folder_.Path("disk"));
  if (::mount("tmpfs", folder_.Path("disk").c_str(), "tmpfs", 0, "size=64k") != 0) {
    GTEST_SKIP() << "mount is not permitted";
  }
  const std::string path = folder_.Path("disk/a");
  WriteBytes(path, "old");
  const FileFault fault = GetParam().Save(path, 10000);
  const FileFault fresh = GetParam().Save(folder_.Path("disk/b"), 10000);
  const std::string kept = ReadBytes(path);
  const std::size_t names = NamesIn(folder_.Path("disk"));
  ::umount(folder_.Path("disk").c_str());
  EXPECT_EQ(fault.Error, FileError::InputOutput);
  EXPECT_EQ(fault.Reason, "No space left on device");
  EXPECT_EQ(fresh.Error, FileError::InputOutput);
  EXPECT_EQ(kept, "old");
  EXPECT_EQ(names, 1u);
}

/// What `work` answers in a process without the rights of the superuser.
int WithoutRights(const std::function<int()>& work) {
  const pid_t child = ::fork();
  if (child == 0) {
    const bool nobody = ::setgid(65534) == 0 && ::setuid(65534) == 0;
    ::_exit(nobody || ::getuid() != 0 ? work() : 99);
  }
  int status = -1;
  ::waitpid(child, &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

TEST_P(FileTrouble, AWriteProtectedFileIsReadAndNotReplaced) {
  WriteBytes(File(), Bytes(2));
  fs::permissions(File(), fs::perms{0444});
  fs::permissions(folder_.Path(), fs::perms{0777});
  EXPECT_EQ(WithoutRights([this] {
              std::size_t records = 0;
              const FileFault load = GetParam().Load(File(), records);
              const FileFault save = GetParam().Save(File(), 1);
              return !load && records == 2 && save.Error == FileError::InputOutput &&
                             save.Reason == "Permission denied"
                         ? 0
                         : 1;
            }),
            0);
  EXPECT_EQ(ReadBytes(File()), Bytes(2));
  EXPECT_EQ(NamesIn(folder_.Path()), 1u);
}

TEST_P(FileTrouble, AWriteProtectedFolderIsReadAndNotWritten) {
  WriteBytes(File(), Bytes(2));
  fs::permissions(File(), fs::perms{0666});
  fs::permissions(folder_.Path(), fs::perms{0555});
  EXPECT_EQ(
      WithoutRights([this] {
        std::size_t records = 0;
        const FileFault load = GetParam().Load(File(), records);
        const FileFault save = GetParam().Save(File(), 1);
        return !load && records == 2 && save.Error == FileError::InputOutput && !save.Reason.empty() ? 0 : 1;
      }),
      0);
  fs::permissions(folder_.Path(), fs::perms{0777});
  EXPECT_EQ(ReadBytes(File()), Bytes(2));
}

TEST_P(FileTrouble, AFileNobodyMayReadIsAFault) {
  WriteBytes(File(), Bytes(2));
  fs::permissions(File(), fs::perms{0000});
  fs::permissions(folder_.Path(), fs::perms{0777});
  EXPECT_EQ(WithoutRights([this] {
              std::size_t records = 0;
              const FileFault load = GetParam().Load(File(), records);
              return load.Error == FileError::InputOutput && load.Reason == "Permission denied" ? 0 : 1;
            }),
            0);
}

TEST_P(FileTrouble, AFileThatVanishesBetweenOpenAndReadIsReadToItsEnd) {
  WriteBytes(File(), Bytes(Many()));
  EXPECT_EQ(GetParam().ReadAfter(File(), [this] { fs::remove(File()); }), Many());
  std::size_t records = 99;
  EXPECT_EQ(GetParam().Load(File(), records).Error, FileError::Missing);
  EXPECT_EQ(records, 0u);
}

TEST_P(FileTrouble, AFileThatIsReplacedBetweenOpenAndReadStaysTheOneThatWasOpened) {
  WriteBytes(File(), Bytes(Many()));
  EXPECT_EQ(GetParam().ReadAfter(File(), [this] { GetParam().Save(File(), 1); }), Many());
  std::size_t records = 0;
  EXPECT_EQ(GetParam().Load(File(), records).Error, FileError::None);
}

TEST_P(FileTrouble, APathMayHaveLettersOfAnyScript) {
  const std::string folder = folder_.Path("Messung \u6D4B\u91CF \u0394\u03BB");
  fs::create_directory(folder);
  const std::string path = folder + "/\u043F\u0440\u043E\u0431\u0430 \u00B5g 100% \U0001F9EA";
  EXPECT_FALSE(GetParam().Save(path, 0));
  WriteBytes(path, Bytes(2));
  std::size_t records = 0;
  EXPECT_FALSE(GetParam().Load(path, records));
  EXPECT_EQ(records, 2u);
}

TEST_P(FileTrouble, ANameOfAnyLengthIsSavedOrRefused) {
  const std::string longest = folder_.Path(std::string(255, 'n'));
  EXPECT_FALSE(GetParam().Save(longest, 0)) << "the longest name of the platform";
  EXPECT_EQ(GetParam().Save(folder_.Path(std::string(256, 'n')), 0).Error, FileError::InputOutput);
  std::size_t records = 0;
  EXPECT_TRUE(GetParam().Load(folder_.Path(std::string(5000, 'n')), records));
  EXPECT_EQ(NamesIn(folder_.Path()), 1u);
}

INSTANTIATE_TEST_SUITE_P(
    Kinds, FileTrouble,
    testing::Values(KindOf<BasicOption, BasicRecord, BasicModule>(),
                    KindOf<QuaOption, QuaRecord, QuaModule>(), KindOf<TSOption, TSRecord, TSModule>(),
                    KindOf<WLSOption, WLSRecord, WLSModule>(), KindOf<WLSOption, WLS2Record, WLS2Module>(),
                    KindOf<MultiOption, MultiRecord, MultiModule>(),
                    KindOf<DNAOption, DNARecord, DNAModule>(), KindOf<BSLOption, BSLRecord, BSLModule>()),
    NameOfRow<KindUnderTest>);

}  // namespace
}  // namespace spectrane
