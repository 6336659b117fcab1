// Paints the program's pictures into PNG files: all command icons on one sheet, to be looked at side by side,
// the icons of the application and of its files in the sizes that desktops want, and all of them for programs
// that cannot read drawings. Makes icon files too.
#include <algorithm>
#include <array>
#include <initializer_list>
#include <iterator>
#include <QApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QPainter>
#include <QPalette>
#include <QSvgRenderer>
#include <QTextStream>
#include <vector>

#include "app/ground/commandicon.h"
#include "iconsheet/buildpictures.h"

using namespace spectrane;

namespace {

constexpr std::array<std::array<int, 15>, 6> kGroups{{
    {102, 121, 104, 105, 106, 107, 108, 109, 110, 116},
    {302, 303, 304, 305, 330, 331, 332, 306, 307, 308, 313, 317, 314, 315, 316},
    {402, 403, 404, 405, 406, 407, 408, 409, 410, 412},
    {309, 310, 311, 334, 335, 210},
    {111, 113, 114, 115, 117, 118, 119, 120},
    {502, 503, 504, 602, 603},
}};

struct Look {
  const char* Ground;
  const char* Text;
};
constexpr std::array<Look, 2> kLooks{{{"#efefef", "#1a1a1a"}, {"#2b2d30", "#eceff1"}}};

constexpr int kCellWidth = 190;
constexpr int kCellHeight = 104;
constexpr int kColumns = 8;

void PaintCell(QPainter& painter, QPoint at, int command, const QColor& text) {
  const QIcon icon = CommandIcon(command);
  int x = at.x() + 8;
  for (const int side : {16, 24, 32}) {
    painter.drawPixmap(x, at.y() + 8, icon.pixmap(QSize(side, side), 1.0));
    painter.drawPixmap(x, at.y() + 48, icon.pixmap(QSize(side, side), 1.0, QIcon::Disabled));
    x += side + 8;
  }
  QPixmap twice = icon.pixmap(QSize(32, 32), 2.0);
  twice.setDevicePixelRatio(1.0);
  painter.drawPixmap(at.x() + 114, at.y() + 8, twice);
  painter.setPen(text);
  painter.drawText(QRect(at.x() + 6, at.y() + 84, kCellWidth - 8, 18), Qt::AlignLeft,
                   QStringLiteral("%1 %2").arg(command).arg(CommandIconName(command)));
}

QImage Sheet(const Look& look) {
  const QColor ground = QColor::fromString(QLatin1String(look.Ground));
  const QColor text = QColor::fromString(QLatin1String(look.Text));
  QPalette palette;
  palette.setColor(QPalette::Window, ground);
  palette.setColor(QPalette::WindowText, text);
  QApplication::setPalette(palette);
  std::vector<int> commands;
  for (const auto& group : kGroups)
    std::copy_if(group.begin(), group.end(), std::back_inserter(commands), [](int c) { return c != 0; });
  const int rows = (static_cast<int>(commands.size()) + kColumns - 1) / kColumns;
  QImage sheet(kColumns * kCellWidth, rows * kCellHeight, QImage::Format_RGB32);
  sheet.fill(ground);
  QPainter painter(&sheet);
  painter.setFont(QFont(QStringLiteral("DejaVu Sans"), 9));
  for (int i = 0; i < static_cast<int>(commands.size()); ++i)
    PaintCell(painter, QPoint(i % kColumns * kCellWidth, i / kColumns * kCellHeight),
              commands.at(static_cast<std::size_t>(i)), text);
  return sheet;
}

bool WriteSheet(const QString& path) {
  const QImage light = Sheet(kLooks[0]);
  const QImage dark = Sheet(kLooks[1]);
  QImage both(light.width(), light.height() + dark.height(), QImage::Format_RGB32);
  QPainter painter(&both);
  painter.drawImage(0, 0, light);
  painter.drawImage(0, light.height(), dark);
  painter.end();
  return both.save(path);
}

/// A picture of the drawing for each side; empty when there is no such drawing.
std::vector<QImage> Painted(const QString& drawing, std::initializer_list<int> sides) {
  std::vector<QImage> pictures;
  QSvgRenderer renderer(drawing);
  if (!renderer.isValid()) return pictures;
  for (const int side : sides) {
    QImage picture(side, side, QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    renderer.render(&painter, QRectF(0, 0, side, side));
    painter.end();
    pictures.push_back(picture);
  }
  return pictures;
}

/// Writes FOLDER/SIDExSIDE/KIND/NAME.png of one drawing.
bool WriteSizes(const QString& drawing, const QString& folder, const QString& kind) {
  const std::vector<QImage> pictures = Painted(drawing, {16, 32, 48, 128, 256});
  for (const QImage& picture : pictures) {
    const int side = picture.width();
    const QString place = QStringLiteral("%1/%2x%2/%3").arg(folder).arg(side).arg(kind);
    if (!QDir().mkpath(place)) return false;
    if (!picture.save(QStringLiteral("%1/%2.png").arg(place, QFileInfo(drawing).completeBaseName())))
      return false;
  }
  return !pictures.empty();
}

/// Writes FOLDER/NAME.ico of one drawing.
bool WriteIcon(const QString& drawing, const QString& folder) {
  const std::vector<QImage> pictures = Painted(drawing, {16, 20, 24, 32, 40, 48, 64, 256});
  QFile file(QStringLiteral("%1/%2.ico").arg(folder, QFileInfo(drawing).completeBaseName()));
  return !pictures.empty() && file.open(QIODevice::WriteOnly) && file.write(IconFile(pictures)) > 0;
}

}  // namespace

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  const QStringList arguments = QApplication::arguments();
  if (arguments.size() == 3 && arguments.at(1) == QStringLiteral("sheet"))
    return WriteSheet(arguments.at(2)) ? 0 : 1;
  if (arguments.size() >= 5 && arguments.at(1) == QStringLiteral("sizes")) {
    bool done = true;
    for (const QString& drawing : arguments.mid(4))
      done = WriteSizes(drawing, arguments.at(2), arguments.at(3)) && done;
    return done ? 0 : 1;
  }
  if (arguments.size() == 3 && arguments.at(1) == QStringLiteral("stored"))
    return WriteStoredDrawings(arguments.at(2)) ? 0 : 1;
  if (arguments.size() >= 4 && arguments.at(1) == QStringLiteral("icons")) {
    bool done = true;
    for (const QString& drawing : arguments.mid(3)) done = WriteIcon(drawing, arguments.at(2)) && done;
    return done ? 0 : 1;
  }
  QTextStream(stderr) << "iconsheet sheet PICTURE.png | iconsheet sizes FOLDER KIND DRAWING.svg...\n"
                         "iconsheet stored FOLDER | iconsheet icons FOLDER DRAWING.svg...\n";
  return 2;
}
