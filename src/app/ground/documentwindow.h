#pragma once

#include <QImage>
#include <QString>
#include <QWidget>

#include <memory>
#include <optional>

#include "app/ground/mainwindow.h"
#include "base/filestate.h"
#include "files/journalkeeper.h"
#include "link/livereading.h"
#include "output/documenthead.h"
#include "output/exportsheet.h"

namespace spectrane {

class FrmDataTabel;

/// What a kind of data file needs in dialogs.
struct FileKindWords {
  /// Text number of the dialog filter.
  int FilterTextId;
  /// With the point.
  const char* Ending;
  /// Section of config.ini whose `File Path` begins the save dialog.
  const char* Section;
  /// `File Path` has the folder of the file instead of the file.
  bool KeepsFolder = false;
  /// A document without a file is offered its caption as a name, and `File Path` follows what is offered and
  /// what is opened.
  bool OffersCaption = false;
  /// Where the path of a save goes when not to Section.
  const char* SavedSection = nullptr;
};

/// A child of the main window. The main window calls these procedures on the active child; what a window has
/// no use for stays empty, and Offers() tells the enabling pass which ones are more than that.
class DocumentWindow : public QWidget, public RezeroTarget {
  Q_OBJECT

 public:
  explicit DocumentWindow(MainWindow& frame);

  /// Measuring. These yield.
  virtual void mmuStartTest() {}
  virtual void mmuStopTest() {}
  void mmuOperationRezero() override {}
  virtual void mmuScanEnergy() {}
  /// Shows the file at `path`. False: it could not be read; the person was told. Yields.
  virtual bool mmuOpenFile(const QString& path);
  /// Saves to the known path, or asks for one. False: nothing was saved, by choice or by a fault that the
  /// person was told of; the document stays modified. Yields.
  /// A second call while one still asks does nothing.
  virtual bool mmuSaveFile();
  virtual bool mmuSaveAsFile();
  virtual void mmuDeleteReport() {}
  /// The report of MakeReport() on the default printer, or as a file where there is no printer; on the
  /// screen. Yields.
  void PrintReport();
  void PreviewReport();
  virtual void ShowConfigWindow() {}
  virtual void CopyPicture() {}
  virtual void mmuFileOutputBMP() {}
  /// The sheet of MakeSheet() into a file that the person names. A long one shows how far it is, and ends
  /// without a file when Esc is pressed. Yields.
  virtual void mmuFileOutputXLS();
  virtual void mmuFileOutputTXT();
  virtual void mmuZoomOut() {}
  virtual void mmuZoomIn() {}
  virtual void mmuZoomWindow() {}
  virtual void mmuSetPeakHeight() {}
  virtual void FindPeak() {}
  virtual void mmuSpectrumDev() {}
  virtual void mmuSpectrumSmooth() {}
  virtual void ShowMaxMinAverageWindow() {}

  /// File type number of the header that this window shows.
  virtual int CheckFileType() const = 0;
  /// Path of the open file; empty before the first save.
  virtual QString OpenFileName() const = 0;
  /// Whether `command` does something here, as the document stands. What every window offers is here; a kind
  /// adds its own.
  virtual bool Offers(int command) const;
  /// Why this kind of window never offers `command`; empty where there is nothing to say.
  virtual QString WhyNot(int /*command*/) const { return {}; }
  /// Number formats have changed: the window shows its figures anew.
  virtual void FormatsChanged() {}
  /// The tables that belong to the window, shown while it is the active child; null for none.
  virtual FrmDataTabel* DataTable() const { return nullptr; }
  /// Text typed into an editor that is still open is taken over.
  virtual void CommitEditors() {}

  /// The text before the mark of unsaved work.
  void SetCaption(const QString& caption);
  const QString& Caption() const { return caption_; }

  /// Asks what has to be asked before the window goes: to stop a test that runs, to save. True: it may close
  /// now. While a test runs the answer is false; after a Yes the window (or the main window, when
  /// `withFrame`) closes itself at the end of the run. Yields.
  bool QueryClose(bool withFrame);
  /// The next close does not ask again: QueryClose() has.
  void AllowClose() { closeAllowed_ = true; }
  /// The document has what no file has yet.
  bool IsWorkUnsaved() const { return IsModified(); }
  /// A measurement of this window is under way.
  bool RunsNow() const { return runs_ > 0; }
  /// The person has agreed that the window closes at the end of that.
  bool ClosesAfterRun() const { return closeWanted_; }
  /// Shows what a journal has, as work that no file has yet, and goes on with the journal. False: it has
  /// another kind of document.
  bool BringBack(LeftJournal left);
  /// Lets the run end at its next step, without a question; the window stays.
  void EndRun();

 signals:
  /// A close that had to wait for the end of a run is due.
  void FrameCloseWanted();

 protected:
  MainWindow& Frame() { return frame_; }
  const MainWindow& Frame() const { return frame_; }

  /// Marks a stretch of code that yields and touches this window afterwards: the window does not go while one
  /// lives, and the main window knows that a run is under way.
  class Run {
   public:
    explicit Run(DocumentWindow& window);
    ~Run();
    Run(const Run&) = delete;
    Run& operator=(const Run&) = delete;

   private:
    DocumentWindow& window_;
    RunNotice notice_;
  };
  /// The person wants the run to end at its next step.
  bool StopWanted() const { return stopWanted_; }
  /// A test counts as running, though no measurement need be under way.
  virtual bool HoldsTest() const { return false; }
  /// The person wants the test to end.
  virtual void StopTest() {}
  /// Asks whether the test is to end. Yields.
  bool AskToStop();

  virtual FileKindWords FileWords() const = 0;
  /// There is something for Save.
  virtual bool HasWork() const { return false; }
  virtual bool IsModified() const = 0;
  /// The open file must not be replaced by what this window holds: Save asks for another name.
  virtual bool SavesElsewhere() const { return false; }
  /// Writes the document; false leaves a reason in `fault`. No message is shown here.
  virtual bool WriteDocument(const QString& path, QString& fault) = 0;
  virtual bool ReadDocument(const QString& path, QString& fault) = 0;
  /// What reports and exports hold; nothing for a window that has none. They may refer to the document.
  virtual std::optional<Report> MakeReport() { return {}; }
  virtual std::optional<ExportSheet> MakeSheet() { return {}; }
  /// The curve on the sheet; null for none.
  virtual QImage MakePicture() { return {}; }
  /// Above every report and export of this window, as of now.
  DocumentHead OutputHead() const;
  /// Saves the picture into a file that the person names; says so when there is none. Yields.
  void OutputPicture(const QImage& picture);
  /// Leaves the clipboard alone, and says so, when there is no picture.
  void CopyToClipboard(const QImage& picture);
  /// Asks whether row `number` (from 1) of `count` is to go; says that there is none otherwise. Yields.
  bool AskToRemoveRecord(int number, int count);
  /// To be called after every change of the document.
  void DocumentChanged();
  /// The same when records have come behind the others, from `first` on, and nothing else has changed.
  void DocumentGrown(std::int32_t first);
  /// The part of it that the start after a crash needs.
  void KeepJournal(std::int32_t first);
  /// The document as its file would have it, while it lives unchanged; nothing for a window that keeps no
  /// journal.
  virtual std::optional<JournalImage> MakeImage() const { return {}; }
  /// Takes the document of a journal in the place of its own, and shows it.
  virtual bool TakeImage(const Journal&) { return false; }
  /// There is something that would be lost with the program.
  virtual bool NeedsJournal() const { return IsModified(); }

  void closeEvent(QCloseEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  /// Where a report or an export is offered to go.
  QString ProposedOutput(const char* ending) const;
  QString AskOutputPath(int filterText, const char* ending);
  void WriteOutput(const QString& path, const std::function<std::string(const WorkProgress&)>& make);
  void StopRun(bool withFrame);
  bool AskToSave();
  bool SaveUnderNewName();
  bool SaveTo(const QString& path);
  QString PathToBeginWith() const;
  /// The caption without what a file name cannot have.
  QString CaptionAsName() const;
  QString ProposedPath();
  void StoreFilePath(const QString& path);
  bool FileWasChanged() const;

  MainWindow& frame_;
  QString caption_;
  int runs_ = 0;
  bool asking_ = false;
  bool saving_ = false;
  bool stopWanted_ = false;
  bool closeAllowed_ = false;
  bool closed_ = false;
  bool closeWanted_ = false;
  bool frameCloseWanted_ = false;
  FileState file_;  ///< as this window last read or wrote it
  // What no file has yet, for the start after a crash. Gone when the document is saved or closed on purpose;
  // it stays when this object goes without a close.
  std::unique_ptr<JournalKeeper> journal_;
};

}  // namespace spectrane
