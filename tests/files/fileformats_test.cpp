// docs/file-formats.md says what the program's tables say, row by row, and nothing else.

#include <gmock/gmock.h>

#include <map>
#include <sstream>

#include "files/allkinds.h"
#include "files/filesupport.h"

namespace spectrane {
namespace {

std::string TypeWords(const LayoutField& field) {
  const std::map<FieldType, std::string> names = {{FieldType::Long, "Long"},
                                                  {FieldType::Integer, "Integer"},
                                                  {FieldType::Double, "Double"},
                                                  {FieldType::Boolean, "Boolean"},
                                                  {FieldType::Text, "Text"}};
  std::string words = names.at(field.Type);
  if (field.Dimensions > 0) words += " [" + std::to_string(field.Rows) + "]";
  if (field.Dimensions > 1) words += "[" + std::to_string(field.Columns) + "]";
  return words;
}

std::string RowsOf(const Block& block) {
  std::string rows;
  for (const LayoutField& field : block.Fields) {
    rows += "| " + std::to_string(field.Offset) + " | " + std::to_string(field.Width) + " | " +
            TypeWords(field) + " | " + field.Name + " |\n";
  }
  return rows;
}

/// A kind's section as it has to be, without the meanings.
std::string SectionOf(const FileKind& kind) {
  const std::size_t end = kFileHeaderSize + kind.Option.Size;
  std::string text = "(." + std::string(EndingOf(kind)) + ", file type " + std::to_string(kind.FileType) +
                     ", `" + kind.Name + "` in the batch command)\n";
  text += "Option block: " + std::to_string(kind.Option.Size) + " bytes at 104.\n";
  if (kind.FirstRecord > end) {
    text += "The " + std::to_string(kind.FirstRecord - end) + " bytes behind it belong to no field\n";
  }
  text += RowsOf(kind.Option);
  text += "Records: " + std::to_string(kind.Record.Size) + " bytes each, the first at " +
          std::to_string(kind.FirstRecord) + ".\n";
  return text + RowsOf(kind.Record);
}

/// What the document says of layouts: headings, sizes and rows without their meanings; one text a section.
std::vector<std::string> DocumentedSections() {
  std::istringstream lines(ReadBytes(std::string(SPECTRANE_SOURCE) + "/docs/file-formats.md"));
  std::vector<std::string> sections;
  for (std::string line; std::getline(lines, line);) {
    if (line.starts_with("## ")) {
      const std::size_t bracket = line.find('(');
      sections.push_back(bracket == std::string::npos ? line + "\n" : line.substr(bracket) + "\n");
    } else if (sections.empty()) {
      continue;
    } else if (line.starts_with("| ") && std::isdigit(static_cast<unsigned char>(line[2])) != 0) {
      std::size_t cut = 0;
      for (int bar = 0; bar < 4; ++bar) cut = line.find('|', cut + 1);
      sections.back() += line.substr(0, cut + 1) + "\n";
    } else if (line.starts_with("Option block: ")) {
      const std::size_t point = line.find('.');
      sections.back() += line.substr(0, point + 1) + "\n";
      const std::size_t spare = line.find("The ", point);
      if (spare != std::string::npos) {
        sections.back() += line.substr(spare, line.find(';', spare) - spare) + "\n";
      }
    } else if (line.starts_with("Records: ")) {
      sections.back() += line + "\n";
    }
  }
  return sections;
}

TEST(FileFormatsDocument, HasASectionForEveryKindAndNoOther) {
  EXPECT_EQ(DocumentedSections().size(), AllFileKinds().size() + 1);
}

TEST(FileFormatsDocument, TellsTheHeaderAsItIs) {
  EXPECT_THAT(DocumentedSections(), testing::Contains("## Header\n" + RowsOf(FileHeaderBlock())));
}

TEST(FileFormatsDocument, TellsEveryKindAsItIs) {
  const std::vector<std::string> sections = DocumentedSections();
  for (const FileKind* const kind : AllFileKinds()) {
    EXPECT_THAT(sections, testing::Contains(SectionOf(*kind)));
  }
}

TEST(FileFormatsDocument, ListsEveryEndingWithItsFileType) {
  const std::string text = ReadBytes(std::string(SPECTRANE_SOURCE) + "/docs/file-formats.md");
  for (const FileKind* const kind : AllFileKinds()) {
    const std::string row =
        "| ." + std::string(EndingOf(*kind)) + " | " + std::to_string(kind->FileType) + " | ";
    EXPECT_NE(text.find(row), std::string::npos) << row;
  }
}

}  // namespace
}  // namespace spectrane
