#include "app/ground/svgicon.h"

#include <array>
#include <QFile>
#include <QGuiApplication>
#include <QPainter>
#include <QPalette>
#include <QPixmapCache>
#include <QSvgRenderer>
#include <utility>

namespace spectrane {
namespace {

// Colours the drawings are written in.
constexpr const char* kInk = "#202020";
constexpr const char* kAccent = "#1f6fd0";
constexpr const char* kGo = "#178a45";
constexpr const char* kHalt = "#d23b3b";

// Share of the text colour in what is disabled, and in the accents under the pointer.
constexpr double kMuted = 0.38;
constexpr double kStronger = 0.4;

QColor Mixed(const QColor& a, const QColor& b, double shareOfA) {
  const auto channel = [shareOfA](int x, int y) { return qRound(x * shareOfA + y * (1 - shareOfA)); };
  return QColor(channel(a.red(), b.red()), channel(a.green(), b.green()), channel(a.blue(), b.blue()));
}

int Lightness(const QColor& color) {
  return qGray(color.rgb());
}

/// The drawing with the colours of the moment in place of those it is written in.
QByteArray Colored(const QByteArray& drawing, const IconColors& colors) {
  const std::array<std::pair<const char*, QColor>, 4> places{
      {{kInk, colors.Ink}, {kAccent, colors.Accent}, {kGo, colors.Go}, {kHalt, colors.Halt}}};
  QByteArray done;
  done.reserve(drawing.size());
  for (qsizetype i = 0; i < drawing.size();) {
    bool replaced = false;
    for (const auto& [written, wanted] : places) {
      const auto length = static_cast<qsizetype>(qstrlen(written));
      if (drawing.at(i) == '#' && drawing.mid(i, length) == written) {
        done += wanted.name().toLatin1();
        i += length;
        replaced = true;
        break;
      }
    }
    if (!replaced) done += drawing.at(i++);
  }
  return done;
}

QByteArray BytesOf(const QString& resource) {
  QFile file(resource);
  return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QPixmap Drawn(const QByteArray& drawing, QSize size, double opacity) {
  QPixmap picture(size);
  picture.fill(Qt::transparent);
  QSvgRenderer renderer(drawing);
  renderer.setAspectRatioMode(Qt::KeepAspectRatio);
  QPainter painter(&picture);
  painter.setOpacity(opacity);
  renderer.render(&painter, QRectF(QPointF(), QSizeF(size)));
  return picture;
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
  IconColors colors{text, QColor::fromString(QLatin1String(dark ? "#6cb2ff" : kAccent)),
                    QColor::fromString(QLatin1String(dark ? "#4fce83" : kGo)),
                    QColor::fromString(QLatin1String(dark ? "#ff8078" : kHalt))};
  if (mode == QIcon::Active) {
    // Menus show this mode on their highlight colour, where a plain accent could drown.
    for (QColor* color : {&colors.Accent, &colors.Go, &colors.Halt}) *color = Mixed(text, *color, kStronger);
  }
  return colors;
}

SvgIconEngine::SvgIconEngine(QString resource, Coloring coloring)
    : resource_(std::move(resource)), coloring_(coloring) {}

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
                          .arg(resource_)
                          .arg(size.width())
                          .arg(size.height())
                          .arg(scale)
                          .arg(opacity)
                          .arg(colors.Ink.name(), colors.Accent.name(), colors.Go.name(), colors.Halt.name());
  QPixmap picture;
  if (QPixmapCache::find(key, &picture)) return picture;
  const QByteArray bytes = BytesOf(resource_);
  picture = Drawn(own ? bytes : Colored(bytes, colors), size, opacity);
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
  return !QFile::exists(resource_);
}

}  // namespace spectrane
