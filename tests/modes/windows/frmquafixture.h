#pragma once

#include <QLineEdit>
#include <QTableView>

#include "app/ground/words.h"
#include "modes/windows/frmqua.h"
#include "modes/windows/qualinepic.h"
#include "windowsupport/windowfixture.h"

namespace spectrane::testing_windows {

/// A quantitation window on show: a straight line through `standards` standards, or typed coefficients.
class QuaWindow : public WindowFixture {
 protected:
  void Open(int standards = 2) {
    Settings.PutSetting("Quantitative Measurement", "Fitting Line", "1");
    Settings.PutSetting("Quantitative Measurement", "Sample Number", std::to_string(standards));
    Settings.PutSetting("Quantitative Measurement", "Conc Unit", "mg/L");
    Show();
  }
  void OpenWithCoefficients() {
    Settings.PutSetting("Quantitative Measurement", "Curve Item", "2");
    Settings.PutSetting("Quantitative Measurement", "Fitting Line", "0");
    Settings.PutSetting("Quantitative Measurement", "Curve K1", "10");
    Show();
  }
  void Show() {
    Window = new FrmQua(Main);
    Present(*Window);
    Window->resize(1000, 640);
    Standards = Find<QTableView>(*Window, "QuaConfigGrid");
    Records = Find<QTableView>(*Window, "RecordGrid");
  }
  void Blank() {
    ConnectNow();
    Insert("blank");
    Window->mmuOperationRezero();
    ASSERT_TRUE(Window->Test().BlankHolds());
  }
  ~QuaWindow() override { delete Window.data(); }

  static QString Cell(const QTableView* grid, int row, int column) {
    return grid->model()->index(row, column).data().toString();
  }
  void Click(QTableView* grid, int row, int column) const {
    const QRect place = grid->visualRect(grid->model()->index(row, column));
    QTest::mouseClick(grid->viewport(), Qt::LeftButton, Qt::NoModifier, place.center());
    QCoreApplication::processEvents();
  }
  QLineEdit* Editor(const char* name) const {
    for (QLineEdit* editor : Window->findChildren<QLineEdit*>(QLatin1String(name)))
      if (editor->isVisible()) return editor;
    return nullptr;
  }
  void TypeConc(int row, const char* text) {
    Click(Standards, row, kConc);
    ASSERT_NE(Editor("QuaConfigText"), nullptr);
    Editor("QuaConfigText")->selectAll();
    QTest::keyClicks(Editor("QuaConfigText"), QLatin1String(text));
    QTest::keyClick(Editor("QuaConfigText"), Qt::Key_Return);
    QCoreApplication::processEvents();
  }
  struct Standard {
    const char* Dye;
    const char* Conc;  ///< [mg/L] as it is typed
  };
  /// From the first row on.
  void MeasureStandards(std::initializer_list<Standard> standards) {
    int row = 0;
    for (const Standard& standard : standards) {
      TypeConc(row, standard.Conc);
      Insert(standard.Dye);
      Click(Standards, row++, kAbs);
    }
  }
  /// A straight line from 1 to 20 mg/L.
  void MeasureFiveStandards() {
    MeasureStandards({{"dye-1", "1"}, {"dye-3", "4"}, {"dye-5", "8"}, {"dye-7", "15"}, {"dye-8", "20"}});
  }
  void Sample(const char* name) {
    Insert(name);
    Window->mmuStartTest();
  }

  static constexpr int kName = 1;
  static constexpr int kAbs = 2;
  static constexpr int kConc = 3;
  static constexpr int kNote = 4;

  QPointer<FrmQua> Window;
  QTableView* Standards = nullptr;
  QTableView* Records = nullptr;
};

}  // namespace spectrane::testing_windows
