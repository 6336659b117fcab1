#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <type_traits>

namespace spectrane {

/// How one element of a field stands on disk. All numbers are little-endian.
enum class FieldType {
  /// Signed 32-bit integer.
  Long,
  /// Signed 16-bit integer.
  Integer,
  /// IEEE 754 double.
  Double,
  /// 16 bits, -1 for true and 0 for false; read as true when it is anything but 0.
  Boolean,
  /// Single-byte text, padded with blanks; in the program UTF-8 without the blanks at the right.
  Text,
};

/// One row of a block's description: where a member of the block's structure stands on disk.
struct LayoutField {
  const char* Name;
  /// From the start of the block [bytes].
  std::size_t Offset;
  /// All elements together, and one of them [bytes].
  std::size_t Width;
  std::size_t ElementWidth;
  FieldType Type;
  /// 0 for a single value, 1 for an array of `Rows`, 2 for `Rows` by `Columns`, row by row.
  int Dimensions;
  std::size_t Rows;
  std::size_t Columns;
  std::size_t Count;
  /// Address of the element of that index, counted row by row, in an object of the block's structure.
  const void* (*Element)(const void* object, std::size_t index);
};

/// The description of a block; its fields in the order of their offsets.
using Layout = std::span<const LayoutField>;

/// Width of one element of a type on disk [bytes]; 0 for texts, whose width their row tells.
constexpr std::size_t FixedWidth(FieldType type) {
  switch (type) {
    case FieldType::Long:
      return 4;
    case FieldType::Integer:
    case FieldType::Boolean:
      return 2;
    case FieldType::Double:
      return 8;
    case FieldType::Text:
      break;
  }
  return 0;
}

/// True when the fields fill `size` bytes without a gap or an overlap and each width fits its type.
constexpr bool LayoutHolds(Layout layout, std::size_t size) {
  std::size_t end = 0;
  for (const LayoutField& field : layout) {
    if (field.Offset != end || field.Width == 0 || field.Width % field.Count != 0) return false;
    const std::size_t fixed = FixedWidth(field.Type);
    if (fixed != 0 && field.ElementWidth != fixed) return false;
    end += field.Width;
  }
  return end == size;
}

/// The element of that index in an object that may be written.
inline void* WritableElement(const LayoutField& field, void* object, std::size_t index) {
  // The object came in writable; only the shared accessor is const.
  return const_cast<void*>(field.Element(object, index));
}

/// An element as a T, const where `VoidT` is.
template <typename T, typename VoidT>
constexpr auto& ElementAs(VoidT* element) {
  return *static_cast<std::conditional_t<std::is_const_v<VoidT>, const T, T>*>(element);
}

/// Calls `visit` with the element as what it is in the program; `VoidT` is void or const void.
template <typename VoidT, typename Visit>
constexpr decltype(auto) VisitElement(FieldType type, VoidT* element, Visit&& visit) {
  switch (type) {
    case FieldType::Long:
      return visit(ElementAs<std::int32_t>(element));
    case FieldType::Integer:
      return visit(ElementAs<std::int16_t>(element));
    case FieldType::Double:
      return visit(ElementAs<double>(element));
    case FieldType::Boolean:
      return visit(ElementAs<bool>(element));
    case FieldType::Text:
      break;
  }
  return visit(ElementAs<std::string>(element));
}

namespace layoutdetail {

template <typename T>
struct Leaf;
template <>
struct Leaf<std::int32_t> {
  static constexpr FieldType kType = FieldType::Long;
};
template <>
struct Leaf<std::int16_t> {
  static constexpr FieldType kType = FieldType::Integer;
};
template <>
struct Leaf<double> {
  static constexpr FieldType kType = FieldType::Double;
};
template <>
struct Leaf<bool> {
  static constexpr FieldType kType = FieldType::Boolean;
};
template <>
struct Leaf<std::string> {
  static constexpr FieldType kType = FieldType::Text;
};

template <typename T>
struct Shape {
  static constexpr FieldType kType = Leaf<T>::kType;
  static constexpr int kDimensions = 0;
  static constexpr std::size_t kRows = 1;
  static constexpr std::size_t kColumns = 1;
  static const void* At(const T& value, std::size_t) { return &value; }
};
template <typename T, std::size_t N>
struct Shape<std::array<T, N>> {
  static constexpr FieldType kType = Leaf<T>::kType;
  static constexpr int kDimensions = 1;
  static constexpr std::size_t kRows = N;
  static constexpr std::size_t kColumns = 1;
  static const void* At(const std::array<T, N>& values, std::size_t i) { return &values[i]; }
};
template <typename T, std::size_t C, std::size_t R>
struct Shape<std::array<std::array<T, C>, R>> {
  static constexpr FieldType kType = Leaf<T>::kType;
  static constexpr int kDimensions = 2;
  static constexpr std::size_t kRows = R;
  static constexpr std::size_t kColumns = C;
  static const void* At(const std::array<std::array<T, C>, R>& rows, std::size_t i) {
    return &rows[i / C][i % C];
  }
};

template <auto Member>
struct MemberOf;
template <typename ObjectT, typename ValueT, ValueT ObjectT::*Member>
struct MemberOf<Member> : Shape<ValueT> {
  static const void* Address(const void* object, std::size_t index) {
    return Shape<ValueT>::At(static_cast<const ObjectT*>(object)->*Member, index);
  }
};

}  // namespace layoutdetail

/// The row of a member; type and array counts follow from the member's own type. `width` counts all elements.
template <auto Member>
constexpr LayoutField Field(const char* name, std::size_t offset, std::size_t width) {
  using M = layoutdetail::MemberOf<Member>;
  constexpr std::size_t kCount = M::kRows * M::kColumns;
  return {name,           offset,   width,       width / kCount, M::kType,
          M::kDimensions, M::kRows, M::kColumns, kCount,         &M::Address};
}

}  // namespace spectrane
