#include "app/ground/keptsplitter.h"

#include <cmath>
#include <utility>

#include "base/numbers.h"

namespace spectrane {

KeptSplitter::KeptSplitter(Qt::Orientation orientation, LayoutStore& store, const QString& name,
                           FirstPane firstPane, QWidget* parent)
    : QSplitter(orientation, parent), store_(store), name_(name), firstPane_(std::move(firstPane)) {
  store_.Join(*this);
  setObjectName(name.section(u'/', -1));
  setChildrenCollapsible(false);
  const std::optional<double> share = ParseNumber(store_.Bytes(name).toStdString());
  if (share && *share > 0 && *share < 1) share_ = share;
  connect(this, &QSplitter::splitterMoved, this, [this] {
    if (Whole() > 0) share_ = static_cast<double>(sizes().first()) / Whole();
  });
}

KeptSplitter::~KeptSplitter() {
  store_.Leave(*this);
}

int KeptSplitter::Whole() const {
  return (orientation() == Qt::Horizontal ? width() : height()) - handleWidth();
}

void KeptSplitter::Arrange() {
  const int whole = Whole();
  if (count() < 2 || whole <= 0) return;
  const int first = share_ ? static_cast<int>(std::lround(*share_ * whole)) : firstPane_(whole);
  setSizes({first, whole - first});
}

void KeptSplitter::Keep() {
  if (share_) store_.Store(name_, QByteArray::fromStdString(ShortestText(*share_)));
}

void KeptSplitter::Forget() {
  share_.reset();
  Arrange();
}

void KeptSplitter::resizeEvent(QResizeEvent* event) {
  QSplitter::resizeEvent(event);
  Arrange();
}

}  // namespace spectrane
