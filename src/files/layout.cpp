#include "files/layout.h"

#include <bit>

#include "base/fixedtext.h"

namespace spectrane {
namespace {

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

void StoreElement(const LayoutField& field, const void* element, unsigned char* bytes, bool& lost) {
  switch (field.Type) {
    case FieldType::Long:
      Store(bytes, static_cast<std::uint32_t>(*static_cast<const std::int32_t*>(element)));
      break;
    case FieldType::Integer:
      Store(bytes, static_cast<std::uint16_t>(*static_cast<const std::int16_t*>(element)));
      break;
    case FieldType::Double:
      Store(bytes, std::bit_cast<std::uint64_t>(*static_cast<const double*>(element)));
      break;
    case FieldType::Boolean:
      Store(bytes, static_cast<std::uint16_t>(*static_cast<const bool*>(element) ? 0xFFFF : 0));
      break;
    case FieldType::Text:
      WriteField(*static_cast<const std::string*>(element), reinterpret_cast<char*>(bytes),
                 field.ElementWidth, &lost);
      break;
  }
}

void LoadElement(const LayoutField& field, const unsigned char* bytes, void* element) {
  switch (field.Type) {
    case FieldType::Long:
      *static_cast<std::int32_t*>(element) = static_cast<std::int32_t>(Load<std::uint32_t>(bytes));
      break;
    case FieldType::Integer:
      *static_cast<std::int16_t*>(element) = static_cast<std::int16_t>(Load<std::uint16_t>(bytes));
      break;
    case FieldType::Double:
      *static_cast<double*>(element) = std::bit_cast<double>(Load<std::uint64_t>(bytes));
      break;
    case FieldType::Boolean:
      *static_cast<bool*>(element) = Load<std::uint16_t>(bytes) != 0;
      break;
    case FieldType::Text:
      ReadField({reinterpret_cast<const char*>(bytes), field.ElementWidth},
                *static_cast<std::string*>(element));
      break;
  }
}

}  // namespace

void EncodeBlock(Layout layout, const void* object, unsigned char* block, bool& lost) {
  for (const LayoutField& field : layout) {
    const std::size_t width = field.ElementWidth;
    for (std::size_t i = 0; i < field.Count; ++i) {
      StoreElement(field, field.Element(object, i), block + field.Offset + i * width, lost);
    }
  }
}

void DecodeBlock(Layout layout, const unsigned char* block, void* object) {
  for (const LayoutField& field : layout) {
    const std::size_t width = field.ElementWidth;
    for (std::size_t i = 0; i < field.Count; ++i) {
      // The object came in writable; only the shared accessor is const.
      LoadElement(field, block + field.Offset + i * width, const_cast<void*>(field.Element(object, i)));
    }
  }
}

}  // namespace spectrane
