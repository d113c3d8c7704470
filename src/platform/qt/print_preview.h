// TfrmPreview: the print preview. The drawing as it will be printed, with
// the pages over it: a page drags, a right click skips it, a click moves its
// scales to the next corner. Beside it the preview's boxes, Page + and
// Page -, the page setup and the button that prints (or writes the PDF).
// The pages and their rules are TPrintLayout's; this window only shows
// them and passes the pointer on.
#pragma once

#include <QDialog>
#include <QWidget>
#include <memory>

#include "document/types.h"
#include "platform/paper_device.h"

class QCheckBox;
class QDoubleSpinBox;
class QLabel;
class QPushButton;
class QSpinBox;
class TQtBitmap;
class TMultiLang;

// The pages over the drawing (pbPreview).
class TPreviewBox : public QWidget {
  Q_OBJECT
 public:
  TPreviewBox(TfrmPelw& form, TPrintLayout& layout, QWidget* parent);
  ~TPreviewBox() override;
  // The drawing is painted again at the next paint.
  void drawingChanged();
  // Preview pixels of a point of the drawing, as the last paint placed it.
  TPointF toPixels(const TPointF& real) const;

 signals:
  void pagesChanged();

 protected:
  void paintEvent(QPaintEvent*) override;
  void mousePressEvent(QMouseEvent* e) override;
  void mouseMoveEvent(QMouseEvent* e) override;
  void mouseReleaseEvent(QMouseEvent* e) override;

 private:
  TfrmPelw& FForm;
  TPrintLayout& FLayout;
  // The drawing as painted last (FCache of the preview) and where.
  std::unique_ptr<TQtBitmap> FCache;
  TPointF FCacheScale, FCacheOffset;
  bool FCacheValid = false;
  TPointF FScale{1, 1}, FOffset;
  void placeView();
  TPointF toReal(const QPointF& pixel) const;
};

class TfrmPreview : public QDialog {
  Q_OBJECT
 public:
  TfrmPreview(TfrmPelw& form, TPrintLayout& layout, IPrintService* service, bool forPdf, QWidget* parent = nullptr);
  ~TfrmPreview() override;

  TPreviewBox* pbPreview = nullptr;
  QDoubleSpinBox* nbPrintLineThickFactor = nullptr;
  QDoubleSpinBox* nbPrintCalibrationX = nullptr;  // per cent, the options' FPrintCalibration
  QDoubleSpinBox* nbPrintCalibrationY = nullptr;
  QCheckBox* chkPrintStitchingHoleAsDot = nullptr;
  QCheckBox* chkShowNotForPrintLines = nullptr;
  QCheckBox* chkPrintIntoMergin = nullptr;
  QCheckBox* chkPrintSelectedShapesOnly = nullptr;
  QCheckBox* chkTilePrint = nullptr;
  QSpinBox* nbPreview_TileX = nullptr;
  QDoubleSpinBox* nbTileOverlapLen = nullptr;
  QCheckBox* chkPrintInColor = nullptr;
  QCheckBox* chkPreview_RulerInside = nullptr;
  QPushButton* btnPagePlus = nullptr;
  QPushButton* btnPageMinus = nullptr;
  QPushButton* btnPageSetup = nullptr;
  QPushButton* btnExecutePrint = nullptr;
  QPushButton* btnClosePrintPreview = nullptr;
  QLabel* lblPaper = nullptr;
  QLabel* lblSheets = nullptr;

  // The boxes from the layout, and the labels that follow the pages.
  void showLayout();
  void accept() override;

 private:
  TfrmPelw& FForm;
  TPrintLayout& FLayout;
  IPrintService* FService;
  bool FForPdf;
  bool FShowing = false;  // while the boxes are being set, their signals change nothing
  void buildControls(QWidget* panel);
  void switchesChanged(bool drawingToo);
  void pageSetup();
};

// The paper of a PDF file: its size and which way it lies. False on cancel.
bool askPdfPaper(TPaperSetup& paper, const TMultiLang* lang, const std::string& langID, QWidget* parent);
