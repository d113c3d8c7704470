#include "platform/qt/jigsaw_dialog.h"

#include <QApplication>
#include <QCheckBox>
#include <QDialogButtonBox>
#include <QDoubleSpinBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QRandomGenerator>
#include <QSpinBox>
#include <limits>

#include "app/frm_pelw.h"
#include "platform/qt/dialog_parts.h"
#include "platform/qt/qt_language.h"

TfrmJigsaw::TfrmJigsaw(TfrmPelw& form, QWidget* parent) : QDialog(parent), FForm(form) {
  setObjectName("frmJigsaw");
  setWindowTitle("Jigsaw puzzle");
  auto* layout = new QFormLayout(this);
  layout->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
  // The boxes take more than the allowed ranges, so that a number out of
  // range reaches the controller's check and its message instead of being
  // silently held back by the box.
  nbJIGSAW_NumPiecesX = new QSpinBox(this);
  nbJIGSAW_NumPiecesX->setObjectName("nbJIGSAW_NumPiecesX");
  nbJIGSAW_NumPiecesY = new QSpinBox(this);
  nbJIGSAW_NumPiecesY->setObjectName("nbJIGSAW_NumPiecesY");
  for (QSpinBox* b : {nbJIGSAW_NumPiecesX, nbJIGSAW_NumPiecesY}) b->setRange(0, 9999);
  nbJIGSAW_PieceLen1 = new QDoubleSpinBox(this);
  nbJIGSAW_PieceLen1->setObjectName("nbJIGSAW_PieceLen1");
  nbJIGSAW_PieceLen1->setRange(0, 1e6);
  nbJIGSAW_PieceLen1->setSuffix(FForm.lengthSettings().isInch() ? " in" : " mm");
  nbJIGSAW_PieceLen1->setDecimals(FForm.lengthSettings().isInch() ? 4 : 2);
  nbJIGSAW_RandomSeed = new QSpinBox(this);
  nbJIGSAW_RandomSeed->setObjectName("nbJIGSAW_RandomSeed");
  nbJIGSAW_RandomSeed->setRange(std::numeric_limits<int>::min(), std::numeric_limits<int>::max());
  btnJIGSAW_Random = new QPushButton("Random", this);
  btnJIGSAW_Random->setObjectName("btnJIGSAW_Random");
  connect(btnJIGSAW_Random, &QPushButton::clicked, this,
          [this] { nbJIGSAW_RandomSeed->setValue(static_cast<int>(QRandomGenerator::global()->generate())); });
  auto* seedRow = new QHBoxLayout;
  seedRow->addWidget(nbJIGSAW_RandomSeed, 1);
  seedRow->addWidget(btnJIGSAW_Random);
  chkJIGSAW_FlatEdge = new QCheckBox("Straight outer edges", this);
  chkJIGSAW_FlatEdge->setObjectName("chkJIGSAW_FlatEdge");
  chkJIGSAW_FlattenPath = new QCheckBox("One path per grid line", this);
  chkJIGSAW_FlattenPath->setObjectName("chkJIGSAW_FlattenPath");

  layout->addRow(namedLabel("lblJIGSAW_Num_x", "Pieces across:", this), nbJIGSAW_NumPiecesX);
  layout->addRow(namedLabel("lblJIGSAW_Num_y", "Pieces down:", this), nbJIGSAW_NumPiecesY);
  layout->addRow(namedLabel("lblJIGSAW_Piece_Len", "Piece size:", this), nbJIGSAW_PieceLen1);
  layout->addRow(namedLabel("lblJIGSAW_Seed", "Random seed:", this), seedRow);
  layout->addRow(chkJIGSAW_FlatEdge);
  layout->addRow(chkJIGSAW_FlattenPath);
  auto* buttons = okCancelButtons(this, this);
  layout->addRow(buttons);

  translateWidgets(this, FForm.FMultiLang.get(), FForm.FLangID);
  setSettings(FForm.FJigsawSettings);
}

double TfrmJigsaw::mmPerUnit() const { return FForm.lengthSettings().isInch() ? kMmPerInch : 1.0; }

TJigsawSettings TfrmJigsaw::settings() const {
  TJigsawSettings s;
  s.FNumPiecesX = nbJIGSAW_NumPiecesX->value();
  s.FNumPiecesY = nbJIGSAW_NumPiecesY->value();
  s.FPieceLen = nbJIGSAW_PieceLen1->value() * mmPerUnit();
  s.FRandomSeed = nbJIGSAW_RandomSeed->value();
  s.FFlatEdge = chkJIGSAW_FlatEdge->isChecked();
  s.FFlattenPath = chkJIGSAW_FlattenPath->isChecked();
  return s;
}

void TfrmJigsaw::setSettings(const TJigsawSettings& s) {
  nbJIGSAW_NumPiecesX->setValue(s.FNumPiecesX);
  nbJIGSAW_NumPiecesY->setValue(s.FNumPiecesY);
  nbJIGSAW_PieceLen1->setValue(s.FPieceLen / mmPerUnit());
  nbJIGSAW_RandomSeed->setValue(s.FRandomSeed);
  chkJIGSAW_FlatEdge->setChecked(s.FFlatEdge);
  chkJIGSAW_FlattenPath->setChecked(s.FFlattenPath);
}

void TfrmJigsaw::accept() {
  // The controller draws, or says why not and changes nothing. Fifty by
  // fifty pieces take a moment: a busy cursor meanwhile.
  const TJigsawSettings s = settings();
  const bool busy = checkJigsawSettings(s).empty();
  if (busy) QApplication::setOverrideCursor(Qt::WaitCursor);
  const bool drawn = FForm.actJigsaw(s);
  if (busy) QApplication::restoreOverrideCursor();
  if (drawn) QDialog::accept();
}
