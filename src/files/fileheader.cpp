#include "files/fileheader.h"

#include "base/version.h"
#include "files/filenumber.h"

namespace spectrane {
namespace {

constexpr LayoutField kFields[] = {
    Field<&FileHeader::FileType>("FileType", 0, 4),     Field<&FileHeader::Version>("Version", 4, 16),
    Field<&FileHeader::Author>("Author", 20, 16),       Field<&FileHeader::Contact>("Contact", 36, 32),
    Field<&FileHeader::Reserved1>("Reserved1", 68, 16), Field<&FileHeader::Reserved2>("Reserved2", 84, 16),
    Field<&FileHeader::Magic>("Magic", 100, 4),
};
constexpr Block kBlock = BlockOf<FileHeader, kFields, kFileHeaderSize>();

}  // namespace

const Block& FileHeaderBlock() {
  return kBlock;
}

FileHeader NewFileHeader(std::int32_t fileType) {
  FileHeader header;
  header.FileType = fileType;
  header.Version = VersionText();
  header.Author = kFileAuthor;
  header.Contact = "Spectrane";
  header.Magic = kFileMagic;
  return header;
}

bool HeaderHolds(const FileHeader& header) {
  const std::size_t first = header.Author.find_first_not_of(' ');
  const bool author =
      first != std::string::npos &&
      header.Author.substr(first, header.Author.find_last_not_of(' ') + 1 - first) == kFileAuthor;
  return author && header.Magic == kFileMagic;
}

bool ReadFileHeader(int fileNumber, FileHeader& header) {
  const unsigned char* const bytes = ViewBytes(fileNumber, 0, kFileHeaderSize);
  if (bytes == nullptr) return false;
  kBlock.Decode(bytes, &header, 1);
  return true;
}

}  // namespace spectrane
