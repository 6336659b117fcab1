#include "app/ground/reportpreview.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPrinter>
#include <QPrintPreviewWidget>
#include <QPushButton>
#include <QVBoxLayout>

#include "app/ground/commands.h"
#include "app/ground/languagefont.h"
#include "app/ground/words.h"
#include "output/reportpages.h"

namespace spectrane {
namespace {

constexpr int kCloseText = 1083;

QPushButton* PreviewButton(QDialog& dialog, const char* name, const QString& caption) {
  auto* const button = new QPushButton(caption, &dialog);
  button->setObjectName(QLatin1String(name));
  button->setAccessibleName(QString(caption).remove(u'&'));
  button->setAutoDefault(false);
  return button;
}

}  // namespace

ReportPreview::ReportPreview(QWidget& parent, QPrinter& printer, const Report& report)
    : QDialog(&parent),
      pages_(new QPrintPreviewWidget(&printer, this)),
      place_(new QLabel(this)),
      previous_(PreviewButton(*this, "PreviousPage", tr("P&revious"))),
      next_(PreviewButton(*this, "NextPage", tr("&Next"))) {
  ApplyLanguageFont(*this);
  setObjectName(QStringLiteral("ReportPreview"));
  setWindowTitle(report.Title + QStringLiteral(" - ") + report.DocumentName);
  pages_->setObjectName(QStringLiteral("PreviewPages"));
  pages_->setAccessibleName(report.Title);
  // What the toolkit shows the pages in.
  int part = 0;
  for (QWidget* const inside : pages_->findChildren<QWidget*>()) {
    if (inside->focusPolicy() == Qt::NoFocus || inside->objectName().startsWith(QLatin1String("qt_")))
      continue;
    inside->setObjectName(QStringLiteral("PreviewPart%1").arg(++part));
    inside->setAccessibleName(report.Title);
    inside->setAccessibleDescription(tr("The pages as they will be printed."));
  }
  connect(pages_, &QPrintPreviewWidget::paintRequested, this,
          [&report](QPrinter* onto) { PaintReport(*onto, report); });
  connect(pages_, &QPrintPreviewWidget::previewChanged, this, &ReportPreview::ShowPlace);
  connect(previous_, &QPushButton::clicked, this, [this] { TurnPages(-1); });
  connect(next_, &QPushButton::clicked, this, [this] { TurnPages(1); });
  auto* const print = PreviewButton(*this, "PrintCmd", tr("&Print"));
  connect(print, &QPushButton::clicked, this, &QDialog::accept);
  auto* const close = PreviewButton(*this, "CloseCmd", Caption(kCloseText));
  connect(close, &QPushButton::clicked, this, &QDialog::reject);
  auto* const row = new QHBoxLayout;
  for (QWidget* const widget :
       {static_cast<QWidget*>(previous_), static_cast<QWidget*>(next_), static_cast<QWidget*>(place_)}) {
    row->addWidget(widget);
  }
  row->addStretch(1);
  row->addWidget(print);
  row->addWidget(close);
  auto* const layout = new QVBoxLayout(this);
  layout->addWidget(pages_, 1);
  layout->addLayout(row);
  pages_->fitInView();
  resize(parent.size().boundedTo(QSize(760, 900)).expandedTo(QSize(520, 520)));
  pages_->updatePreview();
}

void ReportPreview::TurnPages(int pages) {
  pages_->setCurrentPage(pages_->currentPage() + pages);
  ShowPlace();
}

void ReportPreview::ShowPlace() {
  const int count = pages_->pageCount();
  const int page = pages_->currentPage();
  place_->setText(tr("Page %1 of %2").arg(page).arg(count));
  previous_->setEnabled(page > 1);
  next_->setEnabled(page < count);
}

}  // namespace spectrane
