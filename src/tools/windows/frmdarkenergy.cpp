#include "tools/windows/frmdarkenergy.h"

#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QStandardItemModel>
#include <QVBoxLayout>

#include "app/ground/dialogparts.h"
#include "app/ground/editgrid.h"
#include "app/ground/words.h"
#include "base/numbers.h"
#include "tools/upkeep.h"
#include "tools/windows/frmwait.h"

namespace spectrane {
namespace {

constexpr int kDarkTitle = 1117;
constexpr int kDarkTest = 1118;
constexpr int kDarkClose = 1119;
constexpr int kDarkNoInstrument = 1120;
constexpr int kDarkError = 1121;
constexpr int kDarkGain = 707;
constexpr int kDarkEnergy = 708;
constexpr const char* kDarkFormat = "0";
/// Width of a column [characters].
constexpr int kDarkColumn = 16;

}  // namespace

FrmDarkEnergy::FrmDarkEnergy(MainWindow& frame)
    : ToolDialog(frame, Live::GoesOn), table_(new QStandardItemModel(this)) {
  DialogParts parts(*this, "FrmDarkEnergy", Caption(kDarkTitle));
  auto* const all = new QVBoxLayout(this);
  BuildGrid();
  all->addWidget(findChild<EditGrid*>());
  all->addWidget(MakeStateLine({}));
  all->addLayout(parts.ButtonRow({{"CmdTest", kDarkTest}, {"CmdClose", kDarkClose}}));
  all->setSizeConstraint(QLayout::SetFixedSize);
  auto* const test = findChild<QPushButton*>(QStringLiteral("CmdTest"));
  connect(test, &QPushButton::clicked, this, [this] { WhenFree([this] { Test(); }); });
  connect(findChild<QPushButton*>(QStringLiteral("CmdClose")), &QPushButton::clicked, this, &QDialog::reject);
  test->setFocus();
}

void FrmDarkEnergy::BuildGrid() {
  const int gains = Link().State.GainCount;
  table_->setRowCount(gains);
  table_->setColumnCount(2);
  table_->setHorizontalHeaderLabels({PlainWords(kDarkGain), PlainWords(kDarkEnergy)});
  for (int row = 0; row < gains; ++row) {
    for (int column = 0; column < 2; ++column) {
      auto* const cell = new QStandardItem(column == 0 ? QString::number(row + 1) : QString());
      cell->setEditable(false);
      cell->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
      table_->setItem(row, column, cell);
    }
  }
  auto* const grid = new EditGrid({}, this);
  grid->setObjectName(QStringLiteral("DarkEnergyGrid"));
  grid->setAccessibleName(PlainWords(kDarkTitle));
  grid->setModel(table_);
  grid->ensurePolished();
  QHeaderView& header = *grid->horizontalHeader();
  header.setDefaultAlignment(Qt::AlignRight | Qt::AlignVCenter);
  header.resizeSection(0, grid->fontMetrics().averageCharWidth() * kDarkColumn);
  // Every gain is to be seen.
  const int frame = 2 * grid->frameWidth();
  const int height = header.sizeHint().height() + gains * grid->verticalHeader()->defaultSectionSize();
  grid->setFixedHeight(height + frame);
  grid->setMinimumWidth(2 * header.sectionSize(0) + frame);
}

void FrmDarkEnergy::Load() {
  if (!IsConnected()) Frame().Boxes().Show(kDarkNoInstrument);
}

void FrmDarkEnergy::Test() {
  Tell({});
  if (!IsConnected()) {
    Frame().Boxes().Show(kDarkNoInstrument);
    return;
  }
  UpkeepEnd end = UpkeepEnd::LinkLost;
  WithInstrument(
      LongestSeconds({"getwl", "resetdark"}),
      [&] {
        Link().Live.SampleTimerStop();
        end = MeasureDarkEnergies(Link(), Frame().Display());
      },
      [&] {
        if (end == UpkeepEnd::Done) ShowTable();
        if (end == UpkeepEnd::Failed) Frame().Boxes().Show(kDarkError);
        if (end == UpkeepEnd::LinkLost) TellLinkLost();
        Link().Live.SampleTimerStart();
      });
}

void FrmDarkEnergy::ShowTable() {
  const DarkEnergyTable& energies = Link().State.DarkEnergies;
  for (int row = 0; row < table_->rowCount(); ++row) {
    const auto gain = static_cast<std::size_t>(row) + 1;
    if (gain >= energies.size()) break;
    table_->item(row, 1)->setText(QString::fromStdString(Format(energies[gain], kDarkFormat)));
  }
}

}  // namespace spectrane
