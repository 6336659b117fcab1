#include "curvepeer.h"

#include <qcustomplot.h>

#include <memory>

std::function<void()> MakeCurvePeer(const spectrane::CurveView& view, bool antialiased) {
  const auto plot = std::make_shared<QCustomPlot>();
  plot->resize(1200, 700);
  plot->setViewport(QRect(0, 0, 1200, 700));
  const QColor scale = view.Colours.Scale;
  for (QCPAxis* const axis : {plot->xAxis, plot->yAxis, plot->xAxis2, plot->yAxis2}) {
    axis->setBasePen(QPen(scale, 2));
    axis->setTickPen(QPen(scale));
    axis->setLabelColor(scale);
    axis->setTickLabelColor(scale);
    axis->grid()->setPen(QPen(scale, 1, Qt::DotLine));
    axis->setVisible(true);
  }
  for (QCPAxis* const axis : {plot->xAxis2, plot->yAxis2}) {
    axis->setTicks(false);
    axis->setTickLabels(false);
  }
  plot->xAxis->setLabel(view.X.Title);
  plot->yAxis->setLabel(view.Y.Title);
  plot->xAxis->setRange(view.Scale.X.Low, view.Scale.X.High);
  plot->yAxis->setRange(view.Scale.Y.Low, view.Scale.Y.High);
  for (const spectrane::CurveLine& line : view.Lines) {
    QCPGraph* const graph = plot->addGraph();
    graph->setPen(QPen(line.Colour, 1));
    graph->setAntialiased(antialiased);
    graph->setAdaptiveSampling(true);
    graph->setData(QVector<double>(line.X.begin(), line.X.end()),
                   QVector<double>(line.Y.begin(), line.Y.end()), true);
  }
  QCPGraph* const tips = plot->addGraph();
  tips->setLineStyle(QCPGraph::lsNone);
  tips->setScatterStyle(QCPScatterStyle(QCPScatterStyle::ssTriangleInverted, view.Colours.Peak, 6));
  for (const spectrane::PointMark& mark : view.Marks) {
    tips->addData(mark.X, mark.Y);
    auto* const text = new QCPItemText(plot.get());
    text->setPositionAlignment(Qt::AlignHCenter | Qt::AlignBottom);
    text->position->setCoords(mark.X, mark.Y);
    text->setText(mark.Text);
    text->setColor(view.Colours.Peak);
  }
  if (!antialiased) plot->setNotAntialiasedElements(QCP::aeAll);
  // Into its own pixels; the way from there to the screen is left out, as it is on our side.
  return [plot] { plot->replot(QCustomPlot::rpQueuedRefresh); };
}
