#include "onlooker/onlooker.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAccessible>
#include <QComboBox>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QPushButton>
#include <QSet>
#include <QStyle>
#include <QStyleOptionComboBox>
#include <QTabBar>
#include <QTableView>
#include <QTabWidget>
#include <QToolButton>

#include <algorithm>
#include <cmath>

namespace spectrane::testing_windows {
namespace {

/// Between a text and its ground, as the usual guidelines for readable texts ask.
constexpr double kLeastContrast = 4.5;
/// Controls in a row whose edges differ by so much still stand side by side [px].
constexpr int kAligned = 4;

QString Called(const QWidget& widget) {
  const QString name = widget.objectName().isEmpty() ? QStringLiteral("?") : widget.objectName();
  return QString::fromLatin1(widget.metaObject()->className()) + u' ' + name;
}

/// A part that the toolkit made inside a control.
bool IsPart(const QWidget& widget) {
  if (widget.objectName().startsWith(QLatin1String("qt_"))) return true;
  const QWidget* const parent = widget.parentWidget();
  return qobject_cast<const QComboBox*>(parent) != nullptr ||
         (parent && parent->parentWidget() && qobject_cast<const QComboBox*>(parent->parentWidget()));
}

/// A window among others that lies behind the active one.
bool IsBehind(const QWidget& widget) {
  for (const QWidget* each = &widget; each; each = each->parentWidget()) {
    const auto* const frame = qobject_cast<const QMdiSubWindow*>(each);
    if (frame && frame->mdiArea()) return frame->mdiArea()->currentSubWindow() != frame;
  }
  return false;
}

QList<const QWidget*> Shown(const QWidget& window) {
  QList<const QWidget*> all;
  for (const QWidget* widget : window.findChildren<QWidget*>()) {
    if (widget->window() == window.window() && widget->isVisibleTo(window.window()) && !IsPart(*widget) &&
        !IsBehind(*widget))
      all.append(widget);
  }
  return all;
}

QRect Place(const QWidget& widget, const QWidget& window) {
  return {widget.mapTo(&window, QPoint()), widget.size()};
}

QString WithoutKey(QString text) {
  return text.replace(QStringLiteral("&&"), QStringLiteral("\u0001")).remove(u'&').replace(u'\u0001', u'&');
}

/// The access key in a caption; null for none.
QChar KeyOf(const QString& caption) {
  for (qsizetype i = 0; i + 1 < caption.size(); ++i) {
    if (caption[i] != u'&') continue;
    if (caption[i + 1] != u'&') return caption[i + 1].toUpper();
    ++i;
  }
  return {};
}

QStringList CaptionsWithKeys(const QWidget& window, QStringList& faults) {
  QStringList captions;
  for (const QWidget* widget : Shown(window)) {
    if (const auto* button = qobject_cast<const QAbstractButton*>(widget)) {
      if (!qobject_cast<const QToolButton*>(widget)) captions.append(button->text());
    } else if (const auto* label = qobject_cast<const QLabel*>(widget)) {
      if (label->buddy()) {
        captions.append(label->text());
      } else if (label->textFormat() != Qt::PlainText && !KeyOf(label->text()).isNull() &&
                 !Qt::mightBeRichText(label->text())) {
        faults.append(Called(*label) + QStringLiteral(" has an access key and no field"));
      }
    } else if (const auto* group = qobject_cast<const QGroupBox*>(widget)) {
      captions.append(group->title());
    } else if (const auto* tabs = qobject_cast<const QTabBar*>(widget)) {
      // The tabs of windows are chosen by other keys, and a file name has no access key.
      if (tabs->objectName() == QLatin1String("WindowTabs")) continue;
      for (int i = 0; i < tabs->count(); ++i) captions.append(tabs->tabText(i));
    }
  }
  return captions;
}

bool TakesTab(const QWidget& widget) {
  // The frame of a window hands the focus on to what is inside.
  return (widget.focusPolicy() & Qt::TabFocus) && widget.isEnabled() && !widget.focusProxy() &&
         !qobject_cast<const QMdiSubWindow*>(&widget);
}

void LookAtLabel(const QLabel& label, QStringList& faults) {
  if (label.text().isEmpty()) return;
  const QSize room = label.size();
  const bool cut = label.wordWrap()
                       ? label.heightForWidth(room.width()) > room.height()
                       : label.sizeHint().width() > room.width() || label.sizeHint().height() > room.height();
  if (cut)
    faults.append(QStringLiteral("%1 cuts \"%2\": %3 x %4 for %5 x %6")
                      .arg(Called(label), label.text())
                      .arg(room.width())
                      .arg(room.height())
                      .arg(label.sizeHint().width())
                      .arg(label.sizeHint().height()));
}

void LookAtList(const QComboBox& list, QStringList& faults) {
  QStyleOptionComboBox option;
  option.initFrom(&list);
  option.editable = list.isEditable();
  option.subControls = QStyle::SC_All;
  const QRect field =
      list.style()->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxEditField, &list);
  for (int i = 0; i < list.count(); ++i) {
    if (list.fontMetrics().horizontalAdvance(list.itemText(i)) > field.width())
      faults.append(Called(list) + QStringLiteral(" cuts \"%1\"").arg(list.itemText(i)));
  }
}

void LookAtTabs(const QTabBar& tabs, QStringList& faults) {
  for (int i = 0; i < tabs.count(); ++i) {
    const int text = tabs.fontMetrics().horizontalAdvance(WithoutKey(tabs.tabText(i)));
    if (tabs.tabRect(i).width() < text || tabs.tabRect(i).right() > tabs.width())
      faults.append(Called(tabs) + QStringLiteral(" cuts \"%1\"").arg(tabs.tabText(i)));
  }
}

void LookAtTable(const QTableView& table, QStringList& faults) {
  const QHeaderView& header = *table.horizontalHeader();
  if (!table.model()) return;
  for (int column = 0; column < header.count(); ++column) {
    if (header.isSectionHidden(column)) continue;
    const QString title = table.model()->headerData(column, Qt::Horizontal).toString();
    if (!title.isEmpty() && header.isVisible() &&
        header.fontMetrics().horizontalAdvance(title) > header.sectionSize(column))
      faults.append(Called(table) + QStringLiteral(" cuts its heading \"%1\"").arg(title));
  }
}

void LookAtField(const QLineEdit& field, QStringList& faults) {
  // A path may be longer than its field; Home and End show the rest.
  if (field.inherits("spectrane::SpectrumField")) return;
  if (field.fontMetrics().horizontalAdvance(field.text()) > field.contentsRect().width())
    faults.append(Called(field) + QStringLiteral(" cuts \"%1\"").arg(field.text()));
}

void LookForRoom(const QWidget& widget, QStringList& faults) {
  if (const auto* label = qobject_cast<const QLabel*>(&widget)) {
    LookAtLabel(*label, faults);
  } else if (const auto* list = qobject_cast<const QComboBox*>(&widget)) {
    LookAtList(*list, faults);
  } else if (const auto* tabs = qobject_cast<const QTabBar*>(&widget)) {
    if (tabs->objectName() != QLatin1String("WindowTabs")) LookAtTabs(*tabs, faults);
  } else if (const auto* table = qobject_cast<const QTableView*>(&widget)) {
    LookAtTable(*table, faults);
  } else if (const auto* field = qobject_cast<const QLineEdit*>(&widget)) {
    LookAtField(*field, faults);
  } else if (const auto* group = qobject_cast<const QGroupBox*>(&widget)) {
    if (group->minimumSizeHint().width() > group->width())
      faults.append(Called(*group) + QStringLiteral(" cuts \"%1\"").arg(group->title()));
  } else if (const auto* button = qobject_cast<const QAbstractButton*>(&widget)) {
    const QSize wanted = button->sizeHint();
    if (!button->text().isEmpty() && (wanted.width() > button->width() || wanted.height() > button->height()))
      faults.append(Called(*button) + QStringLiteral(" cuts \"%1\"").arg(button->text()));
  }
}

QColor Over(const QColor& above, const QColor& below) {
  const double share = above.alphaF();
  return QColor::fromRgbF(static_cast<float>(above.redF() * share + below.redF() * (1 - share)),
                          static_cast<float>(above.greenF() * share + below.greenF() * (1 - share)),
                          static_cast<float>(above.blueF() * share + below.blueF() * (1 - share)));
}

double Luminance(const QColor& colour) {
  const auto linear = [](double part) {
    return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
  };
  return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) + 0.0722 * linear(colour.blueF());
}

double Contrast(const QColor& text, const QColor& ground) {
  const double a = Luminance(Over(text, ground));
  const double b = Luminance(ground);
  return (std::max(a, b) + 0.05) / (std::min(a, b) + 0.05);
}

void CompareColours(const QWidget& widget, QPalette::ColorRole text, QPalette::ColorRole ground,
                    QStringList& faults) {
  const double contrast = Contrast(widget.palette().color(text), widget.palette().color(ground));
  if (contrast < kLeastContrast)
    faults.append(Called(widget) + QStringLiteral(" has a contrast of %1 only").arg(contrast, 0, 'f', 2));
}

}  // namespace

QStringList NameFaults(const QWidget& window) {
  QStringList faults;
  QSet<QString> names;
  for (const QWidget* widget : Shown(window)) {
    if (widget->focusPolicy() == Qt::NoFocus) continue;
    const auto* const tabs = qobject_cast<const QTabBar*>(widget);
    if (tabs && tabs->count() == 0) continue;
    if (widget->objectName().isEmpty() || names.contains(widget->objectName()))
      faults.append(Called(*widget) + QStringLiteral(" has no object name of its own"));
    names.insert(widget->objectName());
    QAccessibleInterface* const heard = QAccessible::queryAccessibleInterface(const_cast<QWidget*>(widget));
    if (!heard || heard->text(QAccessible::Name).trimmed().isEmpty()) {
      faults.append(Called(*widget) + QStringLiteral(" has no name for a screen reader"));
      continue;
    }
    const QAccessible::Role role = heard->role();
    const bool painted = (role == QAccessible::Client || role == QAccessible::NoRole) &&
                         !qobject_cast<const QTabWidget*>(widget);
    if (painted && heard->text(QAccessible::Description).isEmpty())
      faults.append(Called(*widget) + QStringLiteral(" is painted and has no description"));
  }
  return faults;
}

QStringList KeyFaults(const QWidget& window) {
  QStringList faults;
  QSet<QChar> used;
  for (const QString& caption : CaptionsWithKeys(window, faults)) {
    const QChar key = KeyOf(caption);
    if (key.isNull()) continue;
    if (used.contains(key)) faults.append(QStringLiteral("the key of \"%1\" is another's").arg(caption));
    used.insert(key);
  }
  const QList<const QWidget*> shown = Shown(window);
  QList<const QWidget*> stops;
  for (const QWidget* widget = window.nextInFocusChain(); widget != &window;
       widget = widget->nextInFocusChain()) {
    if (TakesTab(*widget) && shown.contains(widget)) stops.append(widget);
  }
  for (qsizetype i = 1; i < stops.size(); ++i) {
    const QRect from = Place(*stops[i - 1], window);
    const QRect to = Place(*stops[i], window);
    const bool inside = from.contains(to);
    if (!inside && to.left() + kAligned < from.right() && to.top() + kAligned < from.bottom())
      faults.append(
          QStringLiteral("Tab goes back from %1 to %2").arg(Called(*stops[i - 1]), Called(*stops[i])));
  }
  return faults;
}

QStringList RoomFaults(const QWidget& window) {
  QStringList faults;
  const QList<const QWidget*> shown = Shown(window);
  for (const QWidget* widget : shown) LookForRoom(*widget, faults);
  const auto isControl = [](const QWidget* widget) {
    return qobject_cast<const QLabel*>(widget) || qobject_cast<const QAbstractButton*>(widget) ||
           qobject_cast<const QLineEdit*>(widget) || qobject_cast<const QComboBox*>(widget) ||
           qobject_cast<const QAbstractItemView*>(widget);
  };
  for (qsizetype i = 0; i < shown.size(); ++i) {
    for (qsizetype j = i + 1; j < shown.size(); ++j) {
      const QWidget& a = *shown[i];
      const QWidget& b = *shown[j];
      if (!isControl(&a) || !isControl(&b) || a.parentWidget() != b.parentWidget()) continue;
      if (a.geometry().intersects(b.geometry()))
        faults.append(QStringLiteral("%1 lies over %2").arg(Called(a), Called(b)));
    }
  }
  return faults;
}

QStringList ContrastFaults(const QWidget& window) {
  QStringList faults;
  for (const QWidget* widget : Shown(window)) {
    // What cannot be chosen may be pale.
    if (!widget->isEnabled()) continue;
    if (const auto* label = qobject_cast<const QLabel*>(widget)) {
      if (!label->text().isEmpty())
        CompareColours(*label, label->foregroundRole(), label->backgroundRole(), faults);
    } else if (qobject_cast<const QPushButton*>(widget)) {
      CompareColours(*widget, QPalette::ButtonText, QPalette::Button, faults);
    } else if (qobject_cast<const QAbstractButton*>(widget) || qobject_cast<const QGroupBox*>(widget) ||
               qobject_cast<const QTabBar*>(widget)) {
      CompareColours(*widget, QPalette::WindowText, QPalette::Window, faults);
    } else if (qobject_cast<const QLineEdit*>(widget)) {
      CompareColours(*widget, QPalette::Text, QPalette::Base, faults);
      CompareColours(*widget, QPalette::PlaceholderText, QPalette::Base, faults);
    } else if (qobject_cast<const QAbstractItemView*>(widget)) {
      CompareColours(*widget, QPalette::Text, QPalette::Base, faults);
    }
  }
  return faults;
}

QStringList FaultsOf(const QWidget& window) {
  return NameFaults(window) + KeyFaults(window) + RoomFaults(window) + ContrastFaults(window);
}

}  // namespace spectrane::testing_windows
