#include "app/ground/drawing.h"

#include <QFile>

#ifdef SPECTRANE_SVG
#include <array>
#include <QPainter>
#include <QSvgRenderer>
#include <utility>
#else
#include "app/ground/storeddrawing.h"
#endif

namespace spectrane {

IconColors WrittenColors() {
  const auto color = [](const char* name) { return QColor::fromString(QLatin1String(name)); };
  return {color("#202020"), color("#1f6fd0"), color("#178a45"), color("#d23b3b")};
}

#ifdef SPECTRANE_SVG

namespace {

QString FileOf(const QString& name) {
  return name + QStringLiteral(".svg");
}

/// The drawing with other colours in place of those it is written in.
QByteArray Colored(const QByteArray& drawing, const IconColors& colors) {
  const IconColors written = WrittenColors();
  const std::array<std::pair<QByteArray, QByteArray>, 4> places{
      {{written.Ink.name().toLatin1(), colors.Ink.name().toLatin1()},
       {written.Accent.name().toLatin1(), colors.Accent.name().toLatin1()},
       {written.Go.name().toLatin1(), colors.Go.name().toLatin1()},
       {written.Halt.name().toLatin1(), colors.Halt.name().toLatin1()}}};
  QByteArray done;
  done.reserve(drawing.size());
  for (qsizetype i = 0; i < drawing.size();) {
    bool replaced = false;
    for (const auto& [was, wanted] : places) {
      if (drawing.at(i) == '#' && drawing.mid(i, was.size()) == was) {
        done += wanted;
        i += was.size();
        replaced = true;
        break;
      }
    }
    if (!replaced) done += drawing.at(i++);
  }
  return done;
}

}  // namespace

QImage Drawing(const QString& name, QSize size, const IconColors* colors) {
  QFile file(FileOf(name));
  if (size.isEmpty() || !file.open(QIODevice::ReadOnly)) return {};
  const QByteArray bytes = file.readAll();
  QSvgRenderer renderer(colors == nullptr ? bytes : Colored(bytes, *colors));
  if (!renderer.isValid()) return {};
  renderer.setAspectRatioMode(Qt::KeepAspectRatio);
  QImage picture(size, QImage::Format_ARGB32_Premultiplied);
  picture.fill(Qt::transparent);
  QPainter painter(&picture);
  renderer.render(&painter, QRectF(QPointF(), QSizeF(size)));
  return picture;
}

bool HasDrawing(const QString& name) {
  return QFile::exists(FileOf(name));
}

QSizeF DrawingSize(const QString& name) {
  if (!HasDrawing(name)) return {};
  return QSvgRenderer(FileOf(name)).defaultSize();
}

#else

QImage Drawing(const QString& name, QSize size, const IconColors* colors) {
  return StoredDrawing(name, size, colors);
}

bool HasDrawing(const QString& name) {
  return QFile::exists(name);
}

QSizeF DrawingSize(const QString& name) {
  return StoredDrawingSize(name);
}

#endif

}  // namespace spectrane
