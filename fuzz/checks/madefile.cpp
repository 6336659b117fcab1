#include "fuzz/checks/madefile.h"

#include <bit>
#include <numeric>

namespace spectrane::fuzz {
namespace {

/// `mark` keeps one block's values apart from another's.
std::string MadeBlock(std::span<const Row> rows, int mark) {
  const std::size_t size =
      std::accumulate(rows.begin(), rows.end(), std::size_t{0},
                      [](std::size_t sum, const Row& row) { return sum + row.Count * row.Width(); });
  std::string block(size, ' ');
  int number = mark;
  for (const Element& element : ElementsOf(rows)) {
    ++number;
    switch (element.Is) {
      case Form::Long:
      case Form::Integer:
        PutNumber(block, element.Offset, number, element.Width);
        break;
      case Form::Boolean:
        PutNumber(block, element.Offset, number % 2 == 0 ? -1 : 0, element.Width);
        break;
      case Form::Double:
        PutDouble(block, element.Offset, number + 0.25);
        break;
      case Form::Text:
        PutText(block, element.Offset, (number % 4 == 0 ? "text \xB5 " : "text ") + std::to_string(number),
                element.Width);
        break;
    }
  }
  return block;
}

}  // namespace

std::vector<Element> ElementsOf(std::span<const Row> rows) {
  std::vector<Element> elements;
  std::size_t offset = 0;
  for (const Row& row : rows) {
    for (std::size_t i = 0; i < row.Count; ++i, offset += row.Width()) {
      elements.push_back({row.Is, offset, row.Width()});
    }
  }
  return elements;
}

void PutNumber(std::string& bytes, std::size_t offset, std::int64_t value, std::size_t width) {
  const auto bits = static_cast<std::uint64_t>(value);
  for (std::size_t i = 0; i < width; ++i) bytes.at(offset + i) = static_cast<char>(bits >> (8 * i));
}

void PutDouble(std::string& bytes, std::size_t offset, double value) {
  PutNumber(bytes, offset, std::bit_cast<std::int64_t>(value), 8);
}

void PutText(std::string& bytes, std::size_t offset, const std::string& text, std::size_t width) {
  std::string padded = text;
  padded.resize(width, ' ');
  bytes.replace(offset, width, padded);
}

std::string MadeHeader(std::int32_t fileType, const std::string& author) {
  std::string header(kHeader, ' ');
  PutNumber(header, 0, fileType, 4);
  PutText(header, 4, "1.62.0", 16);
  PutText(header, 20, author, 16);
  PutText(header, 36, "Spectrane", 32);
  PutNumber(header, 100, 0x12345678, 4);
  return header;
}

std::string MadeFile(const FileTable& table, int held, std::int64_t stated) {
  std::string file = MadeHeader(table.FileType) + MadeBlock(table.Option, 0);
  if (table.CountAt != kFromRange) {
    PutNumber(file, kHeader + table.CountAt, stated, 4);
  } else {
    PutDouble(file, kHeader, 190.0 + static_cast<double>(stated - 1));
    PutDouble(file, kHeader + 8, 190.0);
  }
  file.resize(table.FirstRecord, '\0');
  for (int i = 0; i < held; ++i) file += MadeBlock(table.Record, 1000 + 100 * i);
  return file;
}

Bytes BytesOf(const std::string& file) {
  return {reinterpret_cast<const unsigned char*>(file.data()), file.size()};
}

}  // namespace spectrane::fuzz
