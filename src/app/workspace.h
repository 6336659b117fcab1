#pragma once

#include <QMdiArea>

namespace spectrane {

class DocumentWindow;

/// The area of the children: as tabs or as free windows. Empty, it says what to do first.
class Workspace : public QMdiArea {
  Q_OBJECT

 public:
  explicit Workspace(QWidget* parent);

  DocumentWindow* Active() const;
  /// In the order they were made.
  QList<DocumentWindow*> Documents() const;
  /// Takes the window over and shows it as the active one.
  void Add(DocumentWindow* document);
  void Activate(DocumentWindow* document);
  void SetTabs(bool tabs);
  bool HasTabs() const { return viewMode() == TabbedView; }
  void CascadeAll();
  /// Beside each other, or one above the other.
  void TileAll(bool beside);
  /// The lines that the empty area shows: a heading and steps.
  void SetWelcome(const QString& heading, const QStringList& steps);

 signals:
  void ActiveChanged();
  /// A right click beside the children.
  void PopupWanted(const QPoint& globalPosition);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  void MixGround();
  void NameTabs();
  QList<QMdiSubWindow*> Arrangeable();

  QString heading_;
  QStringList steps_;
};

}  // namespace spectrane
