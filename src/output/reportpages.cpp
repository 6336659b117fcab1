#include "output/reportpages.h"

#include <QBuffer>
#include <QPagedPaintDevice>
#include <QPainter>
#include <QPdfWriter>

#include <algorithm>

namespace spectrane {
namespace {

// Shares of the page's width at which a curve's box begins and ends.
constexpr double kBoxLeft = 3.0 / 20;
constexpr double kBoxRight = 1 - 1.0 / 20 - 1.0 / 40;
/// Height of a picture, for its width.
constexpr double kPictureShape = 0.62;
/// So many rows at least follow the titles of a table on the same page.
constexpr std::int32_t kRowsAfterTitles = 2;

constexpr QRgb kPaperInk = 0xFF202020;
constexpr QRgb kFootInk = 0xFF606060;

}  // namespace

ReportPages::ReportPages(const Report& report, const QPaintDevice& device, const QRectF& page)
    : report_(report), type_(report.Font, device), page_(page), tables_(report.Blocks.size()) {
  NewPage();
  Place(Part::Head, 0, HeadHeight());
  for (std::size_t i = 0; i < report_.Blocks.size(); ++i) {
    std::visit([&](const auto& block) { LayOut(i, block); }, report_.Blocks[i]);
  }
}

void ReportPages::NewPage() {
  pages_.emplace_back();
  top_ = page_.top();
}

double ReportPages::Room() const {
  return page_.bottom() - 2 * type_.Foot.LineHeight() - top_;
}

void ReportPages::Place(Part part, std::size_t block, double height, std::int32_t firstRow,
                        std::int32_t rows) {
  pages_.back().push_back({part, block, top_, height, firstRow, rows});
  top_ += height;
}

void ReportPages::LayOut(std::size_t block, const ReportText& text) {
  const double height = PaintText(nullptr, text, 0);
  if (height > Room()) NewPage();
  Place(Part::Text, block, height);
}

QRectF ReportPages::PictureSurface(const ReportPicture& picture, double top) const {
  const double twip = type_.Body.Device->logicalDpiX() / 1440.0;
  const double left = page_.left() + kBoxLeft * page_.width() - picture.LeftMargin * twip;
  const double right = page_.left() + kBoxRight * page_.width() + picture.RightMargin * twip;
  return {left, top, right - left, (right - left) * kPictureShape};
}

void ReportPages::LayOut(std::size_t block, const ReportPicture& picture) {
  const double gap = type_.Body.LineHeight();
  const double height = PictureSurface(picture, 0).height() + gap;
  if (height > Room()) NewPage();
  Place(Part::Picture, block, height);
}

void ReportPages::LayOut(std::size_t block, const DataTable& table) {
  const ReportTableLayout& layout = tables_[block].emplace(table, type_, page_.width());
  double least = layout.HeadHeight();
  for (std::int32_t row = 0; row < std::min(kRowsAfterTitles, table.RowCount); ++row)
    least += layout.RowHeight(row);
  if (table.RowCount == 0) least += layout.EmptyHeight();
  if (least > Room() && !pages_.back().empty()) NewPage();
  std::int32_t row = 0;
  do {
    Place(Part::TableHead, block, layout.HeadHeight());
    const std::int32_t first = row;
    double height = table.RowCount == 0 ? layout.EmptyHeight() : 0;
    // A row that no page could hold is not waited for.
    for (; row < table.RowCount; ++row) {
      const double rowHeight = layout.RowHeight(row);
      if (height + rowHeight > Room() && row > first) break;
      height += rowHeight;
    }
    Place(Part::Rows, block, height, first, row - first);
    if (row < table.RowCount) NewPage();
  } while (row < table.RowCount);
  top_ += type_.Body.LineHeight();
}

double ReportPages::HeadHeight() const {
  return PaintHead(nullptr);
}

double ReportPages::PaintHead(QPainter* painter) const {
  const double left = page_.left();
  double top = page_.top();
  if (painter) {
    painter->setFont(type_.Title.Font);
    painter->drawText(QPointF(left, top + type_.Title.Metrics.ascent()), report_.Title);
    painter->setFont(type_.Body.Font);
  }
  top += type_.Title.LineHeight() * 1.5;
  double labels = 0;
  for (const ReportFact& fact : report_.Facts) labels = std::max(labels, type_.Body.Width(fact.Label));
  const double indent = labels + type_.Body.Width(QStringLiteral("nn"));
  for (const ReportFact& fact : report_.Facts) {
    if (painter) painter->drawText(QPointF(left, top + type_.Body.Metrics.ascent()), fact.Label);
    for (const QString& line : type_.Body.Lines(fact.Value, page_.width() - indent)) {
      if (painter) painter->drawText(QPointF(left + indent, top + type_.Body.Metrics.ascent()), line);
      top += type_.Body.LineHeight();
    }
  }
  top += type_.Body.LineHeight() * 0.4;
  if (painter) painter->drawLine(QPointF(left, top), QPointF(page_.right(), top));
  return top + type_.Body.LineHeight() - page_.top();
}

double ReportPages::PaintText(QPainter* painter, const ReportText& text, double top) const {
  const double begin = top;
  if (painter) {
    painter->setFont(type_.Heading.Font);
    painter->drawText(QPointF(page_.left(), top + type_.Heading.Metrics.ascent()), text.Heading);
    painter->setFont(type_.Body.Font);
  }
  top += type_.Heading.LineHeight() * 1.3;
  const double gap = type_.Body.Width(QStringLiteral("n"));
  for (const QString& paragraph : text.Text.split(u'\n')) {
    for (const QString& line : type_.Body.Lines(paragraph, page_.width() - gap)) {
      if (painter) painter->drawText(QPointF(page_.left() + gap, top + type_.Body.Metrics.ascent()), line);
      top += type_.Body.LineHeight();
    }
  }
  return top + type_.Body.LineHeight() - begin;
}

void ReportPages::PaintFoot(QPainter& painter, int number) const {
  painter.save();
  painter.setPen(QColor::fromRgba(kFootInk));
  painter.setFont(type_.Foot.Font);
  const double baseline = page_.bottom() - type_.Foot.Metrics.descent();
  const QString pages = QStringLiteral("Page %1 of %2").arg(number + 1).arg(Count());
  const double right = page_.right() - type_.Foot.Width(pages);
  painter.drawText(QPointF(right, baseline), pages);
  const QString end = number + 1 == Count() ? QStringLiteral("End of report") : QString();
  const double middle = page_.center().x() - type_.Foot.Width(end) / 2;
  if (!end.isEmpty()) painter.drawText(QPointF(middle, baseline), end);
  const double room = (end.isEmpty() ? right : middle) - page_.left();
  painter.drawText(QPointF(page_.left(), baseline),
                   type_.Foot.Metrics.elidedText(report_.DocumentName, Qt::ElideMiddle, room * 0.95));
  painter.restore();
}

void ReportPages::Paint(QPainter& painter, int number) const {
  painter.save();
  painter.setPen(QPen(QColor::fromRgba(kPaperInk), type_.Body.Metrics.height() / 24));
  for (const Piece& piece : pages_[static_cast<std::size_t>(number)]) {
    switch (piece.Is) {
      case Part::Head:
        PaintHead(&painter);
        break;
      case Part::Text:
        PaintText(&painter, std::get<ReportText>(report_.Blocks[piece.Block]), piece.Top);
        break;
      case Part::Picture: {
        const auto& picture = std::get<ReportPicture>(report_.Blocks[piece.Block]);
        picture.Paint(painter, PictureSurface(picture, piece.Top), 1440.0 / type_.Body.Device->logicalDpiX());
        break;
      }
      case Part::TableHead:
        tables_[piece.Block]->PaintHead(painter, page_.left(), piece.Top);
        break;
      case Part::Rows: {
        double top = piece.Top;
        if (piece.Rows == 0) tables_[piece.Block]->PaintEmpty(painter, page_.left(), top);
        for (std::int32_t row = piece.FirstRow; row < piece.FirstRow + piece.Rows; ++row)
          top = tables_[piece.Block]->PaintRow(painter, row, page_.left(), top);
        break;
      }
    }
  }
  PaintFoot(painter, number);
  painter.restore();
}

bool PaintReport(QPagedPaintDevice& device, const Report& report, const WorkProgress& progress) {
  QPainter painter;
  if (!painter.begin(&device)) return false;
  painter.setRenderHint(QPainter::LosslessImageRendering);
  const QRectF page(0, 0, device.width(), device.height());
  const ReportPages pages(report, device, page);
  for (int number = 0; number < pages.Count(); ++number) {
    if (number > 0 && !device.newPage()) return false;
    pages.Paint(painter, number);
    if (progress && !progress((number + 1) * 100 / pages.Count())) return false;
  }
  return painter.end();
}

QByteArray ReportPdf(const Report& report, const WorkProgress& progress) {
  constexpr double kMarginMm = 15;
  QBuffer buffer;
  buffer.open(QIODevice::WriteOnly);
  {
    QPdfWriter writer(&buffer);
    writer.setPageSize(QPageSize(QPageSize::A4));
    writer.setPageMargins(QMarginsF(kMarginMm, kMarginMm, kMarginMm, kMarginMm), QPageLayout::Millimeter);
    writer.setTitle(report.DocumentName);
    writer.setCreator(QStringLiteral("Spectrane"));
    if (!PaintReport(writer, report, progress)) return {};
  }
  return buffer.data();
}

}  // namespace spectrane
