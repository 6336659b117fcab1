#pragma once

#include <cmath>
#include <cstdint>
#include <string>
#include <vector>

#include "base/basesupport.h"
#include "files/basicfile.h"

namespace spectrane {

/// Bytes of files, written out field by field and without the code under test.
inline std::string Long(std::int64_t value) {
  std::string bytes;
  for (int i = 0; i < 4; ++i) bytes += static_cast<char>((value >> (8 * i)) & 0xFF);
  return bytes;
}
inline std::string Padded(std::string text, std::size_t width) {
  text.resize(width, ' ');
  return text;
}
inline std::string Bytes(std::initializer_list<int> values) {
  std::string bytes;
  for (const int value : values) bytes += static_cast<char>(value);
  return bytes;
}
/// A finite double, from its mathematics: sign, exponent and the 52 bits of its fraction.
inline std::string DoubleBytes(double value) {
  if (value == 0) return std::string(7, '\0') + (std::signbit(value) ? '\x80' : '\0');
  int exponent = 0;
  const double fraction = std::frexp(std::fabs(value), &exponent) * 2 - 1;
  auto bits = static_cast<std::uint64_t>(std::ldexp(fraction, 52));
  bits += static_cast<std::uint64_t>(exponent - 1 + 1023) * (std::uint64_t{1} << 52);
  std::string bytes;
  for (int i = 0; i < 8; ++i, bits /= 256) bytes += static_cast<char>(bits % 256);
  if (value < 0) bytes[7] = static_cast<char>(static_cast<unsigned char>(bytes[7]) | 0x80);
  return bytes;
}
/// 546.0 is 1.06640625 times 2^9: exponent 1023 + 9 = 0x408, fraction 0x11 / 0x100.
inline std::string Double546() {
  return Bytes({0, 0, 0, 0, 0, 0x10, 0x81, 0x40});
}

inline std::string HeaderBytes(int fileType, const std::string& author = "Kestu",
                               std::int64_t magic = 0x12345678) {
  return Long(fileType) + Padded("1.62.0", 16) + Padded(author, 16) + Padded("Spectrane", 32) +
         Padded("", 16) + Padded("", 16) + Long(magic);
}
inline std::string BasicOptionBytes(std::int64_t count) {
  return Padded("1.62.0", 256) + Padded("2024-02-29  13:05:09", 128) + Long(count);
}
inline std::string BasicRecordBytes(std::int64_t energy, const std::string& note) {
  return Long(energy) + Long(20000) + Long(-7) + Double546() + Padded(note, 256);
}
/// A photometry file with `held` records that states `stated`.
inline std::string BasicFileBytes(int held, std::int64_t stated) {
  std::string bytes = HeaderBytes(11) + BasicOptionBytes(stated);
  for (int i = 0; i < held; ++i) bytes += BasicRecordBytes(100 + i, "row " + std::to_string(i));
  return bytes;
}
inline BasicRecord BasicRow(std::int32_t energy, const std::string& note) {
  return {energy, 20000, -7, 546.0, note};
}

/// Closes a file number at the end of a test.
struct NumberAtEnd {
  int Number = 0;
  ~NumberAtEnd() { CloseFileNumber(Number); }
};

}  // namespace spectrane
