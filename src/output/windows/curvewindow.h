#pragma once

#include "app/ground/documentwindow.h"
#include "base/displayformats.h"
#include "output/curveview.h"

namespace spectrane {

class PicCurve;

/// What the windows with a curve have in common: the surface that fills them, its pictures, and what hand and
/// commands do with the view. A window keeps its scales itself.
class CurveWindow : public DocumentWindow {
  Q_OBJECT

 public:
  ~CurveWindow() override;

  /// Rounds the view outward to its divisions; the next rectangle that is drawn becomes the view.
  void mmuZoomIn() override;
  /// Back to the home view.
  void mmuZoomWindow() override;
  /// The cursor goes.
  void mmuZoomOut() override;
  /// The picture into the clipboard.
  void CopyPicture() override;
  /// The picture as it stands into a file.
  void mmuFileOutputBMP() override;
  bool Offers(int command) const override;
  /// Draws scale, curves and marks anew.
  void ShowPicture();

 protected:
  explicit CurveWindow(MainWindow& frame);

  const DisplayFormats& Formats() const { return formats_; }
  PicCurve& Curve() { return *curve_; }
  /// At the right of the surface.
  void PutBeside(QWidget* widget);

  /// All that the surface shows now. What it points to stays until the next ShowPicture().
  virtual CurveView MakeView() const = 0;
  /// Takes a view, which is drawable, and the home view; the surface follows by itself.
  virtual void TakeView(const CurveScale& scale) = 0;
  virtual void TakeHomeView() = 0;
  virtual CurveScale SeenScale() const = 0;
  /// A point in a line for the status bar; `line` is its curve's place in the view.
  virtual QString PointText(std::size_t line, std::size_t point) const = 0;

  QImage MakePicture() override;
  /// A rectangle that was drawn, with its size on the surface.
  virtual void LookAtRectangle(const CurveScale& scale, const QSize& pixels);
  /// Takes a view when it is drawable, and shows it.
  void LookAt(const CurveScale& scale);

 private:
  void ConnectCurve();

  const DisplayFormats& formats_;
  PicCurve* curve_;
};

}  // namespace spectrane
