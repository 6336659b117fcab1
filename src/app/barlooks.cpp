#include "app/barlooks.h"

#include <QColor>

#include <cmath>

namespace spectrane {
namespace {

enum class Shape {
  Flat,      ///< one colour
  Gradient,  ///< light above, dark below
  Gloss,     ///< a gradient with an edge in the middle
};

struct Look {
  const char* Name;
  Shape Bar;
  /// Mixed into the window colour, as strongly as Strength [0..1] says.
  QRgb Tint;
  double Strength;
  QRgb Hover;
  double HoverStrength;
  /// Of the buttons [px].
  int Radius;
  int Padding;
  /// A button under the pointer stands out as a raised key instead of getting a frame.
  bool Raised;
  /// Rule below the bars [px].
  int Rule;
};

constexpr Look kLooks[] = {
    {"Office 2000", Shape::Flat, 0xc0c0c0, 0.25, 0xc0c0c0, 0.10, 0, 2, true, 1},
    {"Office XP", Shape::Flat, 0xe9e4d4, 0.35, 0x316ac5, 0.30, 0, 2, false, 0},
    {"Office 2003", Shape::Gradient, 0x6f9ddb, 0.55, 0xf7a13c, 0.55, 2, 2, false, 1},
    {"Windows XP", Shape::Flat, 0xf3e3a8, 0.60, 0xffffff, 0.65, 4, 3, false, 1},
    {"Whidbev", Shape::Gradient, 0xb8ab86, 0.60, 0x4a6fa5, 0.35, 0, 3, false, 0},
    {"Office 2007", Shape::Gloss, 0x7fa9e0, 0.60, 0xffd25a, 0.70, 3, 3, false, 1},
    {"Ribbon", Shape::Flat, 0xffffff, 0.85, 0x2f7ed8, 0.22, 5, 5, false, 3},
};

/// `share` of `over` laid on `under`; on a dark ground the light tints weigh less, so that text keeps its
/// contrast.
QColor Mix(const QColor& under, const QColor& over, double share) {
  if (under.lightness() < 128) share *= over.lightness() > 160 ? 0.25 : 0.55;
  const auto channel = [share](int a, int b) { return static_cast<int>(std::lround(a + (b - a) * share)); };
  return QColor(channel(under.red(), over.red()), channel(under.green(), over.green()),
                channel(under.blue(), over.blue()));
}

QString Ground(const Look& look, const QColor& colour) {
  switch (look.Bar) {
    case Shape::Flat:
      break;
    case Shape::Gradient:
      return QStringLiteral("qlineargradient(x1:0,y1:0,x2:0,y2:1,stop:0 %1,stop:1 %2)")
          .arg(colour.lighter(118).name(), colour.darker(104).name());
    case Shape::Gloss:
      return QStringLiteral(
                 "qlineargradient(x1:0,y1:0,x2:0,y2:1,stop:0 %1,stop:0.48 %2,stop:0.5 %3,stop:1 %4)")
          .arg(colour.lighter(125).name(), colour.lighter(110).name(), colour.darker(106).name(),
               colour.lighter(112).name());
  }
  return colour.name();
}

QString ButtonRules(const Look& look, const QColor& window, const QColor& hover) {
  const QString frame = look.Raised ? QStringLiteral("1px outset ") + window.darker(120).name()
                                    : QStringLiteral("1px solid ") + hover.darker(140).name();
  const QString pressed = look.Raised ? QStringLiteral("1px inset ") + window.darker(120).name() : frame;
  return QStringLiteral(
             "QToolBar QToolButton{border:1px solid transparent;border-radius:%1px;padding:%2px;}"
             "QToolBar QToolButton:hover:enabled,QToolBar QToolButton:focus{border:%3;background:%4;}"
             "QToolBar QToolButton:pressed{border:%5;background:%6;}"
             "QToolBar QToolButton:checked{border:%5;background:%7;}")
      .arg(look.Radius)
      .arg(look.Padding)
      .arg(frame, hover.name(), pressed, hover.darker(112).name(), hover.lighter(106).name());
}

}  // namespace

const QStringList& BarLookNames() {
  static const QStringList names = [] {
    QStringList all;
    for (const Look& look : kLooks) all.append(QString::fromLatin1(look.Name));
    return all;
  }();
  return names;
}

QString BarLookSheet(int look, const QPalette& palette) {
  const bool known = look >= 0 && look < static_cast<int>(std::size(kLooks));
  const Look& chosen = kLooks[known ? look : 0];
  const QColor window = palette.color(QPalette::Window);
  const QColor bar = Mix(window, QColor(chosen.Tint), chosen.Strength);
  const QColor hover = Mix(bar, QColor(chosen.Hover), chosen.HoverStrength);
  const QString rule = chosen.Rule > 0
                           ? QStringLiteral("border-bottom:%1px solid %2;")
                                 .arg(chosen.Rule)
                                 .arg(chosen.Rule > 1 ? hover.darker(115).name() : bar.darker(125).name())
                           : QStringLiteral("border:none;");
  const QString ground = Ground(chosen, bar);
  return QStringLiteral(
             "QMenuBar{background:%1;}"
             "QMenuBar::item{background:transparent;padding:3px 8px;border-radius:%2px;}"
             "QMenuBar::item:selected{background:%3;}"
             "QToolBar{background:%1;%4spacing:%5px;padding:1px;}"
             "QStatusBar{background:%6;}QStatusBar::item{border:none;}")
             .arg(ground)
             .arg(chosen.Radius)
             .arg(hover.name(), rule)
             .arg(chosen.Padding > 3 ? 4 : 1)
             .arg(bar.name()) +
         ButtonRules(chosen, bar, hover);
}

}  // namespace spectrane
