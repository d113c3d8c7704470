#include "platform/qt/pdf_viewer.h"

#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QImage>
#include <QLabel>
#include <QListWidget>
#include <QPixmap>
#include <QVBoxLayout>
#include <algorithm>

#include "platform/picture_decoder.h"

TfrmPDFViewer::TfrmPDFViewer(QWidget* parent, const QString& title, const QString& pagesLabel,
                             const QString& pageWord)
    : QDialog(parent), FPageWord(pageWord) {
  setObjectName("frmPDFViewer");
  setWindowTitle(title);
  auto* main = new QVBoxLayout(this);
  main->addWidget(new QLabel(pagesLabel, this));
  auto* row = new QHBoxLayout;
  FPages = new QListWidget(this);
  FPages->setObjectName("lbPages");
  FPages->setMinimumWidth(220);
  FPreview = new QLabel(this);
  FPreview->setObjectName("imgPreview");
  FPreview->setFixedSize(320, 400);
  FPreview->setAlignment(Qt::AlignCenter);
  FPreview->setStyleSheet("background: #808080");
  row->addWidget(FPages);
  row->addWidget(FPreview);
  main->addLayout(row);
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
  main->addWidget(buttons);
  connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  connect(FPages, &QListWidget::currentRowChanged, this, [this](int r) { showPreview(r); });
  connect(FPages, &QListWidget::itemChanged, this, [this] { keepWithinLimit(); });
}

void TfrmPDFViewer::setPDF(IPdfPages& document, int maxPages) {
  FDocument = &document;
  FMaxPages = std::max(1, maxPages);
  FPages->clear();
  for (int i = 0; i < document.pageCount(); ++i) {
    const TPointF mm = document.pageSizeMm(i);
    auto* item = new QListWidgetItem(
        QString("%1 %2  (%3 x %4 mm)").arg(FPageWord).arg(i + 1).arg(mm.x, 0, 'f', 0).arg(mm.y, 0, 'f', 0), FPages);
    item->setFlags(item->flags() | Qt::ItemIsUserCheckable);
    item->setCheckState(i == 0 ? Qt::Checked : Qt::Unchecked);
  }
  if (document.pageCount() > 0) FPages->setCurrentRow(0);
}

void TfrmPDFViewer::showPreview(int page) {
  if (!FDocument || page < 0) return;
  const TPointF mm = FDocument->pageSizeMm(page);
  // A preview fits the box: the resolution follows the page's size.
  const double dpi = std::min(320.0 / (mm.x / 25.4), 400.0 / (mm.y / 25.4));
  const TRasterImage r = FDocument->renderPage(page, std::max(1.0, dpi));
  if (r.isEmpty()) {
    FPreview->clear();
    return;
  }
  const QImage img(reinterpret_cast<const uchar*>(r.FPixels->data()), r.FWidth, r.FHeight, r.FWidth * 4,
                   QImage::Format_ARGB32);
  FPreview->setPixmap(QPixmap::fromImage(img.copy()));
}

void TfrmPDFViewer::keepWithinLimit() {
  int checked = 0;
  for (int i = 0; i < FPages->count(); ++i)
    if (FPages->item(i)->checkState() == Qt::Checked && ++checked > FMaxPages) {
      const QSignalBlocker quiet(FPages);
      FPages->item(i)->setCheckState(Qt::Unchecked);
    }
}

std::vector<int> TfrmPDFViewer::checkedPages() const {
  std::vector<int> pages;
  for (int i = 0; i < FPages->count() && int(pages.size()) < FMaxPages; ++i)
    if (FPages->item(i)->checkState() == Qt::Checked) pages.push_back(i);
  return pages;
}
