#include "output/workbook/workbook.h"

#include <cstdlib>
#include <stdexcept>

#include "base/basesupport.h"
#include "base/notfinite.h"
#include "output/workbook/workbooksupport.h"

namespace spectrane {
namespace {

using testing::HasSubstr;
using testing_workbook::NumberAt;
using testing_workbook::OutputOf;
using testing_workbook::WorkbookListing;

class WorkbookFile : public testing::Test {
 protected:
  std::string Listing(const Workbook& book) {
    std::string reason;
    EXPECT_TRUE(book.Save(Folder.Path("book.xls"), &reason)) << reason;
    return WorkbookListing(Folder.Path("book.xls"));
  }

  TemporaryFolder Folder;
};

/// A picture of 2 by 1 pixels, red and blue.
const std::string kPng(
    "\x89\x50\x4e\x47\x0d\x0a\x1a\x0a\x00\x00\x00\x0d\x49\x48\x44\x52\x00\x00\x00\x02"
    "\x00\x00\x00\x01\x08\x02\x00\x00\x00\x7b\x40\xe8\xdd\x00\x00\x00\x0d\x49\x44\x41"
    "\x54\x78\x9c\x63\xf8\xcf\x00\x04\xff\x01\x07\x00\x01\xff\xe2\x23\x9e\x59\x00\x00"
    "\x00\x00\x49\x45\x4e\x44\xae\x42\x60\x82",
    70);

TEST_F(WorkbookFile, IsReadCellByCellByAnotherReader) {
  Workbook book("sheet1");
  const auto text = book.AddStyle({.NumberFormat = "@"});
  const auto title =
      book.AddStyle({.FontSize = 12, .Bold = true, .NumberFormat = "@", .Align = CellAlign::Centre});
  const auto wavelength = book.AddStyle({.NumberFormat = "0.0"});
  const auto count = book.AddStyle({.NumberFormat = "0", .Align = CellAlign::Right});
  EXPECT_EQ(book.AddStyle({.NumberFormat = "0.0"}), wavelength);
  book.SetColumn(0, 8, text);
  book.SetColumn(2, 20.5, wavelength);
  book.WriteText(0, 0, "photometry.bas", title);
  book.Merge({0, 0, 0, 6});
  book.WriteText(2, 0, "=1+1", text);
  book.WriteText(2, 1, "\xCE\xBCg/ml \xE6\xB5\x8B \xF0\x9F\x94\xAC", text);
  book.WriteNumber(3, 2, 546.1, wavelength);
  book.WriteNumber(3, 3, -0.1 + 0.3, wavelength);
  book.WriteNumber(3, 4, 65535, count);
  book.WriteNumber(3, 5, kNaN, wavelength);
  book.WriteNumber(3, 6, -kInfinity, wavelength);

  EXPECT_EQ(Listing(book),
            "biff 80\n"
            "sheet sheet1 4 7\n"
            "merged 0 1 0 7\n"
            // 8 digits and 20.5 of them at 7 pixels, 5 pixels of margin, 256 units to 7 pixels.
            "column 0 2230\n"
            "column 2 5412\n"
            "cell 0 0 text 'photometry.bas' @ Verdana 12 bold 2\n"
            "cell 2 0 text '=1+1' @ Verdana 10 plain 0\n"
            "cell 2 1 text '\xCE\xBCg/ml \xE6\xB5\x8B \xF0\x9F\x94\xAC' @ Verdana 10 plain 0\n"
            "cell 3 2 number 546.1 0.0 Verdana 10 plain 0\n"
            "cell 3 3 number 0.19999999999999998 0.0 Verdana 10 plain 0\n"
            "cell 3 4 number 65535.0 0 Verdana 10 plain 3\n"
            "cell 3 5 text '-' 0.0 Verdana 10 plain 0\n"
            "cell 3 6 text '-' 0.0 Verdana 10 plain 0\n");
}

TEST_F(WorkbookFile, HasTheLastOfTwoContentsOfOneCellInAnyOrderOfWriting) {
  Workbook book("sheet1");
  const auto style = book.AddStyle({});
  book.WriteText(5, 1, "later row", style);
  book.WriteText(0, 1, "b", style);
  book.WriteText(0, 0, "first", style);
  book.WriteText(0, 0, "second", style);
  const std::string listing = Listing(book);
  EXPECT_THAT(listing, HasSubstr("cell 0 0 text 'second' General Verdana 10 plain 0\ncell 0 1 text 'b' "));
  EXPECT_THAT(listing, HasSubstr("cell 5 1 text 'later row'"));
  EXPECT_THAT(listing, testing::Not(HasSubstr("'first'")));
}

TEST_F(WorkbookFile, WithoutACellIsAWorkbookToo) {
  EXPECT_EQ(Listing(Workbook("sheet1")), "biff 80\nsheet sheet1 0 0\n");
}

// Texts are kept in records of 8224 bytes; each length moves the border through heads and characters.
TEST_F(WorkbookFile, TextsAcrossTheBordersOfRecordsComeBack) {
  Workbook book("sheet1");
  const auto style = book.AddStyle({});
  std::vector<std::string> texts;
  for (std::size_t i = 0; i < 400; ++i) {
    std::string text = std::to_string(i) + ":";
    const std::string unit = i % 3 == 0 ? "\xE6\xB5\x8B" : i % 3 == 1 ? "n" : "\xC2\xB5";
    for (std::size_t length = 0; length < 100 + i; ++length) text += unit;
    texts.push_back(text);
    book.WriteText(static_cast<std::uint32_t>(i), 0, text, style);
  }
  const std::string listing = Listing(book);
  for (std::size_t i = 0; i < texts.size(); ++i) {
    const std::string wanted =
        "cell " + std::to_string(i) + " 0 text '" + texts[i] + "' General Verdana 10 plain 0\n";
    ASSERT_THAT(listing, HasSubstr(wanted)) << i;
  }
}

TEST_F(WorkbookFile, TextsLongerThanACellAreCutBetweenCharacters) {
  Workbook book("sheet1");
  const auto style = book.AddStyle({});
  std::string microscopes = "x";
  for (int i = 0; i < 20000; ++i) microscopes += "\xF0\x9F\x94\xAC";
  book.WriteText(0, 0, microscopes, style);
  book.WriteText(1, 0, std::string(40000, 'n'), style);
  const std::string listing = Listing(book);
  // 32767 units of UTF-16: one for the "x", two for each of 16383 characters.
  EXPECT_THAT(listing, HasSubstr("'" + microscopes.substr(0, 1 + 4 * 16383) + "'"));
  EXPECT_THAT(listing, HasSubstr("'" + std::string(32767, 'n') + "'"));
}

TEST_F(WorkbookFile, BrokenUtf8BecomesTheReplacementCharacter) {
  Workbook book("sheet1");
  book.WriteText(0, 0,
                 "a\xFF"
                 "b",
                 book.AddStyle({}));
  EXPECT_THAT(Listing(book), HasSubstr("'a\xEF\xBF\xBD"
                                       "b'"));
}

TEST_F(WorkbookFile, OfAWholeSpectrumHasEveryCell) {
  Workbook book("sheet1");
  const auto style = book.AddStyle({.NumberFormat = "0.000"});
  for (std::uint32_t row = 0; row < 10001; ++row) {
    for (std::uint32_t column = 0; column < 7; ++column)
      book.WriteNumber(row, column, row * 0.001 + column, style);
  }
  const std::string listing = Listing(book);
  EXPECT_THAT(listing.substr(0, 40), HasSubstr("sheet sheet1 10001 7\n"));
  EXPECT_EQ(std::ranges::count(listing, '\n'), 2 + 10001 * 7);
  EXPECT_THAT(listing, HasSubstr("cell 10000 6 number 16.0 0.000 Verdana 10 plain 0\n"));
  EXPECT_THAT(listing, HasSubstr("cell 5001 3 number 8.001000000000001 0.000 Verdana 10 plain 0\n"));
}

TEST_F(WorkbookFile, PlacesOutsideTheSheetAreRefused) {
  Workbook book("sheet1");
  const auto style = book.AddStyle({});
  EXPECT_THROW(book.WriteText(65536, 0, "x", style), std::out_of_range);
  EXPECT_THROW(book.WriteNumber(0, 256, 1, style), std::out_of_range);
  EXPECT_THROW(book.WriteNumber(0, 256, kNaN, style), std::out_of_range);
  EXPECT_THROW(book.Merge({0, 0, 0, 256}), std::out_of_range);
  EXPECT_THROW(book.SetColumn(256, 5, style), std::out_of_range);
  EXPECT_NO_THROW(book.WriteText(65535, 255, "the last cell", style));
}

/// One record of the workbook's stream.
struct StreamRecord {
  std::size_t At;
  std::uint64_t Kind;
  std::string_view Body;
};

/// The records of a stream that lies in the first sectors of the file, up to the end of the sheet.
std::vector<StreamRecord> RecordsOf(std::string_view file) {
  std::vector<StreamRecord> records;
  const std::string_view stream = file.substr(512);
  int ends = 0;
  for (std::size_t at = 0; ends < 2 && at + 4 <= stream.size();) {
    const std::uint64_t kind = NumberAt(stream, at, 2);
    const auto size = static_cast<std::size_t>(NumberAt(stream, at + 2, 2));
    EXPECT_LE(size, 8224u) << at;
    records.push_back({at, kind, stream.substr(at + 4, size)});
    at += 4 + size;
    if (kind == 0x000A) ++ends;
  }
  return records;
}

TEST_F(WorkbookFile, RecordsFollowOneAnotherAndTheSheetIsWhereItIsSaidToBe) {
  Workbook book("sheet1");
  const auto style = book.AddStyle({});
  for (std::uint32_t row = 0; row < 70; row += 3) book.WriteNumber(row, 1, row, style);
  book.InsertPicture(1, 7, {std::string(30000, 'p'), 100, 50});
  const std::string file = book.Bytes();
  const std::vector<StreamRecord> records = RecordsOf(file);
  ASSERT_FALSE(records.empty());
  EXPECT_EQ(records.front().Kind, 0x0809u);
  EXPECT_EQ(records.back().Kind, 0x000Au);
  std::size_t sheetAt = 0;
  std::vector<std::uint64_t> group;
  bool inGroup = false;
  for (const StreamRecord& record : records) {
    if (record.Kind == 0x0085) sheetAt = static_cast<std::size_t>(NumberAt(record.Body, 0, 4));
    inGroup = record.Kind == 0x00EB || (inGroup && record.Kind == 0x003C);
    if (inGroup) group.push_back(record.Kind);
    if (record.At == sheetAt && sheetAt > 0) {
      EXPECT_EQ(record.Kind, 0x0809u);
      EXPECT_EQ(NumberAt(record.Body, 2, 2), 0x0010u) << "a sheet";
      sheetAt = 0;
    }
  }
  EXPECT_EQ(sheetAt, 0u) << "there is a record where the sheet begins";
  EXPECT_EQ(group, (std::vector<std::uint64_t>{0xEB, 0xEB, 0x3C, 0x3C}));
}

TEST_F(WorkbookFile, ThePictureBeginsInItsCellAndKeepsItsSize) {
  Workbook book("sheet1");
  const auto style = book.AddStyle({});
  for (std::uint32_t column = 0; column < 7; ++column) book.SetColumn(column, 12, style);
  // 64 pixels to a column behind the seven, 17 to a row.
  book.InsertPicture(1, 7, {kPng, 2 * 64 + 32, 3 * 17 + 8});
  std::string drawing;
  const std::string bytes = book.Bytes();
  for (const StreamRecord& record : RecordsOf(bytes)) {
    if (record.Kind == 0x00EC) drawing = record.Body;
  }
  const std::size_t anchor = drawing.find(std::string("\x10\xF0\x12\0\0\0", 6));
  ASSERT_NE(anchor, std::string::npos);
  std::vector<std::uint64_t> places;
  for (std::size_t i = 0; i < 9; ++i) places.push_back(NumberAt(drawing, anchor + 6 + 2 * i, 2));
  EXPECT_EQ(places, (std::vector<std::uint64_t>{2, 7, 0, 1, 0, 9, 512, 4, 120}));
}

TEST_F(WorkbookFile, IsOpenedByAnOfficeWithItsPicture) {
  if (std::system("command -v soffice >/dev/null 2>&1") != 0)
    GTEST_SKIP() << "soffice (libreoffice-calc-nogui) is not installed";
  Workbook book("sheet1");
  const auto style = book.AddStyle({.NumberFormat = "0.000"});
  book.SetColumn(0, 30, style);
  book.WriteText(0, 0, "\xE6\xB5\x8B\xC2\xB5 photometry", book.AddStyle({.NumberFormat = "@"}));
  book.WriteNumber(1, 0, 1.23456, style);
  book.InsertPicture(3, 0, {kPng, 200, 100});
  ASSERT_TRUE(book.Save(Folder.Path("book.xls")));
  OutputOf("cd '" + Folder.Path() + "' && HOME='" + Folder.Path() +
           "' soffice --headless --convert-to pdf book.xls >/dev/null 2>&1");
  const std::string text = OutputOf("pdftotext -layout '" + Folder.Path("book.pdf") + "' -");
  EXPECT_THAT(text, HasSubstr("\xE6\xB5\x8B\xC2\xB5 photometry"));
  EXPECT_THAT(text, HasSubstr("1.235"));
  const std::string pictures = OutputOf("pdfimages -list '" + Folder.Path("book.pdf") + "'");
  EXPECT_EQ(std::ranges::count(pictures, '\n'), 3) << pictures;
}

TEST_F(WorkbookFile, AFailedWriteLeavesWhatWasThere) {
  std::filesystem::create_directory(Folder.Path("folder.xls"));
  WriteBytes(Folder.Path("folder.xls/old"), "old");
  std::string reason;
  EXPECT_FALSE(Workbook("sheet1").Save(Folder.Path("folder.xls"), &reason));
  EXPECT_NE(reason, "");
  EXPECT_FALSE(Workbook("sheet1").Save(Folder.Path("missing/book.xls"), &reason));
  EXPECT_EQ(ReadBytes(Folder.Path("folder.xls/old")), "old");
  EXPECT_EQ(NamesIn(Folder.Path()), 1u) << "no leftovers";
}

}  // namespace
}  // namespace spectrane
