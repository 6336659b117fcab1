#pragma once

#include <cstdint>
#include <string>

#include "output/workbook/recordwriter.h"

namespace spectrane {

/// A picture on a sheet.
struct SheetPicture {
  /// The bytes of a PNG file.
  std::string Png;
  /// [pixels of 1/96 inch]
  int Width = 0;
  int Height = 0;
};

/// One corner of a picture: a cell, and the way into it in parts of its width (1024) and height (256).
struct PictureCorner {
  std::uint32_t Row = 0;
  std::uint32_t Column = 0;
  std::uint32_t Across = 0;
  std::uint32_t Down = 0;
};

/// The picture's bytes, kept with the workbook.
void WriteDrawingGroup(RecordWriter& records, const SheetPicture& picture);
/// The picture's place on the sheet. It moves with the cells and keeps its size.
void WriteDrawing(RecordWriter& records, const PictureCorner& from, const PictureCorner& to);

}  // namespace spectrane
