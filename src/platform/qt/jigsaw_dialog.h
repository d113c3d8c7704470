// TfrmJigsaw: the jigsaw pattern's dialog. It opens with the controller's
// last values; OK hands them to the controller, and stays open with the
// controller's message when they are refused.
#pragma once

#include <QDialog>

#include "generators/jigsaw.h"

class QCheckBox;
class QDoubleSpinBox;
class QPushButton;
class QSpinBox;
class TfrmPelw;

class TfrmJigsaw : public QDialog {
  Q_OBJECT
 public:
  TfrmJigsaw(TfrmPelw& form, QWidget* parent = nullptr);

  QSpinBox* nbJIGSAW_NumPiecesX = nullptr;
  QSpinBox* nbJIGSAW_NumPiecesY = nullptr;
  QDoubleSpinBox* nbJIGSAW_PieceLen1 = nullptr;  // in the program's length unit
  QSpinBox* nbJIGSAW_RandomSeed = nullptr;
  QPushButton* btnJIGSAW_Random = nullptr;
  QCheckBox* chkJIGSAW_FlatEdge = nullptr;
  QCheckBox* chkJIGSAW_FlattenPath = nullptr;

  TJigsawSettings settings() const;
  void setSettings(const TJigsawSettings& s);
  void accept() override;

 private:
  TfrmPelw& FForm;
  double mmPerUnit() const;
};
