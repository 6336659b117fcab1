#include "app/ground/svgicon.h"

#include <QGuiApplication>
#include <QPainter>
#include <QPalette>
#include <QPixmapCache>
#include <utility>

namespace spectrane {
namespace {

// Share of the text colour in what is disabled, and in the accents under the pointer.
constexpr double kMuted = 0.38;
constexpr double kStronger = 0.4;

QColor Mixed(const QColor& a, const QColor& b, double shareOfA) {
  const auto channel = [shareOfA](int x, int y) { return qRound(x * shareOfA + y * (1 - shareOfA)); };
  return QColor(channel(a.red(), b.red()), channel(a.green(), b.green()), channel(a.blue(), b.blue()));
}

QPixmap WithOpacity(const QImage& drawing, double opacity) {
  if (opacity == 1.0) return QPixmap::fromImage(drawing);
  QPixmap picture(drawing.size());
  picture.fill(Qt::transparent);
  QPainter painter(&picture);
  painter.setOpacity(opacity);
  painter.drawImage(0, 0, drawing);
  return picture;
}

int Lightness(const QColor& color) {
  return qGray(color.rgb());
}

}  // namespace

IconColors ColorsFor(QIcon::Mode mode) {
  const QPalette palette = QGuiApplication::palette();
  const QColor text = palette.color(QPalette::Active, QPalette::WindowText);
  const QColor ground = palette.color(QPalette::Active, QPalette::Window);
  if (mode == QIcon::Disabled) {
    const QColor muted = Mixed(text, ground, kMuted);
    return {muted, muted, muted, muted};
  }
  if (mode == QIcon::Selected) {
    const QColor selected = palette.color(QPalette::Active, QPalette::HighlightedText);
    return {selected, selected, selected, selected};
  }
  const bool dark = Lightness(text) > Lightness(ground);
  IconColors colors = dark ? IconColors{{}, 0x6cb2ff, 0x4fce83, 0xff8078} : WrittenColors();
  colors.Ink = text;
  if (mode == QIcon::Active) {
    // Menus show this mode on their highlight colour, where a plain accent could drown.
    for (QColor* color : {&colors.Accent, &colors.Go, &colors.Halt}) *color = Mixed(text, *color, kStronger);
  }
  return colors;
}

SvgIconEngine::SvgIconEngine(QString name, Coloring coloring) : name_(std::move(name)), coloring_(coloring) {}

void SvgIconEngine::paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State state) {
  const qreal scale = painter->device() != nullptr ? painter->device()->devicePixelRatioF() : 1.0;
  painter->drawPixmap(rect, scaledPixmap((QSizeF(rect.size()) * scale).toSize(), mode, state, scale));
}

QPixmap SvgIconEngine::pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) {
  return scaledPixmap(size, mode, state, 1.0);
}

QPixmap SvgIconEngine::scaledPixmap(const QSize& size, QIcon::Mode mode, QIcon::State, qreal scale) {
  if (size.isEmpty()) return {};
  const bool own = coloring_ == Coloring::Own;
  const IconColors colors = own ? IconColors{} : ColorsFor(mode);
  const double opacity = own && mode == QIcon::Disabled ? kMuted : 1.0;
  const QString key = QStringLiteral("%1 %2x%3 %4 %5 %6 %7 %8 %9")
                          .arg(name_)
                          .arg(size.width())
                          .arg(size.height())
                          .arg(scale)
                          .arg(opacity)
                          .arg(colors.Ink.name(), colors.Accent.name(), colors.Go.name(), colors.Halt.name());
  QPixmap picture;
  if (QPixmapCache::find(key, &picture)) return picture;
  picture = WithOpacity(Drawing(name_, size, own ? nullptr : &colors), opacity);
  picture.setDevicePixelRatio(scale);
  QPixmapCache::insert(key, picture);
  return picture;
}

QIconEngine* SvgIconEngine::clone() const {
  return new SvgIconEngine(*this);
}

QString SvgIconEngine::key() const {
  return QStringLiteral("spectrane-svg");
}

bool SvgIconEngine::isNull() {
  return !HasDrawing(name_);
}

}  // namespace spectrane
