#pragma once

#include <QByteArray>

#include <optional>
#include <vector>

#include "output/exportsheet.h"
#include "output/report.h"
#include "output/reporttype.h"

class QPagedPaintDevice;

namespace spectrane {

/// Lays a report out on pages: title and facts, then the blocks in order. A table goes on over pages, its
/// titles repeated; a heading never stands at the foot of a page without the first rows of its table.
class ReportPages {
 public:
  /// `device` is what will be painted on; `page` is what of a page can be written on, in its units. All must
  /// outlive the pages.
  ReportPages(const Report& report, const QPaintDevice& device, const QRectF& page);

  int Count() const { return static_cast<int>(pages_.size()); }
  /// `number` from 0.
  void Paint(QPainter& painter, int number) const;

 private:
  enum class Part { Head, Text, Picture, TableHead, Rows };
  struct Piece {
    Part Is;
    std::size_t Block;
    double Top;
    double Height;
    std::int32_t FirstRow = 0;
    std::int32_t Rows = 0;
  };

  void Place(Part part, std::size_t block, double height, std::int32_t firstRow = 0, std::int32_t rows = 0);
  void NewPage();
  double Room() const;
  void LayOut(std::size_t block, const ReportText& text);
  void LayOut(std::size_t block, const ReportPicture& picture);
  void LayOut(std::size_t block, const DataTable& table);
  double HeadHeight() const;
  double PaintHead(QPainter* painter) const;
  double PaintText(QPainter* painter, const ReportText& text, double top) const;
  QRectF PictureSurface(const ReportPicture& picture, double top) const;
  void PaintFoot(QPainter& painter, int number) const;

  const Report& report_;
  ReportType type_;
  QRectF page_;
  std::vector<std::optional<ReportTableLayout>> tables_;
  std::vector<std::vector<Piece>> pages_;
  double top_ = 0;
};

/// Paints all pages. False: the device took no more, or `progress` ended it.
bool PaintReport(QPagedPaintDevice& device, const Report& report, const WorkProgress& progress = {});

/// The report as a PDF file on A4; empty when `progress` ended it.
QByteArray ReportPdf(const Report& report, const WorkProgress& progress = {});

}  // namespace spectrane
