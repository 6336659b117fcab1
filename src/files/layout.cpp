#include "files/layout.h"

#include <bit>
#include <cstring>

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

bool IsAscii(const std::string& text) {
  unsigned char all = 0;
  for (const char c : text) all = static_cast<unsigned char>(all | static_cast<unsigned char>(c));
  return all < 0x80;
}

void StoreText(unsigned char* bytes, std::size_t width, const std::string& text, bool& lost) {
  // Most texts are short and plain; they need no field of their own on the way.
  if (text.size() <= width && IsAscii(text)) {
    std::memcpy(bytes, text.data(), text.size());
    std::memset(bytes + text.size(), ' ', width - text.size());
    return;
  }
  const std::string field = PadField(text, width, &lost);
  std::memcpy(bytes, field.data(), width);
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
      StoreText(bytes, field.ElementWidth(), *static_cast<const std::string*>(element), lost);
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
      *static_cast<std::string*>(element) =
          TrimField({reinterpret_cast<const char*>(bytes), field.ElementWidth()});
      break;
  }
}

}  // namespace

void EncodeBlock(Layout layout, const void* object, unsigned char* block, bool& lost) {
  for (const LayoutField& field : layout) {
    const std::size_t width = field.ElementWidth();
    for (std::size_t i = 0; i < field.Count(); ++i) {
      StoreElement(field, field.Element(object, i), block + field.Offset + i * width, lost);
    }
  }
}

void DecodeBlock(Layout layout, const unsigned char* block, void* object) {
  for (const LayoutField& field : layout) {
    const std::size_t width = field.ElementWidth();
    for (std::size_t i = 0; i < field.Count(); ++i) {
      // The object came in writable; only the shared accessor is const.
      LoadElement(field, block + field.Offset + i * width, const_cast<void*>(field.Element(object, i)));
    }
  }
}

}  // namespace spectrane
