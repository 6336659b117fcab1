#include "simulator/face/compartmentwindow.h"

#include <QAccessible>
#include <QEvent>
#include <QFrame>
#include <QHBoxLayout>
#include <QLabel>
#include <QScreen>
#include <QShortcut>
#include <QTabBar>
#include <QTabWidget>
#include <QVBoxLayout>

#include <algorithm>

#include "simulator/face/beampicture.h"
#include "simulator/face/pages.h"
#include "simulator/face/samplechoice.h"

namespace spectrane {
namespace {

constexpr int RegularMs = 500;
// Many requests may come in a row; the eye does not need each.
constexpr int SoonMs = 40;
constexpr QSize StartSize{450, 520};
// What a window manager puts around a window, and a little air.
constexpr QSize FrameSize{16, 48};

}  // namespace

CompartmentWindow::CompartmentWindow(Compartment& compartment, QWidget* parent)
    : QWidget(parent, Qt::Window), compartment_(compartment) {
  setObjectName(QStringLiteral("sampleCompartment"));
  setWindowTitle(QStringLiteral("sample compartment"));
  // It is the hands beside a program that may fill the screen.
  setWindowFlag(Qt::WindowStaysOnTopHint);
  Build();
  soon_.setSingleShot(true);
  connect(&soon_, &QTimer::timeout, this, [this] { Refresh(); });
  connect(&regular_, &QTimer::timeout, this, [this] { Refresh(); });
  compartment_.OnChange = [this] {
    if (isVisible() && !soon_.isActive()) soon_.start(SoonMs);
  };
  for (const QKeySequence& keys : {QKeySequence(Qt::CTRL | Qt::Key_Q), QKeySequence(Qt::CTRL | Qt::Key_W)}) {
    auto* shortcut = new QShortcut(keys, this);
    connect(shortcut, &QShortcut::activated, this, [this] { close(); });
  }
  Refresh();
  resize(StartSize.expandedTo(minimumSizeHint()));
  PlaceAside();
}

CompartmentWindow::~CompartmentWindow() {
  compartment_.OnChange = nullptr;
}

// Dialogs come up in the middle of the screen, and this window stays above them all. Where programs may not
// place their windows nothing happens.
void CompartmentWindow::PlaceAside() {
  const QRect area = screen()->availableGeometry();
  const QSize whole = size() + FrameSize;
  move(std::max(area.left(), area.right() + 1 - whole.width()),
       std::max(area.top(), area.bottom() + 1 - whole.height()));
}

void CompartmentWindow::Build() {
  auto* column = new QVBoxLayout(this);
  picture_ = new BeamPicture(this);
  column->addWidget(picture_, 1);

  beam_ = new SampleChoice(this);
  beam_->setObjectName(QStringLiteral("beam"));
  beam_->setAccessibleName(QStringLiteral("Sample in the beam"));
  connect(beam_, &SampleChoice::Chosen, this,
          [this](const QString& sample) { Perform(QStringLiteral("beam ") + sample); });
  auto* label = new QLabel(QStringLiteral("In the &beam:"), this);
  label->setBuddy(beam_);
  auto* row = new QHBoxLayout;
  row->addWidget(label);
  row->addWidget(beam_, 1);
  column->addLayout(row);

  auto* tabs = new QTabWidget(this);
  tabs->setObjectName(QStringLiteral("tabs"));
  tabs->setAccessibleName(QStringLiteral("Parts of the instrument"));
  tabs->tabBar()->setAccessibleName(tabs->accessibleName());
  const auto addTab = [&](Page* page, const QString& title) {
    AddPage(page);
    tabs->addTab(page, title);
  };
  addTab(new SamplerPage(tabs), QStringLiteral("&Sampler"));
  addTab(new InstrumentPage(tabs), QStringLiteral("&Instrument"));
  addTab(new FaultPage(tabs), QStringLiteral("&Faults"));
  column->addWidget(tabs);

  auto* line = new LinePanel(this);
  AddPage(line);
  column->addWidget(line);

  note_ = new QLabel(this);
  note_->setObjectName(QStringLiteral("note"));
  note_->setAccessibleName(QStringLiteral("What went wrong"));
  note_->setFrameShape(QFrame::StyledPanel);
  note_->setWordWrap(true);
  note_->hide();
  column->addWidget(note_);
}

void CompartmentWindow::AddPage(Page* page) {
  pages_.push_back(page);
  connect(page, &Page::Wanted, this, [this](const QString& command) { Perform(command); });
}

void CompartmentWindow::Perform(const QString& command) {
  const std::string error = compartment_.Perform(command.toStdString());
  note_->setVisible(!error.empty());
  note_->setText(error.empty() ? QString() : QStringLiteral("Not done: ") + QString::fromStdString(error));
  if (!error.empty()) {
    QAccessibleEvent alert(note_, QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
  }
  // A switch that could not be set falls back to what is.
  shown_.reset();
  Refresh();
}

void CompartmentWindow::Refresh() {
  const CompartmentState state = compartment_.State();
  if (shown_ == state) return;
  shown_ = state;
  picture_->ShowState(state);
  if (state.Beam != nullptr) beam_->ShowSample(*state.Beam);
  for (Page* page : pages_) page->ShowState(state);
}

void CompartmentWindow::LookWhileSeen() {
  if (!isVisible() || isMinimized()) {
    regular_.stop();
  } else if (!regular_.isActive()) {
    Refresh();
    regular_.start(RegularMs);
  }
}

void CompartmentWindow::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  LookWhileSeen();
}

void CompartmentWindow::hideEvent(QHideEvent* event) {
  QWidget::hideEvent(event);
  LookWhileSeen();
}

void CompartmentWindow::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() == QEvent::WindowStateChange) LookWhileSeen();
}

}  // namespace spectrane
