#pragma once

#include <cstdint>
#include <map>
#include <span>

class QString;

namespace spectrane {

class DocumentWindow;
class MainWindow;

/// Numbers of the New File guide.
inline constexpr int kQuantitationFile = 1;
inline constexpr int kKineticsFile = 2;
inline constexpr int kScanFile = 3;
inline constexpr int kMultiFile = 4;
inline constexpr int kDNAFile = 5;
inline constexpr int kPhotometryFile = 6;

/// One kind of document window: all that the main window and the New File guide know of it.
struct DocumentKind {
  /// Number in the New File guide; 0: no new document of this kind can be made.
  int NewFileType;
  /// File type in the header of its data files.
  std::int32_t HeaderType;
  int Command;
  /// Text number of the caption of new documents, which a number follows; 0: it has files only.
  int CaptionTextId;
  const char* ClassName;
  DocumentWindow* (*Make)(MainWindow&);
  /// Object name of its option in the guide, and text number of what it is for.
  const char* OptionName;
  int DescriptionTextId;
};

inline constexpr std::int32_t kBaselineHeaderType = 6;

/// In the order of the guide.
std::span<const DocumentKind> DocumentKinds();
/// Null for a number that no kind has.
const DocumentKind* KindOfNewFile(int newFileType);
const DocumentKind* KindOfHeader(std::int32_t headerType);

/// How many documents of each kind were made since the start; never counts down.
class DocumentCounters {
 public:
  int Next(const DocumentKind& kind) { return ++counts_[kind.NewFileType]; }

 private:
  std::map<int, int> counts_;
};

}  // namespace spectrane
