#pragma once

#include <QTemporaryDir>

#include <memory>

#include "app/frmmain.h"
#include "app/ground/languagefont.h"

namespace spectrane {

/// No instrument.
class NoPorts : public PortList {
 public:
  std::string Path(int) const override { return {}; }
  std::unique_ptr<Port> MakePort(int) override { return nullptr; }
};

/// The main window without an instrument, as large as a screen, in a folder of its own.
class BenchFrame {
 public:
  BenchFrame() { SelectLanguage(); }

  const QTemporaryDir& Folder() const { return folder_; }
  Setting& Settings() { return settings_; }
  /// The settings are read now.
  FrmMain& Show() {
    main_ = std::make_unique<FrmMain>(
        ProgramParts{ports_, time_, loop_, turn_, settings_, folder_.path().toStdString()});
    main_->resize(1600, 1000);
    main_->show();
    QCoreApplication::processEvents();
    return *main_;
  }

 private:
  QTemporaryDir folder_;
  ManualClock time_;
  QtMessageLoop loop_;
  NoExclusion turn_;
  NoPorts ports_;
  Setting settings_{folder_.path().toStdString()};
  std::unique_ptr<FrmMain> main_;
};

}  // namespace spectrane
