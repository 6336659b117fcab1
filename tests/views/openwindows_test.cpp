#include <QHeaderView>
#include <QLineEdit>
#include <QTableView>

#include "app/framefixture.h"
#include "app/ground/documentwindow.h"
#include "files/samplefiles.h"

namespace spectrane::testing_windows {
namespace {

using OpenWindows = FrameFixture;

// A reset once left the columns of open windows as they were, and their close remembered them again.
TEST_F(OpenWindows, AResetOfTheLayoutReachesOpenWindows) {
  struct Place {
    const char* File;
    const char* Grid;
  };
  constexpr Place kPlaces[] = {{"photometry.bas", "DataGrid"},
                               {"dye.qua", "QuaConfigGrid"},
                               {"multi.mul", "DataGrid"},
                               {"holmium.wls", "DataGrid0"}};
  Start();
  for (const Place& place : kPlaces) {
    const QString path = QStringLiteral(SPECTRANE_SOURCE "/examples/") + QLatin1String(place.File);
    const auto header = [&] { return Find<QTableView>(*Main, place.Grid)->horizontalHeader(); };
    ASSERT_TRUE(Main->OpenDataFile(path)) << place.File;
    const int usual = header()->sectionSize(0);
    header()->resizeSection(0, usual + 70);
    Choose(kResetLayout);
    EXPECT_EQ(header()->sectionSize(0), usual) << place.File;
    header()->resizeSection(0, usual + 30);
    Choose(kResetLayout);
    Choose(kClose);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    ASSERT_TRUE(Main->OpenDataFile(path)) << place.File;
    EXPECT_EQ(header()->sectionSize(0), usual) << place.File << ": remembered after all";
    Choose(kClose);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  }
}

// Two windows whose options had changed were both called "Multi Wavelength".
TEST_F(OpenWindows, DocumentsThatLoseTheirFileGetNamesOfTheirOwn) {
  Start();
  for (const char* name : {"a.mul", "b.mul"}) {
    ASSERT_TRUE(WriteSamples(MultiModule(), Folder.Path(name), MultiTable(2), {MultiSample("one", 0.5, 1)}));
    ASSERT_TRUE(Main->OpenDataFile(PathOf(name)));
    Boxes.ExpectMessage(1020);
    InDialog("FrmMultiConfig", [](QWidget& dialog) {
      Find<QLineEdit>(dialog, "WLText1")->setText(QStringLiteral("501.5"));
      QTest::keyClick(&dialog, Qt::Key_Return);
    });
    Choose(kTestOption);
  }
  InDialog("FrmMultiConfig", [](QWidget& dialog) { dialog.close(); });
  Choose(kNewMulti);
  QStringList captions;
  for (const DocumentWindow* document : Main->findChild<Workspace*>()->Documents())
    captions.append(document->Caption());
  EXPECT_EQ(captions, QStringList({QStringLiteral("Multi Wavelength 1"), QStringLiteral("Multi Wavelength 2"),
                                   QStringLiteral("Multi Wavelength 3")}));
}

}  // namespace
}  // namespace spectrane::testing_windows
