#pragma once

#include <bit>
#include <cstdint>
#include <string>
#include <string_view>

namespace spectrane {

/// Builds a block of bytes, little-endian whatever the machine.
class ByteWriter {
 public:
  ByteWriter& U8(std::uint32_t value) { return Put(value, 1); }
  ByteWriter& U16(std::uint32_t value) { return Put(value, 2); }
  ByteWriter& U32(std::uint64_t value) { return Put(value, 4); }
  ByteWriter& U64(std::uint64_t value) { return Put(value, 8); }
  ByteWriter& F64(double value) { return U64(std::bit_cast<std::uint64_t>(value)); }
  ByteWriter& Zeros(std::size_t count) {
    bytes_.append(count, '\0');
    return *this;
  }
  ByteWriter& Raw(std::string_view bytes) {
    bytes_ += bytes;
    return *this;
  }
  ByteWriter& Units(std::u16string_view text) {
    for (const char16_t unit : text) U16(unit);
    return *this;
  }
  /// Replaces the four bytes at `at`.
  void PutU32At(std::size_t at, std::uint64_t value) {
    for (std::size_t i = 0; i < 4; ++i) bytes_[at + i] = static_cast<char>((value >> (8 * i)) & 0xFF);
  }

  void Reserve(std::size_t size) { bytes_.reserve(size); }
  std::size_t Size() const { return bytes_.size(); }
  const std::string& Bytes() const { return bytes_; }

 private:
  ByteWriter& Put(std::uint64_t value, int count) {
    for (int i = 0; i < count; ++i) bytes_ += static_cast<char>((value >> (8 * i)) & 0xFF);
    return *this;
  }

  std::string bytes_;
};

}  // namespace spectrane
