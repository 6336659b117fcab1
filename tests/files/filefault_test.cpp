#include "files/filefault.h"

#include <set>

#include "files/filesupport.h"

namespace spectrane {
namespace {

struct WordsRow {
  const char* Name;
  FileFault Fault;
  const char* Words;
};

class FileFaultWords : public testing::TestWithParam<WordsRow> {};

TEST_P(FileFaultWords, SayWhatIsWrong) {
  EXPECT_EQ(FaultWords(GetParam().Fault), GetParam().Words);
  EXPECT_EQ(static_cast<bool>(GetParam().Fault), GetParam().Fault.Error != FileError::None);
}

const WordsRow kWordsRows[] = {
    {"NoFault", {FileError::None, 0, 0, 0, {}}, "no fault"},
    {"Missing", {FileError::Missing, 0, 0, 0, {}}, "no such file"},
    {"Taken", {FileError::Exists, 0, 0, 0, {}}, "exists already"},
    {"NotRegular", {FileError::NotRegular, 0, 0, 0, {}}, "not a regular file"},
    {"Foreign", {FileError::Foreign, 0, 0, 0, {}}, "not a data file of this system"},
    {"WrongKind", {FileError::WrongKind, 0, 0, 0, {}}, "not a data file of the kind that is wanted"},
    {"EndsEarly", {FileError::Damaged, 300, 0, 0, {}}, "damaged: ends too early, at byte 300"},
    {"AsManyAsStated", {FileError::Damaged, 7, 5, 5, {}}, "damaged: ends too early, at byte 7"},
    {"RecordsMissing", {FileError::Damaged, 768, 5, 1, {}}, "damaged: has 1 of the 5 records that it states"},
    {"NegativeCount",
     {FileError::Damaged, 104, -1, 0, {}},
     "damaged: states a number of records that makes no sense"},
    {"TooBig",
     {FileError::TooBig, 0, 5000, 1000, {}},
     "states 5000 records, more than the 1000 that can be taken"},
    {"PlatformWords",
     {FileError::InputOutput, 0, 0, 0, "No space left on device"},
     "No space left on device"},
    {"PlatformSilent", {FileError::InputOutput, 0, 0, 0, {}}, "input/output error"},
    {"NothingToSave", {FileError::NotSavable, 0, 0, 0, {}}, "nothing to save"},
    {"HalfRead",
     {FileError::HalfRead, 0, 0, 0, {}},
     "The file holds rows that could not be read; rows measured since can be saved under another name."},
    {"OfALaterVersion", {static_cast<FileError>(99), 0, 0, 0, {}}, "unknown fault"},
};
INSTANTIATE_TEST_SUITE_P(Rows, FileFaultWords, testing::ValuesIn(kWordsRows), NameOfRow<WordsRow>);

}  // namespace
}  // namespace spectrane
