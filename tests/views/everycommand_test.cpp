#include <QClipboard>
#include <QDateTime>
#include <QDesktopServices>
#include <QFile>
#include <QFileInfo>
#include <QTextBrowser>

#include "app/commandtable.h"
#include "app/framefixture.h"
#include "app/ground/documentwindow.h"
#include "output/windows/piccurve.h"

namespace spectrane::testing_windows {
namespace {

/// Declines everything, and counts how often something was asked.
class DecliningPerson : public Questions {
 public:
  using Questions::ShowWords;

  void Show(int, const std::string&) override { ++Asked; }
  void ShowWords(const QString&, const QString&, int) override { ++Asked; }
  Answer AskYesNo(const QString&, int) override { return ++Asked, Answer::No; }
  Answer AskYesNoCancel(const QString&, int) override { return ++Asked, Answer::Cancel; }
  QString OpenFileName(const QString&, const QString&) override { return ++Asked, QString(); }
  QString SaveFileName(const QString&, const QString&) override { return ++Asked, QString(); }
  QColor AskColour(const QColor&, const QString&) override { return ++Asked, QColor(); }

  int Asked = 0;
};

/// Takes the pages of the handbook in the place of a browser.
class Reader : public QTextBrowser {
 public:
  Reader() { QDesktopServices::setUrlHandler(QStringLiteral("file"), this, "setSource"); }
  ~Reader() override { QDesktopServices::unsetUrlHandler(QStringLiteral("file")); }
  QVariant loadResource(int, const QUrl&) override { return QString(u'.'); }
};

/// What can be noticed of a command.
struct Traces {
  int Asked = 0;
  int Dialogs = 0;
  QUrl Page;
  std::size_t Requests = 0;
  qsizetype Windows = 0;
  bool Visible = false;
  std::string Said;
  QByteArray Stored;
  QDateTime Saved;
  qint64 Copied = 0;
  const QWidget* Focus = nullptr;
  QList<Qt::CursorShape> Pointers;
  QImage Picture;

  bool operator==(const Traces&) const = default;
};

class EveryCommand : public FrameFixture {
 protected:
  EveryCommand() {
    Asks = &person_;
    QObject::connect(&guard_, &QTimer::timeout, &guard_, [this] {
      QWidget* const dialog = QApplication::activeModalWidget();
      if (!dialog || dialog->objectName() == QLatin1String("FrmWait")) return;
      ++dialogs_;
      dialog->close();
    });
  }

  /// A program start; the guide that comes by itself is sent away.
  void Begin(bool connected) {
    guard_.start(1);
    Main.reset();
    Main = std::make_unique<FrmMain>(
        ProgramParts{Ports, Time, Loop, Turn, Settings, Folder.Path(), Asks, QString()});
    Main->SampleTimer().disconnect();
    Main->ShowStored();
    Main->showNormal();
    Main->resize(700, 480);
    Main->findChild<QTimer*>(QStringLiteral("TimerFileOpen"))->stop();
    ConnectTimer().stop();
    if (connected) ConnectNow();
  }
  /// Opens what `what` says: an example file, or the number of a command.
  void Open(const QString& what) {
    if (what.isEmpty()) return;
    for (const QString& step : what.split(u' ')) {
      bool isCommand = false;
      const int command = step.toInt(&isCommand);
      if (isCommand) {
        Choose(command);
      } else {
        const QString file = PathOf("") + step;
        QFile::copy(QStringLiteral(SPECTRANE_SOURCE "/examples/") + step, file);
        ASSERT_TRUE(Main->OpenDataFile(file));
      }
      Settle();
    }
  }
  Traces Look() {
    Settle();
    Traces traces;
    traces.Asked = person_.Asked;
    traces.Dialogs = dialogs_;
    traces.Page = reader_.source();
    traces.Requests = static_cast<std::size_t>(Instrument.Requests());
    traces.Windows = WindowCount();
    traces.Visible = Main->isVisible();
    traces.Said = Remark();
    traces.Stored = Bytes("config.ini") + Bytes("layout.ini");
    if (const DocumentWindow* const document = Main->ActiveForm();
        document && !document->OpenFileName().isEmpty())
      traces.Saved = QFileInfo(document->OpenFileName()).lastModified();
    traces.Copied = copies_;
    traces.Focus = QApplication::focusWidget();
    for (const PicCurve* curve : Main->findChildren<PicCurve*>())
      traces.Pointers.append(curve->cursor().shape());
    traces.Picture = Main->grab().toImage();
    return traces;
  }
  /// As it was before a command, with the same windows; false when one of them is gone.
  bool TidyUp(const QList<DocumentWindow*>& before, bool connected) {
    for (PicCurve* const curve : Main->findChildren<PicCurve*>()) curve->SetZoomSelecting(false);
    Settle();
    if (!Main->isVisible()) return false;
    const QList<DocumentWindow*> now = Documents();
    for (DocumentWindow* const document : now) {
      if (before.contains(document)) continue;
      document->AllowClose();
      document->parentWidget()->close();
    }
    Settle();
    if (Documents() != before) return false;
    if (Main->Link().State.InstrumentConnected != connected) {
      if (!connected) return false;
      ConnectNow();
    }
    return true;
  }
  QList<DocumentWindow*> Documents() const { return Main->findChild<Workspace*>()->Documents(); }
  static void Settle() {
    for (int i = 0; i < 4; ++i) {
      QCoreApplication::processEvents();
      QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
  }
  QByteArray Bytes(const char* name) const {
    QFile file(PathOf(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
  }
  /// The others are the same whatever is open.
  static bool HangsOnDocument(const CommandRow& row) {
    return row.When == EnabledWhen::Document || row.When == EnabledWhen::ConnectedDocument ||
           row.When == EnabledWhen::BlankTarget || row.When == EnabledWhen::Children;
  }
  /// Commands that can be chosen in this state and leave no trace.
  std::string Dead(const QString& open, bool connected) {
    QStringList dead;
    bool ready = false;
    QList<DocumentWindow*> documents;
    for (const CommandRow& row : CommandRows()) {
      if (!ready) {
        Begin(connected);
        Open(open);
        documents = Documents();
        ready = true;
      }
      if (!IsEnabled(row.Number) || (!open.isEmpty() && !HangsOnDocument(row))) continue;
      // Without a cross there is none to take away.
      if (row.Number == kZoomOut) continue;
      // One window stands as it does now when it was arranged before.
      if (row.Number == kTileHorizontally) Main->Arrange(kCascade);
      reader_.setSource({});
      const Traces before = Look();
      Main->ActionOf(row.Number)->trigger();
      if (Look() == before) dead.append(Main->ActionOf(row.Number)->objectName());
      ready = TidyUp(documents, connected);
    }
    return dead.join(u' ').toStdString();
  }

 private:
  DecliningPerson person_;
  Reader reader_;
  QTimer guard_;
  int dialogs_ = 0;
  qint64 copies_ = 0;
  QMetaObject::Connection clipboard_ = QObject::connect(
      QGuiApplication::clipboard(), &QClipboard::dataChanged, &guard_, [this] { ++copies_; });
};

struct StateCase {
  const char* Name;
  const char* Open;
  bool Connected = true;
};

constexpr StateCase kStates[] = {
    {"nothing, not connected", "", false},
    {"nothing", ""},
    {"new photometry, not connected", "121", false},
    {"new photometry", "121"},
    {"new quantitation", "104"},
    {"new time scan", "105"},
    {"new spectrum", "106"},
    {"new multi wavelength", "107"},
    {"new DNA", "108"},
    {"photometry", "photometry.bas"},
    {"quantitation", "dye.qua"},
    {"time scan", "enzyme.tis"},
    {"spectrum", "holmium.wls"},
    {"processed spectrum", "holmium-processed.wls"},
    {"multi wavelength", "multi.mul"},
    {"DNA", "nucleic.dna"},
    {"smoothed", "holmium.wls 405"},
    {"derivative", "holmium.wls 410"},
    {"sum without files", "406"},
    {"comparison without files", "404"},
};

// Who chooses a command that can be chosen sees, hears or is asked something, in every kind of window.
TEST_F(EveryCommand, LeavesATraceWhereItCanBeChosen) {
  for (const StateCase& state : kStates)
    EXPECT_EQ(Dead(QLatin1String(state.Open), state.Connected), "") << state.Name;
}

}  // namespace
}  // namespace spectrane::testing_windows
