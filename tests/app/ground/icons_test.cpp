#include <algorithm>
#include <cmath>
#include <QApplication>
#include <QImage>
#include <QPalette>

#include "app/ground/commandicon.h"
#include "app/ground/svgicon.h"

namespace spectrane {
namespace {

const std::vector<std::vector<int>> kToolbars{
    {102, 121, 104, 105, 106, 107, 108, 109, 110, 116},
    {402, 403, 404, 405, 406, 407, 408, 409, 410},
    {302, 303, 304, 305, 330, 331, 332, 306, 307, 308, 313, 317, 314, 315, 316},
    {309},
};
const std::vector<int> kMenuOnly{111, 113, 114, 115, 117, 118, 119, 120, 210, 310,
                                 311, 334, 335, 412, 502, 503, 504, 602, 603};

std::vector<int> AllCommands() {
  std::vector<int> all = kMenuOnly;
  for (const auto& bar : kToolbars) all.insert(all.end(), bar.begin(), bar.end());
  return all;
}

QImage Painted(const QIcon& icon, int side, double dpr = 1.0, QIcon::Mode mode = QIcon::Normal) {
  return icon.pixmap(QSize(side, side), dpr, mode).toImage().convertToFormat(QImage::Format_ARGB32);
}

/// Sum of the cover of all pixels, 1 for a full one.
double Cover(const QImage& image) {
  double sum = 0;
  for (int y = 0; y < image.height(); ++y)
    for (int x = 0; x < image.width(); ++x) sum += qAlpha(image.pixel(x, y)) / 255.0;
  return sum;
}

/// Cover that only one of two pictures has, as a share of the cover of the lighter one.
double ShapeDifference(const QImage& a, const QImage& b) {
  double sum = 0;
  for (int y = 0; y < a.height(); ++y)
    for (int x = 0; x < a.width(); ++x)
      sum += std::abs(qAlpha(a.pixel(x, y)) - qAlpha(b.pixel(x, y))) / 255.0;
  return sum / std::min(Cover(a), Cover(b));
}

/// Relative luminance of the sRGB colour space, 0 to 1.
double Luminance(QRgb color) {
  const auto linear = [](int channel) {
    const double c = channel / 255.0;
    return c <= 0.04045 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4);
  };
  return 0.2126 * linear(qRed(color)) + 0.7152 * linear(qGreen(color)) + 0.0722 * linear(qBlue(color));
}

double Contrast(QRgb a, QRgb b) {
  const auto [dark, light] = std::minmax({Luminance(a), Luminance(b)});
  return (light + 0.05) / (dark + 0.05);
}

/// Lowest contrast of a fully covered pixel with the ground; 0 when there is none.
double WeakestContrast(const QImage& image, QRgb ground) {
  double weakest = 100;
  for (int y = 0; y < image.height(); ++y)
    for (int x = 0; x < image.width(); ++x)
      if (qAlpha(image.pixel(x, y)) == 255) weakest = std::min(weakest, Contrast(image.pixel(x, y), ground));
  return weakest == 100 ? 0 : weakest;
}

class Icons : public testing::Test {
 protected:
  void SetUp() override { Use(QColor(0xefefef), QColor(0x1a1a1a)); }
  void TearDown() override { QApplication::setPalette(before_); }

  static void Use(const QColor& ground, const QColor& text) {
    QPalette palette;
    palette.setColor(QPalette::Window, ground);
    palette.setColor(QPalette::WindowText, text);
    QApplication::setPalette(palette);
  }

 private:
  QPalette before_ = QApplication::palette();
};

TEST_F(Icons, EveryCommandOfToolbarsHasOneAndUnknownNumbersHaveNone) {
  for (const int command : AllCommands()) EXPECT_FALSE(CommandIcon(command).isNull()) << command;
  for (const int command : {0, -1, 103, 202, 401, 9999})
    EXPECT_TRUE(CommandIcon(command).isNull()) << command;
}

TEST_F(Icons, PicturesHaveExactlyTheSizeAskedForAndAreNotEmpty) {
  for (const int command : AllCommands())
    for (const int side : {16, 24, 32})
      for (const double dpr : {1.0, 1.5, 2.0}) {
        const QPixmap picture = CommandIcon(command).pixmap(QSize(side, side), dpr);
        const int pixels = static_cast<int>(side * dpr);
        EXPECT_EQ(picture.size(), QSize(pixels, pixels)) << command << " " << side << " " << dpr;
        EXPECT_DOUBLE_EQ(picture.devicePixelRatio(), dpr) << command;
        EXPECT_GT(Cover(picture.toImage()), 0.08 * pixels * pixels) << command;
      }
}

TEST_F(Icons, TwiceAsFineIsDrawnAnewNotStretched) {
  const QImage fine = Painted(CommandIcon(119), 16, 2.0);
  const QImage coarse = Painted(CommandIcon(119), 16).scaled(32, 32);
  EXPECT_GT(ShapeDifference(fine, coarse), 0.05);
}

TEST_F(Icons, StrokesStayInsideThePicture) {
  for (const int command : AllCommands()) {
    const QImage big = Painted(CommandIcon(command), 96);
    const QImage inside = big.copy(1, 1, 94, 94);
    EXPECT_DOUBLE_EQ(Cover(big), Cover(inside)) << command;
  }
}

TEST_F(Icons, EveryColourHasContrastOnLightAndOnDarkGround) {
  for (const auto& [ground, text] :
       {std::pair(QColor(0xefefef), QColor(0x1a1a1a)), std::pair(QColor(Qt::white), QColor(Qt::black)),
        std::pair(QColor(0x2b2d30), QColor(0xeceff1))}) {
    Use(ground, text);
    for (const int command : AllCommands())
      EXPECT_GE(WeakestContrast(Painted(CommandIcon(command), 48), ground.rgb()), 3.0)
          << command << " on " << ground.name().toStdString();
  }
}

TEST_F(Icons, StrokesTakeTheTextColourOfThePaletteOfTheMoment) {
  const QIcon icon = CommandIcon(119);
  EXPECT_EQ(Painted(icon, 24).pixelColor(9, 12).name(), QStringLiteral("#1a1a1a"));
  Use(QColor(0x2b2d30), QColor(0xeceff1));
  EXPECT_EQ(Painted(icon, 24).pixelColor(9, 12).name(), QStringLiteral("#eceff1"));
}

TEST_F(Icons, DisabledIsOneColourBetweenTextAndGround) {
  for (const int command : AllCommands()) {
    const QImage muted = Painted(CommandIcon(command), 48, 1.0, QIcon::Disabled);
    const QRgb wanted = ColorsFor(QIcon::Disabled).Ink.rgb();
    EXPECT_LT(qGray(wanted), 0xef - 40);
    EXPECT_GT(qGray(wanted), 0x1a + 80);
    for (int y = 0; y < 48; ++y)
      for (int x = 0; x < 48; ++x)
        if (qAlpha(muted.pixel(x, y)) == 255) {
          ASSERT_EQ(muted.pixel(x, y), wanted) << command;
        }
  }
}

TEST_F(Icons, NeighboursOfOneToolbarDifferInShapeNotOnlyInColour) {
  for (const auto& bar : kToolbars)
    for (std::size_t i = 0; i < bar.size(); ++i)
      for (std::size_t j = i + 1; j < bar.size(); ++j)
        EXPECT_GT(ShapeDifference(Painted(CommandIcon(bar[i]), 16), Painted(CommandIcon(bar[j]), 16)), 0.08)
            << bar[i] << " and " << bar[j];
}

TEST_F(Icons, ApplicationIconKeepsItsColoursOnEveryPalette) {
  const QImage light = Painted(ApplicationIcon(), 48);
  EXPECT_GT(Cover(light), 0.5 * 48 * 48);
  Use(QColor(0x2b2d30), QColor(0xeceff1));
  EXPECT_EQ(light, Painted(ApplicationIcon(), 48));
  EXPECT_NE(light, Painted(ApplicationIcon(), 48, 1.0, QIcon::Disabled));
}

TEST_F(Icons, LargePicturesFitTheirPlaceAtTheirProportions) {
  for (const char* name : {"about1", "about2", "about3"}) {
    const QPixmap picture = Picture(QString::fromLatin1(name), QSize(320, 200), 2.0);
    EXPECT_EQ(picture.size(), QSize(640, 280)) << name;
    EXPECT_DOUBLE_EQ(picture.devicePixelRatio(), 2.0);
    EXPECT_DOUBLE_EQ(Cover(picture.toImage()), 640.0 * 280) << name;
  }
  EXPECT_EQ(Picture(QStringLiteral("logo"), QSize(64, 64), 1.0).size(), QSize(64, 64));
  EXPECT_EQ(Picture(QStringLiteral("background"), QSize(480, 280), 1.0).size(), QSize(480, 280));
  EXPECT_TRUE(Picture(QStringLiteral("nothing"), QSize(64, 64), 1.0).isNull());
  EXPECT_TRUE(Picture(QStringLiteral("logo"), QSize(), 1.0).isNull());
}

}  // namespace
}  // namespace spectrane
