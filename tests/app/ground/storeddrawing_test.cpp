#include "app/ground/storeddrawing.h"

#include <gtest/gtest.h>
#include <QBuffer>
#include <QDir>
#include <QImageReader>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdlib>
#include <memory>

#include "app/ground/commandicon.h"
#include "app/ground/drawing.h"
#include "iconsheet/buildpictures.h"

namespace spectrane {
namespace {

const IconColors kOnLight{0x1a1a1a, 0x1f6fd0, 0x178a45, 0xd23b3b};
const IconColors kOnDark{0xeceff1, 0x6cb2ff, 0x4fce83, 0xff8078};
const IconColors kOneColor{0x909090, 0x909090, 0x909090, 0x909090};

/// All icons with colours of the palette.
QStringList PaletteIcons() {
  static_cast<void>(ApplicationIcon());
  QStringList names;
  for (const QString& file : QDir(QStringLiteral(":/icons")).entryList())
    if (file != QStringLiteral("spectrane.svg")) names.append(QStringLiteral(":/icons/") + file.chopped(4));
  return names;
}

/// The largest difference in any channel of any dot.
int Difference(const QImage& one, const QImage& other) {
  if (one.size() != other.size() || one.isNull()) return 256;
  const QImage a = one.convertToFormat(QImage::Format_ARGB32_Premultiplied);
  const QImage b = other.convertToFormat(QImage::Format_ARGB32_Premultiplied);
  int most = 0;
  for (int y = 0; y < a.height(); ++y) {
    const uchar* const left = a.constScanLine(y);
    const uchar* const right = b.constScanLine(y);
    for (int x = 0; x < 4 * a.width(); ++x) most = std::max(most, std::abs(left[x] - right[x]));
  }
  return most;
}

class StoredDrawings : public testing::Test {
 protected:
  /// All pictures, painted once for all tests.
  static void SetUpTestSuite() {
    painted_ = std::make_unique<QTemporaryDir>(QString::fromStdString(testing::TempDir()) +
                                               QStringLiteral("/storeddrawings-XXXXXX"));
    ASSERT_TRUE(WriteStoredDrawings(painted_->path()));
  }
  static void TearDownTestSuite() { painted_.reset(); }

  static QString Painted(const char* name) { return painted_->path() + u'/' + QLatin1String(name); }

 private:
  static inline std::unique_ptr<QTemporaryDir> painted_;
};

TEST_F(StoredDrawings, AnIconOfSharesIsTheDrawingInAllColours) {
  const QStringList names = PaletteIcons();
  EXPECT_GT(names.size(), 50);
  for (const QString& name : names)
    for (const int side : {16, 20, 48})
      for (const IconColors& colors : {kOnLight, kOnDark, kOneColor})
        EXPECT_LE(Difference(ColoredShares(SharesOf(name, QSize(side, side)), colors),
                             Drawing(name, QSize(side, side), &colors)),
                  3)
            << name.toStdString() << " " << side << " " << colors.Ink.name().toStdString();
}

TEST_F(StoredDrawings, WhatIsWrittenIsReadBackDotForDot) {
  for (const int side : {16, 24, 32, 40, 48, 64})
    EXPECT_LE(Difference(StoredDrawing(Painted("icons/connect"), QSize(side, side), &kOnDark),
                         Drawing(QStringLiteral(":/icons/connect"), QSize(side, side), &kOnDark)),
              3)
        << side;
  EXPECT_LE(Difference(StoredDrawing(Painted("icons/spectrane"), QSize(256, 256), nullptr),
                       Drawing(QStringLiteral(":/icons/spectrane"), QSize(256, 256), nullptr)),
            2);
}

TEST_F(StoredDrawings, OtherSizesAreMadeOfTheNextLargerPictureAtTheDrawingsProportions) {
  const QString icon = Painted("icons/open");
  for (const int side : {13, 18, 30, 95, 200}) {
    const QImage picture = StoredDrawing(icon, QSize(side, side), &kOnLight);
    EXPECT_EQ(picture.size(), QSize(side, side));
    QImage nothing(picture.size(), picture.format());
    nothing.fill(Qt::transparent);
    EXPECT_GT(Difference(picture, nothing), 150) << side;
  }
  const QSize about = StoredDrawingSize(Painted("pictures/about1"));
  EXPECT_EQ(about, QSize(320, 140));
  EXPECT_EQ(StoredDrawing(Painted("pictures/about1"), QSize(500, 500), nullptr).size(), QSize(500, 500));
}

TEST_F(StoredDrawings, TheListNamesEveryPictureForTheResources) {
  QFile list(Painted("icons.qrc"));
  ASSERT_TRUE(list.open(QIODevice::ReadOnly));
  const QString text = QString::fromUtf8(list.readAll());
  for (const QString& name : PaletteIcons())
    EXPECT_TRUE(text.contains(QStringLiteral("alias=\"%1/16.png\"").arg(name.section(u'/', -1))))
        << name.toStdString();
  EXPECT_EQ(text.count(QStringLiteral("<file ")), text.count(QStringLiteral(".png</file>")));
}

TEST_F(StoredDrawings, WithoutPicturesThereIsNothing) {
  EXPECT_TRUE(StoredDrawing(Painted("icons/unknown"), QSize(16, 16), nullptr).isNull());
  EXPECT_TRUE(StoredDrawingSize(Painted("icons/unknown")).isEmpty());
  EXPECT_TRUE(StoredDrawing(Painted("icons/open"), QSize(), nullptr).isNull());
}

TEST_F(StoredDrawings, AnIconFileHasAllItsPictures) {
  static_cast<void>(ApplicationIcon());
  std::vector<QImage> pictures;
  for (const int side : {16, 32, 256})
    pictures.push_back(Drawing(QStringLiteral(":/icons/spectrane"), QSize(side, side), nullptr));
  QByteArray bytes = IconFile(pictures);
  QBuffer buffer(&bytes);
  QImageReader reader(&buffer, "ico");
  ASSERT_EQ(reader.imageCount(), 3);
  for (int i = 0; i < 3; ++i) {
    ASSERT_TRUE(reader.jumpToImage(i));
    EXPECT_LE(Difference(reader.read(), pictures[static_cast<std::size_t>(i)]), 2) << i;
  }
}

}  // namespace
}  // namespace spectrane
