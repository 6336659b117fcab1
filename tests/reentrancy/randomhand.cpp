#include "reentrancy/randomhand.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAbstractScrollArea>
#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QFileInfo>
#include <QLineEdit>
#include <QPointer>
#include <QRegularExpression>
#include <QScopedValueRollback>
#include <QTest>
#include <QWheelEvent>
#include <QWindow>

#include "app/commandtable.h"
#include "app/messageboxes.h"
#include "app/workspace.h"
#include "output/windows/piccurve.h"

namespace spectrane::testing_reentrancy {
namespace {

constexpr int kDeepest = 3;
constexpr int kStepsInDialog = 12;
/// A run of so many yields is stopped.
constexpr int kLongRun = 300;
constexpr qsizetype kTraced = 60;

constexpr Qt::Key kKeys[] = {
    Qt::Key_Return, Qt::Key_Enter,  Qt::Key_Escape,   Qt::Key_Tab, Qt::Key_Backtab, Qt::Key_Up,
    Qt::Key_Down,   Qt::Key_Left,   Qt::Key_Right,    Qt::Key_F2,  Qt::Key_F4,      Qt::Key_F5,
    Qt::Key_F6,     Qt::Key_F7,     Qt::Key_F8,       Qt::Key_F9,  Qt::Key_Delete,  Qt::Key_Backspace,
    Qt::Key_Home,   Qt::Key_End,    Qt::Key_PageDown, Qt::Key_A,   Qt::Key_C,       Qt::Key_V,
    Qt::Key_M,      Qt::Key_S,      Qt::Key_N,        Qt::Key_W,   Qt::Key_1,       Qt::Key_9,
    Qt::Key_Space,  Qt::Key_Plus,   Qt::Key_Minus,    Qt::Key_0,   Qt::Key_Period,  Qt::Key_P,
    Qt::Key_Z,      Qt::Key_Insert, Qt::Key_Menu,
};
constexpr Qt::KeyboardModifier kModifiers[] = {Qt::NoModifier,      Qt::NoModifier,    Qt::NoModifier,
                                               Qt::ControlModifier, Qt::ShiftModifier, Qt::AltModifier};
constexpr const char* kTexts[] = {"1",
                                  "500",
                                  "0.5",
                                  "-3",
                                  "1e308",
                                  "nonsense",
                                  "",
                                  "\xce\xbcg",
                                  "=1",
                                  "0",
                                  "600",
                                  "10",
                                  "12345678901234567890",
                                  "1,5",
                                  "260",
                                  "2.5",
                                  "3",
                                  "a",
                                  "\"",
                                  "1100",
                                  "190",
                                  "=cmd|x"};
constexpr const char* kSamples[] = {"blank", "dye-1", "dye-2", "dye-3", "holmium", "enzyme", "dark"};

}  // namespace

const QStringList& DataFilePatterns() {
  static const QStringList patterns{QStringLiteral("*.bas"), QStringLiteral("*.qua"),
                                    QStringLiteral("*.tis"), QStringLiteral("*.wls"),
                                    QStringLiteral("*.mul"), QStringLiteral("*.dna")};
  return patterns;
}

bool RandomPerson::Ask() {
  ++Asked;
  return ShowBox(loop_);
}

Answer RandomPerson::AskYesNo(const QString&, int) {
  const bool open = Ask();
  if (Always) return *Always;
  return open && Chance(60) ? Answer::Yes : Answer::No;
}

Answer RandomPerson::AskYesNoCancel(const QString&, int) {
  const bool open = Ask();
  if (Always) return *Always;
  if (!open) return Answer::Cancel;
  return std::array{Answer::Yes, Answer::No, Answer::Cancel}[static_cast<std::size_t>(Number(3))];
}

QString RandomPerson::AnyFile(const QStringList& patterns) {
  const QStringList names = QDir(folder_).entryList(patterns, QDir::Files);
  return names.isEmpty() ? QString() : QDir(folder_).filePath(names[Number(static_cast<int>(names.size()))]);
}

QString RandomPerson::OpenFileName(const QString&, const QString&) {
  if (!Ask() || Always || Chance(20)) return {};
  return Chance(10) ? QDir(folder_).filePath(QStringLiteral("none.bas"))
                    : AnyFile({QStringLiteral("*.???"), QStringLiteral("config.ini")});
}

QString RandomPerson::SaveFileName(const QString& filter, const QString&) {
  if (!Ask() || Always || Chance(20)) return {};
  if (Chance(5)) return QDir(folder_).filePath(QStringLiteral("nowhere/x.bas"));
  if (Chance(5)) return AnyFile({QStringLiteral("*")});
  const QRegularExpressionMatch ending = QRegularExpression(QStringLiteral("\\*(\\.[a-z]+)")).match(filter);
  return QDir(folder_).filePath(QLatin1String(kSavedName) + QString::number(Number(4)) + ending.captured(1));
}

QColor RandomPerson::AskColour(const QColor&, const QString&) {
  return Ask() && Chance(70) ? QColor::fromRgb(static_cast<QRgb>(Random())) : QColor();
}

struct RandomHand::Deed {
  int Weight;
  void (*Do)(RandomHand&);
};

RandomHand::RandomHand(YieldYard& yard, RandomPerson& person) : yard_(yard), person_(person) {
  LookForDialogs();
  yard_.Loop.Look = [this] { ActInYield(); };
}

void RandomHand::LookForDialogs() {
  // A new timer each time: one whose slot has opened a dialog would not come again inside it.
  QTimer::singleShot(0, &inDialogs_, [this] {
    LookForDialogs();
    ActInDialog();
  });
}

const std::vector<RandomHand::Deed>& RandomHand::Deeds() {
  static const std::vector<Deed> deeds = {
      {40, [](RandomHand& hand) { hand.Command(); }},
      {20, [](RandomHand& hand) { hand.Key(hand.yard_.Main().windowHandle()); }},
      {12, [](RandomHand& hand) { hand.Click(); }},
      {10, [](RandomHand& hand) { hand.EditCell(); }},
      {3, [](RandomHand& hand) { hand.TurnWheel(); }},
      {2, [](RandomHand& hand) { hand.Resize(); }},
      {3, [](RandomHand& hand) { hand.Line(); }},
      {6, [](RandomHand& hand) { hand.Timer(); }},
      {8, [](RandomHand& hand) { hand.Outside(); }},
      {4, [](RandomHand& hand) { hand.Select(); }},
      {10, [](RandomHand& hand) { hand.Save(); }},
  };
  return deeds;
}

void RandomHand::Note(const QString& what) {
  ++Count;
  Trace.append(QString(depth_, u' ') + what);
  if (Trace.size() > kTraced) Trace.removeFirst();
}

void RandomHand::Act() {
  const QScopedValueRollback<int> deeper(depth_, depth_ + 1);
  if (depth_ == 1) yieldsOfCommand_ = 0;
  int all = 0;
  for (const Deed& deed : Deeds()) all += deed.Weight;
  int drawn = person_.Number(all);
  for (const Deed& deed : Deeds()) {
    if ((drawn -= deed.Weight) < 0) {
      deed.Do(*this);
      return;
    }
  }
}

void RandomHand::ActInYield() {
  if (++yieldsOfCommand_ > kLongRun) {
    const QScopedValueRollback<std::optional<Answer>> sure(person_.Always, Answer::Yes);
    yieldsOfCommand_ = 0;
    if (DocumentWindow* window = yard_.Main().ActiveForm()) window->mmuStopTest();
    return;
  }
  // What stands over the windows keeps the person from them.
  if (depth_ >= kDeepest || QApplication::activeModalWidget() || !person_.Chance(15)) return;
  Act();
}

void RandomHand::ActInDialog() {
  if (QWidget* popup = QApplication::activePopupWidget()) {
    if (person_.Chance(50)) {
      popup->close();
    } else {
      Note(QStringLiteral("key in a menu"));
      QTest::keyClick(popup, person_.Chance(50) ? Qt::Key_Down : Qt::Key_Return);
    }
    return;
  }
  auto* const dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
  if (!dialog || dialog->objectName() == QLatin1String(kMessageBoxName)) {
    dialogSteps_ = 0;
    return;
  }
  if (depth_ > kDeepest + 2 || ++dialogSteps_ > kStepsInDialog) {
    Note(QStringLiteral("leave ") + dialog->objectName());
    dialog->reject();
    return;
  }
  const QScopedValueRollback<int> deeper(depth_, depth_ + 1);
  UseDialog(*dialog);
}

void RandomHand::UseDialog(QDialog& dialog) {
  const QList<QAbstractButton*> buttons = dialog.findChildren<QAbstractButton*>();
  const QList<QLineEdit*> lines = dialog.findChildren<QLineEdit*>();
  const QList<QComboBox*> lists = dialog.findChildren<QComboBox*>();
  const auto pick = [this](const auto& list) { return list[person_.Number(static_cast<int>(list.size()))]; };
  switch (person_.Number(5)) {
    case 0:
    case 1:
      if (buttons.isEmpty()) break;
      if (QAbstractButton* button = pick(buttons); button->isEnabled() && button->isVisible()) {
        Note(dialog.objectName() + u' ' + button->objectName());
        button->click();
      }
      break;
    case 2:
      if (lines.isEmpty()) break;
      if (QLineEdit* line = pick(lines); line->isEnabled() && line->isVisible() && !line->isReadOnly()) {
        const QString text = QString::fromUtf8(kTexts[person_.Number(std::size(kTexts))]);
        Note(dialog.objectName() + u' ' + line->objectName() + u'=' + text);
        line->setFocus();
        line->selectAll();
        QPointer<QLineEdit> alive(line);
        line->insert(text);
      }
      break;
    case 3:
      if (lists.isEmpty()) break;
      if (QComboBox* list = pick(lists); list->isEnabled() && list->isVisible() && list->count() > 0) {
        Note(dialog.objectName() + u' ' + list->objectName());
        list->setCurrentIndex(person_.Number(list->count()));
      }
      break;
    default:
      Key(dialog.windowHandle());
      break;
  }
}

void RandomHand::Command() {
  const std::span<const CommandRow> rows = CommandRows();
  const CommandRow& row = rows[static_cast<std::size_t>(person_.Number(static_cast<int>(rows.size())))];
  if (row.Number == kExit && !person_.Chance(10)) return;
  QAction* const action = yard_.Main().ActionOf(row.Number);
  Note(QStringLiteral("command %1%2")
           .arg(row.Number)
           .arg(action->isEnabled() ? QString() : QStringLiteral("-")));
  action->isEnabled() ? action->trigger() : yard_.Main().RunCommand(row.Number);
}

void RandomHand::Save() {
  auto* const area = yard_.Main().findChild<Workspace*>();
  QList<DocumentWindow*> withWork;
  for (DocumentWindow* document : area->Documents()) {
    if (document->IsWorkUnsaved() || !document->OpenFileName().isEmpty()) withWork.append(document);
  }
  if (withWork.isEmpty()) return;
  Note(QStringLiteral("save"));
  area->Activate(withWork[person_.Number(static_cast<int>(withWork.size()))]);
  yard_.Main().RunCommand(person_.Chance(50) ? kSave : kSaveAs);
}

void RandomHand::Key(QWindow* window) {
  if (!window) return;
  const Qt::Key key = kKeys[person_.Number(std::size(kKeys))];
  const Qt::KeyboardModifier modifier = kModifiers[person_.Number(std::size(kModifiers))];
  if (modifier == Qt::ControlModifier && key == Qt::Key_Q) return;
  Note(QStringLiteral("key ") + QKeySequence(modifier | key).toString());
  QTest::keyClick(window, key, modifier);
}

void RandomHand::Click() {
  FrmMain& main = yard_.Main();
  const QPoint place(person_.Number(std::max(main.width(), 1)), person_.Number(std::max(main.height(), 1)));
  const Qt::MouseButton button = person_.Chance(85) ? Qt::LeftButton : Qt::RightButton;
  const QWidget* const under = main.childAt(place);
  Note(QStringLiteral("click %1,%2 %3")
           .arg(place.x())
           .arg(place.y())
           .arg(under ? under->objectName() : QString()));
  QWindow* const window = main.windowHandle();
  person_.Chance(20) ? QTest::mouseDClick(window, button, {}, place)
                     : QTest::mouseClick(window, button, {}, place);
}

QWidget* RandomHand::AnyOf(const QList<QWidget*>& widgets) {
  QList<QWidget*> shown;
  for (QWidget* widget : widgets) {
    if (widget->isVisible() && widget->isEnabled()) shown.append(widget);
  }
  return shown.isEmpty() ? nullptr : shown[person_.Number(static_cast<int>(shown.size()))];
}

void RandomHand::EditCell() {
  QList<QWidget*> grids;
  for (auto* view : yard_.Main().findChildren<QAbstractItemView*>()) grids.append(view);
  auto* const grid = qobject_cast<QAbstractItemView*>(AnyOf(grids));
  if (!grid || !grid->model() || grid->model()->rowCount() == 0 || grid->model()->columnCount() == 0) return;
  const QModelIndex cell = grid->model()->index(person_.Number(grid->model()->rowCount()),
                                                person_.Number(grid->model()->columnCount()));
  Note(QStringLiteral("edit ") + grid->objectName());
  grid->setCurrentIndex(cell);
  if (!cell.flags().testFlag(Qt::ItemIsEditable)) return;
  grid->edit(cell);
  // It may stay open over whatever comes next.
  if (auto* line = qobject_cast<QLineEdit*>(QApplication::focusWidget())) {
    line->setText(QString::fromUtf8(kTexts[person_.Number(std::size(kTexts))]));
    if (person_.Chance(50)) QTest::keyClick(yard_.Main().windowHandle(), Qt::Key_Return);
  }
}

void RandomHand::TurnWheel() {
  QList<QWidget*> curves;
  for (auto* curve : yard_.Main().findChildren<PicCurve*>()) curves.append(curve);
  QWidget* const curve = AnyOf(curves);
  if (!curve) return;
  Note(QStringLiteral("wheel and drag"));
  const QPoint from(person_.Number(curve->width() + 1), person_.Number(curve->height() + 1));
  const QPoint to(person_.Number(curve->width() + 1), person_.Number(curve->height() + 1));
  QWheelEvent wheel(from, curve->mapToGlobal(from), {}, QPoint(0, person_.Chance(50) ? 120 : -120),
                    Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
  QCoreApplication::sendEvent(curve, &wheel);
  QTest::mousePress(curve, Qt::LeftButton, {}, from);
  QTest::mouseMove(curve, to);
  QTest::mouseRelease(curve, Qt::LeftButton, {}, to);
}

void RandomHand::Resize() {
  Note(QStringLiteral("resize"));
  yard_.Main().showNormal();
  yard_.Main().resize(300 + person_.Number(1200), 200 + person_.Number(800));
}

void RandomHand::Line() {
  const auto sample = kSamples[person_.Number(std::size(kSamples))];
  Note(QStringLiteral("line"));
  if (person_.Chance(70)) {
    yard_.Instrument.Model().PutInBeam(sample, yard_.Time.NowMs());
  } else if (person_.Chance(50)) {
    yard_.PullCable();
  } else {
    yard_.Instrument.Model().FitSampler(person_.Chance(50), yard_.Time.NowMs());
  }
}

void RandomHand::Timer() {
  Note(QStringLiteral("timer"));
  yard_.Time.Advance(person_.Number(5000));
  if (person_.Chance(90)) {
    yard_.Fire(yard_.Main().SampleTimer());
    return;
  }
  yard_.ConnectTimer().start(YieldYard::kNeverMs);
  yard_.Fire(yard_.ConnectTimer());
}

void RandomHand::Outside() {
  Note(QStringLiteral("hand-over"));
  yard_.Main().OpenLater(person_.Chance(30) ? person_.OpenFileName({}, {})
                                            : person_.AnyFile(DataFilePatterns()));
}

void RandomHand::Select() {
  Note(QStringLiteral("another window"));
  auto* const area = yard_.Main().findChild<Workspace*>();
  person_.Chance(50) ? area->activateNextSubWindow() : area->activatePreviousSubWindow();
}

}  // namespace spectrane::testing_reentrancy
