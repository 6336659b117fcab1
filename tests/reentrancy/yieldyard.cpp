#include "reentrancy/yieldyard.h"

#include <QAction>
#include <QApplication>
#include <QFile>
#include <QMdiSubWindow>

#include <stdexcept>

#include "app/documentkinds.h"
#include "app/messageboxes.h"
#include "app/workspace.h"
#include "tools/windows/tooldialog.h"

namespace spectrane::testing_reentrancy {
namespace {

InstrumentOptions Exact() {
  InstrumentOptions options;
  options.Noise = 0.0;
  return options;
}

}  // namespace

void WatchedLoop::Yield(bool inBox) {
  const int yield = ++Yields;
  if (inBox) BoxYields.insert(yield);
  Deepest = std::max(Deepest, ++depth_);
  QCoreApplication::processEvents();
  if (Look) Look();
  if (yield == actAt_ && act_) {
    const std::function<void(bool)> once = std::exchange(act_, {});
    once(inBox);
    QCoreApplication::processEvents();
  }
  --depth_;
}

bool ShowBox(WatchedLoop& loop) {
  QWidget* const above = QApplication::activeModalWidget();
  QDialog box(above ? above : QApplication::activeWindow());
  box.setObjectName(QString::fromLatin1(kMessageBoxName));
  box.setModal(true);
  box.show();
  loop.YieldInBox();
  return box.isVisible();
}

bool PatientPerson::Ask(const QString& words) {
  Asked.append(words);
  if (Throws) throw std::runtime_error("in a question");
  return ShowBox(loop_);
}

YieldYard::YieldYard() : Instrument(Exact()) {
  Ports.Put(1, Instrument);
  KeepRequests();
  Guard.setInterval(0);
  QObject::connect(&Guard, &QTimer::timeout, &Guard, [this] { SendIntrudersAway(); });
}

void YieldYard::KeepRequests() {
  Instrument.OnExchange = [this](const ExchangeRecord& record) {
    Requests.push_back(record.Request);
    if (LampsDrift) Drift(static_cast<std::int64_t>(Requests.size()));
  };
}

void YieldYard::Drift(std::int64_t requests) {
  constexpr std::int64_t kStepMs = 37'000;
  constexpr std::int64_t kRoundMs = 101'000;
  for (Lamp* lamp : {&Instrument.Model().Tungsten, &Instrument.Model().Deuterium}) {
    lamp->Warming = true;
    lamp->LitAtMs = Time.NowMs() - requests * kStepMs % kRoundMs;
  }
}

YieldYard::~YieldYard() {
  Guard.stop();
  main_.reset();
}

void YieldYard::Start() {
  main_.reset();
  main_ = std::make_unique<FrmMain>(
      ProgramParts{Ports, Time, Loop, Turn, Settings, Folder.Path(), Asks, QString()});
  main_->ShowStored();
  main_->findChild<QTimer*>(QStringLiteral("TimerFileOpen"))->stop();
  ConnectTimer().stop();
  // Its ticks come from Fire().
  main_->SampleTimer().setInterval(kNeverMs);
  QCoreApplication::processEvents();
}

void YieldYard::Release() {
  if (State().InstrumentConnected) main_->RunCommand(kRelease);
  ASSERT_FALSE(State().InstrumentConnected);
}

void YieldYard::Connect() {
  if (State().InstrumentConnected && main_->Link().Transport.IsPortOpen()) return;
  Release();
  Instrument.ForgetInput();
  main_->RunCommand(kConnect);
  ASSERT_TRUE(State().InstrumentConnected) << "a connection after what happened before";
}

void YieldYard::Open(int newFileType, const char* purpose) {
  constexpr const char* kPurpose = "purpose";
  const QString wanted = QString::number(newFileType) + QLatin1String(purpose);
  if (main_->ActiveForm() && main_->ActiveForm()->property(kPurpose) == wanted && WindowCount() == 1) return;
  CloseWindows();
  Guard.start();
  main_->NewFile(newFileType);
  Guard.stop();
  Intruders.clear();
  ASSERT_TRUE(main_->ActiveForm());
  main_->ActiveForm()->setProperty(kPurpose, wanted);
}

void YieldYard::SendIntrudersAway() {
  auto* const dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
  if (!dialog || dialog->objectName() == QLatin1String(kMessageBoxName)) return;
  if (ToolIsExpected && qobject_cast<ToolDialog*>(dialog)) return;
  if (dialog->objectName() == QLatin1String("FrmSelectSampler")) return;
  Intruders.append(dialog->objectName());
  dialog->reject();
}

void YieldYard::Choose(int command) {
  QAction* const action = main_->ActionOf(command);
  ASSERT_TRUE(action->isEnabled()) << action->text().toStdString();
  action->trigger();
}

void YieldYard::SetSampler(bool fitted) {
  if (Instrument.Model().SamplerFitted() != fitted) {
    Instrument.Model().FitSampler(fitted, Time.NowMs());
    Release();
  }
  for (std::size_t position = 1; position <= kSamplerPositionCount; ++position)
    State().SamplerPositions[position] = position <= 3;
}

void YieldYard::HandOver() {
  const QString path = PathOf("handed" + std::to_string(++files_) + ".bas");
  QFile::copy(QStringLiteral(SPECTRANE_SOURCE "/examples/photometry.bas"), path);
  main_->OpenLater(path);
}

void YieldYard::AcceptDialog(const char* name) {
  auto* const hand = new QTimer(&Guard);
  QObject::connect(hand, &QTimer::timeout, hand,
                   [hand, name = QLatin1String(name), pressed = false]() mutable {
                     auto* const dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
                     if (dialog && dialog->objectName() == name) {
                       // One that could not do what it was to do stays open.
                       std::exchange(pressed, true) ? dialog->reject() : dialog->accept();
                     } else if (pressed) {
                       hand->stop();
                       hand->deleteLater();
                     }
                   });
  hand->start(0);
}

void YieldYard::PullCable() {
  WasNothing = !main_->Link().Transport.IsPortOpen();
  if (WasNothing) return;
  Ports.Current->HangUp();
  EXPECT_FALSE(main_->Link().Transport.IsPortOpen()) << "a cable that is out";
}

void YieldYard::Fire(QTimer& timer) {
  WasNothing = !timer.isActive();
  if (WasNothing) return;
  int ticks = 0;
  const auto count = QObject::connect(&timer, &QTimer::timeout, &Guard, [&ticks] { ++ticks; });
  QTimerEvent tick(timer.timerId());
  QCoreApplication::sendEvent(&timer, &tick);
  QObject::disconnect(count);
  // One that comes inside another one is seen by both.
  EXPECT_GT(ticks, 0);
}

qsizetype YieldYard::WindowCount() const {
  return main_->findChild<Workspace*>()->Documents().size();
}

void YieldYard::CloseWindows() {
  for (DocumentWindow* document : main_->findChild<Workspace*>()->Documents()) {
    document->AllowClose();
    document->parentWidget()->close();
  }
  Settle();
  ASSERT_EQ(WindowCount(), 0);
}

void YieldYard::Settle() {
  for (int i = 0; i < 6; ++i) {
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  }
}

void YieldYard::ExpectIdle() {
  EXPECT_FALSE(State().RunUnderWay);
  EXPECT_FALSE(State().InstrumentBusy);
  EXPECT_TRUE(main_->isEnabled());
  EXPECT_TRUE(main_->findChild<Workspace*>()->isEnabled());
  EXPECT_TRUE(main_->ActionOf(kProgramOption)->isEnabled()) << "a run that never ended";
  EXPECT_EQ(QGuiApplication::overrideCursor(), nullptr);
  EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
  EXPECT_FALSE(main_->Link().Transport.OnWaiting);
  for (QWidget* window : QApplication::topLevelWidgets())
    EXPECT_FALSE(window->isVisible() && window != main_.get()) << window->objectName().toStdString();
  const DocumentWindow* const document = main_->ActiveForm();
  EXPECT_FALSE(document && document->RunsNow());
}

}  // namespace spectrane::testing_reentrancy
