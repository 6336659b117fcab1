#include "output/workbook/drawing.h"

#include <algorithm>
#include <array>

namespace spectrane {
namespace {

/// Kinds of the parts that a drawing consists of.
enum class Part : std::uint16_t {
  GroupContainer = 0xF000,
  StoreContainer = 0xF001,
  DrawingContainer = 0xF002,
  ShapeGroup = 0xF003,
  ShapeContainer = 0xF004,
  Group = 0xF006,
  StoreEntry = 0xF007,
  Drawing = 0xF008,
  GroupShape = 0xF009,
  Shape = 0xF00A,
  Options = 0xF00B,
  Anchor = 0xF010,
  ClientData = 0xF011,
  Png = 0xF01E,
  Colours = 0xF11E,
};

constexpr std::uint32_t kContainer = 0xF;
/// The first shape of the first drawing, and the picture behind it.
constexpr std::uint32_t kFirstShape = 0x400;
constexpr std::uint32_t kPictureShape = kFirstShape + 1;

ByteWriter PartOf(Part part, std::uint32_t version, std::uint32_t instance, const ByteWriter& body) {
  ByteWriter bytes;
  bytes.U16(version | (instance << 4)).U16(static_cast<std::uint16_t>(part)).U32(body.Size());
  bytes.Raw(body.Bytes());
  return bytes;
}

ByteWriter ContainerOf(Part part, std::uint32_t instance, std::initializer_list<ByteWriter> parts) {
  ByteWriter body;
  for (const ByteWriter& inner : parts) body.Raw(inner.Bytes());
  return PartOf(part, kContainer, instance, body);
}

/// Sixteen bytes by which readers tell pictures apart: two sums of the bytes, each of its own kind.
std::string DigestOf(std::string_view bytes) {
  std::uint64_t first = 0xCBF29CE484222325;
  std::uint64_t second = 0x84222325CBF29CE4;
  for (const char c : bytes) {
    const auto byte = static_cast<unsigned char>(c);
    first = (first ^ byte) * 0x100000001B3;
    second = (second + byte) * 0x5851F42D4C957F2D + 1;
  }
  return ByteWriter().U64(first).U64(second).Bytes();
}

/// Options of a shape: number and value of each.
struct ShapeOption {
  std::uint16_t Number;
  std::uint32_t Value;
};

template <std::size_t kCount>
ByteWriter OptionsOf(const std::array<ShapeOption, kCount>& options) {
  ByteWriter body;
  for (const ShapeOption& option : options) body.U16(option.Number).U32(option.Value);
  return PartOf(Part::Options, 3, kCount, body);
}

ByteWriter StoreEntryOf(const SheetPicture& picture) {
  constexpr std::uint32_t kPngKind = 6;
  const std::string digest = DigestOf(picture.Png);
  ByteWriter blip;
  blip.Raw(digest).U8(0xFF).Raw(picture.Png);
  const ByteWriter png = PartOf(Part::Png, 0, 0x6E0, blip);
  ByteWriter entry;
  entry.U8(kPngKind).U8(kPngKind).Raw(digest).U16(0xFF);
  entry.U32(png.Size()).U32(1).U32(0).Zeros(4).Raw(png.Bytes());
  return PartOf(Part::StoreEntry, 2, kPngKind, entry);
}

ByteWriter ShapeOf(std::uint32_t kind, std::uint32_t number, std::uint32_t flags) {
  return PartOf(Part::Shape, 2, kind, ByteWriter().U32(number).U32(flags));
}

ByteWriter AnchorOf(const PictureCorner& from, const PictureCorner& to) {
  constexpr std::uint32_t kMovesOnly = 2;
  ByteWriter body;
  body.U16(kMovesOnly);
  for (const PictureCorner& corner : {from, to}) {
    body.U16(corner.Column).U16(corner.Across).U16(corner.Row).U16(corner.Down);
  }
  return PartOf(Part::Anchor, 0, 0, body);
}

}  // namespace

void WriteDrawingGroup(RecordWriter& records, const SheetPicture& picture) {
  ByteWriter group;
  group.U32(kFirstShape + 2).U32(2).U32(2).U32(1).U32(1).U32(2);
  constexpr std::array<ShapeOption, 3> kOptions = {
      {{0x00BF, 0x00080008}, {0x0181, 0x08000041}, {0x01C0, 0x08000040}}};
  ByteWriter colours;
  colours.U32(0x0800000D).U32(0x0800000C).U32(0x08000017).U32(0x100000F7);
  const ByteWriter all = ContainerOf(
      Part::GroupContainer, 0,
      {PartOf(Part::Group, 0, 0, group), ContainerOf(Part::StoreContainer, 1, {StoreEntryOf(picture)}),
       OptionsOf(kOptions), PartOf(Part::Colours, 0, 4, colours)});
  // The second record of a long one is of the first one's kind, as readers have always been given it.
  std::string_view rest = all.Bytes();
  for (int i = 0; !rest.empty(); ++i) {
    const std::size_t size = std::min(rest.size(), kRecordLimit);
    records.Add(i < 2 ? RecordKind::DrawingGroup : RecordKind::Continue, rest.substr(0, size));
    rest.remove_prefix(size);
  }
}

void WriteDrawing(RecordWriter& records, const PictureCorner& from, const PictureCorner& to) {
  constexpr std::uint32_t kPictureFrame = 75;
  constexpr std::uint32_t kPatriarch = 0x0005;
  constexpr std::uint32_t kHasAnchorAndKind = 0x0A00;
  // Which picture, from 1; proportions are kept; no line around it.
  constexpr std::array<ShapeOption, 3> kOptions = {{{0x007F, 0x00800080}, {0x4104, 1}, {0x01FF, 0x00080000}}};
  const ByteWriter patriarch = ContainerOf(
      Part::ShapeContainer, 0,
      {PartOf(Part::GroupShape, 1, 0, ByteWriter().Zeros(16)), ShapeOf(0, kFirstShape, kPatriarch)});
  const ByteWriter shape =
      ContainerOf(Part::ShapeContainer, 0,
                  {ShapeOf(kPictureFrame, kPictureShape, kHasAnchorAndKind), OptionsOf(kOptions),
                   AnchorOf(from, to), PartOf(Part::ClientData, 0, 0, {})});
  const ByteWriter drawing = ContainerOf(Part::DrawingContainer, 0,
                                         {PartOf(Part::Drawing, 0, 1, ByteWriter().U32(2).U32(kPictureShape)),
                                          ContainerOf(Part::ShapeGroup, 0, {patriarch, shape})});
  records.Add(RecordKind::Drawing, drawing);
  ByteWriter object;
  object.U16(0x15).U16(0x12).U16(8).U16(1).U16(0x6011).Zeros(12);
  object.U16(0x07).U16(2).U16(0xFFFF);
  object.U16(0x08).U16(2).U16(1);
  object.U16(0).U16(0);
  records.Add(RecordKind::Obj, object);
}

}  // namespace spectrane
