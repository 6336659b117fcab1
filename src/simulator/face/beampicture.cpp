#include "simulator/face/beampicture.h"

#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <array>
#include <cmath>

#include "base/numbers.h"
#include "simulator/facewords.h"
#include "simulator/samplecolour.h"

namespace spectrane {
namespace {

constexpr std::size_t Stations = 4;
constexpr double LeastBody = 40.0;
constexpr double UsualBody = 52.0;
constexpr double LargestBody = 96.0;
constexpr double CellHeight = 18.0;
constexpr double Margin = 6.0;

QColor ScreenColourOf(const Sample& sample) {
  const ScreenColour colour = ColourOf(sample);
  return {colour.Red, colour.Green, colour.Blue};
}

/// A word colour that is read on this ground.
QColor InkOn(const QColor& ground) {
  return qGray(ground.rgb()) > 110 ? Qt::black : Qt::white;
}

QString Number(double value, const char* pattern) {
  return QString::fromStdString(Format(value, pattern));
}

}  // namespace

BeamPicture::BeamPicture(QWidget* parent) : QWidget(parent) {
  setObjectName(QStringLiteral("beamPicture"));
  setAccessibleName(QStringLiteral("Beam path"));
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
}

void BeamPicture::ShowState(const CompartmentState& state) {
  const bool otherHeight = state.SamplerFitted != state_.SamplerFitted;
  state_ = state;
  const QString words = QString::fromStdString(BeamPathWords(state));
  setAccessibleDescription(words);
  setToolTip(words);
  if (otherHeight) updateGeometry();
  update();
}

/// Height of all but the stations' bodies.
double BeamPicture::HeightBeside() const {
  const double cells = state_.SamplerFitted ? CellHeight + Margin : 0.0;
  return 3 * Margin + 2.0 * fontMetrics().lineSpacing() + cells;
}

QSize BeamPicture::sizeHint() const {
  return {380, static_cast<int>(std::ceil(HeightBeside() + UsualBody))};
}

QSize BeamPicture::minimumSizeHint() const {
  return {280, static_cast<int>(std::ceil(HeightBeside() + LeastBody))};
}

BeamPicture::Station BeamPicture::StationAt(std::size_t index) const {
  // The names of samples are the longest words.
  constexpr std::array<double, Stations + 1> Ends{0.0, 0.21, 0.42, 0.79, 1.0};
  const double space = width() * (Ends[index + 1] - Ends[index]);
  const double middle = width() * (Ends[index + 1] + Ends[index]) / 2;
  const double body = std::clamp(height() - HeightBeside(), LeastBody, LargestBody);
  const double top = Margin + std::max(0.0, (height() - HeightBeside() - body) / 2);
  const double bodyWidth = std::min(width() * 0.13, body);
  return {{middle - bodyWidth / 2, top, bodyWidth, body},
          {middle - space / 2 + 2, top + body + Margin, space - 4, 2.0 * fontMetrics().lineSpacing()}};
}

bool BeamPicture::HasLight() const {
  const LampShow lamp = state_.TungstenInUse ? state_.Tungsten : state_.Deuterium;
  return lamp == LampShow::Lit || lamp == LampShow::Warming;
}

/// The beam behind something that lets `share` pass. A trace stays to be seen, down to 1 %.
QColor BeamPicture::BeamColour(double share) const {
  const ScreenColour light = ColourOfLight(state_.Wavelength);
  return {light.Red, light.Green, light.Blue,
          share < 0.01 ? 0 : static_cast<int>(std::lround(40 + 215 * std::min(share, 1.0)))};
}

void BeamPicture::DrawBeam(QPainter& painter) const {
  const QRectF lamp = StationAt(0).Body;
  const QRectF cuvette = Glass();
  const double thickness = lamp.height() * 0.14;
  const double middle = lamp.center().y();
  const auto part = [&](double from, double to, const QBrush& light) {
    painter.fillRect(QRectF(from, middle - thickness / 2, to - from, thickness), light);
  };
  // The way of the light is there in the dark, too.
  painter.setPen(QPen(palette().color(QPalette::Mid), 1.0, Qt::DashLine));
  painter.drawLine(QPointF(lamp.center().x(), middle), QPointF(cuvette.left(), middle));
  painter.drawLine(QPointF(cuvette.right(), middle), QPointF(StationAt(3).Body.left(), middle));
  if (!HasLight()) return;
  const QColor before = BeamColour(1.0);
  const QColor behind = BeamColour(std::pow(10.0, -state_.BeamAbsorbance));
  QLinearGradient inside(cuvette.topLeft(), cuvette.topRight());
  inside.setColorAt(0.0, before);
  inside.setColorAt(1.0, behind);
  part(lamp.center().x(), StationAt(1).Body.left(), QColor(255, 226, 130));
  part(StationAt(1).Body.right(), cuvette.left(), before);
  part(cuvette.left(), cuvette.right(), inside);
  part(cuvette.right(), StationAt(3).Body.left(), behind);
}

void BeamPicture::DrawLamp(QPainter& painter) const {
  const Station station = StationAt(0);
  const LampShow show = state_.TungstenInUse ? state_.Tungsten : state_.Deuterium;
  const QColor lit = state_.TungstenInUse ? QColor(255, 205, 80) : QColor(185, 140, 255);
  const double diameter = std::min(station.Body.width(), station.Body.height()) - 4;
  QRectF bulb(0, 0, diameter, diameter);
  bulb.moveCenter(station.Body.center());
  painter.setPen(QPen(palette().color(QPalette::WindowText), 1.2));
  painter.setBrush(HasLight() ? lit : palette().color(QPalette::Base));
  painter.drawEllipse(bulb);
  if (show == LampShow::Dead) {
    const QRectF cross = bulb.adjusted(diameter / 4, diameter / 4, -diameter / 4, -diameter / 4);
    painter.drawLine(cross.topLeft(), cross.bottomRight());
    painter.drawLine(cross.topRight(), cross.bottomLeft());
  }
  const bool warming = show == LampShow::Warming;
  DrawWords(painter, station, state_.TungstenInUse ? QStringLiteral("tungsten") : QStringLiteral("deuterium"),
            warming ? QStringLiteral("warming up") : QString::fromStdString(std::string(LampWords(show))));
}

void BeamPicture::DrawMonochromator(QPainter& painter) const {
  const Station station = StationAt(1);
  painter.setPen(QPen(palette().color(QPalette::WindowText), 1.2));
  painter.setBrush(palette().color(QPalette::Button));
  painter.drawRoundedRect(station.Body, 3, 3);
  // The grating.
  const QRectF inner = station.Body.adjusted(8, 10, -8, -10);
  for (int i = 0; i <= 5; ++i) {
    const double x = inner.left() + inner.width() * i / 5.0;
    painter.drawLine(QPointF(x, inner.top()), QPointF(x, inner.bottom()));
  }
  DrawWords(painter, station, Number(state_.Wavelength, "0.0") + QStringLiteral(" nm"),
            QStringLiteral("slit ") + Number(state_.SlitNm, "0.0") + QStringLiteral(" nm"));
}

/// The cuvette's outline.
QRectF BeamPicture::Glass() const {
  const QRectF body = StationAt(2).Body;
  const double glassWidth = body.width() * 0.7;
  return {body.center().x() - glassWidth / 2, body.top(), glassWidth, body.height()};
}

void BeamPicture::DrawLiquid(QPainter& painter) const {
  if (state_.Beam != nullptr) painter.fillRect(Glass().adjusted(3, 9, -3, -3), ScreenColourOf(*state_.Beam));
}

void BeamPicture::DrawCuvette(QPainter& painter) const {
  if (state_.Beam == nullptr) return;
  const QRectF glass = Glass();
  QPainterPath open;
  open.moveTo(glass.topLeft());
  open.lineTo(glass.bottomLeft());
  open.lineTo(glass.bottomRight());
  open.lineTo(glass.topRight());
  painter.setPen(QPen(palette().color(QPalette::WindowText), 1.2));
  painter.setBrush(Qt::NoBrush);
  painter.drawPath(open);
  DrawWords(painter, StationAt(2), QString::fromStdString(state_.Beam->Label),
            QString::fromStdString(AbsorbanceWords(state_)));
}

void BeamPicture::DrawDetector(QPainter& painter) const {
  const Station station = StationAt(3);
  const QRectF body = station.Body.adjusted(0, 6, 0, -6);
  QPainterPath shape;
  shape.moveTo(body.topLeft());
  shape.arcTo(QRectF(body.right() - body.height(), body.top(), body.height(), body.height()), 90, -180);
  shape.lineTo(body.bottomLeft());
  shape.closeSubpath();
  painter.setPen(QPen(palette().color(QPalette::WindowText), 1.2));
  painter.setBrush(palette().color(QPalette::Button));
  painter.drawPath(shape);
  DrawWords(painter, station, QStringLiteral("gain ") + QString::number(state_.Gain),
            QStringLiteral("trim ") + Number(state_.Trim, "0.000"));
}

void BeamPicture::DrawCells(QPainter& painter) const {
  if (!state_.SamplerFitted) return;
  const double step = std::min((width() - 2 * Margin) / double{InstrumentModel::Cells}, 44.0);
  const double left = (width() - step * InstrumentModel::Cells) / 2;
  const double top = StationAt(0).Words.bottom() + Margin;
  for (int cell = 1; cell <= InstrumentModel::Cells; ++cell) {
    const Sample* sample = state_.Cells[static_cast<std::size_t>(cell - 1)];
    const QColor colour = sample == nullptr ? QColor(Qt::white) : ScreenColourOf(*sample);
    const QRectF box(left + step * (cell - 1) + 3, top, step - 6, CellHeight);
    const bool inBeam = cell == state_.Cell;
    painter.setPen(QPen(palette().color(inBeam ? QPalette::Highlight : QPalette::Mid), inBeam ? 3.0 : 1.0));
    painter.setBrush(colour);
    painter.drawRoundedRect(box, 2, 2);
    painter.setPen(InkOn(colour));
    painter.drawText(box, Qt::AlignCenter, QString::number(cell));
  }
}

void BeamPicture::DrawWords(QPainter& painter, const Station& station, const QString& first,
                            const QString& second) const {
  const int space = static_cast<int>(station.Words.width());
  const double line = station.Words.height() / 2;
  painter.setPen(palette().color(QPalette::WindowText));
  const QRectF upper(station.Words.left(), station.Words.top(), station.Words.width(), line);
  painter.drawText(upper, Qt::AlignCenter, fontMetrics().elidedText(first, Qt::ElideRight, space));
  painter.drawText(upper.translated(0, line), Qt::AlignCenter,
                   fontMetrics().elidedText(second, Qt::ElideRight, space));
}

void BeamPicture::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  DrawLiquid(painter);
  DrawBeam(painter);
  DrawLamp(painter);
  DrawMonochromator(painter);
  DrawCuvette(painter);
  DrawDetector(painter);
  DrawCells(painter);
}

}  // namespace spectrane
