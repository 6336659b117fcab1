#include "tools/windows/tooldialog.h"

#include <QAbstractButton>
#include <QLabel>
#include <QLineEdit>
#include <QTimer>

#include <optional>

#include "app/ground/dialogparts.h"
#include "app/ground/words.h"
#include "base/textnumbers.h"
#include "tools/traffic.h"
#include "tools/windows/frmwait.h"

namespace spectrane {
namespace {

constexpr int kRetryMs = 10;
constexpr int kStateLineCharacters = 40;

}  // namespace

/// However the traffic ends, the dialog can be used and closed afterwards.
class ToolDialog::Busy {
 public:
  explicit Busy(ToolDialog& dialog) : dialog_(dialog) { dialog_.SetBusy(true); }
  ~Busy() { dialog_.SetBusy(false); }
  Busy(const Busy&) = delete;
  Busy& operator=(const Busy&) = delete;

 private:
  ToolDialog& dialog_;
};

ToolDialog::ToolDialog(MainWindow& frame, Live live) : QDialog(&frame.Frame()), frame_(frame), live_(live) {
  if (live_ == Live::Stands) Link().Live.SampleTimerStop();
}

ToolDialog::~ToolDialog() {
  if (live_ == Live::Stands) Link().Live.SampleTimerStart();
}

int ToolDialog::exec() {
  Load();
  return QDialog::exec();
}

void ToolDialog::done(int result) {
  if (!busy_) QDialog::done(result);
}

void ToolDialog::WhenFree(std::function<void()> work) {
  if (busy_) return;
  if (!Link().State.InstrumentBusy) {
    work();
    return;
  }
  QTimer::singleShot(kRetryMs, this, [this, work = std::move(work)]() mutable { WhenFree(std::move(work)); });
}

void ToolDialog::WithInstrument(int longestSeconds, const std::function<void()>& work,
                                const std::function<void()>& tell) {
  if (busy_ || Link().State.RunUnderWay) return;
  const Busy busy(*this);
  {
    // The commands are enabled anew when the notice goes: the run must be over by then.
    const RunNotice notice(frame_, nullptr);
    const InstrumentRun run(Link().State);
    const InstrumentTraffic traffic(Link().State);
    std::optional<FrmWait> wait;
    if (longestSeconds > 0) wait.emplace(frame_, longestSeconds);
    work();
  }
  tell();
}

void ToolDialog::SetBusy(bool busy) {
  busy_ = busy;
  if (busy) {
    focus_ = focusWidget();
    for (QWidget* control : findChildren<QWidget*>()) {
      const bool works = qobject_cast<QAbstractButton*>(control) || qobject_cast<QLineEdit*>(control);
      if (!works || !control->isEnabled()) continue;
      control->setDisabled(true);
      disabled_.append(control);
    }
    return;
  }
  for (const QPointer<QWidget>& control : disabled_) {
    if (control) control->setEnabled(true);
  }
  disabled_.clear();
  if (focus_) focus_->setFocus();
}

QLabel* ToolDialog::MakeStateLine(const QStringList& texts) {
  state_ = new QLabel(this);
  state_->setObjectName(QStringLiteral("LabelState"));
  KeepRoomFor(*state_, QStringList(texts) << Words(kCommunicationError) << Words(kNoInstrument),
              kStateLineCharacters);
  return state_;
}

void ToolDialog::Tell(const QString& text) {
  if (state_ != nullptr) state_->setText(text.trimmed());
}

void ToolDialog::TellLinkLost() {
  if (!IsConnected()) {
    Tell(Words(kNoInstrument));
    return;
  }
  Link().Live.ReportLinkLost();
  Tell(Words(kCommunicationError));
}

}  // namespace spectrane
