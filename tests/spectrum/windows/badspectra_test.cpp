#include <limits>

#include "base/notfinite.h"
#include "spectrum/windows/frmwlsver2.h"
#include "spectrum/windows/scanfixture.h"

namespace spectrane::testing_windows {
namespace {

constexpr double kHuge = std::numeric_limits<double>::max();

struct BadRow {
  const char* Name;
  WLSOption Option;
  std::function<WLS2Record(int point)> Point;
  int Count;
};

WLSOption Home(double start, double end, double top, double bottom) {
  return {start, end, top, bottom, 100 * top, 100 * bottom, 0, 0, 0, 0, 0, 0, 0, 1};
}

WLS2Record Usual(int point) {
  return {500.0 + point, point % 7 * 10.0, point % 7 * 0.1};
}

/// A file that nobody would measure is opened, searched, zoomed and drawn at every size; the window stays.
class BadSpectra : public WindowFixture, public testing::WithParamInterface<BadRow> {};

TEST_P(BadSpectra, AreShownSearchedAndZoomed) {
  std::vector<WLS2Record> points;
  for (int i = 0; i < GetParam().Count; ++i) points.push_back(GetParam().Point(i));
  SaveSpectrum(WLS2Module(), Folder.Path("bad.wls"), GetParam().Option, points);
  FrmWLSVer2 window(Main);
  Present(window);
  ASSERT_TRUE(window.mmuOpenFile(PathOf("bad.wls")));
  EXPECT_EQ(window.GetRecordNo(), GetParam().Count);
  auto* const curve = Find<PicCurve>(window, "PicCurve");
  window.FindPeak();
  EXPECT_EQ(curve->View().Marks.size(),
            window.Document().Found().PeakIndex.size() + window.Document().Found().ValleyIndex.size());
  window.grab();
  window.mmuZoomIn();
  window.grab();
  for (const Qt::Key key : {Qt::Key_Right, Qt::Key_Right, Qt::Key_Left, Qt::Key_Home, Qt::Key_End})
    QTest::keyClick(curve, key);
  QTest::mouseMove(curve, curve->rect().center());
  QTest::mousePress(curve, Qt::LeftButton, {}, curve->rect().center());
  QTest::mouseRelease(curve, Qt::LeftButton, {}, curve->rect().center());
  window.mmuZoomWindow();
  window.mmuZoomOut();
  window.DataTable()->resize(400, 200);
  window.DataTable()->grab();
  for (const QSize size :
       {QSize(1, 1), QSize(2, 60), QSize(112, 66), QSize(114, 67), QSize(180, 134), QSize(900, 500)}) {
    curve->resize(size);
    curve->grab();
  }
}

INSTANTIATE_TEST_SUITE_P(
    Files, BadSpectra,
    testing::Values(
        BadRow{"NoPoints", Home(400, 700, 1, 0), Usual, 0},
        BadRow{"OnePoint", Home(400, 700, 1, 0), Usual, 1},
        BadRow{"TwoPoints", Home(400, 700, 1, 0), Usual, 2},
        BadRow{"ThreePoints", Home(400, 700, 1, 0), Usual, 3},
        BadRow{"MostPoints", Home(400, 700, 1, 0), Usual, 10001},
        BadRow{"StartIsEnd", Home(500, 500, 1, 0), Usual, 20},
        BadRow{"StartAboveEnd", Home(700, 400, 1, 0), Usual, 20},
        BadRow{"TopIsBottom", Home(400, 700, 1, 1), Usual, 20},
        BadRow{"TopBelowBottom", Home(400, 700, 0, 1), Usual, 20},
        BadRow{"HomeIsNoNumber", Home(kNaN, 700, kNaN, 0), Usual, 20},
        BadRow{"HomeIsEndless", Home(-kInfinity, kInfinity, kInfinity, -kInfinity), Usual, 20},
        BadRow{"HomeIsHuge", Home(-kHuge, kHuge, kHuge, -kHuge), Usual, 20},
        BadRow{"Descending", Home(400, 700, 1, 0),
               [](int i) {
                 return WLS2Record{600.0 - i, i % 5 * 10.0, i % 5 * 0.1};
               },
               50},
        BadRow{"EqualWavelengths", Home(400, 700, 1, 0),
               [](int i) {
                 return WLS2Record{500, i % 5 * 10.0, i % 5 * 0.1};
               },
               50},
        BadRow{"NoNumbers", Home(400, 700, 1, 0),
               [](int) {
                 return WLS2Record{kNaN, kNaN, kNaN};
               },
               20},
        BadRow{"EndlessValues", Home(400, 700, 1, 0),
               [](int i) {
                 return WLS2Record{500.0 + i, kInfinity, i % 2 == 0 ? kInfinity : -kInfinity};
               },
               20},
        BadRow{"SomeAreNoNumbers", Home(400, 700, 1, 0),
               [](int i) {
                 return i % 3 == 0 ? WLS2Record{i % 2 == 0 ? kNaN : kInfinity, kNaN, -kInfinity} : Usual(i);
               },
               100},
        BadRow{"HugeValues", Home(400, 700, 1, 0),
               [](int i) {
                 return WLS2Record{kHuge, -kHuge, i % 2 == 0 ? kHuge : -kHuge};
               },
               20}),
    NameOfRow<BadRow>);

}  // namespace
}  // namespace spectrane::testing_windows
