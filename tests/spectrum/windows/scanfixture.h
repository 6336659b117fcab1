#pragma once

#include <QCheckBox>
#include <QComboBox>
#include <QFile>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTableView>

#include "app/ground/frmdatatabel.h"
#include "app/ground/words.h"
#include "output/windows/piccurve.h"
#include "spectrum/spectrumsupport.h"
#include "spectrum/windows/frmwls.h"
#include "windowsupport/windowfixture.h"

namespace spectrane::testing_windows {

/// The cells of a row, with bars between them.
inline QString RowText(const QAbstractItemModel& model, int row) {
  QStringList cells;
  for (int column = 0; column < model.columnCount(); ++column)
    cells.append(model.index(row, column).data().toString());
  return cells.join(u'|');
}

/// Types into a field in the place of what stands there.
inline void TypeInto(QWidget& dialog, const char* field, const char* text) {
  auto* const line = Find<QLineEdit>(dialog, field);
  line->setFocus();
  line->selectAll();
  QTest::keyClick(line, Qt::Key_Delete);
  QTest::keyClicks(line, QString::fromUtf8(text));
}

/// A spectrum window on show.
class ScanWindow : public WindowFixture {
 protected:
  void Open() {
    Window = new FrmWLS(Main);
    Present(*Window);
    Curve = Find<PicCurve>(*Window, "PicCurve");
  }
  /// Shows points from 500 nm on with these transmittances [whole percent].
  void OpenPoints(const std::vector<int>& percents, const WLSOption& option = OtherOption()) {
    Settings.PutSetting(kScanSection, "Smooth Enable", "False");
    Open();
    SaveSpectrum(WLSModule(), Folder.Path("a.wls"), option, MeasuredPoints(percents));
    ASSERT_TRUE(Window->mmuOpenFile(PathOf("a.wls")));
  }
  void OpenHolmium() {
    Open();
    CopyHolmium();
    ASSERT_TRUE(Window->mmuOpenFile(PathOf("holmium.wls")));
  }
  void CopyHolmium() {
    ASSERT_TRUE(QFile::copy(QStringLiteral(SPECTRANE_SOURCE "/examples/holmium.wls"), PathOf("holmium.wls")));
  }
  ~ScanWindow() override { delete Window.data(); }

  QAbstractItemModel& Records() const { return *Window->DataTable()->Grid(0)->model(); }
  QAbstractItemModel& Peaks() const { return *Window->DataTable()->Grid(1)->model(); }
  CurveScale Seen() const { return Curve->View().Scale; }

  /// Opens the options, does something with them, and presses a key or a button.
  void Options(std::function<void(QWidget& dialog)> act) {
    bool opened = false;
    InDialog("FrmWLSConfig", [&opened, act = std::move(act)](QWidget& dialog) {
      opened = true;
      act(dialog);
    });
    Window->ShowConfigWindow();
    EXPECT_TRUE(opened);
  }
  void PeakValue(std::function<void(QWidget& dialog, QLineEdit& field)> act) {
    bool opened = false;
    InDialog("FrmPeakHeight", [&opened, act = std::move(act)](QWidget& dialog) {
      opened = true;
      act(dialog, *Find<QLineEdit>(dialog, "PeakHeightText"));
    });
    Window->mmuSetPeakHeight();
    EXPECT_TRUE(opened);
  }
  static void Type(QWidget& dialog, const char* field, const char* text) { TypeInto(dialog, field, text); }
  static void Click(QWidget& dialog, const char* button) {
    auto* const found = Find<QAbstractButton>(dialog, button);
    QTest::mouseClick(found, Qt::LeftButton, {}, QPoint(8, found->height() / 2));
  }
  static void Choose(QWidget& dialog, const char* list, const char* row) {
    auto* const box = Find<QComboBox>(dialog, list);
    const int index = box->findText(QString::fromUtf8(row));
    ASSERT_GE(index, 0) << row;
    box->setCurrentIndex(index);
  }
  std::string Stored(const char* key) { return Setting(Folder.Path()).GetSetting(kScanSection, key); }

  QPointer<FrmWLS> Window;
  PicCurve* Curve = nullptr;
};

}  // namespace spectrane::testing_windows
