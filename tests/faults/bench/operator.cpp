#include "faults/bench/operator.h"

#include <QApplication>
#include <QDeadlineTimer>
#include <QDialog>
#include <QDir>
#include <QEventLoop>
#include <QFile>

#include "app/ground/commands.h"
#include "app/ground/documentwindow.h"
#include "link/exclusion.h"

namespace spectrane::campaign {
namespace {

constexpr int kLookMs = 10;
constexpr int kBatchMs = 120000;

}  // namespace

Operator::Operator(const Place& place)
    : place_(place),
      simulator_(place.Programs + QStringLiteral("/spectrane-simulator"), place.Folder),
      time_(place.Haste),
      loop_(time_),
      ports_(time_),
      turnName_(QStringLiteral("ex_campaign_%1").arg(QCoreApplication::applicationPid())),
      turn_(MakeNamedExclusion(turnName_.toStdString())) {
  qputenv("SPECTRANE_PORTS", simulator_.Line().toUtf8());
  const QString home = PathOf("home");
  QDir().mkpath(home);
  settings_ = std::make_unique<Setting>(home.toStdString());
  QObject::connect(&look_, &QTimer::timeout, &look_, [this] { LookAtDialogs(); });
  look_.start(kLookMs);
}

Operator::~Operator() {
  frame_.reset();
  turn_.reset();
  for (const char* folder : {"/run/lock/", "/tmp/"}) QFile::remove(QLatin1String(folder) + turnName_);
}

void Operator::LookAtDialogs() {
  auto* const dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
  if (!dialog || !dialog->isVisible() || dialog->objectName() == QLatin1String("FrmWait")) return;
  if (dialog->objectName() == QLatin1String("FrmNew")) {
    dialog->reject();
  } else {
    dialog->accept();
  }
}

void Operator::StartProgram() {
  frame_ = std::make_unique<FrmMain>(
      ProgramParts{ports_, time_, loop_, *turn_, *settings_, PathOf("home").toStdString(), &person_});
  frame_->resize(1120, 720);
  frame_->ShowStored();
}

void Operator::Pause(int ms) {
  QEventLoop loop;
  QTimer::singleShot(ms, Qt::PreciseTimer, &loop, &QEventLoop::quit);
  loop.exec();
}

bool Operator::PauseUntil(const std::function<bool()>& reached, int ms) {
  const QDeadlineTimer deadline(ms);
  while (!reached() && !deadline.hasExpired()) Pause(5);
  return reached();
}

bool Operator::SaveAs(const QString& path) {
  person_.File = path;
  DocumentWindow* const window = frame_->ActiveForm();
  if (!window) return false;
  Choose(kSaveAs);
  return !window->IsWorkUnsaved() && QFile::exists(path);
}

void Operator::CloseAll() {
  Choose(kCloseAll);
  Pause(5);
}

std::unique_ptr<QProcess> Operator::BeginBatch(const QStringList& arguments) const {
  auto process = std::make_unique<QProcess>();
  QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
  environment.insert(QStringLiteral("SPECTRANE_HOME"), PathOf("home"));
  process->setProcessEnvironment(environment);
  process->setProcessChannelMode(QProcess::MergedChannels);
  process->setStandardInputFile(QProcess::nullDevice());
  process->start(place_.Programs + QStringLiteral("/spectrane-cli"), arguments);
  process->waitForStarted();
  return process;
}

int Operator::EndOf(QProcess& process) {
  QEventLoop loop;
  QObject::connect(&process, &QProcess::finished, &loop, &QEventLoop::quit);
  QTimer::singleShot(kBatchMs, &loop, &QEventLoop::quit);
  if (process.state() != QProcess::NotRunning) loop.exec();
  if (process.state() != QProcess::NotRunning) process.kill();
  process.waitForFinished();
  return process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
}

bool Operator::StartSimulator(const std::vector<std::string>& options) {
  if (log_) {
    log_->News();
    earlier_ += log_->Seen();
  }
  const bool up = simulator_.Start(options);
  log_ = std::make_unique<RequestLog>(simulator_.LogPath());
  return up;
}

std::vector<LoggedRequest> Operator::News() {
  return log_ ? log_->News() : std::vector<LoggedRequest>();
}

}  // namespace spectrane::campaign
