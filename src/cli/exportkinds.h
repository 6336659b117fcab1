#pragma once

#include <QImage>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "base/displayformats.h"
#include "base/setting.h"
#include "output/documenthead.h"
#include "output/exportsheet.h"

namespace spectrane {

/// What an export of a document needs besides its file.
struct ExportSurroundings {
  Setting& Settings;
  DisplayFormats Formats;
  DocumentHead Head;
  /// Values of a measured spectrum are weighted means of five points.
  bool Smooth = false;
};

/// An open document of one kind, as exports see it. Pictures and reports need the application object of the
/// toolkit's drawing.
class ExportDocument {
 public:
  virtual ~ExportDocument() = default;
  /// Throws Refusal for a file that cannot be read whole.
  virtual void Open(const std::string& path, const ExportSurroundings& around) = 0;
  virtual ExportSheet Sheet(const ExportSurroundings& around) = 0;
  /// Null for a kind without a curve on its sheet.
  virtual QImage Picture(const ExportSurroundings& around) = 0;
  /// Text number of the words that refuse a picture file; 0: there is one.
  virtual int PictureRefusal() const { return 0; }
  virtual Report MakeReport(const ExportSurroundings& around) = 0;
};

/// Null for a kind that has no exports.
std::unique_ptr<ExportDocument> ExportDocumentOf(std::int32_t fileType);

}  // namespace spectrane
