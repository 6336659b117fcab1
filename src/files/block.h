#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <string>
#include <type_traits>
#include <utility>

#include "base/fixedtext.h"
#include "files/layout.h"

namespace spectrane {

/// A block of a data file: its description, and its two directions made from it by the compiler, which makes
/// them as fast as code written out field by field.
struct Block {
  Layout Fields;
  /// On disk [bytes].
  std::size_t Size;
  /// Writes an object's members into `Size` bytes. A text that had to give up a character sets `lost`.
  void (*Encode)(const void* object, unsigned char* bytes, bool& lost);
  /// Reads `count` blocks that stand one behind the other into as many objects in a row.
  void (*Decode)(const unsigned char* bytes, void* objects, std::size_t count);
};

namespace blockdetail {

/// The bits of a number, lowest byte first on every machine.
template <typename Unsigned>
void Store(unsigned char* bytes, Unsigned value) {
  for (std::size_t i = 0; i < sizeof(Unsigned); ++i) bytes[i] = static_cast<unsigned char>(value >> (8 * i));
}

template <typename Unsigned>
Unsigned Load(const unsigned char* bytes) {
  Unsigned value = 0;
  for (std::size_t i = 0; i < sizeof(Unsigned); ++i) {
    value = static_cast<Unsigned>(value | static_cast<Unsigned>(static_cast<Unsigned>(bytes[i]) << (8 * i)));
  }
  return value;
}

/// Writes one element into its place.
struct Storer {
  unsigned char* Bytes;
  std::size_t Width;
  bool& Lost;

  void operator()(const std::int32_t& value) const { Store(Bytes, static_cast<std::uint32_t>(value)); }
  void operator()(const std::int16_t& value) const { Store(Bytes, static_cast<std::uint16_t>(value)); }
  void operator()(const double& value) const { Store(Bytes, std::bit_cast<std::uint64_t>(value)); }
  void operator()(const bool& value) const { Store(Bytes, static_cast<std::uint16_t>(value ? 0xFFFF : 0)); }
  void operator()(const std::string& text) const {
    WriteField(text, reinterpret_cast<char*>(Bytes), Width, &Lost);
  }
};

/// Reads one element from its place.
struct Loader {
  const unsigned char* Bytes;
  std::size_t Width;

  void operator()(std::int32_t& value) const {
    value = static_cast<std::int32_t>(Load<std::uint32_t>(Bytes));
  }
  void operator()(std::int16_t& value) const {
    value = static_cast<std::int16_t>(Load<std::uint16_t>(Bytes));
  }
  void operator()(double& value) const { value = std::bit_cast<double>(Load<std::uint64_t>(Bytes)); }
  void operator()(bool& value) const { value = Load<std::uint16_t>(Bytes) != 0; }
  void operator()(std::string& text) const { ReadField({reinterpret_cast<const char*>(Bytes), Width}, text); }
};

template <const auto& kFields, std::size_t kIndex>
void EncodeField(const void* object, unsigned char* block, bool& lost) {
  constexpr const LayoutField& kField = kFields[kIndex];
  for (std::size_t i = 0; i < kField.Count; ++i) {
    unsigned char* const bytes = block + kField.Offset + i * kField.ElementWidth;
    VisitElement(kField.Type, kField.Element(object, i), Storer{bytes, kField.ElementWidth, lost});
  }
}

template <const auto& kFields, std::size_t kIndex>
void DecodeField(const unsigned char* block, void* object) {
  constexpr const LayoutField& kField = kFields[kIndex];
  for (std::size_t i = 0; i < kField.Count; ++i) {
    const unsigned char* const bytes = block + kField.Offset + i * kField.ElementWidth;
    VisitElement(kField.Type, WritableElement(kField, object, i), Loader{bytes, kField.ElementWidth});
  }
}

/// Calls `each` with the numbers of the fields as types.
template <const auto& kFields, typename Each>
void ForEachField(Each each) {
  [&]<std::size_t... kIndex>(std::index_sequence<kIndex...>) {
    (each(std::integral_constant<std::size_t, kIndex>()), ...);
  }
  (std::make_index_sequence<std::size(kFields)>());
}

template <const auto& kFields>
void Encode(const void* object, unsigned char* bytes, bool& lost) {
  ForEachField<kFields>([&](auto index) { EncodeField<kFields, index>(object, bytes, lost); });
}

template <typename ObjectT, const auto& kFields, std::size_t kSize>
void Decode(const unsigned char* bytes, void* objects, std::size_t count) {
  auto* object = static_cast<ObjectT*>(objects);
  for (std::size_t i = 0; i < count; ++i, ++object, bytes += kSize) {
    ForEachField<kFields>([&](auto index) { DecodeField<kFields, index>(bytes, object); });
  }
}

}  // namespace blockdetail

/// The block of `kSize` bytes in which the members of an ObjectT stand as the rows of `kFields` tell.
template <typename ObjectT, const auto& kFields, std::size_t kSize>
constexpr Block BlockOf() {
  static_assert(LayoutHolds(kFields, kSize), "a gap, an overlap or a wrong width in the layout");
  return {kFields, kSize, &blockdetail::Encode<kFields>, &blockdetail::Decode<ObjectT, kFields, kSize>};
}

}  // namespace spectrane
