#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string>

namespace spectrane {

/// One kind of file the program opens, as the desktop knows it.
struct FileAssociation {
  /// With its point.
  const char* Extension;
  /// Name of the type in the registry.
  const char* TypeName;
  /// Place of its icon in icon.dll.
  int IconIndex;
  /// Text of the file dialog's filter for the kind; what stands before its "(" describes the type.
  int FilterTextId;
  /// Name of the type in the shared MIME database.
  const char* MimeType;
  /// Numbers that the header of such a file may begin with; 0 fills an unused place.
  std::array<std::int32_t, 2> FileTypes;
};

std::span<const FileAssociation> FileAssociations();
/// What the type is called before the user.
std::string DescriptionOf(const FileAssociation& association);

/// A picture for the desktop's icon theme.
struct DesktopIcon {
  /// Extension of the kind of file it stands for, with its point; empty for the program itself.
  std::string Extension;
  /// Edge length [pixels] of a PNG picture; 0 for an SVG picture, which is good for all sizes.
  int Size = 0;
  /// The whole file.
  std::string Bytes;
};

}  // namespace spectrane
