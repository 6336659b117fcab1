#include "modes/windows/frmbasicconfig.h"
#include "modes/windows/frmbasicfixture.h"
#include "windowsupport/pictures.h"

namespace spectrane::testing_windows {
namespace {

/// Pictures for a person to judge.
class BasicPictures : public BasicWindow {
 protected:
  void EightRows() {
    OpenWithBlank();
    const char* const samples[] = {"dye-1", "dye-2",      "dye-4", "dye-6",
                                   "dye-8", "filter-3.0", "blank", "closed"};
    for (const char* sample : samples) {
      Insert(sample);
      Measure(1);
    }
    const char* const notes[] = {"Standard 1", "Standard 2, fresh cuvette", "Sample 17 a", "Sample 17 b"};
    for (int row = 0; row < 4; ++row)
      Grid->model()->setData(Grid->model()->index(row, 5), QString::fromUtf8(notes[row]));
  }
};

using DISABLED_BasicPictures = BasicPictures;

TEST_F(DISABLED_BasicPictures, Rows) {
  EightRows();
  Shoot(*Window, "basic-rows");
  TypeNote(3, "Sample 17 b, dilut");
  Shoot(*Window, "basic-editor");
  Window->CommitEditors();
  Window->resize(360, 300);
  Shoot(*Window, "basic-narrow");
}

TEST_F(DISABLED_BasicPictures, Empty) {
  Open();
  Shoot(*Window, "basic-empty");
  ConnectNow();
  Shoot(*Window, "basic-connected");
  Window->mmuOperationRezero();
  Shoot(*Window, "basic-blank");
  Window->resize(220, 160);
  Shoot(*Window, "basic-empty-narrow");
}

TEST_F(DISABLED_BasicPictures, Config) {
  FrmBasicConfig dialog(Main, 546.0);
  dialog.show();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&dialog));
  Shoot(dialog, "basic-config");
}

}  // namespace
}  // namespace spectrane::testing_windows
