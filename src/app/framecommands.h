#pragma once

#include "app/documentkinds.h"
#include "app/ground/mainwindow.h"

namespace spectrane {

/// What the rows of the command table ask of the main window. Those that talk to the instrument or ask
/// something yield.
class FrameCommands : public MainWindow {
 public:
  virtual void mmuFileNew() = 0;
  void mmuNewFileBasic() { NewFile(kPhotometryFile); }
  void mmuNewFileQua() { NewFile(kQuantitationFile); }
  void mmuNewFileTS() { NewFile(kKineticsFile); }
  void mmuNewFileWLS() { NewFile(kScanFile); }
  void mmuNewFileMulti() { NewFile(kMultiFile); }
  void mmuNewFileDNA() { NewFile(kDNAFile); }
  virtual void mmuFileOpen() = 0;
  virtual void mmuFileCloseOne() = 0;
  /// False when a window stays open; one that goes at the end of its run does not.
  virtual bool mmuFileCloseAll() = 0;

  virtual void ConnectCommand() = 0;
  virtual void ReleaseCommand() = 0;
  virtual void mmuOperationRezero() = 0;
  virtual void SwitchLamp(int command) = 0;
  virtual void mmuBaseLine() = 0;
  /// The dialog of one of the instrument's tools, but for the baseline.
  virtual void ShowTool(int command) = 0;

  /// Windows of processed spectra, followed by their options.
  virtual void CompareSpectra() = 0;
  virtual void SmoothSpectrum() = 0;
  virtual void CombineSpectra(int command) = 0;

  virtual void ToggleBar(int viewCommand) = 0;
  virtual void ToggleDataTable() = 0;
  virtual void ResetLayout() = 0;
  virtual void FocusNextPane() = 0;
  virtual void Arrange(int windowCommand) = 0;
  virtual void ShowOption() = 0;
  virtual void ShowAbout() = 0;
  /// The handbook from its beginning, or the page of the window around `widget` (null: of the main window).
  virtual void ShowHelpBook() = 0;
  virtual void ShowHelpFor(const QWidget* widget) = 0;
};

}  // namespace spectrane
