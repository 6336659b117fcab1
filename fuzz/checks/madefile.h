#pragma once

#include <string>
#include <vector>

#include "fuzz/checks/filetable.h"

namespace spectrane::fuzz {

/// Files made field by field, without the code under test.

/// One element of a block.
struct Element {
  Form Is;
  /// From the start of the block [bytes].
  std::size_t Offset;
  std::size_t Width;
};
std::vector<Element> ElementsOf(std::span<const Row> rows);

/// Little-endian.
void PutNumber(std::string& bytes, std::size_t offset, std::int64_t value, std::size_t width);
void PutDouble(std::string& bytes, std::size_t offset, double value);
/// Left-justified, padded with blanks.
void PutText(std::string& bytes, std::size_t offset, const std::string& text, std::size_t width);

/// The header that files of the program begin with.
std::string MadeHeader(std::int32_t fileType, const std::string& author = "Kestu");
/// A file with `held` records, no two fields alike, that states `stated`.
std::string MadeFile(const FileTable& table, int held, std::int64_t stated);
Bytes BytesOf(const std::string& file);

}  // namespace spectrane::fuzz
