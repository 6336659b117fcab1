#include "modes/photometry/photometrydocument.h"

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cmath>
#include <csignal>
#include <regex>

#include "base/numericfault.h"
#include "files/filesupport.h"

namespace spectrane {
namespace {

class PhotometryDocumentTest : public testing::Test {
 protected:
  std::string File() const { return folder_.Path("a.bas"); }
  void AppendRows(int count) {
    for (int i = 0; i < count; ++i) document_.Append(BasicRow(100 + i, "row " + std::to_string(i)));
  }
  std::vector<std::string> Notes() const {
    std::vector<std::string> notes;
    for (std::int32_t i = 0; i < document_.RecordCount(); ++i) notes.push_back(document_.RecordNote(i));
    return notes;
  }
  std::size_t FilesInFolder() const {
    std::size_t count = 0;
    for ([[maybe_unused]] const auto& entry : std::filesystem::directory_iterator(folder_.Path())) ++count;
    return count;
  }
  using Texts = std::vector<std::string>;
  TemporaryFolder folder_;
  PhotometryDocument document_;
};

TEST_F(PhotometryDocumentTest, StartsEmptyAndUnmodified) {
  EXPECT_EQ(document_.RecordCount(), 0);
  EXPECT_FALSE(document_.IsModified());
  EXPECT_FALSE(document_.IsHalfLoaded());
  EXPECT_EQ(document_.FileName(), "");
}

TEST_F(PhotometryDocumentTest, ARowKeepsWhatWasMeasured) {
  document_.Append({15050, 20000, 100, 350.5, "first"});
  EXPECT_EQ(document_.RecordCount(), 1);
  EXPECT_EQ(document_.RecordEnergy(0), 15050);
  EXPECT_EQ(document_.RecordFullEnergy(0), 20000);
  EXPECT_EQ(document_.RecordDarkEnergy(0), 100);
  EXPECT_EQ(document_.RecordWavelength(0), 350.5);
  EXPECT_EQ(document_.RecordNote(0), "first");
  EXPECT_TRUE(document_.IsModified());
}

TEST_F(PhotometryDocumentTest, TransAndAbsFollowFromTheEnergies) {
  // (2090 - 100) / (20000 - 100) is a tenth: 10 %T, 1 Abs.
  document_.Append({2090, 20000, 100, 546.0, ""});
  EXPECT_NEAR(document_.RecordTrans(0), 10.0, 1e-12);
  EXPECT_NEAR(document_.RecordAbs(0), 1.0, 1e-12);
  // A blank that gives no light.
  document_.Append({2090, 100, 100, 546.0, ""});
  EXPECT_EQ(document_.RecordTrans(1), -1.0);
  EXPECT_EQ(document_.RecordAbs(1), 3.0);
}

TEST_F(PhotometryDocumentTest, ARowOutsideTheTableIsANumericFault) {
  AppendRows(2);
  EXPECT_THROW(document_.Record(-1), NumericFault);
  EXPECT_THROW(document_.Record(2), NumericFault);
  EXPECT_THROW(document_.RecordAbs(2), NumericFault);
  EXPECT_THROW(document_.SetRecordNote(2, "x"), NumericFault);
}

TEST_F(PhotometryDocumentTest, TheGridNumberOfARowCountsFromOne) {
  AppendRows(3);
  EXPECT_FALSE(document_.DeleteRecord(0));
  EXPECT_FALSE(document_.DeleteRecord(-1));
  EXPECT_FALSE(document_.DeleteRecord(4));
  EXPECT_EQ(document_.RecordCount(), 3);
  EXPECT_TRUE(document_.DeleteRecord(2));
  EXPECT_EQ(Notes(), (Texts{"row 0", "row 2"}));
  EXPECT_TRUE(document_.DeleteRecord(2));
  EXPECT_TRUE(document_.DeleteRecord(1));
  EXPECT_EQ(document_.RecordCount(), 0);
  EXPECT_FALSE(document_.DeleteRecord(1));
}

TEST_F(PhotometryDocumentTest, EveryChangeMarksTheDocument) {
  AppendRows(2);
  ASSERT_TRUE(document_.SaveFile(File()));
  EXPECT_FALSE(document_.IsModified());
  EXPECT_FALSE(document_.DeleteRecord(9));
  document_.SetRecordNote(0, "row 0");
  EXPECT_FALSE(document_.IsModified()) << "nothing has changed";
  document_.SetRecordNote(0, "other");
  EXPECT_TRUE(document_.IsModified());
  ASSERT_TRUE(document_.SaveFile(File()));
  document_.DeleteRecord(1);
  EXPECT_TRUE(document_.IsModified());
  ASSERT_TRUE(document_.SaveFile(File()));
  AppendRows(1);
  EXPECT_TRUE(document_.IsModified());
}

TEST_F(PhotometryDocumentTest, ASavedFileHasTheBytesOfItsRows) {
  AppendRows(2);
  ASSERT_TRUE(document_.SaveFile(File()));
  EXPECT_EQ(document_.FileName(), File());
  std::string bytes = ReadBytes(File());
  ASSERT_EQ(bytes.size(), 492u + 2 * 276u);
  const std::string written = bytes.substr(360, 128);
  EXPECT_TRUE(
      std::regex_match(written, std::regex("20\\d\\d-[01]\\d-[0-3]\\d  [0-2]\\d:[0-5]\\d:[0-5]\\d *")))
      << written;
  bytes.replace(360, 128, Padded("2024-02-29  13:05:09", 128));
  EXPECT_EQ(bytes, BasicFileBytes(2, 2));
}

TEST_F(PhotometryDocumentTest, ASavedFileIsOpenedAgain) {
  AppendRows(3);
  ASSERT_TRUE(document_.SaveFile(File()));
  PhotometryDocument other;
  ASSERT_TRUE(other.OpenFile(File()));
  EXPECT_EQ(other.RecordCount(), 3);
  EXPECT_EQ(other.RecordNote(2), "row 2");
  EXPECT_EQ(other.RecordDarkEnergy(2), -7);
  EXPECT_EQ(other.FileName(), File());
  EXPECT_FALSE(other.IsModified());
}

TEST_F(PhotometryDocumentTest, OpeningReplacesTheRows) {
  AppendRows(5);
  WriteBytes(File(), BasicFileBytes(2, 2));
  ASSERT_TRUE(document_.OpenFile(File()));
  EXPECT_EQ(Notes(), (Texts{"row 0", "row 1"}));
  EXPECT_FALSE(document_.IsModified());
}

TEST_F(PhotometryDocumentTest, AFileWithoutRowsIsOpened) {
  WriteBytes(File(), BasicFileBytes(0, 0));
  EXPECT_TRUE(document_.OpenFile(File()));
  EXPECT_EQ(document_.RecordCount(), 0);
  EXPECT_FALSE(document_.LastFault());
}

struct RefusedFile {
  const char* Name;
  std::string Bytes;
  FileError Error;
};

class PhotometryRefused : public PhotometryDocumentTest, public testing::WithParamInterface<RefusedFile> {};

TEST_P(PhotometryRefused, LeavesTheDocumentAsItWas) {
  AppendRows(1);
  WriteBytes(File(), GetParam().Bytes);
  EXPECT_FALSE(document_.OpenFile(File()));
  EXPECT_EQ(document_.LastFault().Error, GetParam().Error);
  EXPECT_EQ(Notes(), Texts{"row 0"});
  EXPECT_TRUE(document_.IsModified());
  EXPECT_FALSE(document_.IsHalfLoaded());
  EXPECT_EQ(document_.FileName(), "");
}

INSTANTIATE_TEST_SUITE_P(
    Files, PhotometryRefused,
    testing::Values(RefusedFile{"Empty", "", FileError::Damaged},
                    RefusedFile{"CutInTheHeader", BasicFileBytes(1, 1).substr(0, 103), FileError::Damaged},
                    RefusedFile{"CutInTheOptionBlock", BasicFileBytes(1, 1).substr(0, 491),
                                FileError::Damaged},
                    RefusedFile{"OtherKind", HeaderBytes(3) + BasicOptionBytes(0), FileError::WrongKind},
                    RefusedFile{"NegativeCount", BasicFileBytes(2, -1), FileError::Damaged},
                    RefusedFile{"NoRecordOfFive", BasicFileBytes(0, 5), FileError::Damaged}),
    NameOfRow<RefusedFile>);

TEST_F(PhotometryDocumentTest, AMissingFileLeavesTheDocumentAsItWas) {
  AppendRows(1);
  EXPECT_FALSE(document_.OpenFile(File()));
  EXPECT_EQ(document_.LastFault().Error, FileError::Missing);
  EXPECT_EQ(document_.RecordCount(), 1);
}

TEST_F(PhotometryDocumentTest, FewerRowsThanStatedAreShownAndNotSaved) {
  AppendRows(1);
  WriteBytes(File(), BasicFileBytes(3, 1000000000).substr(0, 492 + 3 * 276 - 1));
  EXPECT_FALSE(document_.OpenFile(File()));
  EXPECT_EQ(Notes(), (Texts{"row 0", "row 1"}));
  EXPECT_TRUE(document_.IsHalfLoaded());
  EXPECT_EQ(document_.LastFault().Error, FileError::Damaged);
  EXPECT_EQ(document_.LastFault().Held, 2);
  const std::string before = ReadBytes(File());
  EXPECT_FALSE(document_.SaveFile(File()));
  EXPECT_EQ(document_.LastFault().Error, FileError::HalfRead);
  EXPECT_EQ(ReadBytes(File()), before);

  WriteBytes(folder_.Path("b.bas"), BasicFileBytes(1, 1));
  EXPECT_TRUE(document_.OpenFile(folder_.Path("b.bas")));
  EXPECT_FALSE(document_.IsHalfLoaded());
  EXPECT_TRUE(document_.SaveFile(folder_.Path("b.bas")));
}

TEST_F(PhotometryDocumentTest, RowsMeasuredIntoAHalfLoadedDocumentAreSavedElsewhere) {
  const std::string before = BasicFileBytes(2, 5);
  WriteBytes(File(), before);
  std::filesystem::create_symlink(File(), folder_.Path("link.bas"));
  EXPECT_FALSE(document_.OpenFile(File()));
  EXPECT_FALSE(document_.SaveFile(folder_.Path("b.bas"))) << "nothing new in it";
  document_.Append(BasicRow(100, "new"));
  for (const char* own : {"a.bas", "./a.bas", "link.bas"}) {
    EXPECT_FALSE(document_.SaveFile(folder_.Path(own))) << own;
    EXPECT_EQ(document_.LastFault().Error, FileError::HalfRead) << own;
  }
  EXPECT_TRUE(document_.IsModified());
  ASSERT_TRUE(document_.SaveFile(folder_.Path("b.bas")));
  EXPECT_FALSE(document_.IsModified());
  EXPECT_FALSE(document_.IsHalfLoaded());
  EXPECT_EQ(document_.FileName(), folder_.Path("b.bas"));
  EXPECT_EQ(ReadBytes(File()), before);
  PhotometryDocument other;
  ASSERT_TRUE(other.OpenFile(folder_.Path("b.bas")));
  EXPECT_EQ(other.RecordCount(), 3);
  EXPECT_EQ(other.RecordNote(2), "new");
  document_.SetRecordNote(2, "newer");
  EXPECT_TRUE(document_.SaveFile(folder_.Path("b.bas"))) << "its own file is whole now";
}

TEST_F(PhotometryDocumentTest, ADocumentWithoutRowsIsNotSaved) {
  EXPECT_FALSE(document_.SaveFile(File()));
  EXPECT_EQ(document_.LastFault().Error, FileError::NotSavable);
  EXPECT_EQ(FilesInFolder(), 0u);
}

TEST_F(PhotometryDocumentTest, AFailedSaveKeepsTheOldFileAndTheMark) {
  AppendRows(200);
  WriteBytes(File(), "old");
  const pid_t child = ::fork();
  if (child == 0) {
    std::signal(SIGXFSZ, SIG_IGN);
    const rlimit limit{10000, 10000};
    ::setrlimit(RLIMIT_FSIZE, &limit);
    const bool saved = document_.SaveFile(File());
    ::_exit(!saved && document_.IsModified() && document_.FileName().empty() &&
                    document_.LastFault().Reason == "File too large"
                ? 0
                : 1);
  }
  int status = -1;
  ::waitpid(child, &status, 0);
  EXPECT_EQ(status, 0);
  EXPECT_EQ(ReadBytes(File()), "old");
  EXPECT_EQ(FilesInFolder(), 1u);
}

TEST_F(PhotometryDocumentTest, ASaveIntoAMissingFolderKeepsTheMark) {
  AppendRows(1);
  ASSERT_TRUE(document_.SaveFile(File()));
  document_.SetRecordNote(0, "new");
  EXPECT_FALSE(document_.SaveFile(folder_.Path("none/a.bas")));
  EXPECT_TRUE(document_.IsModified());
  EXPECT_EQ(document_.FileName(), File()) << "the document still belongs to its old file";
}

TEST_F(PhotometryDocumentTest, CharactersWithoutAPlaceAreTold) {
  AppendRows(1);
  document_.SetRecordNote(0, "\u03BCg \u6BD4");
  ASSERT_TRUE(document_.SaveFile(File()));
  EXPECT_TRUE(document_.TextWasLost());
  PhotometryDocument other;
  ASSERT_TRUE(other.OpenFile(File()));
  EXPECT_EQ(other.RecordNote(0), "\u00B5g ?");
  document_.SetRecordNote(0, "\u03BCg");
  ASSERT_TRUE(document_.SaveFile(File()));
  EXPECT_FALSE(document_.TextWasLost());
}

}  // namespace
}  // namespace spectrane
