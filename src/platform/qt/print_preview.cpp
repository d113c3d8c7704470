#include "platform/qt/print_preview.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QDoubleSpinBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QMessageBox>
#include <QMouseEvent>
#include <QPainter>
#include <QPushButton>
#include <QSpinBox>
#include <QVBoxLayout>
#include <algorithm>

#include "app/frm_pelw.h"
#include "app/multi_lang.h"
#include "document/number_text.h"
#include "exchange/print_layout.h"
#include "exchange/print_marks.h"
#include "exchange/print_run.h"
#include "platform/qt/qt_canvas.h"
#include "platform/qt/qt_language.h"

// ---- the pages over the drawing ----

TPreviewBox::TPreviewBox(TfrmPelw& form, TPrintLayout& layout, QWidget* parent)
    : QWidget(parent), FForm(form), FLayout(layout) {
  setObjectName("pbPreview");
  setMinimumSize(480, 400);
  setMouseTracking(false);
}

TPreviewBox::~TPreviewBox() = default;

void TPreviewBox::drawingChanged() {
  FCacheValid = false;
  update();
}

// The drawing and every page in view, 12 pixels from the edges; kept while
// a page is dragged, so that the pointer stays on it.
void TPreviewBox::placeView() {
  if (FLayout.FIsMouseDown) return;
  TRectF all = FLayout.FBoundary;
  for (int i = 0; i < FLayout.pageCount(); ++i) {
    const TRectF r = FLayout.sheetRealRect(i);
    all = TRectF(std::min(all.Left, r.Left), std::min(all.Top, r.Top), std::max(all.Right, r.Right),
                 std::max(all.Bottom, r.Bottom));
  }
  const double w = std::max(1.0, all.width()), h = std::max(1.0, all.height());
  const double s = std::max(0.01, std::min((width() - 24) / w, (height() - 24) / h));
  FScale = TPointF::fromDouble(s, s);
  FOffset = TPointF::fromDouble((width() - w * s) / 2 - all.Left * s, (height() - h * s) / 2 - all.Top * s);
}

TPointF TPreviewBox::toPixels(const TPointF& real) const {
  return TPointF::fromDouble(real.x * double(FScale.x) + FOffset.x, real.y * double(FScale.y) + FOffset.y);
}

TPointF TPreviewBox::toReal(const QPointF& pixel) const {
  return TPointF::fromDouble((pixel.x() - FOffset.x) / FScale.x, (pixel.y() - FOffset.y) / FScale.y);
}

void TPreviewBox::paintEvent(QPaintEvent*) {
  placeView();
  QPainter painter(this);
  painter.fillRect(rect(), QColor(0x80, 0x80, 0x80));
  const double dpr = devicePixelRatioF();
  const bool stale = !FCacheValid || !FCache || FCache->width() != static_cast<int>(std::lround(width() * dpr)) ||
                     FCache->height() != static_cast<int>(std::lround(height() * dpr)) ||
                     !FCacheScale.identical(FScale) || !FCacheOffset.identical(FOffset);
  if (stale) {
    // The drawing is painted once; dragging a page only moves the frames.
    const bool busy = FForm.PathList && FForm.PathList->Count() > 2000;
    if (busy) QApplication::setOverrideCursor(Qt::WaitCursor);
    FCache = std::make_unique<TQtBitmap>(width(), height(), dpr);
    ICanvas& c = FCache->canvas();
    if (c.beginScene()) {
      paintPreviewDrawing(FForm, FLayout, c, FScale, FOffset);
      c.endScene();
    }
    if (busy) QApplication::restoreOverrideCursor();
    FCacheScale = FScale;
    FCacheOffset = FOffset;
    FCacheValid = true;
  }
  // What falls outside the pages is not printed: it shows faintly.
  const QRectF whole(0, 0, width(), height());
  painter.setOpacity(0.35);
  painter.drawImage(whole, FCache->image());
  painter.setOpacity(1);
  for (int i = 0; i < FLayout.pageCount(); ++i) {
    const TRectF r = FLayout.printableRealRect(i);
    const TPointF a = toPixels(r.topLeft()), b = toPixels(r.bottomRight());
    painter.save();
    painter.setClipRect(QRectF(QPointF(a.x, a.y), QPointF(b.x, b.y)));
    painter.drawImage(whole, FCache->image());
    painter.restore();
  }
  TQtCanvas canvas(painter, width(), height(), dpr);
  paintPreviewPages(canvas, FLayout, FScale, FOffset);
}

void TPreviewBox::mousePressEvent(QMouseEvent* e) {
  const bool right = e->button() == Qt::RightButton;
  if (!right && e->button() != Qt::LeftButton) return;
  const QPointF p = e->position();
  if (FLayout.mouseDown(right, TPointF::fromDouble(p.x(), p.y()), toReal(p))) emit pagesChanged();
  update();
}

void TPreviewBox::mouseMoveEvent(QMouseEvent* e) {
  const QPointF p = e->position();
  if (FLayout.mouseMove(TPointF::fromDouble(p.x(), p.y()), toReal(p))) update();
}

void TPreviewBox::mouseReleaseEvent(QMouseEvent* e) {
  const QPointF p = e->position();
  FLayout.mouseUp(e->button() == Qt::RightButton, TPointF::fromDouble(p.x(), p.y()), toReal(p));
  emit pagesChanged();
  update();
}

// ---- the window ----

namespace {

QCheckBox* namedCheck(const char* name, const char* text, QWidget* parent) {
  auto* c = new QCheckBox(QString::fromUtf8(text), parent);
  c->setObjectName(name);
  return c;
}

QLabel* namedLabel(const char* name, const char* text, QWidget* parent) {
  auto* l = new QLabel(QString::fromUtf8(text), parent);
  l->setObjectName(name);
  return l;
}

QPushButton* namedButton(const char* name, const char* text, QWidget* parent) {
  auto* b = new QPushButton(QString::fromUtf8(text), parent);
  b->setObjectName(name);
  b->setAutoDefault(false);
  return b;
}

QString number(double v) { return QString::fromStdString(floatToText(std::round(v * 100) / 100)); }

}  // namespace

TfrmPreview::TfrmPreview(TfrmPelw& form, TPrintLayout& layout, IPrintService* service, bool forPdf, QWidget* parent)
    : QDialog(parent), FForm(form), FLayout(layout), FService(service), FForPdf(forPdf) {
  setObjectName("frmPreview");
  setWindowTitle("Print preview");
  auto* row = new QHBoxLayout(this);
  pbPreview = new TPreviewBox(form, layout, this);
  row->addWidget(pbPreview, 1);
  auto* panel = new QWidget(this);
  panel->setFixedWidth(300);
  row->addWidget(panel);
  buildControls(panel);
  connect(pbPreview, &TPreviewBox::pagesChanged, this, [this] { showLayout(); });
  translateWidgets(this, FForm.FMultiLang.get(), FForm.FLangID);
  showLayout();
  resize(1200, 800);
}

TfrmPreview::~TfrmPreview() = default;

void TfrmPreview::buildControls(QWidget* panel) {
  auto* col = new QVBoxLayout(panel);
  lblPaper = new QLabel(panel);
  lblPaper->setObjectName("lblPaper");
  lblPaper->setWordWrap(true);
  col->addWidget(lblPaper);
  btnPageSetup = namedButton("btnPageSetup", "Page setup...", panel);
  col->addWidget(btnPageSetup);

  auto* form = new QFormLayout;
  nbPrintLineThickFactor = new QDoubleSpinBox(panel);
  nbPrintLineThickFactor->setObjectName("nbPrintLineThickFactor");
  nbPrintLineThickFactor->setRange(kMinLineFactor, kMaxLineFactor);
  nbPrintLineThickFactor->setSingleStep(0.1);
  form->addRow(namedLabel("lblPPV_LineThickness", "Line thickness:", panel), nbPrintLineThickFactor);
  // The calibration of the options, set here where the scales are printed.
  for (QDoubleSpinBox** box : {&nbPrintCalibrationX, &nbPrintCalibrationY}) {
    *box = new QDoubleSpinBox(panel);
    (*box)->setObjectName(box == &nbPrintCalibrationX ? "nbPrintCalibrationX" : "nbPrintCalibrationY");
    (*box)->setRange(kMinCalibration, kMaxCalibration);
    (*box)->setDecimals(2);
    (*box)->setSingleStep(0.1);
  }
  form->addRow(namedLabel("lblPrintCalibrationX", "Calibration across (%):", panel), nbPrintCalibrationX);
  form->addRow(namedLabel("lblPrintCalibrationY", "Calibration down (%):", panel), nbPrintCalibrationY);
  col->addLayout(form);
  chkPrintStitchingHoleAsDot = namedCheck("chkPrintStitchingHoleAsDot", "Print stitching holes as dots", panel);
  chkShowNotForPrintLines = namedCheck("chkShowNotForPrintLines", "Show shapes to be ignored at printing", panel);
  chkPrintIntoMergin = namedCheck("chkPrintIntoMergin", "Print into the margins", panel);
  chkPrintSelectedShapesOnly = namedCheck("chkPrintSelectedShapesOnly", "Print selected shapes only", panel);
  chkPrintInColor = namedCheck("chkPrintInColor", "Color Print", panel);
  chkPreview_RulerInside = namedCheck("chkPreview_RulerInside", "Print ruler inside", panel);
  chkTilePrint = namedCheck("chkTilePrint", "Tile Print", panel);
  for (QCheckBox* c : {chkPrintStitchingHoleAsDot, chkShowNotForPrintLines, chkPrintIntoMergin,
                       chkPrintSelectedShapesOnly, chkPrintInColor, chkPreview_RulerInside, chkTilePrint})
    col->addWidget(c);
  auto* tiles = new QFormLayout;
  nbPreview_TileX = new QSpinBox(panel);
  nbPreview_TileX->setObjectName("nbPreview_TileX");
  nbPreview_TileX->setRange(1, 50);
  nbTileOverlapLen = new QDoubleSpinBox(panel);
  nbTileOverlapLen->setObjectName("nbTileOverlapLen");
  nbTileOverlapLen->setDecimals(1);
  tiles->addRow(namedLabel("lblNumTilesX", "# of horizontal tiles:", panel), nbPreview_TileX);
  tiles->addRow(namedLabel("lblTilesOverlap", "Overlap length (mm):", panel), nbTileOverlapLen);
  col->addLayout(tiles);
  auto* pages = new QHBoxLayout;
  btnPagePlus = namedButton("btnPagePlus", "Page +", panel);
  btnPageMinus = namedButton("btnPageMinus", "Page -", panel);
  pages->addWidget(btnPagePlus);
  pages->addWidget(btnPageMinus);
  col->addLayout(pages);
  lblSheets = new QLabel(panel);
  lblSheets->setObjectName("lblSheets");
  col->addWidget(lblSheets);
  auto* hint = namedLabel("lblPreviewHint", "", panel);
  hint->setWordWrap(true);
  col->addWidget(hint);
  col->addStretch(1);
  btnExecutePrint = namedButton(FForPdf ? "btnExecutePDF" : "btnExecutePrint", FForPdf ? "Write PDF..." : "Print", panel);
  btnExecutePrint->setDefault(true);
  btnClosePrintPreview = namedButton("btnClosePrintPreview", "Close", panel);
  auto* end = new QHBoxLayout;
  end->addWidget(btnExecutePrint);
  end->addWidget(btnClosePrintPreview);
  col->addLayout(end);

  auto changed = [this](bool drawingToo) { return [this, drawingToo] { switchesChanged(drawingToo); }; };
  for (QCheckBox* c : {chkPrintStitchingHoleAsDot, chkShowNotForPrintLines, chkPrintSelectedShapesOnly, chkPrintInColor})
    connect(c, &QCheckBox::toggled, this, changed(true));
  for (QCheckBox* c : {chkPrintIntoMergin, chkPreview_RulerInside}) connect(c, &QCheckBox::toggled, this, changed(false));
  connect(nbPrintLineThickFactor, &QDoubleSpinBox::valueChanged, this, changed(true));
  for (QDoubleSpinBox* box : {nbPrintCalibrationX, nbPrintCalibrationY})
    connect(box, &QDoubleSpinBox::valueChanged, this, [this] {
      if (FShowing) return;
      FLayout.FCalibrationRatio = TPointF::fromDouble(nbPrintCalibrationX->value() / 100, nbPrintCalibrationY->value() / 100);
      if (FLayout.FSwitches.FTilePrint) FLayout.resetTile();
      pbPreview->drawingChanged();
      showLayout();
    });
  connect(chkTilePrint, &QCheckBox::toggled, this, [this](bool on) {
    if (FShowing) return;
    FLayout.FSwitches.FTilePrint = on;
    if (on) FLayout.tileToCover();
    showLayout();
  });
  connect(nbPreview_TileX, &QSpinBox::valueChanged, this, [this](int n) {
    if (FShowing) return;
    FLayout.FSwitches.FTileX = n;
    if (FLayout.FSwitches.FTilePrint) FLayout.resetTile();
    showLayout();
  });
  connect(nbTileOverlapLen, &QDoubleSpinBox::valueChanged, this, [this](double mm) {
    if (FShowing) return;
    FLayout.FSwitches.FOverlapLen = mm;
    if (FLayout.FSwitches.FTilePrint) FLayout.resetTile();
    showLayout();
  });
  connect(btnPagePlus, &QPushButton::clicked, this, [this] {
    FLayout.pageAdd();
    showLayout();
  });
  connect(btnPageMinus, &QPushButton::clicked, this, [this] {
    FLayout.pageRemove();
    showLayout();
  });
  connect(btnPageSetup, &QPushButton::clicked, this, [this] { pageSetup(); });
  connect(btnExecutePrint, &QPushButton::clicked, this, &TfrmPreview::accept);
  connect(btnClosePrintPreview, &QPushButton::clicked, this, &TfrmPreview::reject);
}

void TfrmPreview::showLayout() {
  FShowing = true;
  const TPrintSwitches& s = FLayout.FSwitches;
  nbPrintLineThickFactor->setValue(s.FLineFactor);
  chkPrintStitchingHoleAsDot->setChecked(s.FHolesAsDots);
  chkShowNotForPrintLines->setChecked(s.FShowNotForPrint);
  chkPrintIntoMergin->setChecked(s.FPrintIntoMargin);
  chkPrintSelectedShapesOnly->setChecked(s.FSelectedOnly);
  chkPrintInColor->setChecked(s.FInColor);
  chkPreview_RulerInside->setChecked(s.FRulerInside);
  chkTilePrint->setChecked(s.FTilePrint);
  nbPreview_TileX->setValue(FLayout.getNumTileX());
  nbTileOverlapLen->setRange(0, std::floor(FLayout.maxOverlap() * 10) / 10);
  nbTileOverlapLen->setValue(s.FOverlapLen);
  btnPageMinus->setEnabled(FLayout.pageCount() > 1);
  btnPagePlus->setEnabled(FLayout.pageCount() < kMaxPrintPages);
  const TPaperSetup& p = FLayout.FPaper;
  lblPaper->setText(QString("%1  %2 x %3 mm").arg(QString::fromStdString(p.FName), number(p.FWidthMm), number(p.FHeightMm)));
  nbPrintCalibrationX->setValue(FLayout.FCalibrationRatio.x * 100);
  nbPrintCalibrationY->setValue(FLayout.FCalibrationRatio.y * 100);
  const std::string sheets = fillPhrase(FForm.FMultiLang->getTranslation(FForm.FLangID, "lblPreviewSheets"),
                                        {std::to_string(FLayout.targetCount())});
  lblSheets->setText(QString::fromStdString(sheets));
  btnExecutePrint->setEnabled(FLayout.targetCount() > 0);
  FShowing = false;
  pbPreview->update();
}

void TfrmPreview::switchesChanged(bool drawingToo) {
  if (FShowing) return;
  TPrintSwitches& s = FLayout.FSwitches;
  s.FLineFactor = nbPrintLineThickFactor->value();
  s.FHolesAsDots = chkPrintStitchingHoleAsDot->isChecked();
  s.FShowNotForPrint = chkShowNotForPrintLines->isChecked();
  s.FPrintIntoMargin = chkPrintIntoMergin->isChecked();
  s.FSelectedOnly = chkPrintSelectedShapesOnly->isChecked();
  s.FInColor = chkPrintInColor->isChecked();
  s.FRulerInside = chkPreview_RulerInside->isChecked();
  if (drawingToo) pbPreview->drawingChanged();
  pbPreview->update();
}

void TfrmPreview::pageSetup() {
  TPaperSetup paper = FLayout.FPaper;
  const bool chosen = FForPdf ? askPdfPaper(paper, FForm.FMultiLang.get(), FForm.FLangID, this)
                              : FService && FService->pageSetup(paper, false);
  if (!chosen) return;
  FLayout.FPaper = paper;
  FLayout.FSwitches.FOverlapLen = std::min(FLayout.FSwitches.FOverlapLen, FLayout.maxOverlap());
  if (FLayout.FSwitches.FTilePrint) FLayout.tileToCover();
  showLayout();
}

void TfrmPreview::accept() {
  const std::string refusal = FLayout.checkSettings(*FForm.FMultiLang, FForm.FLangID);
  if (!refusal.empty()) {
    QMessageBox::warning(this, windowTitle(), QString::fromStdString(refusal));
    return;
  }
  QDialog::accept();
}

bool askPdfPaper(TPaperSetup& paper, const TMultiLang* lang, const std::string& langID, QWidget* parent) {
  QDialog dialog(parent);
  dialog.setObjectName("btnPageSetup");
  dialog.setWindowTitle("Page setup");
  auto* form = new QFormLayout(&dialog);
  auto* size = new QComboBox(&dialog);
  size->setObjectName("cmbPaperSize");
  for (const TPaperSize& p : paperSizes()) size->addItem(QString::fromUtf8(p.FName));
  size->setCurrentText(QString::fromStdString(paper.FName));
  auto* landscape = namedCheck("chkLandscape", "Landscape", &dialog);
  landscape->setChecked(paper.FLandscape);
  form->addRow(namedLabel("lblPaperSize", "Paper:", &dialog), size);
  form->addRow(landscape);
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, &dialog);
  QObject::connect(buttons, &QDialogButtonBox::accepted, &dialog, &QDialog::accept);
  QObject::connect(buttons, &QDialogButtonBox::rejected, &dialog, &QDialog::reject);
  form->addRow(buttons);
  translateWidgets(&dialog, lang, langID);
  if (dialog.exec() != QDialog::Accepted) return false;
  const TPaperSize* chosen = findPaperSize(size->currentText().toStdString());
  if (!chosen) return false;
  paper = paperSetupFor(*chosen, landscape->isChecked());
  return true;
}
