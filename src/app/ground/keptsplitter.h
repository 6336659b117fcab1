#pragma once

#include <QSplitter>

#include <functional>
#include <optional>

#include "app/ground/layoutstore.h"

namespace spectrane {

/// Two panes whose border stands where the program wants it until somebody moves it; from then on its share
/// of the whole is kept and remembered.
class KeptSplitter : public QSplitter, public KeptLayout {
  Q_OBJECT

 public:
  /// Size of the first pane of so many pixels altogether; called at each change of size.
  using FirstPane = std::function<int(int whole)>;

  /// `name` is the one in `store`, which must outlive this object; its last part, behind the slash, is the
  /// object name.
  KeptSplitter(Qt::Orientation orientation, LayoutStore& store, const QString& name, FirstPane firstPane,
               QWidget* parent = nullptr);
  ~KeptSplitter() override;

  /// Puts the border where it belongs.
  void Arrange();
  /// Stores the place of a border that somebody has moved.
  void Keep();
  void Forget() override;

 protected:
  void resizeEvent(QResizeEvent* event) override;

 private:
  int Whole() const;

  LayoutStore& store_;
  QString name_;
  FirstPane firstPane_;
  /// Of the first pane, 0 to 1, once somebody has moved the border.
  std::optional<double> share_;
};

}  // namespace spectrane
