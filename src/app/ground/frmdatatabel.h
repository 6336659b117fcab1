#pragma once

#include <QWidget>

#include <vector>

#include "app/ground/layoutstore.h"

class QTableView;
class QTabWidget;

namespace spectrane {

class PointTable;

/// One tab of the data tables.
struct DataTab {
  QString Caption;
  /// Lives at least as long as the tables.
  PointTable* Model;
};

/// The tables of a chart window, a tab each. The main window shows them in its dock pane while their document
/// is the active one; the document makes them, fills their models and deletes them.
class FrmDataTabel : public QWidget, public KeptLayout {
  Q_OBJECT

 public:
  /// `title` is that of the pane. Column widths are remembered in `layout` under `name`.
  FrmDataTabel(const QString& title, const QString& name, const std::vector<DataTab>& tabs,
               LayoutStore& layout);
  ~FrmDataTabel() override;

  void SetTitle(const QString& title);
  void SelectTab(int tab);
  /// Another rider for a tab. One without a caption is not there.
  void SetTabCaption(int tab, const QString& caption);
  int SelectedTab() const;
  int TabCount() const;
  QTableView* Grid(int tab) const;
  /// The selected rows of the tab in sight, or all of it, into the clipboard.
  void Copy();
  void Forget() override;

 signals:
  void TitleChanged();

 protected:
  void changeEvent(QEvent* event) override;

 private:
  QTableView* MakeGrid(const DataTab& tab, int number);
  void FitColumns(QTableView& grid) const;
  QString LayoutName(int tab) const;
  QList<int> Widths(int tab) const;

  QString name_;
  LayoutStore& layout_;
  QTabWidget* tabs_;
  std::vector<QTableView*> grids_;
  // Widths that nobody has changed are not remembered: they follow the font.
  std::vector<QList<int>> widthsAtStart_;
};

}  // namespace spectrane
