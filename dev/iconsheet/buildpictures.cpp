#include "iconsheet/buildpictures.h"

#include <algorithm>
#include <array>
#include <QBuffer>
#include <QDataStream>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTextStream>

#include "app/ground/commandicon.h"
#include "app/ground/drawing.h"

namespace spectrane {
namespace {

/// Icons of bars and menus at 100 to 300 %.
constexpr std::array kIconWidths{12, 16, 20, 24, 28, 32, 36, 40, 48, 56, 64, 72, 96};
/// The program's own, which the system shows larger.
constexpr std::array kOwnWidths{16, 20, 24, 32, 40, 48, 64, 96, 128, 256};
/// Larger pictures, in hundredths of the size they are made for.
constexpr std::array kPictureScales{100, 125, 150, 200, 300};

/// From here on a picture in an icon file is a PNG.
constexpr int kPackedFrom = 256;

std::vector<QSize> SizesFor(const QString& name) {
  std::vector<QSize> sizes;
  if (name.startsWith(QStringLiteral(":/pictures/"))) {
    for (const int scale : kPictureScales) sizes.push_back((DrawingSize(name) * scale / 100.0).toSize());
  } else if (name == QStringLiteral(":/icons/spectrane")) {
    for (const int width : kOwnWidths) sizes.emplace_back(width, width);
  } else {
    for (const int width : kIconWidths) sizes.emplace_back(width, width);
  }
  return sizes;
}

bool IsPainted(const QString& name) {
  return name.startsWith(QStringLiteral(":/icons/")) && name != QStringLiteral(":/icons/spectrane");
}

/// A picture of an icon file the old way: a bitmap of twice the height, lowest row first, the colours and
/// then the mask, which nobody looks at beside real transparency.
QByteArray BitmapOf(const QImage& picture) {
  const QImage image = picture.convertToFormat(QImage::Format_ARGB32);
  constexpr quint32 kHeaderBytes = 40;
  constexpr quint16 kPlanes = 1;
  constexpr quint16 kBitsPerDot = 32;
  QByteArray bytes;
  QDataStream stream(&bytes, QIODevice::WriteOnly);
  stream.setByteOrder(QDataStream::LittleEndian);
  stream << kHeaderBytes << qint32(image.width()) << qint32(2 * image.height()) << kPlanes << kBitsPerDot;
  for (int unused = 0; unused < 6; ++unused) stream << quint32(0);
  for (int y = image.height() - 1; y >= 0; --y)
    for (int x = 0; x < image.width(); ++x) stream << quint32(image.pixel(x, y));
  const int maskRow = (image.width() + 31) / 32 * 4;
  bytes.append(QByteArray(static_cast<qsizetype>(maskRow) * image.height(), '\0'));
  return bytes;
}

QByteArray PackedOf(const QImage& picture) {
  QByteArray bytes;
  QBuffer buffer(&bytes);
  picture.save(&buffer, "PNG");
  return bytes;
}

}  // namespace

QImage SharesOf(const QString& name, QSize size) {
  // What is painted over what comes out as sums of the colours: each of the three channels holds one of them.
  const IconColors colors{Qt::black, QColor(255, 0, 0), QColor(0, 255, 0), QColor(0, 0, 255)};
  const QImage painted = Drawing(name, size, &colors);
  if (painted.isNull()) return {};
  // The bytes as they are, not divided by the cover.
  return QImage(painted.constBits(), painted.width(), painted.height(), painted.bytesPerLine(),
                QImage::Format_ARGB32)
      .copy();
}

bool WriteStoredDrawings(const QString& folder) {
  static_cast<void>(ApplicationIcon());  // brings the resources in
  QString list;
  for (const QString& prefix : {QStringLiteral("icons"), QStringLiteral("pictures")}) {
    list += QStringLiteral("  <qresource prefix=\"/%1\">\n").arg(prefix);
    for (const QFileInfo& file : QDir(QStringLiteral(":/") + prefix).entryInfoList()) {
      const QString name = QStringLiteral(":/%1/%2").arg(prefix, file.completeBaseName());
      const QString place = prefix + u'/' + file.completeBaseName();
      if (!QDir(folder).mkpath(place)) return false;
      for (const QSize size : SizesFor(name)) {
        const QImage picture = IsPainted(name) ? SharesOf(name, size) : Drawing(name, size, nullptr);
        const QString path = QStringLiteral("%1/%2.png").arg(place).arg(size.width());
        if (picture.isNull() || !picture.save(folder + u'/' + path)) return false;
        list += QStringLiteral("    <file alias=\"%1\">%2</file>\n").arg(path.section(u'/', 1), path);
      }
    }
    list += QStringLiteral("  </qresource>\n");
  }
  QFile file(folder + QStringLiteral("/icons.qrc"));
  if (!file.open(QIODevice::WriteOnly)) return false;
  const QByteArray text = (QStringLiteral("<RCC>\n") + list + QStringLiteral("</RCC>\n")).toUtf8();
  return file.write(text) == text.size() && file.flush();
}

QByteArray IconFile(const std::vector<QImage>& pictures) {
  constexpr quint16 kIcons = 1;
  constexpr quint32 kHeaderBytes = 6;
  constexpr quint32 kEntryBytes = 16;
  QByteArray head;
  QByteArray body;
  QDataStream stream(&head, QIODevice::WriteOnly);
  stream.setByteOrder(QDataStream::LittleEndian);
  const auto count = static_cast<quint16>(pictures.size());
  stream << quint16(0) << kIcons << count;
  for (const QImage& picture : pictures) {
    const QByteArray bytes = picture.width() >= kPackedFrom ? PackedOf(picture) : BitmapOf(picture);
    const auto side = static_cast<quint8>(picture.width() % 256);  // 256 is written as 0
    const quint32 place = kHeaderBytes + kEntryBytes * count + static_cast<quint32>(body.size());
    stream << side << side << quint8(0) << quint8(0) << quint16(1) << quint16(32)
           << static_cast<quint32>(bytes.size()) << place;
    body += bytes;
  }
  return head + body;
}

}  // namespace spectrane
